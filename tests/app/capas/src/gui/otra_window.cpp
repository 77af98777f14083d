// Fixture for the layering check: nothing wrong here.
#include <QMainWindow>
#include "stock/articulo_form.h"
