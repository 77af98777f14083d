#pragma once
// The pet maintenance window ("Mantenimiento de Mascotas"), bound to MascotaForm: the owner's
// data (read-only) on top, the client's pets (lvwMascotas) on the left, the selected pet's
// fields on the right (txt/cbo/chk + column name), an add button (cmdAnadir + column) beside
// each look-up, the plan search (cmdBuscarPlan) with the expired-plan mark (lblPlanCaducado),
// the printing buttons cmdCartas and cmdImprimirPlan, and cmdNuevo, cmdGuardar, cmdEliminar,
// cmdCerrar. Leaving the chip field with a wrong length shows the message and puts the focus
// back.
#include "clients/mascota_form.h"

#include <QHash>
#include <QWidget>

class QLabel;
class QTreeWidget;

class MascotaWindow : public QWidget {
    Q_OBJECT
public:
    MascotaWindow(Entorno& entorno, QWidget* padre = nullptr);
    MascotaForm& form() { return form_; }

    // Opens the pets of a client, selecting a pet; false when the client cannot be read.
    bool abrir(qint64 idCliente, std::optional<qint64> idMascota = std::nullopt);
    // Asks the client search for the client (opened from the menu).
    bool abrirDesdeMenu();

signals:
    // The pet's visits (a new visit for it) and its register of hospitalisations.
    void abrirVisitas(qint64 idCliente, qint64 idMascota);
    void abrirHospitalizaciones(qint64 idMascota, const QString& nombre);

public slots:
    void nueva();
    void guardar();
    void eliminar();

protected:
    void closeEvent(QCloseEvent* evento) override;
    bool eventFilter(QObject* objeto, QEvent* evento) override;

private:
    QWidget* crearEntrada(const QString& columna);
    void llenarCombo(const QString& columna);
    void cambio(const QString& columna, const QString& texto);
    void cambioDeFila();
    void anadir(const QString& columna);
    void buscarPlan();
    void mostrarTodo();
    void mostrarLista();
    void mostrarCampos();
    void ponerFoco();

    Entorno& e_;
    MascotaForm form_;
    QTreeWidget* lista_;
    QLabel* leyenda_;
    QLabel* propietario_;
    QLabel* comercial_;
    QLabel* caducado_;
    QHash<QString, QWidget*> entradas_;
    bool actualizando_ = false;
};
