#include "clients/registro_cambios_form.h"

#include "core/command_trace.h"
#include "core/formatos.h"

namespace {
std::optional<ClienteElegido> elegir(Entorno& e) {
    if (!e.buscadores.cliente) return std::nullopt;
    PeticionCliente peticion;
    peticion.Bloquear = true;
    auto c = e.buscadores.cliente(peticion);
    if (!c || c->claveCliente == 0) return std::nullopt;
    return c;
}
} // namespace

bool RegistroCambiosForm::elegirOrigen() {
    const auto c = elegir(e_);
    if (!c) return false;
    filtro.IdClienteOrigen = c->claveCliente;
    nombreOrigen_ = c->Cliente;
    return true;
}

bool RegistroCambiosForm::elegirDestino() {
    const auto c = elegir(e_);
    if (!c) return false;
    filtro.IdClienteDestino = c->claveCliente;
    nombreDestino_ = c->Cliente;
    return true;
}

QStringList RegistroCambiosForm::cabeceras() {
    return {QStringLiteral("Fecha"), QStringLiteral("Mascota"), QStringLiteral("Propietario Origen"),
            QStringLiteral("Nuevo Propietario")};
}

QStringList RegistroCambiosForm::textos(const FilaCambio& f) {
    return {formatoFecha(f.Fecha), f.Mascota, f.PropietarioOrigen, f.NuevoPropietario};
}

bool RegistroCambiosForm::buscar() {
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar Cambios de Propietario en el '") +
                                         kTituloRegistroCambios + QLatin1Char('\''));
    traza.ejecutar([&] {
        filas_ = MascotaStore(e_.db()).cambios(filtro);
        hecho = true;
    });
    if (!hecho) return false;
    if (filas_.isEmpty()) {
        e_.dialogs().avisar(
            QStringLiteral("¡Atención!"),
            QStringLiteral("No existen Cambios de Propietario que cumplan los filtros especificados."));
        return false;
    }
    return true;
}

std::optional<std::pair<qint64, qint64>> RegistroCambiosForm::mascotaDeFila(int fila) {
    if (fila < 0 || fila >= filas_.size()) return std::nullopt;
    const qint64 id = filas_.at(fila).IdMascota;
    std::optional<std::pair<qint64, qint64>> r;
    bool leido = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("abrir una Mascota en el '") + kTituloRegistroCambios +
                                         QLatin1Char('\''));
    traza.ejecutar([&] {
        const auto m = MascotaStore(e_.db()).cargar(id);
        leido = true;
        if (m) r = std::make_pair(m->valor(QStringLiteral("IdCliente")).toLongLong(), id);
    });
    if (leido && !r)
        e_.dialogs().error(QStringLiteral("¡Error!"),
                           QStringLiteral("No se ha encontrado la Mascota nº ") + QString::number(id) +
                               QStringLiteral(" en la B.D. Contacte con Soporte a Clientes."));
    return r;
}
