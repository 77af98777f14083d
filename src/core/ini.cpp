#include "core/ini.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

namespace {

const QByteArray kBom("\xEF\xBB\xBF");

// Windows-1252 bytes 0x80-0x9F. The five bytes Windows leaves undefined keep the Latin-1
// control character of the same number, so that every byte reads and writes back unchanged.
constexpr char16_t kWindows1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

QString desdeWindows1252(const QByteArray& bytes) {
    QString texto;
    texto.reserve(bytes.size());
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        texto.append(b >= 0x80 && b <= 0x9F ? QChar(kWindows1252[b - 0x80]) : QChar(b));
    }
    return texto;
}

QByteArray aWindows1252(const QString& texto) {
    QByteArray bytes;
    bytes.reserve(texto.size());
    for (char32_t c : texto.toUcs4()) {
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            bytes.append(static_cast<char>(c));
            continue;
        }
        char byte = '?';
        for (int i = 0; i < 32; ++i) {
            if (kWindows1252[i] == c) {
                byte = static_cast<char>(0x80 + i);
                break;
            }
        }
        bytes.append(byte);
    }
    return bytes;
}

bool esUtf8Valido(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString texto = decoder.decode(bytes);
    return !decoder.hasError();
}

bool tieneSaltoDeLinea(const QString& texto) {
    return texto.contains(u'\n') || texto.contains(u'\r');
}

} // namespace

IniFile::Linea IniFile::analizar(QByteArray bytes, QByteArray fin, Codificacion codificacion) {
    Linea linea;
    linea.bytes = std::move(bytes);
    linea.fin = std::move(fin);
    const QString texto =
        codificacion == Codificacion::Utf8 ? QString::fromUtf8(linea.bytes) : desdeWindows1252(linea.bytes);
    const QStringView limpio = QStringView(texto).trimmed();
    if (limpio.isEmpty()) {
        linea.tipo = Tipo::Vacia;
    } else if (limpio.startsWith(u';') || limpio.startsWith(u'#')) {
        linea.tipo = Tipo::Comentario;
    } else if (limpio.startsWith(u'[')) {
        const qsizetype cierre = limpio.indexOf(u']');
        if (cierre < 0) {
            linea.tipo = Tipo::Danada;
        } else {
            linea.tipo = Tipo::Seccion;
            linea.nombre = limpio.mid(1, cierre - 1).trimmed().toString();
        }
    } else {
        const qsizetype igual = texto.indexOf(u'=');
        const QString clave = igual < 0 ? QString() : QStringView(texto).left(igual).trimmed().toString();
        if (clave.isEmpty()) {
            linea.tipo = Tipo::Danada;
        } else {
            linea.tipo = Tipo::Clave;
            linea.nombre = clave;
            qsizetype inicio = igual + 1;
            while (inicio < texto.size() && texto[inicio].isSpace())
                ++inicio;
            linea.inicioValor = inicio;
            linea.valor = QStringView(texto).mid(inicio).trimmed().toString();
        }
    }
    return linea;
}

IniFile IniFile::desdeBytes(const QByteArray& bytes, const QString& ruta) {
    IniFile ini;
    ini.ruta_ = ruta;
    QByteArray contenido = bytes;
    if (esUtf8Valido(contenido)) {
        ini.codificacion_ = Codificacion::Utf8;
        if (contenido.startsWith(kBom)) {
            ini.bom_ = true;
            contenido.remove(0, kBom.size());
        }
    } else {
        ini.codificacion_ = Codificacion::Windows1252;
    }

    qsizetype inicio = 0;
    while (inicio < contenido.size()) {
        const qsizetype salto = contenido.indexOf('\n', inicio);
        QByteArray texto;
        QByteArray fin;
        if (salto < 0) {
            texto = contenido.mid(inicio);
            inicio = contenido.size();
        } else {
            texto = contenido.mid(inicio, salto - inicio);
            fin = "\n";
            if (texto.endsWith('\r')) {
                texto.chop(1);
                fin = "\r\n";
            }
            inicio = salto + 1;
        }
        ini.lineas_.append(analizar(std::move(texto), std::move(fin), ini.codificacion_));
    }
    if (!ini.lineas_.isEmpty() && !ini.lineas_.first().fin.isEmpty())
        ini.finPorDefecto_ = ini.lineas_.first().fin;
    return ini;
}

std::optional<IniFile> IniFile::abrir(const QString& ruta) {
    const QFileInfo info(ruta);
    if (!info.exists() || info.isDir()) return std::nullopt;
    QFile fichero(ruta);
    if (!fichero.open(QIODevice::ReadOnly)) return std::nullopt;
    const QByteArray bytes = fichero.readAll();
    if (fichero.error() != QFileDevice::NoError) return std::nullopt;
    return desdeBytes(bytes, ruta);
}

QString IniFile::decodificar(const QByteArray& bytes) const {
    return codificacion_ == Codificacion::Utf8 ? QString::fromUtf8(bytes) : desdeWindows1252(bytes);
}

QByteArray IniFile::codificar(const QString& texto) const {
    return codificacion_ == Codificacion::Utf8 ? texto.toUtf8() : aWindows1252(texto);
}

qsizetype IniFile::buscarSeccion(const QString& seccion) const {
    for (qsizetype i = 0; i < lineas_.size(); ++i)
        if (lineas_[i].tipo == Tipo::Seccion && lineas_[i].nombre == seccion) return i;
    return -1;
}

qsizetype IniFile::buscarClave(qsizetype cabecera, const QString& clave) const {
    for (qsizetype i = cabecera + 1; i < lineas_.size() && lineas_[i].tipo != Tipo::Seccion; ++i)
        if (lineas_[i].tipo == Tipo::Clave && lineas_[i].nombre == clave) return i;
    return -1;
}

QString IniFile::valor(const QString& seccion, const QString& clave) const {
    const qsizetype cabecera = buscarSeccion(seccion);
    if (cabecera < 0) return {};
    const qsizetype i = buscarClave(cabecera, clave);
    return i < 0 ? QString() : lineas_[i].valor;
}

bool IniFile::contiene(const QString& seccion, const QString& clave) const {
    const qsizetype cabecera = buscarSeccion(seccion);
    return cabecera >= 0 && buscarClave(cabecera, clave) >= 0;
}

QStringList IniFile::secciones() const {
    QStringList nombres;
    for (const Linea& linea : lineas_)
        if (linea.tipo == Tipo::Seccion && !nombres.contains(linea.nombre)) nombres.append(linea.nombre);
    return nombres;
}

IniFile::Linea IniFile::nuevaLinea(const QString& texto) const {
    return analizar(codificar(texto), finPorDefecto_, codificacion_);
}

bool IniFile::setValor(const QString& seccion, const QString& clave, const QString& valor) {
    if (seccion.isEmpty() || seccion != seccion.trimmed() || tieneSaltoDeLinea(seccion) ||
        seccion.contains(u']'))
        return false;
    if (clave.isEmpty() || clave != clave.trimmed() || tieneSaltoDeLinea(clave) || clave.contains(u'=') ||
        clave.startsWith(u'[') || clave.startsWith(u';') || clave.startsWith(u'#'))
        return false;
    if (tieneSaltoDeLinea(valor)) return false;
    const QString limpio = valor.trimmed();

    // Appends a line at the end, keeping a missing final line end missing.
    const auto anadirAlFinal = [this](Linea linea) {
        if (!lineas_.isEmpty() && lineas_.last().fin.isEmpty()) {
            lineas_.last().fin = finPorDefecto_;
            linea.fin.clear();
        }
        lineas_.append(std::move(linea));
    };

    const qsizetype cabecera = buscarSeccion(seccion);
    if (cabecera < 0) {
        if (!lineas_.isEmpty() && lineas_.last().tipo != Tipo::Vacia) anadirAlFinal(nuevaLinea(QString()));
        anadirAlFinal(nuevaLinea(u'[' + seccion + u']'));
        anadirAlFinal(nuevaLinea(clave + u'=' + limpio));
        modificado_ = true;
        return true;
    }

    const qsizetype i = buscarClave(cabecera, clave);
    if (i >= 0) {
        Linea& linea = lineas_[i];
        if (linea.valor == limpio) return true;
        const QString texto = decodificar(linea.bytes).left(linea.inicioValor) + limpio;
        linea = analizar(codificar(texto), linea.fin, codificacion_);
        modificado_ = true;
        return true;
    }

    qsizetype ultima = cabecera;
    for (qsizetype j = cabecera + 1; j < lineas_.size() && lineas_[j].tipo != Tipo::Seccion; ++j)
        if (lineas_[j].tipo != Tipo::Vacia && lineas_[j].tipo != Tipo::Comentario) ultima = j;
    Linea nueva = nuevaLinea(clave + u'=' + limpio);
    if (ultima == lineas_.size() - 1)
        anadirAlFinal(std::move(nueva));
    else
        lineas_.insert(ultima + 1, std::move(nueva));
    modificado_ = true;
    return true;
}

QByteArray IniFile::aBytes() const {
    QByteArray bytes;
    if (bom_) bytes += kBom;
    for (const Linea& linea : lineas_) {
        bytes += linea.bytes;
        bytes += linea.fin;
    }
    return bytes;
}

bool IniFile::guardar() {
    error_.clear();
    if (ruta_.isEmpty()) {
        error_ = QStringLiteral("No se ha indicado el fichero");
        return false;
    }
    QSaveFile fichero(ruta_);
    if (!fichero.open(QIODevice::WriteOnly)) {
        error_ = fichero.errorString();
        return false;
    }
    const QByteArray bytes = aBytes();
    if (fichero.write(bytes) != bytes.size() || !fichero.commit()) {
        error_ = fichero.errorString();
        fichero.cancelWriting();
        return false;
    }
    modificado_ = false;
    return true;
}

std::optional<IniFile> leerConfiguracionPuesto(const QString& carpetaPrograma, Dialogs& dialogs) {
    const QString ruta = carpetaPrograma + u'/' + kFicheroConfiguracion.toString();
    const QFileInfo info(ruta);
    if (!info.exists()) {
        dialogs.mostrar(Icono::Critico, kTituloErrorGrave.toString(),
                        QStringLiteral("No se ha encontrado el fichero de configuración 'PRAMELVIX.INI'"));
        return std::nullopt;
    }
    std::optional<IniFile> ini = IniFile::abrir(ruta);
    if (!ini) {
        dialogs.mostrar(Icono::Critico, kTituloErrorGrave.toString(),
                        QStringLiteral("No se ha podido leer el fichero de configuración 'PRAMELVIX.INI'"));
    }
    return ini;
}
