#pragma once
// The one schema of the clinic's database, defined by table descriptors and versioned:
// every table, column and index carries the version that introduced it, and migrating
// to version N creates what version N introduced. The SQL for each engine is generated
// from the descriptors.
#include "data/database.h"
#include "data/descriptor.h"

// Every table of the system, in creation order.
const QList<DescriptorTabla>& catalogo();
// The descriptor of a table (by name, case-insensitive); nullptr when unknown.
const DescriptorTabla* descriptorTabla(const QString& tabla);
// The same for a table the caller cannot do without; throws ErrorPrograma when unknown.
const DescriptorTabla& descriptorRequerido(const QString& tabla);

// Highest version named by the catalogue: the schema this program needs.
int versionEsquemaPrograma();
// The version stored in the database; 0 for an empty database.
int versionEsquema(Database& db);
// Brings the database up to the program's schema in one transaction.
// Throws ErrorBD; refuses a database newer than the program.
void migrarEsquema(Database& db);

// SQL generation (exposed for tests and the schema comparison).
QString sqlTipo(const DescriptorColumna& c, Motor motor);
QStringList sqlCrearTabla(const DescriptorTabla& t, Motor motor, int version);
QString sqlCrearIndice(const DescriptorTabla& t, const DescriptorIndice& i);

// Statements that set every NULL time column of every table to 0:00:00.
QStringList sqlRepararHorasNulas(Motor motor);
void repararHorasNulas(Database& db);
