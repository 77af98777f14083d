#pragma once
// The hospitalisation screens' logic: the pets hospitalised now ("Mascota", "Cliente",
// "Jaula"; change the cage, open the pet, discharge), and the register of one pet's stays.
#include "app/entorno.h"
#include "clients/cliente_busqueda_form.h" // kTituloResultadoBusqueda
#include "clinical/hospitalizacion_store.h"

#include <functional>
#include <optional>

inline const QString kTituloHospitalizadas = QStringLiteral("Mascotas hospitalizadas");

// The two small dialogs, set by the windows (tests script them).
struct DialogosHospitalizacion {
    // The cage dialog: takes the cage shown and returns the one typed; nullopt when cancelled.
    std::function<std::optional<QString>(const QString& jaula)> jaula;
    // The discharge: date, time and diagnosis; nullopt when cancelled.
    std::function<std::optional<Alta>()> alta;
};

class HospitalizadasForm {
public:
    explicit HospitalizadasForm(Entorno& e) : e_(e) {}

    // Reads the list; with none says "Actualmente no existen Mascotas hospitalizadas" and
    // gives false.
    bool cargar();
    const QList<FilaHospitalizada>& lista() const { return lista_; }
    static QStringList columnas();

    bool cambiarJaula(int fila);
    bool darAlta(int fila);
    // The pet of the row, for the opener (the pet screen); false without a row.
    bool abrirMascota(int fila);

    DialogosHospitalizacion dialogos;
    std::function<void(qint64 idCliente, qint64 idMascota)> alAbrirMascota;

private:
    bool fila(int i) const { return i >= 0 && i < lista_.size(); }
    // A row is chosen; otherwise "Debe seleccionar previamente una Mascota" (title "Aviso").
    bool elegida(int i);
    void releer();
    // The stay changed meanwhile: another workstation discharged the pet.
    void avisarYaDeAlta(const QString& mascota);
    Entorno& e_;
    QList<FilaHospitalizada> lista_;
};

class RegistroHospitalizacionesForm {
public:
    explicit RegistroHospitalizacionesForm(Entorno& e) : e_(e) {}

    // The stays of the pet; with none says "Actualmente no existe un registro de
    // hospitalizaciones de esta Mascota" and gives false.
    bool abrir(qint64 idMascota, const QString& NombreMascota);
    // "Registro de hospitalizaciones de la mascota: " + name.
    QString titulo() const;
    const QList<FilaEstancia>& lista() const { return lista_; }
    static QStringList columnas();
    static QStringList textosFila(const FilaEstancia& f);

    // Opens the admitting visit of the stay through IrAVisita (NumVisita).
    bool irAVisita(int fila);
    std::function<void(qint64 NumVisita)> IrAVisita;

private:
    Entorno& e_;
    QString nombre_;
    QList<FilaEstancia> lista_;
};
