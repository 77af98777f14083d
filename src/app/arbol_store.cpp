#include "app/arbol_store.h"

#include <QHash>
#include <QSet>

namespace {
QString texto(const QVariant& v) {
    return v.isNull() ? QString() : v.toString();
}
} // namespace

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

QList<Registro> ArbolStore::registros(const DescriptorTabla& t) {
    QStringList orden{t.columnaTexto};
    for (const auto& c : t.clave)
        orden << c;
    return RegistroStore(db_).buscar(t, {}, orden);
}

bool ArbolStore::eliminarRama(const DescriptorTabla& t, const QString& clave,
                              const std::function<bool(const QList<Registro>&)>& puedeEliminar) {
    Transaction tx = db_.transaccion();
    RegistroStore store(db_);
    const QList<Registro> todos = store.buscar(t);
    QList<QPair<QString, QString>> clavesYPadres;
    QHash<QString, const Registro*> porClave;
    for (const Registro& r : todos) {
        clavesYPadres.append({texto(r.clave()), texto(r.valor(t.columnaPadre))});
        porClave.insert(texto(r.clave()), &r);
    }
    QList<Registro> rama;
    for (const QString& k : ramaDe(clave, clavesYPadres))
        if (const Registro* r = porClave.value(k)) rama.append(*r);
    if (puedeEliminar && !puedeEliminar(rama)) return false;
    for (auto it = rama.crbegin(); it != rama.crend(); ++it)
        store.eliminar(*it);
    tx.commit();
    return true;
}
