// Changing a subfamily's series in its list rewrites the series of the pending delivery notes
// that hold its articles, after the question, with the database locked for administration.
// Nothing here registers the rule: the core applies it in every program, windows or none.
#include "app/bloqueo_edicion.h"
#include "app/ficha_form.h"
#include "data/esquema.h"
#include "sesion.h"
#include "stock/serie_subfamilia.h"

using namespace Qt::StringLiterals;

class TestSerieSubfamilia : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        qint64 subfamilia = 0, pendiente = 0, facturada = 0, otra = 0;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        c->e.puesto = u"RECEPCION"_s;
        c->e.usuario = u"ana"_s;
        Semilla& datos = c->s;
        const qint64 s = datos.seccion(u"Farmacia"_s);
        const qint64 f = datos.familia(s, u"Antiparasitarios"_s);
        c->subfamilia = datos.subfamilia(f, u"Pipetas"_s, u"A"_s);
        const qint64 otraSub = datos.subfamilia(f, u"Collares"_s, u"A"_s);
        const qint64 iva = datos.iva(u"General"_s, 21);
        const qint64 pipeta = datos.articulo(u"Pipeta"_s, s, f, c->subfamilia, iva);
        const qint64 collar = datos.articulo(u"Collar"_s, s, f, otraSub, iva);
        datos.cliente(u"Ana"_s); // the client of the notes
        c->pendiente = datos.linea(datos.albaran(1), pipeta, u"A"_s);
        c->facturada = datos.linea(datos.albaran(2, 7), pipeta, u"A"_s);
        c->otra = datos.linea(datos.albaran(3), collar, u"A"_s);
        return c;
    }

    FichaForm ficha(Caso& c) {
        const DescriptorTabla& t = *descriptorTabla(u"Subfamilias"_s);
        return FichaForm(c.e, *RegistroStore(c.db()).cargar(t, c.subfamilia));
    }

private slots:
    void cambioAceptado() {
        auto c = caso();
        FichaForm f = ficha(*c);
        QVERIFY(f.bloquear());
        f.setTexto(u"Serie"_s, u"B"_s);
        c->d.si();
        QVERIFY(f.guardar());
        QCOMPARE(c->d.mensajes().first().titulo, u"Atención"_s);
        QVERIFY(c->d.mensajes().first().texto.startsWith(u" Ha cambiado la Serie de la Pipetas y será"_s));
        QCOMPARE(c->d.ultimoTexto(), u"Actualización realizada correctamente."_s);
        Semilla& datos = c->s;
        QCOMPARE(datos.serieLinea(c->pendiente), u"B"_s);
        QCOMPARE(datos.serieLinea(c->facturada), u"A"_s); // invoiced: untouched
        QCOMPARE(datos.serieLinea(c->otra), u"A"_s);      // another subfamily
        QCOMPARE(c->db()
                     .valor(u"SELECT Serie FROM Subfamilias WHERE IdSubfamilia = ?"_s, {c->subfamilia})
                     .toString(),
                 u"B"_s);
        // The administration lock is gone afterwards.
        QCOMPARE(almacenBloqueos(c->e).contar(), 0);
    }

    void cambioRechazado() {
        auto c = caso();
        FichaForm f = ficha(*c);
        f.setTexto(u"Serie"_s, u"B"_s);
        c->d.no();
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.mensajes().size(), 1);
        Semilla& datos = c->s;
        QCOMPARE(datos.serieLinea(c->pendiente), u"A"_s);
        QCOMPARE(c->db()
                     .valor(u"SELECT Serie FROM Subfamilias WHERE IdSubfamilia = ?"_s, {c->subfamilia})
                     .toString(),
                 u"A"_s);
    }

    void otroPuestoTrabajandoImpideElCambio() {
        auto c = caso();
        // Two records locked by another workstation: the administration lock is refused.
        ScriptedDialogs d2;
        Entorno otro(c->db(), d2, c->reloj);
        otro.puesto = u"CONSULTA2"_s;
        otro.usuario = u"luis"_s;
        const DescriptorTabla& art = *descriptorTabla(u"Articulos"_s);
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(art, u"1"_s, u"Pipeta"_s, AccionBloqueo::Modificacion,
                                                       false));
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(art, u"2"_s, u"Collar"_s, AccionBloqueo::Modificacion,
                                                       false));
        FichaForm f = ficha(*c);
        f.setTexto(u"Serie"_s, u"B"_s);
        c->d.si();
        QVERIFY(!f.guardar());
        QVERIFY(c->d.ultimoTexto().startsWith(u" No es posible bloquear la B.D. para Administración "_s));
        QCOMPARE(Semilla(c->db()).serieLinea(c->pendiente), u"A"_s);
    }

    void sinCambioDeSerieNoPregunta() {
        auto c = caso();
        FichaForm f = ficha(*c);
        f.setTexto(u"Descripcion"_s, u"Pipetas y sprays"_s);
        QVERIFY(f.guardar());
        QVERIFY(c->d.mensajes().isEmpty());
        QCOMPARE(c->db()
                     .valor(u"SELECT Descripcion FROM Subfamilias WHERE IdSubfamilia = ?"_s, {c->subfamilia})
                     .toString(),
                 u"Pipetas y sprays"_s);
    }
};

PMX_STORE_TEST_MAIN(TestSerieSubfamilia)
#include "test_serie_subfamilia.moc"
