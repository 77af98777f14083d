#include "clients/ui/listado_mascotas_window.h"
#include "gui/controles.h"

#include "clients/mascota_form.h"
#include "clients/ui/aviso_lopd_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
QComboBox* combo(const QString& nombre) {
    auto* c = new QComboBox;
    c->setObjectName(nombre);
    c->setMinimumWidth(150);
    return c;
}

} // namespace

ListadoMascotasWindow::ListadoMascotasWindow(Entorno& entorno, QWidget* padre)
    : QWidget(padre), e_(entorno), form_(entorno) {
    setObjectName(QStringLiteral("frmListadoMascotas"));
    setWindowTitle(kTituloListadoMascotas);

    cliente_ = new QLineEdit;
    cliente_->setObjectName(QStringLiteral("txtCliente"));
    connect(cliente_, &QLineEdit::textEdited, this, [this](const QString& t) { form_.setTextoCliente(t); });
    auto* lupa = boton(QStringLiteral("cmdBuscarCliente"), QStringLiteral("Buscar..."));
    connect(lupa, &QPushButton::clicked, this, [this] {
        if (form_.elegirCliente()) cliente_->setText(form_.textoCliente());
    });
    especie_ = combo(QStringLiteral("cboEspecie"));
    raza_ = combo(QStringLiteral("cboRaza"));
    sexo_ = combo(QStringLiteral("cboSexo"));
    estado_ = combo(QStringLiteral("cboEstado"));
    tipo_ = combo(QStringLiteral("cboTipo"));
    condicion_ = combo(QStringLiteral("cboCondicionCorporal"));
    plan_ = combo(QStringLiteral("cboPlanSalud"));
    llenarCombo(especie_, QStringLiteral("IdEspecie"));
    llenarCombo(estado_, QStringLiteral("IdEstado"));
    llenarCombo(condicion_, QStringLiteral("IdCondicionCorporal"));
    llenarCombo(plan_, QStringLiteral("IdPlanSalud"));
    sexo_->addItems(MascotaForm::sexos());
    tipo_->addItem(QString());
    {
        MascotaForm lector(e_);
        tipo_->addItems(lector.tiposMascota());
    }
    llenarRazas();
    connect(especie_, &QComboBox::currentIndexChanged, this, [this](int) { llenarRazas(); });

    auto* filtros = new QGroupBox(QStringLiteral("Filtros"));
    auto* g = new QGridLayout(filtros);
    auto* filaCliente = new QHBoxLayout;
    filaCliente->addWidget(cliente_, 1);
    filaCliente->addWidget(lupa);
    g->addWidget(new QLabel(QStringLiteral("Cliente:")), 0, 0);
    g->addLayout(filaCliente, 0, 1, 1, 3);
    const QList<QPair<QString, QComboBox*>> combos = {
        {QStringLiteral("Especie:"), especie_},   {QStringLiteral("Raza:"), raza_},
        {QStringLiteral("Sexo:"), sexo_},         {QStringLiteral("Estado:"), estado_},
        {QStringLiteral("Tipo:"), tipo_},         {QStringLiteral("Condición corporal:"), condicion_},
        {QStringLiteral("Plan de salud:"), plan_}};
    for (int i = 0; i < combos.size(); ++i) {
        g->addWidget(new QLabel(combos.at(i).first), 1 + i / 2, (i % 2) * 2);
        g->addWidget(combos.at(i).second, 1 + i / 2, (i % 2) * 2 + 1);
    }
    rangos_ = {rango(QStringLiteral("Nacimiento"), QStringLiteral("F. nacimiento")),
               rango(QStringLiteral("Alta"), QStringLiteral("F. alta")),
               rango(QStringLiteral("Baja"), QStringLiteral("F. baja")),
               rango(QStringLiteral("Caducidad"), QStringLiteral("Caducidad plan")),
               rango(QStringLiteral("UltimaVisita"), QStringLiteral("Última visita"))};
    for (int i = 0; i < rangos_.size(); ++i) {
        auto* h = new QHBoxLayout;
        h->addWidget(rangos_.at(i).desde);
        h->addWidget(new QLabel(QStringLiteral("a")));
        h->addWidget(rangos_.at(i).hasta);
        g->addWidget(rangos_.at(i).activo, 5 + i / 2, (i % 2) * 2);
        g->addLayout(h, 5 + i / 2, (i % 2) * 2 + 1);
    }
    bajas_ = new QCheckBox(QStringLiteral("Incluir mascotas de baja"));
    bajas_->setObjectName(QStringLiteral("chkBajas"));
    g->addWidget(bajas_, 7, 3);

    lista_ = new QTreeWidget;
    lista_->setObjectName(QStringLiteral("lvwMascotas"));
    lista_->setHeaderLabels(ListadoMascotasForm::cabeceras());
    lista_->setRootIsDecorated(false);
    lista_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lista_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(lista_, &QTreeWidget::itemDoubleClicked, this, &ListadoMascotasWindow::abrirMascota);
    resultado_ = new QGroupBox(form_.encabezado());
    resultado_->setObjectName(QStringLiteral("fraResultado"));
    auto* capaResultado = new QVBoxLayout(resultado_);
    capaResultado->addWidget(lista_);

    auto* buscar = boton(QStringLiteral("cmdBuscar"), QStringLiteral("Buscar"));
    auto* abrir = boton(QStringLiteral("cmdAbrirMascota"), QStringLiteral("Abrir mascota"));
    auto* carta = boton(QStringLiteral("cmdCarta"), QStringLiteral("Carta..."));
    auto* cerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    connect(buscar, &QPushButton::clicked, this, &ListadoMascotasWindow::buscar);
    connect(abrir, &QPushButton::clicked, this, &ListadoMascotasWindow::abrirMascota);
    connect(carta, &QPushButton::clicked, this, &ListadoMascotasWindow::carta);
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);
    auto* botones = new QHBoxLayout;
    botones->addStretch();
    for (auto* b : {buscar, abrir, carta, cerrar})
        botones->addWidget(b);

    auto* capa = new QVBoxLayout(this);
    capa->addWidget(filtros);
    capa->addWidget(resultado_, 1);
    capa->addLayout(botones);
    resize(1080, 640);
}

ListadoMascotasWindow::Rango ListadoMascotasWindow::rango(const QString& sufijo, const QString& texto) {
    auto fecha = [&](const QString& nombre, const QDate& valor) {
        auto* d = new QDateEdit(valor);
        d->setObjectName(nombre + sufijo);
        d->setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
        d->setCalendarPopup(true);
        return d;
    };
    const QDate hoy = e_.reloj().hoy();
    auto* chk = new QCheckBox(texto);
    chk->setObjectName(QStringLiteral("chk") + sufijo);
    return {chk, fecha(QStringLiteral("dtpDesde"), hoy.addYears(-1)), fecha(QStringLiteral("dtpHasta"), hoy)};
}

void ListadoMascotasWindow::llenarCombo(QComboBox* c, const QString& columna) {
    MascotaForm lector(e_);
    c->addItem(QString());
    for (const auto& o : lector.opciones(columna))
        c->addItem(o.texto, o.clave);
}

void ListadoMascotasWindow::llenarRazas() {
    raza_->clear();
    raza_->addItem(QString());
    const auto especie = clave(especie_);
    if (!especie) return;
    MascotaForm lector(e_);
    lector.setTexto(QStringLiteral("IdEspecie"), QString::number(*especie));
    for (const auto& o : lector.opciones(QStringLiteral("IdRaza")))
        raza_->addItem(o.texto, o.clave);
}

std::optional<qint64> ListadoMascotasWindow::clave(QComboBox* c) {
    const QVariant v = c->currentData();
    return v.isValid() ? std::optional<qint64>(v.toLongLong()) : std::nullopt;
}

void ListadoMascotasWindow::buscar() {
    FiltroMascotas& f = form_.filtro;
    f.IdEspecie = clave(especie_);
    f.IdRaza = clave(raza_);
    f.IdEstado = clave(estado_);
    f.IdCondicionCorporal = clave(condicion_);
    f.IdPlanSalud = clave(plan_);
    const DescriptorColumna* sexo = tablaMascotas().columna(QStringLiteral("Sexo"));
    f.Sexo = sexo_->currentText().isEmpty() ? QString() : sexo->valorInterno(sexo_->currentText());
    f.TipoMascota = tipo_->currentText();
    RangoFechas* destino[] = {&f.nacimiento, &f.alta, &f.baja, &f.caducidadPlan, &f.ultimaVisita};
    for (int i = 0; i < rangos_.size(); ++i)
        *destino[i] = {rangos_.at(i).activo->isChecked(), rangos_.at(i).desde->date(),
                       rangos_.at(i).hasta->date()};
    f.incluirBajas = bajas_->isChecked();
    form_.setTextoCliente(cliente_->text());
    form_.buscar();
    lista_->clear();
    for (const auto& fila : form_.filas())
        new QTreeWidgetItem(lista_, ListadoMascotasForm::textos(fila));
    resultado_->setTitle(form_.encabezado());
}

void ListadoMascotasWindow::abrirMascota() {
    const auto m = form_.mascotaActual(lista_->indexOfTopLevelItem(lista_->currentItem()));
    if (m) emit mascotaElegida(m->IdCliente, m->IdMascota);
}

void ListadoMascotasWindow::carta() {
    form_.seleccion.clear();
    for (auto* item : lista_->selectedItems())
        form_.seleccion << lista_->indexOfTopLevelItem(item);
    form_.cartas([this](AvisoLopdLista& aviso) { return mostrarAvisoLopdLista(aviso, this); });
}
