#include "documents/datos_clinica.h"

#include <QRegularExpression>

CamposDocumento camposClinica(Ajustes& ajustes) {
    const QList<QPair<QString, QString>> claves = {
        {QStringLiteral("NombreClinica"), claves::NOMBRE_CLINICA},
        {QStringLiteral("NIFClinica"), claves::NIF_CLINICA},
        {QStringLiteral("DireccionClinica"), claves::DIRECCION_CLINICA},
        {QStringLiteral("PoblacionClinica"), claves::POBLACION_CLINICA},
        {QStringLiteral("TelefonoClinica"), claves::TELEFONO_CLINICA},
        {QStringLiteral("EMailClinica"), claves::EMAIL_CLINICA}};
    CamposDocumento campos;
    for (const auto& [campo, clave] : claves)
        campos.append({campo, ajustes.leer(clave).trimmed()});
    static const QRegularExpression codigoPostal(QStringLiteral("^[0-9]+[\\s,-]*"));
    QString localidad = campos.at(3).second;
    campos.append({QStringLiteral("LocalidadClinica"), localidad.remove(codigoPostal).trimmed()});
    return campos;
}

void anyadirDatosClinica(Ajustes& ajustes, DatosDocumento& datos) {
    for (const auto& [campo, valor] : camposClinica(ajustes))
        datos.anyadirSiFalta(campo, valor);
}
