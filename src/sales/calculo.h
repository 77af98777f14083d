#pragma once
// The arithmetic of a sale document: the amounts of one line and the totals of the document.
// Every step is rounded to cents (redondear2, ties to even) before the next one uses it.
// Prices are kept with VAT included; the discount is taken off the amount with VAT and the
// base is derived afterwards. Delivery notes, visits and invoices all price through here.
#include <QList>

struct EntradaLinea {
    double cantidad = 1;  // Q; negative for a correction
    double pvp = 0;       // P: unit price with VAT
    double descuento = 0; // D: percentage; an empty field counts as 0
    double iva = 0;       // V: VAT percentage of the line
};

struct ImportesLinea {
    double precio = 0;      // unit price without VAT        [P × 100 / (100 + V)]
    double brutoSinIVA = 0; // gross amount without VAT      [Q × precio]
    double brutoConIVA = 0; // gross amount with VAT         [Q × P]
    double importeDto = 0;  // discount amount               [D × brutoConIVA / 100]
    double totalConIVA = 0; // line total with VAT           [brutoConIVA − importeDto]
    double base = 0;        // taxable base of the line      [totalConIVA × 100 / (100 + V)]
    double cuotaIVA = 0;    // VAT of the line               [totalConIVA − base]
    double retencion = 0;   // withholding of the line       [R × base / 100]
    double total = 0; // line total                    [totalConIVA − retencion], less the VAT when exempt
    double ivaDesglose = 0; // VAT the line puts in the per-rate breakdown: 0 when exempt
};

// The amounts of one line under the header's withholding percentage and exempt flag.
ImportesLinea calcularLinea(const EntradaLinea& linea, double retencion, bool exento);

struct DesgloseIVA {
    double porcentaje = 0;
    double base = 0;
    double cuota = 0;
    int lineas = 0; // lines at this rate; the row goes when its last line is removed
};

// Running totals of a document. Each line adds (or, removed, subtracts) its amounts, the sum
// being rounded after each operation, so that a total is always the rounded running sum of
// the rounded line amounts.
class TotalesDocumento {
public:
    void sumar(const ImportesLinea& importes, double porcentajeIVA);
    void restar(const ImportesLinea& importes, double porcentajeIVA);

    double bruto() const { return bruto_; }
    double baseImponible() const { return base_; }
    // VAT of the document: every line's VAT, exempt or not (the breakdown of an exempt
    // document holds 0; ivaDesglose() is the VAT it adds up to).
    double iva() const { return iva_; }
    double ivaDesglose() const;
    double retencion() const { return retencion_; }
    double total() const { return total_; }
    // One row per VAT percentage in use, by increasing percentage.
    const QList<DesgloseIVA>& desglose() const { return desglose_; }

private:
    void acumular(const ImportesLinea& importes, double porcentajeIVA, double signo);

    double bruto_ = 0, base_ = 0, iva_ = 0, retencion_ = 0, total_ = 0;
    QList<DesgloseIVA> desglose_;
};

// Every line computed again under a withholding and exempt flag, and their totals.
struct DocumentoCalculado {
    QList<ImportesLinea> lineas;
    TotalesDocumento totales;
};
DocumentoCalculado calcularDocumento(const QList<EntradaLinea>& lineas, double retencion, bool exento);
