// The preview of the program's windows on the offscreen platform: built (not shown) with its
// title, the document painted in it, and the action that saves it as PDF on its toolbar. The
// output leaves the session when it goes.
#include "documents/ui/salida_documentos_qt.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QAction>
#include <QApplication>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QTextDocument>
#include <QToolBar>
#include <QWidget>

class TestSalidaDocumentosGui : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(10, 15))};

private slots:
    void vistaPreviaConGuardarPdf() {
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        QWidget ventana;
        auto* salida = new SalidaDocumentosQt(e, &ventana);
        e.salidaDocumentos = salida;

        QTextDocument documento;
        documento.setHtml(QStringLiteral("<h1>Albarán</h1><p>Ana Belén Núñez Castaño</p>"));
        std::unique_ptr<QPrintPreviewDialog> vista(
            salida->crearVistaPrevia(documento, QStringLiteral("Albarán A/125")));
        QCOMPARE(vista->objectName(), QStringLiteral("vistaPrevia"));
        QCOMPARE(vista->windowTitle(), QStringLiteral("Vista previa - Albarán A/125"));
        QCOMPARE(salida->impresora().docName(), QStringLiteral("Albarán A/125"));
        QCOMPARE(salida->impresora().pageLayout().pageSize().id(), QPageSize::A4);

        auto* pdf = vista->findChild<QAction*>(QStringLiteral("accGuardarPdf"));
        QVERIFY(pdf);
        QCOMPARE(pdf->text(), QStringLiteral("Guardar en PDF..."));
        auto* barra = vista->findChild<QToolBar*>();
        QVERIFY(barra && barra->actions().contains(pdf));

        // The preview lays the document out on one A4 page.
        auto* paginas = vista->findChild<QPrintPreviewWidget*>();
        QVERIFY(paginas);
        paginas->updatePreview();
        QCOMPARE(paginas->pageCount(), 1);

        delete salida;
        QCOMPARE(e.salidaDocumentos, nullptr);
        QVERIFY(d.mensajes().isEmpty());
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestSalidaDocumentosGui prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "test_salida_documentos_gui.moc"
