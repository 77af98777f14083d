#pragma once
// Numbered series (invoices, credit notes...): the last number handed out of each series,
// one row of table Contadores per series. The next number is taken with one atomic
// "UPDATE ... SET Ultimo = Ultimo + 1 ... RETURNING Ultimo" inside the caller's
// transaction, so two workstations never get the same number, and a document that is
// rolled back gives its number back: the series has no gaps.
#include "data/database.h"

#include <optional>

// The counter of a kind of document and series: the document table, "." and the series
// ("Facturas.A").
QString claveContador(const QString& tabla, const QString& serie);

// Failed attempts after which a save that takes a number asks whether to go on
// (reintentarNumeracion).
inline constexpr int kIntentosPorAviso = 20;
// How long one attempt waits for another workstation that holds the counter (ms).
inline constexpr int kEsperaPorIntento = 1000;

class ContadorStore {
public:
    explicit ContadorStore(Database& db) : db_(db) {}

    // One attempt: the next number of the series (1 for a series never used). Inside a
    // transaction of the caller the number belongs to that transaction (taken under a
    // savepoint, so that a failed attempt leaves the caller's work intact); otherwise the
    // number is taken in a transaction of its own. esperaMs bounds how long the attempt
    // waits for another connection (0: the connection's usual wait). Throws ErrorBD; a
    // failure because the counter is held elsewhere satisfies esErrorDeConcurrencia.
    qint64 tomarSiguiente(const QString& serie, int esperaMs = 0);

    // As tomarSiguiente, for documents that already hold numbers up to mayorUsado: a counter that
    // fell behind them (a database from an earlier version, numbers typed by hand) goes on after
    // the highest one.
    qint64 tomarSiguienteTras(const QString& serie, qint64 mayorUsado, int esperaMs = 0);

    // The last number handed out; 0 for a series never used.
    qint64 ultimo(const QString& serie);
    // Makes the series go on after the number given (a series that starts at 1000...).
    void fijarUltimo(const QString& serie, qint64 ultimo);

private:
    qint64 incrementar(const QString& serie);
    Database& db_;
};
