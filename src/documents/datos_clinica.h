#pragma once
// The clinic's own data on its documents. The settings NOMBRE CLINICA, NIF CLINICA,
// DIRECCION CLINICA, POBLACION CLINICA, TELEFONO CLINICA and EMAIL CLINICA become the fields
// NombreClinica, NIFClinica, DireccionClinica, PoblacionClinica, TelefonoClinica and
// EMailClinica of any document, and LocalidadClinica is the town alone (POBLACION CLINICA
// without the postcode in front: "28043 Madrid" gives "Madrid"), for the place before the date
// of a letter. A setting never written prints as an empty field.
#include "data/ajustes.h"
#include "documents/plantilla.h"

// The seven fields, in that order, as the settings hold them now.
CamposDocumento camposClinica(Ajustes& ajustes);
// Adds to the document the clinic's fields it does not give itself (a caller may give its
// own NombreClinica, for example, and that one is printed). Throws ErrorBD.
void anyadirDatosClinica(Ajustes& ajustes, DatosDocumento& datos);
