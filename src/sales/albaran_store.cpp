#include "sales/albaran_store.h"

#include "core/dinero.h"
#include "data/contadores.h"
#include "data/registro.h"
#include "stock/series_articulo.h"

#include <cmath>

namespace {
QVariant opt(const std::optional<qint64>& v) {
    return v ? QVariant(static_cast<qlonglong>(*v)) : QVariant();
}
std::optional<qint64> optDe(const QVariant& v) {
    if (v.isNull() || !v.isValid()) return std::nullopt;
    return v.toLongLong();
}
bool logico(const QVariant& v) {
    return valorDesdeBD(TipoColumna::Logico, v).toBool();
}
// The note can still change: no invoice, not marked collected, nothing of its total collected
// (the stored amounts are rounded to cents, so equal amounts are equal doubles).
const QString kSinFacturarNiCobrar = QStringLiteral(" AND NumFactura IS NULL AND (Cobrado IS NULL OR Cobrado "
                                                    "= ?) AND COALESCE(Pendiente, 0) = COALESCE(Total, 0)");
const QString kSelectCabecera = QStringLiteral(
    "SELECT IdAlbaran, Serie, NumAlbaran, Fecha, Hora, IdCliente, IdMascota, IdVendedor, IdVisita, "
    "Retencion, Exento, NumFactura, SerieFactura, Cobrado, Pendiente, Total, VersionFila FROM Albaranes "
    "WHERE IdAlbaran = "
    "?");
} // namespace

bool SituacionAlbaran::facturadoOCobrado() const {
    return numFactura.has_value() || cobrado || !mismoImporte(pendiente, total);
}

ContextoPrecios contextoVenta(const std::optional<ClienteVenta>& cliente, const QList<CondicionEspecial>& condicionesCliente,
                              const std::optional<MascotaVenta>& mascota, const QList<CondicionEspecial>& condicionesPlan,
                              const QDate& fecha) {
    ContextoPrecios c;
    if (cliente) {
        c.tarifa = cliente->tarifa;
        c.dtoGeneral = cliente->dtoGeneral;
        c.idTipoIVACliente = cliente->idTipoIVA;
        c.porcentajeIVACliente = cliente->porcentajeIVA;
    }
    c.condicionesCliente = condicionesCliente;
    if (mascota && mascota->planEnVigor(fecha)) c.condicionesPlan = condicionesPlan;
    return c;
}

std::optional<Albaran> AlbaranStore::cargar(qint64 idAlbaran) {
    QSqlQuery q = db_.ejecutar(kSelectCabecera, {idAlbaran});
    if (!q.next()) return std::nullopt;
    Albaran a;
    a.IdAlbaran = q.value(0).toLongLong();
    a.serie = q.value(1).toString();
    a.numAlbaran = optDe(q.value(2));
    a.fecha = valorDesdeBD(TipoColumna::Fecha, q.value(3)).toDate();
    a.hora = valorDesdeBD(TipoColumna::Hora, q.value(4)).toTime();
    a.idCliente = optDe(q.value(5));
    a.idMascota = optDe(q.value(6));
    a.idVendedor = optDe(q.value(7));
    a.idVisita = optDe(q.value(8));
    const double retencion = q.value(9).toDouble();
    const bool exento = logico(q.value(10));
    a.numFactura = optDe(q.value(11));
    a.serieFactura = q.value(12).toString();
    a.cobrado = logico(q.value(13));
    a.pendiente = q.value(14).toDouble();

    const QList<LineaAlbaran> lineas =
        leerLineasVenta(db_, QStringLiteral("LineasAlbaran"), QStringLiteral("IdAlbaran"), idAlbaran);
    a.ponerLineas(lineas);
    // setRetencion/setExento recompute: set them once the lines are in.
    a.setRetencion(retencion);
    a.setExento(exento);
    a.totalGuardado = q.value(15).toDouble();
    a.versionFila = q.value(16).toLongLong();
    return a;
}

std::optional<qint64> AlbaranStore::buscarPorNumero(const QString& serie, qint64 numAlbaran) {
    return optDe(
        db_.valor(QStringLiteral("SELECT IdAlbaran FROM Albaranes WHERE Serie = ? AND NumAlbaran = ?"),
                  {serie, numAlbaran}));
}

std::optional<SituacionAlbaran> AlbaranStore::estado(qint64 idAlbaran) {
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT NumFactura, SerieFactura, Cobrado, Total, Pendiente, "
                                              "VersionFila FROM Albaranes WHERE IdAlbaran = ?"),
                               {idAlbaran});
    if (!q.next()) return std::nullopt;
    SituacionAlbaran e;
    e.numFactura = optDe(q.value(0));
    e.serieFactura = q.value(1).toString();
    e.cobrado = logico(q.value(2));
    e.total = q.value(3).toDouble();
    e.pendiente = q.value(4).toDouble();
    e.versionFila = q.value(5).toLongLong();
    return e;
}

ResultadoAlbaran AlbaranStore::sinCambiar(qint64 idAlbaran, qint64 versionLeida) {
    const auto e = estado(idAlbaran);
    if (!e) return ResultadoAlbaran::NoExiste;
    if (e->facturadoOCobrado() || e->versionFila == versionLeida) return ResultadoAlbaran::FacturadoOCobrado;
    return ResultadoAlbaran::CambiadoEnOtroPuesto;
}

GuardadoAlbaran AlbaranStore::guardar(Albaran& a) {
    Transaction tr = db_.transaccion();
    const TotalesDocumento& t = a.totales();
    const QVariantList comunes = {a.serie, a.fecha, a.hora.isValid() ? QVariant(a.hora) : QVariant(),
                                  opt(a.idCliente), opt(a.idMascota), opt(a.idVendedor), opt(a.idVisita),
                                  a.retencion(), a.exento(), t.bruto(), t.baseImponible(), t.iva(),
                                  t.retencion(), t.total(),
                                  // Nothing of a note that can still be changed has been collected.
                                  t.total()};
    if (a.esNuevo()) {
        // The next free number: a series whose counter fell behind its notes goes on after them.
        const qint64 mayor =
            db_.valor(QStringLiteral("SELECT MAX(NumAlbaran) FROM Albaranes WHERE Serie = ?"), {a.serie})
                .toLongLong();
        const qint64 n = ContadorStore(db_).tomarSiguienteTras(claveContador(QStringLiteral("Albaranes"), a.serie),
                                                               mayor, kEsperaPorIntento);
        QVariantList v = comunes;
        v.prepend(n);
        QSqlQuery q = db_.ejecutar(
            QStringLiteral(
                "INSERT INTO Albaranes (NumAlbaran, Serie, Fecha, Hora, IdCliente, IdMascota, IdVendedor, "
                "IdVisita, Retencion, Exento, TotalBruto, TotalBI, TotalIVA, TotalRetencion, Total, "
                "Pendiente, Cobrado) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
                "RETURNING IdAlbaran"),
            v << false);
        if (!q.next()) throw ErrorBD(QStringLiteral("No se ha podido crear el Albarán."));
        a.IdAlbaran = q.value(0).toLongLong();
        a.numAlbaran = n;
        a.versionFila = 0;
    } else {
        QVariantList v = comunes;
        v << static_cast<qlonglong>(*a.IdAlbaran) << a.versionFila << false;
        if (db_.ejecutarCambio(
                QStringLiteral("UPDATE Albaranes SET Serie = ?, Fecha = ?, Hora = ?, IdCliente = ?, "
                               "IdMascota = ?, IdVendedor = ?, IdVisita = ?, Retencion = ?, Exento = ?, "
                               "TotalBruto = ?, TotalBI = ?, TotalIVA = ?, TotalRetencion = ?, "
                               "Total = ?, Pendiente = ?, VersionFila = VersionFila + 1 WHERE IdAlbaran = ? "
                               "AND VersionFila = ?") +
                    kSinFacturarNiCobrar,
                v) != 1)
            return {sinCambiar(*a.IdAlbaran, a.versionFila)};
        ++a.versionFila;
        db_.ejecutarCambio(QStringLiteral("DELETE FROM LineasAlbaran WHERE IdAlbaran = ?"), {*a.IdAlbaran});
    }
    escribirLineasVenta(db_, QStringLiteral("LineasAlbaran"), QStringLiteral("IdAlbaran"), *a.IdAlbaran, a);
    tr.commit();
    a.pendiente = t.total();
    a.totalGuardado = t.total();
    return {ResultadoAlbaran::Hecho};
}

QList<LineaAlbaran> leerLineasVenta(Database& db, const QString& tabla, const QString& clave, qint64 id) {
    QList<LineaAlbaran> lineas;
    QSqlQuery l = db.ejecutar(QStringLiteral("SELECT IdArticulo, Descripcion, Serie, Cantidad, Precio, Descuento, "
                                             "IdTipoIVA, PorcentajeIVA FROM ") +
                                  tabla + QStringLiteral(" WHERE ") + clave + QStringLiteral(" = ? ORDER BY Orden, IdLinea"),
                              {id});
    while (l.next()) {
        LineaAlbaran x;
        x.idArticulo = optDe(l.value(0));
        x.concepto = l.value(1).toString();
        x.serie = l.value(2).toString();
        x.cantidad = l.value(3).toDouble();
        x.pvp = l.value(4).toDouble();
        x.descuento = l.value(5).toDouble();
        x.idTipoIVA = optDe(l.value(6));
        x.iva = l.value(7).toDouble();
        lineas << x;
    }
    return lineas;
}

void escribirLineasVenta(Database& db, const QString& tabla, const QString& clave, qint64 id, const Albaran& a) {
    int orden = 0;
    for (const LineaAlbaran& l : a.lineas()) {
        const ImportesLinea& i = l.importes;
        db.ejecutarCambio(
            QStringLiteral("INSERT INTO ") + tabla + QStringLiteral(" (") + clave +
                QStringLiteral(", Orden, IdArticulo, Descripcion, Cantidad, Precio, Descuento, IdTipoIVA, PorcentajeIVA, "
                               "Importe, Serie, PrecioSinIVA, BrutoSinIVA, BrutoConIVA, ImporteDto, TotalConIVA, "
                               "BaseImponible, CuotaIVA, ImporteRetencion) "
                               "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
            {id, ++orden, opt(l.idArticulo), l.concepto, l.cantidad, l.pvp, l.descuento, opt(l.idTipoIVA), l.iva,
             i.total, l.serie.isEmpty() ? QVariant() : QVariant(l.serie), i.precio, i.brutoSinIVA, i.brutoConIVA,
             i.importeDto, i.totalConIVA, i.base, i.cuotaIVA, i.retencion});
    }
}

ResultadoAlbaran AlbaranStore::eliminar(qint64 idAlbaran, qint64 versionLeida) {
    Transaction tr = db_.transaccion();
    // The header first: its condition decides whether the lines go too.
    if (db_.ejecutarCambio(QStringLiteral("DELETE FROM Albaranes WHERE IdAlbaran = ? AND VersionFila = ?") +
                               kSinFacturarNiCobrar,
                           {idAlbaran, versionLeida, false}) != 1)
        return sinCambiar(idAlbaran, versionLeida);
    db_.ejecutarCambio(QStringLiteral("DELETE FROM LineasAlbaran WHERE IdAlbaran = ?"), {idAlbaran});
    // A quote made into this note is pending again: it can be made into another one.
    db_.ejecutarCambio(QStringLiteral("UPDATE Presupuestos SET Estado = ?, IdAlbaran = NULL, VersionFila = "
                                      "VersionFila + 1 WHERE IdAlbaran = ?"),
                       {QStringLiteral("P"), idAlbaran});
    tr.commit();
    return ResultadoAlbaran::Hecho;
}

std::optional<ClienteVenta> AlbaranStore::cliente(qint64 idCliente) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral(
            "SELECT c.Nombre, c.DNI, c.Direccion, c.Poblacion, c.CodigoPostal, c.Provincia, c.Tarifa, "
            "c.DtoGeneral, c.IdTipoIVA, t.Porcentaje, c.ExentoIVA, c.EmpresaExtranjero, c.LOPD "
            "FROM Clientes c LEFT JOIN TiposIVA t ON t.IdTipoIVA = c.IdTipoIVA WHERE c.IdCliente = ?"),
        {idCliente});
    if (!q.next()) return std::nullopt;
    ClienteVenta c;
    c.id = idCliente;
    c.nombre = q.value(0).toString();
    c.dni = q.value(1).toString();
    c.direccion = q.value(2).toString();
    c.poblacion = q.value(3).toString();
    c.codigoPostal = q.value(4).toString();
    c.provincia = q.value(5).toString();
    c.tarifa = q.value(6).toString();
    c.dtoGeneral = q.value(7).toDouble();
    c.idTipoIVA = optDe(q.value(8));
    if (!q.value(9).isNull()) c.porcentajeIVA = q.value(9).toDouble();
    c.exento = logico(q.value(10));
    c.empresaExtranjero = logico(q.value(11));
    c.lopd = q.value(12).isNull() ? QStringLiteral("0") : q.value(12).toString();
    // A non-resident company is sold to at the 0 % VAT type, whatever else is recorded.
    if (c.empresaExtranjero) {
        if (const auto cero = tipoIVACero()) {
            c.idTipoIVA = cero;
            c.porcentajeIVA = 0;
        }
    }
    return c;
}

std::optional<MascotaVenta> AlbaranStore::mascota(qint64 idMascota) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT m.Nombre, m.IdCliente, m.IdPlanSalud, p.Nombre, m.CaducidadPlan, p.FechaAlta, "
                       "p.FechaBaja "
                       "FROM Mascotas m LEFT JOIN PlanesSalud p ON p.IdPlanSalud = m.IdPlanSalud "
                       "WHERE m.IdMascota = ?"),
        {idMascota});
    if (!q.next()) return std::nullopt;
    MascotaVenta m;
    m.id = idMascota;
    m.nombre = q.value(0).toString();
    m.idCliente = q.value(1).toLongLong();
    m.idPlanSalud = optDe(q.value(2));
    m.plan = q.value(3).toString();
    m.caducidadPlan = valorDesdeBD(TipoColumna::Fecha, q.value(4)).toDate();
    m.altaPlan = valorDesdeBD(TipoColumna::Fecha, q.value(5)).toDate();
    m.bajaPlan = valorDesdeBD(TipoColumna::Fecha, q.value(6)).toDate();
    return m;
}

QList<OpcionVenta> AlbaranStore::mascotasDe(qint64 idCliente) {
    QList<OpcionVenta> r;
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT IdMascota, Nombre FROM Mascotas WHERE IdCliente = ? "
                                              "ORDER BY Nombre, IdMascota"),
                               {idCliente});
    while (q.next())
        r << OpcionVenta{q.value(0).toLongLong(), q.value(1).toString()};
    return r;
}

std::optional<ArticuloVenta> AlbaranStore::articulo(qint64 codigo) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral(
            "SELECT a.Articulo, a.PVP1, a.PVP2, a.PVP3, a.ArtIVA, t.Porcentaje, a.Seccion, a.Familia, "
            "a.SubFamilia FROM Articulos a LEFT JOIN TiposIVA t ON t.IdTipoIVA = a.ArtIVA "
            "WHERE a.ArtCodArticulo = ?"),
        {codigo});
    if (!q.next()) return std::nullopt;
    ArticuloVenta a;
    a.codigo = codigo;
    a.descripcion = q.value(0).toString();
    a.pvp1 = q.value(1).toDouble();
    a.pvp2 = q.value(2).toDouble();
    a.pvp3 = q.value(3).toDouble();
    a.idTipoIVA = optDe(q.value(4));
    a.porcentajeIVA = q.value(5).toDouble();
    a.seccion = optDe(q.value(6));
    a.familia = optDe(q.value(7));
    a.subfamilia = optDe(q.value(8));
    a.serie = SeriesArticuloStore(db_).serieDeArticulo(codigo).value_or(QString());
    return a;
}

namespace {
QList<CondicionEspecial> leerCondiciones(Database& db, const QString& columna, qint64 dueno) {
    QList<CondicionEspecial> r;
    // columna is one of two fixed names, never user text.
    QSqlQuery q =
        db.ejecutar(QStringLiteral("SELECT IdArticulo, IdSeccion, IdFamilia, IdSubfamilia, Precio, Tarifa, "
                                   "Descuento FROM CondicionesEspeciales WHERE ") +
                        columna + QStringLiteral(" = ? ORDER BY IdCondicion"),
                    {dueno});
    while (q.next()) {
        CondicionEspecial c;
        c.IdArticulo = optDe(q.value(0));
        c.IdSeccion = optDe(q.value(1));
        c.IdFamilia = optDe(q.value(2));
        c.IdSubfamilia = optDe(q.value(3));
        if (!q.value(4).isNull()) c.Precio = q.value(4).toDouble();
        c.Tarifa = q.value(5).toString();
        if (!q.value(6).isNull()) c.Descuento = q.value(6).toDouble();
        r << c;
    }
    return r;
}
} // namespace

QList<CondicionEspecial> AlbaranStore::condicionesCliente(qint64 idCliente) {
    return leerCondiciones(db_, QStringLiteral("IdCliente"), idCliente);
}

QList<CondicionEspecial> AlbaranStore::condicionesPlan(qint64 idPlanSalud) {
    return leerCondiciones(db_, QStringLiteral("IdPlanSalud"), idPlanSalud);
}

std::optional<qint64> AlbaranStore::tipoIVACero() {
    return optDe(
        db_.valor(QStringLiteral("SELECT MIN(IdTipoIVA) FROM TiposIVA WHERE Porcentaje = ?"), {0.0}));
}

std::optional<qint64> AlbaranStore::tipoIVADePorcentaje(double porcentaje) {
    return optDe(
        db_.valor(QStringLiteral("SELECT MIN(IdTipoIVA) FROM TiposIVA WHERE Porcentaje = ?"), {porcentaje}));
}

std::optional<double> AlbaranStore::porcentajeIVA(qint64 idTipoIVA) {
    const QVariant v =
        db_.valor(QStringLiteral("SELECT Porcentaje FROM TiposIVA WHERE IdTipoIVA = ?"), {idTipoIVA});
    if (!v.isValid() || v.isNull()) return std::nullopt;
    return v.toDouble();
}

double AlbaranStore::deuda(qint64 idCliente) {
    return redondear2(
        db_.valor(QStringLiteral("SELECT SUM(Pendiente) FROM Albaranes WHERE IdCliente = ?"), {idCliente})
            .toDouble());
}

QStringList AlbaranStore::seriesPendientes(qint64 idCliente) {
    QStringList r;
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT DISTINCT Serie FROM Albaranes WHERE IdCliente = ? AND "
                                              "NumFactura IS NULL ORDER BY Serie"),
                               {idCliente});
    while (q.next())
        r << q.value(0).toString();
    return r;
}

QList<OpcionVenta> AlbaranStore::vendedores(std::optional<qint64> ademas) {
    QList<OpcionVenta> r;
    QSqlQuery q =
        db_.ejecutar(QStringLiteral("SELECT IdPersonal, Descripcion FROM Personal WHERE Activo = ? OR "
                                    "IdPersonal = ? ORDER BY Descripcion"),
                     {QStringLiteral("S"), opt(ademas)});
    while (q.next())
        r << OpcionVenta{q.value(0).toLongLong(), q.value(1).toString()};
    return r;
}

QList<OpcionVenta> AlbaranStore::tiposIVA(std::optional<qint64> ademas) {
    QList<OpcionVenta> r;
    QSqlQuery q =
        db_.ejecutar(QStringLiteral("SELECT IdTipoIVA, Porcentaje FROM TiposIVA WHERE Activo = ? OR "
                                    "IdTipoIVA = ? ORDER BY Porcentaje, IdTipoIVA"),
                     {QStringLiteral("S"), opt(ademas)});
    while (q.next())
        r << OpcionVenta{q.value(0).toLongLong(), q.value(1).toString()};
    return r;
}

QStringList AlbaranStore::seriesVenta() {
    QStringList r;
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT Serie FROM Series WHERE Tipo = ? ORDER BY Serie"),
                               {QStringLiteral("V")});
    while (q.next())
        r << q.value(0).toString();
    return r;
}

QString AlbaranStore::nombreVendedor(std::optional<qint64> id) {
    if (!id) return {};
    return db_.valor(QStringLiteral("SELECT Descripcion FROM Personal WHERE IdPersonal = ?"), {*id})
        .toString();
}
