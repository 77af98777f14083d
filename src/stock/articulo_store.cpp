#include "stock/articulo_store.h"

#include "core/errores.h"
#include "data/esquema.h"
#include "stock/series_articulo.h"

#include <QSqlQuery>

const DescriptorTabla& tablaArticulos() {
    const DescriptorTabla* t = descriptorTabla(QStringLiteral("Articulos"));
    if (!t) throw ErrorPrograma(QStringLiteral("La tabla de Artículos no está definida en el catálogo."));
    return *t;
}

std::optional<Registro> ArticuloStore::cargar(qint64 codigo) {
    return RegistroStore(db_).cargar(tablaArticulos(), codigo);
}

void ArticuloStore::crear(Registro& r) {
    RegistroStore(db_).crear(r);
}

void ArticuloStore::actualizar(Registro& r) {
    RegistroStore(db_).actualizar(r);
}

int ArticuloStore::actualizarConSerie(Registro& r, const QString& serie) {
    Transaction tx = db_.transaccion();
    const int lineas = SeriesArticuloStore(db_).reescribirLineasPendientes(r.clave().toLongLong(), serie);
    RegistroStore(db_).actualizar(r);
    tx.commit();
    return lineas;
}

ArticuloStore::Baja ArticuloStore::eliminar(const Registro& r) {
    try {
        return RegistroStore(db_).eliminar(r) ? Baja::Eliminado : Baja::NoExiste;
    } catch (const ErrorBD& e) {
        if (!esErrorDeReferencia(e)) throw;
        return Baja::Referido;
    }
}

bool ArticuloStore::existeProveedor(qint64 codigo) {
    const DescriptorTabla* t = descriptorTabla(QStringLiteral("Proveedores"));
    return t && RegistroStore(db_).contar(*t, {QStringLiteral("IdProveedor = ?"), {codigo}}) > 0;
}

namespace {
// The column that holds the parent of a classification level.
QString columnaPadre(const QString& tabla) {
    if (tabla.compare(QStringLiteral("Familias"), Qt::CaseInsensitive) == 0)
        return QStringLiteral("IdSeccion");
    if (tabla.compare(QStringLiteral("Subfamilias"), Qt::CaseInsensitive) == 0)
        return QStringLiteral("IdFamilia");
    return {};
}
} // namespace

QList<OpcionArticulo> ArticuloStore::opciones(const QString& tabla, std::optional<qint64> padre) {
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t || t->clave.isEmpty()) return {};
    const QString clave = t->clave.first();
    const QString texto = t->columnaTexto.isEmpty() ? clave : t->columnaTexto;
    Condicion cond;
    const QString columna = columnaPadre(tabla);
    if (padre && !columna.isEmpty()) cond = {columna + QStringLiteral(" = ?"), {*padre}};
    QList<OpcionArticulo> l;
    for (const Registro& r : RegistroStore(db_).buscar(*t, cond, {texto, clave}))
        l << OpcionArticulo{r.texto(clave), r.texto(texto)};
    return l;
}

std::optional<qint64> ArticuloStore::padre(const QString& tabla, qint64 clave) {
    const DescriptorTabla* t = descriptorTabla(tabla);
    const QString columna = columnaPadre(tabla);
    if (!t || columna.isEmpty()) return std::nullopt;
    const auto r = RegistroStore(db_).cargar(*t, clave);
    if (!r || r->valor(columna).isNull()) return std::nullopt;
    return r->valor(columna).toLongLong();
}

QList<FilaArticulo> ArticuloStore::buscar(const FiltroArticulos& f, int limite) {
    QStringList partes;
    QVariantList valores;
    auto igual = [&](const QString& columna, const std::optional<qint64>& v) {
        if (!v) return;
        partes << QStringLiteral("a.") + columna + QStringLiteral(" = ?");
        valores << *v;
    };
    igual(QStringLiteral("ArtCodArticulo"), f.codigo);
    igual(QStringLiteral("Seccion"), f.seccion);
    igual(QStringLiteral("Familia"), f.familia);
    igual(QStringLiteral("SubFamilia"), f.subfamilia);
    igual(QStringLiteral("ArtLaboratorio"), f.laboratorio);
    const QString desc = f.descripcion.trimmed();
    if (!desc.isEmpty()) {
        QString patron = desc.toLower();
        patron.replace(QLatin1Char('!'), QStringLiteral("!!"))
            .replace(QLatin1Char('%'), QStringLiteral("!%"))
            .replace(QLatin1Char('_'), QStringLiteral("!_"));
        partes << QStringLiteral("LOWER(a.Articulo) LIKE ? ESCAPE '!'");
        valores << (f.descripcionEnCualquierParte ? QStringLiteral("%") : QString()) + patron +
                       QLatin1Char('%');
    }
    if (!f.codBarras.trimmed().isEmpty()) {
        partes << QStringLiteral("a.ArtCodBarras = ?");
        valores << f.codBarras.trimmed();
    }
    if (!f.incluirBajas) partes << QStringLiteral("a.ArtFechaBaja IS NULL");
    QString sql = QStringLiteral("SELECT a.ArtCodArticulo, a.Articulo, a.PVP1, a.PVP2, a.PVP3, i.Porcentaje, "
                                 "a.ArtDias, a.ArtFechaBaja FROM Articulos a LEFT JOIN TiposIVA i ON "
                                 "i.IdTipoIVA = a.ArtIVA");
    if (!partes.isEmpty()) sql += QStringLiteral(" WHERE ") + partes.join(QStringLiteral(" AND "));
    sql += QStringLiteral(" ORDER BY a.Articulo, a.ArtCodArticulo LIMIT ?");
    valores << (limite > 0 ? limite : 500);
    QSqlQuery q = db_.ejecutar(sql, valores);
    QList<FilaArticulo> filas;
    while (q.next()) {
        FilaArticulo fila;
        fila.codigo = q.value(0).toLongLong();
        fila.descripcion = q.value(1).toString();
        fila.pvp1 = q.value(2).toDouble();
        fila.pvp2 = q.value(3).toDouble();
        fila.pvp3 = q.value(4).toDouble();
        if (!q.value(5).isNull()) fila.porcentajeIVA = q.value(5).toDouble();
        if (!q.value(6).isNull()) fila.dias = q.value(6).toLongLong();
        fila.baja = !q.value(7).isNull() && !q.value(7).toString().isEmpty();
        filas << fila;
    }
    return filas;
}
