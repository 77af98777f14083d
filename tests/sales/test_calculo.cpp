// The arithmetic of a sale document, checked against amounts worked out by hand: each step
// rounded to cents (ties to even, judged on the exact binary value of the double) before the
// next step uses it; the running totals; the per-rate VAT breakdown; the whole document
// computed again when the withholding or the exempt flag changes.
//
// Notation in the comments: Q quantity, P price with VAT, D discount %, V VAT %, R withholding %.
//   precio = [P×100/(100+V)]   bSin = [Q×precio]   bCon = [Q×P]   dto = [D×bCon/100]
//   tCon = [bCon−dto]   base = [tCon×100/(100+V)]   cuota = [tCon−base]   ret = [R×base/100]
//   total = [tCon−ret], and when exempt total = [total−cuota] with 0 VAT in the breakdown.
// "exact" means the double holds that decimal exactly, so a half cent is a true tie.
#include "sales/calculo.h"

#include <QtTest>
#include <array>
#include <cmath>

Q_DECLARE_METATYPE(EntradaLinea)
Q_DECLARE_METATYPE(ImportesLinea)

namespace {
// Amounts are compared exactly: a rounded amount is the double nearest to its cents, and a
// zero is +0 (so that no "-0,00" reaches a screen).
QByteArray diferencia(double real, double esperado) {
    if (real == esperado && std::signbit(real) == std::signbit(esperado)) return {};
    return QByteArray("obtenido ") + QByteArray::number(real, 'g', 17) + " en lugar de " +
           QByteArray::number(esperado, 'g', 17);
}
} // namespace

#define EXACTO(real, esperado)                                                                               \
    do {                                                                                                     \
        const QByteArray d_ = diferencia((real), (esperado));                                                \
        QVERIFY2(d_.isEmpty(), (QByteArray(#real) + ": " + d_).constData());                                 \
    } while (false)

class TestCalculo : public QObject {
    Q_OBJECT

    // Lines of the document used by the breakdown tests (worked out in linea_data):
    //   a  Q1   P12.10 V21       bSin 10.00 base 10.00 cuota 2.10 tCon 12.10
    //   b  Q2   P8.25  V10 D10   bSin 15.00 base 13.50 cuota 1.35 tCon 14.85
    //   c  Q2   P0.65  V4        bSin  1.24 base  1.25 cuota 0.05 tCon  1.30
    //   d  Q0.5 P4.25  V0        bSin  2.12 base  2.12 cuota 0.00 tCon  2.12
    //   e  Q3   P12.10 V21       bSin 30.00 base 30.00 cuota 6.30 tCon 36.30
    static EntradaLinea a() { return {1, 12.10, 0, 21}; }
    static EntradaLinea b() { return {2, 8.25, 10, 10}; }
    static EntradaLinea c() { return {2, 0.65, 0, 4}; }
    static EntradaLinea d() { return {0.5, 4.25, 0, 0}; }
    static EntradaLinea e() { return {3, 12.10, 0, 21}; }
    static QList<EntradaLinea> documento() { return {a(), b(), c(), d(), e()}; }

    static void fila(const char* nombre, EntradaLinea entrada, double retencion, bool exento,
                     ImportesLinea esperado) {
        QTest::newRow(nombre) << entrada << retencion << exento << esperado;
    }

    static void sumar(TotalesDocumento& t, const EntradaLinea& l, double retencion = 0, bool exento = false) {
        t.sumar(calcularLinea(l, retencion, exento), l.iva);
    }
    static void restar(TotalesDocumento& t, const EntradaLinea& l, double retencion = 0,
                       bool exento = false) {
        t.restar(calcularLinea(l, retencion, exento), l.iva);
    }
    // bruto, base, VAT, withholding and total of the document, exactly.
    static void totales(const TotalesDocumento& t, std::array<double, 5> e) {
        const std::array<double, 5> r = {t.bruto(), t.baseImponible(), t.iva(), t.retencion(), t.total()};
        for (int i = 0; i < 5; ++i)
            EXACTO(r[i], e[i]);
    }

private slots:
    void linea_data() {
        QTest::addColumn<EntradaLinea>("entrada");
        QTest::addColumn<double>("retencion");
        QTest::addColumn<bool>("exento");
        QTest::addColumn<ImportesLinea>("esperado");
        // Fields of ImportesLinea in order:
        //   precio, bSin, bCon, dto, tCon, base, cuota, ret, total, VAT in the breakdown.

        // --- The delivery-note examples ---------------------------------------------------
        // 12.10×100 = 1210 (the double product lands on 1210), /121 = 10.00; bSin 3×10 = 30.00;
        // bCon 3×12.10 = 36.30; tCon 36.30; base 3630/121 = 30.00; cuota 6.30; total 36.30.
        fila("ejemplo: 3 × 12,10 al 21 %", {3, 12.10, 0, 21}, 0, false,
             {10.00, 30.00, 36.30, 0, 36.30, 30.00, 6.30, 0, 36.30, 6.30});
        // dto = [100×36.30/100] = 36.30; tCon 0; base 0; cuota 0; total 0. The gross without
        // VAT is Q×precio and does not see the discount: 30.00.
        fila("dto. 100 %: línea a cero", {3, 12.10, 100, 21}, 0, false,
             {10.00, 30.00, 36.30, 36.30, 0, 0, 0, 0, 0, 0});
        // As the first example; exempt: total = [36.30 − 6.30] = 30.00 = base; breakdown VAT 0.
        fila("exento sin retención: total = base", {3, 12.10, 0, 21}, 0, true,
             {10.00, 30.00, 36.30, 0, 36.30, 30.00, 6.30, 0, 30.00, 0});
        // ret = [15×30.00/100] = 4.50; total = [36.30 − 4.50] = 31.80.
        fila("retención 15 %", {3, 12.10, 0, 21}, 15, false,
             {10.00, 30.00, 36.30, 0, 36.30, 30.00, 6.30, 4.50, 31.80, 6.30});

        // --- Withholding and exempt ----------------------------------------------------------
        // a: precio 10.00; bSin 10.00; bCon 12.10; base 1210/121 = 10.00; cuota 2.10;
        // ret [7×10/100] = 0.70; total [12.10 − 0.70] = 11.40.
        fila("retención 7 %", {1, 12.10, 0, 21}, 7, false,
             {10.00, 10.00, 12.10, 0, 12.10, 10.00, 2.10, 0.70, 11.40, 2.10});
        // ret 4.50; total [36.30 − 4.50] = 31.80; exempt: [31.80 − 6.30] = 25.50.
        fila("exento con retención 15 %", {3, 12.10, 0, 21}, 15, true,
             {10.00, 30.00, 36.30, 0, 36.30, 30.00, 6.30, 4.50, 25.50, 0});
        // precio 195/104 = 1.875 exact: tie, 187.5 → 188 (even) = 1.88; bSin 1.88; bCon 1.95;
        // base 1.88; cuota [1.95 − 1.88] = 0.07; total 1.95, exempt [1.95 − 0.07] = 1.88.
        fila("exento al 4 %", {1, 1.95, 0, 4}, 0, true, {1.88, 1.88, 1.95, 0, 1.95, 1.88, 0.07, 0, 1.88, 0});
        // 13.75×100 = 1375, /110 = 12.50; bSin 12.50; bCon 13.75; base 12.50; cuota 1.25;
        // ret 7×12.50 = 87.5, /100 = 0.875 exact: tie, 87.5 → 88 (even) = 0.88;
        // total [13.75 − 0.88] = 12.87.
        fila("retención 7 % en empate exacto", {1, 13.75, 0, 10}, 7, false,
             {12.50, 12.50, 13.75, 0, 13.75, 12.50, 1.25, 0.88, 12.87, 1.25});
        // ret 15×2.50 = 37.5, /100 = 0.375 exact: tie, 37.5 → 38 (even) = 0.38; total 2.12.
        fila("retención 15 % en empate exacto", {1, 2.50, 0, 0}, 15, false,
             {2.50, 2.50, 2.50, 0, 2.50, 2.50, 0, 0.38, 2.12, 0});
        // ret 15×5.50 = 82.5, /100: the double nearest 0.825 is 0.82499999999999995559...,
        // below the half cent: 0.82 (not 0.83); total [5.50 − 0.82] = 4.68.
        fila("retención 15 %: 0,825 no es empate", {1, 5.50, 0, 0}, 15, false,
             {5.50, 5.50, 5.50, 0, 5.50, 5.50, 0, 0.82, 4.68, 0});

        // --- Ties and near-ties -------------------------------------------------------------
        // bCon 0.5×4.25 = 2.125 exact: tie, 212.5 → 212 (even) = 2.12; same for bSin.
        // base 2.12×100/100 = 2.12 (the product lands on 212); cuota 0; total 2.12.
        fila("cantidad 0,5: empate hacia abajo", {0.5, 4.25, 0, 0}, 0, false,
             {4.25, 2.12, 2.12, 0, 2.12, 2.12, 0, 0, 2.12, 0});
        // 0.5×4.75 = 2.375 exact: tie, 237.5 → 238 (even) = 2.38.
        fila("cantidad 0,5: empate hacia arriba", {0.5, 4.75, 0, 0}, 0, false,
             {4.75, 2.38, 2.38, 0, 2.38, 2.38, 0, 0, 2.38, 0});
        // 2.675 is stored as 2.67499999999999982236...: below the half cent. precio: the
        // product ×100 lands on 267.5 and /100 gives back 2.67499999...: 2.67. bCon 2.67.
        fila("2,675 no es empate", {1, 2.675, 0, 0}, 0, false,
             {2.67, 2.67, 2.67, 0, 2.67, 2.67, 0, 0, 2.67, 0});
        // 0.535 is stored as 0.53500000000000003108...: above the half cent, precio 0.54;
        // bSin [5×0.54] = 2.70. bCon 5×0.535 = 2.67500000000000015543... exactly, rounded to the
        // double 2.67500000000000026645...: above 2.675, so 2.68. bSin ≠ bCon here with V 0.
        fila("5 × 0,535 queda por encima del empate", {5, 0.535, 0, 0}, 0, false,
             {0.54, 2.70, 2.68, 0, 2.68, 2.68, 0, 0, 2.68, 0});
        // precio 65/104 = 0.625 exact: tie, 62.5 → 62 (even) = 0.62; bSin [2×0.62] = 1.24;
        // bCon 1.30; base 130/104 = 1.25 exact (no tie); cuota [1.30 − 1.25] = 0.05.
        fila("IVA 4 %: precio en empate exacto", {2, 0.65, 0, 4}, 0, false,
             {0.62, 1.24, 1.30, 0, 1.30, 1.25, 0.05, 0, 1.30, 0.05});
        // precio 0.62 as above; bCon 0.65; base 65/104 = 0.625: tie → 0.62; cuota 0.03.
        fila("IVA 4 %: base en empate exacto", {1, 0.65, 0, 4}, 0, false,
             {0.62, 0.62, 0.65, 0, 0.65, 0.62, 0.03, 0, 0.65, 0.03});
        // precio 1.875 → 1.88 (tie, up to even); base the same; cuota 0.07.
        fila("IVA 4 %: empate hacia arriba", {1, 1.95, 0, 4}, 0, false,
             {1.88, 1.88, 1.95, 0, 1.95, 1.88, 0.07, 0, 1.95, 0.07});

        // --- Discounts ----------------------------------------------------------------------
        // precio 825/110 = 7.50; bSin 15.00; bCon 16.50; dto 10×16.50 = 165, /100 → 1.65;
        // tCon [16.50 − 1.65] = 14.85; base 1485/110 = 13.50 exact; cuota 1.35; total 14.85.
        fila("dto. 10 % al 10 %", {2, 8.25, 10, 10}, 0, false,
             {7.50, 15.00, 16.50, 1.65, 14.85, 13.50, 1.35, 0, 14.85, 1.35});
        // dto 10×8.25 = 82.5, /100 → 0.82499999999999995559...: 0.82; tCon [8.25 − 0.82] = 7.43.
        fila("dto.: 0,825 no es empate", {1, 8.25, 10, 0}, 0, false,
             {8.25, 8.25, 8.25, 0.82, 7.43, 7.43, 0, 0, 7.43, 0});
        // dto 5×2.50 = 12.5, /100 = 0.125 exact: tie, 12.5 → 12 (even) = 0.12; tCon 2.38.
        fila("dto.: empate exacto hacia abajo", {1, 2.50, 5, 0}, 0, false,
             {2.50, 2.50, 2.50, 0.12, 2.38, 2.38, 0, 0, 2.38, 0});
        // dto 50×0.75 = 37.5, /100 = 0.375 exact: tie → 0.38; tCon [0.75 − 0.38] = 0.37.
        fila("dto.: empate exacto hacia arriba", {1, 0.75, 50, 0}, 0, false,
             {0.75, 0.75, 0.75, 0.38, 0.37, 0.37, 0, 0, 0.37, 0});
        // precio 250/104 = 2.4038... → 2.40; bCon 2.50; dto 0.125 → 0.12 (tie); tCon 2.38;
        // base 238/104 = 2.2884... → 2.29; cuota [2.38 − 2.29] = 0.09.
        fila("dto. en empate con IVA 4 %", {1, 2.50, 5, 4}, 0, false,
             {2.40, 2.40, 2.50, 0.12, 2.38, 2.29, 0.09, 0, 2.38, 0.09});
        // precio 3025/121 = 25.00; bSin 50.00; bCon 60.50; dto 605/100 → 6.05;
        // tCon [60.50 − 6.05] = 54.45; base 5445/121 = 45.00; cuota 9.45;
        // ret [15×45/100] = 6.75; total [54.45 − 6.75] = 47.70.
        fila("dto. y retención al 21 %", {2, 30.25, 10, 21}, 15, false,
             {25.00, 50.00, 60.50, 6.05, 54.45, 45.00, 9.45, 6.75, 47.70, 9.45});

        // --- Quantities ---------------------------------------------------------------------
        // Correction: precio 10.00; bSin −10.00; bCon −12.10; dto [0×−12.10/100] = 0 (+0);
        // base −1210/121 = −10.00; cuota [−12.10 + 10.00] = −2.10; ret [15×−10/100] = −1.50;
        // total [−12.10 + 1.50] = −10.60.
        fila("cantidad negativa con retención", {-1, 12.10, 0, 21}, 15, false,
             {10.00, -10.00, -12.10, 0, -12.10, -10.00, -2.10, -1.50, -10.60, -2.10});
        // −0.5×4.25 = −2.125 exact: the tie goes to the even cent as for positives, −2.12.
        fila("cantidad negativa en empate", {-0.5, 4.25, 0, 0}, 0, false,
             {4.25, -2.12, -2.12, 0, -2.12, -2.12, 0, 0, -2.12, 0});
        // precio 330/110 = 3.00; bSin [2.25×3] = 6.75; bCon 2.25×3.30: 3.30 is stored as
        // 3.29999999999999982236..., so the product is just below 7.425: 7.42 (no tie);
        // base 742/110 = 6.7454... → 6.75; cuota [7.42 − 6.75] = 0.67.
        fila("cantidad 2,25", {2.25, 3.30, 0, 10}, 0, false,
             {3.00, 6.75, 7.42, 0, 7.42, 6.75, 0.67, 0, 7.42, 0.67});
        // precio 10.00; bSin 5.00; bCon 0.5×12.10 = 6.05; base 605/121 = 5.00; cuota 1.05.
        fila("cantidad 0,5 al 21 %", {0.5, 12.10, 0, 21}, 0, false,
             {10.00, 5.00, 6.05, 0, 6.05, 5.00, 1.05, 0, 6.05, 1.05});
        // Everything 0, and +0 (never −0), even with discount and withholding.
        fila("precio cero", {2, 0, 10, 21}, 15, false, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
        // precio 123456/121 = 1020.2975... → 1020.30; bSin [3×1020.30] = 3060.90;
        // bCon 3703.68; base 370368/121 = 3060.8925... → 3060.89 (one cent under bSin);
        // cuota [3703.68 − 3060.89] = 642.79.
        fila("importes grandes", {3, 1234.56, 0, 21}, 0, false,
             {1020.30, 3060.90, 3703.68, 0, 3703.68, 3060.89, 642.79, 0, 3703.68, 642.79});
    }
    void linea() {
        QFETCH(EntradaLinea, entrada);
        QFETCH(double, retencion);
        QFETCH(bool, exento);
        QFETCH(ImportesLinea, esperado);
        const ImportesLinea r = calcularLinea(entrada, retencion, exento);
        EXACTO(r.precio, esperado.precio);
        EXACTO(r.brutoSinIVA, esperado.brutoSinIVA);
        EXACTO(r.brutoConIVA, esperado.brutoConIVA);
        EXACTO(r.importeDto, esperado.importeDto);
        EXACTO(r.totalConIVA, esperado.totalConIVA);
        EXACTO(r.base, esperado.base);
        EXACTO(r.cuotaIVA, esperado.cuotaIVA);
        EXACTO(r.retencion, esperado.retencion);
        EXACTO(r.total, esperado.total);
        EXACTO(r.ivaDesglose, esperado.ivaDesglose);
    }

    // Lines a..e at 0, 4, 10 and 21 % in one document, without withholding.
    // bruto 10.00+15.00+1.24+2.12+30.00 = 58.36; base 10.00+13.50+1.25+2.12+30.00 = 56.87;
    // VAT 2.10+1.35+0.05+0+6.30 = 9.80; total 12.10+14.85+1.30+2.12+36.30 = 66.67.
    // Breakdown: 0 % 2.12/0.00 (1 line), 4 % 1.25/0.05 (1), 10 % 13.50/1.35 (1),
    // 21 % 40.00/8.40 (2).
    void desgloseVariosTipos() {
        const DocumentoCalculado doc = calcularDocumento(documento(), 0, false);
        QCOMPARE(doc.lineas.size(), 5);
        EXACTO(doc.lineas.at(2).brutoSinIVA, 1.24);
        EXACTO(doc.lineas.at(2).base, 1.25);
        const TotalesDocumento& t = doc.totales;
        totales(t, {58.36, 56.87, 9.80, 0, 66.67});
        const QList<DesgloseIVA>& g = t.desglose();
        QCOMPARE(g.size(), 4);
        const double tipos[] = {0, 4, 10, 21};
        const double bases[] = {2.12, 1.25, 13.50, 40.00};
        const double cuotas[] = {0, 0.05, 1.35, 8.40};
        const int lineas[] = {1, 1, 1, 2};
        for (int i = 0; i < 4; ++i) {
            EXACTO(g.at(i).porcentaje, tipos[i]);
            EXACTO(g.at(i).base, bases[i]);
            EXACTO(g.at(i).cuota, cuotas[i]);
            QCOMPARE(g.at(i).lineas, lineas[i]);
        }
    }

    // The same document computed again after the withholding or the exempt flag changes.
    // Withholding 15 % per line: a [15×10.00/100] = 1.50; b 15×13.50 = 202.5, /100 → the double
    // nearest 2.025 is 2.02499999999999991118...: 2.02; c 15×1.25 = 18.75, /100 = 0.1875 → 0.19;
    // d 15×2.12 → 31.8000000000000007..., /100 → 0.318... → 0.32; e 4.50. Sum 8.53.
    // Line totals with withholding: 10.60, 12.83, 1.11, 1.80, 31.80 = 58.14 (= 66.67 − 8.53).
    // Exempt takes each line's VAT off its total: without withholding the totals are the bases
    // (56.87); with withholding 8.50, 11.48, 1.06, 1.80, 25.50 = 48.34 (= 58.14 − 9.80).
    // The breakdown keeps its bases and shows 0 VAT when exempt; the document's VAT total adds
    // each line's cuota (tCon − base) whatever the flag: 9.80.
    void recalcularDocumento_data() {
        QTest::addColumn<double>("retencion");
        QTest::addColumn<bool>("exento");
        QTest::addColumn<double>("totalRetencion");
        QTest::addColumn<double>("total");
        QTest::addColumn<double>("cuota21"); // VAT of the 21 % row of the breakdown
        QTest::addColumn<double>("totalLineaE");
        QTest::newRow("sin retención") << 0.0 << false << 0.0 << 66.67 << 8.40 << 36.30;
        QTest::newRow("retención 15 %") << 15.0 << false << 8.53 << 58.14 << 8.40 << 31.80;
        QTest::newRow("exento") << 0.0 << true << 0.0 << 56.87 << 0.0 << 30.00;
        QTest::newRow("exento y retención 15 %") << 15.0 << true << 8.53 << 48.34 << 0.0 << 25.50;
    }
    void recalcularDocumento() {
        QFETCH(double, retencion);
        QFETCH(bool, exento);
        QFETCH(double, totalRetencion);
        QFETCH(double, total);
        QFETCH(double, cuota21);
        QFETCH(double, totalLineaE);
        const DocumentoCalculado doc = calcularDocumento(documento(), retencion, exento);
        QCOMPARE(doc.lineas.size(), 5);
        EXACTO(doc.lineas.at(4).total, totalLineaE);
        const TotalesDocumento& t = doc.totales;
        EXACTO(t.bruto(), 58.36);
        EXACTO(t.baseImponible(), 56.87);
        EXACTO(t.retencion(), totalRetencion);
        EXACTO(t.total(), total);
        QCOMPARE(t.desglose().size(), 4);
        EXACTO(t.desglose().at(3).base, 40.00);
        EXACTO(t.desglose().at(3).cuota, cuota21);
        EXACTO(t.desglose().at(2).base, 13.50);
        EXACTO(t.desglose().at(2).cuota, exento ? 0.0 : 1.35);
        // The VAT total is the sum of the lines' VAT, 9.80, exempt or not.
        EXACTO(t.iva(), 9.80);
    }

    // Lines added and removed one by one: a breakdown row goes with its last line and the
    // totals come back to exactly 0.
    void sumarYQuitarLineas() {
        TotalesDocumento t;
        sumar(t, a());
        sumar(t, c());
        sumar(t, e());
        // bruto 10.00+1.24+30.00 = 41.24; base 10.00+1.25+30.00 = 41.25; VAT 2.10+0.05+6.30
        // = 8.45; total 12.10+1.30+36.30 = 49.70.
        totales(t, {41.24, 41.25, 8.45, 0, 49.70});
        QCOMPARE(t.desglose().size(), 2);
        restar(t, a());
        // 21 % keeps line e: 30.00 / 6.30.
        QCOMPARE(t.desglose().size(), 2);
        EXACTO(t.desglose().at(1).porcentaje, 21);
        EXACTO(t.desglose().at(1).base, 30.00);
        EXACTO(t.desglose().at(1).cuota, 6.30);
        QCOMPARE(t.desglose().at(1).lineas, 1);
        EXACTO(t.total(), 37.60);
        restar(t, c());
        // The 4 % row went with its only line.
        QCOMPARE(t.desglose().size(), 1);
        EXACTO(t.desglose().at(0).porcentaje, 21);
        totales(t, {30.00, 30.00, 6.30, 0, 36.30});
        restar(t, e());
        QVERIFY(t.desglose().isEmpty());
        totales(t, {0, 0, 0, 0, 0});
    }

    // Ten lines of 0.10 add to exactly 1.00 (adding the doubles without rounding gives
    // 0.9999999999999999), and removing them leaves exactly 0.
    void sumasSinDeriva() {
        TotalesDocumento t;
        const EntradaLinea diez{1, 0.10, 0, 0};
        for (int i = 0; i < 10; ++i)
            sumar(t, diez, 15, false);
        // Each line: base 0.10; ret [15×0.10/100] = 0.015 (stored below the half cent) → 0.01;
        // total 0.09. Ten lines: base 1.00, ret 0.10, total 0.90.
        totales(t, {1.00, 1.00, 0, 0.10, 0.90});
        QCOMPARE(t.desglose().size(), 1);
        QCOMPARE(t.desglose().at(0).lineas, 10);
        EXACTO(t.desglose().at(0).base, 1.00);
        for (int i = 0; i < 10; ++i)
            restar(t, diez, 15, false);
        QVERIFY(t.desglose().isEmpty());
        totales(t, {0, 0, 0, 0, 0});
    }

    // A correction line with a negative quantity takes its amounts off the document and
    // counts as a line of its rate.
    void lineaDeCorreccion() {
        TotalesDocumento t;
        sumar(t, e());
        sumar(t, {-1, 12.10, 0, 21});
        // 30.00 − 10.00 = 20.00; VAT 6.30 − 2.10 = 4.20; total 36.30 − 12.10 = 24.20.
        totales(t, {20.00, 20.00, 4.20, 0, 24.20});
        QCOMPARE(t.desglose().size(), 1);
        QCOMPARE(t.desglose().at(0).lineas, 2);
        EXACTO(t.desglose().at(0).base, 20.00);
        EXACTO(t.desglose().at(0).cuota, 4.20);
    }
};

QTEST_APPLESS_MAIN(TestCalculo)
#include "test_calculo.moc"
