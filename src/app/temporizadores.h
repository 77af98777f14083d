#pragma once
// The rules behind the main window's timers, as pure functions.
#include <QDateTime>
#include <QString>
#include <optional>

// Appointment check (every minute): the moment formatted "dd/mm/yyyy hh:mm"; when its
// minutes are a multiple of five, the date part and the "hh:mm" part go to the agenda.
struct MomentoAgenda {
    QString fecha; // "dd/mm/yyyy"
    QString hora;  // "hh:mm"
};
std::optional<MomentoAgenda> comprobacionAgenda(const QDateTime& ahora);

// Automatic backup copy: "CopiaAutomBD.MDB" beside the database, whatever the case of the
// database's own name. The folder is kept as it is (file systems here tell case apart).
QString rutaCopiaAutomatica(const QString& rutaBaseDatos);

// Whether the automatic copy is due: a backup time is set, it has been reached today, and no
// copy was made today yet.
bool tocaCopiaAutomatica(const std::optional<QTime>& horaCopia, const QDateTime& ahora,
                         const std::optional<QDate>& ultimaCopia);

// Barcode entry: the collected text passed on as keystrokes, each of + ^ % ~ ( ) [ ] { }
// enclosed in braces so that it is typed literally.
QString secuenciaTeclasCodigoBarras(const QString& texto);
// The characters a keystroke sequence types (the inverse: "{+}" types "+").
QString textoDeSecuenciaTeclas(const QString& secuencia);

// Closing: whether the compaction question is due. dias is the setting DIAS COMPACTACION
// (missing, not a number or 0: never); ultima the date of the last compaction (missing:
// due). A day count equal to the setting is due.
bool tocaCompactacion(const QString& dias, const std::optional<QDate>& ultima, const QDate& hoy);

// "AutoGuardado ACTIVADO cada N minutos" / "AutoGuardado DESACTIVADO".
QString textoAutoGuardado(int minutos);
