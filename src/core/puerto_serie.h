#pragma once
// The serial port of the receipt printer (PUERTO of section IMPRESORA TICKETS), one rule for
// the workstation configuration that accepts it and the ticket printing that opens it.
//
// Accepted: "COM1" to "COM16" in any case, blanks around ignored, standing for /dev/ttyS0 to
// /dev/ttyS15; or a device path under /dev/ made of letters, digits, ".", "_", "-" and "/"
// (/dev/ttyUSB0, /dev/serial/by-id/...), with no ".." and not ending in "/".
#include <QString>

// The device to open; "" when the text names no accepted port.
QString dispositivoSerie(const QString& puerto);
// The text kept in PRAMELVIX.INI: "COMn" upper-cased, a device path trimmed; "" when the text
// names no accepted port.
QString puertoSerieNormalizado(const QString& puerto);
