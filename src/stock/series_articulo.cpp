#include "stock/series_articulo.h"

#include "core/errores.h"
#include "data/registro.h"

#include <QSqlQuery>

QString serieAplicable(const SeriesClasificacion& s) {
    for (const QString& serie : {s.propia, s.subfamilia, s.familia, s.seccion})
        if (!serie.trimmed().isEmpty()) return serie.trimmed();
    return {};
}

QString preguntaCambioSerieArticulo(const QString& clasificacion, const QString& serie) {
    QString texto = QStringLiteral("Al cambiar la ") + clasificacion;
    if (serie.isEmpty())
        texto += QStringLiteral(
            ", a este artículo NO le corresponde ahora ninguna serie de facturación específica.");
    else
        texto += QStringLiteral(", a este artículo le corresponde ahora la serie de facturación: ") + serie +
                 QLatin1Char('.');
    return texto + QLatin1Char('\n') +
           QStringLiteral("Se va a proceder a realizar este cambio en todos los Albaranes sin facturar donde "
                          "aparezca este Artículo. ") +
           QStringLiteral(
               "Este proceso llevará tiempo y mientras tanto ningún otro puesto podrá trabajar con "
               "Pramelvix.") +
           QStringLiteral("¿Está seguro de continuar?");
}

QString preguntaCambioSerieSubfamilia(const QString& descripcion) {
    return QStringLiteral(" Ha cambiado la Serie de la ") + descripcion +
           QStringLiteral(" y será necesario modificarla en ") + QLatin1Char('\n') +
           QStringLiteral(
               "todos los Albaranes sin facturar donde aparezcan los Artículos contenidos en ella. "
               "Esto ") +
           QStringLiteral("llevará tiempo y mientras tanto ningún otro puesto podrá trabajar ") +
           QStringLiteral("con Pramelvix.") + QLatin1Char('\n') +
           QStringLiteral(" ¿Está seguro de continuar?");
}

QString SeriesArticuloStore::serieDe(const QString& tabla, const QString& clave, std::optional<qint64> id) {
    if (!id) return {};
    return db_
        .valor(QStringLiteral("SELECT Serie FROM ") + tabla + QStringLiteral(" WHERE ") + clave +
                   QStringLiteral(" = ?"),
               {*id})
        .toString()
        .trimmed();
}

SeriesClasificacion SeriesArticuloStore::series(const QString& propia, std::optional<qint64> seccion,
                                                std::optional<qint64> familia,
                                                std::optional<qint64> subfamilia) {
    SeriesClasificacion s;
    s.propia = propia.trimmed();
    s.seccion = serieDe(QStringLiteral("Secciones"), QStringLiteral("IdSeccion"), seccion);
    s.familia = serieDe(QStringLiteral("Familias"), QStringLiteral("IdFamilia"), familia);
    s.subfamilia = serieDe(QStringLiteral("Subfamilias"), QStringLiteral("IdSubfamilia"), subfamilia);
    return s;
}

namespace {
std::optional<qint64> entero(const QVariant& v) {
    if (v.isNull() || !v.isValid()) return std::nullopt;
    return v.toLongLong();
}
} // namespace

std::optional<QString> SeriesArticuloStore::serieDeArticulo(qint64 articulo) {
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT ArtSerie, Seccion, Familia, SubFamilia FROM Articulos "
                                              "WHERE ArtCodArticulo = ?"),
                               {articulo});
    if (!q.next()) return std::nullopt;
    const QString propia = q.value(0).toString();
    const auto seccion = entero(q.value(1));
    const auto familia = entero(q.value(2));
    const auto subfamilia = entero(q.value(3));
    q.finish();
    return serieAplicable(series(propia, seccion, familia, subfamilia));
}

int SeriesArticuloStore::reescribirLineasPendientes(qint64 articulo, const QString& serie) {
    const QVariant valor = serie.isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(serie);
    return db_.ejecutarCambio(
        QStringLiteral("UPDATE LineasAlbaran SET Serie = ? WHERE IdArticulo = ? AND IdAlbaran IN "
                       "(SELECT IdAlbaran FROM Albaranes WHERE NumFactura IS NULL)"),
        {valor, articulo});
}

int SeriesArticuloStore::cambiarSerieSubfamilia(qint64 subfamilia, const QString& serie) {
    Transaction tx = db_.transaccion();
    const QString nueva = serie.trimmed();
    int lineas = 0;
    QSqlQuery q =
        db_.ejecutar(QStringLiteral("SELECT ArtCodArticulo, ArtSerie, Seccion, Familia FROM Articulos "
                                    "WHERE SubFamilia = ? ORDER BY ArtCodArticulo"),
                     {subfamilia});
    struct Fila {
        qint64 codigo;
        QString propia;
        std::optional<qint64> seccion, familia;
    };
    // Every row is read before the next statement runs (PostgreSQL drops the results of a
    // query when another one runs on the connection).
    QList<Fila> filas;
    while (q.next())
        filas << Fila{q.value(0).toLongLong(), q.value(1).toString(), entero(q.value(2)), entero(q.value(3))};
    q.finish();
    for (const Fila& f : filas) {
        SeriesClasificacion s = series(f.propia, f.seccion, f.familia, std::nullopt);
        s.subfamilia = nueva;
        lineas += reescribirLineasPendientes(f.codigo, serieAplicable(s));
    }
    const int n = db_.ejecutarCambio(
        QStringLiteral("UPDATE Subfamilias SET Serie = ? WHERE IdSubfamilia = ?"),
        {nueva.isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(nueva), subfamilia});
    if (n == 0) throw ErrorBD(QStringLiteral("la Subfamilia nº %1 ya no existe").arg(subfamilia));
    tx.commit();
    return lineas;
}
