#pragma once
// The program writes and reads every date, time and number itself, always in the same
// Spanish form, whatever the locale of the machine:
//   dates    dd/mm/yyyy          31/12/2024
//   long     d de mes de yyyy    5 de febrero de 2024 (letters)
//   times    hh:mm, hh:mm:ss     09:05, 09:05:30
//   amounts  #,##0.00            1.234.567,50   -0,50   0,00
//   counts   #,##0               1.234.567
//   keys     yyyymmdd            20241231 (sortable; used in file names)
// The readers never throw: text that is not exactly in the expected form gives nullopt.
#include <QDate>
#include <QString>
#include <QTime>
#include <optional>

// "dd/mm/yyyy"; an invalid date, or a year outside 1..9999, gives "".
QString formatoFecha(const QDate& fecha);
// "5 de febrero de 2024": the day without a leading zero, the month's name in lower case;
// "" where formatoFecha gives "".
QString formatoFechaLarga(const QDate& fecha);
// Accepts "dd/mm/yyyy" and also one-digit day and month ("1/2/2024"), with blanks around
// the text ignored. The year always has four digits (two-digit years are rejected, never
// guessed) and must be 1..9999. Only the '/' separator and the digits 0-9 are accepted.
// A date that does not exist (31/02/2024, 12/13/2024) gives nullopt.
std::optional<QDate> leerFecha(const QString& texto);

// "hh:mm" and "hh:mm:ss"; an invalid time gives "".
QString formatoHora(const QTime& hora);
QString formatoHoraSegundos(const QTime& hora);
// Accepts "hh:mm" and "hh:mm:ss" (also a one-digit hour: "9:05"), blanks around ignored.
// Minutes and seconds always have two digits. Hours 0..23, minutes and seconds 0..59:
// "24:00" and "10:60" give nullopt.
std::optional<QTime> leerHora(const QString& texto);

// "#,##0.00" after rounding with redondear2: 1234567.5 -> "1.234.567,50", -0.5 -> "-0,50".
// An amount that rounds to zero is "0,00", never "-0,00". NaN and infinities give "".
QString formatoImporte(double importe);
// formatoImporte + " €".
QString formatoEuros(double importe);
// "#,##0": 1234567 -> "1.234.567", -1000 -> "-1.000".
QString formatoEntero(qint64 numero);

// Reads an amount written the Spanish way. Blanks around the text are ignored.
//   [-] integer part [ , decimals ]
// The integer part is either plain digits ("1234") or grouped by thousands points
// ("1.234.567"): a first group of 1 to 3 digits not starting with 0, then groups of exactly
// 3 digits. A comma must have a digit on each side; there may be any number of decimals
// (the value is not rounded here). Rejected: "", "abc", "12,3,4", "1,2.3", "1.23,4",
// "1234.567", "0.123", ",5", "5,", "+5", "1 234". "-0" reads as 0.
std::optional<double> leerImporte(const QString& texto);

// "yyyymmdd" (a sortable key; part of file names); an invalid date gives "".
QString formatoClaveFecha(const QDate& fecha);
// Reads exactly eight digits "yyyymmdd" back; anything else, or a date that does not exist,
// gives nullopt.
std::optional<QDate> leerClaveFecha(const QString& texto);
