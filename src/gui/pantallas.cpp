#include "gui/pantallas.h"

#include "app/conf_puesto_store.h"
#include "app/parametros_menu.h"
#include "data/esquema.h"
#include "gui/bloqueos_window.h"
#include "gui/conf_bd_window.h"
#include "gui/conf_puesto_window.h"
#include "gui/editor_arbol_window.h"
#include "gui/editor_lista_window.h"
#include "gui/main_window.h"
#include "gui/usuarios_window.h"

void aplicarConfiguracionPuesto(MainWindow& w) {
    Entorno& e = w.entorno();
    if (!e.hayBaseDatos()) return;
    try {
        const ConfiguracionPuesto c = ConfPuestoStore(e.db()).cargar(e.puesto);
        w.configurarAutoGuardado(c.AutoGuardado);
        w.configurarCopiaAutomatica(c.HoraCopia.isValid() ? std::optional<QTime>(c.HoraCopia) : std::nullopt);
    } catch (const ErrorBD& err) {
        e.dialogs().error(QStringLiteral("Pramelvix"), err.mensaje());
    }
}

void registrarPantallas(MainWindow& w) {
    Entorno& e = w.entorno();
    for (const auto& p : entradasMenuParametros()) {
        const QString tabla = p.tabla;
        w.alActivar(p.accion, [&w, &e, tabla] {
            const DescriptorTabla* d = descriptorTabla(tabla);
            if (!d) return;
            if (d->esArbol()) {
                EditorArbolWindow editor(e, *d, &w);
                editor.exec();
            } else {
                EditorListaWindow editor(e, *d, &w);
                editor.exec();
            }
        });
    }
    w.alActivar(QStringLiteral("mnuConfBD"), [&w, &e] {
        ConfBdWindow ventana(e, &w);
        ventana.exec();
    });
    w.alActivar(QStringLiteral("mnuConfPuesto"), [&w, &e] {
        auto* ventana = new ConfPuestoWindow(e);
        QObject::connect(ventana, &ConfPuestoWindow::guardado, &w, [&w] { aplicarConfiguracionPuesto(w); });
        w.abrirVentana(ventana);
    });
    w.alActivar(QStringLiteral("mnuAdministrar"), [&w, &e] { w.abrirVentana(new UsuariosWindow(e)); });
    w.alActivar(QStringLiteral("mnuBloqueos"), [&w, &e] { w.abrirVentana(new BloqueosWindow(e)); });
}
