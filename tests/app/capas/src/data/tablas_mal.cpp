// Fixture for the layering check: the data layer reaching into a subsystem.
#include "data/tablas.h"
#include "stock/proveedor_subcuenta.h"
