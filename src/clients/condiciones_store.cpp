#include "clients/condiciones_store.h"

#include "data/esquema.h"
#include "data/registro.h"

namespace {
const DescriptorTabla& tablaCondiciones() {
    const DescriptorTabla* t = descriptorTabla(QStringLiteral("CondicionesEspeciales"));
    if (!t) throw ErrorPrograma(QStringLiteral("Falta la tabla de condiciones especiales."));
    return *t;
}

QString columnaDueno(DuenoCondiciones d) {
    return d == DuenoCondiciones::Cliente ? QStringLiteral("IdCliente") : QStringLiteral("IdPlanSalud");
}

std::optional<qint64> entero(const QVariant& v) {
    if (v.isNull() || !v.isValid()) return std::nullopt;
    return v.toLongLong();
}

std::optional<double> decimal(const QVariant& v) {
    if (v.isNull() || !v.isValid()) return std::nullopt;
    return v.toDouble();
}

QVariant variante(std::optional<qint64> v) {
    return v ? QVariant(static_cast<qlonglong>(*v)) : QVariant();
}

QVariant variante(std::optional<double> v) {
    return v ? QVariant(*v) : QVariant();
}
} // namespace

QList<CondicionEspecial> CondicionesStore::leer(DuenoCondiciones dueno, qint64 id) {
    const DescriptorTabla& t = tablaCondiciones();
    QList<CondicionEspecial> filas;
    const auto registros = RegistroStore(db_).buscar(
        t, {columnaDueno(dueno) + QStringLiteral(" = ?"), {static_cast<qlonglong>(id)}},
        {QStringLiteral("IdCondicion")});
    for (const auto& r : registros) {
        CondicionEspecial c;
        c.IdArticulo = entero(r.valor(QStringLiteral("IdArticulo")));
        c.IdSeccion = entero(r.valor(QStringLiteral("IdSeccion")));
        c.IdFamilia = entero(r.valor(QStringLiteral("IdFamilia")));
        c.IdSubfamilia = entero(r.valor(QStringLiteral("IdSubfamilia")));
        c.Precio = decimal(r.valor(QStringLiteral("Precio")));
        c.Tarifa = r.texto(QStringLiteral("Tarifa"));
        c.Descuento = decimal(r.valor(QStringLiteral("Descuento")));
        filas << c;
    }
    return filas;
}

void CondicionesStore::reemplazar(DuenoCondiciones dueno, qint64 id, const QList<CondicionEspecial>& filas) {
    const DescriptorTabla& t = tablaCondiciones();
    const QString columna = columnaDueno(dueno);
    Transaction tx = db_.transaccion();
    db_.ejecutar(QStringLiteral("DELETE FROM ") + t.tabla + QStringLiteral(" WHERE ") + columna +
                     QStringLiteral(" = ?"),
                 {static_cast<qlonglong>(id)});
    RegistroStore store(db_);
    for (const auto& c : filas) {
        Registro r(t);
        r.setValor(columna, static_cast<qlonglong>(id));
        r.setValor(QStringLiteral("IdArticulo"), variante(c.IdArticulo));
        r.setValor(QStringLiteral("IdSeccion"), variante(c.IdSeccion));
        r.setValor(QStringLiteral("IdFamilia"), variante(c.IdFamilia));
        r.setValor(QStringLiteral("IdSubfamilia"), variante(c.IdSubfamilia));
        r.setValor(QStringLiteral("Precio"), variante(c.Precio));
        r.setValor(QStringLiteral("Tarifa"), c.Tarifa.isEmpty() ? QVariant() : QVariant(c.Tarifa));
        r.setValor(QStringLiteral("Descuento"), variante(c.Descuento));
        store.crear(r);
    }
    tx.commit();
}

QList<OpcionLista> CondicionesStore::hijas(const DescriptorTabla& t, const QString& columnaPadre,
                                           qint64 padre) {
    const DescriptorColumna* c = t.columna(columnaPadre);
    if (!c)
        throw ErrorPrograma(QStringLiteral("La tabla ") + t.tabla + QStringLiteral(" no tiene la columna ") +
                            columnaPadre + QLatin1Char('.'));
    QList<OpcionLista> l;
    const auto registros = RegistroStore(db_).buscar(
        t, {c->nombre + QStringLiteral(" = ?"), {static_cast<qlonglong>(padre)}}, {t.columnaTexto});
    for (const auto& r : registros)
        l << OpcionLista{r.clave(), r.texto(t.columnaTexto)};
    return l;
}
