#pragma once
// The generic tree editor, for a table whose records hang from another record of the same
// table (columnaPadre). Each node shows the record's text (columnaTexto) under its parent.
// Deleting a node deletes its whole branch in one transaction, and is refused while another
// workstation holds a record lock on the node or on any node below it.
//
// Damaged data never hangs the editor: a record whose parent does not exist is shown as a
// root, and in a chain of parents that loops, the record with the lowest key is shown as a
// root so that every record appears exactly once.
#include "app/arbol_store.h"
#include "app/editor_lista_form.h"

#include <QHash>

inline const QString kTituloBloqueoRama = QStringLiteral("Bloqueo de Registro");
inline const QString kPreguntaEliminarRama = QStringLiteral(
    "¿Desea realmente eliminar el objeto seleccionado? (Se eliminarán todos sus hijos también)");

struct NodoArbol {
    Registro registro;
    QString clave;     // the record's key as text
    QString texto;     // what the node shows
    QStringList hijos; // keys of the nodes shown under it, ordered by their text
};

class EditorArbolForm {
public:
    EditorArbolForm(Entorno& entorno, const DescriptorTabla& tabla);

    const DescriptorTabla& descriptor() const { return *t_; }
    // "Arbol de " + descTabla.
    QString titulo() const;
    // The header of the tree: the Descripcion of the text column.
    QString cabecera() const;

    // Reads the table again. False when the database failed (the message is shown).
    bool refrescar();
    const QStringList& raices() const { return raices_; }
    const NodoArbol* nodo(const QString& clave) const;
    int totalNodos() const { return static_cast<int>(nodos_.size()); }
    // The key of the node a node is shown under; empty for a root.
    QString padreMostrado(const QString& clave) const { return padres_.value(clave); }

    // The selected node's key; empty for none.
    QString seleccionado;

    // A form for a new root record, and for a new record under the selected node (without a
    // selection the user is told and nullopt is returned).
    FichaForm nuevaRaiz() const;
    std::optional<FichaForm> nuevoHijo();
    // A form for the selected record, read again from the database and locked for
    // modification (see EditorListaForm::fichaSeleccionada).
    std::optional<FichaForm> fichaSeleccionada();
    // After the record form saved: reads the tree again and selects the saved record.
    void guardado(const Registro& r);
    // Takes the deletion lock of the selected node, asks once, and on Yes deletes the node
    // with all its descendants in one transaction. Refused (kTituloBloqueoRama) when another
    // workstation holds a lock on a node of the branch, checked before the question and
    // again inside the transaction. True when the branch was deleted.
    bool eliminar();

    // "No es posible dar de Baja el/la " + descTabla + " de " + text + " pues otro Puesto
    // lo/a tiene bloqueado/a. Consulte a un Administrador."
    QString textoRamaBloqueada(const QString& texto) const;

private:
    // The text of the first record of the branch locked by another session, if any.
    std::optional<QString> bloqueadoPorOtro(const QList<Registro>& rama);
    QString descripcionTraza(const QString& accion) const;
    static QString texto(const QVariant& v) { return v.isNull() ? QString() : v.toString(); }

    Entorno& e_;
    const DescriptorTabla* t_;
    QHash<QString, NodoArbol> nodos_;
    QHash<QString, QString> padres_;
    QStringList raices_;
};
