#include "sales/presupuesto_store.h"

#include "data/contadores.h"
#include "data/esquema.h"
#include "data/registro.h"

namespace {
QVariant opt(const std::optional<qint64>& v) {
    return v ? QVariant(static_cast<qlonglong>(*v)) : QVariant(QMetaType(QMetaType::LongLong));
}
std::optional<qint64> optDe(const QVariant& v) {
    if (v.isNull()) return std::nullopt;
    return v.toLongLong();
}
QString estadoExterno(const QString& interno) {
    const DescriptorColumna* c = descriptorRequerido(QStringLiteral("Presupuestos")).columna(QStringLiteral("Estado"));
    return c ? c->valorExterno(interno) : interno;
}
} // namespace

std::optional<Presupuesto> PresupuestoStore::cargar(qint64 id) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT NumPresupuesto, Fecha, Hora, IdCliente, IdMascota, IdVendedor, IdVisita, Estado, "
                       "IdAlbaran, Retencion, Exento, VersionFila FROM Presupuestos WHERE IdPresupuesto = ?"),
        {id});
    if (!q.next()) return std::nullopt;
    Presupuesto p;
    p.IdPresupuesto = id;
    p.numero = optDe(q.value(0));
    Albaran& a = p.documento;
    a.fecha = valorDesdeBD(TipoColumna::Fecha, q.value(1)).toDate();
    a.hora = valorDesdeBD(TipoColumna::Hora, q.value(2)).toTime();
    a.idCliente = optDe(q.value(3));
    a.idMascota = optDe(q.value(4));
    a.idVendedor = optDe(q.value(5));
    a.idVisita = optDe(q.value(6));
    p.estado = q.value(7).toString();
    p.idAlbaran = optDe(q.value(8));
    const double retencion = q.value(9).toDouble();
    const bool exento = valorDesdeBD(TipoColumna::Logico, q.value(10)).toBool();
    p.versionFila = q.value(11).toLongLong();
    const QList<LineaAlbaran> lineas =
        leerLineasVenta(db_, QStringLiteral("LineasPresupuesto"), QStringLiteral("IdPresupuesto"), id);
    a.ponerLineas(lineas);
    a.setRetencion(retencion);
    a.setExento(exento);
    return p;
}

ResultadoPresupuesto PresupuestoStore::motivo(qint64 id, qint64 versionLeida) {
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT Estado, VersionFila FROM Presupuestos WHERE IdPresupuesto = ?"),
                               {id});
    if (!q.next()) return ResultadoPresupuesto::NoExiste;
    if (q.value(0).toString() != kPresupuestoPendiente) return ResultadoPresupuesto::NoPendiente;
    return q.value(1).toLongLong() == versionLeida ? ResultadoPresupuesto::NoPendiente
                                                   : ResultadoPresupuesto::CambiadoEnOtroPuesto;
}

ResultadoPresupuesto PresupuestoStore::guardar(Presupuesto& p) {
    Transaction tr = db_.transaccion();
    const Albaran& a = p.documento;
    const TotalesDocumento& t = a.totales();
    const QVariantList comunes = {a.fecha,      a.hora.isValid() ? QVariant(a.hora) : QVariant(QMetaType(QMetaType::QTime)),
                                  opt(a.idCliente), opt(a.idMascota), opt(a.idVendedor), opt(a.idVisita),
                                  a.retencion(), a.exento(), t.bruto(), t.baseImponible(), t.iva(),
                                  t.retencion(), t.total()};
    if (p.esNuevo()) {
        const qint64 mayor = db_.valor(QStringLiteral("SELECT MAX(NumPresupuesto) FROM Presupuestos")).toLongLong();
        const qint64 n = ContadorStore(db_).tomarSiguienteTras(claveContador(QStringLiteral("Presupuestos"), QString()),
                                                               mayor, kEsperaPorIntento);
        QVariantList v = comunes;
        v.prepend(n);
        v << kPresupuestoPendiente;
        QSqlQuery q = db_.ejecutar(
            QStringLiteral("INSERT INTO Presupuestos (NumPresupuesto, Fecha, Hora, IdCliente, IdMascota, IdVendedor, "
                           "IdVisita, Retencion, Exento, TotalBruto, TotalBI, TotalIVA, TotalRetencion, Total, "
                           "Estado) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING IdPresupuesto"),
            v);
        if (!q.next()) throw ErrorBD(QStringLiteral("No se ha podido crear el Presupuesto."));
        p.IdPresupuesto = q.value(0).toLongLong();
        p.numero = n;
        p.versionFila = 0;
    } else {
        QVariantList v = comunes;
        v << static_cast<qlonglong>(*p.IdPresupuesto) << p.versionFila << kPresupuestoPendiente;
        if (db_.ejecutarCambio(
                QStringLiteral("UPDATE Presupuestos SET Fecha = ?, Hora = ?, IdCliente = ?, IdMascota = ?, "
                               "IdVendedor = ?, IdVisita = ?, Retencion = ?, Exento = ?, TotalBruto = ?, TotalBI = ?, "
                               "TotalIVA = ?, TotalRetencion = ?, Total = ?, VersionFila = VersionFila + 1 "
                               "WHERE IdPresupuesto = ? AND VersionFila = ? AND Estado = ?"),
                v) != 1)
            return motivo(*p.IdPresupuesto, p.versionFila);
        ++p.versionFila;
        db_.ejecutarCambio(QStringLiteral("DELETE FROM LineasPresupuesto WHERE IdPresupuesto = ?"),
                           {*p.IdPresupuesto});
    }
    escribirLineasVenta(db_, QStringLiteral("LineasPresupuesto"), QStringLiteral("IdPresupuesto"), *p.IdPresupuesto, a);
    if (a.idVisita)
        db_.ejecutarCambio(QStringLiteral("UPDATE Visitas SET Presupuesto = ? WHERE IdVisita = ?"),
                           {true, opt(a.idVisita)});
    tr.commit();
    return ResultadoPresupuesto::Hecho;
}

ResultadoPresupuesto PresupuestoStore::convertir(Presupuesto& p, const QString& serieVenta, const QDate& fecha,
                                                 const QTime& hora) {
    if (!p.IdPresupuesto) return ResultadoPresupuesto::NoExiste;
    Transaction tr = db_.transaccion();
    if (db_.ejecutarCambio(QStringLiteral("UPDATE Presupuestos SET Estado = ?, VersionFila = VersionFila + 1 WHERE "
                                          "IdPresupuesto = ? AND VersionFila = ? AND Estado = ?"),
                           {kPresupuestoAceptado, static_cast<qlonglong>(*p.IdPresupuesto), p.versionFila,
                            kPresupuestoPendiente}) != 1)
        return motivo(*p.IdPresupuesto, p.versionFila);
    const Albaran& a = p.documento;
    Albaran nota;
    nota.serie = serieVenta;
    nota.fecha = fecha;
    nota.hora = hora;
    nota.idCliente = a.idCliente;
    nota.idMascota = a.idMascota;
    nota.idVendedor = a.idVendedor;
    nota.idVisita = a.idVisita;
    nota.ponerLineas(a.lineas());
    nota.setRetencion(a.retencion());
    nota.setExento(a.exento());
    if (!AlbaranStore(db_).guardar(nota)) throw ErrorBD(QStringLiteral("No se ha podido crear el Albarán."));
    db_.ejecutarCambio(QStringLiteral("UPDATE Presupuestos SET IdAlbaran = ? WHERE IdPresupuesto = ?"),
                       {static_cast<qlonglong>(*nota.IdAlbaran), static_cast<qlonglong>(*p.IdPresupuesto)});
    tr.commit();
    p.estado = kPresupuestoAceptado;
    p.idAlbaran = nota.IdAlbaran;
    ++p.versionFila;
    return ResultadoPresupuesto::Hecho;
}

ResultadoPresupuesto PresupuestoStore::rechazar(Presupuesto& p) {
    if (!p.IdPresupuesto) return ResultadoPresupuesto::NoExiste;
    Transaction tr = db_.transaccion();
    if (db_.ejecutarCambio(QStringLiteral("UPDATE Presupuestos SET Estado = ?, VersionFila = VersionFila + 1 WHERE "
                                          "IdPresupuesto = ? AND VersionFila = ? AND Estado = ?"),
                           {kPresupuestoRechazado, static_cast<qlonglong>(*p.IdPresupuesto), p.versionFila,
                            kPresupuestoPendiente}) != 1)
        return motivo(*p.IdPresupuesto, p.versionFila);
    tr.commit();
    p.estado = kPresupuestoRechazado;
    ++p.versionFila;
    return ResultadoPresupuesto::Hecho;
}

QList<FilaPresupuesto> PresupuestoStore::deCliente(qint64 idCliente) {
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT IdPresupuesto, NumPresupuesto, Fecha, Estado, Total FROM "
                                              "Presupuestos WHERE IdCliente = ? ORDER BY Fecha DESC, "
                                              "NumPresupuesto DESC"),
                               {idCliente});
    QList<FilaPresupuesto> l;
    while (q.next())
        l << FilaPresupuesto{q.value(0).toLongLong(), q.value(1).toLongLong(),
                             valorDesdeBD(TipoColumna::Fecha, q.value(2)).toDate(), estadoExterno(q.value(3).toString()),
                             q.value(4).toDouble()};
    return l;
}
