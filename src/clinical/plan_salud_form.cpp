#include "clinical/plan_salud_form.h"

#include "app/guardado_registro.h"

#include "app/ficha_form.h"
#include "app/login_form.h"
#include "clinical/plan_salud_store.h"
#include "core/command_trace.h"
#include "core/formatos.h"

namespace {
const QString kEnPantalla = QStringLiteral(" en el 'Mantenimiento de Planes de Salud'");
}

PlanSaludForm::PlanSaludForm(Entorno& entorno)
    : FormularioRegistro(entorno, PlanSaludStore::tabla()), condiciones_(entorno, DuenoCondiciones::PlanSalud) {
    condiciones_.antesDeCambiar = [this] {
        if (!bloquear()) return false;
        modificado_ = true;
        return true;
    };
    nuevo();
}

QStringList PlanSaludForm::campos() {
    return {QStringLiteral("Nombre"), QStringLiteral("FechaAlta"), QStringLiteral("FechaBaja"),
            QStringLiteral("Notas"), QStringLiteral("Aviso")};
}

void PlanSaludForm::mostrar(const Registro& r) {
    mostrarRegistro(r);
    nombreGuardado_ = r.texto(QStringLiteral("Nombre")).trimmed();
}

void PlanSaludForm::nuevo() {
    Registro r(PlanSaludStore::tabla());
    empezarNuevo(r);
    r.setValor(QStringLiteral("FechaAlta"), e_.reloj().hoy());
    condiciones_.cargar(std::nullopt);
    mostrar(r);
}

bool PlanSaludForm::cargar(qint64 idPlan) {
    if (!ocupar(idPlan)) return false;
    std::optional<Registro> leido;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar un Plan de Salud") + kEnPantalla);
    const bool ok = traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer el Plan de Salud"));
        leido = PlanSaludStore(e_.db()).cargar(idPlan);
        if (!leido) return;
        traza.paso(QStringLiteral("Leer las condiciones"));
        condiciones_.cargar(idPlan);
    });
    if (!ok || !leido) {
        // The record shown stays, with its own conditions (a failure may have left the list
        // half read).
        e_.editores.soltar(this);
        if (id_) ocupar(*id_);
        CommandTrace volver(e_.dialogs(), QStringLiteral("volver a leer las condiciones") + kEnPantalla);
        volver.ejecutar([&] { condiciones_.cargar(id_); });
    }
    if (!ok) return false;
    if (!leido) {
        e_.dialogs().error(QStringLiteral("Error al intentar acceder al PlanSalud numero ") +
                               QString::number(idPlan) + QLatin1Char('.'),
                           QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede ") +
                               QStringLiteral("que este PlanSalud haya sido eliminado."));
        return false;
    }
    bloqueo_.liberar();
    id_ = idPlan;
    mostrar(*leido);
    return true;
}

QString PlanSaludForm::titulo() const {
    if (!id_) return kPantallaPlanes + QStringLiteral(" - (Nuevo Plan de Salud)");
    return kPantallaPlanes + QStringLiteral(" - ") + QString::number(*id_) + QStringLiteral(" - ") +
           nombreGuardado_;
}

bool PlanSaludForm::guardar() {
    foco.clear();
    const QString tituloFecha = QStringLiteral("Error en fecha");
    if (!texto(QStringLiteral("FechaAlta")).trimmed().isEmpty() &&
        !leerFecha(texto(QStringLiteral("FechaAlta"))))
        return fallo(tituloFecha, QStringLiteral("La fecha de Alta introducida no es válida."),
                     QStringLiteral("FechaAlta"));
    if (!texto(QStringLiteral("FechaBaja")).trimmed().isEmpty() &&
        !leerFecha(texto(QStringLiteral("FechaBaja"))))
        return fallo(tituloFecha, QStringLiteral("La fecha de Baja introducida no es válida."),
                     QStringLiteral("FechaBaja"));
    const QString nombre = texto(QStringLiteral("Nombre")).trimmed();
    if (id_ && nombre != nombreGuardado_ &&
        !e_.dialogs().preguntar(
            Icono::Pregunta, QStringLiteral("Atención"),
            QStringLiteral("Ha cambiado el nombre de este Plan de Salud. ¿Confirma que desea "
                           "guardar esta modificación?")))
        return false;
    if (nombre.isEmpty())
        return fallo(kTituloObligatorios, QStringLiteral("Debe informar el nombre del Plan de Salud"),
                     QStringLiteral("Nombre"));
    if (condiciones_.filas().isEmpty())
        return fallo(kTituloObligatorios,
                     QStringLiteral("Debe informar al menos una condición en el listado"), QString());
    auto leido = leerTextos();
    if (!leido) return false;
    Registro r = *leido;
    r.setValor(QStringLiteral("Nombre"), nombre);
    const bool eraNuevo = !id_;
    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar un Plan de Salud") + kEnPantalla);
    const auto resultado = escribir(traza, r, [&] {
        PlanSaludStore store(e_.db());
        if (eraNuevo) {
            traza.paso(QStringLiteral("Crear el Plan de Salud"));
            store.crear(r);
        } else {
            traza.paso(QStringLiteral("Actualizar el Plan de Salud"));
            store.actualizar(r);
        }
        traza.paso(QStringLiteral("Guardar las condiciones"));
        condiciones_.guardar(r.valor(QStringLiteral("IdPlanSalud")).toLongLong());
    });
    if (resultado == ResultadoGuardado::Recargar) {
        modificado_ = false;
        cargar(*id_);
        return false;
    }
    if (resultado != ResultadoGuardado::Guardado) return false;
    guardado(r, r.valor(QStringLiteral("IdPlanSalud")).toLongLong());
    nombreGuardado_ = r.texto(QStringLiteral("Nombre")).trimmed();
    return true;
}

bool PlanSaludForm::eliminar() {
    if (!id_) return false;
    const qint64 id = *id_;
    qint64 mascotas = 0;
    CommandTrace traza(e_.dialogs(), QStringLiteral("eliminar un Plan de Salud") + kEnPantalla);
    auto contar = [&] {
        traza.paso(QStringLiteral("Contar las Mascotas inscritas"));
        mascotas = PlanSaludStore(e_.db()).contarMascotas(id);
    };
    if (!traza.ejecutar(contar)) return false;
    const QString refusal =
        QStringLiteral("No se puede eliminar este Plan de Salud porque tiene Mascotas inscritas.");
    if (mascotas > 0) return fallo(kTituloAtencion, refusal, QString());
    if (!bloqueo_.tomar(registro_.descriptor(), QString::number(id), nombreGuardado_, AccionBloqueo::Baja))
        return false;
    if (!e_.dialogs().preguntar(Icono::Pregunta, kTituloAtencion,
                                QStringLiteral("¿Desea realmente eliminar este Plan de Salud?"))) {
        if (!modificado_) bloqueo_.liberar();
        return false;
    }
    std::optional<PlanSaludStore::Baja> baja;
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Eliminar el Plan de Salud y sus condiciones"));
        baja = PlanSaludStore(e_.db()).eliminar(id);
    });
    if (baja == PlanSaludStore::Baja::TieneMascotas) return fallo(kTituloAtencion, refusal, QString());
    if (!baja) return false; // the database failure was shown; a plan gone meanwhile is gone
    nuevo();
    return true;
}



QString PlanSaludForm::preguntaAbandonar() const {
    return QStringLiteral("Las modificaciones realizadas a este Plan de Salud no han sido guardadas. "
                          "¿Desea perder los cambios efectuados?");
}
