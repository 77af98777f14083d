#include "sales/albaran_form.h"

#include "core/command_trace.h"
#include "core/formatos.h"
#include "data/esquema.h"

#include <QLocale>
#include <algorithm>

namespace {
const QString kFacturadoOCobrado =
    QStringLiteral("Este albarán ha sido facturado o cobrado mientras lo tenía abierto en esta pantalla. ");
const QString kAtencion = QStringLiteral("¡Atención!");

const QString kPreguntaRepreciar =
    QStringLiteral("Los precios de los artículos incluidos en este albarán han podido sufrir variaciones "
                   "debido al cambio del Plan de Salud de la mascota. ¿Desea que se recalculen los precios "
                   "de este albarán?");

QString textoPorcentaje(double p) {
    return p == 0 ? QString() : formatoImporte(p);
}
} // namespace

QString textoCifra(double valor) {
    QString s = QString::number(valor, 'f', QLocale::FloatingPointShortest);
    const qsizetype punto = s.indexOf(QLatin1Char('.'));
    if (punto < 0 || s.size() - punto - 1 <= 2) return formatoImporte(valor);
    return s.replace(QLatin1Char('.'), QLatin1Char(','));
}

AlbaranForm::AlbaranForm(Entorno& entorno) : e_(entorno), store_(entorno.db()), bloqueo_(entorno) {
    cargarListas();
    limpiar();
}

AlbaranForm::~AlbaranForm() {
    e_.editores.soltar(this);
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
        for (OpcionVenta& t : tiposIVA_)
            if (const auto p = leerImporte(t.texto.replace(QLatin1Char('.'), QLatin1Char(','))))
                t.texto = formatoImporte(*p) + QStringLiteral(" %");
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
    apertura_ = AperturaAlbaran();
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

bool AlbaranForm::abrir(const AperturaAlbaran& ap) {
    if (ap.IdAlbaran) return cargar(*ap.IdAlbaran);
    if (ap.numAlbaran) return cargar(ap.serie, *ap.numAlbaran);
    e_.editores.soltar(this);
    limpiar();
    apertura_ = ap;
    if (ap.IdVendedor) a_.idVendedor = ap.IdVendedor;
    if (ap.NumVisita) a_.idVisita = ap.NumVisita;
    if (ap.IdCliente) {
        cargarCliente(*ap.IdCliente);
        aplicarApertura();
    }
    if (cliente_ && ap.idMascota) cargarMascota(ap.idMascota);
    if (cliente_ && ap.EntradaDesdeHistorial && ap.IdArticuloHistorial)
        anadirArticuloPorDefecto(*ap.IdArticuloHistorial);
    notificar();
    return true;
}

// What the caller knows of its client stands over the client's record.
void AlbaranForm::aplicarApertura() {
    const AperturaAlbaran& ap = apertura_;
    if (!cliente_ || ap.IdCliente != cliente_->id) return;
    if (!ap.Cliente.isEmpty()) cliente_->nombre = ap.Cliente;
    if (!ap.TarifaCliente.isEmpty()) cliente_->tarifa = ap.TarifaCliente;
    if (ap.DtoGralCliente) cliente_->dtoGeneral = *ap.DtoGralCliente;
    if (ap.IVAaAplicarCliente) {
        // A percentage that is no VAT type leaves the type empty: pricing refuses every line.
        cliente_->porcentajeIVA = *ap.IVAaAplicarCliente;
        cliente_->idTipoIVA.reset();
        CommandTrace traza(e_.dialogs(), QStringLiteral("cargar el Cliente") + kEnPantallaAlbaranes);
        traza.ejecutar([&] {
            traza.paso(QStringLiteral("Buscar el tipo de I.V.A. del Cliente"));
            cliente_->idTipoIVA = store_.tipoIVADePorcentaje(*ap.IVAaAplicarCliente);
        });
    }
    if (ap.ExentoIVA) {
        cliente_->exento = *ap.ExentoIVA;
        if (a_.esNuevo()) a_.setExento(*ap.ExentoIVA);
    }
    if (!ap.LOPDCliente.isEmpty()) cliente_->lopd = ap.LOPDCliente;
}

bool AlbaranForm::editable() const {
    return !soloLectura_ && !a_.facturado() && !a_.algoCobrado();
}

QString AlbaranForm::titulo() const {
    if (a_.esNuevo()) return kPantallaAlbaranes + QStringLiteral(" - (Nuevo Albarán)");
    return kPantallaAlbaranes + QStringLiteral(" - ") + a_.serie + QLatin1Char('/') +
           QString::number(a_.numAlbaran.value_or(0));
}

QString AlbaranForm::numeroNota() const {
    if (a_.esNuevo()) return {};
    return a_.serie + QLatin1Char('/') + QString::number(a_.numAlbaran.value_or(0));
}

QString AlbaranForm::textoEstado() const {
    if (a_.facturado())
        return QStringLiteral("Facturado: ") + a_.serieFactura + QLatin1Char('-') +
               QString::number(*a_.numFactura);
    if (a_.algoCobrado()) return QStringLiteral("Cobrado");
    if (!a_.esNuevo()) return QStringLiteral("Pendiente");
    return {};
}

QString AlbaranForm::textoPagos() const {
    return a_.facturado() ? QStringLiteral("Pa&gos Factura") : QStringLiteral("Pa&gos Albarán");
}

QString AlbaranForm::textoVariasFacturas() const {
    return variasFacturas() ? QStringLiteral("Varias facturas") : QString();
}

QList<OpcionVenta> AlbaranForm::mascotasCliente() const {
    QList<OpcionVenta> r = mascotas_;
    if (mascota_ &&
        std::none_of(r.cbegin(), r.cend(), [&](const OpcionVenta& m) { return m.id == mascota_->id; }))
        r << OpcionVenta{mascota_->id, mascota_->nombre}; // a pet of a former owner
    return r;
}

QStringList AlbaranForm::series() const {
    QStringList r = series_;
    if (!r.contains(a_.serie)) r.prepend(a_.serie);
    return r;
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
    return celdasLinea(a_.lineas().at(fila));
}

QStringList celdasLinea(const LineaAlbaran& l) {
    return {l.concepto,
            textoCifra(l.cantidad),
            textoCifra(l.pvp),
            textoCifra(l.descuento),
            formatoImporte(l.iva),
            formatoImporte(l.importes.total)};
}

bool AlbaranForm::fallo(const QString& titulo, const QString& texto) {
    e_.dialogs().informar(titulo, texto);
    return false;
}

// --- re-reading the note ---

std::optional<SituacionAlbaran> AlbaranForm::releer() {
    std::optional<SituacionAlbaran> estado;
    CommandTrace traza(e_.dialogs(),
                       QStringLiteral("comprobar el estado del Albarán") + kEnPantallaAlbaranes);
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Leer de nuevo el Albarán"));
            estado = store_.estado(*a_.IdAlbaran);
        }))
        return std::nullopt;
    if (!estado) errorDeLectura(numeroNota());
    return estado;
}

void AlbaranForm::errorDeLectura(const QString& numero) {
    e_.dialogs().error(QStringLiteral("Error al intentar acceder al Albarán") +
                           (numero.isEmpty() ? QString() : QStringLiteral(" número ") + numero),
                       QStringLiteral("Ha sido imposible recuperar la información solicitada. Este error "
                                      "puede deberse a ") +
                           QStringLiteral("que el Albarán haya sido eliminado."));
}

// For a note that was pending when it was opened here.
bool AlbaranForm::comprobarSinCambiosAjenos(const QString& mensaje, const QString& titulo) {
    if (a_.esNuevo()) return true;
    const auto estado = releer();
    if (!estado) return false;
    if (!estado->facturadoOCobrado()) return true;
    a_.numFactura = estado->numFactura;
    a_.serieFactura = estado->serieFactura;
    a_.cobrado = estado->cobrado;
    a_.pendiente = estado->pendiente;
    a_.totalGuardado = estado->total;
    e_.dialogs().avisar(titulo.isEmpty() ? kAtencion : titulo, kFacturadoOCobrado + mensaje);
    return false;
}

// A note invoiced or collected when it was opened here is refused as such.
bool AlbaranForm::rechazoPorEstado(const QString& accion) {
    if (a_.facturado()) return fallo(kAtencion, QStringLiteral("Este albarán está facturado. ") + accion);
    if (a_.algoCobrado()) return fallo(kAtencion, QStringLiteral("Este albarán está cobrado. ") + accion);
    return true;
}

bool AlbaranForm::antesDeCambiar() {
    if (!rechazoPorEstado(QStringLiteral("No se puede modificar."))) return false;
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
    const QString descripcion = QStringLiteral("Albarán ") + numeroNota();
    return bloqueo_.tomar(descriptorRequerido(kTablaAlbaranes), clave, descripcion,
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
        // Loaded whatever the date: whether the plan prices depends on the note's date.
        if (mascota_ && mascota_->idPlanSalud) {
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
    const std::optional<qint64> antes = planVigente();
    cargarMascota(idMascota);
    modificado_ = true;
    preguntarRepreciar(antes);
    notificar();
    return true;
}

void AlbaranForm::RecuperarFichaComercial() {
    if (!a_.idCliente) return;
    const std::optional<qint64> mascota = a_.idMascota;
    cargarCliente(*a_.idCliente);
    aplicarApertura();
    if (mascota) cargarMascota(mascota);
    notificar();
}

void AlbaranForm::RecuperarPlanSalud() {
    const std::optional<qint64> antes = planVigente();
    cargarMascota(a_.idMascota);
    if (editable()) preguntarRepreciar(antes);
    notificar();
}

std::optional<qint64> AlbaranForm::planVigente() const {
    return planEnVigor() ? mascota_->idPlanSalud : std::nullopt;
}

// The plan that prices the note changed (another pet, another plan, another date): with lines
// on the note the user is asked whether to price them again.
void AlbaranForm::preguntarRepreciar(std::optional<qint64> planAntes) {
    if (planAntes == planVigente() || a_.lineas().isEmpty()) return;
    if (e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("ATENCION"), kPreguntaRepreciar))
        repreciarLineas();
}

ContextoPrecios AlbaranForm::contexto() const {
    return contextoVenta(cliente_, condicionesCliente_, mascota_, condicionesPlan_, a_.fecha);
}

// Every line priced again as if its article were put on the note now; quantity and concept
// stay. A line whose price is refused keeps the one it had (the reason is shown).
void AlbaranForm::repreciarLineas() {
    QList<LineaAlbaran> lineas = a_.lineas();
    for (LineaAlbaran& l : lineas) {
        if (!l.idArticulo) continue;
        auto nueva = lineaDe(*l.idArticulo, QStringLiteral("recalcular los precios"));
        if (!nueva) continue;
        nueva->cantidad = l.cantidad;
        nueva->concepto = l.concepto;
        l = *nueva;
    }
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
    const std::optional<qint64> antes = planVigente();
    a_.fecha = *f;
    modificado_ = true;
    preguntarRepreciar(antes);
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
