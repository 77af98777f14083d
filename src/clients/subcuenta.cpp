#include "clients/subcuenta.h"

namespace {
bool soloDigitos(const QString& texto) {
    for (const QChar c : texto)
        if (c < QLatin1Char('0') || c > QLatin1Char('9')) return false;
    return true;
}
} // namespace

std::optional<QString> comprobarSubcuenta(const QString& subcuenta, const QString& prefijo,
                                          const QString& sujeto, bool obligatoria) {
    const QString s = subcuenta.trimmed();
    if (s.isEmpty()) {
        if (!obligatoria) return std::nullopt;
        return QStringLiteral(" Debe especificar antes la Subcuenta Contable ") + sujeto + QLatin1Char('.');
    }
    if (s.size() < prefijo.size() || !s.startsWith(prefijo))
        return QStringLiteral(" La Subcuenta Contable ") + sujeto + QStringLiteral(" debe comenzar por '") +
               prefijo + QStringLiteral("'.");
    if (!soloDigitos(s))
        return QStringLiteral(" La Subcuenta Contable ") + sujeto +
               QStringLiteral(" sólo puede contener caracteres numéricos.");
    return std::nullopt;
}

bool validarSubcuenta(Dialogs& dialogs, const QString& subcuenta, const QString& prefijo,
                      const QString& sujeto, bool obligatoria) {
    const auto mensaje = comprobarSubcuenta(subcuenta, prefijo, sujeto, obligatoria);
    if (!mensaje) return true;
    dialogs.mostrar(Icono::Critico, QStringLiteral("¡Atención!"), *mensaje);
    return false;
}
