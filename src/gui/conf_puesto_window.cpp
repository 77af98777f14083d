#include "gui/conf_puesto_window.h"

#include "core/command_trace.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStyle>
#include <QVBoxLayout>

namespace {
QComboBox* lista(const QString& nombre, const QStringList& valores = {}) {
    auto* c = new QComboBox;
    c->setObjectName(nombre);
    for (const auto& v : valores)
        c->addItem(v, v);
    return c;
}

QLineEdit* campo(const QString& nombre, int longitud, const QString& ejemplo = {}) {
    auto* e = new QLineEdit;
    e->setObjectName(nombre);
    e->setMaxLength(longitud);
    e->setPlaceholderText(ejemplo);
    return e;
}

// Fills a drop-down with an empty first entry and the options.
void llenar(QComboBox* c, const QList<OpcionLista>& opciones) {
    c->clear();
    c->addItem(QString(), QVariant());
    for (const auto& o : opciones)
        c->addItem(o.texto, o.clave);
}

void elegir(QComboBox* c, const QVariant& clave) {
    int i = 0;
    if (!clave.isNull())
        for (int k = 1; k < c->count(); ++k)
            if (c->itemData(k).toString() == clave.toString()) i = k;
    c->setCurrentIndex(i);
}

QString textoDe(QComboBox* c) {
    return c->currentData().isNull() ? QString() : c->currentData().toString();
}
} // namespace

ConfPuestoWindow::ConfPuestoWindow(Entorno& entorno, QWidget* padre)
    : QWidget(padre), e_(entorno), form_(entorno) {
    setObjectName(QStringLiteral("frmConfPuesto"));
    setWindowTitle(QStringLiteral("Datos de la configuración del puesto"));
    form_.setImpresorasSistema(QPrinterInfo::availablePrinterNames());

    // Receipt printer.
    sinImpresora_ = new QRadioButton(QStringLiteral("Sin impresora de tickets"));
    sinImpresora_->setObjectName(QStringLiteral("optSinImpresora"));
    impresoraSistema_ = new QRadioButton(QStringLiteral("Impresora del sistema"));
    impresoraSistema_->setObjectName(QStringLiteral("optImpresoraSistema"));
    impresoraSerie_ = new QRadioButton(QStringLiteral("Impresora en puerto serie"));
    impresoraSerie_->setObjectName(QStringLiteral("optImpresoraSerie"));
    auto* grupoTipo = new QButtonGroup(this);
    grupoTipo->addButton(sinImpresora_, 0);
    grupoTipo->addButton(impresoraSistema_, 1);
    grupoTipo->addButton(impresoraSerie_, 2);
    impresora_ = lista(QStringLiteral("cboImpresora"));
    puerto_ = lista(QStringLiteral("cboPuerto"), ConfPuestoForm::puertos());
    puerto_->setEditable(true);
    puerto_->setToolTip(QStringLiteral("COM1 a COM16, o un dispositivo como /dev/ttyUSB0"));
    velocidad_ = lista(QStringLiteral("cboVelocidad"), ConfPuestoForm::velocidades());
    paridad_ = lista(QStringLiteral("cboParidad"), ConfPuestoForm::paridades());
    bitsDatos_ = lista(QStringLiteral("cboBitsDatos"), ConfPuestoForm::bitsDatos());
    bitsParada_ = lista(QStringLiteral("cboBitsParada"), ConfPuestoForm::bitsParada());
    pasadas_ = new QSpinBox;
    pasadas_->setObjectName(QStringLiteral("spnNumPasadas"));
    pasadas_->setRange(1, ConfPuestoForm::kMaxPasadas);
    cortePapel_ = new QCheckBox(QStringLiteral("Cortar el papel al terminar"));
    cortePapel_->setObjectName(QStringLiteral("chkCortePapel"));

    auto* grpImpresora = new QGroupBox(QStringLiteral("Impresora de tickets"));
    grpImpresora->setObjectName(QStringLiteral("grpImpresora"));
    auto* fImpresora = new QFormLayout(grpImpresora);
    fImpresora->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    fImpresora->addRow(sinImpresora_);
    fImpresora->addRow(impresoraSistema_);
    fImpresora->addRow(QStringLiteral("Impresora:"), impresora_);
    fImpresora->addRow(impresoraSerie_);
    fImpresora->addRow(QStringLiteral("Puerto:"), puerto_);
    fImpresora->addRow(QStringLiteral("Velocidad:"), velocidad_);
    fImpresora->addRow(QStringLiteral("Paridad:"), paridad_);
    fImpresora->addRow(QStringLiteral("Bits de datos:"), bitsDatos_);
    fImpresora->addRow(QStringLiteral("Bits de parada:"), bitsParada_);
    fImpresora->addRow(QStringLiteral("Número de pasadas:"), pasadas_);
    fImpresora->addRow(cortePapel_);

    // Defaults of the workstation.
    serieVenta_ = lista(QStringLiteral("cboSerieVenta"));
    serieAbono_ = lista(QStringLiteral("cboSerieAbono"));
    tarifa_ = lista(QStringLiteral("cboTarifa"));
    tarifa_->addItem(QString(), QVariant());
    for (const auto& t : ConfPuestoForm::tarifas())
        tarifa_->addItem(t, t);
    especie_ = lista(QStringLiteral("cboEspecie"));
    cliente_ = campo(QStringLiteral("txtCliente"), 12);
    articulo_ = campo(QStringLiteral("txtArticulo"), 12);
    const QIcon lupa = style()->standardIcon(QStyle::SP_FileDialogContentsView);
    buscarCliente_ = new QPushButton(lupa, QString());
    buscarCliente_->setObjectName(QStringLiteral("cmdBuscarCliente"));
    buscarArticulo_ = new QPushButton(lupa, QString());
    buscarArticulo_->setObjectName(QStringLiteral("cmdBuscarArticulo"));
    nombreCliente_ = new QLabel;
    nombreCliente_->setObjectName(QStringLiteral("lblCliente"));
    nombreArticulo_ = new QLabel;
    nombreArticulo_->setObjectName(QStringLiteral("lblArticulo"));
    fechaInicial_ = campo(QStringLiteral("txtFechaInicial"), 10, QStringLiteral("dd/mm/aaaa"));
    fechaInicial_->setMaximumWidth(110);

    auto filaBusqueda = [](QLineEdit* numero, QPushButton* lupa, QLabel* nombre) {
        auto* h = new QHBoxLayout;
        numero->setMaximumWidth(90);
        h->addWidget(numero);
        h->addWidget(lupa);
        h->addWidget(nombre, 1);
        return h;
    };
    auto* grpDefecto = new QGroupBox(QStringLiteral("Valores por defecto del puesto"));
    grpDefecto->setObjectName(QStringLiteral("grpDefecto"));
    auto* fDefecto = new QFormLayout(grpDefecto);
    fDefecto->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    fDefecto->addRow(QStringLiteral("Serie de venta (albaranes):"), serieVenta_);
    fDefecto->addRow(QStringLiteral("Serie de abono (devoluciones):"), serieAbono_);
    fDefecto->addRow(QStringLiteral("Tarifa para clientes nuevos:"), tarifa_);
    fDefecto->addRow(QStringLiteral("Especie por defecto:"), especie_);
    fDefecto->addRow(QStringLiteral("Cliente por defecto:"),
                     filaBusqueda(cliente_, buscarCliente_, nombreCliente_));
    fDefecto->addRow(QStringLiteral("Artículo por defecto:"),
                     filaBusqueda(articulo_, buscarArticulo_, nombreArticulo_));
    fDefecto->addRow(QStringLiteral("Fecha inicial:"), fechaInicial_);

    autoGuardado_ = new QSpinBox;
    autoGuardado_->setObjectName(QStringLiteral("spnAutoGuardado"));
    autoGuardado_->setRange(0, ConfPuestoForm::kMaxAutoGuardado);
    autoGuardado_->setSuffix(QStringLiteral(" minutos"));
    autoGuardado_->setSpecialValueText(QStringLiteral("Desactivado"));
    autoGuardado_->setMaximumWidth(160);
    horaCopia_ = campo(QStringLiteral("txtHoraCopia"), 5, QStringLiteral("hh:mm"));
    horaCopia_->setMaximumWidth(110);
    horaCopia_->setToolTip(QStringLiteral("En blanco: sin copia automática"));
    auto* grpAuto = new QGroupBox(QStringLiteral("Autoguardado y copia automática"));
    grpAuto->setObjectName(QStringLiteral("grpAutomatico"));
    auto* fAuto = new QFormLayout(grpAuto);
    fAuto->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    fAuto->addRow(QStringLiteral("Autoguardado cada:"), autoGuardado_);
    fAuto->addRow(QStringLiteral("Hora de la copia automática:"), horaCopia_);

    auto* cmdGuardar = new QPushButton(QStringLiteral("Guardar"));
    cmdGuardar->setObjectName(QStringLiteral("cmdGuardar"));
    auto* cmdCerrar = new QPushButton(QStringLiteral("Cerrar"));
    cmdCerrar->setObjectName(QStringLiteral("cmdCerrar"));
    auto* botones = new QHBoxLayout;
    botones->addStretch();
    botones->addWidget(cmdGuardar);
    botones->addWidget(cmdCerrar);

    auto* derecha = new QVBoxLayout;
    derecha->addWidget(grpDefecto);
    derecha->addWidget(grpAuto);
    derecha->addStretch();
    auto* columnas = new QHBoxLayout;
    columnas->addWidget(grpImpresora, 2);
    columnas->addLayout(derecha, 3);
    auto* capa = new QVBoxLayout(this);
    capa->addLayout(columnas);
    capa->addLayout(botones);

    // Widgets -> form.
    connect(grupoTipo, &QButtonGroup::idClicked, this, [this](int id) {
        form_.impresora.TIPO = QString::number(id);
        activarImpresora();
    });
    connect(impresora_, &QComboBox::currentIndexChanged, this, [this] {
        if (!actualizando_) form_.impresora.IMPRESORA = textoDe(impresora_);
    });
    connect(puerto_, &QComboBox::currentTextChanged, this, [this](const QString& t) {
        if (!actualizando_) form_.impresora.PUERTO = t.trimmed();
    });
    auto enlazar = [this](QComboBox* c, QString ImpresoraTickets::*clave) {
        connect(c, &QComboBox::currentIndexChanged, this, [this, c, clave] {
            if (!actualizando_) form_.impresora.*clave = c->currentText();
        });
    };
    enlazar(velocidad_, &ImpresoraTickets::VELOCIDAD);
    enlazar(paridad_, &ImpresoraTickets::PARIDAD);
    enlazar(bitsDatos_, &ImpresoraTickets::BITSDATOS);
    enlazar(bitsParada_, &ImpresoraTickets::BITSPARADA);
    connect(pasadas_, &QSpinBox::valueChanged, this, [this](int n) {
        if (!actualizando_) form_.impresora.NUMPASADAS = QString::number(n);
    });
    connect(cortePapel_, &QCheckBox::toggled, this, [this](bool si) {
        if (!actualizando_) form_.impresora.CORTEPAPEL = si ? QStringLiteral("SI") : QStringLiteral("NO");
    });
    connect(serieVenta_, &QComboBox::currentIndexChanged, this, [this] {
        if (!actualizando_) form_.serieVenta = textoDe(serieVenta_);
    });
    connect(serieAbono_, &QComboBox::currentIndexChanged, this, [this] {
        if (!actualizando_) form_.serieAbono = textoDe(serieAbono_);
    });
    connect(tarifa_, &QComboBox::currentIndexChanged, this, [this] {
        if (!actualizando_) form_.tarifa = textoDe(tarifa_);
    });
    connect(especie_, &QComboBox::currentIndexChanged, this, [this] {
        if (!actualizando_) form_.especie = especie_->currentData();
    });
    connect(cliente_, &QLineEdit::textEdited, this, [this](const QString& t) {
        form_.escribirCliente(t);
        nombreCliente_->clear();
    });
    connect(articulo_, &QLineEdit::textEdited, this, [this](const QString& t) {
        form_.escribirArticulo(t);
        nombreArticulo_->clear();
    });
    connect(fechaInicial_, &QLineEdit::textEdited, this,
            [this](const QString& t) { form_.fechaInicial = t; });
    connect(autoGuardado_, &QSpinBox::valueChanged, this, [this](int n) {
        if (!actualizando_) form_.autoGuardado = n;
    });
    connect(horaCopia_, &QLineEdit::textEdited, this, [this](const QString& t) { form_.horaCopia = t; });
    connect(buscarCliente_, &QPushButton::clicked, this, &ConfPuestoWindow::buscarCliente);
    connect(buscarArticulo_, &QPushButton::clicked, this, &ConfPuestoWindow::buscarArticulo);
    connect(cmdGuardar, &QPushButton::clicked, this, &ConfPuestoWindow::guardar);
    connect(cmdCerrar, &QPushButton::clicked, this, &QWidget::close);

    form_.cargar();
    mostrar();
    resize(820, sizeHint().height());
}

void ConfPuestoWindow::mostrar() {
    actualizando_ = true;
    const ImpresoraTickets& i = form_.impresora;
    sinImpresora_->setChecked(i.TIPO == ConfPuestoForm::kSinImpresora);
    impresoraSistema_->setChecked(i.TIPO == ConfPuestoForm::kImpresoraSistema);
    impresoraSerie_->setChecked(i.TIPO == ConfPuestoForm::kImpresoraSerie);
    impresora_->clear();
    impresora_->addItem(QString(), QVariant());
    for (const auto& n : form_.impresorasSistema())
        impresora_->addItem(n, n);
    elegir(impresora_, i.IMPRESORA.isEmpty() ? QVariant() : QVariant(i.IMPRESORA));
    if (puerto_->findText(i.PUERTO) < 0) puerto_->addItem(i.PUERTO, i.PUERTO);
    puerto_->setCurrentText(i.PUERTO);
    velocidad_->setCurrentText(i.VELOCIDAD);
    paridad_->setCurrentText(i.PARIDAD);
    bitsDatos_->setCurrentText(i.BITSDATOS);
    bitsParada_->setCurrentText(i.BITSPARADA);
    pasadas_->setValue(i.NUMPASADAS.toInt());
    cortePapel_->setChecked(i.CORTEPAPEL == QStringLiteral("SI"));

    llenar(serieVenta_, form_.seriesVenta());
    elegir(serieVenta_, form_.serieVenta.isEmpty() ? QVariant() : QVariant(form_.serieVenta));
    llenar(serieAbono_, form_.seriesAbono());
    elegir(serieAbono_, form_.serieAbono.isEmpty() ? QVariant() : QVariant(form_.serieAbono));
    elegir(tarifa_, form_.tarifa.isEmpty() ? QVariant() : QVariant(form_.tarifa));
    llenar(especie_, form_.especies());
    elegir(especie_, form_.especie);
    especie_->setEnabled(form_.tablaEspecies() != nullptr);
    if (!form_.tablaEspecies()) especie_->setToolTip(QStringLiteral("La tabla de especies aún no existe."));
    cliente_->setText(form_.textoCliente());
    nombreCliente_->setText(form_.nombreCliente());
    articulo_->setText(form_.textoArticulo());
    nombreArticulo_->setText(form_.nombreArticulo());
    buscarCliente_->setEnabled(form_.tablaClientes() != nullptr);
    buscarCliente_->setToolTip(form_.tablaClientes()
                                   ? QStringLiteral("Buscar el cliente por defecto")
                                   : QStringLiteral("La búsqueda de clientes aún no está disponible."));
    buscarArticulo_->setEnabled(form_.tablaArticulos() != nullptr);
    buscarArticulo_->setToolTip(form_.tablaArticulos()
                                    ? QStringLiteral("Buscar el artículo por defecto")
                                    : QStringLiteral("La búsqueda de artículos aún no está disponible."));
    fechaInicial_->setText(form_.fechaInicial);
    autoGuardado_->setValue(form_.autoGuardado);
    horaCopia_->setText(form_.horaCopia);
    actualizando_ = false;
    activarImpresora();
}

void ConfPuestoWindow::activarImpresora() {
    const QString& tipo = form_.impresora.TIPO;
    impresora_->setEnabled(tipo == ConfPuestoForm::kImpresoraSistema);
    for (QWidget* w :
         {static_cast<QWidget*>(puerto_), static_cast<QWidget*>(velocidad_), static_cast<QWidget*>(paridad_),
          static_cast<QWidget*>(bitsDatos_), static_cast<QWidget*>(bitsParada_)})
        w->setEnabled(tipo == ConfPuestoForm::kImpresoraSerie);
    pasadas_->setEnabled(tipo != ConfPuestoForm::kSinImpresora);
    cortePapel_->setEnabled(tipo != ConfPuestoForm::kSinImpresora);
}

void ConfPuestoWindow::ponerFoco() {
    QWidget* w = nullptr;
    switch (form_.foco()) {
    case ConfPuestoForm::Campo::Impresora:
        w = impresora_->isEnabled() ? static_cast<QWidget*>(impresora_)
                                    : static_cast<QWidget*>(sinImpresora_);
        break;
    case ConfPuestoForm::Campo::SerieVenta:
        w = serieVenta_;
        break;
    case ConfPuestoForm::Campo::Tarifa:
        w = tarifa_;
        break;
    case ConfPuestoForm::Campo::SerieAbono:
        w = serieAbono_;
        break;
    case ConfPuestoForm::Campo::Cliente:
        w = cliente_;
        break;
    case ConfPuestoForm::Campo::Articulo:
        w = articulo_;
        break;
    case ConfPuestoForm::Campo::Especie:
        w = especie_;
        break;
    case ConfPuestoForm::Campo::Puerto:
        w = puerto_;
        break;
    case ConfPuestoForm::Campo::NumPasadas:
        w = pasadas_;
        break;
    case ConfPuestoForm::Campo::FechaInicial:
        w = fechaInicial_;
        break;
    case ConfPuestoForm::Campo::AutoGuardado:
        w = autoGuardado_;
        break;
    case ConfPuestoForm::Campo::HoraCopia:
        w = horaCopia_;
        break;
    }
    if (w) w->setFocus();
}

void ConfPuestoWindow::guardar() {
    if (form_.guardar())
        emit guardado();
    else
        ponerFoco();
}

std::optional<qint64> ConfPuestoWindow::elegirDeLista(const DescriptorTabla* tabla, const QString& titulo,
                                                      const QString& etiqueta) {
    std::optional<qint64> elegido;
    if (!tabla) return elegido;
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar un ") + tabla->descTabla +
                                         QStringLiteral(" en los 'Datos de la configuración del puesto'"));
    traza.ejecutar([&] {
        const QList<OpcionLista> opciones = form_.opciones(tabla);
        QStringList textos;
        for (const auto& o : opciones)
            textos << o.clave.toString() + QStringLiteral(" - ") + o.texto;
        if (textos.isEmpty()) {
            e_.dialogs().informar(titulo, QStringLiteral("No hay ningún registro que elegir."));
            return;
        }
        bool ok = false;
        const QString texto = QInputDialog::getItem(this, titulo, etiqueta, textos, 0, false, &ok);
        const qsizetype i = textos.indexOf(texto);
        if (ok && i >= 0) elegido = opciones.at(i).clave.toLongLong();
    });
    return elegido;
}

void ConfPuestoWindow::buscarCliente() {
    const auto n = buscadorCliente_ ? buscadorCliente_()
                                    : elegirDeLista(form_.tablaClientes(), QStringLiteral("Buscar cliente"),
                                                    QStringLiteral("Cliente:"));
    if (n) form_.elegirCliente(*n);
    cliente_->setText(form_.textoCliente());
    nombreCliente_->setText(form_.nombreCliente());
}

void ConfPuestoWindow::buscarArticulo() {
    const auto n = buscadorArticulo_
                       ? buscadorArticulo_()
                       : elegirDeLista(form_.tablaArticulos(), QStringLiteral("Buscar artículo"),
                                       QStringLiteral("Artículo:"));
    if (n) form_.elegirArticulo(*n);
    articulo_->setText(form_.textoArticulo());
    nombreArticulo_->setText(form_.nombreArticulo());
}
