#include "app/bloqueo_edicion.h"

#include <QAtomicInt>

namespace {
QAtomicInt ventanas;
}

Bloqueos almacenBloqueos(Entorno& entorno) {
    return Bloqueos(entorno.db(), entorno.dialogs(), entorno.reloj(),
                    IdentidadSesion{entorno.sesion, entorno.usuario, entorno.puesto, QString()});
}

bool bloqueoActivo(Entorno& entorno) {
    if (!entorno.multipuesto)
        entorno.multipuesto = entorno.ajustes()
                                  .leerConDefecto(claves::MULTIPUESTO)
                                  .trimmed()
                                  .compare(QStringLiteral("NO"), Qt::CaseInsensitive) != 0;
    return *entorno.multipuesto;
}

BloqueoEdicion::BloqueoEdicion(Entorno& entorno)
    : e_(entorno), ventana_(QStringLiteral("V%1").arg(ventanas.fetchAndAddRelaxed(1) + 1)) {}

BloqueoEdicion::~BloqueoEdicion() {
    liberar();
}

Bloqueos BloqueoEdicion::bloqueos() {
    return Bloqueos(e_.db(), e_.dialogs(), e_.reloj(), IdentidadSesion{e_.sesion, e_.usuario, e_.puesto, ventana_});
}

bool BloqueoEdicion::vigente() {
    if (!tomado_) return false;
    if (!conFila_) return true;
    return bloqueos().store().vigente(claveBloqueo_);
}

QString BloqueoEdicion::mensajePerdido() const {
    return QStringLiteral("No es posible guardar el/la ") + descripcionClase_ + QStringLiteral(" de ") +
           descripcion_ +
           QStringLiteral(" pues un Administrador ha eliminado su bloqueo mientras lo tenía abierto/a. No se ha "
                          "guardado nada: cierre la ventana y vuelva a abrirlo/a.");
}

bool BloqueoEdicion::tomar(const DescriptorTabla& clase, const QString& clave, const QString& descripcion,
                           AccionBloqueo accion, bool mostrarMensajes) {
    if (tomado_ && tabla_ == clase.tabla && clave_ == clave) return true;
    bool activo = true;
    try {
        activo = bloqueoActivo(e_);
    } catch (const ErrorBD& error) {
        if (mostrarMensajes)
            e_.dialogs().mostrar(Icono::Ninguno, QStringLiteral("Bloqueo de Registro"), error.mensaje());
        return false;
    }
    bool conFila = false;
    if (activo) {
        if (!bloqueos().bloquearRegistro(clase, clave, descripcion, accion, mostrarMensajes)) return false;
        conFila = true;
    }
    liberar();
    tabla_ = clase.tabla;
    descripcionClase_ = clase.descTabla;
    descripcion_ = descripcion;
    clave_ = clave;
    claveBloqueo_ = claveBloqueo(clase, clave);
    tomado_ = true;
    conFila_ = conFila;
    return true;
}

void BloqueoEdicion::liberar() {
    if (!tomado_) return;
    const bool conFila = conFila_;
    tomado_ = false;
    conFila_ = false;
    if (conFila && e_.hayBaseDatos()) {
        try {
            bloqueos().desbloquear(claveBloqueo_);
        } catch (const std::exception&) {
            // desbloquear reports database errors itself; nothing else may escape
            // a destructor.
        }
    }
    tabla_.clear();
    clave_.clear();
    claveBloqueo_.clear();
}
