#pragma once
// The check of an accounting subaccount typed in a record: trimmed, it must begin with the
// ledger's prefix ("430" for clients) and hold digits only. The same check serves every record
// with a subaccount; the subject names the record in the message ("para el Cliente").
#include "core/dialogs.h"

#include <QString>
#include <optional>

inline const QString kPrefijoSubcuentaCliente = QStringLiteral("430");
inline const QString kSujetoSubcuentaCliente = QStringLiteral("para el Cliente");

// The message that refuses the subaccount, or nullopt when it is acceptable. An empty
// subaccount is accepted unless obligatoria.
std::optional<QString> comprobarSubcuenta(const QString& subcuenta, const QString& prefijo,
                                          const QString& sujeto, bool obligatoria);

// comprobarSubcuenta, showing a refusal as a critical box titled "¡Atención!". True when the
// subaccount is acceptable.
bool validarSubcuenta(Dialogs& dialogs, const QString& subcuenta, const QString& prefijo,
                      const QString& sujeto, bool obligatoria);
