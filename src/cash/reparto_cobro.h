#pragma once
// How a collection applies the money handed over to the documents ticked: the arithmetic of the
// collection screen, with no database and no questions. Every amount is rounded to cents at every
// step (core/dinero).
//
// The documents come in the order they are settled (the invoices first, then the delivery notes,
// each in list order). The amounts come per payment method in the order of the list, one of them
// cash. Change is given only out of cash: what is kept of cash is [cash - change]. The money kept
// is applied to each document in turn, up to its debt [total - cobrado], and each document's part
// is split over the payment methods in list order: a method gives all it has left while that does
// not exceed what the document still needs, otherwise exactly what it needs.
#include <QList>
#include <QString>
#include <optional>

struct DocumentoACobrar {
    double total = 0;
    double cobrado = 0; // already collected
    double deuda() const;
};

struct EntregaFormaPago {
    double importe = 0; // as handed over; an empty amount is 0
    bool efectivo = false;
};

// One collection record: so much of one payment method on one document.
struct AplicacionCobro {
    int documento = 0; // index into the documents
    int forma = 0;     // index into the payment methods
    double importe = 0;
};

struct RepartoCobro {
    double totalACobrar = 0; // what the ticked documents owe
    double entregado = 0;    // what was handed over
    double cambio = 0;       // given back out of cash
    double aplicado = 0;     // what the documents receive: [entregado - cambio], at most totalACobrar
    // Less was handed over than is owed: the documents are settled as far as the money goes
    // (the screen asks first).
    bool parcial() const;
    QList<AplicacionCobro> aplicaciones;
    QList<double> aplicadoPorDocumento; // one per document
    QList<double> guardadoPorForma;     // one per payment method: what the clinic keeps of each
};

// Why a collection cannot be made as handed over.
enum class RechazoCobro {
    // Change is due and the cash handed over does not cover it: "La suma de los importes
    // entregados distinto de EFECTIVO, no puede superar el total a cobrar."
    NoEfectivoSuperaTotal,
};

inline const QString kTextoNoEfectivoSuperaTotal =
    QStringLiteral("La suma de los importes entregados distinto de EFECTIVO, no puede superar el total a cobrar.");

struct ResultadoReparto {
    std::optional<RepartoCobro> reparto;
    std::optional<RechazoCobro> rechazo;
};

ResultadoReparto repartirCobro(const QList<DocumentoACobrar>& documentos, const QList<EntregaFormaPago>& formas);
