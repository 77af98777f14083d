#include "cash/reparto_cobro.h"

#include "core/dinero.h"

#include <algorithm>

double DocumentoACobrar::deuda() const {
    return redondear2(total - cobrado);
}

bool RepartoCobro::parcial() const {
    return menorImporte(entregado, totalACobrar);
}

ResultadoReparto repartirCobro(const QList<DocumentoACobrar>& documentos, const QList<EntregaFormaPago>& formas) {
    RepartoCobro r;
    for (const auto& d : documentos)
        r.totalACobrar = redondear2(r.totalACobrar + std::max(0.0, d.deuda()));
    QList<double> restante;
    for (const auto& f : formas) {
        const double importe = redondear2(std::max(0.0, f.importe));
        restante << importe;
        r.entregado = redondear2(r.entregado + importe);
    }
    if (menorImporte(r.totalACobrar, r.entregado)) {
        r.cambio = redondear2(r.entregado - r.totalACobrar);
        // Change comes out of cash only: the first cash method that can give it all.
        int caja = -1;
        for (int i = 0; i < formas.size() && caja < 0; ++i)
            if (formas.at(i).efectivo && !menorImporte(restante.at(i), r.cambio)) caja = i;
        if (caja < 0) return {std::nullopt, RechazoCobro::NoEfectivoSuperaTotal};
        restante[caja] = redondear2(restante.at(caja) - r.cambio);
    }
    r.guardadoPorForma = restante;
    r.aplicado = redondear2(r.entregado - r.cambio);
    double porAplicar = r.aplicado;
    for (int d = 0; d < documentos.size(); ++d) {
        const double deuda = std::max(0.0, documentos.at(d).deuda());
        const double aplicado = menorImporte(deuda, porAplicar) ? deuda : porAplicar;
        r.aplicadoPorDocumento << aplicado;
        porAplicar = redondear2(porAplicar - aplicado);
        double porCubrir = aplicado;
        for (int f = 0; f < restante.size() && !importeNulo(porCubrir); ++f) {
            if (importeNulo(restante.at(f))) continue;
            const double parte = menorImporte(porCubrir, restante.at(f)) ? porCubrir : restante.at(f);
            r.aplicaciones << AplicacionCobro{d, f, parte};
            restante[f] = redondear2(restante.at(f) - parte);
            porCubrir = redondear2(porCubrir - parte);
        }
    }
    return {r, std::nullopt};
}
