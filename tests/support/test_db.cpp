#include "test_db.h"

#include "data/esquema.h"

#include <QAtomicInt>
#include <cstdio>

namespace {
QAtomicInt contador;

QString servidorPg() {
    return qEnvironmentVariable("PRAMELVIX_TEST_PG");
}
} // namespace

Motor TestDb::motorDePrueba() {
    return qEnvironmentVariable("PRAMELVIX_TEST_MOTOR")
                       .compare(QLatin1String("postgresql"), Qt::CaseInsensitive) == 0
               ? Motor::PostgreSQL
               : Motor::SQLite;
}

bool TestDb::motorDisponible() {
    if (motorDePrueba() == Motor::SQLite) return true;
    if (!servidorPg().isEmpty()) return true;
    std::fprintf(stderr,
                 "AVISO: PRAMELVIX_TEST_PG no está definido; se omiten las pruebas sobre PostgreSQL.\n");
    return false;
}

TestDb::TestDb() {
    if (motorDePrueba() == Motor::SQLite) {
        origen_ = dir_.filePath(QStringLiteral("Pramelvix.mdb"));
        db_ = Database::abrirSQLite(origen_, true);
    } else {
        nombrePg_ = QStringLiteral("pmx_%1_%2_%3")
                        .arg(QCoreApplication::applicationPid())
                        .arg(QDateTime::currentMSecsSinceEpoch() % 100000000)
                        .arg(contador.fetchAndAddRelaxed(1));
        {
            auto admin = Database::abrirPostgreSQL(servidorPg() + QStringLiteral(" dbname=postgres"));
            admin->ejecutarDirecto(QStringLiteral("CREATE DATABASE ") + nombrePg_);
        }
        origen_ = servidorPg() + QStringLiteral(" dbname=") + nombrePg_;
        db_ = Database::abrirPostgreSQL(origen_);
    }
    migrarEsquema(*db_);
}

TestDb::~TestDb() {
    db_.reset();
    if (nombrePg_.isEmpty()) return;
    try {
        auto admin = Database::abrirPostgreSQL(servidorPg() + QStringLiteral(" dbname=postgres"));
        admin->ejecutarDirecto(QStringLiteral("DROP DATABASE IF EXISTS ") + nombrePg_ +
                               QStringLiteral(" WITH (FORCE)"));
    } catch (const ErrorBD& e) {
        std::fprintf(stderr, "No se ha podido borrar la base de datos de prueba %s: %s\n",
                     qPrintable(nombrePg_), qPrintable(e.texto()));
    }
}

std::unique_ptr<Database> TestDb::otraConexion() const {
    auto db = motorDePrueba() == Motor::SQLite ? Database::abrirSQLite(origen_) : Database::abrirPostgreSQL(origen_);
    // Another workstation: its open transactions are not this session's (see ScriptedDialogs).
    db->setVigilada(false);
    return db;
}
