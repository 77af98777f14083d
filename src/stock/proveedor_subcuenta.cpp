#include "stock/proveedor_subcuenta.h"

#include "clients/subcuenta.h"

std::optional<QString> comprobarSubcuentaProveedor(const QString& subcuenta) {
    return comprobarSubcuenta(subcuenta, kPrefijoSubcuentaProveedor, kSujetoSubcuentaProveedor, false);
}
