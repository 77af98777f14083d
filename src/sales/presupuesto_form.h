#pragma once
// The quote screen's logic ("Presupuestos"): a client (and pet), date, salesperson and lines
// priced exactly as a delivery note prices them (the client's tariff, discount, own VAT and
// commercial file, the pet's health plan in force), with the same arithmetic and totals. A quote
// is saved with the next number of its series, printed through the group "DocPresupuestos",
// made into a delivery note in one step, or rejected. Only a pending quote changes.
#include "app/bloqueo_edicion.h"
#include "app/entorno.h"
#include "documents/impresor_documentos.h"
#include "sales/albaran_form.h"
#include "sales/presupuesto_store.h"

#include <functional>
#include <optional>

inline const QString kTituloPresupuestos = QStringLiteral("Presupuestos");
inline const QString kTablaPresupuestos = QStringLiteral("Presupuestos");
inline const QString kTipoDocumentoPresupuesto = QStringLiteral("PRE");

struct AperturaPresupuesto {
    std::optional<qint64> IdCliente;
    std::optional<qint64> idMascota;
    std::optional<qint64> NumVisita;
    std::optional<qint64> IdVendedor;
    std::optional<qint64> IdPresupuesto; // an existing quote
};

class PresupuestoForm {
public:
    explicit PresupuestoForm(Entorno& entorno);
    ~PresupuestoForm();
    PresupuestoForm(const PresupuestoForm&) = delete;
    PresupuestoForm& operator=(const PresupuestoForm&) = delete;

    // False when the quote or client cannot be read (reported) or the quote is open in another
    // window here (now in front).
    bool abrir(const AperturaPresupuesto& apertura);

    const Presupuesto& presupuesto() const { return p_; }
    const std::optional<ClienteVenta>& cliente() const { return cliente_; }
    const QList<OpcionVenta>& mascotas() const { return mascotas_; }
    const QList<OpcionVenta>& vendedores() const { return vendedores_; }
    bool modificado() const { return modificado_; }
    bool editable() const { return p_.pendiente(); }
    // "Presupuestos - nº 7" or "Presupuestos - (Nuevo Presupuesto)".
    QString titulo() const;
    // "Pendiente", "Aceptado (albarán A/12)", "Rechazado"; "" for a new quote.
    QString textoEstado() const;
    QString textoTotal() const;
    QString fecha() const;

    bool elegirCliente();
    bool ponerMascota(std::optional<qint64> idMascota);
    bool setFecha(const QString& texto);
    bool setVendedor(std::optional<qint64> idVendedor);
    // The article at the price chosen for this client and pet; quantity "#,##0.00" typed.
    bool anadirArticulo(qint64 codigo, const QString& cantidad = QStringLiteral("1"));
    // The article code as typed ("Indique el artículo que desea incluir" when it is no code).
    bool anadirArticulo(const QString& codigo, const QString& cantidad);
    bool buscarArticulo(const QString& cantidad = QStringLiteral("1"));
    bool quitarLinea(int fila);

    bool nuevo();
    // Picks one of the client's quotes.
    bool abrirDelCliente();
    // Checks (client, at least one line) and saves.
    bool guardar();
    // Asks and makes the quote into a delivery note (saving it first), then opens the note
    // through abrirAlbaran.
    bool convertir();
    bool rechazar();
    bool imprimir(DestinoDocumento destino = DestinoDocumento::VistaPrevia, const QString& ficheroPdf = {});
    bool puedeCerrar();

    std::function<void(const AperturaAlbaran&)> abrirAlbaran;
    std::function<void()> traerAlFrente;
    // Told after every save (the visit the quote comes from shows it).
    std::function<void()> alGuardar;

private:
    bool fallo(const QString& texto);
    bool noEditable();
    void limpiar();
    void cargarCliente(qint64 idCliente);
    void cargarMascota(std::optional<qint64> idMascota);
    bool cargar(qint64 id);
    bool preguntarGuardar();
    bool tratarResultado(ResultadoPresupuesto r);
    // Before the first change of a saved quote: its record lock (refused: nothing changes).
    bool antesDeCambiar();
    std::optional<qint64> planVigente() const;
    // The plan that prices the quote changed with lines on it: asks and prices them again.
    void preguntarRepreciar(std::optional<qint64> planAntes);

    Entorno& e_;
    AlbaranStore ventas_;
    Presupuesto p_;
    bool modificado_ = false;
    std::optional<ClienteVenta> cliente_;
    std::optional<MascotaVenta> mascota_;
    QList<CondicionEspecial> condicionesCliente_, condicionesPlan_;
    QList<OpcionVenta> mascotas_, vendedores_;
    QString serieAlbaran_; // the note made from the quote, as "A/12"
    BloqueoEdicion bloqueo_;
};
