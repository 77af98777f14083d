#pragma once
// Record locks shared by every workstation. Before a screen creates, deletes or modifies a
// record it locks it; the lock is a row of table Bloqueos, so every workstation sees it.
// An administrator may lock the whole database for administrative work.
//
// Checking and adding a lock is one atomic step against every other connection, on both
// engines (see bloqueos.cpp): two workstations that try the same key at the same moment
// never both succeed, and the administrative lock and a record lock never both succeed.
#include "core/clock.h"
#include "core/dialogs.h"
#include "data/database.h"
#include "data/descriptor.h"

#include <QDate>
#include <QList>
#include <QTime>
#include <functional>
#include <optional>

enum class AccionBloqueo { Modificacion = 1, Alta = 2, Baja = 3 };

// The name of an action and the verb used in messages.
struct NombreAccion {
    QString nombre; // "Modificación"
    QString verbo;  // "Modificar"
};
// nullopt for a code that is not one of the admitted actions.
std::optional<NombreAccion> nombreAccion(int codigo);

// The key of the administrative lock on the whole database.
inline const QString kClaveBloqueoBD = QStringLiteral("DATABASE Toda la B.D. por labores Administrativas");

// The key of a record lock: the table name, a blank and the record's key ("Clientes 42").
QString claveBloqueo(const DescriptorTabla& clase, const QString& clave);
// The key of a lock on every record of a table: the table name alone ("Clientes"), which
// no record key can give.
QString claveBloqueoTabla(const DescriptorTabla& clase);
// How a lock on every record of a table is described: "Cliente: Todos".
QString descripcionBloqueoTabla(const DescriptorTabla& clase);

// True for a failure that only means another connection holds, right now, what the
// statement needed (busy or locked database, lock timeout, deadlock, serialization
// failure): the operation may be tried again.
bool esErrorDeConcurrencia(const ErrorBD& error);

// One lock as the lock manager lists it.
struct Bloqueo {
    QString clave;       // claveBloqueo
    QString descripcion; // DescrBloqueo
    QString sesion;
    int accion = 0;
    QString usuario;
    QString puesto;
    QDate fecha;
    QTime hora;
};

// Who takes the locks: the session of one run of the program, its user and workstation.
struct IdentidadSesion {
    QString sesion;
    QString usuario;
    QString puesto;
};

class BloqueoStore {
public:
    BloqueoStore(Database& db, Dialogs& dialogs, const Clock& reloj, IdentidadSesion quien);

    // Locks a record for an action (1 Modificación, 2 Alta, 3 Baja). True when the lock was
    // taken, or when this session already holds it (a second lock of the same key by the
    // same session adds nothing; one unlock removes it). Refused, with the reason shown
    // when mostrarMensajes is true: an action code that is not admitted; the administrative
    // lock or a lock on the whole table held by another session; the same key held by
    // another session. A database error is shown as a plain box "Bloqueo de Registro".
    bool bloquearRegistro(const DescriptorTabla& clase, const QString& clave, const QString& descripcion,
                          int accion, bool mostrarMensajes = true);
    bool bloquearRegistro(const DescriptorTabla& clase, const QString& clave, const QString& descripcion,
                          AccionBloqueo accion, bool mostrarMensajes = true) {
        return bloquearRegistro(clase, clave, descripcion, static_cast<int>(accion), mostrarMensajes);
    }
    // Locks every record of a table ("Cliente: Todos"). Refused like a record lock, and
    // also while another session holds a lock on any record of the table.
    bool bloquearTabla(const DescriptorTabla& clase, int accion, bool mostrarMensajes = true);

    // Removes this session's lock; false when there was none. A database error is shown as
    // a plain box "Desbloqueo de registro" with "Error en B.D.: " + the driver's text.
    bool desbloquearRegistro(const DescriptorTabla& clase, const QString& clave);
    bool desbloquearTabla(const DescriptorTabla& clase);
    // The same by the lock's whole key (claveBloqueo).
    bool desbloquear(const QString& claveBloqueo);

    // The administrative lock. Refused (exclamation box "¡Atención!") while another session
    // holds it, or while more than one lock stands in the store (this session's own locks
    // count too; a single standing lock does not refuse it). True when this session
    // already holds it.
    bool bloquearBD(bool mostrarMensajes = true);
    bool desbloquearBD();

    // Removes every lock of this session (closing the program); the number removed.
    // Throws ErrorBD.
    int desbloquearSesion();

    // The lock manager: every lock of every session, by date, time and description.
    // These throw ErrorBD; the screen reports it.
    QList<Bloqueo> lista();
    std::optional<Bloqueo> buscar(const QString& claveBloqueo);
    bool eliminar(const QString& claveBloqueo);
    int eliminarTodos();
    qint64 contar();

    // Attempts made when the database is busy before giving up (at least 1).
    void setIntentos(int intentos) { intentos_ = intentos < 1 ? 1 : intentos; }
    const IdentidadSesion& identidad() const { return quien_; }

private:
    // The outcome of one attempt, decided inside the transaction and shown after it ends
    // (a message box must never keep the other workstations waiting).
    struct Decision {
        bool concedido = true;
        Icono icono = Icono::Ninguno;
        QString titulo;
        QString texto;
    };
    bool bloquear(const std::function<Decision()>& intento, bool mostrarMensajes);
    Decision intentarRegistro(const QString& tabla, const QString& claveCompleta, const QString& descripcion,
                              int accion, const QString& mensajeBD, const QString& mensajeOtroPuesto);
    Decision intentarTabla(const DescriptorTabla& clase, int accion, const QString& mensajeBD,
                           const QString& mensajeOtroPuesto);
    Decision intentarBD();
    void exclusionMutua(bool exclusiva);
    std::optional<QString> sesionDe(const QString& claveCompleta);
    bool insertar(const QString& claveCompleta, const QString& descripcion, int accion);

    Database& db_;
    Dialogs& dialogs_;
    const Clock& reloj_;
    IdentidadSesion quien_;
    int intentos_ = 5;
};
