#include "clients/ui/cliente_window.h"
#include "gui/controles.h"

#include "data/esquema.h"
#include "clients/ui/condiciones_widget.h"
#include "gui/editor_lista_window.h"
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
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
const QString kSi = QStringLiteral("Sí");
const QString kNo = QStringLiteral("No");
const QStringList kSaldos = {QStringLiteral("Deuda"), QStringLiteral("EntregadoCuenta"),
                             QStringLiteral("DevolucionesPendientes"), QStringLiteral("FechaUltimoCobro")};

QString etiqueta(const QString& columna) {
    const DescriptorColumna* c = descriptorRequerido(QStringLiteral("Clientes")).columna(columna);
    QString e = c ? c->Descripcion : columna;
    e.remove(QStringLiteral(" (facturación)"));
    return e + QLatin1Char(':');
}
} // namespace

ClienteWindow::ClienteWindow(Entorno& entorno, QWidget* padre) : QWidget(padre), e_(entorno), form_(entorno) {
    form_.traerAlFrente = [this] { traerAlFrente(this); };
    setObjectName(QStringLiteral("frmMttoCliente"));
    pestanas_ = new QTabWidget;
    pestanas_->setObjectName(QStringLiteral("tabCliente"));
    pestanas_->addTab(pestanaDatos(), QStringLiteral("Datos"));
    pestanas_->addTab(pestanaFacturacion(), QStringLiteral("Facturación"));
    pestanas_->addTab(pestanaFichaComercial(), QStringLiteral("Ficha Comercial"));
    pestanas_->addTab(pestanaNotas(), QStringLiteral("Notas"));
    pestanas_->addTab(pestanaCitas(), QStringLiteral("Citas"));

    auto* nuevoB = boton(QStringLiteral("cmdNuevo"), QStringLiteral("Nuevo"));
    auto* guardarB = boton(QStringLiteral("cmdGuardar"), QStringLiteral("Guardar"));
    auto* eliminarB = boton(QStringLiteral("cmdEliminar"), QStringLiteral("Eliminar"));
    auto* buscarB = boton(QStringLiteral("cmdBuscar"), QStringLiteral("Buscar..."));
    auto* mascotasB = boton(QStringLiteral("cmdMascotas"), QStringLiteral("Mascotas"));
    auto* cartasB = boton(QStringLiteral("cmdCartas"), QStringLiteral("Cartas..."));
    connect(nuevoB, &QPushButton::clicked, this, &ClienteWindow::nuevo);
    connect(guardarB, &QPushButton::clicked, this, &ClienteWindow::guardar);
    connect(eliminarB, &QPushButton::clicked, this, &ClienteWindow::eliminar);
    connect(mascotasB, &QPushButton::clicked, this, [this] { form_.mascotas(); });
    connect(cartasB, &QPushButton::clicked, this, [this] { form_.cartas(); });
    connect(buscarB, &QPushButton::clicked, this, [this] {
        if (form_.buscar()) refrescar();
    });
    auto* botones = new QHBoxLayout;
    botones->addWidget(nuevoB);
    botones->addWidget(guardarB);
    botones->addWidget(eliminarB);
    botones->addWidget(buscarB);
    botones->addStretch();
    botones->addWidget(mascotasB);
    botones->addWidget(cartasB);

    auto* capa = new QVBoxLayout(this);
    capa->addLayout(botones);
    capa->addWidget(pestanas_);
    resize(860, 600);
    refrescar();
}

QWidget* ClienteWindow::campo(const QString& columna) {
    const DescriptorColumna* c = descriptorRequerido(QStringLiteral("Clientes")).columna(columna);
    QWidget* w = nullptr;
    if (kSaldos.contains(columna)) {
        auto* l = new QLineEdit;
        l->setReadOnly(true);
        l->setAlignment(Qt::AlignRight);
        l->setObjectName(QStringLiteral("txt") + columna);
        w = l;
    } else if (c && c->esLista()) {
        auto* cb = new QComboBox;
        cb->setObjectName(QStringLiteral("cbo") + columna);
        cb->addItems(ClienteForm::valoresLista(columna));
        connect(cb, &QComboBox::currentTextChanged, this,
                [this, columna](const QString& t) { aplicar(columna, t); });
        w = cb;
    } else if (c && c->tipo == TipoColumna::Logico) {
        auto* ch = new QCheckBox(c->Descripcion);
        ch->setObjectName(QStringLiteral("chk") + columna);
        connect(ch, &QCheckBox::toggled, this, [this, columna](bool v) { aplicar(columna, v ? kSi : kNo); });
        w = ch;
    } else if (c && c->tipo == TipoColumna::Memo) {
        auto* m = new QPlainTextEdit;
        m->setObjectName(QStringLiteral("txt") + columna);
        connect(m, &QPlainTextEdit::textChanged, this,
                [this, m, columna] { aplicar(columna, m->toPlainText()); });
        w = m;
    } else {
        auto* l = new QLineEdit;
        l->setObjectName(QStringLiteral("txt") + columna);
        if (c && c->longitud > 0) l->setMaxLength(c->longitud);
        connect(l, &QLineEdit::textEdited, this, [this, columna](const QString& t) { aplicar(columna, t); });
        w = l;
    }
    campos_.insert(columna, w);
    return w;
}

QWidget* ClienteWindow::busqueda(const QString& columna) {
    auto* cb = new QComboBox;
    cb->setObjectName(QStringLiteral("cbo") + columna);
    const bool porTexto =
        !columna.contains(QStringLiteral("Id")) && columna != QStringLiteral("CodigoIdioma");
    cb->setEditable(porTexto);
    campos_.insert(columna, cb);
    if (porTexto)
        connect(cb, &QComboBox::currentTextChanged, this,
                [this, columna](const QString& t) { aplicar(columna, t); });
    else
        connect(cb, &QComboBox::currentIndexChanged, this, [this, cb, columna] {
            aplicar(columna, cb->currentData().isValid() ? cb->currentData().toString() : QString());
        });
    auto* mas = boton(QStringLiteral("cmdAnadir") + columna, QStringLiteral("+"));
    mas->setFixedWidth(28);
    mas->setToolTip(QStringLiteral("Añadir un elemento a la lista"));
    connect(mas, &QPushButton::clicked, this, [this, columna] {
        abrirEditorTabla(e_, ClienteForm::tablaParametro(columna), this);
        llenarBusqueda(columna);
    });
    auto* caja = new QWidget;
    auto* capa = new QHBoxLayout(caja);
    capa->setContentsMargins(0, 0, 0, 0);
    capa->addWidget(cb, 1);
    capa->addWidget(mas);
    llenarBusqueda(columna);
    return caja;
}

void ClienteWindow::llenarBusqueda(const QString& columna) {
    auto* cb = qobject_cast<QComboBox*>(campos_.value(columna));
    if (!cb) return;
    const QSignalBlocker bloqueo(cb);
    cb->clear();
    cb->addItem(QString(), QVariant());
    for (const auto& o : form_.opciones(columna))
        cb->addItem(o.texto, o.clave);
    const QString actual = form_.texto(columna);
    if (cb->isEditable()) {
        cb->setCurrentText(actual);
    } else {
        const int i = actual.isEmpty() ? 0 : cb->findData(actual, Qt::UserRole, Qt::MatchExactly);
        cb->setCurrentIndex(i < 0 ? 0 : i);
    }
}

void ClienteWindow::aplicar(const QString& columna, const QString& texto) {
    if (!form_.setTexto(columna, texto)) refrescar();
}

QWidget* ClienteWindow::pestanaDatos() {
    auto* p = new QWidget;
    auto* identidad = new QFormLayout;
    identidad->addRow(etiqueta(QStringLiteral("Nombre")), campo(QStringLiteral("Nombre")));
    identidad->addRow(etiqueta(QStringLiteral("DNI")), campo(QStringLiteral("DNI")));
    identidad->addRow(etiqueta(QStringLiteral("Direccion")), campo(QStringLiteral("Direccion")));
    identidad->addRow(etiqueta(QStringLiteral("Poblacion")), busqueda(QStringLiteral("Poblacion")));
    identidad->addRow(etiqueta(QStringLiteral("CodigoPostal")), busqueda(QStringLiteral("CodigoPostal")));
    identidad->addRow(etiqueta(QStringLiteral("Provincia")), busqueda(QStringLiteral("Provincia")));
    identidad->addRow(etiqueta(QStringLiteral("Clinica")), campo(QStringLiteral("Clinica")));
    identidad->addRow(etiqueta(QStringLiteral("IdTipoCliente")), busqueda(QStringLiteral("IdTipoCliente")));
    identidad->addRow(etiqueta(QStringLiteral("CodigoIdioma")), busqueda(QStringLiteral("CodigoIdioma")));
    identidad->addRow(etiqueta(QStringLiteral("IdFormaContacto")),
                      busqueda(QStringLiteral("IdFormaContacto")));

    auto* contacto = new QFormLayout;
    for (const QString& c :
         {QStringLiteral("Telefono1"), QStringLiteral("Telefono2"), QStringLiteral("Telefono3"),
          QStringLiteral("Fax"), QStringLiteral("Movil"), QStringLiteral("EMail"), QStringLiteral("Facebook"),
          QStringLiteral("ViaComunicacion"), QStringLiteral("LOPD"), QStringLiteral("FechaAlta"),
          QStringLiteral("FechaBaja")})
        contacto->addRow(etiqueta(c), campo(c));

    auto* marcas = new QGroupBox(QStringLiteral("Opciones"));
    auto* capaMarcas = new QVBoxLayout(marcas);
    capaMarcas->addWidget(campo(QStringLiteral("ImpedirDeuda")));
    capaMarcas->addWidget(campo(QStringLiteral("ExentoIVA")));
    auto* extranjero = qobject_cast<QCheckBox*>(campo(QStringLiteral("EmpresaExtranjero")));
    extranjero->setText(QStringLiteral("El cliente es una Empresa con residencia en el extranjero"));
    capaMarcas->addWidget(extranjero);

    auto* saldos = new QGroupBox(QStringLiteral("Saldos"));
    auto* capaSaldos = new QFormLayout(saldos);
    for (const QString& c : kSaldos)
        capaSaldos->addRow(etiqueta(c), campo(c));

    auto* capa = new QGridLayout(p);
    capa->addLayout(identidad, 0, 0);
    capa->addLayout(contacto, 0, 1);
    capa->addWidget(marcas, 1, 0);
    capa->addWidget(saldos, 1, 1);
    capa->setRowStretch(2, 1);
    return p;
}

QWidget* ClienteWindow::pestanaFacturacion() {
    auto* p = new QWidget;
    auto* fra = new QGroupBox(QStringLiteral("Datos de facturación"));
    auto* capaFra = new QFormLayout(fra);
    for (const QString& c :
         {QStringLiteral("FraNombre"), QStringLiteral("FraDNI"), QStringLiteral("FraDireccion")})
        capaFra->addRow(etiqueta(c), campo(c));
    for (const QString& c :
         {QStringLiteral("FraPoblacion"), QStringLiteral("FraCodigoPostal"), QStringLiteral("FraProvincia")})
        capaFra->addRow(etiqueta(c), busqueda(c));
    for (const QString& c :
         {QStringLiteral("FraTelefono1"), QStringLiteral("FraTelefono2"), QStringLiteral("FraMovil"),
          QStringLiteral("FraFax"), QStringLiteral("FraEMail")})
        capaFra->addRow(etiqueta(c), campo(c));
    auto* banco = new QGroupBox(QStringLiteral("Contabilidad y domiciliación"));
    auto* capaBanco = new QFormLayout(banco);
    for (const QString& c : {QStringLiteral("Subcuenta"), QStringLiteral("IBAN"), QStringLiteral("BIC"),
                             QStringLiteral("FechaMandato")})
        capaBanco->addRow(etiqueta(c), campo(c));
    auto* capa = new QHBoxLayout(p);
    capa->addWidget(fra, 1);
    capa->addWidget(banco, 1, Qt::AlignTop);
    return p;
}

QWidget* ClienteWindow::pestanaFichaComercial() {
    auto* p = new QWidget;
    auto* general = new QFormLayout;
    general->addRow(etiqueta(QStringLiteral("Tarifa")), campo(QStringLiteral("Tarifa")));
    general->addRow(QStringLiteral("Descuento general (%):"), campo(QStringLiteral("DtoGeneral")));
    condiciones_ = new CondicionesWidget(form_.condiciones());
    connect(condiciones_, &CondicionesWidget::cambiado, this, [this] { setWindowTitle(form_.titulo()); });
    auto* capa = new QVBoxLayout(p);
    capa->addLayout(general);
    capa->addWidget(new QLabel(QStringLiteral("Condiciones especiales:")));
    capa->addWidget(condiciones_, 1);
    return p;
}

QWidget* ClienteWindow::pestanaNotas() {
    auto* p = new QWidget;
    auto* capa = new QVBoxLayout(p);
    capa->addWidget(new QLabel(QStringLiteral("Notas:")));
    capa->addWidget(campo(QStringLiteral("Notas")), 2);
    capa->addWidget(new QLabel(QStringLiteral("Aviso (se muestra al seleccionar el cliente):")));
    capa->addWidget(campo(QStringLiteral("Aviso")), 1);
    return p;
}

QWidget* ClienteWindow::pestanaCitas() {
    auto* p = new QWidget;
    const QStringList columnas = {QStringLiteral("Fecha"),   QStringLiteral("Inicio"),
                                  QStringLiteral("Fin"),     QStringLiteral("Agenda"),
                                  QStringLiteral("Acudió"),  QStringLiteral("Veterinario"),
                                  QStringLiteral("Mascota"), QStringLiteral("Motivo")};
    auto* citas = new QTableWidget(0, static_cast<int>(columnas.size()));
    citas->setObjectName(QStringLiteral("grdCitas"));
    citas->setHorizontalHeaderLabels(columnas);
    citas->setEditTriggers(QAbstractItemView::NoEditTriggers);
    citas->verticalHeader()->hide();
    citas->horizontalHeader()->setStretchLastSection(true);
    auto* capa = new QVBoxLayout(p);
    capa->addWidget(citas);
    return p;
}

void ClienteWindow::refrescar() {
    setWindowTitle(form_.titulo());
    for (auto it = campos_.cbegin(); it != campos_.cend(); ++it) {
        QWidget* w = it.value();
        const QSignalBlocker bloqueo(w);
        const QString columna = it.key();
        if (kSaldos.contains(columna)) {
            static_cast<QLineEdit*>(w)->setText(form_.saldo(columna));
        } else if (auto* l = qobject_cast<QLineEdit*>(w)) {
            l->setText(form_.texto(columna));
        } else if (auto* ch = qobject_cast<QCheckBox*>(w)) {
            ch->setChecked(form_.texto(columna) == kSi);
        } else if (auto* m = qobject_cast<QPlainTextEdit*>(w)) {
            if (m->toPlainText() != form_.texto(columna)) m->setPlainText(form_.texto(columna));
        } else if (auto* cb = qobject_cast<QComboBox*>(w)) {
            if (!ClienteForm::tablaParametro(columna).isEmpty()) {
                llenarBusqueda(columna);
            } else {
                cb->setCurrentText(form_.texto(columna));
            }
        }
    }
    condiciones_->refrescar();
}

bool ClienteWindow::mostrarCliente(qint64 idCliente) {
    const bool ok = form_.cargar(idCliente);
    refrescar();
    return ok;
}

void ClienteWindow::nuevo() {
    if (!form_.puedeAbandonar()) return;
    form_.nuevo();
    refrescar();
}

void ClienteWindow::guardar() {
    if (form_.guardar()) {
        refrescar();
        return;
    }
    if (QWidget* w = campos_.value(form_.foco)) {
        for (int i = 0; i < pestanas_->count(); ++i)
            if (pestanas_->widget(i)->isAncestorOf(w)) pestanas_->setCurrentIndex(i);
        w->setFocus();
    }
}

void ClienteWindow::eliminar() {
    if (form_.eliminar()) refrescar();
}

void ClienteWindow::closeEvent(QCloseEvent* evento) {
    if (!form_.puedeAbandonar()) {
        evento->ignore();
        return;
    }
    form_.cerrar();
    evento->accept();
}
