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

// One page of prescriptions as the visit hands it over: two, or one with the second's fields
// (names ending in 2) blank.
inline DatosDocumento recetasEjemplo(bool dos) {
    DatosDocumento d;
    d.campos = camposDe(u"Veterinario=Dra. Lucía Ferrer Soler|Cliente=Ana Belén Núñez Castaño|"
                        "DirCliente=C/ Doctor Fléming, 23, 2º B|PobCliente=28036 Madrid|Fecha=23/11/2026|"
                        "Colegiado=28-1234|DPS=Amoxicilina 250 mg comprimidos|"
                        "Dosificacion=1 comprimido cada 12 horas durante 7 días|"
                        "DPS_Dosificacion=Amoxicilina: 1 comprimido cada 12 horas"_s);
    d.campos += camposDe(dos ? u"Veterinario2=Dr. Tomás Ibarra Gil|Cliente2=Luis Pérez Gil|"
                               "DirCliente2=Av. de la Paz, 4|PobCliente2=45600 Talavera (Toledo)|"
                               "Fecha2=24/11/2026|Colegiado2=45-0987|DPS2=Meloxicam 1,5 mg/ml suspensión|"
                               "Dosificacion2=0,1 mg/kg una vez al día|DPS_Dosificacion2=Meloxicam: con comida"_s
                             : u"Veterinario2=|Cliente2=|DirCliente2=|PobCliente2=|Fecha2=|Colegiado2=|DPS2=|"
                               "Dosificacion2=|DPS_Dosificacion2="_s);
    return d;
}

// A visit report; with bloques, one row in each of Analiticas, Especialidades and Recetas.
inline DatosDocumento informeEjemplo(bool bloques) {
    DatosDocumento d;
    d.campos = camposDe(u"NumVisita=4321|Fecha=23/11/2026|Hora=10:15|Cliente=Ana Belén Núñez Castaño|"
                        "DirCliente=C/ Doctor Fléming, 23, 2º B|PobCliente=28036 Madrid|Mascota=Rufo|"
                        "Especie=Perro|Raza=Beagle|Sexo=Macho|FechaNacimiento=02/04/2019|Chip=941000012345678|"
                        "TipoVisita=Consulta|Diagnostico=Otitis externa|Veterinario=Dra. Lucía Ferrer Soler|"
                        "Colegiado=28-1234|Peso=14,20|Temperatura=38,9|CondicionCorporal=Ideal|"
                        "Anamnesis=Se rasca la oreja izquierda.\nDesde hace 3 días.|"
                        "Tratamiento=Limpieza ótica diaria."_s);
    if (!bloques) return d;
    d.filas.insert(u"Analiticas"_s, {camposDe(u"Grupo=Hemograma|Analitica=Hematocrito|Resultado=45|"
                                              "ValorNormal=37-55|Unidades=%"_s)});
    d.filas.insert(u"Especialidades"_s,
                   {camposDe(u"Especialidad=Otoscopia|Protocolo=Oído izquierdo|Resultado=Eritema leve"_s)});
    d.filas.insert(u"Recetas"_s, {camposDe(u"Fecha=23/11/2026|DPS=Otoxolan gotas|Dosificacion=5 gotas "
                                           "cada 12 horas|Veterinario=Dra. Lucía Ferrer Soler"_s)});
    return d;
}
