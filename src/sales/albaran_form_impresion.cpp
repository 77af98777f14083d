// The delivery-note screen's printing: the note through a template, to a PDF, and the ticket.
#include "clients/aviso_lopd.h"
#include "core/command_trace.h"
#include "documents/impresor_documentos.h"
#include "documents/ticket.h"
#include "sales/albaran_documento.h"
#include "sales/albaran_form.h"

// The note as stored, ready to print: it is always read again, lines and totals included
// (another workstation may have changed a note shown here read-only). A note invoiced or
// collected since it was opened here is not printed (its message is shown and the stored note
// comes back on the screen); unsaved changes of a note that can still change are saved first.
bool AlbaranForm::prepararImpresion() {
    if (a_.esNuevo()) return guardar();
    if (!a_.facturado() && !a_.algoCobrado()) {
        if (!comprobarSinCambiosAjenos(QStringLiteral("No se imprimirán los cambios efectuados"),
                                       kTituloImposibleGuardar)) {
            if (a_.facturado() || a_.algoCobrado()) {
                modificado_ = false;
                bloqueo_.liberar();
                cargar(*a_.IdAlbaran);
            }
            return false;
        }
        if (modificado_) return guardar();
    }
    std::optional<Albaran> leido;
    CommandTrace traza(e_.dialogs(), QStringLiteral("imprimir un Albarán") + kEnPantallaAlbaranes);
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Leer de nuevo el Albarán"));
            leido = store_.cargar(*a_.IdAlbaran);
        }))
        return false;
    if (!leido) {
        errorDeLectura(numeroNota());
        return false;
    }
    a_ = *leido;
    notificar();
    return true;
}

bool AlbaranForm::documento(const std::function<bool(const DatosDocumento&)>& enviar) {
    // The data-protection notice comes before anything is saved, read or printed.
    if (cliente_ && cliente_->lopd == kLopdNoConsiente && !avisoLopd(e_.dialogs(), cliente_->nombre, true))
        return false;
    if (!prepararImpresion()) return false;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("imprimir un Albarán") + kEnPantallaAlbaranes);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Preparar los datos del Albarán"));
        const QString vendedor = store_.nombreVendedor(a_.idVendedor);
        const DatosDocumento datos =
            datosAlbaran(a_, cliente_ ? &*cliente_ : nullptr, mascota_ ? &*mascota_ : nullptr, vendedor);
        traza.paso(QStringLiteral("Imprimir el documento"));
        hecho = enviar(datos);
    });
    return hecho;
}

bool AlbaranForm::imprimir(bool notaVenta) {
    return documento([&](const DatosDocumento& datos) {
        return ImpresorDocumentos(e_).imprimir(notaVenta ? kGrupoNotaVenta : kGrupoAlbaranes, kPromptAlbaran,
                                               datos, DestinoDocumento::VistaPrevia);
    });
}

bool AlbaranForm::exportarPdf(const QString& fichero, bool notaVenta) {
    return documento([&](const DatosDocumento& datos) {
        return ImpresorDocumentos(e_).imprimir(notaVenta ? kGrupoNotaVenta : kGrupoAlbaranes, kPromptAlbaran,
                                               datos, DestinoDocumento::PDF, fichero);
    });
}

bool AlbaranForm::ticket() {
    // Said before anything is saved or asked.
    if (!hayImpresoraTickets(e_)) {
        e_.dialogs().avisar(QStringLiteral("¡Atención!"), kSinImpresoraTickets);
        return false;
    }
    return documento([&](const DatosDocumento& datos) { return imprimirTicket(e_, datos); });
}
