#include "clients/ui/condiciones_widget.h"
#include "gui/controles.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
void llenar(QComboBox* c, const QList<OpcionLista>& opciones, std::optional<qint64> elegida) {
    const QSignalBlocker bloqueo(c);
    c->clear();
    c->addItem(QString(), QVariant());
    for (const auto& o : opciones)
        c->addItem(o.texto, o.clave);
    const int i = elegida ? c->findData(QVariant(static_cast<qlonglong>(*elegida))) : 0;
    c->setCurrentIndex(i < 0 ? 0 : i);
}
} // namespace

CondicionesWidget::CondicionesWidget(CondicionesForm& form, QWidget* padre) : QWidget(padre), form_(form) {
    setObjectName(QStringLiteral("condiciones"));
    tabla_ = new QTableWidget(0, static_cast<int>(CondicionesForm::columnas().size()));
    tabla_->setObjectName(QStringLiteral("grdCondiciones"));
    tabla_->setHorizontalHeaderLabels(CondicionesForm::columnas());
    tabla_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tabla_->setSelectionBehavior(QAbstractItemView::SelectRows);
    tabla_->setSelectionMode(QAbstractItemView::SingleSelection);
    tabla_->verticalHeader()->hide();
    tabla_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    connect(tabla_, &QTableWidget::itemSelectionChanged, this, [this] {
        const int f = filaSeleccionada();
        if (f >= 0) mostrarEntrada(form_.entrada(f));
    });

    articuloTexto_ = new QLineEdit;
    articuloTexto_->setObjectName(QStringLiteral("txtArticulo"));
    articuloTexto_->setReadOnly(true);
    seccion_ = new QComboBox;
    seccion_->setObjectName(QStringLiteral("cboSeccion"));
    familia_ = new QComboBox;
    familia_->setObjectName(QStringLiteral("cboFamilia"));
    subfamilia_ = new QComboBox;
    subfamilia_->setObjectName(QStringLiteral("cboSubfamilia"));
    precio_ = new QLineEdit;
    precio_->setObjectName(QStringLiteral("txtPrecio"));
    tarifa_ = new QComboBox;
    tarifa_->setObjectName(QStringLiteral("cboTarifa"));
    tarifa_->addItems(CondicionesForm::tarifas());
    dto_ = new QLineEdit;
    dto_->setObjectName(QStringLiteral("txtDto"));
    for (QComboBox* c : {seccion_, familia_, subfamilia_, tarifa_})
        c->setMinimumWidth(c == tarifa_ ? 100 : 130);
    connect(seccion_, &QComboBox::currentIndexChanged, this, [this] { llenarFamilias(); });
    connect(familia_, &QComboBox::currentIndexChanged, this, [this] { llenarSubfamilias(); });

    auto* elegir = boton(QStringLiteral("cmdElegirArticulo"), QStringLiteral("Artículo..."));
    auto* quitarArt = boton(QStringLiteral("cmdQuitarArticulo"), QStringLiteral("Sin artículo"));
    auto* ins = boton(QStringLiteral("cmdInsertar"), QStringLiteral("Insertar"));
    auto* mod = boton(QStringLiteral("cmdModificar"), QStringLiteral("Modificar"));
    auto* qui = boton(QStringLiteral("cmdQuitar"), QStringLiteral("Quitar"));
    connect(elegir, &QPushButton::clicked, this, &CondicionesWidget::elegirArticulo);
    connect(quitarArt, &QPushButton::clicked, this, [this] {
        articulo_.reset();
        articuloTexto_->clear();
    });
    connect(ins, &QPushButton::clicked, this, &CondicionesWidget::insertar);
    connect(mod, &QPushButton::clicked, this, &CondicionesWidget::modificar);
    connect(qui, &QPushButton::clicked, this, &CondicionesWidget::quitar);

    auto* edicion = new QGridLayout;
    int c = 0;
    auto poner = [&](const QString& etiqueta, QWidget* w, int ancho = 1) {
        edicion->addWidget(new QLabel(etiqueta), 0, c);
        edicion->addWidget(w, 1, c, 1, ancho);
        c += ancho;
    };
    poner(QStringLiteral("Artículo:"), articuloTexto_);
    edicion->addWidget(elegir, 2, 0);
    edicion->addWidget(quitarArt, 3, 0);
    poner(QStringLiteral("Sección:"), seccion_);
    poner(QStringLiteral("Familia:"), familia_);
    poner(QStringLiteral("SubFamilia:"), subfamilia_);
    poner(QStringLiteral("Precio:"), precio_);
    poner(QStringLiteral("Tarifa:"), tarifa_);
    poner(QStringLiteral("Dto. %:"), dto_);
    edicion->setColumnStretch(0, 3);
    auto* botones = new QHBoxLayout;
    botones->addStretch();
    botones->addWidget(ins);
    botones->addWidget(mod);
    botones->addWidget(qui);

    auto* capa = new QVBoxLayout(this);
    capa->setContentsMargins(0, 0, 0, 0);
    capa->addWidget(tabla_, 1);
    capa->addLayout(edicion);
    capa->addLayout(botones);
    refrescar();
}

void CondicionesWidget::refrescar() {
    llenar(seccion_, form_.secciones(), claveElegida(seccion_));
    llenarFamilias();
    const QSignalBlocker bloqueo(tabla_);
    tabla_->setRowCount(static_cast<int>(form_.filas().size()));
    for (int f = 0; f < form_.filas().size(); ++f) {
        const QStringList celdas = form_.celdas(f);
        for (int k = 0; k < celdas.size(); ++k) {
            auto* item = new QTableWidgetItem(celdas.at(k));
            if (k == 4 || k == 6) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            tabla_->setItem(f, k, item);
        }
    }
}

void CondicionesWidget::llenarFamilias() {
    llenar(familia_, form_.familias(claveElegida(seccion_)), claveElegida(familia_));
    llenarSubfamilias();
}

void CondicionesWidget::llenarSubfamilias() {
    llenar(subfamilia_, form_.subfamilias(claveElegida(familia_)), claveElegida(subfamilia_));
}

int CondicionesWidget::filaSeleccionada() const {
    const auto filas = tabla_->selectionModel()->selectedRows();
    return filas.isEmpty() ? -1 : filas.first().row();
}

EntradaCondicion CondicionesWidget::leerEntrada() const {
    EntradaCondicion e;
    e.IdArticulo = articulo_;
    e.IdSeccion = claveElegida(seccion_);
    e.IdFamilia = claveElegida(familia_);
    e.IdSubfamilia = claveElegida(subfamilia_);
    e.Precio = precio_->text();
    e.Tarifa = tarifa_->currentText();
    e.Descuento = dto_->text();
    return e;
}

void CondicionesWidget::mostrarEntrada(const EntradaCondicion& e) {
    articulo_ = e.IdArticulo;
    const int f = filaSeleccionada();
    articuloTexto_->setText(e.IdArticulo && f >= 0 ? form_.filas().at(f).Articulo : QString());
    llenar(seccion_, form_.secciones(), e.IdSeccion);
    llenar(familia_, form_.familias(e.IdSeccion), e.IdFamilia);
    llenar(subfamilia_, form_.subfamilias(e.IdFamilia), e.IdSubfamilia);
    precio_->setText(e.Precio);
    tarifa_->setCurrentText(e.Tarifa);
    dto_->setText(e.Descuento);
}

void CondicionesWidget::elegirArticulo() {
    const auto elegido = form_.elegirArticulo(articuloTexto_->text());
    if (!elegido) return;
    const auto texto = form_.leerArticulo(*elegido);
    if (!texto) return;
    articulo_ = elegido;
    articuloTexto_->setText(*texto);
}

void CondicionesWidget::insertar() {
    if (!form_.insertar(leerEntrada())) return;
    refrescar();
    tabla_->selectRow(static_cast<int>(form_.filas().size()) - 1);
    emit cambiado();
}

void CondicionesWidget::modificar() {
    const int f = filaSeleccionada();
    if (f < 0 || !form_.modificar(f, leerEntrada())) return;
    refrescar();
    tabla_->selectRow(f);
    emit cambiado();
}

void CondicionesWidget::quitar() {
    const int f = filaSeleccionada();
    if (f < 0 || !form_.eliminar(f)) return;
    refrescar();
    emit cambiado();
}
