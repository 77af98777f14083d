#pragma once
// One connection to the clinic's database, SQLite (one workstation) or PostgreSQL
// (several workstations). Every statement binds its values; a failure throws ErrorBD
// with the driver's text. A connection belongs to the thread that opened it.
#include "core/errores.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <memory>

enum class Motor { SQLite, PostgreSQL };

class Transaction;
class UsoFicheroBD;

class Database {
public:
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Opens (and for SQLite creates when crear is true) a database. Throws ErrorBD.
    static std::unique_ptr<Database> abrirSQLite(const QString& fichero, bool crear = false);
    static std::unique_ptr<Database> abrirPostgreSQL(const QString& conexion);

    Motor motor() const { return motor_; }
    bool esSQLite() const { return motor_ == Motor::SQLite; }
    // SQLite: the database file; PostgreSQL: the connection string.
    const QString& origen() const { return origen_; }

    // Runs a statement with its values bound in order ('?' placeholders).
    QSqlQuery ejecutar(const QString& sql, const QVariantList& valores = {});
    // Runs a statement and returns the number of rows it touched.
    int ejecutarCambio(const QString& sql, const QVariantList& valores = {});
    // First column of the first row, or an invalid QVariant when there is no row.
    QVariant valor(const QString& sql, const QVariantList& valores = {});
    // Runs a statement that binds nothing (schema, maintenance).
    void ejecutarDirecto(const QString& sql);

    // Write transactions: SQLite "BEGIN IMMEDIATE", PostgreSQL "BEGIN". Nested
    // transactions join the outer one; a rollback anywhere rolls the whole back.
    Transaction transaccion();
    bool enTransaccion() const { return profundidad_ > 0; }
    // Write transactions open right now on any connection of this process. A message box or
    // question must never wait for the user while this is not 0: the other workstations
    // would wait on it.
    static int transaccionesAbiertas();
    // Whether this connection's transactions count there (the session's own connections do;
    // a test's stand-in for another workstation does not).
    void setVigilada(bool vigilada) { vigilada_ = vigilada; }

    // SQLite: whether a commit waits until the data is on the disk (synchronous=FULL, the
    // default: an invoice committed and printed survives a power cut) or only until it is in
    // the journal (NORMAL, faster; for benchmarks). Nothing on PostgreSQL.
    void fijarEscrituraSegura(bool segura);

    bool existeTabla(const QString& tabla);
    void cerrar();
    QSqlDatabase& conexion() { return db_; }

private:
    Database(Motor motor, QString origen);
    void comenzar();
    void terminar(bool confirmar);
    friend class Transaction;

    Motor motor_;
    QString origen_;
    QString nombreConexion_;
    QSqlDatabase db_;
    int profundidad_ = 0;
    bool soloDeshacer_ = false;
    bool vigilada_ = true;
    std::unique_ptr<UsoFicheroBD> uso_; // SQLite: this program has the file open
    bool contada_ = false;
};

class Transaction {
public:
    explicit Transaction(Database& db);
    Transaction(Transaction&& otra) noexcept;
    Transaction& operator=(Transaction&&) = delete;
    ~Transaction();
    void commit();
    void rollback();

private:
    Database* db_;
    bool abierta_ = true;
};
