#pragma once
// Changing the series of a subfamily in its list: the user is asked first, and on Yes every
// delivery note not yet invoiced that holds an article of the subfamily takes the new series,
// with the database locked for administration while it runs.
#include "app/entorno.h"
#include "data/registro.h"

#include <optional>

// The save of a Subfamilias record through the generic record form (registered for every
// program by reglas_articulos.cpp): nothing when the series did not change (the form saves
// as usual); otherwise whether it was saved.
std::optional<bool> guardarSubfamilia(Entorno& e, const Registro& anterior, const Registro& nuevo);
