#pragma once
// The client search window ("Búsqueda de Clientes"), bound to ClienteBusquedaForm; also the
// picker: elegir() opens it modally and hands back the chosen client.
#include "clients/cliente_busqueda_form.h"

#include <QDialog>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

class ClienteBusquedaWindow : public QDialog {
    Q_OBJECT
public:
    ClienteBusquedaWindow(Entorno& entorno, QWidget* padre = nullptr, const PeticionCliente& peticion = {});

    // The Buscadores::cliente picker: the window, modal, over the active window.
    static std::optional<ClienteElegido> elegir(Entorno& entorno, const PeticionCliente& peticion);

    ClienteBusquedaForm& form() { return form_; }
    // Copies the criteria into the form, searches, and shows the result.
    void buscar();

private:
    void construirCompleta();
    void construirReducida();
    void leerCriterios();
    void mostrarClientes();
    void mostrarMascotas();
    void aceptarCliente(int filaMascota);
    void cambiarEspecie();
    QComboBox* lista(const QString& nombre, const QString& tabla);

    Entorno& e_;
    ClienteBusquedaForm form_;
    QLineEdit *nombre_ = nullptr, *dni_ = nullptr, *direccion_ = nullptr, *telefono_ = nullptr,
              *email_ = nullptr, *codigoPostal_ = nullptr, *clinica_ = nullptr, *numCliente_ = nullptr;
    QLineEdit *mascota_ = nullptr, *numMascota_ = nullptr, *chip_ = nullptr;
    QComboBox *poblacion_ = nullptr, *provincia_ = nullptr, *tipoCliente_ = nullptr,
              *formaContacto_ = nullptr, *lopd_ = nullptr;
    QComboBox *especie_ = nullptr, *raza_ = nullptr, *sexo_ = nullptr, *estado_ = nullptr,
              *condicion_ = nullptr, *planSalud_ = nullptr;
    QButtonGroup* modo_ = nullptr;
    QCheckBox *clientesBaja_ = nullptr, *mascotasBaja_ = nullptr;
    QTableWidget *clientes_ = nullptr, *mascotas_ = nullptr;
    QLabel* nota_ = nullptr;
    QPushButton* nuevo_ = nullptr;
};
