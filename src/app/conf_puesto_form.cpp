#include "app/conf_puesto_form.h"

#include "app/instalacion.h"
#include "core/command_trace.h"
#include "core/formatos.h"
#include "core/puerto_serie.h"
#include "data/esquema.h"

#include <QDir>

namespace {
const QString kPantalla = QStringLiteral(" en los 'Datos de la configuración del puesto'");
const QString kTituloAtencion = QStringLiteral("¡Atención!");
const QString kSi = QStringLiteral("SI");
const QString kNo = QStringLiteral("NO");

bool afirmativo(const QString& valor) {
    static const QStringList si = {QStringLiteral("SI"), QStringLiteral("SÍ"), QStringLiteral("S"),
                                   QStringLiteral("1"),  QStringLiteral("-1"), QStringLiteral("TRUE")};
    return si.contains(valor.trimmed().toUpper());
}

QString elegirDe(const QString& valor, const QStringList& lista, const QString& porDefecto) {
    return lista.contains(valor) ? valor : porDefecto;
}

bool contieneClave(const QList<OpcionLista>& lista, const QVariant& clave) {
    for (const auto& o : lista)
        if (o.clave.toString() == clave.toString()) return true;
    return false;
}

QString textoNoEncontrado(bool esCliente, qint64 numero) {
    const QString n = QString::number(numero);
    if (esCliente)
        return QStringLiteral("Error al intentar acceder al cliente numero ") + n + QStringLiteral(".") +
               QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede ") +
               QStringLiteral("que el cliente haya sido eliminado.");
    return QStringLiteral("Error al intentar acceder al artículo número ") + n + QStringLiteral(".") +
           QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede ") +
           QStringLiteral("que el artículo haya sido eliminado.");
}

std::optional<qint64> numeroElegido(const QString& texto, bool buscado) {
    if (!buscado || texto.trimmed().isEmpty()) return std::nullopt;
    bool ok = false;
    const qint64 n = texto.trimmed().toLongLong(&ok);
    return ok ? std::optional<qint64>(n) : std::nullopt;
}
} // namespace

ConfPuestoForm::ConfPuestoForm(Entorno& entorno)
    : e_(entorno), tablaClientes_(descriptorTabla(QStringLiteral("Clientes"))),
      tablaArticulos_(descriptorTabla(QStringLiteral("Articulos"))),
      tablaEspecies_(descriptorTabla(QStringLiteral("Especies"))) {
    impresora = impresoraPorDefecto();
}

QStringList ConfPuestoForm::puertos() {
    QStringList l;
    for (int i = 1; i <= 16; ++i)
        l << QStringLiteral("COM%1").arg(i);
    return l;
}

QStringList ConfPuestoForm::velocidades() {
    return {QStringLiteral("110"),    QStringLiteral("300"),    QStringLiteral("600"),
            QStringLiteral("1200"),   QStringLiteral("2400"),   QStringLiteral("4800"),
            QStringLiteral("9600"),   QStringLiteral("14400"),  QStringLiteral("19200"),
            QStringLiteral("38400"),  QStringLiteral("56000"),  QStringLiteral("57600"),
            QStringLiteral("115200"), QStringLiteral("128000"), QStringLiteral("256000")};
}

QStringList ConfPuestoForm::paridades() {
    return {QStringLiteral("PAR (E)"), QStringLiteral("MARCA (M)"), QStringLiteral("NINGUNO (N)"),
            QStringLiteral("IMPAR (O)"), QStringLiteral("ESPACIO (S)")};
}

QStringList ConfPuestoForm::bitsDatos() {
    return {QStringLiteral("4"), QStringLiteral("5"), QStringLiteral("6"), QStringLiteral("7"),
            QStringLiteral("8")};
}

QStringList ConfPuestoForm::bitsParada() {
    return {QStringLiteral("1"), QStringLiteral("1.5"), QStringLiteral("2")};
}

QStringList ConfPuestoForm::tarifas() {
    return {QStringLiteral("TARIFA 1"), QStringLiteral("TARIFA 2"), QStringLiteral("TARIFA 3")};
}

ImpresoraTickets ConfPuestoForm::impresoraPorDefecto() {
    ImpresoraTickets t;
    t.TIPO = kSinImpresora;
    t.PUERTO = QStringLiteral("COM1");
    t.VELOCIDAD = QStringLiteral("9600");
    t.PARIDAD = QStringLiteral("NINGUNO (N)");
    t.BITSDATOS = QStringLiteral("8");
    t.BITSPARADA = QStringLiteral("1");
    t.NUMPASADAS = QStringLiteral("1");
    t.CORTEPAPEL = kNo;
    return t;
}

QList<OpcionLista> ConfPuestoForm::opciones(const DescriptorTabla* tabla) {
    return ConfPuestoStore(e_.db()).opciones(tabla);
}

std::optional<ConfiguracionPuesto> leerConfiguracionPuesto(Entorno& e) {
    if (!e.hayBaseDatos()) return std::nullopt;
    try {
        return ConfPuestoStore(e.db()).cargar(e.puesto);
    } catch (const ErrorBD& err) {
        e.dialogs().error(QStringLiteral("Pramelvix"), err.mensaje());
        return std::nullopt;
    }
}

QStringList ConfPuestoForm::impresorasSistema() const {
    QStringList l = impresorasSistema_;
    const QString actual = impresora.IMPRESORA.trimmed();
    if (!actual.isEmpty() && !l.contains(actual)) l.prepend(actual);
    return l;
}

QString ConfPuestoForm::rutaIni() const {
    return QDir(e_.carpetaPrograma).filePath(kFicheroConfiguracion.toString());
}

void ConfPuestoForm::normalizarImpresora() {
    const ImpresoraTickets d = impresoraPorDefecto();
    ImpresoraTickets& i = impresora;
    i.TIPO = elegirDe(i.TIPO.trimmed(), {kSinImpresora, kImpresoraSistema, kImpresoraSerie}, d.TIPO);
    i.IMPRESORA = i.IMPRESORA.trimmed();
    const QString puerto = puertoSerieNormalizado(i.PUERTO);
    i.PUERTO = puerto.isEmpty() ? d.PUERTO : puerto;
    i.VELOCIDAD = elegirDe(i.VELOCIDAD.trimmed(), velocidades(), d.VELOCIDAD);
    i.PARIDAD = elegirDe(i.PARIDAD.trimmed(), paridades(), d.PARIDAD);
    i.BITSDATOS = elegirDe(i.BITSDATOS.trimmed(), bitsDatos(), d.BITSDATOS);
    i.BITSPARADA = elegirDe(i.BITSPARADA.trimmed(), bitsParada(), d.BITSPARADA);
    bool ok = false;
    const int pasadas = i.NUMPASADAS.trimmed().toInt(&ok);
    i.NUMPASADAS = ok && pasadas >= 1 && pasadas <= kMaxPasadas ? QString::number(pasadas) : d.NUMPASADAS;
    i.CORTEPAPEL = afirmativo(i.CORTEPAPEL) ? kSi : kNo;
}

void ConfPuestoForm::escribir(Elegido& e, const QString& texto) {
    if (texto == e.texto) return;
    e.texto = texto;
    e.nombre.clear();
    e.buscado = texto.trimmed().isEmpty();
}

bool ConfPuestoForm::elegir(Elegido& e, const DescriptorTabla* tabla, qint64 numero, bool esCliente) {
    if (!tabla) return false;
    const auto nombre = ConfPuestoStore(e_.db()).textoRegistro(*tabla, numero);
    if (!nombre) {
        e_.dialogs().avisar(kTituloAtencion, textoNoEncontrado(esCliente, numero));
        e = Elegido{};
        return false;
    }
    e.texto = QString::number(numero);
    e.nombre = *nombre;
    e.buscado = true;
    return true;
}

bool ConfPuestoForm::elegirCliente(qint64 numero) {
    bool elegido = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("elegir el Cliente por defecto") + kPantalla);
    traza.ejecutar([&] { elegido = elegir(cliente_, tablaClientes_, numero, true); });
    return elegido;
}

bool ConfPuestoForm::elegirArticulo(qint64 numero) {
    bool elegido = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("elegir el Artículo por defecto") + kPantalla);
    traza.ejecutar([&] { elegido = elegir(articulo_, tablaArticulos_, numero, false); });
    return elegido;
}

bool ConfPuestoForm::cargar() {
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar la Configuración del puesto") + kPantalla);
    return traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer la impresora de tickets de 'PRAMELVIX.INI'"));
        const auto ini = leerConfiguracionPuesto(e_.carpetaPrograma, e_.dialogs());
        impresora = ini ? ImpresoraTickets::desdeIni(*ini) : e_.impresoraTickets;
        normalizarImpresora();

        traza.paso(QStringLiteral("Leer las opciones"));
        ConfPuestoStore store(e_.db());
        seriesVenta_ = store.series(kSerieVenta);
        seriesAbono_ = store.series(kSerieAbono);

        traza.paso(QStringLiteral("Leer los valores por defecto del puesto ") + e_.puesto);
        const ConfiguracionPuesto c = store.cargar(e_.puesto);
        versionFila_ = c.versionFila;
        especies_ = store.opciones(tablaEspecies_, c.IdEspecie ? QVariant(*c.IdEspecie) : QVariant());
        serieVenta = contieneClave(seriesVenta_, c.SerieVenta) ? c.SerieVenta : QString();
        serieAbono = contieneClave(seriesAbono_, c.SerieAbono) ? c.SerieAbono : QString();
        tarifa = tarifas().contains(c.Tarifa) ? c.Tarifa : QString();
        especie = c.IdEspecie && contieneClave(especies_, *c.IdEspecie) ? QVariant(*c.IdEspecie) : QVariant();
        fechaInicial = formatoFecha(c.FechaInicial);
        autoGuardado = c.AutoGuardado;
        horaCopia = formatoHora(c.HoraCopia);

        cliente_ = Elegido{};
        articulo_ = Elegido{};
        if (c.IdCliente) {
            traza.paso(QStringLiteral("Leer el cliente por defecto"));
            if (tablaClientes_)
                elegir(cliente_, tablaClientes_, *c.IdCliente, true);
            else
                cliente_.texto = QString::number(*c.IdCliente);
        }
        if (c.IdArticulo) {
            traza.paso(QStringLiteral("Leer el artículo por defecto"));
            if (tablaArticulos_)
                elegir(articulo_, tablaArticulos_, *c.IdArticulo, false);
            else
                articulo_.texto = QString::number(*c.IdArticulo);
        }
        foco_ = Campo::Impresora;
    });
}

bool ConfPuestoForm::rechazar(const QString& texto, Campo campo) {
    e_.dialogs().avisar(kTituloAtencion, texto);
    foco_ = campo;
    return false;
}

bool ConfPuestoForm::comprobar() {
    const ImpresoraTickets& i = impresora;
    if (i.TIPO == kImpresoraSistema && i.IMPRESORA.trimmed().isEmpty())
        return rechazar(
            QStringLiteral(" Seleccione una impresora de Tickets de Windows o marque la opción 'Sin "
                           "impresora de tickets'."),
            Campo::Impresora);
    if (serieVenta.isEmpty())
        return rechazar(
            QStringLiteral("Debe especificar una serie de Venta para los albaranes en la Configuración de "
                           "Apartados."),
            Campo::SerieVenta);
    if (tarifa.isEmpty())
        return rechazar(
            QStringLiteral("Debe especificar la Tarifa general por defecto para la creación de Clientes en "
                           "la Configuración de Apartados."),
            Campo::Tarifa);
    if (serieAbono.isEmpty())
        return rechazar(
            QStringLiteral("Debe especificar una serie de Abono para las devoluciones en la Configuración "
                           "de Apartados."),
            Campo::SerieAbono);
    if (!cliente_.buscado)
        return rechazar(QStringLiteral("Debe buscar el cliente a través de la lupa para seleccionarlo."),
                        Campo::Cliente);
    if (!articulo_.buscado)
        return rechazar(QStringLiteral("Debe buscar el artículo a través de la lupa para seleccionarlo."),
                        Campo::Articulo);

    if (!contieneClave(seriesVenta_, serieVenta))
        return rechazar(QStringLiteral("La serie '") + serieVenta +
                            QStringLiteral("' no es una serie de Venta."),
                        Campo::SerieVenta);
    if (!contieneClave(seriesAbono_, serieAbono))
        return rechazar(QStringLiteral("La serie '") + serieAbono +
                            QStringLiteral("' no es una serie de Abono."),
                        Campo::SerieAbono);
    if (!especie.isNull() && !contieneClave(especies_, especie))
        return rechazar(QStringLiteral("Elija la especie por defecto de la lista."), Campo::Especie);
    if (!tarifas().contains(tarifa))
        return rechazar(QStringLiteral("La tarifa debe ser 'TARIFA 1', 'TARIFA 2' o 'TARIFA 3'."),
                        Campo::Tarifa);
    if (i.TIPO != kSinImpresora && i.TIPO != kImpresoraSistema && i.TIPO != kImpresoraSerie)
        return rechazar(QStringLiteral("Elija el tipo de impresora de tickets."), Campo::Impresora);
    if (i.TIPO == kImpresoraSerie) {
        if (dispositivoSerie(i.PUERTO).isEmpty())
            return rechazar(
                QStringLiteral("El puerto de la impresora de tickets debe ser de COM1 a COM16 o un "
                               "dispositivo como /dev/ttyUSB0."),
                Campo::Puerto);
        if (!velocidades().contains(i.VELOCIDAD) || !paridades().contains(i.PARIDAD) ||
            !bitsDatos().contains(i.BITSDATOS) || !bitsParada().contains(i.BITSPARADA))
            return rechazar(
                QStringLiteral("Elija la velocidad, la paridad, los bits de datos y los bits de parada de "
                               "la impresora de tickets."),
                Campo::Puerto);
    }
    bool ok = false;
    const int pasadas = i.NUMPASADAS.trimmed().toInt(&ok);
    if (!ok || pasadas < 1 || pasadas > kMaxPasadas)
        return rechazar(
            QStringLiteral("El número de pasadas de la impresora de tickets debe estar entre 1 y %1.")
                .arg(kMaxPasadas),
            Campo::NumPasadas);
    if (!fechaInicial.trimmed().isEmpty() && !leerFecha(fechaInicial))
        return rechazar(QStringLiteral("La fecha inicial no es correcta. Escríbala como dd/mm/aaaa."),
                        Campo::FechaInicial);
    if (autoGuardado < 0 || autoGuardado > kMaxAutoGuardado)
        return rechazar(QStringLiteral("El intervalo del autoguardado debe estar entre 0 y %1 minutos (0 lo "
                                       "desactiva).")
                            .arg(kMaxAutoGuardado),
                        Campo::AutoGuardado);
    if (!horaCopia.trimmed().isEmpty() && !leerHora(horaCopia))
        return rechazar(
            QStringLiteral("La hora de la copia automática no es correcta. Escríbala como hh:mm, o déjela "
                           "en blanco para no hacer copia automática."),
            Campo::HoraCopia);
    return true;
}

bool ConfPuestoForm::escribirIni() {
    auto ini = leerConfiguracionPuesto(e_.carpetaPrograma, e_.dialogs());
    if (!ini) return false;
    const QString& s = ini::IMPRESORA_TICKETS;
    const ImpresoraTickets& i = impresora;
    const QList<std::pair<QString, QString>> valores = {
        {QStringLiteral("TIPO"), i.TIPO},
        {QStringLiteral("IMPRESORA"), i.IMPRESORA.trimmed()},
        {QStringLiteral("PUERTO"),
         puertoSerieNormalizado(i.PUERTO).isEmpty() ? i.PUERTO.trimmed() : puertoSerieNormalizado(i.PUERTO)},
        {QStringLiteral("VELOCIDAD"), i.VELOCIDAD},
        {QStringLiteral("PARIDAD"), i.PARIDAD},
        {QStringLiteral("BITSDATOS"), i.BITSDATOS},
        {QStringLiteral("BITSPARADA"), i.BITSPARADA},
        {QStringLiteral("NUMPASADAS"), i.NUMPASADAS.trimmed()},
        {QStringLiteral("CORTEPAPEL"), afirmativo(i.CORTEPAPEL) ? kSi : kNo}};
    for (const auto& [clave, valor] : valores) {
        if (!ini->setValor(s, clave, valor)) {
            e_.dialogs().error(kTituloAtencion,
                               QStringLiteral("El valor de ") + clave +
                                   QStringLiteral(" no se puede escribir en 'PRAMELVIX.INI'."));
            return false;
        }
    }
    if (!ini->guardar()) {
        e_.dialogs().error(
            kTituloAtencion,
            QStringLiteral("No se ha podido guardar el fichero de configuración 'PRAMELVIX.INI': ") +
                ini->error());
        return false;
    }
    e_.impresoraTickets = ImpresoraTickets::desdeIni(*ini);
    return true;
}

bool ConfPuestoForm::guardar() {
    bool guardado = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar la Configuración del puesto") + kPantalla);
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Comprobar los campos"));
        if (!comprobar()) return;
        ConfiguracionPuesto c;
        c.Puesto = e_.puesto;
        c.SerieVenta = serieVenta;
        c.SerieAbono = serieAbono;
        c.Tarifa = tarifa;
        if (!especie.isNull()) c.IdEspecie = especie.toLongLong();
        c.IdCliente = numeroElegido(cliente_.texto, cliente_.buscado);
        c.IdArticulo = numeroElegido(articulo_.texto, articulo_.buscado);
        if (const auto f = leerFecha(fechaInicial)) c.FechaInicial = *f;
        c.AutoGuardado = autoGuardado;
        if (const auto h = leerHora(horaCopia)) c.HoraCopia = *h;
        c.versionFila = versionFila_;

        // The file first: its failure is told with no transaction open.
        traza.paso(QStringLiteral("Escribir la impresora de tickets en 'PRAMELVIX.INI'"));
        if (!escribirIni()) return;
        Transaction tx = e_.db().transaccion();
        traza.paso(QStringLiteral("Guardar los valores por defecto del puesto ") + e_.puesto);
        const qint64 version = ConfPuestoStore(e_.db()).guardar(c);
        tx.commit();
        versionFila_ = version;
        guardado = true;
    });
    return guardado;
}
