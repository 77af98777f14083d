#include "gui/usuarios_window.h"
#include "gui/controles.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
QLineEdit* campo(const QString& nombre, int longitud, bool clave = false) {
    auto* e = new QLineEdit;
    e->setObjectName(nombre);
    e->setMaxLength(longitud);
    if (clave) e->setEchoMode(QLineEdit::Password);
    return e;
}

} // namespace

UsuariosWindow::UsuariosWindow(Entorno& entorno, QWidget* padre) : QWidget(padre), form_(entorno) {
    setObjectName(QStringLiteral("frmUsuarios"));
    setWindowTitle(QStringLiteral("Usuarios"));

    lista_ = new QTreeWidget;
    lista_->setObjectName(QStringLiteral("lvwUsuarios"));
    lista_->setColumnCount(2);
    lista_->setHeaderLabels({QStringLiteral("Id. Usuario"), QStringLiteral("Nombre")});
    lista_->setRootIsDecorated(false);
    lista_->setUniformRowHeights(true);
    lista_->setSelectionMode(QAbstractItemView::SingleSelection);
    lista_->header()->setStretchLastSection(true);
    lista_->setColumnWidth(0, 130);
    lista_->setMinimumWidth(320);

    id_ = campo(QStringLiteral("txtIdUsuario"), 20);
    nombre_ = campo(QStringLiteral("txtNombre"), 60);
    clave_ = campo(QStringLiteral("txtClave"), 64, true);
    confirmacion_ = campo(QStringLiteral("txtConfirmacion"), 64, true);
    tipo_ = new QComboBox;
    tipo_->setObjectName(QStringLiteral("cboTipoUsuario"));
    const QStringList internos = UsuariosForm::tiposInternos();
    const QStringList externos = UsuariosForm::tiposExternos();
    for (int i = 0; i < internos.size(); ++i)
        tipo_->addItem(externos.at(i), internos.at(i));

    auto* datos = new QGroupBox(QStringLiteral("Datos del usuario"));
    auto* formulario = new QFormLayout(datos);
    formulario->addRow(QStringLiteral("Id. Usuario:"), id_);
    formulario->addRow(QStringLiteral("Nombre:"), nombre_);
    formulario->addRow(QStringLiteral("Clave:"), clave_);
    formulario->addRow(QStringLiteral("Confirmación:"), confirmacion_);
    formulario->addRow(QStringLiteral("Tipo de usuario:"), tipo_);

    auto* cmdNuevo = boton(QStringLiteral("cmdNuevo"), QStringLiteral("Nuevo"));
    auto* cmdGuardar = boton(QStringLiteral("cmdGuardar"), QStringLiteral("Guardar"));
    eliminar_ = boton(QStringLiteral("cmdEliminar"), QStringLiteral("Eliminar"));
    auto* cmdCerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    auto* botones = new QHBoxLayout;
    botones->addWidget(cmdNuevo);
    botones->addWidget(cmdGuardar);
    botones->addWidget(eliminar_);
    botones->addStretch();
    botones->addWidget(cmdCerrar);

    auto* derecha = new QVBoxLayout;
    derecha->addWidget(datos);
    derecha->addStretch();
    derecha->addLayout(botones);

    auto* capa = new QHBoxLayout(this);
    capa->addWidget(lista_, 1);
    capa->addLayout(derecha, 1);

    connect(lista_, &QTreeWidget::currentItemChanged, this, [this] { cambioDeFila(); });
    connect(id_, &QLineEdit::textEdited, this, [this](const QString& t) { form_.setIdUsuario(t); });
    connect(nombre_, &QLineEdit::textEdited, this, [this](const QString& t) { form_.setNombre(t); });
    connect(clave_, &QLineEdit::textEdited, this, [this](const QString& t) { form_.setClave(t); });
    connect(confirmacion_, &QLineEdit::textEdited, this,
            [this](const QString& t) { form_.setConfirmacion(t); });
    connect(tipo_, &QComboBox::activated, this,
            [this](int i) { form_.setTipo(tipo_->itemData(i).toString()); });
    connect(cmdNuevo, &QPushButton::clicked, this, &UsuariosWindow::nuevo);
    connect(cmdGuardar, &QPushButton::clicked, this, &UsuariosWindow::guardar);
    connect(eliminar_, &QPushButton::clicked, this, &UsuariosWindow::eliminar);
    connect(cmdCerrar, &QPushButton::clicked, this, &QWidget::close);

    form_.cargar();
    mostrarLista();
    resize(720, 360);
}

void UsuariosWindow::mostrarLista() {
    actualizando_ = true;
    lista_->clear();
    for (const FilaUsuario& f : form_.lista())
        new QTreeWidgetItem(lista_, {f.IdUsuario, f.Nombre});
    actualizando_ = false;
    mostrarCampos();
}

void UsuariosWindow::mostrarCampos() {
    actualizando_ = true;
    const int fila = form_.filaActual();
    if (fila >= 0 && fila < lista_->topLevelItemCount())
        lista_->setCurrentItem(lista_->topLevelItem(fila));
    else
        lista_->setCurrentItem(nullptr);
    id_->setText(form_.idUsuario());
    // The identifier of an existing user is its login name, kept by the other tables.
    id_->setReadOnly(!form_.esNuevo());
    nombre_->setText(form_.nombre());
    clave_->setText(form_.clave());
    confirmacion_->setText(form_.confirmacion());
    tipo_->setCurrentIndex(tipo_->findData(form_.tipo()));
    eliminar_->setEnabled(!form_.esNuevo());
    actualizando_ = false;
}

void UsuariosWindow::cambioDeFila() {
    if (actualizando_) return;
    const int fila = lista_->indexOfTopLevelItem(lista_->currentItem());
    if (fila < 0 || fila == form_.filaActual()) return;
    const int antes = form_.lista().size();
    form_.seleccionar(fila);
    // On No the selection goes back to the user being edited; a user deleted meanwhile
    // by another workstation reloads the list.
    if (form_.lista().size() != antes)
        mostrarLista();
    else
        mostrarCampos();
}

void UsuariosWindow::ponerFoco() {
    QWidget* w = id_;
    switch (form_.foco()) {
    case UsuariosForm::Campo::Identificador:
        w = id_;
        break;
    case UsuariosForm::Campo::Nombre:
        w = nombre_;
        break;
    case UsuariosForm::Campo::Clave:
        w = clave_;
        break;
    case UsuariosForm::Campo::Confirmacion:
        w = confirmacion_;
        break;
    case UsuariosForm::Campo::Tipo:
        w = tipo_;
        break;
    }
    w->setFocus();
}

void UsuariosWindow::nuevo() {
    if (!form_.nuevo()) return;
    mostrarCampos();
    id_->setFocus();
}

void UsuariosWindow::guardar() {
    if (form_.guardar())
        mostrarLista();
    else
        ponerFoco();
}

void UsuariosWindow::eliminar() {
    if (form_.eliminar()) mostrarLista();
}

void UsuariosWindow::closeEvent(QCloseEvent* evento) {
    if (form_.puedeCerrar())
        evento->accept();
    else
        evento->ignore();
}
