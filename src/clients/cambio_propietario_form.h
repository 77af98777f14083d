#pragma once
// The change of owner ("Cambio de Propietario"): the current owner and the new one are picked
// through the client search, the pet from the current owner's pets. Changing moves the pet
// and writes the register row (today, origin, destination, user) in one transaction.
#include "app/bloqueo_edicion.h"
#include "app/entorno.h"
#include "clients/mascota_store.h"

inline const QString kTituloCambioPropietario = QStringLiteral("Cambio de Propietario");

class CambioPropietarioForm {
public:
    explicit CambioPropietarioForm(Entorno& entorno) : e_(entorno) {}

    // Picks the current owner (its pets fill the list; the pet chosen in the search, if it
    // is one of them, is selected) or the new owner; false when nothing was chosen.
    bool elegirPropietarioActual();
    bool elegirNuevoPropietario();
    // Presets the current owner and pet (opened from a pet); false when the owner cannot be read.
    bool abrir(qint64 idCliente, std::optional<qint64> idMascota = std::nullopt);

    std::optional<qint64> propietarioActual() const { return actual_; }
    const QString& nombreActual() const { return nombreActual_; }
    std::optional<qint64> nuevoPropietario() const { return nuevo_; }
    const QString& nombreNuevo() const { return nombreNuevo_; }

    const QList<FilaMascota>& mascotas() const { return mascotas_; }
    // Row of the chosen pet, -1 for none.
    int filaMascota() const { return fila_; }
    void setFilaMascota(int fila) { fila_ = (fila >= 0 && fila < mascotas_.size()) ? fila : -1; }

    // Checks the three choices in order and makes the change; true when done (the pet list
    // is read again and no pet is selected).
    bool cambiar();

private:
    bool ponerActual(qint64 idCliente, const QString& nombre, std::optional<qint64> idMascota);

    Entorno& e_;
    std::optional<qint64> actual_, nuevo_;
    QString nombreActual_, nombreNuevo_;
    QList<FilaMascota> mascotas_;
    int fila_ = -1;
};
