#include "clients/condiciones_form.h"

#include "app/ficha_form.h"
#include "core/formatos.h"
#include "data/esquema.h"

CondicionesForm::CondicionesForm(Entorno& entorno, DuenoCondiciones dueno)
    : e_(entorno), dueno_(dueno), articulos_(descriptorTabla(QStringLiteral("Articulos"))) {}

QStringList CondicionesForm::columnas() {
    return {QStringLiteral("Articulo"),   QStringLiteral("Sección"), QStringLiteral("Familia"),
            QStringLiteral("SubFamilia"), QStringLiteral("Precio"),  QStringLiteral("Tarifa"),
            QStringLiteral("Dto.")};
}

QStringList CondicionesForm::tarifas() {
    return {QString(), QStringLiteral("TARIFA 1"), QStringLiteral("TARIFA 2"), QStringLiteral("TARIFA 3")};
}

QString CondicionesForm::textoDe(const QString& tabla, std::optional<qint64> clave) {
    if (!clave) return {};
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t || !e_.db().existeTabla(t->tabla)) return QString::number(*clave);
    return ConfPuestoStore(e_.db()).textoRegistro(*t, *clave).value_or(QString::number(*clave));
}

void CondicionesForm::cargar(std::optional<qint64> dueno) {
    filas_.clear();
    modificada_ = false;
    if (!dueno) return;
    RegistroStore store(e_.db());
    for (CondicionEspecial c : CondicionesStore(e_.db()).leer(dueno_, *dueno)) {
        if (c.IdArticulo) {
            c.Articulo = QString::number(*c.IdArticulo);
            if (articulos_ && e_.db().existeTabla(articulos_->tabla)) {
                const auto a = store.cargar(*articulos_, static_cast<qlonglong>(*c.IdArticulo));
                if (a) c.Articulo = a->texto(articulos_->columnaTexto);
            }
        }
        c.Seccion = textoDe(QStringLiteral("Secciones"), c.IdSeccion);
        c.Familia = textoDe(QStringLiteral("Familias"), c.IdFamilia);
        c.SubFamilia = textoDe(QStringLiteral("Subfamilias"), c.IdSubfamilia);
        filas_ << c;
    }
}

QStringList CondicionesForm::celdas(int fila) const {
    if (fila < 0 || fila >= filas_.size()) return {};
    const CondicionEspecial& c = filas_.at(fila);
    return {c.Articulo,
            c.Seccion,
            c.Familia,
            c.SubFamilia,
            c.Precio ? formatoImporte(*c.Precio) : QString(),
            c.Tarifa,
            c.Descuento ? formatoImporte(*c.Descuento) : QString()};
}

bool CondicionesForm::rechazar(const QString& titulo, const QString& texto) {
    e_.dialogs().avisar(titulo, texto);
    return false;
}

std::optional<QString> CondicionesForm::leerArticulo(qint64 articulo) {
    std::optional<Registro> r;
    try {
        if (articulos_ && e_.db().existeTabla(articulos_->tabla))
            r = RegistroStore(e_.db()).cargar(*articulos_, static_cast<qlonglong>(articulo));
    } catch (const ErrorBD&) {
        r.reset();
    }
    if (!r) {
        e_.dialogs().error(QStringLiteral("Error al intentar acceder al articulo número") +
                               QString::number(articulo),
                           QStringLiteral("Ha sido imposible acceder al artículo."));
        return std::nullopt;
    }
    return r->texto(articulos_->columnaTexto);
}

std::optional<qint64> CondicionesForm::elegirArticulo(const QString& textoInicial) {
    if (!e_.buscadores.articulo) return std::nullopt;
    const auto elegido = e_.buscadores.articulo(textoInicial);
    if (!elegido) return std::nullopt;
    if (!leerArticulo(*elegido)) return std::nullopt;
    return elegido;
}

std::optional<CondicionEspecial> CondicionesForm::validar(const EntradaCondicion& en, int filaExcluida,
                                                          bool modificando) {
    const bool hayPrecio = !en.Precio.trimmed().isEmpty();
    const bool hayTarifa = !en.Tarifa.trimmed().isEmpty();
    if (!hayPrecio && !hayTarifa) {
        rechazar(kTituloCamposMal, QStringLiteral("Debe asignar un precio especial o una nueva tarifa."));
        return std::nullopt;
    }
    if (hayPrecio && hayTarifa) {
        rechazar(kTituloCamposMal,
                 QStringLiteral("No puede asignar a la vez un precio especial y una nueva tarifa."));
        return std::nullopt;
    }
    if (!en.IdArticulo && !en.IdSeccion) {
        rechazar(kTituloCamposMal,
                 modificando
                     ? QStringLiteral("Debe indicar la nueva Sección que desea incluir")
                     : QStringLiteral("Debe indicar un artículo concreto o la Sección que desea incluir"));
        return std::nullopt;
    }
    CondicionEspecial c;
    if (hayPrecio) {
        const auto p = leerImporte(en.Precio);
        if (!p || *p < 0) {
            rechazar(kTituloErronea,
                     QStringLiteral("El precio especial debe ser un importe positivo, con coma "
                                    "decimal (por ejemplo 1.234,56)."));
            return std::nullopt;
        }
        c.Precio = *p;
    }
    if (hayTarifa) {
        if (!tarifas().contains(en.Tarifa.trimmed())) {
            rechazar(kTituloErronea, QStringLiteral("La tarifa debe ser TARIFA 1, TARIFA 2 o TARIFA 3."));
            return std::nullopt;
        }
        c.Tarifa = en.Tarifa.trimmed();
    }
    if (!en.Descuento.trimmed().isEmpty()) {
        const auto d = leerImporte(en.Descuento);
        if (!d || *d < 0 || *d > 100) {
            rechazar(kTituloErronea, QStringLiteral("El descuento debe ser un porcentaje entre 0 y 100."));
            return std::nullopt;
        }
        c.Descuento = *d;
    }
    if (en.IdArticulo) {
        const auto texto = leerArticulo(*en.IdArticulo);
        if (!texto) return std::nullopt;
        for (int i = 0; i < filas_.size(); ++i) {
            if (i != filaExcluida && filas_.at(i).IdArticulo == en.IdArticulo) {
                rechazar(kTituloArticuloRepetido,
                         QStringLiteral(
                             "Este artículo ya se encuentra incluido en la ficha comercial del cliente"));
                return std::nullopt;
            }
        }
        // A condition on one article names no section.
        c.IdArticulo = en.IdArticulo;
        c.Articulo = *texto;
    } else {
        c.IdSeccion = en.IdSeccion;
        c.IdFamilia = en.IdFamilia;
        c.IdSubfamilia = en.IdFamilia ? en.IdSubfamilia : std::nullopt;
        c.Seccion = textoDe(QStringLiteral("Secciones"), c.IdSeccion);
        c.Familia = textoDe(QStringLiteral("Familias"), c.IdFamilia);
        c.SubFamilia = textoDe(QStringLiteral("Subfamilias"), c.IdSubfamilia);
    }
    return c;
}

bool CondicionesForm::insertar(const EntradaCondicion& entrada) {
    const auto c = validar(entrada, -1, false);
    if (!c) return false;
    if (antesDeCambiar && !antesDeCambiar()) return false;
    filas_ << *c;
    modificada_ = true;
    return true;
}

bool CondicionesForm::modificar(int fila, const EntradaCondicion& entrada) {
    if (fila < 0 || fila >= filas_.size()) return false;
    const auto c = validar(entrada, fila, true);
    if (!c) return false;
    if (antesDeCambiar && !antesDeCambiar()) return false;
    filas_[fila] = *c;
    modificada_ = true;
    return true;
}

bool CondicionesForm::eliminar(int fila) {
    if (fila < 0 || fila >= filas_.size()) return false;
    if (antesDeCambiar && !antesDeCambiar()) return false;
    filas_.removeAt(fila);
    modificada_ = true;
    return true;
}

EntradaCondicion CondicionesForm::entrada(int fila) const {
    EntradaCondicion en;
    if (fila < 0 || fila >= filas_.size()) return en;
    const CondicionEspecial& c = filas_.at(fila);
    en.IdArticulo = c.IdArticulo;
    en.IdSeccion = c.IdSeccion;
    en.IdFamilia = c.IdFamilia;
    en.IdSubfamilia = c.IdSubfamilia;
    en.Precio = c.Precio ? formatoImporte(*c.Precio) : QString();
    en.Tarifa = c.Tarifa;
    en.Descuento = c.Descuento ? formatoImporte(*c.Descuento) : QString();
    return en;
}

QList<OpcionLista> CondicionesForm::secciones() {
    const DescriptorTabla* t = descriptorTabla(QStringLiteral("Secciones"));
    if (!t || !e_.db().existeTabla(t->tabla)) return {};
    return ConfPuestoStore(e_.db()).opciones(t);
}

QList<OpcionLista> CondicionesForm::opcionesHijas(const QString& tabla, const QString& columnaPadre,
                                                  std::optional<qint64> padre) {
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t || !e_.db().existeTabla(t->tabla)) return {};
    if (!t->tieneColumna(columnaPadre)) return ConfPuestoStore(e_.db()).opciones(t);
    if (!padre) return {};
    return CondicionesStore(e_.db()).hijas(*t, columnaPadre, *padre);
}

QList<OpcionLista> CondicionesForm::familias(std::optional<qint64> seccion) {
    return opcionesHijas(QStringLiteral("Familias"), QStringLiteral("IdSeccion"), seccion);
}

QList<OpcionLista> CondicionesForm::subfamilias(std::optional<qint64> familia) {
    return opcionesHijas(QStringLiteral("Subfamilias"), QStringLiteral("IdFamilia"), familia);
}

void CondicionesForm::guardar(qint64 dueno) {
    CondicionesStore(e_.db()).reemplazar(dueno_, dueno, filas_);
    modificada_ = false;
}
