#include "clinical/croquis.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <optional>

namespace {
const QString kCarpetaCroquis = QStringLiteral("Croquis");
const QString kExtension = QStringLiteral(".gif");

std::optional<TamanoMarca> tamanoDeLetra(QStringView letra) {
    if (letra == u"G") return TamanoMarca::Grande;
    if (letra == u"M") return TamanoMarca::Mediano;
    if (letra == u"P") return TamanoMarca::Pequeno;
    return std::nullopt;
}

std::optional<double> coordenada(QStringView texto) {
    bool ok = false;
    const double v = texto.trimmed().toDouble(&ok);
    if (!ok || !(v >= 0.0 && v <= 1.0)) return std::nullopt; // also refuses nan
    return v;
}

std::optional<QColor> color(QStringView texto) {
    const QStringView t = texto.trimmed();
    if (t.size() != 7 || t.front() != u'#') return std::nullopt;
    for (QChar c : t.sliced(1))
        if (c.unicode() > 0x7f || !std::isxdigit(c.unicode())) return std::nullopt;
    return QColor::fromString(t);
}

// A name usable as one folder or file name inside the Croquis folder.
QString nombreSeguro(const QString& nombre) {
    QString s = nombre.normalized(QString::NormalizationForm_C).trimmed();
    static const QString prohibidos = QStringLiteral("/\\:*?\"<>|");
    for (QChar& c : s)
        if (c.unicode() < 0x20 || c.unicode() == 0x7f || prohibidos.contains(c)) c = u'_';
    for (qsizetype i = 0; i < s.size() && s.at(i) == u'.'; ++i)
        s[i] = u'_';
    return s.isEmpty() ? QStringLiteral("_") : s;
}

// nombre as it exists in carpeta, allowing a difference of case; nombre itself when there is
// no such entry.
QString entradaExistente(const QDir& carpeta, const QString& nombre, QDir::Filters filtro) {
    if (QFileInfo::exists(carpeta.filePath(nombre))) return nombre;
    for (const QString& e : carpeta.entryList(filtro | QDir::NoDotAndDotDot | QDir::Hidden))
        if (e.normalized(QString::NormalizationForm_C).compare(nombre, Qt::CaseInsensitive) == 0) return e;
    return nombre;
}
} // namespace

QChar letraTamano(TamanoMarca tamano) {
    switch (tamano) {
    case TamanoMarca::Grande:
        return u'G';
    case TamanoMarca::Pequeno:
        return u'P';
    case TamanoMarca::Mediano:
        break;
    }
    return u'M';
}

double radioRelativo(TamanoMarca tamano) {
    switch (tamano) {
    case TamanoMarca::Grande:
        return 0.03;
    case TamanoMarca::Pequeno:
        return 0.01;
    case TamanoMarca::Mediano:
        break;
    }
    return 0.018;
}

QString textoMarcas(const QList<MarcaCroquis>& marcas) {
    QString texto;
    for (const MarcaCroquis& m : marcas) {
        if (std::isnan(m.x) || std::isnan(m.y)) continue;
        texto += QString::number(std::clamp(m.x, 0.0, 1.0), 'f', 4) + u';' +
                 QString::number(std::clamp(m.y, 0.0, 1.0), 'f', 4) + u';' + letraTamano(m.tamano) + u';' +
                 (m.color.isValid() ? m.color.name(QColor::HexRgb) : QStringLiteral("#000000")) + u'\n';
    }
    return texto;
}

QList<MarcaCroquis> leerMarcas(const QString& texto, int* descartadas) {
    QList<MarcaCroquis> marcas;
    int malas = 0;
    for (QStringView linea : QStringView(texto).split(u'\n')) {
        if (linea.trimmed().isEmpty()) continue;
        const QList<QStringView> campos = linea.split(u';');
        if (campos.size() != 4) {
            ++malas;
            continue;
        }
        const auto x = coordenada(campos.at(0));
        const auto y = coordenada(campos.at(1));
        const auto tamano = tamanoDeLetra(campos.at(2).trimmed());
        const auto c = color(campos.at(3));
        if (!x || !y || !tamano || !c) {
            ++malas;
            continue;
        }
        marcas.append({*x, *y, *tamano, *c});
    }
    if (descartadas) *descartadas = malas;
    return marcas;
}

QString rutaCroquis(const QString& carpetaDatos, const QString& especialidad, const QString& especie) {
    const QDir croquis(QDir(carpetaDatos).filePath(kCarpetaCroquis));
    const QString carpeta = entradaExistente(croquis, nombreSeguro(especialidad), QDir::Dirs);
    const QDir dentro(croquis.filePath(carpeta));
    return dentro.filePath(entradaExistente(dentro, nombreSeguro(especie) + kExtension, QDir::Files));
}

QString textoCroquisNoEncontrado(const QString& ruta) {
    return QStringLiteral(
               " No se ha encontrado el archivo con el croquis para esta Especialidad y esta Especie: '") +
           ruta + QStringLiteral("'.");
}

const QList<CroquisPorDefecto>& croquisPorDefecto() {
    static const QList<CroquisPorDefecto> lista = {
        {QStringLiteral("Dermatología"), QStringLiteral("Perro"),
         QStringLiteral(":/croquis/dermatologia_perro.gif")},
        {QStringLiteral("Dermatología"), QStringLiteral("Gato"),
         QStringLiteral(":/croquis/dermatologia_gato.gif")},
        {QStringLiteral("Oftalmología"), QStringLiteral("Perro"),
         QStringLiteral(":/croquis/oftalmologia_perro.gif")},
        {QStringLiteral("Oftalmología"), QStringLiteral("Gato"),
         QStringLiteral(":/croquis/oftalmologia_gato.gif")},
        {QStringLiteral("Traumatología"), QStringLiteral("Perro"),
         QStringLiteral(":/croquis/traumatologia_perro.gif")},
    };
    return lista;
}

QString instalarCroquisPorDefecto(const QString& carpetaDatos) {
    for (const CroquisPorDefecto& c : croquisPorDefecto()) {
        // A clinic's own picture, under this name in any case, stays.
        const QString destino = rutaCroquis(carpetaDatos, c.especialidad, c.especie);
        if (QFileInfo::exists(destino)) continue;
        const QString carpeta = QFileInfo(destino).path();
        if (!QDir().mkpath(carpeta))
            return QStringLiteral("No se ha podido crear la carpeta '%1'.")
                .arg(QDir::toNativeSeparators(carpeta));
        QFile origen(c.recurso);
        if (!origen.open(QIODevice::ReadOnly))
            return QStringLiteral("No se encuentra el croquis '%1' en el programa.").arg(c.recurso);
        QSaveFile f(destino);
        if (!f.open(QIODevice::WriteOnly) || f.write(origen.readAll()) < 0 || !f.commit())
            return QStringLiteral("No se ha podido escribir el croquis '%1': %2")
                .arg(QDir::toNativeSeparators(destino), f.errorString());
    }
    return {};
}
