#pragma once
// A pet's hospitalisation in the database. The pet's current hospitalisation (its number,
// that of the admitting visit, and its cage) changes only through the operations here, each
// with a condition on what it expects to find, so that two workstations can never admit the
// same pet twice or discharge it twice; the register keeps one row a stay.
#include "data/database.h"

#include <QDate>
#include <QTime>
#include <optional>

// A row of the hospitalised list: "Mascota", "Cliente", "Jaula".
struct FilaHospitalizada {
    qint64 IdMascota = 0, IdCliente = 0, NumHospitalizacion = 0;
    QString Mascota, Cliente, Jaula;
};

// A row of a pet's register: "Fecha Ingreso", "Hora Ingreso", "Diagnóstico en Ingreso",
// "Fecha Alta", "Hora Alta", "Diagnóstico de Alta".
struct FilaEstancia {
    qint64 IdHospitalizacion = 0, IdVisita = 0;
    QDate FechaIngreso;
    QTime HoraIngreso;
    QString DiagnosticoIngreso, Jaula;
    QDate FechaAlta;
    QTime HoraAlta;
    QString DiagnosticoAlta;
};

struct Ingreso {
    qint64 IdMascota = 0, IdVisita = 0;
    QDate fecha;
    QTime hora;
    QString diagnostico, jaula;
};

struct Alta {
    QDate fecha;
    QTime hora;
    QString diagnostico;
};

class HospitalizacionStore {
public:
    explicit HospitalizacionStore(Database& db) : db_(db) {}

    // Admits the pet from the visit, in the caller's transaction: the pet's hospitalisation
    // becomes the visit's number and the stay enters the register. False (nothing written)
    // when the pet is already hospitalised, from this visit or another one.
    bool ingresar(const Ingreso& ingreso);
    // The cage of the pet's current stay; false when it is not hospitalised any more.
    bool cambiarJaula(qint64 idMascota, const QString& jaula);
    // Discharges the pet from its current stay (numHospitalizacion, as read), in one
    // transaction: the register row is completed and the pet is no longer hospitalised.
    // False (nothing written) when that stay is no longer the pet's current one.
    bool darAlta(qint64 idMascota, qint64 numHospitalizacion, const Alta& alta);

    QList<FilaHospitalizada> hospitalizadas();
    // Newest stay first.
    QList<FilaEstancia> registro(qint64 idMascota);

private:
    Database& db_;
};
