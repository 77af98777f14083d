#pragma once
// Sketches of a speciality examination: the marks the veterinarian puts on a picture of the
// species, how they are kept in one text column, where the picture lives in the data folder,
// and the pictures every installation starts with.
//
// Text of the marks: one mark a line, lines separated by "\n" ("\r\n" is read too):
//
//     x;y;T;#rrggbb
//
//   x, y     position relative to the picture, 0 (left, top) to 1 (right, bottom), written with
//            '.' as decimal point and 4 decimals (C locale, whatever the workstation's settings);
//   T        the size: G (large), M (medium) or P (small);
//   #rrggbb  the colour, six hexadecimal digits.
//
// Blank lines are ignored. A damaged line (a field missing or extra, a bad number, a position
// outside 0..1, an unknown size, a bad colour) is skipped and counted, so one bad line never
// loses the others.
#include <QColor>
#include <QList>
#include <QString>

enum class TamanoMarca { Grande, Mediano, Pequeno };

struct MarcaCroquis {
    double x = 0, y = 0; // relative to the picture (0..1), so marks stay put at any drawn size
    TamanoMarca tamano = TamanoMarca::Mediano;
    QColor color;
};

// 'G', 'M' or 'P'.
QChar letraTamano(TamanoMarca tamano);
// The radius of a mark as a fraction of the drawn picture's width.
double radioRelativo(TamanoMarca tamano);

// The marks as text. A position outside 0..1 is written at the nearest edge, a mark whose
// position is not a number is left out, and a mark without a valid colour is written black.
QString textoMarcas(const QList<MarcaCroquis>& marcas);
// The marks of a text; descartadas (when given) receives the number of damaged lines skipped.
QList<MarcaCroquis> leerMarcas(const QString& texto, int* descartadas = nullptr);

// The sketch picture <carpetaDatos>/Croquis/<especialidad>/<especie>.gif. Both names are made
// safe as a folder or file name: '/', '\\', control characters and the characters Windows
// does not allow in a name (: * ? " < > |) become '_', as do leading dots (so no ".." ever
// climbs out of the Croquis folder), and an empty name is "_". When that exact folder or file
// is missing but one whose name differs only in case exists, that one is returned (a clinic
// writes "PERRO" as well as "Perro"), as a Windows workstation would find it.
QString rutaCroquis(const QString& carpetaDatos, const QString& especialidad, const QString& especie);

// The text shown when the picture is missing.
QString textoCroquisNoEncontrado(const QString& ruta);

// A picture every installation starts with.
struct CroquisPorDefecto {
    QString especialidad;
    QString especie;
    QString recurso; // where the program keeps it
};

const QList<CroquisPorDefecto>& croquisPorDefecto();

// Copies the default pictures into <carpetaDatos>/Croquis/<especialidad>/<especie>.gif,
// making the folders. A picture the clinic already has there is kept as it is. Empty text on
// success, else the reason.
QString instalarCroquisPorDefecto(const QString& carpetaDatos);
