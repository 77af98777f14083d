#pragma once
// The records of a tree table (a table whose records hang from another record of the same
// table through columnaPadre) for the generic tree editor.
#include "data/registro.h"

#include <QList>
#include <QPair>
#include <QStringList>
#include <functional>

class ArbolStore {
public:
    explicit ArbolStore(Database& db) : db_(db) {}

    // Every record, by its text and then its key.
    QList<Registro> registros(const DescriptorTabla& t);
    // Deletes a record and all its descendants, children before their parents, in one
    // transaction. The branch is read inside the transaction (children added meanwhile by
    // another workstation go with it) and handed to puedeEliminar, record first; when it
    // answers false nothing is deleted and the result is false.
    bool eliminarRama(const DescriptorTabla& t, const QString& clave,
                      const std::function<bool(const QList<Registro>&)>& puedeEliminar);

private:
    Database& db_;
};

// Keys of a record and of all its descendants, the record first and every node before its
// children, given each record's key and its parent's key. Each key appears once even when
// the chain of parents loops.
QStringList ramaDe(const QString& clave, const QList<QPair<QString, QString>>& clavesYPadres);
