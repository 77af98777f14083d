#include "clinical/ui/hospitalizacion_window.h"
#include "gui/controles.h"

#include "core/formatos.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
QDialogButtonBox* botonesDialogo(QDialog& d) {
    auto* bb = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &d);
    QObject::connect(bb, &QDialogButtonBox::accepted, &d, &QDialog::accept);
    QObject::connect(bb, &QDialogButtonBox::rejected, &d, &QDialog::reject);
    return bb;
}
} // namespace

std::optional<QString> pedirJaula(QWidget* padre, const QString& jaula) {
    QDialog d(padre);
    d.setObjectName(QStringLiteral("frmJaula"));
    d.setWindowTitle(QStringLiteral("Jaula"));
    auto* texto = new QLineEdit(jaula, &d);
    texto->setObjectName(QStringLiteral("txtJaula"));
    texto->setMaxLength(20);
    auto* capa = new QFormLayout(&d);
    capa->addRow(QStringLiteral("JAULA:"), texto);
    capa->addRow(botonesDialogo(d));
    if (d.exec() != QDialog::Accepted) return std::nullopt;
    return texto->text().trimmed();
}

std::optional<Alta> pedirAlta(QWidget* padre, Entorno& e) {
    QDialog d(padre);
    d.setObjectName(QStringLiteral("frmAlta"));
    d.setWindowTitle(QStringLiteral("Alta de la mascota"));
    const QDateTime ahora = e.reloj().ahora();
    auto* fecha = new QLineEdit(formatoFecha(ahora.date()), &d);
    fecha->setObjectName(QStringLiteral("txtFechaAlta"));
    auto* hora = new QLineEdit(formatoHora(ahora.time()), &d);
    hora->setObjectName(QStringLiteral("txtHoraAlta"));
    auto* diagnostico = new QLineEdit(&d);
    diagnostico->setObjectName(QStringLiteral("txtDiagnosticoAlta"));
    diagnostico->setMaxLength(100);
    diagnostico->setMinimumWidth(320);
    auto* capa = new QFormLayout(&d);
    capa->addRow(QStringLiteral("Fecha Alta:"), fecha);
    capa->addRow(QStringLiteral("Hora Alta:"), hora);
    capa->addRow(QStringLiteral("Diagnóstico de Alta:"), diagnostico);
    capa->addRow(botonesDialogo(d));
    while (d.exec() == QDialog::Accepted) {
        const auto f = leerFecha(fecha->text());
        const auto h = leerHora(hora->text());
        if (f && h) return Alta{*f, *h, diagnostico->text().trimmed()};
        e.dialogs().avisar(QStringLiteral("Información introducida errónea"),
                           QStringLiteral("Indique la fecha (dd/mm/aaaa) y la hora (hh:mm) del alta."));
    }
    return std::nullopt;
}

HospitalizadasWindow::HospitalizadasWindow(Entorno& e, QWidget* padre) : QWidget(padre), form_(e) {
    setObjectName(QStringLiteral("frmHospitalizadas"));
    setWindowTitle(kTituloHospitalizadas);
    form_.dialogos.jaula = [this](const QString& j) { return pedirJaula(this, j); };
    form_.dialogos.alta = [this, &e] { return pedirAlta(this, e); };
    form_.alAbrirMascota = [this](qint64 c, qint64 m) { emit abrirMascota(c, m); };
    lista_ = listaPlana(QStringLiteral("lvwHospitalizadas"), HospitalizadasForm::columnas());
    auto* jaula = boton(QStringLiteral("cmdCambiarJaula"), QStringLiteral("Cambiar jaula..."));
    auto* mascota = boton(QStringLiteral("cmdAbrirMascota"), QStringLiteral("Abrir mascota"));
    auto* alta = boton(QStringLiteral("cmdDarAlta"), QStringLiteral("Dar de alta..."));
    auto* cerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    connect(jaula, &QPushButton::clicked, this, [this] {
        form_.cambiarJaula(fila());
        mostrar();
    });
    connect(mascota, &QPushButton::clicked, this, [this] { form_.abrirMascota(fila()); });
    connect(lista_, &QTreeWidget::itemDoubleClicked, this, [this] { form_.abrirMascota(fila()); });
    connect(alta, &QPushButton::clicked, this, [this] {
        form_.darAlta(fila());
        mostrar();
    });
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);
    auto* botones = new QHBoxLayout;
    for (auto* b : {jaula, mascota, alta})
        botones->addWidget(b);
    botones->addStretch();
    botones->addWidget(cerrar);
    auto* capa = new QVBoxLayout(this);
    capa->addWidget(lista_, 1);
    capa->addLayout(botones);
    resize(520, 360);
}

bool HospitalizadasWindow::cargar() {
    const bool ok = form_.cargar();
    mostrar();
    return ok;
}

int HospitalizadasWindow::fila() const {
    return lista_->indexOfTopLevelItem(lista_->currentItem());
}

void HospitalizadasWindow::mostrar() {
    const int actual = fila();
    lista_->clear();
    for (const auto& f : form_.lista())
        new QTreeWidgetItem(lista_, {f.Mascota, f.Cliente, f.Jaula});
    if (lista_->topLevelItemCount() > 0)
        lista_->setCurrentItem(lista_->topLevelItem(std::clamp(actual, 0, lista_->topLevelItemCount() - 1)));
}

RegistroHospitalizacionesWindow::RegistroHospitalizacionesWindow(Entorno& e, QWidget* padre)
    : QWidget(padre), form_(e) {
    setObjectName(QStringLiteral("frmRegistroHospitalizaciones"));
    form_.IrAVisita = [this](qint64 n) { emit IrAVisita(n); };
    lista_ = listaPlana(QStringLiteral("lvwRegistro"), RegistroHospitalizacionesForm::columnas());
    connect(lista_, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* item) { form_.irAVisita(lista_->indexOfTopLevelItem(item)); });
    auto* visita = boton(QStringLiteral("cmdIrAVisita"), QStringLiteral("Ir a la visita"));
    connect(visita, &QPushButton::clicked, this,
            [this] { form_.irAVisita(lista_->indexOfTopLevelItem(lista_->currentItem())); });
    auto* cerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);
    auto* botones = new QHBoxLayout;
    botones->addWidget(visita);
    botones->addStretch();
    botones->addWidget(cerrar);
    auto* capa = new QVBoxLayout(this);
    capa->addWidget(lista_, 1);
    capa->addLayout(botones);
    resize(760, 320);
}

bool RegistroHospitalizacionesWindow::abrir(qint64 idMascota, const QString& nombre) {
    const bool ok = form_.abrir(idMascota, nombre);
    setWindowTitle(form_.titulo());
    lista_->clear();
    for (const auto& f : form_.lista())
        new QTreeWidgetItem(lista_, RegistroHospitalizacionesForm::textosFila(f));
    return ok;
}
