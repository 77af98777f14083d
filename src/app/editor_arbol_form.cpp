#include "app/editor_arbol_form.h"

#include "core/command_trace.h"

#include <QQueue>
#include <QSet>
#include <algorithm>

EditorArbolForm::EditorArbolForm(Entorno& entorno, const DescriptorTabla& tabla) : e_(entorno), t_(&tabla) {}

QString EditorArbolForm::titulo() const {
    return QStringLiteral("Arbol de ") + t_->descTabla;
}

QString EditorArbolForm::cabecera() const {
    const DescriptorColumna* c = t_->columna(t_->columnaTexto);
    return c ? c->Descripcion : t_->descTabla;
}

QString EditorArbolForm::descripcionTraza(const QString& accion) const {
    return accion + QStringLiteral(" en el '") + titulo() + QLatin1Char('\'');
}

const NodoArbol* EditorArbolForm::nodo(const QString& clave) const {
    const auto it = nodos_.constFind(clave);
    return it == nodos_.cend() ? nullptr : &it.value();
}

bool EditorArbolForm::refrescar() {
    CommandTrace traza(e_.dialogs(), descripcionTraza(QStringLiteral("cargar los objetos")));
    return traza.ejecutar([&] {
        traza.paso(QStringLiteral("Leer los registros de ") + t_->tabla);
        const QList<Registro> registros = ArbolStore(e_.db()).registros(*t_);

        traza.paso(QStringLiteral("Colgar cada registro de su padre"));
        QHash<QString, NodoArbol> nodos;
        QStringList enOrden; // keys in the order read: by text, then key
        QHash<QString, QString> padreGuardado;
        for (const Registro& r : registros) {
            NodoArbol n{r, texto(r.clave()), r.texto(t_->columnaTexto), {}};
            padreGuardado.insert(n.clave, texto(r.valor(t_->columnaPadre)));
            enOrden << n.clave;
            nodos.insert(n.clave, n);
        }
        QHash<QString, QStringList> hijosGuardados;
        QStringList raices;
        for (const QString& k : enOrden) {
            const QString p = padreGuardado.value(k);
            if (p.isEmpty() || !nodos.contains(p))
                raices << k;
            else
                hijosGuardados[p] << k;
        }

        // Hangs every node reachable from the roots, once; then, while records are left (they
        // sit in a loop of parents or hang from one), shows one of the loop as a root.
        QHash<QString, QString> padres;
        QSet<QString> colgados;
        auto colgarDesde = [&](const QString& raiz) {
            QQueue<QString> cola;
            cola.enqueue(raiz);
            colgados.insert(raiz);
            while (!cola.isEmpty()) {
                const QString k = cola.dequeue();
                for (const QString& h : hijosGuardados.value(k)) {
                    if (colgados.contains(h)) continue;
                    colgados.insert(h);
                    nodos.find(k)->hijos << h;
                    padres.insert(h, k);
                    cola.enqueue(h);
                }
            }
        };
        for (const QString& r : raices)
            colgarDesde(r);
        if (colgados.size() < nodos.size()) {
            QStringList sueltos;
            for (const QString& k : enOrden)
                if (!colgados.contains(k)) sueltos << k;
            std::sort(sueltos.begin(), sueltos.end(), [&](const QString& a, const QString& b) {
                bool okA = false, okB = false;
                const qlonglong na = a.toLongLong(&okA), nb = b.toLongLong(&okB);
                return okA && okB ? na < nb : a < b;
            });
            for (const QString& inicio : sueltos) {
                if (colgados.contains(inicio)) continue;
                // Climb from this record until a key repeats: that key is in the loop.
                QSet<QString> subida;
                QString k = inicio;
                while (!subida.contains(k)) {
                    subida.insert(k);
                    k = padreGuardado.value(k);
                }
                // The lowest key of the loop becomes the root.
                QString menor = k;
                for (QString j = padreGuardado.value(k); j != k; j = padreGuardado.value(j))
                    if (sueltos.indexOf(j) < sueltos.indexOf(menor)) menor = j;
                raices << menor;
                colgarDesde(menor);
            }
        }
        nodos_ = nodos;
        padres_ = padres;
        raices_ = raices;
        if (!nodos_.contains(seleccionado)) seleccionado.clear();
    });
}

FichaForm EditorArbolForm::nuevaRaiz() const {
    return FichaForm(e_, *t_, {{t_->columnaPadre, QVariant()}});
}

std::optional<FichaForm> EditorArbolForm::nuevoHijo() {
    const NodoArbol* n = nodo(seleccionado);
    if (!n) {
        e_.dialogs().avisar(kTituloAtencionEditor,
                            QStringLiteral("Seleccione el objeto del que dependerá el nuevo objeto."));
        return std::nullopt;
    }
    return FichaForm(e_, *t_, {{t_->columnaPadre, n->registro.clave()}});
}

std::optional<FichaForm> EditorArbolForm::fichaSeleccionada() {
    const NodoArbol* n = nodo(seleccionado);
    if (!n) {
        e_.dialogs().avisar(kTituloAtencionEditor,
                            QStringLiteral("Seleccione el objeto que desea modificar."));
        return std::nullopt;
    }
    bool borrado = false;
    auto ficha =
        fichaParaModificar(e_, *t_, n->registro.clave(),
                           descripcionTraza(QStringLiteral("modificar el objeto seleccionado")), borrado);
    if (borrado) refrescar();
    return ficha;
}

void EditorArbolForm::guardado(const Registro& r) {
    refrescar();
    if (nodos_.contains(texto(r.clave()))) seleccionado = texto(r.clave());
}

bool EditorArbolForm::eliminar() {
    const NodoArbol* n = nodo(seleccionado);
    if (!n) {
        e_.dialogs().avisar(kTituloAtencionEditor,
                            QStringLiteral("Seleccione el objeto que desea eliminar."));
        return false;
    }
    const QString raiz = n->clave;
    BloqueoEdicion bloqueo(e_);
    if (!bloqueo.tomar(*t_, raiz, n->texto, AccionBloqueo::Baja)) return false;
    std::optional<QString> bloqueado;
    bool abiertoAqui = false;
    CommandTrace comprobacion(
        e_.dialogs(), descripcionTraza(QStringLiteral("comprobar los bloqueos del objeto seleccionado")));
    if (!comprobacion.ejecutar([&] {
            // The branch as shown now; the deletion reads it again.
            QList<Registro> rama{n->registro};
            for (int i = 0; i < rama.size(); ++i)
                for (const QString& h : nodo(texto(rama.at(i).clave()))->hijos)
                    rama.append(nodo(h)->registro);
            for (const Registro& r : rama)
                abiertoAqui = abiertoAqui || e_.editores.abierto(t_->tabla, r.clave().toString());
            bloqueado = bloqueadoPorOtro(rama);
        }))
        return false;
    if (abiertoAqui) {
        e_.dialogs().avisar(kTituloAtencionEditor, textoAbiertoEnOtraVentana(t_->descTabla));
        return false;
    }
    if (bloqueado) {
        e_.dialogs().mostrar(Icono::Informacion, kTituloBloqueoRama, textoRamaBloqueada(*bloqueado));
        return false;
    }
    if (!e_.dialogs().preguntar(Icono::Pregunta, kTituloAtencionEditor, kPreguntaEliminarRama)) return false;
    CommandTrace traza(e_.dialogs(), descripcionTraza(QStringLiteral("eliminar el objeto seleccionado")));
    bool eliminada = false;
    const bool ok = traza.ejecutar([&] {
        traza.paso(QStringLiteral("Eliminar la rama del objeto de ") + t_->tabla);
        eliminada = ArbolStore(e_.db()).eliminarRama(*t_, raiz, [&](const QList<Registro>& rama) {
            bloqueado = bloqueadoPorOtro(rama);
            return !bloqueado;
        });
    });
    // Shown once the transaction has ended.
    if (ok && bloqueado)
        e_.dialogs().mostrar(Icono::Informacion, kTituloBloqueoRama, textoRamaBloqueada(*bloqueado));
    refrescar();
    return ok && eliminada;
}

QString EditorArbolForm::textoRamaBloqueada(const QString& texto) const {
    return QStringLiteral("No es posible dar de Baja el/la ") + t_->descTabla + QStringLiteral(" de ") +
           texto + QStringLiteral(" pues otro Puesto lo/a tiene bloqueado/a. Consulte a un Administrador.");
}

std::optional<QString> EditorArbolForm::bloqueadoPorOtro(const QList<Registro>& rama) {
    if (!bloqueoActivo(e_)) return std::nullopt;
    QHash<QString, QString> ajenos; // lock key -> session, of the other sessions
    for (const Bloqueo& b : almacenBloqueos(e_).lista())
        if (b.sesion != e_.sesion) ajenos.insert(b.clave, b.sesion);
    for (const Registro& r : rama)
        if (ajenos.contains(claveBloqueo(*t_, texto(r.clave())))) return r.texto(t_->columnaTexto);
    return std::nullopt;
}
