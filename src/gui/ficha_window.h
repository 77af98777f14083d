#pragma once
// The record form of the generic editors, built at run time from FichaForm: for each field a
// label (Descripcion + ":") with its input below, a drop-down for list and yes/no columns,
// mandatory fields in their own colours, and Aceptar/Cancelar below the last field. The
// window grows with the number of fields.
#include "app/ficha_form.h"

#include <QColor>
#include <QDialog>
#include <QHash>

class FichaWindow : public QDialog {
    Q_OBJECT
public:
    explicit FichaWindow(FichaForm form, QWidget* padre = nullptr);

    FichaForm& form() { return form_; }
    // The input of a column (QLineEdit, QComboBox or QPlainTextEdit); nullptr when not shown.
    QWidget* entrada(const QString& columna) const { return entradas_.value(columna); }

    // Colours of a mandatory field.
    static QColor fondoObligatorio() { return QColor(255, 247, 194); }
    static QColor textoObligatorio() { return QColor(0, 0, 139); }

public slots:
    void aceptar();
    // Closes without saving and releases the record's lock.
    void reject() override;

private:
    QWidget* crearEntrada(const CampoFicha& campo);
    void leerCampos();

    FichaForm form_;
    QHash<QString, QWidget*> entradas_;
};
