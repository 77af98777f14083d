#pragma once
// Putting a composed document on paper or in a PDF file. The pages are A4 with 15 mm
// margins; the document is laid out at 96 dots per inch, as on the screen, and scaled to
// the device, so that a template's pixel sizes mean the same everywhere. A document of more
// than one page gets "Página n de m" at the foot of each page. Several documents printed in
// one run are one QTextDocument whose parts each begin on a new page at a block marked
// kInicioDocumento; each part is numbered on its own.
//
// The preview and the printer dialog need a display: the program's windows implement
// SalidaDocumentos (src/documents/ui/) and the main window hands it to the session
// (Entorno::salidaDocumentos). PDF files need none.
#include <QPagedPaintDevice>
#include <QString>
#include <QTextFormat>

class QTextDocument;

class SalidaDocumentos {
public:
    virtual ~SalidaDocumentos() = default;
    // Shows the print preview (which can print it or save it as PDF); true when the user
    // printed it from there.
    virtual bool vistaPrevia(const QTextDocument& documento, const QString& titulo) = 0;
    // Asks for the printer and prints; false when the user cancelled.
    virtual bool imprimir(const QTextDocument& documento, const QString& titulo) = 0;
};

// The block property (true) of the first block of every document of a run but the first.
inline constexpr int kInicioDocumento = QTextFormat::UserProperty + 1;

// A4, portrait, 15 mm margins.
void prepararPagina(QPagedPaintDevice& dispositivo);

// Lays the document out on the device's pages and paints them. False when the device
// cannot be painted on (a file that cannot be written, a printer that refuses).
bool pintarDocumento(const QTextDocument& documento, QPagedPaintDevice& dispositivo);

// Saves the document as a PDF file (A4) through a temporary file, so that a failure never
// leaves half a file. Empty text on success, else the reason.
QString exportarPdf(const QTextDocument& documento, const QString& fichero, const QString& titulo);
