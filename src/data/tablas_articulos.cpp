// Articles and services, their classification (families and subfamilies under the sections),
// article types, suppliers, and the sale delivery notes with their lines. Introduced with
// schema version 2. The article's columns are named by the field keys the document templates
// use (ArtCodArticulo, Articulo, PVP1...).
#include "data/reglas_tablas.h"
#include "data/tablas.h"

namespace {
using T = TipoColumna;
constexpr int V = 2;

DescriptorColumna c(const QString& nombre, T tipo, const QString& etiqueta, int longitud = 0,
                    bool opcional = true) {
    return col(nombre, tipo, etiqueta, longitud, opcional, V);
}

// A column added by schema version 3.
DescriptorColumna v3(const QString& nombre, T tipo, const QString& etiqueta) {
    return col(nombre, tipo, etiqueta, 0, true, 3);
}

DescriptorColumna serie(const QString& nombre = QStringLiteral("Serie")) {
    return c(nombre, T::Texto, QStringLiteral("Serie de facturación"), 10);
}

DescriptorTabla articulos() {
    DescriptorColumna factor =
        c(QStringLiteral("ArtFactorConversion"), T::Decimal, QStringLiteral("Factor de conversión"));
    factor.porDefecto = QStringLiteral("1");
    DescriptorColumna obligatoria =
        c(QStringLiteral("ArtFacturacionObligatoria"), T::Logico, QStringLiteral("Facturación obligatoria"));
    DescriptorTabla t = tablaDe(
        V, QStringLiteral("Articulos"), QStringLiteral("Artículo"),
        {c(QStringLiteral("ArtCodArticulo"), T::Autonumerico, QStringLiteral("Código"), 0, false),
         c(QStringLiteral("Articulo"), T::Texto, QStringLiteral("Descripción"), 100, false),
         c(QStringLiteral("ArtDescCorta"), T::Texto, QStringLiteral("Descripción corta"), 40),
         c(QStringLiteral("ArtDescAlternativa"), T::Texto, QStringLiteral("Descripción alternativa"), 100),
         c(QStringLiteral("ArtCodBarras"), T::Texto, QStringLiteral("Código de barras"), 30),
         c(QStringLiteral("ArtTipoArticulo"), T::Texto, QStringLiteral("Tipo de artículo"), 20),
         c(QStringLiteral("Seccion"), T::Entero, QStringLiteral("Sección")),
         c(QStringLiteral("Familia"), T::Entero, QStringLiteral("Familia")),
         c(QStringLiteral("SubFamilia"), T::Entero, QStringLiteral("Subfamilia")),
         c(QStringLiteral("ArtIVA"), T::Entero, QStringLiteral("Tipo de I.V.A.")),
         c(QStringLiteral("ArtRE"), T::Entero, QStringLiteral("Recargo de equivalencia")),
         c(QStringLiteral("PVP1"), T::Decimal, QStringLiteral("P.V.P. 1")),
         c(QStringLiteral("PVP2"), T::Decimal, QStringLiteral("P.V.P. 2")),
         c(QStringLiteral("PVP3"), T::Decimal, QStringLiteral("P.V.P. 3")),
         c(QStringLiteral("ArtPVPKg"), T::Decimal, QStringLiteral("P.V.P. por kilo")),
         c(QStringLiteral("ArtPeso"), T::Decimal, QStringLiteral("Peso")),
         c(QStringLiteral("ArtPrecioCoste"), T::Decimal, QStringLiteral("Precio de coste")),
         c(QStringLiteral("ArtUltPrecio"), T::Decimal, QStringLiteral("Último precio de compra")),
         c(QStringLiteral("ArtCodUltProv"), T::Entero, QStringLiteral("Último proveedor")),
         c(QStringLiteral("ArtCodProv"), T::Entero, QStringLiteral("Proveedor habitual")),
         c(QStringLiteral("ArtRefProvHab"), T::Texto, QStringLiteral("Referencia del proveedor"), 30),
         factor,
         c(QStringLiteral("Stock"), T::Decimal, QStringLiteral("Stock")),
         c(QStringLiteral("ArtStockMin"), T::Decimal, QStringLiteral("Stock mínimo")),
         c(QStringLiteral("ArtLaboratorio"), T::Entero, QStringLiteral("Laboratorio")),
         c(QStringLiteral("ArtDias"), T::Entero, QStringLiteral("Días de recordatorio")),
         c(QStringLiteral("ArtFechaAlta"), T::Fecha, QStringLiteral("Fecha de alta")),
         c(QStringLiteral("ArtFechaBaja"), T::Fecha, QStringLiteral("Fecha de baja")),
         c(QStringLiteral("ArtFecUltUso"), T::Fecha, QStringLiteral("Fecha de último uso")),
         serie(QStringLiteral("ArtSerie")),
         obligatoria,
         c(QStringLiteral("ArtNotas"), T::Memo, QStringLiteral("Notas")),
         c(QStringLiteral("ArtAviso"), T::Memo, QStringLiteral("Aviso"))},
        QStringLiteral("Articulo"), false);
    t.indices = {indiceDe(t.tabla, {QStringLiteral("Articulo")}, V),
                 indiceDe(t.tabla, {QStringLiteral("ArtCodBarras")}, V),
                 indiceDe(t.tabla, {QStringLiteral("SubFamilia")}, V)};
    return t;
}

DescriptorTabla familias() {
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("Familias"), QStringLiteral("Familia"),
                {c(QStringLiteral("IdFamilia"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("IdSeccion"), T::Entero, QStringLiteral("Sección"), 0, false),
                 c(QStringLiteral("Descripcion"), T::Texto, QStringLiteral("Familia"), 40, false), serie()},
                QStringLiteral("Descripcion"), true);
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdSeccion")}, V)};
    return t;
}

DescriptorTabla subfamilias() {
    DescriptorTabla t = tablaDe(
        V, QStringLiteral("Subfamilias"), QStringLiteral("Subfamilia"),
        {c(QStringLiteral("IdSubfamilia"), T::Autonumerico, QStringLiteral("Código"), 0, false),
         c(QStringLiteral("IdFamilia"), T::Entero, QStringLiteral("Familia"), 0, false),
         c(QStringLiteral("Descripcion"), T::Texto, QStringLiteral("Subfamilia"), 40, false), serie()},
        QStringLiteral("Descripcion"), true);
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdFamilia")}, V)};
    return t;
}

// The type is a code the clinic types; "SERVICIO" marks a service (no stock, no suppliers).
DescriptorTabla tiposArticulo() {
    return tablaDe(V, QStringLiteral("TiposArticulo"), QStringLiteral("Tipo de Artículo"),
                   {c(QStringLiteral("IdTipoArticulo"), T::Texto, QStringLiteral("Tipo"), 20, false),
                    c(QStringLiteral("Descripcion"), T::Texto, QStringLiteral("Descripción"), 40, false)},
                   QStringLiteral("Descripcion"), true);
}

DescriptorTabla proveedores() {
    const DescriptorColumna activo = colActivo(V);
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("Proveedores"), QStringLiteral("Proveedor"),
                {c(QStringLiteral("IdProveedor"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("Nombre"), T::Texto, QStringLiteral("Nombre"), 100, false),
                 c(QStringLiteral("NIF"), T::Texto, QStringLiteral("N.I.F."), 20),
                 c(QStringLiteral("Contacto"), T::Texto, QStringLiteral("Persona de contacto"), 60),
                 c(QStringLiteral("Telefono"), T::Texto, QStringLiteral("Teléfono"), 20),
                 c(QStringLiteral("EMail"), T::Texto, QStringLiteral("E-Mail"), 100),
                 c(QStringLiteral("Subcuenta"), T::Texto, QStringLiteral("Subcuenta contable"), 12), activo},
                QStringLiteral("Nombre"), true);
    // The subaccount's check belongs to the stock subsystem, which registers it
    // (stock/reglas_articulos.cpp).
    t.validacion = [](const Registro& r) { return validacionRegistrada(QStringLiteral("Proveedores"), r); };
    return t;
}

// Sale delivery notes: the header. A note is pending invoicing while NumFactura is empty.
DescriptorTabla albaranes() {
    auto cero = [](DescriptorColumna d) {
        d.porDefecto = QStringLiteral("0");
        return d;
    };
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("Albaranes"), QStringLiteral("Albarán"),
                {c(QStringLiteral("IdAlbaran"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("Serie"), T::Texto, QStringLiteral("Serie"), 10, false),
                 c(QStringLiteral("NumAlbaran"), T::Entero, QStringLiteral("Nº Albarán"), 0, false),
                 c(QStringLiteral("Fecha"), T::Fecha, QStringLiteral("Fecha"), 0, false),
                 c(QStringLiteral("Hora"), T::Hora, QStringLiteral("Hora")),
                 c(QStringLiteral("IdCliente"), T::Entero, QStringLiteral("Cliente"), 0, false),
                 c(QStringLiteral("IdMascota"), T::Entero, QStringLiteral("Mascota")),
                 c(QStringLiteral("IdVendedor"), T::Entero, QStringLiteral("Vendedor")),
                 c(QStringLiteral("IdVisita"), T::Entero, QStringLiteral("Visita")),
                 c(QStringLiteral("Retencion"), T::Decimal, QStringLiteral("% Retención")),
                 c(QStringLiteral("Exento"), T::Logico, QStringLiteral("Exento de I.V.A.")),
                 c(QStringLiteral("NumFactura"), T::Entero, QStringLiteral("Nº Factura")),
                 c(QStringLiteral("SerieFactura"), T::Texto, QStringLiteral("Serie de la factura"), 10),
                 c(QStringLiteral("Cobrado"), T::Logico, QStringLiteral("Cobrado")),
                 cero(c(QStringLiteral("TotalBruto"), T::Decimal, QStringLiteral("Total bruto"))),
                 cero(c(QStringLiteral("TotalBI"), T::Decimal, QStringLiteral("Total B.I."))),
                 cero(c(QStringLiteral("TotalIVA"), T::Decimal, QStringLiteral("Total I.V.A."))),
                 cero(c(QStringLiteral("TotalRetencion"), T::Decimal, QStringLiteral("Total retención"))),
                 cero(c(QStringLiteral("Total"), T::Decimal, QStringLiteral("Total"))),
                 cero(c(QStringLiteral("Pendiente"), T::Decimal, QStringLiteral("Pendiente")))},
                QStringLiteral("NumAlbaran"), false);
    t.indices = {indiceDe(t.tabla, {QStringLiteral("Serie"), QStringLiteral("NumAlbaran")}, V, true),
                 indiceDe(t.tabla, {QStringLiteral("IdCliente")}, V),
                 indiceDe(t.tabla, {QStringLiteral("NumFactura")}, V),
                 // Version 3: the delivery-note search lists the newest notes first.
                 indiceDe(t.tabla, {QStringLiteral("Fecha")}, 3)};
    return t;
}

DescriptorTabla lineasAlbaran() {
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("LineasAlbaran"), QStringLiteral("Línea de Albarán"),
                {c(QStringLiteral("IdLinea"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("IdAlbaran"), T::Entero, QStringLiteral("Albarán"), 0, false),
                 c(QStringLiteral("Orden"), T::Entero, QStringLiteral("Orden")),
                 c(QStringLiteral("IdArticulo"), T::Entero, QStringLiteral("Artículo")),
                 c(QStringLiteral("Descripcion"), T::Texto, QStringLiteral("Concepto"), 100),
                 c(QStringLiteral("Cantidad"), T::Decimal, QStringLiteral("Cantidad")),
                 c(QStringLiteral("Precio"), T::Decimal, QStringLiteral("P.V.P.")),
                 c(QStringLiteral("Descuento"), T::Decimal, QStringLiteral("% Dto.")),
                 c(QStringLiteral("IdTipoIVA"), T::Entero, QStringLiteral("Tipo de I.V.A.")),
                 c(QStringLiteral("PorcentajeIVA"), T::Decimal, QStringLiteral("% I.V.A.")),
                 c(QStringLiteral("Importe"), T::Decimal, QStringLiteral("Total línea")), serie(),
                 // Version 3: every derived amount of the line, as the document arithmetic gave it,
                 // so that invoicing and the reports add the same cents the screen showed.
                 v3(QStringLiteral("PrecioSinIVA"), T::Decimal, QStringLiteral("Precio sin I.V.A.")),
                 v3(QStringLiteral("BrutoSinIVA"), T::Decimal, QStringLiteral("Bruto sin I.V.A.")),
                 v3(QStringLiteral("BrutoConIVA"), T::Decimal, QStringLiteral("Bruto con I.V.A.")),
                 v3(QStringLiteral("ImporteDto"), T::Decimal, QStringLiteral("Importe del descuento")),
                 v3(QStringLiteral("TotalConIVA"), T::Decimal, QStringLiteral("Total con I.V.A.")),
                 v3(QStringLiteral("BaseImponible"), T::Decimal, QStringLiteral("Base imponible")),
                 v3(QStringLiteral("CuotaIVA"), T::Decimal, QStringLiteral("Cuota de I.V.A.")),
                 v3(QStringLiteral("ImporteRetencion"), T::Decimal, QStringLiteral("Retención"))},
                QStringLiteral("Descripcion"), false);
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdAlbaran")}, V),
                 indiceDe(t.tabla, {QStringLiteral("IdArticulo")}, V)};
    return t;
}
} // namespace

QList<DescriptorTabla> tablasArticulos() {
    return {tiposArticulo(), familias(),  subfamilias(),  proveedores(),
            articulos(),     albaranes(), lineasAlbaran()};
}
