#include "gif.h"

#include <unordered_map>

namespace {
void entero16(QByteArray& b, int v) {
    b.append(char(v & 0xff));
    b.append(char((v >> 8) & 0xff));
}

// LZW codes written least significant bit first, in sub-blocks of at most 255 bytes.
class Bits {
public:
    explicit Bits(QByteArray& salida) : salida_(salida) {}
    void poner(int codigo, int ancho) {
        acumulado_ |= static_cast<quint32>(codigo) << nBits_;
        nBits_ += ancho;
        while (nBits_ >= 8) {
            byte(char(acumulado_ & 0xff));
            acumulado_ >>= 8;
            nBits_ -= 8;
        }
    }
    void terminar() {
        if (nBits_ > 0) byte(char(acumulado_ & 0xff));
        if (!bloque_.isEmpty()) volcar();
        salida_.append(char(0));
    }

private:
    void byte(char c) {
        bloque_.append(c);
        if (bloque_.size() == 255) volcar();
    }
    void volcar() {
        salida_.append(char(bloque_.size()));
        salida_.append(bloque_);
        bloque_.clear();
    }
    QByteArray& salida_;
    QByteArray bloque_;
    quint32 acumulado_ = 0;
    int nBits_ = 0;
};
} // namespace

QByteArray codificarGif(const QImage& original) {
    QImage imagen = original.format() == QImage::Format_Indexed8
                        ? original
                        : original.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither);
    QList<QRgb> paleta = imagen.colorTable();
    paleta.resize(256, qRgb(255, 255, 255));

    QByteArray gif("GIF89a");
    entero16(gif, imagen.width());
    entero16(gif, imagen.height());
    gif.append(char(0xf7)); // global table of 256 colours, 8 bits a channel
    gif.append(char(0));    // background colour
    gif.append(char(0));    // square pixels
    for (QRgb c : paleta) {
        gif.append(char(qRed(c)));
        gif.append(char(qGreen(c)));
        gif.append(char(qBlue(c)));
    }
    gif.append(char(0x2c));
    entero16(gif, 0);
    entero16(gif, 0);
    entero16(gif, imagen.width());
    entero16(gif, imagen.height());
    gif.append(char(0)); // no local table, not interlaced

    // Like common encoders, the table stops at 4094 and is cleared, never using code 4095.
    constexpr int minimo = 8, limpiar = 256, fin = 257, maximo = 4095;
    gif.append(char(minimo));
    Bits bits(gif);
    std::unordered_map<quint32, int> tabla;
    int siguiente = fin + 1, ancho = minimo + 1;
    bits.poner(limpiar, ancho);
    int actual = -1;
    for (int y = 0; y < imagen.height(); ++y) {
        const uchar* fila = imagen.constScanLine(y);
        for (int x = 0; x < imagen.width(); ++x) {
            const int k = fila[x];
            if (actual < 0) {
                actual = k;
                continue;
            }
            const quint32 clave = (static_cast<quint32>(actual) << 8) | static_cast<quint32>(k);
            if (const auto it = tabla.find(clave); it != tabla.end()) {
                actual = it->second;
                continue;
            }
            bits.poner(actual, ancho);
            if (siguiente < maximo) {
                tabla.emplace(clave, siguiente);
                // The decoder widens its codes once the next code no longer fits.
                if (siguiente == (1 << ancho) && ancho < 12) ++ancho;
                ++siguiente;
            } else {
                bits.poner(limpiar, ancho);
                tabla.clear();
                siguiente = fin + 1;
                ancho = minimo + 1;
            }
            actual = k;
        }
    }
    if (actual >= 0) bits.poner(actual, ancho);
    bits.poner(fin, ancho);
    bits.terminar();
    gif.append(char(0x3b));
    return gif;
}
