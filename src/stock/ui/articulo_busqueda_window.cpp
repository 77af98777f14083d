#include "stock/ui/articulo_busqueda_window.h"

#include "core/command_trace.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

ArticuloBusquedaWindow::ArticuloBusquedaWindow(Entorno& entorno, QWidget* padre)
    : QDialog(padre), e_(entorno), form_(entorno) {
    setObjectName(QStringLiteral("frmBusquedaArticulos"));
    setWindowTitle(kTituloBusquedaArticulos);
    setModal(true);
    auto linea = [](const QString& nombre) {
        auto* e = new QLineEdit;
        e->setObjectName(nombre);
        return e;
    };
    auto combo = [](const QString& nombre) {
        auto* c = new QComboBox;
        c->setObjectName(nombre);
        c->setMinimumContentsLength(16);
        return c;
    };
    codigo_ = linea(QStringLiteral("txtCodigo"));
    descripcion_ = linea(QStringLiteral("txtDescripcion"));
    codBarras_ = linea(QStringLiteral("txtCodBarras"));
    cualquierParte_ = new QCheckBox(QStringLiteral("En cualquier parte"));
    cualquierParte_->setObjectName(QStringLiteral("chkCualquierParte"));
    bajas_ = new QCheckBox(QStringLiteral("Incluir artículos dados de baja"));
    bajas_->setObjectName(QStringLiteral("chkBajas"));
    seccion_ = combo(QStringLiteral("cboSeccion"));
    familia_ = combo(QStringLiteral("cboFamilia"));
    subfamilia_ = combo(QStringLiteral("cboSubFamilia"));
    laboratorio_ = combo(QStringLiteral("cboLaboratorio"));
    llenar(seccion_, QStringLiteral("Secciones"), std::nullopt);
    llenar(familia_, QStringLiteral("Familias"), std::nullopt);
    llenar(subfamilia_, QStringLiteral("Subfamilias"), std::nullopt);
    llenar(laboratorio_, QStringLiteral("Laboratorios"), std::nullopt);
    connect(seccion_, &QComboBox::activated, this, [this] {
        llenar(familia_, QStringLiteral("Familias"), claveDe(seccion_));
        llenar(subfamilia_, QStringLiteral("Subfamilias"), std::nullopt);
    });
    connect(familia_, &QComboBox::activated, this,
            [this] { llenar(subfamilia_, QStringLiteral("Subfamilias"), claveDe(familia_)); });

    auto* descripcion = new QHBoxLayout;
    descripcion->addWidget(descripcion_, 1);
    descripcion->addWidget(cualquierParte_);
    auto* criterios = new QFormLayout;
    criterios->addRow(QStringLiteral("Código:"), codigo_);
    criterios->addRow(QStringLiteral("Descripción:"), descripcion);
    criterios->addRow(QStringLiteral("Código de barras:"), codBarras_);
    criterios->addRow(QStringLiteral("Sección:"), seccion_);
    criterios->addRow(QStringLiteral("Familia:"), familia_);
    criterios->addRow(QStringLiteral("Subfamilia:"), subfamilia_);
    criterios->addRow(QStringLiteral("Laboratorio:"), laboratorio_);
    criterios->addRow(QString(), bajas_);

    lista_ = new QTreeWidget;
    lista_->setObjectName(QStringLiteral("lstArticulos"));
    lista_->setRootIsDecorated(false);
    lista_->setHeaderLabels(ArticuloBusquedaForm::cabeceras());
    lista_->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    connect(lista_, &QTreeWidget::itemDoubleClicked, this, &ArticuloBusquedaWindow::aceptar);

    auto* bBuscar = new QPushButton(QStringLiteral("&Buscar"));
    bBuscar->setObjectName(QStringLiteral("cmdBuscar"));
    bBuscar->setDefault(true);
    connect(bBuscar, &QPushButton::clicked, this, &ArticuloBusquedaWindow::buscar);
    auto* botones = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    botones->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Aceptar"));
    botones->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdAceptar"));
    botones->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Cancelar"));
    botones->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancelar"));
    connect(botones, &QDialogButtonBox::accepted, this, &ArticuloBusquedaWindow::aceptar);
    connect(botones, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* arriba = new QHBoxLayout;
    arriba->addLayout(criterios, 1);
    arriba->addWidget(bBuscar, 0, Qt::AlignBottom);
    auto* capa = new QVBoxLayout(this);
    capa->addLayout(arriba);
    capa->addWidget(lista_, 1);
    capa->addWidget(botones);
    resize(820, 560);
}

void ArticuloBusquedaWindow::llenar(QComboBox* combo, const QString& tabla, std::optional<qint64> padre) {
    combo->clear();
    combo->addItem(QString(), QString());
    for (const OpcionArticulo& o : form_.opciones(tabla, padre))
        combo->addItem(o.texto, o.clave);
}

std::optional<qint64> ArticuloBusquedaWindow::claveDe(QComboBox* combo) const {
    bool ok = false;
    const qint64 n = combo->currentData().toString().toLongLong(&ok);
    return ok ? std::optional<qint64>(n) : std::nullopt;
}

void ArticuloBusquedaWindow::buscar() {
    form_.codigo = codigo_->text();
    form_.filtro.descripcion = descripcion_->text();
    form_.filtro.descripcionEnCualquierParte = cualquierParte_->isChecked();
    form_.filtro.codBarras = codBarras_->text();
    form_.filtro.seccion = claveDe(seccion_);
    form_.filtro.familia = claveDe(familia_);
    form_.filtro.subfamilia = claveDe(subfamilia_);
    form_.filtro.laboratorio = claveDe(laboratorio_);
    form_.filtro.incluirBajas = bajas_->isChecked();
    if (!form_.buscar()) return;
    lista_->clear();
    const int columnas = static_cast<int>(ArticuloBusquedaForm::cabeceras().size());
    for (int i = 0; i < form_.filas(); ++i) {
        auto* item = new QTreeWidgetItem(lista_);
        for (int c = 0; c < columnas; ++c) {
            item->setText(c, form_.textoCelda(i, c));
            if (c != 1) item->setTextAlignment(c, Qt::AlignRight | Qt::AlignVCenter);
        }
    }
    if (form_.filas() > 0) lista_->setCurrentItem(lista_->topLevelItem(0));
}

void ArticuloBusquedaWindow::aceptar() {
    form_.seleccionado = lista_->currentItem() ? lista_->indexOfTopLevelItem(lista_->currentItem()) : -1;
    elegido_ = form_.elegir();
    if (elegido_) accept();
}

std::optional<qint64> ArticuloBusquedaWindow::elegir(Entorno& entorno, const QString& textoInicial,
                                                     QWidget* padre) {
    ArticuloBusquedaWindow w(entorno, padre);
    w.form_.textoInicial(textoInicial);
    w.codigo_->setText(w.form_.codigo);
    w.descripcion_->setText(w.form_.filtro.descripcion);
    if (!textoInicial.trimmed().isEmpty()) w.buscar();
    if (w.exec() != QDialog::Accepted) return std::nullopt;
    return w.elegido();
}

std::function<std::optional<qint64>(const QString&)> ArticuloBusquedaWindow::buscador(Entorno& entorno,
                                                                                      QWidget* padre) {
    return [&entorno, padre](const QString& texto) { return elegir(entorno, texto, padre); };
}
