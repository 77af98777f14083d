// Draws the default sketch pictures (480x320 line drawings, dark outline on white) and writes
// them as GIF files into CARPETA; with --png, also as PNG (normal and double size) into
// CARPETA_PNG, to look at them.
//
//   dibujar-croquis CARPETA [--png CARPETA_PNG]
#include "gif.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <cstdio>
#include <functional>

namespace {
constexpr int kAncho = 480, kAlto = 320;
const QColor kTinta(0x22, 0x22, 0x22);
const QColor kDetalle(0x70, 0x70, 0x70);
const QColor kSuave(0xb8, 0xb8, 0xb8);

using Puntos = QList<QPointF>;

// A smooth curve through the points (Catmull-Rom turned into cubic Bézier segments).
QPainterPath curva(const Puntos& p, bool cerrada) {
    QPainterPath c;
    const qsizetype n = p.size();
    if (n < 2) return c;
    auto punto = [&](qsizetype i) {
        if (cerrada) return p.at(((i % n) + n) % n);
        return p.at(std::clamp<qsizetype>(i, 0, n - 1));
    };
    c.moveTo(p.first());
    const qsizetype tramos = cerrada ? n : n - 1;
    for (qsizetype i = 0; i < tramos; ++i) {
        const QPointF p0 = punto(i - 1), p1 = punto(i), p2 = punto(i + 1), p3 = punto(i + 2);
        c.cubicTo(p1 + (p2 - p0) / 6.0, p2 - (p3 - p1) / 6.0, p2);
    }
    if (cerrada) c.closeSubpath();
    return c;
}

Puntos mover(const Puntos& p, QPointF d) {
    Puntos r;
    for (const QPointF& q : p)
        r << q + d;
    return r;
}

void trazo(QPainter& p, const QColor& color, double ancho) {
    p.setPen(QPen(color, ancho, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

// A closed shape filled white with the ink outline (hides what was drawn behind it).
void silueta(QPainter& p, const QPainterPath& forma, const QColor& color = kTinta, double ancho = 2.6) {
    trazo(p, color, ancho);
    p.setBrush(Qt::white);
    p.drawPath(forma);
    p.setBrush(Qt::NoBrush);
}

void linea(QPainter& p, const QPainterPath& camino, const QColor& color = kTinta, double ancho = 2.0) {
    trazo(p, color, ancho);
    p.setBrush(Qt::NoBrush);
    p.drawPath(camino);
}

// ---- Dog, side view, facing left ----

Puntos perroCabezaYLomo() {
    return {// blunt nose and muzzle
            {48, 114},
            {54, 106},
            {76, 102},
            {98, 98},
            // stop, forehead, skull
            {114, 88},
            {126, 76},
            {146, 68},
            // pricked ear
            {156, 64},
            {164, 42},
            {171, 24},
            {182, 42},
            {190, 62},
            // neck and withers
            {198, 76},
            {212, 98},
            {236, 118},
            // back and croup
            {270, 127},
            {310, 129},
            {350, 127},
            {374, 131},
            // tail, up and back down
            {390, 125},
            {408, 108},
            {424, 88},
            {436, 66},
            {442, 56},
            {440, 70},
            {430, 96},
            {414, 120},
            {398, 142},
            // buttock and the back of the thigh
            {400, 160},
            {394, 184},
            {382, 206}};
}
Puntos perroPataTrasera() {
    return {{374, 226}, {378, 246}, {376, 266}, {378, 282}, {374, 293}, {348, 293}, {342, 286},
            {352, 276}, {354, 258}, {350, 244}, {338, 230}, {326, 214}, {314, 196}};
}
Puntos perroVientre() {
    return {{296, 188}, {268, 197}, {238, 206}};
}
Puntos perroPataDelantera() {
    return {{218, 214}, {212, 238}, {212, 258}, {212, 272}, {216, 284}, {212, 293},
            {182, 293}, {176, 287}, {186, 278}, {192, 264}, {192, 240}, {190, 216}};
}
Puntos perroPechoYMandibula() {
    return {{174, 196}, {166, 180}, {154, 162}, {142, 148}, {124, 140},
            {102, 138}, {78, 135},  {58, 130},  {49, 124}};
}

Puntos perroCuerpo() {
    return perroCabezaYLomo() + perroPataTrasera() + perroVientre() + perroPataDelantera() +
           perroPechoYMandibula();
}

// A far leg: the near one moved, closed inside the body.
Puntos pataLejana(const Puntos& pata, QPointF desplazamiento, const Puntos& cierre) {
    return mover(pata, desplazamiento) + cierre;
}

void perroOjoYBoca(QPainter& p) {
    trazo(p, kTinta, 2.0);
    p.setBrush(kTinta);
    p.drawEllipse(QPointF(120, 92), 3.4, 3.4);
    p.setBrush(Qt::NoBrush);
    linea(p, curva({{52, 124}, {74, 126}, {98, 124}}, false), kDetalle, 1.6);
    p.setBrush(kTinta);
    p.drawEllipse(QPointF(52, 110), 4.0, 3.6);
    p.setBrush(Qt::NoBrush);
}

void dibujarPerro(QPainter& p) {
    silueta(p, curva(pataLejana(perroPataDelantera(), {22, -4}, {{232, 180}, {214, 180}}), true), kDetalle,
            2.0);
    silueta(p, curva(pataLejana(perroPataTrasera(), {-28, -4}, {{320, 170}, {370, 170}}), true), kDetalle,
            2.0);
    silueta(p, curva(perroCuerpo(), true));
    perroOjoYBoca(p);
}

// ---- Cat, side view, facing left ----

Puntos gatoCabezaYLomo() {
    return {// nose, forehead
            {56, 118},
            {60, 106},
            {70, 92},
            {82, 82},
            // ear
            {88, 74},
            {92, 56},
            {96, 38},
            {106, 52},
            {120, 68},
            // back of the head, neck
            {134, 76},
            {148, 92},
            {170, 114},
            // back and rump
            {204, 124},
            {250, 124},
            {300, 120},
            {340, 122},
            {364, 130},
            // tail, rising in a curve and back
            {384, 124},
            {404, 108},
            {420, 86},
            {428, 62},
            {426, 40},
            {418, 28},
            {410, 34},
            {414, 50},
            {414, 70},
            {406, 90},
            {394, 108},
            {384, 124},
            {380, 140},
            // buttock and thigh
            {382, 160},
            {378, 184},
            {370, 206}};
}
Puntos gatoPataTrasera() {
    return {{364, 226}, {362, 246}, {360, 266}, {362, 282}, {358, 292}, {334, 292}, {330, 286},
            {340, 279}, {344, 262}, {342, 246}, {332, 232}, {316, 216}, {310, 200}};
}
Puntos gatoVientre() {
    return {{294, 192}, {266, 202}, {232, 204}, {206, 202}};
}
Puntos gatoPataDelantera() {
    return {{194, 208}, {190, 236}, {190, 260}, {190, 280}, {190, 292}, {164, 292},
            {160, 286}, {170, 280}, {172, 262}, {172, 238}, {170, 214}};
}
Puntos gatoPechoYCabeza() {
    return {{162, 194}, {154, 172}, {142, 154}, {126, 144}, {106, 141}, {86, 138}, {70, 133}, {60, 127}};
}

Puntos gatoCuerpo() {
    return gatoCabezaYLomo() + gatoPataTrasera() + gatoVientre() + gatoPataDelantera() + gatoPechoYCabeza();
}

void dibujarGato(QPainter& p) {
    silueta(p, curva(pataLejana(gatoPataDelantera(), {20, -4}, {{204, 180}, {186, 180}}), true), kDetalle,
            2.0);
    silueta(p, curva(pataLejana(gatoPataTrasera(), {-26, -4}, {{312, 170}, {356, 170}}), true), kDetalle,
            2.0);
    silueta(p, curva(gatoCuerpo(), true));
    // the inside of the ear
    linea(p, curva({{94, 72}, {97, 52}, {108, 66}}, false), kDetalle, 1.4);
    // eye: almond with a slit pupil
    QPainterPath ojo;
    ojo.moveTo(78, 102);
    ojo.quadTo(88, 94, 98, 100);
    ojo.quadTo(88, 108, 78, 102);
    linea(p, ojo, kTinta, 1.8);
    p.setBrush(kTinta);
    p.drawEllipse(QPointF(88, 101.5), 1.6, 4.0);
    // nose, mouth and whiskers
    QPainterPath nariz;
    nariz.moveTo(56, 113);
    nariz.lineTo(63, 115);
    nariz.lineTo(58, 119);
    nariz.closeSubpath();
    p.drawPath(nariz);
    p.setBrush(Qt::NoBrush);
    linea(p, curva({{60, 121}, {66, 127}, {74, 126}}, false), kDetalle, 1.4);
    for (const auto& [y0, y1] : {std::pair{120.0, 112.0}, {123.0, 124.0}, {126.0, 136.0}})
        linea(p, curva({{72, y0}, {52, (y0 + y1) / 2}, {30, y1}}, false), kDetalle, 1.0);
}

// ---- An eye, seen from the front ----

// Lids, iris, pupil (round or a slit), the third eyelid at the inner corner.
void dibujarOjo(QPainter& p, bool gato) {
    const QPointF centro(246, 158);
    const double radioIris = gato ? 94 : 86;
    // skin folds around the eye
    linea(p, curva({{70, 120}, {150, 52}, {250, 38}, {350, 52}, {420, 112}}, false), kSuave, 2.0);
    linea(p, curva({{96, 228}, {170, 272}, {260, 282}, {360, 254}, {412, 206}}, false), kSuave, 2.0);
    // the opening between the lids
    QPainterPath apertura;
    apertura.moveTo(92, 170);
    apertura.cubicTo(126, 62, 336, 40, 406, 148);
    apertura.cubicTo(358, 256, 146, 266, 92, 170);
    apertura.closeSubpath();
    p.save();
    p.setClipPath(apertura);
    trazo(p, kTinta, 2.2);
    p.setBrush(Qt::white);
    p.drawEllipse(centro, radioIris, radioIris);
    // fibres of the iris
    trazo(p, kSuave, 1.0);
    for (int i = 0; i < 36; ++i) {
        const double a = i * M_PI / 18;
        const double r0 = gato ? 20 : 40, r1 = radioIris - 8;
        p.drawLine(centro + QPointF(std::cos(a) * r0, std::sin(a) * r0),
                   centro + QPointF(std::cos(a) * r1, std::sin(a) * r1));
    }
    trazo(p, kTinta, 2.2);
    p.setBrush(kTinta);
    if (gato) {
        QPainterPath rendija;
        rendija.moveTo(centro + QPointF(0, -70));
        rendija.cubicTo(centro + QPointF(20, -30), centro + QPointF(20, 30), centro + QPointF(0, 70));
        rendija.cubicTo(centro + QPointF(-20, 30), centro + QPointF(-20, -30), centro + QPointF(0, -70));
        p.drawPath(rendija);
    } else {
        p.drawEllipse(centro, 34, 34);
    }
    // light reflected on the cornea
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::white);
    p.drawEllipse(centro + QPointF(gato ? 22 : 16, -30), 9, 9);
    trazo(p, kTinta, 1.2);
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(centro + QPointF(gato ? 22 : 16, -30), 9, 9);
    // third eyelid at the inner corner: its free edge, and the fold behind it shaded
    QPainterPath borde = curva({{112, 110}, {130, 166}, {112, 224}}, false);
    QPainterPath membrana = borde;
    membrana.lineTo(40, 224);
    membrana.lineTo(40, 110);
    membrana.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xe4, 0xe4, 0xe4));
    p.drawPath(membrana);
    linea(p, borde, kTinta, 1.8);
    p.restore();
    // lid margins, drawn thick
    linea(p, apertura, kTinta, 3.4);
    if (!gato) {
        // lashes of the upper lid
        for (int i = 0; i < 14; ++i) {
            const double t = 0.28 + i * 0.045;
            const QPointF a = apertura.pointAtPercent(t / 2.0);
            const double angulo = apertura.angleAtPercent(t / 2.0) * M_PI / 180.0;
            const QPointF normal(-std::sin(angulo), -std::cos(angulo));
            linea(p, curva({a, a + normal * 10 + QPointF(6, 0), a + normal * 16 + QPointF(12, 0)}, false),
                  kTinta, 1.4);
        }
    }
}

// ---- Dog skeleton, side view, inside the dog's outline ----

// A long bone from a to b: rounded ends, the shaft narrower than the ends.
QPainterPath hueso(QPointF a, QPointF b, double grosor) {
    const QPointF d = b - a;
    const double largo = std::hypot(d.x(), d.y());
    const QPointF u = d / largo, n(-u.y(), u.x());
    const double e = grosor / 2, m = grosor * 0.3;
    Puntos contorno = {a - u * e * 0.9,     a + n * e - u * e * 0.4, a + n * e + u * e,
                       a + d * 0.5 + n * m, b + n * e - u * e,       b + n * e + u * e * 0.4,
                       b + u * e * 0.9,     b - n * e + u * e * 0.4, b - n * e - u * e,
                       a + d * 0.5 - n * m, a - n * e + u * e,       a - n * e - u * e * 0.4};
    return curva(contorno, true);
}

// A vertebra centred on c, lying along the direction dir: its body, and its spinous process
// (apofisis long, leaning inclinacion towards the tail).
void vertebra(QPainter& p, QPointF c, QPointF dir, double largo, double alto, double apofisis,
              double inclinacion) {
    p.save();
    p.translate(c);
    p.rotate(std::atan2(dir.y(), dir.x()) * 180.0 / M_PI);
    if (apofisis > 0) {
        trazo(p, kTinta, 2.2);
        p.drawLine(QPointF(0, -alto / 2), QPointF(inclinacion, -alto / 2 - apofisis));
    }
    trazo(p, kTinta, 1.5);
    p.setBrush(Qt::white);
    p.drawRoundedRect(QRectF(-largo / 2, -alto / 2, largo, alto), 1.5, 1.5);
    p.restore();
}

// Vertebrae spaced evenly along a curve, their height going from t0 to t1.
void columna(QPainter& p, const QPainterPath& linea, int n, double t0, double t1, double apof0, double apof1,
             double inclinacion) {
    for (int i = 0; i < n; ++i) {
        const double f = n == 1 ? 0.5 : double(i) / (n - 1);
        const double pct = (i + 0.5) / n;
        const double ang = -linea.angleAtPercent(pct) * M_PI / 180.0;
        vertebra(p, linea.pointAtPercent(pct), {std::cos(ang), std::sin(ang)}, linea.length() / n - 1.8,
                 t0 + (t1 - t0) * f, apof0 + (apof1 - apof0) * f, inclinacion);
    }
}

void dibujarEsqueletoPerro(QPainter& p) {
    // the dog, faintly, so the bones are placed at a glance
    linea(p, curva(perroCuerpo(), true), kSuave, 2.0);

    // ribs and sternum first: the spine and the shoulder blade lie over them
    const QPointF esternon0(186, 186), esternon1(252, 204);
    for (int i = 0; i < 11; ++i) {
        const QPointF arriba(242 + 8.5 * i, 146);
        QPointF abajo;
        if (i < 8) {
            abajo = esternon0 + (esternon1 - esternon0) * (i / 7.0);
        } else {
            abajo = QPointF(262 + 12 * (i - 8), 198 - 10 * (i - 8));
        }
        const QPointF medio = (arriba + abajo) / 2 + QPointF(18 - i * 0.6, 6);
        linea(p, curva({arriba, medio, abajo}, false), kDetalle, 3.2);
    }
    for (int i = 0; i < 8; ++i) {
        const QPointF c = esternon0 + (esternon1 - esternon0) * ((i + 0.5) / 8.0);
        const QPointF d = esternon1 - esternon0;
        vertebra(p, c, d, std::hypot(d.x(), d.y()) / 8 - 1.5, 5, 0, 0);
    }

    // spine: neck, chest, loins, sacrum, tail
    columna(p, curva({{184, 98}, {204, 116}, {226, 134}, {242, 144}}, false), 7, 7, 7, 3, 4, 0);
    columna(p, curva({{244, 146}, {276, 147}, {306, 146}}, false), 13, 5.5, 5.5, 22, 9, 7);
    columna(p, curva({{308, 146}, {338, 145}, {364, 142}}, false), 7, 7.5, 7.5, 9, 7, -3);
    columna(p, curva({{366, 142}, {378, 140}, {388, 138}}, false), 1, 9, 9, 5, 5, 0);
    columna(p, curva({{392, 138}, {410, 116}, {424, 94}, {434, 74}, {440, 62}}, false), 14, 7, 3, 0, 0, 0);

    // skull and jaw
    silueta(p,
            curva({{50, 110},
                   {56, 102},
                   {84, 96},
                   {106, 88},
                   {122, 76},
                   {146, 67},
                   {168, 69},
                   {182, 79},
                   {188, 94},
                   {180, 104},
                   {164, 106},
                   {150, 112},
                   {132, 114},
                   {112, 116},
                   {88, 117},
                   {66, 117},
                   {53, 115}},
                  true),
            kTinta, 2.0);
    trazo(p, kTinta, 1.6);
    p.drawEllipse(QPointF(134, 90), 11, 10);                                     // orbit
    linea(p, curva({{120, 104}, {140, 104}, {160, 100}}, false), kDetalle, 1.6); // cheek bone
    linea(p, curva({{62, 108}, {80, 104}, {100, 100}}, false), kSuave, 1.4);     // nasal edge
    silueta(p,
            curva({{54, 119},
                   {72, 121},
                   {102, 121},
                   {130, 119},
                   {142, 114},
                   {146, 100},
                   {154, 104},
                   {158, 114},
                   {158, 126},
                   {144, 134},
                   {112, 136},
                   {80, 134},
                   {60, 128}},
                  true),
            kTinta, 2.0);
    QPainterPath colmillo; // the canine
    colmillo.moveTo(64, 117);
    colmillo.quadTo(64, 124, 68, 128);
    colmillo.quadTo(70, 122, 72, 117);
    silueta(p, colmillo, kTinta, 1.4);

    // pelvis
    silueta(p,
            curva({{342, 132},
                   {356, 128},
                   {370, 138},
                   {380, 150},
                   {398, 158},
                   {402, 168},
                   {390, 174},
                   {372, 168},
                   {360, 156},
                   {348, 142}},
                  true),
            kTinta, 2.0);
    trazo(p, kTinta, 1.4);
    p.drawEllipse(QPointF(386, 166), 5, 3);

    // fore limb: shoulder blade, arm, forearm, wrist, hand
    silueta(p,
            curva({{226, 124}, {258, 128}, {244, 150}, {196, 172}, {182, 180}, {178, 170}, {206, 144}}, true),
            kTinta, 2.0);
    linea(p, curva({{244, 128}, {214, 152}, {186, 174}}, false), kDetalle, 1.6);
    silueta(p, hueso({222, 206}, {210, 264}, 6), kTinta, 1.8);  // ulna
    silueta(p, hueso({208, 220}, {202, 266}, 8), kTinta, 1.8);  // radius
    silueta(p, hueso({184, 180}, {210, 214}, 11), kTinta, 2.0); // humerus
    p.setBrush(Qt::white);
    trazo(p, kTinta, 1.6);
    p.drawRoundedRect(QRectF(196, 268, 16, 8), 3, 3);
    silueta(p, hueso({203, 279}, {194, 285}, 6), kTinta, 1.6);
    silueta(p, hueso({190, 288}, {180, 290}, 5), kTinta, 1.4);

    // hind limb: thigh, leg, hock, foot
    silueta(p, hueso({364, 250}, {384, 240}, 7), kTinta, 1.8);  // calcaneus
    silueta(p, hueso({334, 214}, {364, 246}, 9), kTinta, 2.0);  // tibia
    silueta(p, hueso({374, 160}, {330, 208}, 12), kTinta, 2.0); // femur
    trazo(p, kTinta, 1.6);
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(322, 206), 4, 6); // kneecap
    p.drawRoundedRect(QRectF(356, 250, 14, 8), 3, 3);
    silueta(p, hueso({364, 262}, {360, 282}, 6), kTinta, 1.6);
    silueta(p, hueso({356, 288}, {344, 290}, 5), kTinta, 1.4);
}

struct Croquis {
    const char* fichero;
    std::function<void(QPainter&)> dibujar;
};

QImage pintar(const Croquis& c) {
    QImage imagen(kAncho, kAlto, QImage::Format_RGB32);
    imagen.fill(Qt::white);
    QPainter p(&imagen);
    p.setRenderHint(QPainter::Antialiasing);
    c.dibujar(p);
    p.end();
    return imagen;
}

// Sixteen greys are enough for the antialiased lines and keep the files small.
QImage grises(const QImage& imagen) {
    QImage indexada(imagen.size(), QImage::Format_Indexed8);
    QList<QRgb> paleta;
    for (int i = 0; i < 16; ++i)
        paleta << qRgb(i * 17, i * 17, i * 17);
    indexada.setColorTable(paleta);
    for (int y = 0; y < imagen.height(); ++y)
        for (int x = 0; x < imagen.width(); ++x)
            indexada.setPixel(x, y, (qGray(imagen.pixel(x, y)) + 8) / 17);
    return indexada;
}
} // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments();
    const qsizetype opcionPng = args.indexOf(QStringLiteral("--png"));
    if (args.size() < 2 || (opcionPng > 0 && opcionPng + 1 >= args.size())) {
        std::fprintf(stderr, "uso: dibujar-croquis CARPETA [--png CARPETA_PNG]\n");
        return 2;
    }
    const QDir carpeta(args.at(1));
    const QString carpetaPng = opcionPng > 0 ? args.at(opcionPng + 1) : QString();
    const QList<Croquis> lista = {
        {"dermatologia_perro", dibujarPerro},
        {"dermatologia_gato", dibujarGato},
        {"oftalmologia_perro", [](QPainter& p) { dibujarOjo(p, false); }},
        {"oftalmologia_gato", [](QPainter& p) { dibujarOjo(p, true); }},
        {"traumatologia_perro", dibujarEsqueletoPerro},
    };
    for (const Croquis& c : lista) {
        const QImage imagen = grises(pintar(c));
        const QString nombre = carpeta.filePath(QString::fromLatin1(c.fichero));
        QFile f(nombre + QStringLiteral(".gif"));
        if (!f.open(QIODevice::WriteOnly) || f.write(codificarGif(imagen)) < 0) {
            std::fprintf(stderr, "no se ha podido escribir %s\n", qPrintable(f.fileName()));
            return 1;
        }
        f.close();
        // What was written must read back as drawn.
        const QImage leida = QImage(f.fileName()).convertToFormat(QImage::Format_RGB32);
        if (leida != imagen.convertToFormat(QImage::Format_RGB32)) {
            std::fprintf(stderr, "%s no se lee igual que se dibujó\n", qPrintable(f.fileName()));
            return 1;
        }
        if (!carpetaPng.isEmpty()) {
            const QString png = QDir(carpetaPng).filePath(QString::fromLatin1(c.fichero));
            imagen.save(png + QStringLiteral(".png"));
            imagen.scaled(imagen.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .save(png + QStringLiteral("_x2.png"));
        }
        std::printf("%s\n", qPrintable(f.fileName()));
    }
    return 0;
}
