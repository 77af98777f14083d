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
    QString ventana; // the window of the session that holds it ("" for the session itself)
};

// Who takes the locks: the session of one run of the program, its user and workstation, and
// the window of that session that holds them (a lock belongs to the screen that took it:
// another screen of the same session neither shares nor frees it). An empty window stands
// for the session itself.
struct IdentidadSesion {
    QString sesion;
    QString usuario;
    QString puesto;
    QString ventana;
};

// The outcome of a lock attempt: granted, or refused with the message that tells why.
struct ResultadoBloqueo {
    bool concedido = true;
    Icono icono = Icono::Ninguno;
    QString titulo;
    QString texto;
    explicit operator bool() const { return concedido; }
};

// The rows of table Bloqueos. It decides and words, but never shows anything.
class BloqueoStore {
public:
    BloqueoStore(Database& db, const Clock& reloj, IdentidadSesion quien);

    // Locks a record for an action (1 Modificación, 2 Alta, 3 Baja). Granted when the lock was
    // taken, or when this window already holds it. Refused: an action code that is not
    // admitted; the administrative lock or a lock on the whole table held by another session;
    // the same key held by another session, or by another window of this session. A database
    // error refuses with a plain "Bloqueo de Registro" and "Error en B.D.: " + the driver's text.
    ResultadoBloqueo bloquearRegistro(const DescriptorTabla& clase, const QString& clave,
                                      const QString& descripcion, int accion);
    // Locks every record of a table ("Cliente: Todos"). Refused like a record lock, and also
    // while another session holds a lock on any record of the table.
    ResultadoBloqueo bloquearTabla(const DescriptorTabla& clase, int accion);
    // The administrative lock. Refused (exclamation box "¡Atención!") while another session
    // holds it, or while more than one lock stands in the store (this session's own locks
    // count too; a single standing lock does not refuse it).
    ResultadoBloqueo bloquearBD();

    // Removes this window's lock of that key; false when it held none. Throws ErrorBD.
    bool desbloquear(const QString& claveBloqueo);
    // Whether this window still holds the lock (an administrator may have removed it in the
    // lock manager); inside a transaction the row stays held until it ends. Throws ErrorBD.
    bool vigente(const QString& claveBloqueo);
    // Removes every lock of this session, all its windows (closing the program); the number
    // removed. Throws ErrorBD.
    int desbloquearSesion();

    // The lock manager: every lock of every session, by date, time and description.
    // These throw ErrorBD; the screen reports it.
    QList<Bloqueo> lista();
    std::optional<Bloqueo> buscar(const QString& claveBloqueo);
    // Removes the lock listed, only if it is still that one (same session, date and time): a
    // lock taken again since by someone else is left alone.
    bool eliminar(const Bloqueo& listado);
    int eliminarTodos();
    qint64 contar();

    // Attempts made when the database is busy before giving up (at least 1).
    void setIntentos(int intentos) { intentos_ = intentos < 1 ? 1 : intentos; }
    const IdentidadSesion& identidad() const { return quien_; }

private:
    ResultadoBloqueo bloquear(const std::function<ResultadoBloqueo()>& intento);
    ResultadoBloqueo intentarRegistro(const QString& tabla, const QString& claveCompleta,
                                      const QString& descripcion, int accion, const QString& inicio);
    ResultadoBloqueo intentarTabla(const DescriptorTabla& clase, int accion, const QString& inicio);
    ResultadoBloqueo intentarBD();
    void exclusionMutua(bool exclusiva);
    std::optional<QString> sesionDe(const QString& claveCompleta);
    bool insertar(const QString& claveCompleta, const QString& descripcion, int accion);

    Database& db_;
    const Clock& reloj_;
    IdentidadSesion quien_;
    int intentos_ = 5;
};

// The locks as a screen uses them: the store's attempts, with the reason of a refusal shown
// to the user when mostrarMensajes is true (after the attempt's transaction has ended).
class Bloqueos {
public:
    Bloqueos(Database& db, Dialogs& dialogs, const Clock& reloj, IdentidadSesion quien)
        : store_(db, reloj, std::move(quien)), dialogs_(dialogs) {}

    bool bloquearRegistro(const DescriptorTabla& clase, const QString& clave, const QString& descripcion,
                          int accion, bool mostrarMensajes = true);
    bool bloquearRegistro(const DescriptorTabla& clase, const QString& clave, const QString& descripcion,
                          AccionBloqueo accion, bool mostrarMensajes = true) {
        return bloquearRegistro(clase, clave, descripcion, static_cast<int>(accion), mostrarMensajes);
    }
    bool bloquearTabla(const DescriptorTabla& clase, int accion, bool mostrarMensajes = true);
    bool bloquearBD(bool mostrarMensajes = true);

    // Remove this window's lock; false when there was none. A database error is shown as a
    // plain box "Desbloqueo de registro" with "Error en B.D.: " + the driver's text.
    bool desbloquear(const QString& claveBloqueo);
    bool desbloquearRegistro(const DescriptorTabla& clase, const QString& clave) {
        return desbloquear(claveBloqueo(clase, clave));
    }
    bool desbloquearTabla(const DescriptorTabla& clase) { return desbloquear(claveBloqueoTabla(clase)); }
    bool desbloquearBD() { return desbloquear(kClaveBloqueoBD); }

    BloqueoStore& store() { return store_; }
    // Shortcuts to the store for the lock manager and closing (they throw ErrorBD).
    int desbloquearSesion() { return store_.desbloquearSesion(); }
    QList<Bloqueo> lista() { return store_.lista(); }
    std::optional<Bloqueo> buscar(const QString& clave) { return store_.buscar(clave); }
    bool eliminar(const Bloqueo& listado) { return store_.eliminar(listado); }
    int eliminarTodos() { return store_.eliminarTodos(); }
    qint64 contar() { return store_.contar(); }
    void setIntentos(int intentos) { store_.setIntentos(intentos); }
    const IdentidadSesion& identidad() const { return store_.identidad(); }

private:
    bool mostrar(const ResultadoBloqueo& r, bool mostrarMensajes);
    BloqueoStore store_;
    Dialogs& dialogs_;
};
