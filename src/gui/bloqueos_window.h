#pragma once
// The lock manager window "Bloqueos", bound to BloqueosForm.
#include "app/bloqueos_form.h"

#include <QWidget>

class QLineEdit;
class QPushButton;
class QTableWidget;

class BloqueosWindow : public QWidget {
    Q_OBJECT
public:
    BloqueosWindow(Entorno& entorno, QWidget* padre = nullptr);
    BloqueosForm& form() { return form_; }

public slots:
    void buscar();
    void eliminarSeleccionado();
    void eliminarTodos();

private:
    void mostrarFilas();
    BloqueosForm form_;
    QLineEdit* filtro_;
    QTableWidget* lista_;
    QPushButton* eliminar_;
    QPushButton* eliminarTodos_;
};
