#include "data/bloqueos.h"

#include "data/registro.h"

#include <QRandomGenerator>
#include <QThread>

// How checking and adding a lock is made one atomic step.
//
// SQLite: every attempt runs in a transaction opened with BEGIN IMMEDIATE, which takes the
// database's single write lock before the first read. Only one connection, in any process,
// can be between that BEGIN and its COMMIT, so "look for the administrative lock, look for
// the key, add the row" runs with no other writer in between, and the count of standing
// locks read by the administrative lock cannot change before its own row is added.
//
// PostgreSQL: statements of different transactions do run side by side, so two things are
// needed.
//  - Two record locks of the same key: the primary key on claveBloqueo. The row is added
//    with INSERT ... ON CONFLICT DO NOTHING; a second transaction adding the same key waits
//    for the first one to end and then adds nothing, so it sees 0 rows touched and is
//    refused. The earlier "look for the key" is only there to word the message.
//  - The administrative lock against record locks: the primary key cannot help, since the
//    keys differ; what must not happen is "A sees no administrative lock" and "B counts the
//    locks" both before either adds its row. Each attempt therefore takes, inside its
//    transaction, a transaction-level advisory lock on one fixed number: shared for a record
//    lock, exclusive for the administrative lock and for a lock on a whole table. Record
//    locks of different keys still run side by side (shared with shared), while the
//    administrative lock waits until every record-lock transaction in progress has ended,
//    counts what they committed (READ COMMITTED: each statement sees every commit made
//    before it started), and keeps new record locks waiting until its own row is
//    committed; they then see it. The advisory lock ends with the transaction, so it can
//    never be left behind by a workstation that stops. LOCK TABLE ... IN SHARE ROW
//    EXCLUSIVE MODE would also be correct, but would make every record lock wait for every
//    other one.
//
// A busy database, a lock timeout, a deadlock or a serialization failure makes the attempt
// start again from the beginning, a bounded number of times; after the last one the
// failure is reported, never swallowed. Inside a transaction of the caller the attempt
// cannot be repeated (the caller's work would be lost), so the failure goes to the caller.

namespace {
const QString kTituloBloqueo = QStringLiteral("Bloqueo de Registro");
const QString kTituloDesbloqueo = QStringLiteral("Desbloqueo de registro");
const QString kTituloAtencion = QStringLiteral("¡Atención!");
const QString kDescripcionBloqueoBD = QStringLiteral("Toda la B.D. por labores Administrativas");

// The number of the PostgreSQL advisory lock that orders lock attempts ("PmxBlq").
constexpr qint64 kCerrojoBloqueos = 0x506d78426c71;

template <typename F> auto conReintentos(Database& db, int intentos, F&& f) -> decltype(f()) {
    const bool unida = db.enTransaccion();
    for (int intento = 1;; ++intento) {
        try {
            return f();
        } catch (const ErrorBD& e) {
            if (unida || intento >= intentos || !esErrorDeConcurrencia(e)) throw;
        }
        QThread::msleep(5 + QRandomGenerator::global()->bounded(20 * intento));
    }
}

QTime horaEnSegundos(const QTime& hora) {
    return QTime(hora.hour(), hora.minute(), hora.second());
}
} // namespace

std::optional<NombreAccion> nombreAccion(int codigo) {
    switch (codigo) {
    case 1:
        return NombreAccion{QStringLiteral("Modificación"), QStringLiteral("Modificar")};
    case 2:
        return NombreAccion{QStringLiteral("Alta"), QStringLiteral("dar de Alta")};
    case 3:
        return NombreAccion{QStringLiteral("Baja"), QStringLiteral("dar de Baja")};
    default:
        return std::nullopt;
    }
}

QString claveBloqueo(const DescriptorTabla& clase, const QString& clave) {
    return clase.tabla + QLatin1Char(' ') + clave;
}

QString claveBloqueoTabla(const DescriptorTabla& clase) {
    return clase.tabla;
}

QString descripcionBloqueoTabla(const DescriptorTabla& clase) {
    return clase.descTabla + QStringLiteral(": Todos");
}

bool esErrorDeConcurrencia(const ErrorBD& error) {
    const QString t = error.texto().toLower();
    static const char* const kSenales[] = {
        "database is locked",         // SQLite: busy
        "database table is locked",   // SQLite: locked by this connection's other statement
        "database schema is locked",  // SQLite
        "could not serialize access", // PostgreSQL 40001
        "deadlock detected",          // PostgreSQL 40P01
        "lock timeout",               // PostgreSQL 55P03 (lock_timeout)
        "could not obtain lock",      // PostgreSQL 55P03 (NOWAIT)
    };
    for (const char* s : kSenales)
        if (t.contains(QLatin1String(s))) return true;
    return false;
}

BloqueoStore::BloqueoStore(Database& db, const Clock& reloj, IdentidadSesion quien)
    : db_(db), reloj_(reloj), quien_(std::move(quien)) {
    // A null text would be stored as NULL, which no "Ventana = ?" ever matches.
    if (quien_.ventana.isNull()) quien_.ventana = QStringLiteral("");
}

void BloqueoStore::exclusionMutua(bool exclusiva) {
    if (db_.esSQLite()) return; // BEGIN IMMEDIATE already holds the only write lock
    db_.ejecutar(exclusiva ? QStringLiteral("SELECT pg_advisory_xact_lock(?)")
                           : QStringLiteral("SELECT pg_advisory_xact_lock_shared(?)"),
                 {kCerrojoBloqueos});
}

std::optional<QString> BloqueoStore::sesionDe(const QString& claveCompleta) {
    const QVariant v =
        db_.valor(QStringLiteral("SELECT Sesion FROM Bloqueos WHERE claveBloqueo = ?"), {claveCompleta});
    if (!v.isValid()) return std::nullopt;
    return v.toString();
}

bool BloqueoStore::insertar(const QString& claveCompleta, const QString& descripcion, int accion) {
    const QDateTime ahora = reloj_.ahora();
    return db_.ejecutarCambio(
               QStringLiteral("INSERT INTO Bloqueos (claveBloqueo, DescrBloqueo, Sesion, Accion, "
                              "Usuario, Puesto, Fecha, Hora, Ventana) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?) "
                              "ON CONFLICT (claveBloqueo) DO NOTHING"),
               {claveCompleta, descripcion, quien_.sesion, accion, quien_.usuario, quien_.puesto,
                ahora.date(), horaEnSegundos(ahora.time()), quien_.ventana}) > 0;
}

ResultadoBloqueo BloqueoStore::bloquear(const std::function<ResultadoBloqueo()>& intento) {
    try {
        return conReintentos(db_, intentos_, intento);
    } catch (const ErrorBD& e) {
        return {false, Icono::Ninguno, kTituloBloqueo, e.mensaje()};
    }
}

namespace {
QString noEsPosible(const NombreAccion& a, const DescriptorTabla& clase, const QString& descripcion) {
    return QStringLiteral("No es posible ") + a.verbo + QStringLiteral(" el/la ") + clase.descTabla +
           QStringLiteral(" de ") + descripcion;
}
QString porBD(const QString& inicio) {
    return inicio +
           QStringLiteral(" pues algún Usuario tiene bloqueada la B.D. Consulte a un Administrador.");
}
QString porOtroPuesto(const QString& inicio) {
    return inicio + QStringLiteral(" pues otro Puesto lo/a tiene bloqueado/a. Consulte a un Administrador.");
}
QString porOtraVentana(const QString& inicio) {
    return inicio + QStringLiteral(" pues lo/a tiene abierto/a en otra ventana de este equipo. "
                                   "Ciérrela antes.");
}
} // namespace

ResultadoBloqueo BloqueoStore::bloquearRegistro(const DescriptorTabla& clase, const QString& clave,
                                                const QString& descripcion, int accion) {
    const auto a = nombreAccion(accion);
    if (!a)
        return {false, Icono::Ninguno, kTituloBloqueo,
                QStringLiteral("La acción que se pretende bloquear no es una de las admitidas: '") +
                    QString::number(accion) + QStringLiteral("'.")};
    const QString inicio = noEsPosible(*a, clase, descripcion);
    const QString completa = claveBloqueo(clase, clave);
    return bloquear([&] { return intentarRegistro(clase.tabla, completa, descripcion, accion, inicio); });
}

ResultadoBloqueo BloqueoStore::intentarRegistro(const QString& tabla, const QString& claveCompleta,
                                                const QString& descripcion, int accion,
                                                const QString& inicio) {
    const ResultadoBloqueo rechazoBD{false, Icono::Informacion, kTituloBloqueo, porBD(inicio)};
    const ResultadoBloqueo rechazoOtro{false, Icono::Informacion, kTituloBloqueo, porOtroPuesto(inicio)};
    Transaction tx = db_.transaccion();
    exclusionMutua(false);
    ResultadoBloqueo d;
    // The administrative lock, the lock on the whole table and the key itself, in one read.
    std::optional<QString> administrativo, tablaEntera, mismo;
    QString ventanaMismo;
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT claveBloqueo, Sesion, Ventana FROM Bloqueos WHERE claveBloqueo IN (?, ?, ?)"),
        {kClaveBloqueoBD, tabla, claveCompleta});
    while (q.next()) {
        const QString clave = q.value(0).toString();
        const QString sesion = q.value(1).toString();
        if (clave == kClaveBloqueoBD) administrativo = sesion;
        if (clave == tabla) tablaEntera = sesion;
        if (clave == claveCompleta) {
            mismo = sesion;
            ventanaMismo = q.value(2).toString();
        }
    }
    if (administrativo && *administrativo != quien_.sesion)
        d = rechazoBD;
    else if (tablaEntera && *tablaEntera != quien_.sesion)
        d = rechazoOtro;
    else if (mismo && *mismo != quien_.sesion)
        d = rechazoOtro;
    else if (mismo)
        d = ventanaMismo == quien_.ventana
                ? ResultadoBloqueo{}
                : ResultadoBloqueo{false, Icono::Informacion, kTituloBloqueo, porOtraVentana(inicio)};
    else if (!insertar(claveCompleta, descripcion, accion))
        d = rechazoOtro; // added by another workstation after our look
    // Nothing is undone on a refusal: only reads were made, and undoing would spoil a
    // transaction of the caller that this one joined.
    tx.commit();
    return d;
}

ResultadoBloqueo BloqueoStore::bloquearTabla(const DescriptorTabla& clase, int accion) {
    const auto a = nombreAccion(accion);
    if (!a) return bloquearRegistro(clase, QString(), QString(), accion);
    const QString inicio = noEsPosible(*a, clase, descripcionBloqueoTabla(clase));
    return bloquear([&] { return intentarTabla(clase, accion, inicio); });
}

ResultadoBloqueo BloqueoStore::intentarTabla(const DescriptorTabla& clase, int accion, const QString& inicio) {
    const QString prefijo = clase.tabla + QLatin1Char(' ');
    Transaction tx = db_.transaccion();
    exclusionMutua(true);
    ResultadoBloqueo d;
    const auto administrativo = sesionDe(kClaveBloqueoBD);
    if (administrativo && *administrativo != quien_.sesion) {
        d = {false, Icono::Informacion, kTituloBloqueo, porBD(inicio)};
    } else {
        const qint64 ajenos =
            db_.valor(QStringLiteral("SELECT COUNT(*) FROM Bloqueos WHERE Sesion <> ? AND "
                                     "(claveBloqueo = ? OR substr(claveBloqueo, 1, ?) = ?)"),
                      {quien_.sesion, claveBloqueoTabla(clase), static_cast<int>(prefijo.size()), prefijo})
                .toLongLong();
        if (ajenos > 0)
            d = {false, Icono::Informacion, kTituloBloqueo, porOtroPuesto(inicio)};
        else if (!sesionDe(claveBloqueoTabla(clase)))
            insertar(claveBloqueoTabla(clase), descripcionBloqueoTabla(clase), accion);
    }
    tx.commit();
    return d;
}

ResultadoBloqueo BloqueoStore::bloquearBD() {
    return bloquear([&] { return intentarBD(); });
}

ResultadoBloqueo BloqueoStore::intentarBD() {
    Transaction tx = db_.transaccion();
    exclusionMutua(true);
    QString razon;
    const auto administrativo = sesionDe(kClaveBloqueoBD);
    if (administrativo && *administrativo != quien_.sesion) {
        razon = QStringLiteral("pues otro Usuario tiene bloqueada");
    } else if (!administrativo) {
        // Every standing lock counts, this session's own included; one alone is allowed.
        const qint64 n = db_.valor(QStringLiteral("SELECT COUNT(*) FROM Bloqueos")).toLongLong();
        if (n > 1)
            razon = QStringLiteral("mientras otros Usuarios tengan bloqueados registros en");
        else
            insertar(kClaveBloqueoBD, kDescripcionBloqueoBD, static_cast<int>(AccionBloqueo::Modificacion));
    }
    tx.commit();
    if (razon.isEmpty()) return {};
    return {false, Icono::Exclamacion, kTituloAtencion,
            QStringLiteral(" No es posible bloquear la B.D. para Administración ") + razon +
                QStringLiteral(" la B.D. ") + QLatin1Char('\n') +
                QStringLiteral(" Consulte con un Administrador.")};
}

bool BloqueoStore::desbloquear(const QString& claveCompleta) {
    return conReintentos(db_, intentos_, [&] {
               return db_.ejecutarCambio(
                   QStringLiteral("DELETE FROM Bloqueos WHERE claveBloqueo = ? AND Sesion = ? AND Ventana = ?"),
                   {claveCompleta, quien_.sesion, quien_.ventana});
           }) > 0;
}

bool BloqueoStore::vigente(const QString& claveCompleta) {
    // On PostgreSQL the row is held until the caller's transaction ends, so that the lock
    // manager cannot remove it between this check and the save; SQLite's single writer
    // already keeps it.
    return db_.valor(QStringLiteral("SELECT claveBloqueo FROM Bloqueos WHERE claveBloqueo = ? AND Sesion = ? "
                                    "AND Ventana = ?") +
                         (db_.esSQLite() ? QString() : QStringLiteral(" FOR UPDATE")),
                     {claveCompleta, quien_.sesion, quien_.ventana})
        .isValid();
}

int BloqueoStore::desbloquearSesion() {
    return conReintentos(db_, intentos_, [&] {
        return db_.ejecutarCambio(QStringLiteral("DELETE FROM Bloqueos WHERE Sesion = ?"), {quien_.sesion});
    });
}

bool Bloqueos::mostrar(const ResultadoBloqueo& r, bool mostrarMensajes) {
    if (!r.concedido && mostrarMensajes) dialogs_.mostrar(r.icono, r.titulo, r.texto);
    return r.concedido;
}

bool Bloqueos::bloquearRegistro(const DescriptorTabla& clase, const QString& clave, const QString& descripcion,
                                int accion, bool mostrarMensajes) {
    return mostrar(store_.bloquearRegistro(clase, clave, descripcion, accion), mostrarMensajes);
}

bool Bloqueos::bloquearTabla(const DescriptorTabla& clase, int accion, bool mostrarMensajes) {
    return mostrar(store_.bloquearTabla(clase, accion), mostrarMensajes);
}

bool Bloqueos::bloquearBD(bool mostrarMensajes) {
    return mostrar(store_.bloquearBD(), mostrarMensajes);
}

bool Bloqueos::desbloquear(const QString& claveCompleta) {
    try {
        return store_.desbloquear(claveCompleta);
    } catch (const ErrorBD& e) {
        dialogs_.mostrar(Icono::Ninguno, kTituloDesbloqueo, e.mensaje());
        return false;
    }
}

namespace {
Bloqueo leerBloqueo(QSqlQuery& q) {
    Bloqueo b;
    b.clave = q.value(0).toString();
    b.descripcion = q.value(1).toString();
    b.sesion = q.value(2).toString();
    b.accion = q.value(3).toInt();
    b.usuario = q.value(4).toString();
    b.puesto = q.value(5).toString();
    b.fecha = valorDesdeBD(TipoColumna::Fecha, q.value(6)).toDate();
    b.hora = valorDesdeBD(TipoColumna::Hora, q.value(7)).toTime();
    b.ventana = q.value(8).toString();
    return b;
}

const QString kColumnas =
    QStringLiteral("SELECT claveBloqueo, DescrBloqueo, Sesion, Accion, Usuario, Puesto, Fecha, "
                   "Hora, Ventana FROM Bloqueos");
} // namespace

QList<Bloqueo> BloqueoStore::lista() {
    QSqlQuery q =
        db_.ejecutar(kColumnas + QStringLiteral(" ORDER BY Fecha, Hora, DescrBloqueo, claveBloqueo"));
    QList<Bloqueo> todos;
    while (q.next())
        todos.append(leerBloqueo(q));
    return todos;
}

std::optional<Bloqueo> BloqueoStore::buscar(const QString& claveBloqueo) {
    QSqlQuery q = db_.ejecutar(kColumnas + QStringLiteral(" WHERE claveBloqueo = ?"), {claveBloqueo});
    if (!q.next()) return std::nullopt;
    return leerBloqueo(q);
}

bool BloqueoStore::eliminar(const Bloqueo& listado) {
    return conReintentos(db_, intentos_, [&] {
               return db_.ejecutarCambio(QStringLiteral("DELETE FROM Bloqueos WHERE claveBloqueo = ? AND "
                                                        "Sesion = ? AND Ventana = ? AND Fecha = ? AND Hora = ?"),
                                         {listado.clave, listado.sesion, listado.ventana, listado.fecha,
                                          horaEnSegundos(listado.hora)});
           }) > 0;
}

int BloqueoStore::eliminarTodos() {
    return conReintentos(db_, intentos_,
                         [&] { return db_.ejecutarCambio(QStringLiteral("DELETE FROM Bloqueos")); });
}

qint64 BloqueoStore::contar() {
    return db_.valor(QStringLiteral("SELECT COUNT(*) FROM Bloqueos")).toLongLong();
}
