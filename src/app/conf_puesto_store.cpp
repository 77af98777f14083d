#include "app/conf_puesto_store.h"

#include "data/esquema.h"
#include "data/registro.h"

namespace {
const DescriptorTabla& tablaConfPuesto() {
    return descriptorRequerido(QStringLiteral("ConfPuesto"));
}

std::optional<qint64> numero(const Registro& r, const QString& columna) {
    const QVariant v = r.valor(columna);
    if (v.isNull()) return std::nullopt;
    return v.toLongLong();
}

QVariant variante(const std::optional<qint64>& n) {
    return n ? QVariant(*n) : QVariant();
}

QVariant textoOpcional(const QString& s) {
    return s.isEmpty() ? QVariant() : QVariant(s);
}
} // namespace

ConfiguracionPuesto ConfPuestoStore::cargar(const QString& puesto) {
    ConfiguracionPuesto c;
    c.Puesto = puesto;
    const auto r = RegistroStore(db_).cargar(tablaConfPuesto(), puesto);
    if (!r) return c;
    c.SerieVenta = r->texto(QStringLiteral("SerieVenta"));
    c.SerieAbono = r->texto(QStringLiteral("SerieAbono"));
    c.Tarifa = r->texto(QStringLiteral("Tarifa"));
    c.IdEspecie = numero(*r, QStringLiteral("IdEspecie"));
    c.IdCliente = numero(*r, QStringLiteral("IdCliente"));
    c.IdArticulo = numero(*r, QStringLiteral("IdArticulo"));
    c.FechaInicial = r->valor(QStringLiteral("FechaInicial")).toDate();
    c.AutoGuardado = std::max(0, r->valor(QStringLiteral("AutoGuardado")).toInt());
    c.HoraCopia = r->valor(QStringLiteral("HoraCopia")).toTime();
    c.versionFila = r->valor(DescriptorTabla::kColumnaVersion).toLongLong();
    return c;
}

bool ConfPuestoStore::existe(const QString& puesto) {
    return RegistroStore(db_).contar(tablaConfPuesto(), {QStringLiteral("Puesto = ?"), {puesto}}) > 0;
}

qint64 ConfPuestoStore::guardar(const ConfiguracionPuesto& c) {
    Registro r(tablaConfPuesto());
    r.setValor(QStringLiteral("Puesto"), c.Puesto);
    r.setValor(QStringLiteral("SerieVenta"), textoOpcional(c.SerieVenta));
    r.setValor(QStringLiteral("SerieAbono"), textoOpcional(c.SerieAbono));
    r.setValor(QStringLiteral("Tarifa"), textoOpcional(c.Tarifa));
    r.setValor(QStringLiteral("IdEspecie"), variante(c.IdEspecie));
    r.setValor(QStringLiteral("IdCliente"), variante(c.IdCliente));
    r.setValor(QStringLiteral("IdArticulo"), variante(c.IdArticulo));
    r.setValor(QStringLiteral("FechaInicial"),
               c.FechaInicial.isValid() ? QVariant(c.FechaInicial) : QVariant());
    r.setValor(QStringLiteral("AutoGuardado"), std::max(0, c.AutoGuardado));
    r.setValor(QStringLiteral("HoraCopia"), c.HoraCopia.isValid() ? QVariant(c.HoraCopia) : QVariant());
    RegistroStore store(db_);
    Transaction tx = db_.transaccion();
    if (existe(c.Puesto)) {
        r.setValor(DescriptorTabla::kColumnaVersion, c.versionFila);
        store.actualizar(r);
    } else {
        store.crear(r);
    }
    tx.commit();
    return r.valor(DescriptorTabla::kColumnaVersion).toLongLong();
}

QList<OpcionLista> ConfPuestoStore::series(const QString& tipo) {
    QList<OpcionLista> lista;
    const auto filas =
        RegistroStore(db_).buscar(descriptorRequerido(QStringLiteral("Series")),
                                  {QStringLiteral("Tipo = ?"), {tipo}}, {QStringLiteral("Serie")});
    for (const Registro& r : filas)
        lista.append({r.valor(QStringLiteral("Serie")), r.texto(QStringLiteral("Serie")) +
                                                            QStringLiteral(" - ") +
                                                            r.texto(QStringLiteral("Descripcion"))});
    return lista;
}

QList<OpcionLista> ConfPuestoStore::opciones(const DescriptorTabla* t, const QVariant& ademas) {
    QList<OpcionLista> lista;
    if (!t || t->clave.isEmpty()) return lista;
    const QString columnaTexto = t->columnaTexto.isEmpty() ? t->clave.first() : t->columnaTexto;
    Condicion condicion;
    if (const DescriptorColumna* activo = t->columna(QStringLiteral("Activo"))) {
        condicion = {activo->nombre + QStringLiteral(" = ?"), {QStringLiteral("S")}};
        if (!ademas.isNull()) {
            condicion.sql += QStringLiteral(" OR ") + t->clave.first() + QStringLiteral(" = ?");
            condicion.valores << ademas;
        }
    }
    for (const Registro& r : RegistroStore(db_).buscar(*t, condicion, {columnaTexto}))
        lista.append({r.clave(), r.texto(columnaTexto)});
    return lista;
}

std::optional<QString> ConfPuestoStore::textoRegistro(const DescriptorTabla& t, qint64 clave) {
    const auto r = RegistroStore(db_).cargar(t, clave);
    if (!r) return std::nullopt;
    return r->texto(t.columnaTexto.isEmpty() ? t.clave.value(0) : t.columnaTexto);
}
