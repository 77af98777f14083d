#pragma once
// The photographs of a visit as a strip of thumbnails (lstFotos) with the buttons
// cmdAnadirFoto, cmdAbrirFoto and cmdQuitarFoto. The files live in the data folder of the
// session (FotosVisitas); without a visit the strip is empty and the buttons are disabled.
#include <QWidget>
#include <functional>
#include <optional>

class Entorno;
class QListWidget;
class QPushButton;
class QUrl;

class FotosWidget : public QWidget {
    Q_OBJECT
public:
    FotosWidget(Entorno& entorno, QWidget* padre = nullptr);

    void setVisita(std::optional<qint64> idVisita);
    std::optional<qint64> visita() const { return idVisita_; }
    // The paths of the photographs shown, in order.
    QStringList fotos() const;

    // Opens a photograph with the desktop's viewer; tests replace it.
    std::function<bool(const QUrl&)> abrirUrl;

public slots:
    void anyadir();
    void abrir();
    void quitar();
    void recargar();

signals:
    // A photograph was added or removed.
    void fotosCambiadas();

private:
    QString carpetaDatos() const;
    QString seleccionada() const;
    void actualizarBotones();

    Entorno& e_;
    std::optional<qint64> idVisita_;
    QListWidget* lista_;
    QPushButton* anyadir_;
    QPushButton* abrir_;
    QPushButton* quitar_;
};
