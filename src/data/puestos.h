#pragma once
// The table of active workstations: one row per workstation that is inside the program.
#include "data/database.h"

#include <QDateTime>
#include <QStringList>

class PuestosActivosStore {
public:
    explicit PuestosActivosStore(Database& db) : db_(db) {}

    // Adds the workstation. A row left with this name by a copy that stopped without
    // closing is replaced: the single-instance lock guarantees no other copy runs here.
    void registrar(const QString& puesto, const QDateTime& momento);
    // Removes the workstation; false when it was not there.
    bool quitar(const QString& puesto);
    void asignarUsuario(const QString& puesto, const QString& usuario);
    QStringList puestos();
    qint64 contar();

private:
    Database& db_;
};
