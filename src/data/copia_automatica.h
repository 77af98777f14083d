#pragma once
// A consistent copy of a live SQLite database, made with SQLite's online backup while
// other workstations keep working. The copy is written to a temporary file beside the
// destination and then takes its name, so a failed copy never leaves half a file.
#include "data/database.h"

// Returns an empty text on success, or the reason it failed.
QString copiarBaseDatos(Database& db, const QString& destino);
