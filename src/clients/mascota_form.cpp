#include "clients/mascota_form.h"

#include "app/guardado_registro.h"

#include "app/ficha_form.h"
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

MascotaForm::MascotaForm(Entorno& entorno) : e_(entorno), bloqueo_(entorno) {
    mostrar(std::nullopt);
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
    return columna == QStringLiteral("FechaUltimaVisita") || columna == QStringLiteral("NumHospitalizacion");
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
        traza.paso(QStringLiteral("Leer el cliente"));
        const auto p = MascotaStore(e_.db()).propietario(idCliente);
        if (!p) {
            e_.dialogs().error(QStringLiteral("¡Error!"),
                               QStringLiteral("Error al intentar acceder al cliente numero ") +
                                   QString::number(idCliente) +
                                   QStringLiteral(".\nHa sido imposible recuperar la información solicitada. "
                                                  "Puede que el cliente haya sido eliminado."));
            return;
        }
        bloqueo_.liberar();
        propietario_ = *p;
        traza.paso(QStringLiteral("Leer sus mascotas"));
        leerLista();
        fila_ = -1;
        std::optional<Registro> r;
        for (int i = 0; idMascota && i < lista_.size(); ++i)
            if (lista_.at(i).IdMascota == *idMascota) {
                r = MascotaStore(e_.db()).cargar(*idMascota);
                if (r) fila_ = i;
            }
        mostrar(r);
        hecho = true;
    });
    return hecho;
}

void MascotaForm::leerLista() {
    lista_ = MascotaStore(e_.db()).mascotasDeCliente(propietario_.IdCliente);
}

void MascotaForm::mostrar(const std::optional<Registro>& r) {
    registro_ = r;
    id_ = r ? std::optional<qint64>(r->clave().toLongLong()) : std::nullopt;
    textos_.clear();
    for (const QString& nombre : columnas()) {
        const DescriptorColumna& c = columna(nombre);
        textos_.insert(nombre, r ? FichaForm::textoValor(c, r->valor(nombre)) : QString());
    }
    if (!r) textos_.insert(QStringLiteral("FechaAlta"), formatoFecha(e_.reloj().hoy()));
    modificado_ = false;
    foco_.clear();
}

bool MascotaForm::setTexto(const QString& nombre, const QString& texto) {
    if (!textos_.contains(nombre) || soloLectura(nombre)) return false;
    if (textos_.value(nombre) == texto) return true;
    if (id_ && !bloqueo_.tomado()) {
        bool tomado = false;
        CommandTrace traza(e_.dialogs(), QStringLiteral("modificar") + kAccion);
        traza.ejecutar([&] {
            tomado = bloqueo_.tomar(tablaMascotas(), QString::number(*id_),
                                    textos_.value(QStringLiteral("Nombre")), AccionBloqueo::Modificacion);
        });
        if (!tomado) return false;
    }
    textos_.insert(nombre, texto);
    modificado_ = true;
    if (nombre == QStringLiteral("IdEspecie") && !textos_.value(QStringLiteral("IdRaza")).isEmpty()) {
        bool sigue = false;
        const qint64 raza = textos_.value(QStringLiteral("IdRaza")).toLongLong();
        for (const auto& o : opciones(QStringLiteral("IdRaza")))
            if (o.clave == raza) sigue = true;
        if (!sigue) textos_.insert(QStringLiteral("IdRaza"), QString());
    }
    return true;
}

QList<OpcionLookup> MascotaForm::opciones(const QString& nombre) {
    QList<OpcionLookup> lista;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer la lista de ") + nombre +
                                         QStringLiteral(" en el '") + kTituloMascotas + QLatin1Char('\''));
    traza.ejecutar([&] {
        std::optional<qint64> especie;
        bool ok = false;
        const qint64 v = textos_.value(QStringLiteral("IdEspecie")).toLongLong(&ok);
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
    const bool si = e_.dialogs().preguntar(
        QStringLiteral("ATENCIÓN"), QStringLiteral("¿Desea guardar las modificaciones realizadas a '") +
                                        textos_.value(QStringLiteral("Nombre")) + QStringLiteral("'?"));
    if (si) return guardar();
    bloqueo_.liberar();
    modificado_ = false;
    return true;
}

bool MascotaForm::seleccionar(int fila) {
    if (fila < 0 || fila >= lista_.size() || !hayCliente()) return false;
    if (fila == fila_ && !esNueva()) return true;
    const qint64 destino = lista_.at(fila).IdMascota;
    if (!preguntarGuardar()) return false;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("seleccionar") + kAccion);
    traza.ejecutar([&] {
        leerLista();
        const auto r = MascotaStore(e_.db()).cargar(destino);
        fila_ = -1;
        for (int i = 0; i < lista_.size(); ++i)
            if (lista_.at(i).IdMascota == destino) fila_ = i;
        mostrar(fila_ >= 0 ? r : std::nullopt);
        hecho = fila_ >= 0;
    });
    return hecho;
}

bool MascotaForm::nueva() {
    if (!preguntarGuardar()) return false;
    bloqueo_.liberar();
    fila_ = -1;
    mostrar(std::nullopt);
    return true;
}

bool MascotaForm::puedeCerrar() {
    if (!preguntarGuardar()) return false;
    bloqueo_.liberar();
    return true;
}

bool MascotaForm::rechazar(const QString& titulo, const QString& texto, const QString& nombre) {
    foco_ = nombre;
    e_.dialogs().avisar(titulo, texto);
    return false;
}

bool MascotaForm::chipValido() const {
    const qsizetype n = textos_.value(QStringLiteral("Chip")).trimmed().size();
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
    if (textos_.value(QStringLiteral("IdPlanSalud")).isEmpty()) return false;
    const auto caducidad = leerFecha(textos_.value(QStringLiteral("CaducidadPlan")));
    return caducidad && *caducidad < e_.reloj().hoy();
}

bool MascotaForm::elegirPlan() {
    if (!e_.buscadores.planSalud) return false;
    const auto plan = e_.buscadores.planSalud(QString());
    if (!plan) return false;
    return setTexto(QStringLiteral("IdPlanSalud"), QString::number(*plan));
}

bool MascotaForm::guardar() {
    foco_.clear();
    if (!comprobarChip()) return false;
    if (!hayCliente())
        return rechazar(kTituloObligatorios, QStringLiteral("Debe seleccionar primero un Cliente."),
                        QString());
    if (textos_.value(QStringLiteral("Nombre")).trimmed().isEmpty())
        return rechazar(kTituloObligatorios, QStringLiteral("Debe informar el nombre de la Mascota."),
                        QStringLiteral("Nombre"));
    if (!textos_.value(QStringLiteral("IdPlanSalud")).trimmed().isEmpty() &&
        textos_.value(QStringLiteral("CaducidadPlan")).trimmed().isEmpty())
        return rechazar(
            kTituloObligatorios,
            QStringLiteral("Debe informar la fecha de caducidad del Plan de Salud de la mascota."),
            QStringLiteral("CaducidadPlan"));

    Registro r = registro_ ? registro_->getCopia() : Registro(tablaMascotas());
    r.setValor(QStringLiteral("IdCliente"), propietario_.IdCliente);
    for (const QString& nombre : columnas()) {
        if (soloLectura(nombre)) continue;
        QString error;
        const auto v = FichaForm::leerValor(columna(nombre), textos_.value(nombre), &error);
        if (!v) return rechazar(kTituloErronea, error, nombre);
        r.setValor(nombre, *v);
    }
    if (r.valor(QStringLiteral("Baja")).isNull()) r.setValor(QStringLiteral("Baja"), false);

    if (id_ ? !bloqueo_.tomar(tablaMascotas(), QString::number(*id_), r.texto(QStringLiteral("Nombre")),
                              AccionBloqueo::Modificacion)
            : !bloqueo_.tomarAlta(tablaMascotas(), r.texto(QStringLiteral("Nombre"))))
        return false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar") + kAccion);
    qint64 id = 0;
    const auto resultado = guardarRegistro(e_, traza, bloqueo_, tablaMascotas().descTabla, [&] {
        traza.paso(QStringLiteral("Guardar la mascota"));
        id = MascotaStore(e_.db()).guardar(r);
    });
    if (!id_) bloqueo_.liberar(); // the "Alta" lock lasts the save only
    if (resultado == ResultadoGuardado::Recargar) {
        modificado_ = false;
        abrir(propietario_.IdCliente, *id_);
        return false;
    }
    if (resultado != ResultadoGuardado::Guardado) return false;
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer la lista de mascotas"));
        leerLista();
        fila_ = -1;
        for (int i = 0; i < lista_.size(); ++i)
            if (lista_.at(i).IdMascota == id) fila_ = i;
    });
    bloqueo_.liberar();
    mostrar(r);
    return true;
}

bool MascotaForm::eliminar() {
    if (!id_) return false;
    const qint64 id = *id_;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("eliminar") + kAccion);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Bloquear la mascota"));
        if (!bloqueo_.tomar(tablaMascotas(), QString::number(id), textos_.value(QStringLiteral("Nombre")),
                            AccionBloqueo::Baja))
            return;
        if (!e_.dialogs().preguntar(kTituloAtencion,
                                    QStringLiteral("¿Desea realmente eliminar la Mascota seleccionada?"))) {
            if (!modificado_) bloqueo_.liberar();
            return;
        }
        traza.paso(QStringLiteral("Eliminar la mascota"));
        MascotaStore store(e_.db());
        store.eliminar(id);
        bloqueo_.liberar();
        leerLista();
        fila_ = -1;
        mostrar(std::nullopt);
        hecho = true;
    });
    return hecho;
}
