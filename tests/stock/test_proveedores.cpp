// Suppliers through the generic record form: the subaccount must begin with the
// suppliers' prefix, and is optional (the rule itself: test_subcuenta_lopd).
#include "app/ficha_form.h"
#include "data/esquema.h"
#include "sesion.h"

class TestProveedores : public QObject {
    Q_OBJECT

private slots:
    void subcuentaDelProveedor_data() {
        QTest::addColumn<QString>("subcuenta");
        QTest::addColumn<QString>("mensaje"); // empty: saved
        auto fila = [](const char* nombre, QString a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("vacía", QString(), QString());
        fila("de cliente", u"430000001"_s,
             u" La Subcuenta Contable para el Proveedor debe comenzar por '400'."_s);
        fila("con letra", u"400A1"_s,
             u" La Subcuenta Contable para el Proveedor sólo puede contener caracteres numéricos."_s);
    }
    void subcuentaDelProveedor() {
        QFETCH(QString, subcuenta);
        QFETCH(QString, mensaje);
        Sesion s;
        const DescriptorTabla& proveedores = *descriptorTabla(u"Proveedores"_s);
        FichaForm f(s.e, proveedores);
        f.setTexto(u"Nombre"_s, u"Distribuciones Veterinarias del Sur, S.L."_s);
        f.setTexto(u"Subcuenta"_s, subcuenta);
        const bool guardado = f.guardar();
        const qint64 filas = s.s.contar(u"Proveedores"_s);
        if (mensaje.isEmpty()) {
            QVERIFY2(guardado, qPrintable(s.d.ultimoTexto()));
            QCOMPARE(filas, 1);
            return;
        }
        QVERIFY(!guardado);
        QCOMPARE(filas, 0);
        QCOMPARE(s.d.ultimo().icono, Icono::Critico);
        QCOMPARE(s.d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(s.d.ultimoTexto(), mensaje);
        QCOMPARE(f.foco(), u"Subcuenta"_s);
    }
};

PMX_STORE_TEST_MAIN(TestProveedores)
#include "test_proveedores.moc"
