#pragma once
// What each workstation proposes by default (table ConfPuesto, one row per workstation
// name): the sales and credit series, the tariff for new clients, the species, client and
// article, the initial date, the automatic-saving interval and the automatic backup time.
// Other screens read them through cargar(entorno.puesto).
#include "data/database.h"
#include "data/descriptor.h"

#include <QDate>
#include <QList>
#include <QTime>
#include <optional>
#include <tuple>

struct ConfiguracionPuesto {
    QString Puesto;
    QString SerieVenta; // series of table Series with Tipo "V"; empty when not chosen
    QString SerieAbono; // series with Tipo "A"
    QString Tarifa;     // "TARIFA 1", "TARIFA 2", "TARIFA 3"; empty when not chosen
    std::optional<qint64> IdEspecie;
    std::optional<qint64> IdCliente;
    std::optional<qint64> IdArticulo;
    QDate FechaInicial;   // invalid when not set
    int AutoGuardado = 0; // minutes between automatic savings; 0 = off
    QTime HoraCopia;      // time of the automatic backup; invalid = no automatic backup
    qint64 versionFila = 0; // the row version read; not part of what the settings are

    bool operator==(const ConfiguracionPuesto& o) const {
        return std::tie(Puesto, SerieVenta, SerieAbono, Tarifa, IdEspecie, IdCliente, IdArticulo, FechaInicial,
                        AutoGuardado, HoraCopia) == std::tie(o.Puesto, o.SerieVenta, o.SerieAbono, o.Tarifa,
                                                             o.IdEspecie, o.IdCliente, o.IdArticulo,
                                                             o.FechaInicial, o.AutoGuardado, o.HoraCopia);
    }
};

// An entry of a drop-down: the stored key and the text shown.
struct OpcionLista {
    QVariant clave;
    QString texto;
};

inline const QString kSerieVenta = QStringLiteral("V");
inline const QString kSerieAbono = QStringLiteral("A");

class ConfPuestoStore {
public:
    explicit ConfPuestoStore(Database& db) : db_(db) {}

    // The defaults of that workstation; a workstation with no row gets everything empty,
    // automatic saving off and no automatic backup.
    ConfiguracionPuesto cargar(const QString& puesto);
    bool existe(const QString& puesto);
    // Inserts or replaces the row of c.Puesto.
    // Writes the workstation's defaults; an existing row only if its version is still
    // c.versionFila (ErrorRegistroCambiado otherwise). Returns the row's new version.
    qint64 guardar(const ConfiguracionPuesto& c);

    // Series of one type (kSerieVenta or kSerieAbono), by code: clave = code,
    // texto = code + " - " + description.
    QList<OpcionLista> series(const QString& tipo);
    // Records of a table given by its descriptor, ordered by the text column:
    // clave = key, texto = text column. In a table with an "Activo" column only the
    // records in use ("S") are offered, plus the one whose key is ademas (the value already
    // chosen). An absent table (nullptr) gives an empty list.
    QList<OpcionLista> opciones(const DescriptorTabla* tabla, const QVariant& ademas = {});
    // The text column of one record of a table, or nullopt when there is no such record.
    std::optional<QString> textoRegistro(const DescriptorTabla& tabla, qint64 clave);

private:
    Database& db_;
};
