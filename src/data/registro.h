#pragma once
// A generic record of any table in the catalogue, and the operations every screen may use
// on records: load by key, search, create, update, delete, count, execute.
#include "data/database.h"
#include "data/descriptor.h"

#include <QList>
#include <QVariant>
#include <optional>

class Registro {
public:
    explicit Registro(const DescriptorTabla& descriptor);

    const DescriptorTabla& descriptor() const { return *d_; }
    QVariant valor(const QString& columna) const;
    void setValor(const QString& columna, const QVariant& valor);
    QString texto(const QString& columna) const { return valor(columna).toString(); }
    // For list columns: the stored value and the text shown.
    QString valorInterno(const QString& columna) const { return texto(columna); }
    QString valorExterno(const QString& columna) const;
    // Value of the first key column.
    QVariant clave() const;
    // An independent copy for editing.
    Registro getCopia() const { return *this; }
    // A new empty record of the same table.
    Registro nuevaInstancia() const { return Registro(*d_); }
    const QVariantList& valores() const { return valores_; }

private:
    int indice(const QString& columna) const;
    const DescriptorTabla* d_;
    QVariantList valores_;
};

// A save found the row changed since it was read: another workstation saved it (its row version
// moved on) or deleted it. Nothing was written.
class ErrorRegistroCambiado : public ErrorBD {
public:
    ErrorRegistroCambiado(const DescriptorTabla& t, const QVariant& clave, bool eliminado);
    bool eliminado() const { return eliminado_; }

private:
    bool eliminado_;
};

// True for a failure because a child row still points at the row being deleted, or at a
// parent that no longer exists (foreign key), on either engine.
bool esErrorDeReferencia(const ErrorBD& error);

// A condition on columns with its values bound: {"Descripcion = ?", {texto}}.
struct Condicion {
    QString sql;
    QVariantList valores;
    bool vacia() const { return sql.trimmed().isEmpty(); }
};

// Normalises a value read from either engine to the column's type
// (dates as QDate, times as QTime, yes/no as bool, numbers as numbers).
QVariant valorDesdeBD(TipoColumna tipo, const QVariant& crudo);

class RegistroStore {
public:
    explicit RegistroStore(Database& db) : db_(db) {}

    std::optional<Registro> cargar(const DescriptorTabla& t, const QVariant& clave);
    // orden: column names of the table, each optionally followed by " DESC".
    QList<Registro> buscar(const DescriptorTabla& t, const Condicion& condicion = {},
                           const QStringList& orden = {});
    // Inserts the record and returns its key (the new number for an automatic key).
    QVariant crear(Registro& r);
    // Saves a record read earlier: writes the columns a screen edits (every column but the key,
    // the row version and those kept by their operations, DescriptorColumna::deOperacion), or
    // only the columns given, and moves the row version on, in one statement whose condition
    // carries the version read. Throws ErrorRegistroCambiado, writing nothing, when another
    // connection saved or deleted the row since; r takes the new version.
    void actualizar(Registro& r, const QStringList& columnas = {});
    // Deletes the row with the record's key; false when there was no such row.
    bool eliminar(const Registro& r);
    // The rows whose column (one of the table's) holds the value.
    QList<Registro> buscarPor(const DescriptorTabla& t, const QString& columna, const QVariant& valor,
                              const QStringList& orden = {});
    // Whether a row with the record's key exists.
    bool existe(const Registro& r);
    // "SELECT COUNT(*) FROM " + tabla + condition; 0 for an empty table.
    qint64 contar(const DescriptorTabla& t, const Condicion& condicion = {});
    int ejecutar(const QString& sql, const QVariantList& valores = {});

private:
    QString ordenSql(const DescriptorTabla& t, const QStringList& orden) const;
    QString listaColumnas(const DescriptorTabla& t) const;
    Registro leerFila(const DescriptorTabla& t, QSqlQuery& q) const;
    QString condicionClave(const DescriptorTabla& t) const;
    QVariantList valoresClave(const Registro& r) const;
    Database& db_;
};
