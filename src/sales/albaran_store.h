#pragma once
// Reading and writing delivery notes (tables Albaranes and LineasAlbaran), and what the
// delivery-note screen reads about clients, pets and articles to price its lines.
#include "data/database.h"
#include "sales/albaran.h"
#include "sales/precios.h"

#include <QList>
#include <optional>

// What the screen shows and prints of a client.
struct ClienteVenta {
    qint64 id = 0;
    QString nombre, dni, direccion, poblacion, codigoPostal, provincia;
    QString tarifa;
    double dtoGeneral = 0;
    std::optional<qint64> idTipoIVA;     // the client's own VAT type
    std::optional<double> porcentajeIVA; // and its percentage (none: the type no longer exists)
    bool exento = false;
    bool empresaExtranjero = false;
    QString lopd = QStringLiteral("0");
};

struct MascotaVenta {
    qint64 id = 0;
    QString nombre;
    qint64 idCliente = 0; // the owner now
    std::optional<qint64> idPlanSalud;
    QString plan;        // the plan's name
    QDate caducidadPlan; // the pet's enrolment ends; invalid: no expiry
    QDate altaPlan;      // the plan's registration and leaving dates; invalid: none
    QDate bajaPlan;

    // On that date (the note's) the plan exists, has not been withdrawn and the pet's enrolment
    // has not expired: its conditions price the note's lines.
    bool planEnVigor(const QDate& fecha) const {
        return idPlanSalud && (!altaPlan.isValid() || altaPlan <= fecha) &&
               (!bajaPlan.isValid() || bajaPlan > fecha) &&
               (!caducidadPlan.isValid() || caducidadPlan >= fecha);
    }
};

// What prices a sale document (a delivery note, a quote): the client's tariff, discount, own
// VAT and commercial file, and the pet's health plan while it is in force on the document's date.
ContextoPrecios contextoVenta(const std::optional<ClienteVenta>& cliente, const QList<CondicionEspecial>& condicionesCliente,
                              const std::optional<MascotaVenta>& mascota, const QList<CondicionEspecial>& condicionesPlan,
                              const QDate& fecha);

// The lines of a sale document in their order: tabla "LineasAlbaran" (clave "IdAlbaran") of a
// note, "LineasPresupuesto" ("IdPresupuesto") of a quote. Escribir adds them after the
// document's existing ones are gone.
QList<LineaAlbaran> leerLineasVenta(Database& db, const QString& tabla, const QString& clave, qint64 id);
void escribirLineasVenta(Database& db, const QString& tabla, const QString& clave, qint64 id, const Albaran& a);

// The state of a stored note as another workstation may have left it.
struct SituacionAlbaran {
    std::optional<qint64> numFactura;
    QString serieFactura;
    bool cobrado = false;
    double total = 0;
    double pendiente = 0;
    qint64 versionFila = 0;
    bool facturadoOCobrado() const;
};

struct OpcionVenta {
    qint64 id = 0;
    QString texto;
};

// What became of a save or a deletion. An existing note is written or deleted only while it
// is neither invoiced nor collected (the condition is part of the statement itself).
// CambiadoEnOtroPuesto: saved by another workstation since it was read (its row version moved on).
enum class ResultadoAlbaran { Hecho, Cancelado, FacturadoOCobrado, NoExiste, CambiadoEnOtroPuesto };
struct GuardadoAlbaran {
    ResultadoAlbaran resultado = ResultadoAlbaran::Hecho;
    explicit operator bool() const { return resultado == ResultadoAlbaran::Hecho; }
};

class AlbaranStore {
public:
    explicit AlbaranStore(Database& db) : db_(db) {}

    // The note with its lines in order; nullopt when it does not exist. Throws ErrorBD.
    std::optional<Albaran> cargar(qint64 idAlbaran);
    std::optional<qint64> buscarPorNumero(const QString& serie, qint64 numAlbaran);
    std::optional<SituacionAlbaran> estado(qint64 idAlbaran);

    // Writes the note and its lines in one transaction (joining the caller's). A new note
    // takes the next free number of its series first; a counter held by another workstation
    // right now throws ErrorBD (esErrorDeConcurrencia), and the caller tries the whole save
    // again (reintentarNumeracion). An existing note invoiced or collected by now is left as
    // it is (FacturadoOCobrado), one deleted meanwhile gives NoExiste, one saved elsewhere
    // since it was read CambiadoEnOtroPuesto. Nothing is written unless Hecho, which sets
    // IdAlbaran, numAlbaran, pendiente and the row version.
    GuardadoAlbaran guardar(Albaran& albaran);
    // Deletes the note and its lines (a quote made into it becomes pending again): Hecho,
    // NoExiste, FacturadoOCobrado or CambiadoEnOtroPuesto (nothing deleted).
    ResultadoAlbaran eliminar(qint64 idAlbaran, qint64 versionLeida);

    std::optional<ClienteVenta> cliente(qint64 idCliente);
    std::optional<MascotaVenta> mascota(qint64 idMascota);
    QList<OpcionVenta> mascotasDe(qint64 idCliente);
    std::optional<ArticuloVenta> articulo(qint64 codigo);
    QList<CondicionEspecial> condicionesCliente(qint64 idCliente);
    QList<CondicionEspecial> condicionesPlan(qint64 idPlanSalud);
    std::optional<qint64> tipoIVACero();
    // The VAT type of that percentage (the lowest key of several); none when there is none.
    std::optional<qint64> tipoIVADePorcentaje(double porcentaje);
    std::optional<double> porcentajeIVA(qint64 idTipoIVA);

    // What the client still owes on its delivery notes.
    double deuda(qint64 idCliente);
    // The series of the client's notes pending invoicing (several: several invoices).
    QStringList seriesPendientes(qint64 idCliente);

    QList<OpcionVenta> vendedores(std::optional<qint64> ademas = {});
    QList<OpcionVenta> tiposIVA(std::optional<qint64> ademas = {});
    QStringList seriesVenta();
    QString nombreVendedor(std::optional<qint64> id);

private:
    ResultadoAlbaran sinCambiar(qint64 idAlbaran, qint64 versionLeida);
    Database& db_;
};
