#include "sales/presupuesto_form.h"

#include "app/conf_puesto_form.h"
#include "app/guardado_registro.h"
#include "app/numeracion.h"
#include "clients/aviso_lopd.h"
#include "data/esquema.h"
#include "core/command_trace.h"
#include "core/formatos.h"
#include "sales/albaran_documento.h"

namespace {
const QString kEn = QStringLiteral(" en los '") + kTituloPresupuestos + QLatin1Char('\'');
const QString kAtencion = QStringLiteral("¡Atención!");
} // namespace

PresupuestoForm::PresupuestoForm(Entorno& entorno) : e_(entorno), ventas_(entorno.db()), bloqueo_(entorno) {
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer los vendedores") + kEn);
    traza.ejecutar([&] { vendedores_ = ventas_.vendedores(); });
    limpiar();
}

PresupuestoForm::~PresupuestoForm() {
    e_.editores.soltar(this);
}

void PresupuestoForm::limpiar() {
    bloqueo_.liberar();
    e_.editores.soltar(this);
    p_ = Presupuesto();
    const QDateTime ahora = e_.reloj().ahora();
    p_.documento.fecha = ahora.date();
    p_.documento.hora = QTime(ahora.time().hour(), ahora.time().minute());
    cliente_.reset();
    mascota_.reset();
    condicionesCliente_.clear();
    condicionesPlan_.clear();
    mascotas_.clear();
    serieAlbaran_.clear();
    modificado_ = false;
}

QString PresupuestoForm::titulo() const {
    if (p_.esNuevo()) return kTituloPresupuestos + QStringLiteral(" - (Nuevo Presupuesto)");
    return kTituloPresupuestos + QStringLiteral(" - nº ") + QString::number(p_.numero.value_or(0));
}

QString PresupuestoForm::textoEstado() const {
    if (p_.esNuevo()) return {};
    if (p_.estado == kPresupuestoAceptado)
        return QStringLiteral("Aceptado") +
               (serieAlbaran_.isEmpty() ? QString() : QStringLiteral(" (albarán ") + serieAlbaran_ + QLatin1Char(')'));
    return p_.estado == kPresupuestoRechazado ? QStringLiteral("Rechazado") : QStringLiteral("Pendiente");
}

QString PresupuestoForm::textoTotal() const {
    return formatoImporte(p_.documento.totales().total());
}

QString PresupuestoForm::fecha() const {
    return formatoFecha(p_.documento.fecha);
}

bool PresupuestoForm::fallo(const QString& texto) {
    e_.dialogs().mostrar(Icono::Informacion, kTituloObligatoriosAlbaran, texto);
    return false;
}

bool PresupuestoForm::antesDeCambiar() {
    if (p_.esNuevo() || bloqueo_.tomado()) return true;
    const QString nombre = cliente_ ? cliente_->nombre : QString();
    return bloqueo_.tomar(descriptorRequerido(kTablaPresupuestos), QString::number(*p_.IdPresupuesto),
                          QStringLiteral("Presupuesto nº ") + QString::number(p_.numero.value_or(0)) +
                              QStringLiteral(" de ") + nombre,
                          AccionBloqueo::Modificacion);
}

std::optional<qint64> PresupuestoForm::planVigente() const {
    return mascota_ && mascota_->planEnVigor(p_.documento.fecha) ? mascota_->idPlanSalud : std::nullopt;
}

void PresupuestoForm::preguntarRepreciar(std::optional<qint64> planAntes) {
    if (planAntes == planVigente() || p_.documento.lineas().isEmpty()) return;
    if (!e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("ATENCION"),
                                QStringLiteral("Los precios de los artículos incluidos en este presupuesto han podido "
                                               "sufrir variaciones debido al cambio del Plan de Salud de la mascota. "
                                               "¿Desea que se recalculen los precios de este presupuesto?")))
        return;
    const ContextoPrecios ctx =
        contextoVenta(cliente_, condicionesCliente_, mascota_, condicionesPlan_, p_.documento.fecha);
    QList<LineaAlbaran> lineas = p_.documento.lineas();
    CommandTrace traza(e_.dialogs(), QStringLiteral("recalcular los precios") + kEn);
    traza.ejecutar([&] {
        for (LineaAlbaran& l : lineas) {
            if (!l.idArticulo) continue;
            const auto art = ventas_.articulo(*l.idArticulo);
            if (!art) continue;
            const PrecioElegido precio = elegirPrecio(*art, ctx);
            if (!precio.valido()) continue;
            LineaAlbaran nueva = lineaDeArticulo(*art, precio, l.cantidad);
            nueva.concepto = l.concepto;
            l = nueva;
        }
    });
    p_.documento.ponerLineas(lineas);
}

bool PresupuestoForm::noEditable() {
    if (editable()) return !antesDeCambiar();
    e_.dialogs().avisar(kAtencion, QStringLiteral("Este presupuesto ya está ") +
                                       (p_.estado == kPresupuestoAceptado ? QStringLiteral("aceptado")
                                                                          : QStringLiteral("rechazado")) +
                                       QStringLiteral(" y no se puede modificar."));
    return true;
}

void PresupuestoForm::cargarCliente(qint64 idCliente) {
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar el Cliente") + kEn);
    traza.ejecutar([&] {
        cliente_ = ventas_.cliente(idCliente);
        if (!cliente_) return;
        condicionesCliente_ = ventas_.condicionesCliente(idCliente);
        mascotas_ = ventas_.mascotasDe(idCliente);
    });
    if (!cliente_) {
        e_.dialogs().error(QStringLiteral("Error al intentar acceder al Cliente ") + QString::number(idCliente),
                           QStringLiteral("Ha sido imposible recuperar la información solicitada. Este error puede "
                                          "deberse a que el Cliente haya sido eliminado."));
        condicionesCliente_.clear();
        mascotas_.clear();
        return;
    }
    p_.documento.idCliente = idCliente;
    if (p_.esNuevo()) p_.documento.setExento(cliente_->exento);
}

void PresupuestoForm::cargarMascota(std::optional<qint64> idMascota) {
    mascota_.reset();
    condicionesPlan_.clear();
    p_.documento.idMascota = idMascota;
    if (!idMascota) return;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar la Mascota") + kEn);
    traza.ejecutar([&] {
        mascota_ = ventas_.mascota(*idMascota);
        if (mascota_ && mascota_->idPlanSalud) condicionesPlan_ = ventas_.condicionesPlan(*mascota_->idPlanSalud);
    });
}

bool PresupuestoForm::abrir(const AperturaPresupuesto& ap) {
    if (ap.IdPresupuesto) return cargar(*ap.IdPresupuesto);
    limpiar();
    p_.documento.idVisita = ap.NumVisita;
    p_.documento.idVendedor = ap.IdVendedor;
    if (ap.IdCliente) {
        cargarCliente(*ap.IdCliente);
        if (!cliente_) return false;
        cargarMascota(ap.idMascota);
    }
    return true;
}

bool PresupuestoForm::cargar(qint64 id) {
    std::optional<Presupuesto> leido;
    QString nota;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar un Presupuesto") + kEn);
    if (!traza.ejecutar([&] {
            leido = PresupuestoStore(e_.db()).cargar(id);
            if (leido && leido->idAlbaran)
                if (const auto a = ventas_.cargar(*leido->idAlbaran))
                    nota = a->serie + QLatin1Char('/') + QString::number(a->numAlbaran.value_or(0));
        }))
        return false;
    if (!leido) {
        e_.dialogs().error(QStringLiteral("Error al intentar acceder al Presupuesto ") + QString::number(id),
                           QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede que el "
                                          "Presupuesto haya sido eliminado."));
        return false;
    }
    if (!(p_.IdPresupuesto == id) && !e_.editores.ocupar(kTablaPresupuestos, id, this, traerAlFrente)) return false;
    bloqueo_.liberar();
    p_ = *leido;
    serieAlbaran_ = nota;
    if (p_.documento.idCliente) cargarCliente(*p_.documento.idCliente);
    cargarMascota(p_.documento.idMascota);
    modificado_ = false;
    return true;
}

bool PresupuestoForm::elegirCliente() {
    if (noEditable() || !e_.buscadores.cliente) return false;
    const auto elegido = e_.buscadores.cliente(PeticionCliente{});
    if (!elegido || elegido->claveCliente == 0) return false;
    const bool conLineas = !p_.documento.lineas().isEmpty() && p_.documento.idCliente != elegido->claveCliente;
    cargarCliente(elegido->claveCliente);
    if (!cliente_) return false;
    cargarMascota(elegido->claveMascota);
    modificado_ = true;
    if (conLineas)
        e_.dialogs().mostrar(Icono::Exclamacion, QStringLiteral("¡Atención"),
                             QStringLiteral(" Al cambiar de Cliente teniendo Artículos en el Presupuesto, no se "
                                            "recalculan los Precios Especiales."));
    return true;
}

bool PresupuestoForm::ponerMascota(std::optional<qint64> idMascota) {
    if (noEditable() || !cliente_) return false;
    const auto antes = planVigente();
    cargarMascota(idMascota);
    modificado_ = true;
    preguntarRepreciar(antes);
    return true;
}

bool PresupuestoForm::setFecha(const QString& texto) {
    if (noEditable()) return false;
    const auto f = leerFecha(texto);
    if (!f) {
        e_.dialogs().avisar(QStringLiteral("Información introducida errónea"),
                            QStringLiteral("La fecha debe tener el formato dd/mm/aaaa."));
        return false;
    }
    const auto antes = planVigente();
    p_.documento.fecha = *f;
    modificado_ = true;
    preguntarRepreciar(antes);
    return true;
}

bool PresupuestoForm::setVendedor(std::optional<qint64> idVendedor) {
    if (noEditable()) return false;
    p_.documento.idVendedor = idVendedor;
    modificado_ = true;
    return true;
}

bool PresupuestoForm::anadirArticulo(qint64 codigo, const QString& cantidad) {
    if (noEditable()) return false;
    if (!cliente_) {
        e_.dialogs().mostrar(Icono::Informacion, kTituloSinCliente,
                             QStringLiteral("Seleccione un Cliente antes de añadir los artículos que compondrán el "
                                            "Presupuesto."));
        return false;
    }
    const auto q = leerImporte(cantidad);
    if (!q || *q == 0) return fallo(QStringLiteral("Indique la cantidad"));
    std::optional<ArticuloVenta> articulo;
    CommandTrace traza(e_.dialogs(), QStringLiteral("incluir un Artículo") + kEn);
    if (!traza.ejecutar([&] { articulo = ventas_.articulo(codigo); })) return false;
    if (!articulo) {
        e_.dialogs().avisar(kAtencion, QStringLiteral("No existe ningún artículo con el código ") +
                                           QString::number(codigo) + QLatin1Char('.'));
        return false;
    }
    const PrecioElegido precio = elegirPrecio(
        *articulo, contextoVenta(cliente_, condicionesCliente_, mascota_, condicionesPlan_, p_.documento.fecha));
    if (!precio.valido()) {
        e_.dialogs().avisar(kAtencion, precio.rechazo);
        return false;
    }
    p_.documento.anadirLinea(lineaDeArticulo(*articulo, precio, *q));
    modificado_ = true;
    return true;
}

bool PresupuestoForm::anadirArticulo(const QString& codigo, const QString& cantidad) {
    bool ok = false;
    const qint64 n = codigo.trimmed().toLongLong(&ok);
    if (!ok) return fallo(QStringLiteral("Indique el artículo que desea incluir"));
    return anadirArticulo(n, cantidad);
}

bool PresupuestoForm::buscarArticulo(const QString& cantidad) {
    if (noEditable()) return false;
    if (!cliente_) {
        e_.dialogs().mostrar(Icono::Informacion, kTituloSinCliente,
                             QStringLiteral("Seleccione un Cliente antes de buscar los artículos que compondrán el "
                                            "Presupuesto"));
        return false;
    }
    if (!e_.buscadores.articulo) return false;
    const auto codigo = e_.buscadores.articulo(QString());
    return codigo && anadirArticulo(*codigo, cantidad);
}

bool PresupuestoForm::quitarLinea(int fila) {
    if (noEditable() || fila < 0 || fila >= p_.documento.lineas().size()) return false;
    p_.documento.quitarLinea(fila);
    modificado_ = true;
    return true;
}

bool PresupuestoForm::tratarResultado(ResultadoPresupuesto r) {
    if (r == ResultadoPresupuesto::Hecho) return true;
    if (r == ResultadoPresupuesto::CambiadoEnOtroPuesto) {
        bloqueo_.liberar();
        if (e_.dialogs().preguntar(Icono::Exclamacion, kAtencion, textoRegistroModificado(QStringLiteral("Presupuesto"))))
            cargar(*p_.IdPresupuesto);
        return false;
    }
    const QString texto =
        r == ResultadoPresupuesto::NoExiste
            ? QStringLiteral("Otro puesto ha eliminado este Presupuesto. No se ha guardado nada.")
        : r == ResultadoPresupuesto::NoPendiente
            ? QStringLiteral("Otro puesto ha aceptado o rechazado este Presupuesto mientras lo tenía abierto en esta "
                             "pantalla. No se ha guardado nada.")
            : QStringLiteral("Otro puesto ha guardado cambios en este Presupuesto desde que usted lo abrió. No se ha "
                             "guardado nada.");
    e_.dialogs().avisar(kAtencion, texto);
    bloqueo_.liberar();
    if (p_.IdPresupuesto && r != ResultadoPresupuesto::NoExiste) cargar(*p_.IdPresupuesto);
    return false;
}

bool PresupuestoForm::guardar() {
    if (noEditable()) return false;
    if (!cliente_ || !p_.documento.idCliente) return fallo(QStringLiteral("Indique el cliente"));
    if (p_.documento.lineas().isEmpty()) return fallo(QStringLiteral("Debe incluir al menos un artículo"));
    if (p_.esNuevo() && !bloqueo_.tomarAlta(descriptorRequerido(kTablaPresupuestos), cliente_->nombre)) return false;
    Presupuesto copia = p_;
    ResultadoPresupuesto r = ResultadoPresupuesto::Hecho;
    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar un Presupuesto") + kEn);
    bool hecho = false;
    traza.ejecutar([&] {
        hecho = reintentarNumeracion(e_.dialogs(), QStringLiteral("Presupuesto"), [&] {
            copia = p_;
            r = PresupuestoStore(e_.db()).guardar(copia);
        });
    });
    if (!hecho || !tratarResultado(r)) {
        if (p_.esNuevo()) bloqueo_.liberar();
        return false;
    }
    bloqueo_.liberar();
    const bool nuevo = p_.esNuevo();
    p_ = copia;
    if (nuevo) e_.editores.ocupar(kTablaPresupuestos, *p_.IdPresupuesto, this, traerAlFrente);
    modificado_ = false;
    if (alGuardar) alGuardar();
    return true;
}

bool PresupuestoForm::convertir() {
    if (noEditable()) return false;
    if (!e_.dialogs().preguntar(Icono::Pregunta, kAtencion,
                                QStringLiteral("¿Desea convertir este Presupuesto en un Albarán?")))
        return false;
    // What the delivery note requires, in its order and with its messages.
    if (!cliente_ || !p_.documento.idCliente) return fallo(QStringLiteral("Indique el cliente"));
    const auto conf = leerConfiguracionPuesto(e_);
    const QString serie = conf ? conf->SerieVenta : QString();
    if (serie.trimmed().isEmpty()) {
        e_.dialogs().avisar(kAtencion, QStringLiteral("Debe especificar una serie de Venta para los albaranes en la "
                                                      "Configuración de Apartados."));
        return false;
    }
    if (!p_.documento.idVendedor) return fallo(QStringLiteral("Indique el vendedor"));
    if (p_.documento.lineas().isEmpty()) return fallo(QStringLiteral("Debe incluir al menos un artículo"));
    if ((modificado_ || p_.esNuevo()) && !guardar()) return false;
    BloqueoEdicion alta(e_);
    if (!alta.tomarAlta(descriptorRequerido(kTablaAlbaranes), cliente_->nombre)) return false;
    // The note is dated when it is made; it keeps the quote's prices.
    const QDateTime ahora = e_.reloj().ahora();
    Presupuesto copia = p_;
    ResultadoPresupuesto r = ResultadoPresupuesto::Hecho;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("convertir un Presupuesto en Albarán") + kEn);
    traza.ejecutar([&] {
        hecho = reintentarNumeracion(e_.dialogs(), QStringLiteral("Albarán"), [&] {
            copia = p_;
            r = PresupuestoStore(e_.db()).convertir(copia, serie, ahora.date(),
                                                     QTime(ahora.time().hour(), ahora.time().minute()));
        });
    });
    alta.liberar();
    if (!hecho || !tratarResultado(r)) return false;
    bloqueo_.liberar();
    const auto nota = copia.idAlbaran;
    cargar(*copia.IdPresupuesto);
    if (abrirAlbaran && nota) {
        AperturaAlbaran ap;
        ap.IdAlbaran = nota;
        abrirAlbaran(ap);
    }
    return true;
}

bool PresupuestoForm::rechazar() {
    if (noEditable() || p_.esNuevo()) return false;
    if (!e_.dialogs().preguntar(Icono::Pregunta, kAtencion,
                                QStringLiteral("¿Desea marcar este Presupuesto como rechazado?")))
        return false;
    Presupuesto copia = p_;
    ResultadoPresupuesto r = ResultadoPresupuesto::Hecho;
    CommandTrace traza(e_.dialogs(), QStringLiteral("rechazar un Presupuesto") + kEn);
    if (!traza.ejecutar([&] { r = PresupuestoStore(e_.db()).rechazar(copia); }) || !tratarResultado(r))
        return false;
    bloqueo_.liberar();
    p_ = copia;
    modificado_ = false;
    return true;
}

bool PresupuestoForm::imprimir(DestinoDocumento destino, const QString& ficheroPdf) {
    if (p_.esNuevo() || modificado_) {
        if (!editable() || !guardar()) return false;
    }
    if (cliente_ && cliente_->lopd == kLopdNoConsiente && !avisoLopd(e_.dialogs(), cliente_->nombre, true)) return false;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("imprimir un Presupuesto") + kEn);
    traza.ejecutar([&] {
        // What is stored, as another workstation may have left it.
        const auto leido = PresupuestoStore(e_.db()).cargar(*p_.IdPresupuesto);
        if (!leido) return;
        DatosDocumento d = datosAlbaran(leido->documento, cliente_ ? &*cliente_ : nullptr,
                                        mascota_ ? &*mascota_ : nullptr, ventas_.nombreVendedor(leido->documento.idVendedor));
        d.tipo = kTipoDocumentoPresupuesto;
        d.campos.prepend({QStringLiteral("numPresupuesto"), QString::number(leido->numero.value_or(0))});
        // Only an accepted or rejected quote says so on paper.
        if (!leido->pendiente()) d.campos.prepend({QStringLiteral("estado"), textoEstado().toUpper()});
        hecho = ImpresorDocumentos(e_).imprimir(grupos::PRESUPUESTOS, grupos::PROMPT_PRESUPUESTO, d, destino, ficheroPdf);
    });
    return hecho;
}

bool PresupuestoForm::preguntarGuardar() {
    if (!modificado_ || !editable()) return true;
    if (e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("Confirmación para cerrar la ventana"),
                               kPreguntaGuardarCambios))
        return guardar();
    modificado_ = false;
    return true;
}

bool PresupuestoForm::nuevo() {
    if (!preguntarGuardar()) return false;
    const auto cliente = p_.documento.idCliente;
    limpiar();
    if (cliente) cargarCliente(*cliente);
    return true;
}

bool PresupuestoForm::abrirDelCliente() {
    if (!cliente_) {
        e_.dialogs().mostrar(Icono::Informacion, kTituloSinCliente, QStringLiteral("Seleccione antes un Cliente."));
        return false;
    }
    QList<FilaPresupuesto> filas;
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar los Presupuestos del Cliente") + kEn);
    if (!traza.ejecutar([&] { filas = PresupuestoStore(e_.db()).deCliente(cliente_->id); })) return false;
    if (filas.isEmpty()) {
        e_.dialogs().mostrar(Icono::Informacion, QStringLiteral("Resultado de la búsqueda"),
                             QStringLiteral("Este Cliente no tiene Presupuestos."));
        return false;
    }
    QStringList opciones;
    for (const auto& f : filas)
        opciones << QStringLiteral("nº ") + QString::number(f.numero) + QStringLiteral(" - ") + formatoFecha(f.fecha) +
                        QStringLiteral(" - ") + f.estado + QStringLiteral(" - ") + formatoImporte(f.total) +
                        QStringLiteral(" €");
    const int i = e_.dialogs().elegir(kTituloPresupuestos, QStringLiteral("Presupuestos de ") + cliente_->nombre, opciones);
    if (i < 0 || !preguntarGuardar()) return false;
    return cargar(filas.at(i).IdPresupuesto);
}

bool PresupuestoForm::puedeCerrar() {
    if (!preguntarGuardar()) return false;
    bloqueo_.liberar();
    e_.editores.soltar(this);
    return true;
}
