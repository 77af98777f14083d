#pragma once
// Reading and writing the client record (table Clientes) and what the client screen asks of
// the database around it: the pets a client still has and the 0 % VAT type.
#include "data/registro.h"

#include <optional>

class ClienteStore {
public:
    explicit ClienteStore(Database& db) : db_(db) {}

    // The descriptor of Clientes.
    static const DescriptorTabla& tabla();

    // The client with that number, or nullopt. Throws ErrorBD.
    std::optional<Registro> cargar(qint64 idCliente);
    // Inserts a new client and returns its number (set in r as well).
    qint64 crear(Registro& r);
    void actualizar(Registro& r);
    // Deletes the client and the rows of its commercial file in one transaction of its own,
    // unless it has pets (TieneMascotas) or other rows point at it, such as a pet or a note
    // added by another workstation meanwhile (Referido). Nothing is deleted unless Eliminado.
    enum class Baja { Eliminado, NoExiste, TieneMascotas, Referido };
    Baja eliminar(qint64 idCliente);
    // Pets whose owner is the client.
    qint64 contarMascotas(qint64 idCliente);
    // The key of a VAT type of 0 %, or nullopt when the clinic has none.
    std::optional<qint64> tipoIvaCero();

private:
    Database& db_;
};
