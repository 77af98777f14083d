#pragma once
// The generic list editor window ("Lista de " + descTabla), bound to EditorListaForm: the
// list lstRegistros with one column per table column, and the buttons cmdAnadir,
// cmdModificar (also a double click on a row), cmdEliminar, cmdRefrescar and cmdCerrar.
// Adding and modifying open the record form (FichaWindow) over it.
#include "app/editor_lista_form.h"

#include <QDialog>

class QTreeWidget;

class EditorListaWindow : public QDialog {
    Q_OBJECT
public:
    EditorListaWindow(Entorno& entorno, const DescriptorTabla& tabla, QWidget* padre = nullptr);
    EditorListaForm& form() { return form_; }

public slots:
    void anadir();
    void modificar();
    void eliminar();
    void refrescar();

private:
    void mostrar();

    EditorListaForm form_;
    QTreeWidget* lista_;
};

// Opens, modal, the editor of a table of the catalogue: the tree editor for a table whose
// records hang from another of the same table, the list editor otherwise. False when the
// table is not in the catalogue.
bool abrirEditorTabla(Entorno& entorno, const QString& tabla, QWidget* padre = nullptr);
