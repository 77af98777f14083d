// The article window binds its widgets to the form: title, service fields disabled, margin,
// and the search window lists what the form finds. With PRAMELVIX_CAPTURAS set to a folder the
// windows are saved there as articulo-producto.png and articulo-servicio.png.
#include "datos_articulos.h"
#include "scripted_dialogs.h"
#include "stock/ui/articulo_busqueda_window.h"
#include "stock/ui/articulo_window.h"
#include "test_db.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

class TestArticulosGui : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 5, 4), QTime(10, 0))};

    static void captura(QWidget& w, const QString& nombre) {
        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        if (carpeta.isEmpty()) return;
        w.show();
        QApplication::processEvents();
        QVERIFY(w.grab().save(carpeta + QLatin1Char('/') + nombre));
    }

private slots:
    void productoYServicio() {
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        e.puesto = QStringLiteral("MOSTRADOR");
        e.sesion = QStringLiteral("MOSTRADOR-1");
        DatosArticulos datos(t.db());
        const qint64 g = datos.seccion(QStringLiteral("Farmacia"), QStringLiteral("A"));
        const qint64 f = datos.familia(g, QStringLiteral("Antiparasitarios"));
        const qint64 s = datos.subfamilia(f, QStringLiteral("Pipetas"));
        const qint64 iva = datos.iva(QStringLiteral("General 21%"), 21);
        datos.crear(QStringLiteral("TiposArticulo"),
                    {{QStringLiteral("IdTipoArticulo"), QStringLiteral("PRODUCTO")},
                     {QStringLiteral("Descripcion"), QStringLiteral("Producto")}});
        datos.crear(QStringLiteral("TiposArticulo"),
                    {{QStringLiteral("IdTipoArticulo"), QStringLiteral("SERVICIO")},
                     {QStringLiteral("Descripcion"), QStringLiteral("Servicio")}});
        datos.crear(QStringLiteral("Proveedores"),
                    {{QStringLiteral("Nombre"), QStringLiteral("Distribuciones Veterinarias S.L.")}});
        const qint64 cod =
            datos.articulo(QStringLiteral("Pipeta antiparasitaria perro 10-20 kg"), g, f, s, iva,
                           {{QStringLiteral("PVP1"), 30.0},
                            {QStringLiteral("PVP2"), 28.5},
                            {QStringLiteral("ArtUltPrecio"), 12.0},
                            {QStringLiteral("ArtCodProv"), 1},
                            {QStringLiteral("Stock"), 14.0},
                            {QStringLiteral("ArtStockMin"), 4.0},
                            {QStringLiteral("ArtCodBarras"), QStringLiteral("8412345678905")},
                            {QStringLiteral("ArtDias"), 30}});

        ArticuloWindow w(e);
        QCOMPARE(w.windowTitle(), QStringLiteral("Mantenimiento de Artículos -  (Nuevo Artículo) : "));
        QVERIFY(w.abrir(cod));
        QCOMPARE(w.windowTitle(),
                 QStringLiteral("Mantenimiento de Artículos - %1 : Pipeta antiparasitaria perro 10-20 kg")
                     .arg(cod));
        QCOMPARE(w.findChild<QLabel*>(QStringLiteral("lblMargen"))->text(), QStringLiteral("250,00"));
        auto* familia = w.findChild<QComboBox*>(QStringLiteral("cboFamilia"));
        QCOMPARE(familia->currentText(), QStringLiteral("Antiparasitarios"));
        auto* barras = w.findChild<QLineEdit*>(QStringLiteral("txtArtCodBarras"));
        QVERIFY(barras->isEnabled());
        w.resize(1180, 560);
        captura(w, QStringLiteral("articulo-producto.png"));

        // Choosing the type SERVICIO in the drop-down empties and disables the product fields.
        auto* tipo = w.findChild<QComboBox*>(QStringLiteral("cboArtTipoArticulo"));
        const int servicio = tipo->findData(QStringLiteral("SERVICIO"));
        QVERIFY(servicio > 0);
        tipo->setCurrentIndex(servicio);
        emit tipo->activated(servicio);
        QVERIFY(w.form().esServicio());
        QVERIFY(!barras->isEnabled());
        QCOMPARE(barras->text(), QString());
        QVERIFY(!w.findChild<QComboBox*>(QStringLiteral("cboArtCodProv"))->isEnabled());
        QVERIFY(!w.findChild<QLineEdit*>(QStringLiteral("txtStock"))->isEnabled());
        QVERIFY(w.findChild<QLineEdit*>(QStringLiteral("txtPVP1"))->isEnabled());
        QCOMPARE(w.findChild<QLabel*>(QStringLiteral("lblMargen"))->text(), QString());
        captura(w, QStringLiteral("articulo-servicio.png"));
        w.cancelar();
        QVERIFY(barras->isEnabled());
        QCOMPARE(barras->text(), QStringLiteral("8412345678905"));

        ArticuloBusquedaWindow b(e);
        b.findChild<QLineEdit*>(QStringLiteral("txtDescripcion"))->setText(QStringLiteral("pipeta"));
        b.buscar();
        auto* lista = b.findChild<QTreeWidget*>(QStringLiteral("lstArticulos"));
        QCOMPARE(lista->topLevelItemCount(), 1);
        QCOMPARE(lista->topLevelItem(0)->text(2), QStringLiteral("30,00"));
        QCOMPARE(lista->headerItem()->text(6), QStringLiteral("Días de recordatorio"));
        b.aceptar();
        QCOMPARE(*b.elegido(), cod);
        captura(b, QStringLiteral("articulo-busqueda.png"));
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestArticulosGui prueba;
    return QTest::qExec(&prueba, argc, argv);
}
#include "test_articulos_gui.moc"
