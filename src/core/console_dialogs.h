#pragma once
// Message boxes written to the terminal: used when there is no display or when
// PRAMELVIX_DIALOGOS=consola. Each box is one block on standard output:
//   [ERROR] Pramelvix
//   Error en la ejecución
// A question reads its answer from standard input ("s", "si", "sí", "y", "yes" mean Yes;
// anything else, or the end of input, means No). A file picker reads a path. A list picker
// numbers the options from 1 and reads the number (an empty line or the end of input cancels).
#include "core/dialogs.h"

#include <cstdio>

class ConsoleDialogs final : public Dialogs {
public:
    explicit ConsoleDialogs(FILE* salida = stdout, FILE* entrada = stdin);

    void mostrar(Icono icono, const QString& titulo, const QString& texto) override;
    bool preguntar(Icono icono, const QString& titulo, const QString& texto) override;
    using Dialogs::preguntar;
    int elegir(const QString& titulo, const QString& texto, const QStringList& opciones) override;
    QString elegirFichero(const QString& titulo, const QString& filtro, const QString& carpeta) override;
    QString elegirFicheroGuardar(const QString& titulo, const QString& filtro,
                                 const QString& propuesto) override;
    void progreso(const QString& texto) override;

    // Reads one line of standard input; false at the end of input, or when the
    // interruption descriptor becomes readable (the program was asked to end).
    bool leerLinea(QString& linea);
    void setInterrupcion(int descriptor) { interrupcion_ = descriptor; }
    void escribir(const QString& texto);

private:
    void bloque(const QString& cabecera, const QString& titulo, const QString& texto);
    FILE* salida_;
    FILE* entrada_;
    QByteArray pendiente_; // read from the input but not yet handed out
    bool finEntrada_ = false;
    int interrupcion_ = -1;
};

// True when message boxes must go to the terminal.
bool dialogosEnConsola();
