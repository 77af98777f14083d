#include "sales/albaran.h"

#include "core/dinero.h"

#include <cmath>

LineaAlbaran lineaDeArticulo(const ArticuloVenta& articulo, const PrecioElegido& precio, double cantidad) {
    LineaAlbaran l;
    l.idArticulo = articulo.codigo;
    l.concepto = articulo.descripcion;
    l.serie = articulo.serie;
    l.cantidad = cantidad;
    l.pvp = precio.pvp;
    l.descuento = precio.descuento;
    l.idTipoIVA = precio.idTipoIVA;
    l.iva = precio.iva;
    return l;
}

bool Albaran::algoCobrado() const {
    return cobrado || (IdAlbaran && !mismoImporte(pendiente, totalGuardado));
}

void Albaran::setRetencion(double porcentaje) {
    retencion_ = porcentaje;
    recalcular();
}

void Albaran::setExento(bool exento) {
    exento_ = exento;
    recalcular();
}

void Albaran::calcular(LineaAlbaran& l) const {
    l.importes = calcularLinea(l.entrada(), retencion_, exento_);
}

void Albaran::anadirLinea(LineaAlbaran linea) {
    calcular(linea);
    totales_.sumar(linea.importes, linea.iva);
    lineas_.append(linea);
}

void Albaran::cambiarLinea(int fila, LineaAlbaran linea) {
    if (fila < 0 || fila >= lineas_.size()) return;
    totales_.restar(lineas_[fila].importes, lineas_[fila].iva);
    calcular(linea);
    totales_.sumar(linea.importes, linea.iva);
    lineas_[fila] = linea;
}

void Albaran::quitarLinea(int fila) {
    if (fila < 0 || fila >= lineas_.size()) return;
    totales_.restar(lineas_[fila].importes, lineas_[fila].iva);
    lineas_.removeAt(fila);
}

void Albaran::recalcular() {
    totales_ = TotalesDocumento();
    for (LineaAlbaran& l : lineas_) {
        calcular(l);
        totales_.sumar(l.importes, l.iva);
    }
}

void Albaran::ponerLineas(const QList<LineaAlbaran>& lineas) {
    lineas_ = lineas;
    recalcular();
}
