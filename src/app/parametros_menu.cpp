#include "app/parametros_menu.h"

const QList<EntradaMenuParametro>& entradasMenuParametros() {
    static const QList<EntradaMenuParametro> entradas = {
        {QStringLiteral("mnuTipoCliente"), QStringLiteral("TiposCliente"),
         QStringLiteral("Tipos de Cliente")},
        {QStringLiteral("mnuTipoMascota"), QStringLiteral("Especies"), QStringLiteral("Especies")},
        {QStringLiteral("mnuTipoVisit"), QStringLiteral("TiposVisita"), QStringLiteral("Tipos de Visita")},
        {QStringLiteral("mnuTipoIVA"), QStringLiteral("TiposIVA"), QStringLiteral("Tipos de I.V.A.")},
        {QStringLiteral("mnuTipoRE"), QStringLiteral("TiposRE"),
         QStringLiteral("Tipos de Recargo de Equivalencia")},
        {QStringLiteral("mnuFormasPago"), QStringLiteral("FormasPago"), QStringLiteral("Formas de Pago")},
        {QStringLiteral("mnuFormasContacto"), QStringLiteral("FormasContacto"),
         QStringLiteral("Formas de Contacto")},
        {QStringLiteral("mnuPoblacion"), QStringLiteral("Poblaciones"), QStringLiteral("Poblaciones")},
        {QStringLiteral("mnuProvincia"), QStringLiteral("Provincias"), QStringLiteral("Provincias")},
        {QStringLiteral("mnuCambioCP"), QStringLiteral("CodigosPostales"),
         QStringLiteral("Códigos Postales")},
        {QStringLiteral("mnuPelo"), QStringLiteral("Pelos"), QStringLiteral("Pelos")},
        {QStringLiteral("mnuCapa"), QStringLiteral("Capas"), QStringLiteral("Capas")},
        {QStringLiteral("mnuCaracter"), QStringLiteral("Caracteres"), QStringLiteral("Caracteres")},
        {QStringLiteral("mnuCondCorporal"), QStringLiteral("CondicionesCorporales"),
         QStringLiteral("Condiciones Corporales")},
        {QStringLiteral("mnuDiagnosticos"), QStringLiteral("Diagnosticos"), QStringLiteral("Diagnósticos")},
        {QStringLiteral("mnuGruposSintomas"), QStringLiteral("GruposSintomas"),
         QStringLiteral("Grupos de Síntomas")},
        {QStringLiteral("mnuExploraciones"), QStringLiteral("Exploraciones"),
         QStringLiteral("Exploraciones")},
        {QStringLiteral("mnuAnaliticas"), QStringLiteral("Analiticas"), QStringLiteral("Analíticas")},
        {QStringLiteral("mnuLaboratorios"), QStringLiteral("Laboratorios"), QStringLiteral("Laboratorios")},
        {QStringLiteral("mnuMedicamentos"), QStringLiteral("Medicamentos"), QStringLiteral("Medicamentos")},
        {QStringLiteral("mnuEspecialidades"), QStringLiteral("Especialidades"),
         QStringLiteral("Especialidades")},
        {QStringLiteral("mnuEstados"), QStringLiteral("Estados"), QStringLiteral("Estados")},
        {QStringLiteral("mnuFormalidad"), QStringLiteral("Formalidades"), QStringLiteral("Formalidades")},
        {QStringLiteral("mnuMotivos"), QStringLiteral("Motivos"), QStringLiteral("Motivos")},
        {QStringLiteral("mnuMotivosBaja"), QStringLiteral("MotivosBaja"), QStringLiteral("Motivos de Baja")},
        {QStringLiteral("mnuSecciones"), QStringLiteral("Secciones"), QStringLiteral("Secciones")},
        // The rest of the articles' classification, kept in the same way.
        {QStringLiteral("mnuFamilias"), QStringLiteral("Familias"), QStringLiteral("Familias de artículos")},
        {QStringLiteral("mnuSubfamilias"), QStringLiteral("Subfamilias"),
         QStringLiteral("Subfamilias de artículos")},
        {QStringLiteral("mnuTiposArticulo"), QStringLiteral("TiposArticulo"),
         QStringLiteral("Tipos de Artículo")},
        {QStringLiteral("mnuSeccVtasServ"), QStringLiteral("SeccionesVentasServicios"),
         QStringLiteral("Secciones de Ventas y Servicios")},
        {QStringLiteral("mnuSeccMedCons"), QStringLiteral("SeccionesMedicamentosConsumibles"),
         QStringLiteral("Secciones de Medicamentos y Consumibles")},
        {QStringLiteral("mnuIdioma"), QStringLiteral("Idiomas"), QStringLiteral("Idiomas")},
    };
    return entradas;
}

const EntradaMenuParametro* entradaMenuParametro(const QString& accion) {
    for (const auto& e : entradasMenuParametros())
        if (e.accion == accion) return &e;
    return nullptr;
}
