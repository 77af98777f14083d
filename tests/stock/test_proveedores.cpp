// Suppliers through the generic record form: the subaccount must begin with the
// suppliers' prefix, and is optional.
#include "app/ficha_form.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "scripted_dialogs.h"
#include "test_db.h"

class TestProveedores : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

private slots:
    void subcuentaDelProveedor_data() {
        QTest::addColumn<QString>("subcuenta");
        QTest::addColumn<QString>("mensaje"); // empty: saved
        const QString prefijo = QStringLiteral(" La Subcuenta Contable para el Proveedor debe comenzar por '400'.");
        const QString numerica =
            QStringLiteral(" La Subcuenta Contable para el Proveedor sólo puede contener caracteres numéricos.");
        QTest::newRow("vacía") << QString() << QString();
        QTest::newRow("correcta") << QStringLiteral("400000123") << QString();
        QTest::newRow("sólo el prefijo") << QStringLiteral("400") << QString();
        QTest::newRow("de cliente") << QStringLiteral("430000001") << prefijo;
        QTest::newRow("corta") << QStringLiteral("40") << prefijo;
        QTest::newRow("con letra") << QStringLiteral("400A1") << numerica;
        QTest::newRow("con punto") << QStringLiteral("400.12") << numerica;
    }
    void subcuentaDelProveedor() {
        QFETCH(QString, subcuenta);
        QFETCH(QString, mensaje);
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        e.puesto = QStringLiteral("RECEPCION");
        const DescriptorTabla& proveedores = *descriptorTabla(QStringLiteral("Proveedores"));
        FichaForm f(e, proveedores);
        f.setTexto(QStringLiteral("Nombre"), QStringLiteral("Distribuciones Veterinarias del Sur, S.L."));
        f.setTexto(QStringLiteral("Subcuenta"), subcuenta);
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
        QCOMPARE(d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(d.ultimoTexto(), mensaje);
        QCOMPARE(f.foco(), QStringLiteral("Subcuenta"));
    }
};

PMX_STORE_TEST_MAIN(TestProveedores)
#include "test_proveedores.moc"
