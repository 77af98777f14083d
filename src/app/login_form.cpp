#include "app/login_form.h"

#include "app/claves.h"
#include "app/usuario_store.h"
#include "core/command_trace.h"
#include "data/puestos.h"

bool LoginForm::aceptar() {
    bool identificado = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("identificar al Usuario en la 'Identificación'"));
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Buscar el usuario"));
        UsuarioStore store(e_.db());
        const auto u = store.cargar(usuario.trimmed());
        if (!u) {
            e_.dialogs().avisar(kTituloAtencion, QStringLiteral("El usuario introducido no existe."));
            foco = Campo::Usuario;
            return;
        }
        traza.paso(QStringLiteral("Comprobar la clave"));
        if (!claveCorrecta(u->Hash, u->Salt, clave)) {
            e_.dialogs().avisar(kTituloAtencion, QStringLiteral("La clave introducida no es correcta."));
            clave.clear();
            foco = Campo::Clave;
            return;
        }
        if (!nuevaClave.isEmpty() || !confirmacion.isEmpty()) {
            if (nuevaClave != confirmacion) {
                e_.dialogs().avisar(
                    kTituloAtencion,
                    QStringLiteral("La confirmación introducida no coincide con la nueva clave."));
                foco = Campo::Confirmacion;
                return;
            }
            traza.paso(QStringLiteral("Cambiar la clave"));
            try {
                const QString sal = nuevaSal();
                store.cambiarClave(u->IdUsuario, sal, hashClave(sal, nuevaClave));
            } catch (const std::exception&) {
                e_.dialogs().avisar(
                    kTituloAtencion,
                    QStringLiteral(
                        "Usuario identificado correctamente, pero no ha sido posible cambiar la clave."));
            }
        }
        e_.usuario = u->IdUsuario;
        e_.nombreUsuario = u->Nombre.isEmpty() ? u->IdUsuario : u->Nombre;
        e_.tipoUsuario = u->TipoUsuario;
        identificado = true;
        traza.paso(QStringLiteral("Anotar el usuario en el puesto"));
        try {
            PuestosActivosStore(e_.db()).asignarUsuario(e_.puesto, e_.usuario);
        } catch (const ErrorBD&) {
            // The user is in; the note in the workstations table is only informative.
        }
    });
    return identificado;
}
