// Throughput of record locks and series counters with 1, 2 and 4 competing processes,
// beside the same work done with plain SQL, on SQLite (a temporary file) and on
// PostgreSQL (when PRAMELVIX_TEST_PG names a server where databases may be created).
//
//   bench_bloqueos [segundos por medida, 2 por defecto]
//
// Each measure starts N copies of this program (operating-system processes, each with its
// own connection), which wait for a common start moment and repeat their operation until
// the time is over; the result is the operations completed per second by all of them.
#include "core/clock.h"
#include "data/bloqueos.h"
#include "data/contadores.h"
#include "data/esquema.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>
#include <memory>
#include <vector>

namespace {
class DialogosMudos final : public Dialogs {
public:
    int mensajes = 0;
    void mostrar(Icono, const QString&, const QString& texto) override {
        if (mensajes++ == 0) std::fprintf(stderr, "%s\n", qPrintable(texto));
    }
    bool preguntar(Icono, const QString&, const QString&) override { return true; }
    int elegir(const QString&, const QString&, const QStringList&) override { return -1; }
    QString elegirFichero(const QString&, const QString&, const QString&) override { return {}; }
    QString elegirFicheroGuardar(const QString&, const QString&, const QString&) override { return {}; }
    void progreso(const QString&) override {}
};

std::unique_ptr<Database> abrir(const QString& motor, const QString& origen) {
    return motor == QLatin1String("sqlite") ? Database::abrirSQLite(origen)
                                            : Database::abrirPostgreSQL(origen);
}

const QString kSerie = QStringLiteral("Facturas.A");

// One process of a measure: repeats the operation from `inicio` until `fin` (ms since the
// epoch) and prints how many it completed.
int hijo(const QString& motor, const QString& origen, const QString& operacion, const QString& id,
         qint64 inicio, qint64 fin) {
    auto db = abrir(motor, origen);
    DialogosMudos d;
    SystemClock reloj;
    DescriptorTabla clientes;
    clientes.tabla = QStringLiteral("Clientes");
    clientes.descTabla = QStringLiteral("Cliente");
    Bloqueos bloqueos(*db, d, reloj, {QStringLiteral("bench-") + id, QStringLiteral("bench"), id, QString()});
    bloqueos.setIntentos(100);
    ContadorStore contadores(*db);
    const QString insertar =
        QStringLiteral("INSERT INTO Bloqueos (claveBloqueo, DescrBloqueo, Sesion, Accion, "
                       "Usuario, Puesto, Fecha, Hora) VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
    const QString borrar = QStringLiteral("DELETE FROM Bloqueos WHERE claveBloqueo = ?");
    const QString sumar =
        QStringLiteral("UPDATE Contadores SET Ultimo = Ultimo + 1 WHERE Serie = ? RETURNING Ultimo");

    while (QDateTime::currentMSecsSinceEpoch() < inicio)
        QThread::usleep(200);
    qint64 hechas = 0, fallidas = 0;
    while (QDateTime::currentMSecsSinceEpoch() < fin) {
        const QString clave = id + QLatin1Char('-') + QString::number(hechas);
        try {
            if (operacion == QLatin1String("bloqueo")) {
                if (!bloqueos.bloquearRegistro(clientes, clave, clave, AccionBloqueo::Modificacion, false) ||
                    !bloqueos.desbloquearRegistro(clientes, clave)) {
                    ++fallidas;
                    continue;
                }
            } else if (operacion == QLatin1String("bloqueo-sql")) {
                const QDateTime ahora = reloj.ahora();
                db->ejecutar(insertar,
                             {QStringLiteral("Clientes ") + clave, clave, QStringLiteral("bench-") + id, 1,
                              QStringLiteral("bench"), id, ahora.date(), ahora.time()});
                db->ejecutar(borrar, {QStringLiteral("Clientes ") + clave});
            } else if (operacion == QLatin1String("contador")) {
                contadores.tomarSiguiente(kSerie, 2000);
            } else {
                db->valor(sumar, {kSerie});
            }
            ++hechas;
        } catch (const ErrorBD& e) {
            if (fallidas++ == 0)
                std::fprintf(stderr, "%s: %s\n", qPrintable(operacion), qPrintable(e.mensaje()));
        }
    }
    std::printf("%lld %lld\n", static_cast<long long>(hechas), static_cast<long long>(fallidas));
    return 0;
}

struct Medida {
    double porSegundo = 0;
    qint64 fallidas = 0;
};

Medida medir(const QString& motor, const QString& origen, const QString& operacion, int procesos,
             double segundos) {
    const qint64 inicio = QDateTime::currentMSecsSinceEpoch() + 1500; // time to start and connect
    const qint64 fin = inicio + static_cast<qint64>(segundos * 1000);
    std::vector<std::unique_ptr<QProcess>> ps;
    for (int i = 0; i < procesos; ++i) {
        auto p = std::make_unique<QProcess>();
        p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p->start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("--hijo"), motor, origen, operacion, QStringLiteral("P%1").arg(i),
                  QString::number(inicio), QString::number(fin)});
        ps.push_back(std::move(p));
    }
    Medida m;
    qint64 total = 0;
    for (auto& p : ps) {
        p->waitForFinished(-1);
        const QStringList partes = QString::fromUtf8(p->readAllStandardOutput()).split(QLatin1Char(' '));
        if (p->exitCode() != 0 || partes.size() != 2) {
            std::fprintf(stderr, "un proceso de la medida ha fallado (%s)\n", qPrintable(operacion));
            m.fallidas += 1;
            continue;
        }
        total += partes.at(0).toLongLong();
        m.fallidas += partes.at(1).trimmed().toLongLong();
    }
    m.porSegundo = static_cast<double>(total) / segundos;
    return m;
}

void medirMotor(const QString& nombre, const QString& motor, const QString& origen, double segundos) {
    {
        auto db = abrir(motor, origen);
        migrarEsquema(*db);
        db->ejecutar(QStringLiteral("INSERT INTO Contadores (Serie, Ultimo) VALUES (?, 0)"), {kSerie});
    }
    struct Par {
        const char* que;
        QString nuestra;
        QString directa;
    };
    const Par pares[] = {
        {"bloquear + desbloquear", QStringLiteral("bloqueo"), QStringLiteral("bloqueo-sql")},
        {"siguiente nº de serie", QStringLiteral("contador"), QStringLiteral("contador-sql")},
    };
    for (const auto& par : pares)
        for (int procesos : {1, 2, 4}) {
            const Medida a = medir(motor, origen, par.nuestra, procesos, segundos);
            const Medida b = medir(motor, origen, par.directa, procesos, segundos);
            std::printf("%-11s %s %8d %14.0f %14.0f %9.2f%s\n", qPrintable(nombre),
                        qPrintable(QString::fromUtf8(par.que).leftJustified(24)), procesos, a.porSegundo,
                        b.porSegundo, b.porSegundo > 0 ? a.porSegundo / b.porSegundo : 0.0,
                        a.fallidas + b.fallidas > 0 ? "  (con fallos)" : "");
            std::fflush(stdout);
        }
}
} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList a = app.arguments();
    try {
        if (a.size() == 8 && a.at(1) == QLatin1String("--hijo"))
            return hijo(a.at(2), a.at(3), a.at(4), a.at(5), a.at(6).toLongLong(), a.at(7).toLongLong());

        const double segundos = a.size() > 1 ? std::max(0.5, a.at(1).toDouble()) : 2.0;
        std::printf("Operaciones por segundo entre todos los procesos (%.1f s por medida)\n", segundos);
        std::printf("%-11s %s %8s %14s %14s %s\n", "Motor",
                    qPrintable(QStringLiteral("Operación").leftJustified(24)), "Procesos", "Pramelvix",
                    "SQL directo", qPrintable(QStringLiteral("Relación").rightJustified(9)));
        QTemporaryDir dir;
        const QString fichero = dir.filePath(QStringLiteral("Bench.mdb"));
        Database::abrirSQLite(fichero, true); // creates the file; medirMotor gives it the schema
        medirMotor(QStringLiteral("SQLite"), QStringLiteral("sqlite"), fichero, segundos);

        const QString servidor = qEnvironmentVariable("PRAMELVIX_TEST_PG");
        if (servidor.isEmpty()) {
            std::printf("(PRAMELVIX_TEST_PG no está definido: sin medidas de PostgreSQL)\n");
            return 0;
        }
        const QString nombre = QStringLiteral("pmx_bench_%1").arg(QCoreApplication::applicationPid());
        Database::abrirPostgreSQL(servidor + QStringLiteral(" dbname=postgres"))
            ->ejecutarDirecto(QStringLiteral("CREATE DATABASE ") + nombre);
        try {
            medirMotor(QStringLiteral("PostgreSQL"), QStringLiteral("postgresql"),
                       servidor + QStringLiteral(" dbname=") + nombre, segundos);
        } catch (...) {
            Database::abrirPostgreSQL(servidor + QStringLiteral(" dbname=postgres"))
                ->ejecutarDirecto(QStringLiteral("DROP DATABASE IF EXISTS ") + nombre +
                                  QStringLiteral(" WITH (FORCE)"));
            throw;
        }
        Database::abrirPostgreSQL(servidor + QStringLiteral(" dbname=postgres"))
            ->ejecutarDirecto(QStringLiteral("DROP DATABASE IF EXISTS ") + nombre +
                              QStringLiteral(" WITH (FORCE)"));
    } catch (const ErrorBD& e) {
        std::fprintf(stderr, "%s\n", qPrintable(e.mensaje()));
        return 1;
    }
    return 0;
}
