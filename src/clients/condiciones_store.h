#pragma once
// The stored special conditions of a client's commercial file and of a health plan (table
// CondicionesEspeciales, one owner column each: IdCliente or IdPlanSalud), and the
// classification records the condition rows choose from.
#include "app/conf_puesto_store.h"
#include "data/database.h"

#include <QList>
#include <optional>

struct CondicionEspecial {
    std::optional<qint64> IdArticulo;
    std::optional<qint64> IdSeccion;
    std::optional<qint64> IdFamilia;
    std::optional<qint64> IdSubfamilia;
    std::optional<double> Precio;
    QString Tarifa; // "" or "TARIFA 1".."TARIFA 3"
    std::optional<double> Descuento;
    // Texts shown in the list (not stored).
    QString Articulo, Seccion, Familia, SubFamilia;
};

enum class DuenoCondiciones { Cliente, PlanSalud };

class CondicionesStore {
public:
    explicit CondicionesStore(Database& db) : db_(db) {}

    // The rows of one owner in the order they were stored (the texts are left empty).
    QList<CondicionEspecial> leer(DuenoCondiciones dueno, qint64 id);
    // Replaces the rows of one owner; runs inside the caller's transaction.
    void reemplazar(DuenoCondiciones dueno, qint64 id, const QList<CondicionEspecial>& filas);
    // The records of a table that hang from padre through columnaPadre, by their text.
    QList<OpcionLista> hijas(const DescriptorTabla& t, const QString& columnaPadre, qint64 padre);

private:
    Database& db_;
};
