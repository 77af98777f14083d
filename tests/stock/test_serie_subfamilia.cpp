// Changing a subfamily's series in its list rewrites the series of the pending delivery notes
// that hold its articles, after the question, with the database locked for administration.
// Nothing here registers the rule: the core applies it in every program, windows or none.
#include "app/bloqueo_edicion.h"
#include "app/ficha_form.h"
#include "datos_articulos.h"
#include "scripted_dialogs.h"
#include "test_db.h"

class TestSerieSubfamilia : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        qint64 subfamilia = 0, pendiente = 0, facturada = 0, otra = 0;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        c->e = std::make_unique<Entorno>(c->t.db(), c->d, reloj_);
        c->e->puesto = QStringLiteral("RECEPCION");
        c->e->usuario = QStringLiteral("ana");
        DatosArticulos datos(c->t.db());
        const qint64 s = datos.seccion(QStringLiteral("Farmacia"));
        const qint64 f = datos.familia(s, QStringLiteral("Antiparasitarios"));
        c->subfamilia = datos.subfamilia(f, QStringLiteral("Pipetas"), QStringLiteral("A"));
        const qint64 otraSub = datos.subfamilia(f, QStringLiteral("Collares"), QStringLiteral("A"));
        const qint64 iva = datos.iva(QStringLiteral("General"), 21);
        const qint64 pipeta = datos.articulo(QStringLiteral("Pipeta"), s, f, c->subfamilia, iva);
        const qint64 collar = datos.articulo(QStringLiteral("Collar"), s, f, otraSub, iva);
        c->pendiente = datos.linea(datos.albaran(1), pipeta, QStringLiteral("A"));
        c->facturada = datos.linea(datos.albaran(2, 7), pipeta, QStringLiteral("A"));
        c->otra = datos.linea(datos.albaran(3), collar, QStringLiteral("A"));
        return c;
    }

    FichaForm ficha(Caso& c) {
        const DescriptorTabla& t = *descriptorTabla(QStringLiteral("Subfamilias"));
        return FichaForm(*c.e, *RegistroStore(c.t.db()).cargar(t, c.subfamilia));
    }

private slots:
    void cambioAceptado() {
        auto c = caso();
        FichaForm f = ficha(*c);
        QVERIFY(f.bloquear());
        f.setTexto(QStringLiteral("Serie"), QStringLiteral("B"));
        c->d.si();
        QVERIFY(f.guardar());
        QCOMPARE(c->d.mensajes().first().titulo, QStringLiteral("Atención"));
        QVERIFY(c->d.mensajes().first().texto.startsWith(
            QStringLiteral(" Ha cambiado la Serie de la Pipetas y será")));
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Actualización realizada correctamente."));
        DatosArticulos datos(c->t.db());
        QCOMPARE(datos.serieLinea(c->pendiente), QStringLiteral("B"));
        QCOMPARE(datos.serieLinea(c->facturada), QStringLiteral("A")); // invoiced: untouched
        QCOMPARE(datos.serieLinea(c->otra), QStringLiteral("A"));      // another subfamily
        QCOMPARE(c->t.db()
                     .valor(QStringLiteral("SELECT Serie FROM Subfamilias WHERE IdSubfamilia = ?"),
                            {c->subfamilia})
                     .toString(),
                 QStringLiteral("B"));
        // The administration lock is gone afterwards.
        QCOMPARE(almacenBloqueos(*c->e).contar(), 0);
    }

    void cambioRechazado() {
        auto c = caso();
        FichaForm f = ficha(*c);
        f.setTexto(QStringLiteral("Serie"), QStringLiteral("B"));
        c->d.no();
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.mensajes().size(), 1);
        DatosArticulos datos(c->t.db());
        QCOMPARE(datos.serieLinea(c->pendiente), QStringLiteral("A"));
        QCOMPARE(c->t.db()
                     .valor(QStringLiteral("SELECT Serie FROM Subfamilias WHERE IdSubfamilia = ?"),
                            {c->subfamilia})
                     .toString(),
                 QStringLiteral("A"));
    }

    void otroPuestoTrabajandoImpideElCambio() {
        auto c = caso();
        // Two records locked by another workstation: the administration lock is refused.
        ScriptedDialogs d2;
        Entorno otro(c->t.db(), d2, reloj_);
        otro.puesto = QStringLiteral("CONSULTA2");
        otro.usuario = QStringLiteral("luis");
        const DescriptorTabla& art = *descriptorTabla(QStringLiteral("Articulos"));
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(art, QStringLiteral("1"), QStringLiteral("Pipeta"),
                                                       AccionBloqueo::Modificacion, false));
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(art, QStringLiteral("2"), QStringLiteral("Collar"),
                                                       AccionBloqueo::Modificacion, false));
        FichaForm f = ficha(*c);
        f.setTexto(QStringLiteral("Serie"), QStringLiteral("B"));
        c->d.si();
        QVERIFY(!f.guardar());
        QVERIFY(c->d.ultimoTexto().startsWith(
            QStringLiteral(" No es posible bloquear la B.D. para Administración ")));
        QCOMPARE(DatosArticulos(c->t.db()).serieLinea(c->pendiente), QStringLiteral("A"));
    }

    void sinCambioDeSerieNoPregunta() {
        auto c = caso();
        FichaForm f = ficha(*c);
        f.setTexto(QStringLiteral("Descripcion"), QStringLiteral("Pipetas y sprays"));
        QVERIFY(f.guardar());
        QVERIFY(c->d.mensajes().isEmpty());
        QCOMPARE(c->t.db()
                     .valor(QStringLiteral("SELECT Descripcion FROM Subfamilias WHERE IdSubfamilia = ?"),
                            {c->subfamilia})
                     .toString(),
                 QStringLiteral("Pipetas y sprays"));
    }
};

PMX_STORE_TEST_MAIN(TestSerieSubfamilia)
#include "test_serie_subfamilia.moc"
