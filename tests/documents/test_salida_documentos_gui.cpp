// The preview on the offscreen platform: built (not shown) with its title and the action that
// saves it as PDF on its toolbar. The output leaves the session when it goes.
#include "documents/ui/salida_documentos_qt.h"
#include "gui.h"

#include <QAction>
#include <QApplication>
#include <QPrintPreviewDialog>
#include <QTextDocument>
#include <QToolBar>
#include <QWidget>

class TestSalidaDocumentosGui : public QObject {
    Q_OBJECT

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
};

PMX_GUI_TEST_MAIN(TestSalidaDocumentosGui)
#include "test_salida_documentos_gui.moc"
