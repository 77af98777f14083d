#pragma once
// The health plan search dialog, bound to PlanSaludBusquedaForm: txtNombre, the match options
// optEmpieza / optExacto / optContiene, chkIncluirBajas, cmdBuscar, the result list
// lstPlanes ("Descripción", "Alta") and cmdAceptar / cmdCancelar (a double click accepts).
#include "clinical/plan_salud_busqueda_form.h"

#include <QDialog>
#include <optional>

class QCheckBox;
class QLineEdit;
class QRadioButton;
class QTreeWidget;

class PlanSaludBusquedaWindow : public QDialog {
    Q_OBJECT
public:
    PlanSaludBusquedaWindow(Entorno& entorno, QWidget* padre = nullptr);

    PlanSaludBusquedaForm& form() { return form_; }
    void setTextoInicial(const QString& texto);
    // The plan chosen after accept().
    std::optional<FilaPlanSalud> elegido() const;

    // The picker other screens call (entorno.buscadores.planSalud): runs the dialog and
    // returns the number of the plan chosen.
    static std::optional<qint64> elegir(Entorno& entorno, const QString& textoInicial,
                                        QWidget* padre = nullptr);

public slots:
    void buscar();
    void aceptar();

private:
    PlanSaludBusquedaForm form_;
    QLineEdit* nombre_;
    QRadioButton* empieza_;
    QRadioButton* exacto_;
    QRadioButton* contiene_;
    QCheckBox* bajas_;
    QTreeWidget* lista_;
};
