#pragma once
// The article search window ("Búsqueda de Artículos"), bound to ArticuloBusquedaForm:
// txtCodigo, txtDescripcion, chkCualquierParte, txtCodBarras, cboSeccion, cboFamilia,
// cboSubFamilia, cboLaboratorio, chkBajas, the list lstArticulos, and the buttons cmdBuscar,
// cmdAceptar (also a double click on a row) and cmdCancelar.
#include "stock/articulo_busqueda_form.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QTreeWidget;

class ArticuloBusquedaWindow : public QDialog {
    Q_OBJECT
public:
    ArticuloBusquedaWindow(Entorno& entorno, QWidget* padre = nullptr);
    ArticuloBusquedaForm& form() { return form_; }
    std::optional<qint64> elegido() const { return elegido_; }

    // Opens the search modal with a starting text and returns the chosen article's code.
    static std::optional<qint64> elegir(Entorno& entorno, const QString& textoInicial,
                                        QWidget* padre = nullptr);
    // The picker for Buscadores::articulo.
    static std::function<std::optional<qint64>(const QString&)> buscador(Entorno& entorno,
                                                                         QWidget* padre = nullptr);

public slots:
    void buscar();
    void aceptar();

private:
    void llenar(QComboBox* combo, const QString& tabla, std::optional<qint64> padre);
    std::optional<qint64> claveDe(QComboBox* combo) const;

    Entorno& e_;
    ArticuloBusquedaForm form_;
    QLineEdit* codigo_;
    QLineEdit* descripcion_;
    QCheckBox* cualquierParte_;
    QLineEdit* codBarras_;
    QComboBox* seccion_;
    QComboBox* familia_;
    QComboBox* subfamilia_;
    QComboBox* laboratorio_;
    QCheckBox* bajas_;
    QTreeWidget* lista_;
    std::optional<qint64> elegido_;
};
