// The consulting room's records, introduced with schema version 6: visits, the analytic
// results and speciality examinations of a visit, its prescriptions, the register of a pet's
// hospitalisations, and quotes with their lines.
#include "data/tablas.h"

namespace {
using T = TipoColumna;
constexpr int V = 6;

DescriptorColumna c(const QString& nombre, T tipo, const QString& etiqueta, int longitud = 0,
                    bool opcional = true) {
    return col(nombre, tipo, etiqueta, longitud, opcional, V);
}

DescriptorColumna cero(DescriptorColumna d) {
    d.porDefecto = QStringLiteral("0");
    return d;
}

DescriptorTabla visitas() {
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("Visitas"), QStringLiteral("Visita"),
                {c(QStringLiteral("IdVisita"), T::Autonumerico, QStringLiteral("Nº Visita"), 0, false),
                 c(QStringLiteral("IdCliente"), T::Entero, QStringLiteral("Cliente"), 0, false),
                 c(QStringLiteral("IdMascota"), T::Entero, QStringLiteral("Mascota"), 0, false),
                 c(QStringLiteral("Fecha"), T::Fecha, QStringLiteral("Fecha"), 0, false),
                 c(QStringLiteral("Hora"), T::Hora, QStringLiteral("Hora")),
                 c(QStringLiteral("IdTipoVisita"), T::Entero, QStringLiteral("Tipo de visita")),
                 c(QStringLiteral("IdDiagnostico"), T::Entero, QStringLiteral("Diagnóstico")),
                 c(QStringLiteral("IdVeterinario"), T::Entero, QStringLiteral("Veterinario")),
                 c(QStringLiteral("Peso"), T::Decimal, QStringLiteral("Peso")),
                 c(QStringLiteral("Temperatura"), T::Decimal, QStringLiteral("Temperatura")),
                 c(QStringLiteral("IdCondicionCorporal"), T::Entero, QStringLiteral("Condición corporal")),
                 c(QStringLiteral("Anamnesis"), T::Memo, QStringLiteral("Anamnesis")),
                 c(QStringLiteral("Tratamiento"), T::Memo, QStringLiteral("Tratamiento")),
                 // Set by the quote made from the visit.
                 c(QStringLiteral("Presupuesto"), T::Logico, QStringLiteral("Presupuesto"))},
                QStringLiteral("Fecha"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdMascota"), QStringLiteral("Fecha")}, V),
                 indiceDe(t.tabla, {QStringLiteral("IdCliente")}, V),
                 indiceDe(t.tabla, {QStringLiteral("Fecha")}, V)};
    return t;
}

// A result of a laboratory analytic ("Resultado") recorded in a visit.
DescriptorTabla resultados() {
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("ResultadosAnalitica"), QStringLiteral("Resultado de Analítica"),
                {c(QStringLiteral("IdResultado"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("IdVisita"), T::Entero, QStringLiteral("Visita"), 0, false),
                 c(QStringLiteral("IdAnalitica"), T::Entero, QStringLiteral("Analítica"), 0, false),
                 c(QStringLiteral("Resultado"), T::Memo, QStringLiteral("Resultado")),
                 c(QStringLiteral("DatoPrivado"), T::Logico, QStringLiteral("Dato privado")),
                 c(QStringLiteral("Autor"), T::Texto, QStringLiteral("Usuario que lo anotó"), 20)},
                QStringLiteral("Resultado"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdVisita")}, V)};
    return t;
}

// A speciality examination of a visit: the protocol followed, its result and the marks drawn
// on the speciality's sketch of the species (one "x;y;size;colour" line a mark).
DescriptorTabla especialidades() {
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("EspecialidadesVisita"), QStringLiteral("Especialidad de la Visita"),
                {c(QStringLiteral("IdEspecialidadVisita"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("IdVisita"), T::Entero, QStringLiteral("Visita"), 0, false),
                 c(QStringLiteral("IdEspecialidad"), T::Entero, QStringLiteral("Especialidad"), 0, false),
                 c(QStringLiteral("Protocolo"), T::Memo, QStringLiteral("Protocolo")),
                 c(QStringLiteral("Resultado"), T::Memo, QStringLiteral("Resultado")),
                 c(QStringLiteral("Croquis"), T::Memo, QStringLiteral("Marcas del croquis")),
                 c(QStringLiteral("DatoPrivado"), T::Logico, QStringLiteral("Dato privado")),
                 c(QStringLiteral("Autor"), T::Texto, QStringLiteral("Usuario que lo anotó"), 20)},
                QStringLiteral("Resultado"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdVisita")}, V)};
    return t;
}

DescriptorTabla recetas() {
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("Recetas"), QStringLiteral("Receta"),
                {c(QStringLiteral("IdReceta"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("IdVisita"), T::Entero, QStringLiteral("Visita"), 0, false),
                 c(QStringLiteral("Fecha"), T::Fecha, QStringLiteral("Fecha"), 0, false),
                 c(QStringLiteral("IdMedicamento"), T::Entero, QStringLiteral("Medicamento"), 0, false),
                 c(QStringLiteral("IdVeterinario"), T::Entero, QStringLiteral("Veterinario"), 0, false),
                 c(QStringLiteral("Dispensador"), T::Texto, QStringLiteral("Dispensador"), 100),
                 c(QStringLiteral("Dosificacion"), T::Memo, QStringLiteral("Dosificación"))},
                QStringLiteral("Fecha"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdVisita")}, V)};
    return t;
}

// One row a stay: written on admission, completed on discharge. IdVisita is the admitting
// visit, whose number is the hospitalisation number; a visit may admit the pet again after a
// discharge, and the stay still open is the one without a discharge date.
DescriptorTabla hospitalizaciones() {
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("Hospitalizaciones"), QStringLiteral("Hospitalización"),
                {c(QStringLiteral("IdHospitalizacion"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("IdMascota"), T::Entero, QStringLiteral("Mascota"), 0, false),
                 c(QStringLiteral("IdVisita"), T::Entero, QStringLiteral("Visita de ingreso"), 0, false),
                 c(QStringLiteral("FechaIngreso"), T::Fecha, QStringLiteral("Fecha Ingreso"), 0, false),
                 c(QStringLiteral("HoraIngreso"), T::Hora, QStringLiteral("Hora Ingreso")),
                 c(QStringLiteral("DiagnosticoIngreso"), T::Texto, QStringLiteral("Diagnóstico en Ingreso"), 100),
                 c(QStringLiteral("Jaula"), T::Texto, QStringLiteral("Jaula"), 20),
                 c(QStringLiteral("FechaAlta"), T::Fecha, QStringLiteral("Fecha Alta")),
                 c(QStringLiteral("HoraAlta"), T::Hora, QStringLiteral("Hora Alta")),
                 c(QStringLiteral("DiagnosticoAlta"), T::Texto, QStringLiteral("Diagnóstico de Alta"), 100)},
                QStringLiteral("FechaIngreso"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdMascota")}, V),
                 indiceDe(t.tabla, {QStringLiteral("IdVisita")}, V)};
    return t;
}

// Quotes: priced like a delivery note; Estado "P" pending, "A" accepted (made into the
// delivery note IdAlbaran), "R" rejected.
DescriptorTabla presupuestos() {
    DescriptorColumna estado =
        colLista(QStringLiteral("Estado"), QStringLiteral("Estado"),
                 {QStringLiteral("P"), QStringLiteral("A"), QStringLiteral("R")},
                 {QStringLiteral("Pendiente"), QStringLiteral("Aceptado"), QStringLiteral("Rechazado")}, false);
    estado.desde = V;
    estado.porDefecto = QStringLiteral("'P'");
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("Presupuestos"), QStringLiteral("Presupuesto"),
                {c(QStringLiteral("IdPresupuesto"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("NumPresupuesto"), T::Entero, QStringLiteral("Nº Presupuesto"), 0, false),
                 c(QStringLiteral("Fecha"), T::Fecha, QStringLiteral("Fecha"), 0, false),
                 c(QStringLiteral("Hora"), T::Hora, QStringLiteral("Hora")),
                 c(QStringLiteral("IdCliente"), T::Entero, QStringLiteral("Cliente"), 0, false),
                 c(QStringLiteral("IdMascota"), T::Entero, QStringLiteral("Mascota")),
                 c(QStringLiteral("IdVendedor"), T::Entero, QStringLiteral("Vendedor")),
                 c(QStringLiteral("IdVisita"), T::Entero, QStringLiteral("Visita")), estado,
                 c(QStringLiteral("IdAlbaran"), T::Entero, QStringLiteral("Albarán")),
                 c(QStringLiteral("Retencion"), T::Decimal, QStringLiteral("% Retención")),
                 c(QStringLiteral("Exento"), T::Logico, QStringLiteral("Exento de I.V.A.")),
                 cero(c(QStringLiteral("TotalBruto"), T::Decimal, QStringLiteral("Total bruto"))),
                 cero(c(QStringLiteral("TotalBI"), T::Decimal, QStringLiteral("Total B.I."))),
                 cero(c(QStringLiteral("TotalIVA"), T::Decimal, QStringLiteral("Total I.V.A."))),
                 cero(c(QStringLiteral("TotalRetencion"), T::Decimal, QStringLiteral("Total retención"))),
                 cero(c(QStringLiteral("Total"), T::Decimal, QStringLiteral("Total"))),
                 c(QStringLiteral("Observaciones"), T::Memo, QStringLiteral("Observaciones"))},
                QStringLiteral("NumPresupuesto"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("NumPresupuesto")}, V, true),
                 indiceDe(t.tabla, {QStringLiteral("IdCliente")}, V),
                 indiceDe(t.tabla, {QStringLiteral("IdVisita")}, V)};
    return t;
}

DescriptorTabla lineasPresupuesto() {
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("LineasPresupuesto"), QStringLiteral("Línea de Presupuesto"),
                {c(QStringLiteral("IdLinea"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("IdPresupuesto"), T::Entero, QStringLiteral("Presupuesto"), 0, false),
                 c(QStringLiteral("Orden"), T::Entero, QStringLiteral("Orden")),
                 c(QStringLiteral("IdArticulo"), T::Entero, QStringLiteral("Artículo")),
                 c(QStringLiteral("Descripcion"), T::Texto, QStringLiteral("Concepto"), 100),
                 c(QStringLiteral("Cantidad"), T::Decimal, QStringLiteral("Cantidad")),
                 c(QStringLiteral("Precio"), T::Decimal, QStringLiteral("P.V.P.")),
                 c(QStringLiteral("Descuento"), T::Decimal, QStringLiteral("% Dto.")),
                 c(QStringLiteral("IdTipoIVA"), T::Entero, QStringLiteral("Tipo de I.V.A.")),
                 c(QStringLiteral("PorcentajeIVA"), T::Decimal, QStringLiteral("% I.V.A.")),
                 c(QStringLiteral("Serie"), T::Texto, QStringLiteral("Serie de facturación"), 10),
                 c(QStringLiteral("PrecioSinIVA"), T::Decimal, QStringLiteral("Precio sin I.V.A.")),
                 c(QStringLiteral("BrutoSinIVA"), T::Decimal, QStringLiteral("Bruto sin I.V.A.")),
                 c(QStringLiteral("BrutoConIVA"), T::Decimal, QStringLiteral("Bruto con I.V.A.")),
                 c(QStringLiteral("ImporteDto"), T::Decimal, QStringLiteral("Importe del descuento")),
                 c(QStringLiteral("TotalConIVA"), T::Decimal, QStringLiteral("Total con I.V.A.")),
                 c(QStringLiteral("BaseImponible"), T::Decimal, QStringLiteral("Base imponible")),
                 c(QStringLiteral("CuotaIVA"), T::Decimal, QStringLiteral("Cuota de I.V.A.")),
                 c(QStringLiteral("ImporteRetencion"), T::Decimal, QStringLiteral("Retención")),
                 c(QStringLiteral("Importe"), T::Decimal, QStringLiteral("Total línea"))},
                QStringLiteral("Descripcion"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdPresupuesto")}, V)};
    return t;
}
} // namespace

QList<DescriptorTabla> tablasVisitas() {
    return {visitas(),           resultados(),   especialidades(),   recetas(),
            hospitalizaciones(), presupuestos(), lineasPresupuesto()};
}
