#include "data/copia_automatica.h"

#include <QFile>
#include <QSqlDriver>
#include <sqlite3.h>

QString copiarBaseDatos(Database& db, const QString& destino) {
    if (!db.esSQLite()) return QStringLiteral("la copia automática sólo se hace sobre SQLite");
    const QVariant h = db.conexion().driver()->handle();
    if (!h.isValid() || qstrcmp(h.typeName(), "sqlite3*") != 0)
        return QStringLiteral("no se ha podido acceder a la base de datos abierta");
    sqlite3* origen = *static_cast<sqlite3* const*>(h.data());
    const QString temporal = destino + QStringLiteral(".tmp");
    QFile::remove(temporal);
    sqlite3* copia = nullptr;
    if (sqlite3_open(QFile::encodeName(temporal).constData(), &copia) != SQLITE_OK) {
        const QString e = QString::fromUtf8(sqlite3_errmsg(copia));
        sqlite3_close(copia);
        return e;
    }
    QString error;
    sqlite3_backup* b = sqlite3_backup_init(copia, "main", origen, "main");
    if (!b) {
        error = QString::fromUtf8(sqlite3_errmsg(copia));
    } else {
        int rc;
        // Copy in steps, pausing when another workstation holds the database busy.
        while ((rc = sqlite3_backup_step(b, 256)) == SQLITE_OK || rc == SQLITE_BUSY || rc == SQLITE_LOCKED)
            if (rc != SQLITE_OK) sqlite3_sleep(50);
        if (rc != SQLITE_DONE) error = QString::fromUtf8(sqlite3_errstr(rc));
        sqlite3_backup_finish(b);
    }
    sqlite3_close(copia);
    if (!error.isEmpty()) {
        QFile::remove(temporal);
        return error;
    }
    QFile::remove(destino);
    if (!QFile::rename(temporal, destino)) {
        QFile::remove(temporal);
        return QStringLiteral("no se ha podido escribir '%1'").arg(destino);
    }
    return {};
}
