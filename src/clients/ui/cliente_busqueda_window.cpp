#include "clients/ui/cliente_busqueda_window.h"
#include "gui/controles.h"

#include "data/esquema.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
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

namespace {
QLineEdit* campo(const QString& nombre, int longitud, bool soloDigitos = false) {
    auto* e = new QLineEdit;
    e->setObjectName(nombre);
    e->setMaxLength(longitud);
    if (soloDigitos)
        e->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d*")), e));
    return e;
}

QComboBox* textos(const QString& nombre, const QStringList& valores) {
    auto* c = new QComboBox;
    c->setObjectName(nombre);
    c->setEditable(true);
    c->addItem(QString());
    c->addItems(valores);
    return c;
}

QTableWidget* rejilla(const QString& nombre, const QStringList& columnas) {
    auto* t = new QTableWidget(0, static_cast<int>(columnas.size()));
    t->setObjectName(nombre);
    t->setHorizontalHeaderLabels(columnas);
    t->setSelectionBehavior(QAbstractItemView::SelectRows);
    t->setSelectionMode(QAbstractItemView::SingleSelection);
    t->setEditTriggers(QAbstractItemView::NoEditTriggers);
    t->verticalHeader()->hide();
    t->horizontalHeader()->setStretchLastSection(true);
    return t;
}

void fila(QTableWidget* t, int r, const QStringList& valores) {
    for (int c = 0; c < valores.size(); ++c)
        t->setItem(r, c, new QTableWidgetItem(valores.at(c)));
}

void etiqueta(QGridLayout* g, int fila, int columna, const QString& texto, QWidget* w, int ancho = 1) {
    g->addWidget(new QLabel(texto), fila, columna);
    g->addWidget(w, fila, columna + 1, 1, ancho);
}
} // namespace

ClienteBusquedaWindow::ClienteBusquedaWindow(Entorno& entorno, QWidget* padre,
                                             const PeticionCliente& peticion)
    : QDialog(padre), e_(entorno), form_(entorno, peticion) {
    setObjectName(QStringLiteral("frmBusquedaClientes"));
    setWindowTitle(kTituloBusquedaClientes);
    if (form_.reducida())
        construirReducida();
    else
        construirCompleta();
    auto* buscarB = new QPushButton(QStringLiteral("Buscar"));
    buscarB->setObjectName(QStringLiteral("cmdBuscar"));
    buscarB->setDefault(true);
    nuevo_ = new QPushButton(QStringLiteral("Nuevo cliente"));
    nuevo_->setObjectName(QStringLiteral("cmdNuevoCliente"));
    nuevo_->setVisible(form_.puedeCrearCliente());
    auto* aceptarB = new QPushButton(QStringLiteral("Aceptar"));
    aceptarB->setObjectName(QStringLiteral("cmdAceptar"));
    auto* cancelarB = new QPushButton(QStringLiteral("Cancelar"));
    cancelarB->setObjectName(QStringLiteral("cmdCancelar"));
    auto* botones = new QHBoxLayout;
    botones->addWidget(buscarB);
    botones->addWidget(nuevo_);
    botones->addStretch();
    botones->addWidget(aceptarB);
    botones->addWidget(cancelarB);
    static_cast<QVBoxLayout*>(layout())->addLayout(botones);
    connect(buscarB, &QPushButton::clicked, this, &ClienteBusquedaWindow::buscar);
    connect(nuevo_, &QPushButton::clicked, this, [this] {
        if (form_.nuevoCliente()) accept();
    });
    connect(aceptarB, &QPushButton::clicked, this,
            [this] { aceptarCliente(mascotas_ ? mascotas_->currentRow() : -1); });
    connect(cancelarB, &QPushButton::clicked, this, &QDialog::reject);
    connect(clientes_, &QTableWidget::currentCellChanged, this, [this](int r) {
        if (r == form_.seleccionado()) return;
        form_.seleccionar(r);
        mostrarMascotas();
    });
    connect(clientes_, &QTableWidget::cellDoubleClicked, this, [this](int r, int) {
        form_.seleccionar(r);
        aceptarCliente(-1);
    });
    if (form_.buscarAlAbrir()) buscar();
}

QComboBox* ClienteBusquedaWindow::lista(const QString& nombre, const QString& tabla) {
    auto* c = new QComboBox;
    c->setObjectName(nombre);
    c->addItem(QString(), QVariant());
    for (const OpcionCriterio& o : form_.opciones(tabla))
        c->addItem(o.texto, o.clave);
    return c;
}

void ClienteBusquedaWindow::construirCompleta() {
    nombre_ = campo(QStringLiteral("txtNombre"), 100);
    nombre_->setText(form_.criterios.nombre);
    auto* comienzo = new QRadioButton(QStringLiteral("Al comienzo"));
    comienzo->setObjectName(QStringLiteral("optComienzo"));
    comienzo->setChecked(true);
    auto* exacto = new QRadioButton(QStringLiteral("Exactamente"));
    exacto->setObjectName(QStringLiteral("optExacto"));
    auto* contiene = new QRadioButton(QStringLiteral("En cualquier parte"));
    contiene->setObjectName(QStringLiteral("optContiene"));
    modo_ = new QButtonGroup(this);
    modo_->addButton(comienzo, static_cast<int>(ModoNombre::Comienzo));
    modo_->addButton(exacto, static_cast<int>(ModoNombre::Exacto));
    modo_->addButton(contiene, static_cast<int>(ModoNombre::Contiene));
    auto* modos = new QHBoxLayout;
    modos->addWidget(comienzo);
    modos->addWidget(exacto);
    modos->addWidget(contiene);
    modos->addStretch();

    dni_ = campo(QStringLiteral("txtDNI"), 20);
    direccion_ = campo(QStringLiteral("txtDireccion"), 100);
    telefono_ = campo(QStringLiteral("txtTelefono"), 20);
    email_ = campo(QStringLiteral("txtEMail"), 100);
    codigoPostal_ = campo(QStringLiteral("txtCodigoPostal"), 10);
    poblacion_ = textos(QStringLiteral("cboPoblacion"), form_.poblaciones());
    provincia_ = textos(QStringLiteral("cboProvincia"), form_.provincias());
    tipoCliente_ = lista(QStringLiteral("cboTipoCliente"), QStringLiteral("TiposCliente"));
    formaContacto_ = lista(QStringLiteral("cboFormaContacto"), QStringLiteral("FormasContacto"));
    lopd_ = new QComboBox;
    lopd_->setObjectName(QStringLiteral("cboLOPD"));
    lopd_->addItems(ClienteBusquedaForm::opcionesLOPD());
    clientesBaja_ = new QCheckBox(QStringLiteral("Incluir clientes de baja"));
    clientesBaja_->setObjectName(QStringLiteral("chkClientesBaja"));

    auto* grupoCliente = new QGroupBox(QStringLiteral("Datos del cliente"));
    auto* g = new QGridLayout(grupoCliente);
    etiqueta(g, 0, 0, QStringLiteral("Nombre:"), nombre_, 3);
    g->addLayout(modos, 1, 1, 1, 3);
    etiqueta(g, 2, 0, QStringLiteral("D.N.I.:"), dni_);
    etiqueta(g, 2, 2, QStringLiteral("Teléfono:"), telefono_);
    etiqueta(g, 3, 0, QStringLiteral("Dirección:"), direccion_);
    etiqueta(g, 3, 2, QStringLiteral("E-Mail:"), email_);
    etiqueta(g, 4, 0, QStringLiteral("Población:"), poblacion_);
    etiqueta(g, 4, 2, QStringLiteral("C. Postal:"), codigoPostal_);
    etiqueta(g, 5, 0, QStringLiteral("Provincia:"), provincia_);
    etiqueta(g, 5, 2, QStringLiteral("Tipo de cliente:"), tipoCliente_);
    etiqueta(g, 6, 0, QStringLiteral("Forma de contacto:"), formaContacto_);
    etiqueta(g, 6, 2, QStringLiteral("Protección de datos:"), lopd_);
    g->addWidget(clientesBaja_, 7, 1, 1, 3);

    mascota_ = campo(QStringLiteral("txtMascota"), 60);
    mascota_->setText(form_.criterios.nombreMascota);
    numMascota_ = campo(QStringLiteral("txtNumMascota"), 12, true);
    chip_ = campo(QStringLiteral("txtChip"), 15);
    especie_ = lista(QStringLiteral("cboEspecie"), QStringLiteral("Especies"));
    raza_ = new QComboBox;
    raza_->setObjectName(QStringLiteral("cboRaza"));
    raza_->addItem(QString(), QVariant());
    connect(especie_, &QComboBox::currentIndexChanged, this, &ClienteBusquedaWindow::cambiarEspecie);
    sexo_ = new QComboBox;
    sexo_->setObjectName(QStringLiteral("cboSexo"));
    sexo_->addItem(QString(), QString());
    if (const DescriptorTabla* t = descriptorTabla(QStringLiteral("Mascotas")))
        if (const DescriptorColumna* s = t->columna(QStringLiteral("Sexo")))
            for (int i = 0; i < s->ValorInternoS.size(); ++i)
                sexo_->addItem(s->ValorExternoS.value(i), s->ValorInternoS.at(i));
    estado_ = lista(QStringLiteral("cboEstado"), QStringLiteral("Estados"));
    condicion_ = lista(QStringLiteral("cboCondicionCorporal"), QStringLiteral("CondicionesCorporales"));
    planSalud_ = lista(QStringLiteral("cboPlanSalud"), QStringLiteral("PlanesSalud"));
    mascotasBaja_ = new QCheckBox(QStringLiteral("Incluir mascotas de baja"));
    mascotasBaja_->setObjectName(QStringLiteral("chkMascotasBaja"));

    auto* grupoMascota = new QGroupBox(QStringLiteral("Datos de la mascota"));
    auto* m = new QGridLayout(grupoMascota);
    etiqueta(m, 0, 0, QStringLiteral("Nombre:"), mascota_);
    etiqueta(m, 1, 0, QStringLiteral("Nº Mascota:"), numMascota_);
    etiqueta(m, 2, 0, QStringLiteral("Chip:"), chip_);
    etiqueta(m, 3, 0, QStringLiteral("Especie:"), especie_);
    etiqueta(m, 4, 0, QStringLiteral("Raza:"), raza_);
    etiqueta(m, 5, 0, QStringLiteral("Sexo:"), sexo_);
    etiqueta(m, 6, 0, QStringLiteral("Estado:"), estado_);
    etiqueta(m, 7, 0, QStringLiteral("Condición corporal:"), condicion_);
    etiqueta(m, 8, 0, QStringLiteral("Plan de salud:"), planSalud_);
    m->addWidget(mascotasBaja_, 9, 1);

    auto* criterios = new QHBoxLayout;
    criterios->addWidget(grupoCliente, 3);
    criterios->addWidget(grupoMascota, 2);

    clientes_ = rejilla(QStringLiteral("grdClientes"), ClienteBusquedaForm::columnasClientes());
    mascotas_ = rejilla(QStringLiteral("grdMascotas"), ClienteBusquedaForm::columnasMascotas());
    mascotas_->setMinimumHeight(150);
    connect(mascotas_, &QTableWidget::cellDoubleClicked, this, [this](int r, int) { aceptarCliente(r); });

    auto* capa = new QVBoxLayout(this);
    capa->addLayout(criterios);
    capa->addWidget(clientes_, 3);
    nota_ = new QLabel;
    nota_->setObjectName(QStringLiteral("lblNota"));
    capa->addWidget(nota_);
    capa->addWidget(new QLabel(QStringLiteral("Mascotas del cliente seleccionado:")));
    capa->addWidget(mascotas_, 1);
    resize(1000, 780);
}

void ClienteBusquedaWindow::construirReducida() {
    numCliente_ = campo(QStringLiteral("txtNumCliente"), 12, true);
    nombre_ = campo(QStringLiteral("txtNombre"), 100);
    nombre_->setText(form_.criteriosReducida.nombre);
    clinica_ = campo(QStringLiteral("txtClinica"), 60);
    dni_ = campo(QStringLiteral("txtDNI"), 20);
    direccion_ = campo(QStringLiteral("txtDireccion"), 100);
    telefono_ = campo(QStringLiteral("txtTelefono"), 20);
    codigoPostal_ = campo(QStringLiteral("txtCodigoPostal"), 10);
    poblacion_ = textos(QStringLiteral("cboPoblacion"), form_.poblaciones());
    provincia_ = textos(QStringLiteral("cboProvincia"), form_.provincias());
    tipoCliente_ = lista(QStringLiteral("cboTipoCliente"), QStringLiteral("TiposCliente"));
    auto* grupo = new QGroupBox(QStringLiteral("Datos del cliente"));
    auto* g = new QGridLayout(grupo);
    etiqueta(g, 0, 0, QStringLiteral("Nº Cliente:"), numCliente_);
    etiqueta(g, 0, 2, QStringLiteral("Nombre:"), nombre_);
    etiqueta(g, 1, 0, QStringLiteral("Clínica:"), clinica_);
    etiqueta(g, 1, 2, QStringLiteral("D.N.I.:"), dni_);
    etiqueta(g, 2, 0, QStringLiteral("Dirección:"), direccion_);
    etiqueta(g, 2, 2, QStringLiteral("Teléfono:"), telefono_);
    etiqueta(g, 3, 0, QStringLiteral("Población:"), poblacion_);
    etiqueta(g, 3, 2, QStringLiteral("C. Postal:"), codigoPostal_);
    etiqueta(g, 4, 0, QStringLiteral("Provincia:"), provincia_);
    etiqueta(g, 4, 2, QStringLiteral("Tipo de cliente:"), tipoCliente_);
    clientes_ = rejilla(QStringLiteral("grdClientes"), ClienteBusquedaForm::columnasReducida());
    auto* capa = new QVBoxLayout(this);
    capa->addWidget(grupo);
    capa->addWidget(clientes_, 1);
    nota_ = new QLabel;
    nota_->setObjectName(QStringLiteral("lblNota"));
    capa->addWidget(nota_);
    resize(900, 560);
}

void ClienteBusquedaWindow::cambiarEspecie() {
    raza_->clear();
    raza_->addItem(QString(), QVariant());
    const auto especie = claveElegida(especie_);
    if (!especie) return;
    for (const OpcionCriterio& o : form_.opciones(QStringLiteral("Razas"), especie))
        raza_->addItem(o.texto, o.clave);
}

void ClienteBusquedaWindow::leerCriterios() {
    auto numero = [](const QLineEdit* e) -> std::optional<qint64> {
        bool ok = false;
        const qint64 n = e->text().trimmed().toLongLong(&ok);
        return ok ? std::optional<qint64>(n) : std::nullopt;
    };
    if (form_.reducida()) {
        CriteriosBusquedaReducida& c = form_.criteriosReducida;
        c.idCliente = numero(numCliente_);
        c.nombre = nombre_->text();
        c.clinica = clinica_->text();
        c.dni = dni_->text();
        c.direccion = direccion_->text();
        c.telefono = telefono_->text();
        c.poblacion = poblacion_->currentText();
        c.codigoPostal = codigoPostal_->text();
        c.provincia = provincia_->currentText();
        c.idTipoCliente = claveElegida(tipoCliente_);
        return;
    }
    CriteriosBusquedaCliente& c = form_.criterios;
    c.nombre = nombre_->text();
    c.modoNombre = static_cast<ModoNombre>(modo_->checkedId());
    c.dni = dni_->text();
    c.direccion = direccion_->text();
    c.telefono = telefono_->text();
    c.email = email_->text();
    c.poblacion = poblacion_->currentText();
    c.codigoPostal = codigoPostal_->text();
    c.provincia = provincia_->currentText();
    c.idTipoCliente = claveElegida(tipoCliente_);
    c.idFormaContacto = claveElegida(formaContacto_);
    c.lopd = ClienteBusquedaForm::codigoLOPD(lopd_->currentText());
    c.nombreMascota = mascota_->text();
    c.idMascota = numero(numMascota_);
    c.chip = chip_->text();
    c.idEspecie = claveElegida(especie_);
    c.idRaza = claveElegida(raza_);
    c.sexo = sexo_->currentData().toString();
    c.idEstado = claveElegida(estado_);
    c.idCondicionCorporal = claveElegida(condicion_);
    c.idPlanSalud = claveElegida(planSalud_);
    c.incluirClientesBaja = clientesBaja_->isChecked();
    c.incluirMascotasBaja = mascotasBaja_->isChecked();
}

void ClienteBusquedaWindow::buscar() {
    leerCriterios();
    if (!form_.buscar()) return;
    mostrarClientes();
}

void ClienteBusquedaWindow::mostrarClientes() {
    const auto& filas = form_.clientes();
    const QSignalBlocker bloqueo(clientes_);
    clientes_->setRowCount(static_cast<int>(filas.size()));
    for (int r = 0; r < filas.size(); ++r) {
        const FilaClienteBusqueda& f = filas.at(r);
        if (form_.reducida())
            fila(clientes_, r,
                 {QString::number(f.IdCliente), f.Cliente, f.Clinica, f.Docum, f.Direccion, f.CodigoPostal,
                  f.Localidad, f.Provincia});
        else
            fila(clientes_, r,
                 {f.Cliente, f.Docum, f.Direccion, f.CodigoPostal, f.Localidad, f.Provincia, f.EMail});
    }
    clientes_->resizeColumnsToContents();
    clientes_->horizontalHeader()->setStretchLastSection(true);
    if (form_.seleccionado() >= 0) clientes_->setCurrentCell(form_.seleccionado(), 0);
    nota_->setText(form_.nota());
    mostrarMascotas();
}

void ClienteBusquedaWindow::mostrarMascotas() {
    if (!mascotas_) return;
    const auto& filas = form_.mascotas();
    mascotas_->setRowCount(static_cast<int>(filas.size()));
    for (int r = 0; r < filas.size(); ++r) {
        const FilaMascotaBusqueda& f = filas.at(r);
        fila(mascotas_, r,
             {f.Mascota, QString::number(f.IdMascota), f.Especie, f.Raza, f.Sexo, f.MicroChip, f.Cartilla});
    }
    mascotas_->resizeColumnsToContents();
    mascotas_->horizontalHeader()->setStretchLastSection(true);
    mascotas_->clearSelection();
    mascotas_->setCurrentCell(-1, -1);
}

void ClienteBusquedaWindow::aceptarCliente(int filaMascota) {
    if (form_.aceptar(filaMascota)) {
        accept();
        return;
    }
    // A client that could not be read has left the list.
    if (clientes_->rowCount() != form_.clientes().size()) mostrarClientes();
}

std::optional<ClienteElegido> ClienteBusquedaWindow::elegir(Entorno& entorno,
                                                            const PeticionCliente& peticion) {
    ClienteBusquedaWindow w(entorno, QApplication::activeWindow(), peticion);
    w.setModal(true);
    if (w.exec() != QDialog::Accepted) return std::nullopt;
    return w.form().elegido();
}
