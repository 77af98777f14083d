#include "clients/cambio_propietario_form.h"

#include "app/ficha_form.h"
#include "core/command_trace.h"

namespace {
QString accion(const QString& verbo) {
    return verbo + QStringLiteral(" en el '") + kTituloCambioPropietario + QLatin1Char('\'');
}
} // namespace

bool CambioPropietarioForm::ponerActual(qint64 idCliente, const QString& nombre,
                                        std::optional<qint64> idMascota) {
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), accion(QStringLiteral("leer las mascotas del propietario actual")));
    traza.ejecutar([&] {
        MascotaStore store(e_.db());
        QString nombreLeido = nombre;
        if (nombreLeido.isEmpty()) {
            const auto p = store.propietario(idCliente);
            if (!p) {
                e_.dialogs().error(
                    QStringLiteral("¡Error!"),
                    QStringLiteral("Error al intentar acceder al cliente numero ") +
                        QString::number(idCliente) +
                        QStringLiteral(".\nHa sido imposible recuperar la información "
                                       "solicitada. Puede que el cliente haya sido eliminado."));
                return;
            }
            nombreLeido = p->Nombre;
        }
        mascotas_ = store.mascotasDeCliente(idCliente);
        actual_ = idCliente;
        nombreActual_ = nombreLeido;
        fila_ = -1;
        for (int i = 0; idMascota && i < mascotas_.size(); ++i)
            if (mascotas_.at(i).IdMascota == *idMascota) fila_ = i;
        hecho = true;
    });
    return hecho;
}

bool CambioPropietarioForm::abrir(qint64 idCliente, std::optional<qint64> idMascota) {
    return ponerActual(idCliente, QString(), idMascota);
}

bool CambioPropietarioForm::elegirPropietarioActual() {
    if (!e_.buscadores.cliente) return false;
    PeticionCliente peticion;
    peticion.Bloquear = true;
    const auto c = e_.buscadores.cliente(peticion);
    if (!c || c->claveCliente == 0) return false;
    return ponerActual(c->claveCliente, c->Cliente, c->claveMascota);
}

bool CambioPropietarioForm::elegirNuevoPropietario() {
    if (!e_.buscadores.cliente) return false;
    PeticionCliente peticion;
    peticion.Bloquear = true;
    const auto c = e_.buscadores.cliente(peticion);
    if (!c || c->claveCliente == 0) return false;
    nuevo_ = c->claveCliente;
    nombreNuevo_ = c->Cliente;
    return true;
}

bool CambioPropietarioForm::cambiar() {
    Dialogs& d = e_.dialogs();
    if (!actual_) {
        d.avisar(
            kTituloObligatorios,
            QStringLiteral("Seleccione el propietario actual de la mascota a través de la lupa de búsqueda"));
        return false;
    }
    if (fila_ < 0) {
        d.avisar(kTituloObligatorios, QStringLiteral("Indique la mascota que desea cambiar de propietario"));
        return false;
    }
    if (!nuevo_) {
        d.avisar(kTituloObligatorios,
                 QStringLiteral(
                     "Seleccione el nuevo propietario para la mascota a través de la lupa de búsqueda"));
        return false;
    }
    if (*nuevo_ == *actual_) {
        d.avisar(kTituloErronea,
                 QStringLiteral("El nuevo propietario es el mismo que el propietario actual de la mascota. "
                                "Seleccione otro propietario."));
        return false;
    }
    const FilaMascota mascota = mascotas_.at(fila_);
    bool hecho = false;
    CommandTrace traza(d, accion(QStringLiteral("cambiar de propietario una Mascota")));
    traza.ejecutar([&] {
        BloqueoEdicion bloqueo(e_);
        traza.paso(QStringLiteral("Bloquear la mascota"));
        if (!bloqueo.tomar(tablaMascotas(), QString::number(mascota.IdMascota), mascota.Mascota,
                           AccionBloqueo::Modificacion))
            return;
        traza.paso(QStringLiteral("Cambiar el propietario y anotar el cambio"));
        MascotaStore store(e_.db());
        store.cambiarPropietario(mascota.IdMascota, *actual_, *nuevo_, e_.reloj().hoy(), e_.usuario);
        bloqueo.liberar();
        hecho = true;
        traza.paso(QStringLiteral("Leer las mascotas del propietario actual"));
        mascotas_ = store.mascotasDeCliente(*actual_);
        fila_ = -1;
    });
    if (!hecho) return false;
    d.informar(QStringLiteral("Información"), QStringLiteral("Cambio efectuado correctamente. La mascota ") +
                                                  mascota.Mascota + QStringLiteral(" pertenece ahora a ") +
                                                  nombreNuevo_);
    return true;
}
