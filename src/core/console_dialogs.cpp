#include "core/console_dialogs.h"

#include <QByteArray>
#include <QtGlobal>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

ConsoleDialogs::ConsoleDialogs(FILE* salida, FILE* entrada) : salida_(salida), entrada_(entrada) {}

void ConsoleDialogs::escribir(const QString& texto) {
    const QByteArray bytes = texto.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), salida_);
    std::fflush(salida_);
}

void ConsoleDialogs::bloque(const QString& cabecera, const QString& titulo, const QString& texto) {
    escribir(QStringLiteral("[") + cabecera + QStringLiteral("] ") + titulo + QLatin1Char('\n') + texto +
             QLatin1Char('\n'));
}

bool ConsoleDialogs::leerLinea(QString& linea) {
    const int fd = fileno(entrada_);
    while (true) {
        const qsizetype fin = pendiente_.indexOf('\n');
        if (fin >= 0 || (finEntrada_ && !pendiente_.isEmpty())) {
            QByteArray datos = fin >= 0 ? pendiente_.left(fin) : pendiente_;
            pendiente_.remove(0, fin >= 0 ? fin + 1 : pendiente_.size());
            if (datos.endsWith('\r')) datos.chop(1);
            linea = QString::fromUtf8(datos);
            return true;
        }
        if (finEntrada_) return false;
        // Wait for input, or for the program to be asked to end.
        pollfd espera[2] = {{fd, POLLIN, 0}, {interrupcion_, POLLIN, 0}};
        const int n = ::poll(espera, interrupcion_ >= 0 ? 2 : 1, -1);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        if (interrupcion_ >= 0 && (espera[1].revents & POLLIN)) return false;
        char bloque[4096];
        const ssize_t leidos = ::read(fd, bloque, sizeof bloque);
        if (leidos < 0 && errno == EINTR) continue;
        if (leidos <= 0)
            finEntrada_ = true;
        else
            pendiente_.append(bloque, leidos);
    }
}

void ConsoleDialogs::mostrar(Icono icono, const QString& titulo, const QString& texto) {
    bloque(nombreIcono(icono), titulo, texto);
}

bool ConsoleDialogs::preguntar(Icono icono, const QString& titulo, const QString& texto) {
    bloque(nombreIcono(icono), titulo, texto);
    escribir(QStringLiteral("¿Sí/No? "));
    QString respuesta;
    if (!leerLinea(respuesta)) {
        escribir(QStringLiteral("No\n"));
        return false;
    }
    const QString r = respuesta.trimmed().toLower();
    return r == QLatin1String("s") || r == QLatin1String("si") || r == QStringLiteral("sí") ||
           r == QLatin1String("y") || r == QLatin1String("yes");
}

int ConsoleDialogs::elegir(const QString& titulo, const QString& texto, const QStringList& opciones) {
    QString lista;
    for (qsizetype i = 0; i < opciones.size(); ++i)
        lista += QStringLiteral("\n  %1) ").arg(i + 1) + opciones.at(i);
    bloque(QStringLiteral("ELEGIR"), titulo, texto + lista);
    if (opciones.isEmpty()) return -1;
    while (true) {
        escribir(QStringLiteral("Número (vacío para cancelar): "));
        QString respuesta;
        if (!leerLinea(respuesta)) {
            escribir(QStringLiteral("\n"));
            return -1;
        }
        respuesta = respuesta.trimmed();
        if (respuesta.isEmpty()) return -1;
        bool ok = false;
        const int n = respuesta.toInt(&ok);
        if (ok && n >= 1 && n <= opciones.size()) return n - 1;
        escribir(QStringLiteral("Escriba un número del 1 al %1.\n").arg(opciones.size()));
    }
}

QString ConsoleDialogs::elegirFichero(const QString& titulo, const QString& filtro, const QString& carpeta) {
    bloque(QStringLiteral("FICHERO"), titulo, filtro + QStringLiteral(" (") + carpeta + QLatin1Char(')'));
    QString ruta;
    if (!leerLinea(ruta)) return {};
    return ruta.trimmed();
}

QString ConsoleDialogs::elegirFicheroGuardar(const QString& titulo, const QString& filtro,
                                             const QString& propuesto) {
    bloque(QStringLiteral("GUARDAR"), titulo, filtro + QStringLiteral(" (") + propuesto + QLatin1Char(')'));
    QString ruta;
    if (!leerLinea(ruta)) return {};
    return ruta.trimmed();
}

void ConsoleDialogs::progreso(const QString& texto) {
    if (!texto.isEmpty()) escribir(QStringLiteral("... ") + texto + QLatin1Char('\n'));
}

bool dialogosEnConsola() {
    if (qEnvironmentVariable("PRAMELVIX_DIALOGOS").compare(QLatin1String("consola"), Qt::CaseInsensitive) ==
        0)
        return true;
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return false;
    return qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}
