#include "gui/main_window.h"

#include "app/arranque.h"
#include "app/cierre.h"
#include "app/cierre_form.h"
#include "app/menu_principal.h"
#include "data/copia_automatica.h"
#include "gui/login_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolBar>

namespace {
const QColor kFondo(0x3a, 0x6e, 0x8f);
const QString kClaveFondo = QStringLiteral("ventana/fondo");
} // namespace

MainWindow::MainWindow(Entorno& entorno, QWidget* padre) : QMainWindow(padre), e_(entorno) {
    setObjectName(QStringLiteral("frmPrincipal"));
    setWindowTitle(kTituloPrograma + QStringLiteral(" Ver. ") + kVersionPrograma);
    mdi_ = new QMdiArea(this);
    mdi_->setObjectName(QStringLiteral("mdiPrincipal"));
    mdi_->setBackground(kFondo);
    setCentralWidget(mdi_);

    auto* estado = statusBar();
    estado->setObjectName(QStringLiteral("sbPrincipal"));
    panelUsuario_ = new QLabel(this);
    panelUsuario_->setObjectName(QStringLiteral("panelUsuario"));
    panelUsuario_->setMinimumWidth(220);
    panelAutoGuardadoOn_ = new QLabel(this);
    panelAutoGuardadoOn_->setObjectName(QStringLiteral("AutoGuardadoON"));
    panelAutoGuardadoOff_ = new QLabel(textoAutoGuardado(0), this);
    panelAutoGuardadoOff_->setObjectName(QStringLiteral("AutoGuardadoOFF"));
    estado->addWidget(panelUsuario_, 1);
    estado->addPermanentWidget(panelAutoGuardadoOn_);
    estado->addPermanentWidget(panelAutoGuardadoOff_);
    configurarAutoGuardado(0);

    crearMenus();
    crearBarra();
    crearTemporizadores();

    chat_ = new ChatPuesto(e_.dialogs(), this);
    bool ok = false;
    const int puerto = e_.ajustes().leerConDefecto(claves::PUERTO_UDP_CHAT).toInt(&ok);
    // Port 0 turns the chat off on purpose; a port that is not valid is reported like a taken one.
    if (!ok || puerto != 0)
        chat_->escuchar(ok && puerto > 0 && puerto < 65536 ? static_cast<quint16>(puerto) : 0);
    connect(chat_, &ChatPuesto::mensajeRecibido, this, [this](const MensajeChat& m) {
        statusBar()->showMessage(
            m.puesto + QStringLiteral(" (") + m.usuario + QStringLiteral("): ") + m.texto, 30000);
    });

    const QString fondo = QSettings().value(kClaveFondo).toString();
    if (!fondo.isEmpty()) mdi_->setBackground(QPixmap(fondo));
    resize(1180, 760);
    aplicarPermisos();
}

void MainWindow::crearMenus() {
    for (const auto& m : menusPrincipales()) {
        QMenu* menu = menuBar()->addMenu(m.texto);
        menu->setObjectName(m.nombre);
        menus_.insert(m.nombre, menu);
    }
    for (const auto& c : comandosMenu()) {
        QMenu* menu = menus_.value(c.menu);
        if (!menu) continue;
        if (c.separadorAntes) menu->addSeparator();
        QAction* a = menu->addAction(c.texto);
        a->setObjectName(c.nombre);
        a->setEnabled(false); // each command is enabled when its screen exists
        acciones_.insert(c.nombre, a);
    }
    alActivar(QStringLiteral("mnuIdentificar"), [this] { identificar(); });
    alActivar(QStringLiteral("mnuDesidentificar"), [this] { desidentificar(); });
    alActivar(QStringLiteral("mnuSalir"), [this] { close(); });
    alActivar(QStringLiteral("mnuCascada"), [this] { mdi_->cascadeSubWindows(); });
    alActivar(QStringLiteral("mnuMosaico"), [this] { mdi_->tileSubWindows(); });
    alActivar(QStringLiteral("mnuOrganizar"), [this] {
        for (QMdiSubWindow* w : mdi_->subWindowList())
            if (w->isMinimized()) w->showMinimized();
        mdi_->tileSubWindows();
    });
    alActivar(QStringLiteral("mnuPonerFondo"), [this] { ponerFondo(); });
    alActivar(QStringLiteral("mnuQuitarFondo"), [this] { quitarFondo(); });
    alActivar(QStringLiteral("mnuCompactarBD"), [this] { compactar(); });
}

void MainWindow::crearBarra() {
    auto* barra = addToolBar(QStringLiteral("Principal"));
    barra->setObjectName(QStringLiteral("tbrPrincipal"));
    barra->setMovable(false);
    barra->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    const struct {
        const char* accion;
        QStyle::StandardPixmap icono;
    } botones[] = {
        {"mnuMttoCliente", QStyle::SP_FileDialogDetailedView},
        {"mnuMttoMascota", QStyle::SP_FileDialogInfoView},
        {"mnuAgendas", QStyle::SP_FileDialogContentsView},
        {"mnuVisita", QStyle::SP_DialogOpenButton},
        {"mnuAlbaranes", QStyle::SP_FileIcon},
        {"mnuCobros", QStyle::SP_DialogApplyButton},
        {"mnuMttoArticulo", QStyle::SP_DirIcon},
        {"mnuSalaEspera", QStyle::SP_ComputerIcon},
    };
    for (const auto& b : botones) {
        QAction* a = acciones_.value(QString::fromLatin1(b.accion));
        if (!a) continue;
        a->setIcon(style()->standardIcon(b.icono));
        barra->addAction(a);
    }
    barra->addSeparator();
    QAction* salir = acciones_.value(QStringLiteral("mnuSalir"));
    salir->setIcon(style()->standardIcon(QStyle::SP_DialogCloseButton));
    barra->addAction(salir);
}

void MainWindow::crearTemporizadores() {
    auto crear = [this](const char* nombre, int ms, bool activo) {
        auto* t = new QTimer(this);
        t->setObjectName(QString::fromLatin1(nombre));
        t->setInterval(ms);
        if (activo) t->start();
        return t;
    };
    tmrAgenda_ = crear("tmrAgenda", 60000, true);
    tmrBackUp_ = crear("tmrBackUp", 60000, false);
    tmrCodBar_ = crear("tmrCodBar", 2000, false);
    tmr_ = crear("tmr", 250, false);
    connect(tmrAgenda_, &QTimer::timeout, this, &MainWindow::alTemporizadorAgenda);
    connect(tmrBackUp_, &QTimer::timeout, this, &MainWindow::alTemporizadorCopia);
    connect(tmrCodBar_, &QTimer::timeout, this, &MainWindow::alTemporizadorCodigoBarras);
    connect(tmr_, &QTimer::timeout, this, [this] {
        tmr_->stop();
        for (const auto& w : std::as_const(pendientes_))
            if (w) {
                w->show();
                // A screen larger than the frame is fitted inside it, never left partly outside.
                const QSize disponible = mdi_->viewport()->size();
                QRect r = w->geometry();
                r.setSize(r.size().boundedTo(disponible));
                r.moveLeft(qBound(0, r.x(), qMax(0, disponible.width() - r.width())));
                r.moveTop(qBound(0, r.y(), qMax(0, disponible.height() - r.height())));
                w->setGeometry(r);
                w->update();
            }
        pendientes_.clear();
    });
}

void MainWindow::alActivar(const QString& nombre, std::function<void()> trabajo) {
    QAction* a = acciones_.value(nombre);
    if (!a) return;
    a->setEnabled(true);
    connect(a, &QAction::triggered, this, [trabajo = std::move(trabajo)] { trabajo(); });
}

void MainWindow::aplicarPermisos() {
    const bool dentro = e_.identificado();
    const bool admin = e_.esAdministrador();
    bool contabSoloAdmin = false;
    if (dentro) {
        try {
            contabSoloAdmin = e_.ajustes().leer(claves::CONTAB_SOLO_ADMINISTRADORES) == QLatin1String("S");
        } catch (const ErrorBD&) {
            contabSoloAdmin = true;
        }
    }
    for (const auto& m : menusPrincipales())
        if (QMenu* menu = menus_.value(m.nombre))
            menu->menuAction()->setVisible(comandoVisible(m.permiso, dentro, admin, contabSoloAdmin));
    for (const auto& c : comandosMenu())
        if (QAction* a = acciones_.value(c.nombre))
            a->setVisible(comandoVisible(c.permiso, dentro, admin, contabSoloAdmin));
    // Leaving is for a logged-in user; before, the login window's cancel ends the program.
    acciones_.value(QStringLiteral("mnuSalir"))->setEnabled(dentro);
    acciones_.value(QStringLiteral("mnuIdentificar"))->setVisible(!dentro);
    acciones_.value(QStringLiteral("mnuDesidentificar"))->setVisible(dentro);
    panelUsuario_->setText(dentro ? e_.nombreUsuario : QString());
}

bool MainWindow::identificar() {
    bool dentro = false;
    if (identificador_) {
        dentro = identificador_();
    } else {
        LoginWindow login(e_, this);
        dentro = login.exec() == QDialog::Accepted;
    }
    aplicarPermisos();
    return dentro;
}

void MainWindow::desidentificar() {
    // A screen with unsaved changes may keep itself open: then the user stays logged in.
    mdi_->closeAllSubWindows();
    if (!mdi_->subWindowList().isEmpty()) return;
    e_.desidentificar();
    aplicarPermisos();
}

void MainWindow::terminar() {
    if (cerrado_) return;
    cerrado_ = true;
    mdi_->closeAllSubWindows();
    abandonarPuesto(e_);
    close();
    emit terminado();
}

void MainWindow::salirSinConfirmar() {
    if (cerrado_) return;
    cerrado_ = true;
    mdi_->closeAllSubWindows();
    CierreForm(e_).cerrar(false);
    close();
    emit terminado();
}

void MainWindow::closeEvent(QCloseEvent* evento) {
    if (!cerrado_) {
        // The question comes first, so that No leaves every screen open; then the screens
        // close, and one with unsaved changes may still keep the program open.
        CierreForm cierre(e_);
        if (!cierre.confirmarSalida()) {
            evento->ignore();
            return;
        }
        mdi_->closeAllSubWindows();
        if (!mdi_->subWindowList().isEmpty()) {
            evento->ignore();
            return;
        }
        cierre.cerrar(false);
        cerrado_ = true;
    }
    evento->accept();
    emit terminado();
}

void MainWindow::abrirVentana(QWidget* ventana, bool unica) {
    if (unica && !ventana->objectName().isEmpty()) {
        for (QMdiSubWindow* w : mdi_->subWindowList()) {
            if (w->widget() && w->widget()->objectName() == ventana->objectName()) {
                delete ventana;
                mdi_->setActiveSubWindow(w);
                w->showNormal();
                return;
            }
        }
    }
    ventana->setAttribute(Qt::WA_DeleteOnClose);
    QMdiSubWindow* sub = mdi_->addSubWindow(ventana);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    pendientes_.append(sub);
    tmr_->start();
}

void MainWindow::configurarAutoGuardado(int minutos) {
    panelAutoGuardadoOn_->setText(textoAutoGuardado(minutos));
    panelAutoGuardadoOn_->setVisible(minutos > 0);
    panelAutoGuardadoOff_->setVisible(minutos <= 0);
}

void MainWindow::configurarCopiaAutomatica(const std::optional<QTime>& hora) {
    horaCopia_ = hora;
    if (hora && hora->isValid() && e_.hayBaseDatos() && e_.db().esSQLite())
        tmrBackUp_->start();
    else
        tmrBackUp_->stop();
}

void MainWindow::alTemporizadorAgenda() {
    const auto momento = comprobacionAgenda(e_.reloj().ahora());
    if (momento && agenda_) agenda_(momento->fecha, momento->hora);
}

void MainWindow::alTemporizadorCopia() {
    const QDateTime ahora = e_.reloj().ahora();
    if (!tocaCopiaAutomatica(horaCopia_, ahora, ultimaCopia_)) return;
    ultimaCopia_ = ahora.date();
    const QString destino = rutaCopiaAutomatica(e_.configuracionBD.ficheroSQLite());
    // Between steps the window repaints and its timers run; what the user types waits until
    // the copy ends (at most PasosCopia::limiteTotalMs), so that no command can close the
    // connection under the copy.
    const QString error = copiarBaseDatos(e_.db(), destino, PasosCopia{}, [] {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
    avisoCopia_ = error.isEmpty()
                      ? QStringLiteral("Copia automática realizada en '") + destino + QLatin1Char('\'')
                      : QStringLiteral("No se ha podido hacer la copia automática: ") + error;
    statusBar()->showMessage(avisoCopia_, 60000);
}

void MainWindow::iniciarCodigoBarras() {
    codigoBarras_.clear();
    if (!recogiendoCodigo_) qApp->installEventFilter(this);
    recogiendoCodigo_ = true;
    tmrCodBar_->start();
}

bool MainWindow::eventFilter(QObject* objeto, QEvent* evento) {
    if (recogiendoCodigo_ && evento->type() == QEvent::KeyPress) {
        auto* tecla = static_cast<QKeyEvent*>(evento);
        if (!tecla->text().isEmpty() && tecla->text().at(0).isPrint()) {
            codigoBarras_ += tecla->text();
            return true;
        }
    }
    return QMainWindow::eventFilter(objeto, evento);
}

void MainWindow::alTemporizadorCodigoBarras() {
    tmrCodBar_->stop();
    if (recogiendoCodigo_) qApp->removeEventFilter(this);
    recogiendoCodigo_ = false;
    const QString teclas = textoDeSecuenciaTeclas(secuenciaTeclasCodigoBarras(codigoBarras_));
    codigoBarras_.clear();
    QWidget* destino = QApplication::focusWidget();
    if (!destino) return;
    for (const QChar c : teclas) {
        QKeyEvent pulsar(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(destino, &pulsar);
        QKeyEvent soltar(QEvent::KeyRelease, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(destino, &soltar);
    }
}

void MainWindow::ponerFondo() {
    const QString fichero = e_.dialogs().elegirFichero(
        QStringLiteral("Imagen de fondo"), QStringLiteral("Imágenes (*.png *.jpg *.jpeg *.bmp)"), QString());
    if (fichero.isEmpty()) return;
    const QPixmap imagen(fichero);
    if (imagen.isNull()) {
        e_.dialogs().avisar(QStringLiteral("¡Atención!"), QStringLiteral("El fichero '") + fichero +
                                                              QStringLiteral("' no es una imagen válida."));
        return;
    }
    mdi_->setBackground(imagen);
    QSettings().setValue(kClaveFondo, fichero);
}

void MainWindow::quitarFondo() {
    mdi_->setBackground(kFondo);
    QSettings().remove(kClaveFondo);
}

void MainWindow::compactar() {
    if (!mdi_->subWindowList().isEmpty()) {
        e_.dialogs().avisar(QStringLiteral("¡Atención!"),
                            QStringLiteral("Cierre todas las ventanas antes de compactar la Base de Datos."));
        return;
    }
    CompactacionForm(e_).compactar();
}
