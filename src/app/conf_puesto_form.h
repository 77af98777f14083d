#pragma once
// The workstation configuration screen's logic. The receipt printer is section
// IMPRESORA TICKETS of this workstation's PRAMELVIX.INI (written back line by line, so
// comments, other keys and other sections stay as they were); the defaults are the
// workstation's row of ConfPuesto.
//
// TIPO of the receipt printer: "0" none, "1" a printer of the system, "2" a printer on a
// serial port. The default client and article can only be chosen through the search
// (elegirCliente / elegirArticulo); a number typed by hand is refused on saving.
#include "app/conf_puesto_store.h"
#include "app/entorno.h"

class ConfPuestoForm {
public:
    explicit ConfPuestoForm(Entorno& entorno);

    inline static const QString kSinImpresora = QStringLiteral("0");
    inline static const QString kImpresoraSistema = QStringLiteral("1");
    inline static const QString kImpresoraSerie = QStringLiteral("2");

    // The choices offered, in order, and the default of each.
    static QStringList puertos();     // "COM1".."COM16" (any port dispositivoSerie accepts is too)
    static QStringList velocidades(); // "110".."256000"
    static QStringList paridades();
    static QStringList bitsDatos();  // "4".."8"
    static QStringList bitsParada(); // "1", "1.5", "2"
    static QStringList tarifas();    // "TARIFA 1".."TARIFA 3"
    static ImpresoraTickets impresoraPorDefecto();
    inline static const int kMaxPasadas = 9;
    inline static const int kMaxAutoGuardado = 999;

    // Printers of the system offered for TIPO "1" (the window passes QPrinterInfo's list).
    void setImpresorasSistema(const QStringList& nombres) { impresorasSistema_ = nombres; }
    // The system's printers plus the configured one when it is not among them.
    QStringList impresorasSistema() const;

    // The tables the searches and lookups go through: by default the catalogue's
    // Clientes, Articulos and Especies (nullptr while a table does not exist).
    const DescriptorTabla* tablaClientes() const { return tablaClientes_; }
    const DescriptorTabla* tablaArticulos() const { return tablaArticulos_; }
    const DescriptorTabla* tablaEspecies() const { return tablaEspecies_; }
    void setTablaClientes(const DescriptorTabla* t) { tablaClientes_ = t; }
    void setTablaArticulos(const DescriptorTabla* t) { tablaArticulos_ = t; }
    void setTablaEspecies(const DescriptorTabla* t) { tablaEspecies_ = t; }

    // The records of a table a default is chosen from (ConfPuestoStore::opciones). Throws ErrorBD.
    QList<OpcionLista> opciones(const DescriptorTabla* tabla);

    // Reads PRAMELVIX.INI and this workstation's defaults. A default client or article
    // that no longer exists is reported and left empty. False when the database failed.
    bool cargar();
    // Checks in order and writes both; nothing is written when a check fails.
    bool guardar();

    // The fields.
    ImpresoraTickets impresora;
    QString serieVenta, serieAbono, tarifa;
    QVariant especie;     // key of the species; null when none
    QString fechaInicial; // "dd/mm/yyyy" or empty
    int autoGuardado = 0; // minutes; 0 = off
    QString horaCopia;    // "hh:mm" or empty = no automatic backup

    // Choices read by cargar().
    const QList<OpcionLista>& seriesVenta() const { return seriesVenta_; }
    const QList<OpcionLista>& seriesAbono() const { return seriesAbono_; }
    const QList<OpcionLista>& especies() const { return especies_; }

    // Default client and article: the text of the number field, whether it was chosen
    // through the search, and the name found.
    const QString& textoCliente() const { return cliente_.texto; }
    const QString& nombreCliente() const { return cliente_.nombre; }
    bool clienteBuscado() const { return cliente_.buscado; }
    const QString& textoArticulo() const { return articulo_.texto; }
    const QString& nombreArticulo() const { return articulo_.nombre; }
    bool articuloBuscado() const { return articulo_.buscado; }
    // Typed by hand: the number no longer counts as chosen (an empty text means none).
    void escribirCliente(const QString& texto) { escribir(cliente_, texto); }
    void escribirArticulo(const QString& texto) { escribir(articulo_, texto); }
    // Chosen through the search; false (with the access error) when it does not exist.
    bool elegirCliente(qint64 numero);
    bool elegirArticulo(qint64 numero);

    enum class Campo {
        Impresora,
        SerieVenta,
        Tarifa,
        SerieAbono,
        Cliente,
        Articulo,
        Especie,
        Puerto,
        NumPasadas,
        FechaInicial,
        AutoGuardado,
        HoraCopia
    };
    // The field that should take the focus after a refusal.
    Campo foco() const { return foco_; }

    QString rutaIni() const;

private:
    qint64 versionFila_ = 0; // of the workstation's row, as read
    struct Elegido {
        QString texto;
        QString nombre;
        bool buscado = true;
    };
    static void escribir(Elegido& e, const QString& texto);
    bool elegir(Elegido& e, const DescriptorTabla* tabla, qint64 numero, bool esCliente);
    void normalizarImpresora();
    bool rechazar(const QString& texto, Campo campo);
    bool comprobar();
    bool escribirIni();

    Entorno& e_;
    QStringList impresorasSistema_;
    const DescriptorTabla* tablaClientes_;
    const DescriptorTabla* tablaArticulos_;
    const DescriptorTabla* tablaEspecies_;
    QList<OpcionLista> seriesVenta_, seriesAbono_, especies_;
    Elegido cliente_, articulo_;
    Campo foco_ = Campo::Impresora;
};

// This workstation's row of ConfPuesto, for the main window (automatic saving and backup);
// nullopt, with the database error shown, when it cannot be read.
std::optional<ConfiguracionPuesto> leerConfiguracionPuesto(Entorno& e);
