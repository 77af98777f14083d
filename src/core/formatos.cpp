#include "core/formatos.h"

#include "core/dinero.h"

#include <cmath>

namespace {

bool esDigito(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool todoDigitos(QStringView texto) {
    if (texto.isEmpty()) return false;
    for (QChar c : texto)
        if (!esDigito(c)) return false;
    return true;
}

// Value of a run of minimo to maximo ASCII digits; -1 when the text is not that.
int numeroCorto(QStringView texto, qsizetype minimo, qsizetype maximo) {
    if (texto.size() < minimo || texto.size() > maximo || !todoDigitos(texto)) return -1;
    int valor = 0;
    for (QChar c : texto)
        valor = valor * 10 + (c.unicode() - u'0');
    return valor;
}

// Inserts a thousands point every three digits of a run of digits (no sign).
QString agruparMiles(QStringView digitos) {
    QString resultado;
    resultado.reserve(digitos.size() + digitos.size() / 3);
    const qsizetype n = digitos.size();
    for (qsizetype i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0) resultado.append(u'.');
        resultado.append(digitos[i]);
    }
    return resultado;
}

bool fechaConAnoDeCuatroCifras(const QDate& fecha) {
    return fecha.isValid() && fecha.year() >= 1 && fecha.year() <= 9999;
}

} // namespace

QString formatoFecha(const QDate& fecha) {
    if (!fechaConAnoDeCuatroCifras(fecha)) return {};
    return QString::asprintf("%02d/%02d/%04d", fecha.day(), fecha.month(), fecha.year());
}

QString formatoFechaLarga(const QDate& fecha) {
    static const char* const meses[] = {"enero",      "febrero", "marzo",     "abril",
                                        "mayo",       "junio",   "julio",     "agosto",
                                        "septiembre", "octubre", "noviembre", "diciembre"};
    if (!fechaConAnoDeCuatroCifras(fecha)) return {};
    return QStringLiteral("%1 de %2 de %3")
        .arg(fecha.day())
        .arg(QLatin1String(meses[fecha.month() - 1]))
        .arg(fecha.year());
}

std::optional<QDate> leerFecha(const QString& texto) {
    const QStringView limpio = QStringView(texto).trimmed();
    const auto partes = limpio.split(u'/');
    if (partes.size() != 3) return std::nullopt;
    const int dia = numeroCorto(partes[0], 1, 2);
    const int mes = numeroCorto(partes[1], 1, 2);
    const int ano = numeroCorto(partes[2], 4, 4);
    if (dia < 1 || mes < 1 || ano < 1) return std::nullopt;
    const QDate fecha(ano, mes, dia);
    if (!fecha.isValid()) return std::nullopt;
    return fecha;
}

QString formatoHora(const QTime& hora) {
    if (!hora.isValid()) return {};
    return QString::asprintf("%02d:%02d", hora.hour(), hora.minute());
}

QString formatoHoraSegundos(const QTime& hora) {
    if (!hora.isValid()) return {};
    return QString::asprintf("%02d:%02d:%02d", hora.hour(), hora.minute(), hora.second());
}

std::optional<QTime> leerHora(const QString& texto) {
    const QStringView limpio = QStringView(texto).trimmed();
    const auto partes = limpio.split(u':');
    if (partes.size() != 2 && partes.size() != 3) return std::nullopt;
    const int horas = numeroCorto(partes[0], 1, 2);
    const int minutos = numeroCorto(partes[1], 2, 2);
    const int segundos = partes.size() == 3 ? numeroCorto(partes[2], 2, 2) : 0;
    if (horas < 0 || horas > 23 || minutos < 0 || minutos > 59 || segundos < 0 || segundos > 59)
        return std::nullopt;
    return QTime(horas, minutos, segundos);
}

QString formatoImporte(double importe) {
    if (!std::isfinite(importe)) return {};
    const double redondeado = redondear2(importe); // never -0.0
    // QString::number does not use the locale: "-1234567.50".
    const QString c = QString::number(redondeado, 'f', 2);
    const bool negativo = c.startsWith(u'-');
    const QStringView sinSigno = QStringView(c).mid(negativo ? 1 : 0);
    const qsizetype punto = sinSigno.indexOf(u'.');
    QString resultado;
    if (negativo) resultado.append(u'-');
    resultado.append(agruparMiles(sinSigno.left(punto)));
    resultado.append(u',');
    resultado.append(sinSigno.mid(punto + 1));
    return resultado;
}

QString formatoEuros(double importe) {
    const QString texto = formatoImporte(importe);
    if (texto.isEmpty()) return {};
    return texto + QStringLiteral(" €");
}

QString formatoEntero(qint64 numero) {
    const QString c = QString::number(numero);
    if (c.startsWith(u'-')) return u'-' + agruparMiles(QStringView(c).mid(1));
    return agruparMiles(c);
}

std::optional<double> leerImporte(const QString& texto) {
    QStringView resto = QStringView(texto).trimmed();
    const bool negativo = resto.startsWith(u'-');
    if (negativo) resto = resto.mid(1);

    QStringView entera = resto;
    QStringView decimales;
    const qsizetype coma = resto.indexOf(u',');
    if (coma >= 0) {
        entera = resto.left(coma);
        decimales = resto.mid(coma + 1);
        if (!todoDigitos(decimales)) return std::nullopt; // also "5,", "1,2.3" and "12,3,4"
    }
    if (entera.isEmpty()) return std::nullopt;

    QString digitos; // the integer part without thousands points
    if (entera.contains(u'.')) {
        const auto grupos = entera.split(u'.');
        const QStringView primero = grupos.first();
        if (primero.size() < 1 || primero.size() > 3 || !todoDigitos(primero) || primero[0] == u'0')
            return std::nullopt;
        digitos.append(primero);
        for (qsizetype i = 1; i < grupos.size(); ++i) {
            if (grupos[i].size() != 3 || !todoDigitos(grupos[i])) return std::nullopt;
            digitos.append(grupos[i]);
        }
    } else {
        if (!todoDigitos(entera)) return std::nullopt;
        digitos = entera.toString();
    }

    // A C-locale number: QString::toDouble is locale-independent and correctly rounded.
    QString numero = digitos;
    if (!decimales.isEmpty()) numero += u'.' + decimales.toString();
    bool ok = false;
    const double valor = numero.toDouble(&ok);
    if (!ok || !std::isfinite(valor)) return std::nullopt;
    if (valor == 0.0) return 0.0;
    return negativo ? -valor : valor;
}

QString formatoClaveFecha(const QDate& fecha) {
    if (!fechaConAnoDeCuatroCifras(fecha)) return {};
    return QString::asprintf("%04d%02d%02d", fecha.year(), fecha.month(), fecha.day());
}

std::optional<QDate> leerClaveFecha(const QString& texto) {
    if (texto.size() != 8 || !todoDigitos(texto)) return std::nullopt;
    const QStringView t(texto);
    const QDate fecha(numeroCorto(t.mid(0, 4), 4, 4), numeroCorto(t.mid(4, 2), 2, 2),
                      numeroCorto(t.mid(6, 2), 2, 2));
    if (!fechaConAnoDeCuatroCifras(fecha)) return std::nullopt;
    return fecha;
}
