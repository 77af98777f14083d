#pragma once
// A small GIF89a writer for one still picture of up to 256 colours (Qt reads GIF but does not
// write it).
#include <QByteArray>
#include <QImage>

// The picture (converted to 8-bit indexed colour first when needed) as a GIF file.
QByteArray codificarGif(const QImage& imagen);
