#include "core/concordancia.h"
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
        fila("ano de tres cifras", QDate(987, 6, 7), "07/06/0987", "09870607");
        fila("ultimo ano", QDate(9999, 12, 31), "31/12/9999", "99991231");
        fila("invalida", QDate(), "", "");
        fila("ano 10000", QDate(10000, 1, 1), "", "");
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

    void fechaIdaYVuelta() {
        // Every day of four centuries, including the leap-year rules of 1900 and 2000.
        for (QDate fecha(1850, 1, 1); fecha <= QDate(2250, 12, 31); fecha = fecha.addDays(1)) {
            if (::leerFecha(::formatoFecha(fecha)) != fecha) QFAIL(qPrintable(::formatoFecha(fecha)));
            if (::leerClaveFecha(::formatoClaveFecha(fecha)) != fecha)
                QFAIL(qPrintable(::formatoClaveFecha(fecha)));
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
    }

    void formatoImporte() {
        const std::pair<double, QString> casos[] = {
            {-0.0, u"0,00"_s},
            {-0.004, u"0,00"_s},
            {-0.5, u"-0,50"_s},
            {999.99, u"999,99"_s},
            {1000.0, u"1.000,00"_s},
            {-1234567.891, u"-1.234.567,89"_s},
            {999999.996, u"1.000.000,00"_s}, // rounding adds a group
            {999999.995, u"999.999,99"_s},   // 999999.99499999999534...
            {2.675, u"2,67"_s},
            {0.125, u"0,12"_s}, // tie to even
            {1234.565, u"1.234,57"_s},
            {1e15, u"1.000.000.000.000.000,00"_s},
            {std::numeric_limits<double>::quiet_NaN(), QString()},
        };
        for (const auto& [importe, texto] : casos) {
            const QString caso = QString::number(importe, 'g', 17);
            QVERIFY2(::formatoImporte(importe) == texto, qPrintable(caso));
            QVERIFY2(::formatoEuros(importe) == (texto.isEmpty() ? QString() : texto + u" €"_s),
                     qPrintable(caso));
        }
    }

    void formatoEntero() {
        const std::pair<qint64, QString> casos[] = {
            {0, u"0"_s},
            {999, u"999"_s},
            {1000, u"1.000"_s},
            {-999, u"-999"_s},
            {-1000, u"-1.000"_s},
            {std::numeric_limits<qint64>::max(), u"9.223.372.036.854.775.807"_s},
            {std::numeric_limits<qint64>::min(), u"-9.223.372.036.854.775.808"_s},
        };
        for (const auto& [numero, texto] : casos)
            QVERIFY2(::formatoEntero(numero) == texto, qPrintable(texto));
    }

    // Texts the readers accept beyond what the formatters write.
    void textosAceptados() {
        const std::pair<QString, QDate> fechas[] = {
            {u"1/02/2024"_s, QDate(2024, 2, 1)},
            {u"01/2/2024"_s, QDate(2024, 2, 1)},
            {u"  05/06/2023 "_s, QDate(2023, 6, 5)},
        };
        for (const auto& [texto, fecha] : fechas)
            QVERIFY2(::leerFecha(texto) == fecha, qPrintable(texto));
        const std::pair<QString, QTime> horas[] = {
            {u"00:00:00"_s, QTime(0, 0)},
            {u"9:05"_s, QTime(9, 5)},
            {u"9:05:01"_s, QTime(9, 5, 1)},
            {u" 23:59 "_s, QTime(23, 59)},
        };
        for (const auto& [texto, hora] : horas)
            QVERIFY2(::leerHora(texto) == hora, qPrintable(texto));
        const std::pair<QString, double> importes[] = {
            {u"1.234,56"_s, 1234.56}, {u"1234,56"_s, 1234.56}, {u"1234"_s, 1234.0},
            {u" 12,5 "_s, 12.5},      {u"-1.000"_s, -1000.0},  {u"-0,00"_s, 0.0},
            {u"0,5"_s, 0.5},          {u"2,675"_s, 2.675},     {u"007"_s, 7.0},
        };
        for (const auto& [texto, importe] : importes) {
            // Exact: the nearest double to the decimal text; "-0,00" reads as zero without sign.
            const std::optional<double> leido = ::leerImporte(texto);
            QVERIFY2(leido && *leido == importe && std::signbit(*leido) == (importe < 0), qPrintable(texto));
        }
    }

    void importeIdaYVuelta() {
        // Every cent from -2.000,00 to 2.000,00 plus large amounts: the text reads back as the
        // same rounded amount.
        QList<double> importes;
        for (qint64 centimos = -200000; centimos <= 200000; ++centimos)
            importes.append(centimos / 100.0);
        for (double grande : {1e9 + 0.01, 98765432.1, -4503599627.37, 1e13 + 0.99})
            importes.append(grande);
        for (double importe : importes)
            if (::leerImporte(::formatoImporte(importe)) != importe)
                QFAIL(qPrintable(::formatoImporte(importe)));
    }

    // Each reader reads nothing from these texts (and does not throw).
    void textosRechazados() {
        const QStringList fechas = {
            // Days that do not exist (1900 was not a leap year), month 13, day, month or year 0.
            u"31/02/2024"_s, u"29/02/2023"_s, u"29/02/1900"_s, u"12/13/2024"_s, u"00/01/2024"_s,
            u"01/00/2024"_s, u"01/01/0000"_s, u""_s, u"   "_s, u"ab/cd/efgh"_s,
            // Years of two, three and five digits, a day of three.
            u"01/02/24"_s, u"01/02/024"_s, u"01/02/02024"_s, u"001/02/2024"_s, u"01-02-2024"_s, u"01/02"_s,
            u"01/02/2024/5"_s, u"01//2024"_s, u"+1/02/2024"_s, u"01/ 2/2024"_s, u"01/02/2024 10:00"_s,
            u"٠١/٠٢/٢٠٢٤"_s /* Arabic-Indic digits */};
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
            u"1.23,4"_s, u"1.2345"_s, u"1234.567"_s, u"0.123"_s, u"1."_s, u".123"_s, u"1..234"_s, u",5"_s,
            u"5,"_s, u"-"_s, u"--5"_s, u"+5"_s, u"1 234"_s, u"1e5"_s, u"5 €"_s, u"inf"_s, u"nan"_s,
            QString(400, u'9') /* too large */};
        for (const QString& t : importes)
            QVERIFY2(!::leerImporte(t), qPrintable(t));
        for (const QString& t :
             {u"20240230"_s, u"2024037"_s, u"202403071"_s, u"2024/3/7"_s, u"00000101"_s, u""_s})
            QVERIFY2(!::leerClaveFecha(t), qPrintable(t));
    }

    // Messages agree with the class of a record, by its first word.
    void concordanciaDeLaClase() {
        const QList<std::pair<QString, QString>> casos = {
            {u"Cliente"_s, u"este lo o él"_s},       {u"Mascota"_s, u"esta la a ella"_s},
            {u"Idioma"_s, u"este lo o él"_s},        {u"Especie"_s, u"esta la a ella"_s},
            {u"Condición Corporal"_s, u"esta la a ella"_s}, {u"Especialidad"_s, u"esta la a ella"_s},
            {u"Plan de Salud"_s, u"este lo o él"_s}, {u"Forma de Pago"_s, u"esta la a ella"_s}};
        for (const auto& [clase, palabras] : casos) {
            const Concordancia c = concordancia(clase);
            QVERIFY2(QStringList({c.este, c.lo, c.o, c.el}).join(u' ') == palabras, qPrintable(clase));
        }
    }
};

QTEST_GUILESS_MAIN(TestFormatos)
#include "test_formatos.moc"
