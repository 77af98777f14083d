#pragma once
// Delivery notes of the demo clinic: a few weeks of counter sales to the first clients,
// priced and totalled as the delivery-note screen would.
#include "data/database.h"

#include <QDate>

// Creates `cuantos` notes of series `serie`, dated in the weeks before `hoy`. Returns the
// number created. Throws ErrorBD.
int cargarAlbaranesDemo(Database& db, const QString& serie, const QDate& hoy, int cuantos = 12);
