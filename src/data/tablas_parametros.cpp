// The parameter tables: small lists of values that the clinic keeps through the generic list
// editor (or the tree editor, for Diagnosticos and GruposSintomas). Every table has its main
// text in the column Descripcion, mandatory. Keys are whole numbers handed out by the database,
// except where the clinic types a well-known code (province codes, language codes).
#include "data/tablas.h"

namespace {
using T = TipoColumna;

const QStringList kSiNoInterno = {QStringLiteral("S"), QStringLiteral("N")};
const QStringList kSiNoExterno = {QStringLiteral("Sí"), QStringLiteral("No")};

DescriptorColumna id(const QString& nombre) {
    return col(nombre, T::Autonumerico, QStringLiteral("Código"), 0, false);
}

DescriptorColumna descripcion(int longitud, const QString& etiqueta = QStringLiteral("Descripción")) {
    return col(QStringLiteral("Descripcion"), T::Texto, etiqueta, longitud, false);
}

DescriptorColumna activo() {
    return colActivo();
}

DescriptorColumna porcentaje() {
    return col(QStringLiteral("Porcentaje"), T::Decimal, QStringLiteral("Porcentaje"), 0, false);
}

DescriptorTabla tabla(const QString& nombre, const QString& desc, const QList<DescriptorColumna>& columnas) {
    return tablaDe(1, nombre, desc, columnas, QStringLiteral("Descripcion"), true);
}

// A list with only a key and a description.
DescriptorTabla simple(const QString& nombre, const QString& desc, const QString& clave, int longitud = 40,
                       const QString& etiqueta = QStringLiteral("Descripción")) {
    return tabla(nombre, desc, {id(clave), descripcion(longitud, etiqueta)});
}

// A tree: every record may hang from another of the same table through IdPadre.
DescriptorTabla arbol(const QString& nombre, const QString& desc, const QString& clave,
                      const QString& etiqueta) {
    DescriptorTabla t =
        tabla(nombre, desc,
              {id(clave), col(QStringLiteral("IdPadre"), T::Entero, QStringLiteral("Depende de")),
               descripcion(100, etiqueta)});
    t.columnaPadre = QStringLiteral("IdPadre");
    t.indices = {
        {QStringLiteral("IX_") + nombre + QStringLiteral("_IdPadre"), {QStringLiteral("IdPadre")}, false, 1}};
    return t;
}

QList<DescriptorTabla> construir() {
    QList<DescriptorTabla> l;
    l << tabla(QStringLiteral("TiposCliente"), QStringLiteral("Tipo de Cliente"),
               {id(QStringLiteral("IdTipoCliente")), descripcion(40), activo()});
    l << tabla(QStringLiteral("Especies"), QStringLiteral("Especie"),
               {id(QStringLiteral("IdEspecie")), descripcion(40, QStringLiteral("Especie")), activo()});
    l << tabla(QStringLiteral("TiposVisita"), QStringLiteral("Tipo de Visita"),
               {id(QStringLiteral("IdTipoVisita")), descripcion(50),
                col(QStringLiteral("Duracion"), T::Entero, QStringLiteral("Duración (minutos)")), activo()});
    l << tabla(QStringLiteral("TiposIVA"), QStringLiteral("Tipo de I.V.A."),
               {id(QStringLiteral("IdTipoIVA")), descripcion(40), porcentaje(), activo()});
    l << tabla(QStringLiteral("TiposRE"), QStringLiteral("Tipo de Recargo de Equivalencia"),
               {id(QStringLiteral("IdTipoRE")), descripcion(40), porcentaje(), activo()});

    DescriptorColumna declarable = colLista(QStringLiteral("Declarable"), QStringLiteral("Declarable"),
                                            {QStringLiteral("1"), QStringLiteral("0")}, kSiNoExterno, false);
    declarable.porDefecto = QStringLiteral("'1'");
    l << tabla(QStringLiteral("FormasPago"), QStringLiteral("Forma de Pago"),
               {id(QStringLiteral("IdFormaPago")), descripcion(40), declarable, activo()});
    l << simple(QStringLiteral("FormasContacto"), QStringLiteral("Forma de Contacto"),
                QStringLiteral("IdFormaContacto"));

    l << tabla(QStringLiteral("Poblaciones"), QStringLiteral("Población"),
               {id(QStringLiteral("IdPoblacion")), descripcion(60, QStringLiteral("Población")),
                col(QStringLiteral("CodigoPostal"), T::Texto, QStringLiteral("Código postal"), 5),
                col(QStringLiteral("Provincia"), T::Texto, QStringLiteral("Provincia"), 40)});
    l << tabla(QStringLiteral("Provincias"), QStringLiteral("Provincia"),
               {col(QStringLiteral("CodigoProvincia"), T::Texto, QStringLiteral("Código"), 2, false),
                descripcion(40, QStringLiteral("Provincia"))});
    DescriptorTabla cp =
        tabla(QStringLiteral("CodigosPostales"), QStringLiteral("Código Postal"),
              {id(QStringLiteral("IdCodigoPostal")),
               col(QStringLiteral("CodigoPostal"), T::Texto, QStringLiteral("Código postal"), 5, false),
               descripcion(60, QStringLiteral("Población")),
               col(QStringLiteral("Provincia"), T::Texto, QStringLiteral("Provincia"), 40)});
    cp.indices = {
        {QStringLiteral("IX_CodigosPostales_CodigoPostal"), {QStringLiteral("CodigoPostal")}, false, 1}};
    l << cp;

    l << simple(QStringLiteral("Pelos"), QStringLiteral("Pelo"), QStringLiteral("IdPelo"), 40,
                QStringLiteral("Pelo"));
    l << simple(QStringLiteral("Capas"), QStringLiteral("Capa"), QStringLiteral("IdCapa"), 40,
                QStringLiteral("Capa"));
    l << simple(QStringLiteral("Caracteres"), QStringLiteral("Carácter"), QStringLiteral("IdCaracter"), 40,
                QStringLiteral("Carácter"));
    l << tabla(QStringLiteral("CondicionesCorporales"), QStringLiteral("Condición Corporal"),
               {id(QStringLiteral("IdCondicionCorporal")), descripcion(40),
                col(QStringLiteral("Grado"), T::Entero, QStringLiteral("Grado (1 a 9)"))});

    l << arbol(QStringLiteral("Diagnosticos"), QStringLiteral("Diagnóstico"), QStringLiteral("IdDiagnostico"),
               QStringLiteral("Diagnóstico"));
    l << arbol(QStringLiteral("GruposSintomas"), QStringLiteral("Grupo de Síntomas"),
               QStringLiteral("IdGrupoSintomas"), QStringLiteral("Grupo o síntoma"));

    l << simple(QStringLiteral("Exploraciones"), QStringLiteral("Exploración"),
                QStringLiteral("IdExploracion"), 60);
    l << tabla(QStringLiteral("Analiticas"), QStringLiteral("Analítica"),
               {id(QStringLiteral("IdAnalitica")), descripcion(60),
                // Version 6: how results are grouped and read.
                col(QStringLiteral("Grupo"), T::Texto, QStringLiteral("Grupo"), 40, true, 6),
                col(QStringLiteral("ValorNormal"), T::Texto, QStringLiteral("Valor normal"), 40, true, 6),
                col(QStringLiteral("Unidades"), T::Texto, QStringLiteral("Unidades"), 20, true, 6), activo()});
    l << tabla(QStringLiteral("Laboratorios"), QStringLiteral("Laboratorio"),
               {id(QStringLiteral("IdLaboratorio")), descripcion(60, QStringLiteral("Nombre")),
                col(QStringLiteral("Telefono"), T::Texto, QStringLiteral("Teléfono"), 20),
                col(QStringLiteral("Email"), T::Texto, QStringLiteral("Correo electrónico"), 100), activo()});
    l << tabla(QStringLiteral("Medicamentos"), QStringLiteral("Medicamento"),
               {id(QStringLiteral("IdMedicamento")), descripcion(100, QStringLiteral("Medicamento")),
                col(QStringLiteral("PrincipioActivo"), T::Texto, QStringLiteral("Principio activo"), 100),
                activo()});
    l << tabla(QStringLiteral("Especialidades"), QStringLiteral("Especialidad"),
               {id(QStringLiteral("IdEspecialidad")), descripcion(60, QStringLiteral("Especialidad")),
                col(QStringLiteral("Protocolo"), T::Memo, QStringLiteral("Protocolo"))});
    l << simple(QStringLiteral("Estados"), QStringLiteral("Estado"), QStringLiteral("IdEstado"), 40,
                QStringLiteral("Estado"));
    l << simple(QStringLiteral("Formalidades"), QStringLiteral("Formalidad"), QStringLiteral("IdFormalidad"),
                60);
    l << tabla(QStringLiteral("Motivos"), QStringLiteral("Motivo"),
               {id(QStringLiteral("IdMotivo")), descripcion(60, QStringLiteral("Motivo")), activo()});
    l << simple(QStringLiteral("MotivosBaja"), QStringLiteral("Motivo de Baja"),
                QStringLiteral("IdMotivoBaja"), 60, QStringLiteral("Motivo"));
    DescriptorColumna serieSeccion =
        col(QStringLiteral("Serie"), T::Texto, QStringLiteral("Serie de facturación"), 10);
    serieSeccion.desde = 2;
    l << tabla(QStringLiteral("Secciones"), QStringLiteral("Sección"),
               {id(QStringLiteral("IdSeccion")), descripcion(40, QStringLiteral("Sección")), serieSeccion});
    l << simple(QStringLiteral("SeccionesVentasServicios"), QStringLiteral("Sección de Ventas y Servicios"),
                QStringLiteral("IdSeccionVentasServicios"), 40, QStringLiteral("Sección"));
    l << simple(QStringLiteral("SeccionesMedicamentosConsumibles"),
                QStringLiteral("Sección de Medicamentos y Consumibles"),
                QStringLiteral("IdSeccionMedicamentosConsumibles"), 40, QStringLiteral("Sección"));
    l << tabla(QStringLiteral("Idiomas"), QStringLiteral("Idioma"),
               {col(QStringLiteral("CodigoIdioma"), T::Texto, QStringLiteral("Código"), 2, false),
                descripcion(40, QStringLiteral("Idioma"))});
    return l;
}
} // namespace

QList<DescriptorTabla> tablasParametros() {
    return construir();
}
