#pragma once
// The only way a form speaks to the user: message boxes, Yes/No questions, file pickers
// and a progress text. Qt draws them on a display; the console implementation writes them
// to the terminal; tests script them.
#include <QString>
#include <QStringList>

enum class Icono {
    Ninguno,     // plain box
    Informacion, // style 64
    Exclamacion, // style 48
    Critico,     // style 16
    Pregunta,    // style 32
};

QString nombreIcono(Icono icono);

class Dialogs {
public:
    virtual ~Dialogs() = default;

    virtual void mostrar(Icono icono, const QString& titulo, const QString& texto) = 0;
    // Yes/No question; true means Yes.
    virtual bool preguntar(Icono icono, const QString& titulo, const QString& texto) = 0;
    // Picks one of the options (shown in the given order); the index chosen, or -1 when the
    // user cancelled.
    virtual int elegir(const QString& titulo, const QString& texto, const QStringList& opciones) = 0;
    // File pickers; an empty text means the user cancelled.
    virtual QString elegirFichero(const QString& titulo, const QString& filtro, const QString& carpeta) = 0;
    virtual QString elegirFicheroGuardar(const QString& titulo, const QString& filtro,
                                         const QString& propuesto) = 0;
    // A progress text shown while a long operation runs; an empty text removes it.
    virtual void progreso(const QString& texto) = 0;

    void informar(const QString& titulo, const QString& texto) { mostrar(Icono::Informacion, titulo, texto); }
    void avisar(const QString& titulo, const QString& texto) { mostrar(Icono::Exclamacion, titulo, texto); }
    void error(const QString& titulo, const QString& texto) { mostrar(Icono::Critico, titulo, texto); }
    bool preguntar(const QString& titulo, const QString& texto) {
        return preguntar(Icono::Pregunta, titulo, texto);
    }
};

// Dialogs for work nobody watches (demo data, benchmarks): shows nothing, answers No and
// cancels every picker.
class DialogosMudos final : public Dialogs {
public:
    void mostrar(Icono, const QString&, const QString&) override {}
    bool preguntar(Icono, const QString&, const QString&) override { return false; }
    int elegir(const QString&, const QString&, const QStringList&) override { return -1; }
    QString elegirFichero(const QString&, const QString&, const QString&) override { return {}; }
    QString elegirFicheroGuardar(const QString&, const QString&, const QString&) override { return {}; }
    void progreso(const QString&) override {}
    using Dialogs::preguntar;
};
