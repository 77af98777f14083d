#pragma once
// The delivery-note search window ("Búsqueda de Albaranes"), bound to AlbaranBusquedaForm:
// cboSerie, txtNumero, txtCliente with optComienzo / optContiene, txtMascota, txtDesde,
// txtHasta, cboEstado, cmdBuscar, the grid grdAlbaranes, lblNota, cmdAceptar and cmdCancelar
// (a double click accepts). Also the picker: buscador() opens it modally and hands back the
// chosen note's IdAlbaran.
#include "sales/albaran_busqueda_form.h"

#include <QDialog>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QTableWidget;

class AlbaranBusquedaWindow : public QDialog {
    Q_OBJECT
public:
    // idCliente: the client the opener fixed; its notes are shown on opening.
    AlbaranBusquedaWindow(Entorno& entorno, QWidget* padre = nullptr, std::optional<qint64> idCliente = {});

    // The Buscadores::albaran picker: the window, modal; the IdAlbaran chosen, or nothing.
    static std::optional<qint64> buscador(Entorno& entorno, QWidget* padre = nullptr,
                                          std::optional<qint64> idCliente = {});

    AlbaranBusquedaForm& form() { return form_; }

public slots:
    // Copies the criteria into the form, searches, and shows the result.
    void buscar();
    // Chooses the current row and closes the window.
    void aceptar();

private:
    void mostrar();

    AlbaranBusquedaForm form_;
    QComboBox* serie_ = nullptr;
    QLineEdit* numAlbaran_ = nullptr;
    QLineEdit* cliente_ = nullptr;
    QRadioButton* comienzo_ = nullptr;
    QRadioButton* contiene_ = nullptr;
    QLineEdit* mascota_ = nullptr;
    QLineEdit* desde_ = nullptr;
    QLineEdit* hasta_ = nullptr;
    QComboBox* estado_ = nullptr;
    QTableWidget* rejilla_ = nullptr;
    QLabel* nota_ = nullptr;
};
