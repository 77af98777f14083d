#include "sales/albaran_busqueda_store.h"

#include "clients/cliente_busqueda_store.h"
#include "data/filtro_sql.h"
#include "data/registro.h"

#include <QStringList>

namespace {
// A condition on a NombreBusqueda column for a normalised text: at the start (on SQLite a
// range, which walks the column's index; on PostgreSQL LIKE, whatever the collation) or
// anywhere in the name.
FiltroSql nombre(Motor motor, const QString& columna, const QString& normalizado, bool enCualquierParte) {
    FiltroSql f;
    if (enCualquierParte)
        f.y(columna + QStringLiteral(" LIKE ? ESCAPE '\\'"),
            {QLatin1Char('%') + escaparLike(normalizado) + QLatin1Char('%')});
    else if (motor == Motor::SQLite)
        f.y(columna + QStringLiteral(" >= ? AND ") + columna + QStringLiteral(" < ?"),
            {normalizado, normalizado + QString::fromUcs4(U"\U0010FFFF")});
    else
        f.y(columna + QStringLiteral(" LIKE ? ESCAPE '\\'"), {escaparLike(normalizado) + QLatin1Char('%')});
    return f;
}

const QString kSelect = QStringLiteral(
    "SELECT a.IdAlbaran, a.Serie, a.NumAlbaran, a.Fecha, a.Hora, a.IdCliente, c.Nombre, m.Nombre, "
    "a.Total, a.Pendiente, a.SerieFactura, a.NumFactura FROM Albaranes a "
    "LEFT JOIN Clientes c ON c.IdCliente = a.IdCliente "
    "LEFT JOIN Mascotas m ON m.IdMascota = a.IdMascota");

// Newest first; a note without a time goes after the ones of its day that have one, on both
// engines (they sort NULL differently).
const QString kOrden = QStringLiteral(" ORDER BY a.Fecha DESC, CASE WHEN a.Hora IS NULL THEN 1 ELSE 0 END, "
                                      "a.Hora DESC, a.IdAlbaran DESC LIMIT ?");
} // namespace

QList<FilaAlbaranBusqueda> AlbaranBusquedaStore::buscar(const CriteriosBusquedaAlbaran& c, int limite) {
    const Motor motor = db_.motor();
    FiltroSql f;
    const QString serie = c.serie.trimmed();
    if (!serie.isEmpty()) f.y(QStringLiteral("a.Serie = ?"), {serie});
    if (c.numAlbaran) f.y(QStringLiteral("a.NumAlbaran = ?"), {*c.numAlbaran});
    if (c.idCliente) f.y(QStringLiteral("a.IdCliente = ?"), {*c.idCliente});
    const QString cliente = normalizarBusqueda(c.cliente);
    if (!cliente.isEmpty()) {
        const FiltroSql n =
            nombre(motor, QStringLiteral("NombreBusqueda"), cliente, c.clienteEnCualquierParte);
        f.y(QStringLiteral("a.IdCliente IN (SELECT IdCliente FROM Clientes") + n.sql() + QLatin1Char(')'),
            n.valores);
    }
    const QString mascota = normalizarBusqueda(c.mascota);
    if (!mascota.isEmpty()) {
        const FiltroSql n = nombre(motor, QStringLiteral("NombreBusqueda"), mascota, false);
        f.y(QStringLiteral("a.IdMascota IN (SELECT IdMascota FROM Mascotas") + n.sql() + QLatin1Char(')'),
            n.valores);
    }
    if (c.desde) f.y(QStringLiteral("a.Fecha >= ?"), {*c.desde});
    if (c.hasta) f.y(QStringLiteral("a.Fecha <= ?"), {*c.hasta});
    switch (c.estado) {
    case EstadoAlbaran::Todos:
        break;
    case EstadoAlbaran::PendientesFacturar:
        f.y(QStringLiteral("a.NumFactura IS NULL"));
        break;
    case EstadoAlbaran::Facturados:
        f.y(QStringLiteral("a.NumFactura IS NOT NULL"));
        break;
    case EstadoAlbaran::PendientesCobro:
        f.y(QStringLiteral("a.Pendiente > ?"), {0.0});
        break;
    case EstadoAlbaran::Cobrados:
        f.y(QStringLiteral("((a.Pendiente = ? AND a.Total <> ?) OR a.Cobrado = ?)"), {0.0, 0.0, true});
        break;
    }
    QVariantList valores = f.valores;
    valores << limite;
    QSqlQuery q = db_.ejecutar(kSelect + f.sql() + kOrden, valores);
    QList<FilaAlbaranBusqueda> filas;
    while (q.next()) {
        FilaAlbaranBusqueda r;
        r.IdAlbaran = q.value(0).toLongLong();
        r.Serie = q.value(1).toString();
        r.NumAlbaran = q.value(2).toLongLong();
        r.Fecha = valorDesdeBD(TipoColumna::Fecha, q.value(3)).toDate();
        r.Hora = valorDesdeBD(TipoColumna::Hora, q.value(4)).toTime();
        r.IdCliente = q.value(5).toLongLong();
        r.Cliente = q.value(6).toString();
        r.Mascota = q.value(7).toString();
        r.Total = q.value(8).toDouble();
        r.Pendiente = q.value(9).toDouble();
        r.SerieFactura = q.value(10).toString();
        if (!q.value(11).isNull()) r.NumFactura = q.value(11).toLongLong();
        filas << r;
    }
    return filas;
}

QList<SerieVenta> AlbaranBusquedaStore::seriesVenta() {
    QSqlQuery q =
        db_.ejecutar(QStringLiteral("SELECT Serie, Descripcion FROM Series WHERE Tipo = ? ORDER BY Serie"),
                     {QStringLiteral("V")});
    QList<SerieVenta> r;
    while (q.next()) {
        const QString serie = q.value(0).toString();
        const QString descripcion = q.value(1).toString().trimmed();
        r << SerieVenta{serie, descripcion.isEmpty() ? serie : serie + QStringLiteral(" - ") + descripcion};
    }
    return r;
}

std::optional<QString> AlbaranBusquedaStore::nombreCliente(qint64 idCliente) {
    const QVariant v =
        db_.valor(QStringLiteral("SELECT Nombre FROM Clientes WHERE IdCliente = ?"), {idCliente});
    if (!v.isValid()) return std::nullopt;
    return v.toString();
}
