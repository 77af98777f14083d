// The rules behind the main window's timers, with a fixed clock.
#include "app/chat.h"
#include "app/menu_principal.h"
#include "app/temporizadores.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestTemporizadores : public QObject {
    Q_OBJECT
private slots:
    // Every five minutes on the clock, seconds aside.
    void agenda() {
        const QDate d(2026, 3, 9);
        QVERIFY(!comprobacionAgenda(QDateTime(d, QTime(10, 4, 59))));
        for (const auto& [hora, texto] :
             {std::pair{QTime(10, 5, 42), u"10:05"_s}, std::pair{QTime(0, 0), u"00:00"_s}}) {
            const auto m = comprobacionAgenda(QDateTime(d, hora));
            QVERIFY2(m && m->fecha == u"09/03/2026"_s && m->hora == texto, qPrintable(texto));
        }
    }

    void copiaDiaria() {
        const QDate hoy(2026, 5, 4);
        const QTime hora(13, 30);
        QVERIFY(!tocaCopiaAutomatica(std::nullopt, QDateTime(hoy, QTime(14, 0)), std::nullopt));
        QVERIFY(!tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(13, 29)), std::nullopt));
        QVERIFY(tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(13, 30)), std::nullopt));
        QVERIFY(!tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(18, 0)), hoy));
        // Next day, before the hour: not yet.
        QVERIFY(!tocaCopiaAutomatica(hora, QDateTime(hoy.addDays(1), QTime(9, 0)), hoy));
    }

    void codigoBarras() {
        const std::pair<QString, QString> casos[] = {
            {u"+^%~()[]{}"_s, u"{+}{^}{%}{~}{(}{)}{[}{]}{{}{}}"_s},
            {u"A-B/C.D*E"_s, u"A-B/C.D*E"_s},
            {QString(), QString()},
        };
        for (const auto& [leido, secuencia] : casos) {
            QVERIFY2(secuenciaTeclasCodigoBarras(leido) == secuencia, qPrintable(leido));
            // What the keystrokes type is what the reader read.
            QVERIFY2(textoDeSecuenciaTeclas(secuencia) == leido, qPrintable(leido));
        }
    }

    void compactacion() {
        const QDate hoy(2026, 11, 23);
        const struct {
            QString dias;
            std::optional<QDate> ultima;
            bool toca;
        } casos[] = {
            {u"0"_s, hoy.addDays(-400), false}, {QString(), hoy.addDays(-400), false},
            {u"-3"_s, hoy.addDays(-400), false}, {u"7"_s, hoy.addDays(-6), false},
            {u"7"_s, hoy.addDays(-7), true},     {u"7"_s, std::nullopt, true},
        };
        for (const auto& c : casos)
            QVERIFY2(tocaCompactacion(c.dias, c.ultima, hoy) == c.toca, qPrintable(c.dias));
    }

    void autoGuardado() {
        QCOMPARE(textoAutoGuardado(0), u"AutoGuardado DESACTIVADO"_s);
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
        QCOMPARE(leerDatagramaChat(QByteArray("\xff\xfe\x00", 3)).numero, 2);
        QCOMPARE(leerDatagramaChat(QByteArray(5000, 'a')).numero, 1);
        QCOMPARE(leerDatagramaChat(QByteArray("\tana\thola")).numero, 3);
    }

    void permisosDeLosMenus() {
        // Before login only the session and window commands are there.
        QVERIFY(comandoVisible(Permiso::Siempre, false, false, false));
        QVERIFY(!comandoVisible(Permiso::Identificado, false, false, false));
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
        for (const char* n : {"mnuCierreCaja", "mnuMttoCosteSalarial", "mnuAdministrar"})
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
