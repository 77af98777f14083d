#pragma once
// The list of special conditions of a client's commercial file and of a health plan: each row
// names one article, or a section (optionally narrowed to a family and a subfamily), and gives
// either a special price or a particular tariff, never both, with an optional particular
// discount. The rows are kept in memory while the owner is edited and stored in table
// CondicionesEspeciales (IdCliente or IdPlanSalud) inside the owner's own save transaction.
#include "app/entorno.h"
#include "clients/condiciones_store.h"
#include "data/registro.h"

#include <QList>
#include <QStringList>
#include <functional>
#include <optional>

// The editing row: the chosen keys and the typed texts.
struct EntradaCondicion {
    std::optional<qint64> IdArticulo;
    std::optional<qint64> IdSeccion;
    std::optional<qint64> IdFamilia;
    std::optional<qint64> IdSubfamilia;
    QString Precio;    // amount typed the Spanish way, "" for none
    QString Tarifa;    // "" or one of the tariffs
    QString Descuento; // percent typed the Spanish way, "" for none
};

inline const QString kTituloCamposMal = QStringLiteral("Campos mal informados");
inline const QString kTituloArticuloRepetido = QStringLiteral("Error al modificar un precio existente");

class CondicionesForm {
public:
    CondicionesForm(Entorno& entorno, DuenoCondiciones dueno);

    // The article table (the catalogue's "Articulos" unless set; nullptr when there is none).
    void setTablaArticulos(const DescriptorTabla* tabla) { articulos_ = tabla; }
    const DescriptorTabla* tablaArticulos() const { return articulos_; }

    // The list's column headers.
    static QStringList columnas();
    // The tariffs a condition may name, the empty choice first.
    static QStringList tarifas();

    // Reads the rows of one client or plan (none for nullopt). Throws ErrorBD.
    void cargar(std::optional<qint64> dueno);
    const QList<CondicionEspecial>& filas() const { return filas_; }
    // The seven cells of a row as the list shows them.
    QStringList celdas(int fila) const;
    // Whether the rows changed since they were read or stored.
    bool modificada() const { return modificada_; }

    // Called before every change; false stops it (the owner's record lock was refused).
    std::function<bool()> antesDeCambiar;

    // Opens the article search (entorno.buscadores.articulo); the article number chosen, or
    // nullopt when nothing was chosen or the article cannot be read (the reason is shown).
    std::optional<qint64> elegirArticulo(const QString& textoInicial = {});
    // The text of an article, or nullopt with the message shown when it cannot be read.
    std::optional<QString> leerArticulo(qint64 articulo);

    // Checks the editing row and adds it / replaces row fila with it; false (one message)
    // when refused, and the list is left as it was.
    bool insertar(const EntradaCondicion& entrada);
    bool modificar(int fila, const EntradaCondicion& entrada);
    bool eliminar(int fila);
    // The editing row that shows an existing row.
    EntradaCondicion entrada(int fila) const;

    // Drop-down entries: sections, the families of a section, the subfamilies of a family
    // (empty while those tables do not exist).
    QList<OpcionLista> secciones();
    QList<OpcionLista> familias(std::optional<qint64> seccion);
    QList<OpcionLista> subfamilias(std::optional<qint64> familia);

    // Replaces the stored rows of the owner with the list; runs inside the caller's
    // transaction. Throws ErrorBD.
    void guardar(qint64 dueno);

private:
    std::optional<CondicionEspecial> validar(const EntradaCondicion& entrada, int filaExcluida,
                                             bool modificando);
    bool rechazar(const QString& titulo, const QString& texto);
    QString textoDe(const QString& tabla, std::optional<qint64> clave);
    QList<OpcionLista> opcionesHijas(const QString& tabla, const QString& columnaPadre,
                                     std::optional<qint64> padre);

    Entorno& e_;
    DuenoCondiciones dueno_;
    const DescriptorTabla* articulos_;
    QList<CondicionEspecial> filas_;
    bool modificada_ = false;
};
