#pragma once
// The quote window ("Presupuestos"), bound to PresupuestoForm: the client (cmdCliente), pet
// (cboMascota), date (txtFecha), salesperson (cboVendedor) and state (lblEstado) on top; the
// lines (grdLineas) with the article code and quantity to add (txtArticulo, txtCantidad,
// cmdAnadir, cmdBuscarArticulo, cmdQuitar); the total (lblTotal); cmdNuevo, cmdAbrir,
// cmdGuardar, cmdImprimir, cmdConvertir, cmdRechazar, cmdCerrar.
#include "sales/presupuesto_form.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QTreeWidget;

class PresupuestoWindow : public QWidget {
    Q_OBJECT
public:
    explicit PresupuestoWindow(Entorno& e, QWidget* padre = nullptr);
    PresupuestoForm& form() { return form_; }
    bool abrir(const AperturaPresupuesto& apertura);

protected:
    void closeEvent(QCloseEvent* evento) override;

private:
    void mostrar();
    PresupuestoForm form_;
    QLabel* cliente_;
    QComboBox* mascota_;
    QLineEdit* fecha_;
    QComboBox* vendedor_;
    QLabel* estado_;
    QTreeWidget* lineas_;
    QLineEdit* articulo_;
    QLineEdit* cantidad_;
    QLabel* total_;
    bool actualizando_ = false;
};
