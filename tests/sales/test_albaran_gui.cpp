// The sales windows on the offscreen platform: the delivery-note window on the demo clinic (a
// demo note shown as the form has it, a line typed through the editing row and saved, the note
// exported to PDF), the note search, the article windows and the document preview, each wired to
// its form. With PRAMELVIX_CAPTURAS set to a folder, the windows and the PDF are saved there.
#include "albaranes_ejemplo.h"
#include "app/instalador.h"
#include "documents/plantillas_defecto.h"
#include "documents/ui/salida_documentos_qt.h"
#include "gui.h"
#include "sales/ui/albaran_busqueda_window.h"
#include "sales/ui/albaran_window.h"
#include "stock/ui/articulo_busqueda_window.h"
#include "stock/ui/articulo_window.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPrintPreviewDialog>
#include <QTableWidget>
#include <QTextDocument>
#include <QToolBar>
#include <QTreeWidget>
#include <QWidget>

class TestAlbaranGui : public QObject {
    Q_OBJECT

private slots:
    void notaDeLaClinicaDemo() {
        Sesion s(QDateTime(QDate::currentDate(), QTime(11, 40)));
        OpcionesInstalacion op;
        op.administrador = u"admin"_s;
        op.clave = u"admin"_s;
        prepararBaseDatos(s.db(), op);
        cargarDemo(s.db(), s.e.puesto);
        QTemporaryDir datos;
        QCOMPARE(instalarPlantillasPorDefecto(datos.path()), QString());
        s.e.configuracionBD.servidor = datos.path();

        const qint64 id = s.valor(u"SELECT MAX(IdAlbaran) FROM Albaranes"_s).toLongLong();
        QVERIFY(id > 0);
        AlbaranWindow w(s.e);
        AperturaAlbaran ap;
        ap.IdAlbaran = id;
        w.abrir(ap);
        AlbaranForm& f = w.form();
        auto* grid = hijo<QTableWidget>(w, u"grdLineas"_s);
        QCOMPARE(grid->horizontalHeaderItem(5)->text(), u"Total línea"_s);
        QCOMPARE(grid->rowCount(), f.albaran().lineas().size());
        QCOMPARE(hijo<QLabel>(w, u"lblTotal"_s)->text(), f.textoTotal(u"total"_s));
        QCOMPARE(w.windowTitle(), f.titulo());

        // A line typed in the editing row: the article's code, Enter, then Añadir.
        const int antes = grid->rowCount();
        escribir(w, u"txtCodArticulo"_s, u"5"_s);
        QTest::keyClick(hijo<QLineEdit>(w, u"txtCodArticulo"_s), Qt::Key_Return);
        QCOMPARE(hijo<QLineEdit>(w, u"txtConcepto"_s)->text(), u"Pipeta antiparasitaria perro 10-20 kg"_s);
        escribir(w, u"txtCantidad"_s, u"2"_s);
        pulsar(w, u"cmdInsertar"_s);
        QCOMPARE(grid->rowCount(), antes + 1);
        QCOMPARE(grid->item(antes, 5)->text(), f.celdas(antes).at(5));
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(s.valor(u"SELECT COUNT(*) FROM LineasAlbaran WHERE IdAlbaran = ?"_s, {id}).toInt(),
                 antes + 1);

        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        const QString pdf = QDir(carpeta.isEmpty() ? datos.path() : carpeta).filePath(u"albaran.pdf"_s);
        s.d.si(); // the data-protection notice, should the demo client not consent
        QVERIFY(w.form().exportarPdf(pdf));
        QFile fichero(pdf);
        QVERIFY(fichero.open(QIODevice::ReadOnly));
        QCOMPARE(fichero.read(5), QByteArray("%PDF-"));
        grid->clearSelection();
        w.resize(1000, 640);
        capturar(w, u"albaran.png"_s);
        QVERIFY(w.close());
    }


private slots:
    void buscarYElegir() {
        AlbaranesEjemplo c;
        AlbaranBusquedaWindow w(c.e);
        auto* rejilla = hijo<QTableWidget>(w, u"grdAlbaranes"_s);
        QCOMPARE(textosCombo(w, u"cboSerie"_s).at(2), u"B - Clínica"_s);
        QCOMPARE(rejilla->rowCount(), 0); // nothing is searched until asked
        escribir(w, u"txtDesde"_s, u"15/02/2026"_s);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(w.form().desde, u"15/02/2026"_s);
        QCOMPARE(rejilla->rowCount(), 5);
        for (int col = 0; col < rejilla->columnCount(); ++col)
            QCOMPARE(rejilla->item(4, col) ? rejilla->item(4, col)->text() : QString(), w.form().celdas(4).at(col));
        capturar(w, u"busqueda-albaranes.png"_s);
        emit rejilla->cellDoubleClicked(4, 2);
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(w.form().elegido(), std::optional<qint64>(w.form().resultado().at(4).IdAlbaran));
    }


private slots:
    void vistaPreviaConGuardarPdf() {
        Sesion s;
        QWidget ventana;
        auto* salida = new SalidaDocumentosQt(s.e, &ventana);
        s.e.salidaDocumentos = salida;

        QTextDocument documento;
        documento.setHtml(u"<h1>Albarán</h1><p>Ana Belén Núñez Castaño</p>"_s);
        std::unique_ptr<QPrintPreviewDialog> vista(salida->crearVistaPrevia(documento, u"Albarán A/125"_s));
        QCOMPARE(vista->windowTitle(), u"Vista previa - Albarán A/125"_s);
        auto* pdf = vista->findChild<QAction*>(u"accGuardarPdf"_s);
        QVERIFY(pdf);
        QCOMPARE(pdf->text(), u"Guardar en PDF..."_s);
        auto* barra = vista->findChild<QToolBar*>();
        QVERIFY(barra && barra->actions().contains(pdf));
        delete salida;
        QCOMPARE(s.e.salidaDocumentos, nullptr);
        QVERIFY(s.d.mensajes().isEmpty());
    }


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

PMX_GUI_TEST_MAIN(TestAlbaranGui)
#include "test_albaran_gui.moc"
