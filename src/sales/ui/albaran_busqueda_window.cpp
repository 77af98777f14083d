#include "sales/ui/albaran_busqueda_window.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace {
QLineEdit* campo(const QString& nombre, int longitud) {
    auto* e = new QLineEdit;
    e->setObjectName(nombre);
    e->setMaxLength(longitud);
    return e;
}

QLineEdit* campoFecha(const QString& nombre) {
    QLineEdit* e = campo(nombre, 10);
    e->setPlaceholderText(QStringLiteral("dd/mm/aaaa"));
    e->setMaximumWidth(e->fontMetrics().horizontalAdvance(QStringLiteral("00/00/00000")) + 16);
    return e;
}

void etiqueta(QGridLayout* g, int fila, int columna, const QString& texto, QWidget* w, int ancho = 1) {
    g->addWidget(new QLabel(texto), fila, columna);
    g->addWidget(w, fila, columna + 1, 1, ancho);
}

// Columns whose cells are numbers: "Nº Albarán", "Total", "Pendiente".
bool alineadaDerecha(int columna) {
    return columna == 1 || columna == 5 || columna == 6;
}
} // namespace

AlbaranBusquedaWindow::AlbaranBusquedaWindow(Entorno& entorno, QWidget* padre,
                                             std::optional<qint64> idCliente)
    : QDialog(padre), form_(entorno, idCliente) {
    setObjectName(QStringLiteral("frmBusquedaAlbaranes"));
    setWindowTitle(kTituloBusquedaAlbaranes);

    serie_ = new QComboBox;
    serie_->setObjectName(QStringLiteral("cboSerie"));
    for (const SerieVenta& s : form_.series())
        serie_->addItem(s.texto, s.serie);
    numAlbaran_ = campo(QStringLiteral("txtNumero"), 18);
    numAlbaran_->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), numAlbaran_));
    cliente_ = campo(QStringLiteral("txtCliente"), 100);
    comienzo_ = new QRadioButton(QStringLiteral("Al comienzo"));
    comienzo_->setObjectName(QStringLiteral("optComienzo"));
    comienzo_->setChecked(true);
    contiene_ = new QRadioButton(QStringLiteral("En cualquier parte"));
    contiene_->setObjectName(QStringLiteral("optContiene"));
    if (form_.clienteFijo()) {
        // The opener fixed the client: its name is shown and cannot be changed.
        cliente_->setText(form_.nombreClienteFijo());
        cliente_->setReadOnly(true);
        comienzo_->setEnabled(false);
        contiene_->setEnabled(false);
    }
    mascota_ = campo(QStringLiteral("txtMascota"), 60);
    desde_ = campoFecha(QStringLiteral("txtDesde"));
    hasta_ = campoFecha(QStringLiteral("txtHasta"));
    estado_ = new QComboBox;
    estado_->setObjectName(QStringLiteral("cboEstado"));
    estado_->addItems(AlbaranBusquedaForm::estados());

    auto* modos = new QHBoxLayout;
    modos->addWidget(comienzo_);
    modos->addWidget(contiene_);
    modos->addStretch();
    auto* fechas = new QHBoxLayout;
    fechas->addWidget(desde_);
    fechas->addWidget(new QLabel(QStringLiteral("Hasta:")));
    fechas->addWidget(hasta_);
    fechas->addStretch();

    auto* grupo = new QGroupBox(QStringLiteral("Condiciones de búsqueda"));
    auto* g = new QGridLayout(grupo);
    etiqueta(g, 0, 0, QStringLiteral("Serie:"), serie_);
    etiqueta(g, 0, 2, QStringLiteral("Nº Albarán:"), numAlbaran_);
    etiqueta(g, 1, 0, QStringLiteral("Cliente:"), cliente_, 3);
    g->addLayout(modos, 2, 1, 1, 3);
    etiqueta(g, 3, 0, QStringLiteral("Mascota:"), mascota_);
    etiqueta(g, 3, 2, QStringLiteral("Estado:"), estado_);
    g->addWidget(new QLabel(QStringLiteral("Desde:")), 4, 0);
    g->addLayout(fechas, 4, 1, 1, 3);
    g->setColumnStretch(1, 1);
    g->setColumnStretch(3, 1);

    const QStringList columnas = AlbaranBusquedaForm::columnas();
    rejilla_ = new QTableWidget(0, static_cast<int>(columnas.size()));
    rejilla_->setObjectName(QStringLiteral("grdAlbaranes"));
    rejilla_->setHorizontalHeaderLabels(columnas);
    rejilla_->setSelectionBehavior(QAbstractItemView::SelectRows);
    rejilla_->setSelectionMode(QAbstractItemView::SingleSelection);
    rejilla_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    rejilla_->verticalHeader()->hide();
    rejilla_->horizontalHeader()->setSectionResizeMode(3, QHeaderView::Stretch);
    connect(rejilla_, &QTableWidget::cellDoubleClicked, this, [this](int fila, int) {
        rejilla_->setCurrentCell(fila, 0);
        aceptar();
    });
    nota_ = new QLabel;
    nota_->setObjectName(QStringLiteral("lblNota"));

    auto* buscarB = new QPushButton(QStringLiteral("Buscar"));
    buscarB->setObjectName(QStringLiteral("cmdBuscar"));
    buscarB->setDefault(true);
    auto* aceptarB = new QPushButton(QStringLiteral("Aceptar"));
    aceptarB->setObjectName(QStringLiteral("cmdAceptar"));
    auto* cancelarB = new QPushButton(QStringLiteral("Cancelar"));
    cancelarB->setObjectName(QStringLiteral("cmdCancelar"));
    connect(buscarB, &QPushButton::clicked, this, &AlbaranBusquedaWindow::buscar);
    connect(aceptarB, &QPushButton::clicked, this, &AlbaranBusquedaWindow::aceptar);
    connect(cancelarB, &QPushButton::clicked, this, &QDialog::reject);
    auto* botones = new QHBoxLayout;
    botones->addWidget(buscarB);
    botones->addStretch();
    botones->addWidget(aceptarB);
    botones->addWidget(cancelarB);

    auto* capa = new QVBoxLayout(this);
    capa->addWidget(grupo);
    capa->addWidget(rejilla_, 1);
    capa->addWidget(nota_);
    capa->addLayout(botones);
    resize(900, 600);

    if (form_.buscarAlAbrir()) buscar();
}

void AlbaranBusquedaWindow::buscar() {
    form_.serie = serie_->currentData().toString();
    form_.numAlbaran = numAlbaran_->text();
    form_.cliente = cliente_->text();
    form_.clienteEnCualquierParte = contiene_->isChecked();
    form_.mascota = mascota_->text();
    form_.desde = desde_->text();
    form_.hasta = hasta_->text();
    form_.estado = static_cast<EstadoAlbaran>(std::max(0, estado_->currentIndex()));
    if (!form_.buscar()) return;
    mostrar();
}

void AlbaranBusquedaWindow::mostrar() {
    const auto& filas = form_.resultado();
    rejilla_->setRowCount(static_cast<int>(filas.size()));
    for (int r = 0; r < filas.size(); ++r) {
        const QStringList celdas = form_.celdas(r);
        for (int c = 0; c < celdas.size(); ++c) {
            auto* item = new QTableWidgetItem(celdas.at(c));
            if (alineadaDerecha(c)) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            rejilla_->setItem(r, c, item);
        }
    }
    rejilla_->resizeColumnsToContents();
    rejilla_->horizontalHeader()->setSectionResizeMode(3, QHeaderView::Stretch);
    if (!filas.isEmpty()) rejilla_->setCurrentCell(0, 0);
    nota_->setText(form_.nota());
}

void AlbaranBusquedaWindow::aceptar() {
    if (form_.aceptar(rejilla_->currentRow())) accept();
}

std::optional<qint64> AlbaranBusquedaWindow::buscador(Entorno& entorno, QWidget* padre,
                                                      std::optional<qint64> idCliente) {
    AlbaranBusquedaWindow w(entorno, padre, idCliente);
    w.setModal(true);
    if (w.exec() != QDialog::Accepted) return std::nullopt;
    return w.form().elegido();
}
