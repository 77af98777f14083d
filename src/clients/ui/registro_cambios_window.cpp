#include "clients/ui/registro_cambios_window.h"
#include "gui/controles.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
QDateEdit* fecha(const QString& nombre, const QDate& valor) {
    auto* d = new QDateEdit(valor);
    d->setObjectName(nombre);
    d->setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
    d->setCalendarPopup(true);
    return d;
}
} // namespace

RegistroCambiosWindow::RegistroCambiosWindow(Entorno& entorno, QWidget* padre)
    : QWidget(padre), form_(entorno) {
    setObjectName(QStringLiteral("frmRegistroCambiosPropietario"));
    setWindowTitle(kTituloRegistroCambios);
    const QDate hoy = entorno.reloj().hoy();
    fechas_ = new QCheckBox(QStringLiteral("Entre fechas"));
    fechas_->setObjectName(QStringLiteral("chkFechas"));
    desde_ = fecha(QStringLiteral("dtpDesde"), hoy.addMonths(-1));
    hasta_ = fecha(QStringLiteral("dtpHasta"), hoy);
    mascota_ = new QLineEdit;
    mascota_->setObjectName(QStringLiteral("txtMascota"));
    origen_ = new QLineEdit;
    origen_->setObjectName(QStringLiteral("txtOrigen"));
    origen_->setReadOnly(true);
    destino_ = new QLineEdit;
    destino_->setObjectName(QStringLiteral("txtDestino"));
    destino_->setReadOnly(true);

    auto propietario = [this](QLineEdit* texto, const QString& sufijo, bool esOrigen) {
        auto* h = new QHBoxLayout;
        auto* lupa = boton(QStringLiteral("cmdBuscar") + sufijo, QStringLiteral("Buscar..."));
        auto* quitar = boton(QStringLiteral("cmdQuitar") + sufijo, QStringLiteral("Quitar"));
        connect(lupa, &QPushButton::clicked, this, [this, texto, esOrigen] {
            if (esOrigen ? form_.elegirOrigen() : form_.elegirDestino())
                texto->setText(esOrigen ? form_.nombreOrigen() : form_.nombreDestino());
        });
        connect(quitar, &QPushButton::clicked, this, [this, texto, esOrigen] {
            esOrigen ? form_.quitarOrigen() : form_.quitarDestino();
            texto->clear();
        });
        h->addWidget(texto, 1);
        h->addWidget(lupa);
        h->addWidget(quitar);
        return h;
    };
    auto* filtros = new QGroupBox(QStringLiteral("Filtros"));
    auto* f = new QFormLayout(filtros);
    auto* rango = new QHBoxLayout;
    rango->addWidget(fechas_);
    rango->addWidget(desde_);
    rango->addWidget(hasta_);
    rango->addStretch();
    f->addRow(QStringLiteral("Fechas:"), rango);
    f->addRow(QStringLiteral("Mascota:"), mascota_);
    f->addRow(QStringLiteral("Propietario origen:"), propietario(origen_, QStringLiteral("Origen"), true));
    f->addRow(QStringLiteral("Nuevo propietario:"), propietario(destino_, QStringLiteral("Destino"), false));

    lista_ = new QTreeWidget;
    lista_->setObjectName(QStringLiteral("lvwCambios"));
    lista_->setHeaderLabels(RegistroCambiosForm::cabeceras());
    lista_->setRootIsDecorated(false);
    lista_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(lista_, &QTreeWidget::itemDoubleClicked, this, &RegistroCambiosWindow::abrirMascota);

    auto* buscar = boton(QStringLiteral("cmdBuscar"), QStringLiteral("Buscar"));
    auto* abrir = boton(QStringLiteral("cmdAbrirMascota"), QStringLiteral("Abrir mascota"));
    auto* cerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    connect(buscar, &QPushButton::clicked, this, &RegistroCambiosWindow::buscar);
    connect(abrir, &QPushButton::clicked, this, &RegistroCambiosWindow::abrirMascota);
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);
    auto* botones = new QHBoxLayout;
    botones->addStretch();
    for (auto* b : {buscar, abrir, cerrar})
        botones->addWidget(b);

    auto* capa = new QVBoxLayout(this);
    capa->addWidget(filtros);
    capa->addWidget(lista_, 1);
    capa->addLayout(botones);
    resize(640, 480);
}

void RegistroCambiosWindow::buscar() {
    form_.filtro.desde = fechas_->isChecked() ? std::optional<QDate>(desde_->date()) : std::nullopt;
    form_.filtro.hasta = fechas_->isChecked() ? std::optional<QDate>(hasta_->date()) : std::nullopt;
    form_.filtro.mascota = mascota_->text();
    form_.buscar();
    lista_->clear();
    for (const auto& fila : form_.filas())
        new QTreeWidgetItem(lista_, RegistroCambiosForm::textos(fila));
}

void RegistroCambiosWindow::abrirMascota() {
    const auto m = form_.mascotaDeFila(lista_->indexOfTopLevelItem(lista_->currentItem()));
    if (m) emit mascotaElegida(m->first, m->second);
}
