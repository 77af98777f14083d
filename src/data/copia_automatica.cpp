#include "data/copia_automatica.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSqlDriver>
#include <sqlite3.h>

namespace {
int esperaActual(sqlite3* db) {
    sqlite3_stmt* st = nullptr;
    int ms = 0;
    if (sqlite3_prepare_v2(db, "PRAGMA busy_timeout", -1, &st, nullptr) == SQLITE_OK &&
        sqlite3_step(st) == SQLITE_ROW)
        ms = sqlite3_column_int(st, 0);
    sqlite3_finalize(st);
    return ms;
}

// Copies origen into the open database copia in steps; empty text when done.
QString copiarEnPasos(sqlite3* origen, sqlite3* copia, const PasosCopia& pasos,
                      const std::function<void()>& entrePasos) {
    sqlite3_backup* b = sqlite3_backup_init(copia, "main", origen, "main");
    if (!b) return QString::fromUtf8(sqlite3_errmsg(copia));
    QElapsedTimer reloj;
    reloj.start();
    QString error;
    for (;;) {
        const int rc = sqlite3_backup_step(b, pasos.paginasPorPaso < 1 ? 1 : pasos.paginasPorPaso);
        if (rc == SQLITE_DONE) break;
        if (rc != SQLITE_OK && rc != SQLITE_BUSY && rc != SQLITE_LOCKED) {
            error = QString::fromUtf8(sqlite3_errstr(rc));
            break;
        }
        if (reloj.elapsed() >= pasos.limiteTotalMs) {
            error = QStringLiteral("otros puestos han estado modificando la base de datos durante los %1 "
                                   "segundos que tenía la copia para terminar; se ha abandonado sin tocar "
                                   "la copia anterior")
                        .arg((pasos.limiteTotalMs + 999) / 1000);
            break;
        }
        if (entrePasos) entrePasos();
        if (pasos.pausaMs > 0) sqlite3_sleep(pasos.pausaMs);
    }
    sqlite3_backup_finish(b);
    return error;
}
} // namespace

QString copiarBaseDatos(Database& db, const QString& destino, const PasosCopia& pasos,
                        const std::function<void()>& entrePasos) {
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
        QFile::remove(temporal);
        return e;
    }
    // One step waits for another workstation's lock no longer than esperaPasoMs; the
    // connection's own wait is put back afterwards.
    const int espera = esperaActual(origen);
    sqlite3_busy_timeout(origen, pasos.esperaPasoMs);
    const QString error = copiarEnPasos(origen, copia, pasos, entrePasos);
    sqlite3_busy_timeout(origen, espera);
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
