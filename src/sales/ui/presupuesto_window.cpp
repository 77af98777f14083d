#include "sales/ui/presupuesto_window.h"
#include "gui/controles.h"

#include "core/formatos.h"
#include "gui/traer_al_frente.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

PresupuestoWindow::PresupuestoWindow(Entorno& e, QWidget* padre) : QWidget(padre), form_(e) {
    setObjectName(QStringLiteral("frmPresupuestos"));
    form_.traerAlFrente = [this] { traerAlFrente(this); };
    cliente_ = new QLabel;
    cliente_->setObjectName(QStringLiteral("lblCliente"));
    auto* elegir = boton(QStringLiteral("cmdCliente"), QStringLiteral("Cliente..."));
    mascota_ = new QComboBox;
    mascota_->setObjectName(QStringLiteral("cboMascota"));
    mascota_->setMinimumWidth(160);
    fecha_ = new QLineEdit;
    fecha_->setObjectName(QStringLiteral("txtFecha"));
    fecha_->setMaximumWidth(100);
    vendedor_ = new QComboBox;
    vendedor_->setObjectName(QStringLiteral("cboVendedor"));
    estado_ = new QLabel;
    estado_->setObjectName(QStringLiteral("lblEstado"));
    QFont negrita = estado_->font();
    negrita.setBold(true);
    estado_->setFont(negrita);
    connect(elegir, &QPushButton::clicked, this, [this] {
        form_.elegirCliente();
        mostrar();
    });
    connect(mascota_, &QComboBox::currentIndexChanged, this, [this] {
        if (!actualizando_) form_.ponerMascota(claveElegida(mascota_));
    });
    connect(fecha_, &QLineEdit::editingFinished, this, [this] {
        if (!actualizando_ && fecha_->isModified() && !form_.setFecha(fecha_->text())) mostrar();
        fecha_->setModified(false);
    });
    connect(vendedor_, &QComboBox::currentIndexChanged, this, [this] {
        if (!actualizando_) form_.setVendedor(claveElegida(vendedor_));
    });

    lineas_ = new QTreeWidget;
    lineas_->setObjectName(QStringLiteral("grdLineas"));
    lineas_->setHeaderLabels(AlbaranForm::columnas());
    lineas_->setRootIsDecorated(false);
    lineas_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    articulo_ = new QLineEdit;
    articulo_->setObjectName(QStringLiteral("txtArticulo"));
    articulo_->setPlaceholderText(QStringLiteral("Código"));
    articulo_->setMaximumWidth(90);
    cantidad_ = new QLineEdit(QStringLiteral("1"));
    cantidad_->setObjectName(QStringLiteral("txtCantidad"));
    cantidad_->setMaximumWidth(70);
    auto* anadir = boton(QStringLiteral("cmdAnadir"), QStringLiteral("Añadir"));
    auto* buscarArt = boton(QStringLiteral("cmdBuscarArticulo"), QStringLiteral("Buscar artículo..."));
    auto* quitar = boton(QStringLiteral("cmdQuitar"), QStringLiteral("Quitar línea"));
    connect(anadir, &QPushButton::clicked, this, [this] {
        if (form_.anadirArticulo(articulo_->text(), cantidad_->text())) articulo_->clear();
        mostrar();
    });
    connect(buscarArt, &QPushButton::clicked, this, [this] {
        form_.buscarArticulo(cantidad_->text());
        mostrar();
    });
    connect(quitar, &QPushButton::clicked, this, [this] {
        form_.quitarLinea(lineas_->indexOfTopLevelItem(lineas_->currentItem()));
        mostrar();
    });
    total_ = new QLabel;
    total_->setObjectName(QStringLiteral("lblTotal"));
    total_->setFont(negrita);

    auto* cabecera = new QFormLayout;
    auto* filaCliente = new QHBoxLayout;
    filaCliente->addWidget(cliente_, 1);
    filaCliente->addWidget(elegir);
    cabecera->addRow(QStringLiteral("Cliente:"), filaCliente);
    auto* fila2 = new QHBoxLayout;
    fila2->addWidget(mascota_);
    fila2->addWidget(new QLabel(QStringLiteral("Fecha:")));
    fila2->addWidget(fecha_);
    fila2->addWidget(new QLabel(QStringLiteral("Vendedor:")));
    fila2->addWidget(vendedor_, 1);
    fila2->addWidget(estado_);
    cabecera->addRow(QStringLiteral("Mascota:"), fila2);
    auto* entrada = new QHBoxLayout;
    entrada->addWidget(new QLabel(QStringLiteral("Artículo:")));
    entrada->addWidget(articulo_);
    entrada->addWidget(new QLabel(QStringLiteral("Cantidad:")));
    entrada->addWidget(cantidad_);
    entrada->addWidget(anadir);
    entrada->addWidget(buscarArt);
    entrada->addWidget(quitar);
    entrada->addStretch();
    entrada->addWidget(new QLabel(QStringLiteral("TOTAL:")));
    entrada->addWidget(total_);

    auto* nuevo = boton(QStringLiteral("cmdNuevo"), QStringLiteral("Nuevo"));
    auto* abrirBtn = boton(QStringLiteral("cmdAbrir"), QStringLiteral("Presupuestos del cliente..."));
    auto* guardar = boton(QStringLiteral("cmdGuardar"), QStringLiteral("Guardar"));
    auto* imprimir = boton(QStringLiteral("cmdImprimir"), QStringLiteral("Imprimir"));
    auto* convertir = boton(QStringLiteral("cmdConvertir"), QStringLiteral("Convertir en albarán"));
    auto* rechazar = boton(QStringLiteral("cmdRechazar"), QStringLiteral("Rechazar"));
    auto* cerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    for (auto [b, f] : {std::pair{nuevo, &PresupuestoForm::nuevo}, std::pair{abrirBtn, &PresupuestoForm::abrirDelCliente},
                        std::pair{guardar, &PresupuestoForm::guardar}, std::pair{convertir, &PresupuestoForm::convertir},
                        std::pair{rechazar, &PresupuestoForm::rechazar}}) {
        connect(b, &QPushButton::clicked, this, [this, f] {
            (form_.*f)();
            mostrar();
        });
    }
    connect(imprimir, &QPushButton::clicked, this, [this] {
        form_.imprimir();
        mostrar();
    });
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);
    auto* botones = new QHBoxLayout;
    for (auto* b : {nuevo, abrirBtn})
        botones->addWidget(b);
    botones->addStretch();
    for (auto* b : {guardar, imprimir, convertir, rechazar, cerrar})
        botones->addWidget(b);

    auto* capa = new QVBoxLayout(this);
    capa->addLayout(cabecera);
    capa->addWidget(lineas_, 1);
    capa->addLayout(entrada);
    capa->addLayout(botones);
    resize(900, 520);
    mostrar();
}

bool PresupuestoWindow::abrir(const AperturaPresupuesto& apertura) {
    const bool ok = form_.abrir(apertura);
    mostrar();
    return ok;
}

void PresupuestoWindow::mostrar() {
    actualizando_ = true;
    setWindowTitle(form_.titulo());
    const auto& c = form_.cliente();
    cliente_->setText(c ? QString::number(c->id) + QStringLiteral(" - ") + c->nombre + QStringLiteral("   (") +
                              c->tarifa + QLatin1Char(')')
                        : QStringLiteral("Sin cliente seleccionado"));
    mascota_->clear();
    mascota_->addItem(QString());
    for (const auto& m : form_.mascotas())
        mascota_->addItem(m.texto, m.id);
    const auto& doc = form_.presupuesto().documento;
    mascota_->setCurrentIndex(doc.idMascota ? std::max(0, mascota_->findData(*doc.idMascota)) : 0);
    vendedor_->clear();
    vendedor_->addItem(QString());
    for (const auto& v : form_.vendedores())
        vendedor_->addItem(v.texto, v.id);
    vendedor_->setCurrentIndex(doc.idVendedor ? std::max(0, vendedor_->findData(*doc.idVendedor)) : 0);
    fecha_->setText(form_.fecha());
    estado_->setText(form_.textoEstado());
    lineas_->clear();
    for (const auto& l : doc.lineas()) {
        auto* item = new QTreeWidgetItem(lineas_, celdasLinea(l));
        for (int i = 1; i < 6; ++i)
            item->setTextAlignment(i, Qt::AlignRight | Qt::AlignVCenter);
    }
    total_->setText(form_.textoTotal() + QStringLiteral(" €"));
    for (QWidget* w : {static_cast<QWidget*>(mascota_), static_cast<QWidget*>(fecha_), static_cast<QWidget*>(vendedor_),
                       static_cast<QWidget*>(articulo_), static_cast<QWidget*>(cantidad_)})
        w->setEnabled(form_.editable());
    actualizando_ = false;
}

void PresupuestoWindow::closeEvent(QCloseEvent* evento) {
    if (form_.puedeCerrar())
        evento->accept();
    else
        evento->ignore();
}
