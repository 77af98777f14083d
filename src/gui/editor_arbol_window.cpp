#include "gui/editor_arbol_window.h"

#include "gui/ficha_window.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStack>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
QPushButton* boton(const QString& nombre, const QString& texto) {
    auto* b = new QPushButton(texto);
    b->setObjectName(nombre);
    b->setAutoDefault(false);
    return b;
}
} // namespace

EditorArbolWindow::EditorArbolWindow(Entorno& entorno, const DescriptorTabla& tabla, QWidget* padre)
    : QDialog(padre), form_(entorno, tabla) {
    setObjectName(QStringLiteral("frmEditorArbol"));
    setWindowTitle(form_.titulo());
    setModal(true);

    arbol_ = new QTreeWidget;
    arbol_->setObjectName(QStringLiteral("arbRegistros"));
    arbol_->setHeaderLabels({form_.cabecera()});
    arbol_->setSelectionMode(QAbstractItemView::SingleSelection);
    connect(arbol_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* actual) {
        form_.seleccionado = actual ? actual->data(0, Qt::UserRole).toString() : QString();
    });
    connect(arbol_, &QTreeWidget::itemDoubleClicked, this, [this] { modificar(); });

    auto* raizB = boton(QStringLiteral("cmdAnadirRaiz"), QStringLiteral("Añadir &raíz"));
    auto* hijoB = boton(QStringLiteral("cmdAnadirHijo"), QStringLiteral("Añadir &hijo"));
    auto* modificarB = boton(QStringLiteral("cmdModificar"), QStringLiteral("&Modificar"));
    auto* eliminarB = boton(QStringLiteral("cmdEliminar"), QStringLiteral("&Eliminar"));
    auto* refrescarB = boton(QStringLiteral("cmdRefrescar"), QStringLiteral("Re&frescar"));
    auto* cerrarB = boton(QStringLiteral("cmdCerrar"), QStringLiteral("&Cerrar"));
    connect(raizB, &QPushButton::clicked, this, &EditorArbolWindow::anadirRaiz);
    connect(hijoB, &QPushButton::clicked, this, &EditorArbolWindow::anadirHijo);
    connect(modificarB, &QPushButton::clicked, this, &EditorArbolWindow::modificar);
    connect(eliminarB, &QPushButton::clicked, this, &EditorArbolWindow::eliminar);
    connect(refrescarB, &QPushButton::clicked, this, &EditorArbolWindow::refrescar);
    connect(cerrarB, &QPushButton::clicked, this, &QDialog::reject);

    auto* botones = new QVBoxLayout;
    for (auto* b : {raizB, hijoB, modificarB, eliminarB, refrescarB})
        botones->addWidget(b);
    botones->addStretch();
    botones->addWidget(cerrarB);

    auto* capa = new QHBoxLayout(this);
    capa->addWidget(arbol_, 1);
    capa->addLayout(botones);
    resize(560, 440);

    refrescar();
}

void EditorArbolWindow::mostrar() {
    const QString seleccion = form_.seleccionado;
    QSignalBlocker bloqueo(arbol_);
    arbol_->clear();
    QTreeWidgetItem* elegido = nullptr;
    // Built without recursion: a long chain of parents cannot exhaust the stack.
    QStack<QPair<QString, QTreeWidgetItem*>> pendientes;
    const QStringList& raices = form_.raices();
    for (auto it = raices.crbegin(); it != raices.crend(); ++it)
        pendientes.push({*it, nullptr});
    while (!pendientes.isEmpty()) {
        const auto [clave, padre] = pendientes.pop();
        const NodoArbol* n = form_.nodo(clave);
        if (!n) continue;
        auto* item = padre ? new QTreeWidgetItem(padre) : new QTreeWidgetItem(arbol_);
        item->setText(0, n->texto);
        item->setData(0, Qt::UserRole, n->clave);
        if (n->clave == seleccion) elegido = item;
        for (auto h = n->hijos.crbegin(); h != n->hijos.crend(); ++h)
            pendientes.push({*h, item});
    }
    arbol_->expandAll();
    if (elegido) arbol_->setCurrentItem(elegido);
    form_.seleccionado = elegido ? seleccion : QString();
}

void EditorArbolWindow::refrescar() {
    form_.refrescar();
    mostrar();
}

void EditorArbolWindow::abrirFicha(FichaForm ficha) {
    FichaWindow ventana(std::move(ficha), this);
    if (ventana.exec() == QDialog::Accepted) form_.guardado(ventana.form().registro());
    mostrar();
}

void EditorArbolWindow::anadirRaiz() {
    abrirFicha(form_.nuevaRaiz());
}

void EditorArbolWindow::anadirHijo() {
    if (auto f = form_.nuevoHijo()) abrirFicha(std::move(*f));
}

void EditorArbolWindow::modificar() {
    if (auto f = form_.fichaSeleccionada())
        abrirFicha(std::move(*f));
    else
        mostrar();
}

void EditorArbolWindow::eliminar() {
    form_.eliminar();
    mostrar();
}
