#include "data/descriptor.h"

QString DescriptorColumna::valorExterno(const QString& interno) const {
    const qsizetype i = ValorInternoS.indexOf(interno);
    return i >= 0 && i < ValorExternoS.size() ? ValorExternoS.at(i) : interno;
}

QString DescriptorColumna::valorInterno(const QString& externo) const {
    const qsizetype i = ValorExternoS.indexOf(externo);
    return i >= 0 && i < ValorInternoS.size() ? ValorInternoS.at(i) : externo;
}

const DescriptorColumna* DescriptorTabla::columna(const QString& nombre) const {
    for (const auto& c : columnaS)
        if (c.nombre.compare(nombre, Qt::CaseInsensitive) == 0) return &c;
    return nullptr;
}

bool DescriptorTabla::claveAutonumerica() const {
    if (clave.size() != 1) return false;
    const auto* c = columna(clave.first());
    return c && c->tipo == TipoColumna::Autonumerico;
}

DescriptorColumna col(const QString& nombre, TipoColumna tipo, const QString& descripcion, int longitud,
                      bool opcional, int desde) {
    DescriptorColumna c;
    c.nombre = nombre;
    c.tipo = tipo;
    c.Descripcion = descripcion;
    c.longitud = longitud;
    c.Opcional = opcional;
    c.desde = desde;
    return c;
}

DescriptorTabla tablaDe(int desde, const QString& nombre, const QString& descripcion,
                        const QList<DescriptorColumna>& columnas, const QString& columnaTexto,
                        bool parametro) {
    DescriptorTabla t;
    t.tabla = nombre;
    t.descTabla = descripcion;
    t.columnaS = columnas;
    t.clave = {columnas.first().nombre};
    t.columnaTexto = columnaTexto;
    t.desde = desde;
    t.parametro = parametro;
    return t;
}

DescriptorColumna colLista(const QString& nombre, const QString& descripcion, const QStringList& internos,
                           const QStringList& externos, bool opcional) {
    DescriptorColumna c = col(nombre, TipoColumna::Texto, descripcion, 0, opcional);
    for (const auto& v : internos)
        c.longitud = std::max(c.longitud, static_cast<int>(v.size()));
    c.ValorInternoS = internos;
    c.ValorExternoS = externos;
    return c;
}

DescriptorColumna colActivo(int desde) {
    DescriptorColumna c = colLista(QStringLiteral("Activo"), QStringLiteral("Activo"),
                                   {QStringLiteral("S"), QStringLiteral("N")},
                                   {QStringLiteral("Sí"), QStringLiteral("No")}, false);
    c.porDefecto = QStringLiteral("'S'");
    c.desde = desde;
    return c;
}

DescriptorIndice indiceDe(const QString& tabla, const QStringList& columnas, int desde, bool unico) {
    return {QStringLiteral("IX_") + tabla + QLatin1Char('_') + columnas.join(QLatin1Char('_')), columnas,
            unico, desde};
}
