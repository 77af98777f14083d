#pragma once
// The photographs of a visit: the files <carpetaDatos>/FotosVisitas/<idVisita>_*.jpg, the
// ones the program adds being numbered <idVisita>_1.jpg, <idVisita>_2.jpg...
#include <QString>
#include <QStringList>

// Full paths of the visit's photographs: the numbered ones in number order (_2 before _10),
// then any other name of the visit in alphabetical order. The extension may be written in
// any case (.jpg, .JPG).
QStringList fotosVisita(const QString& carpetaDatos, qint64 idVisita);

// Copies the picture origen into FotosVisitas as <idVisita>_<n>.jpg, n being one past the
// highest number there; a picture in another format is converted to JPEG. Never overwrites a
// file (two workstations adding at once get different numbers). Returns the new path, or an
// empty text with *error set to the reason in Spanish.
QString anyadirFotoVisita(const QString& carpetaDatos, qint64 idVisita, const QString& origen,
                          QString* error);

// Deletes a photograph: only a file directly inside a folder named FotosVisitas whose name is
// <number>_<anything>.jpg (after following links); anything else is refused. True when the
// file was deleted.
bool eliminarFotoVisita(const QString& ruta);
