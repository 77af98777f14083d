#include "app/editores_abiertos.h"

#include "core/concordancia.h"

bool EditoresAbiertos::ocupar(const QString& tabla, const QString& id, const void* dueno,
                              std::function<void()> traerAlFrente) {
    const QString k = clave(tabla, id);
    const auto it = abiertos_.constFind(k);
    if (it != abiertos_.constEnd() && it->dueno != dueno) {
        if (it->traerAlFrente) it->traerAlFrente();
        return false;
    }
    soltar(dueno);
    abiertos_.insert(k, Editor{dueno, std::move(traerAlFrente)});
    return true;
}

void EditoresAbiertos::soltar(const void* dueno) {
    for (auto it = abiertos_.begin(); it != abiertos_.end();)
        it = it->dueno == dueno ? abiertos_.erase(it) : std::next(it);
}

bool EditoresAbiertos::abierto(const QString& tabla, const QString& id) const {
    return abiertos_.contains(clave(tabla, id));
}

QString textoAbiertoEnOtraVentana(const QString& clase) {
    const Concordancia c = concordancia(clase);
    return QStringLiteral("No es posible eliminar ") + c.este + QLatin1Char(' ') + clase + QStringLiteral(" porque ") +
           c.lo + QStringLiteral(" tiene abiert") + c.o +
           QStringLiteral(" en otra ventana de este equipo. Ciérrela antes de eliminar") + c.lo + QLatin1Char('.');
}
