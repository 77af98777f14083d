#pragma once
// The main window: an MDI frame in which every screen opens as a child window, with the
// toolbar tbrPrincipal and the status bar sbPrincipal (user panel, automatic saving).
#include "app/entorno.h"

#include <QMainWindow>
#include <functional>

class QLabel;
class QMdiArea;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    // identificador: shows the login and tells whether a user got in (the Qt dialog
    // by default; the terminal in console mode).
    explicit MainWindow(Entorno& entorno, QWidget* padre = nullptr);
    void setIdentificador(std::function<bool()> identificador) { identificador_ = std::move(identificador); }

    Entorno& entorno() { return e_; }
    QMdiArea* mdi() const { return mdi_; }

    // Shows the login over the window; true when a user got in.
    bool identificar();
    void desidentificar();
    // Closes the program without asking (termination requested by the system).
    void terminar();

protected:
    void closeEvent(QCloseEvent* evento) override;

private:
    void actualizarEstado();

    Entorno& e_;
    QMdiArea* mdi_;
    QLabel* panelUsuario_;
    QLabel* panelAutoGuardadoOn_;
    QLabel* panelAutoGuardadoOff_;
    std::function<bool()> identificador_;
    bool cerrado_ = false;
};
