#pragma once
// Pickers a screen calls to let the user choose a record through a search screen. The main
// window's screen registry sets them when the search screens exist; tests set them to
// scripted answers. An empty function, or an empty result, means nothing was chosen.
#include <QString>
#include <functional>
#include <optional>

// What the client search hands back to the screen that opened it.
struct ClienteElegido {
    qint64 claveCliente = 0;
    QString Cliente; // the client's name
    std::optional<qint64> claveMascota;
    QString mascota; // the pet picked in the pet list, if any
    QString tarifa;  // "TARIFA 1".."TARIFA 3"
    double DtoGralCliente = 0;
    std::optional<qint64> IVAaAplicar; // the client's own VAT type, if any
    bool ExentoIVA = false;
    QString LOPD;                 // consent code "0", "1", "2"
    bool indAvisoCliente = false; // the client has a warning text to show
    bool indAvisoMascota = false; // the pet has a warning text to show
    std::optional<qint64> NumHospitalizacion;
    std::optional<qint64> NumJaula;
    bool NuevoCliente = false; // the user chose to create a client instead
};

// What the visit search hands back: the visit and its client's data.
struct VisitaElegida {
    qint64 idVisita = 0;
    qint64 IdCliente = 0;
    QString Cliente;
    qint64 idMascota = 0;
    QString mascota;
    QString tarifa;
    double DtoCliente = 0;
    std::optional<double> IVAaAplicar; // the client's own VAT percentage, if any
    QString LOPD;
    bool indAvisoCliente = false;
    bool indAvisoMascota = false;
    std::optional<qint64> NumHospitalizacion;
    QString NumJaula;
    QString Vendedor; // the member of staff who attended
};

// What the opener may preset.
struct PeticionCliente {
    QString TextoInicial;
    QString TextoInicialMascota;
    bool Bloquear = false; // pick-only use
    bool reducida = false; // the reduced search (sending clinics)
};

struct Buscadores {
    std::function<std::optional<ClienteElegido>(const PeticionCliente&)> cliente;
    // Article search: returns the article code (ArtCodArticulo).
    std::function<std::optional<qint64>(const QString& textoInicial)> articulo;
    // Health plan search: returns the plan number.
    std::function<std::optional<qint64>(const QString& textoInicial)> planSalud;
    // Delivery-note search: returns the note's IdAlbaran.
    std::function<std::optional<qint64>()> albaran;
    // Visit search.
    std::function<std::optional<VisitaElegida>()> visita;
};
