// The rules behind the main window's timers, with a fixed clock.
#include "app/chat.h"
#include "app/menu_principal.h"
#include "app/temporizadores.h"

#include <QtTest>

class TestTemporizadores : public QObject {
    Q_OBJECT
private slots:
    void agenda_data() {
        QTest::addColumn<QDateTime>("ahora");
        QTest::addColumn<bool>("toca");
        QTest::addColumn<QString>("fecha");
        QTest::addColumn<QString>("hora");
        const QDate d(2026, 3, 9);
        QTest::newRow("10:04 nada") << QDateTime(d, QTime(10, 4, 59)) << false << QString() << QString();
        QTest::newRow("10:05") << QDateTime(d, QTime(10, 5, 0)) << true << QStringLiteral("09/03/2026")
                               << QStringLiteral("10:05");
        QTest::newRow("10:05 con segundos") << QDateTime(d, QTime(10, 5, 42)) << true
                                            << QStringLiteral("09/03/2026") << QStringLiteral("10:05");
        QTest::newRow("medianoche") << QDateTime(d, QTime(0, 0)) << true << QStringLiteral("09/03/2026")
                                    << QStringLiteral("00:00");
        QTest::newRow("23:55") << QDateTime(QDate(2026, 12, 31), QTime(23, 55)) << true
                               << QStringLiteral("31/12/2026") << QStringLiteral("23:55");
        QTest::newRow("10:50") << QDateTime(d, QTime(10, 50)) << true << QStringLiteral("09/03/2026")
                               << QStringLiteral("10:50");
        QTest::newRow("10:51") << QDateTime(d, QTime(10, 51)) << false << QString() << QString();
        QTest::newRow("10:15 no 10:16") << QDateTime(d, QTime(10, 16)) << false << QString() << QString();
    }
    void agenda() {
        QFETCH(QDateTime, ahora);
        QFETCH(bool, toca);
        QFETCH(QString, fecha);
        QFETCH(QString, hora);
        const auto m = comprobacionAgenda(ahora);
        QCOMPARE(m.has_value(), toca);
        if (m) {
            QCOMPARE(m->fecha, fecha);
            QCOMPARE(m->hora, hora);
        }
    }

    void rutaCopia_data() {
        QTest::addColumn<QString>("bd");
        QTest::addColumn<QString>("copia");
        QTest::newRow("normal") << QStringLiteral("/srv/pramelvix/datos/Pramelvix.mdb")
                                << QStringLiteral("/srv/pramelvix/datos/CopiaAutomBD.MDB");
        QTest::newRow("minúsculas") << QStringLiteral("/srv/clinica/datos/pramelvix.mdb")
                                    << QStringLiteral("/srv/clinica/datos/CopiaAutomBD.MDB");
        QTest::newRow("mayúsculas") << QStringLiteral("/SRV/DATOS/PRAMELVIX.MDB")
                                    << QStringLiteral("/SRV/DATOS/CopiaAutomBD.MDB");
        // A database picked by hand under another name still gets its copy beside it.
        QTest::newRow("otro nombre") << QStringLiteral("/home/ana/Copia.mdb")
                                     << QStringLiteral("/home/ana/CopiaAutomBD.MDB");
    }
    void rutaCopia() {
        QFETCH(QString, bd);
        QFETCH(QString, copia);
        QCOMPARE(rutaCopiaAutomatica(bd), copia);
    }

    void copiaDiaria() {
        const QDate hoy(2026, 5, 4);
        const QTime hora(13, 30);
        QVERIFY(!tocaCopiaAutomatica(std::nullopt, QDateTime(hoy, QTime(14, 0)), std::nullopt));
        QVERIFY(!tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(13, 29)), std::nullopt));
        QVERIFY(tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(13, 30)), std::nullopt));
        QVERIFY(tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(18, 0)), hoy.addDays(-1)));
        QVERIFY(!tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(18, 0)), hoy));
        // Next day, before the hour: not yet.
        QVERIFY(!tocaCopiaAutomatica(hora, QDateTime(hoy.addDays(1), QTime(9, 0)), hoy));
    }

    void codigoBarras_data() {
        QTest::addColumn<QString>("leido");
        QTest::addColumn<QString>("secuencia");
        QTest::newRow("dígitos") << QStringLiteral("8412345678905") << QStringLiteral("8412345678905");
        QTest::newRow("todos los especiales")
            << QStringLiteral("+^%~()[]{}") << QStringLiteral("{+}{^}{%}{~}{(}{)}{[}{]}{{}{}}");
        QTest::newRow("mezcla") << QStringLiteral("A+B(1)") << QStringLiteral("A{+}B{(}1{)}");
        QTest::newRow("otros signos") << QStringLiteral("A-B/C.D*E") << QStringLiteral("A-B/C.D*E");
        QTest::newRow("vacío") << QString() << QString();
    }
    void codigoBarras() {
        QFETCH(QString, leido);
        QFETCH(QString, secuencia);
        QCOMPARE(secuenciaTeclasCodigoBarras(leido), secuencia);
        // What the keystrokes type is what the reader read.
        QCOMPARE(textoDeSecuenciaTeclas(secuencia), leido);
    }

    void compactacion_data() {
        QTest::addColumn<QString>("dias");
        QTest::addColumn<QDate>("ultima");
        QTest::addColumn<bool>("toca");
        const QDate hoy(2026, 11, 23);
        QTest::newRow("0 nunca") << QStringLiteral("0") << hoy.addDays(-400) << false;
        QTest::newRow("vacío nunca") << QString() << hoy.addDays(-400) << false;
        QTest::newRow("no numérico") << QStringLiteral("siete") << hoy.addDays(-400) << false;
        QTest::newRow("negativo") << QStringLiteral("-3") << hoy.addDays(-400) << false;
        QTest::newRow("antes de plazo") << QStringLiteral("7") << hoy.addDays(-6) << false;
        QTest::newRow("justo el plazo") << QStringLiteral("7") << hoy.addDays(-7) << true;
        QTest::newRow("pasado el plazo") << QStringLiteral("7") << hoy.addDays(-30) << true;
        QTest::newRow("sin fecha anterior") << QStringLiteral("7") << QDate() << true;
    }
    void compactacion() {
        QFETCH(QString, dias);
        QFETCH(QDate, ultima);
        QFETCH(bool, toca);
        const std::optional<QDate> u = ultima.isValid() ? std::optional<QDate>(ultima) : std::nullopt;
        QCOMPARE(tocaCompactacion(dias, u, QDate(2026, 11, 23)), toca);
    }

    void autoGuardado() {
        QCOMPARE(textoAutoGuardado(0), QStringLiteral("AutoGuardado DESACTIVADO"));
        QCOMPARE(textoAutoGuardado(-5), QStringLiteral("AutoGuardado DESACTIVADO"));
        QCOMPARE(textoAutoGuardado(10), QStringLiteral("AutoGuardado ACTIVADO cada 10 minutos"));
    }

    void datagramasDelChat() {
        const auto bueno =
            leerDatagramaChat(datagramaChat({QStringLiteral("RECEPCION"), QStringLiteral("ana"),
                                             QStringLiteral("¿Pasa el siguiente?\tgracias")}));
        // A tab inside the text would break the form: only three fields are accepted.
        QVERIFY(!bueno.mensaje);
        QCOMPARE(bueno.numero, 3);
        const auto ok = leerDatagramaChat(datagramaChat(
            {QStringLiteral("RECEPCION"), QStringLiteral("ana"), QStringLiteral("¿Pasa el siguiente?")}));
        QVERIFY(ok.mensaje);
        QCOMPARE(ok.mensaje->texto, QStringLiteral("¿Pasa el siguiente?"));
        QCOMPARE(ok.mensaje->puesto, QStringLiteral("RECEPCION"));
        QCOMPARE(leerDatagramaChat(QByteArray("\xff\xfe\x00", 3)).numero, 2);
        QCOMPARE(leerDatagramaChat(QByteArray(5000, 'a')).numero, 1);
        QCOMPARE(leerDatagramaChat(QByteArray("\tana\thola")).numero, 3);
    }

    void permisosDeLosMenus() {
        // Before login only the session and window commands are there.
        QVERIFY(comandoVisible(Permiso::Siempre, false, false, false));
        QVERIFY(!comandoVisible(Permiso::Identificado, false, false, false));
        QVERIFY(comandoVisible(Permiso::Identificado, true, false, false));
        QVERIFY(!comandoVisible(Permiso::Administrador, true, false, false));
        QVERIFY(comandoVisible(Permiso::Administrador, true, true, false));
        QVERIFY(comandoVisible(Permiso::Contabilidad, true, false, false));
        QVERIFY(!comandoVisible(Permiso::Contabilidad, true, false, true));
        QVERIFY(comandoVisible(Permiso::Contabilidad, true, true, true));
        QVERIFY(!comandoVisible(Permiso::Contabilidad, false, true, false));
        // The administrator's entries are governed by the user type.
        QStringList soloAdmin;
        for (const auto& c : comandosMenu())
            if (c.permiso == Permiso::Administrador) soloAdmin << c.nombre;
        for (const char* n : {"mnuCierreCaja", "mnuCierresAnt", "mnuCajaEntreFechas", "mnuMttoCosteSalarial",
                              "mnuInfGestion", "mnuAdministrar", "mnuImportarDatos"})
            QVERIFY2(soloAdmin.contains(QString::fromLatin1(n)), n);
        // Every command name is unique.
        QStringList nombres;
        for (const auto& c : comandosMenu()) {
            QVERIFY2(!nombres.contains(c.nombre), qPrintable(c.nombre));
            nombres << c.nombre;
        }
    }
};

QTEST_GUILESS_MAIN(TestTemporizadores)
#include "test_temporizadores.moc"
