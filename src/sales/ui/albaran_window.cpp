#include "sales/ui/albaran_window.h"
#include "gui/controles.h"

#include "gui/traer_al_frente.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
QLineEdit* linea(const QString& nombre, int ancho = 0) {
    auto* l = new QLineEdit;
    l->setObjectName(nombre);
    if (ancho > 0) l->setMaximumWidth(ancho);
    return l;
}
QComboBox* combo(const QString& nombre) {
    auto* c = new QComboBox;
    c->setObjectName(nombre);
    return c;
}
QLabel* etiqueta(const QString& nombre, Qt::Alignment alineacion = Qt::AlignLeft | Qt::AlignVCenter) {
    auto* l = new QLabel;
    l->setObjectName(nombre);
    l->setAlignment(alineacion);
    return l;
}
void elegirDato(QComboBox* c, const QVariant& dato) {
    const int i = c->findData(dato);
    c->setCurrentIndex(i >= 0 ? i : 0);
}
} // namespace

AlbaranWindow::AlbaranWindow(Entorno& entorno, QWidget* padre) : QWidget(padre), e_(entorno), form_(entorno) {
    setObjectName(QStringLiteral("frmAlbaranes"));
    form_.traerAlFrente = [this] { traerAlFrente(this); };

    // Commands.
    auto* barra = new QHBoxLayout;
    const QList<std::pair<QPushButton*, void (AlbaranWindow::*)()>> comandos = {
        {boton(QStringLiteral("cmdNuevo"), QStringLiteral("&Nuevo")), &AlbaranWindow::nuevo},
        {boton(QStringLiteral("cmdBuscar"), QStringLiteral("&Buscar...")), &AlbaranWindow::buscar},
        {boton(QStringLiteral("cmdGuardar"), QStringLiteral("&Guardar")), &AlbaranWindow::guardar},
        {boton(QStringLiteral("cmdEliminar"), QStringLiteral("&Eliminar")), &AlbaranWindow::eliminar},
        {boton(QStringLiteral("cmdImprimir"), QStringLiteral("&Imprimir...")), &AlbaranWindow::imprimir},
        {boton(QStringLiteral("cmdNotaVenta"), QStringLiteral("Nota de &venta...")),
         &AlbaranWindow::notaVenta},
        {boton(QStringLiteral("cmdTicket"), QStringLiteral("&Ticket")), &AlbaranWindow::ticket}};
    for (const auto& [b, accion] : comandos) {
        connect(b, &QPushButton::clicked, this, accion);
        barra->addWidget(b);
    }
    barra->addStretch();
    pagos_ = boton(QStringLiteral("cmdPagos"), QStringLiteral("Pa&gos Albarán"));
    connect(pagos_, &QPushButton::clicked, this, [this] {
        if (form_.albaran().IdAlbaran && form_.abrirCobros) form_.abrirCobros(*form_.albaran().IdAlbaran);
    });
    barra->addWidget(pagos_);

    // Header.
    cliente_ = linea(QStringLiteral("txtCliente"));
    cliente_->setReadOnly(true);
    auto* elegirCliente = boton(QStringLiteral("cmdCliente"), QStringLiteral("..."));
    elegirCliente->setMaximumWidth(32);
    connect(elegirCliente, &QPushButton::clicked, this, [this] {
        form_.elegirCliente();
        refrescar();
    });
    mascota_ = combo(QStringLiteral("cboMascota"));
    connect(mascota_, &QComboBox::activated, this, [this] {
        const QVariant d = mascota_->currentData();
        form_.ponerMascota(d.isValid() ? std::optional<qint64>(d.toLongLong()) : std::nullopt);
        refrescar();
    });
    fecha_ = linea(QStringLiteral("txtFecha"), 100);
    hora_ = linea(QStringLiteral("txtHora"), 60);
    retencion_ = linea(QStringLiteral("txtRetencion"), 70);
    connect(fecha_, &QLineEdit::editingFinished, this, [this] {
        if (fecha_->text() != form_.fecha()) form_.setFecha(fecha_->text());
    });
    connect(hora_, &QLineEdit::editingFinished, this, [this] {
        if (hora_->text() != form_.hora()) form_.setHora(hora_->text());
    });
    connect(retencion_, &QLineEdit::editingFinished, this, [this] {
        if (retencion_->text() != form_.retencion()) form_.setRetencion(retencion_->text());
    });
    serie_ = combo(QStringLiteral("cboSerie"));
    connect(serie_, &QComboBox::activated, this, [this] { form_.setSerie(serie_->currentText()); });
    numero_ = etiqueta(QStringLiteral("lblNumero"));
    vendedor_ = combo(QStringLiteral("cboVendedor"));
    connect(vendedor_, &QComboBox::activated, this, [this] {
        const QVariant d = vendedor_->currentData();
        form_.setVendedor(d.isValid() ? std::optional<qint64>(d.toLongLong()) : std::nullopt);
    });
    exento_ = new QCheckBox(QStringLiteral("Exento de I.V.A."));
    exento_->setObjectName(QStringLiteral("chkExento"));
    connect(exento_, &QCheckBox::clicked, this, [this](bool marcado) { form_.setExento(marcado); });
    deuda_ = etiqueta(QStringLiteral("lblDeuda"));
    plan_ = etiqueta(QStringLiteral("lblPlan"));
    variasFacturas_ = etiqueta(QStringLiteral("lblVariasFacturas"));
    estado_ = etiqueta(QStringLiteral("lblEstado"));

    auto* cabecera = new QGroupBox(QStringLiteral("Albarán"));
    auto* g = new QGridLayout(cabecera);
    auto* filaCliente = new QHBoxLayout;
    filaCliente->addWidget(cliente_, 1);
    filaCliente->addWidget(elegirCliente);
    g->addWidget(new QLabel(QStringLiteral("Cliente:")), 0, 0);
    g->addLayout(filaCliente, 0, 1, 1, 3);
    g->addWidget(new QLabel(QStringLiteral("Mascota:")), 0, 4);
    g->addWidget(mascota_, 0, 5, 1, 3);
    g->addWidget(new QLabel(QStringLiteral("Fecha:")), 1, 0);
    g->addWidget(fecha_, 1, 1);
    g->addWidget(new QLabel(QStringLiteral("Hora:")), 1, 2);
    g->addWidget(hora_, 1, 3);
    g->addWidget(new QLabel(QStringLiteral("Serie:")), 1, 4);
    g->addWidget(serie_, 1, 5);
    g->addWidget(new QLabel(QStringLiteral("Nº:")), 1, 6);
    g->addWidget(numero_, 1, 7);
    g->addWidget(new QLabel(QStringLiteral("Vendedor:")), 2, 0);
    g->addWidget(vendedor_, 2, 1, 1, 3);
    g->addWidget(new QLabel(QStringLiteral("% Retención:")), 2, 4);
    g->addWidget(retencion_, 2, 5);
    g->addWidget(exento_, 2, 6, 1, 2);
    auto* marcas = new QHBoxLayout;
    marcas->addWidget(deuda_);
    marcas->addSpacing(16);
    marcas->addWidget(plan_);
    marcas->addSpacing(16);
    marcas->addWidget(variasFacturas_);
    marcas->addStretch();
    marcas->addWidget(estado_);
    g->addLayout(marcas, 3, 0, 1, 8);
    g->setColumnStretch(1, 2);
    g->setColumnStretch(5, 1);

    // Editing row.
    codArticulo_ = linea(QStringLiteral("txtCodArticulo"), 70);
    connect(codArticulo_, &QLineEdit::returnPressed, this, &AlbaranWindow::articuloTecleado);
    auto* buscarArt = boton(QStringLiteral("cmdBuscarArticulo"), QStringLiteral("..."));
    buscarArt->setMaximumWidth(32);
    connect(buscarArt, &QPushButton::clicked, this, &AlbaranWindow::buscarArticulo);
    concepto_ = linea(QStringLiteral("txtConcepto"));
    concepto_->setMaxLength(100);
    cantidad_ = linea(QStringLiteral("txtCantidad"), 70);
    precio_ = linea(QStringLiteral("txtPrecio"), 80);
    dto_ = linea(QStringLiteral("txtDto"), 60);
    iva_ = combo(QStringLiteral("cboIVA"));
    auto* insertar = boton(QStringLiteral("cmdInsertar"), QStringLiteral("&Añadir"));
    auto* modificar = boton(QStringLiteral("cmdModificar"), QStringLiteral("&Modificar"));
    auto* quitar = boton(QStringLiteral("cmdQuitar"), QStringLiteral("&Quitar"));
    connect(insertar, &QPushButton::clicked, this, &AlbaranWindow::insertarLinea);
    connect(modificar, &QPushButton::clicked, this, &AlbaranWindow::modificarLinea);
    connect(quitar, &QPushButton::clicked, this, &AlbaranWindow::quitarLinea);
    auto* edicion = new QGridLayout;
    const QStringList titulos = {QStringLiteral("Código"),   QStringLiteral("Concepto"),
                                 QStringLiteral("Cantidad"), QStringLiteral("P.V.P."),
                                 QStringLiteral("% Dto."),   QStringLiteral("I.V.A.")};
    for (int i = 0; i < titulos.size(); ++i)
        edicion->addWidget(new QLabel(titulos.at(i)), 0, i == 0 ? 0 : i + 1);
    edicion->addWidget(codArticulo_, 1, 0);
    edicion->addWidget(buscarArt, 1, 1);
    edicion->addWidget(concepto_, 1, 2);
    edicion->addWidget(cantidad_, 1, 3);
    edicion->addWidget(precio_, 1, 4);
    edicion->addWidget(dto_, 1, 5);
    edicion->addWidget(iva_, 1, 6);
    edicion->addWidget(insertar, 1, 7);
    edicion->addWidget(modificar, 1, 8);
    edicion->addWidget(quitar, 1, 9);
    edicion->setColumnStretch(2, 1);

    // Grid.
    lineas_ = new QTableWidget(0, AlbaranForm::columnas().size());
    lineas_->setObjectName(QStringLiteral("grdLineas"));
    lineas_->setHorizontalHeaderLabels(AlbaranForm::columnas());
    lineas_->setSelectionBehavior(QAbstractItemView::SelectRows);
    lineas_->setSelectionMode(QAbstractItemView::SingleSelection);
    lineas_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lineas_->verticalHeader()->hide();
    lineas_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int c = 1; c < lineas_->columnCount(); ++c)
        lineas_->horizontalHeader()->setSectionResizeMode(c, QHeaderView::ResizeToContents);
    connect(lineas_, &QTableWidget::itemSelectionChanged, this, &AlbaranWindow::filaElegida);

    // Totals.
    auto* totales = new QGridLayout;
    const QList<std::pair<QString, QLabel**>> cifras = {
        {QStringLiteral("Total bruto"), &bruto_}, {QStringLiteral("Base imponible"), &base_},
        {QStringLiteral("I.V.A."), &totalIva_},   {QStringLiteral("Retención"), &retencionTotal_},
        {QStringLiteral("Total"), &total_},       {QStringLiteral("Pendiente"), &pendiente_}};
    const QStringList nombres = {QStringLiteral("lblTotalBruto"), QStringLiteral("lblBaseImponible"),
                                 QStringLiteral("lblTotalIVA"),   QStringLiteral("lblRetencion"),
                                 QStringLiteral("lblTotal"),      QStringLiteral("lblPendiente")};
    for (int i = 0; i < cifras.size(); ++i) {
        auto* titulo = new QLabel(cifras.at(i).first);
        titulo->setAlignment(Qt::AlignRight);
        QLabel* valor = etiqueta(nombres.at(i), Qt::AlignRight | Qt::AlignVCenter);
        valor->setFrameShape(QFrame::StyledPanel);
        valor->setMinimumWidth(100);
        *cifras.at(i).second = valor;
        totales->addWidget(titulo, 0, i);
        totales->addWidget(valor, 1, i);
    }
    QFont grande = total_->font();
    grande.setBold(true);
    total_->setFont(grande);

    auto* capa = new QVBoxLayout(this);
    capa->addLayout(barra);
    capa->addWidget(cabecera);
    capa->addLayout(edicion);
    capa->addWidget(lineas_, 1);
    capa->addLayout(totales);

    editables_ = {elegirCliente, mascota_, fecha_,       hora_,     serie_,    vendedor_,
                  retencion_,    exento_,  codArticulo_, buscarArt, concepto_, cantidad_,
                  precio_,       dto_,     iva_,         insertar,  modificar, quitar};
    form_.cambiado = [this] { refrescar(); };
    resize(960, 620);
    mostrarEntrada(EntradaLineaAlbaran());
    refrescar();
}

bool AlbaranWindow::abrir(const AperturaAlbaran& apertura) {
    const bool ok = form_.abrir(apertura);
    refrescar();
    return ok;
}

void AlbaranWindow::refrescar() {
    const Albaran& a = form_.albaran();
    setWindowTitle(form_.titulo());
    const auto& cliente = form_.cliente();
    cliente_->setText(cliente ? cliente->nombre : QString());
    {
        const QSignalBlocker b(mascota_);
        mascota_->clear();
        mascota_->addItem(QString());
        for (const OpcionVenta& m : form_.mascotasCliente())
            mascota_->addItem(m.texto, m.id);
        elegirDato(mascota_, a.idMascota ? QVariant(*a.idMascota) : QVariant());
    }
    fecha_->setText(form_.fecha());
    hora_->setText(form_.hora());
    retencion_->setText(form_.retencion());
    {
        const QSignalBlocker b(serie_);
        serie_->clear();
        serie_->addItems(form_.series());
        serie_->setCurrentText(a.serie);
    }
    numero_->setText(a.numAlbaran ? QString::number(*a.numAlbaran) : QString());
    {
        const QSignalBlocker b(vendedor_);
        vendedor_->clear();
        vendedor_->addItem(QString());
        for (const OpcionVenta& v : form_.vendedores())
            vendedor_->addItem(v.texto, v.id);
        elegirDato(vendedor_, a.idVendedor ? QVariant(*a.idVendedor) : QVariant());
    }
    {
        const QSignalBlocker b(exento_);
        exento_->setChecked(a.exento());
    }
    {
        const QSignalBlocker b(iva_);
        const QVariant actual = iva_->currentData();
        iva_->clear();
        iva_->addItem(QString());
        for (const OpcionVenta& t : form_.tiposIVA())
            iva_->addItem(t.texto, t.id);
        elegirDato(iva_, actual);
    }
    deuda_->setText(form_.textoDeuda());
    deuda_->setStyleSheet(form_.hayDeuda() ? QStringLiteral("color: #b00000; font-weight: bold;")
                                           : QString());
    deuda_->setToolTip(form_.hayDeuda() ? QStringLiteral("El cliente tiene deuda pendiente") : QString());
    plan_->setText(form_.textoPlan());
    plan_->setStyleSheet(form_.marcaPlan() == MarcaPlan::Caducado ? QStringLiteral("color: #b00000;")
                                                                  : QStringLiteral("color: #006000;"));
    variasFacturas_->setText(form_.textoVariasFacturas());
    estado_->setText(form_.textoEstado());

    {
        const QSignalBlocker b(lineas_);
        lineas_->setRowCount(a.lineas().size());
        for (int f = 0; f < a.lineas().size(); ++f) {
            const QStringList celdas = form_.celdas(f);
            for (int c = 0; c < celdas.size(); ++c) {
                auto* item = new QTableWidgetItem(celdas.at(c));
                if (c > 0) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
                lineas_->setItem(f, c, item);
            }
        }
    }
    bruto_->setText(form_.textoTotal(QStringLiteral("bruto")));
    base_->setText(form_.textoTotal(QStringLiteral("base")));
    totalIva_->setText(form_.textoTotal(QStringLiteral("iva")));
    retencionTotal_->setText(form_.textoTotal(QStringLiteral("retencion")));
    total_->setText(form_.textoTotal(QStringLiteral("total")));
    pendiente_->setText(form_.textoTotal(QStringLiteral("pendiente")));

    const bool editable = form_.editable();
    for (QWidget* w : editables_)
        w->setEnabled(editable);
    serie_->setEnabled(form_.serieEditable());
    pagos_->setText(form_.textoPagos());
    pagos_->setEnabled(!a.esNuevo());
    pagos_->setVisible(static_cast<bool>(form_.abrirCobros)); // once there is a collection screen
}

void AlbaranWindow::mostrarEntrada(const EntradaLineaAlbaran& e) {
    entrada_ = e;
    codArticulo_->setText(e.idArticulo ? QString::number(*e.idArticulo) : QString());
    concepto_->setText(e.concepto);
    cantidad_->setText(e.cantidad);
    precio_->setText(e.pvp);
    dto_->setText(e.descuento);
    elegirDato(iva_, e.idTipoIVA ? QVariant(*e.idTipoIVA) : QVariant());
}

EntradaLineaAlbaran AlbaranWindow::entradaEscrita() const {
    EntradaLineaAlbaran e = entrada_;
    e.concepto = concepto_->text();
    e.cantidad = cantidad_->text();
    e.pvp = precio_->text();
    e.descuento = dto_->text();
    const QVariant iva = iva_->currentData();
    e.idTipoIVA = iva.isValid() ? std::optional<qint64>(iva.toLongLong()) : std::nullopt;
    return e;
}

void AlbaranWindow::articuloTecleado() {
    bool ok = false;
    const qint64 codigo = codArticulo_->text().trimmed().toLongLong(&ok);
    if (!ok) {
        buscarArticulo();
        return;
    }
    if (const auto e = form_.entradaArticulo(codigo)) {
        mostrarEntrada(*e);
        cantidad_->setFocus();
        cantidad_->selectAll();
    }
}

void AlbaranWindow::buscarArticulo() {
    bool numero = false;
    codArticulo_->text().trimmed().toLongLong(&numero);
    if (const auto e = form_.buscarArticulo(numero ? QString() : codArticulo_->text().trimmed())) {
        mostrarEntrada(*e);
        cantidad_->setFocus();
    }
}

void AlbaranWindow::filaElegida() {
    const int fila = lineas_->currentRow();
    if (fila >= 0 && fila < form_.albaran().lineas().size()) mostrarEntrada(form_.entradaDeLinea(fila));
}

void AlbaranWindow::insertarLinea() {
    if (form_.insertarLinea(entradaEscrita())) {
        mostrarEntrada(EntradaLineaAlbaran());
        codArticulo_->setFocus();
    }
}

void AlbaranWindow::modificarLinea() {
    form_.modificarLinea(lineas_->currentRow(), entradaEscrita());
}

void AlbaranWindow::quitarLinea() {
    if (form_.quitarLinea(lineas_->currentRow())) mostrarEntrada(EntradaLineaAlbaran());
}

void AlbaranWindow::nuevo() {
    form_.nuevo();
    mostrarEntrada(EntradaLineaAlbaran());
}

void AlbaranWindow::buscar() {
    form_.buscar();
    mostrarEntrada(EntradaLineaAlbaran());
}

void AlbaranWindow::guardar() {
    form_.guardar();
}

void AlbaranWindow::eliminar() {
    form_.eliminar();
}

void AlbaranWindow::imprimir() {
    form_.imprimir(false);
}

void AlbaranWindow::notaVenta() {
    form_.imprimir(true);
}

void AlbaranWindow::ticket() {
    form_.ticket();
}

void AlbaranWindow::closeEvent(QCloseEvent* evento) {
    if (!form_.cerrar()) {
        evento->ignore();
        return;
    }
    evento->accept();
}
