#pragma once
// Leaving the program: the workstation leaves the table of active workstations.
#include "app/entorno.h"

// Removes this workstation from the active table; a failure is reported and ignored.
void abandonarPuesto(Entorno& entorno);
