#include "gui/bloqueos_window.h"
#include "gui/controles.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

BloqueosWindow::BloqueosWindow(Entorno& entorno, QWidget* padre) : QWidget(padre), form_(entorno) {
    setObjectName(QStringLiteral("frmBloqueos"));
    setWindowTitle(kTituloBloqueos);
    setAttribute(Qt::WA_DeleteOnClose);

    filtro_ = new QLineEdit;
    filtro_->setObjectName(QStringLiteral("txtFiltro"));
    filtro_->setPlaceholderText(QStringLiteral("Registro, usuario o puesto"));
    auto* botonBuscar = boton(QStringLiteral("cmdBuscar"), QStringLiteral("Buscar"));
    botonBuscar->setDefault(true);

    lista_ = new QTableWidget(0, static_cast<int>(BloqueosForm::columnas().size()));
    lista_->setObjectName(QStringLiteral("grdBloqueos"));
    lista_->setHorizontalHeaderLabels(BloqueosForm::columnas());
    lista_->setSelectionBehavior(QAbstractItemView::SelectRows);
    lista_->setSelectionMode(QAbstractItemView::SingleSelection);
    lista_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lista_->verticalHeader()->hide();
    lista_->setAlternatingRowColors(true);
    lista_->setStyleSheet(QStringLiteral("QTableWidget::item { padding: 0px 8px; }"));
    auto* cabecera = lista_->horizontalHeader();
    cabecera->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int c = 1; c < lista_->columnCount(); ++c)
        cabecera->setSectionResizeMode(c, QHeaderView::ResizeToContents);

    eliminar_ = boton(QStringLiteral("cmdEliminar"), QStringLiteral("Eliminar"));
    eliminarTodos_ = boton(QStringLiteral("cmdEliminarTodos"), QStringLiteral("Eliminar todos"));
    auto* cerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    eliminar_->setEnabled(form_.puedeEliminar());
    eliminarTodos_->setEnabled(form_.puedeEliminar());

    auto* arriba = new QHBoxLayout;
    arriba->addWidget(new QLabel(QStringLiteral("Buscar:")));
    arriba->addWidget(filtro_, 1);
    arriba->addWidget(botonBuscar);
    auto* abajo = new QHBoxLayout;
    abajo->addWidget(eliminar_);
    abajo->addWidget(eliminarTodos_);
    abajo->addStretch(1);
    abajo->addWidget(cerrar);
    auto* capa = new QVBoxLayout(this);
    capa->addLayout(arriba);
    capa->addWidget(lista_, 1);
    capa->addLayout(abajo);

    connect(botonBuscar, &QPushButton::clicked, this, &BloqueosWindow::buscar);
    connect(filtro_, &QLineEdit::returnPressed, this, &BloqueosWindow::buscar);
    connect(eliminar_, &QPushButton::clicked, this, &BloqueosWindow::eliminarSeleccionado);
    connect(eliminarTodos_, &QPushButton::clicked, this, &BloqueosWindow::eliminarTodos);
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);

    resize(720, 360);
    buscar();
}

void BloqueosWindow::mostrarFilas() {
    const int filas = static_cast<int>(form_.filas().size());
    lista_->clearContents();
    lista_->setRowCount(filas);
    for (int f = 0; f < filas; ++f)
        for (int c = 0; c < lista_->columnCount(); ++c) {
            auto* celda = new QTableWidgetItem(form_.texto(f, c));
            if (c >= 3) celda->setTextAlignment(Qt::AlignCenter);
            lista_->setItem(f, c, celda);
        }
    if (form_.seleccionado >= 0 && form_.seleccionado < filas) lista_->selectRow(form_.seleccionado);
}

void BloqueosWindow::buscar() {
    form_.filtro = filtro_->text();
    form_.buscar();
    mostrarFilas();
}

void BloqueosWindow::eliminarSeleccionado() {
    const auto marcadas = lista_->selectionModel()->selectedRows();
    form_.seleccionado = marcadas.isEmpty() ? -1 : marcadas.first().row();
    form_.filtro = filtro_->text();
    form_.eliminarSeleccionado();
    mostrarFilas();
}

void BloqueosWindow::eliminarTodos() {
    form_.filtro = filtro_->text();
    form_.eliminarTodos();
    mostrarFilas();
}
