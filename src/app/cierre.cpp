#include "app/cierre.h"

#include "app/bloqueo_edicion.h"
#include "data/puestos.h"

void abandonarPuesto(Entorno& e) {
    if (!e.hayBaseDatos()) return;
    try {
        // The locks this session still holds go with it.
        almacenBloqueos(e).desbloquearSesion();
        PuestosActivosStore(e.db()).quitar(e.puesto);
    } catch (const ErrorBD& err) {
        e.dialogs().error(QStringLiteral("Pramelvix"), err.mensaje());
    }
}
