#pragma once
// The register of changes of owner ("Registro de Cambios de Propietario"): filters by dates,
// pet name and owners (origin and new, each picked through the client search), the rows
// "Fecha", "Mascota", "Propietario Origen", "Nuevo Propietario", and the opening of a row's pet.
#include "app/entorno.h"
#include "clients/mascota_store.h"

inline const QString kTituloRegistroCambios = QStringLiteral("Registro de Cambios de Propietario");

class RegistroCambiosForm {
public:
    explicit RegistroCambiosForm(Entorno& entorno) : e_(entorno) {}

    // Dates and pet name; the owners are set through elegir...() and cleared with quitar...().
    FiltroCambios filtro;
    bool elegirOrigen();
    bool elegirDestino();
    void quitarOrigen() { filtro.IdClienteOrigen.reset(), nombreOrigen_.clear(); }
    void quitarDestino() { filtro.IdClienteDestino.reset(), nombreDestino_.clear(); }
    const QString& nombreOrigen() const { return nombreOrigen_; }
    const QString& nombreDestino() const { return nombreDestino_; }

    // Runs the search; false (with a message) when nothing matched.
    bool buscar();
    const QList<FilaCambio>& filas() const { return filas_; }
    static QStringList cabeceras();
    static QStringList textos(const FilaCambio& f);

    // The owner and number of the pet of a row, to open it; nullopt with "No se ha
    // encontrado la Mascota nº ..." when the pet no longer exists.
    std::optional<std::pair<qint64, qint64>> mascotaDeFila(int fila);

private:
    Entorno& e_;
    QString nombreOrigen_, nombreDestino_;
    QList<FilaCambio> filas_;
};
