// The automatic copy of a live SQLite database, taken while another connection writes.
#include "data/ajustes.h"
#include "data/copia_automatica.h"
#include "data/esquema.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

class TestCopiaAutomatica : public QObject {
    Q_OBJECT
private slots:
    void copiaConsistenteDeUnaBaseEnUso() {
        QTemporaryDir dir;
        const QString bd = dir.filePath(u"Pramelvix.mdb"_s);
        auto db = Database::abrirSQLite(bd, true);
        migrarEsquema(*db);
        Ajustes a(*db);
        for (int i = 0; i < 200; ++i)
            a.escribir(u"CLAVE %1"_s.arg(i), QString::number(i));
        // A write transaction of another workstation is open while the copy runs: the copy
        // holds what was committed, not the pending change.
        auto otra = Database::abrirSQLite(bd);
        const QString copia = dir.filePath(u"CopiaAutomBD.MDB"_s);
        QVERIFY(copiarBaseDatos(*db, copia).isEmpty());
        {
            Transaction tx = otra->transaccion();
            Ajustes(*otra).escribir(u"PENDIENTE"_s, u"x"_s);
            QVERIFY(copiarBaseDatos(*db, copia).isEmpty());
            tx.rollback();
        }
        auto leida = Database::abrirSQLite(copia);
        QCOMPARE(leida->valor(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        QCOMPARE(Ajustes(*leida).leer(u"CLAVE 199"_s), u"199"_s);
        QCOMPARE(Ajustes(*leida).existe(u"PENDIENTE"_s), false);
        QVERIFY(!QFile::exists(copia + u".tmp"_s));
        // A copy that cannot be written leaves nothing behind.
        const QString destino = dir.filePath(u"no/existe/CopiaAutomBD.MDB"_s);
        QVERIFY(!copiarBaseDatos(*db, destino).isEmpty());
        QVERIFY(!QFile::exists(destino));
    }

    // Another workstation writing between every step makes SQLite start the copy again each
    // time: the copy gives up at its time limit, and the earlier copy is kept.
    void escriturasContinuasAgotanElLimite() {
        QTemporaryDir dir;
        const QString bd = dir.filePath(QStringLiteral("Pramelvix.mdb"));
        auto db = Database::abrirSQLite(bd, true);
        migrarEsquema(*db);
        const QString copia = dir.filePath(QStringLiteral("CopiaAutomBD.MDB"));
        QVERIFY(copiarBaseDatos(*db, copia).isEmpty());
        const qint64 tamanoAnterior = QFileInfo(copia).size();
        auto otra = Database::abrirSQLite(bd);
        int pasos = 0;
        QElapsedTimer reloj;
        reloj.start();
        const QString error = copiarBaseDatos(*db, copia, PasosCopia{1, 50, 0, 300}, [&] {
            Ajustes(*otra).escribir(QStringLiteral("PASO"), QString::number(++pasos));
        });
        QVERIFY(error.contains(QStringLiteral("se ha abandonado")));
        QVERIFY(pasos > 1);
        QVERIFY2(reloj.elapsed() < 3000, qPrintable(QString::number(reloj.elapsed())));
        QCOMPARE(QFileInfo(copia).size(), tamanoAnterior);
        QVERIFY(!QFile::exists(copia + QStringLiteral(".tmp")));
        // The connection waits as long as before for other workstations.
        QCOMPARE(db->valor(QStringLiteral("PRAGMA busy_timeout")).toInt(), 15000);
    }
};

QTEST_GUILESS_MAIN(TestCopiaAutomatica)
#include "test_copia_automatica.moc"
