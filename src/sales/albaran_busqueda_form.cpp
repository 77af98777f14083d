#include "sales/albaran_busqueda_form.h"

#include "core/command_trace.h"
#include "core/formatos.h"

#include <QRegularExpression>

namespace {
const QString kPantalla = QStringLiteral("'Búsqueda de Albaranes'");
const QString kTituloErrorFecha = QStringLiteral("Error en fecha");
} // namespace

AlbaranBusquedaForm::AlbaranBusquedaForm(Entorno& entorno, std::optional<qint64> idCliente)
    : e_(entorno), clienteFijo_(idCliente) {
    if (!clienteFijo_) return;
    std::optional<QString> nombre;
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer el Cliente en la ") + kPantalla);
    if (!traza.ejecutar([&] { nombre = AlbaranBusquedaStore(e_.db()).nombreCliente(*clienteFijo_); })) return;
    if (nombre) {
        nombreClienteFijo_ = *nombre;
        return;
    }
    e_.dialogs().error(QStringLiteral("Error al intentar acceder al Cliente nº: ") +
                           QString::number(*clienteFijo_) + QStringLiteral("."),
                       QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede ") +
                           QStringLiteral("que el Cliente haya sido eliminado."));
}

QStringList AlbaranBusquedaForm::columnas() {
    return {QStringLiteral("Serie"),     QStringLiteral("Nº Albarán"), QStringLiteral("Fecha"),
            QStringLiteral("Cliente"),   QStringLiteral("Mascota"),    QStringLiteral("Total"),
            QStringLiteral("Pendiente"), QStringLiteral("Factura")};
}

QStringList AlbaranBusquedaForm::estados() {
    return {QStringLiteral("Todos"), QStringLiteral("Pendientes de facturar"), QStringLiteral("Facturados"),
            QStringLiteral("Pendientes de cobro"), QStringLiteral("Cobrados")};
}

QList<SerieVenta> AlbaranBusquedaForm::series() {
    QList<SerieVenta> r{{QString(), QStringLiteral("(Todas)")}};
    CommandTrace traza(e_.dialogs(), QStringLiteral("leer las series de venta en la ") + kPantalla);
    traza.ejecutar([&] { r += AlbaranBusquedaStore(e_.db()).seriesVenta(); });
    return r;
}

bool AlbaranBusquedaForm::buscar() {
    CriteriosBusquedaAlbaran c;
    c.serie = serie.trimmed();
    const QString n = numAlbaran.trimmed();
    if (!n.isEmpty()) {
        static const QRegularExpression digitos(QStringLiteral("^[0-9]{1,18}$"));
        if (!digitos.match(n).hasMatch()) {
            e_.dialogs().avisar(QStringLiteral("Información introducida errónea"),
                                QStringLiteral("El número de albarán introducido no es válido."));
            return false;
        }
        c.numAlbaran = n.toLongLong();
    }
    if (!desde.trimmed().isEmpty()) {
        c.desde = leerFecha(desde);
        if (!c.desde) {
            e_.dialogs().avisar(kTituloErrorFecha,
                                QStringLiteral("La fecha inicial introducida no es válida."));
            return false;
        }
    }
    if (!hasta.trimmed().isEmpty()) {
        c.hasta = leerFecha(hasta);
        if (!c.hasta) {
            e_.dialogs().avisar(kTituloErrorFecha,
                                QStringLiteral("La fecha final introducida no es válida."));
            return false;
        }
    }
    if (c.desde && c.hasta && *c.desde > *c.hasta) {
        e_.dialogs().avisar(kTituloErrorFecha,
                            QStringLiteral("La fecha inicial no puede ser posterior a la fecha final."));
        return false;
    }
    c.idCliente = clienteFijo_;
    if (!clienteFijo_) {
        c.cliente = cliente;
        c.clienteEnCualquierParte = clienteEnCualquierParte;
    }
    c.mascota = mascota;
    c.estado = estado;

    QList<FilaAlbaranBusqueda> hallados;
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar un Albarán en la ") + kPantalla);
    const bool hecho = traza.ejecutar([&] {
        traza.paso(QStringLiteral("Buscar los albaranes"));
        hallados = AlbaranBusquedaStore(e_.db()).buscar(c, kMaxFilas + 1);
    });
    if (!hecho) return false;
    nota_.clear();
    if (hallados.size() > kMaxFilas) {
        hallados.resize(kMaxFilas);
        nota_ =
            QStringLiteral("Se muestran sólo los %1 albaranes más recientes. Añada condiciones para afinar "
                           "la búsqueda.")
                .arg(kMaxFilas);
    } else if (hallados.isEmpty()) {
        nota_ = QStringLiteral("Ningún albarán cumple las condiciones especificadas.");
    }
    resultado_ = hallados;
    elegido_.reset();
    return true;
}

QStringList AlbaranBusquedaForm::celdas(int fila) const {
    if (fila < 0 || fila >= resultado_.size()) return {};
    const FilaAlbaranBusqueda& f = resultado_.at(fila);
    QString factura;
    if (f.NumFactura) {
        const QString serieFactura = f.SerieFactura.trimmed();
        factura = serieFactura.isEmpty() ? QString::number(*f.NumFactura)
                                         : serieFactura + QLatin1Char('-') + QString::number(*f.NumFactura);
    }
    return {f.Serie,   QString::number(f.NumAlbaran), formatoFecha(f.Fecha),       f.Cliente,
            f.Mascota, formatoImporte(f.Total),       formatoImporte(f.Pendiente), factura};
}

bool AlbaranBusquedaForm::aceptar(int fila) {
    if (fila < 0 || fila >= resultado_.size()) {
        e_.dialogs().avisar(QStringLiteral("¡Atención!"),
                            QStringLiteral("Debe seleccionar un albarán de la lista."));
        return false;
    }
    elegido_ = resultado_.at(fila).IdAlbaran;
    return true;
}
