#pragma once
// The sale ticket on the workstation's receipt printer (section IMPRESORA TICKETS of
// PRAMELVIX.INI, Entorno::impresoraTickets).
//
// The ticket is plain text of kAnchoTicket columns (42: font A of an 80 mm receipt printer):
// the clinic, "Albarán " series/number, date and time, client, pet and salesperson; each
// line as its concept and then quantity × price (and discount) with the line total
// right-aligned; the totals, the VAT breakdown, the collections and what is still pending,
// and a thank-you line.
//
// TIPO "1" prints it on the system printer named IMPRESORA in a monospaced font, NUMPASADAS
// copies. TIPO "2" sends it to the serial port PUERTO in ESC/POS: ESC @ (reset), ESC t 19
// (code page PC858: Western European with the euro sign), the text in that code page,
// NUMPASADAS copies, each followed by ESC d 4 (feed) and, with CORTEPAPEL "SI", GS V 1
// (partial cut). PUERTO is opened as dispositivoSerie (core/puerto_serie.h) gives it.
#include "app/entorno.h"
#include "documents/plantilla.h"

#include <QByteArray>
#include <QString>

inline constexpr int kAnchoTicket = 42;

// The ticket's text: lines of at most `ancho` characters, each ended by '\n'.
QString textoTicket(const DatosDocumento& datos, int ancho = kAnchoTicket);

// The text in code page PC858. A character it lacks prints as its letter without the
// accent, or as '?'; control characters other than '\n' print as blanks.
QByteArray codificarCp858(const QString& texto);

// The bytes sent to an ESC/POS printer for the ticket (copias is kept within 1..9).
QByteArray bytesEscPos(const QString& texto, int copias, bool cortar);

// Prints the ticket of the document on this workstation's receipt printer, adding the
// clinic's data the document does not give. False (with the reason shown) when nothing
// was printed. Throws ErrorBD when the clinic's data cannot be read.
bool imprimirTicket(Entorno& e, const DatosDocumento& datos);
// Whether this workstation has a receipt printer configured (TIPO system or serial).
bool hayImpresoraTickets(const Entorno& e);

inline const QString kSinImpresoraTickets =
    QStringLiteral("No hay ninguna impresora de tickets configurada en este puesto. Configúrela en los "
                   "'Datos de la configuración del puesto'.");
