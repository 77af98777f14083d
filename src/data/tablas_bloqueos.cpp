#include "data/tablas.h"

namespace {
using T = TipoColumna;

// One row per lock held by a session; the key makes a second lock of the same record
// impossible on both engines.
DescriptorTabla bloqueos() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("Bloqueos");
    t.descTabla = QStringLiteral("Bloqueo");
    t.columnaS = {
        col(QStringLiteral("claveBloqueo"), T::Texto, QStringLiteral("Clave del bloqueo"), 255, false),
        col(QStringLiteral("DescrBloqueo"), T::Texto, QStringLiteral("Registro"), 255),
        col(QStringLiteral("Sesion"), T::Texto, QStringLiteral("Sesión"), 64, false),
        colLista(QStringLiteral("Accion"), QStringLiteral("Acción"),
                 {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")},
                 {QStringLiteral("Modificación"), QStringLiteral("Alta"), QStringLiteral("Baja")}),
        col(QStringLiteral("Usuario"), T::Texto, QStringLiteral("Usuario"), 20),
        col(QStringLiteral("Puesto"), T::Texto, QStringLiteral("Puesto"), 64),
        col(QStringLiteral("Fecha"), T::Fecha, QStringLiteral("Fecha")),
        col(QStringLiteral("Hora"), T::Hora, QStringLiteral("Hora")),
        // The window of the session that holds the lock ("" for the session itself: the
        // administrative lock, a lock on a whole table).
        col(QStringLiteral("Ventana"), T::Texto, QStringLiteral("Ventana"), 40, true, 4)};
    t.columnaS[3].tipo = T::Entero;
    t.columnaS.last().porDefecto = QStringLiteral("''");
    t.clave = {QStringLiteral("claveBloqueo")};
    t.columnaTexto = QStringLiteral("DescrBloqueo");
    t.indices = {{QStringLiteral("IX_Bloqueos_Sesion"), {QStringLiteral("Sesion")}, false, 1}};
    return t;
}

// The last number handed out of each numbered series ("Facturas.A").
DescriptorTabla contadores() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("Contadores");
    t.descTabla = QStringLiteral("Contador");
    t.columnaS = {col(QStringLiteral("Serie"), T::Texto, QStringLiteral("Serie"), 120, false),
                  col(QStringLiteral("Ultimo"), T::Entero, QStringLiteral("Último número"), 0, false)};
    t.columnaS[1].porDefecto = QStringLiteral("0");
    t.clave = {QStringLiteral("Serie")};
    t.columnaTexto = QStringLiteral("Serie");
    return t;
}
} // namespace

QList<DescriptorTabla> tablasBloqueos() {
    return {bloqueos(), contadores()};
}
