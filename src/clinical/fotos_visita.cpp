#include "clinical/fotos_visita.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <algorithm>
#include <optional>

namespace {
const QString kCarpetaFotos = QStringLiteral("FotosVisitas");

bool esJpg(const QString& nombre) {
    return nombre.endsWith(QStringLiteral(".jpg"), Qt::CaseInsensitive);
}

// The text between "<id>_" and ".jpg" of a photograph of the visit; nothing when the name
// belongs to another visit or is not a photograph.
std::optional<QString> sufijo(const QString& nombre, qint64 idVisita) {
    const QString prefijo = QString::number(idVisita) + u'_';
    if (!nombre.startsWith(prefijo) || !esJpg(nombre) || nombre.size() <= prefijo.size() + 4)
        return std::nullopt;
    return nombre.mid(prefijo.size(), nombre.size() - prefijo.size() - 4);
}

// The number of a numbered photograph (digits only), else nothing.
std::optional<qint64> numero(const QString& sufijo) {
    if (sufijo.isEmpty() || sufijo.size() > 15) return std::nullopt;
    for (QChar c : sufijo)
        if (c < u'0' || c > u'9') return std::nullopt;
    return sufijo.toLongLong();
}

QString nativa(const QString& ruta) {
    return QDir::toNativeSeparators(ruta);
}
} // namespace

QStringList fotosVisita(const QString& carpetaDatos, qint64 idVisita) {
    if (carpetaDatos.isEmpty() || idVisita <= 0) return {};
    const QDir carpeta(QDir(carpetaDatos).filePath(kCarpetaFotos));
    struct Foto {
        std::optional<qint64> n;
        QString nombre;
    };
    QList<Foto> fotos;
    for (const QString& nombre : carpeta.entryList(QDir::Files | QDir::Hidden))
        if (const auto s = sufijo(nombre, idVisita)) fotos.append({numero(*s), nombre});
    std::sort(fotos.begin(), fotos.end(), [](const Foto& a, const Foto& b) {
        if (a.n.has_value() != b.n.has_value()) return a.n.has_value();
        if (a.n && *a.n != *b.n) return *a.n < *b.n;
        return a.nombre < b.nombre;
    });
    QStringList rutas;
    for (const Foto& f : fotos)
        rutas << carpeta.filePath(f.nombre);
    return rutas;
}

QString anyadirFotoVisita(const QString& carpetaDatos, qint64 idVisita, const QString& origen,
                          QString* error) {
    auto fallo = [error](const QString& texto) {
        if (error) *error = texto;
        return QString();
    };
    if (carpetaDatos.isEmpty())
        return fallo(
            QStringLiteral("No está indicada la carpeta de datos donde se guardan las fotografías."));
    if (idVisita <= 0) return fallo(QStringLiteral("Guarde la visita antes de añadirle fotografías."));

    QFile f(origen);
    if (QFileInfo(origen).isDir() || !f.open(QIODevice::ReadOnly))
        return fallo(QStringLiteral("No se ha podido leer el archivo '%1'.").arg(nativa(origen)));
    const QByteArray datos = f.readAll();
    f.close();
    QBuffer buffer;
    buffer.setData(datos);
    buffer.open(QIODevice::ReadOnly);
    QImageReader lector(&buffer);
    const bool jpeg = lector.format() == "jpeg";
    QImage imagen;
    if (!lector.read(&imagen))
        return fallo(QStringLiteral("El archivo '%1' no es una imagen que se pueda añadir a la visita.")
                         .arg(nativa(origen)));
    // A JPEG keeps its bytes (and its camera data); anything else is converted.
    QByteArray jpg = datos;
    if (!jpeg) {
        jpg.clear();
        QBuffer salida(&jpg);
        salida.open(QIODevice::WriteOnly);
        if (!imagen.convertToFormat(QImage::Format_RGB32).save(&salida, "JPG", 90))
            return fallo(
                QStringLiteral("No se ha podido convertir a JPEG la imagen '%1'.").arg(nativa(origen)));
    }

    const QString rutaCarpeta = QDir(carpetaDatos).filePath(kCarpetaFotos);
    if (!QDir().mkpath(rutaCarpeta))
        return fallo(QStringLiteral("No se ha podido crear la carpeta '%1'.").arg(nativa(rutaCarpeta)));
    qint64 n = 1;
    for (const QString& ruta : fotosVisita(carpetaDatos, idVisita))
        if (const auto m = numero(*sufijo(QFileInfo(ruta).fileName(), idVisita))) n = std::max(n, *m + 1);
    // A number another workstation took meanwhile is skipped: the file is only ever created new.
    for (int intento = 0; intento < 100; ++intento, ++n) {
        const QString destino = QDir(rutaCarpeta).filePath(QStringLiteral("%1_%2.jpg").arg(idVisita).arg(n));
        QFile nuevo(destino);
        if (!nuevo.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            if (QFileInfo::exists(destino)) continue;
            return fallo(QStringLiteral("No se ha podido guardar la fotografía en '%1': %2")
                             .arg(nativa(destino), nuevo.errorString()));
        }
        if (nuevo.write(jpg) != jpg.size() || !nuevo.flush()) {
            const QString motivo = nuevo.errorString();
            nuevo.close();
            nuevo.remove();
            return fallo(QStringLiteral("No se ha podido guardar la fotografía en '%1': %2")
                             .arg(nativa(destino), motivo));
        }
        nuevo.close();
        return destino;
    }
    return fallo(
        QStringLiteral("No se ha podido guardar la fotografía en la carpeta '%1'.").arg(nativa(rutaCarpeta)));
}

bool eliminarFotoVisita(const QString& ruta) {
    const QFileInfo foto(ruta);
    // A link could name a file elsewhere: only the photograph itself is deleted.
    if (!foto.isFile() || foto.isSymLink()) return false;
    const QString nombre = foto.fileName();
    const qsizetype guion = nombre.indexOf(u'_');
    if (guion <= 0) return false;
    const auto id = numero(nombre.left(guion));
    if (!id || !sufijo(nombre, *id)) return false;
    const QDir carpeta(foto.dir().canonicalPath());
    if (carpeta.path().isEmpty() || carpeta.dirName() != kCarpetaFotos) return false;
    return QFile::remove(carpeta.filePath(nombre));
}
