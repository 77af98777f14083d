#pragma once
// The lock a record screen holds while it creates, modifies or deletes a record.
//
//   BloqueoEdicion bloqueo_{entorno};
//   bool ClienteForm::modificar() {
//       if (!bloqueo_.tomar(tablaClientes(), clave, nombre, AccionBloqueo::Modificacion)) return false;
//       ...
//   }
//   guardar(), cancelar() and cerrar() call bloqueo_.liberar(); the destructor does too.
//
// Record locking is active only in "Multipuesto" mode: when the setting MULTIPUESTO is
// "NO" only one workstation works, tomar() always succeeds and no lock row is written.
#include "app/entorno.h"
#include "data/bloqueos.h"

// The locks acting for the session of this environment (its session, user, workstation,
// clock and dialogs), as the session itself rather than one of its windows.
Bloqueos almacenBloqueos(Entorno& entorno);
// False when the setting MULTIPUESTO was "NO" (upper or lower case, blanks ignored) when the
// session read it. The session reads it once: a running workstation never stops locking
// because the setting changed under it. Throws ErrorBD.
bool bloqueoActivo(Entorno& entorno);

class BloqueoEdicion {
public:
    explicit BloqueoEdicion(Entorno& entorno);
    ~BloqueoEdicion();
    BloqueoEdicion(const BloqueoEdicion&) = delete;
    BloqueoEdicion& operator=(const BloqueoEdicion&) = delete;

    // Takes the lock before the operation; false means the operation must not be done
    // (the reason has been shown when mostrarMensajes is true). Taking the lock already
    // held succeeds at once; taking another one takes the new lock first and then releases
    // the old one, which stays held when the new one is refused.
    bool tomar(const DescriptorTabla& clase, const QString& clave, const QString& descripcion,
               AccionBloqueo accion, bool mostrarMensajes = true);
    // The "Alta" lock of a record not yet saved (it has no key): a key of its own for this
    // window, refused like any lock while an administrator holds the database or another
    // workstation the whole table.
    bool tomarAlta(const DescriptorTabla& clase, const QString& descripcion, bool mostrarMensajes = true) {
        return tomar(clase, QStringLiteral("(nuevo ") + e_.sesion + QLatin1Char(' ') + ventana_ + QLatin1Char(')'),
                     descripcion, AccionBloqueo::Alta, mostrarMensajes);
    }
    // Releases the lock held, if any (save, cancel, close). Never throws; a database error
    // is shown as "Desbloqueo de registro".
    void liberar();

    // Whether the lock taken still stands: an administrator may have removed it in the lock
    // manager. Inside the caller's transaction (a save), the lock row is held until the end
    // of it on PostgreSQL. Throws ErrorBD.
    bool vigente();
    // The message a save refused because the lock was removed shows.
    QString mensajePerdido() const;
    // Forgets a lock found removed (nothing to release): the next tomar() takes it again.
    void olvidar() { tomado_ = conFila_ = false; }

    // True from a successful tomar() until liberar().
    bool tomado() const { return tomado_; }
    // True when the lock held is a row of the lock store (false in "Monopuesto" mode).
    bool conFila() const { return conFila_; }
    const QString& tabla() const { return tabla_; }
    const QString& clave() const { return clave_; }

private:
    Bloqueos bloqueos();
    Entorno& e_;
    QString ventana_; // this screen's own name among the session's lock holders
    QString descripcionClase_;
    QString descripcion_;
    QString tabla_;
    QString clave_;
    QString claveBloqueo_;
    bool tomado_ = false;
    bool conFila_ = false;
};
