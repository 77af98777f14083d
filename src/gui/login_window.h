#pragma once
// The login dialog, bound to LoginForm.
#include "app/login_form.h"

#include <QDialog>

class QLineEdit;

class LoginWindow : public QDialog {
    Q_OBJECT
public:
    LoginWindow(Entorno& entorno, QWidget* padre = nullptr);
    LoginForm& form() { return form_; }

public slots:
    void aceptar();

private:
    LoginForm form_;
    QLineEdit* usuario_;
    QLineEdit* clave_;
    QLineEdit* nuevaClave_;
    QLineEdit* confirmacion_;
};
