#include "clinical/ui/plan_salud_busqueda_window.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

PlanSaludBusquedaWindow::PlanSaludBusquedaWindow(Entorno& entorno, QWidget* padre)
    : QDialog(padre), form_(entorno) {
    setObjectName(QStringLiteral("frmBusquedaPlanSalud"));
    setWindowTitle(QStringLiteral("Búsqueda de Planes de Salud"));
    nombre_ = new QLineEdit;
    nombre_->setObjectName(QStringLiteral("txtNombre"));
    empieza_ = new QRadioButton(QStringLiteral("Empieza por"));
    empieza_->setObjectName(QStringLiteral("optEmpieza"));
    empieza_->setChecked(true);
    exacto_ = new QRadioButton(QStringLiteral("Exacto"));
    exacto_->setObjectName(QStringLiteral("optExacto"));
    contiene_ = new QRadioButton(QStringLiteral("Contiene"));
    contiene_->setObjectName(QStringLiteral("optContiene"));
    bajas_ = new QCheckBox(QStringLiteral("Incluir planes dados de baja"));
    bajas_->setObjectName(QStringLiteral("chkIncluirBajas"));
    auto* buscarB = new QPushButton(QStringLiteral("Buscar"));
    buscarB->setObjectName(QStringLiteral("cmdBuscar"));
    connect(buscarB, &QPushButton::clicked, this, &PlanSaludBusquedaWindow::buscar);
    connect(nombre_, &QLineEdit::returnPressed, this, &PlanSaludBusquedaWindow::buscar);

    lista_ = new QTreeWidget;
    lista_->setObjectName(QStringLiteral("lstPlanes"));
    lista_->setHeaderLabels(PlanSaludBusquedaForm::columnas());
    lista_->setRootIsDecorated(false);
    lista_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    lista_->header()->setStretchLastSection(false);
    connect(lista_, &QTreeWidget::itemDoubleClicked, this, &PlanSaludBusquedaWindow::aceptar);

    auto* botones = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    botones->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Aceptar"));
    botones->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdAceptar"));
    botones->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Cancelar"));
    botones->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancelar"));
    connect(botones, &QDialogButtonBox::accepted, this, &PlanSaludBusquedaWindow::aceptar);
    connect(botones, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* criterio = new QHBoxLayout;
    criterio->addWidget(new QLabel(QStringLiteral("Nombre:")));
    criterio->addWidget(nombre_, 1);
    criterio->addWidget(buscarB);
    auto* modos = new QHBoxLayout;
    modos->addWidget(empieza_);
    modos->addWidget(exacto_);
    modos->addWidget(contiene_);
    modos->addStretch();
    modos->addWidget(bajas_);
    auto* capa = new QVBoxLayout(this);
    capa->addLayout(criterio);
    capa->addLayout(modos);
    capa->addWidget(lista_, 1);
    capa->addWidget(botones);
    resize(560, 400);
}

void PlanSaludBusquedaWindow::setTextoInicial(const QString& texto) {
    nombre_->setText(texto);
}

void PlanSaludBusquedaWindow::buscar() {
    form_.texto = nombre_->text();
    form_.modo = exacto_->isChecked()     ? PlanSaludBusquedaForm::Modo::Exacto
                 : contiene_->isChecked() ? PlanSaludBusquedaForm::Modo::Contiene
                                          : PlanSaludBusquedaForm::Modo::Empieza;
    form_.incluirBajas = bajas_->isChecked();
    lista_->clear();
    if (!form_.buscar()) return;
    for (int i = 0; i < form_.resultado().size(); ++i)
        lista_->addTopLevelItem(new QTreeWidgetItem(form_.celdas(i)));
    if (lista_->topLevelItemCount() > 0) lista_->setCurrentItem(lista_->topLevelItem(0));
}

std::optional<FilaPlanSalud> PlanSaludBusquedaWindow::elegido() const {
    const int i = lista_->indexOfTopLevelItem(lista_->currentItem());
    if (i < 0 || i >= form_.resultado().size()) return std::nullopt;
    return form_.resultado().at(i);
}

void PlanSaludBusquedaWindow::aceptar() {
    if (elegido()) accept();
}

std::optional<qint64> PlanSaludBusquedaWindow::elegir(Entorno& entorno, const QString& textoInicial,
                                                      QWidget* padre) {
    PlanSaludBusquedaWindow w(entorno, padre);
    w.setTextoInicial(textoInicial);
    w.buscar();
    if (w.exec() != QDialog::Accepted) return std::nullopt;
    const auto e = w.elegido();
    if (!e) return std::nullopt;
    return e->ClavePlanSalud;
}
