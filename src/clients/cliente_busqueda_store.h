#pragma once
// The client search in the database: clients found by their own data and by their pets',
// the pets of a found client, the reduced search of sending clinics, and everything a
// screen that picks a client needs to know about it. Every statement binds its values.
//
// Names are matched on the columns Clientes.NombreBusqueda and Mascotas.NombreBusqueda,
// which hold normalizarBusqueda(Nombre). Whoever writes a client or a pet fills them (the
// client and pet stores, the demo data, the generator); a row with NombreBusqueda NULL is
// not found by name.
#include "app/buscadores.h"
#include "data/database.h"

#include <QList>
#include <QString>
#include <optional>

// The text in upper case, without accents or diaeresis ("Ñ" becomes "N"), with the blanks
// collapsed and trimmed: "  José  Núñez " -> "JOSE NUNEZ".
QString normalizarBusqueda(const QString& texto);

enum class ModoNombre { Comienzo, Exacto, Contiene };

struct CriteriosBusquedaCliente {
    // On the client.
    QString nombre;
    ModoNombre modoNombre = ModoNombre::Comienzo;
    QString dni;                                // exact (as typed or in upper case)
    QString direccion;                          // anywhere, upper/lower case ignored
    QString telefono;                           // equal to Telefono1, 2, 3 or Movil, blanks ignored
    QString email;                              // anywhere, upper/lower case ignored
    QString poblacion, codigoPostal, provincia; // equal
    std::optional<qint64> idTipoCliente, idFormaContacto;
    QString lopd; // "0", "1", "2"; "" for any
    // On the pets: a client matches when one of its pets matches them all.
    QString nombreMascota; // at the start of the name
    std::optional<qint64> idMascota, idEspecie, idRaza, idEstado, idCondicionCorporal, idPlanSalud;
    QString chip; // exact
    QString sexo; // stored value "M", "H", "MC", "HE"; "" for any
    bool incluirClientesBaja = false;
    bool incluirMascotasBaja = false;

    bool hayCriteriosMascota() const;
};

// A row of the result: "Cliente", "Docum.", "Dirección", "C.Postal", "Localidad",
// "Provincia", "E-Mail".
struct FilaClienteBusqueda {
    qint64 IdCliente = 0;
    QString Cliente, Docum, Direccion, CodigoPostal, Localidad, Provincia, EMail, Clinica;
    bool baja = false;
};

// A row of the found client's pets: "Mascota", "Historial", "Especie", "Raza", "Sexo",
// "MicroChip", "Num.Cartilla".
struct FilaMascotaBusqueda {
    qint64 IdMascota = 0;
    QString Mascota, Especie, Raza, Sexo, MicroChip, Cartilla;
    bool baja = false;
};

struct CriteriosBusquedaReducida {
    std::optional<qint64> idCliente;
    QString nombre;             // at the start, accents ignored
    QString clinica, direccion; // anywhere, upper/lower case ignored
    QString dni, telefono, poblacion, codigoPostal, provincia;
    std::optional<qint64> idTipoCliente;
    bool incluirClientesBaja = false;
};

class ClienteBusquedaStore {
public:
    explicit ClienteBusquedaStore(Database& db) : db_(db) {}

    // At most limite clients, in name order. Throws ErrorBD.
    QList<FilaClienteBusqueda> buscar(const CriteriosBusquedaCliente& c, int limite);
    QList<FilaClienteBusqueda> buscarReducida(const CriteriosBusquedaReducida& c, int limite);
    // The client's pets in name order; pets marked as left only when incluirBaja.
    QList<FilaMascotaBusqueda> mascotas(qint64 idCliente, bool incluirBaja);
    // The client (and pet) as a picker hands it back; nothing when the client is gone.
    std::optional<ClienteElegido> elegido(qint64 idCliente, std::optional<qint64> idMascota);

private:
    Database& db_;
};
