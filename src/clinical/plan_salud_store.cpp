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

PlanSaludStore::Baja PlanSaludStore::eliminar(qint64 idPlan) {
    // Its special conditions go with it (their reference cascades).
    try {
        Transaction tx = db_.transaccion();
        if (contarMascotas(idPlan) > 0) return Baja::TieneMascotas;
        Registro r(tabla());
        r.setValor(QStringLiteral("IdPlanSalud"), static_cast<qlonglong>(idPlan));
        if (!RegistroStore(db_).eliminar(r)) return Baja::NoExiste;
        tx.commit();
        return Baja::Eliminado;
    } catch (const ErrorBD& e) {
        if (!esErrorDeReferencia(e)) throw;
        return Baja::TieneMascotas;
    }
}

qint64 PlanSaludStore::contarMascotas(qint64 idPlan) {
    return RegistroStore(db_).contar(descriptorRequerido(QStringLiteral("Mascotas")),
                                     {QStringLiteral("IdPlanSalud = ?"), {static_cast<qlonglong>(idPlan)}});
}
