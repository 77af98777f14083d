#include "clinical/visita_form.h"

#include "app/ficha_form.h"
#include "app/guardado_registro.h"
#include "app/instalacion.h"
#include "app/login_form.h"
#include "clients/aviso_lopd.h"
#include "clients/datos_cartas.h"
#include "clinical/fotos_visita.h"
#include "core/command_trace.h"
#include "core/formatos.h"
#include "data/esquema.h"

#include <QTextDocumentFragment>

namespace {
const QString kAccion = QStringLiteral(" una Visita en las '") + kTituloVisitas + QLatin1Char('\'');
const QString kTituloRecetaObligatoria = QStringLiteral("Campos obligatorios no rellenos");
const QString kTextoSinVisita = QStringLiteral(
    "No hay ninguna Visita seleccionada. Por favor, comunique este error al Dpto. de Atención al Cliente.");

// Columns of the visit the screen shows, types and saves.
const QStringList kColumnas = {QStringLiteral("Fecha"),        QStringLiteral("Hora"),
                               QStringLiteral("IdTipoVisita"), QStringLiteral("IdDiagnostico"),
                               QStringLiteral("IdVeterinario"), QStringLiteral("Peso"),
                               QStringLiteral("Temperatura"),  QStringLiteral("IdCondicionCorporal"),
                               QStringLiteral("Anamnesis"),    QStringLiteral("Tratamiento")};

QVariant textoONulo(const QString& t) {
    return t.trimmed().isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(t);
}
} // namespace

VisitaForm::VisitaForm(Entorno& entorno) : FormularioRegistro(entorno, tablaVisitas()) {
    mostrarNueva();
}

QStringList VisitaForm::columnas() {
    return kColumnas;
}

QString VisitaForm::leyenda() const {
    return id_ ? QStringLiteral("Visita nº: ") + QString::number(*id_) : QStringLiteral(" (Nueva visita)");
}

QString VisitaForm::textoDeuda() const {
    if (!cliente_ || deuda_ <= 0 || importeNulo(deuda_)) return {};
    return QStringLiteral("Deuda Actual:") + formatoImporte(deuda_) + QStringLiteral(" €");
}

QString VisitaForm::cabeceraHistorial() const {
    if (!mascota_) return {};
    return QStringLiteral(" Historial de Visitas ") + QStringLiteral(" de la mascota: ") + mascota_->Nombre +
           QStringLiteral(". Fecha nacimiento: ") + formatoFecha(mascota_->FechaNacimiento);
}

QString VisitaForm::descripcionBloqueo() const {
    QString d = QStringLiteral("Visita");
    if (id_) d += QStringLiteral(" nº ") + QString::number(*id_);
    if (mascota_) d += QStringLiteral(" de ") + mascota_->Nombre;
    return d;
}

QString VisitaForm::preguntaAbandonar() const {
    return QStringLiteral("¿Desea guardar las modificaciones realizadas a esta visita?");
}

bool VisitaForm::rechazar(const QString& texto, const QString& columna) {
    return fallo(Icono::Exclamacion, kTituloObligatorios, texto, columna);
}

void VisitaForm::mostrarNueva() {
    Registro vacio(tablaVisitas());
    const QDateTime ahora = e_.reloj().ahora();
    vacio.setValor(QStringLiteral("Fecha"), ahora.date());
    vacio.setValor(QStringLiteral("Hora"), QTime(ahora.time().hour(), ahora.time().minute()));
    empezarNuevo(vacio);
    ingresoPendiente_ = false;
    jaulaPendiente_.clear();
    recetas_.clear();
    resultados_.clear();
    especialidades_.clear();
    entradaReceta = EntradaReceta{formatoFecha(ahora.date()), {}, {}, {}, {}};
}

bool VisitaForm::abrir(const AperturaVisita& ap) {
    if (ap.NumVisita) {
        if (!cargarVisita(*ap.NumVisita)) return false;
        mostrarAvisos(ap.AvisoClienteInit, ap.AvisoMascotaInit);
        return true;
    }
    if (!ap.IdClienteInit) {
        cliente_.reset();
        mascota_.reset();
        mascotas_.clear();
        historial_.clear();
        mostrarNueva();
        return true;
    }
    mostrarNueva();
    if (!cargarCliente(*ap.IdClienteInit, ap.IdMascotaInit)) return false;
    mostrarAvisos(ap.AvisoClienteInit, ap.AvisoMascotaInit);
    return true;
}

void VisitaForm::mostrarAvisos(bool cliente, bool mascota) {
    QString avisoCliente;
    if (cliente && cliente_) {
        CommandTrace traza(e_.dialogs(), QStringLiteral("leer el aviso del Cliente en las '") + kTituloVisitas +
                                             QLatin1Char('\''));
        traza.ejecutar([&] { avisoCliente = VisitaStore(e_.db()).avisoCliente(cliente_->id); });
    }
    if (!avisoCliente.isEmpty())
        e_.dialogs().mostrar(Icono::Informacion, QStringLiteral("Aviso del Cliente ") + cliente_->nombre, avisoCliente);
    if (mascota && mascota_ && !mascota_->Avisos.trimmed().isEmpty())
        e_.dialogs().mostrar(Icono::Informacion, QStringLiteral("Aviso de la Mascota ") + mascota_->Nombre,
                             mascota_->Avisos.trimmed());
}

void VisitaForm::alCambiar(const QString& columna) {
    // A prescription not yet begun takes the visit's date.
    if (columna == QStringLiteral("Fecha") && !entradaReceta.idMedicamento && leerFecha(texto(columna)))
        entradaReceta.fecha = texto(columna);
}

bool VisitaForm::cargarCliente(qint64 idCliente, std::optional<qint64> idMascota, bool exigirMascotas) {
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar el Cliente en las '") + kTituloVisitas + QLatin1Char('\''));
    traza.ejecutar([&] {
        AlbaranStore ventas(e_.db());
        traza.paso(QStringLiteral("Leer el cliente"));
        const auto c = ventas.cliente(idCliente);
        if (!c) {
            e_.dialogs().error(QStringLiteral("¡Error!"),
                               QStringLiteral("Error al intentar acceder al Cliente nº: ") +
                                   QString::number(idCliente) +
                                   QStringLiteral(".\nHa sido imposible recuperar la información solicitada. "
                                                  "Puede que el Cliente haya sido eliminado."));
            return;
        }
        traza.paso(QStringLiteral("Leer sus mascotas"));
        const QList<OpcionVenta> mascotas = ventas.mascotasDe(idCliente);
        if (mascotas.isEmpty() && exigirMascotas) {
            e_.dialogs().mostrar(Icono::Exclamacion, QStringLiteral("ATENCIÓN"),
                                 QStringLiteral("El Cliente '") + c->nombre +
                                     QStringLiteral("' no posee ninguna Mascota. Seleccione otro Cliente o dé de "
                                                    "Alta las Mascotas de éste"));
            return;
        }
        // The pet asked for (a saved visit's, even of a former owner), or the client's first.
        qint64 elegida = idMascota && !exigirMascotas ? *idMascota : mascotas.value(0).id;
        for (const auto& m : mascotas)
            if (idMascota && m.id == *idMascota) elegida = m.id;
        VisitaStore store(e_.db());
        const auto m = store.mascota(elegida);
        if (!m) return;
        cliente_ = c;
        deuda_ = ventas.deuda(idCliente);
        mascotas_ = mascotas;
        mascota_ = m;
        traza.paso(QStringLiteral("Leer el historial de la mascota"));
        historial_ = store.historial(elegida);
        hecho = true;
    });
    return hecho;
}

bool VisitaForm::cargarVisita(qint64 idVisita) {
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar") + kAccion);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer la visita"));
        const auto r = VisitaStore(e_.db()).cargar(idVisita);
        if (!r) {
            e_.dialogs().error(QStringLiteral("¡Error!"),
                               QStringLiteral("Error al intentar acceder a la Visita nº ") +
                                   QString::number(idVisita) +
                                   QStringLiteral(".\nHa sido imposible recuperar la información solicitada. "
                                                  "Puede que la Visita haya sido eliminada."));
            return;
        }
        if (!ocupar(idVisita)) return;
        if (!cargarCliente(r->valor(QStringLiteral("IdCliente")).toLongLong(),
                           r->valor(QStringLiteral("IdMascota")).toLongLong(), false))
            return;
        bloqueo_.liberar();
        id_ = idVisita;
        mostrarRegistro(*r);
        ingresoPendiente_ = false;
        jaulaPendiente_.clear();
        leerDetalle();
        entradaReceta = EntradaReceta{texto(QStringLiteral("Fecha")), {}, {}, {}, {}};
        hecho = true;
    });
    return hecho;
}

void VisitaForm::leerDetalle() {
    recetas_.clear();
    resultados_.clear();
    especialidades_.clear();
    if (!id_) return;
    VisitaStore store(e_.db());
    recetas_ = store.recetas(*id_);
    resultados_ = store.resultados(*id_);
    especialidades_ = store.especialidades(*id_);
}

QList<OpcionLookup> VisitaForm::opciones(const QString& columna) {
    QList<OpcionLookup> l;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer la lista de ") + columna + QStringLiteral(" en las '") +
                                         kTituloVisitas + QLatin1Char('\''));
    traza.ejecutar([&] {
        // Inactive entries the visit or its prescriptions still hold stay on offer.
        QList<qint64> ademas;
        bool ok = false;
        const qint64 propio = texto(columna).toLongLong(&ok);
        if (ok) ademas << propio;
        VisitaStore store(e_.db());
        if (columna == QStringLiteral("IdMedicamento")) {
            for (const auto& r : recetas_)
                ademas << r.IdMedicamento;
            l = store.medicamentos(ademas);
        } else if (columna == QStringLiteral("IdEspecialidad")) {
            l = store.especialidadesOfrecidas();
        } else {
            if (columna == QStringLiteral("IdVeterinario"))
                for (const auto& r : recetas_)
                    ademas << r.IdVeterinario;
            l = store.opciones(columna, ademas);
        }
    });
    return l;
}

bool VisitaForm::elegirCliente() {
    if (!e_.buscadores.cliente) return false;
    const auto elegido = e_.buscadores.cliente(PeticionCliente{});
    if (!elegido || elegido->claveCliente == 0) return false;
    // A saved visit keeps its client: choosing one starts a new visit for it.
    if (!esNuevo()) {
        if (!preguntarGuardar()) return false;
        mostrarNueva();
    }
    const auto antes = std::make_tuple(cliente_, mascota_, mascotas_, historial_, deuda_);
    if (!cargarCliente(elegido->claveCliente, elegido->claveMascota)) {
        std::tie(cliente_, mascota_, mascotas_, historial_, deuda_) = antes;
        return false;
    }
    ingresoPendiente_ = false;
    mostrarAvisos(elegido->indAvisoCliente, elegido->indAvisoMascota);
    return true;
}

bool VisitaForm::setMascota(qint64 idMascota) {
    if (!esNuevo() || !cliente_) return false;
    if (mascota_ && mascota_->IdMascota == idMascota) return true;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("seleccionar la Mascota en las '") + kTituloVisitas +
                                         QLatin1Char('\''));
    traza.ejecutar([&] {
        VisitaStore store(e_.db());
        const auto m = store.mascota(idMascota);
        if (!m || m->IdCliente != cliente_->id) return;
        mascota_ = m;
        historial_ = store.historial(idMascota);
        ingresoPendiente_ = false;
        modificado_ = true;
        hecho = true;
    });
    return hecho;
}

bool VisitaForm::hospitalizado() const {
    if (ingresoPendiente_) return true;
    return id_ && mascota_ && mascota_->NumHospitalizacion == *id_;
}

QString VisitaForm::jaula() const {
    if (ingresoPendiente_) return jaulaPendiente_;
    return hospitalizado() ? mascota_->Jaula : QString();
}

bool VisitaForm::setHospitalizar(bool marcar) {
    if (!mascota_ || marcar == hospitalizado()) return false;
    if (marcar) {
        // As it is now: another workstation may have admitted the pet since it was read.
        CommandTrace traza(e_.dialogs(), QStringLiteral("hospitalizar una Mascota en las '") + kTituloVisitas +
                                             QLatin1Char('\''));
        if (!traza.ejecutar([&] {
                if (const auto m = VisitaStore(e_.db()).mascota(mascota_->IdMascota)) mascota_ = m;
            }))
            return false;
        if (mascota_->NumHospitalizacion && (!id_ || *mascota_->NumHospitalizacion != *id_)) {
            e_.dialogs().mostrar(Icono::Exclamacion, QStringLiteral("Error"),
                                 QStringLiteral("Esta mascota ya se encuentra hospitalizada."));
            return false;
        }
        const bool propio = !bloqueo_.tomado();
        if (!bloquear()) return false;
        std::optional<QString> jaula = pedirJaula ? pedirJaula(QString()) : std::optional<QString>(QString());
        if (!jaula) {
            if (propio && !modificado_) bloqueo_.liberar();
            return false;
        }
        ingresoPendiente_ = true;
        jaulaPendiente_ = jaula->trimmed();
        modificado_ = true;
        return true;
    }
    if (ingresoPendiente_) {
        ingresoPendiente_ = false;
        jaulaPendiente_.clear();
        return true;
    }
    // Unticking the visit that keeps the pet hospitalised: the discharge.
    const std::optional<Alta> alta = pedirAlta ? pedirAlta() : std::nullopt;
    if (!alta) return false;
    bool hecho = false;
    bool yaNo = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("dar de alta una Mascota hospitalizada en las '") +
                                         kTituloVisitas + QLatin1Char('\''));
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Dar de alta la mascota"));
        hecho = HospitalizacionStore(e_.db()).darAlta(mascota_->IdMascota, *id_, *alta);
        yaNo = !hecho;
        mascota_ = VisitaStore(e_.db()).mascota(mascota_->IdMascota);
    });
    if (yaNo)
        e_.dialogs().avisar(QStringLiteral("¡Atención!"),
                            QStringLiteral("Esta mascota ya no se encuentra hospitalizada por esta visita."));
    return hecho;
}

bool VisitaForm::preguntarGuardar() {
    if (!modificado_) return true;
    if (e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("ATENCIÓN"), preguntaAbandonar())) return guardar();
    bloqueo_.liberar();
    modificado_ = false;
    ingresoPendiente_ = false;
    return true;
}

bool VisitaForm::nueva() {
    if (!preguntarGuardar()) return false;
    mostrarNueva();
    // The same client and pet stay for the next visit.
    if (mascota_) historial_ = VisitaStore(e_.db()).historial(mascota_->IdMascota);
    return true;
}

bool VisitaForm::puedeCerrar() {
    if (!preguntarGuardar()) return false;
    cerrar();
    return true;
}

bool VisitaForm::abrirHistorial(int fila) {
    if (fila < 0 || fila >= historial_.size()) return false;
    const qint64 destino = historial_.at(fila).IdVisita;
    if (id_ && *id_ == destino) return true;
    if (e_.editores.abierto(tablaVisitas().tabla, destino) && !ocupar(destino)) return false;
    if (!preguntarGuardar()) return false;
    return cargarVisita(destino);
}

bool VisitaForm::buscar() {
    if (!e_.buscadores.visita) return false;
    const auto v = e_.buscadores.visita();
    if (!v) return false;
    if (!preguntarGuardar()) return false;
    return cargarVisita(v->idVisita);
}

bool VisitaForm::guardar() {
    foco.clear();
    if (!cliente_ || !mascota_)
        return rechazar(QStringLiteral("Debe seleccionar primero un Cliente y una Mascota."), QString());
    if (texto(QStringLiteral("IdTipoVisita")).trimmed().isEmpty())
        return rechazar(QStringLiteral("Debe indicar el tipo de visita."), QStringLiteral("IdTipoVisita"));
    if (texto(QStringLiteral("IdVeterinario")).trimmed().isEmpty())
        return rechazar(QStringLiteral("Debe indicar el veterinario que realiza la consulta."),
                        QStringLiteral("IdVeterinario"));
    if (texto(QStringLiteral("IdDiagnostico")).trimmed().isEmpty())
        return rechazar(QStringLiteral("Debe indicar el diagnóstico."), QStringLiteral("IdDiagnostico"));
    auto leido = leerTextos();
    if (!leido) return false;
    Registro r = *leido;
    if (r.valor(QStringLiteral("Fecha")).isNull())
        return rechazar(QStringLiteral("Debe indicar la fecha de la visita."), QStringLiteral("Fecha"));
    r.setValor(QStringLiteral("IdCliente"), cliente_->id);
    r.setValor(QStringLiteral("IdMascota"), mascota_->IdMascota);
    if (r.valor(QStringLiteral("Presupuesto")).isNull()) r.setValor(QStringLiteral("Presupuesto"), false);

    QString diagnostico;
    for (const auto& o : opciones(QStringLiteral("IdDiagnostico")))
        if (QString::number(o.clave) == texto(QStringLiteral("IdDiagnostico"))) diagnostico = o.texto;

    bool yaHospitalizada = false;
    qint64 id = 0;
    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar") + kAccion);
    const auto resultado = escribir(traza, r, [&] {
        traza.paso(QStringLiteral("Guardar la visita"));
        id = VisitaStore(e_.db()).guardar(r);
        if (!ingresoPendiente_) return;
        traza.paso(QStringLiteral("Hospitalizar la mascota"));
        Ingreso i{mascota_->IdMascota,
                  id,
                  r.valor(QStringLiteral("Fecha")).toDate(),
                  r.valor(QStringLiteral("Hora")).toTime(),
                  diagnostico,
                  jaulaPendiente_};
        if (!HospitalizacionStore(e_.db()).ingresar(i)) {
            yaHospitalizada = true;
            throw GuardadoCancelado{};
        }
    });
    if (yaHospitalizada) {
        e_.dialogs().mostrar(Icono::Exclamacion, QStringLiteral("Error"),
                             QStringLiteral("Esta mascota ya se encuentra hospitalizada."));
        ingresoPendiente_ = false;
        traza.ejecutar([&] { mascota_ = VisitaStore(e_.db()).mascota(mascota_->IdMascota); });
        return false;
    }
    if (resultado == ResultadoGuardado::Recargar) {
        modificado_ = false;
        const qint64 actual = *id_;
        cerrar();
        cargarVisita(actual);
        return false;
    }
    if (resultado != ResultadoGuardado::Guardado) return false;
    guardado(r, id);
    ingresoPendiente_ = false;
    jaulaPendiente_.clear();
    alCambiar(QStringLiteral("Fecha"));
    traza.ejecutar([&] {
        VisitaStore store(e_.db());
        mascota_ = store.mascota(mascota_->IdMascota);
        historial_ = store.historial(mascota_->IdMascota);
    });
    return true;
}

bool VisitaForm::eliminar() {
    if (!id_) return false;
    const qint64 id = *id_;
    bool hecho = false;
    bool referida = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("eliminar") + kAccion);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Bloquear la visita"));
        if (!bloqueo_.tomar(tablaVisitas(), QString::number(id), descripcionBloqueo(), AccionBloqueo::Baja)) return;
        if (!e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("¡Atención!"),
                                    QStringLiteral("¿Desea realmente eliminar la Visita seleccionada?")))
            return;
        mascota_ = VisitaStore(e_.db()).mascota(mascota_->IdMascota);
        if (mascota_ && mascota_->NumHospitalizacion == id &&
            !e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("¡Atención!"),
                                    QStringLiteral("Esta Visita mantiene a la Mascota Hospitalizada. ¿Confirma que "
                                                   "aún quiere borrarla?")))
            return;
        traza.paso(QStringLiteral("Eliminar la visita"));
        const auto baja = VisitaStore(e_.db()).eliminar(id);
        if (baja == VisitaStore::Baja::Referida) {
            referida = true;
            return;
        }
        hecho = true;
    });
    if (referida)
        e_.dialogs().avisar(QStringLiteral("¡Atención!"),
                            QStringLiteral("No se puede eliminar esta Visita porque tiene Albaranes o Presupuestos "
                                           "hechos a partir de ella."));
    if (!hecho) {
        if (!modificado_) bloqueo_.liberar();
        return false;
    }
    // Its photographs go with it.
    const QString datos = rutaNativa(e_.configuracionBD.servidor);
    for (const QString& foto : fotosVisita(datos, id))
        eliminarFotoVisita(foto);
    mostrarNueva();
    traza.ejecutar([&] {
        VisitaStore store(e_.db());
        mascota_ = store.mascota(mascota_->IdMascota);
        if (mascota_) historial_ = store.historial(mascota_->IdMascota);
    });
    return true;
}

bool VisitaForm::asegurarGuardada() {
    if (id_ && !modificado_) return true;
    return guardar();
}

bool VisitaForm::cobrar() {
    if (!asegurarGuardada() || !id_) {
        if (!id_) e_.dialogs().mostrar(Icono::Critico, QStringLiteral("¡ATENCIÓN!"), kTextoSinVisita);
        return false;
    }
    QList<AlbaranDeVisita> hechos;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cobrar") + kAccion);
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Buscar los albaranes de la visita"));
            hechos = VisitaStore(e_.db()).albaranes(*id_);
        }))
        return false;
    AperturaAlbaran ap;
    if (!hechos.isEmpty()) {
        QStringList opciones;
        for (const auto& a : hechos)
            opciones << a.Serie + QLatin1Char('/') + QString::number(a.NumAlbaran) + QStringLiteral(" - ") +
                            formatoFecha(a.Fecha) + QStringLiteral(" - ") + formatoImporte(a.Total) +
                            QStringLiteral(" €");
        opciones << QStringLiteral("Nuevo albarán");
        const int i = e_.dialogs().elegir(QStringLiteral("Albaranes de la visita"),
                                          QStringLiteral("Esta visita ya tiene albaranes. Elija el que desea abrir "
                                                         "o cree uno nuevo:"),
                                          opciones);
        if (i < 0) return false;
        if (i < hechos.size()) {
            ap.IdAlbaran = hechos.at(i).IdAlbaran;
            if (abrirAlbaran) abrirAlbaran(ap);
            return true;
        }
    }
    ap.NumVisita = *id_;
    ap.IdCliente = cliente_->id;
    ap.Cliente = cliente_->nombre;
    ap.idMascota = mascota_->IdMascota;
    ap.TarifaCliente = cliente_->tarifa;
    ap.DtoGralCliente = cliente_->dtoGeneral;
    if (cliente_->idTipoIVA && cliente_->porcentajeIVA) ap.IVAaAplicarCliente = cliente_->porcentajeIVA;
    ap.LOPDCliente = cliente_->lopd;
    ap.ExentoIVA = cliente_->exento;
    const QVariant vet = registro_.valor(QStringLiteral("IdVeterinario"));
    if (!vet.isNull()) ap.IdVendedor = vet.toLongLong();
    ap.EntradaDesdeVisitas = true;
    if (abrirAlbaran) abrirAlbaran(ap);
    return true;
}

bool VisitaForm::presupuestar() {
    if (!asegurarGuardada() || !id_) {
        if (!id_) e_.dialogs().mostrar(Icono::Critico, QStringLiteral("¡ATENCIÓN!"), kTextoSinVisita);
        return false;
    }
    AperturaPresupuesto ap;
    ap.IdCliente = cliente_->id;
    ap.idMascota = mascota_->IdMascota;
    ap.NumVisita = *id_;
    const QVariant vet = registro_.valor(QStringLiteral("IdVeterinario"));
    if (!vet.isNull()) ap.IdVendedor = vet.toLongLong();
    if (abrirPresupuesto) abrirPresupuesto(ap);
    return true;
}

void VisitaForm::releerPresupuesto() {
    if (!id_ || !mascota_) return;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer la visita en las '") + kTituloVisitas + QLatin1Char('\''));
    traza.ejecutar([&] {
        VisitaStore store(e_.db());
        if (const auto r = store.cargar(*id_))
            registro_.setValor(QStringLiteral("Presupuesto"), r->valor(QStringLiteral("Presupuesto")));
        historial_ = store.historial(mascota_->IdMascota);
    });
}

// --- prescriptions -------------------------------------------------------------------------

void VisitaForm::cargarEntradaReceta(int fila) {
    if (fila < 0 || fila >= recetas_.size()) return;
    const FilaReceta& r = recetas_.at(fila);
    entradaReceta = EntradaReceta{formatoFecha(r.Fecha), r.IdMedicamento, r.IdVeterinario, r.Dispensador,
                                  r.Dosificacion};
}

bool VisitaForm::comprobarReceta() {
    if (!cliente_) {
        e_.dialogs().mostrar(Icono::Exclamacion, QStringLiteral("Cliente no informado"),
                             QStringLiteral("Antes de crear una receta, debe seleccionar un cliente"));
        return false;
    }
    if (!entradaReceta.idMedicamento) {
        e_.dialogs().mostrar(Icono::Exclamacion, kTituloRecetaObligatoria,
                             QStringLiteral("Debe indicar el medicamento que se receta."));
        return false;
    }
    if (!entradaReceta.idVeterinario) {
        e_.dialogs().mostrar(Icono::Exclamacion, kTituloRecetaObligatoria,
                             QStringLiteral("Debe indicar el veterinario que extiende la receta"));
        return false;
    }
    if (!leerFecha(entradaReceta.fecha)) {
        e_.dialogs().mostrar(Icono::Exclamacion, kTituloErronea,
                             QStringLiteral("La fecha de la receta no es válida."));
        return false;
    }
    return true;
}

Registro VisitaForm::registroReceta() const {
    Registro r(descriptorRequerido(QStringLiteral("Recetas")));
    r.setValor(QStringLiteral("IdVisita"), *id_);
    r.setValor(QStringLiteral("Fecha"), *leerFecha(entradaReceta.fecha));
    r.setValor(QStringLiteral("IdMedicamento"), *entradaReceta.idMedicamento);
    r.setValor(QStringLiteral("IdVeterinario"), *entradaReceta.idVeterinario);
    r.setValor(QStringLiteral("Dispensador"), textoONulo(entradaReceta.dispensador.trimmed()));
    r.setValor(QStringLiteral("Dosificacion"), textoONulo(entradaReceta.dosificacion));
    return r;
}

bool VisitaForm::escribirFila(const QString& accion, const std::function<void(VisitaStore&)>& escritura) {
    if (!id_) return false;
    const bool propio = !bloqueo_.tomado();
    if (!bloquear()) return false;
    bool cambiada = false;
    CommandTrace traza(e_.dialogs(), accion + QStringLiteral(" en las '") + kTituloVisitas + QLatin1Char('\''));
    const bool hecho = traza.ejecutar([&] {
        try {
            Transaction tx = e_.db().transaccion();
            VisitaStore store(e_.db());
            escritura(store);
            tx.commit();
        } catch (const ErrorRegistroCambiado&) {
            cambiada = true;
        }
        leerDetalle();
    });
    if (propio && !modificado_) bloqueo_.liberar();
    if (cambiada)
        e_.dialogs().avisar(QStringLiteral("¡Atención!"),
                            QStringLiteral("Otro puesto ha cambiado o eliminado este dato de la visita desde que "
                                           "usted lo abrió. No se ha guardado nada; se muestra como está ahora."));
    return hecho && !cambiada;
}

bool VisitaForm::insertarReceta(bool imprimirDespues) {
    if (!comprobarReceta() || !asegurarGuardada() || !id_) return false;
    Registro r = registroReceta();
    qint64 nueva = 0;
    if (!escribirFila(QStringLiteral("añadir una Receta"), [&](VisitaStore& s) { nueva = s.guardarFila(r); }))
        return false;
    if (!imprimirDespues) return true;
    for (int i = 0; i < recetas_.size(); ++i)
        if (recetas_.at(i).IdReceta == nueva) return imprimirRecetas({i});
    return true;
}

bool VisitaForm::seleccionUnica(const QList<int>& seleccion, const QString& ninguna, const QString& varias,
                                const QString& titulo) {
    if (seleccion.isEmpty()) {
        e_.dialogs().mostrar(Icono::Exclamacion, titulo, ninguna);
        return false;
    }
    if (seleccion.size() > 1) {
        e_.dialogs().mostrar(Icono::Exclamacion, titulo, varias);
        return false;
    }
    return seleccion.first() >= 0 && seleccion.first() < recetas_.size();
}

bool VisitaForm::modificarReceta(const QList<int>& seleccion) {
    if (!seleccionUnica(seleccion, QStringLiteral("Seleccione la receta que desea modificar."),
                        QStringLiteral("Ha seleccionado más de una receta. Seleccione sólo una y luego modifíquela "
                                       "si lo desea."),
                        QStringLiteral("Selección incorrecta")))
        return false;
    if (!comprobarReceta()) return false;
    const FilaReceta fila = recetas_.at(seleccion.first());
    Registro r = registroReceta();
    r.setValor(QStringLiteral("IdReceta"), fila.IdReceta);
    r.setValor(DescriptorTabla::kColumnaVersion, fila.VersionFila);
    return escribirFila(QStringLiteral("modificar una Receta"), [&](VisitaStore& s) { s.guardarFila(r); });
}

bool VisitaForm::eliminarReceta(const QList<int>& seleccion) {
    if (!seleccionUnica(seleccion, QStringLiteral("Seleccione la receta que desea eliminar."),
                        QStringLiteral("Ha seleccionado más de una receta. Seleccione sólo una y luego elimínela "
                                       "si lo desea."),
                        QStringLiteral("Aviso de seguridad")))
        return false;
    if (!e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("¡Atención!"),
                                QStringLiteral("¿Desea realmente eliminar la receta seleccionada?")))
        return false;
    const qint64 clave = recetas_.at(seleccion.first()).IdReceta;
    return escribirFila(QStringLiteral("eliminar una Receta"), [&](VisitaStore& s) {
        s.eliminarFila(descriptorRequerido(QStringLiteral("Recetas")), clave);
    });
}

DatosDocumento VisitaForm::datosReceta(const FilaReceta& primera, const FilaReceta* segunda) const {
    QStringList partes;
    auto anadir = [&](const FilaReceta& r, const QString& sufijo) {
        const QString pob = textoPoblacion(cliente_->codigoPostal, cliente_->poblacion, cliente_->provincia);
        const QList<QPair<QString, QString>> campos = {
            {QStringLiteral("Veterinario"), r.Veterinario},
            {QStringLiteral("Cliente"), cliente_->nombre},
            {QStringLiteral("DirCliente"), cliente_->direccion},
            {QStringLiteral("PobCliente"), pob.trimmed()},
            {QStringLiteral("Fecha"), formatoFecha(r.Fecha)},
            {QStringLiteral("Colegiado"), r.Colegiado},
            {QStringLiteral("DPS"), r.DPS},
            {QStringLiteral("Dosificacion"), r.Dosificacion},
            {QStringLiteral("DPS_Dosificacion"),
             r.DPS + QLatin1Char('\n') + QStringLiteral("Dosis:") + QLatin1Char(' ') + r.Dosificacion}};
        for (const auto& [k, v] : campos)
            partes << k + sufijo + QLatin1Char('=') + QString(v).remove(QChar(u'§'));
    };
    anadir(primera, QString());
    if (segunda) anadir(*segunda, QStringLiteral("2"));
    DatosDocumento d;
    d.tipo = QStringLiteral("REC");
    d.campos = camposDesdeTexto(partes.join(QChar(u'§')));
    return d;
}

bool VisitaForm::imprimirRecetas(const QList<int>& seleccion, DestinoDocumento destino, const QString& ficheroPdf) {
    QList<FilaReceta> elegidas;
    for (int i : seleccion)
        if (i >= 0 && i < recetas_.size()) elegidas << recetas_.at(i);
    if (elegidas.isEmpty()) {
        e_.dialogs().mostrar(Icono::Exclamacion, QStringLiteral("Aviso"),
                             QStringLiteral("Seleccione al menos una receta a imprimir"));
        return false;
    }
    bool distintas = false;
    for (const auto& r : elegidas)
        distintas = distintas || r.Fecha != elegidas.first().Fecha || r.IdVeterinario != elegidas.first().IdVeterinario;
    if (distintas && !e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("¡¡¡ Atención !!!"),
                                             QStringLiteral("Ha seleccionado recetas de fechas o veterinarios "
                                                            "diferentes. Se imprimirán varias recetas. ¿Desea "
                                                            "continuar?")))
        return false;
    if (cliente_->lopd == kLopdNoConsiente && !avisoLopd(e_.dialogs(), cliente_->nombre, true)) return false;
    QList<DatosDocumento> paginas;
    for (int i = 0; i < elegidas.size(); i += 2)
        paginas << datosReceta(elegidas.at(i), i + 1 < elegidas.size() ? &elegidas.at(i + 1) : nullptr);
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("imprimir las Recetas en las '") + kTituloVisitas +
                                         QLatin1Char('\''));
    traza.ejecutar([&] {
        hecho = ImpresorDocumentos(e_).imprimirVarios(grupos::RECETAS, grupos::PROMPT_RECETA, paginas, destino, ficheroPdf);
    });
    return hecho;
}

// --- documents ------------------------------------------------------------------------------

QString VisitaForm::textoOpcion(const QString& columna) {
    const QString clave = texto(columna);
    if (clave.isEmpty()) return {};
    for (const auto& o : opciones(columna))
        if (QString::number(o.clave) == clave) return o.texto;
    return {};
}

std::optional<DatosDocumento> VisitaForm::datosDocumento(bool informe) {
    if (!asegurarGuardada() || !id_) {
        if (!id_ && cliente_) e_.dialogs().mostrar(Icono::Critico, QStringLiteral("¡ATENCIÓN!"), kTextoSinVisita);
        return std::nullopt;
    }
    std::optional<MascotaCarta> mascota;
    std::optional<ClienteCarta> propietario;
    QString colegiado;
    CommandTrace traza(e_.dialogs(), (informe ? QStringLiteral("imprimir el Informe de")
                                              : QStringLiteral("imprimir una Carta sobre la Mascota de")) +
                                         kAccion);
    if (!traza.ejecutar([&] {
            CartasStore store(e_.db());
            mascota = store.mascota(mascota_->IdMascota);
            if (mascota) propietario = store.cliente(mascota->IdCliente);
            const QString vet = texto(QStringLiteral("IdVeterinario"));
            if (!vet.isEmpty()) colegiado = VisitaStore(e_.db()).colegiado(vet.toLongLong());
        }))
        return std::nullopt;
    if (!mascota || !propietario) {
        e_.dialogs().error(QStringLiteral("¡Error!"), QStringLiteral("No se ha encontrado la Mascota nº ") +
                                                          QString::number(mascota_->IdMascota) +
                                                          QStringLiteral(" en la B.D. Puede que haya sido eliminada."));
        return std::nullopt;
    }
    if (propietario->LOPD == kLopdNoConsiente && !avisoLopd(e_.dialogs(), propietario->Nombre, true))
        return std::nullopt;
    const QDate hoy = e_.reloj().hoy();
    if (!informe) return datosCartaMascota(*mascota, *propietario, hoy);

    auto plano = [](const QString& html) { return QTextDocumentFragment::fromHtml(html).toPlainText().trimmed(); };
    DatosDocumento d;
    d.tipo = QStringLiteral("VIS");
    d.campos = {{QStringLiteral("NumVisita"), QString::number(*id_)},
                {QStringLiteral("Fecha"), texto(QStringLiteral("Fecha"))},
                {QStringLiteral("Hora"), texto(QStringLiteral("Hora"))},
                {QStringLiteral("Cliente"), propietario->Nombre},
                {QStringLiteral("DirCliente"), propietario->Direccion},
                {QStringLiteral("PobCliente"),
                 textoPoblacion(propietario->CodigoPostal, propietario->Poblacion, propietario->Provincia)},
                {QStringLiteral("Mascota"), mascota->Nombre},
                {QStringLiteral("Especie"), mascota->Especie},
                {QStringLiteral("Raza"), mascota->Raza},
                {QStringLiteral("Sexo"), mascota->Sexo},
                {QStringLiteral("FechaNacimiento"), formatoFecha(mascota->FechaNacimiento)},
                {QStringLiteral("Chip"), mascota->Chip},
                {QStringLiteral("TipoVisita"), textoOpcion(QStringLiteral("IdTipoVisita"))},
                {QStringLiteral("Diagnostico"), textoOpcion(QStringLiteral("IdDiagnostico"))},
                {QStringLiteral("Veterinario"), textoOpcion(QStringLiteral("IdVeterinario"))},
                {QStringLiteral("Colegiado"), colegiado},
                {QStringLiteral("Peso"), texto(QStringLiteral("Peso"))},
                {QStringLiteral("Temperatura"), texto(QStringLiteral("Temperatura"))},
                {QStringLiteral("CondicionCorporal"), textoOpcion(QStringLiteral("IdCondicionCorporal"))},
                {QStringLiteral("Anamnesis"), plano(texto(QStringLiteral("Anamnesis")))},
                {QStringLiteral("Tratamiento"), plano(texto(QStringLiteral("Tratamiento")))}};
    // Private entries print only for whoever may see them.
    for (const auto& r : resultados())
        d.filas[QStringLiteral("Analiticas")] << CamposDocumento{{QStringLiteral("Grupo"), r.Grupo},
                                                                 {QStringLiteral("Analitica"), r.Analitica},
                                                                 {QStringLiteral("Resultado"), r.Resultado},
                                                                 {QStringLiteral("ValorNormal"), r.ValorNormal},
                                                                 {QStringLiteral("Unidades"), r.Unidades}};
    for (const auto& s : especialidades())
        d.filas[QStringLiteral("Especialidades")] << CamposDocumento{{QStringLiteral("Especialidad"), s.Especialidad},
                                                                     {QStringLiteral("Protocolo"), s.Protocolo},
                                                                     {QStringLiteral("Resultado"), s.Resultado}};
    for (const auto& r : recetas_)
        d.filas[QStringLiteral("Recetas")] << CamposDocumento{{QStringLiteral("Fecha"), formatoFecha(r.Fecha)},
                                                              {QStringLiteral("DPS"), r.DPS},
                                                              {QStringLiteral("Dosificacion"), r.Dosificacion},
                                                              {QStringLiteral("Veterinario"), r.Veterinario}};
    return d;
}

bool VisitaForm::imprimirInforme(DestinoDocumento destino, const QString& ficheroPdf) {
    const auto d = datosDocumento(true);
    if (!d) return false;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("imprimir el Informe de") + kAccion);
    traza.ejecutar([&] {
        hecho = ImpresorDocumentos(e_).imprimir(grupos::INFORMES_VISITA, grupos::PROMPT_DOCUMENTO, *d, destino,
                                                ficheroPdf);
    });
    return hecho;
}

bool VisitaForm::carta(DestinoDocumento destino, const QString& ficheroPdf) {
    const auto d = datosDocumento(false);
    if (!d) return false;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("imprimir una Carta sobre la Mascota de") + kAccion);
    traza.ejecutar([&] {
        hecho = ImpresorDocumentos(e_).imprimir(grupos::MASCOTAS, grupos::PROMPT_DOCUMENTO, *d, destino, ficheroPdf);
    });
    return hecho;
}

// --- analytic results and speciality examinations -------------------------------------------

QList<AnaliticaOfrecida> VisitaForm::analiticas() {
    QList<AnaliticaOfrecida> l;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer las Analíticas en las '") + kTituloVisitas + QLatin1Char('\''));
    traza.ejecutar([&] { l = VisitaStore(e_.db()).analiticas(); });
    return l;
}

bool VisitaForm::preguntarGuardarCambios() {
    return e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("ATENCIÓN"), preguntaAbandonar());
}

bool VisitaForm::puedeVerPrivado(const QString& autor) const {
    return e_.esAdministrador() || autor.compare(e_.usuario, Qt::CaseInsensitive) == 0;
}

QList<FilaResultado> VisitaForm::resultados() const {
    QList<FilaResultado> l;
    for (const auto& r : resultados_)
        if (!r.DatoPrivado || puedeVerPrivado(r.Autor)) l << r;
    return l;
}

QList<FilaEspecialidad> VisitaForm::especialidades() const {
    QList<FilaEspecialidad> l;
    for (const auto& r : especialidades_)
        if (!r.DatoPrivado || puedeVerPrivado(r.Autor)) l << r;
    return l;
}

bool VisitaForm::anadirResultado(qint64 idAnalitica, const QString& resultado, bool privado) {
    if (!asegurarGuardada() || !id_) return false;
    Registro r(descriptorRequerido(QStringLiteral("ResultadosAnalitica")));
    r.setValor(QStringLiteral("IdVisita"), *id_);
    r.setValor(QStringLiteral("IdAnalitica"), idAnalitica);
    r.setValor(QStringLiteral("Resultado"), textoONulo(resultado));
    r.setValor(QStringLiteral("DatoPrivado"), privado);
    r.setValor(QStringLiteral("Autor"), e_.usuario);
    return escribirFila(QStringLiteral("añadir un Resultado de Analítica"), [&](VisitaStore& s) { s.guardarFila(r); });
}

bool VisitaForm::modificarResultado(qint64 idResultado, const QString& resultado, bool privado) {
    for (const auto& f : resultados()) {
        if (f.IdResultado != idResultado) continue;
        Registro r(descriptorRequerido(QStringLiteral("ResultadosAnalitica")));
        r.setValor(QStringLiteral("IdResultado"), idResultado);
        r.setValor(QStringLiteral("IdVisita"), *id_);
        r.setValor(QStringLiteral("IdAnalitica"), f.IdAnalitica);
        r.setValor(QStringLiteral("Resultado"), textoONulo(resultado));
        r.setValor(QStringLiteral("DatoPrivado"), privado);
        r.setValor(QStringLiteral("Autor"), f.Autor);
        r.setValor(DescriptorTabla::kColumnaVersion, f.VersionFila);
        return escribirFila(QStringLiteral("modificar un Resultado de Analítica"),
                            [&](VisitaStore& s) { s.guardarFila(r); });
    }
    return false;
}

bool VisitaForm::eliminarResultado(qint64 idResultado) {
    return escribirFila(QStringLiteral("eliminar un Resultado de Analítica"), [&](VisitaStore& s) {
        s.eliminarFila(descriptorRequerido(QStringLiteral("ResultadosAnalitica")), idResultado);
    });
}

bool VisitaForm::anadirEspecialidad(qint64 idEspecialidad) {
    if (!asegurarGuardada() || !id_) return false;
    Registro r(descriptorRequerido(QStringLiteral("EspecialidadesVisita")));
    r.setValor(QStringLiteral("IdVisita"), *id_);
    r.setValor(QStringLiteral("IdEspecialidad"), idEspecialidad);
    r.setValor(QStringLiteral("DatoPrivado"), false);
    r.setValor(QStringLiteral("Autor"), e_.usuario);
    return escribirFila(QStringLiteral("añadir una Especialidad"), [&](VisitaStore& s) {
        r.setValor(QStringLiteral("Protocolo"), textoONulo(s.protocolo(idEspecialidad)));
        s.guardarFila(r);
    });
}

bool VisitaForm::guardarEspecialidad(qint64 idEspecialidadVisita, const QString& resultado, const QString& croquis,
                                     bool privado) {
    for (const auto& f : especialidades()) {
        if (f.IdEspecialidadVisita != idEspecialidadVisita) continue;
        Registro r(descriptorRequerido(QStringLiteral("EspecialidadesVisita")));
        r.setValor(QStringLiteral("IdEspecialidadVisita"), idEspecialidadVisita);
        r.setValor(QStringLiteral("IdVisita"), *id_);
        r.setValor(QStringLiteral("IdEspecialidad"), f.IdEspecialidad);
        r.setValor(QStringLiteral("Protocolo"), textoONulo(f.Protocolo));
        r.setValor(QStringLiteral("Resultado"), textoONulo(resultado));
        r.setValor(QStringLiteral("Croquis"), textoONulo(croquis));
        r.setValor(QStringLiteral("DatoPrivado"), privado);
        r.setValor(QStringLiteral("Autor"), f.Autor);
        r.setValor(DescriptorTabla::kColumnaVersion, f.VersionFila);
        return escribirFila(QStringLiteral("guardar una Especialidad"), [&](VisitaStore& s) { s.guardarFila(r); });
    }
    return false;
}

bool VisitaForm::eliminarEspecialidad(qint64 idEspecialidadVisita) {
    return escribirFila(QStringLiteral("eliminar una Especialidad"), [&](VisitaStore& s) {
        s.eliminarFila(descriptorRequerido(QStringLiteral("EspecialidadesVisita")), idEspecialidadVisita);
    });
}
