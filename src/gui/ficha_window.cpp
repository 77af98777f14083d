#include "gui/ficha_window.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
void pintarObligatorio(QWidget* w) {
    QPalette p = w->palette();
    for (auto rol : {QPalette::Base, QPalette::Button, QPalette::Window})
        p.setColor(rol, FichaWindow::fondoObligatorio());
    for (auto rol : {QPalette::Text, QPalette::ButtonText, QPalette::WindowText})
        p.setColor(rol, FichaWindow::textoObligatorio());
    w->setPalette(p);
    w->setAutoFillBackground(true);
}

bool esNumero(TipoColumna t) {
    return t == TipoColumna::Entero || t == TipoColumna::Autonumerico || t == TipoColumna::Decimal;
}
} // namespace

FichaWindow::FichaWindow(FichaForm form, QWidget* padre) : QDialog(padre), form_(std::move(form)) {
    setObjectName(QStringLiteral("frmFicha"));
    setWindowTitle(form_.titulo());
    setModal(true);

    auto* capa = new QVBoxLayout(this);
    capa->setSpacing(4);
    for (const CampoFicha& campo : form_.campos()) {
        const DescriptorColumna& c = *campo.columna;
        auto* etiqueta = new QLabel(c.Descripcion + QLatin1Char(':'));
        etiqueta->setObjectName(QStringLiteral("lbl") + c.nombre);
        QWidget* entrada = crearEntrada(campo);
        etiqueta->setBuddy(entrada);
        capa->addWidget(etiqueta);
        capa->addWidget(entrada);
        capa->addSpacing(4);
        entradas_.insert(c.nombre, entrada);
    }
    auto* botones = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    botones->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Aceptar"));
    botones->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdAceptar"));
    botones->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Cancelar"));
    botones->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancelar"));
    connect(botones, &QDialogButtonBox::accepted, this, &FichaWindow::aceptar);
    connect(botones, &QDialogButtonBox::rejected, this, &QDialog::reject);
    capa->addSpacing(6);
    capa->addWidget(botones);

    setMinimumWidth(420);
    adjustSize();
    for (const CampoFicha& campo : form_.campos())
        if (!campo.soloLectura) {
            entradas_.value(campo.columna->nombre)->setFocus();
            break;
        }
}

QWidget* FichaWindow::crearEntrada(const CampoFicha& campo) {
    const DescriptorColumna& c = *campo.columna;
    const QString texto = form_.texto(c.nombre);
    QWidget* w = nullptr;
    const QStringList opciones = form_.opciones(c.nombre);
    if (!opciones.isEmpty() && !campo.soloLectura) {
        auto* combo = new QComboBox;
        combo->setObjectName(QStringLiteral("cbo") + c.nombre);
        combo->addItems(opciones);
        combo->setCurrentIndex(static_cast<int>(opciones.indexOf(texto)));
        w = combo;
    } else if (c.tipo == TipoColumna::Memo) {
        auto* memo = new QPlainTextEdit(texto);
        memo->setObjectName(QStringLiteral("txt") + c.nombre);
        memo->setTabChangesFocus(true);
        memo->setFixedHeight(memo->fontMetrics().lineSpacing() * 4 + 12);
        memo->setReadOnly(campo.soloLectura);
        w = memo;
    } else {
        auto* linea = new QLineEdit(texto);
        linea->setObjectName(QStringLiteral("txt") + c.nombre);
        if (c.tipo == TipoColumna::Texto && c.longitud > 0) linea->setMaxLength(c.longitud);
        if (esNumero(c.tipo)) linea->setAlignment(Qt::AlignRight);
        if (c.tipo == TipoColumna::Fecha) linea->setPlaceholderText(QStringLiteral("dd/mm/aaaa"));
        if (c.tipo == TipoColumna::Hora) linea->setPlaceholderText(QStringLiteral("hh:mm"));
        if (c.tipo == TipoColumna::FechaHora) linea->setPlaceholderText(QStringLiteral("dd/mm/aaaa hh:mm"));
        linea->setReadOnly(campo.soloLectura);
        w = linea;
    }
    if (campo.obligatorio && !campo.soloLectura) pintarObligatorio(w);
    return w;
}

void FichaWindow::leerCampos() {
    for (auto it = entradas_.cbegin(); it != entradas_.cend(); ++it) {
        if (auto* combo = qobject_cast<QComboBox*>(it.value()))
            form_.setTexto(it.key(), combo->currentText());
        else if (auto* memo = qobject_cast<QPlainTextEdit*>(it.value()))
            form_.setTexto(it.key(), memo->toPlainText());
        else if (auto* linea = qobject_cast<QLineEdit*>(it.value()))
            form_.setTexto(it.key(), linea->text());
    }
}

void FichaWindow::aceptar() {
    leerCampos();
    if (form_.guardar()) {
        accept();
        return;
    }
    if (QWidget* w = entradas_.value(form_.foco())) w->setFocus();
}

void FichaWindow::reject() {
    form_.cancelar();
    QDialog::reject();
}
