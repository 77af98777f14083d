#pragma once
// The visit search: by vet, visit type and diagnosis, and a date range used only when ticked.
// Columns "Fecha", "Hora", "Cliente", "Mascota", "Veterinario", "Diagnóstico", "Deuda".
// Picking a visit hands back the visit with its client's and pet's data (VisitaElegida).
#include "app/entorno.h"
#include "clinical/visita_store.h"

#include <optional>

inline const QString kTituloBusquedaVisitas = QStringLiteral("Búsqueda de Visitas");

class VisitaBusquedaForm {
public:
    explicit VisitaBusquedaForm(Entorno& e);

    FiltroVisitas filtro;
    static QStringList columnas();
    static QStringList textosFila(const FilaBusquedaVisita& f);
    QList<OpcionLookup> opciones(const QString& columna);

    // Runs the search; none found: "No existen Visitas que cumplan los criterios de búsqueda
    // especificados." and false. A ticked range whose end comes before its start is refused.
    bool buscar();
    const QList<FilaBusquedaVisita>& resultados() const { return resultados_; }
    // The visit of the row with everything the caller needs; nullopt (reported) when it no
    // longer exists.
    std::optional<VisitaElegida> elegir(int fila);

private:
    Entorno& e_;
    QList<FilaBusquedaVisita> resultados_;
};
