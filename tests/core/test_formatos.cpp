#include "core/formatos.h"

#include <QtTest>

#include <limits>

using namespace Qt::StringLiterals;

class TestFormatos : public QObject {
    Q_OBJECT
private slots:
    void formatoFecha_data() {
        QTest::addColumn<QDate>("fecha");
        QTest::addColumn<QString>("esperado");
        QTest::addColumn<QString>("clave"); // formatoClaveFecha
        auto fila = [](const char* nombre, QDate a0, QString a1, QString a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        fila("dia y mes de una cifra", QDate(2024, 2, 5), "05/02/2024", "20240205");
        fila("fin de ano", QDate(1999, 12, 31), "31/12/1999", "19991231");
        fila("29 de febrero", QDate(2024, 2, 29), "29/02/2024", "20240229");
        fila("ano de tres cifras", QDate(987, 6, 7), "07/06/0987", "09870607");
        fila("ultimo ano", QDate(9999, 12, 31), "31/12/9999", "99991231");
        fila("invalida", QDate(), "", "");
        fila("ano 10000", QDate(10000, 1, 1), "", "");
        fila("ano negativo", QDate(-5, 1, 1), "", "");
    }

    void formatoFecha() {
        QFETCH(QDate, fecha);
        QFETCH(QString, esperado);
        QFETCH(QString, clave);
        QCOMPARE(::formatoFecha(fecha), esperado);
        QCOMPARE(::formatoClaveFecha(fecha), clave);
        if (esperado.isEmpty()) return;
        QCOMPARE(::leerFecha(esperado), std::optional<QDate>(fecha));
        QCOMPARE(::leerClaveFecha(clave), std::optional<QDate>(fecha));
    }

    void leerFecha_data() {
        QTest::addColumn<QString>("texto");
        QTest::addColumn<QDate>("esperado");
        auto fila = [](const char* nombre, QString a0, QDate a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("dia de una cifra", "1/02/2024", QDate(2024, 2, 1));
        fila("mes de una cifra", "01/2/2024", QDate(2024, 2, 1));
        fila("ambos de una cifra", "5/6/2023", QDate(2023, 6, 5));
        fila("blancos alrededor", "  05/06/2023 ", QDate(2023, 6, 5));
    }

    void leerFecha() {
        QFETCH(QString, texto);
        QFETCH(QDate, esperado);
        QCOMPARE(::leerFecha(texto), std::optional<QDate>(esperado));
    }

    void fechaIdaYVuelta() {
        // Every day of four centuries, including the leap-year rules of 1900 and 2000.
        for (QDate fecha(1850, 1, 1); fecha <= QDate(2250, 12, 31); fecha = fecha.addDays(1)) {
            const QString texto = ::formatoFecha(fecha);
            const std::optional<QDate> leida = ::leerFecha(texto);
            if (!leida || *leida != fecha) QFAIL(qPrintable(texto));
            const std::optional<QDate> clave = ::leerClaveFecha(::formatoClaveFecha(fecha));
            if (!clave || *clave != fecha) QFAIL(qPrintable(::formatoClaveFecha(fecha)));
        }
    }

    void formatoHora_data() {
        QTest::addColumn<QTime>("hora");
        QTest::addColumn<QString>("corta");
        QTest::addColumn<QString>("conSegundos");
        auto fila = [](const char* nombre, QTime a0, QString a1, QString a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        fila("medianoche", QTime(0, 0), "00:00", "00:00:00");
        fila("una cifra", QTime(9, 5, 7), "09:05", "09:05:07");
        fila("ultimo segundo", QTime(23, 59, 59), "23:59", "23:59:59");
        fila("milisegundos no cuentan", QTime(12, 30, 15, 999), "12:30", "12:30:15");
        fila("invalida", QTime(), "", "");
    }

    void formatoHora() {
        QFETCH(QTime, hora);
        QFETCH(QString, corta);
        QFETCH(QString, conSegundos);
        QCOMPARE(::formatoHora(hora), corta);
        QCOMPARE(::formatoHoraSegundos(hora), conSegundos);
        if (hora.isValid()) {
            // Round trip: the texts read back as the same time (to the minute / to the second).
            QCOMPARE(::leerHora(corta).value_or(QTime()), QTime(hora.hour(), hora.minute()));
            QCOMPARE(::leerHora(conSegundos).value_or(QTime()),
                     QTime(hora.hour(), hora.minute(), hora.second()));
        }
    }

    void leerHora_data() {
        QTest::addColumn<QString>("texto");
        QTest::addColumn<QTime>("esperado");
        auto fila = [](const char* nombre, QString a0, QTime a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("hh:mm", "10:30", QTime(10, 30));
        fila("hh:mm:ss", "10:30:45", QTime(10, 30, 45));
        fila("hora de una cifra", "9:05", QTime(9, 5));
        fila("hora de una cifra con segundos", "9:05:01", QTime(9, 5, 1));
        fila("blancos alrededor", " 23:59 ", QTime(23, 59));
    }

    void leerHora() {
        QFETCH(QString, texto);
        QFETCH(QTime, esperado);
        QCOMPARE(::leerHora(texto), std::optional<QTime>(esperado));
    }

    void formatoImporte_data() {
        QTest::addColumn<double>("importe");
        QTest::addColumn<QString>("esperado");
        auto fila = [](const char* nombre, double a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("cero", 0.0, "0,00");
        fila("menos cero", -0.0, "0,00");
        fila("casi cero negativo", -0.004, "0,00");
        fila("-0,5", -0.5, "-0,50");
        fila("un decimal", 12.5, "12,50");
        fila("999,99", 999.99, "999,99");
        fila("mil", 1000.0, "1.000,00");
        fila("millones", 1234567.5, "1.234.567,50");
        fila("negativo con miles", -1234567.891, "-1.234.567,89");
        fila("redondeo que sube de grupo", 999999.996, "1.000.000,00");
        fila("999999,995 queda debajo", 999999.995, "999.999,99"); // 999999.99499999999534...
        fila("2,675 redondea abajo", 2.675, "2,67");
        fila("0,125 empate par", 0.125, "0,12");
        fila("1234,565 redondea arriba", 1234.565, "1.234,57");
        fila("cien mil", 100000.0, "100.000,00");
        fila("grande", 1e15, "1.000.000.000.000.000,00");
        fila("nan", std::numeric_limits<double>::quiet_NaN(), "");
        fila("infinito", std::numeric_limits<double>::infinity(), "");
    }

    void formatoImporte() {
        QFETCH(double, importe);
        QFETCH(QString, esperado);
        QCOMPARE(::formatoImporte(importe), esperado);
        QCOMPARE(::formatoEuros(importe), esperado.isEmpty() ? QString() : esperado + u" €"_s);
    }

    void formatoEntero_data() {
        QTest::addColumn<qint64>("numero");
        QTest::addColumn<QString>("esperado");
        auto fila = [](const char* nombre, qint64 a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("cero", qint64(0), "0");
        fila("tres cifras", qint64(999), "999");
        fila("cuatro cifras", qint64(1000), "1.000");
        fila("millones", qint64(1234567), "1.234.567");
        fila("negativo", qint64(-1000), "-1.000");
        fila("negativo corto", qint64(-999), "-999");
        fila("maximo", std::numeric_limits<qint64>::max(), "9.223.372.036.854.775.807");
        fila("minimo", std::numeric_limits<qint64>::min(), "-9.223.372.036.854.775.808");
    }

    void formatoEntero() {
        QFETCH(qint64, numero);
        QFETCH(QString, esperado);
        QCOMPARE(::formatoEntero(numero), esperado);
    }

    void leerImporte_data() {
        QTest::addColumn<QString>("texto");
        QTest::addColumn<double>("esperado");
        auto fila = [](const char* nombre, QString a0, double a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("con miles", "1.234,56", 1234.56);
        fila("sin miles", "1234,56", 1234.56);
        fila("entero", "1234", 1234.0);
        fila("negativo", "-3,5", -3.5);
        fila("blancos alrededor", " 12,5 ", 12.5);
        fila("solo miles", "1.234", 1234.0);
        fila("millones", "1.234.567,89", 1234567.89);
        fila("negativo con miles", "-1.000", -1000.0);
        fila("cero", "0", 0.0);
        fila("menos cero", "-0,00", 0.0);
        fila("cero a la izquierda", "0,5", 0.5);
        fila("muchos decimales", "2,675", 2.675);
        fila("ceros delante sin miles", "007", 7.0);
    }

    void leerImporte() {
        QFETCH(QString, texto);
        QFETCH(double, esperado);
        const std::optional<double> leido = ::leerImporte(texto);
        QVERIFY(leido.has_value());
        // Exact: the nearest double to the decimal text.
        QVERIFY2(*leido == esperado, qPrintable(QString::number(*leido, 'g', 17)));
        QVERIFY(!std::signbit(*leido) || esperado < 0);
    }

    void importeIdaYVuelta() {
        // Every cent from -2.000,00 to 2.000,00 plus large amounts: the text reads back as the
        // same rounded amount.
        QList<double> importes;
        for (qint64 centimos = -200000; centimos <= 200000; ++centimos)
            importes.append(centimos / 100.0);
        for (double grande : {1e9 + 0.01, 98765432.1, -4503599627.37, 1e13 + 0.99})
            importes.append(grande);
        for (double importe : importes) {
            const QString texto = ::formatoImporte(importe);
            const std::optional<double> leido = ::leerImporte(texto);
            if (!leido || *leido != importe) QFAIL(qPrintable(texto));
        }
    }

    // Each reader reads nothing from these texts (and does not throw).
    void textosRechazados() {
        const QStringList fechas = {
            // Days that do not exist (1900 was not a leap year), month 13, day, month or year 0.
            u"31/02/2024"_s, u"29/02/2023"_s, u"29/02/1900"_s, u"12/13/2024"_s, u"00/01/2024"_s,
            u"01/00/2024"_s, u"01/01/0000"_s, u""_s, u"   "_s, u"ab/cd/efgh"_s, u"01/ene/2024"_s,
            // Years of two, three and five digits, a day of three.
            u"01/02/24"_s, u"01/02/024"_s, u"01/02/02024"_s, u"001/02/2024"_s, u"01-02-2024"_s,
            u"01.02.2024"_s, u"01/02"_s, u"01/02/2024/5"_s, u"01/02/2024/"_s, u"01//2024"_s, u"+1/02/2024"_s,
            u"01/ 2/2024"_s, u"01/02/2024 10:00"_s, u"٠١/٠٢/٢٠٢٤"_s /* Arabic-Indic digits */};
        for (const QString& t : fechas)
            QVERIFY2(!::leerFecha(t), qPrintable(t));
        const QStringList horas = {u"24:00"_s,  u"10:60"_s, u"10:00:60"_s, u"10:5"_s,        u"10:05:5"_s,
                                   u"010:05"_s, u"10"_s,    u"10:05:"_s,   u"10:05:00:00"_s, u"10.05"_s,
                                   u"aa:bb"_s,  u""_s,      u"-1:00"_s,    u"10:05 PM"_s};
        for (const QString& t : horas)
            QVERIFY2(!::leerHora(t), qPrintable(t));
        const QStringList importes = {
            u""_s, u"   "_s, u"abc"_s, u"12,3,4"_s, u"1,2.3"_s,
            // Thousands groups of two or four digits, a first group of four or starting with 0.
            u"1.23,4"_s, u"1.2345"_s, u"1234.567"_s, u"1.5"_s, u"0.123"_s, u"1."_s, u".123"_s, u"1..234"_s,
            u",5"_s, u"5,"_s, u"-"_s, u"--5"_s, u"+5"_s, u"5-"_s, u"- 5"_s, u"1 234"_s, u"1e5"_s, u"5 €"_s,
            u"inf"_s, u"nan"_s, QString(400, u'9') /* too large */};
        for (const QString& t : importes)
            QVERIFY2(!::leerImporte(t), qPrintable(t));
        for (const QString& t :
             {u"20240230"_s, u"2024037"_s, u"202403071"_s, u"2024/3/7"_s, u"00000101"_s, u""_s})
            QVERIFY2(!::leerClaveFecha(t), qPrintable(t));
    }
};

QTEST_GUILESS_MAIN(TestFormatos)
#include "test_formatos.moc"
