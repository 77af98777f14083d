#include "app/instalador.h"

#include "app/arranque.h"
#include "app/claves.h"
#include "app/instalacion.h"
#include "app/usuario_store.h"
#include "data/ajustes.h"
#include "data/esquema.h"
#include "data/reparacion.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

const QStringList& subcarpetasDatos() {
    static const QStringList lista = {QStringLiteral("FotosVisitas"), QStringLiteral("Croquis"),
                                      QStringLiteral("Documentos"), QStringLiteral("Plantillas"), QStringLiteral("Txt")};
    return lista;
}

namespace {
QString textoIni(const QString& datos, const QString& conexion) {
    QStringList l;
    l << QStringLiteral("; Configuración del puesto de Pramelvix")
      << QStringLiteral("[INSTALACION]")
      << QStringLiteral("SERVIDOR=") + datos;
    if (conexion.isEmpty()) {
        l << QStringLiteral("MOTOR=SQLITE");
    } else {
        l << QStringLiteral("MOTOR=POSTGRESQL") << QStringLiteral("CONEXION=") + conexion;
    }
    l << QString() << QStringLiteral("[IMPRESORA TICKETS]") << QStringLiteral("TIPO=0") << QStringLiteral("IMPRESORA=")
      << QStringLiteral("PUERTO=COM1") << QStringLiteral("BITSDATOS=8") << QStringLiteral("BITSPARADA=1")
      << QStringLiteral("PARIDAD=NINGUNO (N)") << QStringLiteral("VELOCIDAD=9600") << QStringLiteral("NUMPASADAS=1")
      << QStringLiteral("CORTEPAPEL=NO") << QString() << QStringLiteral("[MODEM GSM]") << QStringLiteral("PUERTO=COM1")
      << QStringLiteral("BITSDATOS=8") << QStringLiteral("BITSPARADA=1") << QStringLiteral("PARIDAD=NINGUNO (N)")
      << QStringLiteral("VELOCIDAD=9600") << QString();
    return l.join(QStringLiteral("\r\n"));
}
} // namespace

void prepararBaseDatos(Database& db, const OpcionesInstalacion& op) {
    migrarEsquema(db);
    Transaction tx = db.transaccion();
    Ajustes ajustes(db);
    ajustes.completarPorDefecto();
    ajustes.escribir(claves::VERSION_REQUISITO, kVersionPrograma);
    ajustes.escribir(claves::MULTIPUESTO, QStringLiteral("SI"));
    ajustes.escribir(claves::PUESTO_SERVIDOR, op.puestoServidor);
    const QString sal = nuevaSal();
    UsuarioStore(db).guardar({op.administrador, QStringLiteral("Administrador"), sal, hashClave(sal, op.clave),
                              kTipoAdministrador});
    if (op.demo) cargarDemo(db);
    tx.commit();
}

QString crearInstalacion(const OpcionesInstalacion& op) {
    const QDir carpeta(op.carpeta);
    const QString ini = carpeta.filePath(kFicheroConfiguracion.toString());
    if (QFileInfo::exists(ini)) return QStringLiteral("Ya existe una instalación en '%1'.").arg(carpeta.absolutePath());
    const QString datos = carpeta.absoluteFilePath(QStringLiteral("datos"));
    for (const QString& sub : subcarpetasDatos())
        if (!QDir().mkpath(QDir(datos).filePath(sub)))
            return QStringLiteral("No se ha podido crear la carpeta '%1'.").arg(QDir(datos).filePath(sub));
    try {
        std::unique_ptr<Database> db =
            op.conexionPostgreSQL.isEmpty()
                ? Database::abrirSQLite(QDir(datos).filePath(kNombreBaseDatos), true)
                : Database::abrirPostgreSQL(op.conexionPostgreSQL);
        if (versionEsquema(*db) > 0)
            return QStringLiteral("La base de datos indicada ya contiene una instalación de Pramelvix.");
        prepararBaseDatos(*db, op);
    } catch (const ErrorBD& e) {
        return e.mensaje();
    } catch (const ErrorPrograma& e) {
        return e.texto();
    }
    QFile f(ini);
    if (!f.open(QIODevice::WriteOnly) || f.write(textoIni(datos, op.conexionPostgreSQL).toUtf8()) < 0)
        return QStringLiteral("No se ha podido escribir '%1'.").arg(ini);
    return {};
}

void cargarDemo(Database& db) {
    const QString sal = nuevaSal();
    UsuarioStore(db).guardar({QStringLiteral("recepcion"), QStringLiteral("Recepción"), sal,
                              hashClave(sal, QStringLiteral("recepcion")), kTipoUsuario});
}
