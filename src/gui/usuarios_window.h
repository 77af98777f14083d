#pragma once
// The users screen, bound to UsuariosForm: the list of users on the left, the selected
// user's fields on the right.
#include "app/usuarios_form.h"

#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;
class QTreeWidget;

class UsuariosWindow : public QWidget {
    Q_OBJECT
public:
    UsuariosWindow(Entorno& entorno, QWidget* padre = nullptr);
    UsuariosForm& form() { return form_; }

public slots:
    void nuevo();
    void guardar();
    void eliminar();

protected:
    void closeEvent(QCloseEvent* evento) override;

private:
    void cambioDeFila();
    void mostrarLista();
    void mostrarCampos();
    void ponerFoco();

    UsuariosForm form_;
    QTreeWidget* lista_;
    QLineEdit* id_;
    QLineEdit* nombre_;
    QLineEdit* clave_;
    QLineEdit* confirmacion_;
    QComboBox* tipo_;
    QPushButton* eliminar_;
    bool actualizando_ = false;
};
