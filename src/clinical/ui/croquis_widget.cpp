#include "clinical/ui/croquis_widget.h"

#include <QButtonGroup>
#include <QColorDialog>
#include <QDir>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

namespace {
// The proportions of the area without a picture: those of the pictures the program ships.
constexpr QSizeF kAreaSinFondo(480, 320);
// The smallest distance (pixels) within which a click erases a mark, however small it is drawn.
constexpr double kAlcanceBorrar = 4.0;
} // namespace

CroquisWidget::CroquisWidget(QWidget* padre) : QWidget(padre) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    actualizarCursor();
}

void CroquisWidget::setFondo(const QString& ruta) {
    QImageReader lector(ruta);
    fondo_ = ruta.isEmpty() ? QImage() : lector.read();
    actualizarCursor();
    update();
}

void CroquisWidget::setMarcas(const QList<MarcaCroquis>& marcas) {
    marcas_ = marcas;
    update();
}

void CroquisWidget::setColor(const QColor& color) {
    if (color.isValid()) color_ = color;
}

void CroquisWidget::setBorrar(bool borrar) {
    borrar_ = borrar;
    actualizarCursor();
}

void CroquisWidget::limpiar() {
    if (soloLectura_ || marcas_.isEmpty()) return;
    marcas_.clear();
    update();
    emit marcasCambiadas();
}

void CroquisWidget::setSoloLectura(bool soloLectura) {
    soloLectura_ = soloLectura;
    actualizarCursor();
}

void CroquisWidget::actualizarCursor() {
    if (soloLectura_ || !hayFondo())
        unsetCursor();
    else
        setCursor(borrar_ ? Qt::PointingHandCursor : Qt::CrossCursor);
}

QRectF CroquisWidget::areaImagen() const {
    const QSizeF original = hayFondo() ? QSizeF(fondo_.size()) : kAreaSinFondo;
    const QSizeF ajustado = original.scaled(QSizeF(size()), Qt::KeepAspectRatio);
    return {QPointF((width() - ajustado.width()) / 2.0, (height() - ajustado.height()) / 2.0), ajustado};
}

double CroquisWidget::radio(const MarcaCroquis& m, const QRectF& area) const {
    return std::max(2.0, radioRelativo(m.tamano) * area.width());
}

void CroquisWidget::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Qt::white);
    const QRectF area = areaImagen();
    if (area.isEmpty()) return;
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    if (hayFondo()) p.drawImage(area, fondo_);
    for (const MarcaCroquis& m : marcas_) {
        const QColor c = m.color.isValid() ? m.color : QColor(Qt::black);
        p.setPen(QPen(c.darker(140), 1.0));
        p.setBrush(c);
        const double r = radio(m, area);
        p.drawEllipse(QPointF(area.left() + m.x * area.width(), area.top() + m.y * area.height()), r, r);
    }
}

void CroquisWidget::mousePressEvent(QMouseEvent* evento) {
    const QRectF area = areaImagen();
    const QPointF punto = evento->position();
    if (evento->button() != Qt::LeftButton || soloLectura_ || !hayFondo() || area.isEmpty() ||
        !area.contains(punto)) {
        QWidget::mousePressEvent(evento);
        return;
    }
    evento->accept();
    if (borrar_) {
        qsizetype cercana = -1;
        double mejor = 0;
        for (qsizetype i = 0; i < marcas_.size(); ++i) {
            const MarcaCroquis& m = marcas_.at(i);
            const QPointF centro(area.left() + m.x * area.width(), area.top() + m.y * area.height());
            const double d = std::hypot(punto.x() - centro.x(), punto.y() - centro.y());
            if (d <= std::max(radio(m, area), kAlcanceBorrar) && (cercana < 0 || d < mejor)) {
                cercana = i;
                mejor = d;
            }
        }
        if (cercana < 0) return;
        marcas_.removeAt(cercana);
    } else {
        MarcaCroquis m;
        m.x = std::clamp((punto.x() - area.left()) / area.width(), 0.0, 1.0);
        m.y = std::clamp((punto.y() - area.top()) / area.height(), 0.0, 1.0);
        m.tamano = tamano_;
        m.color = color_;
        marcas_.append(m);
    }
    update();
    emit marcasCambiadas();
}

namespace {
QPushButton* boton(const QString& nombre, const QString& texto, bool marcable) {
    auto* b = new QPushButton(texto);
    b->setObjectName(nombre);
    b->setCheckable(marcable);
    b->setFocusPolicy(Qt::TabFocus);
    return b;
}

// A filled circle of the given radius (pixels) in the colour, on a 16x16 icon.
QIcon iconoMarca(const QColor& color, double radio) {
    QPixmap px(16, 16);
    px.fill(Qt::transparent);
    QPainter p(&px);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(color.darker(140), 1.0));
    p.setBrush(color);
    p.drawEllipse(QPointF(8, 8), radio, radio);
    return QIcon(px);
}
} // namespace

CroquisPanel::CroquisPanel(QWidget* padre) : QWidget(padre) {
    croquis_ = new CroquisWidget;
    croquis_->setObjectName(QStringLiteral("croquis"));
    aviso_ = new QLabel;
    aviso_->setObjectName(QStringLiteral("lblCroquisNoEncontrado"));
    aviso_->setWordWrap(true);
    aviso_->setStyleSheet(QStringLiteral("color: #a00000;"));
    aviso_->hide();

    auto* grupo = new QButtonGroup(this);
    grupo->setExclusive(true);
    const struct {
        const char* nombre;
        QString texto;
        TamanoMarca tamano;
    } tamanos[] = {{"cmdGrande", QStringLiteral("Grande"), TamanoMarca::Grande},
                   {"cmdMediano", QStringLiteral("Mediano"), TamanoMarca::Mediano},
                   {"cmdPequeno", QStringLiteral("Pequeño"), TamanoMarca::Pequeno}};
    auto* fila = new QHBoxLayout;
    for (const auto& t : tamanos) {
        QPushButton* b = boton(QLatin1String(t.nombre), t.texto, true);
        b->setProperty("tamano", static_cast<int>(t.tamano));
        b->setChecked(t.tamano == croquis_->tamano());
        grupo->addButton(b);
        herramientas_ << b;
        fila->addWidget(b);
        const TamanoMarca tamano = t.tamano;
        connect(b, &QPushButton::clicked, this, [this, tamano] {
            croquis_->setTamano(tamano);
            // Choosing a size means drawing again.
            borrar_->setChecked(false);
        });
    }
    color_ = boton(QStringLiteral("cmdColor"), QStringLiteral("Color..."), false);
    color_->setToolTip(QStringLiteral("Color de las marcas"));
    connect(color_, &QPushButton::clicked, this, &CroquisPanel::elegirColor);
    QPushButton* borrar = boton(QStringLiteral("cmdBorrar"), QStringLiteral("Borrar"), true);
    borrar_ = borrar;
    borrar->setToolTip(QStringLiteral("Pulse sobre una marca para quitarla"));
    connect(borrar, &QPushButton::toggled, croquis_, &CroquisWidget::setBorrar);
    QPushButton* limpiar = boton(QStringLiteral("cmdLimpiar"), QStringLiteral("Limpiar"), false);
    limpiar->setToolTip(QStringLiteral("Quitar todas las marcas"));
    connect(limpiar, &QPushButton::clicked, croquis_, &CroquisWidget::limpiar);
    herramientas_ << color_ << borrar << limpiar;
    fila->addSpacing(12);
    fila->addWidget(color_);
    fila->addWidget(borrar);
    fila->addWidget(limpiar);
    fila->addStretch();

    auto* capa = new QVBoxLayout(this);
    capa->setContentsMargins(0, 0, 0, 0);
    capa->addWidget(aviso_);
    capa->addWidget(croquis_, 1);
    capa->addLayout(fila);
    connect(croquis_, &CroquisWidget::marcasCambiadas, this, &CroquisPanel::marcasCambiadas);
    pintarBotonColor();
}

void CroquisPanel::setFondo(const QString& ruta) {
    croquis_->setFondo(ruta);
    aviso_->setText(croquis_->hayFondo() ? QString()
                                         : textoCroquisNoEncontrado(QDir::toNativeSeparators(ruta)));
    aviso_->setVisible(!croquis_->hayFondo());
}

void CroquisPanel::setSoloLectura(bool soloLectura) {
    croquis_->setSoloLectura(soloLectura);
    for (QAbstractButton* b : std::as_const(herramientas_))
        b->setEnabled(!soloLectura);
}

void CroquisPanel::elegirColor() {
    const QColor c = QColorDialog::getColor(croquis_->color(), this, QStringLiteral("Color de las marcas"));
    if (!c.isValid()) return;
    croquis_->setColor(c);
    pintarBotonColor();
}

void CroquisPanel::pintarBotonColor() {
    const QColor c = croquis_->color();
    for (int i = 0; i < 3; ++i) {
        const auto tamano = static_cast<TamanoMarca>(herramientas_.at(i)->property("tamano").toInt());
        herramientas_.at(i)->setIcon(iconoMarca(c, std::clamp(radioRelativo(tamano) * 240, 2.5, 7.0)));
    }
    QPixmap muestra(16, 16);
    muestra.fill(c);
    color_->setIcon(QIcon(muestra));
}
