#pragma once
// The invoicing series of an article follows from its classification. The most specific
// level that names a series wins: the article's own series, then its subfamily's, then its
// family's, then its section's. No series anywhere means no specific series (the delivery
// note's own series applies).
//
// When the series that applies to an article changes, the lines of every delivery note not
// yet invoiced (Albaranes.NumFactura empty) that hold the article take the new series. That
// rewrite runs in one transaction, with the database locked for administration by the caller
// so that no other workstation works meanwhile.
#include "data/database.h"

#include <QString>
#include <optional>

// The series named at each level of an article's classification ("" when a level names none).
struct SeriesClasificacion {
    QString propia;
    QString subfamilia;
    QString familia;
    QString seccion;
};

// The series that applies: the first non-blank of propia, subfamilia, familia, seccion,
// trimmed; "" when none names one.
QString serieAplicable(const SeriesClasificacion& s);

// The question asked before the rewrite when saving an article changed its series.
// clasificacion names what changed ("sección", "familia", "subfamilia", "serie propia");
// an empty serie means no specific series applies now.
QString preguntaCambioSerieArticulo(const QString& clasificacion, const QString& serie);
// The question asked when the series of a subfamily changes in its list editor.
QString preguntaCambioSerieSubfamilia(const QString& descripcion);
inline const QString kTituloCambioSerie = QStringLiteral("Atención");
inline const QString kActualizacionCorrecta = QStringLiteral("Actualización realizada correctamente.");

class SeriesArticuloStore {
public:
    explicit SeriesArticuloStore(Database& db) : db_(db) {}

    // The series named by each level for this classification; ids that are absent, or rows
    // that no longer exist, name none. Throws ErrorBD.
    SeriesClasificacion series(const QString& propia, std::optional<qint64> seccion,
                               std::optional<qint64> familia, std::optional<qint64> subfamilia);
    // The series that applies now to a stored article; nullopt when the article is gone.
    std::optional<QString> serieDeArticulo(qint64 articulo);

    // Sets the series on the lines holding the article of every delivery note not yet
    // invoiced; lines of invoiced notes are left as they are. Returns the lines changed.
    // Joins the caller's transaction, if any. Throws ErrorBD.
    int reescribirLineasPendientes(qint64 articulo, const QString& serie);

    // Gives a subfamily a new series and rewrites, for every article of it, the series on the
    // pending delivery-note lines (an article with its own series keeps it). All in one
    // transaction: a failure leaves the subfamily and every line as they were. Returns the
    // lines changed. Throws ErrorBD (also when the subfamily no longer exists).
    int cambiarSerieSubfamilia(qint64 subfamilia, const QString& serie);

private:
    QString serieDe(const QString& tabla, const QString& clave, std::optional<qint64> id);
    Database& db_;
};
