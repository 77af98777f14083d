// The invoicing series that follows from an article's classification, and its rewrite on the
// lines of the delivery notes not yet invoiced, on both engines.
#include "sesion.h"
#include "stock/series_articulo.h"
#include "test_db.h"

class TestSeriesArticulo : public QObject {
    Q_OBJECT

    // A section, a family, a subfamily (each with the series given, "" for none), a VAT type
    // and the client of the delivery notes.
    struct Arbol {
        TestDb t;
        Semilla d{t.db()};
        qint64 g, f, s, iva;
        Arbol(const QString& serieSeccion, const QString& serieSubfamilia)
            : g(d.seccion(u"Clínica"_s, serieSeccion)), f(d.familia(g, u"Vacunas"_s)),
              s(d.subfamilia(f, u"Perros"_s, serieSubfamilia)), iva(d.iva()) {
            d.cliente(u"Ana"_s);
        }
        qint64 articulo(const QString& nombre, const QVariantMap& mas = {}) {
            return d.articulo(nombre, g, f, s, iva, mas);
        }
    };

private slots:
    // Own, subfamily, family, section: the first one given (blanks are none); the other levels
    // through the store in serieDeUnArticuloGuardado.
    void nivelQueManda() {
        QCOMPARE(serieAplicable({QString(), QString(), QString(), QString()}), QString());
        QCOMPARE(serieAplicable({u"  "_s, u" "_s, u" F "_s, u"G"_s}), u"F"_s);
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
        Arbol a{u"G"_s, u"S"_s};
        const qint64 gatos = a.d.subfamilia(a.f, u"Gatos"_s);
        SeriesArticuloStore store(a.t.db());
        QCOMPARE(*store.serieDeArticulo(a.articulo(u"A1"_s)), u"S"_s);
        QCOMPARE(*store.serieDeArticulo(a.d.articulo(u"A2"_s, a.g, a.f, gatos, a.iva)), u"G"_s);
        QCOMPARE(*store.serieDeArticulo(a.articulo(u"A3"_s, {{u"ArtSerie"_s, u"P"_s}})), u"P"_s);
        QVERIFY(!store.serieDeArticulo(999).has_value());
    }

    void soloLosAlbaranesSinFacturar() {
        Arbol a{QString(), QString()};
        const qint64 art = a.articulo(u"Vacuna"_s);
        const qint64 pendiente = a.d.albaran(1);
        const qint64 l1 = a.d.linea(pendiente, art, u"A"_s);
        const qint64 l2 = a.d.linea(a.d.albaran(2), art, QString());
        const qint64 lOtro = a.d.linea(pendiente, a.articulo(u"Pienso"_s), u"A"_s);
        const qint64 lFact = a.d.linea(a.d.albaran(3, 77), art, u"A"_s);

        SeriesArticuloStore store(a.t.db());
        QCOMPARE(store.reescribirLineasPendientes(art, u"B"_s), 2);
        QCOMPARE(a.d.serieLinea(l1), u"B"_s);
        QCOMPARE(a.d.serieLinea(l2), u"B"_s);
        QCOMPARE(a.d.serieLinea(lOtro), u"A"_s);
        QCOMPARE(a.d.serieLinea(lFact), u"A"_s);
        // No specific series any more: the lines lose it.
        QCOMPARE(store.reescribirLineasPendientes(art, QString()), 2);
        QVERIFY(a.t.db().valor(u"SELECT Serie FROM LineasAlbaran WHERE IdLinea = ?"_s, {l1}).isNull());
        QCOMPARE(a.d.serieLinea(lFact), u"A"_s);
    }

    void cambioDeSerieDeSubfamilia() {
        Arbol a{u"G"_s, QString()};
        const qint64 otra = a.d.subfamilia(a.f, u"Gatos"_s);
        const qint64 rabia = a.articulo(u"Rabia"_s);
        const qint64 pend = a.d.albaran(1);
        const qint64 l1 = a.d.linea(pend, rabia, u"G"_s);
        const qint64 lPropia =
            a.d.linea(pend, a.articulo(u"Leishmania"_s, {{u"ArtSerie"_s, u"P"_s}}), u"P"_s);
        const qint64 lAjeno = a.d.linea(pend, a.d.articulo(u"Felina"_s, a.g, a.f, otra, a.iva), u"G"_s);
        const qint64 lFact = a.d.linea(a.d.albaran(2, 5), rabia, u"G"_s);

        SeriesArticuloStore store(a.t.db());
        QCOMPARE(store.cambiarSerieSubfamilia(a.s, u"V"_s), 2);
        QCOMPARE(a.d.serieLinea(l1), u"V"_s);
        QCOMPARE(a.d.serieLinea(lPropia), u"P"_s);
        QCOMPARE(a.d.serieLinea(lAjeno), u"G"_s);
        QCOMPARE(a.d.serieLinea(lFact), u"G"_s);
        QCOMPARE(a.t.db().valor(u"SELECT Serie FROM Subfamilias WHERE IdSubfamilia = ?"_s, {a.s}).toString(),
                 u"V"_s);
        // Taking the series away from the subfamily gives the lines the section's series again.
        store.cambiarSerieSubfamilia(a.s, QString());
        QCOMPARE(a.d.serieLinea(l1), u"G"_s);
    }

    // A failure after some lines were rewritten leaves every line and the subfamily as they were.
    void todoONada() {
        Arbol a{QString(), u"S"_s};
        const qint64 pend = a.d.albaran(1);
        const qint64 l1 = a.d.linea(pend, a.articulo(u"Rabia"_s), u"S"_s);
        const qint64 l2 = a.d.linea(pend, a.articulo(u"Moquillo"_s), u"S"_s);
        // The lines are rewritten first, then the subfamily update fails (a trigger refuses it).
        if (a.t.db().motor() == Motor::SQLite) {
            a.t.db().ejecutarDirecto(
                u"CREATE TRIGGER falla BEFORE UPDATE ON Subfamilias BEGIN SELECT RAISE(ABORT, 'falla'); END"_s);
        } else {
            a.t.db().ejecutarDirecto(u"CREATE FUNCTION falla() RETURNS trigger AS $$ BEGIN RAISE EXCEPTION 'falla'; "
                                     "END $$ LANGUAGE plpgsql"_s);
            a.t.db().ejecutarDirecto(
                u"CREATE TRIGGER falla BEFORE UPDATE ON Subfamilias FOR EACH ROW EXECUTE FUNCTION falla()"_s);
        }
        SeriesArticuloStore store(a.t.db());
        QVERIFY_THROWS_EXCEPTION(ErrorBD, store.cambiarSerieSubfamilia(a.s, u"V"_s));
        QCOMPARE(a.d.serieLinea(l1), u"S"_s);
        QCOMPARE(a.d.serieLinea(l2), u"S"_s);
        QVERIFY(!a.t.db().enTransaccion());
    }
};

PMX_STORE_TEST_MAIN(TestSeriesArticulo)
#include "test_series_articulo.moc"
