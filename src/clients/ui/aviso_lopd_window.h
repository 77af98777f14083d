#pragma once
// The data-protection notice for a printing or sending to many clients: one tickable row per
// client (and pet) who does not consent, which the user includes or excludes before going on.
// Any screen that prints or sends for many clients calls it.
#include "clients/aviso_lopd.h"

class QWidget;

// False when the user cancelled the whole printing or sending (aviso.salir is then true);
// otherwise aviso.aceptar() gives the rows kept.
bool mostrarAvisoLopdLista(AvisoLopdLista& aviso, QWidget* padre = nullptr);
