#pragma once
// Compaction and repair of the database. On SQLite the database is copied with
// "VACUUM INTO" to a temporary file BDTemp<mm><ss>.mdb beside it (minute and second of
// the moment of the repair); only when that file exists afterwards is the source
// replaced by it. On PostgreSQL the server compacts and rebuilds its indexes in place.
#include "core/clock.h"
#include "data/database.h"

#include <QString>

inline const QString kNombreBaseDatos = QStringLiteral("Pramelvix.mdb");

// The temporary file name for a repair at the given moment: BDTemp0507.mdb at 10:05:07.
QString nombreTemporalReparacion(const QTime& momento);

struct ResultadoReparacion {
    bool hecha = false;
    bool ocupada = false; // refused: another program has the database open // the database was replaced by its compacted copy
    QString error;      // what the compactor reported when it failed
};

// Repairs the SQLite database file; the temporary copy is made in the same folder.
// No connection to the file may be open.
ResultadoReparacion repararSQLite(const QString& fichero, const Clock& reloj);
// Compacts a PostgreSQL database in place.
ResultadoReparacion repararPostgreSQL(const QString& conexion);
