#pragma once
// The words of a message that agree with the class of a record ("Cliente", "Forma de Pago",
// "Condición Corporal"): the class takes the gender of its first word.
#include <QString>

struct Concordancia {
    QString este; // "este" / "esta"
    QString lo;   // "lo" / "la"
    QString o;    // "o" / "a" (abierto / abierta)
    QString el;   // "él" / "ella"
};

// Feminine when the first word ends in -a (but "Idioma", "Día", "Sistema", "Problema",
// "Programa", "Mapa", "Tema"), -ión, -dad or -ie; masculine otherwise.
Concordancia concordancia(const QString& clase);
