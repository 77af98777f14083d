#include "clients/mascota_form.h"

#include "app/guardado_registro.h"

#include "app/ficha_form.h"
#include "clients/aviso_lopd.h"
#include "clients/cartas_store.h"
#include "clinical/datos_plan_salud.h"
#include "core/command_trace.h"
#include "core/formatos.h"
#include "data/esquema.h"

namespace {
const QString kTituloAtencion = QStringLiteral("¡Atención!");
const QString kAccion = QStringLiteral(" una Mascota en el '") + kTituloMascotas + QLatin1Char('\'');

const DescriptorColumna& columna(const QString& nombre) {
    const DescriptorColumna* c = tablaMascotas().columna(nombre);
    if (!c) throw ErrorPrograma(QStringLiteral("La columna '") + nombre + QStringLiteral("' no existe."));
    return *c;
}
} // namespace

MascotaForm::MascotaForm(Entorno& entorno) : FormularioRegistro(entorno, tablaMascotas()) {
    mostrarNueva();
}

QStringList MascotaForm::columnas() {
    QStringList l;
    for (const auto& c : tablaMascotas().columnaS)
        if (!c.interna && c.nombre != QStringLiteral("IdMascota") && c.nombre != QStringLiteral("IdCliente") &&
            c.nombre != QStringLiteral("NombreBusqueda"))
            l << c.nombre;
    return l;
}

bool MascotaForm::soloLectura(const QString& columna) {
    const DescriptorColumna* c = tablaMascotas().columna(columna);
    return c && c->deOperacion;
}

QStringList MascotaForm::sexos() {
    QStringList l = columna(QStringLiteral("Sexo")).ValorExternoS;
    l.prepend(QString());
    return l;
}

QString MascotaForm::textoLOPD() const {
    const DescriptorColumna* c =
        descriptorTabla(QStringLiteral("Clientes"))
            ? descriptorTabla(QStringLiteral("Clientes"))->columna(QStringLiteral("LOPD"))
            : nullptr;
    return c && hayCliente() ? c->valorExterno(propietario_.LOPD) : QString();
}

QString MascotaForm::leyenda() const {
    if (!id_) return QStringLiteral("(Nueva Mascota)");
    return QStringLiteral("Mascota nº: ") + QString::number(*id_) + QStringLiteral(" del Cliente nº ") +
           QString::number(propietario_.IdCliente);
}

bool MascotaForm::abrirDesdeMenu() {
    if (!e_.buscadores.cliente) return false;
    const auto elegido = e_.buscadores.cliente(PeticionCliente{});
    if (!elegido || elegido->claveCliente == 0) return false;
    return abrir(elegido->claveCliente, elegido->claveMascota);
}

bool MascotaForm::abrir(qint64 idCliente, std::optional<qint64> idMascota) {
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar los datos del Cliente en el '") +
                                         kTituloMascotas + QLatin1Char('\''));
    traza.ejecutar([&] {
        MascotaStore store(e_.db());
        traza.paso(QStringLiteral("Leer el cliente"));
        const auto p = store.propietario(idCliente);
        if (!p) {
            e_.dialogs().error(QStringLiteral("¡Error!"),
                               QStringLiteral("Error al intentar acceder al cliente numero ") +
                                   QString::number(idCliente) +
                                   QStringLiteral(".\nHa sido imposible recuperar la información solicitada. "
                                                  "Puede que el cliente haya sido eliminado."));
            return;
        }
        traza.paso(QStringLiteral("Leer sus mascotas"));
        const QList<FilaMascota> lista = store.mascotasDeCliente(idCliente);
        std::optional<Registro> r;
        for (const FilaMascota& f : lista)
            if (idMascota && f.IdMascota == *idMascota) r = store.cargar(*idMascota);
        if (r && !ocupar(*idMascota)) return;
        propietario_ = *p;
        lista_ = lista;
        if (r)
            mostrar(*r);
        else
            mostrarNueva();
        hecho = true;
    });
    return hecho;
}

void MascotaForm::leerLista() {
    lista_ = MascotaStore(e_.db()).mascotasDeCliente(propietario_.IdCliente);
}

void MascotaForm::seleccionarEnLista(qint64 id) {
    fila_ = -1;
    for (int i = 0; i < lista_.size(); ++i)
        if (lista_.at(i).IdMascota == id) fila_ = i;
}

void MascotaForm::mostrarNueva() {
    Registro vacio(tablaMascotas());
    vacio.setValor(QStringLiteral("FechaAlta"), e_.reloj().hoy());
    empezarNuevo(vacio);
    fila_ = -1;
}

void MascotaForm::mostrar(const Registro& r) {
    bloqueo_.liberar();
    id_ = r.clave().toLongLong();
    mostrarRegistro(r);
    seleccionarEnLista(*id_);
}

QString MascotaForm::descripcionBloqueo() const {
    return esNuevo() ? texto(QStringLiteral("Nombre")).trimmed() : registro_.texto(QStringLiteral("Nombre"));
}

QString MascotaForm::preguntaAbandonar() const {
    return QStringLiteral("¿Desea guardar las modificaciones realizadas a '") + texto(QStringLiteral("Nombre")) +
           QStringLiteral("'?");
}

bool MascotaForm::setTexto(const QString& nombre, const QString& texto) {
    if (soloLectura(nombre)) return false;
    return FormularioRegistro::setTexto(nombre, texto);
}

void MascotaForm::alCambiar(const QString& nombre) {
    if (nombre != QStringLiteral("IdEspecie") || texto(QStringLiteral("IdRaza")).isEmpty()) return;
    const qint64 raza = texto(QStringLiteral("IdRaza")).toLongLong();
    for (const auto& o : opciones(QStringLiteral("IdRaza")))
        if (o.clave == raza) return;
    textos_.insert(QStringLiteral("IdRaza"), QString());
}

QList<OpcionLookup> MascotaForm::opciones(const QString& nombre) {
    QList<OpcionLookup> lista;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer la lista de ") + nombre +
                                         QStringLiteral(" en el '") + kTituloMascotas + QLatin1Char('\''));
    traza.ejecutar([&] {
        std::optional<qint64> especie;
        bool ok = false;
        const qint64 v = texto(QStringLiteral("IdEspecie")).toLongLong(&ok);
        if (ok) especie = v;
        lista = MascotaStore(e_.db()).opciones(nombre, especie);
    });
    return lista;
}

QStringList MascotaForm::tiposMascota() {
    QStringList tipos;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer los tipos de mascota en el '") + kTituloMascotas +
                                         QLatin1Char('\''));
    traza.ejecutar([&] { tipos = MascotaStore(e_.db()).tiposMascota(); });
    return tipos;
}

bool MascotaForm::preguntarGuardar() {
    if (!modificado_) return true;
    if (e_.dialogs().preguntar(QStringLiteral("ATENCIÓN"), preguntaAbandonar())) return guardar();
    bloqueo_.liberar();
    modificado_ = false;
    return true;
}

bool MascotaForm::seleccionar(int fila) {
    if (fila < 0 || fila >= lista_.size() || !hayCliente()) return false;
    if (fila == fila_ && !esNueva()) return true;
    const qint64 destino = lista_.at(fila).IdMascota;
    // Open in another window here: that one comes forward, before any question.
    if (e_.editores.abierto(tablaMascotas().tabla, destino) && !ocupar(destino)) return false;
    if (!preguntarGuardar()) return false;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("seleccionar") + kAccion);
    traza.ejecutar([&] {
        leerLista();
        const auto r = MascotaStore(e_.db()).cargar(destino);
        seleccionarEnLista(destino);
        if (fila_ < 0 || !r || !ocupar(destino)) {
            mostrarNueva();
            return;
        }
        mostrar(*r);
        hecho = true;
    });
    return hecho;
}

bool MascotaForm::nueva() {
    if (!preguntarGuardar()) return false;
    mostrarNueva();
    return true;
}

bool MascotaForm::puedeCerrar() {
    if (!preguntarGuardar()) return false;
    cerrar();
    return true;
}

bool MascotaForm::chipValido() const {
    const qsizetype n = texto(QStringLiteral("Chip")).trimmed().size();
    return n == 0 || n == 10 || n == 15;
}

bool MascotaForm::comprobarChip() {
    if (chipValido()) return true;
    return rechazar(kTituloErronea,
                    QStringLiteral("La longitud del campo 'Chip' debe ser 10 ó 15 caracteres, revise la "
                                   "información introducida"),
                    QStringLiteral("Chip"));
}

bool MascotaForm::planCaducado() const {
    if (texto(QStringLiteral("IdPlanSalud")).isEmpty()) return false;
    const auto caducidad = leerFecha(texto(QStringLiteral("CaducidadPlan")));
    return caducidad && *caducidad < e_.reloj().hoy();
}

bool MascotaForm::mascotaElegida(const QString& titulo) {
    if (id_) return true;
    e_.dialogs().avisar(titulo, QStringLiteral("Debe seleccionar primero una Mascota."));
    return false;
}

bool MascotaForm::elegirPlan() {
    if (!e_.buscadores.planSalud) return false;
    const auto plan = e_.buscadores.planSalud(QString());
    if (!plan) return false;
    return setTexto(QStringLiteral("IdPlanSalud"), QString::number(*plan));
}

bool MascotaForm::guardar() {
    foco.clear();
    if (!comprobarChip()) return false;
    if (!hayCliente())
        return rechazar(kTituloObligatorios, QStringLiteral("Debe seleccionar primero un Cliente."),
                        QString());
    if (texto(QStringLiteral("Nombre")).trimmed().isEmpty())
        return rechazar(kTituloObligatorios, QStringLiteral("Debe informar el nombre de la Mascota."),
                        QStringLiteral("Nombre"));
    if (!texto(QStringLiteral("IdPlanSalud")).trimmed().isEmpty() &&
        texto(QStringLiteral("CaducidadPlan")).trimmed().isEmpty())
        return rechazar(
            kTituloObligatorios,
            QStringLiteral("Debe informar la fecha de caducidad del Plan de Salud de la mascota."),
            QStringLiteral("CaducidadPlan"));

    auto leido = leerTextos();
    if (!leido) return false;
    Registro r = *leido;
    // Written for a new pet only: the owner of an existing one changes by its own operation.
    r.setValor(QStringLiteral("IdCliente"), propietario_.IdCliente);
    if (r.valor(QStringLiteral("Baja")).isNull()) r.setValor(QStringLiteral("Baja"), false);

    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar") + kAccion);
    qint64 id = 0;
    const auto resultado = escribir(traza, r, [&] {
        traza.paso(QStringLiteral("Guardar la mascota"));
        id = MascotaStore(e_.db()).guardar(r);
    });
    if (resultado == ResultadoGuardado::Recargar) {
        modificado_ = false;
        abrir(propietario_.IdCliente, *id_);
        return false;
    }
    if (resultado != ResultadoGuardado::Guardado) return false;
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer la lista de mascotas"));
        leerLista();
    });
    guardado(r, id);
    seleccionarEnLista(id);
    return true;
}

bool MascotaForm::eliminar() {
    if (!id_) return false;
    const qint64 id = *id_;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("eliminar") + kAccion);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Bloquear la mascota"));
        if (!bloqueo_.tomar(tablaMascotas(), QString::number(id), descripcionBloqueo(), AccionBloqueo::Baja))
            return;
        if (!e_.dialogs().preguntar(kTituloAtencion,
                                    QStringLiteral("¿Desea realmente eliminar la Mascota seleccionada?"))) {
            if (!modificado_) bloqueo_.liberar();
            return;
        }
        traza.paso(QStringLiteral("Eliminar la mascota"));
        if (MascotaStore(e_.db()).eliminar(id) == MascotaStore::Baja::Referida) {
            rechazar(kTituloAtencion,
                     QStringLiteral("No se puede eliminar esta Mascota porque tiene Albaranes u otros registros "
                                    "que dependen de ella."),
                     QString());
            return;
        }
        leerLista();
        mostrarNueva();
        hecho = true;
    });
    if (!hecho && !modificado_) bloqueo_.liberar();
    return hecho;
}

bool MascotaForm::cartas(DestinoDocumento destino, const QString& ficheroPdf) {
    return imprimirDocumento(false, destino, ficheroPdf);
}

bool MascotaForm::imprimirPlan(DestinoDocumento destino, const QString& ficheroPdf) {
    return imprimirDocumento(true, destino, ficheroPdf);
}

bool MascotaForm::imprimirDocumento(bool plan, DestinoDocumento destino, const QString& ficheroPdf) {
    const QString titulo = plan ? QStringLiteral("Plan de Salud") : QStringLiteral("Cartas");
    if (!id_) {
        e_.dialogs().avisar(titulo, QStringLiteral("Debe seleccionar primero una Mascota."));
        return false;
    }
    if (modificado_) {
        e_.dialogs().avisar(titulo, QStringLiteral("Guarde antes los cambios realizados a esta Mascota."));
        return false;
    }
    const qint64 id = *id_;
    std::optional<MascotaCarta> mascota;
    std::optional<ClienteCarta> propietario;
    std::optional<PlanCarta> datosPlan;
    CommandTrace traza(e_.dialogs(), (plan ? QStringLiteral("imprimir el Plan de Salud de")
                                           : QStringLiteral("imprimir una Carta sobre")) +
                                         kAccion);
    if (!traza.ejecutar([&] {
            CartasStore store(e_.db());
            traza.paso(QStringLiteral("Leer la mascota y su propietario"));
            mascota = store.mascota(id);
            if (mascota) propietario = store.cliente(mascota->IdCliente);
            if (!plan || !mascota || !mascota->IdPlanSalud) return;
            traza.paso(QStringLiteral("Leer el Plan de Salud"));
            datosPlan = leerPlanCarta(e_, *mascota->IdPlanSalud);
        }))
        return false;
    if (!mascota || !propietario) {
        e_.dialogs().error(QStringLiteral("¡Error!"), QStringLiteral("No se ha encontrado la Mascota nº ") +
                                                          QString::number(id) +
                                                          QStringLiteral(" en la B.D. Puede que haya sido "
                                                                         "eliminada."));
        return false;
    }
    if (plan && !datosPlan) {
        e_.dialogs().avisar(titulo, QStringLiteral("La Mascota '") + mascota->Nombre +
                                        QStringLiteral("' no tiene asignado ningún Plan de Salud."));
        return false;
    }
    if (propietario->LOPD == kLopdNoConsiente && !avisoLopd(e_.dialogs(), propietario->Nombre, true))
        return false;
    const QDate hoy = e_.reloj().hoy();
    bool hecho = false;
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Imprimir el documento"));
        ImpresorDocumentos impresor(e_);
        hecho = plan ? impresor.imprimir(grupos::PLANES, grupos::PROMPT_DOCUMENTO,
                                         datosPlanSalud(*mascota, *propietario, *datosPlan, hoy), destino,
                                         ficheroPdf)
                     : impresor.imprimir(grupos::MASCOTAS, grupos::PROMPT_DOCUMENTO,
                                         datosCartaMascota(*mascota, *propietario, hoy), destino, ficheroPdf);
    });
    return hecho;
}
