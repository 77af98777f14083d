#include "clinical/visita_busqueda_form.h"

#include "core/command_trace.h"
#include "core/formatos.h"
#include "sales/albaran_store.h"

VisitaBusquedaForm::VisitaBusquedaForm(Entorno& e) : e_(e) {
    filtro.desde = e.reloj().hoy().addDays(1 - e.reloj().hoy().day());
    filtro.hasta = e.reloj().hoy();
}

QStringList VisitaBusquedaForm::columnas() {
    return {QStringLiteral("Fecha"),       QStringLiteral("Hora"),        QStringLiteral("Cliente"),
            QStringLiteral("Mascota"),     QStringLiteral("Veterinario"), QStringLiteral("Diagnóstico"),
            QStringLiteral("Deuda")};
}

QStringList VisitaBusquedaForm::textosFila(const FilaBusquedaVisita& f) {
    return {formatoFecha(f.Fecha),
            f.Hora.isValid() ? formatoHora(f.Hora) : QString(),
            f.Cliente,
            f.Mascota,
            f.Veterinario,
            f.Diagnostico,
            formatoImporte(f.Deuda)};
}

QList<OpcionLookup> VisitaBusquedaForm::opciones(const QString& columna) {
    QList<OpcionLookup> l;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer la lista de ") + columna + QStringLiteral(" en la '") +
                                         kTituloBusquedaVisitas + QLatin1Char('\''));
    traza.ejecutar([&] { l = VisitaStore(e_.db()).opciones(columna); });
    return l;
}

bool VisitaBusquedaForm::buscar() {
    resultados_.clear();
    if (filtro.porFechas && filtro.desde.isValid() && filtro.hasta.isValid() && filtro.hasta < filtro.desde) {
        e_.dialogs().mostrar(Icono::Exclamacion, QStringLiteral("Fechas incorrectas"),
                             QStringLiteral("La fecha final del periodo es anterior a la inicial."));
        return false;
    }
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar Visitas en la '") + kTituloBusquedaVisitas +
                                         QLatin1Char('\''));
    if (!traza.ejecutar([&] { resultados_ = VisitaStore(e_.db()).buscar(filtro); })) return false;
    if (!resultados_.isEmpty()) return true;
    e_.dialogs().mostrar(Icono::Informacion, QStringLiteral("Resultado de la búsqueda"),
                         QStringLiteral("No existen Visitas que cumplan los criterios de búsqueda especificados."));
    return false;
}

std::optional<VisitaElegida> VisitaBusquedaForm::elegir(int fila) {
    if (fila < 0 || fila >= resultados_.size()) return std::nullopt;
    const FilaBusquedaVisita f = resultados_.at(fila);
    std::optional<VisitaElegida> v;
    CommandTrace traza(e_.dialogs(), QStringLiteral("elegir una Visita en la '") + kTituloBusquedaVisitas +
                                         QLatin1Char('\''));
    traza.ejecutar([&] {
        VisitaStore visitas(e_.db());
        AlbaranStore ventas(e_.db());
        const auto r = visitas.cargar(f.IdVisita);
        const auto c = ventas.cliente(f.IdCliente);
        const auto m = visitas.mascota(f.IdMascota);
        if (!r || !c || !m) {
            e_.dialogs().error(QStringLiteral("¡Error!"),
                               QStringLiteral("Error al intentar acceder a la Visita nº ") +
                                   QString::number(f.IdVisita) +
                                   QStringLiteral(".\nHa sido imposible recuperar la información solicitada. "
                                                  "Puede que la Visita haya sido eliminada."));
            return;
        }
        VisitaElegida e;
        e.idVisita = f.IdVisita;
        e.IdCliente = c->id;
        e.Cliente = c->nombre;
        e.idMascota = m->IdMascota;
        e.mascota = m->Nombre;
        e.tarifa = c->tarifa;
        e.DtoCliente = c->dtoGeneral;
        if (c->idTipoIVA) e.IVAaAplicar = c->porcentajeIVA;
        e.LOPD = c->lopd;
        e.indAvisoCliente = !visitas.avisoCliente(c->id).isEmpty();
        e.indAvisoMascota = !m->Avisos.trimmed().isEmpty();
        e.NumHospitalizacion = m->NumHospitalizacion;
        e.NumJaula = m->Jaula;
        e.Vendedor = f.Veterinario;
        v = e;
    });
    return v;
}
