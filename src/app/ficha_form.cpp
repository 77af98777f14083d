#include "app/ficha_form.h"

#include "app/guardado_registro.h"

#include "core/command_trace.h"
#include "core/formatos.h"

#include <QHash>
#include <cmath>

namespace {
QHash<QString, GuardadoPropio>& guardadosPropios() {
    static QHash<QString, GuardadoPropio> mapa;
    return mapa;
}
const QString kSi = QStringLiteral("Sí");
const QString kNo = QStringLiteral("No");

bool esClave(const DescriptorTabla& t, const QString& columna) {
    for (const auto& c : t.clave)
        if (c.compare(columna, Qt::CaseInsensitive) == 0) return true;
    return false;
}

// A decimal as typed back: a comma, at least two decimals, no thousands points, and every
// decimal the value holds (up to ten), so that saving again never rounds it.
QString textoDecimal(double v) {
    QString s = QString::number(v, 'f', 10);
    while (s.endsWith(QLatin1Char('0')) && s.indexOf(QLatin1Char('.')) < s.size() - 3)
        s.chop(1);
    if (s == QStringLiteral("-0.00")) s = QStringLiteral("0.00");
    return s.replace(QLatin1Char('.'), QLatin1Char(','));
}

// The SQL default of a column as the value a new record starts with.
QVariant valorPorDefecto(const DescriptorColumna& c) {
    QString d = c.porDefecto.trimmed();
    if (d.isEmpty()) return {};
    if (d.size() >= 2 && d.startsWith(QLatin1Char('\'')) && d.endsWith(QLatin1Char('\'')))
        d = d.mid(1, d.size() - 2).replace(QStringLiteral("''"), QStringLiteral("'"));
    return valorDesdeBD(c.tipo, d);
}

QString nombreCampo(const DescriptorColumna& c) {
    return QStringLiteral("El campo '") + c.Descripcion + QLatin1Char('\'');
}
} // namespace

QString FichaForm::textoValor(const DescriptorColumna& c, const QVariant& valor) {
    if (valor.isNull() || !valor.isValid()) return {};
    if (c.esLista()) return c.valorExterno(valor.toString());
    switch (c.tipo) {
    case TipoColumna::Entero:
    case TipoColumna::Autonumerico:
        return QString::number(valor.toLongLong());
    case TipoColumna::Decimal:
        return textoDecimal(valor.toDouble());
    case TipoColumna::Fecha:
        return formatoFecha(valor.toDate());
    case TipoColumna::Hora: {
        const QTime h = valor.toTime();
        return h.second() != 0 ? formatoHoraSegundos(h) : formatoHora(h);
    }
    case TipoColumna::FechaHora: {
        const QDateTime dt = valor.toDateTime();
        const QString hora =
            dt.time().second() != 0 ? formatoHoraSegundos(dt.time()) : formatoHora(dt.time());
        return formatoFecha(dt.date()) + QLatin1Char(' ') + hora;
    }
    case TipoColumna::Logico:
        return valor.toBool() ? kSi : kNo;
    case TipoColumna::Texto:
    case TipoColumna::Memo:
        return valor.toString();
    }
    return valor.toString();
}

std::optional<QVariant> FichaForm::leerValor(const DescriptorColumna& c, const QString& texto,
                                             QString* error) {
    const QString t = c.tipo == TipoColumna::Memo ? texto : texto.trimmed();
    if (t.trimmed().isEmpty()) return QVariant();
    auto fallo = [&](const QString& motivo) -> std::optional<QVariant> {
        if (error) *error = nombreCampo(c) + motivo;
        return std::nullopt;
    };
    if (c.esLista()) {
        if (!c.ValorExternoS.contains(t))
            return fallo(QStringLiteral(" debe tomar uno de estos valores: ") +
                         c.ValorExternoS.join(QStringLiteral(", ")) + QLatin1Char('.'));
        return QVariant(c.valorInterno(t));
    }
    switch (c.tipo) {
    case TipoColumna::Entero:
    case TipoColumna::Autonumerico: {
        const auto v = leerImporte(t);
        if (!v || std::floor(*v) != *v || std::fabs(*v) > 9.0e15)
            return fallo(QStringLiteral(" debe ser un número entero."));
        return QVariant(static_cast<qlonglong>(*v));
    }
    case TipoColumna::Decimal: {
        const auto v = leerImporte(t);
        if (!v) return fallo(QStringLiteral(" debe ser un número, con coma decimal (por ejemplo 1.234,56)."));
        return QVariant(*v);
    }
    case TipoColumna::Fecha: {
        const auto f = leerFecha(t);
        if (!f) return fallo(QStringLiteral(" debe ser una fecha con el formato dd/mm/aaaa."));
        return QVariant(*f);
    }
    case TipoColumna::Hora: {
        const auto h = leerHora(t);
        if (!h) return fallo(QStringLiteral(" debe ser una hora con el formato hh:mm."));
        return QVariant(*h);
    }
    case TipoColumna::FechaHora: {
        const QStringList partes = t.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const auto f = partes.size() == 2 ? leerFecha(partes.at(0)) : std::nullopt;
        const auto h = partes.size() == 2 ? leerHora(partes.at(1)) : std::nullopt;
        if (!f || !h)
            return fallo(QStringLiteral(" debe ser una fecha y hora con el formato dd/mm/aaaa hh:mm."));
        return QVariant(QDateTime(*f, *h));
    }
    case TipoColumna::Logico:
        if (t == kSi) return QVariant(true);
        if (t == kNo) return QVariant(false);
        return fallo(QStringLiteral(" debe tomar uno de estos valores: Sí, No."));
    case TipoColumna::Texto:
    case TipoColumna::Memo:
        if (c.longitud > 0 && t.size() > c.longitud)
            return fallo(QStringLiteral(" no puede tener más de %1 caracteres.").arg(c.longitud));
        return QVariant(t);
    }
    return QVariant(t);
}

QString textoCelda(const DescriptorColumna& c, const QVariant& valor) {
    if (valor.isNull() || !valor.isValid()) return {};
    if (c.esLista()) return c.valorExterno(valor.toString());
    switch (c.tipo) {
    case TipoColumna::Entero:
        return formatoEntero(valor.toLongLong());
    case TipoColumna::Decimal:
        return formatoImporte(valor.toDouble());
    case TipoColumna::Memo:
        return valor.toString().simplified();
    default:
        return FichaForm::textoValor(c, valor);
    }
}

FichaForm::FichaForm(Entorno& entorno, const DescriptorTabla& tabla, const QVariantMap& fijos)
    : e_(&entorno), t_(&tabla), registro_(tabla), nuevo_(true) {
    for (const auto& c : tabla.columnaS) {
        const QVariant d = valorPorDefecto(c);
        if (!d.isNull()) registro_.setValor(c.nombre, d);
    }
    for (auto it = fijos.cbegin(); it != fijos.cend(); ++it)
        registro_.setValor(it.key(), it.value());
    ocultas_ = fijos.keys();
    prepararCampos();
}

FichaForm::FichaForm(Entorno& entorno, const Registro& existente)
    : e_(&entorno), t_(&existente.descriptor()), registro_(existente.getCopia()), nuevo_(false) {
    // The record counts as open in an editor here while any copy of this form lives.
    std::shared_ptr<const int> editor(new int(0), [e = e_](const int* p) {
        e->editores.soltar(p);
        delete p;
    });
    if (e_->editores.ocupar(t_->tabla, registro_.clave().toString(), editor.get(), {})) editor_ = editor;
    prepararCampos();
}

void FichaForm::prepararCampos() {
    campos_.clear();
    textos_.clear();
    for (const auto& c : t_->columnaS) {
        if (c.interna) continue;
        bool oculto = t_->columnaPadre.compare(c.nombre, Qt::CaseInsensitive) == 0 ||
                      ocultas_.contains(c.nombre, Qt::CaseInsensitive);
        if (nuevo_ && c.tipo == TipoColumna::Autonumerico) oculto = true;
        if (oculto) continue;
        CampoFicha campo;
        campo.columna = &c;
        campo.obligatorio = !c.Opcional || esClave(*t_, c.nombre);
        campo.soloLectura = !nuevo_ && (esClave(*t_, c.nombre) || c.tipo == TipoColumna::Autonumerico);
        campos_.append(campo);
        textos_.insert(c.nombre, textoValor(c, registro_.valor(c.nombre)));
    }
}

QString FichaForm::titulo() const {
    return (nuevo_ ? QStringLiteral("Añadir ") : QStringLiteral("Modificar ")) + t_->descTabla;
}

const CampoFicha* FichaForm::campo(const QString& columna) const {
    for (const auto& c : campos_)
        if (c.columna->nombre.compare(columna, Qt::CaseInsensitive) == 0) return &c;
    return nullptr;
}

QString FichaForm::texto(const QString& columna) const {
    const CampoFicha* c = campo(columna);
    return c ? textos_.value(c->columna->nombre) : QString();
}

void FichaForm::setTexto(const QString& columna, const QString& texto) {
    const CampoFicha* c = campo(columna);
    if (c && !c->soloLectura) textos_.insert(c->columna->nombre, texto);
}

QStringList FichaForm::opciones(const QString& columna) const {
    const CampoFicha* c = campo(columna);
    if (!c) return {};
    QStringList lista;
    if (c->columna->esLista())
        lista = c->columna->ValorExternoS;
    else if (c->columna->tipo == TipoColumna::Logico)
        lista = {kSi, kNo};
    else
        return {};
    if (!c->obligatorio) lista.prepend(QString());
    return lista;
}

bool FichaForm::bloquear() {
    if (nuevo_) return true;
    if (!bloqueo_) bloqueo_ = std::make_shared<BloqueoEdicion>(*e_);
    const QString descripcion =
        t_->columnaTexto.isEmpty() ? registro_.clave().toString() : registro_.texto(t_->columnaTexto);
    return bloqueo_->tomar(*t_, registro_.clave().toString(), descripcion, AccionBloqueo::Modificacion);
}

void FichaForm::cancelar() {
    if (bloqueo_) bloqueo_->liberar();
}

bool FichaForm::rechazar(const QString& titulo, const QString& texto, const QString& columna) {
    foco_ = columna;
    e_->dialogs().avisar(titulo, texto);
    return false;
}

bool FichaForm::guardar() {
    foco_.clear();
    for (const auto& c : campos_) {
        if (c.soloLectura || !c.obligatorio) continue;
        if (textos_.value(c.columna->nombre).trimmed().isEmpty())
            return rechazar(kTituloObligatorios,
                            QStringLiteral("Debe informar el campo '") + c.columna->Descripcion +
                                QStringLiteral("'."),
                            c.columna->nombre);
    }
    Registro r = registro_.getCopia();
    for (const auto& c : campos_) {
        if (c.soloLectura) continue;
        QString error;
        const auto v = leerValor(*c.columna, textos_.value(c.columna->nombre), &error);
        if (!v) return rechazar(kTituloErronea, error, c.columna->nombre);
        r.setValor(c.columna->nombre, *v);
    }
    if (t_->validacion) {
        if (const auto fallo = t_->validacion(r)) {
            e_->dialogs().mostrar(Icono::Critico, QStringLiteral("¡Atención!"), fallo->texto);
            foco_ = fallo->columna;
            return false;
        }
    }

    if (!nuevo_) {
        const GuardadoPropio propio = guardadosPropios().value(t_->tabla);
        if (propio) {
            if (const auto resultado = propio(*e_, registro_, r)) {
                if (!*resultado) return false;
                cancelar();
                registro_ = r;
                return true;
            }
        }
    }

    CommandTrace traza(e_->dialogs(),
                       QStringLiteral("guardar el objeto en '") + titulo() + QLatin1Char('\''));
    if (nuevo_ && !t_->claveAutonumerica() && !t_->clave.isEmpty()) {
        bool repetida = false;
        if (!traza.ejecutar([&] {
                traza.paso(QStringLiteral("Comprobar que la clave no existe"));
                repetida = RegistroStore(e_->db()).existe(r);
            }))
            return false;
        if (repetida) {
            const DescriptorColumna* k = t_->columna(t_->clave.first());
            return rechazar(QStringLiteral("¡Atención!"),
                            QStringLiteral("Ya existe otro registro con ") + k->Descripcion + QStringLiteral(" '") +
                                textoValor(*k, r.valor(k->nombre)) + QStringLiteral("'."),
                            k->nombre);
        }
    }
    // A new record is created under an "Alta" lock of its own, for the time of the save.
    BloqueoEdicion alta(*e_);
    if (nuevo_ && !alta.tomarAlta(*t_, t_->descTabla)) return false;
    const auto resultado =
        guardarRegistro(*e_, traza, bloqueo_ ? *bloqueo_ : alta, t_->descTabla, [&] {
            RegistroStore store(e_->db());
            if (nuevo_) {
                traza.paso(QStringLiteral("Crear el registro"));
                store.crear(r);
            } else {
                traza.paso(QStringLiteral("Actualizar el registro"));
                store.actualizar(r);
            }
        });
    if (resultado == ResultadoGuardado::Recargar) {
        traza.ejecutar([&] {
            if (auto actual = RegistroStore(e_->db()).cargar(*t_, registro_.clave())) {
                registro_ = *actual;
                prepararCampos();
            }
        });
        return false;
    }
    const bool guardado = resultado == ResultadoGuardado::Guardado;
    if (!guardado) return false;
    cancelar();
    const bool eraNuevo = nuevo_;
    registro_ = r;
    nuevo_ = false;
    if (eraNuevo) prepararCampos();
    return true;
}

void registrarGuardadoPropio(const QString& tabla, GuardadoPropio guardado) {
    guardadosPropios().insert(tabla, std::move(guardado));
}
