#pragma once
// The change-of-owner window, bound to CambioPropietarioForm: the current owner
// (txtPropietarioActual, cmdBuscarActual), its pets (cboMascota), the new owner
// (txtNuevoPropietario, cmdBuscarNuevo), and cmdAceptar / cmdCerrar.
#include "clients/cambio_propietario_form.h"

#include <QWidget>

class QComboBox;
class QLineEdit;

class CambioPropietarioWindow : public QWidget {
    Q_OBJECT
public:
    CambioPropietarioWindow(Entorno& entorno, QWidget* padre = nullptr);
    CambioPropietarioForm& form() { return form_; }
    // Presets the current owner and pet (opened from a pet).
    bool abrir(qint64 idCliente, std::optional<qint64> idMascota = std::nullopt);

public slots:
    void buscarActual();
    void buscarNuevo();
    void aceptar();

private:
    void mostrar();

    CambioPropietarioForm form_;
    QLineEdit* actual_;
    QLineEdit* nuevo_;
    QComboBox* mascota_;
    bool actualizando_ = false;
};
