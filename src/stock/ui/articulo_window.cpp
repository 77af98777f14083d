#include "stock/ui/articulo_window.h"
#include "gui/controles.h"

#include "data/esquema.h"
#include "gui/traer_al_frente.h"
#include "gui/ficha_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace {
const QString kSi = QStringLiteral("Sí");
const QString kNo = QStringLiteral("No");

} // namespace

ArticuloWindow::ArticuloWindow(Entorno& entorno, QWidget* padre)
    : QWidget(padre), e_(entorno), form_(entorno) {
    setObjectName(QStringLiteral("frmArticulos"));
    form_.traerAlFrente = [this] { traerAlFrente(this); };
    const DescriptorTabla& t = tablaArticulos();
    auto etiqueta = [&](const QString& c) { return t.columna(c)->Descripcion + QLatin1Char(':'); };
    auto grupo = [&](const QString& titulo, const QStringList& columnas) {
        auto* g = new QGroupBox(titulo);
        auto* f = new QFormLayout(g);
        f->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        for (const QString& c : columnas)
            f->addRow(etiqueta(c), fila(c));
        return g;
    };

    auto* codigo = new QLabel;
    codigo->setObjectName(QStringLiteral("lblCodigo"));
    entradas_.insert(QStringLiteral("ArtCodArticulo"), codigo);
    auto* generales = grupo(QStringLiteral("Datos generales"),
                            {QStringLiteral("Articulo"), QStringLiteral("ArtDescCorta"),
                             QStringLiteral("ArtDescAlternativa"), QStringLiteral("ArtTipoArticulo"),
                             QStringLiteral("ArtCodBarras")});
    static_cast<QFormLayout*>(generales->layout())->insertRow(0, QStringLiteral("Código:"), codigo);
    auto* clasificacion =
        grupo(QStringLiteral("Clasificación y facturación"),
              {QStringLiteral("Seccion"), QStringLiteral("Familia"), QStringLiteral("SubFamilia"),
               QStringLiteral("ArtIVA"), QStringLiteral("ArtRE"), QStringLiteral("ArtSerie"),
               QStringLiteral("ArtLaboratorio"), QStringLiteral("ArtFacturacionObligatoria")});
    auto* precios = grupo(QStringLiteral("Precios"),
                          {QStringLiteral("PVP1"), QStringLiteral("PVP2"), QStringLiteral("PVP3"),
                           QStringLiteral("ArtPVPKg"), QStringLiteral("ArtPeso"),
                           QStringLiteral("ArtPrecioCoste"), QStringLiteral("ArtUltPrecio")});
    margen_ = new QLabel;
    margen_->setObjectName(QStringLiteral("lblMargen"));
    static_cast<QFormLayout*>(precios->layout())->addRow(QStringLiteral("Beneficio (%):"), margen_);
    auto* compras = grupo(QStringLiteral("Compras y stock"),
                          {QStringLiteral("ArtCodProv"), QStringLiteral("ArtRefProvHab"),
                           QStringLiteral("ArtCodUltProv"), QStringLiteral("ArtFactorConversion"),
                           QStringLiteral("Stock"), QStringLiteral("ArtStockMin")});
    auto* otros =
        grupo(QStringLiteral("Otros datos"),
              {QStringLiteral("ArtDias"), QStringLiteral("ArtFechaAlta"), QStringLiteral("ArtFechaBaja"),
               QStringLiteral("ArtFecUltUso"), QStringLiteral("ArtNotas"), QStringLiteral("ArtAviso")});

    auto* botones = new QHBoxLayout;
    auto* bNuevo = boton(QStringLiteral("cmdNuevo"), QStringLiteral("&Nuevo"));
    auto* bBuscar = boton(QStringLiteral("cmdBuscar"), QStringLiteral("&Buscar"));
    auto* bGuardar = boton(QStringLiteral("cmdGuardar"), QStringLiteral("&Guardar"));
    auto* bEliminar = boton(QStringLiteral("cmdEliminar"), QStringLiteral("&Eliminar"));
    auto* bCancelar = boton(QStringLiteral("cmdCancelar"), QStringLiteral("Ca&ncelar"));
    auto* bCerrar = boton(QStringLiteral("cmdCerrar"), QStringLiteral("&Cerrar"));
    for (auto* b : {bNuevo, bBuscar, bGuardar, bEliminar, bCancelar})
        botones->addWidget(b);
    botones->addStretch();
    botones->addWidget(bCerrar);
    connect(bNuevo, &QPushButton::clicked, this, &ArticuloWindow::nuevo);
    connect(bBuscar, &QPushButton::clicked, this, &ArticuloWindow::buscar);
    connect(bGuardar, &QPushButton::clicked, this, &ArticuloWindow::guardar);
    connect(bEliminar, &QPushButton::clicked, this, &ArticuloWindow::eliminar);
    connect(bCancelar, &QPushButton::clicked, this, &ArticuloWindow::cancelar);
    connect(bCerrar, &QPushButton::clicked, this, &QWidget::close);

    auto* rejilla = new QGridLayout;
    rejilla->addWidget(generales, 0, 0);
    rejilla->addWidget(clasificacion, 1, 0);
    rejilla->addWidget(precios, 0, 1);
    rejilla->addWidget(compras, 1, 1);
    rejilla->addWidget(otros, 0, 2, 2, 1, Qt::AlignTop);
    rejilla->setColumnStretch(0, 3);
    rejilla->setColumnStretch(1, 2);
    rejilla->setColumnStretch(2, 2);
    auto* capa = new QVBoxLayout(this);
    capa->addLayout(botones);
    capa->addLayout(rejilla);
    mostrar(true);
}

QWidget* ArticuloWindow::fila(const QString& columna) {
    QWidget* entrada = crearEntrada(columna);
    entradas_.insert(columna, entrada);
    const QString tabla = ArticuloForm::tablaParametro(columna);
    if (tabla.isEmpty() || columna == QStringLiteral("ArtTipoArticulo") ||
        columna.startsWith(QStringLiteral("ArtCod")))
        return entrada;
    auto* caja = new QWidget;
    auto* h = new QHBoxLayout(caja);
    h->setContentsMargins(0, 0, 0, 0);
    h->addWidget(entrada, 1);
    auto* mas = new QToolButton;
    mas->setObjectName(QStringLiteral("cmdNuevo") + columna);
    mas->setText(QStringLiteral("+"));
    mas->setToolTip(QStringLiteral("Añadir ") + descriptorTabla(tabla)->descTabla);
    connect(mas, &QToolButton::clicked, this, [this, columna] { anadirParametro(columna); });
    h->addWidget(mas);
    return caja;
}

QWidget* ArticuloWindow::crearEntrada(const QString& columna) {
    const DescriptorColumna* c = tablaArticulos().columna(columna);
    if (!ArticuloForm::tablaParametro(columna).isEmpty()) {
        auto* combo = new QComboBox;
        combo->setObjectName(QStringLiteral("cbo") + columna);
        combo->setMinimumContentsLength(12);
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        connect(combo, &QComboBox::activated, this,
                [this, combo, columna](int i) { cambio(columna, combo->itemData(i).toString()); });
        return combo;
    }
    if (c->tipo == TipoColumna::Logico) {
        auto* chk = new QCheckBox;
        chk->setObjectName(QStringLiteral("chk") + columna);
        connect(chk, &QCheckBox::toggled, this,
                [this, columna](bool si) { cambio(columna, si ? kSi : kNo); });
        return chk;
    }
    if (c->tipo == TipoColumna::Memo) {
        auto* memo = new QPlainTextEdit;
        memo->setObjectName(QStringLiteral("txt") + columna);
        memo->setTabChangesFocus(true);
        memo->setFixedHeight(memo->fontMetrics().lineSpacing() * 4 + 12);
        connect(memo, &QPlainTextEdit::textChanged, this,
                [this, memo, columna] { cambio(columna, memo->toPlainText()); });
        return memo;
    }
    auto* edit = new QLineEdit;
    edit->setObjectName(QStringLiteral("txt") + columna);
    if (c->longitud > 0) edit->setMaxLength(c->longitud);
    if (c->tipo == TipoColumna::Decimal || c->tipo == TipoColumna::Entero) edit->setAlignment(Qt::AlignRight);
    connect(edit, &QLineEdit::textEdited, this,
            [this, columna](const QString& texto) { cambio(columna, texto); });
    return edit;
}

void ArticuloWindow::cambio(const QString& columna, const QString& texto) {
    if (mostrando_) return;
    form_.setTexto(columna, texto);
    const bool listas = columna == QStringLiteral("Seccion") || columna == QStringLiteral("Familia");
    mostrar(listas);
}

void ArticuloWindow::mostrar(bool listas) {
    mostrando_ = true;
    for (auto it = entradas_.cbegin(); it != entradas_.cend(); ++it) {
        const QString& c = it.key();
        const QString texto = form_.texto(c);
        QWidget* w = it.value();
        if (auto* l = qobject_cast<QLabel*>(w)) {
            l->setText(form_.esNuevo() ? QStringLiteral("(Nuevo Artículo)") : texto);
        } else if (auto* combo = qobject_cast<QComboBox*>(w)) {
            if (listas || combo->count() == 0) {
                combo->clear();
                combo->addItem(QString(), QString());
                for (const OpcionArticulo& o : form_.opciones(c))
                    combo->addItem(o.texto, o.clave);
            }
            combo->setCurrentIndex(std::max(0, combo->findData(texto)));
        } else if (auto* chk = qobject_cast<QCheckBox*>(w)) {
            chk->setChecked(texto == kSi);
        } else if (auto* memo = qobject_cast<QPlainTextEdit*>(w)) {
            if (memo->toPlainText() != texto) memo->setPlainText(texto);
        } else if (auto* edit = qobject_cast<QLineEdit*>(w)) {
            if (edit->text() != texto) edit->setText(texto);
        }
        w->setEnabled(form_.habilitado(c) || qobject_cast<QLabel*>(w));
    }
    margen_->setText(form_.margen());
    setWindowTitle(form_.titulo());
    mostrando_ = false;
}

void ArticuloWindow::ponerFoco() {
    if (QWidget* w = entradas_.value(form_.foco)) w->setFocus();
}

bool ArticuloWindow::abrir(qint64 codigo) {
    const bool ok = form_.abrir(codigo);
    mostrar(true);
    return ok;
}

void ArticuloWindow::nuevo() {
    if (!form_.puedeAbandonar()) return;
    form_.nuevo();
    mostrar(true);
    entradas_.value(QStringLiteral("Articulo"))->setFocus();
}

void ArticuloWindow::buscar() {
    if (!e_.buscadores.articulo || !form_.puedeAbandonar()) return;
    if (const auto codigo = e_.buscadores.articulo(QString())) abrir(*codigo);
}

void ArticuloWindow::guardar() {
    if (!form_.guardar()) {
        ponerFoco();
        return;
    }
    mostrar(true);
}

void ArticuloWindow::eliminar() {
    if (form_.eliminar()) mostrar(true);
}

void ArticuloWindow::cancelar() {
    form_.cancelar();
    mostrar(true);
}

void ArticuloWindow::anadirParametro(const QString& columna) {
    auto ficha = form_.fichaParametro(columna);
    if (!ficha) return;
    FichaWindow ventana(std::move(*ficha), this);
    if (ventana.exec() != QDialog::Accepted) return;
    form_.parametroAnadido(columna, ventana.form().registro());
    mostrar(true);
}

void ArticuloWindow::closeEvent(QCloseEvent* evento) {
    if (!form_.puedeAbandonar()) {
        evento->ignore();
        return;
    }
    form_.cerrar();
    QWidget::closeEvent(evento);
}
