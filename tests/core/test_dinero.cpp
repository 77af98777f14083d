#include "core/dinero.h"

#include <QRandomGenerator>
#include <QtTest>

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace {

// Same bits: 0.0 and -0.0 differ, and two NaNs of the same payload are equal.
bool mismoDouble(double a, double b) {
    return std::bit_cast<quint64>(a) == std::bit_cast<quint64>(b);
}

QByteArray exacto(double x) {
    char texto[40];
    const auto r = std::to_chars(texto, texto + sizeof texto, x, std::chars_format::general, 17);
    return QByteArray(texto, r.ptr - texto);
}

// Independent reference: the exact decimal expansion of x (to_chars with a fixed precision
// writes the binary value exactly once enough digits are asked for), rounded to two decimals
// half-to-even on the digits, and read back as the nearest double.
double referencia(double x) {
    std::string texto(1200, '\0');
    const auto r =
        std::to_chars(texto.data(), texto.data() + texto.size(), x, std::chars_format::fixed, 1100);
    texto.resize(r.ptr - texto.data());
    const bool negativo = texto[0] == '-';
    if (negativo) texto.erase(0, 1);
    const std::size_t punto = texto.find('.');
    std::string cifras = texto.substr(0, punto) + texto.substr(punto + 1, 2); // cents as digits
    const std::string resto = texto.substr(punto + 3);
    bool subir = false;
    if (resto[0] > '5') {
        subir = true;
    } else if (resto[0] == '5') {
        const bool empate = resto.find_first_not_of('0', 1) == std::string::npos;
        subir = !empate || ((cifras.back() - '0') % 2 == 1);
    }
    if (subir) {
        std::size_t i = cifras.size();
        while (i > 0 && cifras[i - 1] == '9')
            cifras[--i] = '0';
        if (i == 0)
            cifras.insert(0, 1, '1');
        else
            ++cifras[i - 1];
    }
    std::string decimal = cifras.substr(0, cifras.size() - 2) + "." + cifras.substr(cifras.size() - 2);
    double valor = 0;
    std::from_chars(decimal.data(), decimal.data() + decimal.size(), valor);
    if (valor == 0.0) return 0.0;
    return negativo ? -valor : valor;
}

} // namespace

class TestDinero : public QObject {
    Q_OBJECT
private slots:
    void vectores_data();
    void vectores();
    void noFinitos();
    void coincideConElRedondeoDecimalExacto_data();
    void coincideConElRedondeoDecimalExacto();
};

void TestDinero::vectores_data() {
    QTest::addColumn<double>("entrada");
    QTest::addColumn<double>("esperado");

    // Exact binary ties (odd multiples of 1/8): the even cent wins.
    QTest::newRow("0.125 empate exacto") << 0.125 << 0.12;
    QTest::newRow("0.375 empate exacto") << 0.375 << 0.38;
    QTest::newRow("0.625 empate exacto") << 0.625 << 0.62;
    QTest::newRow("0.875 empate exacto") << 0.875 << 0.88;
    QTest::newRow("1.125 empate exacto") << 1.125 << 1.12;
    QTest::newRow("-0.125 empate exacto") << -0.125 << -0.12;
    QTest::newRow("-0.375 empate exacto") << -0.375 << -0.38;
    QTest::newRow("123456789.125 empate exacto") << 123456789.125 << 123456789.12;
    QTest::newRow("2.5 ya redondo") << 2.5 << 2.5;
    QTest::newRow("4.35 ya redondo") << 4.35 << 4.35;

    // Decimal ties that binary stores BELOW the tie: they go down. Where x*100 comes out of
    // the multiplication as exactly n.5 (the product created a tie that is not there),
    // nearbyint(x*100)/100 would go to the even cent instead, which is wrong for odd n.
    QTest::newRow("1.005 debajo") << 1.005 << 1.00;    // 1.00499999999999989341...
    QTest::newRow("1.015 debajo") << 1.015 << 1.01;    // 1.01499999999999990230...
    QTest::newRow("1.025 debajo") << 1.025 << 1.02;    // 1.02499999999999991118...
    QTest::newRow("2.675 debajo") << 2.675 << 2.67;    // 2.67499999999999982236..., x*100 == 267.5
    QTest::newRow("1.055 debajo") << 1.055 << 1.05;    // 1.05499999999999993782..., x*100 == 105.5
    QTest::newRow("0.015 debajo") << 0.015 << 0.01;    // 0.01499999999999999944..., x*100 == 1.5
    QTest::newRow("0.155 debajo") << 0.155 << 0.15;    // 0.15499999999999999888..., x*100 == 15.5
    QTest::newRow("0.175 debajo") << 0.175 << 0.17;    // 0.17499999999999998889..., x*100 == 17.5
    QTest::newRow("0.615 debajo") << 0.615 << 0.61;    // 0.61499999999999999111..., x*100 == 61.5
    QTest::newRow("0.285 debajo") << 0.285 << 0.28;    // 0.28499999999999997557...
    QTest::newRow("39.995 debajo") << 39.995 << 39.99; // 39.99499999999999744204...
    QTest::newRow("-2.675 debajo") << -2.675 << -2.67;

    // Decimal ties stored ABOVE the tie: they go up, also where x*100 == n.5 with n even.
    QTest::newRow("0.005 encima") << 0.005 << 0.01;          // 0.00500000000000000010..., x*100 == 0.5
    QTest::newRow("0.165 encima") << 0.165 << 0.17;          // 0.16500000000000000777..., x*100 == 16.5
    QTest::newRow("0.225 encima") << 0.225 << 0.23;          // 0.22500000000000000555..., x*100 == 22.5
    QTest::newRow("1234.565 encima") << 1234.565 << 1234.57; // 1234.56500000000005456..., x*100 == 123456.5
    QTest::newRow("-1234.565 encima") << -1234.565 << -1234.57;
    QTest::newRow("0.035 encima") << 0.035 << 0.04;                         // 0.03500000000000000333...
    QTest::newRow("8.345 encima") << 8.345 << 8.35;                         // 8.34500000000000063948...
    QTest::newRow("10.005 encima") << 10.005 << 10.01;                      // 10.00500000000000078159...
    QTest::newRow("99.995 encima") << 99.995 << 100.00;                     // 99.99500000000000454747...
    QTest::newRow("123456789.135 encima") << 123456789.135 << 123456789.14; // ...13500000536...

    // Near zero: the result is +0.0, never -0.0.
    QTest::newRow("cero") << 0.0 << 0.0;
    QTest::newRow("menos cero") << -0.0 << 0.0;
    QTest::newRow("-0.001") << -0.001 << 0.0;
    QTest::newRow("0.004999") << 0.004999 << 0.0;
    QTest::newRow("-0.005 encima") << -0.005 << -0.01;
    QTest::newRow("1e-300") << 1e-300 << 0.0;
    QTest::newRow("subnormal") << std::numeric_limits<double>::denorm_min() << 0.0;

    // Large values. Just below 2^46 doubles are 1/128 apart: 2^45 + 2^-7 is 35184372088832.0078125,
    // its exact cents round up to ...32.01, and the double nearest that is x itself.
    QTest::newRow("2^45 + 2^-7") << 35184372088832.0078125 << 35184372088832.0078125;
    QTest::newRow("2^46 - 2^-7") << 70368744177663.9921875 << 70368744177663.9921875;
    QTest::newRow("1e15") << 1e15 << 1e15;
    QTest::newRow("maximo") << std::numeric_limits<double>::max() << std::numeric_limits<double>::max();
    QTest::newRow("1e6 + 0.1") << 1000000.1 << 1000000.1;
    QTest::newRow("1/3") << 1.0 / 3.0 << 0.33;
    QTest::newRow("-2/3") << -2.0 / 3.0 << -0.67;
}

void TestDinero::vectores() {
    QFETCH(double, entrada);
    QFETCH(double, esperado);
    const double obtenido = redondear2(entrada);
    QVERIFY2(mismoDouble(obtenido, esperado),
             QByteArray("redondear2(" + exacto(entrada) + ") = " + exacto(obtenido) + ", se esperaba " +
                        exacto(esperado))
                 .constData());
}

void TestDinero::noFinitos() {
    const double infinito = std::numeric_limits<double>::infinity();
    QVERIFY(std::isnan(redondear2(std::numeric_limits<double>::quiet_NaN())));
    QVERIFY(mismoDouble(redondear2(infinito), infinito));
    QVERIFY(mismoDouble(redondear2(-infinito), -infinito));
}

void TestDinero::coincideConElRedondeoDecimalExacto_data() {
    QTest::addColumn<QList<double>>("valores");

    // Every amount with three decimals from -200 to 200: all the decimal ties of that range.
    QList<double> milesimas;
    for (int k = -200000; k <= 200000; ++k)
        milesimas.append(k / 1000.0);
    QTest::newRow("milesimas de -200 a 200") << milesimas;

    // The doubles right next to each of those ties, on both sides.
    QList<double> vecinos;
    for (int k = -20000; k <= 20000; k += 10) {
        const double empate = (k + 5) / 1000.0;
        vecinos << std::nextafter(empate, -1e300) << std::nextafter(empate, 1e300);
    }
    QTest::newRow("vecinos de los empates") << vecinos;

    // Random doubles of every size that can be an amount, with a fixed seed.
    QRandomGenerator azar(20240601);
    QList<double> aleatorios;
    for (int i = 0; i < 100000; ++i) {
        const double magnitud = std::ldexp(azar.generateDouble(), azar.bounded(-12, 48));
        aleatorios.append(azar.bounded(2) == 0 ? magnitud : -magnitud);
    }
    QTest::newRow("aleatorios") << aleatorios;

    // Large amounts with exact binary ties (odd multiples of 1/8 up to 2^46).
    QList<double> grandes;
    for (int i = 0; i < 20000; ++i) {
        const quint64 impar = 2 * azar.bounded(quint64{1} << azar.bounded(0, 49)) + 1; // < 2^49
        grandes.append(std::ldexp(static_cast<double>(impar), -3));
    }
    QTest::newRow("empates grandes") << grandes;
}

void TestDinero::coincideConElRedondeoDecimalExacto() {
    QFETCH(QList<double>, valores);
    for (double x : valores) {
        const double obtenido = redondear2(x);
        const double esperado = referencia(x);
        if (!mismoDouble(obtenido, esperado))
            QFAIL(QByteArray("redondear2(" + exacto(x) + ") = " + exacto(obtenido) + ", se esperaba " +
                             exacto(esperado))
                      .constData());
    }
}

QTEST_GUILESS_MAIN(TestDinero)
#include "test_dinero.moc"
