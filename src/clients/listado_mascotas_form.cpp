#include "clients/listado_mascotas_form.h"

#include "clients/datos_cartas.h"
#include "core/command_trace.h"
#include "core/formatos.h"

#include <QHash>

void ListadoMascotasForm::setTextoCliente(const QString& texto) {
    textoCliente_ = texto;
    if (cliente_ && texto != nombreElegido_) cliente_.reset();
}

bool ListadoMascotasForm::elegirCliente() {
    if (!e_.buscadores.cliente) return false;
    PeticionCliente peticion;
    peticion.TextoInicial = textoCliente_;
    peticion.Bloquear = true;
    const auto c = e_.buscadores.cliente(peticion);
    if (!c || c->claveCliente == 0) return false;
    cliente_ = c->claveCliente;
    nombreElegido_ = c->Cliente;
    textoCliente_ = c->Cliente;
    return true;
}

QStringList ListadoMascotasForm::cabeceras() {
    return {QStringLiteral("Mascota"),       QStringLiteral("Cliente"),    QStringLiteral("F.Nacim."),
            QStringLiteral("Especie"),       QStringLiteral("Raza"),       QStringLiteral("Sexo"),
            QStringLiteral("Estado"),        QStringLiteral("Ult.Visita"), QStringLiteral("Tipo"),
            QStringLiteral("Plan de salud"), QStringLiteral("Caducidad")};
}

QStringList ListadoMascotasForm::textos(const FilaListadoMascota& f) {
    return {f.Mascota,
            f.Cliente,
            formatoFecha(f.FechaNacimiento),
            f.Especie,
            f.Raza,
            f.Sexo,
            f.Estado,
            formatoFecha(f.UltimaVisita),
            f.Tipo,
            f.PlanSalud,
            formatoFecha(f.Caducidad)};
}

QString ListadoMascotasForm::encabezado() const {
    return QStringLiteral(" Mascotas que cumplen las condiciones (") + formatoEntero(filas_.size()) +
           QStringLiteral(") ");
}

bool ListadoMascotasForm::buscar() {
    if (!textoCliente_.trimmed().isEmpty() && !cliente_) {
        e_.dialogs().avisar(QStringLiteral("Información incompleta"),
                            QStringLiteral("Debe buscar el cliente a través de la lupa para seleccionarlo"));
        return false;
    }
    FiltroMascotas f = filtro;
    f.IdCliente = textoCliente_.trimmed().isEmpty() ? std::nullopt : cliente_;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar Mascotas en el '") + kTituloListadoMascotas +
                                         QLatin1Char('\''));
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Buscar las mascotas"));
        filas_ = MascotaStore(e_.db()).listado(f);
        seleccion.clear();
        hecho = true;
    });
    if (!hecho) return false;
    if (filas_.isEmpty()) {
        e_.dialogs().informar(QStringLiteral("Resultado de la búsqueda"),
                              QStringLiteral("No existen Mascotas que cumplen los filtros especificados"));
        return false;
    }
    return true;
}

std::optional<FilaListadoMascota> ListadoMascotasForm::mascotaActual(int fila) {
    if (fila < 0 || fila >= filas_.size()) {
        e_.dialogs().avisar(QStringLiteral("Aviso"),
                            QStringLiteral("Debe seleccionar previamente una Mascota"));
        return std::nullopt;
    }
    return filas_.at(fila);
}

std::optional<QString>
ListadoMascotasForm::destinatariosCarta(const std::function<bool(AvisoLopdLista&)>& mostrarAviso) {
    QList<DestinatarioLopd> destinatarios;
    QList<int> filas = seleccion;
    std::sort(filas.begin(), filas.end());
    filas.erase(std::unique(filas.begin(), filas.end()), filas.end());
    for (int i : filas) {
        if (i < 0 || i >= filas_.size()) continue;
        const auto& f = filas_.at(i);
        DestinatarioLopd d;
        d.IdCliente = f.IdCliente;
        d.Cliente = f.Cliente;
        d.IdMascota = f.IdMascota;
        d.Mascota = f.Mascota;
        d.LOPD = f.LOPD;
        destinatarios << d;
    }
    if (destinatarios.isEmpty()) {
        e_.dialogs().avisar(
            QStringLiteral("Aviso"),
            QStringLiteral("No ha seleccionado ninguna mascota. Seleccione al menos una mascota "
                           "para emitirle una carta."));
        return std::nullopt;
    }
    AvisoLopdLista aviso(destinatarios, true);
    if (aviso.hayAviso() && (!mostrarAviso || !mostrarAviso(aviso) || aviso.salir)) return std::nullopt;
    QStringList kept;
    for (const auto& d : aviso.aceptar())
        kept << QString::number(d.IdMascota.value_or(0));
    return kept.join(QStringLiteral("¬"));
}

bool ListadoMascotasForm::cartas(const std::function<bool(AvisoLopdLista&)>& mostrarAviso,
                                 DestinoDocumento destino, const QString& ficheroPdf) {
    const auto destinatarios = destinatariosCarta(mostrarAviso);
    if (!destinatarios || destinatarios->isEmpty()) return false;
    QList<DatosDocumento> documentos;
    CommandTrace traza(e_.dialogs(), QStringLiteral("imprimir Cartas en el '") + kTituloListadoMascotas +
                                         QLatin1Char('\''));
    if (!traza.ejecutar([&] {
            traza.paso(QStringLiteral("Leer las mascotas y sus propietarios"));
            CartasStore store(e_.db());
            QHash<qint64, std::optional<ClienteCarta>> propietarios;
            const QDate hoy = e_.reloj().hoy();
            for (const QString& numero : destinatarios->split(QStringLiteral("¬"))) {
                const auto mascota = store.mascota(numero.toLongLong());
                if (!mascota) continue;
                if (!propietarios.contains(mascota->IdCliente))
                    propietarios.insert(mascota->IdCliente, store.cliente(mascota->IdCliente));
                const auto& propietario = propietarios.value(mascota->IdCliente);
                if (propietario) documentos << datosCartaMascota(*mascota, *propietario, hoy);
            }
        }))
        return false;
    if (documentos.isEmpty()) {
        e_.dialogs().avisar(
            QStringLiteral("Aviso"),
            QStringLiteral("No se ha encontrado ninguna de las mascotas seleccionadas. Puede que "
                           "hayan sido eliminadas."));
        return false;
    }
    bool hecho = false;
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Imprimir las Cartas"));
        hecho = ImpresorDocumentos(e_).imprimirVarios(grupos::MASCOTAS, grupos::PROMPT_DOCUMENTO, documentos,
                                                      destino, ficheroPdf);
    });
    return hecho;
}
