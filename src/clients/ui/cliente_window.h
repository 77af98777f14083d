#pragma once
// The client maintenance window ("Mantenimiento de Clientes"), bound to ClienteForm. Tabs:
// "Datos" (identity, address, contact, communication, consent, flags, balances),
// "Facturación" (the "Fra" billing data and the bank details), "Ficha Comercial" (general
// tariff, general discount, special conditions), "Notas" (notes and warning) and "Citas"
// (the client's appointments, read-only). Every field is named after its column: txtX for
// typed fields, cboX for drop-downs, chkX for yes/no, with cmdAnadirX beside the look-ups
// that add an entry to their list; the buttons are cmdNuevo, cmdGuardar, cmdEliminar,
// cmdBuscar, cmdMascotas and cmdCartas.
#include "clients/cliente_form.h"

#include <QHash>
#include <QWidget>

class CondicionesWidget;
class QTabWidget;

class ClienteWindow : public QWidget {
    Q_OBJECT
public:
    ClienteWindow(Entorno& entorno, QWidget* padre = nullptr);

    ClienteForm& form() { return form_; }
    // Opens a client (the screen's parameter from other screens).
    bool mostrarCliente(qint64 idCliente);
    QTabWidget* pestanas() const { return pestanas_; }

public slots:
    void nuevo();
    void guardar();
    void eliminar();
    void refrescar();

protected:
    void closeEvent(QCloseEvent* evento) override;

private:
    QWidget* campo(const QString& columna);
    QWidget* busqueda(const QString& columna);
    void llenarBusqueda(const QString& columna);
    void aplicar(const QString& columna, const QString& texto);
    QWidget* pestanaDatos();
    QWidget* pestanaFacturacion();
    QWidget* pestanaFichaComercial();
    QWidget* pestanaNotas();
    QWidget* pestanaCitas();

    Entorno& e_;
    ClienteForm form_;
    QHash<QString, QWidget*> campos_;
    QTabWidget* pestanas_;
    CondicionesWidget* condiciones_;
};
