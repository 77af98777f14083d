// The invoicing series that follows from an article's classification, and its rewrite on the
// lines of the delivery notes not yet invoiced, on both engines.
#include "sesion.h"
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
        auto fila = [](const char* nombre, QString a0, QString a1, QString a2, QString a3, QString a4) {
            QTest::newRow(nombre) << a0 << a1 << a2 << a3 << a4;
        };
        fila("todas", "P", "S", "F", "G", "P");
        fila("sin propia", "", "S", "F", "G", "S");
        fila("solo familia y sección", "", "", "F", "G", "F");
        fila("solo sección", "", "", "", "G", "G");
        fila("ninguna", "", "", "", "", "");
        fila("blancos no cuentan", "  ", " ", " F ", "G", "F");
        fila("propia sobre sección", "P", "", "", "G", "P");
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
        QCOMPARE(preguntaCambioSerieArticulo(u"familia"_s, u"B"_s),
                 u"Al cambiar la familia, a este artículo le corresponde ahora la serie de facturación: "
                 "B.\nSe va a proceder a realizar este cambio en todos los Albaranes sin facturar "
                 "donde aparezca este Artículo. Este proceso llevará tiempo y mientras tanto ningún "
                 "otro puesto podrá trabajar con Pramelvix.¿Está seguro de continuar?"_s);
        QCOMPARE(preguntaCambioSerieArticulo(u"sección"_s, QString()),
                 u"Al cambiar la sección, a este artículo NO le corresponde ahora ninguna serie de "
                 "facturación específica.\nSe va a proceder a realizar este cambio en todos los "
                 "Albaranes sin facturar donde aparezca este Artículo. Este proceso llevará tiempo y "
                 "mientras tanto ningún otro puesto podrá trabajar con Pramelvix.¿Está seguro de "
                 "continuar?"_s);
        QCOMPARE(preguntaCambioSerieSubfamilia(u"Subfamilia"_s),
                 u" Ha cambiado la Serie de la Subfamilia y será necesario modificarla en \ntodos los "
                 "Albaranes sin facturar donde aparezcan los Artículos contenidos en ella. Esto "
                 "llevará tiempo y mientras tanto ningún otro puesto podrá trabajar con Pramelvix.\n"
                 " ¿Está seguro de continuar?"_s);
    }

    void serieDeUnArticuloGuardado() {
        TestDb t;
        Semilla d(t.db());
        const qint64 g = d.seccion(u"Clínica"_s, u"G"_s);
        const qint64 f = d.familia(g, u"Vacunas"_s);
        const qint64 s = d.subfamilia(f, u"Perros"_s, u"S"_s);
        const qint64 s2 = d.subfamilia(f, u"Gatos"_s);
        const qint64 iva = d.iva(u"General"_s, 21);
        SeriesArticuloStore store(t.db());
        QCOMPARE(*store.serieDeArticulo(d.articulo(u"A1"_s, g, f, s, iva)), u"S"_s);
        QCOMPARE(*store.serieDeArticulo(d.articulo(u"A2"_s, g, f, s2, iva)), u"G"_s);
        QCOMPARE(*store.serieDeArticulo(d.articulo(u"A3"_s, g, f, s, iva, {{u"ArtSerie"_s, u"P"_s}})),
                 u"P"_s);
        QVERIFY(!store.serieDeArticulo(999).has_value());
    }

    void soloLosAlbaranesSinFacturar() {
        TestDb t;
        Semilla d(t.db());
        const qint64 g = d.seccion(u"Clínica"_s);
        const qint64 f = d.familia(g, u"Vacunas"_s);
        const qint64 s = d.subfamilia(f, u"Perros"_s);
        const qint64 iva = d.iva(u"General"_s, 21);
        const qint64 art = d.articulo(u"Vacuna"_s, g, f, s, iva);
        const qint64 otro = d.articulo(u"Pienso"_s, g, f, s, iva);
        d.cliente(u"Ana"_s); // the client of the notes
        const qint64 pendiente = d.albaran(1);
        const qint64 pendiente2 = d.albaran(2);
        const qint64 facturado = d.albaran(3, 77);
        const qint64 l1 = d.linea(pendiente, art, u"A"_s);
        const qint64 l2 = d.linea(pendiente2, art, QString());
        const qint64 lOtro = d.linea(pendiente, otro, u"A"_s);
        const qint64 lFact = d.linea(facturado, art, u"A"_s);

        SeriesArticuloStore store(t.db());
        QCOMPARE(store.reescribirLineasPendientes(art, u"B"_s), 2);
        QCOMPARE(d.serieLinea(l1), u"B"_s);
        QCOMPARE(d.serieLinea(l2), u"B"_s);
        QCOMPARE(d.serieLinea(lOtro), u"A"_s);
        QCOMPARE(d.serieLinea(lFact), u"A"_s);
        // No specific series any more: the lines lose it.
        QCOMPARE(store.reescribirLineasPendientes(art, QString()), 2);
        QVERIFY(t.db().valor(u"SELECT Serie FROM LineasAlbaran WHERE IdLinea = ?"_s, {l1}).isNull());
        QCOMPARE(d.serieLinea(lFact), u"A"_s);
    }

    void cambioDeSerieDeSubfamilia() {
        TestDb t;
        Semilla d(t.db());
        const qint64 g = d.seccion(u"Clínica"_s, u"G"_s);
        const qint64 f = d.familia(g, u"Vacunas"_s);
        const qint64 s = d.subfamilia(f, u"Perros"_s);
        const qint64 otra = d.subfamilia(f, u"Gatos"_s);
        const qint64 iva = d.iva(u"General"_s, 21);
        const qint64 a1 = d.articulo(u"Rabia"_s, g, f, s, iva);
        const qint64 propia = d.articulo(u"Leishmania"_s, g, f, s, iva, {{u"ArtSerie"_s, u"P"_s}});
        const qint64 ajeno = d.articulo(u"Felina"_s, g, f, otra, iva);
        d.cliente(u"Ana"_s);
        const qint64 pend = d.albaran(1);
        const qint64 fact = d.albaran(2, 5);
        const qint64 l1 = d.linea(pend, a1, u"G"_s);
        const qint64 lPropia = d.linea(pend, propia, u"P"_s);
        const qint64 lAjeno = d.linea(pend, ajeno, u"G"_s);
        const qint64 lFact = d.linea(fact, a1, u"G"_s);

        SeriesArticuloStore store(t.db());
        QCOMPARE(store.cambiarSerieSubfamilia(s, u"V"_s), 2);
        QCOMPARE(d.serieLinea(l1), u"V"_s);
        QCOMPARE(d.serieLinea(lPropia), u"P"_s);
        QCOMPARE(d.serieLinea(lAjeno), u"G"_s);
        QCOMPARE(d.serieLinea(lFact), u"G"_s);
        QCOMPARE(t.db().valor(u"SELECT Serie FROM Subfamilias WHERE IdSubfamilia = ?"_s, {s}).toString(),
                 u"V"_s);
        // Taking the series away from the subfamily gives the lines the section's series again.
        store.cambiarSerieSubfamilia(s, QString());
        QCOMPARE(d.serieLinea(l1), u"G"_s);
    }

    // A failure after some lines were rewritten leaves every line and the subfamily as they were.
    void todoONada() {
        TestDb t;
        Semilla d(t.db());
        const qint64 g = d.seccion(u"Clínica"_s);
        const qint64 f = d.familia(g, u"Vacunas"_s);
        const qint64 s = d.subfamilia(f, u"Perros"_s, u"S"_s);
        const qint64 iva = d.iva(u"General"_s, 21);
        const qint64 a1 = d.articulo(u"Rabia"_s, g, f, s, iva);
        const qint64 a2 = d.articulo(u"Moquillo"_s, g, f, s, iva);
        d.cliente(u"Ana"_s);
        const qint64 pend = d.albaran(1);
        const qint64 l1 = d.linea(pend, a1, u"S"_s);
        const qint64 l2 = d.linea(pend, a2, u"S"_s);
        // Another workstation removed the subfamily row while its articles still name it: the
        // lines are rewritten first, then the subfamily update finds no row and fails.
        t.db().ejecutarCambio(u"DELETE FROM Subfamilias WHERE IdSubfamilia = ?"_s, {s});
        SeriesArticuloStore store(t.db());
        QVERIFY_THROWS_EXCEPTION(ErrorBD, store.cambiarSerieSubfamilia(s, u"V"_s));
        QCOMPARE(d.serieLinea(l1), u"S"_s);
        QCOMPARE(d.serieLinea(l2), u"S"_s);
        QVERIFY(!t.db().enTransaccion());
    }
};

PMX_STORE_TEST_MAIN(TestSeriesArticulo)
#include "test_series_articulo.moc"
