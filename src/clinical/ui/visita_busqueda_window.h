#pragma once
// The visit search window, modal: vet, visit type and diagnosis drop-downs, the date range
// with its tick (chkFechas), the result list (lvwVisitas), cmdBuscar, cmdAceptar, cmdCancelar.
#include "clinical/visita_busqueda_form.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QTreeWidget;

class VisitaBusquedaWindow : public QDialog {
    Q_OBJECT
public:
    explicit VisitaBusquedaWindow(Entorno& e, QWidget* padre = nullptr);
    // The Buscadores::visita picker.
    static std::optional<VisitaElegida> buscador(Entorno& e, QWidget* padre = nullptr);
    VisitaBusquedaForm& form() { return form_; }
    const std::optional<VisitaElegida>& elegida() const { return elegida_; }

public slots:
    void buscar();
    void aceptar();

private:
    Entorno& e_;
    VisitaBusquedaForm form_;
    QComboBox* veterinario_;
    QComboBox* tipo_;
    QComboBox* diagnostico_;
    QCheckBox* fechas_;
    QLineEdit* desde_;
    QLineEdit* hasta_;
    QTreeWidget* lista_;
    std::optional<VisitaElegida> elegida_;
};
