// The invoicing series that follows from an article's classification, and its rewrite on the
// lines of the delivery notes not yet invoiced, on both engines.
#include "datos_articulos.h"
#include "stock/series_articulo.h"
#include "test_db.h"

class TestSeriesArticulo : public QObject {
    Q_OBJECT

private slots:
    void nivelQueManda_data() {
        QTest::addColumn<QString>("propia");
        QTest::addColumn<QString>("subfamilia");
        QTest::addColumn<QString>("familia");
        QTest::addColumn<QString>("seccion");
        QTest::addColumn<QString>("esperada");
        QTest::newRow("todas") << "P"
                               << "S"
                               << "F"
                               << "G"
                               << "P";
        QTest::newRow("sin propia") << ""
                                    << "S"
                                    << "F"
                                    << "G"
                                    << "S";
        QTest::newRow("solo familia y sección") << ""
                                                << ""
                                                << "F"
                                                << "G"
                                                << "F";
        QTest::newRow("solo sección") << ""
                                      << ""
                                      << ""
                                      << "G"
                                      << "G";
        QTest::newRow("ninguna") << ""
                                 << ""
                                 << ""
                                 << ""
                                 << "";
        QTest::newRow("blancos no cuentan") << "  "
                                            << " "
                                            << " F "
                                            << "G"
                                            << "F";
        QTest::newRow("propia sobre sección") << "P"
                                              << ""
                                              << ""
                                              << "G"
                                              << "P";
    }
    void nivelQueManda() {
        QFETCH(QString, propia);
        QFETCH(QString, subfamilia);
        QFETCH(QString, familia);
        QFETCH(QString, seccion);
        QFETCH(QString, esperada);
        QCOMPARE(serieAplicable({propia, subfamilia, familia, seccion}), esperada);
    }

    void textosDeLasPreguntas() {
        QCOMPARE(preguntaCambioSerieArticulo(QStringLiteral("familia"), QStringLiteral("B")),
                 QStringLiteral(
                     "Al cambiar la familia, a este artículo le corresponde ahora la serie de facturación: "
                     "B.\nSe va a proceder a realizar este cambio en todos los Albaranes sin facturar "
                     "donde aparezca este Artículo. Este proceso llevará tiempo y mientras tanto ningún "
                     "otro puesto podrá trabajar con Pramelvix.¿Está seguro de continuar?"));
        QCOMPARE(preguntaCambioSerieArticulo(QStringLiteral("sección"), QString()),
                 QStringLiteral(
                     "Al cambiar la sección, a este artículo NO le corresponde ahora ninguna serie de "
                     "facturación específica.\nSe va a proceder a realizar este cambio en todos los "
                     "Albaranes sin facturar donde aparezca este Artículo. Este proceso llevará tiempo y "
                     "mientras tanto ningún otro puesto podrá trabajar con Pramelvix.¿Está seguro de "
                     "continuar?"));
        QCOMPARE(preguntaCambioSerieSubfamilia(QStringLiteral("Subfamilia")),
                 QStringLiteral(
                     " Ha cambiado la Serie de la Subfamilia y será necesario modificarla en \ntodos los "
                     "Albaranes sin facturar donde aparezcan los Artículos contenidos en ella. Esto "
                     "llevará tiempo y mientras tanto ningún otro puesto podrá trabajar con Pramelvix.\n"
                     " ¿Está seguro de continuar?"));
    }

    void serieDeUnArticuloGuardado() {
        TestDb t;
        DatosArticulos d(t.db());
        const qint64 g = d.seccion(QStringLiteral("Clínica"), QStringLiteral("G"));
        const qint64 f = d.familia(g, QStringLiteral("Vacunas"));
        const qint64 s = d.subfamilia(f, QStringLiteral("Perros"), QStringLiteral("S"));
        const qint64 s2 = d.subfamilia(f, QStringLiteral("Gatos"));
        const qint64 iva = d.iva(QStringLiteral("General"), 21);
        SeriesArticuloStore store(t.db());
        QCOMPARE(*store.serieDeArticulo(d.articulo(QStringLiteral("A1"), g, f, s, iva)), QStringLiteral("S"));
        QCOMPARE(*store.serieDeArticulo(d.articulo(QStringLiteral("A2"), g, f, s2, iva)),
                 QStringLiteral("G"));
        QCOMPARE(*store.serieDeArticulo(d.articulo(QStringLiteral("A3"), g, f, s, iva,
                                                   {{QStringLiteral("ArtSerie"), QStringLiteral("P")}})),
                 QStringLiteral("P"));
        QVERIFY(!store.serieDeArticulo(999).has_value());
    }

    void soloLosAlbaranesSinFacturar() {
        TestDb t;
        DatosArticulos d(t.db());
        const qint64 g = d.seccion(QStringLiteral("Clínica"));
        const qint64 f = d.familia(g, QStringLiteral("Vacunas"));
        const qint64 s = d.subfamilia(f, QStringLiteral("Perros"));
        const qint64 iva = d.iva(QStringLiteral("General"), 21);
        const qint64 art = d.articulo(QStringLiteral("Vacuna"), g, f, s, iva);
        const qint64 otro = d.articulo(QStringLiteral("Pienso"), g, f, s, iva);
        const qint64 pendiente = d.albaran(1);
        const qint64 pendiente2 = d.albaran(2);
        const qint64 facturado = d.albaran(3, 77);
        const qint64 l1 = d.linea(pendiente, art, QStringLiteral("A"));
        const qint64 l2 = d.linea(pendiente2, art, QString());
        const qint64 lOtro = d.linea(pendiente, otro, QStringLiteral("A"));
        const qint64 lFact = d.linea(facturado, art, QStringLiteral("A"));

        SeriesArticuloStore store(t.db());
        QCOMPARE(store.reescribirLineasPendientes(art, QStringLiteral("B")), 2);
        QCOMPARE(d.serieLinea(l1), QStringLiteral("B"));
        QCOMPARE(d.serieLinea(l2), QStringLiteral("B"));
        QCOMPARE(d.serieLinea(lOtro), QStringLiteral("A"));
        QCOMPARE(d.serieLinea(lFact), QStringLiteral("A"));
        // No specific series any more: the lines lose it.
        QCOMPARE(store.reescribirLineasPendientes(art, QString()), 2);
        QVERIFY(
            t.db().valor(QStringLiteral("SELECT Serie FROM LineasAlbaran WHERE IdLinea = ?"), {l1}).isNull());
        QCOMPARE(d.serieLinea(lFact), QStringLiteral("A"));
    }

    void cambioDeSerieDeSubfamilia() {
        TestDb t;
        DatosArticulos d(t.db());
        const qint64 g = d.seccion(QStringLiteral("Clínica"), QStringLiteral("G"));
        const qint64 f = d.familia(g, QStringLiteral("Vacunas"));
        const qint64 s = d.subfamilia(f, QStringLiteral("Perros"));
        const qint64 otra = d.subfamilia(f, QStringLiteral("Gatos"));
        const qint64 iva = d.iva(QStringLiteral("General"), 21);
        const qint64 a1 = d.articulo(QStringLiteral("Rabia"), g, f, s, iva);
        const qint64 propia = d.articulo(QStringLiteral("Leishmania"), g, f, s, iva,
                                         {{QStringLiteral("ArtSerie"), QStringLiteral("P")}});
        const qint64 ajeno = d.articulo(QStringLiteral("Felina"), g, f, otra, iva);
        const qint64 pend = d.albaran(1);
        const qint64 fact = d.albaran(2, 5);
        const qint64 l1 = d.linea(pend, a1, QStringLiteral("G"));
        const qint64 lPropia = d.linea(pend, propia, QStringLiteral("P"));
        const qint64 lAjeno = d.linea(pend, ajeno, QStringLiteral("G"));
        const qint64 lFact = d.linea(fact, a1, QStringLiteral("G"));

        SeriesArticuloStore store(t.db());
        QCOMPARE(store.cambiarSerieSubfamilia(s, QStringLiteral("V")), 2);
        QCOMPARE(d.serieLinea(l1), QStringLiteral("V"));
        QCOMPARE(d.serieLinea(lPropia), QStringLiteral("P"));
        QCOMPARE(d.serieLinea(lAjeno), QStringLiteral("G"));
        QCOMPARE(d.serieLinea(lFact), QStringLiteral("G"));
        QCOMPARE(t.db()
                     .valor(QStringLiteral("SELECT Serie FROM Subfamilias WHERE IdSubfamilia = ?"), {s})
                     .toString(),
                 QStringLiteral("V"));
        // Taking the series away from the subfamily gives the lines the section's series again.
        store.cambiarSerieSubfamilia(s, QString());
        QCOMPARE(d.serieLinea(l1), QStringLiteral("G"));
    }

    // A failure after some lines were rewritten leaves every line and the subfamily as they were.
    void todoONada() {
        TestDb t;
        DatosArticulos d(t.db());
        const qint64 g = d.seccion(QStringLiteral("Clínica"));
        const qint64 f = d.familia(g, QStringLiteral("Vacunas"));
        const qint64 s = d.subfamilia(f, QStringLiteral("Perros"), QStringLiteral("S"));
        const qint64 iva = d.iva(QStringLiteral("General"), 21);
        const qint64 a1 = d.articulo(QStringLiteral("Rabia"), g, f, s, iva);
        const qint64 a2 = d.articulo(QStringLiteral("Moquillo"), g, f, s, iva);
        const qint64 pend = d.albaran(1);
        const qint64 l1 = d.linea(pend, a1, QStringLiteral("S"));
        const qint64 l2 = d.linea(pend, a2, QStringLiteral("S"));
        // Another workstation removed the subfamily row while its articles still name it: the
        // lines are rewritten first, then the subfamily update finds no row and fails.
        t.db().ejecutarCambio(QStringLiteral("DELETE FROM Subfamilias WHERE IdSubfamilia = ?"), {s});
        SeriesArticuloStore store(t.db());
        QVERIFY_THROWS_EXCEPTION(ErrorBD, store.cambiarSerieSubfamilia(s, QStringLiteral("V")));
        QCOMPARE(d.serieLinea(l1), QStringLiteral("S"));
        QCOMPARE(d.serieLinea(l2), QStringLiteral("S"));
        QVERIFY(!t.db().enTransaccion());
    }
};

PMX_STORE_TEST_MAIN(TestSeriesArticulo)
#include "test_series_articulo.moc"
