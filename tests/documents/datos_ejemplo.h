#pragma once
// A delivery note as the delivery-note screen hands it to the printing: four lines at 21 %
// and 10 % VAT (one with a 10 % discount), one collection and an amount still pending. The
// amounts follow the note's arithmetic (each step rounded to cents).
#include "documents/plantilla.h"

inline CamposDocumento lineaEjemplo(const QString& id, const QString& concepto, const QString& cantidad,
                                    const QString& pvp, const QString& dcto, const QString& precio,
                                    const QString& importe, const QString& importeBI) {
    return {{QStringLiteral("idArticulo"), id},     {QStringLiteral("concepto"), concepto},
            {QStringLiteral("cantidad"), cantidad}, {QStringLiteral("pvp"), pvp},
            {QStringLiteral("dcto"), dcto},         {QStringLiteral("precio"), precio},
            {QStringLiteral("importe"), importe},   {QStringLiteral("importeBI"), importeBI}};
}

inline DatosDocumento albaranEjemplo() {
    DatosDocumento d;
    d.tipo = QStringLiteral("ALB");
    d.campos = {{QStringLiteral("numAlbaran"), QStringLiteral("125")},
                {QStringLiteral("serie"), QStringLiteral("A")},
                {QStringLiteral("fecha"), QStringLiteral("23/11/2026")},
                {QStringLiteral("hora"), QStringLiteral("10:15")},
                {QStringLiteral("NombreCliente"), QStringLiteral("Ana Belén Núñez Castaño")},
                {QStringLiteral("DNICliente"), QStringLiteral("12345678Z")},
                {QStringLiteral("DireccionCliente"), QStringLiteral("C/ Doctor Fléming, 23, 2º B")},
                {QStringLiteral("PoblacionCliente"), QStringLiteral("28036 Madrid")},
                {QStringLiteral("mascota"), QStringLiteral("Rufo")},
                {QStringLiteral("Vendedor"), QStringLiteral("Dra. Lucía Ferrer Soler")},
                {QStringLiteral("numFra"), QString()},
                {QStringLiteral("serieFra"), QString()},
                {QStringLiteral("TotalBruto"), QStringLiteral("132,15")},
                {QStringLiteral("BaseImponible"), QStringLiteral("128,68")},
                {QStringLiteral("TotalIVA"), QStringLiteral("24,52")},
                {QStringLiteral("PorcentajeRetencion"), QString()},
                {QStringLiteral("retencion"), QString()},
                {QStringLiteral("total"), QStringLiteral("153,20")},
                {QStringLiteral("pendiente"), QStringLiteral("53,20")},
                {QStringLiteral("Exento"), QString()}};
    d.filas.insert(QStringLiteral("Lineas"),
                   {lineaEjemplo(QStringLiteral("1"), QStringLiteral("Consulta general"), QStringLiteral("1"),
                                 QStringLiteral("35,00"), QString(), QStringLiteral("28,93"),
                                 QStringLiteral("28,93"), QStringLiteral("35,00")),
                    lineaEjemplo(QStringLiteral("2"), QStringLiteral("Vacuna polivalente canina"),
                                 QStringLiteral("1"), QStringLiteral("42,00"), QStringLiteral("10,00"),
                                 QStringLiteral("34,71"), QStringLiteral("31,24"), QStringLiteral("37,80")),
                    lineaEjemplo(QStringLiteral("5"), QStringLiteral("Pipeta antiparasitaria perro 10-20 kg"),
                                 QStringLiteral("3"), QStringLiteral("18,50"), QString(),
                                 QStringLiteral("15,29"), QStringLiteral("45,87"), QStringLiteral("55,50")),
                    lineaEjemplo(QStringLiteral("6"), QStringLiteral("Pienso adulto 3 kg"),
                                 QStringLiteral("1"), QStringLiteral("24,90"), QString(),
                                 QStringLiteral("22,64"), QStringLiteral("22,64"), QStringLiteral("24,90"))});
    d.filas.insert(QStringLiteral("Desglose"), {{{QStringLiteral("PorcentajeIVA"), QStringLiteral("21,00")},
                                                 {QStringLiteral("BaseIVA"), QStringLiteral("106,04")},
                                                 {QStringLiteral("CuotaIVA"), QStringLiteral("22,26")}},
                                                {{QStringLiteral("PorcentajeIVA"), QStringLiteral("10,00")},
                                                 {QStringLiteral("BaseIVA"), QStringLiteral("22,64")},
                                                 {QStringLiteral("CuotaIVA"), QStringLiteral("2,26")}}});
    d.filas.insert(QStringLiteral("Cobros"), {{{QStringLiteral("FechaCobro"), QStringLiteral("23/11/2026")},
                                               {QStringLiteral("FormaCobro"), QStringLiteral("TARJETA")},
                                               {QStringLiteral("ImporteCobro"), QStringLiteral("100,00")}}});
    return d;
}

// The demo clinic's data as the settings hold it.
inline CamposDocumento clinicaEjemplo() {
    return {{QStringLiteral("NombreClinica"), QStringLiteral("Clínica Veterinaria Los Álamos")},
            {QStringLiteral("NIFClinica"), QStringLiteral("B86543210")},
            {QStringLiteral("DireccionClinica"), QStringLiteral("Avenida de los Álamos, 14")},
            {QStringLiteral("PoblacionClinica"), QStringLiteral("28043 Madrid")},
            {QStringLiteral("TelefonoClinica"), QStringLiteral("910 123 456")},
            {QStringLiteral("EMailClinica"), QStringLiteral("info@vetlosalamos.es")}};
}

// The invoice of that delivery note.
inline DatosDocumento facturaEjemplo() {
    const DatosDocumento albaran = albaranEjemplo();
    DatosDocumento d;
    d.tipo = QStringLiteral("FRA");
    d.campos = {{QStringLiteral("numero"), QStringLiteral("31")},
                {QStringLiteral("serie"), QStringLiteral("A")},
                {QStringLiteral("fecha"), QStringLiteral("30/11/2026")},
                {QStringLiteral("hora"), QStringLiteral("18:40")},
                {QStringLiteral("Bruto"), QStringLiteral("132,15")},
                {QStringLiteral("retencion"), QString()},
                {QStringLiteral("Exento"), QString()}};
    for (const char* campo : {"NombreCliente", "DNICliente", "DireccionCliente", "PoblacionCliente",
                              "BaseImponible", "TotalIVA", "total"})
        d.campos.append({QString::fromLatin1(campo), albaran.valor(QString::fromLatin1(campo))});
    d.filas.insert(QStringLiteral("Lineas"), albaran.filas.value(QStringLiteral("Lineas")));
    d.filas.insert(QStringLiteral("Desglose"), albaran.filas.value(QStringLiteral("Desglose")));
    return d;
}
