#include "clients/cliente_form.h"

#include "app/ficha_form.h"
#include "app/guardado_registro.h"
#include "app/login_form.h"
#include "clients/aviso_lopd.h"
#include "clients/cartas_store.h"
#include "clients/cliente_store.h"
#include "clients/datos_cartas.h"
#include "clients/subcuenta.h"
#include "core/command_trace.h"
#include "core/formatos.h"
#include "data/esquema.h"

namespace {
const QString kEnPantalla = QStringLiteral(" en el 'Mantenimiento de Clientes'");
const QStringList kSaldos = {QStringLiteral("Deuda"), QStringLiteral("EntregadoCuenta"),
                             QStringLiteral("DevolucionesPendientes"), QStringLiteral("FechaUltimoCobro")};
const QStringList kFichaComercial = {QStringLiteral("Tarifa"), QStringLiteral("DtoGeneral")};

bool editable(const DescriptorColumna& c) {
    return c.tipo != TipoColumna::Autonumerico && !c.interna && !kSaldos.contains(c.nombre);
}

QString sinFra(const QString& columna) {
    return columna.startsWith(QStringLiteral("Fra")) ? columna.mid(3) : columna;
}
} // namespace

ClienteForm::ClienteForm(Entorno& entorno)
    : FormularioRegistro(entorno, ClienteStore::tabla()), condiciones_(entorno, DuenoCondiciones::Cliente) {
    condiciones_.antesDeCambiar = [this] {
        if (!bloquear()) return false;
        modificado_ = true;
        return true;
    };
    nuevo();
}

QStringList ClienteForm::columnasEditables() const {
    QStringList l;
    for (const auto& c : ClienteStore::tabla().columnaS)
        if (editable(c)) l << c.nombre;
    return l;
}

QString ClienteForm::preguntaAbandonar() const {
    return QStringLiteral("Las modificaciones realizadas a este Cliente no han sido guardadas. "
                          "¿Desea perder los cambios efectuados?");
}

void ClienteForm::alCambiar(const QString& columna) {
    if (kFichaComercial.contains(columna)) fichaComercial_ = true;
}

void ClienteForm::mostrar(const Registro& r) {
    mostrarRegistro(r);
    nombreGuardado_ = r.texto(QStringLiteral("Nombre")).trimmed();
    fichaComercial_ = false;
}

void ClienteForm::nuevo() {
    Registro registro(ClienteStore::tabla());
    empezarNuevo(registro);
    registro.setValor(QStringLiteral("FechaAlta"), e_.reloj().hoy());
    registro.setValor(QStringLiteral("LOPD"), QStringLiteral("0"));
    CommandTrace traza(e_.dialogs(), QStringLiteral("preparar un Cliente nuevo") + kEnPantalla);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer la tarifa general por defecto del puesto"));
        const QString tarifa = ConfPuestoStore(e_.db()).cargar(e_.puesto).Tarifa;
        if (!tarifa.isEmpty()) registro.setValor(QStringLiteral("Tarifa"), tarifa);
    });
    condiciones_.cargar(std::nullopt);
    mostrar(registro);
}

bool ClienteForm::cargar(qint64 idCliente) {
    if (!ocupar(idCliente)) return false;
    std::optional<Registro> leido;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar un Cliente") + kEnPantalla);
    const bool ok = traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer el Cliente"));
        leido = ClienteStore(e_.db()).cargar(idCliente);
        if (!leido) return;
        traza.paso(QStringLiteral("Leer la Ficha Comercial"));
        condiciones_.cargar(idCliente);
    });
    if (!ok || !leido) {
        // The record shown stays, with its own conditions (a failure may have left the list
        // half read).
        e_.editores.soltar(this);
        if (id_) ocupar(*id_);
        CommandTrace volver(e_.dialogs(), QStringLiteral("volver a leer las condiciones") + kEnPantalla);
        volver.ejecutar([&] { condiciones_.cargar(id_); });
    }
    if (!ok) return false;
    if (!leido) {
        e_.dialogs().error(QStringLiteral("Error al intentar acceder al Cliente nº: ") +
                               QString::number(idCliente) + QLatin1Char('.'),
                           QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede ") +
                               QStringLiteral("que el Cliente haya sido eliminado."));
        return false;
    }
    bloqueo_.liberar();
    id_ = idCliente;
    mostrar(*leido);
    return true;
}

QString ClienteForm::titulo() const {
    if (!id_) return kPantallaClientes + QStringLiteral(" - (Nuevo cliente)");
    return kPantallaClientes + QStringLiteral(" - ") + QString::number(*id_) + QStringLiteral(" - ") +
           nombreGuardado_;
}

QString ClienteForm::saldo(const QString& columna) const {
    const QVariant v = registro_.valor(columna);
    if (columna == QStringLiteral("FechaUltimoCobro")) return formatoFecha(v.toDate());
    return formatoImporte(v.isNull() ? 0.0 : v.toDouble());
}

bool ClienteForm::fichaComercialModificada() const {
    return fichaComercial_ || condiciones_.modificada();
}

QString ClienteForm::tablaParametro(const QString& columna) {
    const QString c = sinFra(columna);
    if (c == QStringLiteral("Poblacion")) return QStringLiteral("Poblaciones");
    if (c == QStringLiteral("CodigoPostal")) return QStringLiteral("CodigosPostales");
    if (c == QStringLiteral("Provincia")) return QStringLiteral("Provincias");
    if (c == QStringLiteral("IdTipoCliente")) return QStringLiteral("TiposCliente");
    if (c == QStringLiteral("CodigoIdioma")) return QStringLiteral("Idiomas");
    if (c == QStringLiteral("IdFormaContacto")) return QStringLiteral("FormasContacto");
    return {};
}

QStringList ClienteForm::valoresLista(const QString& columna) {
    const DescriptorColumna* c = ClienteStore::tabla().columna(columna);
    if (!c || !c->esLista()) return {};
    QStringList l = c->ValorExternoS;
    if (columna != QStringLiteral("LOPD")) l.prepend(QString());
    return l;
}

QList<OpcionLista> ClienteForm::opciones(const QString& columna) {
    const QString tabla = tablaParametro(columna);
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t) return {};
    QList<OpcionLista> l;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer la lista de ") + t->descTabla + kEnPantalla);
    traza.ejecutar([&] {
        ConfPuestoStore store(e_.db());
        const QString c = sinFra(columna);
        if (c == QStringLiteral("CodigoPostal")) {
            QStringList vistos;
            for (const auto& r : RegistroStore(e_.db()).buscar(*t, {}, {QStringLiteral("CodigoPostal")})) {
                const QString cp = r.texto(QStringLiteral("CodigoPostal"));
                if (vistos.contains(cp)) continue;
                vistos << cp;
                l << OpcionLista{cp, cp};
            }
        } else if (c == QStringLiteral("Poblacion") || c == QStringLiteral("Provincia")) {
            for (const auto& o : store.opciones(t))
                l << OpcionLista{o.texto, o.texto};
        } else {
            QVariant actual;
            if (!texto(columna).isEmpty()) actual = texto(columna);
            l = store.opciones(t, actual);
        }
    });
    return l;
}

bool ClienteForm::guardar() {
    foco.clear();
    const QString tituloFecha = QStringLiteral("Error en fecha");
    if (!texto(QStringLiteral("FechaAlta")).trimmed().isEmpty() &&
        !leerFecha(texto(QStringLiteral("FechaAlta"))))
        return fallo(Icono::Exclamacion, tituloFecha,
                     QStringLiteral("La fecha de Alta introducida no es válida."),
                     QStringLiteral("FechaAlta"));
    if (!texto(QStringLiteral("FechaBaja")).trimmed().isEmpty() &&
        !leerFecha(texto(QStringLiteral("FechaBaja"))))
        return fallo(Icono::Exclamacion, tituloFecha,
                     QStringLiteral("La fecha de Baja introducida no es válida."),
                     QStringLiteral("FechaBaja"));
    if (!texto(QStringLiteral("FechaMandato")).trimmed().isEmpty() &&
        !leerFecha(texto(QStringLiteral("FechaMandato"))))
        return fallo(Icono::Exclamacion, tituloFecha,
                     QStringLiteral("La fecha del Mandato introducida no es válida."),
                     QStringLiteral("FechaMandato"));

    const QString nombre = texto(QStringLiteral("Nombre")).trimmed();
    if (id_ && nombre != nombreGuardado_ &&
        !e_.dialogs().preguntar(
            Icono::Pregunta, QStringLiteral("Atención"),
            QStringLiteral("Ha cambiado el nombre de este cliente. ¿Confirma que desea guardar "
                           "esta modificación?")))
        return false;

    if (texto(QStringLiteral("Facebook")).toUpper().contains(QStringLiteral("FACEBOOK")))
        return fallo(
            Icono::Exclamacion, kTituloAtencion,
            QStringLiteral("Escriba únicamente el nombre del perfil en el campo Facebook. No incluya la "
                           "dirección de la página web (por ejemplo «www.facebook.com/...»): basta con el "
                           "nombre que aparece al final de esa dirección."),
            QStringLiteral("Facebook"));

    textos_.insert(QStringLiteral("Subcuenta"), texto(QStringLiteral("Subcuenta")).trimmed());
    if (const auto m = comprobarSubcuenta(texto(QStringLiteral("Subcuenta")), kPrefijoSubcuentaCliente,
                                          kSujetoSubcuentaCliente, false))
        return fallo(Icono::Critico, kTituloAtencion, *m, QStringLiteral("Subcuenta"));

    const QString via = texto(QStringLiteral("ViaComunicacion"));
    const QString movil = texto(QStringLiteral("Movil")).trimmed();
    if (nombre.isEmpty())
        return fallo(Icono::Exclamacion, kTituloObligatorios,
                     QStringLiteral("Debe informar el nombre del cliente."), QStringLiteral("Nombre"));
    if (texto(QStringLiteral("Tarifa")).trimmed().isEmpty())
        return fallo(
            Icono::Exclamacion, kTituloObligatorios,
            QStringLiteral("Debe informar la tarifa general a aplicar al cliente en la Ficha comercial."),
            QStringLiteral("Tarifa"));
    if (via == QStringLiteral("SMS") && movil.isEmpty())
        return fallo(Icono::Exclamacion, kTituloObligatorios,
                     QStringLiteral("Debe informar el número de teléfono móvil al que se enviarán los SMS."),
                     QStringLiteral("Movil"));
    if (via == QStringLiteral("SMS") && movil.size() != 9)
        return fallo(Icono::Exclamacion, kTituloObligatorios,
                     QStringLiteral("El número de teléfono móvil está mal informado o es erróneo."),
                     QStringLiteral("Movil"));
    if (via == QStringLiteral("E-Mail") && texto(QStringLiteral("EMail")).trimmed().isEmpty())
        return fallo(
            Icono::Exclamacion, kTituloObligatorios,
            QStringLiteral("Debe informar la dirección de E-Mail a la que se enviarán los Recordatorios."),
            QStringLiteral("EMail"));

    bool empresaExtranjero = texto(QStringLiteral("EmpresaExtranjero")) == QStringLiteral("Sí");
    std::optional<qint64> ivaCero;
    if (empresaExtranjero) {
        bool leido = false;
        CommandTrace traza(e_.dialogs(), QStringLiteral("guardar un Cliente") + kEnPantalla);
        traza.ejecutar([&] {
            traza.paso(QStringLiteral("Buscar un tipo de I.V.A. del 0%"));
            ivaCero = ClienteStore(e_.db()).tipoIvaCero();
            leido = true;
        });
        if (!leido) return false;
        if (!ivaCero)
            return fallo(
                Icono::Exclamacion, QStringLiteral("Información necesaria inexistente"),
                QStringLiteral("Ha marcado la opción 'El cliente es una Empresa con residencia en el "
                               "extranjero' pero no tiene creado un tipo de IVA a 0%. Añada un nuevo tipo de "
                               "IVA con valor 0 para poder usar esta funcionalidad."),
                QStringLiteral("EmpresaExtranjero"));
    }

    // Every other typed value must be valid for its column.
    auto leido = leerTextos();
    if (!leido) return false;
    Registro r = *leido;
    r.setValor(QStringLiteral("Nombre"), nombre);
    r.setValor(QStringLiteral("DNI"), texto(QStringLiteral("DNI")).trimmed());
    if (empresaExtranjero && r.valor(QStringLiteral("IdTipoIVA")).isNull())
        r.setValor(QStringLiteral("IdTipoIVA"), static_cast<qlonglong>(*ivaCero));

    const bool eraNuevo = !id_;
    const bool avisarFicha = !eraNuevo && fichaComercialModificada();
    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar un Cliente") + kEnPantalla);
    const ResultadoGuardado resultado = escribir(traza, r, [&] {
        ClienteStore store(e_.db());
        if (eraNuevo) {
            traza.paso(QStringLiteral("Crear el Cliente"));
            store.crear(r);
        } else {
            traza.paso(QStringLiteral("Actualizar el Cliente"));
            store.actualizar(r);
        }
        traza.paso(QStringLiteral("Guardar la Ficha Comercial"));
        condiciones_.guardar(r.valor(QStringLiteral("IdCliente")).toLongLong());
    });
    if (resultado == ResultadoGuardado::Recargar) {
        const qint64 id = *id_;
        modificado_ = false;
        cargar(id);
        return false;
    }
    if (resultado != ResultadoGuardado::Guardado) return false;
    guardado(r, r.valor(QStringLiteral("IdCliente")).toLongLong());
    nombreGuardado_ = r.texto(QStringLiteral("Nombre")).trimmed();
    fichaComercial_ = false;
    if (avisarFicha)
        e_.dialogs().informar(
            QStringLiteral("Aviso"),
            QStringLiteral("Los cambios efectuados en la Ficha Comercial de este cliente tendrán "
                           "efecto a partir del siguiente Albarán"));
    return true;
}

bool ClienteForm::eliminar() {
    if (!id_) return false;
    const qint64 id = *id_;
    bool tieneMascotas = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("eliminar un Cliente") + kEnPantalla);
    auto contar = [&] {
        traza.paso(QStringLiteral("Contar las Mascotas del Cliente"));
        tieneMascotas = ClienteStore(e_.db()).contarMascotas(id) > 0;
    };
    if (!traza.ejecutar(contar)) return false;
    const QString refusal =
        QStringLiteral("No se puede eliminar este Cliente porque tiene Mascotas. Elimínelas "
                       "antes o páselas a otro propietario.");
    if (tieneMascotas) return fallo(Icono::Exclamacion, kTituloAtencion, refusal, QString());
    if (!bloqueo_.tomar(registro_.descriptor(), QString::number(id), nombreGuardado_, AccionBloqueo::Baja))
        return false;
    if (!e_.dialogs().preguntar(Icono::Pregunta, kTituloAtencion,
                                QStringLiteral("¿Desea realmente eliminar este Cliente?"))) {
        if (!modificado_) bloqueo_.liberar();
        return false;
    }
    std::optional<ClienteStore::Baja> baja;
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Eliminar el Cliente y su Ficha Comercial"));
        baja = ClienteStore(e_.db()).eliminar(id);
    });
    if (baja == ClienteStore::Baja::TieneMascotas) return fallo(Icono::Exclamacion, kTituloAtencion, refusal, QString());
    if (baja == ClienteStore::Baja::Referido)
        return fallo(Icono::Exclamacion, kTituloAtencion,
                     QStringLiteral("No se puede eliminar este Cliente porque tiene Mascotas, Albaranes u otros "
                                    "registros que dependen de él."),
                     QString());
    if (!baja) return false; // the database failure was shown; a client gone meanwhile is gone

    nuevo();
    return true;
}

bool ClienteForm::mascotas() {
    if (!id_) {
        e_.dialogs().avisar(QStringLiteral("Mascotas"),
                            QStringLiteral("Debe seleccionar primero un Cliente."));
        return false;
    }
    if (!abrirMascotas) return false;
    abrirMascotas(*id_);
    return true;
}

bool ClienteForm::cartas(DestinoDocumento destino, const QString& ficheroPdf) {
    const QString titulo = QStringLiteral("Cartas");
    if (!id_) {
        e_.dialogs().avisar(titulo, QStringLiteral("Debe seleccionar primero un Cliente."));
        return false;
    }
    if (modificado_) {

        e_.dialogs().avisar(titulo, QStringLiteral("Guarde antes los cambios realizados a este Cliente."));
        return false;
    }
    const qint64 id = *id_;
    std::optional<ClienteCarta> cliente;
    CommandTrace traza(e_.dialogs(), QStringLiteral("imprimir una Carta") + kEnPantalla);
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Leer los datos del Cliente"));
            cliente = CartasStore(e_.db()).cliente(id);
        }))
        return false;
    if (!cliente) {
        e_.dialogs().error(QStringLiteral("Error al intentar acceder al Cliente nº: ") + QString::number(id) +
                               QLatin1Char('.'),
                           QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede ") +
                               QStringLiteral("que el Cliente haya sido eliminado."));
        return false;
    }
    if (cliente->LOPD == kLopdNoConsiente && !avisoLopd(e_.dialogs(), cliente->Nombre, true)) return false;
    bool hecho = false;
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Imprimir la Carta"));
        hecho = ImpresorDocumentos(e_).imprimir(grupos::CLIENTES, grupos::PROMPT_DOCUMENTO,
                                                datosCartaCliente(*cliente, e_.reloj().hoy()), destino,
                                                ficheroPdf);
    });
    return hecho;
}

bool ClienteForm::buscar() {
    if (!e_.buscadores.cliente || !puedeAbandonar()) return false;
    const auto elegido = e_.buscadores.cliente(PeticionCliente{});
    if (!elegido) return false;
    if (elegido->NuevoCliente) {
        nuevo();
        return true;
    }
    return cargar(elegido->claveCliente);
}

