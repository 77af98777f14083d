#include "app/menu_principal.h"

#include "app/parametros_menu.h"

namespace {
using P = Permiso;

ComandoMenu c(const char* nombre, const QString& texto, const char* menu, P permiso = P::Identificado,
              bool separador = false) {
    return {QString::fromLatin1(nombre), texto, QString::fromLatin1(menu), permiso, separador};
}

QList<ComandoMenu> construir() {
    QList<ComandoMenu> l = {
        c("mnuIdentificar", QStringLiteral("&Identificarse..."), "mnuSesion", P::Siempre),
        c("mnuDesidentificar", QStringLiteral("&Cerrar la sesión"), "mnuSesion", P::Siempre),
        c("mnuSalir", QStringLiteral("&Salir de Pramelvix"), "mnuSesion", P::Siempre, true),

        c("mnuAgendas", QStringLiteral("&Agendas y citas"), "mnuAgenda"),
        c("mnuMttoAgenda", QStringLiteral("&Mantenimiento de agendas"), "mnuAgenda"),
        c("mnuTurnos", QStringLiteral("&Turnos"), "mnuAgenda", P::Identificado, true),
        c("mnuMttoTurnos", QStringLiteral("Mantenimiento de t&urnos"), "mnuAgenda"),
        c("mnuSalaEspera", QStringLiteral("&Sala de espera"), "mnuAgenda", P::Identificado, true),
        c("mnuDocCitas", QStringLiteral("&Listado de citas"), "mnuAgenda", P::Identificado, true),
        c("mnuDocCitasPersonal", QStringLiteral("Listado de citas por &personal"), "mnuAgenda"),

        c("mnuMttoCliente", QStringLiteral("&Clientes"), "mnuMantenimiento"),
        c("mnuMttoMascota", QStringLiteral("&Mascotas"), "mnuMantenimiento"),
        c("mnuResumenCli", QStringLiteral("&Resumen del cliente"), "mnuMantenimiento"),
        c("mnuCambioPropietario", QStringLiteral("Cam&bio de propietario"), "mnuMantenimiento"),
        c("mnuRegistroCambioPropietario", QStringLiteral("Registro de cambios de propietario"),
          "mnuMantenimiento"),
        c("mnuVisita", QStringLiteral("&Visitas"), "mnuMantenimiento", P::Identificado, true),
        c("mnuHospitalizadas", QStringLiteral("Mascotas &hospitalizadas"), "mnuMantenimiento"),
        c("mnuHistorialesDeudas", QStringLiteral("&Historiales clínicos"), "mnuMantenimiento"),
        c("mnuResLaboratorio", QStringLiteral("Compras y ventas por &laboratorio"), "mnuMantenimiento"),
        c("mnuMttoPlanSalud", QStringLiteral("&Planes de salud"), "mnuMantenimiento"),
        c("mnuMttoArticulo", QStringLiteral("&Artículos y servicios"), "mnuMantenimiento", P::Identificado,
          true),
        c("mnuMvtosArticulo", QStringLiteral("M&ovimientos de artículos"), "mnuMantenimiento"),
        c("mnuInventarios", QStringLiteral("&Inventarios"), "mnuMantenimiento"),
        c("mnuCambioPrecios", QStringLiteral("Cambio de &precios"), "mnuMantenimiento"),
        c("mnuCambioIVA", QStringLiteral("Cambio de I.V.&A."), "mnuMantenimiento"),

        c("mnuAlbaranes", QStringLiteral("&Albaranes"), "mnuVentas"),
        c("mnuDevolAlb", QStringLiteral("&Devoluciones de albaranes"), "mnuVentas"),
        c("mnuPresupuestos", QStringLiteral("&Presupuestos"), "mnuVentas"),
        c("mnuGenerarFacturas", QStringLiteral("&Generar facturas"), "mnuVentas", P::Identificado, true),
        c("mnuGenerarFacturasFechas", QStringLiteral("Generar facturas entre &fechas"), "mnuVentas"),
        c("mnuGenerarAbonos", QStringLiteral("Generar a&bonos"), "mnuVentas"),
        c("mnuListarFacturas", QStringLiteral("&Listado de facturas"), "mnuVentas"),
        c("mnuCambioSerie", QStringLiteral("Cambio de &serie"), "mnuVentas"),
        c("mnuSeriesFacturacion", QStringLiteral("Series de &facturación"), "mnuVentas"),

        c("mnuCobros", QStringLiteral("&Cobros"), "mnuCaja"),
        c("mnuEntregasCta", QStringLiteral("&Entregas a cuenta"), "mnuCaja"),
        c("mnuEntrada", QStringLiteral("E&ntrada de caja"), "mnuCaja", P::Identificado, true),
        c("mnuSalida", QStringLiteral("&Salida de caja"), "mnuCaja"),
        c("mnuMvtosCaja", QStringLiteral("&Movimientos de caja"), "mnuCaja"),
        c("mnuCierreCaja", QStringLiteral("C&ierre de caja"), "mnuCaja", P::Administrador, true),
        c("mnuCierresAnt", QStringLiteral("Cierres &anteriores"), "mnuCaja", P::Administrador),
        c("mnuCajaEntreFechas", QStringLiteral("Caja entre &fechas"), "mnuCaja", P::Administrador),

        c("mnuMttoProveedor", QStringLiteral("&Proveedores"), "mnuCompras"),
        c("mnuMttoCompras", QStringLiteral("&Compras"), "mnuCompras"),
        c("mnuGenerarFraCompra", QStringLiteral("&Generar facturas de compra"), "mnuCompras"),
        c("mnuListarFrasCompra", QStringLiteral("&Listado de facturas de compra"), "mnuCompras"),
        c("mnuPagos", QStringLiteral("P&agos"), "mnuCompras"),

        c("mnuMttoPersonal", QStringLiteral("&Personal"), "mnuPersonal"),
        c("mnuMttoCosteSalarial", QStringLiteral("&Costes salariales"), "mnuPersonal", P::Administrador),
        c("mnuMarcaje", QStringLiteral("&Marcaje"), "mnuPersonal", P::Identificado, true),
        c("mnuListMarcajes", QStringLiteral("&Listado de marcajes"), "mnuPersonal"),

        c("mnuListRecordatorios", QStringLiteral("&Recordatorios"), "mnuComunicaciones"),
        c("mnuRecordatoriosSMS", QStringLiteral("Recordatorios por &SMS"), "mnuComunicaciones"),
        c("mnuRecordatoriosEMail", QStringLiteral("Recordatorios por &correo electrónico"),
          "mnuComunicaciones"),
        c("mnuRecordatoriosPostal", QStringLiteral("Recordatorios por correo &postal"), "mnuComunicaciones"),
        c("mnuSMS", QStringLiteral("Enviar S&MS"), "mnuComunicaciones", P::Identificado, true),
        c("mnuEMail", QStringLiteral("Enviar correo &electrónico"), "mnuComunicaciones"),
        c("mnuMttoSMS", QStringLiteral("SMS en&viados"), "mnuComunicaciones"),
        c("mnuMttoEMails", QStringLiteral("Correos en&viados"), "mnuComunicaciones"),
        c("mnuEnvioMasivo", QStringLiteral("Envío &masivo"), "mnuComunicaciones"),
        c("mnuConfSMS", QStringLiteral("Configuración de S&MS"), "mnuComunicaciones", P::Identificado, true),
        c("mnuConfEMails", QStringLiteral("Configuración del c&orreo"), "mnuComunicaciones"),

        c("mnuMttoPlantillas", QStringLiteral("&Plantillas"), "mnuDocumentos"),
        c("mnuKeyWord", QStringLiteral("Palabras &clave"), "mnuDocumentos"),
        c("mnuDocCliListados", QStringLiteral("Listados de c&lientes"), "mnuDocumentos", P::Identificado,
          true),
        c("mnuDocMasListados", QStringLiteral("Listados de &mascotas"), "mnuDocumentos"),
        c("mnuDocHistList", QStringLiteral("Listados de &historiales"), "mnuDocumentos"),
        c("mnuDocArtListados", QStringLiteral("Listados de &artículos"), "mnuDocumentos"),
        c("mnuDocFraListados", QStringLiteral("Listados de &facturas"), "mnuDocumentos"),
        c("mnuDocAboListados", QStringLiteral("Listados de a&bonos"), "mnuDocumentos"),
        c("mnuDocComListados", QStringLiteral("Listados de c&ompras"), "mnuDocumentos"),

        c("mnuCobroCSB19", QStringLiteral("&Remesas de recibos"), "mnuContabilidad"),
        c("mnuConfCSB19", QStringLiteral("&Configuración de remesas"), "mnuContabilidad"),
        c("mnuRegistroIVA", QStringLiteral("Registro de &I.V.A."), "mnuContabilidad", P::Contabilidad, true),
        c("mnuExportContab", QStringLiteral("&Exportar a contabilidad"), "mnuContabilidad", P::Contabilidad),
        c("mnuDelContab", QStringLiteral("&Borrar la contabilidad exportada"), "mnuContabilidad",
          P::Contabilidad),

        c("mnuInfGestion", QStringLiteral("&Informes de gestión"), "mnuInformes", P::Administrador),
        c("mnuResVentas", QStringLiteral("&Resumen de ventas"), "mnuInformes", P::Administrador),
        c("mnuResVentasSeccion", QStringLiteral("Resumen de ventas por &sección"), "mnuInformes",
          P::Administrador),
        c("mnuDesgloseVentas", QStringLiteral("&Desglose de ventas"), "mnuInformes", P::Administrador),
    };
    for (const auto& p : entradasMenuParametros())
        l.append({p.accion, p.texto, QStringLiteral("mnuParametros"), P::Identificado, false});
    l += {
        c("mnuDatosEmpresa", QStringLiteral("&Datos de la empresa"), "mnuHerramientas", P::Administrador),
        c("mnuConfPuesto", QStringLiteral("Configuración del &puesto"), "mnuHerramientas"),
        c("mnuConfBD", QStringLiteral("Configuración de la &base de datos"), "mnuHerramientas",
          P::Administrador),
        c("mnuPuestos", QStringLiteral("Puestos &conectados"), "mnuHerramientas", P::Administrador, true),
        c("mnuBloqueos", QStringLiteral("&Bloqueos"), "mnuHerramientas", P::Administrador),
        c("mnuAdministrar", QStringLiteral("&Usuarios"), "mnuHerramientas", P::Administrador),
        c("mnuCompactarBD", QStringLiteral("Co&mpactar la base de datos"), "mnuHerramientas",
          P::Administrador, true),
        c("mnuBackup", QStringLiteral("Copia de &seguridad"), "mnuHerramientas", P::Administrador),
        c("mnuBackupSinGD", QStringLiteral("Copia de seguridad sin &documentos"), "mnuHerramientas",
          P::Administrador),
        c("mnuImportarDatos", QStringLiteral("&Importar datos"), "mnuHerramientas", P::Administrador),
        c("mnuChatear", QStringLiteral("C&onversar entre usuarios"), "mnuHerramientas", P::Identificado,
          true),
        c("mnuBloquearEquipo", QStringLiteral("B&loquear el equipo"), "mnuHerramientas"),
        c("mnuCalculadora", QStringLiteral("C&alculadora"), "mnuHerramientas"),
        c("mnuColores", QStringLiteral("Co&lores"), "mnuHerramientas", P::Identificado, true),
        c("mnuPonerFondo", QStringLiteral("Poner &fondo"), "mnuHerramientas"),
        c("mnuQuitarFondo", QStringLiteral("&Quitar fondo"), "mnuHerramientas"),

        c("mnuCascada", QStringLiteral("En &cascada"), "mnuVentanas", P::Siempre),
        c("mnuMosaico", QStringLiteral("En &mosaico"), "mnuVentanas", P::Siempre),
        c("mnuOrganizar", QStringLiteral("&Organizar iconos"), "mnuVentanas", P::Siempre),
    };
    return l;
}
} // namespace

const QList<MenuPrincipal>& menusPrincipales() {
    static const QList<MenuPrincipal> m = {
        {QStringLiteral("mnuSesion"), QStringLiteral("&Pramelvix"), P::Siempre},
        {QStringLiteral("mnuAgenda"), QStringLiteral("&Agenda"), P::Identificado},
        {QStringLiteral("mnuMantenimiento"), QStringLiteral("&Mantenimiento"), P::Identificado},
        {QStringLiteral("mnuVentas"), QStringLiteral("&Ventas"), P::Identificado},
        {QStringLiteral("mnuCaja"), QStringLiteral("&Caja"), P::Identificado},
        {QStringLiteral("mnuCompras"), QStringLiteral("C&ompras"), P::Identificado},
        {QStringLiteral("mnuPersonal"), QStringLiteral("P&ersonal"), P::Identificado},
        {QStringLiteral("mnuComunicaciones"), QStringLiteral("Comu&nicaciones"), P::Identificado},
        {QStringLiteral("mnuDocumentos"), QStringLiteral("&Documentos"), P::Identificado},
        {QStringLiteral("mnuContabilidad"), QStringLiteral("Con&tabilidad"), P::Identificado},
        {QStringLiteral("mnuInformes"), QStringLiteral("&Informes"), P::Administrador},
        {QStringLiteral("mnuParametros"), QStringLiteral("Pa&rámetros"), P::Identificado},
        {QStringLiteral("mnuHerramientas"), QStringLiteral("&Herramientas"), P::Identificado},
        {QStringLiteral("mnuVentanas"), QStringLiteral("Ve&ntanas"), P::Identificado},
    };
    return m;
}

const QList<ComandoMenu>& comandosMenu() {
    static const QList<ComandoMenu> l = construir();
    return l;
}

bool comandoVisible(Permiso permiso, bool identificado, bool administrador,
                    bool contabilidadSoloAdministradores) {
    switch (permiso) {
    case Permiso::Siempre:
        return true;
    case Permiso::Identificado:
        return identificado;
    case Permiso::Administrador:
        return identificado && administrador;
    case Permiso::Contabilidad:
        return identificado && (administrador || !contabilidadSoloAdministradores);
    }
    return false;
}
