#include "clients/ui/cambio_propietario_window.h"
#include "gui/controles.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
QLineEdit* soloLectura(const QString& nombre) {
    auto* l = new QLineEdit;
    l->setObjectName(nombre);
    l->setReadOnly(true);
    l->setMinimumWidth(280);
    return l;
}
} // namespace

CambioPropietarioWindow::CambioPropietarioWindow(Entorno& entorno, QWidget* padre)
    : QWidget(padre), form_(entorno) {
    setObjectName(QStringLiteral("frmCambioPropietario"));
    setWindowTitle(kTituloCambioPropietario);
    actual_ = soloLectura(QStringLiteral("txtPropietarioActual"));
    nuevo_ = soloLectura(QStringLiteral("txtNuevoPropietario"));
    mascota_ = new QComboBox;
    mascota_->setObjectName(QStringLiteral("cboMascota"));
    connect(mascota_, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (!actualizando_) form_.setFilaMascota(i - 1);
    });
    auto* lupaActual = boton(QStringLiteral("cmdBuscarActual"), QStringLiteral("Buscar..."));
    auto* lupaNuevo = boton(QStringLiteral("cmdBuscarNuevo"), QStringLiteral("Buscar..."));
    connect(lupaActual, &QPushButton::clicked, this, &CambioPropietarioWindow::buscarActual);
    connect(lupaNuevo, &QPushButton::clicked, this, &CambioPropietarioWindow::buscarNuevo);
    auto fila = [](QWidget* a, QWidget* b) {
        auto* h = new QHBoxLayout;
        h->addWidget(a, 1);
        h->addWidget(b);
        return h;
    };
    auto* datos = new QFormLayout;
    datos->addRow(QStringLiteral("Propietario actual:"), fila(actual_, lupaActual));
    datos->addRow(QStringLiteral("Mascota:"), mascota_);
    datos->addRow(QStringLiteral("Nuevo propietario:"), fila(nuevo_, lupaNuevo));

    auto* aceptar = boton(QStringLiteral("cmdAceptar"), QStringLiteral("Cambiar propietario"));
    auto* cerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    connect(aceptar, &QPushButton::clicked, this, &CambioPropietarioWindow::aceptar);
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);
    auto* botones = new QHBoxLayout;
    botones->addStretch();
    botones->addWidget(aceptar);
    botones->addWidget(cerrar);

    auto* capa = new QVBoxLayout(this);
    capa->addWidget(
        new QLabel(QStringLiteral("Indique la mascota y su nuevo propietario. El cambio queda anotado en "
                                  "el registro de cambios de propietario.")));
    capa->addLayout(datos);
    capa->addStretch();
    capa->addLayout(botones);
    mostrar();
}

bool CambioPropietarioWindow::abrir(qint64 idCliente, std::optional<qint64> idMascota) {
    const bool ok = form_.abrir(idCliente, idMascota);
    mostrar();
    return ok;
}

void CambioPropietarioWindow::buscarActual() {
    if (form_.elegirPropietarioActual()) mostrar();
}

void CambioPropietarioWindow::buscarNuevo() {
    if (form_.elegirNuevoPropietario()) mostrar();
}

void CambioPropietarioWindow::aceptar() {
    form_.cambiar();
    mostrar();
}

void CambioPropietarioWindow::mostrar() {
    actualizando_ = true;
    actual_->setText(form_.nombreActual());
    nuevo_->setText(form_.nombreNuevo());
    mascota_->clear();
    mascota_->addItem(QString());
    for (const auto& m : form_.mascotas())
        mascota_->addItem(m.Especie.isEmpty()
                              ? m.Mascota
                              : m.Mascota + QStringLiteral(" (") + m.Especie + QLatin1Char(')'));
    mascota_->setCurrentIndex(form_.filaMascota() + 1);
    actualizando_ = false;
}
