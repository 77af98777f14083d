#include "stock/serie_subfamilia.h"

#include "app/bloqueo_edicion.h"
#include "app/ficha_form.h"
#include "core/command_trace.h"
#include "stock/series_articulo.h"

std::optional<bool> guardarSubfamilia(Entorno& e, const Registro& anterior, const Registro& nuevo) {
    const QString serie = nuevo.texto(QStringLiteral("Serie")).trimmed();
    if (anterior.texto(QStringLiteral("Serie")).trimmed() == serie) return std::nullopt;
    if (!e.dialogs().preguntar(Icono::Pregunta, kTituloCambioSerie,
                               preguntaCambioSerieSubfamilia(nuevo.texto(QStringLiteral("Descripcion")))))
        return false;
    Bloqueos bloqueos = almacenBloqueos(e);
    if (!bloqueos.bloquearBD()) return false;
    bool hecho = false;
    CommandTrace traza(e.dialogs(),
                       QStringLiteral("cambiar la Serie de la Subfamilia en la 'Lista de Subfamilias'"));
    traza.ejecutar([&] {
        Transaction tx = e.db().transaccion();
        traza.paso(QStringLiteral("Guardar la subfamilia"));
        Registro guardado = nuevo;
        RegistroStore(e.db()).actualizar(guardado);
        traza.paso(QStringLiteral("Cambiar la serie en los albaranes sin facturar"));
        SeriesArticuloStore(e.db()).cambiarSerieSubfamilia(nuevo.clave().toLongLong(), serie);
        tx.commit();
        hecho = true;
    });
    bloqueos.desbloquearBD();
    if (hecho) e.dialogs().informar(kTituloCambioSerie, kActualizacionCorrecta);
    return hecho;
}
