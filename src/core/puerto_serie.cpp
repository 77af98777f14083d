#include "core/puerto_serie.h"

#include <QRegularExpression>

namespace {
constexpr int kUltimoCom = 16;

// The COM number (1..16) of "COMn"; 0 for any other text.
int numeroCom(const QString& p) {
    static const QRegularExpression com(QStringLiteral("^COM([0-9]{1,2})$"),
                                        QRegularExpression::CaseInsensitiveOption);
    const auto m = com.match(p);
    if (!m.hasMatch()) return 0;
    const int n = m.captured(1).toInt();
    return n >= 1 && n <= kUltimoCom ? n : 0;
}

bool rutaDispositivo(const QString& p) {
    static const QRegularExpression ruta(QStringLiteral("^/dev/[A-Za-z0-9._-]+(/[A-Za-z0-9._-]+)*$"));
    return ruta.match(p).hasMatch() && !p.contains(QStringLiteral(".."));
}
} // namespace

QString dispositivoSerie(const QString& puerto) {
    const QString p = puerto.trimmed();
    if (const int n = numeroCom(p)) return QStringLiteral("/dev/ttyS%1").arg(n - 1);
    return rutaDispositivo(p) ? p : QString();
}

QString puertoSerieNormalizado(const QString& puerto) {
    const QString p = puerto.trimmed();
    if (const int n = numeroCom(p)) return QStringLiteral("COM%1").arg(n);
    return rutaDispositivo(p) ? p : QString();
}
