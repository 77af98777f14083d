#pragma once
// The register of changes of owner, bound to RegistroCambiosForm: dates (chkFechas,
// dtpDesde, dtpHasta), pet name (txtMascota), origin and new owner (txtOrigen/cmdBuscarOrigen/
// cmdQuitarOrigen, txtDestino/cmdBuscarDestino/cmdQuitarDestino), cmdBuscar, the list
// lvwCambios; a double click or cmdAbrirMascota asks to open the row's pet.
#include "clients/registro_cambios_form.h"

#include <QWidget>

class QCheckBox;
class QDateEdit;
class QLineEdit;
class QTreeWidget;

class RegistroCambiosWindow : public QWidget {
    Q_OBJECT
public:
    RegistroCambiosWindow(Entorno& entorno, QWidget* padre = nullptr);
    RegistroCambiosForm& form() { return form_; }

public slots:
    void buscar();
    void abrirMascota();

signals:
    // The pet of a row exists: the opener shows it (MascotaWindow::abrir).
    void mascotaElegida(qint64 idCliente, qint64 idMascota);

private:
    RegistroCambiosForm form_;
    QCheckBox* fechas_;
    QDateEdit* desde_;
    QDateEdit* hasta_;
    QLineEdit* mascota_;
    QLineEdit* origen_;
    QLineEdit* destino_;
    QTreeWidget* lista_;
};
