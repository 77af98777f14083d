#include "documents/salida_documentos.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextDocument>
#include <cmath>
#include <memory>

namespace {
// The resolution documents are laid out at, as on the screen.
constexpr double kPuntosPorPulgada = 96.0;
// Room at the foot of each page for "Página n de m", in layout pixels.
constexpr double kPie = 22.0;

// The page on which each document of the run begins, the first one's (0) included.
QList<int> primerasPaginas(const QTextDocument& d, double alto) {
    QList<int> primeras{0};
    for (QTextBlock b = d.begin(); b.isValid(); b = b.next()) {
        if (!b.blockFormat().boolProperty(kInicioDocumento)) continue;
        // The layout rounds positions to 1/64 of a pixel: a page's top may come out a hair above it.
        const double arriba = d.documentLayout()->blockBoundingRect(b).top();
        const int pagina = static_cast<int>(std::floor((arriba + 0.5) / alto));
        if (pagina > primeras.last()) primeras << pagina;
    }
    return primeras;
}
} // namespace

void prepararPagina(QPagedPaintDevice& dispositivo) {
    dispositivo.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                          QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter));
}

bool pintarDocumento(const QTextDocument& documento, QPagedPaintDevice& dispositivo) {
    QPainter p;
    if (!p.begin(&dispositivo)) return false;
    const double escalaX = dispositivo.logicalDpiX() / kPuntosPorPulgada;
    const double escalaY = dispositivo.logicalDpiY() / kPuntosPorPulgada;
    const double ancho = dispositivo.width() / escalaX;
    double alto = dispositivo.height() / escalaY;

    // Laid out at 96 dpi whatever the screen, so that the paper does not depend on it.
    QImage referencia(1, 1, QImage::Format_RGB32);
    referencia.setDotsPerMeterX(qRound(kPuntosPorPulgada / 0.0254));
    referencia.setDotsPerMeterY(qRound(kPuntosPorPulgada / 0.0254));
    std::unique_ptr<QTextDocument> copia(documento.clone());
    copia->documentLayout()->setPaintDevice(&referencia);
    copia->setDocumentMargin(0);
    copia->setPageSize(QSizeF(ancho, alto));
    // Room for the page numbers only when some document takes more than one page.
    QList<int> primeras = primerasPaginas(*copia, alto);
    if (copia->pageCount() > primeras.size()) {
        alto -= kPie;
        copia->setPageSize(QSizeF(ancho, alto));
        primeras = primerasPaginas(*copia, alto);
    }
    const int paginas = copia->pageCount();
    qsizetype parte = 0;
    for (int i = 0; i < paginas; ++i) {
        while (parte + 1 < primeras.size() && primeras.at(parte + 1) <= i)
            ++parte;
        const int primera = primeras.at(parte);
        const int total = (parte + 1 < primeras.size() ? primeras.at(parte + 1) : paginas) - primera;
        if (i > 0 && !dispositivo.newPage()) return false;
        p.save();
        p.scale(escalaX, escalaY);
        const QRectF marco(0, i * alto, ancho, alto);
        p.save();
        p.translate(0, -marco.top());
        QAbstractTextDocumentLayout::PaintContext contexto;
        contexto.clip = marco;
        contexto.palette.setColor(QPalette::Text, Qt::black);
        copia->documentLayout()->draw(&p, contexto);
        p.restore();
        if (total > 1) {
            QFont letra = copia->defaultFont();
            letra.setPixelSize(9);
            p.setFont(letra);
            p.setPen(Qt::darkGray);
            p.drawText(QRectF(0, alto, ancho, kPie), Qt::AlignRight | Qt::AlignBottom,
                       QStringLiteral("Página %1 de %2").arg(i - primera + 1).arg(total));
        }
        p.restore();
    }
    return p.end();
}

QString exportarPdf(const QTextDocument& documento, const QString& fichero, const QString& titulo) {
    QSaveFile f(fichero);
    if (!f.open(QIODevice::WriteOnly)) return f.errorString();
    bool pintado = false;
    {
        QPdfWriter pdf(&f);
        pdf.setTitle(titulo);
        pdf.setCreator(QStringLiteral("Pramelvix"));
        prepararPagina(pdf);
        pintado = pintarDocumento(documento, pdf);
    }
    if (!pintado || f.error() != QFileDevice::NoError) {
        const QString motivo = f.error() != QFileDevice::NoError ? f.errorString() : QString();
        f.cancelWriting();
        return motivo.isEmpty() ? QStringLiteral("no se ha podido componer el documento") : motivo;
    }
    if (!f.commit()) return f.errorString();
    return {};
}
