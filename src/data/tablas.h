#pragma once
// The table definitions of each subsystem; esquema.cpp joins them into the catalogue.
#include "data/descriptor.h"

// Settings, users, active workstations, locks, counters, logs.
QList<DescriptorTabla> tablasSistema();
