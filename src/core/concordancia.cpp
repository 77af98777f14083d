#include "core/concordancia.h"

#include <QStringList>

Concordancia concordancia(const QString& clase) {
    static const QStringList masculinasEnA = {QStringLiteral("idioma"),   QStringLiteral("día"),
                                              QStringLiteral("sistema"),  QStringLiteral("problema"),
                                              QStringLiteral("programa"), QStringLiteral("mapa"),
                                              QStringLiteral("tema")};
    const QString palabra = clase.trimmed().section(QLatin1Char(' '), 0, 0).toLower();
    const bool femenina = !masculinasEnA.contains(palabra) &&
                          (palabra.endsWith(QLatin1Char('a')) || palabra.endsWith(QStringLiteral("ión")) ||
                           palabra.endsWith(QStringLiteral("dad")) || palabra.endsWith(QStringLiteral("ie")));
    if (femenina) return {QStringLiteral("esta"), QStringLiteral("la"), QStringLiteral("a"), QStringLiteral("ella")};
    return {QStringLiteral("este"), QStringLiteral("lo"), QStringLiteral("o"), QStringLiteral("él")};
}
