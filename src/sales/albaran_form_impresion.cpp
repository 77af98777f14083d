// The delivery-note screen's printing: the note through a template, to a PDF, and the ticket.
#include "clients/aviso_lopd.h"
#include "core/command_trace.h"
#include "documents/impresor_documentos.h"
#include "documents/ticket.h"
#include "sales/albaran_documento.h"
#include "sales/albaran_form.h"

// The note as stored, ready to print: unsaved changes are saved first, unless the note was
// invoiced or collected meanwhile (then the stored note prints, without the changes).
bool AlbaranForm::prepararImpresion() {
    if (a_.esNuevo()) return guardar();
    if (!modificado_) return true;
    if (!comprobarSinCambiosAjenos(QStringLiteral("No se imprimirán los cambios efectuados"),
                                   kTituloImposibleGuardar)) {
        if (!a_.facturado() && !a_.algoCobrado()) return false; // could not be read
        modificado_ = false;
        return cargar(*a_.IdAlbaran);
    }
    return guardar();
}

bool AlbaranForm::documento(const std::function<bool(const DatosDocumento&)>& enviar) {
    if (!prepararImpresion()) return false;
    if (cliente_ && cliente_->lopd == kLopdNoConsiente && !avisoLopd(e_.dialogs(), cliente_->nombre, true))
        return false;
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
