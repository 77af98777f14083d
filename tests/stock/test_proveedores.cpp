// Suppliers through the generic record form: the subaccount must begin with the
// suppliers' prefix, and is optional.
#include "app/ficha_form.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "scripted_dialogs.h"
#include "test_db.h"

using namespace Qt::StringLiterals;

class TestProveedores : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

private slots:
    void subcuentaDelProveedor_data() {
        QTest::addColumn<QString>("subcuenta");
        QTest::addColumn<QString>("mensaje"); // empty: saved
        auto fila = [](const char* nombre, QString a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        const QString prefijo = u" La Subcuenta Contable para el Proveedor debe comenzar por '400'."_s;
        const QString numerica =
            u" La Subcuenta Contable para el Proveedor sólo puede contener caracteres numéricos."_s;
        fila("vacía", QString(), QString());
        fila("correcta", u"400000123"_s, QString());
        fila("sólo el prefijo", u"400"_s, QString());
        fila("de cliente", u"430000001"_s, prefijo);
        fila("corta", u"40"_s, prefijo);
        fila("con letra", u"400A1"_s, numerica);
        fila("con punto", u"400.12"_s, numerica);
    }
    void subcuentaDelProveedor() {
        QFETCH(QString, subcuenta);
        QFETCH(QString, mensaje);
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        e.puesto = u"RECEPCION"_s;
        const DescriptorTabla& proveedores = *descriptorTabla(u"Proveedores"_s);
        FichaForm f(e, proveedores);
        f.setTexto(u"Nombre"_s, u"Distribuciones Veterinarias del Sur, S.L."_s);
        f.setTexto(u"Subcuenta"_s, subcuenta);
        const bool guardado = f.guardar();
        const qint64 filas = RegistroStore(t.db()).contar(proveedores);
        if (mensaje.isEmpty()) {
            QVERIFY2(guardado, qPrintable(d.ultimoTexto()));
            QCOMPARE(filas, 1);
            return;
        }
        QVERIFY(!guardado);
        QCOMPARE(filas, 0);
        QCOMPARE(d.ultimo().icono, Icono::Critico);
        QCOMPARE(d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(d.ultimoTexto(), mensaje);
        QCOMPARE(f.foco(), u"Subcuenta"_s);
    }
};

PMX_STORE_TEST_MAIN(TestProveedores)
#include "test_proveedores.moc"
