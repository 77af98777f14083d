#include "data/puestos.h"

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
