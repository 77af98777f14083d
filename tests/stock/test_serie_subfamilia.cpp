// The stock tables' own rules in the generic record form: changing a subfamily's series in its
// list rewrites the pending delivery notes after the question, under the administrative lock
// (which lines: test_series_articulo); a supplier's subaccount is optional and must begin with
// the suppliers' prefix (the rule itself: test_subcuenta_lopd).
#include "app/bloqueo_edicion.h"
#include "app/ficha_form.h"
#include "data/esquema.h"
#include "sesion.h"
#include "stock/serie_subfamilia.h"

class TestSerieSubfamilia : public QObject {
    Q_OBJECT

    // A subfamily of series A whose article is on a pending delivery note.
    struct Caso : Sesion {
        qint64 subfamilia = 0, pendiente = 0;
        Caso() {
            const qint64 sec = s.seccion(u"Farmacia"_s);
            const qint64 fam = s.familia(sec, u"Antiparasitarios"_s);
            subfamilia = s.subfamilia(fam, u"Pipetas"_s, u"A"_s);
            s.cliente(u"Ana"_s); // the client of the note
            pendiente = s.linea(s.albaran(1), s.articulo(u"Pipeta"_s, sec, fam, subfamilia, s.iva()), u"A"_s);
        }
        FichaForm ficha() {
            return FichaForm(e, *RegistroStore(db()).cargar(*descriptorTabla(u"Subfamilias"_s), subfamilia));
        }
        QString guardada(const QString& columna) {
            return valor(u"SELECT %1 FROM Subfamilias WHERE IdSubfamilia = ?"_s.arg(columna), {subfamilia})
                .toString();
        }
    };

private slots:
    void cambioAceptado() {
        Caso c;
        FichaForm f = c.ficha();
        QVERIFY(f.bloquear());
        f.setTexto(u"Serie"_s, u"B"_s);
        c.d.si();
        QVERIFY(f.guardar());
        QCOMPARE(c.d.mensajes().first().titulo, u"Atención"_s);
        QVERIFY(c.d.mensajes().first().texto.startsWith(u" Ha cambiado la Serie de la Pipetas y será"_s));
        QCOMPARE(c.d.ultimoTexto(), u"Actualización realizada correctamente."_s);
        QCOMPARE(c.s.serieLinea(c.pendiente), u"B"_s);
        QCOMPARE(c.guardada(u"Serie"_s), u"B"_s);
        // The administration lock is gone afterwards.
        QCOMPARE(almacenBloqueos(c.e).contar(), 0);
    }

    // No to the question saves nothing; a save that keeps the series asks nothing.
    void cambioRechazadoOSinCambioDeSerie() {
        Caso c;
        FichaForm f = c.ficha();
        f.setTexto(u"Descripcion"_s, u"Pipetas y sprays"_s);
        f.setTexto(u"Serie"_s, u"B"_s);
        c.d.no();
        QVERIFY(!f.guardar());
        QCOMPARE(c.d.mensajes().size(), 1);
        QCOMPARE(c.s.serieLinea(c.pendiente), u"A"_s);
        QCOMPARE(c.guardada(u"Serie"_s), u"A"_s);
        QCOMPARE(c.guardada(u"Descripcion"_s), u"Pipetas"_s);
        c.d.limpiar();
        f.setTexto(u"Serie"_s, u"A"_s);
        QVERIFY(f.guardar());
        QVERIFY(c.d.mensajes().isEmpty());
        QCOMPARE(c.guardada(u"Descripcion"_s), u"Pipetas y sprays"_s);
    }

    void otroPuestoTrabajandoImpideElCambio() {
        Caso c;
        // Two records locked by another workstation (one alone is allowed): the administration
        // lock is refused.
        ScriptedDialogs d2;
        Entorno otro(c.db(), d2, c.reloj);
        otro.puesto = u"CONSULTA2"_s;
        otro.usuario = u"luis"_s;
        const DescriptorTabla& art = *descriptorTabla(u"Articulos"_s);
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(art, u"1"_s, u"Pipeta"_s, AccionBloqueo::Modificacion,
                                                       false));
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(art, u"2"_s, u"Collar"_s, AccionBloqueo::Modificacion,
                                                       false));
        FichaForm f = c.ficha();
        f.setTexto(u"Serie"_s, u"B"_s);
        c.d.si();
        QVERIFY(!f.guardar());
        QVERIFY(c.d.ultimoTexto().startsWith(u" No es posible bloquear la B.D. para Administración "_s));
        QCOMPARE(c.s.serieLinea(c.pendiente), u"A"_s);
    }


private slots:
    void subcuentaDelProveedor() {
        Sesion s;
        FichaForm f(s.e, *descriptorTabla(u"Proveedores"_s));
        f.setTexto(u"Nombre"_s, u"Distribuciones Veterinarias del Sur, S.L."_s);
        f.setTexto(u"Subcuenta"_s, u"400A1"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(s.s.contar(u"Proveedores"_s), 0);
        QCOMPARE(s.d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(s.d.ultimoTexto(),
                 u" La Subcuenta Contable para el Proveedor sólo puede contener caracteres numéricos."_s);
        QCOMPARE(f.foco(), u"Subcuenta"_s);
        // Without a subaccount it is saved.
        f.setTexto(u"Subcuenta"_s, QString());
        // Nothing is created while an administrator of another workstation holds the database.
        OtroPuesto otro(s, u"CONSULTA2"_s);
        otro.e.sesion = u"S2"_s;
        QVERIFY(almacenBloqueos(otro.e).bloquearBD());
        QVERIFY(!f.guardar());
        QCOMPARE(s.s.contar(u"Proveedores"_s), 0);
        almacenBloqueos(otro.e).desbloquearBD();
        QVERIFY2(f.guardar(), qPrintable(s.d.ultimoTexto()));
        QCOMPARE(s.s.contar(u"Proveedores"_s), 1);
        QCOMPARE(s.s.contar(u"Bloqueos"_s), 0);
    }
};

PMX_STORE_TEST_MAIN(TestSerieSubfamilia)
#include "test_serie_subfamilia.moc"
