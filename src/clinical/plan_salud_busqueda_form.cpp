#include "clinical/plan_salud_busqueda_form.h"

#include "clinical/plan_salud_store.h"
#include "core/command_trace.h"
#include "core/formatos.h"

QStringList PlanSaludBusquedaForm::columnas() {
    return {QStringLiteral("Descripción"), QStringLiteral("Alta")};
}

namespace {
bool coincide(const QString& nombre, const QString& buscado, PlanSaludBusquedaForm::Modo modo) {
    if (buscado.isEmpty()) return true;
    switch (modo) {
    case PlanSaludBusquedaForm::Modo::Empieza:
        return nombre.startsWith(buscado, Qt::CaseInsensitive);
    case PlanSaludBusquedaForm::Modo::Exacto:
        return nombre.compare(buscado, Qt::CaseInsensitive) == 0;
    case PlanSaludBusquedaForm::Modo::Contiene:
        return nombre.contains(buscado, Qt::CaseInsensitive);
    }
    return false;
}
} // namespace

bool PlanSaludBusquedaForm::buscar() {
    resultado_.clear();
    QList<FilaPlanSalud> todas;
    CommandTrace traza(e_.dialogs(),
                       QStringLiteral("buscar Planes de Salud en la 'Búsqueda de Planes de Salud'"));
    const bool ok = traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer los Planes de Salud"));
        const QString buscado = texto.trimmed();
        for (const auto& r : PlanSaludStore(e_.db()).todos()) {
            const QString nombre = r.texto(QStringLiteral("Nombre"));
            if (!coincide(nombre.trimmed(), buscado, modo)) continue;
            FilaPlanSalud f;
            f.ClavePlanSalud = r.clave().toLongLong();
            f.DescripcionPlanSalud = nombre;
            f.Alta = r.valor(QStringLiteral("FechaAlta")).toDate();
            f.aviso = r.texto(QStringLiteral("Aviso"));
            f.baja = !r.valor(QStringLiteral("FechaBaja")).isNull();
            todas << f;
        }
    });
    if (!ok) return false;
    if (incluirBajas) {
        resultado_ = todas;
        return true;
    }
    for (const auto& f : todas)
        if (!f.baja) resultado_ << f;
    if (resultado_.isEmpty() && !todas.isEmpty() &&
        e_.dialogs().preguntar(
            Icono::Pregunta, QStringLiteral("Resultado de la búsqueda"),
            QStringLiteral("Todos los Planes de Salud que cumplen las condiciones especificadas "
                           "están dados de Baja. ¿Desea verlos igualmente?")))
        resultado_ = todas;
    return true;
}

QStringList PlanSaludBusquedaForm::celdas(int fila) const {
    if (fila < 0 || fila >= resultado_.size()) return {};
    return {resultado_.at(fila).DescripcionPlanSalud, formatoFecha(resultado_.at(fila).Alta)};
}
