#pragma once
// The table definitions of each subsystem; esquema.cpp joins them into the catalogue.
#include "data/descriptor.h"

// Settings, users, active workstations, locks, counters, logs.
QList<DescriptorTabla> tablasSistema();
QList<DescriptorTabla> tablasBloqueos();
// Workstation defaults and invoicing series.
QList<DescriptorTabla> tablasPuesto();
// Parameter tables kept through the generic list and tree editors.
QList<DescriptorTabla> tablasParametros();
// Clients, pets, breeds, staff, health plans, special conditions, changes of owner.
QList<DescriptorTabla> tablasClientes();
// Articles, families, subfamilies, article types, suppliers, delivery notes and their lines.
QList<DescriptorTabla> tablasArticulos();
// Visits, their analytics, specialities and prescriptions, hospitalisations, quotes.
QList<DescriptorTabla> tablasVisitas();
