#pragma once
// Start-up: everything that runs before the main window opens, in this order:
//  1. the command line (exactly one of the five switches);
//  2. a single copy of the program per workstation;
//  3. the regional settings;
//  4. the maintenance switches, which do their work and end;
//  5. locating the database (another one may be picked for the session);
//  6. opening it, offering to repair a damaged one until it opens or the user gives up;
//  7. the required version (and the schema brought up to date);
//  8. the single-workstation mode;
//  9. registering the workstation as connected;
// 10. the receipt printer and GSM modem sections of PRAMELVIX.INI;
// 11. the report of an invoice that failed on this workstation.
// The main window and the login dialog (step 12) belong to the caller.
#include "app/entorno.h"
#include "core/regional.h"

#include <QLockFile>
#include <QStringList>
#include <memory>
#include <optional>

enum class Modo { Start, RepairDB, PurgeActiveComputers, ActivateBlockingMode, DeactivateBlockingMode };

// The whole command line (without the program name) must be exactly one switch.
std::optional<Modo> leerLineaOrdenes(const QStringList& argumentos);

inline const QString kTituloPrograma = QStringLiteral("Pramelvix");
inline const QString kVersionPrograma = QStringLiteral(PRAMELVIX_VERSION);

struct OpcionesArranque {
    QString carpetaPrograma;
    QString puesto;
    RegionalSettings regional = RegionalSettings::delSistema();
    // Folder of the single-instance lock files (the user's runtime folder by default).
    QString carpetaBloqueos;
};

class Arranque {
public:
    Arranque(Dialogs& dialogs, const Clock& reloj, OpcionesArranque opciones);

    // Runs the start-up. Returns the session environment ready for the main window, or
    // nullptr when the program must end (codigoSalida() tells with which code).
    std::unique_ptr<Entorno> ejecutar(const QStringList& argumentos);
    int codigoSalida() const { return codigo_; }

private:
    std::unique_ptr<Entorno> fin(int codigo);
    bool instanciaUnica();
    std::optional<IniFile> leerIni();
    bool mantenimiento(Modo modo, const ConfiguracionBD& config);
    bool localizar(ConfiguracionBD& config);
    std::unique_ptr<Database> abrir(const ConfiguracionBD& config);
    bool comprobarVersion(Database& db);
    // 8 and 9 in one step: the mode read and the workstation registered together.
    bool entrar(Database& db);
    void informarFacturasNoCreadas(Entorno& e);

    Dialogs& d_;
    const Clock& reloj_;
    OpcionesArranque op_;
    std::unique_ptr<QLockFile> instancia_;
    int codigo_ = 0;
    bool multipuesto_ = true;
};

// The repair procedure: shows "Se está compactando la Base de Datos. Espere por favor ..."
// while the database is compacted. True when the compacted copy replaced the database.
bool procedimientoReparacion(Dialogs& d, const ConfiguracionBD& config, const Clock& reloj);
