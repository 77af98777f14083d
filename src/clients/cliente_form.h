#pragma once
// The client maintenance screen's logic ("Mantenimiento de Clientes"): one client record held
// as the texts the user sees and types (one per column of Clientes, dates "dd/mm/yyyy",
// amounts "1.234,56", yes/no "Sí"/"No", list columns their shown text, look-ups their key),
// the commercial file (general tariff, general discount and the special conditions), and the
// commands new, load, save and delete, with every check in the order the clinic expects.
//
// Locks: the first change of an existing client takes its record lock ("Modificación"); a
// refused lock leaves the field as it was. Saving or loading another client releases it, and
// deleting takes a "Baja" lock before the question. A new client takes no lock: no other
// workstation can reach it before it is saved.
#include "app/bloqueo_edicion.h"
#include "app/conf_puesto_store.h"
#include "app/entorno.h"
#include "clients/condiciones_form.h"
#include "data/registro.h"

#include <QHash>
#include <functional>
#include <optional>

inline const QString kPantallaClientes = QStringLiteral("Mantenimiento de Clientes");

class ClienteForm {
public:
    explicit ClienteForm(Entorno& entorno);

    // A new, empty client: registration date today, general tariff of this workstation's
    // configuration, consent "Sin informar".
    void nuevo();
    // Loads a client; false (with the message shown) when it cannot be read, and the form
    // keeps what it showed.
    bool cargar(qint64 idCliente);
    // Opens the client search: loads the client chosen there, or clears the form for a new
    // client when the user asked for one. False when nothing was chosen.
    bool buscar();

    bool esNuevo() const { return !id_; }
    std::optional<qint64> idCliente() const { return id_; }
    // "Mantenimiento de Clientes - 12 - Ana Pérez" or "Mantenimiento de Clientes - (Nuevo cliente)".
    QString titulo() const;

    // The text of a column; setTexto returns false when the change was refused (lock).
    QString texto(const QString& columna) const;
    bool setTexto(const QString& columna, const QString& texto);
    // Read-only balances, "#,##0.00" (FechaUltimoCobro "dd/mm/yyyy").
    QString saldo(const QString& columna) const;
    bool modificado() const { return modificado_; }
    // Whether the general tariff, the general discount or the special conditions changed.
    bool fichaComercialModificada() const;

    CondicionesForm& condiciones() { return condiciones_; }

    // Drop-down entries of a look-up column (Poblacion, CodigoPostal, Provincia, their "Fra"
    // twins, IdTipoCliente, CodigoIdioma, IdFormaContacto); for columns stored as text the
    // key is the text itself.
    QList<OpcionLista> opciones(const QString& columna);
    // The parameter table whose editor the look-up's add button opens ("" for none).
    static QString tablaParametro(const QString& columna);
    // The texts of a list column (ViaComunicacion, LOPD, Tarifa), the empty choice first
    // when it may stay empty.
    static QStringList valoresLista(const QString& columna);

    // Checks and stores the client and its commercial file; false (one message) when refused.
    bool guardar();
    // Asks and deletes the client; on success the form holds a new, empty client. A client
    // with pets is not deleted.
    bool eliminar();
    // Releases the lock (the screen closes or the user discards the changes).
    void cerrar();
    // Before leaving a record with unsaved changes (new record, another one, closing): asks
    // whether to lose them; true when the screen may go on.
    bool puedeAbandonar();

    // Opens the pets of the client (set by the main window's registry).
    std::function<void(qint64 idCliente)> abrirMascotas;
    bool mascotas();

private:
    bool bloquear();
    bool fallo(Icono icono, const QString& titulo, const QString& texto, const QString& columna);
    void mostrarRegistro();

    Entorno& e_;
    Registro registro_;
    std::optional<qint64> id_;
    QHash<QString, QString> textos_;
    QString nombreGuardado_;
    bool modificado_ = false;
    bool fichaComercial_ = false;
    CondicionesForm condiciones_;
    BloqueoEdicion bloqueo_;

public:
    // The column that should take the focus after a refusal.
    QString foco;
};
