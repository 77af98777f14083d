#include "data/reglas_tablas.h"

#include <QHash>

namespace {
// A function-local map: registrations run during static initialisation.
QHash<QString, ValidacionTabla>& validaciones() {
    static QHash<QString, ValidacionTabla> mapa;
    return mapa;
}
} // namespace

void registrarValidacionTabla(const QString& tabla, ValidacionTabla validacion) {
    validaciones().insert(tabla, std::move(validacion));
}

std::optional<FalloValidacion> validacionRegistrada(const QString& tabla, const Registro& r) {
    const ValidacionTabla v = validaciones().value(tabla);
    return v ? v(r) : std::nullopt;
}
