#include "clients/ui/mascota_window.h"
#include "gui/controles.h"

#include "core/formatos.h"
#include "data/esquema.h"
#include "gui/traer_al_frente.h"
#include "gui/editor_lista_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
const QString kSi = QStringLiteral("Sí");
const QString kNo = QStringLiteral("No");

QString etiqueta(const QString& columna) {
    const DescriptorColumna* c = tablaMascotas().columna(columna);
    return (c ? c->Descripcion : columna) + QLatin1Char(':');
}

// Where each field goes: identity, clinical data, dates and plan, notes.
const QStringList kIdentidad = {QStringLiteral("Nombre"),
                                QStringLiteral("IdEspecie"),
                                QStringLiteral("IdRaza"),
                                QStringLiteral("Sexo"),
                                QStringLiteral("IdCapa"),
                                QStringLiteral("IdPelo"),
                                QStringLiteral("IdCaracter"),
                                QStringLiteral("TipoMascota"),
                                QStringLiteral("Chip"),
                                QStringLiteral("Cartilla"),
                                QStringLiteral("DocumentoIdentidad")};
const QStringList kEstado = {QStringLiteral("IdEstado"),
                             QStringLiteral("IdVeterinario"),
                             QStringLiteral("IdCondicionCorporal"),
                             QStringLiteral("Peso"),
                             QStringLiteral("FechaNacimiento"),
                             QStringLiteral("FechaAlta"),
                             QStringLiteral("FechaUltimaVisita"),
                             QStringLiteral("NumHospitalizacion"),
                             QStringLiteral("Jaula"),
                             QStringLiteral("Baja"),
                             QStringLiteral("FechaBaja"),
                             QStringLiteral("IdMotivoBaja"),
                             QStringLiteral("IdPlanSalud"),
                             QStringLiteral("CaducidadPlan")};
} // namespace

MascotaWindow::MascotaWindow(Entorno& entorno, QWidget* padre) : QWidget(padre), e_(entorno), form_(entorno) {
    setObjectName(QStringLiteral("frmMascotas"));
    form_.traerAlFrente = [this] { traerAlFrente(this); };
    setWindowTitle(kTituloMascotas);

    leyenda_ = new QLabel;
    leyenda_->setObjectName(QStringLiteral("lblLeyenda"));
    QFont negrita = leyenda_->font();
    negrita.setBold(true);
    leyenda_->setFont(negrita);
    propietario_ = new QLabel;
    propietario_->setObjectName(QStringLiteral("lblPropietario"));
    comercial_ = new QLabel;
    comercial_->setObjectName(QStringLiteral("lblFichaComercial"));
    auto* cabecera = new QGroupBox(QStringLiteral("Propietario"));
    auto* capaCabecera = new QVBoxLayout(cabecera);
    capaCabecera->addWidget(propietario_);
    capaCabecera->addWidget(comercial_);

    lista_ = new QTreeWidget;
    lista_->setObjectName(QStringLiteral("lvwMascotas"));
    lista_->setHeaderLabels({QStringLiteral("Mascota"), QStringLiteral("Especie"), QStringLiteral("Raza"),
                             QStringLiteral("Sexo"), QStringLiteral("Estado")});
    lista_->setRootIsDecorated(false);
    lista_->setMinimumWidth(440);
    lista_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(lista_, &QTreeWidget::currentItemChanged, this, &MascotaWindow::cambioDeFila);

    auto grupo = [this](const QString& titulo, const QStringList& columnas) {
        auto* g = new QGroupBox(titulo);
        auto* f = new QFormLayout(g);
        for (const QString& c : columnas) {
            QWidget* w = crearEntrada(c);
            const QString tabla = MascotaStore::tablaLookup(c);
            if (!tabla.isEmpty() && c != QStringLiteral("IdPlanSalud")) {
                auto* fila = new QHBoxLayout;
                fila->addWidget(w, 1);
                auto* mas = boton(QStringLiteral("cmdAnadir") + c, QStringLiteral("+"));
                mas->setToolTip(QStringLiteral("Añadir ") + descriptorTabla(tabla)->descTabla);
                mas->setFixedWidth(28);
                connect(mas, &QPushButton::clicked, this, [this, c] { anadir(c); });
                fila->addWidget(mas);
                f->addRow(etiqueta(c), fila);
            } else if (c == QStringLiteral("IdPlanSalud")) {
                auto* fila = new QHBoxLayout;
                fila->addWidget(w, 1);
                auto* lupa = boton(QStringLiteral("cmdBuscarPlan"), QStringLiteral("Buscar..."));
                connect(lupa, &QPushButton::clicked, this, &MascotaWindow::buscarPlan);
                fila->addWidget(lupa);
                f->addRow(etiqueta(c), fila);
            } else {
                f->addRow(etiqueta(c), w);
            }
        }
        return g;
    };
    auto* identidad = grupo(QStringLiteral("Datos de la mascota"), kIdentidad);
    auto* estado = grupo(QStringLiteral("Estado, fechas y plan de salud"), kEstado);
    caducado_ = new QLabel(QStringLiteral("¡Plan de salud caducado!"));
    caducado_->setObjectName(QStringLiteral("lblPlanCaducado"));
    caducado_->setStyleSheet(QStringLiteral("color: #b00000; font-weight: bold"));
    static_cast<QFormLayout*>(estado->layout())->addRow(QString(), caducado_);
    auto* notas = new QGroupBox(QStringLiteral("Notas y avisos"));
    auto* capaNotas = new QFormLayout(notas);
    capaNotas->addRow(etiqueta(QStringLiteral("Notas")), crearEntrada(QStringLiteral("Notas")));
    capaNotas->addRow(etiqueta(QStringLiteral("Avisos")), crearEntrada(QStringLiteral("Avisos")));

    auto* nuevo = boton(QStringLiteral("cmdNuevo"), QStringLiteral("Nueva"));
    auto* guardar = boton(QStringLiteral("cmdGuardar"), QStringLiteral("Guardar"));
    auto* eliminar = boton(QStringLiteral("cmdEliminar"), QStringLiteral("Eliminar"));
    auto* cartas = boton(QStringLiteral("cmdCartas"), QStringLiteral("Cartas..."));
    auto* plan = boton(QStringLiteral("cmdImprimirPlan"), QStringLiteral("Imprimir plan de salud"));
    auto* cerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    auto* visitas = boton(QStringLiteral("cmdVisitas"), QStringLiteral("Visitas"));
    auto* estancias = boton(QStringLiteral("cmdHospitalizaciones"), QStringLiteral("Hospitalizaciones"));
    connect(visitas, &QPushButton::clicked, this, [this] {
        if (form_.mascotaElegida(QStringLiteral("Visitas")))
            emit abrirVisitas(form_.propietario().IdCliente, *form_.idMascota());
    });
    connect(estancias, &QPushButton::clicked, this, [this] {
        if (form_.mascotaElegida(QStringLiteral("Mtto. de Recordatorios")))
            emit abrirHospitalizaciones(*form_.idMascota(), form_.texto(QStringLiteral("Nombre")));
    });
    connect(cartas, &QPushButton::clicked, this, [this] { form_.cartas(); });
    connect(plan, &QPushButton::clicked, this, [this] { form_.imprimirPlan(); });
    connect(nuevo, &QPushButton::clicked, this, &MascotaWindow::nueva);
    connect(guardar, &QPushButton::clicked, this, &MascotaWindow::guardar);
    connect(eliminar, &QPushButton::clicked, this, &MascotaWindow::eliminar);
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);
    auto* botones = new QHBoxLayout;
    for (auto* b : {visitas, estancias, cartas, plan})
        botones->addWidget(b);
    botones->addStretch();
    for (auto* b : {nuevo, guardar, eliminar, cerrar})
        botones->addWidget(b);

    auto* columnasCampos = new QHBoxLayout;
    columnasCampos->addWidget(identidad);
    columnasCampos->addWidget(estado);
    auto* derecha = new QVBoxLayout;
    derecha->addWidget(leyenda_);
    derecha->addLayout(columnasCampos);
    derecha->addWidget(notas);
    auto* cuerpo = new QHBoxLayout;
    cuerpo->addWidget(lista_);
    cuerpo->addLayout(derecha, 1);
    auto* capa = new QVBoxLayout(this);
    capa->addWidget(cabecera);
    capa->addLayout(cuerpo, 1);
    capa->addLayout(botones);
    mostrarTodo();
}

QWidget* MascotaWindow::crearEntrada(const QString& c) {
    QWidget* w = nullptr;
    if (!MascotaStore::tablaLookup(c).isEmpty() || c == QStringLiteral("Sexo") ||
        c == QStringLiteral("TipoMascota")) {
        auto* combo = new QComboBox;
        combo->setObjectName(QStringLiteral("cbo") + c);
        combo->setMinimumWidth(160);
        if (c == QStringLiteral("TipoMascota")) {
            combo->setEditable(true);
            connect(combo, &QComboBox::currentTextChanged, this,
                    [this, c](const QString& t) { cambio(c, t); });
        } else {
            connect(combo, &QComboBox::currentIndexChanged, this, [this, c, combo](int) {
                const QVariant v = combo->currentData();
                cambio(c, c == QStringLiteral("Sexo")
                              ? combo->currentText()
                              : (v.isValid() ? QString::number(v.toLongLong()) : QString()));
            });
        }
        w = combo;
    } else if (c == QStringLiteral("Baja")) {
        auto* chk = new QCheckBox(QStringLiteral("Dada de baja"));
        chk->setObjectName(QStringLiteral("chkBaja"));
        connect(chk, &QCheckBox::toggled, this, [this, c](bool v) { cambio(c, v ? kSi : kNo); });
        w = chk;
    } else if (c == QStringLiteral("Notas") || c == QStringLiteral("Avisos")) {
        auto* texto = new QPlainTextEdit;
        texto->setObjectName(QStringLiteral("txt") + c);
        texto->setMaximumHeight(70);
        connect(texto, &QPlainTextEdit::textChanged, this,
                [this, c, texto] { cambio(c, texto->toPlainText()); });
        w = texto;
    } else {
        auto* linea = new QLineEdit;
        linea->setObjectName(QStringLiteral("txt") + c);
        const DescriptorColumna* d = tablaMascotas().columna(c);
        if (d && d->longitud > 0) linea->setMaxLength(d->longitud);
        linea->setReadOnly(MascotaForm::soloLectura(c));
        connect(linea, &QLineEdit::textEdited, this, [this, c](const QString& t) { cambio(c, t); });
        if (c == QStringLiteral("Chip")) linea->installEventFilter(this);
        w = linea;
    }
    entradas_.insert(c, w);
    return w;
}

void MascotaWindow::llenarCombo(const QString& c) {
    auto* combo = qobject_cast<QComboBox*>(entradas_.value(c));
    if (!combo) return;
    const bool antes = actualizando_;
    actualizando_ = true;
    combo->clear();
    if (c == QStringLiteral("Sexo")) {
        combo->addItems(MascotaForm::sexos());
        combo->setCurrentText(form_.texto(c));
    } else if (c == QStringLiteral("TipoMascota")) {
        combo->addItem(QString());
        combo->addItems(form_.tiposMascota());
        combo->setCurrentText(form_.texto(c));
    } else {
        combo->addItem(QString());
        for (const auto& o : form_.opciones(c))
            combo->addItem(o.texto, o.clave);
        const QString actual = form_.texto(c);
        const int i = actual.isEmpty() ? 0 : combo->findData(actual.toLongLong());
        if (i < 0 && !actual.isEmpty()) {
            // A value no longer offered (an inactive entry) stays shown as it is stored.
            combo->addItem(QStringLiteral("(") + actual + QLatin1Char(')'), actual.toLongLong());
            combo->setCurrentIndex(combo->count() - 1);
        } else {
            combo->setCurrentIndex(std::max(i, 0));
        }
    }
    actualizando_ = antes;
}

void MascotaWindow::cambio(const QString& c, const QString& texto) {
    if (actualizando_) return;
    if (!form_.setTexto(c, texto)) {
        mostrarCampos(); // the lock was refused: show the pet as it is
        return;
    }
    if (c == QStringLiteral("IdEspecie")) llenarCombo(QStringLiteral("IdRaza"));
    if (c == QStringLiteral("IdPlanSalud") || c == QStringLiteral("CaducidadPlan"))
        caducado_->setVisible(form_.planCaducado());
}

bool MascotaWindow::eventFilter(QObject* objeto, QEvent* evento) {
    if (evento->type() == QEvent::FocusOut && objeto == entradas_.value(QStringLiteral("Chip")) &&
        !actualizando_) {
        if (!form_.comprobarChip()) QTimer::singleShot(0, this, [this] { ponerFoco(); });
    }
    return QWidget::eventFilter(objeto, evento);
}

bool MascotaWindow::abrir(qint64 idCliente, std::optional<qint64> idMascota) {
    const bool ok = form_.abrir(idCliente, idMascota);
    mostrarTodo();
    return ok;
}

bool MascotaWindow::abrirDesdeMenu() {
    const bool ok = form_.abrirDesdeMenu();
    mostrarTodo();
    return ok;
}

void MascotaWindow::mostrarTodo() {
    const DatosPropietario& p = form_.propietario();
    if (form_.hayCliente()) {
        propietario_->setText(QStringLiteral("Cliente nº ") + QString::number(p.IdCliente) +
                              QStringLiteral(": ") + p.Nombre + QStringLiteral("    Protección de datos: ") +
                              form_.textoLOPD());
        comercial_->setText(
            QStringLiteral("Tarifa: ") + p.Tarifa + QStringLiteral("    Descuento: ") +
            formatoImporte(p.DtoGeneral) + QStringLiteral(" %    I.V.A. a aplicar: ") +
            (p.IVAaAplicar.isEmpty() ? QStringLiteral("el de cada artículo") : p.IVAaAplicar));
    } else {
        propietario_->setText(QStringLiteral("Sin cliente seleccionado"));
        comercial_->clear();
    }
    for (auto it = entradas_.cbegin(); it != entradas_.cend(); ++it)
        llenarCombo(it.key());
    mostrarLista();
    mostrarCampos();
}

void MascotaWindow::mostrarLista() {
    const bool antes = actualizando_;
    actualizando_ = true;
    lista_->clear();
    for (const auto& f : form_.lista())
        new QTreeWidgetItem(lista_, {f.Mascota, f.Especie, f.Raza, f.Sexo, f.Estado});
    lista_->setCurrentItem(form_.filaActual() >= 0 ? lista_->topLevelItem(form_.filaActual()) : nullptr);
    actualizando_ = antes;
}

void MascotaWindow::mostrarCampos() {
    const bool antes = actualizando_;
    actualizando_ = true;
    for (auto it = entradas_.cbegin(); it != entradas_.cend(); ++it) {
        const QString& c = it.key();
        const QString t = form_.texto(c);
        if (auto* l = qobject_cast<QLineEdit*>(it.value())) {
            if (l->text() != t) l->setText(t);
        } else if (auto* p = qobject_cast<QPlainTextEdit*>(it.value())) {
            if (p->toPlainText() != t) p->setPlainText(t);
        } else if (auto* k = qobject_cast<QCheckBox*>(it.value())) {
            k->setChecked(t == kSi);
        } else if (auto* combo = qobject_cast<QComboBox*>(it.value())) {
            if (c == QStringLiteral("IdRaza")) llenarCombo(c);
            if (c == QStringLiteral("Sexo") || c == QStringLiteral("TipoMascota")) {
                combo->setCurrentText(t);
            } else {
                const int i = t.isEmpty() ? 0 : combo->findData(t.toLongLong());
                if (i >= 0)
                    combo->setCurrentIndex(i);
                else
                    llenarCombo(c);
            }
        }
    }
    leyenda_->setText(form_.leyenda());
    caducado_->setVisible(form_.planCaducado());
    entradas_.value(QStringLiteral("Nombre"))->setEnabled(form_.hayCliente());
    actualizando_ = antes;
}

void MascotaWindow::ponerFoco() {
    if (QWidget* w = entradas_.value(form_.foco)) {
        w->setFocus();
        if (auto* l = qobject_cast<QLineEdit*>(w)) l->selectAll();
    }
}

void MascotaWindow::cambioDeFila() {
    if (actualizando_) return;
    const int fila = lista_->indexOfTopLevelItem(lista_->currentItem());
    if (fila < 0) return;
    form_.seleccionar(fila);
    mostrarLista();
    mostrarCampos();
    ponerFoco();
}

void MascotaWindow::nueva() {
    if (!form_.nueva()) {
        ponerFoco();
        return;
    }
    mostrarLista();
    mostrarCampos();
    entradas_.value(QStringLiteral("Nombre"))->setFocus();
}

void MascotaWindow::guardar() {
    if (!form_.guardar()) {
        ponerFoco();
        return;
    }
    llenarCombo(QStringLiteral("TipoMascota"));
    mostrarLista();
    mostrarCampos();
}

void MascotaWindow::eliminar() {
    if (!form_.eliminar()) return;
    mostrarLista();
    mostrarCampos();
}

void MascotaWindow::anadir(const QString& c) {
    const QString tabla = MascotaStore::tablaLookup(c);
    if (tabla.isEmpty()) return;
    abrirEditorTabla(e_, tabla, this);
    llenarCombo(c);
}

void MascotaWindow::buscarPlan() {
    if (!e_.buscadores.planSalud) return;
    if (form_.elegirPlan()) {
        llenarCombo(QStringLiteral("IdPlanSalud"));
        mostrarCampos();
    }
}

void MascotaWindow::closeEvent(QCloseEvent* evento) {
    if (form_.puedeCerrar())
        evento->accept();
    else
        evento->ignore();
}
