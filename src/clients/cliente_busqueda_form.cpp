#include "clients/cliente_busqueda_form.h"

#include "core/command_trace.h"
#include "data/esquema.h"
#include "data/registro.h"

namespace {
const QString kPantalla = QStringLiteral("'Búsqueda de Clientes'");

QStringList textosColumna(Database& db, const QString& tabla, const QString& columna) {
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t || !t->tieneColumna(columna) || !db.existeTabla(t->tabla)) return {};
    QStringList r;
    for (const Registro& reg : RegistroStore(db).buscar(*t, {}, {columna})) {
        const QString s = reg.texto(columna).trimmed();
        if (!s.isEmpty() && !r.contains(s)) r << s;
    }
    return r;
}
} // namespace

ClienteBusquedaForm::ClienteBusquedaForm(Entorno& entorno, const PeticionCliente& peticion)
    : e_(entorno), peticion_(peticion) {
    criterios.nombre = peticion.TextoInicial;
    criterios.nombreMascota = peticion.TextoInicialMascota;
    criteriosReducida.nombre = peticion.TextoInicial;
}

bool ClienteBusquedaForm::buscarAlAbrir() const {
    return !peticion_.TextoInicial.trimmed().isEmpty() ||
           (!peticion_.reducida && !peticion_.TextoInicialMascota.trimmed().isEmpty());
}

QStringList ClienteBusquedaForm::opcionesLOPD() {
    return {QString(), QStringLiteral("Sin informar"), QStringLiteral("Sí consiente"),
            QStringLiteral("No consiente")};
}

QString ClienteBusquedaForm::codigoLOPD(const QString& texto) {
    const qsizetype i = opcionesLOPD().indexOf(texto);
    return i > 0 ? QString::number(i - 1) : QString();
}

QList<OpcionCriterio> ClienteBusquedaForm::opciones(const QString& tabla, std::optional<qint64> idEspecie) {
    QList<OpcionCriterio> r;
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t || t->clave.isEmpty() || t->columnaTexto.isEmpty()) return r;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer la lista '") + t->descTabla +
                                         QStringLiteral("' en la ") + kPantalla);
    traza.ejecutar([&] {
        RegistroStore store(e_.db());
        const QList<Registro> filas = idEspecie && t->tieneColumna(QStringLiteral("IdEspecie"))
                                          ? store.buscarPor(*t, QStringLiteral("IdEspecie"), *idEspecie, {t->columnaTexto})
                                          : store.buscar(*t, {}, {t->columnaTexto});
        for (const Registro& reg : filas)
            r << OpcionCriterio{reg.clave().toLongLong(), reg.texto(t->columnaTexto)};
    });
    return r;
}

QStringList ClienteBusquedaForm::poblaciones() {
    QStringList r;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer las poblaciones en la ") + kPantalla);
    traza.ejecutar(
        [&] { r = textosColumna(e_.db(), QStringLiteral("Poblaciones"), QStringLiteral("Descripcion")); });
    return r;
}

QStringList ClienteBusquedaForm::provincias() {
    QStringList r;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer las provincias en la ") + kPantalla);
    traza.ejecutar(
        [&] { r = textosColumna(e_.db(), QStringLiteral("Provincias"), QStringLiteral("Descripcion")); });
    return r;
}

QStringList ClienteBusquedaForm::columnasClientes() {
    return {QStringLiteral("Cliente"),  QStringLiteral("Docum."),    QStringLiteral("Dirección"),
            QStringLiteral("C.Postal"), QStringLiteral("Localidad"), QStringLiteral("Provincia"),
            QStringLiteral("E-Mail")};
}

QStringList ClienteBusquedaForm::columnasMascotas() {
    return {QStringLiteral("Mascota"),     QStringLiteral("Historial"), QStringLiteral("Especie"),
            QStringLiteral("Raza"),        QStringLiteral("Sexo"),      QStringLiteral("MicroChip"),
            QStringLiteral("Num.Cartilla")};
}

QStringList ClienteBusquedaForm::columnasReducida() {
    return {QStringLiteral("NºCliente"), QStringLiteral("Cliente"),   QStringLiteral("Clínica"),
            QStringLiteral("Docum."),    QStringLiteral("Dirección"), QStringLiteral("C.Postal"),
            QStringLiteral("Localidad"), QStringLiteral("Provincia")};
}

bool ClienteBusquedaForm::buscar() {
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar un Cliente en la ") + kPantalla);
    QList<FilaClienteBusqueda> hallados;
    bool verBajas = false;
    const bool hecho = traza.ejecutar([&] {
        ClienteBusquedaStore store(e_.db());
        const int limite = kMaxFilas + 1;
        traza.paso(QStringLiteral("Buscar los clientes activos"));
        bool conBajasExcluidas = false;
        if (peticion_.reducida) {
            hallados = store.buscarReducida(criteriosReducida, limite);
            conBajasExcluidas = !criteriosReducida.incluirClientesBaja;
        } else {
            hallados = store.buscar(criterios, limite);
            conBajasExcluidas = !criterios.incluirClientesBaja ||
                                (criterios.hayCriteriosMascota() && !criterios.incluirMascotasBaja);
        }
        verBajas = peticion_.reducida ? criteriosReducida.incluirClientesBaja : criterios.incluirMascotasBaja;
        if (!hallados.isEmpty() || !conBajasExcluidas) return;
        traza.paso(QStringLiteral("Buscar también los dados de baja"));
        QList<FilaClienteBusqueda> todos;
        if (peticion_.reducida) {
            CriteriosBusquedaReducida c = criteriosReducida;
            c.incluirClientesBaja = true;
            todos = store.buscarReducida(c, limite);
        } else {
            CriteriosBusquedaCliente c = criterios;
            c.incluirClientesBaja = true;
            c.incluirMascotasBaja = true;
            todos = store.buscar(c, limite);
        }
        if (todos.isEmpty()) return;
        if (e_.dialogs().preguntar(kTituloResultadoBusqueda, kPreguntaTodosDeBaja)) {
            hallados = todos;
            verBajas = true;
        }
    });
    if (!hecho) return false;
    verBajas_ = verBajas;
    nota_.clear();
    if (hallados.size() > kMaxFilas) {
        hallados.resize(kMaxFilas);
        nota_ = QStringLiteral("Se muestran sólo los %1 primeros clientes. Añada condiciones para afinar la "
                               "búsqueda.")
                    .arg(kMaxFilas);
    } else if (hallados.isEmpty()) {
        nota_ = QStringLiteral("Ningún cliente cumple las condiciones especificadas.");
    }
    clientes_ = hallados;
    mascotas_.clear();
    seleccionado_ = -1;
    seleccionar(clientes_.isEmpty() ? -1 : 0);
    return true;
}

void ClienteBusquedaForm::seleccionar(int fila) {
    mascotas_.clear();
    seleccionado_ = (fila >= 0 && fila < clientes_.size()) ? fila : -1;
    if (seleccionado_ < 0 || peticion_.reducida) return;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer las mascotas de un Cliente en la ") + kPantalla);
    const qint64 id = clientes_.at(seleccionado_).IdCliente;
    traza.ejecutar([&] { mascotas_ = ClienteBusquedaStore(e_.db()).mascotas(id, verBajas_); });
}

bool ClienteBusquedaForm::aceptar(int filaMascota) {
    if (seleccionado_ < 0) return false;
    const qint64 id = clientes_.at(seleccionado_).IdCliente;
    std::optional<qint64> mascota;
    if (!peticion_.reducida && filaMascota >= 0 && filaMascota < mascotas_.size())
        mascota = mascotas_.at(filaMascota).IdMascota;
    std::optional<ClienteElegido> r;
    CommandTrace traza(e_.dialogs(), QStringLiteral("elegir un Cliente en la ") + kPantalla);
    if (!traza.ejecutar([&] { r = ClienteBusquedaStore(e_.db()).elegido(id, mascota); })) return false;
    if (!r) {
        e_.dialogs().error(QStringLiteral("Error al intentar acceder al Cliente nº: ") + QString::number(id) +
                               QStringLiteral("."),
                           QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede ") +
                               QStringLiteral("que el Cliente haya sido eliminado."));
        clientes_.removeAt(seleccionado_);
        seleccionar(-1);
        return false;
    }
    if (peticion_.reducida) {
        r->claveMascota.reset();
        r->mascota.clear();
        r->indAvisoMascota = false;
        r->NumHospitalizacion.reset();
    }
    elegido_ = r;
    return true;
}

bool ClienteBusquedaForm::nuevoCliente() {
    if (!puedeCrearCliente()) return false;
    ClienteElegido r;
    r.NuevoCliente = true;
    elegido_ = r;
    return true;
}
