#pragma once
// A delivery note as a printed document: the fields and rows the templates of the groups
// "DocAlbaranes" and "NotaVenta" and the sale ticket address.
#include "documents/plantilla.h"
#include "sales/albaran.h"
#include "sales/albaran_store.h"

// Header fields: numAlbaran, serie, fecha, hora, NombreCliente, DNICliente, DireccionCliente,
// PoblacionCliente, mascota, Vendedor, numFra, serieFra, TotalBruto, BaseImponible, TotalIVA,
// PorcentajeRetencion, retencion (negative; empty when none), total, pendiente, Exento.
// Blocks: Lineas (idArticulo, concepto, cantidad, pvp, dcto, precio, importe, importeBI),
// Desglose (PorcentajeIVA, BaseIVA, CuotaIVA), Cobros (FechaCobro, FormaCobro, ImporteCobro).
DatosDocumento datosAlbaran(const Albaran& albaran, const ClienteVenta* cliente, const MascotaVenta* mascota,
                            const QString& vendedor);
