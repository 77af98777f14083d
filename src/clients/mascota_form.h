#pragma once
// The pet maintenance screen's logic ("Mantenimiento de Mascotas"): the pets of one client,
// the fields of the selected pet, and the commands new, save, delete and the health-plan
// pick. Every field is held as the text the user sees and types: look-ups hold the key of
// the chosen entry ("" for none), "Sexo" its shown text, dates "dd/mm/yyyy", the weight
// "#,##0.00" typed back with a decimal comma, "Baja" "Sí"/"No".
#include "app/formulario_registro.h"
#include "clients/mascota_store.h"
#include "documents/impresor_documentos.h"

#include <optional>

inline const QString kTituloMascotas = QStringLiteral("Mantenimiento de Mascotas");

class MascotaForm : public FormularioRegistro {
public:
    explicit MascotaForm(Entorno& entorno);

    // Asks the client search for a client (and maybe one of its pets) and opens it; false
    // when nothing was chosen.
    bool abrirDesdeMenu();
    // Opens the pets of a client and selects idMascota (a new pet when not given or not the
    // client's). A client that cannot be read is reported and the screen stays empty; a pet
    // open in another window here brings that window forward and nothing changes here.
    bool abrir(qint64 idCliente, std::optional<qint64> idMascota = std::nullopt);

    bool hayCliente() const { return propietario_.IdCliente != 0; }
    const DatosPropietario& propietario() const { return propietario_; }
    // "Sin informar", "Sí consiente", "No consiente".
    QString textoLOPD() const;

    const QList<FilaMascota>& lista() const { return lista_; }
    // Row of the list being edited; -1 for a new pet.
    int filaActual() const { return fila_; }
    bool esNueva() const { return esNuevo(); }
    std::optional<qint64> idMascota() const { return id(); }
    // "Mascota nº: 12 del Cliente nº 3", or "(Nueva Mascota)".
    QString leyenda() const;

    // The pet's columns the screen shows (every column but the key and the owner).
    static QStringList columnas();
    // Read-only columns: those kept by their operations (last visit, current hospitalisation and cage).
    static bool soloLectura(const QString& columna);
    // Changes a field. The first change of an existing pet takes its record lock; when the
    // lock is refused nothing changes and the answer is false. Choosing another species
    // clears a breed of the old one.
    bool setTexto(const QString& columna, const QString& texto);

    // Entries of a look-up drop-down; the breeds are those of the chosen species.
    QList<OpcionLookup> opciones(const QString& columna);
    // Texts of the sex drop-down, "" first.
    static QStringList sexos();
    QStringList tiposMascota();

    // Moves to another pet of the list. With unsaved changes asks "¿Desea guardar las
    // modificaciones realizadas a '" + name + "'?": Yes saves first (staying when the save
    // is refused), No discards. False when the pet shown did not change.
    bool seleccionar(int fila);
    // Clears the fields for a new pet (asking like seleccionar).
    bool nueva();
    // Checks in order (chip, owner, name, plan expiry, typed values) and stores the pet.
    bool guardar();
    // Asks and deletes the selected pet; true when deleted.
    bool eliminar();
    // Whether the screen may close (asks like seleccionar).
    bool puedeCerrar();

    // The chip check when the user leaves the field; false (message shown) when the field
    // must take the focus again.
    bool comprobarChip();
    // A saved pet is selected, for the commands that open its visits or hospitalisations;
    // otherwise "Debe seleccionar primero una Mascota." with the title given, and false.
    bool mascotaElegida(const QString& titulo);
    // Picks the health plan through the plan search; true when one was chosen.
    bool elegirPlan();
    // A plan is chosen and its expiry date lies before today.
    bool planCaducado() const;

    // Letters about the selected pet (group "DocMas") and its health plan (group "DocPlanes"),
    // with the stored data, after the data-protection notice when the owner does not consent.
    // Refused with a message when no saved pet is selected, when it has unsaved changes and,
    // for the plan, when the pet is in none. True when printed.
    bool cartas(DestinoDocumento destino = DestinoDocumento::VistaPrevia, const QString& ficheroPdf = {});
    bool imprimirPlan(DestinoDocumento destino = DestinoDocumento::VistaPrevia,
                      const QString& ficheroPdf = {});

private:
    QStringList columnasEditables() const override { return columnas(); }
    QString descripcionBloqueo() const override;
    QString preguntaAbandonar() const override;
    void alCambiar(const QString& columna) override;
    void leerLista();
    void seleccionarEnLista(qint64 id);
    void mostrarNueva();
    void mostrar(const Registro& r);
    bool preguntarGuardar();
    bool rechazar(const QString& titulo, const QString& texto, const QString& columna) {
        return fallo(Icono::Exclamacion, titulo, texto, columna);
    }
    bool chipValido() const;
    bool imprimirDocumento(bool plan, DestinoDocumento destino, const QString& ficheroPdf);

    DatosPropietario propietario_;
    QList<FilaMascota> lista_;
    int fila_ = -1;
};
