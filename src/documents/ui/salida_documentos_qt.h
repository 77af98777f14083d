#pragma once
// The print preview and the printer dialog of the program's windows. The preview's toolbar
// prints (through the printer dialog) and saves the document as PDF. The printer chosen is
// remembered for the rest of the session.
#include "app/entorno.h"
#include "documents/salida_documentos.h"

#include <QObject>
#include <QPointer>
#include <memory>

class QPrinter;
class QPrintPreviewDialog;
class QWidget;

class SalidaDocumentosQt final : public QObject, public SalidaDocumentos {
    Q_OBJECT
public:
    // Belongs to padre; on destruction it leaves the session without an output.
    explicit SalidaDocumentosQt(Entorno& e, QWidget* padre = nullptr);
    ~SalidaDocumentosQt() override;

    bool vistaPrevia(const QTextDocument& documento, const QString& titulo) override;
    bool imprimir(const QTextDocument& documento, const QString& titulo) override;

    // The preview of the document, not yet shown (the document must outlive it).
    QPrintPreviewDialog* crearVistaPrevia(const QTextDocument& documento, const QString& titulo);
    // Asks for a file and saves the document there as PDF; false when cancelled or failed.
    bool guardarPdf(const QTextDocument& documento, const QString& titulo, QWidget* sobre);

    QPrinter& impresora();

private:
    Entorno& e_;
    QPointer<QWidget> padre_;
    std::unique_ptr<QPrinter> impresora_;
};
