#pragma once
// Reading and writing health plans (table PlanesSalud); the plan's conditions are kept by
// CondicionesForm in CondicionesEspeciales (IdPlanSalud).
#include "data/registro.h"

#include <optional>

class PlanSaludStore {
public:
    explicit PlanSaludStore(Database& db) : db_(db) {}

    static const DescriptorTabla& tabla();

    std::optional<Registro> cargar(qint64 idPlan);
    // Every plan, by name.
    QList<Registro> todos();
    qint64 crear(Registro& r);
    void actualizar(Registro& r);
    // Deletes the plan and its conditions in one transaction of its own, unless a pet is
    // enrolled (also one enrolled by another workstation meanwhile). Nothing is deleted
    // unless Eliminado.
    enum class Baja { Eliminado, NoExiste, TieneMascotas };
    Baja eliminar(qint64 idPlan);
    // Pets enrolled in the plan.
    qint64 contarMascotas(qint64 idPlan);

private:
    Database& db_;
};
