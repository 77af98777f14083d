#include "data/tablas.h"

namespace {
using T = TipoColumna;

// Invoicing series: sales series for delivery notes and invoices, credit series for
// returns and credit notes.
DescriptorTabla series() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("Series");
    t.descTabla = QStringLiteral("Serie");
    t.columnaS = {col(QStringLiteral("Serie"), T::Texto, QStringLiteral("Serie"), 10, false),
                  col(QStringLiteral("Descripcion"), T::Texto, QStringLiteral("Descripción"), 60, false),
                  colLista(QStringLiteral("Tipo"), QStringLiteral("Tipo"),
                           {QStringLiteral("V"), QStringLiteral("A")},
                           {QStringLiteral("Venta"), QStringLiteral("Abono")}, false)};
    t.clave = {QStringLiteral("Serie")};
    t.columnaTexto = QStringLiteral("Descripcion");
    t.parametro = true;
    return t;
}

// What each workstation proposes by default, keyed by the workstation's name.
DescriptorTabla confPuesto() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("ConfPuesto");
    t.descTabla = QStringLiteral("Configuración del puesto");
    t.columnaS = {
        col(QStringLiteral("Puesto"), T::Texto, QStringLiteral("Puesto"), 64, false),
        col(QStringLiteral("SerieVenta"), T::Texto, QStringLiteral("Serie de venta"), 10),
        col(QStringLiteral("SerieAbono"), T::Texto, QStringLiteral("Serie de abono"), 10),
        colLista(QStringLiteral("Tarifa"), QStringLiteral("Tarifa por defecto"),
                 {QStringLiteral("TARIFA 1"), QStringLiteral("TARIFA 2"), QStringLiteral("TARIFA 3")},
                 {QStringLiteral("TARIFA 1"), QStringLiteral("TARIFA 2"), QStringLiteral("TARIFA 3")}),
        col(QStringLiteral("IdEspecie"), T::Entero, QStringLiteral("Especie por defecto")),
        col(QStringLiteral("IdCliente"), T::Entero, QStringLiteral("Cliente por defecto")),
        col(QStringLiteral("IdArticulo"), T::Entero, QStringLiteral("Artículo por defecto")),
        col(QStringLiteral("FechaInicial"), T::Fecha, QStringLiteral("Fecha inicial")),
        col(QStringLiteral("AutoGuardado"), T::Entero, QStringLiteral("Autoguardado (minutos)")),
        col(QStringLiteral("HoraCopia"), T::Hora, QStringLiteral("Hora de la copia automática"))};
    t.columnaS[8].porDefecto = QStringLiteral("0");
    t.clave = {QStringLiteral("Puesto")};
    t.columnaTexto = QStringLiteral("Puesto");
    return t;
}
} // namespace

QList<DescriptorTabla> tablasPuesto() {
    return {series(), confPuesto()};
}
