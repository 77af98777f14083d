#pragma once
// The article maintenance screen ("Mantenimiento de Artículos"): one article or service at a
// time. Every field is held as the text the user sees and types (look-ups hold the key of the
// chosen record as text); saving checks the mandatory fields in order, reads every typed
// value, asks about a changed description and about a changed invoicing series, and writes.
//
// An existing article is locked for modification at its first change, and for deletion when
// it is deleted; the lock is released on save, cancel, another article, and when the form
// goes away. A new article takes an "Alta" lock while it is saved.
#include "app/ficha_form.h"
#include "app/formulario_registro.h"
#include "stock/articulo_store.h"

#include <optional>

inline const QString kTituloArticulos = QStringLiteral("Mantenimiento de Artículos");
inline const QString kTipoServicio = QStringLiteral("SERVICIO");
inline const QString kPreguntaEliminarArticulo = QStringLiteral("¿Desea realmente eliminar este Artículo?");
inline const QString kPreguntaDescripcionArticulo = QStringLiteral(
    " Ha cambiado la descripción del Artículo. ¿Confirma que desea guardar esta modificación?");

class ArticuloForm : public FormularioRegistro {
public:
    explicit ArticuloForm(Entorno& entorno);

    // An empty new article (releases the lock held).
    void nuevo();
    // Reads an article; false, with the reason shown, when it cannot be read or when another
    // window here has it open (that one comes forward).
    bool abrir(qint64 codigo);

    std::optional<qint64> codigo() const { return id(); }
    // "Mantenimiento de Artículos - " + code + " : " + description; " (Nuevo Artículo)"
    // stands for the code of a new one.
    QString titulo() const;

    // Changes a field. False (the field keeps its text) when the field is not editable now
    // (the code; a field a service does not have), when the lock of the article is refused,
    // or when the supplier chosen cannot be read. Choosing the type "SERVICIO" empties the
    // fields a service does not have; changing the section empties the family and subfamily,
    // changing the family empties the subfamily.
    bool setTexto(const QString& columna, const QString& texto);
    bool esServicio() const;
    // False for the code, for the stock and last-purchase columns (kept by their operations)
    // and, on a service, for the fields a service does not have.
    bool habilitado(const QString& columna) const;
    // The fields a service does not have.
    static const QStringList& columnasProducto();

    // The margin shown: PVP1 × 100 / last purchase price rounded with redondear2 as
    // "#,##0.00"; "100.00" when the last purchase price is 0; "" when there is none.
    QString margen() const;

    // The choices of a look-up field (section, family within the chosen section, subfamily
    // within the chosen family, VAT, surcharge, series, laboratory, type, suppliers).
    // Empty for other fields, and when the database failed (the message is shown).
    QList<OpcionArticulo> opciones(const QString& columna);
    // The parameter table behind a look-up field ("" for other fields).
    static QString tablaParametro(const QString& columna);

    // A record form to add a section, family, subfamily, VAT type, surcharge type, series or
    // laboratory from the screen (a family comes under the chosen section, a subfamily under
    // the chosen family). nullopt for other fields, or when the parent is not chosen yet
    // (the user is told).
    std::optional<FichaForm> fichaParametro(const QString& columna);
    // After that record form saved: chooses the new record in the field.
    bool parametroAnadido(const QString& columna, const Registro& nuevo);

    bool guardar();
    bool eliminar();
    // Drops the changes: reads the article again (or empties a new one) and releases the lock.
    void cancelar();

    bool bloqueado() const { return bloqueo_.tomado(); }

private:
    QStringList columnasEditables() const override;
    QString descripcionBloqueo() const override;
    QString preguntaAbandonar() const override;
    void alCambiar(const QString& columna) override;
    bool rechazar(const QString& texto, const QString& columna) {
        return fallo(Icono::Exclamacion, kTituloObligatorios, texto, columna);
    }
    QString clasificacionCambiada(const Registro& antes, const Registro& despues) const;
    void avisoProveedor(qint64 codigo);
};
