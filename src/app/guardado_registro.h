#pragma once
// The write of a record screen's save: one transaction that first checks the screen still
// holds its lock (an administrator may have removed it in the lock manager) and then runs
// the screen's writes. What went wrong is told to the user after the transaction has ended:
// a lock removed, or the record saved or deleted on another workstation since this screen
// read it (the row version no longer matches), in which case reloading is offered.
#include "app/bloqueo_edicion.h"
#include "app/entorno.h"
#include "core/command_trace.h"

#include <functional>

enum class ResultadoGuardado {
    Guardado,
    Fallido,  // nothing written; the reason has been shown
    Recargar, // nothing written; the user asked to reload the record as it now stands
};

// Thrown by a screen's writes that find, inside the transaction, a reason not to go on (a pet
// admitted meanwhile from another workstation): everything is rolled back and the save gives
// Fallido without a message; the screen tells why once the transaction has ended.
struct GuardadoCancelado {};

// clase: the class description ("Cliente"), for the messages.
ResultadoGuardado guardarRegistro(Entorno& e, CommandTrace& traza, BloqueoEdicion& bloqueo, const QString& clase,
                                  const std::function<void()>& escribir);

// The texts shown when the row changed since it was read.
QString textoRegistroModificado(const QString& clase);
QString textoRegistroEliminado(const QString& clase);
