#pragma once
// The delivery-note window ("Albaranes de Venta"), bound to AlbaranForm. Object names:
// header txtCliente + cmdCliente (client search), cboMascota, txtFecha, txtHora, cboSerie,
// lblNumero, cboVendedor, txtRetencion, chkExento, lblDeuda, lblPlan, lblVariasFacturas,
// lblEstado; editing row txtCodArticulo + cmdBuscarArticulo, txtConcepto, txtCantidad,
// txtPrecio, txtDto, cboIVA, cmdInsertar, cmdModificar, cmdQuitar; the grid grdLineas;
// totals lblTotalBruto, lblBaseImponible, lblTotalIVA, lblRetencion, lblTotal, lblPendiente;
// commands cmdNuevo, cmdBuscar, cmdGuardar, cmdEliminar, cmdImprimir, cmdNotaVenta,
// cmdTicket, cmdPagos.
#include "sales/albaran_form.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

class AlbaranWindow : public QWidget {
    Q_OBJECT
public:
    AlbaranWindow(Entorno& entorno, QWidget* padre = nullptr);

    AlbaranForm& form() { return form_; }
    // Opens as a caller asked (a visit, a client, an existing note); false when the note
    // cannot be shown here (the caller then drops this window).
    bool abrir(const AperturaAlbaran& apertura);

public slots:
    void refrescar();
    void nuevo();
    void buscar();
    void guardar();
    void eliminar();
    void imprimir();
    void notaVenta();
    void ticket();
    void insertarLinea();
    void modificarLinea();
    void quitarLinea();
    void buscarArticulo();

protected:
    void closeEvent(QCloseEvent* evento) override;

private:
    void mostrarEntrada(const EntradaLineaAlbaran& entrada);
    EntradaLineaAlbaran entradaEscrita() const;
    void articuloTecleado();
    void filaElegida();

    Entorno& e_;
    AlbaranForm form_;
    EntradaLineaAlbaran entrada_;
    QLineEdit *cliente_, *fecha_, *hora_, *retencion_;
    QComboBox *mascota_, *serie_, *vendedor_, *iva_;
    QCheckBox* exento_;
    QLabel *numero_, *deuda_, *plan_, *variasFacturas_, *estado_;
    QLineEdit *codArticulo_, *concepto_, *cantidad_, *precio_, *dto_;
    QTableWidget* lineas_;
    QLabel *bruto_, *base_, *totalIva_, *retencionTotal_, *total_, *pendiente_;
    QList<QWidget*> editables_;
    QPushButton* pagos_;
};
