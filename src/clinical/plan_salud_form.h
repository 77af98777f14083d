#pragma once
// The health plan screen's logic ("Mantenimiento de Planes de Salud"): the plan record held as
// texts (Nombre, FechaAlta, FechaBaja "dd/mm/yyyy", Notas, Aviso), its list of conditions
// (CondicionesForm, at least one), and the commands new, load, save and delete.
// Locks as in the client screen: the first change of an existing plan takes its record lock,
// deleting takes a "Baja" lock, a new plan takes none.
#include "app/bloqueo_edicion.h"
#include "app/entorno.h"
#include "clients/condiciones_form.h"
#include "data/registro.h"

#include <QHash>
#include <optional>

inline const QString kPantallaPlanes = QStringLiteral("Mantenimiento de Planes de Salud");

class PlanSaludForm {
public:
    explicit PlanSaludForm(Entorno& entorno);

    // The fields the screen shows.
    static QStringList campos();

    void nuevo();
    // False, with the message shown, when the plan cannot be read.
    bool cargar(qint64 idPlan);
    bool esNuevo() const { return !id_; }
    std::optional<qint64> idPlan() const { return id_; }
    // "Mantenimiento de Planes de Salud - 3 - Plan Cachorro" or "... - (Nuevo Plan de Salud)".
    QString titulo() const;

    QString texto(const QString& campo) const { return textos_.value(campo); }
    // False when the change was refused (the record lock).
    bool setTexto(const QString& campo, const QString& texto);
    bool modificado() const { return modificado_; }

    CondicionesForm& condiciones() { return condiciones_; }

    bool guardar();
    bool eliminar();
    void cerrar();
    // Before leaving a record with unsaved changes (new record, another one, closing): asks
    // whether to lose them; true when the screen may go on.
    bool puedeAbandonar();

    // The field that should take the focus after a refusal.
    QString foco;

private:
    bool bloquear();
    bool fallo(const QString& titulo, const QString& texto, const QString& campo);
    void mostrarRegistro();

    Entorno& e_;
    Registro registro_;
    std::optional<qint64> id_;
    QHash<QString, QString> textos_;
    QString nombreGuardado_;
    bool modificado_ = false;
    CondicionesForm condiciones_;
    BloqueoEdicion bloqueo_;
};
