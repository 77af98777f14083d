#include "app/temporizadores.h"

#include "core/formatos.h"

#include <QFileInfo>

std::optional<MomentoAgenda> comprobacionAgenda(const QDateTime& ahora) {
    const QString texto = formatoFecha(ahora.date()) + QLatin1Char(' ') + formatoHora(ahora.time());
    const int minutos = texto.right(2).toInt();
    if (minutos % 5 != 0) return std::nullopt;
    return MomentoAgenda{texto.left(10), texto.right(5)};
}

QString rutaCopiaAutomatica(const QString& rutaBaseDatos) {
    const QFileInfo bd(rutaBaseDatos);
    return bd.path() + QStringLiteral("/CopiaAutomBD.MDB");
}

bool tocaCopiaAutomatica(const std::optional<QTime>& horaCopia, const QDateTime& ahora,
                         const std::optional<QDate>& ultimaCopia) {
    if (!horaCopia || !horaCopia->isValid()) return false;
    if (ahora.time() < *horaCopia) return false;
    return !ultimaCopia || *ultimaCopia < ahora.date();
}

namespace {
bool esEspecial(QChar c) {
    static const QString especiales = QStringLiteral("+^%~()[]{}");
    return especiales.contains(c);
}
} // namespace

QString secuenciaTeclasCodigoBarras(const QString& texto) {
    QString s;
    s.reserve(texto.size() * 2);
    for (const QChar c : texto) {
        if (esEspecial(c)) {
            s += QLatin1Char('{');
            s += c;
            s += QLatin1Char('}');
        } else {
            s += c;
        }
    }
    return s;
}

QString textoDeSecuenciaTeclas(const QString& secuencia) {
    QString t;
    for (qsizetype i = 0; i < secuencia.size(); ++i) {
        const QChar c = secuencia.at(i);
        if (c == QLatin1Char('{') && i + 2 < secuencia.size() && secuencia.at(i + 2) == QLatin1Char('}')) {
            t += secuencia.at(i + 1);
            i += 2;
        } else {
            t += c;
        }
    }
    return t;
}

bool tocaCompactacion(const QString& dias, const std::optional<QDate>& ultima, const QDate& hoy) {
    bool ok = false;
    const int n = dias.trimmed().toInt(&ok);
    if (!ok || n <= 0) return false;
    if (!ultima || !ultima->isValid()) return true;
    return ultima->daysTo(hoy) >= n;
}

QString textoAutoGuardado(int minutos) {
    if (minutos <= 0) return QStringLiteral("AutoGuardado DESACTIVADO");
    return QStringLiteral("AutoGuardado ACTIVADO cada ") + QString::number(minutos) +
           QStringLiteral(" minutos");
}
