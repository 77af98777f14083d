#pragma once
// Synthetic clients and pets for trying the program and measuring it on a clinic of
// realistic size: Spanish names and surnames, towns with their postcodes and provinces,
// mobile (6/7) and landline (9) telephones, some DNI and e-mails, chips of 15 digits for
// about 60% of the pets, species and breeds from the look-up tables (a few breeds are
// created for a species that has none), about 3% of the clients with a leaving date and
// about 5% of the pets marked as left. The same seed gives the same data.
#include "data/database.h"

#include <functional>

struct ResultadoGenerador {
    qint64 clientes = 0;
    qint64 mascotas = 0;
};

// Adds numClientes clients with about 2.5 pets each, in one transaction, after the ones
// already there. avance, when set, is told the number of clients written so far. Throws ErrorBD.
ResultadoGenerador generarClientes(Database& db, int numClientes, quint32 semilla,
                                   const std::function<void(int)>& avance = {});
