#include "clinical/ui/visita_window.h"
#include "gui/controles.h"

#include "app/instalacion.h"
#include "clinical/croquis.h"
#include "clinical/ui/croquis_widget.h"
#include "clinical/ui/fotos_widget.h"
#include "clinical/ui/hospitalizacion_window.h"
#include "core/formatos.h"
#include "gui/editor_lista_window.h"
#include "gui/traer_al_frente.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTextEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
QString etiqueta(const QString& columna) {
    const DescriptorColumna* c = tablaVisitas().columna(columna);
    return (c ? c->Descripcion : columna) + QLatin1Char(':');
}

} // namespace

VisitaWindow::VisitaWindow(Entorno& entorno, QWidget* padre) : QWidget(padre), e_(entorno), form_(entorno) {
    setObjectName(QStringLiteral("frmVisitas"));
    setWindowTitle(kTituloVisitas);
    form_.traerAlFrente = [this] { traerAlFrente(this); };
    form_.pedirJaula = [this](const QString& j) { return pedirJaula(this, j); };
    form_.pedirAlta = [this] { return pedirAlta(this, e_); };

    // Client, pet, debt and the caption.
    leyenda_ = new QLabel;
    leyenda_->setObjectName(QStringLiteral("lblLeyenda"));
    QFont negrita = leyenda_->font();
    negrita.setBold(true);
    negrita.setPointSizeF(negrita.pointSizeF() * 1.2);
    leyenda_->setFont(negrita);
    cliente_ = new QLabel;
    cliente_->setObjectName(QStringLiteral("lblCliente"));
    deuda_ = new QLabel;
    deuda_->setObjectName(QStringLiteral("lblDeuda"));
    deuda_->setStyleSheet(QStringLiteral("color: #b00000; font-weight: bold"));
    mascota_ = new QComboBox;
    mascota_->setObjectName(QStringLiteral("cboMascota"));
    mascota_->setMinimumWidth(180);
    connect(mascota_, &QComboBox::currentIndexChanged, this, [this](int) {
        if (actualizando_) return;
        const auto id = claveElegida(mascota_);
        if (id) form_.setMascota(*id);
        mostrarTodo();
    });
    auto* buscarCliente = boton(QStringLiteral("cmdBuscarCliente"), QStringLiteral("Cliente..."));
    connect(buscarCliente, &QPushButton::clicked, this, [this] {
        form_.elegirCliente();
        mostrarTodo();
    });
    hospitalizar_ = new QCheckBox(QStringLiteral("Hospitalizar"));
    hospitalizar_->setObjectName(QStringLiteral("chkHospitalizar"));
    connect(hospitalizar_, &QCheckBox::clicked, this, [this](bool v) {
        form_.setHospitalizar(v);
        mostrarCabecera();
    });
    hospitalizado_ = new QLabel(kTextoHospitalizado);
    hospitalizado_->setObjectName(QStringLiteral("lblHospitalizado"));
    hospitalizado_->setStyleSheet(QStringLiteral("color: #b00000; font-weight: bold"));
    jaula_ = new QLabel;
    jaula_->setObjectName(QStringLiteral("lblJaula"));
    jaula_->setStyleSheet(QStringLiteral("font-weight: bold"));
    presupuesto_ = new QCheckBox(QStringLiteral("Presupuesto"));
    presupuesto_->setObjectName(QStringLiteral("chkPresupuesto"));
    presupuesto_->setEnabled(false);

    auto* cabecera = new QGroupBox(QStringLiteral("Cliente y mascota"));
    auto* filaCliente = new QHBoxLayout;
    filaCliente->addWidget(cliente_, 1);
    filaCliente->addWidget(buscarCliente);
    filaCliente->addWidget(new QLabel(QStringLiteral("Mascota:")));
    filaCliente->addWidget(mascota_);
    auto* filaEstado = new QHBoxLayout;
    filaEstado->addWidget(leyenda_);
    filaEstado->addSpacing(20);
    filaEstado->addWidget(deuda_);
    filaEstado->addStretch();
    filaEstado->addWidget(hospitalizar_);
    filaEstado->addWidget(hospitalizado_);
    filaEstado->addWidget(jaula_);
    filaEstado->addSpacing(12);
    filaEstado->addWidget(presupuesto_);
    auto* capaCabecera = new QVBoxLayout(cabecera);
    capaCabecera->addLayout(filaCliente);
    capaCabecera->addLayout(filaEstado);

    pestanas_ = new QTabWidget;
    pestanas_->setObjectName(QStringLiteral("tabVisita"));
    pestanas_->addTab(pestanaVisita(), QStringLiteral("Visita"));
    pestanas_->addTab(pestanaHistorial(), QStringLiteral("Historial"));
    pestanas_->addTab(pestanaAnaliticas(), QStringLiteral("Analíticas"));
    pestanas_->addTab(pestanaEspecialidades(), QStringLiteral("Especialidades"));
    fotos_ = new FotosWidget(e_);
    fotos_->setObjectName(QStringLiteral("fotos"));
    pestanas_->addTab(fotos_, QStringLiteral("Fotografías"));
    pestanas_->addTab(pestanaRecetas(), QStringLiteral("Recetas"));

    auto* nuevo = boton(QStringLiteral("cmdNuevo"), QStringLiteral("Nueva"));
    auto* guardar = boton(QStringLiteral("cmdGuardar"), QStringLiteral("Guardar"));
    auto* eliminar = boton(QStringLiteral("cmdEliminar"), QStringLiteral("Eliminar"));
    auto* buscar = boton(QStringLiteral("cmdBuscar"), QStringLiteral("Buscar..."));
    auto* cobrar = boton(QStringLiteral("cmdCobrar"), QStringLiteral("Cobrar (albarán)"));
    auto* fichaCliente = boton(QStringLiteral("cmdFichaCliente"), QStringLiteral("Cliente"));
    connect(fichaCliente, &QPushButton::clicked, this, [this] {
        if (form_.cliente()) emit abrirCliente(form_.cliente()->id);
    });
    auto* ficha = boton(QStringLiteral("cmdMascota"), QStringLiteral("Mascota"));
    auto* estancias = boton(QStringLiteral("cmdHospitalizaciones"), QStringLiteral("Hospitalizaciones"));
    auto* informe = boton(QStringLiteral("cmdInforme"), QStringLiteral("Informe..."));
    auto* cartas = boton(QStringLiteral("cmdCartas"), QStringLiteral("Cartas..."));
    auto* presupuesto = boton(QStringLiteral("cmdPresupuesto"), QStringLiteral("Presupuesto"));
    connect(presupuesto, &QPushButton::clicked, this, [this] {
        form_.presupuestar();
        mostrarTodo();
    });
    auto* cerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("Cerrar"));
    connect(informe, &QPushButton::clicked, this, [this] {
        form_.imprimirInforme();
        mostrarTodo();
    });
    connect(cartas, &QPushButton::clicked, this, [this] {
        form_.carta();
        mostrarTodo();
    });
    connect(nuevo, &QPushButton::clicked, this, &VisitaWindow::nueva);
    connect(guardar, &QPushButton::clicked, this, &VisitaWindow::guardar);
    connect(eliminar, &QPushButton::clicked, this, &VisitaWindow::eliminar);
    connect(buscar, &QPushButton::clicked, this, &VisitaWindow::buscar);
    connect(cobrar, &QPushButton::clicked, this, &VisitaWindow::cobrar);
    connect(ficha, &QPushButton::clicked, this, [this] {
        if (form_.mascota()) emit abrirMascota(form_.mascota()->IdCliente, form_.mascota()->IdMascota);
    });
    connect(estancias, &QPushButton::clicked, this, [this] {
        if (form_.mascota()) emit abrirHospitalizaciones(form_.mascota()->IdMascota, form_.mascota()->Nombre);
    });
    connect(cerrar, &QPushButton::clicked, this, &QWidget::close);
    auto* botones = new QHBoxLayout;
    for (auto* b : {fichaCliente, ficha, estancias, informe, cartas})
        botones->addWidget(b);
    botones->addStretch();
    for (auto* b : {nuevo, guardar, eliminar, buscar, presupuesto, cobrar, cerrar})
        botones->addWidget(b);

    auto* capa = new QVBoxLayout(this);
    capa->addWidget(cabecera);
    capa->addWidget(pestanas_, 1);
    capa->addLayout(botones);
    mostrarTodo();
}

QWidget* VisitaWindow::crearEntrada(const QString& c) {
    QWidget* w = nullptr;
    if (!VisitaStore::tablaLookup(c).isEmpty()) {
        auto* combo = new QComboBox;
        combo->setObjectName(QStringLiteral("cbo") + c);
        combo->setMinimumWidth(200);
        connect(combo, &QComboBox::currentIndexChanged, this, [this, c, combo](int) {
            const auto v = claveElegida(combo);
            cambio(c, v ? QString::number(*v) : QString());
        });
        w = combo;
    } else if (c == QStringLiteral("Anamnesis") || c == QStringLiteral("Tratamiento")) {
        auto* texto = new QTextEdit;
        texto->setObjectName(QStringLiteral("txt") + c);
        texto->setAcceptRichText(true);
        connect(texto, &QTextEdit::textChanged, this, [this, c, texto] { cambio(c, texto->toHtml()); });
        w = texto;
    } else {
        auto* linea = new QLineEdit;
        linea->setObjectName(QStringLiteral("txt") + c);
        linea->setMaximumWidth(120);
        connect(linea, &QLineEdit::textEdited, this, [this, c](const QString& t) { cambio(c, t); });
        w = linea;
    }
    entradas_.insert(c, w);
    return w;
}

QWidget* VisitaWindow::pestanaVisita() {
    auto* p = new QWidget;
    auto* datos = new QFormLayout;
    auto* fechaHora = new QHBoxLayout;
    fechaHora->addWidget(crearEntrada(QStringLiteral("Fecha")));
    fechaHora->addWidget(new QLabel(QStringLiteral("Hora:")));
    fechaHora->addWidget(crearEntrada(QStringLiteral("Hora")));
    fechaHora->addStretch();
    datos->addRow(QStringLiteral("Fecha:"), fechaHora);
    for (const QString& c : {QStringLiteral("IdTipoVisita"), QStringLiteral("IdDiagnostico")}) {
        auto* fila = new QHBoxLayout;
        fila->addWidget(crearEntrada(c), 1);
        auto* mas = boton(QStringLiteral("cmdAnadir") + c, QStringLiteral("+"));
        mas->setFixedWidth(28);
        mas->setToolTip(QStringLiteral("Añadir ") + etiqueta(c).chopped(1));
        connect(mas, &QPushButton::clicked, this, [this, c] { anadirEntrada(c); });
        fila->addWidget(mas);
        datos->addRow(etiqueta(c), fila);
    }
    datos->addRow(etiqueta(QStringLiteral("IdVeterinario")), crearEntrada(QStringLiteral("IdVeterinario")));
    auto* medidas = new QHBoxLayout;
    medidas->addWidget(crearEntrada(QStringLiteral("Peso")));
    medidas->addWidget(new QLabel(QStringLiteral("kg    Temperatura:")));
    medidas->addWidget(crearEntrada(QStringLiteral("Temperatura")));
    medidas->addWidget(new QLabel(QStringLiteral("ºC    Condición corporal:")));
    medidas->addWidget(crearEntrada(QStringLiteral("IdCondicionCorporal")));
    medidas->addStretch();
    datos->addRow(QStringLiteral("Peso:"), medidas);

    auto textos = new QHBoxLayout;
    for (const auto& [c, titulo] : {std::pair{QStringLiteral("Anamnesis"), QStringLiteral("Anamnesis (vista ampliada)")},
                                    std::pair{QStringLiteral("Tratamiento"),
                                              QStringLiteral("Tratamiento (vista ampliada)")}}) {
        auto* g = new QGroupBox(c);
        auto* v = new QVBoxLayout(g);
        auto* texto = static_cast<QTextEdit*>(crearEntrada(c));
        v->addWidget(texto);
        auto* amp = boton(QStringLiteral("cmdAmpliar") + c, QStringLiteral("Ampliar..."));
        const QString t = titulo;
        connect(amp, &QPushButton::clicked, this, [this, t, texto] { ampliar(t, texto); });
        v->addWidget(amp, 0, Qt::AlignRight);
        textos->addWidget(g);
    }
    auto* capa = new QVBoxLayout(p);
    capa->addLayout(datos);
    capa->addLayout(textos, 1);
    return p;
}

QWidget* VisitaWindow::pestanaHistorial() {
    auto* p = new QWidget;
    cabeceraHistorial_ = new QLabel;
    cabeceraHistorial_->setObjectName(QStringLiteral("lblHistorial"));
    historial_ = listaPlana(QStringLiteral("lvwHistorial"),
                       {QStringLiteral("Fecha"), QStringLiteral("Hora"), QStringLiteral("Tipo de Visita"),
                        QStringLiteral("Diagnóstico"), QStringLiteral("Veterinario"), QStringLiteral("Peso"),
                        QStringLiteral("Presup.")});
    connect(historial_, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        resolverEspecialidad();
        form_.abrirHistorial(historial_->indexOfTopLevelItem(item));
        mostrarTodo();
    });
    auto* capa = new QVBoxLayout(p);
    capa->addWidget(cabeceraHistorial_);
    capa->addWidget(historial_);
    capa->addWidget(new QLabel(QStringLiteral("Doble clic en una visita para abrirla.")));
    return p;
}

QWidget* VisitaWindow::pestanaAnaliticas() {
    auto* p = new QWidget;
    analiticas_ = listaPlana(QStringLiteral("lvwAnaliticas"),
                        {QStringLiteral("Grupo"), QStringLiteral("Resultado"), QStringLiteral("ValorNormal"),
                         QStringLiteral("Unidades"), QStringLiteral("DatoPrivado")});
    analiticas_->setRootIsDecorated(true);
    connect(analiticas_, &QTreeWidget::currentItemChanged, this, [this] {
        const auto id = resultadoElegido();
        for (const auto& r : form_.resultados())
            if (id && r.IdResultado == *id) {
                resultado_->setText(r.Resultado);
                resultadoPrivado_->setChecked(r.DatoPrivado);
            }
    });
    analitica_ = new QComboBox;
    analitica_->setObjectName(QStringLiteral("cboAnalitica"));
    resultado_ = new QLineEdit;
    resultado_->setObjectName(QStringLiteral("txtResultado"));
    resultadoPrivado_ = new QCheckBox(QStringLiteral("Dato privado"));
    resultadoPrivado_->setObjectName(QStringLiteral("chkResultadoPrivado"));
    auto* anadir = boton(QStringLiteral("cmdAnadirResultado"), QStringLiteral("Añadir"));
    auto* modificar = boton(QStringLiteral("cmdModificarResultado"), QStringLiteral("Modificar"));
    auto* quitar = boton(QStringLiteral("cmdEliminarResultado"), QStringLiteral("Eliminar"));
    auto* amp = boton(QStringLiteral("cmdAmpliarResultado"), QStringLiteral("Ampliar..."));
    amp->setToolTip(QStringLiteral("Ampliar el resultado de esta Analítica"));
    connect(anadir, &QPushButton::clicked, this, [this] {
        if (const auto a = claveElegida(analitica_))
            form_.anadirResultado(*a, resultado_->text(), resultadoPrivado_->isChecked());
        mostrarTodo();
    });
    connect(modificar, &QPushButton::clicked, this, [this] {
        if (const auto id = resultadoElegido())
            form_.modificarResultado(*id, resultado_->text(), resultadoPrivado_->isChecked());
        mostrarDetalle();
    });
    connect(quitar, &QPushButton::clicked, this, [this] {
        if (const auto id = resultadoElegido()) form_.eliminarResultado(*id);
        mostrarDetalle();
    });
    connect(amp, &QPushButton::clicked, this, [this] {
        QPlainTextEdit texto(resultado_->text());
        ampliarTexto(QStringLiteral("Ampliar el resultado de esta Analítica"), &texto);
        resultado_->setText(texto.toPlainText());
    });
    auto* entrada = new QHBoxLayout;
    entrada->addWidget(new QLabel(QStringLiteral("Analítica:")));
    entrada->addWidget(analitica_, 1);
    entrada->addWidget(new QLabel(QStringLiteral("Resultado:")));
    entrada->addWidget(resultado_, 1);
    entrada->addWidget(resultadoPrivado_);
    auto* botones = new QHBoxLayout;
    botones->addStretch();
    for (auto* b : {anadir, modificar, quitar, amp})
        botones->addWidget(b);
    auto* capa = new QVBoxLayout(p);
    capa->addWidget(analiticas_, 1);
    capa->addLayout(entrada);
    capa->addLayout(botones);
    return p;
}

QWidget* VisitaWindow::pestanaEspecialidades() {
    auto* p = new QWidget;
    especialidades_ = new QListWidget;
    especialidades_->setObjectName(QStringLiteral("lstEspecialidades"));
    especialidades_->setMaximumWidth(220);
    connect(especialidades_, &QListWidget::currentRowChanged, this, [this] {
        if (actualizando_) return;
        resolverEspecialidad();
        mostrarEspecialidad();
    });
    especialidad_ = new QComboBox;
    especialidad_->setObjectName(QStringLiteral("cboEspecialidad"));
    auto* anadir = boton(QStringLiteral("cmdAnadirEspecialidad"), QStringLiteral("Añadir"));
    connect(anadir, &QPushButton::clicked, this, [this] {
        if (const auto id = claveElegida(especialidad_)) form_.anadirEspecialidad(*id);
        mostrarTodo();
        especialidades_->setCurrentRow(especialidades_->count() - 1);
    });
    protocolo_ = new QPlainTextEdit;
    protocolo_->setObjectName(QStringLiteral("txtProtocolo"));
    protocolo_->setReadOnly(true);
    protocolo_->setMaximumHeight(80);
    resultadoEspecialidad_ = new QPlainTextEdit;
    resultadoEspecialidad_->setObjectName(QStringLiteral("txtResultadoEspecialidad"));
    resultadoEspecialidad_->setMaximumHeight(90);
    especialidadPrivada_ = new QCheckBox(QStringLiteral("Dato privado"));
    especialidadPrivada_->setObjectName(QStringLiteral("chkEspecialidadPrivada"));
    auto* guardar = boton(QStringLiteral("cmdGuardarEspecialidad"), QStringLiteral("Guardar especialidad"));
    auto* quitar = boton(QStringLiteral("cmdEliminarEspecialidad"), QStringLiteral("Eliminar"));
    auto* amp = boton(QStringLiteral("cmdAmpliarEspecialidad"), QStringLiteral("Ampliar..."));
    amp->setToolTip(QStringLiteral("Ampliar el resultado de esta Especialidad"));
    connect(guardar, &QPushButton::clicked, this, &VisitaWindow::guardarEspecialidad);
    connect(resultadoEspecialidad_, &QPlainTextEdit::textChanged, this, [this] {
        if (!actualizando_) especialidadCambiada_ = true;
    });
    connect(especialidadPrivada_, &QCheckBox::toggled, this, [this] {
        if (!actualizando_) especialidadCambiada_ = true;
    });
    connect(quitar, &QPushButton::clicked, this, [this] {
        if (const auto id = especialidadElegida()) form_.eliminarEspecialidad(*id);
        mostrarDetalle();
    });
    connect(amp, &QPushButton::clicked, this, [this] {
        ampliarTexto(QStringLiteral("Ampliar el resultado de esta Especialidad"), resultadoEspecialidad_);
    });
    auto* izquierda = new QVBoxLayout;
    izquierda->addWidget(especialidades_, 1);
    izquierda->addWidget(especialidad_);
    izquierda->addWidget(anadir);
    auto* derecha = new QFormLayout;
    derecha->addRow(QStringLiteral("Protocolo:"), protocolo_);
    derecha->addRow(QStringLiteral("Resultado:"), resultadoEspecialidad_);
    croquis_ = new CroquisPanel;
    croquis_->setObjectName(QStringLiteral("pnlCroquis"));
    croquis_->setMinimumHeight(300);
    connect(croquis_, &CroquisPanel::marcasCambiadas, this, [this] {
        if (!actualizando_) especialidadCambiada_ = true;
    });
    derecha->addRow(QStringLiteral("Croquis:"), croquis_);
    auto* botones = new QHBoxLayout;
    botones->addWidget(especialidadPrivada_);
    botones->addStretch();
    for (auto* b : {amp, guardar, quitar})
        botones->addWidget(b);
    derecha->addRow(botones);
    auto* capa = new QHBoxLayout(p);
    capa->addLayout(izquierda);
    capa->addLayout(derecha, 1);
    return p;
}

QWidget* VisitaWindow::pestanaRecetas() {
    auto* p = new QWidget;
    recetas_ = listaPlana(QStringLiteral("lvwRecetas"), {QStringLiteral("Fecha"), QStringLiteral("DPS"),
                                                    QStringLiteral("Dosificación"), QStringLiteral("Veterinario")});
    recetas_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(recetas_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) {
        form_.cargarEntradaReceta(recetas_->indexOfTopLevelItem(item));
        mostrarDetalle();
    });
    fechaReceta_ = new QLineEdit;
    fechaReceta_->setObjectName(QStringLiteral("txtFechaReceta"));
    fechaReceta_->setMaximumWidth(100);
    medicamento_ = new QComboBox;
    medicamento_->setObjectName(QStringLiteral("cboMedicamento"));
    veterinarioReceta_ = new QComboBox;
    veterinarioReceta_->setObjectName(QStringLiteral("cboVeterinarioReceta"));
    dispensador_ = new QLineEdit;
    dispensador_->setObjectName(QStringLiteral("txtDispensador"));
    dosificacion_ = new QLineEdit;
    dosificacion_->setObjectName(QStringLiteral("txtDosificacion"));
    auto* entrada = new QFormLayout;
    auto* fila1 = new QHBoxLayout;
    fila1->addWidget(fechaReceta_);
    fila1->addWidget(new QLabel(QStringLiteral("Medicamento:")));
    fila1->addWidget(medicamento_, 1);
    fila1->addWidget(new QLabel(QStringLiteral("Veterinario:")));
    fila1->addWidget(veterinarioReceta_, 1);
    entrada->addRow(QStringLiteral("Fecha:"), fila1);
    entrada->addRow(QStringLiteral("Dispensador:"), dispensador_);
    entrada->addRow(QStringLiteral("Dosificación:"), dosificacion_);
    auto* insertar = boton(QStringLiteral("cmdInsertarReceta"), QStringLiteral("Insertar"));
    auto* insertarImprimir = boton(QStringLiteral("cmdInsertarImprimirReceta"), QStringLiteral("Insertar e imprimir"));
    auto* modificar = boton(QStringLiteral("cmdModificarReceta"), QStringLiteral("Modificar"));
    auto* quitar = boton(QStringLiteral("cmdEliminarReceta"), QStringLiteral("Eliminar"));
    auto* imprimir = boton(QStringLiteral("cmdImprimirRecetas"), QStringLiteral("Imprimir"));
    connect(insertar, &QPushButton::clicked, this, [this] {
        leerEntradaReceta();
        form_.insertarReceta();
        mostrarTodo();
    });
    connect(insertarImprimir, &QPushButton::clicked, this, [this] {
        leerEntradaReceta();
        form_.insertarReceta(true);
        mostrarTodo();
    });
    connect(modificar, &QPushButton::clicked, this, [this] {
        leerEntradaReceta();
        form_.modificarReceta(recetasElegidas());
        mostrarDetalle();
    });
    connect(quitar, &QPushButton::clicked, this, [this] {
        form_.eliminarReceta(recetasElegidas());
        mostrarDetalle();
    });
    connect(imprimir, &QPushButton::clicked, this, [this] { form_.imprimirRecetas(recetasElegidas()); });
    auto* botones = new QHBoxLayout;
    botones->addStretch();
    for (auto* b : {insertar, insertarImprimir, modificar, quitar, imprimir})
        botones->addWidget(b);
    auto* capa = new QVBoxLayout(p);
    capa->addWidget(recetas_, 1);
    capa->addLayout(entrada);
    capa->addLayout(botones);
    return p;
}

QList<int> VisitaWindow::recetasElegidas() const {
    QList<int> l;
    for (auto* item : recetas_->selectedItems())
        l << recetas_->indexOfTopLevelItem(item);
    std::sort(l.begin(), l.end());
    return l;
}

void VisitaWindow::leerEntradaReceta() {
    form_.entradaReceta.fecha = fechaReceta_->text();
    form_.entradaReceta.idMedicamento = claveElegida(medicamento_);
    form_.entradaReceta.idVeterinario = claveElegida(veterinarioReceta_);
    form_.entradaReceta.dispensador = dispensador_->text();
    form_.entradaReceta.dosificacion = dosificacion_->text();
}

std::optional<qint64> VisitaWindow::resultadoElegido() const {
    const QTreeWidgetItem* item = analiticas_->currentItem();
    if (!item || !item->data(0, Qt::UserRole).isValid()) return std::nullopt;
    return item->data(0, Qt::UserRole).toLongLong();
}

std::optional<qint64> VisitaWindow::especialidadElegida() const {
    const QListWidgetItem* item = especialidades_->currentItem();
    if (!item) return std::nullopt;
    return item->data(Qt::UserRole).toLongLong();
}

void VisitaWindow::llenarCombo(QComboBox* combo, const QList<OpcionLookup>& opciones, const QString& actual) {
    const bool antes = actualizando_;
    actualizando_ = true;
    combo->clear();
    combo->addItem(QString());
    for (const auto& o : opciones)
        combo->addItem(o.texto, o.clave);
    const int i = actual.isEmpty() ? 0 : combo->findData(actual.toLongLong());
    if (i < 0) {
        combo->addItem(QStringLiteral("(") + actual + QLatin1Char(')'), actual.toLongLong());
        combo->setCurrentIndex(combo->count() - 1);
    } else {
        combo->setCurrentIndex(i);
    }
    actualizando_ = antes;
}

void VisitaWindow::cambio(const QString& c, const QString& texto) {
    if (actualizando_) return;
    if (!form_.setTexto(c, texto)) mostrarCampos();
}

void VisitaWindow::ampliar(const QString& titulo, QTextEdit* origen) {
    QDialog d(this);
    d.setWindowTitle(titulo);
    d.resize(760, 520);
    auto* texto = new QTextEdit(&d);
    texto->setHtml(origen->toHtml());
    texto->setReadOnly(origen->isReadOnly());
    auto* bb = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &d);
    connect(bb, &QDialogButtonBox::accepted, &d, &QDialog::accept);
    connect(bb, &QDialogButtonBox::rejected, &d, &QDialog::reject);
    auto* capa = new QVBoxLayout(&d);
    capa->addWidget(texto);
    capa->addWidget(bb);
    if (d.exec() == QDialog::Accepted && texto->document()->isModified()) origen->setHtml(texto->toHtml());
}

void VisitaWindow::ampliarTexto(const QString& titulo, QPlainTextEdit* origen) {
    QDialog d(this);
    d.setWindowTitle(titulo);
    d.resize(640, 420);
    auto* texto = new QPlainTextEdit(origen->toPlainText(), &d);
    auto* bb = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &d);
    connect(bb, &QDialogButtonBox::accepted, &d, &QDialog::accept);
    connect(bb, &QDialogButtonBox::rejected, &d, &QDialog::reject);
    auto* capa = new QVBoxLayout(&d);
    capa->addWidget(texto);
    capa->addWidget(bb);
    if (d.exec() == QDialog::Accepted) origen->setPlainText(texto->toPlainText());
}

void VisitaWindow::anadirEntrada(const QString& c) {
    const QString tabla = VisitaStore::tablaLookup(c);
    if (tabla.isEmpty()) return;
    abrirEditorTabla(e_, tabla, this);
    if (auto* combo = qobject_cast<QComboBox*>(entradas_.value(c))) llenarCombo(combo, form_.opciones(c), form_.texto(c));
}

bool VisitaWindow::abrir(const AperturaVisita& apertura) {
    const bool ok = form_.abrir(apertura);
    mostrarTodo();
    return ok;
}

void VisitaWindow::presupuestoGuardado() {
    form_.releerPresupuesto();
    mostrarCabecera();
}

void VisitaWindow::mostrarTodo() {
    for (auto it = entradas_.cbegin(); it != entradas_.cend(); ++it)
        if (auto* combo = qobject_cast<QComboBox*>(it.value()))
            llenarCombo(combo, form_.opciones(it.key()), form_.texto(it.key()));
    llenarCombo(medicamento_, form_.opciones(QStringLiteral("IdMedicamento")), QString());
    llenarCombo(veterinarioReceta_, form_.opciones(QStringLiteral("IdVeterinario")), QString());
    llenarCombo(especialidad_, form_.opciones(QStringLiteral("IdEspecialidad")), QString());
    {
        const bool antes = actualizando_;
        actualizando_ = true;
        analitica_->clear();
        analitica_->addItem(QString());
        for (const auto& a : form_.analiticas())
            analitica_->addItem((a.Grupo.isEmpty() ? QString() : a.Grupo + QStringLiteral(" - ")) + a.Descripcion,
                                a.IdAnalitica);
        actualizando_ = antes;
    }
    mostrarCabecera();
    mostrarCampos();
    mostrarDetalle();
    fotos_->setVisita(form_.id());
}

void VisitaWindow::mostrarCabecera() {
    const bool antes = actualizando_;
    actualizando_ = true;
    const auto& c = form_.cliente();
    cliente_->setText(c ? QStringLiteral("Cliente nº ") + QString::number(c->id) + QStringLiteral(": ") + c->nombre +
                              QStringLiteral("    Tarifa: ") + c->tarifa + QStringLiteral("    Dto.: ") +
                              formatoImporte(c->dtoGeneral) + QStringLiteral(" %")
                        : QStringLiteral("Sin cliente seleccionado"));
    deuda_->setText(form_.textoDeuda());
    mascota_->clear();
    for (const auto& m : form_.mascotasCliente())
        mascota_->addItem(m.texto, m.id);
    if (form_.mascota()) {
        const int i = mascota_->findData(form_.mascota()->IdMascota);
        if (i < 0) mascota_->addItem(form_.mascota()->Nombre, form_.mascota()->IdMascota);
        mascota_->setCurrentIndex(i < 0 ? mascota_->count() - 1 : i);
    }
    mascota_->setEnabled(form_.esNuevo());
    leyenda_->setText(form_.leyenda());
    hospitalizar_->setChecked(form_.hospitalizado());
    hospitalizar_->setEnabled(form_.mascota().has_value());
    hospitalizado_->setVisible(form_.hospitalizado());
    jaula_->setVisible(form_.hospitalizado());
    jaula_->setText(kEtiquetaJaula + QLatin1Char(' ') + form_.jaula());
    presupuesto_->setChecked(form_.presupuestado());
    cabeceraHistorial_->setText(form_.cabeceraHistorial());
    historial_->clear();
    for (const auto& h : form_.historial()) {
        auto* item = new QTreeWidgetItem(
            historial_, {formatoFecha(h.Fecha), h.Hora.isValid() ? formatoHora(h.Hora) : QString(), h.TipoVisita,
                         h.Diagnostico, h.Veterinario, h.Peso ? formatoImporte(*h.Peso) : QString(),
                         h.Presupuesto ? QStringLiteral("Sí") : QString()});
        if (form_.id() && h.IdVisita == *form_.id()) historial_->setCurrentItem(item);
    }
    actualizando_ = antes;
}

void VisitaWindow::mostrarCampos() {
    const bool antes = actualizando_;
    actualizando_ = true;
    for (auto it = entradas_.cbegin(); it != entradas_.cend(); ++it) {
        const QString t = form_.texto(it.key());
        if (auto* l = qobject_cast<QLineEdit*>(it.value())) {
            if (l->text() != t) l->setText(t);
        } else if (auto* r = qobject_cast<QTextEdit*>(it.value())) {
            if (r->toHtml() != t) r->setHtml(t);
        } else if (auto* combo = qobject_cast<QComboBox*>(it.value())) {
            const int i = t.isEmpty() ? 0 : combo->findData(t.toLongLong());
            if (i >= 0) combo->setCurrentIndex(i);
        }
    }
    leyenda_->setText(form_.leyenda());
    actualizando_ = antes;
}

void VisitaWindow::mostrarDetalle() {
    const bool antes = actualizando_;
    actualizando_ = true;
    analiticas_->clear();
    QHash<QString, QTreeWidgetItem*> grupos;
    for (const auto& r : form_.resultados()) {
        const QString g = r.Grupo.isEmpty() ? QStringLiteral("(Sin grupo)") : r.Grupo;
        QTreeWidgetItem* padre = grupos.value(g);
        if (!padre) {
            padre = new QTreeWidgetItem(analiticas_, {g});
            QFont f = padre->font(0);
            f.setBold(true);
            padre->setFont(0, f);
            padre->setFirstColumnSpanned(false);
            grupos.insert(g, padre);
        }
        auto* item = new QTreeWidgetItem(padre, {r.Analitica, r.Resultado, r.ValorNormal, r.Unidades,
                                                 r.DatoPrivado ? QStringLiteral("Sí") : QString()});
        item->setData(0, Qt::UserRole, r.IdResultado);
    }
    analiticas_->expandAll();
    const int fila = especialidades_->currentRow();
    especialidades_->clear();
    for (const auto& s : form_.especialidades()) {
        auto* item = new QListWidgetItem(s.Especialidad, especialidades_);
        item->setData(Qt::UserRole, s.IdEspecialidadVisita);
    }
    if (fila >= 0 && fila < especialidades_->count()) especialidades_->setCurrentRow(fila);
    recetas_->clear();
    for (const auto& r : form_.recetas())
        new QTreeWidgetItem(recetas_, {formatoFecha(r.Fecha), r.DPS, r.Dosificacion, r.Veterinario});
    const EntradaReceta& e = form_.entradaReceta;
    fechaReceta_->setText(e.fecha);
    medicamento_->setCurrentIndex(e.idMedicamento ? std::max(0, medicamento_->findData(*e.idMedicamento)) : 0);
    veterinarioReceta_->setCurrentIndex(e.idVeterinario ? std::max(0, veterinarioReceta_->findData(*e.idVeterinario))
                                                        : 0);
    dispensador_->setText(e.dispensador);
    dosificacion_->setText(e.dosificacion);
    actualizando_ = antes;
    mostrarEspecialidad();
}

void VisitaWindow::mostrarEspecialidad() {
    const auto id = especialidadElegida();
    // Still the same speciality with edits not saved: they stay on screen.
    if (especialidadCambiada_ && id && id == especialidadMostrada_) return;
    const bool antes = actualizando_;
    actualizando_ = true;
    protocolo_->clear();
    resultadoEspecialidad_->clear();
    especialidadPrivada_->setChecked(false);
    croquis_->croquis()->setMarcas({});
    // No speciality chosen: no sketch either (nor the missing-picture text).
    croquis_->setVisible(id.has_value());
    especialidadMostrada_ = id;
    especialidadCambiada_ = false;
    for (const auto& s : form_.especialidades())
        if (id && s.IdEspecialidadVisita == *id) {
            protocolo_->setPlainText(s.Protocolo);
            resultadoEspecialidad_->setPlainText(s.Resultado);
            especialidadPrivada_->setChecked(s.DatoPrivado);
            const QString especie = form_.mascota() ? form_.mascota()->Especie : QString();
            croquis_->setFondo(rutaCroquis(rutaNativa(e_.configuracionBD.servidor), s.Especialidad, especie));
            croquis_->croquis()->setMarcas(leerMarcas(s.Croquis));
        }
    actualizando_ = antes;
}

void VisitaWindow::guardarEspecialidad() {
    if (!especialidadMostrada_) return;
    const qint64 id = *especialidadMostrada_;
    if (!form_.guardarEspecialidad(id, resultadoEspecialidad_->toPlainText(), textoMarcas(croquis_->croquis()->marcas()),
                                   especialidadPrivada_->isChecked()))
        return;
    especialidadCambiada_ = false;
    const int fila = especialidades_->currentRow();
    mostrarDetalle();
    especialidades_->setCurrentRow(fila);
}

bool VisitaWindow::resolverEspecialidad() {
    if (!especialidadCambiada_ || !especialidadMostrada_) return true;
    especialidadCambiada_ = false;
    if (!form_.preguntarGuardarCambios()) return true;
    const qint64 id = *especialidadMostrada_;
    return form_.guardarEspecialidad(id, resultadoEspecialidad_->toPlainText(),
                                     textoMarcas(croquis_->croquis()->marcas()), especialidadPrivada_->isChecked());
}

void VisitaWindow::ponerFoco() {
    if (QWidget* w = entradas_.value(form_.foco)) {
        pestanas_->setCurrentIndex(0);
        w->setFocus();
    }
}

void VisitaWindow::nueva() {
    resolverEspecialidad();
    form_.nueva();
    mostrarTodo();
}

void VisitaWindow::guardar() {
    if (!form_.guardar()) ponerFoco();
    mostrarTodo();
}

void VisitaWindow::eliminar() {
    form_.eliminar();
    mostrarTodo();
}

void VisitaWindow::buscar() {
    resolverEspecialidad();
    form_.buscar();
    mostrarTodo();
}

void VisitaWindow::cobrar() {
    if (!form_.cobrar()) ponerFoco();
    mostrarTodo();
}

void VisitaWindow::closeEvent(QCloseEvent* evento) {
    if (resolverEspecialidad() && form_.puedeCerrar())
        evento->accept();
    else
        evento->ignore();
}
