#pragma once
// The delivery-note search screen's logic ("Búsqueda de Albaranes"), also the picker the
// delivery-note screen opens: the criteria as the user typed them, their checks, the notes
// found (newest first, at most kMaxFilas) and the note chosen.
//
// Checks, in this order, each stopping the search with the criteria kept as typed:
// the number must be a whole number ("Información introducida errónea"); the dates must be
// valid "dd/mm/yyyy" dates and the first must not be after the last ("Error en fecha").
#include "app/entorno.h"
#include "sales/albaran_busqueda_store.h"

#include <QList>
#include <QStringList>
#include <optional>

inline const QString kTituloBusquedaAlbaranes = QStringLiteral("Búsqueda de Albaranes");

class AlbaranBusquedaForm {
public:
    // At most this many notes are shown; a vaguer search is told to narrow down.
    static constexpr int kMaxFilas = 500;

    // idCliente: the client the opener fixed; only that client's notes are searched.
    explicit AlbaranBusquedaForm(Entorno& entorno, std::optional<qint64> idCliente = {});

    // The criteria, as typed.
    QString serie;  // a series code; "" for "(Todas)"
    QString numAlbaran; // the note's number within its series
    QString cliente;
    bool clienteEnCualquierParte = false;
    QString mascota;
    QString desde, hasta; // "dd/mm/yyyy"; "" for no limit
    EstadoAlbaran estado = EstadoAlbaran::Todos;

    const std::optional<qint64>& clienteFijo() const { return clienteFijo_; }
    // The fixed client's name, read when the form was made ("" when there is none).
    const QString& nombreClienteFijo() const { return nombreClienteFijo_; }
    // With a fixed client the screen searches as soon as it opens.
    bool buscarAlAbrir() const { return clienteFijo_.has_value(); }

    static QStringList columnas();
    // "Todos", "Pendientes de facturar", "Facturados", "Pendientes de cobro", "Cobrados", in the
    // order of EstadoAlbaran.
    static QStringList estados();
    // The series drop-down: "(Todas)" (code "") first, then the sale series.
    QList<SerieVenta> series();

    // Checks the criteria and runs the search. False when a check refused it (the reason has
    // been shown and the previous result is kept) or the database failed.
    bool buscar();
    const QList<FilaAlbaranBusqueda>& resultado() const { return resultado_; }
    // The cells of a row, in the order of columnas().
    QStringList celdas(int fila) const;
    // "" or a note under the result: none found, or only the newest kMaxFilas shown.
    const QString& nota() const { return nota_; }

    // Chooses the note at that row; false (with a message) when there is none.
    bool aceptar(int fila);
    const std::optional<qint64>& elegido() const { return elegido_; }

private:
    Entorno& e_;
    std::optional<qint64> clienteFijo_;
    QString nombreClienteFijo_;
    QList<FilaAlbaranBusqueda> resultado_;
    QString nota_;
    std::optional<qint64> elegido_;
};
