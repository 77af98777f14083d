#include "sales/albaran_form.h"

#include "core/command_trace.h"
#include "core/formatos.h"
#include "data/esquema.h"

namespace {
const QString kFacturadoOCobrado =
    QStringLiteral("Este albarán ha sido facturado o cobrado mientras lo tenía abierto en esta pantalla. ");
const QString kAtencion = QStringLiteral("¡Atención!");

QString textoPorcentaje(double p) {
    return p == 0 ? QString() : formatoImporte(p);
}
} // namespace

AlbaranForm::AlbaranForm(Entorno& entorno) : e_(entorno), store_(entorno.db()), bloqueo_(entorno) {
    cargarListas();
    limpiar();
}

void AlbaranForm::cargarListas() {
    CommandTrace traza(e_.dialogs(), QStringLiteral("preparar las listas") + kEnPantallaAlbaranes);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer la configuración del puesto"));
        conf_ = ConfPuestoStore(e_.db()).cargar(e_.puesto);
        traza.paso(QStringLiteral("Leer las series, los vendedores y los tipos de I.V.A."));
        series_ = store_.seriesVenta();
        vendedores_ = store_.vendedores(a_.idVendedor);
        tiposIVA_ = store_.tiposIVA();
    });
}

void AlbaranForm::limpiar() {
    a_ = Albaran();
    a_.fecha = e_.reloj().hoy();
    a_.hora = QTime(e_.reloj().ahora().time().hour(), e_.reloj().ahora().time().minute());
    a_.serie = conf_.SerieVenta;
    cliente_.reset();
    mascota_.reset();
    mascotas_.clear();
    condicionesCliente_.clear();
    condicionesPlan_.clear();
    deuda_ = 0;
    seriesPendientes_.clear();
    ivaCliente_.reset();
    soloLectura_ = false;
    modificado_ = false;
    marcar();
}

void AlbaranForm::marcar() {
    fecha_ = formatoFecha(a_.fecha);
    hora_ = a_.hora.isValid() ? formatoHora(a_.hora) : QString();
    retencionTexto_ = textoPorcentaje(a_.retencion());
}

void AlbaranForm::notificar() {
    marcar();
    if (cambiado) cambiado();
}

void AlbaranForm::abrir(const AperturaAlbaran& ap) {
    if (ap.numAlbaran) {
        cargar(*ap.numAlbaran);
        return;
    }
    limpiar();
    if (ap.IdVendedor) a_.idVendedor = ap.IdVendedor;
    if (ap.NumVisita) a_.idVisita = ap.NumVisita;
    if (ap.IdCliente) {
        cargarCliente(*ap.IdCliente);
        if (cliente_) {
            // What the caller knows of the client stands over the record.
            if (!ap.Cliente.isEmpty()) cliente_->nombre = ap.Cliente;
            if (!ap.TarifaCliente.isEmpty()) cliente_->tarifa = ap.TarifaCliente;
            if (ap.DtoGralCliente) cliente_->dtoGeneral = *ap.DtoGralCliente;
            if (ap.IVAaAplicarCliente && ap.IVAaAplicarCliente != cliente_->idTipoIVA) {
                cliente_->idTipoIVA = ap.IVAaAplicarCliente;
                cliente_->porcentajeIVA = store_.porcentajeIVA(*ap.IVAaAplicarCliente).value_or(0);
            }
            if (ap.ExentoIVA) {
                cliente_->exento = *ap.ExentoIVA;
                a_.setExento(*ap.ExentoIVA);
            }
            if (!ap.LOPDCliente.isEmpty()) cliente_->lopd = ap.LOPDCliente;
        }
    }
    if (cliente_ && ap.idMascota) cargarMascota(ap.idMascota);
    if (cliente_ && ap.EntradaDesdeHistorial && ap.IdArticuloHistorial)
        anadirArticuloPorDefecto(*ap.IdArticuloHistorial);
    notificar();
}

bool AlbaranForm::editable() const {
    return !soloLectura_ && !a_.facturado() && !a_.algoCobrado();
}

QString AlbaranForm::titulo() const {
    if (a_.esNuevo()) return kPantallaAlbaranes + QStringLiteral(" - (Nuevo Albarán)");
    return kPantallaAlbaranes + QStringLiteral(" - ") + a_.serie + QLatin1Char('/') +
           QString::number(a_.numAlbaran.value_or(0));
}

QString AlbaranForm::textoDeuda() const {
    if (!cliente_) return {};
    return QStringLiteral("Deuda Actual: ") + formatoImporte(deuda_) + QStringLiteral(" €");
}

bool AlbaranForm::planEnVigor() const {
    return mascota_ && mascota_->planEnVigor(a_.fecha);
}

MarcaPlan AlbaranForm::marcaPlan() const {
    if (!mascota_ || !mascota_->idPlanSalud) return MarcaPlan::Ninguna;
    return planEnVigor() ? MarcaPlan::Activo : MarcaPlan::Caducado;
}

QString AlbaranForm::textoPlan() const {
    switch (marcaPlan()) {
    case MarcaPlan::Activo:
        return QStringLiteral("Plan de Salud: ") + mascota_->plan;
    case MarcaPlan::Caducado:
        return QStringLiteral("Plan de Salud caducado: ") + mascota_->plan;
    case MarcaPlan::Ninguna:
        break;
    }
    return {};
}

QString AlbaranForm::textoTotal(const QString& cual) const {
    const TotalesDocumento& t = a_.totales();
    if (cual == QStringLiteral("bruto")) return formatoImporte(t.bruto());
    if (cual == QStringLiteral("base")) return formatoImporte(t.baseImponible());
    if (cual == QStringLiteral("iva")) return formatoImporte(t.iva());
    if (cual == QStringLiteral("retencion")) return formatoImporte(-t.retencion());
    if (cual == QStringLiteral("total")) return formatoImporte(t.total());
    if (cual == QStringLiteral("pendiente")) return formatoImporte(a_.esNuevo() ? t.total() : a_.pendiente);
    return {};
}

QStringList AlbaranForm::columnas() {
    return {QStringLiteral("Artículo"), QStringLiteral("Cantidad"), QStringLiteral("Precio"),
            QStringLiteral("%Dto."),    QStringLiteral("IVA"),      QStringLiteral("Total línea")};
}

QStringList AlbaranForm::celdas(int fila) const {
    const LineaAlbaran& l = a_.lineas().at(fila);
    return {l.concepto,
            formatoImporte(l.cantidad),
            formatoImporte(l.pvp),
            formatoImporte(l.descuento),
            formatoImporte(l.iva),
            formatoImporte(l.importes.total)};
}

bool AlbaranForm::fallo(const QString& titulo, const QString& texto) {
    e_.dialogs().informar(titulo, texto);
    return false;
}

// --- re-reading the note ---

bool AlbaranForm::comprobarSinCambiosAjenos(const QString& mensaje, const QString& titulo) {
    if (a_.esNuevo()) return true;
    std::optional<SituacionAlbaran> estado;
    CommandTrace traza(e_.dialogs(),
                       QStringLiteral("comprobar el estado del Albarán") + kEnPantallaAlbaranes);
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Leer de nuevo el Albarán"));
            estado = store_.estado(*a_.IdAlbaran);
        }))
        return false;
    if (!estado) {
        e_.dialogs().error(QStringLiteral("Error al intentar acceder al Albarán número ") +
                               QString::number(a_.numAlbaran.value_or(0)),
                           QStringLiteral("Ha sido imposible recuperar la información solicitada. Este error "
                                          "puede deberse a ") +
                               QStringLiteral("que el Albarán haya sido eliminado."));
        return false;
    }
    if (!estado->facturadoOCobrado()) return true;
    a_.numFactura = estado->numFactura;
    a_.serieFactura = estado->serieFactura;
    a_.cobrado = estado->cobrado;
    a_.pendiente = estado->pendiente;
    a_.totalGuardado = estado->total;
    e_.dialogs().avisar(titulo.isEmpty() ? kAtencion : titulo, kFacturadoOCobrado + mensaje);
    return false;
}

bool AlbaranForm::antesDeCambiar() {
    if (a_.facturado()) {
        e_.dialogs().informar(kAtencion,
                              QStringLiteral("Este albarán está facturado. No se puede modificar."));
        return false;
    }
    if (a_.algoCobrado()) {
        e_.dialogs().informar(kAtencion, QStringLiteral("Este albarán está cobrado. No se puede modificar."));
        return false;
    }
    if (soloLectura_) {
        e_.dialogs().informar(kAtencion, QStringLiteral("Este albarán está siendo modificado en otro puesto. "
                                                        "No se puede modificar."));
        return false;
    }
    if (!comprobarSinCambiosAjenos(QStringLiteral("No se puede modificar"))) {
        notificar();
        return false;
    }
    return tomarBloqueo();
}

bool AlbaranForm::tomarBloqueo() {
    if (a_.esNuevo()) return true;
    if (bloqueo_.tomado()) return true;
    const QString clave = QString::number(*a_.IdAlbaran);
    const QString descripcion =
        QStringLiteral("Albarán ") + a_.serie + QLatin1Char('/') + QString::number(a_.numAlbaran.value_or(0));
    return bloqueo_.tomar(descriptorRequerido(QStringLiteral("Albaranes")), clave, descripcion,
                          AccionBloqueo::Modificacion);
}

// --- client and pet ---

bool AlbaranForm::requiereCliente(bool buscando) {
    if (cliente_) return true;
    return fallo(kTituloSinCliente,
                 buscando
                     ? QStringLiteral("Seleccione un Cliente antes de buscar los artículos que compondrán el "
                                      "Albarán")
                     : QStringLiteral("Seleccione un Cliente antes de añadir los artículos que compondrán el "
                                      "Albarán."));
}

void AlbaranForm::cargarCliente(qint64 idCliente) {
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar el Cliente") + kEnPantallaAlbaranes);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer el Cliente"));
        cliente_ = store_.cliente(idCliente);
        if (!cliente_) return;
        traza.paso(QStringLiteral("Leer la Ficha Comercial"));
        condicionesCliente_ = store_.condicionesCliente(idCliente);
        traza.paso(QStringLiteral("Leer la deuda"));
        deuda_ = store_.deuda(idCliente);
        seriesPendientes_ = store_.seriesPendientes(idCliente);
        mascotas_ = store_.mascotasDe(idCliente);
    });
    if (!cliente_) {
        e_.dialogs().error(QStringLiteral("Error al intentar acceder al Cliente ") +
                               QString::number(idCliente),
                           QStringLiteral("Ha sido imposible recuperar la información solicitada. Este error "
                                          "puede deberse a que el Cliente haya sido eliminado."));
        condicionesCliente_.clear();
        mascotas_.clear();
        deuda_ = 0;
        seriesPendientes_.clear();
        return;
    }
    a_.idCliente = idCliente;
    if (a_.esNuevo()) a_.setExento(cliente_->exento);
}

void AlbaranForm::cargarMascota(std::optional<qint64> idMascota) {
    mascota_.reset();
    condicionesPlan_.clear();
    a_.idMascota = idMascota;
    if (!idMascota) return;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar la Mascota") + kEnPantallaAlbaranes);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer la Mascota"));
        mascota_ = store_.mascota(*idMascota);
        if (mascota_ && planEnVigor()) {
            traza.paso(QStringLiteral("Leer el Plan de Salud"));
            condicionesPlan_ = store_.condicionesPlan(*mascota_->idPlanSalud);
        }
    });
}

bool AlbaranForm::elegirCliente() {
    if (!e_.buscadores.cliente) return false;
    if (!a_.esNuevo() && !antesDeCambiar()) return false;
    const auto elegido = e_.buscadores.cliente(PeticionCliente{});
    if (!elegido || elegido->NuevoCliente || elegido->claveCliente == 0) return false;
    if (!ponerCliente(elegido->claveCliente)) return false;
    if (elegido->claveMascota) ponerMascota(elegido->claveMascota);
    return true;
}

bool AlbaranForm::ponerCliente(qint64 idCliente) {
    if (a_.idCliente == idCliente && cliente_) return true;
    if (!a_.esNuevo() && !antesDeCambiar()) return false;
    const bool conLineas = !a_.lineas().isEmpty();
    const std::optional<qint64> anterior = a_.idCliente;
    cargarCliente(idCliente);
    if (!cliente_) {
        if (anterior) cargarCliente(*anterior);
        notificar();
        return false;
    }
    cargarMascota(std::nullopt);
    modificado_ = true;
    if (conLineas)
        e_.dialogs().avisar(QStringLiteral("¡Atención"),
                            QStringLiteral(" Al cambiar de Cliente teniendo Artículos en el Albarán, no se "
                                           "recalculan los Precios Especiales."));
    else if (a_.esNuevo() && conf_.IdArticulo)
        anadirArticuloPorDefecto(*conf_.IdArticulo);
    notificar();
    return true;
}

bool AlbaranForm::ponerMascota(std::optional<qint64> idMascota) {
    if (a_.idMascota == idMascota) return true;
    if (!requiereCliente(false)) return false;
    if (!a_.esNuevo() && !antesDeCambiar()) return false;
    std::optional<qint64> planAntes, planAhora;
    if (planEnVigor()) planAntes = mascota_->idPlanSalud;
    cargarMascota(idMascota);
    modificado_ = true;
    if (planEnVigor()) planAhora = mascota_->idPlanSalud;
    if (planAntes != planAhora && !a_.lineas().isEmpty() &&
        e_.dialogs().preguntar(
            Icono::Pregunta, QStringLiteral("ATENCION"),
            QStringLiteral("Los precios de los artículos incluidos en este albarán han podido "
                           "sufrir variaciones debido al cambio del Plan de Salud de la "
                           "mascota. ¿Desea que se recalculen los precios de este albarán?")))
        repreciarLineas();
    notificar();
    return true;
}

void AlbaranForm::RecuperarFichaComercial() {
    if (!a_.idCliente) return;
    const std::optional<qint64> mascota = a_.idMascota;
    cargarCliente(*a_.idCliente);
    if (mascota) cargarMascota(mascota);
    notificar();
}

void AlbaranForm::RecuperarPlanSalud() {
    cargarMascota(a_.idMascota);
    notificar();
}

ContextoPrecios AlbaranForm::contexto() const {
    ContextoPrecios c;
    if (cliente_) {
        c.tarifa = cliente_->tarifa;
        c.dtoGeneral = cliente_->dtoGeneral;
        c.idTipoIVACliente = cliente_->idTipoIVA;
        c.porcentajeIVACliente = cliente_->porcentajeIVA;
    }
    c.condicionesCliente = condicionesCliente_;
    if (planEnVigor()) c.condicionesPlan = condicionesPlan_;
    return c;
}

void AlbaranForm::repreciarLineas() {
    const ContextoPrecios ctx = contexto();
    QList<LineaAlbaran> lineas = a_.lineas();
    CommandTrace traza(e_.dialogs(), QStringLiteral("recalcular los precios") + kEnPantallaAlbaranes);
    traza.ejecutar([&] {
        for (LineaAlbaran& l : lineas) {
            if (!l.idArticulo) continue;
            traza.paso(QStringLiteral("Leer el Artículo ") + QString::number(*l.idArticulo));
            const auto articulo = store_.articulo(*l.idArticulo);
            if (!articulo) continue;
            const PrecioElegido p = elegirPrecio(*articulo, ctx);
            l.pvp = p.pvp;
            l.descuento = p.descuento;
        }
    });
    a_.ponerLineas(lineas);
    modificado_ = true;
}

// --- header fields ---

bool AlbaranForm::setFecha(const QString& texto) {
    const auto f = leerFecha(texto);
    if (!f) {
        e_.dialogs().avisar(QStringLiteral("Error en fecha"),
                            QStringLiteral("La fecha introducida no es válida."));
        notificar();
        return false;
    }
    if (*f == a_.fecha) return true;
    if (!a_.esNuevo() && !antesDeCambiar()) return false;
    a_.fecha = *f;
    modificado_ = true;
    notificar();
    return true;
}

bool AlbaranForm::setHora(const QString& texto) {
    const auto h = leerHora(texto);
    if (!h) {
        e_.dialogs().avisar(QStringLiteral("Error en hora"),
                            QStringLiteral("La hora introducida no es válida."));
        notificar();
        return false;
    }
    if (*h == a_.hora) return true;
    if (!a_.esNuevo() && !antesDeCambiar()) return false;
    a_.hora = *h;
    modificado_ = true;
    notificar();
    return true;
}

bool AlbaranForm::setSerie(const QString& serie) {
    if (serie == a_.serie) return true;
    if (!a_.esNuevo()) {
        // The number belongs to the series: a saved note keeps both.
        e_.dialogs().informar(kAtencion,
                              QStringLiteral("No se puede cambiar la serie de un albarán ya guardado."));
        notificar();
        return false;
    }
    a_.serie = serie;
    modificado_ = true;
    notificar();
    return true;
}

bool AlbaranForm::setVendedor(std::optional<qint64> idVendedor) {
    if (idVendedor == a_.idVendedor) return true;
    if (!a_.esNuevo() && !antesDeCambiar()) return false;
    a_.idVendedor = idVendedor;
    modificado_ = true;
    notificar();
    return true;
}

bool AlbaranForm::setRetencion(const QString& texto) {
    double r = 0;
    if (!texto.trimmed().isEmpty()) {
        const auto v = leerImporte(texto);
        if (!v || *v < 0 || *v >= 100) {
            e_.dialogs().avisar(
                QStringLiteral("Información introducida errónea"),
                QStringLiteral("El porcentaje de retención debe ser un número entre 0 y 100."));
            notificar();
            return false;
        }
        r = *v;
    }
    if (r == a_.retencion()) {
        notificar();
        return true;
    }
    if (!a_.esNuevo() && !antesDeCambiar()) return false;
    a_.setRetencion(r);
    modificado_ = true;
    notificar();
    return true;
}

bool AlbaranForm::setExento(bool exento) {
    if (exento == a_.exento()) return true;
    if (!a_.esNuevo() && !antesDeCambiar()) {
        notificar();
        return false;
    }
    a_.setExento(exento);
    modificado_ = true;
    notificar();
    return true;
}
