#pragma once
// Suppliers are kept in the generic list editor of table Proveedores. Their accounting
// subaccount follows the suppliers' ledger: it begins with "400" and holds digits only.
#include <QString>
#include <optional>

inline const QString kPrefijoSubcuentaProveedor = QStringLiteral("400");
inline const QString kSujetoSubcuentaProveedor = QStringLiteral("para el Proveedor");

// The message that refuses a supplier's subaccount; nullopt when it is acceptable (an empty
// one is: the subaccount is optional).
std::optional<QString> comprobarSubcuentaProveedor(const QString& subcuenta);
