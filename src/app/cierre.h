#pragma once
// Leaving the program: the workstation leaves the table of active workstations.
#include "app/entorno.h"

// Releases the locks of this session and removes this workstation from the active table;
// a failure is reported and ignored.
void abandonarPuesto(Entorno& entorno);
