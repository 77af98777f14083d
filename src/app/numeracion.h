#pragma once
// Taking the next number of a series while other workstations take theirs. The number is
// taken inside the document's own transaction; when the counter is held elsewhere right now
// the whole save is tried again, and after a number of refused attempts the user is asked
// whether to go on, with no transaction open (the other workstations never wait on a
// question of this one).
#include "core/dialogs.h"
#include "data/contadores.h"

#include <functional>

// Runs intento (which opens and ends its own transaction) until it does not fail because
// another workstation holds what it needs (esErrorDeConcurrencia), showing "Localizando el
// siguiente nº de " + que + ". Espere, por favor..." meanwhile. After every intentosPorAviso
// refused attempts it asks (exclamation, "¡Atención!") "Todavía no se ha podido localizar el
// siguiente nº de " + que + ". ¿Desea seguir intentándolo? Si este aviso persiste contacte con
// un Administrador."; No gives false with nothing saved. Any other failure propagates.
bool reintentarNumeracion(Dialogs& dialogs, const QString& que, const std::function<void()>& intento,
                          int intentosPorAviso = kIntentosPorAviso);
