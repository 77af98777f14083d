#include "gui/pantallas.h"

#include "app/conf_puesto_form.h"
#include "app/parametros_menu.h"
#include "clients/ui/cambio_propietario_window.h"
#include "clients/ui/cliente_busqueda_window.h"
#include "clients/ui/cliente_window.h"
#include "clients/ui/listado_mascotas_window.h"
#include "clients/ui/mascota_window.h"
#include "clients/ui/registro_cambios_window.h"
#include "clinical/ui/plan_salud_busqueda_window.h"
#include "clinical/ui/hospitalizacion_window.h"
#include "clinical/ui/plan_salud_window.h"
#include "clinical/ui/visita_busqueda_window.h"
#include "clinical/ui/visita_window.h"
#include "core/console_dialogs.h"
#include "documents/ui/salida_documentos_qt.h"
#include "gui/bloqueos_window.h"
#include "gui/conf_bd_window.h"
#include "gui/conf_puesto_window.h"
#include "gui/editor_lista_window.h"
#include "gui/main_window.h"
#include "gui/usuarios_window.h"
#include "sales/ui/albaran_busqueda_window.h"
#include "sales/ui/albaran_window.h"
#include "sales/ui/presupuesto_window.h"
#include "stock/ui/articulo_busqueda_window.h"
#include "stock/ui/articulo_window.h"

#include <QApplication>
#include <QPointer>
#include <memory>

void aplicarConfiguracionPuesto(MainWindow& w) {
    const auto c = leerConfiguracionPuesto(w.entorno());
    if (!c) return;
    w.configurarAutoGuardado(c->AutoGuardado);
    w.configurarCopiaAutomatica(c->HoraCopia.isValid() ? std::optional<QTime>(c->HoraCopia) : std::nullopt);
}

void registrarPantallas(MainWindow& w) {
    Entorno& e = w.entorno();
    for (const auto& p : entradasMenuParametros()) {
        const QString tabla = p.tabla;
        w.alActivar(p.accion, [&w, &e, tabla] { abrirEditorTabla(e, tabla, &w); });
    }
    // Staff members are kept as a list of their own (name, registration number, active).
    w.alActivar(QStringLiteral("mnuMttoPersonal"),
                [&w, &e] { abrirEditorTabla(e, QStringLiteral("Personal"), &w); });
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

    // Previews and the printer dialog (not on the terminal, where nobody could close them).
    if (!dialogosEnConsola()) e.salidaDocumentos = new SalidaDocumentosQt(e, &w);

    // The search screens other screens open to pick a record.
    e.buscadores.cliente = [&e](const PeticionCliente& p) { return ClienteBusquedaWindow::elegir(e, p); };
    e.buscadores.planSalud = [&e, &w](const QString& t) { return PlanSaludBusquedaWindow::elegir(e, t, &w); };
    e.buscadores.articulo = ArticuloBusquedaWindow::buscador(e, &w);
    e.buscadores.albaran = [&e] { return AlbaranBusquedaWindow::buscador(e, QApplication::activeWindow()); };

    // Clients and pets. The pet screen opens the visit screens, registered further down.
    auto enlazarMascota = std::make_shared<std::function<void(MascotaWindow*)>>([](MascotaWindow*) {});
    auto abrirMascotas = [&w, &e, enlazarMascota](qint64 idCliente) {
        auto* ventana = new MascotaWindow(e);
        (*enlazarMascota)(ventana);
        if (!ventana->abrir(idCliente)) {
            delete ventana;
            return;
        }
        w.abrirVentana(ventana, false);
    };
    w.alActivar(QStringLiteral("mnuMttoCliente"), [&w, &e, abrirMascotas] {
        auto* ventana = new ClienteWindow(e);
        ventana->form().abrirMascotas = abrirMascotas;
        w.abrirVentana(ventana, false);
    });
    w.alActivar(QStringLiteral("mnuMttoMascota"), [&w, &e, enlazarMascota] {
        auto* ventana = new MascotaWindow(e);
        (*enlazarMascota)(ventana);
        if (!ventana->abrirDesdeMenu()) {
            delete ventana;
            return;
        }
        w.abrirVentana(ventana, false);
    });
    w.alActivar(QStringLiteral("mnuCambioPropietario"),
                [&w, &e] { w.abrirVentana(new CambioPropietarioWindow(e)); });
    // The pet list and the register open the pet picked in them.
    auto abrirMascota = [&w, &e, enlazarMascota](qint64 idCliente, qint64 idMascota) {
        auto* ventana = new MascotaWindow(e);
        (*enlazarMascota)(ventana);
        if (!ventana->abrir(idCliente, idMascota)) {
            delete ventana;
            return;
        }
        w.abrirVentana(ventana, false);
    };
    w.alActivar(QStringLiteral("mnuRegistroCambioPropietario"), [&w, &e, abrirMascota] {
        auto* ventana = new RegistroCambiosWindow(e);
        QObject::connect(ventana, &RegistroCambiosWindow::mascotaElegida, &w, abrirMascota);
        w.abrirVentana(ventana);
    });
    w.alActivar(QStringLiteral("mnuDocMasListados"), [&w, &e, abrirMascota] {
        auto* ventana = new ListadoMascotasWindow(e);
        QObject::connect(ventana, &ListadoMascotasWindow::mascotaElegida, &w, abrirMascota);
        w.abrirVentana(ventana);
    });
    w.alActivar(QStringLiteral("mnuMttoPlanSalud"),
                [&w, &e] { w.abrirVentana(new PlanSaludWindow(e), false); });

    // Articles, suppliers and invoicing series.
    w.alActivar(QStringLiteral("mnuMttoArticulo"),
                [&w, &e] { w.abrirVentana(new ArticuloWindow(e), false); });
    w.alActivar(QStringLiteral("mnuMttoProveedor"),
                [&w, &e] { abrirEditorTabla(e, QStringLiteral("Proveedores"), &w); });
    w.alActivar(QStringLiteral("mnuSeriesFacturacion"),
                [&w, &e] { abrirEditorTabla(e, QStringLiteral("Series"), &w); });

    // Delivery notes.
    w.alActivar(QStringLiteral("mnuAlbaranes"), [&w, &e] { w.abrirVentana(new AlbaranWindow(e), false); });

    // Visits and hospitalisation. Each screen opens the others through these.
    e.buscadores.visita = [&e] { return VisitaBusquedaWindow::buscador(e, QApplication::activeWindow()); };
    auto abrirAlbaran = [&w, &e](const AperturaAlbaran& ap) {
        auto* ventana = new AlbaranWindow(e);
        if (!ventana->abrir(ap)) {
            delete ventana;
            return;
        }
        w.abrirVentana(ventana, false);
    };
    auto abrirPresupuesto = [&w, &e, abrirAlbaran](const AperturaPresupuesto& ap,
                                                   std::function<void()> alGuardar = {}) {
        auto* ventana = new PresupuestoWindow(e);
        ventana->form().abrirAlbaran = abrirAlbaran;
        ventana->form().alGuardar = std::move(alGuardar);
        if (!ventana->abrir(ap)) {
            delete ventana;
            return;
        }
        w.abrirVentana(ventana, false);
    };
    w.alActivar(QStringLiteral("mnuPresupuestos"), [abrirPresupuesto] { abrirPresupuesto(AperturaPresupuesto{}); });
    auto abrirVisita = std::make_shared<std::function<void(const AperturaVisita&)>>();
    auto abrirEstancias = [&w, &e, abrirVisita](qint64 idMascota, const QString& nombre) {
        auto* ventana = new RegistroHospitalizacionesWindow(e);
        if (!ventana->abrir(idMascota, nombre)) {
            delete ventana;
            return;
        }
        QObject::connect(ventana, &RegistroHospitalizacionesWindow::IrAVisita, &w, [abrirVisita](qint64 n) {
            AperturaVisita ap;
            ap.NumVisita = n;
            (*abrirVisita)(ap);
        });
        w.abrirVentana(ventana);
    };
    *abrirVisita = [&w, &e, abrirAlbaran, abrirPresupuesto, abrirMascota, abrirMascotas,
                    abrirEstancias](const AperturaVisita& ap) {
        auto* ventana = new VisitaWindow(e);
        ventana->form().abrirAlbaran = abrirAlbaran;
        QPointer<VisitaWindow> visita(ventana);
        ventana->form().abrirPresupuesto = [abrirPresupuesto, visita](const AperturaPresupuesto& p) {
            abrirPresupuesto(p, [visita] {
                if (visita) visita->presupuestoGuardado();
            });
        };
        QObject::connect(ventana, &VisitaWindow::abrirMascota, &w, abrirMascota);
        QObject::connect(ventana, &VisitaWindow::abrirCliente, &w, [&w, &e, abrirMascotas](qint64 idCliente) {
            auto* cliente = new ClienteWindow(e);
            cliente->form().abrirMascotas = abrirMascotas;
            if (!cliente->mostrarCliente(idCliente)) {
                delete cliente;
                return;
            }
            w.abrirVentana(cliente, false);
        });
        QObject::connect(ventana, &VisitaWindow::abrirHospitalizaciones, &w, abrirEstancias);
        if (!ventana->abrir(ap)) {
            delete ventana;
            return;
        }
        w.abrirVentana(ventana, false);
    };
    w.alActivar(QStringLiteral("mnuVisita"), [abrirVisita] { (*abrirVisita)(AperturaVisita{}); });
    *enlazarMascota = [&w, abrirVisita, abrirEstancias](MascotaWindow* ventana) {
        QObject::connect(ventana, &MascotaWindow::abrirVisitas, &w, [abrirVisita](qint64 cliente, qint64 mascota) {
            AperturaVisita ap;
            ap.IdClienteInit = cliente;
            ap.IdMascotaInit = mascota;
            (*abrirVisita)(ap);
        });
        QObject::connect(ventana, &MascotaWindow::abrirHospitalizaciones, &w, abrirEstancias);
    };
    w.alActivar(QStringLiteral("mnuHospitalizadas"), [&w, &e, abrirMascota] {
        auto* ventana = new HospitalizadasWindow(e);
        QObject::connect(ventana, &HospitalizadasWindow::abrirMascota, &w, abrirMascota);
        if (!ventana->cargar()) {
            delete ventana;
            return;
        }
        w.abrirVentana(ventana);
    });
}
