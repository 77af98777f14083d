#pragma once
// Failures that travel up to the command that is running. A command runs under a
// CommandTrace, which turns them into one message for the user; nothing crosses a screen.
#include <QString>
#include <stdexcept>

// A database operation failed; texto is the driver's own description.
class ErrorBD : public std::runtime_error {
public:
    explicit ErrorBD(const QString& texto) : std::runtime_error(texto.toStdString()), texto_(texto) {}
    const QString& texto() const { return texto_; }
    // The text the user reads.
    QString mensaje() const { return QStringLiteral("Error en B.D.: ") + texto_; }

private:
    QString texto_;
};

// A rule of the program was broken in a way the user must read (already worded in Spanish).
class ErrorPrograma : public std::runtime_error {
public:
    explicit ErrorPrograma(const QString& texto) : std::runtime_error(texto.toStdString()), texto_(texto) {}
    const QString& texto() const { return texto_; }

private:
    QString texto_;
};
