#include "clients/mascota_store.h"

#include "clients/cliente_busqueda_store.h"
#include "core/errores.h"
#include "data/esquema.h"

namespace {
QString sexoExterno(const QString& interno) {
    const DescriptorColumna* c = tablaMascotas().columna(QStringLiteral("Sexo"));
    return c ? c->valorExterno(interno) : interno;
}

QDate fecha(const QVariant& v) {
    return valorDesdeBD(TipoColumna::Fecha, v).toDate();
}

// Appends "columna BETWEEN ? AND ?" (or one end) for a ticked range.
void rango(QStringList& condiciones, QVariantList& valores, const QString& columna, const RangoFechas& r) {
    if (!r.activo) return;
    if (r.desde.isValid()) {
        condiciones << columna + QStringLiteral(" >= ?");
        valores << r.desde;
    }
    if (r.hasta.isValid()) {
        condiciones << columna + QStringLiteral(" <= ?");
        valores << r.hasta;
    }
    if (!r.desde.isValid() && !r.hasta.isValid()) condiciones << columna + QStringLiteral(" IS NOT NULL");
}

void igual(QStringList& condiciones, QVariantList& valores, const QString& columna,
           const std::optional<qint64>& v) {
    if (!v) return;
    condiciones << columna + QStringLiteral(" = ?");
    valores << *v;
}
} // namespace

const DescriptorTabla& tablaMascotas() {
    return descriptorRequerido(QStringLiteral("Mascotas"));
}

std::optional<Registro> MascotaStore::cargar(qint64 idMascota) {
    return registros_.cargar(tablaMascotas(), idMascota);
}

qint64 MascotaStore::guardar(Registro& mascota) {
    mascota.setValor(QStringLiteral("NombreBusqueda"),
                     normalizarBusqueda(mascota.texto(QStringLiteral("Nombre"))));
    if (mascota.valor(QStringLiteral("IdMascota")).isNull()) return registros_.crear(mascota).toLongLong();
    registros_.actualizar(mascota);
    return mascota.clave().toLongLong();
}

MascotaStore::Baja MascotaStore::eliminar(qint64 idMascota) {
    Registro r(tablaMascotas());
    r.setValor(QStringLiteral("IdMascota"), idMascota);
    try {
        return registros_.eliminar(r) ? Baja::Eliminada : Baja::NoExiste;
    } catch (const ErrorBD& e) {
        if (!esErrorDeReferencia(e)) throw;
        return Baja::Referida;
    }
}

std::optional<DatosPropietario> MascotaStore::propietario(qint64 idCliente) {
    const auto c = registros_.cargar(descriptorRequerido(QStringLiteral("Clientes")), idCliente);
    if (!c) return std::nullopt;
    DatosPropietario p;
    p.IdCliente = idCliente;
    p.Nombre = c->texto(QStringLiteral("Nombre"));
    p.Tarifa = c->texto(QStringLiteral("Tarifa"));
    p.DtoGeneral = c->valor(QStringLiteral("DtoGeneral")).toDouble();
    p.LOPD = c->texto(QStringLiteral("LOPD"));
    if (p.LOPD.isEmpty()) p.LOPD = QStringLiteral("0");
    const QVariant iva = c->valor(QStringLiteral("IdTipoIVA"));
    if (!iva.isNull()) {
        if (const auto t = registros_.cargar(descriptorRequerido(QStringLiteral("TiposIVA")), iva))
            p.IVAaAplicar = t->texto(QStringLiteral("Descripcion"));
    }
    return p;
}

QList<FilaMascota> MascotaStore::mascotasDeCliente(qint64 idCliente) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral(
            "SELECT m.IdMascota, m.Nombre, e.Descripcion, r.Descripcion, m.Sexo, s.Descripcion "
            "FROM Mascotas m LEFT JOIN Especies e ON e.IdEspecie = m.IdEspecie "
            "LEFT JOIN Razas r ON r.IdRaza = m.IdRaza LEFT JOIN Estados s ON s.IdEstado = m.IdEstado "
            "WHERE m.IdCliente = ? ORDER BY m.Nombre, m.IdMascota"),
        {idCliente});
    QList<FilaMascota> filas;
    while (q.next()) {
        FilaMascota f;
        f.IdMascota = q.value(0).toLongLong();
        f.Mascota = q.value(1).toString();
        f.Especie = q.value(2).toString();
        f.Raza = q.value(3).toString();
        f.Sexo = sexoExterno(q.value(4).toString());
        f.Estado = q.value(5).toString();
        filas << f;
    }
    return filas;
}

QString MascotaStore::tablaLookup(const QString& columna) {
    static const QList<QPair<QString, QString>> tablas = {
        {QStringLiteral("IdEspecie"), QStringLiteral("Especies")},
        {QStringLiteral("IdRaza"), QStringLiteral("Razas")},
        {QStringLiteral("IdCapa"), QStringLiteral("Capas")},
        {QStringLiteral("IdPelo"), QStringLiteral("Pelos")},
        {QStringLiteral("IdCaracter"), QStringLiteral("Caracteres")},
        {QStringLiteral("IdEstado"), QStringLiteral("Estados")},
        {QStringLiteral("IdMotivoBaja"), QStringLiteral("MotivosBaja")},
        {QStringLiteral("IdVeterinario"), QStringLiteral("Personal")},
        {QStringLiteral("IdCondicionCorporal"), QStringLiteral("CondicionesCorporales")},
        {QStringLiteral("IdPlanSalud"), QStringLiteral("PlanesSalud")}};
    for (const auto& [c, t] : tablas)
        if (c.compare(columna, Qt::CaseInsensitive) == 0) return t;
    return {};
}

QList<OpcionLookup> MascotaStore::opciones(const QString& columna, std::optional<qint64> idEspecie) {
    const QString nombre = tablaLookup(columna);
    if (nombre.isEmpty()) return {};
    const DescriptorTabla& t = descriptorRequerido(nombre);
    QStringList condiciones;
    QVariantList valores;
    if (t.tieneColumna(QStringLiteral("Activo"))) {
        condiciones << QStringLiteral("Activo = ?");
        valores << QStringLiteral("S");
    }
    if (nombre == QStringLiteral("Razas")) {
        condiciones << QStringLiteral("IdEspecie = ?");
        valores << (idEspecie ? *idEspecie : qint64(-1));
    }
    const QString texto = t.columnaTexto.isEmpty() ? t.clave.first() : t.columnaTexto;
    QList<OpcionLookup> lista;
    for (const Registro& r :
         registros_.buscar(t, {condiciones.join(QStringLiteral(" AND ")), valores}, {texto}))
        lista << OpcionLookup{r.clave().toLongLong(), r.texto(texto)};
    return lista;
}

QStringList MascotaStore::tiposMascota() {
    QSqlQuery q =
        db_.ejecutar(QStringLiteral("SELECT DISTINCT TipoMascota FROM Mascotas WHERE TipoMascota IS NOT NULL "
                                    "AND TipoMascota <> ? ORDER BY TipoMascota"),
                     {QStringLiteral("")});
    QStringList tipos;
    while (q.next())
        tipos << q.value(0).toString();
    return tipos;
}

QList<FilaListadoMascota> MascotaStore::listado(const FiltroMascotas& f) {
    QStringList w;
    QVariantList v;
    igual(w, v, QStringLiteral("m.IdCliente"), f.IdCliente);
    igual(w, v, QStringLiteral("m.IdEspecie"), f.IdEspecie);
    igual(w, v, QStringLiteral("m.IdRaza"), f.IdRaza);
    igual(w, v, QStringLiteral("m.IdEstado"), f.IdEstado);
    igual(w, v, QStringLiteral("m.IdCondicionCorporal"), f.IdCondicionCorporal);
    igual(w, v, QStringLiteral("m.IdPlanSalud"), f.IdPlanSalud);
    if (!f.Sexo.isEmpty()) {
        w << QStringLiteral("m.Sexo = ?");
        v << f.Sexo;
    }
    if (!f.TipoMascota.isEmpty()) {
        w << QStringLiteral("m.TipoMascota = ?");
        v << f.TipoMascota;
    }
    rango(w, v, QStringLiteral("m.FechaNacimiento"), f.nacimiento);
    rango(w, v, QStringLiteral("m.FechaAlta"), f.alta);
    rango(w, v, QStringLiteral("m.FechaBaja"), f.baja);
    rango(w, v, QStringLiteral("m.CaducidadPlan"), f.caducidadPlan);
    rango(w, v, QStringLiteral("m.FechaUltimaVisita"), f.ultimaVisita);
    if (!f.incluirBajas) {
        w << QStringLiteral("(m.Baja IS NULL OR m.Baja = ?)");
        v << false;
    }
    QString sql = QStringLiteral(
        "SELECT m.IdMascota, m.IdCliente, m.Nombre, c.Nombre, m.FechaNacimiento, e.Descripcion, "
        "r.Descripcion, m.Sexo, s.Descripcion, m.FechaUltimaVisita, m.TipoMascota, p.Nombre, "
        "m.CaducidadPlan, "
        "c.LOPD FROM Mascotas m JOIN Clientes c ON c.IdCliente = m.IdCliente "
        "LEFT JOIN Especies e ON e.IdEspecie = m.IdEspecie LEFT JOIN Razas r ON r.IdRaza = m.IdRaza "
        "LEFT JOIN Estados s ON s.IdEstado = m.IdEstado LEFT JOIN PlanesSalud p ON p.IdPlanSalud = "
        "m.IdPlanSalud");
    if (!w.isEmpty()) sql += QStringLiteral(" WHERE ") + w.join(QStringLiteral(" AND "));
    sql += QStringLiteral(" ORDER BY m.Nombre, c.Nombre, m.IdMascota");
    QSqlQuery q = db_.ejecutar(sql, v);
    QList<FilaListadoMascota> filas;
    while (q.next()) {
        FilaListadoMascota r;
        r.IdMascota = q.value(0).toLongLong();
        r.IdCliente = q.value(1).toLongLong();
        r.Mascota = q.value(2).toString();
        r.Cliente = q.value(3).toString();
        r.FechaNacimiento = fecha(q.value(4));
        r.Especie = q.value(5).toString();
        r.Raza = q.value(6).toString();
        r.Sexo = sexoExterno(q.value(7).toString());
        r.Estado = q.value(8).toString();
        r.UltimaVisita = fecha(q.value(9));
        r.Tipo = q.value(10).toString();
        r.PlanSalud = q.value(11).toString();
        r.Caducidad = fecha(q.value(12));
        r.LOPD = q.value(13).toString();
        filas << r;
    }
    return filas;
}

void MascotaStore::cambiarPropietario(qint64 idMascota, qint64 origen, qint64 destino, const QDate& fecha,
                                      const QString& usuario) {
    Transaction tx = db_.transaccion();
    const int movidas = db_.ejecutarCambio(
        QStringLiteral("UPDATE Mascotas SET IdCliente = ? WHERE IdMascota = ? AND IdCliente = ?"),
        {destino, idMascota, origen});
    if (movidas != 1)
        throw ErrorPrograma(QStringLiteral("La mascota ya no pertenece al propietario actual indicado."));
    Registro cambio(descriptorRequerido(QStringLiteral("CambiosPropietario")));
    cambio.setValor(QStringLiteral("Fecha"), fecha);
    cambio.setValor(QStringLiteral("IdMascota"), idMascota);
    cambio.setValor(QStringLiteral("IdClienteOrigen"), origen);
    cambio.setValor(QStringLiteral("IdClienteDestino"), destino);
    cambio.setValor(QStringLiteral("Usuario"), usuario);
    registros_.crear(cambio);
    tx.commit();
}

QList<FilaCambio> MascotaStore::cambios(const FiltroCambios& f) {
    QStringList w;
    QVariantList v;
    if (f.desde) {
        w << QStringLiteral("k.Fecha >= ?");
        v << *f.desde;
    }
    if (f.hasta) {
        w << QStringLiteral("k.Fecha <= ?");
        v << *f.hasta;
    }
    if (!f.mascota.trimmed().isEmpty()) {
        w << QStringLiteral("LOWER(m.Nombre) LIKE ?");
        v << QLatin1Char('%') + f.mascota.trimmed().toLower() + QLatin1Char('%');
    }
    igual(w, v, QStringLiteral("k.IdClienteOrigen"), f.IdClienteOrigen);
    igual(w, v, QStringLiteral("k.IdClienteDestino"), f.IdClienteDestino);
    QString sql = QStringLiteral(
        "SELECT k.IdCambio, k.Fecha, k.IdMascota, m.Nombre, o.Nombre, d.Nombre FROM CambiosPropietario k "
        "LEFT JOIN Mascotas m ON m.IdMascota = k.IdMascota LEFT JOIN Clientes o ON o.IdCliente = "
        "k.IdClienteOrigen "
        "LEFT JOIN Clientes d ON d.IdCliente = k.IdClienteDestino");
    if (!w.isEmpty()) sql += QStringLiteral(" WHERE ") + w.join(QStringLiteral(" AND "));
    sql += QStringLiteral(" ORDER BY k.Fecha DESC, k.IdCambio DESC");
    QSqlQuery q = db_.ejecutar(sql, v);
    QList<FilaCambio> filas;
    while (q.next()) {
        FilaCambio r;
        r.IdCambio = q.value(0).toLongLong();
        r.Fecha = fecha(q.value(1));
        r.IdMascota = q.value(2).toLongLong();
        r.Mascota = q.value(3).toString();
        r.PropietarioOrigen = q.value(4).toString();
        r.NuevoPropietario = q.value(5).toString();
        filas << r;
    }
    return filas;
}
