#include "gui/editor_lista_window.h"

#include "data/esquema.h"
#include "gui/editor_arbol_window.h"
#include "gui/ficha_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
QPushButton* boton(const QString& nombre, const QString& texto) {
    auto* b = new QPushButton(texto);
    b->setObjectName(nombre);
    b->setAutoDefault(false);
    return b;
}

bool alinearDerecha(const DescriptorColumna& c) {
    return !c.esLista() && (c.tipo == TipoColumna::Entero || c.tipo == TipoColumna::Autonumerico ||
                            c.tipo == TipoColumna::Decimal);
}
} // namespace

EditorListaWindow::EditorListaWindow(Entorno& entorno, const DescriptorTabla& tabla, QWidget* padre)
    : QDialog(padre), form_(entorno, tabla) {
    setObjectName(QStringLiteral("frmEditorLista"));
    setWindowTitle(form_.titulo());
    setModal(true);

    lista_ = new QTreeWidget;
    lista_->setObjectName(QStringLiteral("lstRegistros"));
    lista_->setRootIsDecorated(false);
    lista_->setUniformRowHeights(true);
    lista_->setAlternatingRowColors(true);
    lista_->setSelectionMode(QAbstractItemView::SingleSelection);
    lista_->setHeaderLabels(form_.cabeceras());
    lista_->header()->setStretchLastSection(true);
    connect(lista_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* actual) {
        form_.seleccionado = actual ? lista_->indexOfTopLevelItem(actual) : -1;
    });
    connect(lista_, &QTreeWidget::itemDoubleClicked, this, [this] { modificar(); });

    auto* anadirB = boton(QStringLiteral("cmdAnadir"), QStringLiteral("&Añadir"));
    auto* modificarB = boton(QStringLiteral("cmdModificar"), QStringLiteral("&Modificar"));
    auto* eliminarB = boton(QStringLiteral("cmdEliminar"), QStringLiteral("&Eliminar"));
    auto* refrescarB = boton(QStringLiteral("cmdRefrescar"), QStringLiteral("&Refrescar"));
    auto* cerrarB = boton(QStringLiteral("cmdCerrar"), QStringLiteral("&Cerrar"));
    connect(anadirB, &QPushButton::clicked, this, &EditorListaWindow::anadir);
    connect(modificarB, &QPushButton::clicked, this, &EditorListaWindow::modificar);
    connect(eliminarB, &QPushButton::clicked, this, &EditorListaWindow::eliminar);
    connect(refrescarB, &QPushButton::clicked, this, &EditorListaWindow::refrescar);
    connect(cerrarB, &QPushButton::clicked, this, &QDialog::reject);

    auto* botones = new QVBoxLayout;
    for (auto* b : {anadirB, modificarB, eliminarB, refrescarB})
        botones->addWidget(b);
    botones->addStretch();
    botones->addWidget(cerrarB);

    auto* capa = new QHBoxLayout(this);
    capa->addWidget(lista_, 1);
    capa->addLayout(botones);
    resize(640, 420);

    refrescar();
}

void EditorListaWindow::mostrar() {
    const DescriptorTabla& t = form_.descriptor();
    const int sel = form_.seleccionado;
    QSignalBlocker bloqueo(lista_);
    lista_->clear();
    QList<QTreeWidgetItem*> filas;
    for (int f = 0; f < form_.filas(); ++f) {
        auto* item = new QTreeWidgetItem;
        for (int c = 0; c < form_.columnas(); ++c) {
            item->setText(c, form_.textoCelda(f, c));
            if (alinearDerecha(t.columnaS.at(c)))
                item->setTextAlignment(c, Qt::AlignRight | Qt::AlignVCenter);
        }
        filas << item;
    }
    lista_->addTopLevelItems(filas);
    for (int c = 0; c < form_.columnas() - 1; ++c) {
        lista_->resizeColumnToContents(c);
        lista_->setColumnWidth(c, std::min(std::max(lista_->columnWidth(c), 70), 260));
    }
    if (sel >= 0 && sel < lista_->topLevelItemCount()) {
        lista_->setCurrentItem(lista_->topLevelItem(sel));
        form_.seleccionado = sel;
    } else {
        form_.seleccionado = -1;
    }
}

void EditorListaWindow::refrescar() {
    form_.refrescar();
    mostrar();
}

void EditorListaWindow::anadir() {
    FichaWindow ficha(form_.nuevaFicha(), this);
    if (ficha.exec() == QDialog::Accepted) {
        form_.guardado(ficha.form().registro());
        mostrar();
    }
}

void EditorListaWindow::modificar() {
    auto f = form_.fichaSeleccionada();
    if (!f) {
        mostrar();
        return;
    }
    FichaWindow ficha(std::move(*f), this);
    if (ficha.exec() == QDialog::Accepted) {
        form_.guardado(ficha.form().registro());
        mostrar();
    }
}

void EditorListaWindow::eliminar() {
    form_.eliminar();
    mostrar();
}

bool abrirEditorTabla(Entorno& entorno, const QString& tabla, QWidget* padre) {
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t) return false;
    if (t->esArbol()) {
        EditorArbolWindow ventana(entorno, *t, padre);
        ventana.exec();
    } else {
        EditorListaWindow ventana(entorno, *t, padre);
        ventana.exec();
    }
    return true;
}
