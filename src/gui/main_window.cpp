#include "gui/main_window.h"

#include "app/arranque.h"
#include "app/cierre.h"
#include "gui/login_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QStatusBar>
#include <QToolBar>

MainWindow::MainWindow(Entorno& entorno, QWidget* padre) : QMainWindow(padre), e_(entorno) {
    setObjectName(QStringLiteral("frmPrincipal"));
    setWindowTitle(kTituloPrograma + QStringLiteral(" Ver. ") + kVersionPrograma);
    mdi_ = new QMdiArea(this);
    mdi_->setObjectName(QStringLiteral("mdiPrincipal"));
    mdi_->setBackground(QColor(0x3a, 0x6e, 0x8f));
    setCentralWidget(mdi_);

    auto* barra = addToolBar(QStringLiteral("Principal"));
    barra->setObjectName(QStringLiteral("tbrPrincipal"));
    barra->setMovable(false);

    auto* estado = statusBar();
    estado->setObjectName(QStringLiteral("sbPrincipal"));
    panelUsuario_ = new QLabel(this);
    panelUsuario_->setObjectName(QStringLiteral("panelUsuario"));
    panelUsuario_->setMinimumWidth(200);
    panelAutoGuardadoOn_ = new QLabel(this);
    panelAutoGuardadoOn_->setObjectName(QStringLiteral("AutoGuardadoON"));
    panelAutoGuardadoOff_ = new QLabel(QStringLiteral("AutoGuardado DESACTIVADO"), this);
    panelAutoGuardadoOff_->setObjectName(QStringLiteral("AutoGuardadoOFF"));
    estado->addWidget(panelUsuario_, 1);
    estado->addPermanentWidget(panelAutoGuardadoOn_);
    estado->addPermanentWidget(panelAutoGuardadoOff_);
    panelAutoGuardadoOn_->hide();
    resize(1100, 720);
    actualizarEstado();
}

void MainWindow::actualizarEstado() {
    panelUsuario_->setText(e_.identificado() ? e_.nombreUsuario : QString());
}

bool MainWindow::identificar() {
    bool dentro = false;
    if (identificador_) {
        dentro = identificador_();
    } else {
        LoginWindow login(e_, this);
        dentro = login.exec() == QDialog::Accepted;
    }
    actualizarEstado();
    return dentro;
}

void MainWindow::desidentificar() {
    e_.desidentificar();
    actualizarEstado();
}

void MainWindow::terminar() {
    if (cerrado_) return;
    cerrado_ = true;
    abandonarPuesto(e_);
    close();
    QApplication::quit();
}

void MainWindow::closeEvent(QCloseEvent* evento) {
    if (!cerrado_) {
        cerrado_ = true;
        abandonarPuesto(e_);
    }
    evento->accept();
    QApplication::quit();
}
