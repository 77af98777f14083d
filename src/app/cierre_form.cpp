#include "app/cierre_form.h"

#include "app/arranque.h"
#include "app/cierre.h"
#include "app/temporizadores.h"
#include "core/formatos.h"
#include "data/puestos.h"

bool CierreForm::confirmarSalida() {
    return e_.dialogs().preguntar(Icono::Pregunta, kTituloPrograma, kPreguntaSalir);
}

bool CierreForm::cerrar(bool confirmar) {
    if (confirmar && !confirmarSalida()) return false;
    if (!e_.hayBaseDatos()) return true;
    const bool compactarAhora = preguntarCompactacion();
    abandonarPuesto(e_);
    if (compactarAhora) compactarBaseDatos(e_, false);
    return true;
}

bool CierreForm::preguntarCompactacion() {
    QString dias, fecha;
    try {
        Ajustes ajustes = e_.ajustes();
        dias = ajustes.leer(claves::DIAS_COMPACTACION);
        fecha = ajustes.leer(claves::FECHA_COMPACTACION);
    } catch (const ErrorBD&) {
        return false; // closing goes on; the compaction waits for another day
    }
    const auto ultima = leerFecha(fecha);
    if (!tocaCompactacion(dias, ultima, e_.reloj().hoy())) return false;
    QString texto = QStringLiteral("¡¡¡ ATENCIÓN !!! Fecha de la última compactación: ") +
                    (ultima ? formatoFecha(*ultima) : QStringLiteral("nunca")) + QLatin1Char('\n') +
                    QStringLiteral("¿Desea compactar la Base de Datos antes de abandonar la aplicación?");
    if (!e_.dialogs().preguntar(Icono::Pregunta, kTituloPrograma, texto)) return false;
    // Replacing the file under another workstation would lose its work: wait for a day
    // when this one is the last to leave.
    const qint64 otros = otrosPuestosConectados(e_);
    if (otros < 0) return false;
    if (otros > 0) {
        e_.dialogs().avisar(
            QStringLiteral("¡Atención!"),
            QStringLiteral("No se puede compactar la Base de Datos mientras haya otros puestos "
                           "conectados a Pramelvix. Se compactará otro día."));
        return false;
    }
    return true;
}

qint64 otrosPuestosConectados(Entorno& e) {
    try {
        const QStringList puestos = PuestosActivosStore(e.db()).puestos();
        return puestos.size() - (puestos.contains(e.puesto) ? 1 : 0);
    } catch (const ErrorBD&) {
        return -1;
    }
}

bool compactarBaseDatos(Entorno& e, bool reabrir) {
    const ConfiguracionBD config = e.configuracionBD;
    e.cerrarBaseDatos();
    const bool hecha = procedimientoReparacion(e.dialogs(), config, e.reloj());
    if (!hecha)
        e.dialogs().avisar(QStringLiteral("¡Atención!"),
                           QStringLiteral("No se ha podido compactar la Base de Datos. Se intentará de nuevo "
                                          "la próxima vez."));
    try {
        auto db = config.motor == Motor::SQLite ? Database::abrirSQLite(config.ficheroSQLite())
                                                : Database::abrirPostgreSQL(config.conexion);
        if (hecha) Ajustes(*db).escribir(claves::FECHA_COMPACTACION, formatoFecha(e.reloj().hoy()));
        if (reabrir) e.ponerBaseDatos(std::move(db));
    } catch (const ErrorBD& err) {
        e.dialogs().error(kTituloPrograma, err.mensaje());
    }
    return hecha;
}

bool CompactacionForm::compactar() {
    const qint64 otros = otrosPuestosConectados(e_);
    if (otros != 0) {
        e_.dialogs().avisar(
            QStringLiteral("¡Atención!"),
            QStringLiteral("No se puede compactar la Base de Datos mientras haya otros puestos "
                           "conectados a Pramelvix."));
        return false;
    }
    if (!e_.dialogs().preguntar(Icono::Pregunta, kTituloPrograma,
                                QStringLiteral("¿Desea compactar ahora la Base de Datos?")))
        return false;
    const bool hecha = compactarBaseDatos(e_, true);
    if (hecha) e_.dialogs().informar(kTituloPrograma, QStringLiteral("Operación concluida."));
    return hecha;
}
