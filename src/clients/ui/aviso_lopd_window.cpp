#include "clients/ui/aviso_lopd_window.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

bool mostrarAvisoLopdLista(AvisoLopdLista& aviso, QWidget* padre) {
    QDialog d(padre);
    d.setObjectName(QStringLiteral("frmAvisoLopdLista"));
    d.setWindowTitle(aviso.titulo());
    auto* texto = new QLabel(aviso.texto());
    texto->setWordWrap(true);
    auto* lista = new QListWidget;
    lista->setObjectName(QStringLiteral("lstAvisados"));
    for (const auto& a : aviso.avisados()) {
        auto* item = new QListWidgetItem(a.Cliente + QStringLiteral(" - ") + a.Mascota, lista);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(a.incluir ? Qt::Checked : Qt::Unchecked);
    }
    auto* botones = new QDialogButtonBox;
    botones->addButton(QStringLiteral("Continuar"), QDialogButtonBox::AcceptRole)
        ->setObjectName(QStringLiteral("cmdContinuar"));
    botones->addButton(QStringLiteral("Cancelar"), QDialogButtonBox::RejectRole)
        ->setObjectName(QStringLiteral("cmdCancelar"));
    QObject::connect(botones, &QDialogButtonBox::accepted, &d, &QDialog::accept);
    QObject::connect(botones, &QDialogButtonBox::rejected, &d, &QDialog::reject);
    auto* capa = new QVBoxLayout(&d);
    capa->addWidget(texto);
    capa->addWidget(lista);
    capa->addWidget(botones);
    d.resize(520, 360);
    if (d.exec() != QDialog::Accepted) {
        aviso.salir = true;
        return false;
    }
    for (int i = 0; i < lista->count(); ++i)
        aviso.setIncluir(i, lista->item(i)->checkState() == Qt::Checked);
    return true;
}
