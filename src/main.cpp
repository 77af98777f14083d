// Pramelvix: the desktop program of one workstation.
#include "app/arranque.h"
#include "app/cierre.h"
#include "app/login_consola.h"
#include "app/senales.h"
#include "core/console_dialogs.h"
#include "gui/main_window.h"
#include "gui/pantallas.h"
#include "gui/qt_dialogs.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char* argv[]) {
    const bool consola = dialogosEnConsola();
    // On the terminal the windows still exist, off screen, so that the program runs whole.
    if (consola && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Pramelvix"));
    QApplication::setApplicationVersion(kVersionPrograma);
    QApplication::setQuitOnLastWindowClosed(false);

    // A termination asked for during start-up ends the program once start-up returns; once
    // the window exists it closes the program through its normal closing.
    MainWindow* ventanaActiva = nullptr;
    bool terminarPronto = false;
    AvisoTerminar aviso([&] {
        if (ventanaActiva) {
            ventanaActiva->terminar();
            return;
        }
        terminarPronto = true;
        if (QWidget* modal = QApplication::activeModalWidget()) modal->close();
    });
    ConsoleDialogs dialogosConsola;
    dialogosConsola.setInterrupcion(aviso.descriptor());
    QtDialogs dialogosQt;
    Dialogs& dialogos = consola ? static_cast<Dialogs&>(dialogosConsola) : dialogosQt;
    SystemClock reloj;

    OpcionesArranque opciones;
    opciones.carpetaPrograma = carpetaPrograma();
    opciones.puesto = nombrePuesto();
    Arranque arranque(dialogos, reloj, opciones);
    std::unique_ptr<Entorno> entorno = arranque.ejecutar(QApplication::arguments().mid(1));
    if (!entorno) return arranque.codigoSalida();
    if (terminarPronto) {
        abandonarPuesto(*entorno);
        return 0;
    }

    MainWindow ventana(*entorno);
    registrarPantallas(ventana);
    aplicarConfiguracionPuesto(ventana);
    dialogosQt.setPadre(&ventana);
    if (consola) ventana.setIdentificador([&] { return identificarEnConsola(*entorno, dialogosConsola); });
    QObject::connect(&ventana, &MainWindow::terminado, &app, &QApplication::quit, Qt::QueuedConnection);
    ventanaActiva = &ventana;
    ventana.show();
    QTimer::singleShot(0, &ventana, [&] {
        if (!ventana.identificar()) ventana.salirSinConfirmar();
    });
    const int codigo = QApplication::exec();
    return codigo;
}
