#include "core/formatos.h"

#include <QtTest>

#include <limits>

class TestFormatos : public QObject {
    Q_OBJECT
private slots:
    void formatoFecha_data();
    void formatoFecha();
    void leerFecha_data();
    void leerFecha();
    void fechaIdaYVuelta();

    void formatoHora_data();
    void formatoHora();
    void leerHora_data();
    void leerHora();

    void formatoImporte_data();
    void formatoImporte();
    void formatoEuros();
    void formatoEntero_data();
    void formatoEntero();
    void leerImporte_data();
    void leerImporte();
    void importeIdaYVuelta();

    void claveFecha_data();
    void claveFecha();
    void leerClaveFecha_data();
    void leerClaveFecha();
};

void TestFormatos::formatoFecha_data() {
    QTest::addColumn<QDate>("fecha");
    QTest::addColumn<QString>("esperado");
    QTest::newRow("dia y mes de una cifra") << QDate(2024, 2, 5) << "05/02/2024";
    QTest::newRow("fin de ano") << QDate(1999, 12, 31) << "31/12/1999";
    QTest::newRow("29 de febrero") << QDate(2024, 2, 29) << "29/02/2024";
    QTest::newRow("ano de tres cifras") << QDate(987, 6, 7) << "07/06/0987";
    QTest::newRow("ultimo ano") << QDate(9999, 12, 31) << "31/12/9999";
    QTest::newRow("invalida") << QDate() << "";
    QTest::newRow("ano 10000") << QDate(10000, 1, 1) << "";
    QTest::newRow("ano negativo") << QDate(-5, 1, 1) << "";
}

void TestFormatos::formatoFecha() {
    QFETCH(QDate, fecha);
    QFETCH(QString, esperado);
    QCOMPARE(::formatoFecha(fecha), esperado);
}

void TestFormatos::leerFecha_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QDate>("esperado"); // invalid: the text must be rejected
    QTest::newRow("completa") << "31/12/2024" << QDate(2024, 12, 31);
    QTest::newRow("dia de una cifra") << "1/02/2024" << QDate(2024, 2, 1);
    QTest::newRow("mes de una cifra") << "01/2/2024" << QDate(2024, 2, 1);
    QTest::newRow("ambos de una cifra") << "5/6/2023" << QDate(2023, 6, 5);
    QTest::newRow("blancos alrededor") << "  05/06/2023 " << QDate(2023, 6, 5);
    QTest::newRow("bisiesto") << "29/02/2024" << QDate(2024, 2, 29);
    QTest::newRow("ano 0987") << "07/06/0987" << QDate(987, 6, 7);
    QTest::newRow("31 de febrero") << "31/02/2024" << QDate();
    QTest::newRow("29/02 no bisiesto") << "29/02/2023" << QDate();
    QTest::newRow("29/02/1900") << "29/02/1900" << QDate();
    QTest::newRow("mes 13") << "12/13/2024" << QDate();
    QTest::newRow("dia 0") << "00/01/2024" << QDate();
    QTest::newRow("mes 0") << "01/00/2024" << QDate();
    QTest::newRow("ano 0000") << "01/01/0000" << QDate();
    QTest::newRow("vacia") << "" << QDate();
    QTest::newRow("blancos") << "   " << QDate();
    QTest::newRow("letras") << "ab/cd/efgh" << QDate();
    QTest::newRow("mes en letras") << "01/ene/2024" << QDate();
    QTest::newRow("ano de dos cifras") << "01/02/24" << QDate();
    QTest::newRow("ano de tres cifras") << "01/02/024" << QDate();
    QTest::newRow("ano de cinco cifras") << "01/02/02024" << QDate();
    QTest::newRow("dia de tres cifras") << "001/02/2024" << QDate();
    QTest::newRow("guiones") << "01-02-2024" << QDate();
    QTest::newRow("puntos") << "01.02.2024" << QDate();
    QTest::newRow("faltan partes") << "01/02" << QDate();
    QTest::newRow("sobran partes") << "01/02/2024/5" << QDate();
    QTest::newRow("barra final") << "01/02/2024/" << QDate();
    QTest::newRow("parte vacia") << "01//2024" << QDate();
    QTest::newRow("signo") << "+1/02/2024" << QDate();
    QTest::newRow("blanco dentro") << "01/ 2/2024" << QDate();
    QTest::newRow("hora detras") << "01/02/2024 10:00" << QDate();
    QTest::newRow("cifras arabigo-indicas") << QString::fromUtf8("٠١/٠٢/٢٠٢٤") << QDate();
}

void TestFormatos::leerFecha() {
    QFETCH(QString, texto);
    QFETCH(QDate, esperado);
    const std::optional<QDate> leida = ::leerFecha(texto);
    if (!esperado.isValid()) {
        QVERIFY2(!leida, qPrintable(QStringLiteral("aceptada como ") + leida.value_or(QDate()).toString()));
        return;
    }
    QVERIFY(leida.has_value());
    QCOMPARE(*leida, esperado);
}

void TestFormatos::fechaIdaYVuelta() {
    // Every day of four centuries, including the leap-year rules of 1900 and 2000.
    for (QDate fecha(1850, 1, 1); fecha <= QDate(2250, 12, 31); fecha = fecha.addDays(1)) {
        const QString texto = ::formatoFecha(fecha);
        const std::optional<QDate> leida = ::leerFecha(texto);
        if (!leida || *leida != fecha) QFAIL(qPrintable(texto));
        const std::optional<QDate> clave = ::leerClaveFecha(::formatoClaveFecha(fecha));
        if (!clave || *clave != fecha) QFAIL(qPrintable(::formatoClaveFecha(fecha)));
    }
}

void TestFormatos::formatoHora_data() {
    QTest::addColumn<QTime>("hora");
    QTest::addColumn<QString>("corta");
    QTest::addColumn<QString>("conSegundos");
    QTest::newRow("medianoche") << QTime(0, 0) << "00:00"
                                << "00:00:00";
    QTest::newRow("una cifra") << QTime(9, 5, 7) << "09:05"
                               << "09:05:07";
    QTest::newRow("ultimo segundo") << QTime(23, 59, 59) << "23:59"
                                    << "23:59:59";
    QTest::newRow("milisegundos no cuentan") << QTime(12, 30, 15, 999) << "12:30"
                                             << "12:30:15";
    QTest::newRow("invalida") << QTime() << ""
                              << "";
}

void TestFormatos::formatoHora() {
    QFETCH(QTime, hora);
    QFETCH(QString, corta);
    QFETCH(QString, conSegundos);
    QCOMPARE(::formatoHora(hora), corta);
    QCOMPARE(::formatoHoraSegundos(hora), conSegundos);
    if (hora.isValid()) {
        // Round trip: the texts read back as the same time (to the minute / to the second).
        QCOMPARE(::leerHora(corta).value_or(QTime()), QTime(hora.hour(), hora.minute()));
        QCOMPARE(::leerHora(conSegundos).value_or(QTime()), QTime(hora.hour(), hora.minute(), hora.second()));
    }
}

void TestFormatos::leerHora_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QTime>("esperado"); // invalid: the text must be rejected
    QTest::newRow("hh:mm") << "10:30" << QTime(10, 30);
    QTest::newRow("hh:mm:ss") << "10:30:45" << QTime(10, 30, 45);
    QTest::newRow("hora de una cifra") << "9:05" << QTime(9, 5);
    QTest::newRow("hora de una cifra con segundos") << "9:05:01" << QTime(9, 5, 1);
    QTest::newRow("blancos alrededor") << " 23:59 " << QTime(23, 59);
    QTest::newRow("medianoche") << "00:00:00" << QTime(0, 0);
    QTest::newRow("24:00") << "24:00" << QTime();
    QTest::newRow("10:60") << "10:60" << QTime();
    QTest::newRow("segundo 60") << "10:00:60" << QTime();
    QTest::newRow("minuto de una cifra") << "10:5" << QTime();
    QTest::newRow("segundo de una cifra") << "10:05:5" << QTime();
    QTest::newRow("hora de tres cifras") << "010:05" << QTime();
    QTest::newRow("sin minutos") << "10" << QTime();
    QTest::newRow("dos puntos al final") << "10:05:" << QTime();
    QTest::newRow("cuatro partes") << "10:05:00:00" << QTime();
    QTest::newRow("punto") << "10.05" << QTime();
    QTest::newRow("letras") << "aa:bb" << QTime();
    QTest::newRow("vacia") << "" << QTime();
    QTest::newRow("negativa") << "-1:00" << QTime();
    QTest::newRow("am/pm") << "10:05 PM" << QTime();
}

void TestFormatos::leerHora() {
    QFETCH(QString, texto);
    QFETCH(QTime, esperado);
    const std::optional<QTime> leida = ::leerHora(texto);
    if (!esperado.isValid()) {
        QVERIFY2(!leida, qPrintable(QStringLiteral("aceptada como ") + leida.value_or(QTime()).toString()));
        return;
    }
    QVERIFY(leida.has_value());
    QCOMPARE(*leida, esperado);
}

void TestFormatos::formatoImporte_data() {
    QTest::addColumn<double>("importe");
    QTest::addColumn<QString>("esperado");
    QTest::newRow("cero") << 0.0 << "0,00";
    QTest::newRow("menos cero") << -0.0 << "0,00";
    QTest::newRow("casi cero negativo") << -0.004 << "0,00";
    QTest::newRow("-0,5") << -0.5 << "-0,50";
    QTest::newRow("un decimal") << 12.5 << "12,50";
    QTest::newRow("999,99") << 999.99 << "999,99";
    QTest::newRow("mil") << 1000.0 << "1.000,00";
    QTest::newRow("millones") << 1234567.5 << "1.234.567,50";
    QTest::newRow("negativo con miles") << -1234567.891 << "-1.234.567,89";
    QTest::newRow("redondeo que sube de grupo") << 999999.996 << "1.000.000,00";
    QTest::newRow("999999,995 queda debajo") << 999999.995 << "999.999,99"; // 999999.99499999999534...
    QTest::newRow("2,675 redondea abajo") << 2.675 << "2,67";
    QTest::newRow("0,125 empate par") << 0.125 << "0,12";
    QTest::newRow("1234,565 redondea arriba") << 1234.565 << "1.234,57";
    QTest::newRow("cien mil") << 100000.0 << "100.000,00";
    QTest::newRow("grande") << 1e15 << "1.000.000.000.000.000,00";
    QTest::newRow("nan") << std::numeric_limits<double>::quiet_NaN() << "";
    QTest::newRow("infinito") << std::numeric_limits<double>::infinity() << "";
}

void TestFormatos::formatoImporte() {
    QFETCH(double, importe);
    QFETCH(QString, esperado);
    QCOMPARE(::formatoImporte(importe), esperado);
}

void TestFormatos::formatoEuros() {
    QCOMPARE(::formatoEuros(1234.5), QString::fromUtf8("1.234,50 €"));
    QCOMPARE(::formatoEuros(-3.0), QString::fromUtf8("-3,00 €"));
    QCOMPARE(::formatoEuros(std::numeric_limits<double>::quiet_NaN()), QString());
}

void TestFormatos::formatoEntero_data() {
    QTest::addColumn<qint64>("numero");
    QTest::addColumn<QString>("esperado");
    QTest::newRow("cero") << qint64(0) << "0";
    QTest::newRow("tres cifras") << qint64(999) << "999";
    QTest::newRow("cuatro cifras") << qint64(1000) << "1.000";
    QTest::newRow("millones") << qint64(1234567) << "1.234.567";
    QTest::newRow("negativo") << qint64(-1000) << "-1.000";
    QTest::newRow("negativo corto") << qint64(-999) << "-999";
    QTest::newRow("maximo") << std::numeric_limits<qint64>::max() << "9.223.372.036.854.775.807";
    QTest::newRow("minimo") << std::numeric_limits<qint64>::min() << "-9.223.372.036.854.775.808";
}

void TestFormatos::formatoEntero() {
    QFETCH(qint64, numero);
    QFETCH(QString, esperado);
    QCOMPARE(::formatoEntero(numero), esperado);
}

void TestFormatos::leerImporte_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<bool>("valido");
    QTest::addColumn<double>("esperado");
    QTest::newRow("con miles") << "1.234,56" << true << 1234.56;
    QTest::newRow("sin miles") << "1234,56" << true << 1234.56;
    QTest::newRow("entero") << "1234" << true << 1234.0;
    QTest::newRow("negativo") << "-3,5" << true << -3.5;
    QTest::newRow("blancos alrededor") << " 12,5 " << true << 12.5;
    QTest::newRow("solo miles") << "1.234" << true << 1234.0;
    QTest::newRow("millones") << "1.234.567,89" << true << 1234567.89;
    QTest::newRow("negativo con miles") << "-1.000" << true << -1000.0;
    QTest::newRow("cero") << "0" << true << 0.0;
    QTest::newRow("menos cero") << "-0,00" << true << 0.0;
    QTest::newRow("cero a la izquierda") << "0,5" << true << 0.5;
    QTest::newRow("muchos decimales") << "2,675" << true << 2.675;
    QTest::newRow("ceros delante sin miles") << "007" << true << 7.0;
    QTest::newRow("vacio") << "" << false << 0.0;
    QTest::newRow("blancos") << "   " << false << 0.0;
    QTest::newRow("letras") << "abc" << false << 0.0;
    QTest::newRow("dos comas") << "12,3,4" << false << 0.0;
    QTest::newRow("punto tras la coma") << "1,2.3" << false << 0.0;
    QTest::newRow("grupo de dos") << "1.23,4" << false << 0.0;
    QTest::newRow("grupo de cuatro") << "1.2345" << false << 0.0;
    QTest::newRow("primer grupo de cuatro") << "1234.567" << false << 0.0;
    QTest::newRow("punto decimal") << "1.5" << false << 0.0;
    QTest::newRow("primer grupo con cero") << "0.123" << false << 0.0;
    QTest::newRow("punto al final") << "1." << false << 0.0;
    QTest::newRow("punto al principio") << ".123" << false << 0.0;
    QTest::newRow("puntos seguidos") << "1..234" << false << 0.0;
    QTest::newRow("coma sin parte entera") << ",5" << false << 0.0;
    QTest::newRow("coma sin decimales") << "5," << false << 0.0;
    QTest::newRow("solo signo") << "-" << false << 0.0;
    QTest::newRow("dos signos") << "--5" << false << 0.0;
    QTest::newRow("signo mas") << "+5" << false << 0.0;
    QTest::newRow("signo detras") << "5-" << false << 0.0;
    QTest::newRow("blanco tras el signo") << "- 5" << false << 0.0;
    QTest::newRow("blanco de miles") << "1 234" << false << 0.0;
    QTest::newRow("exponente") << "1e5" << false << 0.0;
    QTest::newRow("euro") << QString::fromUtf8("5 €") << false << 0.0;
    QTest::newRow("inf") << "inf" << false << 0.0;
    QTest::newRow("nan") << "nan" << false << 0.0;
    QTest::newRow("demasiado grande") << QString(400, u'9') << false << 0.0;
}

void TestFormatos::leerImporte() {
    QFETCH(QString, texto);
    QFETCH(bool, valido);
    QFETCH(double, esperado);
    const std::optional<double> leido = ::leerImporte(texto);
    QCOMPARE(leido.has_value(), valido);
    if (valido) {
        // Exact: the nearest double to the decimal text.
        QVERIFY2(*leido == esperado, qPrintable(QString::number(*leido, 'g', 17)));
        QVERIFY(!std::signbit(*leido) || esperado < 0);
    }
}

void TestFormatos::importeIdaYVuelta() {
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

void TestFormatos::claveFecha_data() {
    QTest::addColumn<QDate>("fecha");
    QTest::addColumn<QString>("esperado");
    QTest::newRow("normal") << QDate(2024, 3, 7) << "20240307";
    QTest::newRow("ano corto") << QDate(987, 12, 1) << "09871201";
    QTest::newRow("invalida") << QDate() << "";
}

void TestFormatos::claveFecha() {
    QFETCH(QDate, fecha);
    QFETCH(QString, esperado);
    QCOMPARE(::formatoClaveFecha(fecha), esperado);
}

void TestFormatos::leerClaveFecha_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QDate>("esperado");
    QTest::newRow("normal") << "20240307" << QDate(2024, 3, 7);
    QTest::newRow("dia imposible") << "20240230" << QDate();
    QTest::newRow("siete cifras") << "2024037" << QDate();
    QTest::newRow("nueve cifras") << "202403071" << QDate();
    QTest::newRow("con barras") << "2024/3/7" << QDate();
    QTest::newRow("ano cero") << "00000101" << QDate();
    QTest::newRow("vacia") << "" << QDate();
}

void TestFormatos::leerClaveFecha() {
    QFETCH(QString, texto);
    QFETCH(QDate, esperado);
    const std::optional<QDate> leida = ::leerClaveFecha(texto);
    QCOMPARE(leida.has_value(), esperado.isValid());
    if (leida) QCOMPARE(*leida, esperado);
}

QTEST_GUILESS_MAIN(TestFormatos)
#include "test_formatos.moc"
