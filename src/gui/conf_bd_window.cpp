#include "gui/conf_bd_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
QLabel* estado(const QString& nombre) {
    auto* l = new QLabel;
    l->setObjectName(nombre);
    QFont f = l->font();
    f.setBold(true);
    l->setFont(f);
    l->setStyleSheet(QStringLiteral("color: #00008b;"));
    return l;
}
} // namespace

QString ConfBdWindow::nombreEntrada(const QString& clave) {
    using namespace claves;
    static const QHash<QString, QString> nombres = {
        {DIAS_COMPACTACION, QStringLiteral("txtDiasCompactacion")},
        {CONTAB_SOLO_ADMINISTRADORES, QStringLiteral("chkContabSoloAdministradores")},
        {PUERTO_UDP_CHAT, QStringLiteral("txtPuertoUdpChat")},
        {ESPERA_ENTRE_SMS, QStringLiteral("txtEsperaEntreSms")},
        {EMAIL_TIPO_CONF, QStringLiteral("cboEmailTipoConf")},
        {TIPOINSTALACION, QStringLiteral("txtTipoInstalacion")},
        {NIF_PRESENT, QStringLiteral("txtNifPresentador")},
        {NOM_PRESENT, QStringLiteral("txtNomPresentador")},
        {SUF_PRESENT, QStringLiteral("txtSufPresentador")},
        {ENT_PRESENT, QStringLiteral("txtEntPresentador")},
        {OFI_PRESENT, QStringLiteral("txtOfiPresentador")},
        {NIF_ORDENANTE, QStringLiteral("txtNifOrdenante")},
        {NOM_ORDENANTE, QStringLiteral("txtNomOrdenante")},
        {SUF_ORDENANTE, QStringLiteral("txtSufOrdenante")},
        {CCC_ORDENANTE, QStringLiteral("txtCccOrdenante")},
        {BIC_ORDENANTE, QStringLiteral("txtBicOrdenante")},
    };
    return nombres.value(clave);
}

ConfBdWindow::ConfBdWindow(Entorno& entorno, QWidget* padre) : QDialog(padre), form_(entorno) {
    using namespace claves;
    setObjectName(QStringLiteral("frmConfBD"));
    setWindowTitle(form_.titulo());
    setModal(true);
    const bool cargado = form_.cargar();

    for (const auto& c : ConfBdForm::campos())
        entradas_.insert(c.clave, crearEntrada(c));
    // Inside the remittance groups the group's title names the presenter or the originator.
    auto fila = [&](QFormLayout* f, const QString& clave) {
        const CampoConfBd* c = ConfBdForm::campo(clave);
        QString texto = c->etiqueta;
        texto.replace(QStringLiteral(" del presentador"), QString())
            .replace(QStringLiteral(" del ordenante"), QString());
        auto* etiqueta = new QLabel(texto + QLatin1Char(':'));
        etiqueta->setBuddy(entradas_.value(clave));
        f->addRow(etiqueta, entradas_.value(clave));
    };
    auto grupo = [](const QString& titulo, QFormLayout*& f) {
        auto* g = new QGroupBox(titulo);
        f = new QFormLayout(g);
        f->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        return g;
    };

    QFormLayout* f = nullptr;
    autocompactacion_ = estado(QStringLiteral("lblAutocompactacion"));
    contabilidad_ = estado(QStringLiteral("lblContabilidad"));

    auto* mantenimiento = grupo(QStringLiteral("Mantenimiento"), f);
    fila(f, DIAS_COMPACTACION);
    f->addRow(autocompactacion_);
    auto* contabilidad = grupo(QStringLiteral("Contabilidad"), f);
    f->addRow(entradas_.value(CONTAB_SOLO_ADMINISTRADORES));
    f->addRow(contabilidad_);
    auto* comunicaciones = grupo(QStringLiteral("Comunicaciones"), f);
    fila(f, PUERTO_UDP_CHAT);
    fila(f, ESPERA_ENTRE_SMS);
    fila(f, EMAIL_TIPO_CONF);
    auto* instalacion = grupo(QStringLiteral("Instalación"), f);
    fila(f, TIPOINSTALACION);
    auto* multipuesto = new QLineEdit(form_.multipuesto());
    multipuesto->setObjectName(QStringLiteral("txtMultipuesto"));
    multipuesto->setReadOnly(true);
    f->addRow(QStringLiteral("Varios puestos (MULTIPUESTO):"), multipuesto);

    auto* presentador = grupo(QStringLiteral("Presentador de remesas"), f);
    for (const auto& k : {NIF_PRESENT, NOM_PRESENT, SUF_PRESENT, ENT_PRESENT, OFI_PRESENT})
        fila(f, k);
    auto* ordenante = grupo(QStringLiteral("Ordenante de remesas"), f);
    for (const auto& k : {NIF_ORDENANTE, NOM_ORDENANTE, SUF_ORDENANTE, CCC_ORDENANTE, BIC_ORDENANTE})
        fila(f, k);

    auto* botones = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto* aceptarB = botones->button(QDialogButtonBox::Ok);
    aceptarB->setText(QStringLiteral("Aceptar"));
    aceptarB->setObjectName(QStringLiteral("cmdAceptar"));
    aceptarB->setEnabled(cargado);
    botones->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Cancelar"));
    botones->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancelar"));
    connect(botones, &QDialogButtonBox::accepted, this, &ConfBdWindow::aceptar);
    connect(botones, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* rejilla = new QGridLayout;
    auto* izquierda = new QVBoxLayout;
    for (auto* g : {mantenimiento, contabilidad, comunicaciones, instalacion})
        izquierda->addWidget(g);
    izquierda->addStretch();
    auto* derecha = new QVBoxLayout;
    derecha->addWidget(presentador);
    derecha->addWidget(ordenante);
    derecha->addStretch();
    rejilla->addLayout(izquierda, 0, 0);
    rejilla->addLayout(derecha, 0, 1);
    auto* capa = new QVBoxLayout(this);
    capa->addLayout(rejilla);
    capa->addWidget(botones);

    actualizarEstado();
}

QWidget* ConfBdWindow::crearEntrada(const CampoConfBd& c) {
    const QString valor = form_.valor(c.clave);
    if (c.clave == claves::CONTAB_SOLO_ADMINISTRADORES) {
        auto* chk = new QCheckBox(c.etiqueta);
        chk->setObjectName(nombreEntrada(c.clave));
        chk->setChecked(valor == QStringLiteral("S"));
        connect(chk, &QCheckBox::toggled, this, [this] {
            leerCampos();
            actualizarEstado();
        });
        return chk;
    }
    if (c.clave == claves::EMAIL_TIPO_CONF) {
        auto* cbo = new QComboBox;
        cbo->setObjectName(nombreEntrada(c.clave));
        cbo->addItems(ConfBdForm::tiposCorreo());
        // A stored value outside the list is shown as it is, so that saving names it.
        if (!ConfBdForm::tiposCorreo().contains(valor)) cbo->addItem(valor);
        cbo->setCurrentText(valor);
        return cbo;
    }
    auto* txt = new QLineEdit(valor);
    txt->setObjectName(nombreEntrada(c.clave));
    txt->setMinimumWidth(txt->fontMetrics().horizontalAdvance(QLatin1Char('M')) * std::min(c.longitud, 24) +
                         12);
    // A longer stored value is shown whole (saving then names the field), never cut.
    txt->setMaxLength(std::max(c.longitud, static_cast<int>(valor.size())));
    if (c.clave == claves::DIAS_COMPACTACION)
        connect(txt, &QLineEdit::textChanged, this, [this] {
            leerCampos();
            actualizarEstado();
        });
    return txt;
}

void ConfBdWindow::leerCampos() {
    for (auto it = entradas_.cbegin(); it != entradas_.cend(); ++it) {
        if (auto* chk = qobject_cast<QCheckBox*>(it.value()))
            form_.setValor(it.key(), chk->isChecked() ? QStringLiteral("S") : QStringLiteral("N"));
        else if (auto* cbo = qobject_cast<QComboBox*>(it.value()))
            form_.setValor(it.key(), cbo->currentText());
        else if (auto* txt = qobject_cast<QLineEdit*>(it.value()))
            form_.setValor(it.key(), txt->text());
    }
}

void ConfBdWindow::actualizarEstado() {
    autocompactacion_->setText(form_.textoAutocompactacion());
    contabilidad_->setText(form_.textoContabilidad());
}

void ConfBdWindow::aceptar() {
    leerCampos();
    if (form_.guardar()) {
        accept();
        return;
    }
    if (QWidget* w = entradas_.value(form_.foco())) w->setFocus();
}
