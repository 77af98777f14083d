#pragma once
// The main window: an MDI frame in which every screen opens as a child window, with the
// menu tree, the toolbar tbrPrincipal, the status bar sbPrincipal (user panel, automatic
// saving) and the timers tmrAgenda, tmrBackUp, tmrCodBar and tmr.
#include "app/chat.h"
#include "app/entorno.h"
#include "app/temporizadores.h"

#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <functional>

class QAction;
class QLabel;
class QMdiArea;
class QMenu;
class QTimer;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(Entorno& entorno, QWidget* padre = nullptr);

    Entorno& entorno() { return e_; }
    QMdiArea* mdi() const { return mdi_; }
    QAction* accion(const QString& nombre) const { return acciones_.value(nombre); }

    // Shows the login (the Qt dialog, or what setIdentificador gives); true when a user got in.
    bool identificar();
    void setIdentificador(std::function<bool()> identificador) { identificador_ = std::move(identificador); }
    // Closes every child window and leaves the session without leaving the program.
    void desidentificar();
    // Closes the program without questions (the system asked it to end).
    void terminar();
    // Closes the program after a cancelled login: no confirmation, but the compaction
    // question when it is due.
    void salirSinConfirmar();

    // Gives a command its work and enables it.
    void alActivar(const QString& nombre, std::function<void()> trabajo);
    // Opens a screen as a child window; with unica, a window of the same object name already
    // open is brought to the front instead.
    void abrirVentana(QWidget* ventana, bool unica = true);

    // The agenda's reminder check, called with "dd/mm/yyyy" and "hh:mm" every fifth minute.
    void setComprobadorAgenda(std::function<void(const QString&, const QString&)> f) {
        agenda_ = std::move(f);
    }
    // This workstation's automatic saving interval (minutes, 0 off) and backup time.
    void configurarAutoGuardado(int minutos);
    void configurarCopiaAutomatica(const std::optional<QTime>& hora);
    // Barcode entry: collects what the reader types until tmrCodBar fires.
    void iniciarCodigoBarras();

    // The timers' work, callable by tests.
    void alTemporizadorAgenda();
    void alTemporizadorCopia();
    void alTemporizadorCodigoBarras();
    const QString& ultimoAvisoCopia() const { return avisoCopia_; }

signals:
    // The program must end (the window closed, or the session was terminated).
    void terminado();

protected:
    void closeEvent(QCloseEvent* evento) override;
    bool eventFilter(QObject* objeto, QEvent* evento) override;

private:
    void crearMenus();
    void crearBarra();
    void crearTemporizadores();
    void aplicarPermisos();
    void ponerFondo();
    void quitarFondo();
    void compactar();

    Entorno& e_;
    QMdiArea* mdi_;
    QLabel* panelUsuario_;
    QLabel* panelAutoGuardadoOn_;
    QLabel* panelAutoGuardadoOff_;
    QHash<QString, QAction*> acciones_;
    QHash<QString, QMenu*> menus_;
    QTimer* tmrAgenda_;
    QTimer* tmrBackUp_;
    QTimer* tmrCodBar_;
    QTimer* tmr_;
    QList<QPointer<QWidget>> pendientes_;
    ChatPuesto* chat_;
    std::function<bool()> identificador_;
    std::function<void(const QString&, const QString&)> agenda_;
    std::optional<QTime> horaCopia_;
    std::optional<QDate> ultimaCopia_;
    QString avisoCopia_;
    QString codigoBarras_;
    bool recogiendoCodigo_ = false;
    bool cerrado_ = false;
};
