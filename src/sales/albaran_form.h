#pragma once
// The delivery-note screen's logic ("Albaranes de Venta"): the header (client, pet,
// salesperson, date, time, series, withholding, exempt flag), the lines priced from the
// client's tariff, commercial file and the pet's health plan, the totals, and the commands
// new, search, save, delete, print and ticket.
//
// Several workstations share the notes: before a change, a save, a deletion or a printing
// the note is read again, and one invoiced or collected meanwhile is refused with its own
// message. An existing note that can still be changed is held under its record lock while it
// is open here; new, search, delete and closing release it.
#include "app/bloqueo_edicion.h"
#include "app/conf_puesto_store.h"
#include "app/entorno.h"
#include "core/dinero.h"
#include "documents/plantilla.h"
#include "sales/albaran.h"
#include "sales/albaran_store.h"
#include "sales/precios.h"

#include <QStringList>
#include <functional>
#include <optional>

inline const QString kPantallaAlbaranes = QStringLiteral("Albaranes de Venta");
// What the trace of a command adds after the action ("guardar un Albarán" + ...).
inline const QString kEnPantallaAlbaranes = QStringLiteral(" en los 'Albaranes de Venta'");
inline const QString kTituloObligatoriosAlbaran = QStringLiteral("Campos obligatorios no rellenos");
inline const QString kTituloSinCliente = QStringLiteral("Información requerida no especificada");
inline const QString kTituloImposibleGuardar =
    QStringLiteral("ATENCION: Imposible guardar las modificaciones");
inline const QString kPreguntaGuardarCambios =
    QStringLiteral("¿Desea guardar los cambios realizados en esta ventana?");
inline const QString kGrupoAlbaranes = QStringLiteral("DocAlbaranes");
inline const QString kGrupoNotaVenta = QStringLiteral("NotaVenta");
inline const QString kPromptAlbaran = QStringLiteral(" Seleccione un Formato de Albarán");
inline const QString kTipoDocumentoAlbaran = QStringLiteral("ALB");
inline const QString kTipoDocumentoFactura = QStringLiteral("FRA");

// What a caller sets before showing the screen (a visit, a clinical history, a client).
struct AperturaAlbaran {
    std::optional<qint64> IdCliente;
    QString Cliente;
    std::optional<qint64> idMascota;
    std::optional<qint64> NumVisita;
    // What the caller knows of the client stands over the client's record, also when the
    // commercial file is reloaded (RecuperarFichaComercial).
    QString TarifaCliente;
    std::optional<double> DtoGralCliente;
    std::optional<double> IVAaAplicarCliente; // the client's own VAT percentage
    std::optional<bool> ExentoIVA;
    QString LOPDCliente;
    std::optional<qint64> IdVendedor;
    bool EntradaDesdeVisitas = false;
    bool EntradaDesdeHistorial = false;
    std::optional<qint64> IdArticuloHistorial;
    // An existing note, by its series and number...
    QString serie;
    std::optional<qint64> numAlbaran;
    // ...or by its record key (what the note search returns).
    std::optional<qint64> IdAlbaran;
};

// A quantity, price or percentage as the editing row and the grid show it: "#,##0.00", or
// every decimal it has when it has more than two ("0,895"), so that reading the text back
// gives the very same number.
QString textoCifra(double valor);
// A line as the grids of sale documents show it: "Artículo", "Cantidad", "Precio", "%Dto.",
// "IVA", "Total línea".
QStringList celdasLinea(const LineaAlbaran& linea);

// The editing row under the grid: the article chosen and the typed texts.
struct EntradaLineaAlbaran {
    std::optional<qint64> idArticulo;
    QString concepto;
    QString cantidad = QStringLiteral("1");
    QString pvp;
    QString descuento;
    std::optional<qint64> idTipoIVA;
    QString serie;
};

enum class MarcaPlan { Ninguna, Activo, Caducado };

inline const QString kTablaAlbaranes = QStringLiteral("Albaranes");

// One editor per note on a workstation: a note open in another window of this workstation
// is not loaded here; that window comes forward (traerAlFrente) instead.
class AlbaranForm {
public:
    explicit AlbaranForm(Entorno& entorno);
    ~AlbaranForm();
    AlbaranForm(const AlbaranForm&) = delete;
    AlbaranForm& operator=(const AlbaranForm&) = delete;

    // Starts the screen as the caller asked: an existing note, or a new one with the
    // client, pet, visit and salesperson given (and the history's article added). False
    // when the note cannot be read or is open in another window here (now in front).
    bool abrir(const AperturaAlbaran& apertura);

    // --- state ---
    const Albaran& albaran() const { return a_; }
    bool modificado() const { return modificado_; }
    // The note can take changes: not invoiced, not collected, and not held by another workstation.
    bool editable() const;
    // "Albaranes de Venta - A/12" or "Albaranes de Venta - (Nuevo Albarán)".
    QString titulo() const;
    // The note's number as the user knows it: "A/12" ("" for a new note).
    QString numeroNota() const;
    // "Facturado: A-5", "Cobrado", "Pendiente", or "" for a new note.
    QString textoEstado() const;
    // The series can be chosen only on a new note (the number belongs to the series).
    bool serieEditable() const { return editable() && a_.esNuevo(); }
    // "Pa&gos Factura" once invoiced, otherwise "Pa&gos Albarán".
    QString textoPagos() const;
    QString textoVariasFacturas() const;
    const std::optional<ClienteVenta>& cliente() const { return cliente_; }
    const std::optional<MascotaVenta>& mascota() const { return mascota_; }
    // The client's pets, and the note's own pet when it belongs to a former owner.
    QList<OpcionVenta> mascotasCliente() const;
    // "Deuda Actual: 1.234,50 €"; empty with no client.
    QString textoDeuda() const;
    bool hayDeuda() const { return deuda_ > 0 && !importeNulo(deuda_); }
    MarcaPlan marcaPlan() const;
    QString textoPlan() const;
    // The client's pending notes are of several series: invoicing makes several invoices.
    bool variasFacturas() const { return seriesPendientes_.size() > 1; }

    // Drop-downs: the sale series (with the note's own, or "" when it has none), the
    // salespeople, the VAT types shown "21,00 %".
    QStringList series() const;
    QList<OpcionVenta> vendedores() const { return vendedores_; }
    QList<OpcionVenta> tiposIVA() const { return tiposIVA_; }

    // Header texts as shown: fecha "dd/mm/yyyy", hora "hh:mm", retencion "#,##0.00" or "".
    QString fecha() const { return fecha_; }
    QString hora() const { return hora_; }
    QString retencion() const { return retencionTexto_; }
    // Totals as shown ("#,##0.00"; the withholding negative).
    QString textoTotal(const QString& cual) const;

    // The grid: columns "Artículo", "Cantidad", "Precio", "%Dto.", "IVA", "Total línea".
    static QStringList columnas();
    QStringList celdas(int fila) const;

    // --- header commands; false when refused (message shown) ---
    bool elegirCliente();                // the client search
    bool ponerCliente(qint64 idCliente); // a client given by number
    bool ponerMascota(std::optional<qint64> idMascota);
    bool setFecha(const QString& texto);
    bool setHora(const QString& texto);
    bool setSerie(const QString& serie);
    bool setVendedor(std::optional<qint64> idVendedor);
    bool setRetencion(const QString& texto);
    bool setExento(bool exento);
    // Reload the client's commercial data (what the caller set stays) / the pet's health plan
    // (asking to reprice the lines when the plan in force changed).
    void RecuperarFichaComercial();
    void RecuperarPlanSalud();

    // --- lines ---
    // The editing row for an article: its price, discount and VAT chosen for this client.
    std::optional<EntradaLineaAlbaran> entradaArticulo(qint64 codigo);
    // The article search, then entradaArticulo.
    std::optional<EntradaLineaAlbaran> buscarArticulo(const QString& texto = {});
    EntradaLineaAlbaran entradaDeLinea(int fila) const;
    bool insertarLinea(const EntradaLineaAlbaran& entrada);
    bool modificarLinea(int fila, const EntradaLineaAlbaran& entrada);
    bool quitarLinea(int fila);

    // --- commands ---
    bool nuevo();
    bool buscar();
    bool cargar(qint64 idAlbaran);
    bool cargar(const QString& serie, qint64 numAlbaran);
    bool guardar();
    bool eliminar();
    // The note through a format of "DocAlbaranes" (or "NotaVenta"), to the preview.
    bool imprimir(bool notaVenta = false);
    // The same to a PDF file, without asking for a destination.
    bool exportarPdf(const QString& fichero, bool notaVenta = false);
    bool ticket();
    // True when the screen may close (changes saved or dropped as the user chose).
    bool cerrar();

    // After closing: the note and its invoice.
    std::optional<qint64> numAlbaran() const { return a_.numAlbaran; }
    std::optional<qint64> numFactura() const { return a_.numFactura; }
    QString serieFra() const { return a_.serieFactura; }

    // The collection screen of a note: opened when a save finds the note invoiced or
    // collected meanwhile, and by the payments button.
    std::function<void(qint64 idAlbaran)> abrirCobros;
    // The view has to show the note again (loaded, recalculated, new).
    std::function<void()> cambiado;
    // Brings the window forward when its note is opened again elsewhere here.
    std::function<void()> traerAlFrente;

private:
    bool comprobarSinCambiosAjenos(const QString& mensaje, const QString& titulo = {});
    void tomarEstado(const SituacionAlbaran& estado);
    bool rechazoPorEstado(const QString& accion);
    bool antesDeCambiar();
    void errorDeLectura(const QString& numero);
    bool ponerLeido(const Albaran& leido);
    void aplicarApertura();
    std::optional<qint64> planVigente() const;
    void preguntarRepreciar(std::optional<qint64> planAntes);
    // The line of an article for this client and pet, built as every path builds it (typed,
    // picked, the workstation's default, the history's article, repriced); nullopt when the
    // article cannot be read (noExiste says so) or its price is refused (the reason is shown).
    std::optional<LineaAlbaran> lineaDe(qint64 codigo, const QString& accion,
                                        const std::function<void()>& noExiste = {});
    std::optional<SituacionAlbaran> releer();
    bool requiereCliente(bool buscando);
    bool fallo(const QString& titulo, const QString& texto);
    void limpiar();
    void cargarListas();
    void cargarCliente(qint64 idCliente);
    void cargarMascota(std::optional<qint64> idMascota);
    void cargarCondiciones();
    ContextoPrecios contexto() const;
    bool planEnVigor() const;
    void repreciarLineas();
    std::optional<LineaAlbaran> leerEntrada(const EntradaLineaAlbaran& entrada);
    bool anadirArticuloPorDefecto(qint64 codigo);
    void avisarAntiguoPropietario();
    bool tomarBloqueo();
    bool preguntarGuardar(const QString& titulo);
    void notificar();
    void marcar();
    bool prepararImpresion();
    bool documento(const std::function<bool(const DatosDocumento&)>& enviar);

    Entorno& e_;
    AlbaranStore store_;
    Albaran a_;
    bool modificado_ = false;
    bool soloLectura_ = false; // another workstation holds the note
    std::optional<ClienteVenta> cliente_;
    std::optional<MascotaVenta> mascota_;
    QList<OpcionVenta> mascotas_;
    QList<CondicionEspecial> condicionesCliente_;
    QList<CondicionEspecial> condicionesPlan_;
    double deuda_ = 0;
    QStringList seriesPendientes_;
    QStringList series_;
    QList<OpcionVenta> vendedores_;
    QList<OpcionVenta> tiposIVA_;
    QString fecha_, hora_, retencionTexto_;
    AperturaAlbaran apertura_; // what the caller set of the client (kept while it is the client)
    ConfiguracionPuesto conf_; // this workstation's defaults, read when the screen opens
    BloqueoEdicion bloqueo_;
};
