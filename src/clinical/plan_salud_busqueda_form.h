#pragma once
// The health plan search: by name, matched at the start, exactly or anywhere (upper and lower
// case alike); plans with a leaving date are left out unless the user includes them, and when
// every match has left the user is asked whether to see them anyway.
#include "app/entorno.h"

#include <QDate>
#include <QList>
#include <optional>

struct FilaPlanSalud {
    qint64 ClavePlanSalud = 0;
    QString DescripcionPlanSalud;
    QDate Alta;
    QString aviso; // the plan's warning text
    bool baja = false;
};

class PlanSaludBusquedaForm {
public:
    enum class Modo { Empieza, Exacto, Contiene };

    explicit PlanSaludBusquedaForm(Entorno& entorno) : e_(entorno) {}

    static QStringList columnas();

    QString texto;
    Modo modo = Modo::Empieza;
    bool incluirBajas = false;

    // Runs the search; false when the database failed. When every match has left and
    // incluirBajas is off, asks; on No the result is empty.
    bool buscar();
    const QList<FilaPlanSalud>& resultado() const { return resultado_; }
    // The cells of a row: name and registration date.
    QStringList celdas(int fila) const;

private:
    Entorno& e_;
    QList<FilaPlanSalud> resultado_;
};
