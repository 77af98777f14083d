#include "documents/ticket.h"

#include "core/formatos.h"
#include "documents/impresor_documentos.h"

#include <QHash>

namespace {
// Bytes 0x80-0xFF of PC858.
constexpr char16_t kCp858[129] =
    u"\u00C7\u00FC\u00E9\u00E2\u00E4\u00E0\u00E5\u00E7\u00EA\u00EB\u00E8\u00EF\u00EE\u00EC\u00C4\u00C5"
    u"\u00C9\u00E6\u00C6\u00F4\u00F6\u00F2\u00FB\u00F9\u00FF\u00D6\u00DC\u00F8\u00A3\u00D8\u00D7\u0192"
    u"\u00E1\u00ED\u00F3\u00FA\u00F1\u00D1\u00AA\u00BA\u00BF\u00AE\u00AC\u00BD\u00BC\u00A1\u00AB\u00BB"
    u"\u2591\u2592\u2593\u2502\u2524\u00C1\u00C2\u00C0\u00A9\u2563\u2551\u2557\u255D\u00A2\u00A5\u2510"
    u"\u2514\u2534\u252C\u251C\u2500\u253C\u00E3\u00C3\u255A\u2554\u2569\u2566\u2560\u2550\u256C\u00A4"
    u"\u00F0\u00D0\u00CA\u00CB\u00C8\u20AC\u00CD\u00CE\u00CF\u2518\u250C\u2588\u2584\u00A6\u00CC\u2580"
    u"\u00D3\u00DF\u00D4\u00D2\u00F5\u00D5\u00B5\u00FE\u00DE\u00DA\u00DB\u00D9\u00FD\u00DD\u00AF\u00B4"
    u"\u00AD\u00B1\u2017\u00BE\u00B6\u00A7\u00F7\u00B8\u00B0\u00A8\u00B7\u00B9\u00B3\u00B2\u25A0\u00A0";

const QHash<char32_t, char>& tablaCp858() {
    static const QHash<char32_t, char> tabla = [] {
        QHash<char32_t, char> t;
        for (int i = 0; i < 128; ++i)
            t.insert(kCp858[i], static_cast<char>(0x80 + i));
        return t;
    }();
    return tabla;
}

// Characters PC858 lacks that have a plain stand-in.
QByteArray sustituto(char32_t c) {
    switch (c) {
    case U'\u2018':
    case U'\u2019':
    case U'\u201A':
        return "'";
    case U'\u201C':
    case U'\u201D':
    case U'\u201E':
        return "\"";
    case U'\u2013':
    case U'\u2014':
        return "-";
    case U'\u2026':
        return "...";
    default:
        break;
    }
    // The letter without its accent ("ő" -> "o").
    const QString base = QString::fromUcs4(&c, 1).normalized(QString::NormalizationForm_D);
    if (!base.isEmpty() && base.front().unicode() >= 0x20 && base.front().unicode() < 0x7F)
        return QByteArray(1, static_cast<char>(base.front().unicode()));
    return "?";
}

// The text cut into lines of at most `ancho` characters at blanks (a longer word is cut).
QStringList partir(const QString& texto, int ancho) {
    QStringList lineas;
    QString actual;
    const QStringList palabras = texto.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString p : palabras) {
        while (p.size() > ancho) {
            if (!actual.isEmpty()) lineas.append(actual);
            actual.clear();
            lineas.append(p.left(ancho));
            p = p.mid(ancho);
        }
        if (actual.isEmpty())
            actual = p;
        else if (actual.size() + 1 + p.size() <= ancho)
            actual += QLatin1Char(' ') + p;
        else {
            lineas.append(actual);
            actual = p;
        }
    }
    if (!actual.isEmpty()) lineas.append(actual);
    return lineas;
}

class Ticket {
public:
    explicit Ticket(int ancho) : ancho_(ancho) {}

    void linea(const QString& t = {}) { texto_ += t + QLatin1Char('\n'); }
    void separador() { linea(QString(ancho_, QLatin1Char('-'))); }
    void parrafo(const QString& t) {
        for (const QString& l : partir(t, ancho_))
            linea(l);
    }
    void centrado(const QString& t) {
        for (const QString& l : partir(t, ancho_))
            linea(QString((ancho_ - l.size()) / 2, QLatin1Char(' ')) + l);
    }
    // The left text, and the right one against the right edge (on a line of its own when
    // both do not fit).
    void aLosLados(const QString& izquierda, const QString& derecha) {
        const QString d = derecha.trimmed().left(ancho_);
        QStringList l;
        if (izquierda.size() <= ancho_) {
            l.append(izquierda);
        } else {
            // Wrapped, keeping the indentation.
            qsizetype sangria = 0;
            while (sangria < izquierda.size() && izquierda.at(sangria) == QLatin1Char(' '))
                ++sangria;
            sangria = qMin<qsizetype>(sangria, ancho_ / 2);
            for (const QString& trozo : partir(izquierda, ancho_ - static_cast<int>(sangria)))
                l.append(QString(sangria, QLatin1Char(' ')) + trozo);
        }
        if (l.isEmpty()) l.append(QString());
        for (qsizetype i = 0; i + 1 < l.size(); ++i)
            linea(l.at(i));
        const QString ultima = l.last();
        if (ultima.size() + 1 + d.size() <= ancho_)
            linea(ultima + QString(ancho_ - ultima.size() - d.size(), QLatin1Char(' ')) + d);
        else {
            linea(ultima);
            linea(d.rightJustified(ancho_));
        }
    }
    // Columns right-aligned to the given widths.
    void columnas(const QStringList& textos, const QList<int>& anchos) {
        QString l;
        for (qsizetype i = 0; i < textos.size(); ++i)
            l += textos.at(i).trimmed().right(anchos.at(i)).rightJustified(anchos.at(i));
        linea(l);
    }
    int ancho() const { return ancho_; }
    const QString& texto() const { return texto_; }

private:
    int ancho_;
    QString texto_;
};

bool esCero(const QString& importe) {
    if (importe.trimmed().isEmpty()) return true;
    const std::optional<double> v = leerImporte(importe);
    return v && *v == 0.0;
}

QString numeroConSerie(const QString& serie, const QString& numero) {
    return serie.trimmed().isEmpty() ? numero.trimmed()
                                     : serie.trimmed() + QLatin1Char('/') + numero.trimmed();
}
} // namespace

QString textoTicket(const DatosDocumento& d, int ancho) {
    Ticket t(qMax(ancho, 24));
    auto v = [&d](const char* campo) { return d.valor(QString::fromLatin1(campo)).trimmed(); };
    auto f = [](const CamposDocumento& fila, const char* campo) {
        const QString* valor = buscarCampo(fila, QString::fromLatin1(campo));
        return valor ? valor->trimmed() : QString();
    };

    // The clinic.
    if (!v("NombreClinica").isEmpty()) t.centrado(v("NombreClinica"));
    if (!v("NIFClinica").isEmpty()) t.centrado(QStringLiteral("NIF: ") + v("NIFClinica"));
    if (!v("DireccionClinica").isEmpty()) t.centrado(v("DireccionClinica"));
    if (!v("PoblacionClinica").isEmpty()) t.centrado(v("PoblacionClinica"));
    if (!v("TelefonoClinica").isEmpty()) t.centrado(QStringLiteral("Tel.: ") + v("TelefonoClinica"));
    t.linea();

    // The document.
    if (d.tipo == kDocumentoFactura)
        t.parrafo(QStringLiteral("Factura ") + numeroConSerie(v("serie"), v("numero")));
    else
        t.parrafo(QStringLiteral("Albarán ") + numeroConSerie(v("serie"), v("numAlbaran")));
    QString cuando = QStringLiteral("Fecha: ") + v("fecha");
    if (!v("hora").isEmpty()) cuando += QStringLiteral("  Hora: ") + v("hora");
    t.linea(cuando);
    if (!v("NombreCliente").isEmpty()) t.parrafo(QStringLiteral("Cliente: ") + v("NombreCliente"));
    if (!v("mascota").isEmpty()) t.parrafo(QStringLiteral("Mascota: ") + v("mascota"));
    if (!v("Vendedor").isEmpty()) t.parrafo(QStringLiteral("Le atendió: ") + v("Vendedor"));
    t.separador();

    // The lines.
    for (const CamposDocumento& l : d.filas.value(QStringLiteral("Lineas"))) {
        t.parrafo(f(l, "concepto"));
        QString cuanto = QStringLiteral("  ") + f(l, "cantidad") + QStringLiteral(" x ") + f(l, "pvp");
        if (!esCero(f(l, "dcto"))) cuanto += QStringLiteral("  Dto. ") + f(l, "dcto") + QStringLiteral(" %");
        t.aLosLados(cuanto, f(l, "importeBI"));
    }
    t.separador();

    // The totals.
    t.aLosLados(QStringLiteral("Base imponible"), v("BaseImponible"));
    t.aLosLados(QStringLiteral("I.V.A."), v("TotalIVA"));
    if (!esCero(v("retencion"))) {
        QString etiqueta = QStringLiteral("Retención");
        if (!esCero(v("PorcentajeRetencion")))
            etiqueta += QLatin1Char(' ') + v("PorcentajeRetencion") + QStringLiteral(" %");
        t.aLosLados(etiqueta, v("retencion"));
    }
    t.aLosLados(QStringLiteral("TOTAL"), v("total") + QStringLiteral(" €"));
    if (!v("Exento").isEmpty()) t.parrafo(v("Exento"));

    // The VAT breakdown.
    const QList<CamposDocumento> desglose = d.filas.value(QStringLiteral("Desglose"));
    if (!desglose.isEmpty()) {
        t.linea();
        const int w = t.ancho() * 2 / 5;
        const QList<int> anchos = {t.ancho() - 2 * w, w, w};
        t.columnas({QStringLiteral("% I.V.A."), QStringLiteral("Base"), QStringLiteral("Cuota")}, anchos);
        for (const CamposDocumento& r : desglose)
            t.columnas({f(r, "PorcentajeIVA"), f(r, "BaseIVA"), f(r, "CuotaIVA")}, anchos);
    }

    // What has been paid and what is still owed.
    const QList<CamposDocumento> cobros = d.filas.value(QStringLiteral("Cobros"));
    if (!cobros.isEmpty() || !esCero(v("pendiente"))) t.separador();
    for (const CamposDocumento& c : cobros)
        t.aLosLados(QStringLiteral("Cobrado ") + f(c, "FechaCobro") + QLatin1Char(' ') + f(c, "FormaCobro"),
                    f(c, "ImporteCobro"));
    if (!esCero(v("pendiente")))
        t.aLosLados(QStringLiteral("Pendiente"), v("pendiente") + QStringLiteral(" €"));

    t.linea();
    t.centrado(QStringLiteral("¡Gracias por su visita!"));
    return t.texto();
}

QByteArray codificarCp858(const QString& texto) {
    QByteArray bytes;
    bytes.reserve(texto.size());
    const QList<uint> puntos = texto.normalized(QString::NormalizationForm_C).toUcs4();
    for (const uint p : puntos) {
        const char32_t c = p;
        if (c == U'\n')
            bytes.append('\n');
        else if (c < 0x20 || c == 0x7F)
            bytes.append(' ');
        else if (c < 0x80)
            bytes.append(static_cast<char>(c));
        else if (const auto i = tablaCp858().constFind(c); i != tablaCp858().cend())
            bytes.append(*i);
        else
            bytes.append(sustituto(c));
    }
    return bytes;
}

QByteArray bytesEscPos(const QString& texto, int copias, bool cortar) {
    static const QByteArray inicio("\x1B\x40\x1B\x74\x13", 5); // ESC @, ESC t 19 (PC858)
    static const QByteArray avance("\x1B\x64\x04", 3);         // ESC d 4
    static const QByteArray corte("\x1D\x56\x01", 3);          // GS V 1
    QByteArray cuerpo = codificarCp858(texto);
    if (!cuerpo.endsWith('\n')) cuerpo.append('\n');
    QByteArray bytes = inicio;
    for (int i = 0; i < qBound(1, copias, 9); ++i) {
        bytes += cuerpo;
        bytes += avance;
        if (cortar) bytes += corte;
    }
    return bytes;
}
