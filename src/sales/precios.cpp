#include "sales/precios.h"

#include "core/dinero.h"

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

struct Candidato {
    double pvp = 0;
    double descuento = 0;
    OrigenPrecio origen = OrigenPrecio::TarifaGeneral;
    double neto() const { return redondear2(pvp * (100.0 - descuento) / 100.0); }
};

std::optional<Candidato> candidatoDe(const QList<CondicionEspecial>& lista, const ArticuloVenta& a,
                                     const ContextoPrecios& ctx, OrigenPrecio origen) {
    const CondicionEspecial* c = condicionAplicable(lista, a);
    if (!c) return std::nullopt;
    Candidato r;
    r.origen = origen;
    if (c->Precio) {
        r.pvp = *c->Precio;
        r.descuento = c->Descuento.value_or(0);
    } else {
        r.pvp = pvpDeTarifa(a, c->Tarifa);
        r.descuento = c->Descuento.value_or(ctx.dtoGeneral);
    }
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
    Candidato elegido{pvpDeTarifa(a, ctx.tarifa), ctx.dtoGeneral, OrigenPrecio::TarifaGeneral};
    // Candidates are tried from the least to the most preferred; a later one wins ties.
    for (const auto& candidato : {candidatoDe(ctx.condicionesCliente, a, ctx, OrigenPrecio::FichaComercial),
                                  candidatoDe(ctx.condicionesPlan, a, ctx, OrigenPrecio::PlanSalud)}) {
        if (candidato && candidato->neto() <= elegido.neto()) elegido = *candidato;
    }
    PrecioElegido p;
    p.pvp = elegido.pvp;
    p.descuento = elegido.descuento;
    p.origen = elegido.origen;
    if (ctx.idTipoIVACliente) {
        p.idTipoIVA = ctx.idTipoIVACliente;
        p.iva = ctx.porcentajeIVACliente;
    } else {
        p.idTipoIVA = a.idTipoIVA;
        p.iva = a.porcentajeIVA;
    }
    return p;
}
