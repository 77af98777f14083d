#pragma once
// The error trap every command runs under. It names the action and the screen
// ("borrar una Cita en el 'Listado de Citas'") and records numbered steps; a failure
// reaches the user as one message with that trace, and the program goes on.
#include "core/dialogs.h"

#include <QStringList>
#include <functional>

class CommandTrace {
public:
    CommandTrace(Dialogs& dialogs, QString descripcion);

    // Records the next step: "1 - texto", "2 - texto"...
    void paso(const QString& texto);
    const QStringList& pasos() const { return pasos_; }
    const QString& descripcion() const { return descripcion_; }

    // Runs the command. A database error is shown as "Error en B.D.: " + the driver's
    // text in a box titled with the action; any other failure is shown with the trace.
    // Returns false when the command failed.
    bool ejecutar(const std::function<void()>& orden);

    // The text shown for an unexpected failure.
    QString textoFallo(const QString& causa) const;

private:
    Dialogs& dialogs_;
    QString descripcion_;
    QStringList pasos_;
};
