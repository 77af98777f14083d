#pragma once
// The demo clinic's consulting room: clinical lists (diagnoses, analytics, specialities,
// medicines, body conditions), a visit for each demo delivery note (the note charges it), a few
// visits of today with prescriptions, analytic results and a speciality sketch, and one pet
// hospitalised. Always the same data for the same day.
#include "data/database.h"

#include <QDate>

// Returns the number of visits written.
int cargarVisitasDemo(Database& db, const QDate& hoy);
