// Price choice for a new sale line: the order of the sources (health plan, commercial file,
// general tariff), the specificity of conditions within a list, the discount each kind of
// condition takes, the refused empty tariff price and the client's own VAT.
#include "sales/precios.h"

#include <QtTest>

Q_DECLARE_METATYPE(CondicionEspecial)
Q_DECLARE_METATYPE(QList<CondicionEspecial>)

namespace {
// An article of section 1 / family 10 / subfamily 100 at 20, 18 and 15 euros, VAT type 3 (21 %).
ArticuloVenta vacuna() {
    ArticuloVenta a;
    a.codigo = 7;
    a.descripcion = QStringLiteral("Vacuna polivalente");
    a.pvp1 = 20;
    a.pvp2 = 18;
    a.pvp3 = 15;
    a.idTipoIVA = 3;
    a.porcentajeIVA = 21;
    a.seccion = 1;
    a.familia = 10;
    a.subfamilia = 100;
    return a;
}

// A condition on the article (articulo set) or on section 1 narrowed as given.
CondicionEspecial cond(std::optional<qint64> articulo, std::optional<double> precio,
                       const QString& tarifa = {}, std::optional<double> dto = std::nullopt,
                       std::optional<qint64> familia = std::nullopt,
                       std::optional<qint64> subfamilia = std::nullopt) {
    CondicionEspecial c;
    c.IdArticulo = articulo;
    if (!articulo) c.IdSeccion = 1;
    c.IdFamilia = familia;
    c.IdSubfamilia = subfamilia;
    c.Precio = precio;
    c.Tarifa = tarifa;
    c.Descuento = dto;
    return c;
}
const std::optional<qint64> kSeccion;
} // namespace

class TestPrecios : public QObject {
    Q_OBJECT
private slots:
    void tarifaGeneral_data() {
        QTest::addColumn<QString>("tarifa");
        QTest::addColumn<double>("pvp");
        QTest::newRow("tarifa 1") << QStringLiteral("TARIFA 1") << 20.0;
        QTest::newRow("tarifa 2") << QStringLiteral("TARIFA 2") << 18.0;
        QTest::newRow("minúsculas y blancos") << QStringLiteral(" tarifa 3 ") << 15.0;
        QTest::newRow("sin tarifa") << QString() << 20.0;
        QTest::newRow("tarifa desconocida") << QStringLiteral("TARIFA 9") << 20.0;
    }
    void tarifaGeneral() {
        QFETCH(QString, tarifa);
        QFETCH(double, pvp);
        ContextoPrecios ctx;
        ctx.tarifa = tarifa;
        ctx.dtoGeneral = 5;
        const PrecioElegido p = elegirPrecio(vacuna(), ctx);
        QCOMPARE(p.pvp, pvp);
        QCOMPARE(p.descuento, 5.0);
        QCOMPARE(p.origen, OrigenPrecio::TarifaGeneral);
        QCOMPARE(p.idTipoIVA, std::optional<qint64>(3));
        QCOMPARE(p.iva, 21.0);
        QVERIFY(p.valido());
    }

    // The most specific condition that names the article is the one that counts.
    void especificidad() {
        const ArticuloVenta a = vacuna();
        QList<CondicionEspecial> lista = {cond(kSeccion, 19.0), cond(kSeccion, 18.5, {}, {}, 10),
                                          cond(kSeccion, 17.5, {}, {}, 10, 100), cond(7, 16.0)};
        for (const double esperado : {16.0, 17.5, 18.5, 19.0}) {
            QCOMPARE(condicionAplicable(lista, a)->Precio, std::optional<double>(esperado));
            lista.removeLast();
        }
        // Another article, another section, a family or subfamily the article is not in.
        CondicionEspecial otraSeccion = cond(kSeccion, 1.0);
        otraSeccion.IdSeccion = 2;
        QVERIFY(!condicionAplicable({cond(8, 1.0), otraSeccion, cond(kSeccion, 1.0, {}, {}, 11),
                                     cond(kSeccion, 1.0, {}, {}, 10, 101)},
                                    a));
        ArticuloVenta suelto = a;
        suelto.seccion.reset();
        QVERIFY(!condicionAplicable({cond(kSeccion, 1.0)}, suelto));
    }

    // The plan first, then the commercial file, then the tariff, whatever the price each leaves.
    // General tariff TARIFA 1 (20.00) with the client's general discount of 5 %.
    void origenYDescuento_data() {
        QTest::addColumn<QList<CondicionEspecial>>("plan");
        QTest::addColumn<QList<CondicionEspecial>>("ficha");
        QTest::addColumn<double>("pvp");
        QTest::addColumn<double>("descuento");
        QTest::addColumn<int>("origen");
        using L = QList<CondicionEspecial>;
        const int plan = int(OrigenPrecio::PlanSalud), ficha = int(OrigenPrecio::FichaComercial);
        QTest::newRow("precio especial: neto") << L{} << L{cond(7, 17.0)} << 17.0 << 0.0 << ficha;
        QTest::newRow("precio especial con dto.")
            << L{} << L{cond(7, 17.0, {}, 10.0)} << 17.0 << 10.0 << ficha;
        QTest::newRow("tarifa de la ficha: dto. general")
            << L{} << L{cond(7, {}, kTarifa3)} << 15.0 << 5.0 << ficha;
        QTest::newRow("tarifa de la ficha con su dto.")
            << L{} << L{cond(7, {}, kTarifa2, 20.0)} << 18.0 << 20.0 << ficha;
        QTest::newRow("ficha más cara que la tarifa") << L{} << L{cond(7, 25.0)} << 25.0 << 0.0 << ficha;
        QTest::newRow("tarifa del plan: sin el dto. del dueño")
            << L{cond(kSeccion, {}, kTarifa2)} << L{} << 18.0 << 0.0 << plan;
        QTest::newRow("tarifa del plan con su dto.")
            << L{cond(kSeccion, {}, kTarifa3, 25.0)} << L{} << 15.0 << 25.0 << plan;
        QTest::newRow("plan más caro que la ficha")
            << L{cond(kSeccion, 19.0)} << L{cond(7, 10.0)} << 19.0 << 0.0 << plan;
        QTest::newRow("plan de otro artículo: la ficha")
            << L{cond(99, 1.0)} << L{cond(7, 16.0)} << 16.0 << 0.0 << ficha;
        QTest::newRow("ninguna condición: la tarifa")
            << L{cond(99, 1.0)} << L{cond(8, 1.0)} << 20.0 << 5.0 << int(OrigenPrecio::TarifaGeneral);
    }
    void origenYDescuento() {
        QFETCH(QList<CondicionEspecial>, plan);
        QFETCH(QList<CondicionEspecial>, ficha);
        QFETCH(double, pvp);
        QFETCH(double, descuento);
        QFETCH(int, origen);
        ContextoPrecios ctx;
        ctx.tarifa = kTarifa1;
        ctx.dtoGeneral = 5;
        ctx.condicionesPlan = plan;
        ctx.condicionesCliente = ficha;
        const PrecioElegido p = elegirPrecio(vacuna(), ctx);
        QVERIFY(p.valido());
        QCOMPARE(p.pvp, pvp);
        QCOMPARE(p.descuento, descuento);
        QCOMPARE(int(p.origen), origen);
    }

    // A tariff condition pointing at an empty price is refused, never applied; a special price
    // of 0 is the clinic's own and applies.
    void tarifaVaciaRechazada() {
        ArticuloVenta a = vacuna();
        a.pvp2 = 0;
        ContextoPrecios ctx;
        ctx.condicionesPlan = {cond(kSeccion, {}, QStringLiteral("tarifa 2"))};
        QCOMPARE(
            elegirPrecio(a, ctx).rechazo,
            QStringLiteral("El artículo 'Vacuna polivalente' no tiene precio en la TARIFA 2 que le asigna el "
                           "Plan de Salud de la mascota. Asigne ese precio al artículo o corrija la "
                           "condición antes de incluirlo."));
        ctx.condicionesPlan.clear();
        ctx.condicionesCliente = {cond(7, {}, kTarifa2)};
        QVERIFY(elegirPrecio(a, ctx).rechazo.contains(QStringLiteral("la Ficha Comercial del cliente")));
        ctx.condicionesCliente = {cond(7, 0.0)};
        QVERIFY(elegirPrecio(a, ctx).valido());
    }

    // The client's own VAT stands over the article's; an unknown one refuses instead of 0 %.
    void ivaDelCliente() {
        ContextoPrecios ctx;
        ctx.idTipoIVACliente = 9;
        ctx.porcentajeIVACliente = 0.0;
        PrecioElegido p = elegirPrecio(vacuna(), ctx);
        QCOMPARE(p.idTipoIVA, std::optional<qint64>(9));
        QCOMPARE(p.iva, 0.0);
        QCOMPARE(p.pvp, 20.0);
        ctx.idTipoIVACliente.reset();
        ctx.porcentajeIVACliente = 7.5;
        QCOMPARE(
            elegirPrecio(vacuna(), ctx).rechazo,
            QStringLiteral("El I.V.A. a aplicar al cliente (7,50 %) no corresponde a ningún tipo de I.V.A. "
                           "Añada ese tipo de I.V.A. o corrija el I.V.A. del cliente antes de incluir "
                           "artículos."));
        ctx.idTipoIVACliente = 4;
        ctx.porcentajeIVACliente.reset();
        QVERIFY(!elegirPrecio(vacuna(), ctx).valido());
    }
};

QTEST_APPLESS_MAIN(TestPrecios)
#include "test_precios.moc"
