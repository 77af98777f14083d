#pragma once
// Choosing the price of an article put on a sale line.
//
// A special condition applies because the clinic set it, whatever the price it leaves: the
// health plan of the pet (while the plan is in force on the note's date) goes first, then
// the client's commercial file, then the client's general tariff with the client's general
// discount. Within one list the most specific condition that names the article wins: the
// article itself, then its subfamily, its family, its section. A condition gives a special
// price (net: no discount unless the condition names one) or a particular tariff. A tariff
// condition of the commercial file keeps the client's general discount unless it names its
// own; one of the plan takes the plan's own discount (none unless it names one), never the
// owner's. A tariff condition that points at an empty price (0) of the article is refused,
// never applied: the line is not priced and the reason is given.
#include "clients/condiciones_form.h"

#include <QList>
#include <QString>
#include <optional>

inline const QString kTarifa1 = QStringLiteral("TARIFA 1");
inline const QString kTarifa2 = QStringLiteral("TARIFA 2");
inline const QString kTarifa3 = QStringLiteral("TARIFA 3");

// What pricing needs of an article.
struct ArticuloVenta {
    qint64 codigo = 0;
    QString descripcion;
    double pvp1 = 0, pvp2 = 0, pvp3 = 0; // prices with VAT
    std::optional<qint64> idTipoIVA;     // the article's VAT type...
    double porcentajeIVA = 0;            // ...and its percentage
    std::optional<qint64> seccion, familia, subfamilia;
    QString serie; // the invoicing series that applies to the article ("" when none)
};

// What pricing needs of the client and the pet.
struct ContextoPrecios {
    QString tarifa;        // "TARIFA 1".."TARIFA 3"; anything else prices at PVP1
    double dtoGeneral = 0; // the client's general discount
    // The client's own VAT (a non-resident company's is the 0 % type): its type and percentage.
    // One known without the other (a percentage that is no VAT type, a type that no longer
    // exists) refuses every price rather than selling at 0 %.
    std::optional<qint64> idTipoIVACliente;
    std::optional<double> porcentajeIVACliente;
    QList<CondicionEspecial> condicionesCliente; // the client's commercial file
    QList<CondicionEspecial> condicionesPlan;    // the pet's health plan in force, if any
};

enum class OrigenPrecio { TarifaGeneral, FichaComercial, PlanSalud };

struct PrecioElegido {
    double pvp = 0;       // unit price with VAT
    double descuento = 0; // percentage
    std::optional<qint64> idTipoIVA;
    double iva = 0; // VAT percentage
    OrigenPrecio origen = OrigenPrecio::TarifaGeneral;
    // Why the article cannot be priced for this client ("" when it can): the line is refused.
    QString rechazo;
    bool valido() const { return rechazo.isEmpty(); }
};

// The article's price under a tariff text: "TARIFA 2" gives PVP2, "TARIFA 3" PVP3,
// "TARIFA 1" and anything else PVP1.
double pvpDeTarifa(const ArticuloVenta& articulo, const QString& tarifa);

// The most specific condition of a list that names the article, or nullptr.
const CondicionEspecial* condicionAplicable(const QList<CondicionEspecial>& condiciones,
                                            const ArticuloVenta& articulo);

// Price, discount and VAT of a new line holding the article, or the reason it is refused.
PrecioElegido elegirPrecio(const ArticuloVenta& articulo, const ContextoPrecios& contexto);
