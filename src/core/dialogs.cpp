#include "core/dialogs.h"

QString nombreIcono(Icono icono) {
    switch (icono) {
    case Icono::Ninguno:
        return QStringLiteral("MENSAJE");
    case Icono::Informacion:
        return QStringLiteral("INFORMACIÓN");
    case Icono::Exclamacion:
        return QStringLiteral("AVISO");
    case Icono::Critico:
        return QStringLiteral("ERROR");
    case Icono::Pregunta:
        return QStringLiteral("PREGUNTA");
    }
    return {};
}
