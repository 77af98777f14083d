#include "data/registro.h"

#include <QDate>
#include <QDateTime>
#include <QTime>

Registro::Registro(const DescriptorTabla& descriptor) : d_(&descriptor) {
    valores_.resize(d_->columnaS.size());
}

int Registro::indice(const QString& columna) const {
    for (int i = 0; i < d_->columnaS.size(); ++i)
        if (d_->columnaS.at(i).nombre.compare(columna, Qt::CaseInsensitive) == 0) return i;
    throw ErrorPrograma(QStringLiteral("La tabla '%1' no tiene la columna '%2'.").arg(d_->tabla, columna));
}

QVariant Registro::valor(const QString& columna) const {
    return valores_.at(indice(columna));
}

void Registro::setValor(const QString& columna, const QVariant& valor) {
    const int i = indice(columna);
    valores_[i] = valorDesdeBD(d_->columnaS.at(i).tipo, valor);
}

QString Registro::valorExterno(const QString& columna) const {
    const int i = indice(columna);
    return d_->columnaS.at(i).valorExterno(valores_.at(i).toString());
}

QVariant Registro::clave() const {
    if (d_->clave.isEmpty()) return {};
    return valor(d_->clave.first());
}

ErrorRegistroCambiado::ErrorRegistroCambiado(const DescriptorTabla& t, const QVariant& clave, bool eliminado)
    : ErrorBD(QStringLiteral("el registro de '%1' con clave '%2' %3 en otro puesto")
                  .arg(t.descTabla, clave.toString(),
                       eliminado ? QStringLiteral("ha sido eliminado") : QStringLiteral("ha sido modificado"))),
      eliminado_(eliminado) {}

bool esErrorDeReferencia(const ErrorBD& error) {
    const QString t = error.texto().toLower();
    return t.contains(QLatin1String("foreign key"));
}

QVariant valorDesdeBD(TipoColumna tipo, const QVariant& crudo) {
    if (crudo.isNull() || !crudo.isValid()) return {};
    switch (tipo) {
    case TipoColumna::Entero:
    case TipoColumna::Autonumerico: {
        bool ok = false;
        const qlonglong n = crudo.toLongLong(&ok);
        return ok ? QVariant(n) : QVariant();
    }
    case TipoColumna::Decimal: {
        bool ok = false;
        const double d = crudo.toDouble(&ok);
        return ok ? QVariant(d) : QVariant();
    }
    case TipoColumna::Fecha: {
        if (crudo.metaType().id() == QMetaType::QDate) return crudo;
        if (crudo.metaType().id() == QMetaType::QDateTime) return crudo.toDateTime().date();
        const QString s = crudo.toString();
        const QDate d = QDate::fromString(s.left(10), Qt::ISODate);
        return d.isValid() ? QVariant(d) : QVariant();
    }
    case TipoColumna::Hora: {
        if (crudo.metaType().id() == QMetaType::QTime) return crudo;
        if (crudo.metaType().id() == QMetaType::QDateTime) return crudo.toDateTime().time();
        QString s = crudo.toString();
        if (s.size() > 8) s = s.left(8);
        QTime t = QTime::fromString(s, QStringLiteral("HH:mm:ss"));
        if (!t.isValid()) t = QTime::fromString(s, QStringLiteral("H:mm:ss"));
        if (!t.isValid()) t = QTime::fromString(s, QStringLiteral("HH:mm"));
        return t.isValid() ? QVariant(t) : QVariant();
    }
    case TipoColumna::FechaHora: {
        if (crudo.metaType().id() == QMetaType::QDateTime) return crudo;
        QDateTime dt = QDateTime::fromString(crudo.toString(), Qt::ISODate);
        if (!dt.isValid())
            dt = QDateTime::fromString(crudo.toString(), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        return dt.isValid() ? QVariant(dt) : QVariant();
    }
    case TipoColumna::Logico:
        return crudo.toBool();
    case TipoColumna::Texto:
    case TipoColumna::Memo:
        return crudo.toString();
    }
    return crudo;
}

QString RegistroStore::listaColumnas(const DescriptorTabla& t) const {
    QStringList nombres;
    for (const auto& c : t.columnaS)
        nombres << c.nombre;
    return nombres.join(QStringLiteral(", "));
}

QString RegistroStore::ordenSql(const DescriptorTabla& t, const QStringList& orden) const {
    QStringList partes;
    for (const QString& o : orden) {
        QString nombre = o.trimmed();
        bool desc = false;
        if (nombre.endsWith(QStringLiteral(" DESC"), Qt::CaseInsensitive)) {
            desc = true;
            nombre.chop(5);
            nombre = nombre.trimmed();
        }
        const auto* c = t.columna(nombre);
        if (!c)
            throw ErrorPrograma(QStringLiteral("No se puede ordenar '%1' por '%2'.").arg(t.tabla, nombre));
        partes << c->nombre + (desc ? QStringLiteral(" DESC") : QString());
    }
    if (partes.isEmpty()) return {};
    return QStringLiteral(" ORDER BY ") + partes.join(QStringLiteral(", "));
}

Registro RegistroStore::leerFila(const DescriptorTabla& t, QSqlQuery& q) const {
    Registro r(t);
    for (int i = 0; i < t.columnaS.size(); ++i)
        r.setValor(t.columnaS.at(i).nombre, q.value(i));
    return r;
}

QString RegistroStore::condicionClave(const DescriptorTabla& t) const {
    if (t.clave.isEmpty()) throw ErrorPrograma(QStringLiteral("La tabla '%1' no tiene clave.").arg(t.tabla));
    QStringList partes;
    for (const auto& c : t.clave)
        partes << c + QStringLiteral(" = ?");
    return partes.join(QStringLiteral(" AND "));
}

QVariantList RegistroStore::valoresClave(const Registro& r) const {
    QVariantList v;
    for (const auto& c : r.descriptor().clave)
        v << r.valor(c);
    return v;
}

std::optional<Registro> RegistroStore::cargar(const DescriptorTabla& t, const QVariant& clave) {
    QSqlQuery q =
        db_.ejecutar(QStringLiteral("SELECT ") + listaColumnas(t) + QStringLiteral(" FROM ") + t.tabla +
                         QStringLiteral(" WHERE ") + t.clave.value(0) + QStringLiteral(" = ?"),
                     {clave});
    if (!q.next()) return std::nullopt;
    return leerFila(t, q);
}

QList<Registro> RegistroStore::buscar(const DescriptorTabla& t, const Condicion& condicion,
                                      const QStringList& orden) {
    QString sql = QStringLiteral("SELECT ") + listaColumnas(t) + QStringLiteral(" FROM ") + t.tabla;
    if (!condicion.vacia()) sql += QStringLiteral(" WHERE ") + condicion.sql;
    sql += ordenSql(t, orden);
    QSqlQuery q = db_.ejecutar(sql, condicion.valores);
    QList<Registro> lista;
    while (q.next())
        lista.append(leerFila(t, q));
    return lista;
}

QVariant RegistroStore::crear(Registro& r) {
    const DescriptorTabla& t = r.descriptor();
    QStringList nombres, marcas;
    QVariantList valores;
    for (const auto& c : t.columnaS) {
        if ((c.tipo == TipoColumna::Autonumerico || c.interna) && r.valor(c.nombre).isNull()) continue;
        nombres << c.nombre;
        marcas << QStringLiteral("?");
        valores << r.valor(c.nombre);
    }
    QString sql = QStringLiteral("INSERT INTO ") + t.tabla + QStringLiteral(" (") +
                  nombres.join(QStringLiteral(", ")) + QStringLiteral(") VALUES (") +
                  marcas.join(QStringLiteral(", ")) + QLatin1Char(')');
    if (t.versionada() && r.valor(DescriptorTabla::kColumnaVersion).isNull())
        r.setValor(DescriptorTabla::kColumnaVersion, 0);
    if (t.claveAutonumerica()) {
        const QString clave = t.clave.first();
        const QVariant nueva = db_.valor(sql + QStringLiteral(" RETURNING ") + clave, valores);
        r.setValor(clave, nueva);
        return r.clave();
    }
    db_.ejecutar(sql, valores);
    return r.clave();
}

void RegistroStore::actualizar(Registro& r, const QStringList& columnas) {
    const DescriptorTabla& t = r.descriptor();
    QStringList asignaciones;
    QVariantList valores;
    for (const auto& c : t.columnaS) {
        if (t.clave.contains(c.nombre) || c.interna || c.tipo == TipoColumna::Autonumerico) continue;
        if (columnas.isEmpty() ? c.deOperacion : !columnas.contains(c.nombre)) continue;
        asignaciones << c.nombre + QStringLiteral(" = ?");
        valores << r.valor(c.nombre);
    }
    const QString version = DescriptorTabla::kColumnaVersion;
    QString condicion = condicionClave(t);
    valores += valoresClave(r);
    if (t.versionada()) {
        asignaciones << version + QStringLiteral(" = ") + version + QStringLiteral(" + 1");
        condicion += QStringLiteral(" AND ") + version + QStringLiteral(" = ?");
        valores << r.valor(version).toLongLong();
    }
    if (asignaciones.isEmpty()) return;
    const int filas = db_.ejecutarCambio(QStringLiteral("UPDATE ") + t.tabla + QStringLiteral(" SET ") +
                                             asignaciones.join(QStringLiteral(", ")) +
                                             QStringLiteral(" WHERE ") + condicion,
                                         valores);
    if (filas == 0) {
        const bool existe = db_.valor(QStringLiteral("SELECT COUNT(*) FROM ") + t.tabla +
                                          QStringLiteral(" WHERE ") + condicionClave(t),
                                      valoresClave(r))
                                .toLongLong() > 0;
        throw ErrorRegistroCambiado(t, r.clave(), !existe);
    }
    if (t.versionada()) r.setValor(version, r.valor(version).toLongLong() + 1);
}

bool RegistroStore::eliminar(const Registro& r) {
    const DescriptorTabla& t = r.descriptor();
    return db_.ejecutarCambio(QStringLiteral("DELETE FROM ") + t.tabla + QStringLiteral(" WHERE ") +
                                  condicionClave(t),
                              valoresClave(r)) > 0;
}

QList<Registro> RegistroStore::buscarPor(const DescriptorTabla& t, const QString& columna, const QVariant& valor,
                                         const QStringList& orden) {
    const DescriptorColumna* c = t.columna(columna);
    if (!c) throw ErrorPrograma(QStringLiteral("La tabla '%1' no tiene la columna '%2'.").arg(t.tabla, columna));
    return buscar(t, {c->nombre + QStringLiteral(" = ?"), {valor}}, orden);
}

bool RegistroStore::existe(const Registro& r) {
    return contar(r.descriptor(), {condicionClave(r.descriptor()), valoresClave(r)}) > 0;
}

qint64 RegistroStore::contar(const DescriptorTabla& t, const Condicion& condicion) {
    QString sql = QStringLiteral("SELECT COUNT(*) FROM ") + t.tabla;
    if (!condicion.vacia()) sql += QStringLiteral(" WHERE ") + condicion.sql;
    return db_.valor(sql, condicion.valores).toLongLong();
}

int RegistroStore::ejecutar(const QString& sql, const QVariantList& valores) {
    return db_.ejecutarCambio(sql, valores);
}
