#include "gui/qt_dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>

namespace {
QMessageBox::Icon icono(Icono i) {
    switch (i) {
    case Icono::Ninguno:
        return QMessageBox::NoIcon;
    case Icono::Informacion:
        return QMessageBox::Information;
    case Icono::Exclamacion:
        return QMessageBox::Warning;
    case Icono::Critico:
        return QMessageBox::Critical;
    case Icono::Pregunta:
        return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}
} // namespace

QtDialogs::~QtDialogs() {
    delete progreso_;
}

void QtDialogs::mostrar(Icono i, const QString& titulo, const QString& texto) {
    QMessageBox caja(icono(i), titulo, texto, QMessageBox::Ok, padre_);
    caja.button(QMessageBox::Ok)->setText(QStringLiteral("Aceptar"));
    caja.exec();
}

bool QtDialogs::preguntar(Icono i, const QString& titulo, const QString& texto) {
    QMessageBox caja(icono(i), titulo, texto, QMessageBox::Yes | QMessageBox::No, padre_);
    caja.button(QMessageBox::Yes)->setText(QStringLiteral("&Sí"));
    caja.button(QMessageBox::No)->setText(QStringLiteral("&No"));
    caja.setDefaultButton(QMessageBox::Yes);
    return caja.exec() == QMessageBox::Yes;
}

int QtDialogs::elegir(const QString& titulo, const QString& texto, const QStringList& opciones) {
    if (opciones.isEmpty()) return -1;
    QInputDialog caja(padre_);
    caja.setWindowTitle(titulo);
    caja.setLabelText(texto);
    caja.setComboBoxItems(opciones);
    caja.setComboBoxEditable(false);
    caja.setTextValue(opciones.first());
    caja.setOkButtonText(QStringLiteral("Aceptar"));
    caja.setCancelButtonText(QStringLiteral("Cancelar"));
    if (caja.exec() != QDialog::Accepted) return -1;
    return static_cast<int>(opciones.indexOf(caja.textValue()));
}

QString QtDialogs::elegirFichero(const QString& titulo, const QString& filtro, const QString& carpeta) {
    return QFileDialog::getOpenFileName(padre_, titulo, carpeta, filtro);
}

QString QtDialogs::elegirFicheroGuardar(const QString& titulo, const QString& filtro,
                                        const QString& propuesto) {
    return QFileDialog::getSaveFileName(padre_, titulo, propuesto, filtro);
}

void QtDialogs::progreso(const QString& texto) {
    if (texto.isEmpty()) {
        delete progreso_;
        progreso_ = nullptr;
        return;
    }
    if (!progreso_) {
        progreso_ = new QProgressDialog(padre_);
        progreso_->setWindowTitle(QStringLiteral("Pramelvix"));
        progreso_->setCancelButton(nullptr);
        progreso_->setRange(0, 0);
        progreso_->setMinimumDuration(0);
        progreso_->setWindowModality(Qt::ApplicationModal);
    }
    progreso_->setLabelText(texto);
    progreso_->show();
    QApplication::processEvents();
}
