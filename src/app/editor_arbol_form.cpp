#include "app/editor_arbol_form.h"

#include "core/command_trace.h"

#include <QQueue>
#include <QSet>
#include <algorithm>

QStringList ramaDe(const QString& clave, const QList<QPair<QString, QString>>& clavesYPadres) {
    QHash<QString, QStringList> hijos;
    for (const auto& [k, padre] : clavesYPadres)
        if (!padre.isEmpty()) hijos[padre].append(k);
    QStringList rama{clave};
    QSet<QString> vistos{clave};
    for (int i = 0; i < rama.size(); ++i)
        for (const QString& h : hijos.value(rama.at(i)))
            if (!vistos.contains(h)) {
                vistos.insert(h);
                rama.append(h);
            }
    return rama;
}

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
        QStringList orden{t_->columnaTexto};
        for (const auto& c : t_->clave)
            orden << c;
        const QList<Registro> registros = RegistroStore(e_.db()).buscar(*t_, {}, orden);

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
    if (!e_.dialogs().preguntar(Icono::Pregunta, kTituloAtencionEditor, kPreguntaEliminarRama)) return false;
    CommandTrace traza(e_.dialogs(), descripcionTraza(QStringLiteral("eliminar el objeto seleccionado")));
    const bool ok = traza.ejecutar([&] {
        Transaction tx = e_.db().transaccion();
        RegistroStore store(e_.db());
        // The branch is read again inside the transaction: children added meanwhile by
        // another workstation go with it.
        traza.paso(QStringLiteral("Leer la rama del objeto"));
        const QList<Registro> todos = store.buscar(*t_);
        QList<QPair<QString, QString>> clavesYPadres;
        QHash<QString, const Registro*> porClave;
        for (const Registro& r : todos) {
            clavesYPadres.append({texto(r.clave()), texto(r.valor(t_->columnaPadre))});
            porClave.insert(texto(r.clave()), &r);
        }
        const QStringList rama = ramaDe(raiz, clavesYPadres);
        traza.paso(QStringLiteral("Eliminar %1 registros de ").arg(rama.size()) + t_->tabla);
        // Children before their parents.
        for (auto it = rama.crbegin(); it != rama.crend(); ++it)
            if (const Registro* r = porClave.value(*it)) store.eliminar(*r);
        tx.commit();
    });
    refrescar();
    return ok;
}
