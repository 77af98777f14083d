#pragma once
// The printed fields of a pet's health plan (group "DocPlanes"): the fields of a letter about
// the pet (clients/datos_cartas.h: PlanSalud and CaducidadPlan among them) plus NotasPlan and
// the block Condiciones, one row per special condition of the plan with Articulo, Seccion,
// Familia, SubFamilia, Precio, Tarifa and Dto as the plan screen's list shows them.
#include "app/entorno.h"
#include "clients/datos_cartas.h"

#include <QStringList>

struct PlanCarta {
    QString Notas;
    QList<QStringList> condiciones; // the seven texts of each row, in the list's order
};

// The plan's notes and conditions; nullopt when the plan no longer exists. Throws ErrorBD.
std::optional<PlanCarta> leerPlanCarta(Entorno& e, qint64 idPlan);

DatosDocumento datosPlanSalud(const MascotaCarta& mascota, const ClienteCarta& propietario,
                              const PlanCarta& plan, const QDate& hoy);
