#include "scripted_dialogs.h"

void ScriptedDialogs::mostrar(Icono icono, const QString& titulo, const QString& texto) {
    mensajes_.append({icono, titulo, texto, false, false});
}

bool ScriptedDialogs::preguntar(Icono icono, const QString& titulo, const QString& texto) {
    bool respuesta = false;
    if (respuestas_.isEmpty())
        ++sinRespuesta_;
    else
        respuesta = respuestas_.dequeue();
    mensajes_.append({icono, titulo, texto, true, respuesta});
    return respuesta;
}

QString ScriptedDialogs::elegirFichero(const QString& titulo, const QString&, const QString&) {
    mensajes_.append({Icono::Ninguno, titulo, QStringLiteral("<elegir fichero>"), false, false});
    return ficheros_.isEmpty() ? QString() : ficheros_.dequeue();
}

QString ScriptedDialogs::elegirFicheroGuardar(const QString& titulo, const QString&, const QString&) {
    mensajes_.append({Icono::Ninguno, titulo, QStringLiteral("<guardar fichero>"), false, false});
    return ficheros_.isEmpty() ? QString() : ficheros_.dequeue();
}

void ScriptedDialogs::progreso(const QString& texto) {
    if (!texto.isEmpty()) progresos_.append(texto);
}

QStringList ScriptedDialogs::textos() const {
    QStringList lista;
    for (const auto& m : mensajes_)
        lista.append(m.texto);
    return lista;
}

void ScriptedDialogs::limpiar() {
    mensajes_.clear();
    progresos_.clear();
    sinRespuesta_ = 0;
}
