#pragma once
// A consistent copy of a live SQLite database, made with SQLite's online backup while
// other workstations keep working. The copy is written to a temporary file beside the
// destination and then takes its name, so a failed copy never leaves half a file and an
// earlier copy stays as it was.
//
// The copy runs on the window's thread in short steps: each step copies a few pages and
// waits at most esperaPasoMs for a lock another workstation holds; between steps entrePasos
// runs (the main window repaints and runs its timers there) and the copy pauses. A write by
// another workstation makes SQLite start the copy again, so under steady writes it may never
// end: after limiteTotalMs it gives up with a message.
#include "data/database.h"

#include <functional>

struct PasosCopia {
    int paginasPorPaso = 128;
    int esperaPasoMs = 200;
    int pausaMs = 10;
    int limiteTotalMs = 10000;
};

// Returns an empty text on success, or the reason it failed.
QString copiarBaseDatos(Database& db, const QString& destino, const PasosCopia& pasos = {},
                        const std::function<void()>& entrePasos = {});
