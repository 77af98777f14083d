#pragma once
// Printing a document from the clinic's templates. A document group ("DocAlbaranes",
// "NotaVenta", "DocFormFra"...) is the folder <data folder>/Plantillas/<group>/; each *.html
// file in it is one format, named after the file without its extension. The user picks the
// format (when there is more than one), the template is filled with the document's data
// (plantilla.h) and the clinic's own data, and the result goes to the preview, the printer
// or a PDF file.
#include "app/entorno.h"
#include "documents/plantilla.h"
#include "documents/salida_documentos.h"

#include <QStringList>
#include <optional>

enum class DestinoDocumento { VistaPrevia, Impresora, PDF };

// Document groups and the prompt each one's picker shows.
namespace grupos {
inline const QString ALBARANES = QStringLiteral("DocAlbaranes");
inline const QString NOTA_VENTA = QStringLiteral("NotaVenta");
inline const QString FACTURAS = QStringLiteral("DocFormFra");
inline const QString CLIENTES = QStringLiteral("DocClientes"); // letters to a client
inline const QString MASCOTAS = QStringLiteral("DocMas");      // letters about a pet
inline const QString PLANES = QStringLiteral("DocPlanes");     // a pet's health plan
inline const QString RECETAS = QStringLiteral("Recetas");
inline const QString INFORMES_VISITA = QStringLiteral("VisInf");
inline const QString PRESUPUESTOS = QStringLiteral("DocPresupuestos");
inline const QString PROMPT_ALBARAN = QStringLiteral(" Seleccione un Formato de Albarán");
inline const QString PROMPT_FACTURA = QStringLiteral(" Seleccione un Formato de Factura");
inline const QString PROMPT_DOCUMENTO = QStringLiteral(" Seleccione un documento a imprimir");
inline const QString PROMPT_RECETA = QStringLiteral(" Seleccione un Formato de receta");
inline const QString PROMPT_PRESUPUESTO = QStringLiteral(" Seleccione un Formato de Presupuesto");
} // namespace grupos

// Document type codes.
inline const QString kDocumentoAlbaran = QStringLiteral("ALB");
inline const QString kDocumentoFactura = QStringLiteral("FRA");

inline const QString kTituloFormato = QStringLiteral("Formato del documento");

class ImpresorDocumentos {
public:
    explicit ImpresorDocumentos(Entorno& e) : e_(e) {}

    // <data folder>/Plantillas/<grupo>
    QString carpetaGrupo(const QString& grupo) const;
    // The group's formats, sorted; empty when the folder is missing or holds none.
    QStringList formatos(const QString& grupo) const;

    // The format to use: with none, a message naming the group's folder and nullopt; with
    // one, that one without asking; with several, the user picks (Dialogs::elegir with the
    // prompt); cancelling gives nullopt.
    std::optional<QString> elegirFormato(const QString& grupo, const QString& prompt);

    // The template filled with the document's data.
    QString componer(const QString& plantillaHtml, const DatosDocumento& datos) const {
        return componerPlantilla(plantillaHtml, datos);
    }

    // Reads a format's template. nullopt (with the reason shown) when the file cannot be
    // read, is empty, or its blocks are damaged. A file that is not UTF-8 is read in the
    // encoding its <meta charset> names, else as Windows-1252.
    std::optional<QString> leerPlantilla(const QString& grupo, const QString& formato);

    // Chooses the format, composes the document (adding the clinic's data it does not give)
    // and sends it to the destination; for a PDF, to ficheroPdf, or to a file the user picks
    // when it is empty. False when nothing was printed or saved (cancelled, or failed with
    // the reason shown). Throws ErrorBD when the clinic's data cannot be read.
    bool imprimir(const QString& grupo, const QString& prompt, const DatosDocumento& datos,
                  DestinoDocumento destino, const QString& ficheroPdf = {});
    // Several documents of one group in one run: the format is chosen once, each document is
    // composed with it (the clinic's data added as imprimir does) and they are printed one after
    // another, each starting on a new page. False when nothing was printed (cancelled, failed with
    // the reason shown, or an empty list).
    bool imprimirVarios(const QString& grupo, const QString& prompt, const QList<DatosDocumento>& documentos,
                        DestinoDocumento destino, const QString& ficheroPdf = {});

    // The last document sent (for the screen's title and for tests): the format's name and, for
    // a delivery note or an invoice printed alone, its number.
    const QString& ultimoTitulo() const { return ultimoTitulo_; }

private:
    // Whether the destination exists on this workstation; said when it does not.
    bool destinoDisponible(DestinoDocumento destino);
    bool enviar(const QTextDocument& documento, DestinoDocumento destino, const QString& ficheroPdf);

    Entorno& e_;
    QString ultimoTitulo_;
};

// The default font of printed documents (DejaVu Sans, or a sans-serif, 9 pt).
QFont letraDocumentos();

// Where a PDF of the document is proposed: <data folder>/Documentos/<title>.pdf, with the
// characters file systems refuse replaced by '-'.
QString ficheroPdfPropuesto(const Entorno& e, const QString& titulo);
// Saves the document as PDF in the file chosen (".pdf" added when missing); false, with the
// reason shown, when it could not be written.
bool guardarComoPdf(Entorno& e, const QTextDocument& documento, QString fichero, const QString& titulo);
