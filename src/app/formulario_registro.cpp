#include "app/formulario_registro.h"

#include "app/ficha_form.h"

FormularioRegistro::FormularioRegistro(Entorno& entorno, const DescriptorTabla& tabla)
    : e_(entorno), registro_(tabla), bloqueo_(entorno) {}

FormularioRegistro::~FormularioRegistro() {
    e_.editores.soltar(this);
}

void FormularioRegistro::empezarNuevo(const Registro& vacio) {
    bloqueo_.liberar();
    e_.editores.soltar(this);
    id_.reset();
    mostrarRegistro(vacio);
}

bool FormularioRegistro::ocupar(qint64 id) {
    return e_.editores.ocupar(registro_.descriptor().tabla, id, this, traerAlFrente);
}

void FormularioRegistro::mostrarRegistro(const Registro& r) {
    registro_ = r;
    textos_.clear();
    for (const QString& c : columnasEditables())
        if (const DescriptorColumna* d = r.descriptor().columna(c))
            textos_.insert(c, FichaForm::textoValor(*d, r.valor(c)));
    modificado_ = false;
    foco.clear();
}

bool FormularioRegistro::bloquear() {
    if (!id_) return true;
    return bloqueo_.tomar(registro_.descriptor(), QString::number(*id_), descripcionBloqueo(),
                          AccionBloqueo::Modificacion);
}

bool FormularioRegistro::setTexto(const QString& columna, const QString& texto) {
    if (!textos_.contains(columna)) return false;
    if (textos_.value(columna) == texto) return true;
    if (!bloquear()) return false;
    textos_.insert(columna, texto);
    modificado_ = true;
    alCambiar(columna);
    return true;
}

void FormularioRegistro::cerrar() {
    bloqueo_.liberar();
    e_.editores.soltar(this);
}

bool FormularioRegistro::puedeAbandonar() {
    if (!modificado_) return true;
    return e_.dialogs().preguntar(Icono::Pregunta, QStringLiteral("ATENCIÓN"), preguntaAbandonar());
}

bool FormularioRegistro::fallo(Icono icono, const QString& titulo, const QString& texto, const QString& columna) {
    foco = columna;
    e_.dialogs().mostrar(icono, titulo, texto);
    return false;
}

std::optional<Registro> FormularioRegistro::leerTextos() {
    Registro r = registro_.getCopia();
    for (const QString& c : columnasEditables()) {
        const DescriptorColumna* d = r.descriptor().columna(c);
        if (!d) continue;
        QString error;
        const auto v = FichaForm::leerValor(*d, texto(c), &error);
        if (!v) {
            fallo(Icono::Exclamacion, kTituloErronea, error, c);
            return std::nullopt;
        }
        r.setValor(c, *v);
    }
    return r;
}

ResultadoGuardado FormularioRegistro::escribir(CommandTrace& traza, Registro& r,
                                               const std::function<void()>& escritura) {
    const DescriptorTabla& t = registro_.descriptor();
    if (id_ ? !bloquear()
            : !bloqueo_.tomarAlta(t, descripcionBloqueo()))
        return ResultadoGuardado::Fallido;
    const bool nuevo = !id_;
    const ResultadoGuardado resultado = guardarRegistro(e_, traza, bloqueo_, t.descTabla, escritura);
    if (nuevo) {
        bloqueo_.liberar();
        if (resultado != ResultadoGuardado::Guardado) r.setValor(t.clave.value(0), QVariant());
    }
    return resultado;
}

void FormularioRegistro::guardado(const Registro& r, qint64 id) {
    id_ = id;
    ocupar(id);
    mostrarRegistro(r);
    bloqueo_.liberar();
}
