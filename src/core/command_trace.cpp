#include "core/command_trace.h"

#include "core/errores.h"

#include <exception>

CommandTrace::CommandTrace(Dialogs& dialogs, QString descripcion)
    : dialogs_(dialogs), descripcion_(std::move(descripcion)) {}

void CommandTrace::paso(const QString& texto) {
    pasos_.append(QString::number(pasos_.size() + 1) + QStringLiteral(" - ") + texto);
}

QString CommandTrace::textoFallo(const QString& causa) const {
    QString texto =
        QStringLiteral("Se ha producido un error al ") + descripcion_ + QStringLiteral(":\n") + causa;
    if (!pasos_.isEmpty())
        texto += QStringLiteral("\n\nPasos realizados:\n") + pasos_.join(QLatin1Char('\n'));
    return texto;
}

bool CommandTrace::ejecutar(const std::function<void()>& orden) {
    try {
        orden();
        return true;
    } catch (const ErrorBD& e) {
        dialogs_.mostrar(Icono::Critico, descripcion_, e.mensaje());
    } catch (const ErrorPrograma& e) {
        dialogs_.mostrar(Icono::Critico, descripcion_, textoFallo(e.texto()));
    } catch (const std::exception& e) {
        dialogs_.mostrar(Icono::Critico, descripcion_, textoFallo(QString::fromLocal8Bit(e.what())));
    }
    return false;
}
