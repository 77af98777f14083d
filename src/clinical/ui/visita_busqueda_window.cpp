#include "clinical/ui/visita_busqueda_window.h"
#include "gui/controles.h"

#include "core/formatos.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

VisitaBusquedaWindow::VisitaBusquedaWindow(Entorno& e, QWidget* padre) : QDialog(padre), e_(e), form_(e) {
    setObjectName(QStringLiteral("frmBusquedaVisitas"));
    setWindowTitle(kTituloBusquedaVisitas);
    auto combo = [this](const QString& nombre, const QString& columna) {
        auto* c = new QComboBox;
        c->setObjectName(nombre);
        c->addItem(QString());
        for (const auto& o : form_.opciones(columna))
            c->addItem(o.texto, o.clave);
        return c;
    };
    veterinario_ = combo(QStringLiteral("cboVeterinario"), QStringLiteral("IdVeterinario"));
    tipo_ = combo(QStringLiteral("cboTipoVisita"), QStringLiteral("IdTipoVisita"));
    diagnostico_ = combo(QStringLiteral("cboDiagnostico"), QStringLiteral("IdDiagnostico"));
    fechas_ = new QCheckBox(QStringLiteral("Entre las fechas"));
    fechas_->setObjectName(QStringLiteral("chkFechas"));
    desde_ = new QLineEdit(formatoFecha(form_.filtro.desde));
    desde_->setObjectName(QStringLiteral("txtDesde"));
    hasta_ = new QLineEdit(formatoFecha(form_.filtro.hasta));
    hasta_->setObjectName(QStringLiteral("txtHasta"));
    auto* filaFechas = new QHBoxLayout;
    filaFechas->addWidget(fechas_);
    filaFechas->addWidget(desde_);
    filaFechas->addWidget(hasta_);
    auto* criterios = new QFormLayout;
    criterios->addRow(QStringLiteral("Veterinario:"), veterinario_);
    criterios->addRow(QStringLiteral("Tipo de visita:"), tipo_);
    criterios->addRow(QStringLiteral("Diagnóstico:"), diagnostico_);
    criterios->addRow(filaFechas);
    lista_ = new QTreeWidget;
    lista_->setObjectName(QStringLiteral("lvwVisitas"));
    lista_->setHeaderLabels(VisitaBusquedaForm::columnas());
    lista_->setRootIsDecorated(false);
    lista_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(lista_, &QTreeWidget::itemDoubleClicked, this, &VisitaBusquedaWindow::aceptar);
    auto* buscar = new QPushButton(QStringLiteral("Buscar"));
    buscar->setObjectName(QStringLiteral("cmdBuscar"));
    buscar->setDefault(true);
    auto* aceptar = new QPushButton(QStringLiteral("Aceptar"));
    aceptar->setObjectName(QStringLiteral("cmdAceptar"));
    auto* cancelar = new QPushButton(QStringLiteral("Cancelar"));
    cancelar->setObjectName(QStringLiteral("cmdCancelar"));
    connect(buscar, &QPushButton::clicked, this, &VisitaBusquedaWindow::buscar);
    connect(aceptar, &QPushButton::clicked, this, &VisitaBusquedaWindow::aceptar);
    connect(cancelar, &QPushButton::clicked, this, &QDialog::reject);
    auto* botones = new QHBoxLayout;
    botones->addWidget(buscar);
    botones->addStretch();
    botones->addWidget(aceptar);
    botones->addWidget(cancelar);
    auto* capa = new QVBoxLayout(this);
    capa->addLayout(criterios);
    capa->addWidget(lista_, 1);
    capa->addLayout(botones);
    resize(900, 520);
}

void VisitaBusquedaWindow::buscar() {
    form_.filtro.IdVeterinario = claveElegida(veterinario_);
    form_.filtro.IdTipoVisita = claveElegida(tipo_);
    form_.filtro.IdDiagnostico = claveElegida(diagnostico_);
    form_.filtro.porFechas = fechas_->isChecked();
    if (form_.filtro.porFechas) {
        const auto d = leerFecha(desde_->text());
        const auto h = leerFecha(hasta_->text());
        if ((!desde_->text().trimmed().isEmpty() && !d) || (!hasta_->text().trimmed().isEmpty() && !h)) {
            e_.dialogs().avisar(QStringLiteral("Información introducida errónea"),
                                QStringLiteral("Las fechas deben tener el formato dd/mm/aaaa."));
            return;
        }
        form_.filtro.desde = d.value_or(QDate());
        form_.filtro.hasta = h.value_or(QDate());
    }
    form_.buscar();
    lista_->clear();
    for (const auto& f : form_.resultados()) {
        auto* item = new QTreeWidgetItem(lista_, VisitaBusquedaForm::textosFila(f));
        item->setTextAlignment(6, Qt::AlignRight | Qt::AlignVCenter);
    }
    if (lista_->topLevelItemCount() > 0) lista_->setCurrentItem(lista_->topLevelItem(0));
}

void VisitaBusquedaWindow::aceptar() {
    elegida_ = form_.elegir(lista_->indexOfTopLevelItem(lista_->currentItem()));
    if (elegida_) accept();
}

std::optional<VisitaElegida> VisitaBusquedaWindow::buscador(Entorno& e, QWidget* padre) {
    VisitaBusquedaWindow w(e, padre);
    if (w.exec() != QDialog::Accepted) return std::nullopt;
    return w.elegida();
}
