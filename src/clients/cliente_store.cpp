#include "clients/cliente_store.h"

#include "clients/cliente_busqueda_store.h"

#include "data/esquema.h"

const DescriptorTabla& ClienteStore::tabla() {
    return descriptorRequerido(QStringLiteral("Clientes"));
}

std::optional<Registro> ClienteStore::cargar(qint64 idCliente) {
    return RegistroStore(db_).cargar(tabla(), static_cast<qlonglong>(idCliente));
}

namespace {
// The search finds clients by this normalised copy of the name (no case, no accents).
Registro conNombreBusqueda(const Registro& r) {
    Registro copia = r.getCopia();
    copia.setValor(QStringLiteral("NombreBusqueda"), normalizarBusqueda(r.texto(QStringLiteral("Nombre"))));
    return copia;
}
} // namespace

qint64 ClienteStore::crear(Registro& r) {
    r = conNombreBusqueda(r);
    const qint64 id = RegistroStore(db_).crear(r).toLongLong();
    r.setValor(QStringLiteral("IdCliente"), static_cast<qlonglong>(id));
    return id;
}

void ClienteStore::actualizar(Registro& r) {
    r = conNombreBusqueda(r);
    RegistroStore(db_).actualizar(r);
}

ClienteStore::Baja ClienteStore::eliminar(qint64 idCliente) {
    // Its special conditions go with it (their reference cascades).
    try {
        Transaction tx = db_.transaccion();
        if (contarMascotas(idCliente) > 0) return Baja::TieneMascotas;
        Registro r(tabla());
        r.setValor(QStringLiteral("IdCliente"), static_cast<qlonglong>(idCliente));
        if (!RegistroStore(db_).eliminar(r)) return Baja::NoExiste;
        tx.commit();
        return Baja::Eliminado;
    } catch (const ErrorBD& e) {
        if (!esErrorDeReferencia(e)) throw;
        return Baja::Referido;
    }
}

qint64 ClienteStore::contarMascotas(qint64 idCliente) {
    return RegistroStore(db_).contar(descriptorRequerido(QStringLiteral("Mascotas")),
                                     {QStringLiteral("IdCliente = ?"), {static_cast<qlonglong>(idCliente)}});
}

std::optional<qint64> ClienteStore::tipoIvaCero() {
    const DescriptorTabla& iva = descriptorRequerido(QStringLiteral("TiposIVA"));
    const auto tipos = RegistroStore(db_).buscar(iva, {QStringLiteral("Porcentaje = ?"), {0.0}},
                                                 {QStringLiteral("IdTipoIVA")});
    if (tipos.isEmpty()) return std::nullopt;
    return tipos.first().clave().toLongLong();
}
