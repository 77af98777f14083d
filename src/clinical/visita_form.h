#pragma once
// The visit screen's logic ("Visitas"): one consultation of a pet. The client and pet (with
// the client's tariff, discount, VAT and consent, kept beside the visit for the delivery note),
// date and time, visit type, diagnosis, the attending vet, weight, temperature, body condition,
// anamnesis and treatment (rich text, kept as HTML), the hospitalise flag, the pet's history,
// and the visit's prescriptions, analytic results and speciality examinations.
//
// Fields are held as the texts the user sees (FormularioRegistro): look-ups the key of the
// entry chosen ("" for none), dates "dd/mm/yyyy", times "hh:mm", weight and temperature with a
// decimal comma. Prescriptions, results and examinations are written at once by their own
// commands, each under the visit's lock; a new visit is saved first.
//
// Hospitalisation: ticking the flag asks for the cage and admits the pet when the visit is
// saved, in the same transaction; unticking it on the visit that keeps the pet hospitalised
// asks for the discharge and discharges the pet at once.
#include "app/formulario_registro.h"
#include "clinical/hospitalizacion_store.h"
#include "clinical/visita_store.h"
#include "documents/impresor_documentos.h"
#include "sales/albaran_form.h"
#include "sales/presupuesto_form.h"

#include <functional>
#include <optional>

inline const QString kTituloVisitas = QStringLiteral("Visitas");
inline const QString kTextoHospitalizado = QStringLiteral("HOSPITALIZADO");
inline const QString kEtiquetaJaula = QStringLiteral("JAULA:");

// What the opener sets: a client (and pet) for a new visit, or a visit to open.
struct AperturaVisita {
    std::optional<qint64> IdClienteInit;
    QString ClienteInit;
    std::optional<qint64> IdMascotaInit;
    bool AvisoClienteInit = false;
    bool AvisoMascotaInit = false;
    std::optional<qint64> NumVisita;
};

// The prescription being written under the list.
struct EntradaReceta {
    QString fecha; // "dd/mm/yyyy"
    std::optional<qint64> idMedicamento;
    std::optional<qint64> idVeterinario;
    QString dispensador;
    QString dosificacion;
};

class VisitaForm : public FormularioRegistro {
public:
    explicit VisitaForm(Entorno& entorno);

    // A new visit for the client and pet given, or the visit asked for. False when the visit
    // or client cannot be read (reported) or the visit is open in another window here (now
    // in front).
    bool abrir(const AperturaVisita& apertura);

    // --- what the screen shows ---
    // "Visita nº: 12", or " (Nueva visita)".
    QString leyenda() const;
    const std::optional<ClienteVenta>& cliente() const { return cliente_; }
    const std::optional<MascotaVisita>& mascota() const { return mascota_; }
    const QList<OpcionVenta>& mascotasCliente() const { return mascotas_; }
    // "Deuda Actual:" + "#,##0.00" + " €" while the client owes money; "" otherwise.
    QString textoDeuda() const;
    // " Historial de Visitas  de la mascota: " + name + ". Fecha nacimiento: " + date.
    QString cabeceraHistorial() const;
    const QList<FilaHistorialVisita>& historial() const { return historial_; }
    static QStringList columnas();
    QList<OpcionLookup> opciones(const QString& columna);

    // A quote was made from the visit ("Presup.").
    bool presupuestado() const { return registro_.valor(QStringLiteral("Presupuesto")).toBool(); }
    // The flag as shown: the visit keeps the pet hospitalised, or will when saved.
    bool hospitalizado() const;
    QString jaula() const;
    // Ticks or unticks the flag (see above). False when nothing changed.
    bool setHospitalizar(bool marcar);
    // Set by the window: the cage dialog (the cage shown; nullopt when cancelled) and the
    // discharge dialog.
    std::function<std::optional<QString>(const QString&)> pedirJaula;
    std::function<std::optional<Alta>()> pedirAlta;

    // --- commands ---
    // Picks the client through the client search; a client without pets is refused with its
    // message. The pet chosen in the search, or the client's first, becomes the visit's.
    bool elegirCliente();
    // Another pet of the client, on a new visit only.
    bool setMascota(qint64 idMascota);
    bool nueva();
    // Checks in order (client and pet, type, vet, diagnosis, typed values) and saves.
    bool guardar();
    // Asks (twice when the visit keeps the pet hospitalised) and deletes.
    bool eliminar();
    bool puedeCerrar();
    // Opens the visit of that history row (asking about unsaved changes first).
    bool abrirHistorial(int fila);
    // Loads the visit picked in the visit search.
    bool buscar();
    // Saves the visit, offers the delivery notes already made for it, or opens a new one
    // through abrirAlbaran with the visit's client, pet and commercial data.
    bool cobrar();
    std::function<void(const AperturaAlbaran&)> abrirAlbaran;
    // Saves the visit like cobrar and opens the quote screen for it through abrirPresupuesto
    // (client, pet, visit and the attending vet as salesperson).
    bool presupuestar();
    // A quote of this visit was saved: the visit's mark and the history are read again (the
    // fields being edited stay).
    void releerPresupuesto();
    std::function<void(const AperturaPresupuesto&)> abrirPresupuesto;

    // --- prescriptions ---
    const QList<FilaReceta>& recetas() const { return recetas_; }
    EntradaReceta entradaReceta;
    // The row's data into the entry (to modify it).
    void cargarEntradaReceta(int fila);
    bool insertarReceta(bool imprimirDespues = false);
    bool modificarReceta(const QList<int>& seleccion);
    bool eliminarReceta(const QList<int>& seleccion);
    // Two recipes a page through the document group "Recetas".
    bool imprimirRecetas(const QList<int>& seleccion, DestinoDocumento destino = DestinoDocumento::VistaPrevia,
                         const QString& ficheroPdf = {});
    // The fields of one printed page: the first recipe's and, when given, the second's.
    DatosDocumento datosReceta(const FilaReceta& primera, const FilaReceta* segunda) const;

    // --- documents: the visit saved first; the data-protection notice first for a client who
    // does not consent ---
    // The visit's report through a format of "VisInf".
    bool imprimirInforme(DestinoDocumento destino = DestinoDocumento::VistaPrevia, const QString& ficheroPdf = {});
    // A letter about the visit's pet through a format of "DocMas".
    bool carta(DestinoDocumento destino = DestinoDocumento::VistaPrevia, const QString& ficheroPdf = {});

    // --- analytic results and speciality examinations (private ones only to their author
    // and administrators) ---
    QList<FilaResultado> resultados() const;
    QList<FilaEspecialidad> especialidades() const;
    bool anadirResultado(qint64 idAnalitica, const QString& resultado, bool privado);
    bool modificarResultado(qint64 idResultado, const QString& resultado, bool privado);
    bool eliminarResultado(qint64 idResultado);
    bool anadirEspecialidad(qint64 idEspecialidad);
    bool guardarEspecialidad(qint64 idEspecialidadVisita, const QString& resultado, const QString& croquis,
                             bool privado);
    bool eliminarEspecialidad(qint64 idEspecialidadVisita);
    bool puedeVerPrivado(const QString& autor) const;
    QList<AnaliticaOfrecida> analiticas();
    // A speciality's result or sketch changed on screen and not saved: asks whether to save
    // the changes made to the visit (true: save them).
    bool preguntarGuardarCambios();

private:
    QStringList columnasEditables() const override { return columnas(); }
    QString descripcionBloqueo() const override;
    QString preguntaAbandonar() const override;
    bool cargarVisita(qint64 idVisita);
    // exigirMascotas: choosing a client for a new visit refuses one without pets; a saved visit
    // opens whatever its client has now.
    bool cargarCliente(qint64 idCliente, std::optional<qint64> idMascota, bool exigirMascotas = true);
    void mostrarAvisos(bool cliente, bool mascota);
    void alCambiar(const QString& columna) override;
    void mostrarNueva();
    void leerDetalle();
    bool preguntarGuardar();
    bool rechazar(const QString& texto, const QString& columna);
    // Saves a new or changed visit before a command that needs its number.
    bool asegurarGuardada();
    bool seleccionUnica(const QList<int>& seleccion, const QString& ninguna, const QString& varias,
                        const QString& titulo);
    bool comprobarReceta();
    Registro registroReceta() const;
    // Runs a write of the visit's rows under its lock (taken for the write when not held).
    bool escribirFila(const QString& accion, const std::function<void(VisitaStore&)>& escritura);
    // The report's fields, or the pet letter's (informe false); nullopt when the visit could not
    // be saved or the pet and its owner read (reported), or the notice was answered No.
    std::optional<DatosDocumento> datosDocumento(bool informe);
    QString textoOpcion(const QString& columna);

    std::optional<ClienteVenta> cliente_;
    double deuda_ = 0;
    std::optional<MascotaVisita> mascota_;
    QList<OpcionVenta> mascotas_;
    QList<FilaHistorialVisita> historial_;
    QList<FilaReceta> recetas_;
    QList<FilaResultado> resultados_;
    QList<FilaEspecialidad> especialidades_;
    // Admission asked for, made when the visit is saved.
    bool ingresoPendiente_ = false;
    QString jaulaPendiente_;
};
