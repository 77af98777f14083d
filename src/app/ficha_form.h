#pragma once
// The record form of the generic editors: one field per column of the table, in the order of
// its descriptor, each held as the text the user sees and types. List columns hold the text
// shown (ValorExternoS) and store the value behind it (ValorInternoS); numbers, dates and times
// are typed the Spanish way (formatos.h). Saving checks the mandatory fields in order, then
// every typed value, and only then writes the record.
#include "app/bloqueo_edicion.h"
#include "app/entorno.h"
#include "data/registro.h"

#include <QHash>
#include <QVariantMap>
#include <memory>
#include <optional>

struct CampoFicha {
    const DescriptorColumna* columna = nullptr;
    bool obligatorio = false; // not Opcional, or part of the key
    bool soloLectura = false; // the key of an existing record
};

inline const QString kTituloObligatorios = QStringLiteral("Campos obligatorios no informados");
inline const QString kTituloErronea = QStringLiteral("Información introducida errónea");

class FichaForm {
public:
    // A new record. fijos: columns the caller sets and the form does not show (the parent
    // of a node in a tree).
    FichaForm(Entorno& entorno, const DescriptorTabla& tabla, const QVariantMap& fijos = {});
    // An existing record, to modify.
    FichaForm(Entorno& entorno, const Registro& existente);

    const DescriptorTabla& descriptor() const { return *t_; }
    bool esNuevo() const { return nuevo_; }
    // "Añadir " + descTabla, or "Modificar " + descTabla.
    QString titulo() const;

    // The fields shown, in column order. An automatic key is not shown for a new record and
    // is read-only for an existing one; a typed key is read-only for an existing record.
    const QList<CampoFicha>& campos() const { return campos_; }
    const CampoFicha* campo(const QString& columna) const;

    QString texto(const QString& columna) const;
    void setTexto(const QString& columna, const QString& texto);
    // The texts a drop-down offers (list and yes/no columns; an optional one starts with "");
    // empty for a field typed freely.
    QStringList opciones(const QString& columna) const;

    // Takes the modification lock of an existing record (a new one needs none); false, with
    // the reason shown, when another workstation holds it. The lock is released by a
    // successful guardar(), by cancelar(), and when the last copy of the form goes away.
    bool bloquear();
    void cancelar();
    // False when another editor of this workstation already had the record open when this
    // form was made (the caller then brings that one forward instead).
    bool editorUnico() const { return nuevo_ || editor_ != nullptr; }

    // Validates and writes the record; false (with one message) when something is missing or
    // wrong, or the database refused it. Nothing is written on a refusal.
    bool guardar();
    // The column whose field should take the focus after a refusal.
    const QString& foco() const { return foco_; }
    // The record as saved (with its new key after a creation).
    const Registro& registro() const { return registro_; }

    // The text of a stored value as the form shows it, and the value of a typed text
    // (nullopt with the reason in error when the text is not valid for the column).
    static QString textoValor(const DescriptorColumna& c, const QVariant& valor);
    static std::optional<QVariant> leerValor(const DescriptorColumna& c, const QString& texto,
                                             QString* error);

private:
    void prepararCampos();
    bool rechazar(const QString& titulo, const QString& texto, const QString& columna);

    Entorno* e_;
    const DescriptorTabla* t_;
    Registro registro_;
    bool nuevo_;
    QStringList ocultas_;
    QList<CampoFicha> campos_;
    QHash<QString, QString> textos_;
    QString foco_;
    std::shared_ptr<BloqueoEdicion> bloqueo_;
    std::shared_ptr<const int> editor_;
};

// The text of a value in a list: amounts "#,##0.00", whole numbers "#,##0", dates
// "dd/mm/yyyy", times "hh:mm", yes/no "Sí"/"No", list columns their shown text.
QString textoCelda(const DescriptorColumna& c, const QVariant& valor);

// A table whose saving through the generic record form needs more than writing the row
// registers its own save here. It is called after the generic checks with the record as it
// was and as it will be; it returns the result of the save when it handled it, or nothing to
// let the form save as usual.
using GuardadoPropio =
    std::function<std::optional<bool>(Entorno&, const Registro& anterior, const Registro& nuevo)>;
void registrarGuardadoPropio(const QString& tabla, GuardadoPropio guardado);
