#include "clinical/datos_plan_salud.h"

#include "clients/condiciones_form.h"
#include "clinical/plan_salud_store.h"

std::optional<PlanCarta> leerPlanCarta(Entorno& e, qint64 idPlan) {
    const auto plan = PlanSaludStore(e.db()).cargar(idPlan);
    if (!plan) return std::nullopt;
    PlanCarta p;
    p.Notas = plan->texto(QStringLiteral("Notas")).trimmed();
    CondicionesForm condiciones(e, DuenoCondiciones::PlanSalud);
    condiciones.cargar(idPlan);
    for (int i = 0; i < condiciones.filas().size(); ++i)
        p.condiciones << condiciones.celdas(i);
    return p;
}

DatosDocumento datosPlanSalud(const MascotaCarta& mascota, const ClienteCarta& propietario,
                              const PlanCarta& plan, const QDate& hoy) {
    static const QStringList nombres = {QStringLiteral("Articulo"), QStringLiteral("Seccion"),
                                        QStringLiteral("Familia"),  QStringLiteral("SubFamilia"),
                                        QStringLiteral("Precio"),   QStringLiteral("Tarifa"),
                                        QStringLiteral("Dto")};
    DatosDocumento d = datosCartaMascota(mascota, propietario, hoy);
    d.campos.append({QStringLiteral("NotasPlan"), plan.Notas});
    QList<CamposDocumento>& filas = d.filas[QStringLiteral("Condiciones")];
    for (const QStringList& celdas : plan.condiciones) {
        CamposDocumento fila;
        for (qsizetype i = 0; i < nombres.size(); ++i)
            fila.append({nombres.at(i), celdas.value(i)});
        filas << fila;
    }
    return d;
}
