#pragma once
// Rows the article tests share: a classification with series at each level, a VAT type, an
// article, and delivery notes (pending and invoiced) holding it.
#include "data/esquema.h"
#include "data/registro.h"

#include <QDate>
#include <QVariantMap>

class DatosArticulos {
public:
    explicit DatosArticulos(Database& db) : db_(db) {}

    QVariant crear(const QString& tabla, const QVariantMap& valores) {
        const DescriptorTabla* t = descriptorTabla(tabla);
        Q_ASSERT(t);
        Registro r(*t);
        for (auto it = valores.cbegin(); it != valores.cend(); ++it)
            r.setValor(it.key(), it.value());
        return RegistroStore(db_).crear(r);
    }
    qint64 seccion(const QString& desc, const QString& serie = {}) {
        return crear(QStringLiteral("Secciones"),
                     {{QStringLiteral("Descripcion"), desc}, {QStringLiteral("Serie"), nulo(serie)}})
            .toLongLong();
    }
    qint64 familia(qint64 seccion, const QString& desc, const QString& serie = {}) {
        return crear(QStringLiteral("Familias"), {{QStringLiteral("IdSeccion"), seccion},
                                                  {QStringLiteral("Descripcion"), desc},
                                                  {QStringLiteral("Serie"), nulo(serie)}})
            .toLongLong();
    }
    qint64 subfamilia(qint64 familia, const QString& desc, const QString& serie = {}) {
        return crear(QStringLiteral("Subfamilias"), {{QStringLiteral("IdFamilia"), familia},
                                                     {QStringLiteral("Descripcion"), desc},
                                                     {QStringLiteral("Serie"), nulo(serie)}})
            .toLongLong();
    }
    qint64 iva(const QString& desc, double porcentaje) {
        return crear(QStringLiteral("TiposIVA"), {{QStringLiteral("Descripcion"), desc},
                                                  {QStringLiteral("Porcentaje"), porcentaje},
                                                  {QStringLiteral("Activo"), QStringLiteral("S")}})
            .toLongLong();
    }
    qint64 articulo(const QString& desc, qint64 seccion, qint64 familia, qint64 subfamilia, qint64 iva,
                    const QVariantMap& mas = {}) {
        QVariantMap v = {{QStringLiteral("Articulo"), desc},
                         {QStringLiteral("ArtTipoArticulo"), QStringLiteral("PRODUCTO")},
                         {QStringLiteral("Seccion"), seccion},
                         {QStringLiteral("Familia"), familia},
                         {QStringLiteral("SubFamilia"), subfamilia},
                         {QStringLiteral("ArtIVA"), iva},
                         {QStringLiteral("ArtFactorConversion"), 1.0}};
        for (auto it = mas.cbegin(); it != mas.cend(); ++it)
            v.insert(it.key(), it.value());
        return crear(QStringLiteral("Articulos"), v).toLongLong();
    }
    // A delivery note; invoiced when factura is given.
    qint64 albaran(qint64 numero, std::optional<qint64> factura = std::nullopt) {
        QVariantMap v = {{QStringLiteral("Serie"), QStringLiteral("A")},
                         {QStringLiteral("NumAlbaran"), numero},
                         {QStringLiteral("Fecha"), QDate(2026, 3, 2)},
                         {QStringLiteral("IdCliente"), 1}};
        if (factura) {
            v.insert(QStringLiteral("NumFactura"), *factura);
            v.insert(QStringLiteral("SerieFactura"), QStringLiteral("A"));
        }
        return crear(QStringLiteral("Albaranes"), v).toLongLong();
    }
    qint64 linea(qint64 albaran, qint64 articulo, const QString& serie) {
        return crear(QStringLiteral("LineasAlbaran"),
                     {{QStringLiteral("IdAlbaran"), albaran},
                      {QStringLiteral("IdArticulo"), articulo},
                      {QStringLiteral("Descripcion"), QStringLiteral("línea")},
                      {QStringLiteral("Cantidad"), 1.0},
                      {QStringLiteral("Serie"), nulo(serie)}})
            .toLongLong();
    }
    QString serieLinea(qint64 linea) {
        return db_.valor(QStringLiteral("SELECT Serie FROM LineasAlbaran WHERE IdLinea = ?"), {linea})
            .toString();
    }

private:
    static QVariant nulo(const QString& s) { return s.isEmpty() ? QVariant() : QVariant(s); }
    Database& db_;
};
