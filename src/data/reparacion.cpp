#include "data/reparacion.h"

#include "data/uso_fichero.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

QString nombreTemporalReparacion(const QTime& momento) {
    return QStringLiteral("BDTemp%1%2.mdb")
        .arg(momento.minute(), 2, 10, QLatin1Char('0'))
        .arg(momento.second(), 2, 10, QLatin1Char('0'));
}

namespace {
// Runs "VACUUM INTO" on its own connection, without the checks of Database::abrirSQLite,
// so that a damaged file gets whatever the engine can still read from it.
QString compactar(const QString& origen, const QString& destino) {
    const QString nombre =
        QStringLiteral("pramelvix-reparacion-") + QUuid::createUuid().toString(QUuid::Id128);
    QString error;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), nombre);
        db.setDatabaseName(origen);
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=15000"));
        if (!db.open()) {
            error = db.lastError().text();
        } else {
            QSqlQuery q(db);
            q.prepare(QStringLiteral("VACUUM INTO ?"));
            q.addBindValue(destino);
            if (!q.exec()) error = q.lastError().text();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(nombre);
    return error;
}

bool borrarConCompanyeros(const QString& fichero) {
    bool ok = !QFileInfo::exists(fichero) || QFile::remove(fichero);
    for (const char* sufijo : {"-wal", "-shm", "-journal"}) {
        const QString f = fichero + QLatin1String(sufijo);
        if (QFileInfo::exists(f)) ok = QFile::remove(f) && ok;
    }
    return ok;
}
} // namespace

ResultadoReparacion repararSQLite(const QString& fichero, const Clock& reloj) {
    ResultadoReparacion r;
    const QString origen = QFileInfo(fichero).absoluteFilePath();
    const QDir dir = QFileInfo(origen).absoluteDir();
    const QString temporal = dir.filePath(nombreTemporalReparacion(reloj.ahora().time()));
    if (QFileInfo::exists(temporal)) borrarConCompanyeros(temporal);
    if (!QFileInfo::exists(origen)) {
        r.error = QStringLiteral("no existe el fichero '%1'").arg(origen);
        return r;
    }
    // Held until the new file is in place: nobody else has the database open, and nobody
    // opens it before the swap is over.
    UsoFicheroBD uso(origen);
    if (!uso.exclusivo()) {
        r.ocupada = true;
        r.error = QStringLiteral("hay otros puestos con la base de datos abierta; no se puede sustituir el "
                                 "fichero mientras la usen");
        return r;
    }
    r.error = compactar(origen, temporal);
    if (!r.error.isEmpty()) {
        // A failed compaction leaves no temporary file behind and the source untouched.
        borrarConCompanyeros(temporal);
        return r;
    }
    if (!QFileInfo::exists(temporal)) {
        r.error = QStringLiteral("el compactador no ha generado '%1'").arg(temporal);
        return r;
    }
    if (!borrarConCompanyeros(origen) || !QFile::rename(temporal, origen)) {
        r.error = QStringLiteral("no se ha podido sustituir '%1' por '%2'").arg(origen, temporal);
        return r;
    }
    r.hecha = true;
    return r;
}

ResultadoReparacion repararPostgreSQL(const QString& conexion) {
    ResultadoReparacion r;
    try {
        auto db = Database::abrirPostgreSQL(conexion);
        db->ejecutarDirecto(QStringLiteral("VACUUM ANALYZE"));
        db->ejecutarDirecto(QStringLiteral("REINDEX SCHEMA public"));
        r.hecha = true;
    } catch (const ErrorBD& e) {
        r.error = e.texto();
    }
    return r;
}
