#pragma once
// The hospitalisation windows: the cage dialog, the discharge dialog, the list of pets
// hospitalised now (lvwHospitalizadas; cmdCambiarJaula, cmdAbrirMascota, cmdDarAlta) and the
// register of a pet's stays (lvwRegistro; double click opens the admitting visit).
#include "clinical/hospitalizacion_form.h"

#include <QWidget>

class QTreeWidget;

// "Jaula": one text field, accepted or cancelled (nullopt).
std::optional<QString> pedirJaula(QWidget* padre, const QString& jaula);
// "Alta de la mascota": date, time (now) and the diagnosis on discharge.
std::optional<Alta> pedirAlta(QWidget* padre, Entorno& e);

class HospitalizadasWindow : public QWidget {
    Q_OBJECT
public:
    explicit HospitalizadasWindow(Entorno& e, QWidget* padre = nullptr);
    // Reads the list; false (message shown) when nobody is hospitalised.
    bool cargar();
    HospitalizadasForm& form() { return form_; }

signals:
    void abrirMascota(qint64 idCliente, qint64 idMascota);

private:
    void mostrar();
    int fila() const;
    HospitalizadasForm form_;
    QTreeWidget* lista_;
};

class RegistroHospitalizacionesWindow : public QWidget {
    Q_OBJECT
public:
    explicit RegistroHospitalizacionesWindow(Entorno& e, QWidget* padre = nullptr);
    bool abrir(qint64 idMascota, const QString& nombre);
    RegistroHospitalizacionesForm& form() { return form_; }

signals:
    void IrAVisita(qint64 NumVisita);

private:
    RegistroHospitalizacionesForm form_;
    QTreeWidget* lista_;
};
