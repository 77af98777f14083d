#pragma once
// Save checks of a table that belong to a subsystem (a supplier's subaccount follows the
// accounting rules of the stock subsystem). The data layer includes no subsystem, so the
// subsystem registers its check by table name when the program starts, and the table's
// descriptor asks for it here.
#include "data/descriptor.h"

#include <functional>
#include <optional>

using ValidacionTabla = std::function<std::optional<FalloValidacion>(const Registro&)>;

// Registers (or replaces) the check of a table.
void registrarValidacionTabla(const QString& tabla, ValidacionTabla validacion);
// The failure the registered check finds; nullopt when it passes or none is registered.
std::optional<FalloValidacion> validacionRegistrada(const QString& tabla, const Registro& r);
