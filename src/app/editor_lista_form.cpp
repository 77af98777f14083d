#include "app/editor_lista_form.h"

#include "core/concordancia.h"
#include "core/command_trace.h"

QString textoRegistro(const Registro& r) {
    const DescriptorTabla& t = r.descriptor();
    return t.columnaTexto.isEmpty() ? r.clave().toString() : r.texto(t.columnaTexto);
}

EditorListaForm::EditorListaForm(Entorno& entorno, const DescriptorTabla& tabla) : e_(entorno), t_(&tabla) {}

QString EditorListaForm::titulo() const {
    return QStringLiteral("Lista de ") + t_->descTabla;
}

QString EditorListaForm::descripcionTraza(const QString& accion) const {
    return accion + QStringLiteral(" en la '") + titulo() + QLatin1Char('\'');
}

QStringList EditorListaForm::cabeceras() const {
    QStringList l;
    for (const auto& c : t_->columnaS)
        if (!c.interna) l << c.Descripcion;
    return l;
}

int EditorListaForm::columnas() const {
    // The program's own columns (the row version) come last and are never listed.
    int n = 0;
    for (const auto& c : t_->columnaS)
        if (!c.interna) ++n;
    return n;
}

QString EditorListaForm::textoCelda(int fila, int columna) const {
    if (fila < 0 || fila >= filas() || columna < 0 || columna >= columnas()) return {};
    return ::textoCelda(t_->columnaS.at(columna), registros_.at(fila).valores().at(columna));
}

int EditorListaForm::filaDeClave(const QVariant& clave) const {
    if (clave.isNull()) return -1;
    for (int i = 0; i < registros_.size(); ++i)
        if (registros_.at(i).clave().toString() == clave.toString()) return i;
    return -1;
}

bool EditorListaForm::refrescar() {
    const QVariant anterior =
        seleccionado >= 0 && seleccionado < filas() ? registros_.at(seleccionado).clave() : QVariant();
    CommandTrace traza(e_.dialogs(), descripcionTraza(QStringLiteral("cargar los objetos")));
    return traza.ejecutar([&] {
        QStringList orden;
        if (!t_->columnaTexto.isEmpty()) orden << t_->columnaTexto;
        for (const auto& c : t_->clave)
            if (!orden.contains(c, Qt::CaseInsensitive)) orden << c;
        traza.paso(QStringLiteral("Leer los registros de ") + t_->tabla);
        registros_ = RegistroStore(e_.db()).buscar(*t_, {}, orden);
        seleccionado = filaDeClave(anterior);
    });
}

FichaForm EditorListaForm::nuevaFicha() const {
    return FichaForm(e_, *t_);
}

std::optional<FichaForm> EditorListaForm::fichaSeleccionada() {
    if (seleccionado < 0 || seleccionado >= filas()) {
        e_.dialogs().avisar(kTituloAtencionEditor,
                            QStringLiteral("Seleccione el objeto que desea modificar."));
        return std::nullopt;
    }
    bool borrado = false;
    auto ficha =
        fichaParaModificar(e_, *t_, registros_.at(seleccionado).clave(),
                           descripcionTraza(QStringLiteral("modificar el objeto seleccionado")), borrado);
    if (borrado) refrescar();
    return ficha;
}

std::optional<FichaForm> fichaParaModificar(Entorno& e, const DescriptorTabla& t, const QVariant& clave,
                                            const QString& descripcionTraza, bool& borrado) {
    borrado = false;
    std::optional<Registro> actual;
    CommandTrace traza(e.dialogs(), descripcionTraza);
    if (!traza.ejecutar([&] { actual = RegistroStore(e.db()).cargar(t, clave); })) return std::nullopt;
    if (!actual) {
        borrado = true;
        e.dialogs().avisar(
            kTituloAtencionEditor,
            QStringLiteral("El objeto seleccionado ya no existe: otro puesto lo ha eliminado."));
        return std::nullopt;
    }
    FichaForm ficha(e, *actual);
    if (!ficha.bloquear()) return std::nullopt;
    return ficha;
}

void EditorListaForm::guardado(const Registro& r) {
    refrescar();
    seleccionado = filaDeClave(r.clave());
}

bool EditorListaForm::eliminar() {
    if (seleccionado < 0 || seleccionado >= filas()) {
        e_.dialogs().avisar(kTituloAtencionEditor,
                            QStringLiteral("Seleccione el objeto que desea eliminar."));
        return false;
    }
    const Registro r = registros_.at(seleccionado);
    if (e_.editores.abierto(t_->tabla, r.clave().toString())) {
        e_.dialogs().avisar(kTituloAtencionEditor, textoAbiertoEnOtraVentana(t_->descTabla));
        return false;
    }
    BloqueoEdicion bloqueo(e_);
    if (!bloqueo.tomar(*t_, r.clave().toString(), textoRegistro(r), AccionBloqueo::Baja)) return false;
    if (!e_.dialogs().preguntar(Icono::Pregunta, kTituloAtencionEditor, kPreguntaEliminar)) return false;
    CommandTrace traza(e_.dialogs(), descripcionTraza(QStringLiteral("eliminar el objeto seleccionado")));
    bool usado = false;
    const bool ok = traza.ejecutar([&] {
        traza.paso(QStringLiteral("Eliminar el registro de ") + t_->tabla);
        try {
            RegistroStore(e_.db()).eliminar(r);
        } catch (const ErrorBD& e) {
            if (!esErrorDeReferencia(e)) throw;
            usado = true;
        }
    });
    refrescar();
    if (usado)
        e_.dialogs().avisar(kTituloAtencionEditor, QStringLiteral("No es posible eliminar ") + concordancia(t_->descTabla).este +
                                                       QLatin1Char(' ') + t_->descTabla +
                                                       QStringLiteral(" porque hay otros registros que dependen de ") +
                                                       concordancia(t_->descTabla).el + QLatin1Char('.'));
    return ok && !usado;
}
