#pragma once
// The table of active workstations: one row per workstation that is inside the program.
#include "data/database.h"

#include <QDateTime>
#include <QStringList>

// What the registration of a starting workstation found.
struct EntradaPuesto {
    enum Resultado { Dentro, Monopuesto, OtroUsuarioSistema } resultado = Dentro;
    bool multipuesto = true;       // the mode read, in the same transaction
    QString otroUsuario;           // OtroUsuarioSistema: who is inside under this name
};

class PuestosActivosStore {
public:
    explicit PuestosActivosStore(Database& db) : db_(db) {}

    // Adds the workstation. A row left with this name by a copy that stopped without
    // closing is replaced: the single-instance lock guarantees no other copy runs here.
    void registrar(const QString& puesto, const QDateTime& momento);
    // A starting workstation: reads the mode (MULTIPUESTO, PUESTO SERVIDOR) and adds the row in
    // one step serialised with desactivarMultipuesto, so that no workstation other than the
    // server is ever inside while the mode is "NO". Another operating-system user inside
    // under the same workstation name refuses the entry (one row is never shared); a row of
    // this same user is one left by a copy that stopped, and is replaced. Throws ErrorBD.
    EntradaPuesto entrar(const QString& puesto, const QString& usuarioSistema, const QDateTime& momento);
    // Sets the mode to "NO" unless a workstation is inside; false when one is.
    bool desactivarMultipuesto();
    // Removes the workstation; false when it was not there.
    bool quitar(const QString& puesto);
    void asignarUsuario(const QString& puesto, const QString& usuario);
    QStringList puestos();
    qint64 contar();

private:
    Database& db_;
};
