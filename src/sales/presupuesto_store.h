#pragma once
// Quotes in the database. A quote is priced and added up as a delivery note is (the same
// Albaran document: lines, arithmetic, totals), numbered in a series of its own without gaps
// (counter "Presupuestos."), and is pending ("P") until it is made into a delivery note
// ("A", accepted: IdAlbaran names the note) or rejected ("R"). Only a pending quote changes;
// every change carries the row version read and the state in its condition.
#include "sales/albaran.h"
#include "sales/albaran_store.h"

#include <optional>

inline const QString kPresupuestoPendiente = QStringLiteral("P");
inline const QString kPresupuestoAceptado = QStringLiteral("A");
inline const QString kPresupuestoRechazado = QStringLiteral("R");

struct Presupuesto {
    std::optional<qint64> IdPresupuesto;
    std::optional<qint64> numero;
    QString estado = kPresupuestoPendiente;
    std::optional<qint64> idAlbaran; // the note it was made into
    qint64 versionFila = 0;
    // Header (date, time, client, pet, salesperson, visit, withholding, exempt) and lines.
    Albaran documento;
    bool esNuevo() const { return !IdPresupuesto; }
    bool pendiente() const { return estado == kPresupuestoPendiente; }
};

// A row of a client's quotes.
struct FilaPresupuesto {
    qint64 IdPresupuesto = 0, numero = 0;
    QDate fecha;
    QString estado; // as shown: "Pendiente", "Aceptado", "Rechazado"
    double total = 0;
};

enum class ResultadoPresupuesto { Hecho, NoPendiente, CambiadoEnOtroPuesto, NoExiste };

class PresupuestoStore {
public:
    explicit PresupuestoStore(Database& db) : db_(db) {}

    std::optional<Presupuesto> cargar(qint64 idPresupuesto);
    // Writes the quote and its lines in one transaction (joining the caller's); a new one takes
    // the next number (a counter held elsewhere throws ErrorBD: reintentarNumeracion). The visit
    // it was made from is marked as quoted.
    ResultadoPresupuesto guardar(Presupuesto& p);
    // Makes the pending quote into a delivery note of the series given, dated when it is made
    // (fecha, hora), with the quote's lines, prices and totals, and marks it accepted, in one
    // transaction: the quote is claimed first (a condition on its state and row version), so it
    // is made into one note only, however many workstations try, and a workstation that loses
    // takes no note number. Sets idAlbaran.
    ResultadoPresupuesto convertir(Presupuesto& p, const QString& serieVenta, const QDate& fecha, const QTime& hora);
    ResultadoPresupuesto rechazar(Presupuesto& p);
    // The client's quotes, newest first.
    QList<FilaPresupuesto> deCliente(qint64 idCliente);

private:
    ResultadoPresupuesto motivo(qint64 id, qint64 versionLeida);
    Database& db_;
};
