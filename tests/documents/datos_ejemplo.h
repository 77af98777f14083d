#pragma once
// A delivery note as the delivery-note screen hands it to the printing: four lines at 21 %
// and 10 % VAT (one with a 10 % discount), one collection and an amount still pending. The
// amounts follow the note's arithmetic (each step rounded to cents).
#include "documents/plantilla.h"

using namespace Qt::StringLiterals;

inline CamposDocumento lineaEjemplo(const QString& id, const QString& concepto, const QString& cantidad,
                                    const QString& pvp, const QString& dcto, const QString& precio,
                                    const QString& importe, const QString& importeBI) {
    return {{u"idArticulo"_s, id},   {u"concepto"_s, concepto},  {u"cantidad"_s, cantidad},
            {u"pvp"_s, pvp},         {u"dcto"_s, dcto},          {u"precio"_s, precio},
            {u"importe"_s, importe}, {u"importeBI"_s, importeBI}};
}

inline DatosDocumento albaranEjemplo() {
    DatosDocumento d;
    d.tipo = u"ALB"_s;
    d.campos = {{u"numAlbaran"_s, u"125"_s},
                {u"serie"_s, u"A"_s},
                {u"fecha"_s, u"23/11/2026"_s},
                {u"hora"_s, u"10:15"_s},
                {u"NombreCliente"_s, u"Ana Belén Núñez Castaño"_s},
                {u"DNICliente"_s, u"12345678Z"_s},
                {u"DireccionCliente"_s, u"C/ Doctor Fléming, 23, 2º B"_s},
                {u"PoblacionCliente"_s, u"28036 Madrid"_s},
                {u"mascota"_s, u"Rufo"_s},
                {u"Vendedor"_s, u"Dra. Lucía Ferrer Soler"_s},
                {u"numFra"_s, QString()},
                {u"serieFra"_s, QString()},
                {u"TotalBruto"_s, u"132,15"_s},
                {u"BaseImponible"_s, u"128,68"_s},
                {u"TotalIVA"_s, u"24,52"_s},
                {u"PorcentajeRetencion"_s, QString()},
                {u"retencion"_s, QString()},
                {u"total"_s, u"153,20"_s},
                {u"pendiente"_s, u"53,20"_s},
                {u"Exento"_s, QString()}};
    d.filas.insert(u"Lineas"_s, {lineaEjemplo(u"1"_s, u"Consulta general"_s, u"1"_s, u"35,00"_s, QString(),
                                              u"28,93"_s, u"28,93"_s, u"35,00"_s),
                                 lineaEjemplo(u"2"_s, u"Vacuna polivalente canina"_s, u"1"_s, u"42,00"_s,
                                              u"10,00"_s, u"34,71"_s, u"31,24"_s, u"37,80"_s),
                                 lineaEjemplo(u"5"_s, u"Pipeta antiparasitaria perro 10-20 kg"_s, u"3"_s,
                                              u"18,50"_s, QString(), u"15,29"_s, u"45,87"_s, u"55,50"_s),
                                 lineaEjemplo(u"6"_s, u"Pienso adulto 3 kg"_s, u"1"_s, u"24,90"_s, QString(),
                                              u"22,64"_s, u"22,64"_s, u"24,90"_s)});
    d.filas.insert(
        u"Desglose"_s,
        {{{u"PorcentajeIVA"_s, u"21,00"_s}, {u"BaseIVA"_s, u"106,04"_s}, {u"CuotaIVA"_s, u"22,26"_s}},
         {{u"PorcentajeIVA"_s, u"10,00"_s}, {u"BaseIVA"_s, u"22,64"_s}, {u"CuotaIVA"_s, u"2,26"_s}}});
    d.filas.insert(u"Cobros"_s, {{{u"FechaCobro"_s, u"23/11/2026"_s},
                                  {u"FormaCobro"_s, u"TARJETA"_s},
                                  {u"ImporteCobro"_s, u"100,00"_s}}});
    return d;
}

// The demo clinic's data as the settings hold it.
inline CamposDocumento clinicaEjemplo() {
    return {{u"NombreClinica"_s, u"Clínica Veterinaria Los Álamos"_s},
            {u"NIFClinica"_s, u"B86543210"_s},
            {u"DireccionClinica"_s, u"Avenida de los Álamos, 14"_s},
            {u"PoblacionClinica"_s, u"28043 Madrid"_s},
            {u"TelefonoClinica"_s, u"910 123 456"_s},
            {u"EMailClinica"_s, u"info@vetlosalamos.es"_s}};
}

// The invoice of that delivery note.
inline DatosDocumento facturaEjemplo() {
    const DatosDocumento albaran = albaranEjemplo();
    DatosDocumento d;
    d.tipo = u"FRA"_s;
    d.campos = {{u"numero"_s, u"31"_s},  {u"serie"_s, u"A"_s},      {u"fecha"_s, u"30/11/2026"_s},
                {u"hora"_s, u"18:40"_s}, {u"Bruto"_s, u"132,15"_s}, {u"retencion"_s, QString()},
                {u"Exento"_s, QString()}};
    for (const char* campo : {"NombreCliente", "DNICliente", "DireccionCliente", "PoblacionCliente",
                              "BaseImponible", "TotalIVA", "total"})
        d.campos.append({QString::fromLatin1(campo), albaran.valor(QString::fromLatin1(campo))});
    d.filas.insert(u"Lineas"_s, albaran.filas.value(u"Lineas"_s));
    d.filas.insert(u"Desglose"_s, albaran.filas.value(u"Desglose"_s));
    return d;
}
