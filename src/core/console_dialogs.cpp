#include "core/console_dialogs.h"

#include <QByteArray>
#include <QtGlobal>

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
    QByteArray datos;
    int c;
    bool alguno = false;
    while ((c = std::fgetc(entrada_)) != EOF) {
        alguno = true;
        if (c == '\n') break;
        datos.append(static_cast<char>(c));
    }
    if (!alguno) return false;
    if (datos.endsWith('\r')) datos.chop(1);
    linea = QString::fromUtf8(datos);
    return true;
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
    if (qEnvironmentVariable("PRAMELVIX_DIALOGOS").compare(QLatin1String("consola"), Qt::CaseInsensitive) == 0)
        return true;
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return false;
    return qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}
