#pragma once
// The lock manager ("Bloqueos"): lists the locks held by every workstation and lets an
// administrator remove the selected one or all of them (locks left behind by a
// workstation that stopped without closing stay until removed here).
#include "app/entorno.h"
#include "data/bloqueos.h"

#include <QStringList>

class BloqueosForm {
public:
    explicit BloqueosForm(Entorno& entorno) : e_(entorno) {}

    // "Registro", "Usuario", "Puesto", "Fecha", "Hora".
    static const QStringList& columnas();

    // Shows only the locks whose description, user or workstation contains this text
    // (upper and lower case alike, blanks around ignored); empty shows every lock.
    QString filtro;
    // The row selected in the list; -1 for none.
    int seleccionado = -1;

    // Reloads the list. False when the database failed (reported).
    bool buscar();
    const QList<Bloqueo>& filas() const { return filas_; }
    // The text of a cell: description, user, workstation, "dd/mm/yyyy", "hh:mm".
    QString texto(int fila, int columna) const;

    // Asks "¿Desea realmente eliminar el Bloqueo seleccionado?" and on Yes removes it and
    // reloads. False when nothing was removed.
    bool eliminarSeleccionado();
    // Asks "¿Desea realmente eliminar todos los bloqueos?" and on Yes removes every lock
    // and reloads.
    bool eliminarTodos();
    // Only an administrator removes locks.
    bool puedeEliminar() const { return e_.esAdministrador(); }

private:
    bool coincide(const Bloqueo& b) const;
    bool permitido();
    Entorno& e_;
    QList<Bloqueo> filas_;
};

inline const QString kTituloBloqueos = QStringLiteral("Bloqueos");
