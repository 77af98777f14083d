#pragma once
// The health plan screen's logic ("Mantenimiento de Planes de Salud"): the plan record held as
// texts (Nombre, FechaAlta, FechaBaja "dd/mm/yyyy", Notas, Aviso), its list of conditions
// (CondicionesForm, at least one), and the commands new, load, save and delete.
// Locks as in the client screen: the first change of an existing plan takes its record lock,
// deleting takes a "Baja" lock, a new plan takes none.
#include "app/formulario_registro.h"
#include "clients/condiciones_form.h"
#include "data/registro.h"

#include <QHash>
#include <optional>

inline const QString kPantallaPlanes = QStringLiteral("Mantenimiento de Planes de Salud");

class PlanSaludForm : public FormularioRegistro {
public:
    explicit PlanSaludForm(Entorno& entorno);

    // The fields the screen shows.
    static QStringList campos();

    void nuevo();
    // False, with the message shown, when the plan cannot be read.
    bool cargar(qint64 idPlan);
    std::optional<qint64> idPlan() const { return id_; }
    // "Mantenimiento de Planes de Salud - 3 - Plan Cachorro" or "... - (Nuevo Plan de Salud)".
    QString titulo() const;


    CondicionesForm& condiciones() { return condiciones_; }

    bool guardar();
    bool eliminar();

private:
    QStringList columnasEditables() const override { return campos(); }
    QString descripcionBloqueo() const override { return nombreGuardado_; }
    QString preguntaAbandonar() const override;
    bool fallo(const QString& titulo, const QString& texto, const QString& campo) {
        return FormularioRegistro::fallo(Icono::Exclamacion, titulo, texto, campo);
    }
    void mostrar(const Registro& r);

    QString nombreGuardado_;
    CondicionesForm condiciones_;
};
