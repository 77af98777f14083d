#include "clinical/plan_salud_store.h"

#include "data/esquema.h"

const DescriptorTabla& PlanSaludStore::tabla() {
    return descriptorRequerido(QStringLiteral("PlanesSalud"));
}

std::optional<Registro> PlanSaludStore::cargar(qint64 idPlan) {
    return RegistroStore(db_).cargar(tabla(), static_cast<qlonglong>(idPlan));
}

QList<Registro> PlanSaludStore::todos() {
    return RegistroStore(db_).buscar(tabla(), {}, {QStringLiteral("Nombre"), QStringLiteral("IdPlanSalud")});
}

qint64 PlanSaludStore::crear(Registro& r) {
    const qint64 id = RegistroStore(db_).crear(r).toLongLong();
    r.setValor(QStringLiteral("IdPlanSalud"), static_cast<qlonglong>(id));
    return id;
}

void PlanSaludStore::actualizar(Registro& r) {
    RegistroStore(db_).actualizar(r);
}

bool PlanSaludStore::eliminar(qint64 idPlan) {
    const DescriptorTabla& condiciones = descriptorRequerido(QStringLiteral("CondicionesEspeciales"));
    RegistroStore store(db_);
    store.ejecutar(QStringLiteral("DELETE FROM ") + condiciones.tabla +
                       QStringLiteral(" WHERE IdPlanSalud = ?"),
                   {static_cast<qlonglong>(idPlan)});
    Registro r(tabla());
    r.setValor(QStringLiteral("IdPlanSalud"), static_cast<qlonglong>(idPlan));
    return store.eliminar(r);
}

qint64 PlanSaludStore::contarMascotas(qint64 idPlan) {
    return RegistroStore(db_).contar(descriptorRequerido(QStringLiteral("Mascotas")),
                                     {QStringLiteral("IdPlanSalud = ?"), {static_cast<qlonglong>(idPlan)}});
}
