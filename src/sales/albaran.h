#pragma once
// A sale delivery note: the header, its ordered lines and its totals. The note keeps every
// line's amounts and the running totals up to date as lines are added, changed and removed,
// through the document arithmetic of calculo.h.
#include "sales/calculo.h"
#include "sales/precios.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QTime>
#include <optional>

struct LineaAlbaran {
    std::optional<qint64> idArticulo;
    QString concepto;
    QString serie; // the article's invoicing series
    double cantidad = 1;
    double pvp = 0;       // unit price with VAT
    double descuento = 0; // percentage
    std::optional<qint64> idTipoIVA;
    double iva = 0; // VAT percentage
    ImportesLinea importes;

    EntradaLinea entrada() const { return {cantidad, pvp, descuento, iva}; }
};

// A line of the article at the price chosen for it (its amounts are computed when the line
// goes on a note).
LineaAlbaran lineaDeArticulo(const ArticuloVenta& articulo, const PrecioElegido& precio, double cantidad = 1);

class Albaran {
public:
    std::optional<qint64> IdAlbaran; // the record's key, once saved
    qint64 versionFila = 0;          // the row version read (VersionFila)
    QString serie;
    std::optional<qint64> numAlbaran; // given at the first save
    QDate fecha;
    QTime hora;
    std::optional<qint64> idCliente;
    std::optional<qint64> idMascota;
    std::optional<qint64> idVendedor;
    std::optional<qint64> idVisita;
    std::optional<qint64> numFactura; // set once invoiced
    QString serieFactura;
    bool cobrado = false;
    double pendiente = 0;     // still to be collected
    double totalGuardado = 0; // the total as stored (what pendiente is measured against)

    bool esNuevo() const { return !IdAlbaran.has_value(); }
    bool facturado() const { return numFactura.has_value(); }
    // Collected in whole or in part: marked collected, or something of its total already paid.
    bool algoCobrado() const;

    double retencion() const { return retencion_; }
    bool exento() const { return exento_; }
    // Both recompute every line and the totals.
    void setRetencion(double porcentaje);
    void setExento(bool exento);

    const QList<LineaAlbaran>& lineas() const { return lineas_; }
    const TotalesDocumento& totales() const { return totales_; }
    // The line's amounts are computed here; the totals follow.
    void anadirLinea(LineaAlbaran linea);
    void cambiarLinea(int fila, LineaAlbaran linea);
    void quitarLinea(int fila);
    // Every line and the totals computed again (after loading, or repricing every line).
    void recalcular();
    void ponerLineas(const QList<LineaAlbaran>& lineas);

private:
    void calcular(LineaAlbaran& linea) const;

    double retencion_ = 0;
    bool exento_ = false;
    QList<LineaAlbaran> lineas_;
    TotalesDocumento totales_;
};
