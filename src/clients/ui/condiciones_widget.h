#pragma once
// The special-condition list of a commercial file or a health plan, bound to a CondicionesForm:
// the list grdCondiciones (columns "Articulo", "Sección", "Familia", "SubFamilia", "Precio",
// "Tarifa", "Dto."), and an editing row below it: the article (txtArticulo, picked with
// cmdElegirArticulo, cleared with cmdQuitarArticulo), cboSeccion, cboFamilia, cboSubfamilia,
// txtPrecio, cboTarifa, txtDto, and the buttons cmdInsertar, cmdModificar and cmdQuitar.
// Selecting a row copies it into the editing row.
#include "clients/condiciones_form.h"

#include <QWidget>

class QComboBox;
class QLineEdit;
class QTableWidget;

class CondicionesWidget : public QWidget {
    Q_OBJECT
public:
    explicit CondicionesWidget(CondicionesForm& form, QWidget* padre = nullptr);

    // Shows the form's rows again (after a load or a save).
    void refrescar();

public slots:
    void elegirArticulo();
    void insertar();
    void modificar();
    void quitar();

signals:
    void cambiado();

private:
    EntradaCondicion leerEntrada() const;
    void mostrarEntrada(const EntradaCondicion& e);
    void llenarFamilias();
    void llenarSubfamilias();
    int filaSeleccionada() const;

    CondicionesForm& form_;
    std::optional<qint64> articulo_;
    QTableWidget* tabla_;
    QLineEdit* articuloTexto_;
    QComboBox* seccion_;
    QComboBox* familia_;
    QComboBox* subfamilia_;
    QLineEdit* precio_;
    QComboBox* tarifa_;
    QLineEdit* dto_;
};
