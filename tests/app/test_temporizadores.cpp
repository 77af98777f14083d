// The rules behind the main window's timers, with a fixed clock.
#include "app/chat.h"
#include "app/menu_principal.h"
#include "app/temporizadores.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestTemporizadores : public QObject {
    Q_OBJECT
private slots:
    void agenda_data() {
        QTest::addColumn<QDateTime>("ahora");
        QTest::addColumn<bool>("toca");
        QTest::addColumn<QString>("fecha");
        QTest::addColumn<QString>("hora");
        auto fila = [](const char* nombre, QDateTime a0, bool a1, QString a2, QString a3) {
            QTest::newRow(nombre) << a0 << a1 << a2 << a3;
        };
        const QDate d(2026, 3, 9);
        fila("10:04 nada", QDateTime(d, QTime(10, 4, 59)), false, QString(), QString());
        fila("10:05", QDateTime(d, QTime(10, 5, 0)), true, u"09/03/2026"_s, u"10:05"_s);
        fila("10:05 con segundos", QDateTime(d, QTime(10, 5, 42)), true, u"09/03/2026"_s, u"10:05"_s);
        fila("medianoche", QDateTime(d, QTime(0, 0)), true, u"09/03/2026"_s, u"00:00"_s);
        fila("23:55", QDateTime(QDate(2026, 12, 31), QTime(23, 55)), true, u"31/12/2026"_s, u"23:55"_s);
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
        auto fila = [](const char* nombre, QString a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("normal", u"/srv/pramelvix/datos/Pramelvix.mdb"_s, u"/srv/pramelvix/datos/CopiaAutomBD.MDB"_s);
        // A database picked by hand under another name still gets its copy beside it.
        fila("otro nombre", u"/home/ana/Copia.mdb"_s, u"/home/ana/CopiaAutomBD.MDB"_s);
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
        auto fila = [](const char* nombre, QString a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("dígitos", u"8412345678905"_s, u"8412345678905"_s);
        fila("todos los especiales", u"+^%~()[]{}"_s, u"{+}{^}{%}{~}{(}{)}{[}{]}{{}{}}"_s);
        fila("mezcla", u"A+B(1)"_s, u"A{+}B{(}1{)}"_s);
        fila("otros signos", u"A-B/C.D*E"_s, u"A-B/C.D*E"_s);
        fila("vacío", QString(), QString());
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
        auto fila = [](const char* nombre, QString a0, QDate a1, bool a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        const QDate hoy(2026, 11, 23);
        fila("0 nunca", u"0"_s, hoy.addDays(-400), false);
        fila("vacío nunca", QString(), hoy.addDays(-400), false);
        fila("no numérico", u"siete"_s, hoy.addDays(-400), false);
        fila("negativo", u"-3"_s, hoy.addDays(-400), false);
        fila("antes de plazo", u"7"_s, hoy.addDays(-6), false);
        fila("justo el plazo", u"7"_s, hoy.addDays(-7), true);
        fila("pasado el plazo", u"7"_s, hoy.addDays(-30), true);
        fila("sin fecha anterior", u"7"_s, QDate(), true);
    }
    void compactacion() {
        QFETCH(QString, dias);
        QFETCH(QDate, ultima);
        QFETCH(bool, toca);
        const std::optional<QDate> u = ultima.isValid() ? std::optional<QDate>(ultima) : std::nullopt;
        QCOMPARE(tocaCompactacion(dias, u, QDate(2026, 11, 23)), toca);
    }

    void autoGuardado() {
        QCOMPARE(textoAutoGuardado(0), u"AutoGuardado DESACTIVADO"_s);
        QCOMPARE(textoAutoGuardado(-5), u"AutoGuardado DESACTIVADO"_s);
        QCOMPARE(textoAutoGuardado(10), u"AutoGuardado ACTIVADO cada 10 minutos"_s);
    }

    void datagramasDelChat() {
        const auto bueno =
            leerDatagramaChat(datagramaChat({u"RECEPCION"_s, u"ana"_s, u"¿Pasa el siguiente?\tgracias"_s}));
        // A tab inside the text would break the form: only three fields are accepted.
        QVERIFY(!bueno.mensaje);
        QCOMPARE(bueno.numero, 3);
        const auto ok =
            leerDatagramaChat(datagramaChat({u"RECEPCION"_s, u"ana"_s, u"¿Pasa el siguiente?"_s}));
        QVERIFY(ok.mensaje);
        QCOMPARE(ok.mensaje->texto, u"¿Pasa el siguiente?"_s);
        QCOMPARE(ok.mensaje->puesto, u"RECEPCION"_s);
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
