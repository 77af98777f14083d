#include "sales/precios.h"

#include "core/formatos.h"

double pvpDeTarifa(const ArticuloVenta& a, const QString& tarifa) {
    const QString t = tarifa.trimmed().toUpper();
    if (t == kTarifa2) return a.pvp2;
    if (t == kTarifa3) return a.pvp3;
    return a.pvp1;
}

namespace {
// How closely a condition names the article: 4 the article, 3 its subfamily, 2 its family,
// 1 its section; 0 when it does not name it. A narrowing that does not match the article
// (a family of another section...) excludes the condition.
int especificidad(const CondicionEspecial& c, const ArticuloVenta& a) {
    if (c.IdArticulo) return *c.IdArticulo == a.codigo ? 4 : 0;
    if (!c.IdSeccion || c.IdSeccion != a.seccion) return 0;
    if (c.IdFamilia && c.IdFamilia != a.familia) return 0;
    if (c.IdSubfamilia && c.IdSubfamilia != a.subfamilia) return 0;
    if (c.IdSubfamilia) return 3;
    if (c.IdFamilia) return 2;
    return 1;
}

QString rechazoTarifaVacia(const ArticuloVenta& a, const QString& tarifa, OrigenPrecio origen) {
    return QStringLiteral("El artículo '") + a.descripcion + QStringLiteral("' no tiene precio en la ") +
           tarifa.trimmed().toUpper() + QStringLiteral(" que le asigna ") +
           (origen == OrigenPrecio::PlanSalud ? QStringLiteral("el Plan de Salud de la mascota")
                                              : QStringLiteral("la Ficha Comercial del cliente")) +
           QStringLiteral(". Asigne ese precio al artículo o corrija la condición antes de incluirlo.");
}

// The price a list gives the article, or nothing when no condition of the list names it.
std::optional<PrecioElegido> deLista(const QList<CondicionEspecial>& lista, const ArticuloVenta& a,
                                     const ContextoPrecios& ctx, OrigenPrecio origen) {
    const CondicionEspecial* c = condicionAplicable(lista, a);
    if (!c) return std::nullopt;
    PrecioElegido r;
    r.origen = origen;
    if (c->Precio) {
        r.pvp = *c->Precio;
        r.descuento = c->Descuento.value_or(0);
        return r;
    }
    r.pvp = pvpDeTarifa(a, c->Tarifa);
    if (r.pvp == 0) r.rechazo = rechazoTarifaVacia(a, c->Tarifa.isEmpty() ? kTarifa1 : c->Tarifa, origen);
    // The plan's own discount; the commercial file's, or else the client's general one.
    r.descuento = c->Descuento.value_or(origen == OrigenPrecio::PlanSalud ? 0 : ctx.dtoGeneral);
    return r;
}
} // namespace

const CondicionEspecial* condicionAplicable(const QList<CondicionEspecial>& condiciones,
                                            const ArticuloVenta& articulo) {
    const CondicionEspecial* mejor = nullptr;
    int nivel = 0;
    for (const CondicionEspecial& c : condiciones) {
        const int n = especificidad(c, articulo);
        if (n > nivel) { // the first of equally specific conditions stays
            mejor = &c;
            nivel = n;
        }
    }
    return mejor;
}

PrecioElegido elegirPrecio(const ArticuloVenta& a, const ContextoPrecios& ctx) {
    PrecioElegido p;
    if (auto plan = deLista(ctx.condicionesPlan, a, ctx, OrigenPrecio::PlanSalud))
        p = *plan;
    else if (auto ficha = deLista(ctx.condicionesCliente, a, ctx, OrigenPrecio::FichaComercial))
        p = *ficha;
    else {
        p.pvp = pvpDeTarifa(a, ctx.tarifa);
        p.descuento = ctx.dtoGeneral;
    }
    if (ctx.idTipoIVACliente && ctx.porcentajeIVACliente) {
        p.idTipoIVA = ctx.idTipoIVACliente;
        p.iva = *ctx.porcentajeIVACliente;
    } else if (ctx.porcentajeIVACliente) {
        p.rechazo = QStringLiteral("El I.V.A. a aplicar al cliente (") +
                    formatoImporte(*ctx.porcentajeIVACliente) +
                    QStringLiteral(" %) no corresponde a ningún tipo de I.V.A. Añada ese tipo de I.V.A. o "
                                   "corrija el I.V.A. del cliente antes de incluir artículos.");
    } else if (ctx.idTipoIVACliente) {
        p.rechazo = QStringLiteral("El tipo de I.V.A. a aplicar al cliente ya no existe. Corrija el I.V.A. "
                                   "del cliente antes de incluir artículos.");
    } else {
        p.idTipoIVA = a.idTipoIVA;
        p.iva = a.porcentajeIVA;
    }
    return p;
}
