#include "data/esquema.h"

#include "data/tablas.h"

#include <algorithm>

namespace {
// Version 4: row versions on maintained records, columns kept by their operations, and the
// references between parent and child rows.
constexpr int kVersionIntegridad = 4;

// Records kept from screens by hand besides the parameter tables.
const QStringList kMantenidas = {QStringLiteral("Clientes"),  QStringLiteral("Mascotas"),
                                 QStringLiteral("PlanesSalud"), QStringLiteral("Articulos"),
                                 QStringLiteral("Proveedores"), QStringLiteral("Albaranes"),
                                 QStringLiteral("Usuarios"),    QStringLiteral("ConfPuesto"),
                                 QStringLiteral("Visitas"),     QStringLiteral("ResultadosAnalitica"),
                                 QStringLiteral("EspecialidadesVisita"), QStringLiteral("Recetas"),
                                 QStringLiteral("Presupuestos")};

// Columns that only the operation owning them changes (collections, stock movements, visits,
// hospitalisation, change of owner).
const QList<QPair<QString, QStringList>> kDeOperacion = {
    {QStringLiteral("Clientes"),
     {QStringLiteral("Deuda"), QStringLiteral("EntregadoCuenta"), QStringLiteral("DevolucionesPendientes"),
      QStringLiteral("FechaUltimoCobro")}},
    {QStringLiteral("Mascotas"),
     {QStringLiteral("IdCliente"), QStringLiteral("FechaUltimaVisita"), QStringLiteral("NumHospitalizacion"),
      QStringLiteral("Jaula")}},
    {QStringLiteral("Visitas"), {QStringLiteral("Presupuesto")}},
    {QStringLiteral("Presupuestos"), {QStringLiteral("Estado"), QStringLiteral("IdAlbaran")}},
    {QStringLiteral("Articulos"),
     {QStringLiteral("Stock"), QStringLiteral("ArtUltPrecio"), QStringLiteral("ArtCodUltProv"),
      QStringLiteral("ArtFecUltUso")}},
};

struct Referencia {
    QString hija;
    DescriptorReferencia r;
};
const QList<Referencia> kReferencias = {
    {QStringLiteral("Mascotas"), {QStringLiteral("IdCliente"), QStringLiteral("Clientes"), false, 4}},
    {QStringLiteral("Mascotas"), {QStringLiteral("IdPlanSalud"), QStringLiteral("PlanesSalud"), false, 4}},
    {QStringLiteral("CondicionesEspeciales"), {QStringLiteral("IdCliente"), QStringLiteral("Clientes"), true, 4}},
    {QStringLiteral("CondicionesEspeciales"),
     {QStringLiteral("IdPlanSalud"), QStringLiteral("PlanesSalud"), true, 4}},
    {QStringLiteral("CambiosPropietario"), {QStringLiteral("IdMascota"), QStringLiteral("Mascotas"), true, 4}},
    {QStringLiteral("Subfamilias"), {QStringLiteral("IdFamilia"), QStringLiteral("Familias"), false, 4}},
    {QStringLiteral("Albaranes"), {QStringLiteral("IdCliente"), QStringLiteral("Clientes"), false, 4}},
    {QStringLiteral("Albaranes"), {QStringLiteral("IdMascota"), QStringLiteral("Mascotas"), false, 4}},
    {QStringLiteral("LineasAlbaran"), {QStringLiteral("IdAlbaran"), QStringLiteral("Albaranes"), true, 4}},
    // An article sold on a note, or classified under a family, stays while those rows do; its
    // special conditions go with it.
    {QStringLiteral("LineasAlbaran"), {QStringLiteral("IdArticulo"), QStringLiteral("Articulos"), false, 5}},
    {QStringLiteral("CondicionesEspeciales"), {QStringLiteral("IdArticulo"), QStringLiteral("Articulos"), true, 5}},
    {QStringLiteral("Articulos"), {QStringLiteral("Familia"), QStringLiteral("Familias"), false, 5}},
    {QStringLiteral("Articulos"), {QStringLiteral("SubFamilia"), QStringLiteral("Subfamilias"), false, 5}},
    // A visit stays while its pet's notes, quotes and stays point at it; its own results,
    // examinations and prescriptions go with it.
    {QStringLiteral("Visitas"), {QStringLiteral("IdCliente"), QStringLiteral("Clientes"), false, 6}},
    {QStringLiteral("Visitas"), {QStringLiteral("IdMascota"), QStringLiteral("Mascotas"), false, 6}},
    {QStringLiteral("ResultadosAnalitica"), {QStringLiteral("IdVisita"), QStringLiteral("Visitas"), true, 6}},
    {QStringLiteral("EspecialidadesVisita"), {QStringLiteral("IdVisita"), QStringLiteral("Visitas"), true, 6}},
    {QStringLiteral("Recetas"), {QStringLiteral("IdVisita"), QStringLiteral("Visitas"), true, 6}},
    {QStringLiteral("Hospitalizaciones"), {QStringLiteral("IdMascota"), QStringLiteral("Mascotas"), true, 6}},
    {QStringLiteral("Hospitalizaciones"), {QStringLiteral("IdVisita"), QStringLiteral("Visitas"), true, 6}},
    {QStringLiteral("Albaranes"), {QStringLiteral("IdVisita"), QStringLiteral("Visitas"), false, 6}},
    {QStringLiteral("Presupuestos"), {QStringLiteral("IdCliente"), QStringLiteral("Clientes"), false, 6}},
    {QStringLiteral("Presupuestos"), {QStringLiteral("IdMascota"), QStringLiteral("Mascotas"), false, 6}},
    {QStringLiteral("Presupuestos"), {QStringLiteral("IdVisita"), QStringLiteral("Visitas"), false, 6}},
    {QStringLiteral("LineasPresupuesto"), {QStringLiteral("IdPresupuesto"), QStringLiteral("Presupuestos"), true, 6}},
    {QStringLiteral("LineasPresupuesto"), {QStringLiteral("IdArticulo"), QStringLiteral("Articulos"), false, 6}},
};

void completarIntegridad(QList<DescriptorTabla>& todas) {
    for (auto& t : todas) {
        if (t.parametro || kMantenidas.contains(t.tabla)) {
            DescriptorColumna v = col(DescriptorTabla::kColumnaVersion, TipoColumna::Entero,
                                      QStringLiteral("Versión de la fila"), 0, false, kVersionIntegridad);
            v.porDefecto = QStringLiteral("0");
            v.interna = true;
            t.columnaS << v;
        }
        for (const auto& [tabla, columnas] : kDeOperacion)
            if (tabla == t.tabla)
                for (auto& c : t.columnaS)
                    if (columnas.contains(c.nombre)) c.deOperacion = true;
        for (const auto& ref : kReferencias)
            if (ref.hija == t.tabla) t.referencias << ref.r;
    }
}

QList<DescriptorTabla> construirCatalogo() {
    QList<DescriptorTabla> todas;
    todas += tablasSistema();
    todas += tablasParametros();
    todas += tablasBloqueos();
    todas += tablasPuesto();
    todas += tablasClientes();
    todas += tablasArticulos();
    todas += tablasVisitas();
    completarIntegridad(todas);
    return todas;
}

const char* kTablaVersion = "VersionEsquema";
} // namespace

const QList<DescriptorTabla>& catalogo() {
    static const QList<DescriptorTabla> tablas = construirCatalogo();
    return tablas;
}

const DescriptorTabla* descriptorTabla(const QString& tabla) {
    for (const auto& t : catalogo())
        if (t.tabla.compare(tabla, Qt::CaseInsensitive) == 0) return &t;
    return nullptr;
}

const DescriptorTabla& descriptorRequerido(const QString& tabla) {
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t) throw ErrorPrograma(QStringLiteral("La tabla '%1' no está en el catálogo.").arg(tabla));
    return *t;
}

int versionEsquemaPrograma() {
    int v = 1;
    for (const auto& t : catalogo()) {
        v = std::max(v, t.desde);
        for (const auto& c : t.columnaS)
            v = std::max(v, c.desde);
        for (const auto& i : t.indices)
            v = std::max(v, i.desde);
        for (const auto& r : t.referencias)
            v = std::max(v, r.desde);
    }
    return v;
}

QString sqlTipo(const DescriptorColumna& c, Motor motor) {
    const bool lite = motor == Motor::SQLite;
    switch (c.tipo) {
    case TipoColumna::Entero:
        return lite ? QStringLiteral("INTEGER") : QStringLiteral("BIGINT");
    case TipoColumna::Autonumerico:
        return lite ? QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT")
                    : QStringLiteral("BIGINT GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY");
    case TipoColumna::Decimal:
        return lite ? QStringLiteral("REAL") : QStringLiteral("DOUBLE PRECISION");
    case TipoColumna::Texto:
    case TipoColumna::Memo:
        return QStringLiteral("TEXT");
    case TipoColumna::Fecha:
        return lite ? QStringLiteral("TEXT") : QStringLiteral("DATE");
    case TipoColumna::Hora:
        return lite ? QStringLiteral("TEXT") : QStringLiteral("TIME");
    case TipoColumna::FechaHora:
        return lite ? QStringLiteral("TEXT") : QStringLiteral("TIMESTAMP");
    case TipoColumna::Logico:
        return lite ? QStringLiteral("INTEGER") : QStringLiteral("BOOLEAN");
    }
    return QStringLiteral("TEXT");
}

namespace {
QString definicionColumna(const DescriptorColumna& c, Motor motor) {
    QString d = c.nombre + QLatin1Char(' ') + sqlTipo(c, motor);
    if (!c.porDefecto.isEmpty()) d += QStringLiteral(" DEFAULT ") + c.porDefecto;
    if (c.interna) d += QStringLiteral(" NOT NULL");
    return d;
}

QString nombreRestriccion(const DescriptorTabla& t, const DescriptorReferencia& r) {
    return QStringLiteral("FK_") + t.tabla + QLatin1Char('_') + r.columna;
}

QString claveDe(const QString& tabla) {
    return descriptorRequerido(tabla).clave.value(0);
}

// "REFERENCES Clientes (IdCliente)" with what happens when the parent goes.
QString sqlReferencia(const DescriptorReferencia& r) {
    return QStringLiteral("REFERENCES ") + r.padre + QStringLiteral(" (") + claveDe(r.padre) +
           (r.enCascada ? QStringLiteral(") ON DELETE CASCADE") : QStringLiteral(")"));
}

QString sqlAnadirReferencia(const DescriptorTabla& t, const DescriptorReferencia& r) {
    return QStringLiteral("ALTER TABLE ") + t.tabla + QStringLiteral(" ADD CONSTRAINT ") +
           nombreRestriccion(t, r) + QStringLiteral(" FOREIGN KEY (") + r.columna + QStringLiteral(") ") +
           sqlReferencia(r);
}

// SQLite cannot add a reference to an existing table: the table is made again with it, its
// rows copied, the old one dropped and the new one renamed. The counter of automatic keys
// is kept, so that a number handed out once is never handed out again.
void rehacerTablaSQLite(Database& db, const DescriptorTabla& t, int version) {
    const QString nueva = t.tabla + QStringLiteral("_pmxnueva");
    QStringList copiadas;
    for (const auto& c : t.columnaS)
        if (c.desde < version) copiadas << c.nombre;
    QStringList sql = sqlCrearTabla(t, Motor::SQLite, version);
    const QVariant secuencia =
        db.existeTabla(QStringLiteral("sqlite_sequence"))
            ? db.valor(QStringLiteral("SELECT seq FROM sqlite_sequence WHERE name = ?"), {t.tabla})
            : QVariant();
    db.ejecutarDirecto(sql.takeFirst().replace(QStringLiteral("CREATE TABLE ") + t.tabla + QStringLiteral(" ("),
                                               QStringLiteral("CREATE TABLE ") + nueva + QStringLiteral(" (")));
    db.ejecutarDirecto(QStringLiteral("INSERT INTO ") + nueva + QStringLiteral(" (") +
                       copiadas.join(QStringLiteral(", ")) + QStringLiteral(") SELECT ") +
                       copiadas.join(QStringLiteral(", ")) + QStringLiteral(" FROM ") + t.tabla);
    db.ejecutarDirecto(QStringLiteral("DROP TABLE ") + t.tabla);
    db.ejecutarDirecto(QStringLiteral("ALTER TABLE ") + nueva + QStringLiteral(" RENAME TO ") + t.tabla);
    for (const auto& s : sql)
        db.ejecutarDirecto(s);
    if (secuencia.isValid())
        db.ejecutarCambio(QStringLiteral("UPDATE sqlite_sequence SET seq = ? WHERE name = ?"),
                          {secuencia, t.tabla});
}

// Before references are added: the child rows whose parent no longer exists. Nothing is
// changed; the migration stops and names them, so that no row is lost silently.
void comprobarHuerfanos(Database& db, int version) {
    QStringList huerfanos;
    for (const auto& t : catalogo()) {
        if (t.desde >= version || !db.existeTabla(t.tabla)) continue;
        for (const auto& r : t.referencias) {
            if (r.desde != version) continue;
            const QString clave = t.clave.value(0);
            // A parent table this very version brings has no rows yet: every value is an orphan.
            const QString sinPadre =
                db.existeTabla(r.padre)
                    ? QStringLiteral(" AND NOT EXISTS (SELECT 1 FROM ") + r.padre + QStringLiteral(" p WHERE p.") +
                          claveDe(r.padre) + QStringLiteral(" = h.") + r.columna + QLatin1Char(')')
                    : QString();
            QSqlQuery q = db.ejecutar(QStringLiteral("SELECT h.") + clave + QStringLiteral(", h.") + r.columna +
                                      QStringLiteral(" FROM ") + t.tabla + QStringLiteral(" h WHERE h.") +
                                      r.columna + QStringLiteral(" IS NOT NULL") + sinPadre +
                                      QStringLiteral(" ORDER BY h.") + clave);
            QStringList filas;
            while (q.next())
                filas << QStringLiteral("%1 (%2 %3)").arg(q.value(0).toString(), r.columna, q.value(1).toString());
            if (!filas.isEmpty())
                huerfanos << QStringLiteral("%1 %2: %3").arg(t.descTabla, clave, filas.join(QStringLiteral(", ")));
        }
    }
    if (!huerfanos.isEmpty())
        throw ErrorBD(QStringLiteral("no se puede actualizar la estructura de la base de datos porque hay "
                                     "registros que apuntan a otros que ya no existen. Corríjalos o "
                                     "elimínelos y vuelva a entrar: ") +
                      huerfanos.join(QStringLiteral("; ")));
}

// The tables to make again on SQLite for version v, parents before their children: dropping
// a table that is already referenced would break its children.
QList<const DescriptorTabla*> tablasConReferenciasNuevas(int version) {
    QList<const DescriptorTabla*> pendientes;
    for (const auto& t : catalogo())
        if (t.desde < version &&
            std::any_of(t.referencias.begin(), t.referencias.end(),
                        [&](const DescriptorReferencia& r) { return r.desde == version; }))
            pendientes << &t;
    QList<const DescriptorTabla*> orden;
    while (!pendientes.isEmpty()) {
        const auto listo = std::find_if(pendientes.begin(), pendientes.end(), [&](const DescriptorTabla* t) {
            return std::none_of(t->referencias.begin(), t->referencias.end(), [&](const DescriptorReferencia& r) {
                return std::any_of(pendientes.begin(), pendientes.end(), [&](const DescriptorTabla* p) {
                    return p != t && p->tabla == r.padre;
                });
            });
        });
        if (listo == pendientes.end())
            throw ErrorPrograma(QStringLiteral("Las referencias entre tablas forman un ciclo."));
        orden << *listo;
        pendientes.erase(listo);
    }
    return orden;
}
} // namespace

QStringList sqlCrearTabla(const DescriptorTabla& t, Motor motor, int version) {
    QStringList partes;
    for (const auto& c : t.columnaS)
        if (c.desde <= version) partes << definicionColumna(c, motor);
    if (!t.claveAutonumerica() && !t.clave.isEmpty())
        partes << QStringLiteral("PRIMARY KEY (") + t.clave.join(QStringLiteral(", ")) + QLatin1Char(')');
    // SQLite takes references only here; PostgreSQL gets them once every table of the version
    // exists (a parent may come later in the catalogue).
    if (motor == Motor::SQLite)
        for (const auto& r : t.referencias)
            if (r.desde <= version)
                partes << QStringLiteral("CONSTRAINT ") + nombreRestriccion(t, r) + QStringLiteral(" FOREIGN KEY (") +
                              r.columna + QStringLiteral(") ") + sqlReferencia(r);
    QStringList sql;
    sql << QStringLiteral("CREATE TABLE ") + t.tabla + QStringLiteral(" (") +
               partes.join(QStringLiteral(", ")) + QLatin1Char(')');
    for (const auto& i : t.indices)
        if (i.desde <= version) sql << sqlCrearIndice(t, i);
    return sql;
}

QString sqlCrearIndice(const DescriptorTabla& t, const DescriptorIndice& i) {
    return QStringLiteral("CREATE ") + (i.unico ? QStringLiteral("UNIQUE ") : QString()) +
           QStringLiteral("INDEX ") + i.nombre + QStringLiteral(" ON ") + t.tabla + QStringLiteral(" (") +
           i.columnas.join(QStringLiteral(", ")) + QLatin1Char(')');
}

int versionEsquema(Database& db) {
    if (!db.existeTabla(QString::fromLatin1(kTablaVersion))) return 0;
    return db.valor(QStringLiteral("SELECT MAX(Version) FROM VersionEsquema")).toInt();
}

void migrarEsquema(Database& db) {
    const int objetivo = versionEsquemaPrograma();
    Transaction tx = db.transaccion();
    int actual = versionEsquema(db);
    if (actual > objetivo)
        throw ErrorBD(QStringLiteral(
                          "la base de datos tiene la estructura %1, más moderna que la de este programa (%2)")
                          .arg(actual)
                          .arg(objetivo));
    if (actual == 0)
        db.ejecutarDirecto(QStringLiteral("CREATE TABLE VersionEsquema (Version INTEGER NOT NULL)"));
    const bool lite = db.esSQLite();
    // A table of a version already applied that is missing (a database made by an earlier
    // build of the same version, or a table dropped by hand) is created as that version has it.
    QList<const DescriptorTabla*> recreadas;
    for (const auto& t : catalogo())
        if (t.desde <= actual && !db.existeTabla(t.tabla)) {
            for (const auto& s : sqlCrearTabla(t, db.motor(), actual))
                db.ejecutarDirecto(s);
            recreadas << &t;
        }
    if (!lite)
        for (const auto* t : recreadas)
            for (const auto& r : t->referencias)
                if (r.desde <= actual) db.ejecutarDirecto(sqlAnadirReferencia(*t, r));
    for (int v = actual + 1; v <= objetivo; ++v) {
        comprobarHuerfanos(db, v);
        // The version's new tables first: SQLite checks, when a rebuilt table is renamed, that
        // every table its references name exists.
        for (const auto& t : catalogo())
            if (t.desde == v)
                for (const auto& s : sqlCrearTabla(t, db.motor(), v))
                    db.ejecutarDirecto(s);
        QList<const DescriptorTabla*> rehechas;
        if (lite) rehechas = tablasConReferenciasNuevas(v);
        for (const auto* t : rehechas)
            rehacerTablaSQLite(db, *t, v);
        for (const auto& t : catalogo()) {
            if (t.desde >= v || rehechas.contains(&t)) continue;
            for (const auto& c : t.columnaS)
                if (c.desde == v)
                    db.ejecutarDirecto(QStringLiteral("ALTER TABLE ") + t.tabla +
                                       QStringLiteral(" ADD COLUMN ") + definicionColumna(c, db.motor()));
            for (const auto& i : t.indices)
                if (i.desde == v) db.ejecutarDirecto(sqlCrearIndice(t, i));
        }
        if (!lite)
            for (const auto& t : catalogo())
                for (const auto& r : t.referencias)
                    if (r.desde == v || (t.desde == v && r.desde <= v))
                        db.ejecutarDirecto(sqlAnadirReferencia(t, r));
        db.ejecutarCambio(QStringLiteral("INSERT INTO VersionEsquema (Version) VALUES (?)"), {v});
    }
    tx.commit();
}

QStringList sqlRepararHorasNulas(Motor motor) {
    QStringList sql;
    const QString cero =
        motor == Motor::SQLite ? QStringLiteral("'00:00:00'") : QStringLiteral("TIME '00:00:00'");
    for (const auto& t : catalogo())
        for (const auto& c : t.columnaS)
            if (c.tipo == TipoColumna::Hora)
                sql << QStringLiteral("UPDATE ") + t.tabla + QStringLiteral(" SET ") + c.nombre +
                           QStringLiteral(" = ") + cero + QStringLiteral(" WHERE ") + c.nombre +
                           QStringLiteral(" IS NULL");
    return sql;
}

void repararHorasNulas(Database& db) {
    Transaction tx = db.transaccion();
    for (const auto& s : sqlRepararHorasNulas(db.motor()))
        db.ejecutarDirecto(s);
    tx.commit();
}
