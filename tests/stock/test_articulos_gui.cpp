// The article and article search windows wired to their forms (the service rule: test_articulo_form). With PRAMELVIX_CAPTURAS set
// to a folder the windows are saved there.
#include "gui.h"
#include "stock/ui/articulo_busqueda_window.h"
#include "stock/ui/articulo_window.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

class TestArticulosGui : public QObject {
    Q_OBJECT

private slots:
    void productoYServicio() {
        Sesion ses(QDateTime(QDate(2026, 5, 4), QTime(10, 0)));
        Entorno& e = ses.e;
        Semilla& datos = ses.s;
        const qint64 g = datos.seccion(u"Farmacia"_s, u"A"_s);
        const qint64 f = datos.familia(g, u"Antiparasitarios"_s);
        const qint64 s = datos.subfamilia(f, u"Pipetas"_s);
        const qint64 iva = datos.iva(u"General 21%"_s, 21);
        const qint64 cod = datos.articulo(u"Pipeta antiparasitaria perro 10-20 kg"_s, g, f, s, iva,
                                          {{u"PVP1"_s, 30.0}, {u"ArtUltPrecio"_s, 12.0},
                                           {u"ArtCodBarras"_s, u"8412345678905"_s}});

        ArticuloWindow w(e);
        QVERIFY(w.abrir(cod));
        QCOMPARE(w.windowTitle(),
                 u"Mantenimiento de Artículos - %1 : Pipeta antiparasitaria perro 10-20 kg"_s.arg(cod));
        QCOMPARE(hijo<QLabel>(w, u"lblMargen"_s)->text(), u"250,00"_s);
        QCOMPARE(hijo<QLineEdit>(w, u"txtArtCodBarras"_s)->text(), u"8412345678905"_s);
        w.resize(1180, 560);
        capturar(w, u"articulo-producto.png"_s);

        ArticuloBusquedaWindow b(e);
        hijo<QLineEdit>(b, u"txtDescripcion"_s)->setText(u"pipeta"_s);
        b.buscar();
        auto* lista = hijo<QTreeWidget>(b, u"lstArticulos"_s);
        QCOMPARE(lista->topLevelItemCount(), 1);
        QCOMPARE(lista->topLevelItem(0)->text(2), u"30,00"_s);
        b.aceptar();
        QCOMPARE(*b.elegido(), cod);
        capturar(b, u"articulo-busqueda.png"_s);
    }
};

PMX_GUI_TEST_MAIN(TestArticulosGui)
#include "test_articulos_gui.moc"
