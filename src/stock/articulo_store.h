#pragma once
// Articles in the database: the record (through RegistroStore on the Articulos descriptor),
// the look-up lists the article screen offers, and the article search.
#include "data/registro.h"

#include <QList>
#include <QString>
#include <optional>

// One entry of a look-up list: the key as text and the text shown.
struct OpcionArticulo {
    QString clave;
    QString texto;
};

// What the article search filters by; empty fields do not filter.
struct FiltroArticulos {
    std::optional<qint64> codigo;
    QString descripcion;
    bool descripcionEnCualquierParte = false; // false: the description starts with the text
    QString codBarras;
    std::optional<qint64> seccion;
    std::optional<qint64> familia;
    std::optional<qint64> subfamilia;
    std::optional<qint64> laboratorio;
    bool incluirBajas = false; // withdrawn articles (ArtFechaBaja set) too
};

// One article as the search lists it.
struct FilaArticulo {
    qint64 codigo = 0;
    QString descripcion;
    double pvp1 = 0, pvp2 = 0, pvp3 = 0;
    std::optional<double> porcentajeIVA; // of the article's VAT type
    std::optional<qint64> dias;          // days of reminder
    bool baja = false;
};

// The Articulos descriptor of the catalogue; throws ErrorPrograma when the catalogue lacks it.
const DescriptorTabla& tablaArticulos();

class ArticuloStore {
public:
    explicit ArticuloStore(Database& db) : db_(db) {}

    std::optional<Registro> cargar(qint64 codigo);
    // Writing an article: a new one takes its code (set in r); deleting is false when it was
    // already gone. actualizarConSerie also gives the series to the article's lines on every
    // delivery note not yet invoiced, in one transaction with the article; the lines changed.
    void crear(Registro& r);
    void actualizar(Registro& r);
    int actualizarConSerie(Registro& r, const QString& serie);
    // Referido: delivery-note lines point at the article (nothing is deleted); its special
    // conditions go with it.
    enum class Baja { Eliminado, NoExiste, Referido };
    Baja eliminar(const Registro& r);
    // Whether a supplier with this code exists.
    bool existeProveedor(qint64 codigo);
    // The look-up list of a parameter table (key and Descripcion, or Nombre for suppliers),
    // ordered by the text. For Familias and Subfamilias a parent filters the list (IdSeccion,
    // IdFamilia); nullopt lists them all. Throws ErrorBD; an unknown table gives an empty list.
    QList<OpcionArticulo> opciones(const QString& tabla, std::optional<qint64> padre = std::nullopt);
    // The parent of a family (its section) or of a subfamily (its family).
    std::optional<qint64> padre(const QString& tabla, qint64 clave);

    // At most limite articles, ordered by description and code. All values bound.
    QList<FilaArticulo> buscar(const FiltroArticulos& filtro, int limite = 500);

private:
    Database& db_;
};
