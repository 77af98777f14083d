#pragma once
// The generic tree editor window ("Arbol de " + descTabla), bound to EditorArbolForm: the
// tree arbRegistros and the buttons cmdAnadirRaiz, cmdAnadirHijo, cmdModificar (also a double
// click on a node), cmdEliminar, cmdRefrescar and cmdCerrar.
#include "app/editor_arbol_form.h"

#include <QDialog>

class QTreeWidget;

class EditorArbolWindow : public QDialog {
    Q_OBJECT
public:
    EditorArbolWindow(Entorno& entorno, const DescriptorTabla& tabla, QWidget* padre = nullptr);
    EditorArbolForm& form() { return form_; }

public slots:
    void anadirRaiz();
    void anadirHijo();
    void modificar();
    void eliminar();
    void refrescar();

private:
    void mostrar();
    void abrirFicha(FichaForm ficha);

    EditorArbolForm form_;
    QTreeWidget* arbol_;
};
