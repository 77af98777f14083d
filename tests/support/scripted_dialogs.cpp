#include "scripted_dialogs.h"

#include "data/database.h"

#include <QtTest>

namespace {
// A dialog that waits for the user while a write transaction is open keeps every other
// workstation waiting: the test in which it happens fails.
void sinTransaccionAbierta(const QString& titulo, const QString& texto) {
    if (Database::transaccionesAbiertas() == 0) return;
    const QByteArray m =
        QStringLiteral("Diálogo abierto dentro de una transacción: «%1» %2").arg(titulo, texto).toUtf8();
    QTest::qFail(m.constData(), __FILE__, __LINE__);
}
} // namespace

void ScriptedDialogs::mostrar(Icono icono, const QString& titulo, const QString& texto) {
    sinTransaccionAbierta(titulo, texto);
    mensajes_.append({icono, titulo, texto, false, false, {}, -1});
}

bool ScriptedDialogs::preguntar(Icono icono, const QString& titulo, const QString& texto) {
    sinTransaccionAbierta(titulo, texto);
    if (respuestas_.isEmpty()) ++sinRespuesta_;
    const bool respuesta = !respuestas_.isEmpty() && respuestas_.dequeue();
    mensajes_.append({icono, titulo, texto, true, respuesta, {}, -1});
    return respuesta;
}

int ScriptedDialogs::elegir(const QString& titulo, const QString& texto, const QStringList& opciones) {
    sinTransaccionAbierta(titulo, texto);
    int opcion = opciones_.isEmpty() ? -2 : opciones_.dequeue(); // -2: nothing scripted
    if (opcion < -1 || opcion >= opciones.size()) {
        ++sinRespuesta_;
        opcion = -1;
    }
    mensajes_.append({Icono::Pregunta, titulo, texto, true, opcion >= 0, opciones, opcion});
    return opcion;
}

QString ScriptedDialogs::elegirFichero(const QString& titulo, const QString&, const QString&) {
    sinTransaccionAbierta(titulo, {});
    mensajes_.append({Icono::Ninguno, titulo, QStringLiteral("<elegir fichero>"), false, false, {}, -1});
    return ficheros_.isEmpty() ? QString() : ficheros_.dequeue();
}

QString ScriptedDialogs::elegirFicheroGuardar(const QString& titulo, const QString&, const QString&) {
    sinTransaccionAbierta(titulo, {});
    mensajes_.append({Icono::Ninguno, titulo, QStringLiteral("<guardar fichero>"), false, false, {}, -1});
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
