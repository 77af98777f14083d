#include "app/bloqueos_form.h"

#include "app/bloqueo_edicion.h"
#include "core/command_trace.h"
#include "core/formatos.h"

namespace {
const QString kAtencion = QStringLiteral("¡Atención!");
const QString kPantalla = QStringLiteral(" en la 'Lista de Bloqueos'");
} // namespace

const QStringList& BloqueosForm::columnas() {
    static const QStringList c{QStringLiteral("Registro"), QStringLiteral("Usuario"),
                               QStringLiteral("Puesto"), QStringLiteral("Fecha"), QStringLiteral("Hora")};
    return c;
}

bool BloqueosForm::coincide(const Bloqueo& b) const {
    const QString f = filtro.trimmed();
    if (f.isEmpty()) return true;
    return b.descripcion.contains(f, Qt::CaseInsensitive) || b.usuario.contains(f, Qt::CaseInsensitive) ||
           b.puesto.contains(f, Qt::CaseInsensitive);
}

bool BloqueosForm::buscar() {
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar los Bloqueos") + kPantalla);
    return traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer los bloqueos"));
        const QList<Bloqueo> todos = almacenBloqueos(e_).lista();
        QList<Bloqueo> vistos;
        for (const auto& b : todos)
            if (coincide(b)) vistos.append(b);
        filas_ = vistos;
        if (seleccionado >= filas_.size()) seleccionado = static_cast<int>(filas_.size()) - 1;
    });
}

QString BloqueosForm::texto(int fila, int columna) const {
    if (fila < 0 || fila >= filas_.size()) return {};
    const Bloqueo& b = filas_.at(fila);
    switch (columna) {
    case 0:
        return b.descripcion;
    case 1:
        return b.usuario;
    case 2:
        return b.puesto;
    case 3:
        return formatoFecha(b.fecha);
    case 4:
        return formatoHora(b.hora);
    default:
        return {};
    }
}

bool BloqueosForm::permitido() {
    if (puedeEliminar()) return true;
    e_.dialogs().avisar(kAtencion, QStringLiteral("Sólo un Administrador puede eliminar Bloqueos."));
    return false;
}

bool BloqueosForm::eliminarSeleccionado() {
    if (seleccionado < 0 || seleccionado >= filas_.size()) {
        e_.dialogs().avisar(kAtencion, QStringLiteral("Seleccione el Bloqueo que desea eliminar."));
        return false;
    }
    if (!permitido()) return false;
    if (!e_.dialogs().preguntar(kAtencion,
                                QStringLiteral("¿Desea realmente eliminar el Bloqueo seleccionado?")))
        return false;
    const Bloqueo listado = filas_.at(seleccionado);
    bool eliminado = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("eliminar un Bloqueo") + kPantalla);
    const bool bien = traza.ejecutar([&] {
        traza.paso(QStringLiteral("Eliminar el bloqueo"));
        eliminado = almacenBloqueos(e_).eliminar(listado);
    });
    if (bien && !eliminado)
        e_.dialogs().avisar(kAtencion, QStringLiteral("El bloqueo seleccionado ya no es el que se listó: se ha "
                                                      "liberado o lo ha vuelto a tomar otro puesto. No se ha "
                                                      "eliminado."));
    if (bien) buscar();
    return eliminado;
}

bool BloqueosForm::eliminarTodos() {
    if (!permitido()) return false;
    if (!e_.dialogs().preguntar(kAtencion, QStringLiteral("¿Desea realmente eliminar todos los bloqueos?")))
        return false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("eliminar todos los Bloqueos") + kPantalla);
    const bool bien = traza.ejecutar([&] {
        traza.paso(QStringLiteral("Eliminar los bloqueos"));
        almacenBloqueos(e_).eliminarTodos();
    });
    if (bien) buscar();
    return bien;
}
