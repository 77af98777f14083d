#include "app/guardado_registro.h"

#include "app/login_form.h"
#include "core/concordancia.h"
#include "data/registro.h"

#include <optional>

QString textoRegistroModificado(const QString& clase) {
    const Concordancia c = concordancia(clase);
    return QStringLiteral("Otro puesto ha guardado cambios en ") + c.este + QLatin1Char(' ') + clase +
           QStringLiteral(" desde que usted ") + c.lo +
           QStringLiteral(" abrió. No se ha guardado nada. ¿Desea volver a cargar") + c.lo +
           QStringLiteral("? Se perderán los cambios hechos en esta ventana.");
}

QString textoRegistroEliminado(const QString& clase) {
    const Concordancia c = concordancia(clase);
    return QStringLiteral("Otro puesto ha eliminado ") + c.este + QLatin1Char(' ') + clase +
           QStringLiteral(" desde que usted ") + c.lo + QStringLiteral(" abrió. No se ha guardado nada.");
}

ResultadoGuardado guardarRegistro(Entorno& e, CommandTrace& traza, BloqueoEdicion& bloqueo, const QString& clase,
                                  const std::function<void()>& escribir) {
    bool hecho = false;
    bool perdido = false;
    bool referencia = false;
    std::optional<bool> eliminado;
    traza.ejecutar([&] {
        try {
            Transaction tx = e.db().transaccion();
            if (bloqueo.tomado()) {
                traza.paso(QStringLiteral("Comprobar el bloqueo del registro"));
                if (!bloqueo.vigente()) {
                    perdido = true;
                    return;
                }
            }
            escribir();
            tx.commit();
            hecho = true;
        } catch (const GuardadoCancelado&) {
            return;
        } catch (const ErrorRegistroCambiado& cambio) {
            eliminado = cambio.eliminado();
        } catch (const ErrorBD& e) {
            if (!esErrorDeReferencia(e)) throw;
            referencia = true;
        }
    });
    if (referencia) {
        e.dialogs().avisar(kTituloAtencion,
                           QStringLiteral("Alguno de los datos de ") + concordancia(clase).este +
                               QLatin1Char(' ') + clase +
                               QStringLiteral(" apunta a un registro que no existe (puede que otro puesto lo haya "
                                              "eliminado). No se ha guardado nada."));
        return ResultadoGuardado::Fallido;
    }
    if (hecho) return ResultadoGuardado::Guardado;
    if (perdido) {
        e.dialogs().avisar(kTituloAtencion, bloqueo.mensajePerdido());
        bloqueo.olvidar();
        return ResultadoGuardado::Fallido;
    }
    if (!eliminado) return ResultadoGuardado::Fallido;
    if (*eliminado) {
        e.dialogs().avisar(kTituloAtencion, textoRegistroEliminado(clase));
        return ResultadoGuardado::Fallido;
    }
    return e.dialogs().preguntar(Icono::Exclamacion, kTituloAtencion, textoRegistroModificado(clase))
               ? ResultadoGuardado::Recargar
               : ResultadoGuardado::Fallido;
}
