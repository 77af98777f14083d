#include "data/contadores.h"

#include "data/bloqueos.h"

#include <QSqlDriver>
#include <sqlite3.h>

namespace {
const QString kSavepoint = QStringLiteral("SAVEPOINT pmx_contador");
const QString kDeshacerSavepoint = QStringLiteral("ROLLBACK TO SAVEPOINT pmx_contador");
const QString kSoltarSavepoint = QStringLiteral("RELEASE SAVEPOINT pmx_contador");

// Bounds how long SQLite waits for the write lock during one attempt, and puts the
// connection's usual wait back afterwards. SQLite's busy wait cannot be set with a bound
// value, so the connection handle of the driver is used (the same system library).
class EsperaSQLite {
public:
    EsperaSQLite(Database& db, int ms) {
        if (!db.esSQLite() || ms <= 0) return;
        const QVariant h = db.conexion().driver()->handle();
        if (!h.isValid() || qstrcmp(h.typeName(), "sqlite3*") != 0) return;
        handle_ = *static_cast<sqlite3* const*>(h.constData());
        if (!handle_) return;
        anterior_ = db.valor(QStringLiteral("PRAGMA busy_timeout")).toInt();
        sqlite3_busy_timeout(handle_, ms);
    }
    ~EsperaSQLite() {
        if (handle_) sqlite3_busy_timeout(handle_, anterior_);
    }
    EsperaSQLite(const EsperaSQLite&) = delete;
    EsperaSQLite& operator=(const EsperaSQLite&) = delete;

private:
    sqlite3* handle_ = nullptr;
    int anterior_ = 0;
};

// PostgreSQL: lock_timeout for the rest of the current transaction (or savepoint).
void limitarEsperaPg(Database& db, int ms) {
    if (db.esSQLite() || ms <= 0) return;
    db.ejecutar(QStringLiteral("SELECT set_config('lock_timeout', ?, true)"),
                {QString::number(ms) + QStringLiteral("ms")});
}
} // namespace

QString claveContador(const QString& tabla, const QString& serie) {
    return tabla + QLatin1Char('.') + serie;
}

qint64 ContadorStore::incrementar(const QString& serie) {
    const QString sumar =
        QStringLiteral("UPDATE Contadores SET Ultimo = Ultimo + 1 WHERE Serie = ? RETURNING Ultimo");
    QVariant n = db_.valor(sumar, {serie});
    if (!n.isValid()) {
        // First number of the series. Two workstations may both find no row: the key on
        // Serie lets one insert and the other do nothing (waiting for the first on
        // PostgreSQL), and both then go through the same atomic increment.
        db_.ejecutarCambio(
            QStringLiteral(
                "INSERT INTO Contadores (Serie, Ultimo) VALUES (?, 0) ON CONFLICT (Serie) DO NOTHING"),
            {serie});
        n = db_.valor(sumar, {serie});
    }
    if (!n.isValid())
        throw ErrorBD(QStringLiteral("no se ha podido leer el contador de la serie '%1'").arg(serie));
    return n.toLongLong();
}

qint64 ContadorStore::tomarSiguienteTras(const QString& serie, qint64 mayorUsado, int esperaMs) {
    const qint64 n = tomarSiguiente(serie, esperaMs);
    if (n > mayorUsado) return n;
    fijarUltimo(serie, mayorUsado);
    return tomarSiguiente(serie);
}

qint64 ContadorStore::tomarSiguiente(const QString& serie, int esperaMs) {
    if (!db_.enTransaccion()) {
        EsperaSQLite espera(db_, esperaMs);
        Transaction tx = db_.transaccion();
        limitarEsperaPg(db_, esperaMs);
        const qint64 n = incrementar(serie);
        tx.commit();
        return n;
    }
    // Inside the caller's transaction. On SQLite it already holds the write lock, so the
    // increment cannot meet another writer; on PostgreSQL a failed statement would spoil
    // the whole transaction, hence the savepoint.
    db_.ejecutarDirecto(kSavepoint);
    try {
        QString anterior;
        if (!db_.esSQLite() && esperaMs > 0)
            anterior = db_.valor(QStringLiteral("SELECT current_setting('lock_timeout')")).toString();
        limitarEsperaPg(db_, esperaMs);
        const qint64 n = incrementar(serie);
        if (!db_.esSQLite() && esperaMs > 0)
            db_.ejecutar(QStringLiteral("SELECT set_config('lock_timeout', ?, true)"), {anterior});
        db_.ejecutarDirecto(kSoltarSavepoint);
        return n;
    } catch (const ErrorBD&) {
        try {
            db_.ejecutarDirecto(kDeshacerSavepoint);
            db_.ejecutarDirecto(kSoltarSavepoint);
        } catch (const ErrorBD&) {
            // The first failure is the one worth reporting.
        }
        throw;
    }
}

qint64 ContadorStore::ultimo(const QString& serie) {
    return db_.valor(QStringLiteral("SELECT Ultimo FROM Contadores WHERE Serie = ?"), {serie}).toLongLong();
}

void ContadorStore::fijarUltimo(const QString& serie, qint64 ultimo) {
    Transaction tx = db_.transaccion();
    if (db_.ejecutarCambio(QStringLiteral("UPDATE Contadores SET Ultimo = ? WHERE Serie = ?"),
                           {ultimo, serie}) == 0)
        db_.ejecutarCambio(QStringLiteral("INSERT INTO Contadores (Serie, Ultimo) VALUES (?, ?)"),
                           {serie, ultimo});
    tx.commit();
}
