#pragma once
// The login dialog's logic: user name and password, and optionally a new password with
// its confirmation. On success the environment holds the user and the dialog closes.
#include "app/entorno.h"

class LoginForm {
public:
    explicit LoginForm(Entorno& entorno) : e_(entorno) {}

    // The fields of the dialog.
    QString usuario;
    QString clave;
    QString nuevaClave;
    QString confirmacion;

    enum class Campo { Usuario, Clave, NuevaClave, Confirmacion };
    // The field that should take the focus after a refusal.
    Campo foco = Campo::Usuario;

    // Checks the fields in order; true when the user is identified.
    bool aceptar();

private:
    Entorno& e_;
};

inline const QString kTituloAtencion = QStringLiteral("¡Atención!");
