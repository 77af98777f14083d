#include "app/bloqueo_edicion.h"

BloqueoStore almacenBloqueos(Entorno& entorno) {
    return BloqueoStore(entorno.db(), entorno.dialogs(), entorno.reloj(),
                        IdentidadSesion{entorno.sesion, entorno.usuario, entorno.puesto});
}

bool bloqueoActivo(Entorno& entorno) {
    return entorno.ajustes()
               .leerConDefecto(claves::MULTIPUESTO)
               .trimmed()
               .compare(QStringLiteral("NO"), Qt::CaseInsensitive) != 0;
}

BloqueoEdicion::~BloqueoEdicion() {
    liberar();
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
        if (!almacenBloqueos(e_).bloquearRegistro(clase, clave, descripcion, accion, mostrarMensajes))
            return false;
        conFila = true;
    }
    liberar();
    tabla_ = clase.tabla;
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
            almacenBloqueos(e_).desbloquear(claveBloqueo_);
        } catch (const std::exception&) {
            // desbloquear reports database errors itself; nothing else may escape
            // a destructor.
        }
    }
    tabla_.clear();
    clave_.clear();
    claveBloqueo_.clear();
}
