#pragma once
// Reports left in the database by an operation that failed on a workstation, so that the
// workstation shows them at its next start. An invoicing run that could not create an
// invoice leaves the key "FACTURA NO CREADA EN PUESTO:" + workstation.
#include "data/database.h"

#include <QDateTime>
#include <QList>

inline const QString kPrefijoFacturaNoCreada = QStringLiteral("FACTURA NO CREADA EN PUESTO:");

struct EntradaLog {
    qint64 id = 0;
    QString clave;
    QDate fecha;
    QTime hora;
    QString puesto;
    QString usuario;
};

class LogErroresStore {
public:
    explicit LogErroresStore(Database& db) : db_(db) {}
    void anotar(const QString& clave, const QDateTime& momento, const QString& puesto,
                const QString& usuario);
    QList<EntradaLog> buscar(const QString& clave);
    void borrar(qint64 id);

private:
    Database& db_;
};

// "Origen : Log encontrado al arrancar el puesto" / "...en el procedimiento de facturación".
inline const QString kOrigenLogArranque = QStringLiteral("Log encontrado al arrancar el puesto");
inline const QString kOrigenLogFacturacion =
    QStringLiteral("Log producido en el procedimiento de facturación");

// The report of an invoice that could not be created.
QString informeFacturaNoCreada(const QDate& fecha, const QTime& hora, const QString& puesto,
                               const QString& usuario, const QString& origen);
