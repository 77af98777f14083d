// Sending the ticket: the system printer (QPrinter) or a serial ESC/POS printer (QSerialPort).
#include "app/conf_puesto_form.h"
#include "core/puerto_serie.h"
#include "documents/datos_clinica.h"
#include "documents/ticket.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSerialPort>

namespace {
const QString kTituloAtencion = QStringLiteral("¡Atención!");
const QString kRevise = QStringLiteral(" Revise los 'Datos de la configuración del puesto'.");
// Longest wait for the printer to take more bytes.
constexpr int kEsperaEscrituraMs = 5000;

int copias(const ImpresoraTickets& c) {
    bool ok = false;
    const int n = c.NUMPASADAS.trimmed().toInt(&ok);
    return ok ? qBound(1, n, ConfPuestoForm::kMaxPasadas) : 1;
}

bool cortarPapel(const ImpresoraTickets& c) {
    const QString v = c.CORTEPAPEL.trimmed().toUpper();
    return v == QLatin1String("SI") || v == QStringLiteral("SÍ") || v == QLatin1String("S") ||
           v == QLatin1String("1");
}

bool imprimirEnSistema(Entorno& e, const ImpresoraTickets& c, const QString& texto) {
    const QString nombre = c.IMPRESORA.trimmed();
    if (nombre.isEmpty()) {
        e.dialogs().avisar(kTituloAtencion, QStringLiteral("No se ha elegido la impresora de tickets de este "
                                                           "puesto. Elíjala en los 'Datos de la "
                                                           "configuración del puesto'."));
        return false;
    }
    if (QPrinterInfo::printerInfo(nombre).isNull()) {
        e.dialogs().avisar(
            kTituloAtencion,
            QStringLiteral("No se encuentra la impresora de tickets '%1' en este equipo.").arg(nombre) +
                kRevise);
        return false;
    }
    QPrinter impresora(QPrinter::HighResolution);
    impresora.setPrinterName(nombre);
    impresora.setDocName(QStringLiteral("Ticket"));
    impresora.setCopyCount(copias(c));
    impresora.setPageMargins(QMarginsF(2, 2, 2, 2), QPageLayout::Millimeter);
    QPainter p;
    if (!impresora.isValid() || !p.begin(&impresora)) {
        e.dialogs().avisar(
            kTituloAtencion,
            QStringLiteral("No se ha podido imprimir el ticket en la impresora '%1'.").arg(nombre));
        return false;
    }
    QFont letra(QStringLiteral("DejaVu Sans Mono"));
    letra.setStyleHint(QFont::Monospace);
    letra.setPointSizeF(8);
    p.setFont(letra);
    const QFontMetricsF medida(letra, &impresora);
    double y = medida.ascent();
    for (const QString& linea : texto.split(QLatin1Char('\n'))) {
        if (y + medida.descent() > impresora.height()) {
            impresora.newPage();
            y = medida.ascent();
        }
        p.drawText(QPointF(0, y), linea);
        y += medida.lineSpacing();
    }
    return p.end();
}

bool imprimirEnSerie(Entorno& e, const ImpresoraTickets& c, const QString& texto) {
    const QString puerto = c.PUERTO.trimmed();
    const QString dispositivo = dispositivoSerie(puerto);
    if (dispositivo.isEmpty()) {
        e.dialogs().avisar(
            kTituloAtencion,
            QStringLiteral("El puerto '%1' de la impresora de tickets no es válido.").arg(puerto) + kRevise);
        return false;
    }
    const QString nombre =
        dispositivo == puerto ? puerto : puerto + QStringLiteral(" (") + dispositivo + QLatin1Char(')');
    QSerialPort serie;
    serie.setPortName(dispositivo);
    if (!serie.open(QIODevice::WriteOnly)) {
        e.dialogs().avisar(kTituloAtencion,
                           QStringLiteral("No se ha podido abrir el puerto '%1' de la impresora de "
                                          "tickets.\n%2")
                               .arg(nombre, serie.errorString()));
        return false;
    }
    auto noAdmite = [&](const QString& que) {
        e.dialogs().avisar(
            kTituloAtencion,
            QStringLiteral("El puerto '%1' de la impresora de tickets no admite %2.").arg(nombre, que) +
                kRevise);
        return false;
    };
    bool ok = false;
    const int velocidad = c.VELOCIDAD.trimmed().isEmpty() ? 9600 : c.VELOCIDAD.trimmed().toInt(&ok);
    if ((!c.VELOCIDAD.trimmed().isEmpty() && (!ok || velocidad <= 0)) || !serie.setBaudRate(velocidad))
        return noAdmite(QStringLiteral("la velocidad '%1'").arg(c.VELOCIDAD.trimmed()));
    const QString bits = c.BITSDATOS.trimmed().isEmpty() ? QStringLiteral("8") : c.BITSDATOS.trimmed();
    const int nBits = bits.toInt(&ok);
    if (!ok || nBits < 5 || nBits > 8 || !serie.setDataBits(static_cast<QSerialPort::DataBits>(nBits)))
        return noAdmite(QStringLiteral("%1 bits de datos").arg(bits));
    const QString parada = c.BITSPARADA.trimmed().isEmpty() ? QStringLiteral("1") : c.BITSPARADA.trimmed();
    const QHash<QString, QSerialPort::StopBits> paradas = {
        {QStringLiteral("1"), QSerialPort::OneStop},
        {QStringLiteral("1.5"), QSerialPort::OneAndHalfStop},
        {QStringLiteral("2"), QSerialPort::TwoStop}};
    if (!paradas.contains(parada) || !serie.setStopBits(paradas.value(parada)))
        return noAdmite(QStringLiteral("%1 bits de parada").arg(parada));
    const QString paridad =
        c.PARIDAD.trimmed().isEmpty() ? QStringLiteral("NINGUNO (N)") : c.PARIDAD.trimmed();
    const QHash<QString, QSerialPort::Parity> paridades = {
        {QStringLiteral("PAR (E)"), QSerialPort::EvenParity},
        {QStringLiteral("MARCA (M)"), QSerialPort::MarkParity},
        {QStringLiteral("NINGUNO (N)"), QSerialPort::NoParity},
        {QStringLiteral("IMPAR (O)"), QSerialPort::OddParity},
        {QStringLiteral("ESPACIO (S)"), QSerialPort::SpaceParity}};
    if (!paridades.contains(paridad) || !serie.setParity(paridades.value(paridad)))
        return noAdmite(QStringLiteral("la paridad '%1'").arg(paridad));
    serie.setFlowControl(QSerialPort::NoFlowControl);

    const QByteArray bytes = bytesEscPos(texto, copias(c), cortarPapel(c));
    bool escrito = serie.write(bytes) == bytes.size();
    while (escrito && serie.bytesToWrite() > 0)
        escrito = serie.waitForBytesWritten(kEsperaEscrituraMs);
    if (!escrito) {
        e.dialogs().avisar(kTituloAtencion,
                           QStringLiteral("La impresora de tickets del puerto '%1' no responde y el "
                                          "ticket no se ha impreso entero. Compruebe que está "
                                          "encendida y tiene papel.")
                               .arg(nombre));
        return false;
    }
    serie.close();
    return true;
}
} // namespace

bool hayImpresoraTickets(const Entorno& e) {
    const QString tipo = e.impresoraTickets.TIPO.trimmed();
    return tipo == ConfPuestoForm::kImpresoraSistema || tipo == ConfPuestoForm::kImpresoraSerie;
}

bool imprimirTicket(Entorno& e, const DatosDocumento& datos) {
    const ImpresoraTickets& c = e.impresoraTickets;
    const QString tipo = c.TIPO.trimmed();
    if (!hayImpresoraTickets(e)) {
        e.dialogs().avisar(kTituloAtencion, kSinImpresoraTickets);
        return false;
    }
    DatosDocumento completos = datos;
    if (e.hayBaseDatos()) {
        Ajustes ajustes = e.ajustes();
        anyadirDatosClinica(ajustes, completos);
    }
    const QString texto = textoTicket(completos);
    return tipo == ConfPuestoForm::kImpresoraSistema ? imprimirEnSistema(e, c, texto)
                                                     : imprimirEnSerie(e, c, texto);
}
