#include "stock/articulo_form.h"

#include "app/guardado_registro.h"

#include "core/command_trace.h"
#include "core/dinero.h"
#include "core/formatos.h"
#include "data/esquema.h"
#include "stock/series_articulo.h"

namespace {
const QString kColCodigo = QStringLiteral("ArtCodArticulo");
const QString kAtencion = QStringLiteral("Atención");

QString traza(const QString& accion) {
    return accion + QStringLiteral(" un Artículo en el '") + kTituloArticulos + QLatin1Char('\'');
}

std::optional<qint64> entero(const QVariant& v) {
    if (v.isNull() || !v.isValid()) return std::nullopt;
    return v.toLongLong();
}

std::optional<qint64> enteroTexto(const QString& t) {
    bool ok = false;
    const qint64 n = t.trimmed().toLongLong(&ok);
    return ok ? std::optional<qint64>(n) : std::nullopt;
}

QString mensajeLectura(const QString& cabecera, const QString& final) {
    return cabecera + QLatin1Char('\n') +
           QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede ") + final;
}
} // namespace

ArticuloForm::ArticuloForm(Entorno& entorno) : FormularioRegistro(entorno, tablaArticulos()) {
    nuevo();
}

QStringList ArticuloForm::columnasEditables() const {
    QStringList l;
    for (const auto& c : tablaArticulos().columnaS)
        if (!c.interna) l << c.nombre;
    return l;
}

QString ArticuloForm::descripcionBloqueo() const {
    return esNuevo() ? texto(QStringLiteral("Articulo")).trimmed() : registro_.texto(QStringLiteral("Articulo"));
}

QString ArticuloForm::preguntaAbandonar() const {
    return QStringLiteral("Las modificaciones realizadas a este Artículo no han sido guardadas. "
                          "¿Desea perder los cambios efectuados?");
}

const QStringList& ArticuloForm::columnasProducto() {
    static const QStringList l = {QStringLiteral("ArtCodBarras"),  QStringLiteral("ArtCodProv"),
                                  QStringLiteral("ArtRefProvHab"), QStringLiteral("ArtCodUltProv"),
                                  QStringLiteral("ArtUltPrecio"),  QStringLiteral("Stock"),
                                  QStringLiteral("ArtStockMin")};
    return l;
}

QString ArticuloForm::tablaParametro(const QString& columna) {
    static const QHash<QString, QString> tablas = {
        {QStringLiteral("Seccion"), QStringLiteral("Secciones")},
        {QStringLiteral("Familia"), QStringLiteral("Familias")},
        {QStringLiteral("SubFamilia"), QStringLiteral("Subfamilias")},
        {QStringLiteral("ArtIVA"), QStringLiteral("TiposIVA")},
        {QStringLiteral("ArtRE"), QStringLiteral("TiposRE")},
        {QStringLiteral("ArtSerie"), QStringLiteral("Series")},
        {QStringLiteral("ArtLaboratorio"), QStringLiteral("Laboratorios")},
        {QStringLiteral("ArtTipoArticulo"), QStringLiteral("TiposArticulo")},
        {QStringLiteral("ArtCodProv"), QStringLiteral("Proveedores")},
        {QStringLiteral("ArtCodUltProv"), QStringLiteral("Proveedores")}};
    return tablas.value(columna);
}

void ArticuloForm::nuevo() {
    Registro vacio(tablaArticulos());
    vacio.setValor(QStringLiteral("ArtFactorConversion"), 1.0);
    vacio.setValor(QStringLiteral("ArtFacturacionObligatoria"), false);
    vacio.setValor(QStringLiteral("ArtFechaAlta"), e_.reloj().hoy());
    empezarNuevo(vacio);
}

void ArticuloForm::avisoProveedor(qint64 codigo) {
    e_.dialogs().error(kTituloArticulos,
                       mensajeLectura(QStringLiteral("Error al intentar acceder al proveedor numero ") +
                                          QString::number(codigo),
                                      QStringLiteral("que este proveedor haya sido eliminado.")));
}

bool ArticuloForm::abrir(qint64 codigo) {
    std::optional<Registro> r;
    QList<qint64> proveedoresPerdidos;
    CommandTrace t(e_.dialogs(), traza(QStringLiteral("leer")));
    if (!t.ejecutar([&] {
            ArticuloStore store(e_.db());
            t.paso(QStringLiteral("Leer el Artículo"));
            r = store.cargar(codigo);
            if (!r) return;
            t.paso(QStringLiteral("Leer sus proveedores"));
            for (const QString& col : {QStringLiteral("ArtCodProv"), QStringLiteral("ArtCodUltProv")}) {
                const auto p = entero(r->valor(col));
                if (p && !store.existeProveedor(*p)) proveedoresPerdidos << *p;
            }
        }))
        return false;
    if (!r) {
        e_.dialogs().error(kTituloArticulos,
                           mensajeLectura(QStringLiteral("Error al intentar acceder al Artículo nº ") +
                                              QString::number(codigo),
                                          QStringLiteral("que el Artículo haya sido eliminado.")));
        return false;
    }
    if (!ocupar(codigo)) return false;
    bloqueo_.liberar();
    id_ = codigo;
    mostrarRegistro(*r);
    for (qint64 p : proveedoresPerdidos)
        avisoProveedor(p);
    return true;
}

QString ArticuloForm::titulo() const {
    const QString cod = esNuevo() ? QStringLiteral(" (Nuevo Artículo)") : QString::number(*id_);
    return kTituloArticulos + QStringLiteral(" - ") + cod + QStringLiteral(" : ") + texto(QStringLiteral("Articulo"));
}

bool ArticuloForm::esServicio() const {
    return texto(QStringLiteral("ArtTipoArticulo"))
               .trimmed()
               .compare(kTipoServicio, Qt::CaseInsensitive) == 0;
}

bool ArticuloForm::habilitado(const QString& columna) const {
    if (columna == kColCodigo) return false;
    // Stock and the last purchase are kept by the stock movements and purchases, not typed.
    if (const DescriptorColumna* c = tablaArticulos().columna(columna); c && c->deOperacion) return false;
    return !(esServicio() && columnasProducto().contains(columna));
}

bool ArticuloForm::setTexto(const QString& columna, const QString& nuevo) {
    if (!habilitado(columna)) return false;
    if (texto(columna) == nuevo) return true;
    if (columna == QStringLiteral("ArtCodProv") || columna == QStringLiteral("ArtCodUltProv")) {
        if (const auto p = enteroTexto(nuevo)) {
            bool existe = false;
            CommandTrace t(e_.dialogs(), traza(QStringLiteral("elegir el proveedor de")));
            if (!t.ejecutar([&] { existe = ArticuloStore(e_.db()).existeProveedor(*p); })) return false;
            if (!existe) {
                avisoProveedor(*p);
                return false;
            }
        }
    }
    return FormularioRegistro::setTexto(columna, nuevo);
}

void ArticuloForm::alCambiar(const QString& columna) {
    if (columna == QStringLiteral("ArtTipoArticulo") && esServicio())
        for (const QString& c : columnasProducto())
            textos_.insert(c, QString());
    if (columna == QStringLiteral("Seccion")) textos_.insert(QStringLiteral("Familia"), QString());
    if (columna == QStringLiteral("Seccion") || columna == QStringLiteral("Familia"))
        textos_.insert(QStringLiteral("SubFamilia"), QString());
}

QString ArticuloForm::margen() const {
    const QString ult = texto(QStringLiteral("ArtUltPrecio")).trimmed();
    const auto precio = leerImporte(ult);
    if (!precio) return {};
    if (*precio == 0) return QStringLiteral("100.00");
    const double pvp1 = leerImporte(texto(QStringLiteral("PVP1")).trimmed()).value_or(0);
    return formatoImporte(redondear2(pvp1 * 100 / *precio));
}

QList<OpcionArticulo> ArticuloForm::opciones(const QString& columna) {
    const QString tabla = tablaParametro(columna);
    if (tabla.isEmpty()) return {};
    std::optional<qint64> padre;
    if (columna == QStringLiteral("Familia") || columna == QStringLiteral("SubFamilia")) {
        padre = enteroTexto(texto(columna == QStringLiteral("Familia") ? QStringLiteral("Seccion")
                                                                               : QStringLiteral("Familia")));
        if (!padre) return {};
    }
    QList<OpcionArticulo> l;
    CommandTrace t(e_.dialogs(), traza(QStringLiteral("cargar las listas de")));
    t.ejecutar([&] { l = ArticuloStore(e_.db()).opciones(tabla, padre); });
    return l;
}

std::optional<FichaForm> ArticuloForm::fichaParametro(const QString& columna) {
    const QString tabla = tablaParametro(columna);
    const DescriptorTabla* d = tabla.isEmpty() ? nullptr : descriptorTabla(tabla);
    if (!d || columna == QStringLiteral("ArtTipoArticulo") || columna.startsWith(QStringLiteral("ArtCod")))
        return std::nullopt;
    QVariantMap fijos;
    if (columna == QStringLiteral("Familia") || columna == QStringLiteral("SubFamilia")) {
        const bool familia = columna == QStringLiteral("Familia");
        const auto padre =
            enteroTexto(texto(familia ? QStringLiteral("Seccion") : QStringLiteral("Familia")));
        if (!padre) {
            e_.dialogs().avisar(kAtencion,
                                familia ? QStringLiteral("Elija antes la sección de la nueva familia.")
                                        : QStringLiteral("Elija antes la familia de la nueva subfamilia."));
            return std::nullopt;
        }
        fijos.insert(familia ? QStringLiteral("IdSeccion") : QStringLiteral("IdFamilia"), *padre);
    }
    return FichaForm(e_, *d, fijos);
}

bool ArticuloForm::parametroAnadido(const QString& columna, const Registro& nuevo) {
    return setTexto(columna, nuevo.clave().toString());
}

QString ArticuloForm::clasificacionCambiada(const Registro& antes, const Registro& despues) const {
    const QList<QPair<QString, QString>> niveles = {
        {QStringLiteral("Seccion"), QStringLiteral("sección")},
        {QStringLiteral("Familia"), QStringLiteral("familia")},
        {QStringLiteral("SubFamilia"), QStringLiteral("subfamilia")},
        {QStringLiteral("ArtSerie"), QStringLiteral("serie propia")}};
    for (const auto& n : niveles)
        if (antes.texto(n.first).trimmed() != despues.texto(n.first).trimmed()) return n.second;
    return QStringLiteral("clasificación");
}

bool ArticuloForm::guardar() {
    // A changed description is asked about before any check (a missing one is refused by
    // the first check instead).
    const QString descripcion = texto(QStringLiteral("Articulo")).trimmed();
    if (!esNuevo() && !descripcion.isEmpty() &&
        descripcion != registro_.texto(QStringLiteral("Articulo")).trimmed() &&
        !e_.dialogs().preguntar(Icono::Pregunta, kAtencion, kPreguntaDescripcionArticulo))
        return false;
    foco.clear();
    const QList<QPair<QString, QString>> obligatorios = {
        {QStringLiteral("Articulo"), QStringLiteral("Debe informar el nombre del Artículo")},
        {QStringLiteral("ArtTipoArticulo"), QStringLiteral("Debe informar el tipo de Artículo")},
        {QStringLiteral("Seccion"),
         QStringLiteral("Debe informar la sección a la que pertenece el Artículo")},
        {QStringLiteral("Familia"),
         QStringLiteral("Debe informar la familia a la que pertenece el Artículo")},
        {QStringLiteral("SubFamilia"),
         QStringLiteral("Debe informar la subfamilia a la que pertenece el Artículo")},
        {QStringLiteral("ArtIVA"), QStringLiteral("Debe informar el tipo de IVA a aplicar al Artículo")}};
    for (const auto& o : obligatorios)
        if (texto(o.first).trimmed().isEmpty()) return rechazar(o.second, o.first);
    const QString colFactor = QStringLiteral("ArtFactorConversion");
    const QString factor = texto(colFactor).trimmed();
    if (factor.isEmpty())
        return rechazar(QStringLiteral("Debe informar el factor de conversión para las unidades de compra"),
                        colFactor);
    const auto valorFactor = leerImporte(factor);
    if (valorFactor && *valorFactor <= 0)
        return rechazar(
            QStringLiteral("El factor de conversión para las unidades de compra ha de ser mayor de 0"),
            colFactor);

    auto leido = leerTextos();
    if (!leido) return false;
    Registro r = *leido;
    if (!bloquear()) return false;

    // The series the article had and the one it will have: a change rewrites the pending
    // delivery-note lines, after a question asked with no transaction open.
    std::optional<QString> serieNueva;
    CommandTrace t(e_.dialogs(), traza(QStringLiteral("guardar")));
    if (!esNuevo()) {
        QString serieAntes, serieAhora;
        Registro previo = registro_;
        if (!t.ejecutar([&] {
                t.paso(QStringLiteral("Comparar la serie de facturación que le corresponde"));
                if (const auto antes = ArticuloStore(e_.db()).cargar(r.clave().toLongLong())) previo = *antes;
                SeriesArticuloStore series(e_.db());
                auto serieDe = [&](const Registro& a) {
                    return serieAplicable(series.series(a.texto(QStringLiteral("ArtSerie")),
                                                        entero(a.valor(QStringLiteral("Seccion"))),
                                                        entero(a.valor(QStringLiteral("Familia"))),
                                                        entero(a.valor(QStringLiteral("SubFamilia")))));
                };
                serieAntes = serieDe(previo);
                serieAhora = serieDe(r);
            }))
            return false;
        if (serieAntes != serieAhora) {
            if (!e_.dialogs().preguntar(Icono::Pregunta, kTituloCambioSerie,
                                        preguntaCambioSerieArticulo(clasificacionCambiada(previo, r), serieAhora)))
                return false;
            serieNueva = serieAhora;
        }
    }
    bool conBloqueoBD = false;
    if (serieNueva) {
        if (!almacenBloqueos(e_).bloquearBD()) return false;
        conBloqueoBD = true;
    }
    const bool nuevo = esNuevo();
    const ResultadoGuardado resultado = escribir(t, r, [&] {
        ArticuloStore articulos(e_.db());
        if (nuevo) {
            t.paso(QStringLiteral("Crear el Artículo"));
            articulos.crear(r);
        } else if (!serieNueva) {
            t.paso(QStringLiteral("Actualizar el Artículo"));
            articulos.actualizar(r);
        } else {
            t.paso(QStringLiteral("Actualizar el Artículo y la serie de los Albaranes sin facturar"));
            articulos.actualizarConSerie(r, *serieNueva);
        }
    });
    if (conBloqueoBD) almacenBloqueos(e_).desbloquearBD(); // reports its own database errors
    if (resultado == ResultadoGuardado::Recargar) {
        bloqueo_.liberar();
        abrir(r.clave().toLongLong());
        return false;
    }
    if (resultado != ResultadoGuardado::Guardado) return false;
    guardado(r, r.clave().toLongLong());
    return true;
}

bool ArticuloForm::eliminar() {
    if (esNuevo()) return false;
    if (!bloqueo_.tomar(tablaArticulos(), QString::number(*id_), descripcionBloqueo(), AccionBloqueo::Baja))
        return false;
    if (!e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("¡Atención!"), kPreguntaEliminarArticulo)) {
        bloqueo_.liberar();
        return false;
    }
    CommandTrace t(e_.dialogs(), traza(QStringLiteral("eliminar")));
    std::optional<ArticuloStore::Baja> baja;
    t.ejecutar([&] {
        t.paso(QStringLiteral("Eliminar el Artículo"));
        baja = ArticuloStore(e_.db()).eliminar(registro_);
    });
    if (baja == ArticuloStore::Baja::Referido) {
        if (!modificado_) bloqueo_.liberar();
        return fallo(Icono::Exclamacion, QStringLiteral("¡Atención!"),
                     QStringLiteral("No se puede eliminar este Artículo porque hay Albaranes u otros registros que "
                                    "dependen de él. Puede darlo de baja con una fecha de baja."),
                     QString());
    }
    if (!baja) {
        if (!modificado_) bloqueo_.liberar();
        return false;
    }
    nuevo();
    return true;
}

void ArticuloForm::cancelar() {
    if (esNuevo()) {
        nuevo();
        return;
    }
    const qint64 cod = *id_;
    bloqueo_.liberar();
    if (!abrir(cod)) nuevo();
}
