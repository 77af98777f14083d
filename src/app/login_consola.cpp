#include "app/login_consola.h"

#include "app/login_form.h"
#include "core/console_dialogs.h"

bool identificarEnConsola(Entorno& entorno, ConsoleDialogs& consola) {
    LoginForm form(entorno);
    while (true) {
        consola.escribir(QStringLiteral("[IDENTIFICACIÓN] Identificación de Usuario\nUsuario: "));
        if (!consola.leerLinea(form.usuario)) return false;
        consola.escribir(QStringLiteral("Clave: "));
        if (!consola.leerLinea(form.clave)) return false;
        if (form.aceptar()) {
            consola.escribir(QStringLiteral("Usuario identificado: ") + entorno.nombreUsuario +
                             QLatin1Char('\n'));
            return true;
        }
    }
}
