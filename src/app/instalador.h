#pragma once
// Creating a clinic's installation: the folder with PRAMELVIX.INI, the data folder with
// its subfolders, and the database with its schema, default settings, the required
// version and a first administrator.
#include "data/database.h"

#include <QString>

struct OpcionesInstalacion {
    QString carpeta;            // the installation (program) folder
    QString administrador;      // login name of the first administrator
    QString clave;              // and its password
    QString conexionPostgreSQL; // empty: SQLite in carpeta/datos
    QString puestoServidor;     // the workstation that may enter in single-workstation mode
    bool demo = false;          // load the demo clinic
};

// Data subfolders created beside the database.
const QStringList& subcarpetasDatos();

// Creates the installation; returns an empty text on success or the reason it failed.
QString crearInstalacion(const OpcionesInstalacion& op);

// Prepares an open, empty database: schema, defaults, required version, administrator.
void prepararBaseDatos(Database& db, const OpcionesInstalacion& op);

// The demo clinic (users and sample data of every subsystem there is); puesto is the
// workstation that gets demo defaults.
void cargarDemo(Database& db, const QString& puesto);
