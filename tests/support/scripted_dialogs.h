#pragma once
// Dialogs for tests: records every message (kind, title, text) and answers questions, list
// pickers and file pickers from a script, in order. A question with no scripted answer is
// recorded, answered No, and counted in sinRespuesta so that a test can fail on it; a list
// picker with no scripted choice (or one outside the list) likewise, answered -1 (cancelled).
#include "core/dialogs.h"

#include <QList>
#include <QQueue>
#include <QStringList>

struct MensajeGrabado {
    Icono icono;
    QString titulo;
    QString texto;
    bool pregunta = false;
    bool respuesta = false;
    QStringList opciones; // a list picker's options
    int opcion = -1;      // and the index answered
};

class ScriptedDialogs final : public Dialogs {
public:
    // Script the next answers.
    ScriptedDialogs& responder(bool si) {
        respuestas_.enqueue(si);
        return *this;
    }
    ScriptedDialogs& si() { return responder(true); }
    ScriptedDialogs& no() { return responder(false); }
    // The index a list picker answers; -1 cancels.
    ScriptedDialogs& opcion(int indice) {
        opciones_.enqueue(indice);
        return *this;
    }
    ScriptedDialogs& fichero(const QString& ruta) {
        ficheros_.enqueue(ruta);
        return *this;
    }

    void mostrar(Icono icono, const QString& titulo, const QString& texto) override;
    bool preguntar(Icono icono, const QString& titulo, const QString& texto) override;
    using Dialogs::preguntar;
    int elegir(const QString& titulo, const QString& texto, const QStringList& opciones) override;
    QString elegirFichero(const QString& titulo, const QString& filtro, const QString& carpeta) override;
    QString elegirFicheroGuardar(const QString& titulo, const QString& filtro,
                                 const QString& propuesto) override;
    void progreso(const QString& texto) override;

    const QList<MensajeGrabado>& mensajes() const { return mensajes_; }
    QStringList textos() const;
    QString ultimoTexto() const { return mensajes_.isEmpty() ? QString() : mensajes_.last().texto; }
    const MensajeGrabado& ultimo() const { return mensajes_.last(); }
    const QStringList& progresos() const { return progresos_; }
    int sinRespuesta() const { return sinRespuesta_; }
    int respuestasPendientes() const { return static_cast<int>(respuestas_.size()); }
    void limpiar();

private:
    QList<MensajeGrabado> mensajes_;
    QQueue<bool> respuestas_;
    QQueue<int> opciones_;
    QQueue<QString> ficheros_;
    QStringList progresos_;
    int sinRespuesta_ = 0;
};
