#include "app/conf_bd_form.h"

#include "app/ficha_form.h"
#include "core/command_trace.h"

#include <QRegularExpression>

namespace {
// A whole number written with digits only (no sign, no points), up to nine digits.
std::optional<qint64> entero(const QString& texto) {
    static const QRegularExpression re(QStringLiteral("^[0-9]{1,9}$"));
    const QString t = texto.trimmed();
    if (!re.match(t).hasMatch()) return std::nullopt;
    return t.toLongLong();
}

// A label inside a sentence: "Sufijo del presentador" -> "sufijo del presentador"; an
// acronym ("NIF del presentador") stays as it is.
QString enFrase(const QString& etiqueta) {
    if (etiqueta.size() > 1 && etiqueta.at(1).isUpper()) return etiqueta;
    return etiqueta.left(1).toLower() + etiqueta.mid(1);
}

bool coincide(const QString& patron, const QString& texto) {
    return QRegularExpression(QStringLiteral("^(") + patron + QStringLiteral(")$")).match(texto).hasMatch();
}
} // namespace

QString textoAutocompactacion(const QString& diasCompactacion) {
    const auto dias = entero(diasCompactacion);
    if (!dias || *dias <= 0) return QStringLiteral("AUTOCOMPACTACIÓN DESACTIVADA");
    return QStringLiteral("AUTOCOMPACTACIÓN ACTIVADA CADA ") + QString::number(*dias) +
           QStringLiteral(" DÍAS");
}

QString textoContabilidad(const QString& contabSoloAdministradores) {
    return contabSoloAdministradores == QStringLiteral("S")
               ? QStringLiteral("CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES")
               : QStringLiteral("CONTABILIDAD VISIBLE PARA TODOS LOS USUARIOS");
}

const QList<CampoConfBd>& ConfBdForm::campos() {
    using namespace claves;
    static const QList<CampoConfBd> lista = {
        {DIAS_COMPACTACION, QStringLiteral("Compactar automáticamente cada (días)"), 5},
        {CONTAB_SOLO_ADMINISTRADORES, QStringLiteral("Contabilidad sólo para administradores"), 1},
        {PUERTO_UDP_CHAT, QStringLiteral("Puerto UDP del chat"), 5},
        {ESPERA_ENTRE_SMS, QStringLiteral("Espera entre SMS (segundos)"), 5},
        {EMAIL_TIPO_CONF, QStringLiteral("Envío del correo electrónico"), 7},
        {TIPOINSTALACION, QStringLiteral("Tipo de instalación"), 20},
        {NIF_PRESENT, QStringLiteral("NIF del presentador"), 9},
        {NOM_PRESENT, QStringLiteral("Nombre del presentador"), 70},
        {SUF_PRESENT, QStringLiteral("Sufijo del presentador"), 3},
        {ENT_PRESENT, QStringLiteral("Entidad del presentador"), 4},
        {OFI_PRESENT, QStringLiteral("Oficina del presentador"), 4},
        {NIF_ORDENANTE, QStringLiteral("NIF del ordenante"), 9},
        {NOM_ORDENANTE, QStringLiteral("Nombre del ordenante"), 70},
        {SUF_ORDENANTE, QStringLiteral("Sufijo del ordenante"), 3},
        {CCC_ORDENANTE, QStringLiteral("Cuenta del ordenante (C.C.C. o IBAN)"), 34},
        {BIC_ORDENANTE, QStringLiteral("BIC del ordenante"), 11},
    };
    return lista;
}

const CampoConfBd* ConfBdForm::campo(const QString& clave) {
    for (const auto& c : campos())
        if (c.clave == clave) return &c;
    return nullptr;
}

QStringList ConfBdForm::tiposCorreo() {
    return {QStringLiteral("CDO"), QStringLiteral("MAPI"), QStringLiteral("NINGUNA")};
}

bool ConfBdForm::cargar() {
    CommandTrace traza(e_.dialogs(), QStringLiteral("cargar la '") + kTituloConfBd + QLatin1Char('\''));
    return traza.ejecutar([&] {
        Ajustes ajustes = e_.ajustes();
        QHash<QString, QString> leidos;
        for (const auto& c : campos()) {
            traza.paso(QStringLiteral("Leer ") + c.clave);
            leidos.insert(c.clave, ajustes.leerConDefecto(c.clave));
        }
        multipuesto_ = ajustes.leerConDefecto(claves::MULTIPUESTO);
        valores_ = leidos;
        cargados_ = leidos;
    });
}

void ConfBdForm::setValor(const QString& clave, const QString& texto) {
    if (campo(clave)) valores_.insert(clave, texto);
}

QString ConfBdForm::textoAutocompactacion() const {
    return ::textoAutocompactacion(valor(claves::DIAS_COMPACTACION));
}

QString ConfBdForm::textoContabilidad() const {
    return ::textoContabilidad(valor(claves::CONTAB_SOLO_ADMINISTRADORES));
}

bool ConfBdForm::rechazar(const QString& titulo, const QString& texto, const QString& clave) {
    foco_ = clave;
    e_.dialogs().avisar(titulo, texto);
    return false;
}

bool ConfBdForm::validar(QHash<QString, QString>& aGuardar) {
    using namespace claves;
    for (const auto& c : campos()) {
        QString v = valor(c.clave).trimmed();
        auto mal = [&](const QString& texto) { return rechazar(kTituloErronea, texto, c.clave); };
        if (c.clave == DIAS_COMPACTACION) {
            if (!entero(v))
                return mal(QStringLiteral(
                    "Los días entre compactaciones deben ser un número entero igual o mayor que 0 "
                    "(0 desactiva la autocompactación)."));
            v = QString::number(*entero(v));
        } else if (c.clave == CONTAB_SOLO_ADMINISTRADORES) {
            if (v != QStringLiteral("S") && v != QStringLiteral("N"))
                return mal(
                    QStringLiteral("El campo 'Contabilidad sólo para administradores' debe ser S o N."));
        } else if (c.clave == PUERTO_UDP_CHAT) {
            const auto p = entero(v);
            if (!p || *p < 1 || *p > 65535)
                return mal(
                    QStringLiteral("El puerto UDP del chat debe ser un número entero entre 1 y 65535."));
            v = QString::number(*p);
        } else if (c.clave == ESPERA_ENTRE_SMS) {
            if (!entero(v))
                return mal(
                    QStringLiteral("La espera entre SMS debe ser un número entero de segundos igual o mayor "
                                   "que 0."));
            v = QString::number(*entero(v));
        } else if (c.clave == EMAIL_TIPO_CONF) {
            if (!tiposCorreo().contains(v))
                return mal(QStringLiteral("El envío del correo electrónico debe ser CDO, MAPI o NINGUNA."));
        } else if (c.clave == TIPOINSTALACION) {
            if (v.isEmpty())
                return rechazar(kTituloObligatorios, QStringLiteral("Debe informar el tipo de instalación."),
                                c.clave);
        } else if (c.clave == NIF_PRESENT || c.clave == NIF_ORDENANTE) {
            v = v.toUpper();
            if (!v.isEmpty() && !coincide(QStringLiteral("[A-Z0-9]{9}"), v))
                return mal(QStringLiteral("El ") + enFrase(c.etiqueta) +
                           QStringLiteral(" debe tener 9 letras o cifras."));
        } else if (c.clave == SUF_PRESENT || c.clave == SUF_ORDENANTE) {
            if (!v.isEmpty() && !coincide(QStringLiteral("[0-9]{3}"), v))
                return mal(QStringLiteral("El ") + enFrase(c.etiqueta) +
                           QStringLiteral(" debe tener 3 cifras."));
        } else if (c.clave == ENT_PRESENT || c.clave == OFI_PRESENT) {
            if (!v.isEmpty() && !coincide(QStringLiteral("[0-9]{4}"), v))
                return mal(QStringLiteral("La ") + enFrase(c.etiqueta) +
                           QStringLiteral(" debe tener 4 cifras."));
        } else if (c.clave == CCC_ORDENANTE) {
            v = v.remove(QLatin1Char(' ')).toUpper();
            if (!v.isEmpty() && !coincide(QStringLiteral("[0-9]{20}|ES[0-9]{22}"), v))
                return mal(
                    QStringLiteral("La cuenta del ordenante debe tener 20 cifras (C.C.C.) o ser un IBAN "
                                   "español (ES y 22 cifras)."));
        } else if (c.clave == BIC_ORDENANTE) {
            v = v.toUpper();
            if (!v.isEmpty() && !coincide(QStringLiteral("[A-Z0-9]{8}|[A-Z0-9]{11}"), v))
                return mal(QStringLiteral("El BIC del ordenante debe tener 8 u 11 letras o cifras."));
        }
        if (v.size() > c.longitud)
            return mal(QStringLiteral("El campo '") + c.etiqueta +
                       QStringLiteral("' no puede tener más de %1 caracteres.").arg(c.longitud));
        aGuardar.insert(c.clave, v);
    }
    return true;
}

bool ConfBdForm::guardar() {
    foco_.clear();
    QHash<QString, QString> aGuardar;
    if (!validar(aGuardar)) return false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("guardar la configuración en la '") + kTituloConfBd +
                                         QLatin1Char('\''));
    const bool ok = traza.ejecutar([&] {
        Transaction tx = e_.db().transaccion();
        Ajustes ajustes = e_.ajustes();
        for (const auto& c : campos()) {
            const QString v = aGuardar.value(c.clave);
            if (v == cargados_.value(c.clave)) continue;
            traza.paso(QStringLiteral("Guardar ") + c.clave);
            ajustes.escribir(c.clave, v);
        }
        tx.commit();
    });
    if (!ok) return false;
    valores_ = aGuardar;
    cargados_ = aGuardar;
    return true;
}
