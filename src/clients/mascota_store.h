#pragma once
// Pets in the database: one pet record (through the generic record of table Mascotas), the
// pets of a client, the pet list with its filters, the change of owner with its register,
// and the look-up lists a pet's drop-downs offer. Every statement binds its values.
#include "data/registro.h"

#include <QDate>
#include <QList>
#include <optional>

const DescriptorTabla& tablaMascotas();

// A row of a client's pet list: "Mascota", "Especie", "Raza", "Sexo", "Estado".
struct FilaMascota {
    qint64 IdMascota = 0;
    QString Mascota, Especie, Raza, Sexo, Estado;
};

// An entry of a look-up list: the stored key and the text shown.
struct OpcionLookup {
    qint64 clave = 0;
    QString texto;
};

// The owner as the pet screen shows it.
struct DatosPropietario {
    qint64 IdCliente = 0;
    QString Nombre;
    QString Tarifa;
    double DtoGeneral = 0;
    QString IVAaAplicar; // description of the client's VAT type, "" when none
    QString LOPD;        // "0", "1", "2"
};

// A date range of the pet list, used only when activo.
struct RangoFechas {
    bool activo = false;
    QDate desde, hasta;
};

struct FiltroMascotas {
    std::optional<qint64> IdCliente, IdEspecie, IdRaza, IdEstado, IdCondicionCorporal, IdPlanSalud;
    QString Sexo;        // stored value ("M", "H"...), "" for any
    QString TipoMascota; // "" for any
    RangoFechas nacimiento, alta, baja, caducidadPlan, ultimaVisita;
    bool incluirBajas = false;
};

// A row of the pet list.
struct FilaListadoMascota {
    qint64 IdMascota = 0;
    qint64 IdCliente = 0;
    QString Mascota, Cliente;
    QDate FechaNacimiento;
    QString Especie, Raza, Sexo, Estado;
    QDate UltimaVisita;
    QString Tipo, PlanSalud;
    QDate Caducidad;
    QString LOPD; // the owner's consent code
};

struct FiltroCambios {
    std::optional<QDate> desde, hasta;
    QString mascota; // part of the pet's name, "" for any
    std::optional<qint64> IdClienteOrigen, IdClienteDestino;
};

struct FilaCambio {
    qint64 IdCambio = 0;
    QDate Fecha;
    qint64 IdMascota = 0;
    QString Mascota; // "" when the pet no longer exists
    QString PropietarioOrigen, NuevoPropietario;
};

class MascotaStore {
public:
    explicit MascotaStore(Database& db) : db_(db), registros_(db) {}

    std::optional<Registro> cargar(qint64 idMascota);
    // Inserts (a record without IdMascota) or updates the pet; returns its number.
    qint64 guardar(Registro& mascota);
    // Deletes the pet (its change-of-owner rows go with it); Referida when other rows point
    // at it (its delivery notes), and then nothing is deleted.
    enum class Baja { Eliminada, NoExiste, Referida };
    Baja eliminar(qint64 idMascota);

    std::optional<DatosPropietario> propietario(qint64 idCliente);
    QList<FilaMascota> mascotasDeCliente(qint64 idCliente);

    // Entries of the look-up list behind a pet column (IdEspecie, IdRaza, IdVeterinario...):
    // breeds of one species only when idEspecie is given; only active staff and entries.
    QList<OpcionLookup> opciones(const QString& columna, std::optional<qint64> idEspecie = std::nullopt);
    // The table a look-up column reads; "" for a column without one.
    static QString tablaLookup(const QString& columna);
    // Distinct pet types already used, for the type drop-down.
    QStringList tiposMascota();

    QList<FilaListadoMascota> listado(const FiltroMascotas& filtro);

    // Moves the pet from origen to destino and writes the register row, in one transaction.
    // Throws ErrorPrograma when the pet no longer belongs to origen, ErrorBD on a failure;
    // either way nothing is changed.
    void cambiarPropietario(qint64 idMascota, qint64 origen, qint64 destino, const QDate& fecha,
                            const QString& usuario);
    QList<FilaCambio> cambios(const FiltroCambios& filtro);

private:
    Database& db_;
    RegistroStore registros_;
};
