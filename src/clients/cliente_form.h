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
#include "app/conf_puesto_store.h"
#include "app/formulario_registro.h"
#include "clients/condiciones_form.h"
#include "data/registro.h"
#include "documents/impresor_documentos.h"

#include <QHash>
#include <functional>
#include <optional>

inline const QString kPantallaClientes = QStringLiteral("Mantenimiento de Clientes");

class ClienteForm : public FormularioRegistro {
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

    std::optional<qint64> idCliente() const { return id_; }
    // "Mantenimiento de Clientes - 12 - Ana Pérez" or "Mantenimiento de Clientes - (Nuevo cliente)".
    QString titulo() const;

    // Read-only balances, "#,##0.00" (FechaUltimoCobro "dd/mm/yyyy").
    QString saldo(const QString& columna) const;
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

    // Prints a letter to the client (group "DocClientes", the format the user picks) with the
    // stored data, after the data-protection notice when the client does not consent. Refused
    // with a message for a client not saved or with unsaved changes. True when printed.
    bool cartas(DestinoDocumento destino = DestinoDocumento::VistaPrevia, const QString& ficheroPdf = {});

    // Opens the pets of the client (set by the main window's registry).
    std::function<void(qint64 idCliente)> abrirMascotas;
    bool mascotas();

private:
    QStringList columnasEditables() const override;
    QString descripcionBloqueo() const override { return nombreGuardado_; }
    QString preguntaAbandonar() const override;
    void alCambiar(const QString& columna) override;
    void mostrar(const Registro& r);

    QString nombreGuardado_;
    bool fichaComercial_ = false;
    CondicionesForm condiciones_;
};
