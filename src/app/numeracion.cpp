#include "app/numeracion.h"

#include "data/bloqueos.h"

#include <QRandomGenerator>
#include <QThread>

bool reintentarNumeracion(Dialogs& dialogs, const QString& que, const std::function<void()>& intento,
                          int intentosPorAviso) {
    if (intentosPorAviso < 1) intentosPorAviso = 1;
    dialogs.progreso(QStringLiteral("Localizando el siguiente nº de ") + que + QStringLiteral(". Espere, por favor..."));
    struct QuitarProgreso {
        Dialogs& d;
        ~QuitarProgreso() { d.progreso(QString()); }
    } quitar{dialogs};
    int fallos = 0;
    for (;;) {
        try {
            intento();
            return true;
        } catch (const ErrorBD& e) {
            if (!esErrorDeConcurrencia(e)) throw;
        }
        if (++fallos < intentosPorAviso) {
            QThread::msleep(5 + QRandomGenerator::global()->bounded(20));
            continue;
        }
        fallos = 0;
        if (!dialogs.preguntar(Icono::Exclamacion, QStringLiteral("¡Atención!"),
                               QStringLiteral("Todavía no se ha podido localizar el siguiente nº de ") + que +
                                   QStringLiteral(". ¿Desea seguir intentándolo? Si este aviso persiste contacte "
                                                  "con un Administrador.")))
            return false;
    }
}
