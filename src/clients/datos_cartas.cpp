#include "clients/datos_cartas.h"

#include "core/formatos.h"

#include <QStringList>

QString textoPoblacion(const QString& codigoPostal, const QString& poblacion, const QString& provincia) {
    QString texto = QStringList{codigoPostal.trimmed(), poblacion.trimmed()}.join(QLatin1Char(' ')).trimmed();
    const QString p = provincia.trimmed();
    if (p.isEmpty() || p.compare(poblacion.trimmed(), Qt::CaseInsensitive) == 0) return texto;
    return texto.isEmpty() ? p : texto + QStringLiteral(" (") + p + QLatin1Char(')');
}

CamposDocumento camposCliente(const ClienteCarta& c, const QDate& hoy) {
    QStringList telefonos;
    for (const QString& t : {c.Telefono1, c.Telefono2, c.Telefono3, c.Movil})
        if (!t.isEmpty() && !telefonos.contains(t)) telefonos << t;
    return {{QStringLiteral("NombreCliente"), c.Nombre},
            {QStringLiteral("DNICliente"), c.DNI},
            {QStringLiteral("DireccionCliente"), c.Direccion},
            {QStringLiteral("CodigoPostalCliente"), c.CodigoPostal},
            {QStringLiteral("LocalidadCliente"), c.Poblacion},
            {QStringLiteral("ProvinciaCliente"), c.Provincia},
            {QStringLiteral("PoblacionCliente"), textoPoblacion(c.CodigoPostal, c.Poblacion, c.Provincia)},
            {QStringLiteral("Telefono1Cliente"), c.Telefono1},
            {QStringLiteral("Telefono2Cliente"), c.Telefono2},
            {QStringLiteral("Telefono3Cliente"), c.Telefono3},
            {QStringLiteral("MovilCliente"), c.Movil},
            {QStringLiteral("TelefonosCliente"), telefonos.join(QStringLiteral(" / "))},
            {QStringLiteral("EMailCliente"), c.EMail},
            {QStringLiteral("Fecha"), formatoFecha(hoy)},
            {QStringLiteral("FechaTexto"), formatoFechaLarga(hoy)}};
}

DatosDocumento datosCartaCliente(const ClienteCarta& cliente, const QDate& hoy) {
    DatosDocumento d;
    d.campos = camposCliente(cliente, hoy);
    return d;
}

DatosDocumento datosCartaMascota(const MascotaCarta& m, const ClienteCarta& propietario, const QDate& hoy) {
    DatosDocumento d;
    d.campos = {{QStringLiteral("Mascota"), m.Nombre},
                {QStringLiteral("NumMascota"), QString::number(m.IdMascota)},
                {QStringLiteral("Especie"), m.Especie},
                {QStringLiteral("Raza"), m.Raza},
                {QStringLiteral("Sexo"), m.Sexo},
                {QStringLiteral("Capa"), m.Capa},
                {QStringLiteral("FechaNacimiento"), formatoFecha(m.FechaNacimiento)},
                {QStringLiteral("Chip"), m.Chip},
                {QStringLiteral("Cartilla"), m.Cartilla},
                {QStringLiteral("PlanSalud"), m.IdPlanSalud ? m.PlanSalud : QString()},
                {QStringLiteral("CaducidadPlan"), m.IdPlanSalud ? formatoFecha(m.CaducidadPlan) : QString()}};
    d.campos.append(camposCliente(propietario, hoy));
    return d;
}
