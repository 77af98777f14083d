#pragma once
// The database settings screen ("Configuración de la Base de Datos"): the global settings an
// administrator of the clinic changes, kept in the settings store and shared by every
// workstation. The fields hold texts keyed by the setting's key; the yes/no setting
// "CONTAB. SOLO PARA ADMINISTRADORES" holds "S" or "N". MULTIPUESTO is only shown.
#include "app/entorno.h"

#include <QHash>
#include <QStringList>

inline const QString kTituloConfBd = QStringLiteral("Configuración de la Base de Datos");

// "AUTOCOMPACTACIÓN ACTIVADA CADA " + N + " DÍAS" for a whole number of days above 0;
// "AUTOCOMPACTACIÓN DESACTIVADA" for a missing, empty, zero or not numeric value.
QString textoAutocompactacion(const QString& diasCompactacion);
// "CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES" for "S", else
// "CONTABILIDAD VISIBLE PARA TODOS LOS USUARIOS".
QString textoContabilidad(const QString& contabSoloAdministradores);

struct CampoConfBd {
    QString clave;    // the setting's key
    QString etiqueta; // the label on the screen
    int longitud;     // most characters that may be typed
};

class ConfBdForm {
public:
    explicit ConfBdForm(Entorno& entorno) : e_(entorno) {}

    QString titulo() const { return kTituloConfBd; }
    // The editable settings, in screen order (the order of the checks on saving).
    static const QList<CampoConfBd>& campos();
    static const CampoConfBd* campo(const QString& clave);
    // The choices of "EMAIL TIPO CONF.".
    static QStringList tiposCorreo();

    // Reads the settings; a missing one shows its known default. False when the database
    // failed (the message is shown).
    bool cargar();
    QString valor(const QString& clave) const { return valores_.value(clave); }
    void setValor(const QString& clave, const QString& texto);
    // MULTIPUESTO as stored ("SI"/"NO"), read-only here.
    const QString& multipuesto() const { return multipuesto_; }

    // The two status texts, for the values now in the fields.
    QString textoAutocompactacion() const;
    QString textoContabilidad() const;

    // Checks every field in screen order and writes the settings that changed, in one
    // transaction. On a refusal one message is shown, foco names the field and nothing is written.
    bool guardar();
    const QString& foco() const { return foco_; }

private:
    bool rechazar(const QString& titulo, const QString& texto, const QString& clave);
    // The value to store, or a refusal (with its message shown).
    bool validar(QHash<QString, QString>& aGuardar);

    Entorno& e_;
    QHash<QString, QString> valores_;
    QHash<QString, QString> cargados_;
    QString multipuesto_;
    QString foco_;
};
