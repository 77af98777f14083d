#include "sales/calculo.h"

#include "core/dinero.h"

#include <algorithm>

ImportesLinea calcularLinea(const EntradaLinea& l, double retencion, bool exento) {
    ImportesLinea r;
    const double divisor = 100.0 + l.iva;
    r.precio = redondear2(l.pvp * 100.0 / divisor);
    r.brutoSinIVA = redondear2(l.cantidad * r.precio);
    r.brutoConIVA = redondear2(l.cantidad * l.pvp);
    r.importeDto = redondear2(l.descuento * r.brutoConIVA / 100.0);
    r.totalConIVA = redondear2(r.brutoConIVA - r.importeDto);
    r.base = redondear2(r.totalConIVA * 100.0 / divisor);
    r.cuotaIVA = redondear2(r.totalConIVA - r.base);
    r.retencion = redondear2(retencion * r.base / 100.0);
    r.total = redondear2(r.totalConIVA - r.retencion);
    r.ivaDesglose = r.cuotaIVA;
    if (exento) {
        r.total = redondear2(r.total - r.cuotaIVA);
        r.ivaDesglose = 0;
    }
    return r;
}

void TotalesDocumento::sumar(const ImportesLinea& importes, double porcentajeIVA) {
    acumular(importes, porcentajeIVA, 1.0);
}

void TotalesDocumento::restar(const ImportesLinea& importes, double porcentajeIVA) {
    acumular(importes, porcentajeIVA, -1.0);
}

void TotalesDocumento::acumular(const ImportesLinea& l, double porcentajeIVA, double signo) {
    bruto_ = redondear2(bruto_ + signo * l.brutoSinIVA);
    base_ = redondear2(base_ + signo * l.base);
    iva_ = redondear2(iva_ + signo * l.cuotaIVA);
    retencion_ = redondear2(retencion_ + signo * l.retencion);
    total_ = redondear2(total_ + signo * l.total);

    auto it = std::lower_bound(desglose_.begin(), desglose_.end(), porcentajeIVA,
                               [](const DesgloseIVA& d, double p) { return d.porcentaje < p; });
    if (it == desglose_.end() || it->porcentaje != porcentajeIVA)
        it = desglose_.insert(it, DesgloseIVA{porcentajeIVA, 0, 0, 0});
    it->base = redondear2(it->base + signo * l.base);
    it->cuota = redondear2(it->cuota + signo * l.ivaDesglose);
    it->lineas += signo > 0 ? 1 : -1;
    if (it->lineas <= 0) desglose_.erase(it);
}

double TotalesDocumento::ivaDesglose() const {
    double suma = 0;
    for (const DesgloseIVA& d : desglose_)
        suma = redondear2(suma + d.cuota);
    return suma;
}

DocumentoCalculado calcularDocumento(const QList<EntradaLinea>& lineas, double retencion, bool exento) {
    DocumentoCalculado d;
    d.lineas.reserve(lineas.size());
    for (const EntradaLinea& l : lineas) {
        d.lineas.append(calcularLinea(l, retencion, exento));
        d.totales.sumar(d.lineas.last(), l.iva);
    }
    return d;
}
