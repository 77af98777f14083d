// Clients, pets, breeds, staff, health plans, the special conditions of commercial files
// and health plans, and the register of changes of owner. Introduced with schema version 2.
#include "data/tablas.h"

namespace {
using T = TipoColumna;
constexpr int V = 2;

DescriptorColumna c(const QString& nombre, T tipo, const QString& etiqueta, int longitud = 0,
                    bool opcional = true) {
    return col(nombre, tipo, etiqueta, longitud, opcional, V);
}

const QStringList kTarifas = {QStringLiteral("TARIFA 1"), QStringLiteral("TARIFA 2"),
                              QStringLiteral("TARIFA 3")};

DescriptorTabla clientes() {
    DescriptorColumna lopd = colLista(
        QStringLiteral("LOPD"), QStringLiteral("Protección de datos"),
        {QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2")},
        {QStringLiteral("Sin informar"), QStringLiteral("Sí consiente"), QStringLiteral("No consiente")});
    lopd.desde = V;
    lopd.porDefecto = QStringLiteral("'0'");
    DescriptorColumna via = colLista(QStringLiteral("ViaComunicacion"), QStringLiteral("Vía de comunicación"),
                                     {QStringLiteral("Teléfono"), QStringLiteral("SMS"),
                                      QStringLiteral("E-Mail"), QStringLiteral("Correo postal")},
                                     {QStringLiteral("Teléfono"), QStringLiteral("SMS"),
                                      QStringLiteral("E-Mail"), QStringLiteral("Correo postal")});
    via.desde = V;
    DescriptorColumna tarifa =
        colLista(QStringLiteral("Tarifa"), QStringLiteral("Tarifa general"), kTarifas, kTarifas);
    tarifa.desde = V;
    DescriptorTabla t = tablaDe(
        V, QStringLiteral("Clientes"), QStringLiteral("Cliente"),
        {c(QStringLiteral("IdCliente"), T::Autonumerico, QStringLiteral("Nº Cliente"), 0, false),
         c(QStringLiteral("Nombre"), T::Texto, QStringLiteral("Nombre"), 100, false),
         c(QStringLiteral("DNI"), T::Texto, QStringLiteral("D.N.I."), 20),
         // The name in upper case without accents, filled on every write (normalizarBusqueda).
         c(QStringLiteral("NombreBusqueda"), T::Texto, QStringLiteral("Nombre para búsquedas"), 100),
         c(QStringLiteral("Direccion"), T::Texto, QStringLiteral("Dirección"), 100),
         c(QStringLiteral("Poblacion"), T::Texto, QStringLiteral("Población"), 60),
         c(QStringLiteral("CodigoPostal"), T::Texto, QStringLiteral("C. Postal"), 10),
         c(QStringLiteral("Provincia"), T::Texto, QStringLiteral("Provincia"), 60),
         c(QStringLiteral("Telefono1"), T::Texto, QStringLiteral("Teléfono 1"), 20),
         c(QStringLiteral("Telefono2"), T::Texto, QStringLiteral("Teléfono 2"), 20),
         c(QStringLiteral("Telefono3"), T::Texto, QStringLiteral("Teléfono 3"), 20),
         c(QStringLiteral("Fax"), T::Texto, QStringLiteral("Fax"), 20),
         c(QStringLiteral("EMail"), T::Texto, QStringLiteral("E-Mail"), 100),
         c(QStringLiteral("Facebook"), T::Texto, QStringLiteral("Facebook"), 100),
         c(QStringLiteral("Movil"), T::Texto, QStringLiteral("Móvil para SMS"), 20),
         c(QStringLiteral("FechaAlta"), T::Fecha, QStringLiteral("Fecha de alta")),
         c(QStringLiteral("FechaBaja"), T::Fecha, QStringLiteral("Fecha de baja")),
         c(QStringLiteral("IdTipoCliente"), T::Entero, QStringLiteral("Tipo de cliente")),
         c(QStringLiteral("CodigoIdioma"), T::Texto, QStringLiteral("Idioma"), 2),
         c(QStringLiteral("IdFormaContacto"), T::Entero, QStringLiteral("Forma de contacto")), via,
         c(QStringLiteral("Clinica"), T::Texto, QStringLiteral("Clínica"), 60),
         c(QStringLiteral("ImpedirDeuda"), T::Logico, QStringLiteral("Impedir deuda")),
         c(QStringLiteral("ExentoIVA"), T::Logico, QStringLiteral("Exento de I.V.A.")),
         c(QStringLiteral("EmpresaExtranjero"), T::Logico,
           QStringLiteral("Empresa con residencia en el extranjero")),
         lopd, c(QStringLiteral("Subcuenta"), T::Texto, QStringLiteral("Subcuenta contable"), 12),
         c(QStringLiteral("IBAN"), T::Texto, QStringLiteral("IBAN"), 34),
         c(QStringLiteral("BIC"), T::Texto, QStringLiteral("BIC"), 11),
         c(QStringLiteral("FechaMandato"), T::Fecha, QStringLiteral("Fecha del mandato")),
         c(QStringLiteral("Notas"), T::Memo, QStringLiteral("Notas")),
         c(QStringLiteral("Aviso"), T::Memo, QStringLiteral("Aviso")),
         c(QStringLiteral("Deuda"), T::Decimal, QStringLiteral("Deuda")),
         c(QStringLiteral("EntregadoCuenta"), T::Decimal, QStringLiteral("Entregado a cuenta")),
         c(QStringLiteral("DevolucionesPendientes"), T::Decimal, QStringLiteral("Devoluciones pendientes")),
         c(QStringLiteral("FechaUltimoCobro"), T::Fecha, QStringLiteral("Fecha del último cobro")),
         c(QStringLiteral("FraNombre"), T::Texto, QStringLiteral("Nombre (facturación)"), 100),
         c(QStringLiteral("FraDNI"), T::Texto, QStringLiteral("D.N.I. (facturación)"), 20),
         c(QStringLiteral("FraDireccion"), T::Texto, QStringLiteral("Dirección (facturación)"), 100),
         c(QStringLiteral("FraPoblacion"), T::Texto, QStringLiteral("Población (facturación)"), 60),
         c(QStringLiteral("FraCodigoPostal"), T::Texto, QStringLiteral("C. Postal (facturación)"), 10),
         c(QStringLiteral("FraProvincia"), T::Texto, QStringLiteral("Provincia (facturación)"), 60),
         c(QStringLiteral("FraTelefono1"), T::Texto, QStringLiteral("Teléfono 1 (facturación)"), 20),
         c(QStringLiteral("FraTelefono2"), T::Texto, QStringLiteral("Teléfono 2 (facturación)"), 20),
         c(QStringLiteral("FraMovil"), T::Texto, QStringLiteral("Móvil (facturación)"), 20),
         c(QStringLiteral("FraFax"), T::Texto, QStringLiteral("Fax (facturación)"), 20),
         c(QStringLiteral("FraEMail"), T::Texto, QStringLiteral("E-Mail (facturación)"), 100), tarifa,
         c(QStringLiteral("DtoGeneral"), T::Decimal, QStringLiteral("Descuento general")),
         c(QStringLiteral("IdTipoIVA"), T::Entero, QStringLiteral("I.V.A. a aplicar"))},
        QStringLiteral("Nombre"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("Nombre")}, V),
                 indiceDe(t.tabla, {QStringLiteral("DNI")}, V),
                 indiceDe(t.tabla, {QStringLiteral("Telefono1")}, V),
                 indiceDe(t.tabla, {QStringLiteral("Movil")}, V),
                 indiceDe(t.tabla, {QStringLiteral("CodigoPostal")}, V),
                 indiceDe(t.tabla, {QStringLiteral("NombreBusqueda")}, V),
                 indiceDe(t.tabla, {QStringLiteral("Telefono2")}, V),
                 indiceDe(t.tabla, {QStringLiteral("Telefono3")}, V)};
    return t;
}

DescriptorTabla mascotas() {
    DescriptorColumna sexo =
        colLista(QStringLiteral("Sexo"), QStringLiteral("Sexo"),
                 {QStringLiteral("M"), QStringLiteral("H"), QStringLiteral("MC"), QStringLiteral("HE")},
                 {QStringLiteral("Macho"), QStringLiteral("Hembra"), QStringLiteral("Macho castrado"),
                  QStringLiteral("Hembra esterilizada")});
    sexo.desde = V;
    DescriptorTabla t = tablaDe(
        V, QStringLiteral("Mascotas"), QStringLiteral("Mascota"),
        {c(QStringLiteral("IdMascota"), T::Autonumerico, QStringLiteral("Nº Mascota"), 0, false),
         c(QStringLiteral("IdCliente"), T::Entero, QStringLiteral("Propietario"), 0, false),
         c(QStringLiteral("Nombre"), T::Texto, QStringLiteral("Nombre"), 60, false),
         // The name in upper case without accents, filled on every write (normalizarBusqueda).
         c(QStringLiteral("NombreBusqueda"), T::Texto, QStringLiteral("Nombre para búsquedas"), 60),
         c(QStringLiteral("IdEspecie"), T::Entero, QStringLiteral("Especie")),
         c(QStringLiteral("IdRaza"), T::Entero, QStringLiteral("Raza")), sexo,
         c(QStringLiteral("IdCapa"), T::Entero, QStringLiteral("Capa")),
         c(QStringLiteral("IdPelo"), T::Entero, QStringLiteral("Pelo")),
         c(QStringLiteral("IdCaracter"), T::Entero, QStringLiteral("Carácter")),
         c(QStringLiteral("TipoMascota"), T::Texto, QStringLiteral("Tipo de mascota"), 30),
         c(QStringLiteral("IdEstado"), T::Entero, QStringLiteral("Estado")),
         c(QStringLiteral("IdMotivoBaja"), T::Entero, QStringLiteral("Motivo de baja")),
         c(QStringLiteral("IdVeterinario"), T::Entero, QStringLiteral("Veterinario habitual")),
         c(QStringLiteral("FechaNacimiento"), T::Fecha, QStringLiteral("Fecha de nacimiento")),
         c(QStringLiteral("FechaAlta"), T::Fecha, QStringLiteral("Fecha de alta")),
         c(QStringLiteral("FechaBaja"), T::Fecha, QStringLiteral("Fecha de baja")),
         c(QStringLiteral("FechaUltimaVisita"), T::Fecha, QStringLiteral("Última visita")),
         c(QStringLiteral("Baja"), T::Logico, QStringLiteral("Baja")),
         c(QStringLiteral("Chip"), T::Texto, QStringLiteral("Chip"), 15),
         c(QStringLiteral("Cartilla"), T::Texto, QStringLiteral("Nº Cartilla"), 20),
         c(QStringLiteral("DocumentoIdentidad"), T::Texto, QStringLiteral("Documento de identidad"), 20),
         c(QStringLiteral("IdCondicionCorporal"), T::Entero, QStringLiteral("Condición corporal")),
         c(QStringLiteral("Peso"), T::Decimal, QStringLiteral("Peso")),
         c(QStringLiteral("IdPlanSalud"), T::Entero, QStringLiteral("Plan de salud")),
         c(QStringLiteral("CaducidadPlan"), T::Fecha, QStringLiteral("Caducidad del plan")),
         c(QStringLiteral("NumHospitalizacion"), T::Entero, QStringLiteral("Hospitalización")),
         // Version 6: the cage of the current hospitalisation.
         col(QStringLiteral("Jaula"), T::Texto, QStringLiteral("Jaula"), 20, true, 6),
         c(QStringLiteral("Notas"), T::Memo, QStringLiteral("Notas")),
         c(QStringLiteral("Avisos"), T::Memo, QStringLiteral("Avisos"))},
        QStringLiteral("Nombre"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdCliente")}, V),
                 indiceDe(t.tabla, {QStringLiteral("Nombre")}, V),
                 indiceDe(t.tabla, {QStringLiteral("Chip")}, V),
                 indiceDe(t.tabla, {QStringLiteral("NombreBusqueda")}, V)};
    return t;
}

DescriptorTabla razas() {
    const DescriptorColumna activo = colActivo(V);
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("Razas"), QStringLiteral("Raza"),
                {c(QStringLiteral("IdRaza"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("IdEspecie"), T::Entero, QStringLiteral("Especie"), 0, false),
                 c(QStringLiteral("Descripcion"), T::Texto, QStringLiteral("Raza"), 60, false), activo},
                QStringLiteral("Descripcion"));
    t.parametro = true;
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdEspecie")}, V)};
    return t;
}

DescriptorTabla personal() {
    const DescriptorColumna activo = colActivo(V);
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("Personal"), QStringLiteral("Miembro del Personal"),
                {c(QStringLiteral("IdPersonal"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("Descripcion"), T::Texto, QStringLiteral("Nombre"), 100, false),
                 c(QStringLiteral("NumColegiado"), T::Texto, QStringLiteral("Nº de colegiado"), 20), activo},
                QStringLiteral("Descripcion"));
    t.parametro = true;
    return t;
}

DescriptorTabla planesSalud() {
    return tablaDe(V, QStringLiteral("PlanesSalud"), QStringLiteral("Plan de Salud"),
                   {c(QStringLiteral("IdPlanSalud"), T::Autonumerico, QStringLiteral("Nº Plan"), 0, false),
                    c(QStringLiteral("Nombre"), T::Texto, QStringLiteral("Nombre"), 100, false),
                    c(QStringLiteral("FechaAlta"), T::Fecha, QStringLiteral("Fecha de alta")),
                    c(QStringLiteral("FechaBaja"), T::Fecha, QStringLiteral("Fecha de baja")),
                    c(QStringLiteral("Notas"), T::Memo, QStringLiteral("Notas")),
                    c(QStringLiteral("Aviso"), T::Memo, QStringLiteral("Aviso"))},
                   QStringLiteral("Nombre"));
}

// A row of a client's commercial file (IdCliente set) or of a health plan (IdPlanSalud set).
DescriptorTabla condiciones() {
    DescriptorColumna tarifa =
        colLista(QStringLiteral("Tarifa"), QStringLiteral("Tarifa"), kTarifas, kTarifas);
    tarifa.desde = V;
    DescriptorTabla t =
        tablaDe(V, QStringLiteral("CondicionesEspeciales"), QStringLiteral("Condición especial"),
                {c(QStringLiteral("IdCondicion"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                 c(QStringLiteral("IdCliente"), T::Entero, QStringLiteral("Cliente")),
                 c(QStringLiteral("IdPlanSalud"), T::Entero, QStringLiteral("Plan de salud")),
                 c(QStringLiteral("IdArticulo"), T::Entero, QStringLiteral("Artículo")),
                 c(QStringLiteral("IdSeccion"), T::Entero, QStringLiteral("Sección")),
                 c(QStringLiteral("IdFamilia"), T::Entero, QStringLiteral("Familia")),
                 c(QStringLiteral("IdSubfamilia"), T::Entero, QStringLiteral("Subfamilia")),
                 c(QStringLiteral("Precio"), T::Decimal, QStringLiteral("Precio")), tarifa,
                 c(QStringLiteral("Descuento"), T::Decimal, QStringLiteral("Dto."))},
                QStringLiteral("IdCondicion"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdCliente")}, V),
                 indiceDe(t.tabla, {QStringLiteral("IdPlanSalud")}, V)};
    return t;
}

DescriptorTabla cambiosPropietario() {
    DescriptorTabla t = tablaDe(
        V, QStringLiteral("CambiosPropietario"), QStringLiteral("Cambio de Propietario"),
        {c(QStringLiteral("IdCambio"), T::Autonumerico, QStringLiteral("Código"), 0, false),
         c(QStringLiteral("Fecha"), T::Fecha, QStringLiteral("Fecha"), 0, false),
         c(QStringLiteral("IdMascota"), T::Entero, QStringLiteral("Mascota"), 0, false),
         c(QStringLiteral("IdClienteOrigen"), T::Entero, QStringLiteral("Propietario Origen"), 0, false),
         c(QStringLiteral("IdClienteDestino"), T::Entero, QStringLiteral("Nuevo Propietario"), 0, false),
         c(QStringLiteral("Usuario"), T::Texto, QStringLiteral("Usuario"), 20)},
        QStringLiteral("Fecha"));
    t.indices = {indiceDe(t.tabla, {QStringLiteral("IdMascota")}, V),
                 indiceDe(t.tabla, {QStringLiteral("Fecha")}, V)};
    return t;
}
} // namespace

QList<DescriptorTabla> tablasClientes() {
    return {clientes(), mascotas(), razas(), personal(), planesSalud(), condiciones(), cambiosPropietario()};
}
