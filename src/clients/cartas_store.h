#pragma once
// What the letters read: a client's identity, address and contact data, and a pet with the
// texts of its look-ups and of its health plan. Every statement binds its values.
#include "data/database.h"

#include <QDate>
#include <optional>

struct ClienteCarta {
    qint64 IdCliente = 0;
    QString Nombre, DNI, Direccion, CodigoPostal, Poblacion, Provincia;
    QString Telefono1, Telefono2, Telefono3, Movil, EMail;
    QString LOPD; // the consent code, "0" when never set
};

struct MascotaCarta {
    qint64 IdMascota = 0;
    qint64 IdCliente = 0;                                      // the owner
    QString Nombre, Especie, Raza, Sexo, Capa, Chip, Cartilla; // Sexo as shown ("Macho")
    QDate FechaNacimiento;
    std::optional<qint64> IdPlanSalud;
    QString PlanSalud; // the plan's name
    QDate CaducidadPlan;
};

class CartasStore {
public:
    explicit CartasStore(Database& db) : db_(db) {}

    // nullopt when the client or the pet no longer exists. Throw ErrorBD.
    std::optional<ClienteCarta> cliente(qint64 idCliente);
    std::optional<MascotaCarta> mascota(qint64 idMascota);

private:
    Database& db_;
};
