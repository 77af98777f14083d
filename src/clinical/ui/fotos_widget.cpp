#include "clinical/ui/fotos_widget.h"
#include "gui/controles.h"

#include "app/entorno.h"
#include "clinical/fotos_visita.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImageReader>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {
constexpr QSize kMiniatura(120, 90);
const QString kAtencion = QStringLiteral("¡Atención!");

// The photograph reduced to the thumbnail's size (decoded small), centred on white; a file
// that cannot be read gives a grey box.
QIcon miniatura(const QString& ruta) {
    QPixmap px(kMiniatura);
    px.fill(Qt::white);
    QPainter p(&px);
    QImageReader lector(ruta);
    lector.setAutoTransform(true);
    const QSize original = lector.size();
    if (original.isValid()) lector.setScaledSize(original.scaled(kMiniatura, Qt::KeepAspectRatio));
    const QImage imagen = lector.read();
    if (imagen.isNull()) {
        p.fillRect(px.rect().adjusted(8, 8, -8, -8), QColor(0xdd, 0xdd, 0xdd));
    } else {
        const QImage ajustada = imagen.scaled(kMiniatura, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        p.drawImage((kMiniatura.width() - ajustada.width()) / 2,
                    (kMiniatura.height() - ajustada.height()) / 2, ajustada);
    }
    return QIcon(px);
}
} // namespace

FotosWidget::FotosWidget(Entorno& entorno, QWidget* padre) : QWidget(padre), e_(entorno) {
    abrirUrl = [](const QUrl& url) { return QDesktopServices::openUrl(url); };
    lista_ = new QListWidget;
    lista_->setObjectName(QStringLiteral("lstFotos"));
    lista_->setViewMode(QListView::IconMode);
    lista_->setIconSize(kMiniatura);
    lista_->setFlow(QListView::LeftToRight);
    lista_->setWrapping(false);
    lista_->setResizeMode(QListView::Adjust);
    lista_->setMovement(QListView::Static);
    lista_->setSelectionMode(QAbstractItemView::SingleSelection);
    lista_->setMinimumHeight(kMiniatura.height() + 48);
    anyadir_ = boton(QStringLiteral("cmdAnadirFoto"), QStringLiteral("Añadir foto..."));
    abrir_ = boton(QStringLiteral("cmdAbrirFoto"), QStringLiteral("Abrir"));
    quitar_ = boton(QStringLiteral("cmdQuitarFoto"), QStringLiteral("Quitar"));
    connect(anyadir_, &QPushButton::clicked, this, &FotosWidget::anyadir);
    connect(abrir_, &QPushButton::clicked, this, &FotosWidget::abrir);
    connect(quitar_, &QPushButton::clicked, this, &FotosWidget::quitar);
    connect(lista_, &QListWidget::itemSelectionChanged, this, &FotosWidget::actualizarBotones);
    connect(lista_, &QListWidget::itemActivated, this, &FotosWidget::abrir);

    auto* botones = new QVBoxLayout;
    botones->addWidget(anyadir_);
    botones->addWidget(abrir_);
    botones->addWidget(quitar_);
    botones->addStretch();
    auto* capa = new QHBoxLayout(this);
    capa->setContentsMargins(0, 0, 0, 0);
    capa->addWidget(lista_, 1);
    capa->addLayout(botones);
    actualizarBotones();
}

QString FotosWidget::carpetaDatos() const {
    return rutaNativa(e_.configuracionBD.servidor);
}

void FotosWidget::setVisita(std::optional<qint64> idVisita) {
    idVisita_ = idVisita;
    recargar();
}

QStringList FotosWidget::fotos() const {
    QStringList rutas;
    for (int i = 0; i < lista_->count(); ++i)
        rutas << lista_->item(i)->data(Qt::UserRole).toString();
    return rutas;
}

void FotosWidget::recargar() {
    const QString antes = seleccionada();
    lista_->clear();
    if (idVisita_) {
        for (const QString& ruta : fotosVisita(carpetaDatos(), *idVisita_)) {
            auto* item = new QListWidgetItem(miniatura(ruta), QFileInfo(ruta).fileName(), lista_);
            item->setData(Qt::UserRole, ruta);
            item->setToolTip(QDir::toNativeSeparators(ruta));
            if (ruta == antes) lista_->setCurrentItem(item);
        }
    }
    actualizarBotones();
}

QString FotosWidget::seleccionada() const {
    const QList<QListWidgetItem*> elegidas = lista_->selectedItems();
    return elegidas.isEmpty() ? QString() : elegidas.first()->data(Qt::UserRole).toString();
}

void FotosWidget::actualizarBotones() {
    const bool hayVisita = idVisita_.has_value();
    const bool hayFoto = hayVisita && !seleccionada().isEmpty();
    anyadir_->setEnabled(hayVisita);
    abrir_->setEnabled(hayFoto);
    quitar_->setEnabled(hayFoto);
}

void FotosWidget::anyadir() {
    if (!idVisita_) return;
    const QString origen =
        e_.dialogs().elegirFichero(QStringLiteral("Añadir fotografía"),
                                   QStringLiteral("Imágenes (*.jpg *.jpeg *.png *.bmp)"), QDir::homePath());
    if (origen.isEmpty()) return;
    QString error;
    const QString nueva = anyadirFotoVisita(carpetaDatos(), *idVisita_, origen, &error);
    if (nueva.isEmpty()) {
        e_.dialogs().avisar(kAtencion, error);
        return;
    }
    recargar();
    for (int i = 0; i < lista_->count(); ++i)
        if (lista_->item(i)->data(Qt::UserRole).toString() == nueva) lista_->setCurrentRow(i);
    emit fotosCambiadas();
}

void FotosWidget::abrir() {
    const QString ruta = seleccionada();
    if (ruta.isEmpty()) {
        e_.dialogs().avisar(kAtencion, QStringLiteral("Seleccione la fotografía que desea abrir."));
        return;
    }
    if (!QFileInfo::exists(ruta)) {
        e_.dialogs().avisar(
            kAtencion,
            QStringLiteral("La fotografía '%1' ya no existe.").arg(QDir::toNativeSeparators(ruta)));
        recargar();
        return;
    }
    if (!abrirUrl(QUrl::fromLocalFile(ruta)))
        e_.dialogs().avisar(
            kAtencion,
            QStringLiteral("No se ha podido abrir la fotografía '%1'.").arg(QDir::toNativeSeparators(ruta)));
}

void FotosWidget::quitar() {
    const QString ruta = seleccionada();
    if (ruta.isEmpty()) {
        e_.dialogs().avisar(kAtencion, QStringLiteral("Seleccione la fotografía que desea quitar."));
        return;
    }
    if (!e_.dialogs().preguntar(kAtencion,
                                QStringLiteral("¿Desea quitar la fotografía seleccionada de esta visita?")))
        return;
    const bool quitada = eliminarFotoVisita(ruta);
    if (!quitada && QFileInfo::exists(ruta))
        e_.dialogs().avisar(
            kAtencion,
            QStringLiteral("No se ha podido quitar la fotografía '%1'.").arg(QDir::toNativeSeparators(ruta)));
    recargar();
    if (quitada) emit fotosCambiadas();
}
