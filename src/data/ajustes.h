#pragma once
// Global settings of the installation: key/value texts in the database, shared by all
// workstations. A missing setting reads as an empty text; each caller gives its own
// default for that case (ajusteConDefecto uses the default known for the key).
#include "data/database.h"

#include <QList>
#include <QString>

namespace claves {
inline const QString MULTIPUESTO = QStringLiteral("MULTIPUESTO");
inline const QString VERSION_REQUISITO = QStringLiteral("VERSION REQUISITO");
inline const QString VERSION_INFORMADA = QStringLiteral("VERSION INFORMADA");
inline const QString PUESTO_SERVIDOR = QStringLiteral("PUESTO SERVIDOR");
inline const QString TIPOINSTALACION = QStringLiteral("TIPOINSTALACION");
inline const QString DIAS_COMPACTACION = QStringLiteral("DIAS COMPACTACION");
inline const QString FECHA_COMPACTACION = QStringLiteral("FECHA COMPACTACION");
inline const QString CONTAB_SOLO_ADMINISTRADORES = QStringLiteral("CONTAB. SOLO PARA ADMINISTRADORES");
inline const QString ULT_BORRADO_CONTAB = QStringLiteral("ULT. BORRADO CONTAB");
inline const QString CIERRES_DE_CAJA = QStringLiteral("CIERRES DE CAJA");
inline const QString PUERTO_UDP_CHAT = QStringLiteral("PUERTO UDP CHAT");
inline const QString ESPERA_ENTRE_SMS = QStringLiteral("ESPERA ENTRE SMS");
inline const QString EMAIL_TIPO_CONF = QStringLiteral("EMAIL TIPO CONF.");
inline const QString JAULAS = QStringLiteral("JAULAS");
inline const QString IDX_PLT = QStringLiteral("IDX_PLT");
inline const QString NIF_PRESENT = QStringLiteral("NIF PRESENT.");
inline const QString NOM_PRESENT = QStringLiteral("NOM. PRESENT.");
inline const QString SUF_PRESENT = QStringLiteral("SUF. PRESENT.");
inline const QString ENT_PRESENT = QStringLiteral("ENT. PRESENT.");
inline const QString OFI_PRESENT = QStringLiteral("OFI. PRESENT.");
inline const QString NIF_ORDENANTE = QStringLiteral("NIF ORDENANTE");
inline const QString NOM_ORDENANTE = QStringLiteral("NOM. ORDENANTE");
inline const QString SUF_ORDENANTE = QStringLiteral("SUF. ORDENANTE");
inline const QString CCC_ORDENANTE = QStringLiteral("CCC ORDENANTE");
inline const QString BIC_ORDENANTE = QStringLiteral("BIC ORDENANTE");
// The clinic's own data, printed on its documents (empty until the clinic fills it).
inline const QString NOMBRE_CLINICA = QStringLiteral("NOMBRE CLINICA");
inline const QString NIF_CLINICA = QStringLiteral("NIF CLINICA");
inline const QString DIRECCION_CLINICA = QStringLiteral("DIRECCION CLINICA");
inline const QString POBLACION_CLINICA = QStringLiteral("POBLACION CLINICA");
inline const QString TELEFONO_CLINICA = QStringLiteral("TELEFONO CLINICA");
inline const QString EMAIL_CLINICA = QStringLiteral("EMAIL CLINICA");
} // namespace claves

struct AjusteConocido {
    QString clave;
    QString porDefecto;  // the value a missing setting stands for
    QString descripcion; // what it means, for the administrator
};

// Every key the program knows, with its default.
const QList<AjusteConocido>& ajustesConocidos();
// The default of a known key; empty for an unknown one.
QString ajustePorDefecto(const QString& clave);

class Ajustes {
public:
    explicit Ajustes(Database& db) : db_(db) {}

    // The stored text, or an empty text when the key is missing.
    QString leer(const QString& clave);
    // The stored text, or the key's known default when missing or empty.
    QString leerConDefecto(const QString& clave);
    bool existe(const QString& clave);
    void escribir(const QString& clave, const QString& valor);
    void borrar(const QString& clave);
    // Writes the default of every known key that is missing (new installations).
    void completarPorDefecto();

private:
    Database& db_;
};
