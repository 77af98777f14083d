// The collection's arithmetic, worked by hand: change out of cash only, documents settled in
// order up to their debt, each document's part split over the payment methods in list order.
#include "cash/reparto_cobro.h"
#include "core/dinero.h"

#include <QTest>

class TestRepartoCobro : public QObject {
    Q_OBJECT

    // "forma:importe" per record, in order: "0:20.00 1:30.00".
    static QString registros(const RepartoCobro& r) {
        QStringList l;
        for (const auto& a : r.aplicaciones)
            l << QStringLiteral("%1.%2:%3").arg(a.documento).arg(a.forma).arg(a.importe, 0, 'f', 2);
        return l.join(QLatin1Char(' '));
    }

private slots:
    void casos() {
        const EntregaFormaPago tarjeta20{20.00, false}, efectivo40{40.00, true};
        const struct {
            const char* caso;
            QList<DocumentoACobrar> docs;
            QList<EntregaFormaPago> formas;
            double cambio, aplicado;
            bool parcial;
            QString registros;
            QList<double> guardado;
        } casos[] = {
            // 50 owed, 20 by card and 40 cash: 10 back, card 20 and cash 30 kept.
            {"cambio del efectivo", {{50.00, 0}}, {tarjeta20, efectivo40}, 10.00, 50.00, false, "0.0:20.00 0.1:30.00",
             {20.00, 30.00}},
            // Two notes of 30 and 40 with 50 cash: the first settled, the second gets 20.
            {"hasta donde llegue", {{30.00, 0}, {40.00, 0}}, {{50.00, true}}, 0, 50.00, true, "0.0:30.00 1.0:20.00",
             {50.00}},
            // What a document already has collected is not asked again; a settled one gets nothing.
            {"ya cobrado en parte", {{36.30, 16.30}, {12.10, 12.10}, {8.25, 0}}, {{10.00, false}, {18.25, true}}, 0,
             28.25, false, "0.0:10.00 0.1:10.00 2.1:8.25", {10.00, 18.25}},
            // A method that has more than a document needs gives exactly what is left.
            {"una forma para varios", {{10.10, 0}, {5.05, 0}}, {{20.00, true}}, 4.85, 15.15, false,
             "0.0:10.10 1.0:5.05", {15.15}},
            // Cents that add up only when rounded at every step.
            {"céntimos", {{0.10, 0}, {0.20, 0}}, {{0.30, false}}, 0, 0.30, false, "0.0:0.10 1.0:0.20", {0.30}},
            // Nothing typed and negative typed amounts count 0.
            {"nada entregado", {{12.00, 0}}, {{0, false}, {-5.00, true}}, 0, 0, true, "", {0, 0}},
        };
        for (const auto& k : casos) {
            const ResultadoReparto res = repartirCobro(k.docs, k.formas);
            QVERIFY2(res.reparto && !res.rechazo, k.caso);
            const RepartoCobro& r = *res.reparto;
            QCOMPARE(r.cambio, k.cambio);
            QCOMPARE(r.aplicado, k.aplicado);
            QVERIFY2(r.parcial() == k.parcial, k.caso);
            QCOMPARE(registros(r), k.registros);
            QCOMPARE(r.guardadoPorForma, k.guardado);
            double suma = 0;
            for (double x : r.aplicadoPorDocumento)
                suma = redondear2(suma + x);
            QVERIFY2(mismoImporte(suma, r.aplicado), k.caso);
        }
    }

    // Change that cash cannot give: 60 by card for 50 owed, or cash short of the change.
    void rechazos() {
        const QList<QList<EntregaFormaPago>> entregas = {{{60.00, false}}, {{48.00, false}, {3.00, true}, {4.00, false}}};
        for (const auto& e : entregas) {
            const ResultadoReparto r = repartirCobro({{50.00, 0}}, e);
            QVERIFY(!r.reparto);
            QCOMPARE(*r.rechazo, RechazoCobro::NoEfectivoSuperaTotal);
        }
        QCOMPARE(kTextoNoEfectivoSuperaTotal,
                 QStringLiteral("La suma de los importes entregados distinto de EFECTIVO, no puede superar el total a "
                                "cobrar."));
    }
};

QTEST_APPLESS_MAIN(TestRepartoCobro)
#include "test_reparto_cobro.moc"
