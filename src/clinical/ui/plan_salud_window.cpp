#include "clinical/ui/plan_salud_window.h"
#include "gui/controles.h"

#include "gui/traer_al_frente.h"

#include "clients/ui/condiciones_widget.h"
#include "clinical/ui/plan_salud_busqueda_window.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

PlanSaludWindow::PlanSaludWindow(Entorno& entorno, QWidget* padre)
    : QWidget(padre), e_(entorno), form_(entorno) {
    form_.traerAlFrente = [this] { traerAlFrente(this); };
    setObjectName(QStringLiteral("frmMttoPlanSalud"));
    auto* datos = new QFormLayout;
    const QStringList etiquetas = {QStringLiteral("Nombre:"), QStringLiteral("Fecha de alta:"),
                                   QStringLiteral("Fecha de baja:")};
    for (int i = 0; i < 3; ++i) {
        const QString c = PlanSaludForm::campos().at(i);
        auto* l = new QLineEdit;
        l->setObjectName(QStringLiteral("txt") + c);
        if (i == 0) l->setMaxLength(100);
        connect(l, &QLineEdit::textEdited, this, [this, c](const QString& t) {
            if (!form_.setTexto(c, t)) refrescar();
        });
        campos_.insert(c, l);
        datos->addRow(etiquetas.at(i), l);
    }
    auto* textos = new QHBoxLayout;
    for (const QString& c : {QStringLiteral("Notas"), QStringLiteral("Aviso")}) {
        auto* caja =
            new QGroupBox(c == QStringLiteral("Notas") ? QStringLiteral("Notas") : QStringLiteral("Aviso"));
        auto* m = new QPlainTextEdit;
        m->setObjectName(QStringLiteral("txt") + c);
        m->setMaximumHeight(90);
        connect(m, &QPlainTextEdit::textChanged, this, [this, m, c] {
            if (!form_.setTexto(c, m->toPlainText())) refrescar();
        });
        campos_.insert(c, m);
        auto* capa = new QVBoxLayout(caja);
        capa->addWidget(m);
        textos->addWidget(caja);
    }
    condiciones_ = new CondicionesWidget(form_.condiciones());

    auto* nuevoB = boton(QStringLiteral("cmdNuevo"), QStringLiteral("Nuevo"));
    auto* guardarB = boton(QStringLiteral("cmdGuardar"), QStringLiteral("Guardar"));
    auto* eliminarB = boton(QStringLiteral("cmdEliminar"), QStringLiteral("Eliminar"));
    auto* buscarB = boton(QStringLiteral("cmdBuscar"), QStringLiteral("Buscar..."));
    connect(nuevoB, &QPushButton::clicked, this, &PlanSaludWindow::nuevo);
    connect(guardarB, &QPushButton::clicked, this, &PlanSaludWindow::guardar);
    connect(eliminarB, &QPushButton::clicked, this, &PlanSaludWindow::eliminar);
    connect(buscarB, &QPushButton::clicked, this, &PlanSaludWindow::buscar);
    auto* botones = new QHBoxLayout;
    botones->addWidget(nuevoB);
    botones->addWidget(guardarB);
    botones->addWidget(eliminarB);
    botones->addStretch();
    botones->addWidget(buscarB);

    auto* capa = new QVBoxLayout(this);
    capa->addLayout(botones);
    capa->addLayout(datos);
    capa->addLayout(textos);
    capa->addWidget(new QLabel(QStringLiteral("Condiciones del plan:")));
    capa->addWidget(condiciones_, 1);
    resize(820, 560);
    refrescar();
}

void PlanSaludWindow::refrescar() {
    setWindowTitle(form_.titulo());
    for (auto it = campos_.cbegin(); it != campos_.cend(); ++it) {
        const QSignalBlocker bloqueo(it.value());
        if (auto* l = qobject_cast<QLineEdit*>(it.value())) l->setText(form_.texto(it.key()));
        if (auto* m = qobject_cast<QPlainTextEdit*>(it.value()))
            if (m->toPlainText() != form_.texto(it.key())) m->setPlainText(form_.texto(it.key()));
    }
    condiciones_->refrescar();
}

bool PlanSaludWindow::mostrarPlan(qint64 idPlan) {
    const bool ok = form_.cargar(idPlan);
    refrescar();
    return ok;
}

void PlanSaludWindow::nuevo() {
    if (!form_.puedeAbandonar()) return;
    form_.nuevo();
    refrescar();
}

void PlanSaludWindow::guardar() {
    if (form_.guardar()) {
        refrescar();
        return;
    }
    if (QWidget* w = campos_.value(form_.foco)) w->setFocus();
}

void PlanSaludWindow::eliminar() {
    if (form_.eliminar()) refrescar();
}

void PlanSaludWindow::buscar() {
    if (!form_.puedeAbandonar()) return;
    const auto plan = PlanSaludBusquedaWindow::elegir(e_, QString(), this);
    if (plan) mostrarPlan(*plan);
}

void PlanSaludWindow::closeEvent(QCloseEvent* evento) {
    if (!form_.puedeAbandonar()) {
        evento->ignore();
        return;
    }
    form_.cerrar();
    evento->accept();
}
