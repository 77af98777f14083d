#include "data/puestos.h"

#include "data/ajustes.h"

namespace {
// PostgreSQL: the advisory lock that orders entries against the change of mode ("PmxMod").
// On SQLite BEGIN IMMEDIATE already lets one writer in at a time.
constexpr qint64 kCerrojoModo = 0x506d784d6f64;

void cerrojoModo(Database& db) {
    if (!db.esSQLite()) db.ejecutar(QStringLiteral("SELECT pg_advisory_xact_lock(?)"), {kCerrojoModo});
}
} // namespace

EntradaPuesto PuestosActivosStore::entrar(const QString& puesto, const QString& usuarioSistema,
                                          const QDateTime& momento) {
    Transaction tx = db_.transaccion();
    cerrojoModo(db_);
    Ajustes ajustes(db_);
    EntradaPuesto e;
    e.multipuesto =
        ajustes.leer(claves::MULTIPUESTO).trimmed().compare(QLatin1String("NO"), Qt::CaseInsensitive) != 0;
    if (!e.multipuesto && ajustes.leer(claves::PUESTO_SERVIDOR).trimmed().compare(puesto, Qt::CaseInsensitive) != 0) {
        e.resultado = EntradaPuesto::Monopuesto;
        return e;
    }
    const QVariant otro =
        db_.valor(QStringLiteral("SELECT UsuarioSistema FROM PuestosActivos WHERE Puesto = ?"), {puesto});
    if (otro.isValid() && !otro.toString().isEmpty() && otro.toString() != usuarioSistema) {
        e.resultado = EntradaPuesto::OtroUsuarioSistema;
        e.otroUsuario = otro.toString();
        return e;
    }
    db_.ejecutar(QStringLiteral("DELETE FROM PuestosActivos WHERE Puesto = ?"), {puesto});
    db_.ejecutar(QStringLiteral("INSERT INTO PuestosActivos (Puesto, Usuario, Fecha, Hora, UsuarioSistema) "
                                "VALUES (?, ?, ?, ?, ?)"),
                 {puesto, QString(), momento.date(), momento.time(), usuarioSistema});
    tx.commit();
    return e;
}

bool PuestosActivosStore::desactivarMultipuesto() {
    Transaction tx = db_.transaccion();
    cerrojoModo(db_);
    if (contar() > 0) return false;
    Ajustes(db_).escribir(claves::MULTIPUESTO, QStringLiteral("NO"));
    tx.commit();
    return true;
}

void PuestosActivosStore::registrar(const QString& puesto, const QDateTime& momento) {
    Transaction tx = db_.transaccion();
    db_.ejecutar(QStringLiteral("DELETE FROM PuestosActivos WHERE Puesto = ?"), {puesto});
    db_.ejecutar(
        QStringLiteral("INSERT INTO PuestosActivos (Puesto, Usuario, Fecha, Hora) VALUES (?, ?, ?, ?)"),
        {puesto, QString(), momento.date(), momento.time()});
    tx.commit();
}

bool PuestosActivosStore::quitar(const QString& puesto) {
    return db_.ejecutarCambio(QStringLiteral("DELETE FROM PuestosActivos WHERE Puesto = ?"), {puesto}) > 0;
}

void PuestosActivosStore::asignarUsuario(const QString& puesto, const QString& usuario) {
    db_.ejecutar(QStringLiteral("UPDATE PuestosActivos SET Usuario = ? WHERE Puesto = ?"), {usuario, puesto});
}

QStringList PuestosActivosStore::puestos() {
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT Puesto FROM PuestosActivos ORDER BY Puesto"));
    QStringList lista;
    while (q.next())
        lista << q.value(0).toString();
    return lista;
}

qint64 PuestosActivosStore::contar() {
    return db_.valor(QStringLiteral("SELECT COUNT(*) FROM PuestosActivos")).toLongLong();
}
