#include "documents/plantilla.h"

namespace {
struct Nodo {
    enum class Tipo { Texto, Campo, Bloque };
    Tipo tipo = Tipo::Texto;
    QString texto; // the text, or the field's or block's name
    QChar marca;   // '#', '?' or '^' for a block
    QList<Nodo> hijos;
};

struct Etiqueta {
    qsizetype fin = -1; // position after "}}"; -1 when there is no tag here
    QChar marca;        // '#', '?', '^', '/' or null for a field
    QString nombre;
};

bool nombreValido(const QString& n) {
    if (n.isEmpty()) return false;
    for (const QChar c : n)
        if (!c.isLetterOrNumber() && c != QLatin1Char('_') && c != QLatin1Char('.')) return false;
    return true;
}

QString abrir(QChar marca, const QString& nombre) {
    return QStringLiteral("{{") + marca + nombre + QStringLiteral("}}");
}

QString cerrar(const QString& nombre) {
    return QStringLiteral("{{/") + nombre + QStringLiteral("}}");
}

class Analizador {
public:
    explicit Analizador(const QString& s) : s_(s) {}

    QList<Nodo> analizar() {
        QList<Nodo> raiz;
        leer(raiz, {}, {}, 0);
        return raiz;
    }
    const QString& error() const { return error_; }

private:
    // The tag that starts at i ("{{" already seen there).
    Etiqueta etiqueta(qsizetype i) const {
        Etiqueta e;
        const qsizetype fin = s_.indexOf(QStringLiteral("}}"), i + 2);
        if (fin < 0) return e;
        QString dentro = s_.mid(i + 2, fin - i - 2).trimmed();
        if (!dentro.isEmpty() && QStringLiteral("#?^/").contains(dentro.front())) {
            e.marca = dentro.front();
            dentro = dentro.mid(1).trimmed();
        }
        if (!nombreValido(dentro)) return e;
        e.nombre = dentro;
        e.fin = fin + 2;
        return e;
    }

    void fallo(const QString& texto) {
        if (error_.isEmpty()) error_ = texto;
    }

    static void anyadirTexto(QList<Nodo>& nodos, const QString& texto) {
        if (texto.isEmpty()) return;
        if (!nodos.isEmpty() && nodos.last().tipo == Nodo::Tipo::Texto)
            nodos.last().texto += texto;
        else
            nodos.append({Nodo::Tipo::Texto, texto, {}, {}});
    }

    // Reads nodes until the closing tag of the block `nombre` (or the end); true when it was closed.
    bool leer(QList<Nodo>& nodos, const QString& nombre, QChar marca, int nivel) {
        while (pos_ < s_.size()) {
            const qsizetype i = s_.indexOf(QStringLiteral("{{"), pos_);
            if (i < 0) break;
            anyadirTexto(nodos, s_.mid(pos_, i - pos_));
            const Etiqueta e = etiqueta(i);
            if (e.fin < 0) {
                anyadirTexto(nodos, QStringLiteral("{{"));
                pos_ = i + 2;
                continue;
            }
            const QString literal = s_.mid(i, e.fin - i);
            pos_ = e.fin;
            if (e.marca.isNull()) {
                nodos.append({Nodo::Tipo::Campo, e.nombre, {}, {}});
            } else if (e.marca == QLatin1Char('/')) {
                if (e.nombre == nombre && !nombre.isEmpty()) return true;
                if (nombre.isEmpty())
                    fallo(QStringLiteral("la etiqueta «%1» no cierra ningún bloque").arg(literal));
                else
                    fallo(QStringLiteral("se esperaba «%1» y aparece «%2»").arg(cerrar(nombre), literal));
                anyadirTexto(nodos, literal);
            } else if (nivel >= kMaxAnidamiento) {
                fallo(QStringLiteral("hay más de %1 bloques anidados").arg(kMaxAnidamiento));
                anyadirTexto(nodos, literal);
            } else {
                Nodo bloque{Nodo::Tipo::Bloque, e.nombre, e.marca, {}};
                leer(bloque.hijos, e.nombre, e.marca, nivel + 1);
                nodos.append(bloque);
            }
        }
        anyadirTexto(nodos, s_.mid(pos_));
        pos_ = s_.size();
        if (!nombre.isEmpty())
            fallo(QStringLiteral("falta «%1» para cerrar el bloque «%2»")
                      .arg(cerrar(nombre), abrir(marca, nombre)));
        return false;
    }

    const QString& s_;
    qsizetype pos_ = 0;
    QString error_;
};

QString escapar(const QString& valor) {
    QString t = valor.toHtmlEscaped();
    t.replace(QStringLiteral("\r\n"), QStringLiteral("<br>"));
    t.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    return t;
}

class Compositor {
public:
    explicit Compositor(const DatosDocumento& d) : d_(d) { contextos_.append(&d.campos); }
    // The document outgrew kMaxDocumento and was cut short.
    bool excedido() const { return excedido_; }

    void componer(const QList<Nodo>& nodos, QString& salida) {
        for (const Nodo& n : nodos) {
            if (salida.size() > kMaxDocumento) {
                excedido_ = true;
                return;
            }
            switch (n.tipo) {
            case Nodo::Tipo::Texto:
                salida += n.texto;
                break;
            case Nodo::Tipo::Campo:
                salida += escapar(valor(n.texto));
                break;
            case Nodo::Tipo::Bloque:
                bloque(n, salida);
                break;
            }
        }
    }

private:
    QString valor(const QString& nombre) const {
        for (qsizetype i = contextos_.size() - 1; i >= 0; --i)
            if (const QString* v = buscarCampo(*contextos_.at(i), nombre)) return *v;
        return {};
    }

    void bloque(const Nodo& n, QString& salida) {
        const auto filas = d_.filas.constFind(n.texto);
        const bool hayFilas = filas != d_.filas.cend() && !filas->isEmpty();
        if (n.marca == QLatin1Char('#')) {
            if (!hayFilas) return;
            for (const CamposDocumento& fila : *filas) {
                if (excedido_) return;
                contextos_.append(&fila);
                componer(n.hijos, salida);
                contextos_.removeLast();
            }
            return;
        }
        const bool lleno = hayFilas || !valor(n.texto).trimmed().isEmpty();
        if (lleno == (n.marca == QLatin1Char('?'))) componer(n.hijos, salida);
    }

    const DatosDocumento& d_;
    QList<const CamposDocumento*> contextos_;
    bool excedido_ = false;
};
} // namespace

const QString* buscarCampo(const CamposDocumento& campos, const QString& nombre) {
    for (const auto& c : campos)
        if (c.first == nombre) return &c.second;
    return nullptr;
}

QString DatosDocumento::valor(const QString& campo) const {
    const QString* v = buscarCampo(campos, campo);
    return v ? *v : QString();
}

bool DatosDocumento::tiene(const QString& campo) const {
    return buscarCampo(campos, campo) != nullptr;
}

void DatosDocumento::anyadirSiFalta(const QString& campo, const QString& v) {
    if (!tiene(campo)) campos.append({campo, v});
}

QString comprobarPlantilla(const QString& html) {
    Analizador a(html);
    a.analizar();
    return a.error();
}

QString componerPlantilla(const QString& html, const DatosDocumento& datos, bool* completo) {
    Analizador a(html);
    const QList<Nodo> raiz = a.analizar();
    QString salida;
    Compositor c(datos);
    c.componer(raiz, salida);
    if (completo) *completo = !c.excedido();
    return salida;
}

CamposDocumento camposDesdeTexto(const QString& texto) {
    CamposDocumento campos;
    for (const QString& item : texto.split(QChar(u'\u00A7'))) {
        const qsizetype igual = item.indexOf(QLatin1Char('='));
        if (igual <= 0) continue;
        campos.append({item.left(igual).trimmed(), item.mid(igual + 1)});
    }
    return campos;
}
