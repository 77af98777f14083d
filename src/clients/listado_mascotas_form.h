#pragma once
// The pet list ("Listado de Mascotas"), for lists and letters to many pets: filters on the
// owner (picked only through the client search), species, breed, sex, state, type, body
// condition, health plan, five date ranges each used only when ticked, and pets that left
// only when ticked; the result with its count in the frame heading; the selection, the
// opening of a pet, and letters to the selected pets after the data-protection notice.
#include "app/entorno.h"
#include "clients/aviso_lopd.h"
#include "clients/mascota_store.h"
#include "documents/impresor_documentos.h"

#include <functional>

inline const QString kTituloListadoMascotas = QStringLiteral("Listado de Mascotas");

class ListadoMascotasForm {
public:
    explicit ListadoMascotasForm(Entorno& entorno) : e_(entorno) {}

    // The filters, except the client. Ranges are used only when activo.
    FiltroMascotas filtro;

    // The client filter: the text in the field and the client picked with the search.
    // Typing in the field drops a pick whose name differs.
    void setTextoCliente(const QString& texto);
    const QString& textoCliente() const { return textoCliente_; }
    std::optional<qint64> cliente() const { return cliente_; }
    bool elegirCliente();

    // Runs the search; false with a message when the client was typed and not picked, or
    // nothing matched.
    bool buscar();
    const QList<FilaListadoMascota>& filas() const { return filas_; }
    // " Mascotas que cumplen las condiciones " with the count: " Mascotas que cumplen las
    // condiciones (1.234) ".
    QString encabezado() const;
    static QStringList cabeceras();
    // The texts of one row in the order of cabeceras().
    static QStringList textos(const FilaListadoMascota& f);

    // Rows selected (indexes into filas()).
    QList<int> seleccion;

    // The pet to open: the current row; nullopt with "Debe seleccionar previamente una
    // Mascota" (title "Aviso") when none.
    std::optional<FilaListadoMascota> mascotaActual(int fila);

    // The recipients of a letter to the selected pets. None selected: message and nullopt.
    // Pets whose owner does not consent go through the list notice (mostrarAviso shows it
    // and returns false when the user cancels: nullopt); the rows kept come back as their
    // pet numbers joined by "¬" ("12¬15"), in the order of the list; "" when none is kept.
    std::optional<QString> destinatariosCarta(const std::function<bool(AvisoLopdLista&)>& mostrarAviso);
    // A letter about each pet destinatariosCarta keeps (group "DocMas", one format for all),
    // printed in one run, each letter on a page of its own. Pets deleted meanwhile are left
    // out. True when printed.
    bool cartas(const std::function<bool(AvisoLopdLista&)>& mostrarAviso,
                DestinoDocumento destino = DestinoDocumento::VistaPrevia, const QString& ficheroPdf = {});

private:
    Entorno& e_;
    QString textoCliente_;
    std::optional<qint64> cliente_;
    QString nombreElegido_;
    QList<FilaListadoMascota> filas_;
};
