#include "clients/cartas_store.h"

#include "clients/mascota_store.h"
#include "data/registro.h"

#include <QSqlQuery>
#include <iterator>

std::optional<ClienteCarta> CartasStore::cliente(qint64 idCliente) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT Nombre, DNI, Direccion, CodigoPostal, Poblacion, Provincia, Telefono1, "
                       "Telefono2, Telefono3, Movil, EMail, LOPD FROM Clientes WHERE IdCliente = ?"),
        {idCliente});
    if (!q.next()) return std::nullopt;
    ClienteCarta c;
    c.IdCliente = idCliente;
    QString* textos[] = {&c.Nombre,    &c.DNI,       &c.Direccion, &c.CodigoPostal,
                         &c.Poblacion, &c.Provincia, &c.Telefono1, &c.Telefono2,
                         &c.Telefono3, &c.Movil,     &c.EMail,     &c.LOPD};
    for (int i = 0; i < static_cast<int>(std::size(textos)); ++i)
        *textos[i] = q.value(i).toString().trimmed();
    if (c.LOPD.isEmpty()) c.LOPD = QStringLiteral("0");
    return c;
}

std::optional<MascotaCarta> CartasStore::mascota(qint64 idMascota) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT m.IdCliente, m.Nombre, e.Descripcion, r.Descripcion, m.Sexo, c.Descripcion, "
                       "m.Chip, m.Cartilla, m.FechaNacimiento, m.IdPlanSalud, p.Nombre, m.CaducidadPlan "
                       "FROM Mascotas m LEFT JOIN Especies e ON e.IdEspecie = m.IdEspecie "
                       "LEFT JOIN Razas r ON r.IdRaza = m.IdRaza LEFT JOIN Capas c ON c.IdCapa = m.IdCapa "
                       "LEFT JOIN PlanesSalud p ON p.IdPlanSalud = m.IdPlanSalud WHERE m.IdMascota = ?"),
        {idMascota});
    if (!q.next()) return std::nullopt;
    MascotaCarta m;
    m.IdMascota = idMascota;
    m.IdCliente = q.value(0).toLongLong();
    m.Nombre = q.value(1).toString().trimmed();
    m.Especie = q.value(2).toString();
    m.Raza = q.value(3).toString();
    const DescriptorColumna* sexo = tablaMascotas().columna(QStringLiteral("Sexo"));
    m.Sexo = sexo ? sexo->valorExterno(q.value(4).toString()) : q.value(4).toString();
    m.Capa = q.value(5).toString();
    m.Chip = q.value(6).toString().trimmed();
    m.Cartilla = q.value(7).toString().trimmed();
    m.FechaNacimiento = valorDesdeBD(TipoColumna::Fecha, q.value(8)).toDate();
    if (!q.value(9).isNull()) m.IdPlanSalud = q.value(9).toLongLong();
    m.PlanSalud = q.value(10).toString();
    m.CaducidadPlan = valorDesdeBD(TipoColumna::Fecha, q.value(11)).toDate();
    return m;
}
