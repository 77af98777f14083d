#include "sesion.h"

#include "app/claves.h"
#include "app/usuario_store.h"
#include "clients/cliente_busqueda_store.h"
#include "data/esquema.h"
#include "data/registro.h"

namespace {
QVariant nulo(const QString& s) {
    return s.isEmpty() ? QVariant() : QVariant(s);
}
const QString kS = u"S"_s;
} // namespace

QVariantMap Semilla::con(QVariantMap a, const QVariantMap& b) {
    a.insert(b); // b's values win
    return a;
}

qint64 Semilla::fila(const QString& tabla, const QVariantMap& valores) {
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t) qFatal("tabla desconocida: %s", qPrintable(tabla));
    Registro r(*t);
    for (auto it = valores.cbegin(); it != valores.cend(); ++it)
        r.setValor(it.key(), it.value());
    // Whoever writes a client or a pet fills its search name.
    if (t->tieneColumna(u"NombreBusqueda"_s) && !valores.contains(u"NombreBusqueda"_s))
        r.setValor(u"NombreBusqueda"_s, normalizarBusqueda(valores.value(u"Nombre"_s).toString()));
    return RegistroStore(db_).crear(r).toLongLong();
}

qint64 Semilla::contar(const QString& tabla) {
    return RegistroStore(db_).contar(*descriptorTabla(tabla));
}

qint64 Semilla::iva(const QString& desc, double porcentaje) {
    return fila(u"TiposIVA"_s, {{u"Descripcion"_s, desc}, {u"Porcentaje"_s, porcentaje}, {u"Activo"_s, kS}});
}

qint64 Semilla::cliente(const QString& nombre, const QVariantMap& mas) {
    return fila(u"Clientes"_s, con({{u"Nombre"_s, nombre}}, mas));
}

qint64 Semilla::especie(const QString& desc) {
    return fila(u"Especies"_s, {{u"Descripcion"_s, desc}, {u"Activo"_s, kS}});
}

qint64 Semilla::raza(const QString& desc, qint64 especie) {
    return fila(u"Razas"_s, {{u"Descripcion"_s, desc}, {u"IdEspecie"_s, especie}, {u"Activo"_s, kS}});
}

qint64 Semilla::estado(const QString& desc) {
    return fila(u"Estados"_s, {{u"Descripcion"_s, desc}});
}

qint64 Semilla::personal(const QString& desc, bool activo) {
    return fila(u"Personal"_s, {{u"Descripcion"_s, desc}, {u"Activo"_s, activo ? kS : u"N"_s}});
}

qint64 Semilla::mascota(const QString& nombre, qint64 cliente, qint64 especie, const QVariantMap& mas) {
    return fila(u"Mascotas"_s,
                con({{u"Nombre"_s, nombre}, {u"IdCliente"_s, cliente}, {u"IdEspecie"_s, especie}}, mas));
}

qint64 Semilla::plan(const QString& nombre, const QVariantMap& mas) {
    return fila(u"PlanesSalud"_s, con({{u"Nombre"_s, nombre}}, mas));
}

void Semilla::usuario(const QString& id, const QString& tipo, const QString& clave, const QString& nombre) {
    const QString sal = nuevaSal();
    UsuarioStore(db_).guardar(
        {id, nombre.isEmpty() ? id.toUpper() : nombre, sal, hashClave(sal, clave), tipo});
}

qint64 Semilla::seccion(const QString& desc, const QString& serie) {
    return fila(u"Secciones"_s, {{u"Descripcion"_s, desc}, {u"Serie"_s, nulo(serie)}});
}

qint64 Semilla::familia(qint64 seccion, const QString& desc, const QString& serie) {
    return fila(u"Familias"_s,
                {{u"IdSeccion"_s, seccion}, {u"Descripcion"_s, desc}, {u"Serie"_s, nulo(serie)}});
}

qint64 Semilla::subfamilia(qint64 familia, const QString& desc, const QString& serie) {
    return fila(u"Subfamilias"_s,
                {{u"IdFamilia"_s, familia}, {u"Descripcion"_s, desc}, {u"Serie"_s, nulo(serie)}});
}

qint64 Semilla::articulo(const QString& desc, qint64 seccion, qint64 familia, qint64 subfamilia, qint64 iva,
                         const QVariantMap& mas) {
    return fila(u"Articulos"_s, con({{u"Articulo"_s, desc},
                                     {u"ArtTipoArticulo"_s, u"PRODUCTO"_s},
                                     {u"Seccion"_s, seccion},
                                     {u"Familia"_s, familia},
                                     {u"SubFamilia"_s, subfamilia},
                                     {u"ArtIVA"_s, iva},
                                     {u"ArtFactorConversion"_s, 1.0}},
                                    mas));
}

qint64 Semilla::albaran(qint64 numero, std::optional<qint64> factura) {
    QVariantMap v = {{u"Serie"_s, u"A"_s},
                     {u"NumAlbaran"_s, numero},
                     {u"Fecha"_s, QDate(2026, 3, 2)},
                     {u"IdCliente"_s, 1}};
    if (factura) v = con(v, {{u"NumFactura"_s, *factura}, {u"SerieFactura"_s, u"A"_s}});
    return fila(u"Albaranes"_s, v);
}

qint64 Semilla::linea(qint64 albaran, qint64 articulo, const QString& serie) {
    return fila(u"LineasAlbaran"_s, {{u"IdAlbaran"_s, albaran},
                                     {u"IdArticulo"_s, articulo},
                                     {u"Descripcion"_s, u"línea"_s},
                                     {u"Cantidad"_s, 1.0},
                                     {u"Serie"_s, nulo(serie)}});
}

Sesion::Sesion(const QDateTime& ahora) : reloj(ahora), e(t.db(), d, reloj) {
    e.puesto = u"CONSULTA1"_s;
    e.sesion = u"S1"_s;
    e.usuario = u"ana"_s;
    e.nombreUsuario = u"ANA"_s;
    e.tipoUsuario = kTipoAdministrador;
}

QString Semilla::serieLinea(qint64 linea) {
    return db_.valor(u"SELECT Serie FROM LineasAlbaran WHERE IdLinea = ?"_s, {linea}).toString();
}
