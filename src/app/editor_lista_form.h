#pragma once
// The generic list editor: every record of one table in a list with one column per table
// column, and the commands add, modify, delete and refresh. Adding and modifying hand a
// FichaForm to the caller; the list is read again after every change.
#include "app/ficha_form.h"

#include <optional>

inline const QString kTituloAtencionEditor = QStringLiteral("¡Atención!");

// Reads again the record with that key and opens its form for modifying, with its lock
// taken. Nothing when the record cannot be read, is gone (borrado is then true: another
// workstation deleted it, and the user was told) or its lock is refused.
std::optional<FichaForm> fichaParaModificar(Entorno& e, const DescriptorTabla& t, const QVariant& clave,
                                            const QString& descripcionTraza, bool& borrado);
inline const QString kPreguntaEliminar = QStringLiteral("¿Desea realmente eliminar el objeto seleccionado?");

// The text that names a record in lists, trees and locks: its columnaTexto, or its key.
QString textoRegistro(const Registro& r);

class EditorListaForm {
public:
    EditorListaForm(Entorno& entorno, const DescriptorTabla& tabla);

    const DescriptorTabla& descriptor() const { return *t_; }
    // "Lista de " + descTabla.
    QString titulo() const;
    // One header per table column: its Descripcion.
    QStringList cabeceras() const;

    // Reads every record again, ordered by the record's text and then its key; the selection
    // follows the record it was on. False when the database failed (the message is shown).
    bool refrescar();
    int filas() const { return static_cast<int>(registros_.size()); }
    const Registro& registro(int fila) const { return registros_.at(fila); }
    QString textoCelda(int fila, int columna) const;
    // How many columns the list shows (cabeceras().size()).
    int columnas() const;
    // The row of the record with this key; -1 when it is not in the list.
    int filaDeClave(const QVariant& clave) const;

    // The selected row; -1 for none.
    int seleccionado = -1;

    // A form for a new record.
    FichaForm nuevaFicha() const;
    // A form for the selected record, read again from the database and locked for
    // modification. Without a selection, when the record is gone or when another workstation
    // holds its lock, the user is told and nullopt is returned.
    std::optional<FichaForm> fichaSeleccionada();
    // After the record form saved: reads the list again and selects the saved record.
    void guardado(const Registro& r);
    // Takes the deletion lock of the selected record, asks, and on Yes deletes it. True when
    // a record was deleted.
    bool eliminar();

private:
    QString descripcionTraza(const QString& accion) const;

    Entorno& e_;
    const DescriptorTabla* t_;
    QList<Registro> registros_;
};
