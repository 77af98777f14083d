#pragma once
// The regional settings the program needs from the machine. On start the program compares
// what the machine says with requeridos() and refuses to go on while anything differs.
#include <QString>
#include <QStringView>
#include <optional>

inline constexpr QStringView kTituloConflictoRegional = u"Conflicto con la configuración de Windows";

struct RegionalSettings {
    QString formatoFechaCorta;
    QString separadorFecha;
    QString formatoHora;
    QString separadorHora;
    QString separadorDecimal;
    QString separadorMiles;
    QString separadorDecimalMoneda;
    QString separadorMilesMoneda;

    // dd/MM/yyyy, '/', H:mm:ss, ':', ',', '.', ',', '.'.
    static RegionalSettings requeridos();

    // The settings of this machine. The program writes and reads every date, time and number
    // itself (see formatos.h) and never asks the locale of a Linux machine, so here this reports
    // the program's own conventions, which are requeridos().
    static RegionalSettings delSistema();

    bool operator==(const RegionalSettings&) const = default;
};

// nullopt when every value is the required one. Otherwise the text for the user about the
// first value that differs, checked in the order of the fields above (short date, date
// separator, time format, time separator, decimal and thousands separators for numbers, then
// for currency). Shown in a box titled kTituloConflictoRegional.
std::optional<QString> comprobarConfiguracionRegional(const RegionalSettings& encontrada);
