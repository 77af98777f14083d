#include "app/cierre.h"

#include "data/puestos.h"

void abandonarPuesto(Entorno& e) {
    if (!e.hayBaseDatos()) return;
    try {
        PuestosActivosStore(e.db()).quitar(e.puesto);
    } catch (const ErrorBD& err) {
        e.dialogs().error(QStringLiteral("Pramelvix"), err.mensaje());
    }
}
