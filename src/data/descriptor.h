#pragma once
// Table descriptors: one definition per table, from which the schema SQL, the generic
// records and the generic list and tree editors are all made.
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

class Registro;

enum class TipoColumna {
    Entero,       // 64-bit whole number
    Autonumerico, // whole-number key handed out by the database
    Decimal,      // double
    Texto,        // text up to longitud characters
    Memo,         // long text
    Fecha,        // date
    Hora,         // time of day
    FechaHora,    // date and time
    Logico,       // yes/no
};

struct DescriptorColumna {
    QString nombre;      // column name
    QString Descripcion; // label
    int longitud = 0;    // maximum typed length (texts)
    TipoColumna tipo = TipoColumna::Texto;
    bool Opcional = true;      // may stay empty
    QStringList ValorInternoS; // closed list: values stored...
    QStringList ValorExternoS; // ...and texts shown
    int desde = 1;             // schema version that introduced the column
    QString porDefecto;        // SQL default literal (a number or a quoted constant), optional
    // Kept by the operation that owns it (a balance, the stock, a last date, the current owner):
    // saving the record from a screen never writes it.
    bool deOperacion = false;
    // Plumbing of the program (the row version): never shown, typed or listed.
    bool interna = false;

    bool esLista() const { return !ValorInternoS.isEmpty(); }
    QString valorExterno(const QString& interno) const;
    QString valorInterno(const QString& externo) const;
};

struct DescriptorIndice {
    QString nombre;
    QStringList columnas;
    bool unico = false;
    int desde = 1;
};

// A rule of one table that the generic record form checks on saving, after the mandatory
// columns and the values: the message (a critical box titled "¡Atención!") and the column
// that takes the focus.
struct FalloValidacion {
    QString texto;
    QString columna;
};

// A child row that belongs to a parent row: columna of this table holds the key of padre.
// enCascada: the child goes with its parent (the lines of a note); otherwise a parent that still
// has children cannot be deleted.
struct DescriptorReferencia {
    QString columna;
    QString padre;
    bool enCascada = false;
    int desde = 1;
};

struct DescriptorTabla {
    QString tabla;     // table name
    QString descTabla; // singular description for messages and titles
    QList<DescriptorColumna> columnaS;
    QStringList clave;    // primary key columns
    QString columnaPadre; // for tree tables: the column that holds the parent's key
    QString columnaTexto; // the column shown for a record in lists and trees
    QList<DescriptorIndice> indices;
    QList<DescriptorReferencia> referencias;
    int desde = 1;          // schema version that introduced the table
    bool parametro = false; // maintained through the generic editors
    std::function<std::optional<FalloValidacion>(const Registro&)> validacion;

    const DescriptorColumna* columna(const QString& nombre) const;
    bool tieneColumna(const QString& nombre) const { return columna(nombre) != nullptr; }
    bool claveAutonumerica() const;
    bool esArbol() const { return !columnaPadre.isEmpty(); }
    // Carries the row version (column kColumnaVersion): a save whose version no longer matches
    // the stored one writes nothing.
    bool versionada() const { return tieneColumna(kColumnaVersion); }
    static inline const QString kColumnaVersion = QStringLiteral("VersionFila");
};

// Small builders so that table definitions read as a list.
DescriptorColumna col(const QString& nombre, TipoColumna tipo, const QString& descripcion, int longitud = 0,
                      bool opcional = true, int desde = 1);
// A table keyed by its first column, introduced by schema version desde.
DescriptorTabla tablaDe(int desde, const QString& nombre, const QString& descripcion,
                        const QList<DescriptorColumna>& columnas, const QString& columnaTexto,
                        bool parametro = false);
DescriptorColumna colLista(const QString& nombre, const QString& descripcion, const QStringList& internos,
                           const QStringList& externos, bool opcional = true);
// "Activo" Sí/No ("S"/"N", "S" by default): a value no longer in use is kept for the records
// that name it but marked "No" rather than deleted.
DescriptorColumna colActivo(int desde = 1);
// An index named "IX_" + table + "_" + columns.
DescriptorIndice indiceDe(const QString& tabla, const QStringList& columnas, int desde = 1,
                          bool unico = false);
