#pragma once
// A delivery note as the screen hands it to the printing: four lines at 21 % and 10 % VAT (one
// with a 10 % discount), one collection and an amount still pending, each step rounded to cents.
#include "documents/plantilla.h"

using namespace Qt::StringLiterals;

// "nombre=valor|nombre=valor..." as the fields of a document or of one of its rows.
inline CamposDocumento camposDe(const QString& texto) {
    CamposDocumento c;
    for (const QString& par : texto.split(u'|'))
        c.append({par.section(u'=', 0, 0), par.section(u'=', 1)});
    return c;
}

inline CamposDocumento lineaEjemplo(const QString& valores) {
    const QStringList nombres = {u"idArticulo"_s, u"concepto"_s, u"cantidad"_s, u"pvp"_s,
                                 u"dcto"_s,       u"precio"_s,   u"importe"_s,  u"importeBI"_s};
    CamposDocumento c;
    const QStringList v = valores.split(u'|');
    for (qsizetype i = 0; i < nombres.size(); ++i)
        c.append({nombres[i], v.value(i)});
    return c;
}

inline DatosDocumento albaranEjemplo() {
    DatosDocumento d;
    d.tipo = u"ALB"_s;
    d.campos =
        camposDe(u"numAlbaran=125|serie=A|fecha=23/11/2026|hora=10:15|"
                 "NombreCliente=Ana Belén Núñez Castaño|DNICliente=12345678Z|"
                 "DireccionCliente=C/ Doctor Fléming, 23, 2º B|PoblacionCliente=28036 Madrid|mascota=Rufo|"
                 "Vendedor=Dra. Lucía Ferrer Soler|numFra=|serieFra=|TotalBruto=132,15|"
                 "BaseImponible=128,68|TotalIVA=24,52|PorcentajeRetencion=|retencion=|total=153,20|"
                 "pendiente=53,20|Exento="_s);
    // idArticulo|concepto|cantidad|pvp|dcto|precio|importe|importeBI
    d.filas.insert(u"Lineas"_s,
                   {lineaEjemplo(u"1|Consulta general|1|35,00||28,93|28,93|35,00"_s),
                    lineaEjemplo(u"2|Vacuna polivalente canina|1|42,00|10,00|34,71|31,24|37,80"_s),
                    lineaEjemplo(u"5|Pipeta antiparasitaria perro 10-20 kg|3|18,50||15,29|45,87|55,50"_s),
                    lineaEjemplo(u"6|Pienso adulto 3 kg|1|24,90||22,64|22,64|24,90"_s)});
    d.filas.insert(u"Desglose"_s, {camposDe(u"PorcentajeIVA=21,00|BaseIVA=106,04|CuotaIVA=22,26"_s),
                                   camposDe(u"PorcentajeIVA=10,00|BaseIVA=22,64|CuotaIVA=2,26"_s)});
    d.filas.insert(u"Cobros"_s,
                   {camposDe(u"FechaCobro=23/11/2026|FormaCobro=TARJETA|ImporteCobro=100,00"_s)});
    return d;
}
