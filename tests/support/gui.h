#pragma once
// Driving windows in GUI tests: widgets by object name (a missing one stops the test run
// with its name), typing, clicking, answering the next modal dialog, and a main() that
// makes a QApplication.
#include "sesion.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>
#include <functional>

template <class W = QWidget> W* hijo(const QObject& raiz, const QString& nombre) {
    W* h = raiz.findChild<W*>(nombre);
    if (!h) qFatal("falta el control %s", qPrintable(nombre));
    return h;
}

inline void pulsar(const QObject& raiz, const QString& boton) {
    QTest::mouseClick(hijo<QAbstractButton>(raiz, boton), Qt::LeftButton);
}

// Replaces the text of a line edit as a user types it.
inline void escribir(const QObject& raiz, const QString& campo, const QString& texto) {
    auto* l = hijo<QLineEdit>(raiz, campo);
    l->clear();
    QTest::keyClicks(l, texto);
}

inline void elegirTexto(const QObject& raiz, const QString& combo, const QString& texto) {
    auto* c = hijo<QComboBox>(raiz, combo);
    c->setCurrentIndex(c->findText(texto));
}

// texto(0) ... texto(n - 1).
template <class F> QStringList textosDe(int n, F texto) {
    QStringList t;
    for (int i = 0; i < n; ++i)
        t << texto(i);
    return t;
}

inline QStringList textosCombo(const QObject& raiz, const QString& combo) {
    auto* c = hijo<QComboBox>(raiz, combo);
    return textosDe(c->count(), [c](int i) { return c->itemText(i); });
}

inline QStringList cabeceras(const QTreeWidget& l) {
    return textosDe(l.columnCount(), [&l](int i) { return l.headerItem()->text(i); });
}

// The texts of one column of a list.
inline QStringList columna(const QTreeWidget& l, int col) {
    return textosDe(l.topLevelItemCount(), [&l, col](int i) { return l.topLevelItem(i)->text(col); });
}

// Runs trabajo on the modal dialog that the next command opens (null if none opened); the
// dialog is closed afterwards if trabajo left it open, so that a failure never hangs the test.
inline void alAbrirModal(std::function<void(QDialog*)> trabajo) {
    QTimer::singleShot(0, [trabajo] {
        auto* dlg = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        trabajo(dlg);
        if (dlg && dlg->isVisible()) dlg->reject();
    });
}

// With PRAMELVIX_CAPTURAS set to a folder, saves the window there (screenshots of the
// documentation); otherwise does nothing.
inline void capturar(QWidget& w, const QString& nombre) {
    const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
    if (carpeta.isEmpty()) return;
    w.show();
    if (!QTest::qWaitForWindowExposed(&w)) return;
    w.grab().save(carpeta + u'/' + nombre);
}

#define PMX_GUI_TEST_MAIN(Clase) PMX_TEST_MAIN(QApplication, Clase)
