#pragma once
// What every record screen shares: one record held as the texts the user sees and types
// (one per column the screen shows), change tracking, the record lock, one editor per record
// on this workstation, and the save that writes only those columns in one transaction
// guarded by the row version and the lock. A screen adds its fields, checks and commands.
//
// Locks: the first change of an existing record takes its "Modificación" lock (a refused lock
// leaves the field as it was); saving a new record takes an "Alta" lock for the time of the
// save, so that nothing is created while an administrator holds the database; deleting takes
// a "Baja" lock before the question. Loading another record, a new one or closing releases it.
#include "app/bloqueo_edicion.h"
#include "app/entorno.h"
#include "app/guardado_registro.h"
#include "data/registro.h"

#include <QHash>
#include <functional>
#include <optional>

class FormularioRegistro {
public:
    FormularioRegistro(const FormularioRegistro&) = delete;
    FormularioRegistro& operator=(const FormularioRegistro&) = delete;

    bool esNuevo() const { return !id_; }
    const std::optional<qint64>& id() const { return id_; }
    QString texto(const QString& columna) const { return textos_.value(columna); }
    // False when the change was refused (the record lock) or the column is not shown.
    bool setTexto(const QString& columna, const QString& texto);
    bool modificado() const { return modificado_; }
    // Releases the lock and the record (the screen closes).
    void cerrar();
    // Before leaving a record with unsaved changes (new record, another one, closing): asks
    // preguntaAbandonar(); true when the screen may go on.
    bool puedeAbandonar();

    // Set by the window: brings it forward when this record is opened again elsewhere here.
    std::function<void()> traerAlFrente;
    // The column that should take the focus after a refusal.
    QString foco;

protected:
    FormularioRegistro(Entorno& entorno, const DescriptorTabla& tabla);
    virtual ~FormularioRegistro();

    // The columns the screen shows, types and saves.
    virtual QStringList columnasEditables() const = 0;
    // How the record is named in its lock ("Ana Pérez").
    virtual QString descripcionBloqueo() const = 0;
    virtual QString preguntaAbandonar() const = 0;
    // A shown column changed (after the lock was granted).
    virtual void alCambiar(const QString&) {}

    // An empty record of the table; a new record has no lock and is open in no editor.
    void empezarNuevo(const Registro& vacio);
    // Takes the record for this editor. False when another editor here has it open: that
    // one comes forward and this screen keeps what it showed.
    bool ocupar(qint64 id);
    // Shows a record read (its key, now this screen's), the change state cleared.
    void mostrarRegistro(const Registro& r);
    bool bloquear();
    bool fallo(Icono icono, const QString& titulo, const QString& texto, const QString& columna);
    // The shown columns typed into a copy of the record; nullopt when one is not valid
    // (the reason shown, the focus on it).
    std::optional<Registro> leerTextos();
    // Writes a checked record: creation under an "Alta" lock, modification under the record's
    // own lock, both in one transaction with the row version checked (guardarRegistro).
    ResultadoGuardado escribir(CommandTrace& traza, Registro& r, const std::function<void()>& escritura);
    // After a successful save: the record as saved becomes the one shown; the lock goes.
    void guardado(const Registro& r, qint64 id);

    Entorno& e_;
    Registro registro_;
    std::optional<qint64> id_;
    QHash<QString, QString> textos_;
    bool modificado_ = false;
    BloqueoEdicion bloqueo_;
};
