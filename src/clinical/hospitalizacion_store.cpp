#include "clinical/hospitalizacion_store.h"

#include "data/registro.h"

namespace {
QDate fecha(const QVariant& v) {
    return valorDesdeBD(TipoColumna::Fecha, v).toDate();
}
QTime hora(const QVariant& v) {
    return valorDesdeBD(TipoColumna::Hora, v).toTime();
}
QVariant nulo(const QString& texto) {
    return texto.trimmed().isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(texto.trimmed());
}
QVariant nulo(const QTime& t) {
    return t.isValid() ? QVariant(t) : QVariant(QMetaType(QMetaType::QTime));
}
} // namespace

bool HospitalizacionStore::ingresar(const Ingreso& i) {
    Transaction tx = db_.transaccion();
    if (db_.ejecutarCambio(QStringLiteral("UPDATE Mascotas SET NumHospitalizacion = ?, Jaula = ? "
                                          "WHERE IdMascota = ? AND NumHospitalizacion IS NULL"),
                           {i.IdVisita, nulo(i.jaula), i.IdMascota}) != 1)
        return false;
    db_.ejecutarCambio(QStringLiteral("INSERT INTO Hospitalizaciones (IdMascota, IdVisita, FechaIngreso, "
                                      "HoraIngreso, DiagnosticoIngreso, Jaula) VALUES (?, ?, ?, ?, ?, ?)"),
                       {i.IdMascota, i.IdVisita, i.fecha, nulo(i.hora), nulo(i.diagnostico), nulo(i.jaula)});
    tx.commit();
    return true;
}

bool HospitalizacionStore::cambiarJaula(qint64 idMascota, const QString& jaula) {
    Transaction tx = db_.transaccion();
    const QVariant num = db_.valor(
        QStringLiteral("SELECT NumHospitalizacion FROM Mascotas WHERE IdMascota = ?"), {idMascota});
    if (num.isNull()) return false;
    if (db_.ejecutarCambio(QStringLiteral("UPDATE Mascotas SET Jaula = ? WHERE IdMascota = ? AND "
                                          "NumHospitalizacion = ?"),
                           {nulo(jaula), idMascota, num}) != 1)
        return false;
    db_.ejecutarCambio(QStringLiteral("UPDATE Hospitalizaciones SET Jaula = ? WHERE IdVisita = ? AND "
                                      "IdMascota = ? AND FechaAlta IS NULL"),
                       {nulo(jaula), num, idMascota});
    tx.commit();
    return true;
}

bool HospitalizacionStore::darAlta(qint64 idMascota, qint64 numHospitalizacion, const Alta& a) {
    Transaction tx = db_.transaccion();
    if (db_.ejecutarCambio(QStringLiteral("UPDATE Mascotas SET NumHospitalizacion = NULL, Jaula = NULL "
                                          "WHERE IdMascota = ? AND NumHospitalizacion = ?"),
                           {idMascota, numHospitalizacion}) != 1)
        return false;
    db_.ejecutarCambio(QStringLiteral("UPDATE Hospitalizaciones SET FechaAlta = ?, HoraAlta = ?, "
                                      "DiagnosticoAlta = ? WHERE IdMascota = ? AND IdVisita = ? AND FechaAlta IS NULL"),
                       {a.fecha, nulo(a.hora), nulo(a.diagnostico), idMascota, numHospitalizacion});
    tx.commit();
    return true;
}

QList<FilaHospitalizada> HospitalizacionStore::hospitalizadas() {
    QSqlQuery q = db_.ejecutar(QStringLiteral(
        "SELECT m.IdMascota, m.IdCliente, m.NumHospitalizacion, m.Nombre, c.Nombre, m.Jaula "
        "FROM Mascotas m JOIN Clientes c ON c.IdCliente = m.IdCliente "
        "WHERE m.NumHospitalizacion IS NOT NULL ORDER BY m.Jaula, m.Nombre, m.IdMascota"));
    QList<FilaHospitalizada> filas;
    while (q.next())
        filas << FilaHospitalizada{q.value(0).toLongLong(), q.value(1).toLongLong(), q.value(2).toLongLong(),
                                   q.value(3).toString(),   q.value(4).toString(),   q.value(5).toString()};
    return filas;
}

QList<FilaEstancia> HospitalizacionStore::registro(qint64 idMascota) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT IdHospitalizacion, IdVisita, FechaIngreso, HoraIngreso, DiagnosticoIngreso, Jaula, "
                       "FechaAlta, HoraAlta, DiagnosticoAlta FROM Hospitalizaciones WHERE IdMascota = ? "
                       "ORDER BY FechaIngreso DESC, HoraIngreso DESC, IdHospitalizacion DESC"),
        {idMascota});
    QList<FilaEstancia> filas;
    while (q.next())
        filas << FilaEstancia{q.value(0).toLongLong(), q.value(1).toLongLong(), fecha(q.value(2)),
                              hora(q.value(3)),        q.value(4).toString(),   q.value(5).toString(),
                              fecha(q.value(6)),       hora(q.value(7)),        q.value(8).toString()};
    return filas;
}
