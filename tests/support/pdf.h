#pragma once
// The text of a PDF, page by page, through pdftotext (poppler-utils); a test skips its PDF
// checks when the program is missing.
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

inline bool hayPdftotext() {
    return !QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty();
}

// One text per page, laid out as on the page ("-layout"); empty when the file cannot be read.
inline QStringList paginasPdf(const QString& fichero) {
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), fichero, QStringLiteral("-")});
    if (!p.waitForFinished(30000) || p.exitCode() != 0) return {};
    QStringList paginas = QString::fromUtf8(p.readAllStandardOutput()).split(QLatin1Char('\f'));
    if (!paginas.isEmpty() && paginas.last().trimmed().isEmpty()) paginas.removeLast();
    return paginas;
}
