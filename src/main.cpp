// Pramelvix: the desktop program of one workstation.
#include "app/arranque.h"
#include "app/cierre.h"
#include "app/login_consola.h"
#include "app/senales.h"
#include "core/console_dialogs.h"
#include "gui/main_window.h"
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

    ConsoleDialogs dialogosConsola;
    QtDialogs dialogosQt;
    Dialogs& dialogos = consola ? static_cast<Dialogs&>(dialogosConsola) : dialogosQt;
    SystemClock reloj;

    OpcionesArranque opciones;
    opciones.carpetaPrograma = carpetaPrograma();
    opciones.puesto = nombrePuesto();
    Arranque arranque(dialogos, reloj, opciones);
    std::unique_ptr<Entorno> entorno = arranque.ejecutar(QApplication::arguments().mid(1));
    if (!entorno) return arranque.codigoSalida();

    MainWindow ventana(*entorno);
    dialogosQt.setPadre(&ventana);
    if (consola) ventana.setIdentificador([&] { return identificarEnConsola(*entorno, dialogosConsola); });
    AvisoTerminar aviso([&] { ventana.terminar(); });
    ventana.show();
    QTimer::singleShot(0, &ventana, [&] {
        if (!ventana.identificar()) ventana.terminar();
    });
    const int codigo = QApplication::exec();
    return codigo;
}
