#pragma once
// The delivery-note search in the database: notes found by series, number, client, pet,
// dates and state, newest first, with the client's and the pet's names. Every statement
// binds its values.
//
// Names are matched on Clientes.NombreBusqueda and Mascotas.NombreBusqueda, which hold
// normalizarBusqueda(Nombre), so "nunez" finds "Núñez".
#include "data/database.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QTime>
#include <optional>

// The state a search asks for. A note is pending invoicing while it has no invoice number;
// pending collection while something is still to be collected; collected when nothing is
// left to collect of a non-zero total, or when it is marked as collected.
enum class EstadoAlbaran { Todos, PendientesFacturar, Facturados, PendientesCobro, Cobrados };

struct CriteriosBusquedaAlbaran {
    QString serie;                        // exact; "" for every series
    std::optional<qint64> numAlbaran;     // within the series
    std::optional<qint64> idCliente;      // the client the opener fixed
    QString cliente;                      // client's name, accents and case ignored
    bool clienteEnCualquierParte = false; // anywhere in the name; otherwise at its start
    QString mascota;                      // pet's name, at its start, accents and case ignored
    std::optional<QDate> desde, hasta;    // both days included
    EstadoAlbaran estado = EstadoAlbaran::Todos;
};

// A row of the result: "Serie", "Nº Albarán", "Fecha", "Cliente", "Mascota", "Total",
// "Pendiente", "Factura".
struct FilaAlbaranBusqueda {
    qint64 IdAlbaran = 0;
    QString Serie;
    qint64 NumAlbaran = 0;
    QDate Fecha;
    QTime Hora;
    qint64 IdCliente = 0;
    QString Cliente, Mascota;
    double Total = 0, Pendiente = 0;
    QString SerieFactura;
    std::optional<qint64> NumFactura; // none while the note is pending invoicing
};

// A sale series: its code and the text shown ("A - Ventas").
struct SerieVenta {
    QString serie;
    QString texto;
};

class AlbaranBusquedaStore {
public:
    explicit AlbaranBusquedaStore(Database& db) : db_(db) {}

    // At most limite notes, newest first (date, then time, then the later note). Throws ErrorBD.
    QList<FilaAlbaranBusqueda> buscar(const CriteriosBusquedaAlbaran& c, int limite);
    // The sale series ("V"), in code order.
    QList<SerieVenta> seriesVenta();
    // The client's name; nothing when the client does not exist.
    std::optional<QString> nombreCliente(qint64 idCliente);

private:
    Database& db_;
};
