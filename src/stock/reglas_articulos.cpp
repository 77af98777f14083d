// The articles' rules that the core applies whatever program runs it: the save of a subfamily
// through the generic record form (a new series is carried to the pending delivery notes)
// and the check of a supplier's subaccount. They are registered during static initialisation;
// the core's link interface names kAnclaReglasArticulos (src/stock/CMakeLists.txt) so that
// every program linking the core keeps this file.
#include "app/ficha_form.h"
#include "data/reglas_tablas.h"
#include "stock/proveedor_subcuenta.h"
#include "stock/serie_subfamilia.h"

namespace {
const bool registradas = [] {
    registrarGuardadoPropio(QStringLiteral("Subfamilias"), guardarSubfamilia);
    registrarValidacionTabla(
        QStringLiteral("Proveedores"), [](const Registro& r) -> std::optional<FalloValidacion> {
            if (const auto error = comprobarSubcuentaProveedor(r.texto(QStringLiteral("Subcuenta"))))
                return FalloValidacion{*error, QStringLiteral("Subcuenta")};
            return std::nullopt;
        });
    return true;
}();
} // namespace

extern "C" {
extern const int pramelvix_reglas_articulos;
const int pramelvix_reglas_articulos = registradas ? 1 : 0;
}
