#include "documents/impresor_documentos.h"

#include "app/instalacion.h"
#include "documents/datos_clinica.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QStringDecoder>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>

namespace {
const QString kTituloAtencion = QStringLiteral("¡Atención!");
const QString kExtension = QStringLiteral(".html");
// A template larger than this is not a template.
constexpr qint64 kMaxPlantilla = 4 * 1024 * 1024;

QString decodificar(const QByteArray& bytes) {
    QStringDecoder html = QStringDecoder::decoderForHtml(bytes);
    if (html.isValid()) {
        const QString texto = html.decode(bytes);
        if (!html.hasError()) return texto;
    }
    QStringDecoder windows("windows-1252");
    if (windows.isValid()) return windows.decode(bytes);
    return QString::fromLatin1(bytes);
}

// "Albarán A/125", "Factura A/31", or the format's name for other documents.
QString tituloDocumento(const DatosDocumento& d, const QString& formato) {
    auto numero = [&d](const QString& campoNumero, const QString& campoSerie) {
        const QString n = d.valor(campoNumero).trimmed();
        const QString s = d.valor(campoSerie).trimmed();
        return s.isEmpty() ? n : s + QLatin1Char('/') + n;
    };
    if (d.tipo == kDocumentoAlbaran && !d.valor(QStringLiteral("numAlbaran")).trimmed().isEmpty())
        return formato + QLatin1Char(' ') + numero(QStringLiteral("numAlbaran"), QStringLiteral("serie"));
    if (d.tipo == kDocumentoFactura && !d.valor(QStringLiteral("numero")).trimmed().isEmpty())
        return formato + QLatin1Char(' ') + numero(QStringLiteral("numero"), QStringLiteral("serie"));
    return formato;
}

// Appends a composed document to a run, beginning on a new page: its first block keeps its
// own format and carries the page break and the mark kInicioDocumento.
void anyadirEnPaginaNueva(QTextDocument& conjunto, const QString& html) {
    QTextDocument parte;
    parte.setDefaultFont(conjunto.defaultFont());
    parte.setHtml(html);
    QTextCursor cursor(&conjunto);
    cursor.movePosition(QTextCursor::End);
    // The room under the previous document's last block would push the new page's content down.
    QTextBlockFormat ultimo = cursor.blockFormat();
    ultimo.setBottomMargin(0);
    cursor.setBlockFormat(ultimo);
    cursor.insertBlock();
    const int inicio = cursor.position();
    cursor.insertFragment(QTextDocumentFragment(&parte));
    QTextBlockFormat primero = parte.begin().blockFormat();
    primero.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    primero.setProperty(kInicioDocumento, true);
    QTextCursor(conjunto.findBlock(inicio)).setBlockFormat(primero);
}

} // namespace

QString ficheroPdfPropuesto(const Entorno& e, const QString& titulo) {
    QString n = titulo.trimmed();
    for (QChar& c : n)
        if (QStringLiteral("/\\:*?\"<>|").contains(c) || c.unicode() < 32) c = QLatin1Char('-');
    if (n.isEmpty()) n = QStringLiteral("Documento");
    return QDir(rutaNativa(e.configuracionBD.servidor))
        .filePath(QStringLiteral("Documentos/") + n + QStringLiteral(".pdf"));
}

QFont letraDocumentos() {
    QFont letra;
    letra.setFamilies(
        {QStringLiteral("DejaVu Sans"), QStringLiteral("Liberation Sans"), QStringLiteral("Arial")});
    letra.setStyleHint(QFont::SansSerif);
    letra.setPointSizeF(9);
    return letra;
}

QString ImpresorDocumentos::carpetaGrupo(const QString& grupo) const {
    return QDir(rutaNativa(e_.configuracionBD.servidor)).filePath(QStringLiteral("Plantillas/") + grupo);
}

QStringList ImpresorDocumentos::formatos(const QString& grupo) const {
    const QFileInfoList ficheros =
        QDir(carpetaGrupo(grupo))
            .entryInfoList({QStringLiteral("*") + kExtension}, QDir::Files | QDir::Readable,
                           QDir::Name | QDir::IgnoreCase);
    QStringList lista;
    for (const QFileInfo& f : ficheros)
        if (f.fileName().endsWith(kExtension, Qt::CaseInsensitive))
            lista.append(f.fileName().chopped(kExtension.size()));
    lista.sort(Qt::CaseInsensitive);
    return lista;
}

std::optional<QString> ImpresorDocumentos::elegirFormato(const QString& grupo, const QString& prompt) {
    const QStringList lista = formatos(grupo);
    if (lista.isEmpty()) {
        e_.dialogs().avisar(kTituloAtencion,
                            QStringLiteral("No hay ningún formato para este documento. Guarde las plantillas "
                                           "(ficheros .html) en la carpeta '%1'.")
                                .arg(QDir::toNativeSeparators(carpetaGrupo(grupo))));
        return std::nullopt;
    }
    if (lista.size() == 1) return lista.first();
    const int i = e_.dialogs().elegir(kTituloFormato, prompt, lista);
    if (i < 0 || i >= lista.size()) return std::nullopt;
    return lista.at(i);
}

std::optional<QString> ImpresorDocumentos::leerPlantilla(const QString& grupo, const QString& formato) {
    const QString ruta = QDir(carpetaGrupo(grupo)).filePath(formato + kExtension);
    const QString nombre = QDir::toNativeSeparators(ruta);
    QFile f(ruta);
    if (f.size() > kMaxPlantilla) {
        e_.dialogs().avisar(kTituloAtencion, QStringLiteral("La plantilla '%1' es demasiado grande para ser "
                                                            "un formato de documento.")
                                                 .arg(nombre));
        return std::nullopt;
    }
    if (!f.open(QIODevice::ReadOnly)) {
        e_.dialogs().avisar(
            kTituloAtencion,
            QStringLiteral("No se ha podido leer la plantilla '%1'.\n%2").arg(nombre, f.errorString()));
        return std::nullopt;
    }
    const QByteArray bytes = f.read(kMaxPlantilla + 1);
    if (f.error() != QFileDevice::NoError) {
        e_.dialogs().avisar(
            kTituloAtencion,
            QStringLiteral("No se ha podido leer la plantilla '%1'.\n%2").arg(nombre, f.errorString()));
        return std::nullopt;
    }
    const QString html = decodificar(bytes);
    if (html.trimmed().isEmpty()) {
        e_.dialogs().avisar(kTituloAtencion, QStringLiteral("La plantilla '%1' está vacía.").arg(nombre));
        return std::nullopt;
    }
    const QString dano = comprobarPlantilla(html);
    if (!dano.isEmpty()) {
        e_.dialogs().avisar(
            kTituloAtencion,
            QStringLiteral("La plantilla '%1' está dañada: %2. Corríjala o elija otro formato.")
                .arg(nombre, dano));
        return std::nullopt;
    }
    return html;
}

bool ImpresorDocumentos::destinoDisponible(DestinoDocumento destino) {
    if (destino == DestinoDocumento::PDF || e_.salidaDocumentos) return true;
    e_.dialogs().avisar(kTituloAtencion,
                        destino == DestinoDocumento::VistaPrevia
                            ? QStringLiteral("No se puede mostrar la vista previa en este puesto porque "
                                             "Pramelvix se está ejecutando sin pantalla. Guarde el "
                                             "documento en PDF.")
                            : QStringLiteral("No se puede imprimir en este puesto porque Pramelvix se está "
                                             "ejecutando sin pantalla. Guarde el documento en PDF."));
    return false;
}

bool ImpresorDocumentos::imprimir(const QString& grupo, const QString& prompt, const DatosDocumento& datos,
                                  DestinoDocumento destino, const QString& ficheroPdf) {
    return imprimirVarios(grupo, prompt, {datos}, destino, ficheroPdf);
}

bool ImpresorDocumentos::imprimirVarios(const QString& grupo, const QString& prompt,
                                        const QList<DatosDocumento>& documentos, DestinoDocumento destino,
                                        const QString& ficheroPdf) {
    if (documentos.isEmpty()) return false;
    // Refused before anything is asked: this workstation cannot show or print.
    if (!destinoDisponible(destino)) return false;
    const std::optional<QString> formato = elegirFormato(grupo, prompt);
    if (!formato) return false;
    const std::optional<QString> plantilla = leerPlantilla(grupo, *formato);
    if (!plantilla) return false;

    CamposDocumento clinica;
    if (e_.hayBaseDatos()) {
        Ajustes ajustes = e_.ajustes();
        clinica = camposClinica(ajustes);
    }
    QTextDocument documento;
    documento.setDefaultFont(letraDocumentos());
    for (qsizetype i = 0; i < documentos.size(); ++i) {
        DatosDocumento completos = documentos.at(i);
        for (const auto& [campo, valor] : clinica)
            completos.anyadirSiFalta(campo, valor);
        if (i == 0) ultimoTitulo_ = documentos.size() == 1 ? tituloDocumento(completos, *formato) : *formato;
        bool completo = true;
        const QString html = componerPlantilla(*plantilla, completos, &completo);
        if (!completo) {
            e_.dialogs().avisar(kTituloAtencion,
                                QStringLiteral("El documento que resulta de la plantilla '%1' es "
                                               "demasiado grande para imprimirlo. Revise sus "
                                               "bloques repetidos.")
                                    .arg(*formato));
            return false;
        }
        if (i == 0)
            documento.setHtml(html);
        else
            anyadirEnPaginaNueva(documento, html);
    }
    documento.setMetaInformation(QTextDocument::DocumentTitle, ultimoTitulo_);
    return enviar(documento, destino, ficheroPdf);
}

bool ImpresorDocumentos::enviar(const QTextDocument& documento, DestinoDocumento destino,
                                const QString& ficheroPdf) {
    switch (destino) {
    case DestinoDocumento::VistaPrevia:
        return e_.salidaDocumentos->vistaPrevia(documento, ultimoTitulo_);
    case DestinoDocumento::Impresora:
        return e_.salidaDocumentos->imprimir(documento, ultimoTitulo_);
    case DestinoDocumento::PDF:
        break;
    }
    QString fichero = ficheroPdf;
    if (fichero.isEmpty()) {
        fichero = e_.dialogs().elegirFicheroGuardar(QStringLiteral("Guardar el documento en PDF"),
                                                    QStringLiteral("Documentos PDF (*.pdf)"),
                                                    ficheroPdfPropuesto(e_, ultimoTitulo_));
        if (fichero.isEmpty()) return false;
    }
    return guardarComoPdf(e_, documento, fichero, ultimoTitulo_);
}

bool guardarComoPdf(Entorno& e, const QTextDocument& documento, QString fichero, const QString& titulo) {
    if (!fichero.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive)) fichero += QStringLiteral(".pdf");
    const QString error = exportarPdf(documento, fichero, titulo);
    if (error.isEmpty()) return true;
    e.dialogs().avisar(kTituloAtencion, QStringLiteral("No se ha podido guardar el documento en el fichero "
                                                       "'%1'.\n%2")
                                            .arg(QDir::toNativeSeparators(fichero), error));
    return false;
}
