// Price choice for a new sale line: every source of a price (tariff, general discount,
// commercial file, health plan), the specificity of conditions and the VAT that applies.
#include "sales/precios.h"

#include <QtTest>

Q_DECLARE_METATYPE(CondicionEspecial)

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

CondicionEspecial deArticulo(qint64 articulo, std::optional<double> precio, const QString& tarifa = {},
                             std::optional<double> dto = std::nullopt) {
    CondicionEspecial c;
    c.IdArticulo = articulo;
    c.Precio = precio;
    c.Tarifa = tarifa;
    c.Descuento = dto;
    return c;
}

CondicionEspecial deSeccion(qint64 seccion, std::optional<qint64> familia, std::optional<qint64> subfamilia,
                            std::optional<double> precio, const QString& tarifa = {},
                            std::optional<double> dto = std::nullopt) {
    CondicionEspecial c;
    c.IdSeccion = seccion;
    c.IdFamilia = familia;
    c.IdSubfamilia = subfamilia;
    c.Precio = precio;
    c.Tarifa = tarifa;
    c.Descuento = dto;
    return c;
}
} // namespace

class TestPrecios : public QObject {
    Q_OBJECT
private slots:
    void tarifaGeneral_data() {
        QTest::addColumn<QString>("tarifa");
        QTest::addColumn<double>("pvp");
        QTest::newRow("tarifa 1") << QStringLiteral("TARIFA 1") << 20.0;
        QTest::newRow("tarifa 2") << QStringLiteral("TARIFA 2") << 18.0;
        QTest::newRow("tarifa 3") << QStringLiteral("TARIFA 3") << 15.0;
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
    }

    // The most specific condition that names the article is the one that counts.
    void especificidad() {
        const ArticuloVenta a = vacuna();
        QList<CondicionEspecial> lista = {deSeccion(1, std::nullopt, std::nullopt, 19.0),
                                          deSeccion(1, 10, std::nullopt, 18.5), deSeccion(1, 10, 100, 17.5),
                                          deArticulo(7, 16.0)};
        QCOMPARE(condicionAplicable(lista, a)->Precio, std::optional<double>(16.0));
        lista.removeLast();
        QCOMPARE(condicionAplicable(lista, a)->Precio, std::optional<double>(17.5));
        lista.removeLast();
        QCOMPARE(condicionAplicable(lista, a)->Precio, std::optional<double>(18.5));
        lista.removeLast();
        QCOMPARE(condicionAplicable(lista, a)->Precio, std::optional<double>(19.0));
        // Conditions of another article, another section, or a family of the section other than
        // the article's do not apply.
        const QList<CondicionEspecial> ajenas = {
            deArticulo(8, 1.0), deSeccion(2, std::nullopt, std::nullopt, 1.0),
            deSeccion(1, 11, std::nullopt, 1.0), deSeccion(1, 10, 101, 1.0)};
        QVERIFY(condicionAplicable(ajenas, a) == nullptr);
        // An article without classification is named only by a condition of its own.
        ArticuloVenta suelto = a;
        suelto.seccion.reset();
        suelto.familia.reset();
        suelto.subfamilia.reset();
        QVERIFY(condicionAplicable({deSeccion(1, std::nullopt, std::nullopt, 1.0)}, suelto) == nullptr);
    }

    // A special price is net unless the condition names a discount; a particular tariff keeps
    // the client's general discount unless the condition names its own.
    void condicionesDeLaFicha_data() {
        QTest::addColumn<CondicionEspecial>("condicion");
        QTest::addColumn<double>("pvp");
        QTest::addColumn<double>("descuento");
        QTest::addColumn<int>("origen");
        QTest::newRow("precio especial")
            << deArticulo(7, 17.0) << 17.0 << 0.0 << int(OrigenPrecio::FichaComercial);
        QTest::newRow("precio especial con dto")
            << deArticulo(7, 17.0, {}, 10.0) << 17.0 << 10.0 << int(OrigenPrecio::FichaComercial);
        QTest::newRow("tarifa particular")
            << deArticulo(7, std::nullopt, kTarifa3) << 15.0 << 5.0 << int(OrigenPrecio::FichaComercial);
        QTest::newRow("tarifa particular con dto") << deArticulo(7, std::nullopt, kTarifa2, 20.0) << 18.0
                                                   << 20.0 << int(OrigenPrecio::FichaComercial);
        // 19.50 net is dearer than the general tariff's 20 less 5 % = 19.00: the tariff stays.
        QTest::newRow("condición más cara que la tarifa")
            << deArticulo(7, 19.5) << 20.0 << 5.0 << int(OrigenPrecio::TarifaGeneral);
        // 20 at 5 % is the same 19.00: on a tie the commercial file goes first.
        QTest::newRow("empate con la tarifa")
            << deArticulo(7, 19.0) << 19.0 << 0.0 << int(OrigenPrecio::FichaComercial);
    }
    void condicionesDeLaFicha() {
        QFETCH(CondicionEspecial, condicion);
        QFETCH(double, pvp);
        QFETCH(double, descuento);
        QFETCH(int, origen);
        ContextoPrecios ctx;
        ctx.tarifa = kTarifa1;
        ctx.dtoGeneral = 5;
        ctx.condicionesCliente = {condicion};
        const PrecioElegido p = elegirPrecio(vacuna(), ctx);
        QCOMPARE(p.pvp, pvp);
        QCOMPARE(p.descuento, descuento);
        QCOMPARE(int(p.origen), origen);
    }

    // Plan, commercial file and tariff: the lowest net price wins; on a tie the plan first.
    void planFichaYTarifa() {
        ContextoPrecios ctx;
        ctx.tarifa = kTarifa1; // 20.00
        ctx.condicionesCliente = {deArticulo(7, 16.0)};
        ctx.condicionesPlan = {
            deSeccion(1, std::nullopt, std::nullopt, std::nullopt, kTarifa1, 25.0)}; // 15.00
        PrecioElegido p = elegirPrecio(vacuna(), ctx);
        QCOMPARE(p.origen, OrigenPrecio::PlanSalud);
        QCOMPARE(p.pvp, 20.0);
        QCOMPARE(p.descuento, 25.0);

        ctx.condicionesPlan = {deArticulo(7, 17.0)}; // the file's 16.00 is lower
        p = elegirPrecio(vacuna(), ctx);
        QCOMPARE(p.origen, OrigenPrecio::FichaComercial);
        QCOMPARE(p.pvp, 16.0);

        ctx.condicionesPlan = {deArticulo(7, 20.0, {}, 20.0)}; // 16.00 too: the plan wins the tie
        p = elegirPrecio(vacuna(), ctx);
        QCOMPARE(p.origen, OrigenPrecio::PlanSalud);
        QCOMPARE(p.descuento, 20.0);

        // A plan condition for another article leaves the file's price.
        ctx.condicionesPlan = {deArticulo(99, 1.0)};
        QCOMPARE(elegirPrecio(vacuna(), ctx).origen, OrigenPrecio::FichaComercial);
    }

    // The client's own VAT type (a non-resident company's is the 0 % type) stands over the article's.
    void ivaDelCliente() {
        ContextoPrecios ctx;
        ctx.tarifa = kTarifa1;
        ctx.idTipoIVACliente = 9;
        ctx.porcentajeIVACliente = 0;
        PrecioElegido p = elegirPrecio(vacuna(), ctx);
        QCOMPARE(p.idTipoIVA, std::optional<qint64>(9));
        QCOMPARE(p.iva, 0.0);
        QCOMPARE(p.pvp, 20.0); // the price itself does not change
        ctx.idTipoIVACliente = 4;
        ctx.porcentajeIVACliente = 10;
        p = elegirPrecio(vacuna(), ctx);
        QCOMPARE(p.idTipoIVA, std::optional<qint64>(4));
        QCOMPARE(p.iva, 10.0);
    }
};

QTEST_APPLESS_MAIN(TestPrecios)
#include "test_precios.moc"
