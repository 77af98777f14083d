#include "documents/ui/salida_documentos_qt.h"

#include "documents/impresor_documentos.h"

#include <QAction>
#include <QFileDialog>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTextDocument>
#include <QToolBar>

namespace {
const QString kTituloAtencion = QStringLiteral("¡Atención!");
}

SalidaDocumentosQt::SalidaDocumentosQt(Entorno& e, QWidget* padre) : QObject(padre), e_(e), padre_(padre) {}

SalidaDocumentosQt::~SalidaDocumentosQt() {
    if (e_.salidaDocumentos == this) e_.salidaDocumentos = nullptr;
}

QPrinter& SalidaDocumentosQt::impresora() {
    if (!impresora_) {
        impresora_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
        prepararPagina(*impresora_);
    }
    return *impresora_;
}

QPrintPreviewDialog* SalidaDocumentosQt::crearVistaPrevia(const QTextDocument& documento,
                                                          const QString& titulo) {
    impresora().setDocName(titulo);
    auto* vista = new QPrintPreviewDialog(&impresora(), padre_);
    vista->setObjectName(QStringLiteral("vistaPrevia"));
    vista->setWindowTitle(QStringLiteral("Vista previa - ") + titulo);
    vista->resize(900, 1000);
    connect(vista, &QPrintPreviewDialog::paintRequested, vista,
            [&documento](QPrinter* p) { pintarDocumento(documento, *p); });
    auto* pdf = new QAction(QIcon::fromTheme(QStringLiteral("document-save")),
                            QStringLiteral("Guardar en PDF..."), vista);
    pdf->setObjectName(QStringLiteral("accGuardarPdf"));
    pdf->setToolTip(QStringLiteral("Guardar el documento en un fichero PDF"));
    connect(pdf, &QAction::triggered, vista,
            [this, &documento, titulo, vista] { guardarPdf(documento, titulo, vista); });
    if (auto* barra = vista->findChild<QToolBar*>()) {
        barra->addSeparator();
        barra->addAction(pdf);
    }
    return vista;
}

bool SalidaDocumentosQt::vistaPrevia(const QTextDocument& documento, const QString& titulo) {
    std::unique_ptr<QPrintPreviewDialog> vista(crearVistaPrevia(documento, titulo));
    return vista->exec() == QDialog::Accepted;
}

bool SalidaDocumentosQt::imprimir(const QTextDocument& documento, const QString& titulo) {
    QPrinter& p = impresora();
    p.setDocName(titulo);
    QPrintDialog dialogo(&p, padre_);
    dialogo.setWindowTitle(QStringLiteral("Imprimir ") + titulo);
    if (dialogo.exec() != QDialog::Accepted) return false;
    if (!pintarDocumento(documento, p)) {
        e_.dialogs().avisar(
            kTituloAtencion,
            QStringLiteral("No se ha podido imprimir el documento en la impresora '%1'.")
                .arg(p.outputFormat() == QPrinter::PdfFormat ? p.outputFileName() : p.printerName()));
        return false;
    }
    return true;
}

bool SalidaDocumentosQt::guardarPdf(const QTextDocument& documento, const QString& titulo, QWidget* sobre) {
    QString fichero = QFileDialog::getSaveFileName(sobre, QStringLiteral("Guardar el documento en PDF"),
                                                   ficheroPdfPropuesto(e_, titulo),
                                                   QStringLiteral("Documentos PDF (*.pdf)"));
    if (fichero.isEmpty()) return false;
    return guardarComoPdf(e_, documento, fichero, titulo);
}
