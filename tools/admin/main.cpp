// pramelvix-admin: the installer's and administrator's companion on the command line.
//   pramelvix-admin init DIR --admin USUARIO:CLAVE [--demo] [--postgresql CONEXION] [--servidor PUESTO]
//   pramelvix-admin [--dir DIR] setting get CLAVE
//   pramelvix-admin [--dir DIR] setting set CLAVE VALOR
//   pramelvix-admin [--dir DIR] generate --clientes N [--semilla S]
#include "app/instalacion.h"
#include "app/instalador.h"
#include "clients/generador.h"
#include "core/ini.h"
#include "data/ajustes.h"

#include <QCoreApplication>
#include <QDir>
#include <QSysInfo>
#include <cstdio>

namespace {
void escribir(FILE* f, const QString& texto) {
    const QByteArray b = (texto + QLatin1Char('\n')).toUtf8();
    std::fwrite(b.constData(), 1, static_cast<size_t>(b.size()), f);
}

int uso(const QString& motivo) {
    if (!motivo.isEmpty()) escribir(stderr, QStringLiteral("Error: ") + motivo);
    escribir(stderr,
             QStringLiteral(
                 "Uso:\n"
                 "  pramelvix-admin init CARPETA --admin USUARIO:CLAVE [--demo] [--postgresql CONEXION] "
                 "[--servidor PUESTO]\n"
                 "  pramelvix-admin [--dir CARPETA] setting get CLAVE\n"
                 "  pramelvix-admin [--dir CARPETA] setting set CLAVE VALOR\n"
                 "  pramelvix-admin [--dir CARPETA] generate --clientes N [--semilla S]"));
    return 2;
}

int init(QStringList args) {
    if (args.isEmpty() || args.first().startsWith(QLatin1String("--")))
        return uso(QStringLiteral("falta la carpeta de la instalación."));
    OpcionesInstalacion op;
    op.carpeta = QDir(args.takeFirst()).absolutePath();
    op.puestoServidor = nombrePuesto();
    while (!args.isEmpty()) {
        const QString a = args.takeFirst();
        if (a == QLatin1String("--demo")) {
            op.demo = true;
        } else if (a == QLatin1String("--admin") || a == QLatin1String("--postgresql") ||
                   a == QLatin1String("--servidor")) {
            if (args.isEmpty()) return uso(QStringLiteral("falta el valor de %1.").arg(a));
            const QString v = args.takeFirst();
            if (a == QLatin1String("--admin")) {
                const qsizetype dos = v.indexOf(QLatin1Char(':'));
                if (dos <= 0 || dos == v.size() - 1)
                    return uso(
                        QStringLiteral("--admin espera USUARIO:CLAVE, con usuario y clave no vacíos."));
                op.administrador = v.left(dos);
                op.clave = v.mid(dos + 1);
                if (op.administrador.size() > 20)
                    return uso(
                        QStringLiteral("el identificador del usuario admite como mucho 20 caracteres."));
            } else if (a == QLatin1String("--postgresql")) {
                op.conexionPostgreSQL = v;
            } else {
                op.puestoServidor = v;
            }
        } else {
            return uso(QStringLiteral("opción desconocida '%1'.").arg(a));
        }
    }
    if (op.administrador.isEmpty()) return uso(QStringLiteral("falta --admin USUARIO:CLAVE."));
    const QString error = crearInstalacion(op);
    if (!error.isEmpty()) {
        escribir(stderr, error);
        return 1;
    }
    escribir(
        stdout,
        QStringLiteral("Instalación creada en '%1' (administrador '%2').").arg(op.carpeta, op.administrador));
    return 0;
}

int setting(const QString& carpeta, QStringList args) {
    if (args.isEmpty()) return uso(QStringLiteral("falta get o set."));
    const QString orden = args.takeFirst();
    if (!((orden == QLatin1String("get") && args.size() == 1) ||
          (orden == QLatin1String("set") && args.size() == 2)))
        return uso(QStringLiteral("argumentos incorrectos para setting."));
    const auto ini = IniFile::abrir(QDir(carpeta).filePath(kFicheroConfiguracion.toString()));
    if (!ini) {
        escribir(stderr,
                 QStringLiteral("No se ha encontrado el fichero de configuración 'PRAMELVIX.INI' en '%1'.")
                     .arg(carpeta));
        return 1;
    }
    const ConfiguracionBD config = ConfiguracionBD::desdeIni(*ini);
    try {
        auto db = config.motor == Motor::SQLite ? Database::abrirSQLite(config.ficheroSQLite())
                                                : Database::abrirPostgreSQL(config.conexion);
        Ajustes ajustes(*db);
        if (orden == QLatin1String("get")) {
            escribir(stdout, ajustes.leer(args.at(0)));
        } else {
            ajustes.escribir(args.at(0), args.at(1));
        }
    } catch (const ErrorBD& e) {
        escribir(stderr, e.mensaje());
        return 1;
    }
    return 0;
}
// Fills the installation's database with synthetic clients and pets.
int generate(const QString& carpeta, QStringList args) {
    qint64 clientes = -1;
    quint32 semilla = 1;
    while (!args.isEmpty()) {
        const QString a = args.takeFirst();
        if (a != QLatin1String("--clientes") && a != QLatin1String("--semilla"))
            return uso(QStringLiteral("opción desconocida '%1'.").arg(a));
        if (args.isEmpty()) return uso(QStringLiteral("falta el valor de %1.").arg(a));
        bool ok = false;
        const qint64 v = args.takeFirst().toLongLong(&ok);
        if (!ok || v < 0 || v > 10000000)
            return uso(QStringLiteral("%1 espera un número entre 0 y 10000000.").arg(a));
        if (a == QLatin1String("--clientes"))
            clientes = v;
        else
            semilla = static_cast<quint32>(v);
    }
    if (clientes < 0) return uso(QStringLiteral("falta --clientes N."));
    const auto ini = IniFile::abrir(QDir(carpeta).filePath(kFicheroConfiguracion.toString()));
    if (!ini) {
        escribir(stderr,
                 QStringLiteral("No se ha encontrado el fichero de configuración 'PRAMELVIX.INI' en '%1'.")
                     .arg(carpeta));
        return 1;
    }
    const ConfiguracionBD config = ConfiguracionBD::desdeIni(*ini);
    try {
        auto db = config.motor == Motor::SQLite ? Database::abrirSQLite(config.ficheroSQLite())
                                                : Database::abrirPostgreSQL(config.conexion);
        const ResultadoGenerador r = generarClientes(*db, static_cast<int>(clientes), semilla);
        escribir(stdout,
                 QStringLiteral("Generados %1 clientes y %2 mascotas.").arg(r.clientes).arg(r.mascotas));
    } catch (const ErrorBD& e) {
        escribir(stderr, e.mensaje());
        return 1;
    }
    return 0;
}
} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QStringList args = QCoreApplication::arguments().mid(1);
    QString carpeta = qEnvironmentVariable("PRAMELVIX_DIR", QDir::currentPath());
    if (args.size() >= 2 && args.first() == QLatin1String("--dir")) {
        args.takeFirst();
        carpeta = args.takeFirst();
    }
    if (args.isEmpty()) return uso(QStringLiteral("falta la orden."));
    const QString orden = args.takeFirst();
    if (orden == QLatin1String("init")) return init(args);
    if (orden == QLatin1String("setting")) return setting(carpeta, args);
    if (orden == QLatin1String("generate")) return generate(carpeta, args);
    if (orden == QLatin1String("help") || orden == QLatin1String("--help")) {
        uso(QString());
        return 0;
    }
    return uso(QStringLiteral("orden desconocida '%1'.").arg(orden));
}
