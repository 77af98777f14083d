#include "core/formatos.h"

#include <QtTest>

#include <limits>

using namespace Qt::StringLiterals;

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
    auto fila = [](const char* nombre, QDate a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
    fila("dia y mes de una cifra", QDate(2024, 2, 5), "05/02/2024");
    fila("fin de ano", QDate(1999, 12, 31), "31/12/1999");
    fila("29 de febrero", QDate(2024, 2, 29), "29/02/2024");
    fila("ano de tres cifras", QDate(987, 6, 7), "07/06/0987");
    fila("ultimo ano", QDate(9999, 12, 31), "31/12/9999");
    fila("invalida", QDate(), "");
    fila("ano 10000", QDate(10000, 1, 1), "");
    fila("ano negativo", QDate(-5, 1, 1), "");
}

void TestFormatos::formatoFecha() {
    QFETCH(QDate, fecha);
    QFETCH(QString, esperado);
    QCOMPARE(::formatoFecha(fecha), esperado);
}

void TestFormatos::leerFecha_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QDate>("esperado"); // invalid: the text must be rejected
    auto fila = [](const char* nombre, QString a0, QDate a1) { QTest::newRow(nombre) << a0 << a1; };
    fila("completa", "31/12/2024", QDate(2024, 12, 31));
    fila("dia de una cifra", "1/02/2024", QDate(2024, 2, 1));
    fila("mes de una cifra", "01/2/2024", QDate(2024, 2, 1));
    fila("ambos de una cifra", "5/6/2023", QDate(2023, 6, 5));
    fila("blancos alrededor", "  05/06/2023 ", QDate(2023, 6, 5));
    fila("bisiesto", "29/02/2024", QDate(2024, 2, 29));
    fila("ano 0987", "07/06/0987", QDate(987, 6, 7));
    fila("31 de febrero", "31/02/2024", QDate());
    fila("29/02 no bisiesto", "29/02/2023", QDate());
    fila("29/02/1900", "29/02/1900", QDate());
    fila("mes 13", "12/13/2024", QDate());
    fila("dia 0", "00/01/2024", QDate());
    fila("mes 0", "01/00/2024", QDate());
    fila("ano 0000", "01/01/0000", QDate());
    fila("vacia", "", QDate());
    fila("blancos", "   ", QDate());
    fila("letras", "ab/cd/efgh", QDate());
    fila("mes en letras", "01/ene/2024", QDate());
    fila("ano de dos cifras", "01/02/24", QDate());
    fila("ano de tres cifras", "01/02/024", QDate());
    fila("ano de cinco cifras", "01/02/02024", QDate());
    fila("dia de tres cifras", "001/02/2024", QDate());
    fila("guiones", "01-02-2024", QDate());
    fila("puntos", "01.02.2024", QDate());
    fila("faltan partes", "01/02", QDate());
    fila("sobran partes", "01/02/2024/5", QDate());
    fila("barra final", "01/02/2024/", QDate());
    fila("parte vacia", "01//2024", QDate());
    fila("signo", "+1/02/2024", QDate());
    fila("blanco dentro", "01/ 2/2024", QDate());
    fila("hora detras", "01/02/2024 10:00", QDate());
    fila("cifras arabigo-indicas", QString::fromUtf8("٠١/٠٢/٢٠٢٤"), QDate());
}

void TestFormatos::leerFecha() {
    QFETCH(QString, texto);
    QFETCH(QDate, esperado);
    const std::optional<QDate> leida = ::leerFecha(texto);
    if (!esperado.isValid()) {
        QVERIFY2(!leida, qPrintable(u"aceptada como "_s + leida.value_or(QDate()).toString()));
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
    auto fila = [](const char* nombre, QTime a0, QString a1, QString a2) {
        QTest::newRow(nombre) << a0 << a1 << a2;
    };
    fila("medianoche", QTime(0, 0), "00:00", "00:00:00");
    fila("una cifra", QTime(9, 5, 7), "09:05", "09:05:07");
    fila("ultimo segundo", QTime(23, 59, 59), "23:59", "23:59:59");
    fila("milisegundos no cuentan", QTime(12, 30, 15, 999), "12:30", "12:30:15");
    fila("invalida", QTime(), "", "");
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
    auto fila = [](const char* nombre, QString a0, QTime a1) { QTest::newRow(nombre) << a0 << a1; };
    fila("hh:mm", "10:30", QTime(10, 30));
    fila("hh:mm:ss", "10:30:45", QTime(10, 30, 45));
    fila("hora de una cifra", "9:05", QTime(9, 5));
    fila("hora de una cifra con segundos", "9:05:01", QTime(9, 5, 1));
    fila("blancos alrededor", " 23:59 ", QTime(23, 59));
    fila("medianoche", "00:00:00", QTime(0, 0));
    fila("24:00", "24:00", QTime());
    fila("10:60", "10:60", QTime());
    fila("segundo 60", "10:00:60", QTime());
    fila("minuto de una cifra", "10:5", QTime());
    fila("segundo de una cifra", "10:05:5", QTime());
    fila("hora de tres cifras", "010:05", QTime());
    fila("sin minutos", "10", QTime());
    fila("dos puntos al final", "10:05:", QTime());
    fila("cuatro partes", "10:05:00:00", QTime());
    fila("punto", "10.05", QTime());
    fila("letras", "aa:bb", QTime());
    fila("vacia", "", QTime());
    fila("negativa", "-1:00", QTime());
    fila("am/pm", "10:05 PM", QTime());
}

void TestFormatos::leerHora() {
    QFETCH(QString, texto);
    QFETCH(QTime, esperado);
    const std::optional<QTime> leida = ::leerHora(texto);
    if (!esperado.isValid()) {
        QVERIFY2(!leida, qPrintable(u"aceptada como "_s + leida.value_or(QTime()).toString()));
        return;
    }
    QVERIFY(leida.has_value());
    QCOMPARE(*leida, esperado);
}

void TestFormatos::formatoImporte_data() {
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

void TestFormatos::formatoEntero() {
    QFETCH(qint64, numero);
    QFETCH(QString, esperado);
    QCOMPARE(::formatoEntero(numero), esperado);
}

void TestFormatos::leerImporte_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<bool>("valido");
    QTest::addColumn<double>("esperado");
    auto fila = [](const char* nombre, QString a0, bool a1, double a2) {
        QTest::newRow(nombre) << a0 << a1 << a2;
    };
    fila("con miles", "1.234,56", true, 1234.56);
    fila("sin miles", "1234,56", true, 1234.56);
    fila("entero", "1234", true, 1234.0);
    fila("negativo", "-3,5", true, -3.5);
    fila("blancos alrededor", " 12,5 ", true, 12.5);
    fila("solo miles", "1.234", true, 1234.0);
    fila("millones", "1.234.567,89", true, 1234567.89);
    fila("negativo con miles", "-1.000", true, -1000.0);
    fila("cero", "0", true, 0.0);
    fila("menos cero", "-0,00", true, 0.0);
    fila("cero a la izquierda", "0,5", true, 0.5);
    fila("muchos decimales", "2,675", true, 2.675);
    fila("ceros delante sin miles", "007", true, 7.0);
    fila("vacio", "", false, 0.0);
    fila("blancos", "   ", false, 0.0);
    fila("letras", "abc", false, 0.0);
    fila("dos comas", "12,3,4", false, 0.0);
    fila("punto tras la coma", "1,2.3", false, 0.0);
    fila("grupo de dos", "1.23,4", false, 0.0);
    fila("grupo de cuatro", "1.2345", false, 0.0);
    fila("primer grupo de cuatro", "1234.567", false, 0.0);
    fila("punto decimal", "1.5", false, 0.0);
    fila("primer grupo con cero", "0.123", false, 0.0);
    fila("punto al final", "1.", false, 0.0);
    fila("punto al principio", ".123", false, 0.0);
    fila("puntos seguidos", "1..234", false, 0.0);
    fila("coma sin parte entera", ",5", false, 0.0);
    fila("coma sin decimales", "5,", false, 0.0);
    fila("solo signo", "-", false, 0.0);
    fila("dos signos", "--5", false, 0.0);
    fila("signo mas", "+5", false, 0.0);
    fila("signo detras", "5-", false, 0.0);
    fila("blanco tras el signo", "- 5", false, 0.0);
    fila("blanco de miles", "1 234", false, 0.0);
    fila("exponente", "1e5", false, 0.0);
    fila("euro", QString::fromUtf8("5 €"), false, 0.0);
    fila("inf", "inf", false, 0.0);
    fila("nan", "nan", false, 0.0);
    fila("demasiado grande", QString(400, u'9'), false, 0.0);
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
    auto fila = [](const char* nombre, QDate a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
    fila("normal", QDate(2024, 3, 7), "20240307");
    fila("ano corto", QDate(987, 12, 1), "09871201");
    fila("invalida", QDate(), "");
}

void TestFormatos::claveFecha() {
    QFETCH(QDate, fecha);
    QFETCH(QString, esperado);
    QCOMPARE(::formatoClaveFecha(fecha), esperado);
}

void TestFormatos::leerClaveFecha_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QDate>("esperado");
    auto fila = [](const char* nombre, QString a0, QDate a1) { QTest::newRow(nombre) << a0 << a1; };
    fila("normal", "20240307", QDate(2024, 3, 7));
    fila("dia imposible", "20240230", QDate());
    fila("siete cifras", "2024037", QDate());
    fila("nueve cifras", "202403071", QDate());
    fila("con barras", "2024/3/7", QDate());
    fila("ano cero", "00000101", QDate());
    fila("vacia", "", QDate());
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
