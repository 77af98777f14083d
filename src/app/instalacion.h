#pragma once
// Where this workstation's installation lives: the program folder (PRAMELVIX.INI and
// OperadoresSMS.Ini), the workstation's name, and the database named in PRAMELVIX.INI.
#include "core/ini.h"
#include "data/database.h"

#include <QString>

// The executable's folder, or the folder named by PRAMELVIX_DIR.
QString carpetaPrograma();
// The host name, or PRAMELVIX_PUESTO when set.
QString nombrePuesto();

namespace ini {
inline const QString INSTALACION = QStringLiteral("INSTALACION");
inline const QString SERVIDOR = QStringLiteral("SERVIDOR");
inline const QString MOTOR = QStringLiteral("MOTOR");
inline const QString CONEXION = QStringLiteral("CONEXION");
inline const QString IMPRESORA_TICKETS = QStringLiteral("IMPRESORA TICKETS");
inline const QString MODEM_GSM = QStringLiteral("MODEM GSM");
} // namespace ini

// Section INSTALACION: SERVIDOR is the data folder (the SQLite database Pramelvix.mdb,
// documents, photos); MOTOR is "SQLITE" (the default) or "POSTGRESQL", with CONEXION
// the libpq connection string (passwords go in libpq's password file, never here).
struct ConfiguracionBD {
    Motor motor = Motor::SQLite;
    QString servidor;
    QString conexion;
    QString ficheroAlternativo; // a database picked by hand for this session

    static ConfiguracionBD desdeIni(const IniFile& ini);
    QString ficheroSQLite() const;
    // What a message names: the file, or the PostgreSQL connection.
    QString descripcion() const;
};

// A folder written Windows-style ("C:\PRAMELVIX\DATOS") or with native separators.
QString rutaNativa(const QString& ruta);
