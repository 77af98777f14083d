#include "gui/login_window.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
QLineEdit* campo(const QString& nombre, bool clave, int longitud) {
    auto* e = new QLineEdit;
    e->setObjectName(nombre);
    e->setMaxLength(longitud);
    if (clave) e->setEchoMode(QLineEdit::Password);
    return e;
}
} // namespace

LoginWindow::LoginWindow(Entorno& entorno, QWidget* padre) : QDialog(padre), form_(entorno) {
    setObjectName(QStringLiteral("frmIdentificacion"));
    setWindowTitle(QStringLiteral("Identificación de Usuario"));
    setModal(true);

    usuario_ = campo(QStringLiteral("txtUsuario"), false, 20);
    clave_ = campo(QStringLiteral("txtClave"), true, 64);
    nuevaClave_ = campo(QStringLiteral("txtNuevaClave"), true, 64);
    confirmacion_ = campo(QStringLiteral("txtConfirmacion"), true, 64);

    auto* datos = new QFormLayout;
    datos->addRow(QStringLiteral("Usuario:"), usuario_);
    datos->addRow(QStringLiteral("Clave:"), clave_);

    auto* cambio = new QGroupBox(QStringLiteral("Cambiar la clave (opcional)"));
    auto* datosCambio = new QFormLayout(cambio);
    datosCambio->addRow(QStringLiteral("Nueva clave:"), nuevaClave_);
    datosCambio->addRow(QStringLiteral("Confirmación:"), confirmacion_);

    auto* botones = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    botones->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Aceptar"));
    botones->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdAceptar"));
    botones->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Cancelar"));
    botones->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancelar"));
    connect(botones, &QDialogButtonBox::accepted, this, &LoginWindow::aceptar);
    connect(botones, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* titulo = new QLabel(QStringLiteral("<b>Pramelvix</b> — introduzca su usuario y su clave"));
    auto* capa = new QVBoxLayout(this);
    capa->addWidget(titulo);
    capa->addLayout(datos);
    capa->addWidget(cambio);
    capa->addWidget(botones);
    setMinimumWidth(380);
}

void LoginWindow::aceptar() {
    form_.usuario = usuario_->text();
    form_.clave = clave_->text();
    form_.nuevaClave = nuevaClave_->text();
    form_.confirmacion = confirmacion_->text();
    if (form_.aceptar()) {
        accept();
        return;
    }
    clave_->setText(form_.clave);
    switch (form_.foco) {
    case LoginForm::Campo::Usuario:
        usuario_->setFocus();
        usuario_->selectAll();
        break;
    case LoginForm::Campo::Clave:
        clave_->setFocus();
        break;
    case LoginForm::Campo::NuevaClave:
        nuevaClave_->setFocus();
        break;
    case LoginForm::Campo::Confirmacion:
        confirmacion_->setFocus();
        break;
    }
}
