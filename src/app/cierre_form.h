#pragma once
// Leaving the program: a confirmation; then, when automatic compaction is due, the
// question to compact the database first; the workstation leaves the active table.
#include "app/entorno.h"

inline const QString kPreguntaSalir = QStringLiteral("¿Desea realmente salir de Pramelvix?");

class CierreForm {
public:
    explicit CierreForm(Entorno& entorno) : e_(entorno) {}

    // The closing question alone; true on Yes. The main window asks it before it closes any
    // screen, so that No leaves every screen as it was.
    bool confirmarSalida();
    // The whole closing. confirmar: ask before leaving (not when the login was cancelled,
    // the system asked the program to end, or confirmarSalida was already asked). False
    // when the user chose to stay.
    bool cerrar(bool confirmar = true);

private:
    bool preguntarCompactacion();
    Entorno& e_;
};

// Compacting the database by hand (administrators), only while no other workstation is
// connected. The connection is closed, the database compacted, and opened again.
class CompactacionForm {
public:
    explicit CompactacionForm(Entorno& entorno) : e_(entorno) {}
    bool compactar();

private:
    Entorno& e_;
};

// Number of workstations connected besides this one; -1 when it cannot be read.
qint64 otrosPuestosConectados(Entorno& e);
// Closes the connection, compacts, writes FECHA COMPACTACION, and opens the database again
// when reabrir is true. True when the database was compacted.
bool compactarBaseDatos(Entorno& e, bool reabrir);
