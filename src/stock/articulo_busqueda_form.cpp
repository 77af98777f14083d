#include "stock/articulo_busqueda_form.h"

#include "core/command_trace.h"
#include "core/formatos.h"

void ArticuloBusquedaForm::textoInicial(const QString& texto) {
    const QString t = texto.trimmed();
    bool numero = !t.isEmpty();
    for (const QChar c : t)
        if (!c.isDigit()) numero = false;
    if (numero)
        codigo = t;
    else
        filtro.descripcion = t;
}

QList<OpcionArticulo> ArticuloBusquedaForm::opciones(const QString& tabla, std::optional<qint64> padre) {
    QList<OpcionArticulo> l;
    CommandTrace t(e_.dialogs(), QStringLiteral("cargar las listas en la '") + kTituloBusquedaArticulos +
                                     QLatin1Char('\''));
    t.ejecutar([&] { l = ArticuloStore(e_.db()).opciones(tabla, padre); });
    return l;
}

bool ArticuloBusquedaForm::buscar() {
    FiltroArticulos f = filtro;
    f.codigo.reset();
    const QString cod = codigo.trimmed();
    if (!cod.isEmpty()) {
        bool ok = false;
        const qint64 n = cod.toLongLong(&ok);
        if (!ok || n <= 0) {
            e_.dialogs().avisar(QStringLiteral("¡Atención!"),
                                QStringLiteral("El código del Artículo debe ser un número entero."));
            return false;
        }
        f.codigo = n;
    }
    QList<FilaArticulo> nuevas;
    CommandTrace t(e_.dialogs(),
                   QStringLiteral("buscar Artículos en la '") + kTituloBusquedaArticulos + QLatin1Char('\''));
    if (!t.ejecutar([&] { nuevas = ArticuloStore(e_.db()).buscar(f); })) return false;
    filas_ = nuevas;
    seleccionado = filas_.isEmpty() ? -1 : 0;
    return true;
}

QStringList ArticuloBusquedaForm::cabeceras() {
    return {QStringLiteral("Código"),
            QStringLiteral("Descripción"),
            QStringLiteral("P.V.P. 1"),
            QStringLiteral("P.V.P. 2"),
            QStringLiteral("P.V.P. 3"),
            QStringLiteral("I.V.A."),
            QStringLiteral("Días de recordatorio")};
}

QString ArticuloBusquedaForm::textoCelda(int i, int columna) const {
    if (i < 0 || i >= filas()) return {};
    const FilaArticulo& f = filas_.at(i);
    switch (columna) {
    case 0:
        return QString::number(f.codigo);
    case 1:
        return f.descripcion;
    case 2:
        return formatoImporte(f.pvp1);
    case 3:
        return formatoImporte(f.pvp2);
    case 4:
        return formatoImporte(f.pvp3);
    case 5:
        return f.porcentajeIVA ? formatoImporte(*f.porcentajeIVA) : QString();
    case 6:
        return f.dias ? QString::number(*f.dias) : QString();
    }
    return {};
}

std::optional<qint64> ArticuloBusquedaForm::elegir() {
    if (seleccionado < 0 || seleccionado >= filas()) {
        e_.dialogs().avisar(QStringLiteral("¡Atención!"),
                            QStringLiteral("Seleccione el Artículo que desea."));
        return std::nullopt;
    }
    return filas_.at(seleccionado).codigo;
}
