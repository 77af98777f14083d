#include "clinical/visita_store.h"

#include "data/esquema.h"
#include "sales/albaran_store.h"

namespace {
QDate fecha(const QVariant& v) {
    return valorDesdeBD(TipoColumna::Fecha, v).toDate();
}
QTime hora(const QVariant& v) {
    return valorDesdeBD(TipoColumna::Hora, v).toTime();
}
bool logico(const QVariant& v) {
    return valorDesdeBD(TipoColumna::Logico, v).toBool();
}
std::optional<qint64> optId(const QVariant& v) {
    if (v.isNull()) return std::nullopt;
    return v.toLongLong();
}

QList<OpcionLookup> listaOpciones(QSqlQuery q) {
    QList<OpcionLookup> l;
    while (q.next())
        l << OpcionLookup{q.value(0).toLongLong(), q.value(1).toString()};
    return l;
}

// The visit's own rows and the column that holds the visit.
bool esFilaDeVisita(const DescriptorTabla& t) {
    return t.tabla == QStringLiteral("Recetas") || t.tabla == QStringLiteral("ResultadosAnalitica") ||
           t.tabla == QStringLiteral("EspecialidadesVisita");
}
// " OR clave IN (?, ?)" with the keys bound, for the inactive entries a record still holds.
QString yAdemas(const QString& clave, const QList<qint64>& ademas, QVariantList& valores) {
    if (ademas.isEmpty()) return {};
    QStringList marcas;
    for (qint64 a : ademas) {
        marcas << QStringLiteral("?");
        valores << a;
    }
    return QStringLiteral(" OR ") + clave + QStringLiteral(" IN (") + marcas.join(QStringLiteral(", ")) + QLatin1Char(')');
}
} // namespace

const DescriptorTabla& tablaVisitas() {
    return descriptorRequerido(QStringLiteral("Visitas"));
}

std::optional<Registro> VisitaStore::cargar(qint64 idVisita) {
    return registros_.cargar(tablaVisitas(), idVisita);
}

std::optional<MascotaVisita> VisitaStore::mascota(qint64 idMascota) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT m.IdMascota, m.IdCliente, m.Nombre, e.Descripcion, m.FechaNacimiento, "
                       "m.NumHospitalizacion, m.Jaula, m.Avisos FROM Mascotas m "
                       "LEFT JOIN Especies e ON e.IdEspecie = m.IdEspecie WHERE m.IdMascota = ?"),
        {idMascota});
    if (!q.next()) return std::nullopt;
    return MascotaVisita{q.value(0).toLongLong(), q.value(1).toLongLong(), q.value(2).toString(),
                         q.value(3).toString(),   fecha(q.value(4)),       optId(q.value(5)),
                         q.value(6).toString(),   q.value(7).toString()};
}

QString VisitaStore::colegiado(qint64 idPersonal) {
    return db_.valor(QStringLiteral("SELECT NumColegiado FROM Personal WHERE IdPersonal = ?"), {idPersonal}).toString();
}

QString VisitaStore::avisoCliente(qint64 idCliente) {
    return db_.valor(QStringLiteral("SELECT Aviso FROM Clientes WHERE IdCliente = ?"), {idCliente}).toString().trimmed();
}

qint64 VisitaStore::guardar(Registro& visita) {
    Transaction tx = db_.transaccion();
    qint64 id = 0;
    if (visita.valor(QStringLiteral("IdVisita")).isNull()) {
        id = registros_.crear(visita).toLongLong();
    } else {
        registros_.actualizar(visita);
        id = visita.clave().toLongLong();
    }
    // The pet's last visit is its latest one, whatever order visits are written in.
    db_.ejecutarCambio(QStringLiteral("UPDATE Mascotas SET FechaUltimaVisita = (SELECT MAX(Fecha) FROM Visitas "
                                      "WHERE IdMascota = ?) WHERE IdMascota = ?"),
                       {visita.valor(QStringLiteral("IdMascota")), visita.valor(QStringLiteral("IdMascota"))});
    tx.commit();
    return id;
}

VisitaStore::Baja VisitaStore::eliminar(qint64 idVisita) {
    Transaction tx = db_.transaccion();
    const QVariant mascota =
        db_.valor(QStringLiteral("SELECT IdMascota FROM Visitas WHERE IdVisita = ?"), {idVisita});
    if (mascota.isNull()) return Baja::NoExiste;
    const qint64 referida =
        db_.valor(QStringLiteral("SELECT (SELECT COUNT(*) FROM Albaranes WHERE IdVisita = ?) + "
                                 "(SELECT COUNT(*) FROM Presupuestos WHERE IdVisita = ?)"),
                  {idVisita, idVisita})
            .toLongLong();
    if (referida > 0) return Baja::Referida;
    db_.ejecutarCambio(QStringLiteral("UPDATE Mascotas SET NumHospitalizacion = NULL, Jaula = NULL "
                                      "WHERE IdMascota = ? AND NumHospitalizacion = ?"),
                       {mascota, idVisita});
    db_.ejecutarCambio(QStringLiteral("DELETE FROM Hospitalizaciones WHERE IdVisita = ?"), {idVisita});
    try {
        if (db_.ejecutarCambio(QStringLiteral("DELETE FROM Visitas WHERE IdVisita = ?"), {idVisita}) != 1)
            return Baja::NoExiste;
    } catch (const ErrorBD& e) {
        if (!esErrorDeReferencia(e)) throw;
        return Baja::Referida;
    }
    db_.ejecutarCambio(QStringLiteral("UPDATE Mascotas SET FechaUltimaVisita = (SELECT MAX(Fecha) FROM Visitas "
                                      "WHERE IdMascota = ?) WHERE IdMascota = ?"),
                       {mascota, mascota});
    tx.commit();
    return Baja::Eliminada;
}

QList<FilaHistorialVisita> VisitaStore::historial(qint64 idMascota) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT v.IdVisita, v.Fecha, v.Hora, t.Descripcion, d.Descripcion, p.Descripcion, v.Peso, "
                       "v.Presupuesto FROM Visitas v LEFT JOIN TiposVisita t ON t.IdTipoVisita = v.IdTipoVisita "
                       "LEFT JOIN Diagnosticos d ON d.IdDiagnostico = v.IdDiagnostico "
                       "LEFT JOIN Personal p ON p.IdPersonal = v.IdVeterinario WHERE v.IdMascota = ? "
                       "ORDER BY v.Fecha DESC, v.Hora DESC, v.IdVisita DESC"),
        {idMascota});
    QList<FilaHistorialVisita> filas;
    while (q.next()) {
        FilaHistorialVisita f;
        f.IdVisita = q.value(0).toLongLong();
        f.Fecha = fecha(q.value(1));
        f.Hora = hora(q.value(2));
        f.TipoVisita = q.value(3).toString();
        f.Diagnostico = q.value(4).toString();
        f.Veterinario = q.value(5).toString();
        if (!q.value(6).isNull()) f.Peso = q.value(6).toDouble();
        f.Presupuesto = logico(q.value(7));
        filas << f;
    }
    return filas;
}

QList<FilaBusquedaVisita> VisitaStore::buscar(const FiltroVisitas& f, int limite) {
    QStringList w;
    QVariantList v;
    auto igual = [&](const char* columna, const std::optional<qint64>& valor) {
        if (!valor) return;
        w << QString::fromLatin1(columna) + QStringLiteral(" = ?");
        v << *valor;
    };
    igual("v.IdVeterinario", f.IdVeterinario);
    igual("v.IdTipoVisita", f.IdTipoVisita);
    igual("v.IdDiagnostico", f.IdDiagnostico);
    if (f.porFechas) {
        if (f.desde.isValid()) {
            w << QStringLiteral("v.Fecha >= ?");
            v << f.desde;
        }
        if (f.hasta.isValid()) {
            w << QStringLiteral("v.Fecha <= ?");
            v << f.hasta;
        }
    }
    v << limite;
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT v.IdVisita, v.Fecha, v.Hora, v.IdCliente, v.IdMascota, c.Nombre, m.Nombre, "
                       "p.Descripcion, d.Descripcion, (SELECT COALESCE(SUM(a.Pendiente), 0) FROM Albaranes a "
                       "WHERE a.IdCliente = v.IdCliente) FROM Visitas v "
                       "JOIN Clientes c ON c.IdCliente = v.IdCliente JOIN Mascotas m ON m.IdMascota = v.IdMascota "
                       "LEFT JOIN Personal p ON p.IdPersonal = v.IdVeterinario "
                       "LEFT JOIN Diagnosticos d ON d.IdDiagnostico = v.IdDiagnostico") +
            (w.isEmpty() ? QString() : QStringLiteral(" WHERE ") + w.join(QStringLiteral(" AND "))) +
            QStringLiteral(" ORDER BY v.Fecha DESC, v.Hora DESC, v.IdVisita DESC LIMIT ?"),
        v);
    QList<FilaBusquedaVisita> filas;
    while (q.next()) {
        FilaBusquedaVisita r;
        r.IdVisita = q.value(0).toLongLong();
        r.Fecha = fecha(q.value(1));
        r.Hora = hora(q.value(2));
        r.IdCliente = q.value(3).toLongLong();
        r.IdMascota = q.value(4).toLongLong();
        r.Cliente = q.value(5).toString();
        r.Mascota = q.value(6).toString();
        r.Veterinario = q.value(7).toString();
        r.Diagnostico = q.value(8).toString();
        r.Deuda = q.value(9).toDouble();
        filas << r;
    }
    return filas;
}

QList<AlbaranDeVisita> VisitaStore::albaranes(qint64 idVisita) {
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT IdAlbaran, Serie, NumAlbaran, Fecha, Total FROM Albaranes "
                                              "WHERE IdVisita = ? ORDER BY Fecha, Serie, NumAlbaran"),
                               {idVisita});
    QList<AlbaranDeVisita> l;
    while (q.next())
        l << AlbaranDeVisita{q.value(0).toLongLong(), q.value(1).toString(), q.value(2).toLongLong(),
                             fecha(q.value(3)), q.value(4).toDouble()};
    return l;
}

QString VisitaStore::tablaLookup(const QString& columna) {
    static const QList<QPair<QString, QString>> tablas = {
        {QStringLiteral("IdTipoVisita"), QStringLiteral("TiposVisita")},
        {QStringLiteral("IdDiagnostico"), QStringLiteral("Diagnosticos")},
        {QStringLiteral("IdVeterinario"), QStringLiteral("Personal")},
        {QStringLiteral("IdCondicionCorporal"), QStringLiteral("CondicionesCorporales")}};
    for (const auto& [c, t] : tablas)
        if (c == columna) return t;
    return {};
}

QList<OpcionLookup> VisitaStore::opciones(const QString& columna, const QList<qint64>& ademas) {
    const QString tabla = tablaLookup(columna);
    if (tabla.isEmpty()) return {};
    const DescriptorTabla& t = descriptorRequerido(tabla);
    const QString clave = t.clave.value(0);
    QVariantList valores;
    QString donde;
    if (t.tieneColumna(QStringLiteral("Activo"))) {
        valores << QStringLiteral("N");
        donde = QStringLiteral(" WHERE Activo IS NULL OR Activo <> ?") + yAdemas(clave, ademas, valores);
    }
    return listaOpciones(db_.ejecutar(QStringLiteral("SELECT ") + clave + QStringLiteral(", Descripcion FROM ") + tabla +
                                          donde + QStringLiteral(" ORDER BY Descripcion, ") + clave,
                                      valores));
}

QList<FilaReceta> VisitaStore::recetas(qint64 idVisita) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT r.IdReceta, r.Fecha, r.IdMedicamento, m.Descripcion, r.IdVeterinario, p.Descripcion, "
                       "p.NumColegiado, r.Dispensador, r.Dosificacion, r.VersionFila FROM Recetas r "
                       "LEFT JOIN Medicamentos m ON m.IdMedicamento = r.IdMedicamento "
                       "LEFT JOIN Personal p ON p.IdPersonal = r.IdVeterinario WHERE r.IdVisita = ? "
                       "ORDER BY r.Fecha, r.IdReceta"),
        {idVisita});
    QList<FilaReceta> l;
    while (q.next())
        l << FilaReceta{q.value(0).toLongLong(), fecha(q.value(1)),    q.value(2).toLongLong(),
                        q.value(3).toString(),   q.value(4).toLongLong(), q.value(5).toString(),
                        q.value(6).toString(),   q.value(7).toString(),   q.value(8).toString(),
                        q.value(9).toLongLong()};
    return l;
}

QList<FilaResultado> VisitaStore::resultados(qint64 idVisita) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT r.IdResultado, r.IdAnalitica, a.Grupo, a.Descripcion, r.Resultado, a.ValorNormal, "
                       "a.Unidades, r.DatoPrivado, r.Autor, r.VersionFila FROM ResultadosAnalitica r "
                       "LEFT JOIN Analiticas a ON a.IdAnalitica = r.IdAnalitica WHERE r.IdVisita = ? "
                       "ORDER BY a.Grupo, a.Descripcion, r.IdResultado"),
        {idVisita});
    QList<FilaResultado> l;
    while (q.next())
        l << FilaResultado{q.value(0).toLongLong(), q.value(1).toLongLong(), q.value(2).toString(),
                           q.value(3).toString(),   q.value(4).toString(),   q.value(5).toString(),
                           q.value(6).toString(),   logico(q.value(7)),      q.value(8).toString(),
                           q.value(9).toLongLong()};
    return l;
}

QList<FilaEspecialidad> VisitaStore::especialidades(qint64 idVisita) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT v.IdEspecialidadVisita, v.IdEspecialidad, e.Descripcion, v.Protocolo, v.Resultado, "
                       "v.Croquis, v.DatoPrivado, v.Autor, v.VersionFila FROM EspecialidadesVisita v "
                       "LEFT JOIN Especialidades e ON e.IdEspecialidad = v.IdEspecialidad WHERE v.IdVisita = ? "
                       "ORDER BY v.IdEspecialidadVisita"),
        {idVisita});
    QList<FilaEspecialidad> l;
    while (q.next())
        l << FilaEspecialidad{q.value(0).toLongLong(), q.value(1).toLongLong(), q.value(2).toString(),
                              q.value(3).toString(),   q.value(4).toString(),   q.value(5).toString(),
                              logico(q.value(6)),      q.value(7).toString(),   q.value(8).toLongLong()};
    return l;
}

QList<AnaliticaOfrecida> VisitaStore::analiticas() {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT IdAnalitica, Grupo, Descripcion, ValorNormal, Unidades FROM Analiticas "
                       "WHERE Activo IS NULL OR Activo <> ? ORDER BY Grupo, Descripcion, IdAnalitica"),
        {QStringLiteral("N")});
    QList<AnaliticaOfrecida> l;
    while (q.next())
        l << AnaliticaOfrecida{q.value(0).toLongLong(), q.value(1).toString(), q.value(2).toString(),
                               q.value(3).toString(), q.value(4).toString()};
    return l;
}

QList<OpcionLookup> VisitaStore::medicamentos(const QList<qint64>& ademas) {
    QVariantList valores{QStringLiteral("N")};
    const QString extra = yAdemas(QStringLiteral("IdMedicamento"), ademas, valores);
    return listaOpciones(db_.ejecutar(QStringLiteral("SELECT IdMedicamento, Descripcion FROM Medicamentos WHERE Activo "
                                                     "IS NULL OR Activo <> ?") +
                                          extra + QStringLiteral(" ORDER BY Descripcion, IdMedicamento"),
                                      valores));
}

QList<OpcionLookup> VisitaStore::especialidadesOfrecidas() {
    return listaOpciones(db_.ejecutar(
        QStringLiteral("SELECT IdEspecialidad, Descripcion FROM Especialidades ORDER BY Descripcion, IdEspecialidad")));
}

QString VisitaStore::protocolo(qint64 idEspecialidad) {
    return db_.valor(QStringLiteral("SELECT Protocolo FROM Especialidades WHERE IdEspecialidad = ?"),
                     {idEspecialidad})
        .toString();
}

qint64 VisitaStore::guardarFila(Registro& fila) {
    if (!esFilaDeVisita(fila.descriptor()))
        throw ErrorPrograma(QStringLiteral("La tabla '") + fila.descriptor().tabla +
                            QStringLiteral("' no guarda filas de una visita."));
    if (fila.clave().isNull()) return registros_.crear(fila).toLongLong();
    registros_.actualizar(fila);
    return fila.clave().toLongLong();
}

bool VisitaStore::eliminarFila(const DescriptorTabla& tabla, qint64 clave) {
    if (!esFilaDeVisita(tabla))
        throw ErrorPrograma(QStringLiteral("La tabla '") + tabla.tabla +
                            QStringLiteral("' no guarda filas de una visita."));
    Registro r(tabla);
    r.setValor(tabla.clave.value(0), clave);
    return registros_.eliminar(r);
}
