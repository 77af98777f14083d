#include "clients/cliente_busqueda_store.h"

#include "data/esquema.h"
#include "data/filtro_sql.h"
#include "data/registro.h"

#include <QRegularExpression>
#include <QTextDocument>

QString normalizarBusqueda(const QString& texto) {
    const QString descompuesto = texto.normalized(QString::NormalizationForm_D);
    QString r;
    r.reserve(descompuesto.size());
    for (const QChar ch : descompuesto) {
        const auto cat = ch.category();
        if (cat == QChar::Mark_NonSpacing || cat == QChar::Mark_SpacingCombining ||
            cat == QChar::Mark_Enclosing)
            continue;
        r.append(ch.isSpace() ? QChar(u' ') : ch.toUpper());
    }
    return r.simplified();
}

bool CriteriosBusquedaCliente::hayCriteriosMascota() const {
    return !normalizarBusqueda(nombreMascota).isEmpty() || idMascota || idEspecie || idRaza || idEstado ||
           idCondicionCorporal || idPlanSalud || !chip.trimmed().isEmpty() || !sexo.isEmpty();
}

namespace {
const QString kEscape = QStringLiteral(" ESCAPE '\\'");

// The normalised name column begins with the normalised text. On SQLite a range on the
// column (binary order) walks its index; on PostgreSQL, whose collation need not be
// binary, LIKE is always right.
void nombreEmpieza(FiltroSql& f, Motor motor, const QString& columna, const QString& normalizado) {
    if (motor == Motor::SQLite) {
        f.y(columna + QStringLiteral(" >= ? AND ") + columna + QStringLiteral(" < ?"),
            {normalizado, normalizado + QString::fromUcs4(U"\U0010FFFF")});
    } else {
        f.y(columna + QStringLiteral(" LIKE ?") + kEscape, {escaparLike(normalizado) + QLatin1Char('%')});
    }
}

void nombre(FiltroSql& f, Motor motor, const QString& columna, const QString& texto, ModoNombre modo) {
    const QString n = normalizarBusqueda(texto);
    if (n.isEmpty()) return;
    switch (modo) {
    case ModoNombre::Comienzo:
        nombreEmpieza(f, motor, columna, n);
        break;
    case ModoNombre::Exacto:
        f.y(columna + QStringLiteral(" = ?"), {n});
        break;
    case ModoNombre::Contiene:
        f.y(columna + QStringLiteral(" LIKE ?") + kEscape,
            {QLatin1Char('%') + escaparLike(n) + QLatin1Char('%')});
        break;
    }
}

// Anywhere in the text, upper/lower case ignored.
void contiene(FiltroSql& f, Motor motor, const QString& columna, const QString& texto) {
    const QString t = texto.trimmed();
    if (t.isEmpty()) return;
    f.y(columna + (motor == Motor::SQLite ? QStringLiteral(" LIKE ?") : QStringLiteral(" ILIKE ?")) + kEscape,
        {QLatin1Char('%') + escaparLike(t) + QLatin1Char('%')});
}

void igual(FiltroSql& f, const QString& columna, const QString& texto) {
    const QString t = texto.trimmed();
    if (!t.isEmpty()) f.y(columna + QStringLiteral(" = ?"), {t});
}

void igual(FiltroSql& f, const QString& columna, const std::optional<qint64>& v) {
    if (v) f.y(columna + QStringLiteral(" = ?"), {*v});
}

void dni(FiltroSql& f, const QString& texto) {
    const QString t = texto.trimmed();
    if (!t.isEmpty()) f.y(QStringLiteral("c.DNI IN (?, ?)"), {t, t.toUpper()});
}

void telefono(FiltroSql& f, const QString& texto) {
    QString t = texto;
    t.remove(QRegularExpression(QStringLiteral("\\s")));
    if (t.isEmpty()) return;
    // One indexed look-up per column: an OR of the four makes the engines scan the table.
    f.y(QStringLiteral("c.IdCliente IN (SELECT IdCliente FROM Clientes WHERE Telefono1 = ? UNION ALL "
                       "SELECT IdCliente FROM Clientes WHERE Telefono2 = ? UNION ALL "
                       "SELECT IdCliente FROM Clientes WHERE Telefono3 = ? UNION ALL "
                       "SELECT IdCliente FROM Clientes WHERE Movil = ?)"),
        {t, t, t, t});
}

const QString kColumnasCliente = QStringLiteral(
    "SELECT c.IdCliente, c.Nombre, c.DNI, c.Direccion, c.CodigoPostal, c.Poblacion, c.Provincia, c.EMail, "
    "c.Clinica, c.FechaBaja FROM Clientes c");

QList<FilaClienteBusqueda> leerClientes(Database& db, const FiltroSql& f, int limite) {
    QVariantList valores = f.valores;
    valores << limite;
    QSqlQuery q = db.ejecutar(kColumnasCliente + f.sql() +
                                  QStringLiteral(" ORDER BY c.NombreBusqueda, c.IdCliente LIMIT ?"),
                              valores);
    QList<FilaClienteBusqueda> filas;
    while (q.next()) {
        FilaClienteBusqueda r;
        r.IdCliente = q.value(0).toLongLong();
        r.Cliente = q.value(1).toString();
        r.Docum = q.value(2).toString();
        r.Direccion = q.value(3).toString();
        r.CodigoPostal = q.value(4).toString();
        r.Localidad = q.value(5).toString();
        r.Provincia = q.value(6).toString();
        r.EMail = q.value(7).toString();
        r.Clinica = q.value(8).toString();
        r.baja = !q.value(9).isNull() && !q.value(9).toString().isEmpty();
        filas << r;
    }
    return filas;
}

// A warning text worth showing: rich text reduced to its words.
bool hayAviso(const QString& texto) {
    QString t = texto;
    if (Qt::mightBeRichText(t)) {
        static const QRegularExpression cabecera(QStringLiteral("<head>.*</head>"),
                                                 QRegularExpression::DotMatchesEverythingOption);
        static const QRegularExpression marcas(QStringLiteral("<[^>]*>"));
        t.remove(cabecera);
        t.remove(marcas);
        t.replace(QStringLiteral("&nbsp;"), QStringLiteral(" "));
    }
    return !t.trimmed().isEmpty();
}
} // namespace

QList<FilaClienteBusqueda> ClienteBusquedaStore::buscar(const CriteriosBusquedaCliente& c, int limite) {
    const Motor m = db_.motor();
    FiltroSql f;
    nombre(f, m, QStringLiteral("c.NombreBusqueda"), c.nombre, c.modoNombre);
    dni(f, c.dni);
    contiene(f, m, QStringLiteral("c.Direccion"), c.direccion);
    telefono(f, c.telefono);
    contiene(f, m, QStringLiteral("c.EMail"), c.email);
    igual(f, QStringLiteral("c.Poblacion"), c.poblacion);
    igual(f, QStringLiteral("c.CodigoPostal"), c.codigoPostal);
    igual(f, QStringLiteral("c.Provincia"), c.provincia);
    igual(f, QStringLiteral("c.IdTipoCliente"), c.idTipoCliente);
    igual(f, QStringLiteral("c.IdFormaContacto"), c.idFormaContacto);
    // A client whose consent was never written has not informed it.
    if (c.lopd == QLatin1String("0"))
        f.y(QStringLiteral("(c.LOPD = ? OR c.LOPD IS NULL)"), {c.lopd});
    else
        igual(f, QStringLiteral("c.LOPD"), c.lopd);
    if (!c.incluirClientesBaja) f.y(QStringLiteral("c.FechaBaja IS NULL"));
    if (c.hayCriteriosMascota()) {
        FiltroSql p;
        nombre(p, m, QStringLiteral("m.NombreBusqueda"), c.nombreMascota, ModoNombre::Comienzo);
        igual(p, QStringLiteral("m.IdMascota"), c.idMascota);
        igual(p, QStringLiteral("m.Chip"), c.chip);
        igual(p, QStringLiteral("m.IdEspecie"), c.idEspecie);
        igual(p, QStringLiteral("m.IdRaza"), c.idRaza);
        igual(p, QStringLiteral("m.Sexo"), c.sexo);
        igual(p, QStringLiteral("m.IdEstado"), c.idEstado);
        igual(p, QStringLiteral("m.IdCondicionCorporal"), c.idCondicionCorporal);
        igual(p, QStringLiteral("m.IdPlanSalud"), c.idPlanSalud);
        if (!c.incluirMascotasBaja) p.y(QStringLiteral("(m.Baja IS NULL OR m.Baja = ?)"), {false});
        // With an indexed criterion on the client few clients are read and each is checked for
        // such a pet; otherwise the pets found give the clients.
        const bool clienteAcotado =
            (!normalizarBusqueda(c.nombre).isEmpty() && c.modoNombre != ModoNombre::Contiene) ||
            !c.dni.trimmed().isEmpty() || !c.telefono.trimmed().isEmpty() ||
            !c.codigoPostal.trimmed().isEmpty();
        if (clienteAcotado) {
            p.y(QStringLiteral("m.IdCliente = c.IdCliente"));
            f.y(QStringLiteral("EXISTS (SELECT 1 FROM Mascotas m") + p.sql() + QLatin1Char(')'), p.valores);
        } else {
            f.y(QStringLiteral("c.IdCliente IN (SELECT m.IdCliente FROM Mascotas m") + p.sql() +
                    QLatin1Char(')'),
                p.valores);
        }
    }
    return leerClientes(db_, f, limite);
}

QList<FilaClienteBusqueda> ClienteBusquedaStore::buscarReducida(const CriteriosBusquedaReducida& c,
                                                                int limite) {
    const Motor m = db_.motor();
    FiltroSql f;
    igual(f, QStringLiteral("c.IdCliente"), c.idCliente);
    nombre(f, m, QStringLiteral("c.NombreBusqueda"), c.nombre, ModoNombre::Comienzo);
    contiene(f, m, QStringLiteral("c.Clinica"), c.clinica);
    dni(f, c.dni);
    contiene(f, m, QStringLiteral("c.Direccion"), c.direccion);
    telefono(f, c.telefono);
    igual(f, QStringLiteral("c.Poblacion"), c.poblacion);
    igual(f, QStringLiteral("c.CodigoPostal"), c.codigoPostal);
    igual(f, QStringLiteral("c.Provincia"), c.provincia);
    igual(f, QStringLiteral("c.IdTipoCliente"), c.idTipoCliente);
    if (!c.incluirClientesBaja) f.y(QStringLiteral("c.FechaBaja IS NULL"));
    return leerClientes(db_, f, limite);
}

QList<FilaMascotaBusqueda> ClienteBusquedaStore::mascotas(qint64 idCliente, bool incluirBaja) {
    QString sql = QStringLiteral(
        "SELECT m.IdMascota, m.Nombre, e.Descripcion, r.Descripcion, m.Sexo, m.Chip, m.Cartilla, m.Baja "
        "FROM Mascotas m LEFT JOIN Especies e ON e.IdEspecie = m.IdEspecie "
        "LEFT JOIN Razas r ON r.IdRaza = m.IdRaza WHERE m.IdCliente = ?");
    QVariantList valores{idCliente};
    if (!incluirBaja) {
        sql += QStringLiteral(" AND (m.Baja IS NULL OR m.Baja = ?)");
        valores << false;
    }
    sql += QStringLiteral(" ORDER BY m.NombreBusqueda, m.IdMascota");
    const DescriptorTabla* t = descriptorTabla(QStringLiteral("Mascotas"));
    const DescriptorColumna* sexo = t ? t->columna(QStringLiteral("Sexo")) : nullptr;
    QSqlQuery q = db_.ejecutar(sql, valores);
    QList<FilaMascotaBusqueda> filas;
    while (q.next()) {
        FilaMascotaBusqueda r;
        r.IdMascota = q.value(0).toLongLong();
        r.Mascota = q.value(1).toString();
        r.Especie = q.value(2).toString();
        r.Raza = q.value(3).toString();
        r.Sexo = sexo ? sexo->valorExterno(q.value(4).toString()) : q.value(4).toString();
        r.MicroChip = q.value(5).toString();
        r.Cartilla = q.value(6).toString();
        r.baja = valorDesdeBD(TipoColumna::Logico, q.value(7)).toBool();
        filas << r;
    }
    return filas;
}

std::optional<ClienteElegido> ClienteBusquedaStore::elegido(qint64 idCliente,
                                                            std::optional<qint64> idMascota) {
    QSqlQuery q =
        db_.ejecutar(QStringLiteral("SELECT Nombre, Tarifa, DtoGeneral, IdTipoIVA, ExentoIVA, LOPD, "
                                    "Aviso FROM Clientes WHERE IdCliente = ?"),
                     {idCliente});
    if (!q.next()) return std::nullopt;
    ClienteElegido e;
    e.claveCliente = idCliente;
    e.Cliente = q.value(0).toString();
    e.tarifa = q.value(1).toString();
    e.DtoGralCliente = q.value(2).toDouble();
    if (!q.value(3).isNull()) e.IVAaAplicar = q.value(3).toLongLong();
    e.ExentoIVA = valorDesdeBD(TipoColumna::Logico, q.value(4)).toBool();
    e.LOPD = q.value(5).isNull() ? QStringLiteral("0") : q.value(5).toString();
    e.indAvisoCliente = hayAviso(q.value(6).toString());
    if (idMascota) {
        QSqlQuery p = db_.ejecutar(QStringLiteral("SELECT Nombre, Avisos, NumHospitalizacion FROM Mascotas "
                                                  "WHERE IdMascota = ? AND IdCliente = ?"),
                                   {*idMascota, idCliente});
        if (p.next()) {
            e.claveMascota = *idMascota;
            e.mascota = p.value(0).toString();
            e.indAvisoMascota = hayAviso(p.value(1).toString());
            if (!p.value(2).isNull()) e.NumHospitalizacion = p.value(2).toLongLong();
        }
    }
    return e;
}
