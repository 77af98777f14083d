#pragma once
// The session environment: one per running program. It holds the open connection, the
// logged-in user and type, the workstation, the settings, and the values read from
// PRAMELVIX.INI. Every screen is handed it.
#include "app/buscadores.h"
#include "app/editores_abiertos.h"
#include "app/instalacion.h"
#include "core/clock.h"
#include "core/dialogs.h"
#include "data/ajustes.h"
#include "data/database.h"

#include <memory>
#include <optional>

class SalidaDocumentos;

// Section IMPRESORA TICKETS of PRAMELVIX.INI.
struct ImpresoraTickets {
    QString TIPO, IMPRESORA, PUERTO, BITSDATOS, BITSPARADA, PARIDAD, VELOCIDAD, NUMPASADAS, CORTEPAPEL;
    static ImpresoraTickets desdeIni(const IniFile& ini);
};

// Section MODEM GSM of PRAMELVIX.INI.
struct ModemGsm {
    QString PUERTO, BITSDATOS, BITSPARADA, PARIDAD, VELOCIDAD;
    static ModemGsm desdeIni(const IniFile& ini);
};

inline const QString kTipoAdministrador = QStringLiteral("ADMINISTRADOR");
inline const QString kTipoUsuario = QStringLiteral("USUARIO");

class Entorno {
public:
    // The environment owns the connection...
    Entorno(std::unique_ptr<Database> db, Dialogs& dialogs, const Clock& reloj);
    // ...or uses one its caller keeps (tests, tools).
    Entorno(Database& db, Dialogs& dialogs, const Clock& reloj);

    Database& db() { return *db_; }
    bool hayBaseDatos() const { return db_ != nullptr; }
    // Closes an owned connection (for a compaction) and takes a new one afterwards.
    void cerrarBaseDatos();
    void ponerBaseDatos(std::unique_ptr<Database> db);

    Dialogs& dialogs() { return dialogs_; }
    const Clock& reloj() const { return reloj_; }
    Ajustes ajustes() { return Ajustes(*db_); }

    bool identificado() const { return !usuario.isEmpty(); }
    bool esAdministrador() const { return tipoUsuario == kTipoAdministrador; }
    void desidentificar();

    QString carpetaPrograma;
    QString puesto;
    QString sesion; // this run of the program on this workstation
    // Several-workstation mode as read once by this session (bloqueoActivo); unset until then.
    std::optional<bool> multipuesto;
    ConfiguracionBD configuracionBD;
    ImpresoraTickets impresoraTickets;
    ModemGsm modemGsm;

    // The records open in an editor on this workstation (one editor per record).
    EditoresAbiertos editores;
    // The search screens other screens open to pick a client, an article, a plan.
    Buscadores buscadores;
    // Where previews and printed documents go on a display (set by the main window); null
    // without one.
    SalidaDocumentos* salidaDocumentos = nullptr;

    QString usuario;       // login name
    QString nombreUsuario; // name shown
    QString tipoUsuario;

private:
    std::unique_ptr<Database> propia_;
    Database* db_ = nullptr;
    Dialogs& dialogs_;
    const Clock& reloj_;
};
