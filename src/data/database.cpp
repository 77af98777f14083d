#include "data/database.h"

#include "data/uso_fichero.h"

#include <QAtomicInt>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlRecord>

namespace {
QAtomicInt contadorConexiones;
QAtomicInt abiertas;

QString nuevaConexion() {
    return QStringLiteral("pramelvix-%1").arg(contadorConexiones.fetchAndAddRelaxed(1));
}

// SQLite keeps dates as "yyyy-MM-dd", times as "HH:mm:ss" and yes/no as 0/1, so that
// they compare and sort as text; PostgreSQL takes the typed values as they are.
QVariant valorParaSQLite(const QVariant& v) {
    if (v.isNull()) return v;
    switch (v.metaType().id()) {
    case QMetaType::QDate:
        return v.toDate().toString(Qt::ISODate);
    case QMetaType::QTime:
        return v.toTime().toString(QStringLiteral("HH:mm:ss"));
    case QMetaType::QDateTime:
        return v.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    case QMetaType::Bool:
        return v.toBool() ? 1 : 0;
    default:
        return v;
    }
}

QString textoError(const QSqlError& error) {
    QString texto = error.databaseText().trimmed();
    if (texto.isEmpty()) texto = error.text().trimmed();
    if (texto.isEmpty()) texto = QStringLiteral("error desconocido");
    return texto;
}
} // namespace

Database::Database(Motor motor, QString origen) : motor_(motor), origen_(std::move(origen)) {
    nombreConexion_ = nuevaConexion();
}

Database::~Database() {
    cerrar();
}

void Database::cerrar() {
    if (!db_.isValid()) return;
    db_.close();
    db_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(nombreConexion_);
    if (uso_) uso_->soltar();
}

std::unique_ptr<Database> Database::abrirSQLite(const QString& fichero, bool crear) {
    if (!crear && !QFileInfo::exists(fichero))
        throw ErrorBD(QStringLiteral("no existe el fichero de base de datos '%1'").arg(fichero));
    std::unique_ptr<Database> db(new Database(Motor::SQLite, fichero));
    db->uso_ = std::make_unique<UsoFicheroBD>(QFileInfo(fichero).absoluteFilePath());
    if (!db->uso_->compartir(15000))
        throw ErrorBD(QStringLiteral("otro puesto está reparando o compactando la base de datos; vuelva a "
                                     "intentarlo en unos minutos"));
    db->db_ = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), db->nombreConexion_);
    db->db_.setDatabaseName(fichero);
    db->db_.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=15000"));
    if (!db->db_.open()) throw ErrorBD(textoError(db->db_.lastError()));
    // The first read tells a damaged file from a good one.
    db->valor(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"));
    db->ejecutarDirecto(QStringLiteral("PRAGMA journal_mode=WAL"));
    db->fijarEscrituraSegura(true);
    db->ejecutarDirecto(QStringLiteral("PRAGMA foreign_keys=ON"));
    return db;
}

std::unique_ptr<Database> Database::abrirPostgreSQL(const QString& conexion) {
    std::unique_ptr<Database> db(new Database(Motor::PostgreSQL, conexion));
    db->db_ = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), db->nombreConexion_);
    // The driver appends the connect options to the libpq connection string it builds,
    // so the whole string given in PRAMELVIX.INI reaches libpq as it was written.
    db->db_.setConnectOptions(conexion);
    if (!db->db_.open()) throw ErrorBD(textoError(db->db_.lastError()));
    db->ejecutarDirecto(QStringLiteral("SET client_min_messages TO WARNING"));
    return db;
}

QSqlQuery Database::ejecutar(const QString& sql, const QVariantList& valores) {
    QSqlQuery q(db_);
    q.setForwardOnly(true);
    if (!q.prepare(sql)) throw ErrorBD(textoError(q.lastError()));
    for (const QVariant& v : valores)
        q.addBindValue(motor_ == Motor::SQLite ? valorParaSQLite(v) : v);
    if (!q.exec()) throw ErrorBD(textoError(q.lastError()));
    return q;
}

int Database::ejecutarCambio(const QString& sql, const QVariantList& valores) {
    return ejecutar(sql, valores).numRowsAffected();
}

QVariant Database::valor(const QString& sql, const QVariantList& valores) {
    QSqlQuery q = ejecutar(sql, valores);
    if (!q.next()) return {};
    return q.value(0);
}

void Database::ejecutarDirecto(const QString& sql) {
    QSqlQuery q(db_);
    if (!q.exec(sql)) throw ErrorBD(textoError(q.lastError()));
}

bool Database::existeTabla(const QString& tabla) {
    if (esSQLite())
        return valor(
                   QStringLiteral(
                       "SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND lower(name) = lower(?)"),
                   {tabla})
                   .toInt() > 0;
    return valor(QStringLiteral("SELECT COUNT(*) FROM information_schema.tables "
                                "WHERE table_schema = current_schema() AND table_name = lower(?)"),
                 {tabla})
               .toInt() > 0;
}

int Database::transaccionesAbiertas() {
    return abiertas.loadRelaxed();
}

void Database::fijarEscrituraSegura(bool segura) {
    if (esSQLite())
        ejecutarDirecto(segura ? QStringLiteral("PRAGMA synchronous=FULL") : QStringLiteral("PRAGMA synchronous=NORMAL"));
}

Transaction Database::transaccion() {
    return Transaction(*this);
}

void Database::comenzar() {
    if (profundidad_++ > 0) return;
    soloDeshacer_ = false;
    try {
        ejecutarDirecto(esSQLite() ? QStringLiteral("BEGIN IMMEDIATE") : QStringLiteral("BEGIN"));
    } catch (...) {
        profundidad_ = 0;
        throw;
    }
    contada_ = vigilada_;
    if (contada_) abiertas.ref();
}

void Database::terminar(bool confirmar) {
    if (profundidad_ <= 0) return;
    if (!confirmar) soloDeshacer_ = true;
    if (--profundidad_ > 0) return;
    if (contada_) abiertas.deref();
    if (soloDeshacer_) {
        QSqlQuery q(db_);
        q.exec(QStringLiteral("ROLLBACK"));
        if (confirmar) throw ErrorBD(QStringLiteral("la transacción se ha anulado y no se ha guardado nada"));
        return;
    }
    try {
        ejecutarDirecto(QStringLiteral("COMMIT"));
    } catch (...) {
        QSqlQuery q(db_);
        q.exec(QStringLiteral("ROLLBACK"));
        throw;
    }
}

Transaction::Transaction(Database& db) : db_(&db) {
    db_->comenzar();
}

Transaction::Transaction(Transaction&& otra) noexcept : db_(otra.db_), abierta_(otra.abierta_) {
    otra.abierta_ = false;
}

Transaction::~Transaction() {
    if (abierta_) db_->terminar(false);
}

void Transaction::commit() {
    if (!abierta_) return;
    abierta_ = false;
    db_->terminar(true);
}

void Transaction::rollback() {
    if (!abierta_) return;
    abierta_ = false;
    db_->terminar(false);
}
