#include "app/usuarios_form.h"

#include "app/claves.h"
#include "app/guardado_registro.h"
#include "app/usuario_store.h"
#include "core/command_trace.h"
#include "data/esquema.h"

namespace {
const QString kPantalla = QStringLiteral(" en la 'Lista de Usuarios'");
const QString kTituloObligatorios = QStringLiteral("Campos obligatorios no informados");
const QString kTituloAtencion = QStringLiteral("¡Atención!");
const QString kTituloCambios = QStringLiteral("ATENCIÓN");
const QString kTablaUsuarios = QStringLiteral("Usuarios");

const DescriptorTabla& tablaUsuarios() {
    const DescriptorTabla* t = descriptorTabla(kTablaUsuarios);
    if (!t) throw ErrorPrograma(QStringLiteral("La tabla de usuarios no está en el catálogo."));
    return *t;
}

int longitudColumna(const QString& columna) {
    const DescriptorColumna* c = tablaUsuarios().columna(columna);
    return c ? c->longitud : 0;
}

QString textoYaNoExiste(const QString& id) {
    return QStringLiteral("El Usuario '") + id +
           QStringLiteral("' ya no existe: puede que otro puesto lo haya eliminado.");
}
} // namespace

QStringList UsuariosForm::tiposInternos() {
    return {kTipoAdministrador, kTipoUsuario};
}

QStringList UsuariosForm::tiposExternos() {
    return {QStringLiteral("Administrador"), QStringLiteral("Usuario")};
}

void UsuariosForm::cambiar(QString& campo, const QString& valor) {
    if (campo == valor) return;
    campo = valor;
    modificado_ = true;
}

bool UsuariosForm::confirmarPerdida(const QString& texto) {
    if (!modificado_) return true;
    return e_.dialogs().preguntar(kTituloCambios, texto);
}

void UsuariosForm::leerLista() {
    lista_.clear();
    for (const Usuario& u : UsuarioStore(e_.db()).todos())
        lista_.append({u.IdUsuario, u.Nombre});
}

void UsuariosForm::vaciar() {
    fila_ = -1;
    idOriginal_.clear();
    tipoOriginal_.clear();
    id_.clear();
    nombre_.clear();
    clave_.clear();
    confirmacion_.clear();
    tipo_ = kTipoUsuario;
    modificado_ = false;
    foco_ = Campo::Identificador;
}

void UsuariosForm::mostrarUsuario(int fila) {
    const QString id = lista_.at(fila).IdUsuario;
    const auto u = UsuarioStore(e_.db()).cargar(id);
    if (!u) {
        e_.dialogs().avisar(kTituloAtencion, textoYaNoExiste(id));
        leerLista();
        if (lista_.isEmpty()) {
            vaciar();
            return;
        }
        mostrarUsuario(0);
        return;
    }
    fila_ = fila;
    idOriginal_ = u->IdUsuario;
    tipoOriginal_ = u->TipoUsuario;
    versionLeida_ = u->versionFila;
    id_ = u->IdUsuario;
    nombre_ = u->Nombre;
    clave_ = kMarcaClave;
    confirmacion_ = kMarcaClave;
    tipo_ = u->TipoUsuario;
    modificado_ = false;
    foco_ = Campo::Identificador;
}

bool UsuariosForm::cargar() {
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar los Usuarios") + kPantalla);
    return traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer la lista de usuarios"));
        vaciar();
        leerLista();
        if (!lista_.isEmpty()) mostrarUsuario(0);
    });
}

bool UsuariosForm::seleccionar(int fila) {
    if (fila < 0 || fila >= lista_.size()) return false;
    if (fila == fila_) return true;
    if (!confirmarPerdida(
            QStringLiteral("Las modificaciones realizadas a este Usuario no han sido guardadas. "
                           "¿Confirma que desea seleccionar otro Usuario y perder los cambios "
                           "efectuados?")))
        return false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("seleccionar un Usuario") + kPantalla);
    return traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer el usuario ") + lista_.at(fila).IdUsuario);
        mostrarUsuario(fila);
    });
}

bool UsuariosForm::nuevo() {
    if (!confirmarPerdida(
            QStringLiteral("Las modificaciones realizadas a este Usuario no han sido guardadas. "
                           "¿Confirma que desea seleccionar otro Usuario y perder los cambios "
                           "efectuados?")))
        return false;
    vaciar();
    return true;
}

bool UsuariosForm::puedeCerrar() {
    return confirmarPerdida(
        QStringLiteral("Las modificaciones realizadas a este Usuario no han sido guardadas. "
                       "¿Desea cerrar la ventana y perder los cambios efectuados?"));
}

bool UsuariosForm::rechazar(const QString& titulo, const QString& texto, Campo campo) {
    e_.dialogs().avisar(titulo, texto);
    foco_ = campo;
    return false;
}

bool UsuariosForm::comprobar() {
    const QString id = id_.trimmed();
    if (id.isEmpty())
        return rechazar(kTituloObligatorios, QStringLiteral("Debe informar el identificador del usuario."),
                        Campo::Identificador);
    if (clave_.isEmpty())
        return rechazar(kTituloObligatorios, QStringLiteral("Debe informar la contraseña del usuario."),
                        Campo::Clave);
    if (confirmacion_.isEmpty())
        return rechazar(kTituloObligatorios,
                        QStringLiteral("Debe repetir la contraseña en el campo 'Confirmación'."),
                        Campo::Confirmacion);
    if (clave_ != confirmacion_)
        return rechazar(
            kTituloObligatorios,
            QStringLiteral("Lo informado en el campo 'Confirmación' debe ser lo mismo que en el campo "
                           "'Clave'."),
            Campo::Confirmacion);
    const int maxId = longitudColumna(QStringLiteral("IdUsuario"));
    if (id.size() > maxId)
        return rechazar(
            kTituloAtencion,
            QStringLiteral("El identificador del usuario no puede tener más de %1 caracteres.").arg(maxId),
            Campo::Identificador);
    if (!esNuevo() && id != idOriginal_)
        return rechazar(
            kTituloAtencion,
            QStringLiteral("No se puede cambiar el identificador de un usuario existente. Cree un "
                           "usuario nuevo con el identificador deseado y elimine el anterior."),
            Campo::Identificador);
    const int maxNombre = longitudColumna(QStringLiteral("Nombre"));
    if (nombre_.trimmed().size() > maxNombre)
        return rechazar(
            kTituloAtencion,
            QStringLiteral("El nombre del usuario no puede tener más de %1 caracteres.").arg(maxNombre),
            Campo::Nombre);
    if (!tiposInternos().contains(tipo_))
        return rechazar(kTituloAtencion,
                        QStringLiteral("Debe elegir el tipo de usuario: 'Administrador' o 'Usuario'."),
                        Campo::Tipo);
    // The mark stands for "the stored password" only for an existing user; it is never a
    // password itself.
    if (clave_ == kMarcaClave && esNuevo())
        return rechazar(kTituloAtencion,
                        QStringLiteral("La contraseña no puede ser '********'. Escriba otra."), Campo::Clave);
    return true;
}

bool UsuariosForm::guardar() {
    bool guardado = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar un Usuario") + kPantalla);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Comprobar los campos"));
        if (!comprobar()) return;
        const QString id = id_.trimmed();
        const bool mantenerClave = !esNuevo() && clave_ == kMarcaClave;
        QString sal, hash;
        if (!mantenerClave) {
            // Hashing takes a noticeable moment: done before the transaction holds the table.
            traza.paso(QStringLiteral("Calcular la nueva clave"));
            sal = nuevaSal();
            hash = hashClave(sal, clave_);
        }
        Usuario u{id, nombre_.trimmed(), sal, hash, tipo_, versionLeida_};
        traza.paso(QStringLiteral("Guardar el usuario ") + id);
        UsuarioStore store(e_.db());
        switch (esNuevo() ? store.crear(u) : store.modificar(u, !mantenerClave)) {
        case UsuarioStore::Resultado::Hecho:
            break;
        case UsuarioStore::Resultado::YaExiste:
            rechazar(kTituloAtencion,
                     QStringLiteral("Ya existe un usuario con el identificador '") + id +
                         QStringLiteral("'."),
                     Campo::Identificador);
            return;
        case UsuarioStore::Resultado::NoExiste:
            rechazar(kTituloAtencion, textoYaNoExiste(idOriginal_), Campo::Identificador);
            return;
        case UsuarioStore::Resultado::CambiadoEnOtroPuesto:
            if (e_.dialogs().preguntar(Icono::Exclamacion, kTituloAtencion, textoRegistroModificado(QStringLiteral("Usuario")))) {
                leerLista();
                for (int i = 0; i < lista_.size(); ++i)
                    if (lista_.at(i).IdUsuario == idOriginal_) mostrarUsuario(i);
            }
            return;
        case UsuarioStore::Resultado::UnicoAdministrador:
            rechazar(kTituloAtencion,
                     QStringLiteral("No se puede quitar el tipo 'Administrador' a este usuario porque es el "
                                    "único Administrador. Debe quedar al menos un Administrador para poder "
                                    "administrar Pramelvix."),
                     Campo::Tipo);
            return;
        }
        if (id == e_.usuario) e_.nombreUsuario = nombre_.trimmed().isEmpty() ? id : nombre_.trimmed();

        traza.paso(QStringLiteral("Releer la lista de usuarios"));
        modificado_ = false;
        leerLista();
        for (int i = 0; i < lista_.size(); ++i)
            if (lista_.at(i).IdUsuario == id) mostrarUsuario(i);
        guardado = true;
    });
    return guardado;
}

bool UsuariosForm::eliminar() {
    if (esNuevo()) {
        e_.dialogs().avisar(kTituloAtencion, QStringLiteral("Seleccione el Usuario que desea eliminar."));
        return false;
    }
    if (idOriginal_ == e_.usuario) {
        e_.dialogs().avisar(
            kTituloAtencion,
            QStringLiteral("No puede eliminar el usuario con el que se ha identificado en esta sesión."));
        return false;
    }
    bool eliminado = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("eliminar un Usuario") + kPantalla);
    traza.ejecutar([&] {
        const QString textoUnico =
            QStringLiteral("No se puede eliminar el único usuario Administrador. Debe quedar al "
                           "menos un Administrador para poder administrar Pramelvix.");
        traza.paso(QStringLiteral("Comprobar que queda otro administrador"));
        if (tipoOriginal_ == kTipoAdministrador &&
            UsuarioStore(e_.db()).otrosAdministradores(idOriginal_) == 0) {
            e_.dialogs().avisar(kTituloAtencion, textoUnico);
            return;
        }
        if (!e_.dialogs().preguntar(kTituloAtencion,
                                    QStringLiteral("¿Desea realmente eliminar el Usuario seleccionado?")))
            return;
        const int fila = fila_;
        traza.paso(QStringLiteral("Eliminar el usuario ") + idOriginal_);
        if (UsuarioStore(e_.db()).eliminarSalvoUnicoAdministrador(idOriginal_) ==
            UsuarioStore::Resultado::UnicoAdministrador) {
            e_.dialogs().avisar(kTituloAtencion, textoUnico);
            return;
        }
        eliminado = true;

        traza.paso(QStringLiteral("Releer la lista de usuarios"));
        vaciar();
        leerLista();
        if (!lista_.isEmpty()) mostrarUsuario(std::min(fila, static_cast<int>(lista_.size()) - 1));
    });
    return eliminado;
}
