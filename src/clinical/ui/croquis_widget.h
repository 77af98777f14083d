#pragma once
// The sketch of a speciality examination. CroquisWidget draws the picture of the species
// scaled to fit (keeping its proportions, centred on white) and the marks on it as filled
// circles; a click on the picture adds a mark of the chosen size and colour, or, in erase
// mode, removes the mark under the pointer. CroquisPanel puts the tools beside it: cmdGrande,
// cmdMediano, cmdPequeno (the size), cmdColor, cmdBorrar (erase mode), cmdLimpiar (remove
// every mark), and the sketch itself, "croquis".
#include "clinical/croquis.h"

#include <QImage>
#include <QWidget>

class QAbstractButton;
class QLabel;

class CroquisWidget : public QWidget {
    Q_OBJECT
public:
    explicit CroquisWidget(QWidget* padre = nullptr);

    // The picture behind the marks; a missing or unreadable file leaves an empty white area,
    // on which no mark can be added (the marks already there are still shown).
    void setFondo(const QString& ruta);
    bool hayFondo() const { return !fondo_.isNull(); }

    // Loading marks is not a change: marcasCambiadas is not emitted.
    void setMarcas(const QList<MarcaCroquis>& marcas);
    const QList<MarcaCroquis>& marcas() const { return marcas_; }

    void setTamano(TamanoMarca tamano) { tamano_ = tamano; }
    TamanoMarca tamano() const { return tamano_; }
    // An invalid colour is ignored.
    void setColor(const QColor& color);
    QColor color() const { return color_; }
    void setBorrar(bool borrar);
    bool borrando() const { return borrar_; }
    // Removes every mark (does nothing while read-only).
    void limpiar();
    // Read-only: clicks do nothing.
    void setSoloLectura(bool soloLectura);
    bool soloLectura() const { return soloLectura_; }

    // Where the picture is drawn now (without a picture, a 3:2 area, where the marks are drawn).
    QRectF areaImagen() const;

    QSize sizeHint() const override { return {480, 320}; }
    QSize minimumSizeHint() const override { return {240, 160}; }

signals:
    void marcasCambiadas();

protected:
    void paintEvent(QPaintEvent* evento) override;
    void mousePressEvent(QMouseEvent* evento) override;

private:
    double radio(const MarcaCroquis& m, const QRectF& area) const;
    void actualizarCursor();

    QImage fondo_;
    QList<MarcaCroquis> marcas_;
    TamanoMarca tamano_ = TamanoMarca::Mediano;
    QColor color_ = Qt::red;
    bool borrar_ = false;
    bool soloLectura_ = false;
};

class CroquisPanel : public QWidget {
    Q_OBJECT
public:
    explicit CroquisPanel(QWidget* padre = nullptr);

    CroquisWidget* croquis() const { return croquis_; }
    // Sets the picture; when the file is missing, the panel says so (lblCroquisNoEncontrado)
    // above the empty area.
    void setFondo(const QString& ruta);
    void setSoloLectura(bool soloLectura);

signals:
    void marcasCambiadas();

private:
    void elegirColor();
    void pintarBotonColor();

    CroquisWidget* croquis_;
    QLabel* aviso_;
    QList<QAbstractButton*> herramientas_;
    QAbstractButton* color_;
    QAbstractButton* borrar_;
};
