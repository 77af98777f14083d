// Fixture for the layering check: a window that talks to a store. Widgets are fine here.
#include <QDialog>
#include "stock/articulo_store.h"
