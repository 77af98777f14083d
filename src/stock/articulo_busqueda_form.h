#pragma once
// The article search ("Búsqueda de Artículos"): filters by code, description (beginning or
// anywhere), bar code, section, family, subfamily and laboratory; withdrawn articles only when
// asked. It lists code, description, the three prices, VAT and days of reminder, and hands the
// chosen article's code back to the screen that opened it.
#include "app/entorno.h"
#include "stock/articulo_store.h"

inline const QString kTituloBusquedaArticulos = QStringLiteral("Búsqueda de Artículos");

class ArticuloBusquedaForm {
public:
    explicit ArticuloBusquedaForm(Entorno& entorno) : e_(entorno) {}

    // What the user typed; the code is typed as text and must be a whole number.
    QString codigo;
    FiltroArticulos filtro;

    // Runs the search. False, with the reason shown, when the code typed is not a number or the
    // database failed; the list is then left as it was.
    bool buscar();
    // Puts the opener's text in the description, or in the code when it is all digits.
    void textoInicial(const QString& texto);

    // The choices of a filter's drop-down (ArticuloStore::opciones); empty, with the reason
    // shown, when the database failed.
    QList<OpcionArticulo> opciones(const QString& tabla, std::optional<qint64> padre = std::nullopt);

    static QStringList cabeceras();
    int filas() const { return static_cast<int>(filas_.size()); }
    const FilaArticulo& fila(int i) const { return filas_.at(i); }
    QString textoCelda(int fila, int columna) const;

    int seleccionado = -1;
    // The code of the selected article; nullopt (the user is told) without a selection.
    std::optional<qint64> elegir();

private:
    Entorno& e_;
    QList<FilaArticulo> filas_;
};
