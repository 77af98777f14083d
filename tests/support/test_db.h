#pragma once
// A throw-away database, removed at the end, on the engine of PRAMELVIX_TEST_MOTOR ("sqlite", the
// default, or "postgresql" on the server of PRAMELVIX_TEST_PG, a libpq connection string).
#include "data/database.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

class TestDb {
public:
    TestDb();
    ~TestDb();

    static Motor motorDePrueba();
    // False (with a notice on standard error) when the test asks for PostgreSQL and no
    // server is set: the test then ends with code 77, which CTest reports as skipped.
    static bool motorDisponible();

    // The database itself, with the program's schema (migrar) or empty.
    Database& db() { return *db_; }
    // Another connection to the same database, as a second workstation would open it.
    std::unique_ptr<Database> otraConexion() const;
    // SQLite file path or PostgreSQL connection string of this database.
    const QString& origen() const { return origen_; }
    QString carpeta() const { return dir_.path(); }

private:
    QTemporaryDir dir_;
    QString origen_;
    QString nombrePg_;
    std::unique_ptr<Database> db_;
};

// main() for tests on a database (Aplicacion: QCoreApplication, or QApplication for windows):
// skips (77) when the engine is not available.
#define PMX_TEST_MAIN(Aplicacion, Clase)                                                                     \
    int main(int argc, char** argv) {                                                                        \
        Aplicacion app(argc, argv);                                                                          \
        if (!TestDb::motorDisponible()) return 77;                                                           \
        Clase prueba;                                                                                        \
        return QTest::qExec(&prueba, argc, argv);                                                            \
    }
#define PMX_STORE_TEST_MAIN(Clase) PMX_TEST_MAIN(QCoreApplication, Clase)
