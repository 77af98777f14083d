#pragma once
// The health plan window ("Mantenimiento de Planes de Salud"), bound to PlanSaludForm: txtNombre,
// txtFechaAlta, txtFechaBaja, txtNotas, txtAviso, the condition list (CondicionesWidget) and
// the buttons cmdNuevo, cmdGuardar, cmdEliminar and cmdBuscar (the plan search).
#include "clinical/plan_salud_form.h"

#include <QHash>
#include <QWidget>

class CondicionesWidget;

class PlanSaludWindow : public QWidget {
    Q_OBJECT
public:
    PlanSaludWindow(Entorno& entorno, QWidget* padre = nullptr);

    PlanSaludForm& form() { return form_; }
    bool mostrarPlan(qint64 idPlan);

public slots:
    void nuevo();
    void guardar();
    void eliminar();
    void buscar();
    void refrescar();

protected:
    void closeEvent(QCloseEvent* evento) override;

private:
    Entorno& e_;
    PlanSaludForm form_;
    QHash<QString, QWidget*> campos_;
    CondicionesWidget* condiciones_;
};
