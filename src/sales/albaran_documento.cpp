#include "sales/albaran_documento.h"

#include "core/formatos.h"
#include "sales/albaran_form.h"

namespace {
QString cantidadTexto(double c) {
    // Whole quantities print without decimals ("3"), others with two ("0,50").
    if (c == static_cast<double>(static_cast<qint64>(c))) return formatoEntero(static_cast<qint64>(c));
    return formatoImporte(c);
}
QString porcentajeTexto(double p) {
    return p == 0 ? QString() : formatoImporte(p);
}
} // namespace

DatosDocumento datosAlbaran(const Albaran& a, const ClienteVenta* cliente, const MascotaVenta* mascota,
                            const QString& vendedor) {
    DatosDocumento d;
    d.tipo = kTipoDocumentoAlbaran;
    const TotalesDocumento& t = a.totales();
    QString poblacion;
    if (cliente) {
        poblacion = QStringList{cliente->codigoPostal, cliente->poblacion}.join(QLatin1Char(' ')).trimmed();
        if (!cliente->provincia.isEmpty() && cliente->provincia != cliente->poblacion)
            poblacion += (poblacion.isEmpty() ? QString() : QStringLiteral(" (")) + cliente->provincia +
                         (poblacion.isEmpty() ? QString() : QStringLiteral(")"));
    }
    d.campos = {
        {QStringLiteral("numAlbaran"), a.numAlbaran ? QString::number(*a.numAlbaran) : QString()},
        {QStringLiteral("serie"), a.serie},
        {QStringLiteral("fecha"), formatoFecha(a.fecha)},
        {QStringLiteral("hora"), a.hora.isValid() ? formatoHora(a.hora) : QString()},
        {QStringLiteral("NombreCliente"), cliente ? cliente->nombre : QString()},
        {QStringLiteral("DNICliente"), cliente ? cliente->dni : QString()},
        {QStringLiteral("DireccionCliente"), cliente ? cliente->direccion : QString()},
        {QStringLiteral("PoblacionCliente"), poblacion},
        {QStringLiteral("mascota"), mascota ? mascota->nombre : QString()},
        {QStringLiteral("Vendedor"), vendedor},
        {QStringLiteral("numFra"), a.numFactura ? QString::number(*a.numFactura) : QString()},
        {QStringLiteral("serieFra"), a.serieFactura},
        {QStringLiteral("TotalBruto"), formatoImporte(t.bruto())},
        {QStringLiteral("BaseImponible"), formatoImporte(t.baseImponible())},
        // What the client pays in VAT: the breakdown's (0 on an exempt note).
        {QStringLiteral("TotalIVA"), formatoImporte(t.ivaDesglose())},
        {QStringLiteral("PorcentajeRetencion"), porcentajeTexto(a.retencion())},
        {QStringLiteral("retencion"), t.retencion() == 0 ? QString() : formatoImporte(-t.retencion())},
        {QStringLiteral("total"), formatoImporte(t.total())},
        {QStringLiteral("pendiente"), formatoImporte(a.esNuevo() ? t.total() : a.pendiente)},
        {QStringLiteral("Exento"), a.exento() ? QStringLiteral("Exento de I.V.A.") : QString()},
    };
    QList<CamposDocumento>& lineas = d.filas[QStringLiteral("Lineas")];
    for (const LineaAlbaran& l : a.lineas()) {
        lineas << CamposDocumento{
            {QStringLiteral("idArticulo"), l.idArticulo ? QString::number(*l.idArticulo) : QString()},
            {QStringLiteral("concepto"), l.concepto},
            {QStringLiteral("cantidad"), cantidadTexto(l.cantidad)},
            {QStringLiteral("pvp"), formatoImporte(l.pvp)},
            {QStringLiteral("dcto"), porcentajeTexto(l.descuento)},
            {QStringLiteral("precio"), formatoImporte(l.importes.precio)},
            {QStringLiteral("importe"), formatoImporte(l.importes.base)},
            {QStringLiteral("importeBI"), formatoImporte(l.importes.total)},
        };
    }
    QList<CamposDocumento>& desglose = d.filas[QStringLiteral("Desglose")];
    for (const DesgloseIVA& r : t.desglose()) {
        desglose << CamposDocumento{{QStringLiteral("PorcentajeIVA"), formatoImporte(r.porcentaje)},
                                    {QStringLiteral("BaseIVA"), formatoImporte(r.base)},
                                    {QStringLiteral("CuotaIVA"), formatoImporte(r.cuota)}};
    }
    d.filas[QStringLiteral("Cobros")]; // the collections of the note: none recorded yet
    return d;
}
