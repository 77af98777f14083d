// Suppliers through the generic record form: the subaccount is optional and must begin with
// the suppliers' prefix (the rule itself: test_subcuenta_lopd).
#include "app/bloqueo_edicion.h"
#include "app/ficha_form.h"
#include "data/esquema.h"
#include "sesion.h"

class TestProveedores : public QObject {
    Q_OBJECT

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

PMX_STORE_TEST_MAIN(TestProveedores)
#include "test_proveedores.moc"
