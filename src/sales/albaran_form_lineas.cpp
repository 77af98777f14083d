// The delivery-note screen's lines and its record commands: new, search, load, save,
// delete, close.
#include "app/guardado_registro.h"
#include "app/numeracion.h"
#include "core/command_trace.h"
#include "data/esquema.h"
#include "core/formatos.h"
#include "sales/albaran_form.h"

// --- lines ---

namespace {
EntradaLineaAlbaran entradaDe(const LineaAlbaran& l) {
    EntradaLineaAlbaran e;
    e.idArticulo = l.idArticulo;
    e.concepto = l.concepto;
    e.cantidad = textoCifra(l.cantidad);
    e.pvp = textoCifra(l.pvp);
    e.descuento = l.descuento == 0 ? QString() : textoCifra(l.descuento);
    e.idTipoIVA = l.idTipoIVA;
    e.serie = l.serie;
    return e;
}
} // namespace

std::optional<LineaAlbaran> AlbaranForm::lineaDe(qint64 codigo, const QString& accion,
                                                 const std::function<void()>& noExiste) {
    std::optional<ArticuloVenta> articulo;
    CommandTrace traza(e_.dialogs(), accion + kEnPantallaAlbaranes);
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Leer el Artículo ") + QString::number(codigo));
            articulo = store_.articulo(codigo);
        }))
        return std::nullopt;
    if (!articulo) {
        if (noExiste) noExiste();
        return std::nullopt;
    }
    const PrecioElegido p = elegirPrecio(*articulo, contexto());
    if (!p.valido()) {
        e_.dialogs().avisar(QStringLiteral("¡Atención!"), p.rechazo);
        return std::nullopt;
    }
    return lineaDeArticulo(*articulo, p);
}

std::optional<EntradaLineaAlbaran> AlbaranForm::entradaArticulo(qint64 codigo) {
    if (!requiereCliente(false)) return std::nullopt;
    const auto l = lineaDe(codigo, QStringLiteral("incluir un Artículo"), [&] {
        e_.dialogs().avisar(QStringLiteral("¡Atención!"),
                            QStringLiteral("No existe ningún artículo con el código ") +
                                QString::number(codigo) + QLatin1Char('.'));
    });
    if (!l) return std::nullopt;
    return entradaDe(*l);
}

std::optional<EntradaLineaAlbaran> AlbaranForm::buscarArticulo(const QString& texto) {
    if (!requiereCliente(true)) return std::nullopt;
    if (!e_.buscadores.articulo) return std::nullopt;
    const auto codigo = e_.buscadores.articulo(texto);
    if (!codigo) return std::nullopt;
    return entradaArticulo(*codigo);
}

EntradaLineaAlbaran AlbaranForm::entradaDeLinea(int fila) const {
    return entradaDe(a_.lineas().at(fila));
}

// The line an editing row describes, or nullopt with the first thing missing told.
std::optional<LineaAlbaran> AlbaranForm::leerEntrada(const EntradaLineaAlbaran& e) {
    auto falta = [&](const QString& texto) -> std::optional<LineaAlbaran> {
        fallo(kTituloObligatoriosAlbaran, texto);
        return std::nullopt;
    };
    if (!e.idArticulo) return falta(QStringLiteral("Indique el artículo que desea incluir"));
    const auto cantidad = leerImporte(e.cantidad);
    if (!cantidad || *cantidad == 0) return falta(QStringLiteral("Indique la cantidad"));
    const auto pvp = leerImporte(e.pvp);
    if (!pvp) return falta(QStringLiteral("Indique el precio del artículo"));
    if (!e.idTipoIVA) return falta(QStringLiteral("Indique el IVA del artículo"));
    double descuento = 0;
    if (!e.descuento.trimmed().isEmpty()) {
        const auto d = leerImporte(e.descuento);
        if (!d || *d < 0 || *d > 100) {
            e_.dialogs().avisar(QStringLiteral("Información introducida errónea"),
                                QStringLiteral("El descuento debe ser un porcentaje entre 0 y 100."));
            return std::nullopt;
        }
        descuento = *d;
    }
    std::optional<double> iva;
    CommandTrace traza(e_.dialogs(), QStringLiteral("incluir un Artículo") + kEnPantallaAlbaranes);
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Leer el tipo de I.V.A."));
            iva = store_.porcentajeIVA(*e.idTipoIVA);
        }))
        return std::nullopt;
    if (!iva) return falta(QStringLiteral("Indique el IVA del artículo"));
    LineaAlbaran l;
    l.idArticulo = e.idArticulo;
    l.concepto = e.concepto.trimmed();
    l.serie = e.serie;
    l.cantidad = *cantidad;
    l.pvp = *pvp;
    l.descuento = descuento;
    l.idTipoIVA = e.idTipoIVA;
    l.iva = *iva;
    return l;
}

bool AlbaranForm::insertarLinea(const EntradaLineaAlbaran& entrada) {
    if (a_.facturado())
        return fallo(QStringLiteral("¡Atención!"),
                     QStringLiteral("No es posible añadir nuevos artículos a este "
                                    "Albarán."));
    if (!requiereCliente(false)) return false;
    const auto linea = leerEntrada(entrada);
    if (!linea) return false;
    if (!a_.esNuevo() && !antesDeCambiar()) return false;
    a_.anadirLinea(*linea);
    modificado_ = true;
    notificar();
    return true;
}

bool AlbaranForm::modificarLinea(int fila, const EntradaLineaAlbaran& entrada) {
    if (fila < 0 || fila >= a_.lineas().size())
        return fallo(QStringLiteral("¡Atención!"),
                     QStringLiteral("Seleccione la línea que desea modificar."));
    const auto linea = leerEntrada(entrada);
    if (!linea) return false;
    if (!antesDeCambiar()) return false;
    a_.cambiarLinea(fila, *linea);
    modificado_ = true;
    notificar();
    return true;
}

bool AlbaranForm::quitarLinea(int fila) {
    if (fila < 0 || fila >= a_.lineas().size())
        return fallo(QStringLiteral("¡Atención!"), QStringLiteral("Seleccione la línea que desea quitar."));
    if (!antesDeCambiar()) return false;
    if (!e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("¡Atención!"),
                                QStringLiteral("¿Desea realmente eliminar la línea '") +
                                    a_.lineas().at(fila).concepto + QStringLiteral("' de este Albarán?")))
        return false;
    a_.quitarLinea(fila);
    modificado_ = true;
    notificar();
    return true;
}

bool AlbaranForm::anadirArticuloPorDefecto(qint64 codigo) {
    const auto l = lineaDe(codigo, QStringLiteral("incluir el artículo por defecto"), [&] {
        e_.dialogs().error(
            QStringLiteral("Error al intentar acceder al Artículo ") + QString::number(codigo),
            QStringLiteral("Ha sido imposible incluir el artículo por defecto en el albarán. Este "
                           "error puede deberse a ") +
                QStringLiteral("que el artículo haya sido eliminado."));
    });
    if (!l) return false;
    a_.anadirLinea(*l);
    modificado_ = true;
    return true;
}

// --- record commands ---

bool AlbaranForm::preguntarGuardar(const QString& titulo) {
    if (!modificado_) return true;
    if (!editable() && !a_.esNuevo()) return true; // nothing of it can be saved
    if (!comprobarSinCambiosAjenos(QStringLiteral("No se pueden guardar los cambios"))) {
        modificado_ = false;
        return true;
    }
    if (!e_.dialogs().preguntar(Icono::Pregunta, titulo, kPreguntaGuardarCambios)) {
        modificado_ = false;
        return true;
    }
    return guardar();
}

bool AlbaranForm::nuevo() {
    if (!preguntarGuardar(QStringLiteral("Confirmación para cerrar la ventana"))) return false;
    bloqueo_.liberar();
    e_.editores.soltar(this);
    limpiar();
    notificar();
    return true;
}

bool AlbaranForm::buscar() {
    if (!preguntarGuardar(QStringLiteral("Confirmación para abrir la ventana de búsqueda"))) return false;
    bloqueo_.liberar();
    if (!e_.buscadores.albaran) return false;
    const auto id = e_.buscadores.albaran();
    if (id && cargar(*id)) return true;
    // Nothing chosen, or the note chosen is open in another window (now in front): the screen
    // keeps the note it showed, now without changes.
    if (!a_.esNuevo()) return cargar(*a_.IdAlbaran) && !id;
    limpiar();
    notificar();
    return false;
}

bool AlbaranForm::cargar(qint64 idAlbaran) {
    std::optional<Albaran> leido;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar un Albarán") + kEnPantallaAlbaranes);
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Leer el Albarán"));
            leido = store_.cargar(idAlbaran);
        }))
        return false;
    if (!leido) {
        // The number is known only of the note this screen showed.
        errorDeLectura(a_.IdAlbaran == idAlbaran ? numeroNota() : QString());
        return false;
    }
    return ponerLeido(*leido);
}

bool AlbaranForm::cargar(const QString& serie, qint64 numAlbaran) {
    std::optional<Albaran> leido;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar un Albarán") + kEnPantallaAlbaranes);
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Buscar el Albarán por serie y número"));
            if (const auto id = store_.buscarPorNumero(serie, numAlbaran)) {
                traza.paso(QStringLiteral("Leer el Albarán"));
                leido = store_.cargar(*id);
            }
        }))
        return false;
    if (!leido) {
        errorDeLectura(serie + QLatin1Char('/') + QString::number(numAlbaran));
        return false;
    }
    return ponerLeido(*leido);
}

bool AlbaranForm::ponerLeido(const Albaran& leido) {
    // One editor per note on this workstation: another window with it comes forward instead.
    if (!e_.editores.ocupar(kTablaAlbaranes, *leido.IdAlbaran, this, traerAlFrente)) return false;
    bloqueo_.liberar();
    limpiar();
    a_ = leido;
    if (a_.idCliente) cargarCliente(*a_.idCliente);
    cargarMascota(a_.idMascota);
    vendedores_ = store_.vendedores(a_.idVendedor);
    if (!a_.facturado() && !a_.algoCobrado()) soloLectura_ = !tomarBloqueo();
    modificado_ = false;
    notificar();
    avisarAntiguoPropietario();
    return true;
}

void AlbaranForm::avisarAntiguoPropietario() {
    if (mascota_ && a_.idCliente && mascota_->idCliente != *a_.idCliente)
        e_.dialogs().avisar(QStringLiteral("ATENCION"),
                            QStringLiteral("Este albarán puede pertenecer a un antiguo propietario de '") +
                                mascota_->nombre + QLatin1Char('\''));
}

bool AlbaranForm::guardar() {
    if (!cliente_ || !a_.idCliente)
        return fallo(kTituloObligatoriosAlbaran, QStringLiteral("Indique el cliente"));
    if (!a_.fecha.isValid()) return fallo(kTituloObligatoriosAlbaran, QStringLiteral("Indique la fecha"));
    if (a_.serie.trimmed().isEmpty())
        return fallo(kTituloObligatoriosAlbaran, QStringLiteral("Indique la serie de facturación."));
    if (!a_.idVendedor) return fallo(kTituloObligatoriosAlbaran, QStringLiteral("Indique el vendedor"));
    if (a_.lineas().isEmpty())
        return fallo(kTituloObligatoriosAlbaran, QStringLiteral("Debe incluir al menos un artículo"));

    const QString aCobros = QStringLiteral("Se pasará directamente a la ventana de Cobros");
    // Invoiced or collected meanwhile: the changes go and the collection screen opens.
    auto pasarACobros = [&] {
        if (a_.facturado() || a_.algoCobrado()) {
            modificado_ = false;
            bloqueo_.liberar();
            const qint64 id = *a_.IdAlbaran;
            cargar(id);
            if (abrirCobros) abrirCobros(id);
        }
        return false;
    };
    if (!a_.esNuevo()) {
        if (!rechazoPorEstado(QStringLiteral("No se pueden guardar los cambios."))) return false;
        if (!comprobarSinCambiosAjenos(aCobros, kTituloImposibleGuardar)) return pasarACobros();
        if (!tomarBloqueo()) return false;
    }

    if (a_.esNuevo() && !bloqueo_.tomarAlta(descriptorRequerido(kTablaAlbaranes), cliente_->nombre)) return false;
    Albaran copia = a_;
    std::optional<GuardadoAlbaran> guardado;
    bool bloqueoPerdido = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar un Albarán") + kEnPantallaAlbaranes);
    // A new note waits for its series' counter: the whole save is tried again, and the
    // question whether to go on waiting comes with no transaction open.
    auto intento = [&] {
        copia = a_;
        Transaction tx = e_.db().transaccion();
        if (bloqueo_.tomado() && !bloqueo_.vigente()) {
            bloqueoPerdido = true;
            guardado = GuardadoAlbaran{ResultadoAlbaran::Cancelado};
            return;
        }
        traza.paso(copia.esNuevo() ? QStringLiteral("Crear el Albarán con el siguiente número de la serie")
                                   : QStringLiteral("Guardar el Albarán y sus líneas"));
        guardado = store_.guardar(copia);
        if (*guardado) tx.commit();
    };
    traza.ejecutar([&] {
        if (!reintentarNumeracion(e_.dialogs(), QStringLiteral("Albarán"), intento))
            guardado = GuardadoAlbaran{ResultadoAlbaran::Cancelado};
    });
    if (a_.esNuevo()) bloqueo_.liberar();
    if (bloqueoPerdido) {
        e_.dialogs().avisar(QStringLiteral("¡Atención!"), bloqueo_.mensajePerdido());
        bloqueo_.olvidar();
        return false;
    }
    if (!guardado) return false;
    switch (guardado->resultado) {
    case ResultadoAlbaran::Hecho:
        break;
    case ResultadoAlbaran::FacturadoOCobrado: // between the re-reading and the writing
        comprobarSinCambiosAjenos(aCobros, kTituloImposibleGuardar);
        return pasarACobros();
    case ResultadoAlbaran::NoExiste:
        errorDeLectura(numeroNota());
        return false;
    case ResultadoAlbaran::Cancelado:
        return false;
    case ResultadoAlbaran::CambiadoEnOtroPuesto:
        if (e_.dialogs().preguntar(Icono::Exclamacion, QStringLiteral("¡Atención!"), textoRegistroModificado(QStringLiteral("Albarán")))) {
            modificado_ = false;
            cargar(*a_.IdAlbaran);
        }
        return false;
    }
    const bool eraNuevo = a_.esNuevo();
    a_ = copia;
    modificado_ = false;
    if (eraNuevo) {
        e_.editores.ocupar(kTablaAlbaranes, *a_.IdAlbaran, this, traerAlFrente);
        tomarBloqueo();
    }
    CommandTrace deuda(e_.dialogs(), QStringLiteral("leer la deuda del Cliente") + kEnPantallaAlbaranes);
    deuda.ejecutar([&] {
        deuda_ = store_.deuda(*a_.idCliente);
        seriesPendientes_ = store_.seriesPendientes(*a_.idCliente);
    });
    notificar();
    return true;
}

bool AlbaranForm::eliminar() {
    if (a_.esNuevo()) {
        limpiar();
        notificar();
        return true;
    }
    if (a_.facturado() || a_.algoCobrado()) {
        e_.dialogs().informar(QStringLiteral("¡Atención!"),
                              QStringLiteral("Este albarán está facturado o cobrado. No se puede eliminar."));
        return false;
    }
    if (!comprobarSinCambiosAjenos(QStringLiteral("No se puede eliminar"), QStringLiteral("¡Atención!"))) {
        notificar();
        return false;
    }
    if (!e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("¡Atención!"),
                                QStringLiteral("¿Desea realmente eliminar este Albarán?")))
        return false;
    if (!tomarBloqueo()) return false;
    std::optional<ResultadoAlbaran> hecho;
    CommandTrace traza(e_.dialogs(), QStringLiteral("eliminar un Albarán") + kEnPantallaAlbaranes);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Borrar el Albarán y sus líneas"));
        hecho = store_.eliminar(*a_.IdAlbaran, a_.versionFila);
    });
    if (!hecho) return false;
    if (*hecho == ResultadoAlbaran::CambiadoEnOtroPuesto) {
        e_.dialogs().avisar(QStringLiteral("¡Atención!"), QStringLiteral("Otro puesto ha guardado cambios en este Albarán desde que usted "
                                                      "lo abrió. No se ha eliminado."));
        return false;
    }
    if (*hecho == ResultadoAlbaran::FacturadoOCobrado) { // between the re-reading and the deletion
        comprobarSinCambiosAjenos(QStringLiteral("No se puede eliminar"), QStringLiteral("¡Atención!"));
        notificar();
        return false;
    }
    bloqueo_.liberar();
    e_.editores.soltar(this);
    limpiar();
    notificar();
    return true;
}

bool AlbaranForm::cerrar() {
    if (!preguntarGuardar(QStringLiteral("Confirmación para cerrar la ventana"))) return false;
    bloqueo_.liberar();
    e_.editores.soltar(this);
    return true;
}
