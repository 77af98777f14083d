#pragma once
// The workstation configuration screen, bound to ConfPuestoForm. The search buttons of
// the default client and article ("lupa") are enabled only when their table is in the
// catalogue; until the client and article search screens exist, they offer the table's
// records in a plain list, and setBuscadorCliente / setBuscadorArticulo put the real
// search in its place.
#include "app/conf_puesto_form.h"

#include <QWidget>
#include <functional>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;

class ConfPuestoWindow : public QWidget {
    Q_OBJECT
public:
    ConfPuestoWindow(Entorno& entorno, QWidget* padre = nullptr);
    ConfPuestoForm& form() { return form_; }

    // A search returns the chosen number, or nullopt when the user cancelled.
    using Buscador = std::function<std::optional<qint64>()>;
    void setBuscadorCliente(Buscador b) { buscadorCliente_ = std::move(b); }
    void setBuscadorArticulo(Buscador b) { buscadorArticulo_ = std::move(b); }

signals:
    // After a successful save, so that the main window can take the new intervals at once.
    void guardado();

public slots:
    void guardar();
    void buscarCliente();
    void buscarArticulo();

private:
    void mostrar();
    void activarImpresora();
    void ponerFoco();
    std::optional<qint64> elegirDeLista(const DescriptorTabla* tabla, const QString& titulo,
                                        const QString& etiqueta);

    Entorno& e_;
    ConfPuestoForm form_;
    Buscador buscadorCliente_;
    Buscador buscadorArticulo_;

    QRadioButton* sinImpresora_;
    QRadioButton* impresoraSistema_;
    QRadioButton* impresoraSerie_;
    QComboBox* impresora_;
    QComboBox* puerto_;
    QComboBox* velocidad_;
    QComboBox* paridad_;
    QComboBox* bitsDatos_;
    QComboBox* bitsParada_;
    QSpinBox* pasadas_;
    QCheckBox* cortePapel_;
    QComboBox* serieVenta_;
    QComboBox* serieAbono_;
    QComboBox* tarifa_;
    QComboBox* especie_;
    QLineEdit* cliente_;
    QPushButton* buscarCliente_;
    QLabel* nombreCliente_;
    QLineEdit* articulo_;
    QPushButton* buscarArticulo_;
    QLabel* nombreArticulo_;
    QLineEdit* fechaInicial_;
    QSpinBox* autoGuardado_;
    QLineEdit* horaCopia_;
    bool actualizando_ = false;
};
