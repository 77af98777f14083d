#pragma once
// The printed fields of letters to a client (group "DocClientes") and about a pet (group
// "DocMas"). Every value is a text ready to print; dates "dd/mm/yyyy".
//
// A client's fields: NombreCliente, DNICliente, DireccionCliente, CodigoPostalCliente,
// LocalidadCliente, ProvinciaCliente, PoblacionCliente (postcode and town, with the province
// in brackets when it is not the town: "45600 Talavera (Toledo)"), Telefono1Cliente,
// Telefono2Cliente, Telefono3Cliente, MovilCliente, TelefonosCliente (those given, joined by
// " / "), EMailCliente, and today as Fecha ("23/11/2026") and FechaTexto ("23 de noviembre de
// 2026").
// A pet's: its owner's fields plus Mascota, NumMascota, Especie, Raza, Sexo, Capa,
// FechaNacimiento, Chip, Cartilla, PlanSalud and CaducidadPlan.
#include "clients/cartas_store.h"
#include "documents/plantilla.h"

// "28036 Madrid", "45600 Talavera (Toledo)", "Madrid"... "" when all three are blank.
QString textoPoblacion(const QString& codigoPostal, const QString& poblacion, const QString& provincia);

CamposDocumento camposCliente(const ClienteCarta& cliente, const QDate& hoy);
DatosDocumento datosCartaCliente(const ClienteCarta& cliente, const QDate& hoy);
DatosDocumento datosCartaMascota(const MascotaCarta& mascota, const ClienteCarta& propietario,
                                 const QDate& hoy);
