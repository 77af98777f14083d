#pragma once
// The pet list window ("Listado de Mascotas"), bound to ListadoMascotasForm: the filters
// (txtCliente with cmdBuscarCliente; cboEspecie, cboRaza, cboSexo, cboEstado, cboTipo,
// cboCondicionCorporal, cboPlanSalud; for each date range a chk + two dtp; chkBajas),
// cmdBuscar, the frame fraResultado (its title carries the count) with lvwMascotas (several
// rows may be selected), cmdAbrirMascota and cmdCarta.
#include "clients/listado_mascotas_form.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QDateEdit;
class QGroupBox;
class QLineEdit;
class QTreeWidget;

class ListadoMascotasWindow : public QWidget {
    Q_OBJECT
public:
    ListadoMascotasWindow(Entorno& entorno, QWidget* padre = nullptr);
    ListadoMascotasForm& form() { return form_; }

public slots:
    void buscar();
    void abrirMascota();
    // Prints a letter about each selected pet (after the data-protection list notice).
    void carta();

signals:
    void mascotaElegida(qint64 idCliente, qint64 idMascota);

private:
    struct Rango {
        QCheckBox* activo;
        QDateEdit* desde;
        QDateEdit* hasta;
    };
    Rango rango(const QString& sufijo, const QString& texto);
    void llenarCombo(QComboBox* combo, const QString& columna);
    void llenarRazas();
    static std::optional<qint64> clave(QComboBox* combo);

    Entorno& e_;
    ListadoMascotasForm form_;
    QLineEdit* cliente_;
    QComboBox *especie_, *raza_, *sexo_, *estado_, *tipo_, *condicion_, *plan_;
    QList<Rango> rangos_;
    QCheckBox* bajas_;
    QGroupBox* resultado_;
    QTreeWidget* lista_;
};
