#pragma once
// The client search screen's logic ("Búsqueda de Clientes"), also the picker other screens
// open to choose a client: the criteria on the client and on its pets, the inactive
// question, the found clients with the selected client's pets, and the choice handed back.
// The reduced search (sending clinics) uses the same form with its own criteria and columns.
#include "app/entorno.h"
#include "clients/cliente_busqueda_store.h"

#include <QList>
#include <QStringList>
#include <optional>

// An entry of a criterion's drop-down: the stored key and the text shown.
struct OpcionCriterio {
    qint64 clave = 0;
    QString texto;
};

inline const QString kTituloBusquedaClientes = QStringLiteral("Búsqueda de Clientes");
inline const QString kTituloResultadoBusqueda = QStringLiteral("Resultado de la búsqueda");
inline const QString kPreguntaTodosDeBaja =
    QStringLiteral("Todos los datos que cumplen las condiciones especificadas están dados de Baja. "
                   "¿Desea verlos igualmente?");

class ClienteBusquedaForm {
public:
    // At most this many clients are shown; a vaguer search is told to narrow down.
    static constexpr int kMaxFilas = 500;

    explicit ClienteBusquedaForm(Entorno& entorno, const PeticionCliente& peticion = {});

    const PeticionCliente& peticion() const { return peticion_; }
    bool reducida() const { return peticion_.reducida; }
    // Pick-only use: no "Nuevo cliente".
    bool puedeCrearCliente() const { return !peticion_.Bloquear; }
    // True when the opener preset a text: the screen searches as soon as it opens.
    bool buscarAlAbrir() const;

    CriteriosBusquedaCliente criterios;
    CriteriosBusquedaReducida criteriosReducida;

    // The data-protection states offered ("" first, for any) and their stored codes.
    static QStringList opcionesLOPD();
    static QString codigoLOPD(const QString& texto);
    // The entries of a look-up table (TiposCliente, FormasContacto, Especies, Estados,
    // CondicionesCorporales, PlanesSalud...) in text order; Razas of one species when given.
    QList<OpcionCriterio> opciones(const QString& tabla, std::optional<qint64> idEspecie = {});
    // Town, postcode and province texts known to the look-up lists.
    QStringList poblaciones();
    QStringList provincias();

    static QStringList columnasClientes();
    static QStringList columnasMascotas();
    static QStringList columnasReducida();

    // Runs the search; asks about inactive matches when those are all there is. Returns false
    // when it failed (the reason has been shown).
    bool buscar();
    const QList<FilaClienteBusqueda>& clientes() const { return clientes_; }
    // "" or a note under the result: none found, or only the first kMaxFilas shown.
    const QString& nota() const { return nota_; }

    // Selects a found client and reads its pets; -1 clears the selection.
    void seleccionar(int fila);
    int seleccionado() const { return seleccionado_; }
    const QList<FilaMascotaBusqueda>& mascotas() const { return mascotas_; }

    // Chooses the selected client (and the pet at filaMascota, -1 for none). False when
    // nothing is selected or the client cannot be read (it is then dropped from the list).
    bool aceptar(int filaMascota = -1);
    // The user chose to create a client: NuevoCliente. False in pick-only use.
    bool nuevoCliente();
    const std::optional<ClienteElegido>& elegido() const { return elegido_; }

private:
    Entorno& e_;
    PeticionCliente peticion_;
    QList<FilaClienteBusqueda> clientes_;
    QList<FilaMascotaBusqueda> mascotas_;
    int seleccionado_ = -1;
    bool verBajas_ = false; // the user accepted to see inactive matches
    QString nota_;
    std::optional<ClienteElegido> elegido_;
};
