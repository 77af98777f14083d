#pragma once
// The database settings window ("Configuración de la Base de Datos"), bound to ConfBdForm:
// one input per setting (objectName "txt"/"chk"/"cbo" + the setting's name), the status texts
// lblAutocompactacion and lblContabilidad kept up to date while typing, MULTIPUESTO shown
// read-only, and cmdAceptar/cmdCancelar.
#include "app/conf_bd_form.h"

#include <QDialog>
#include <QHash>

class QLabel;

class ConfBdWindow : public QDialog {
    Q_OBJECT
public:
    explicit ConfBdWindow(Entorno& entorno, QWidget* padre = nullptr);
    ConfBdForm& form() { return form_; }
    // The input of a setting, by its key.
    QWidget* entrada(const QString& clave) const { return entradas_.value(clave); }
    // The object name of the input of a setting.
    static QString nombreEntrada(const QString& clave);

public slots:
    void aceptar();

private:
    QWidget* crearEntrada(const CampoConfBd& campo);
    void leerCampos();
    void actualizarEstado();

    ConfBdForm form_;
    QHash<QString, QWidget*> entradas_;
    QLabel* autocompactacion_;
    QLabel* contabilidad_;
};
