#include "app/usuario_store.h"

#include "app/entorno.h"

namespace {
Usuario leer(QSqlQuery& q) {
    return {q.value(0).toString(), q.value(1).toString(), q.value(2).toString(), q.value(3).toString(),
            q.value(4).toString(), q.value(5).toLongLong()};
}
const QString kColumnas = QStringLiteral("IdUsuario, Nombre, Salt, Hash, TipoUsuario");
const QString kLectura = kColumnas + QStringLiteral(", VersionFila");
} // namespace

std::optional<Usuario> UsuarioStore::cargar(const QString& id) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT ") + kLectura + QStringLiteral(" FROM Usuarios WHERE IdUsuario = ?"), {id});
    if (!q.next()) return std::nullopt;
    return leer(q);
}

QList<Usuario> UsuarioStore::todos() {
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT ") + kLectura +
                               QStringLiteral(" FROM Usuarios ORDER BY IdUsuario"));
    QList<Usuario> lista;
    while (q.next())
        lista << leer(q);
    return lista;
}

void UsuarioStore::guardar(const Usuario& u) {
    db_.ejecutar(QStringLiteral("INSERT INTO Usuarios (") + kColumnas +
                     QStringLiteral(") VALUES (?, ?, ?, ?, ?) ON CONFLICT (IdUsuario) DO UPDATE SET "
                                    "Nombre = excluded.Nombre, Salt = excluded.Salt, Hash = excluded.Hash, "
                                    "TipoUsuario = excluded.TipoUsuario"),
                 {u.IdUsuario, u.Nombre, u.Salt, u.Hash, u.TipoUsuario});
}

void UsuarioStore::cambiarClave(const QString& id, const QString& sal, const QString& hash) {
    if (db_.ejecutarCambio(QStringLiteral("UPDATE Usuarios SET Salt = ?, Hash = ? WHERE IdUsuario = ?"),
                           {sal, hash, id}) == 0)
        throw ErrorBD(QStringLiteral("el usuario '%1' ya no existe").arg(id));
}

bool UsuarioStore::eliminar(const QString& id) {
    return db_.ejecutarCambio(QStringLiteral("DELETE FROM Usuarios WHERE IdUsuario = ?"), {id}) > 0;
}

qint64 UsuarioStore::contar() {
    return db_.valor(QStringLiteral("SELECT COUNT(*) FROM Usuarios")).toLongLong();
}

qint64 UsuarioStore::otrosAdministradores(const QString& id) {
    return db_
        .valor(QStringLiteral("SELECT COUNT(*) FROM Usuarios WHERE TipoUsuario = ? AND IdUsuario <> ?"),
               {kTipoAdministrador, id})
        .toLongLong();
}

namespace {
void reservarAdministradores(Database& db) {
    db.ejecutar(QStringLiteral("UPDATE Usuarios SET TipoUsuario = TipoUsuario WHERE TipoUsuario = ?"),
                {kTipoAdministrador});
}
} // namespace

UsuarioStore::Resultado UsuarioStore::crear(const Usuario& u) {
    Transaction tx = db_.transaccion();
    if (cargar(u.IdUsuario)) return Resultado::YaExiste;
    db_.ejecutar(QStringLiteral("INSERT INTO Usuarios (") + kColumnas +
                     QStringLiteral(") VALUES (?, ?, ?, ?, ?)"),
                 {u.IdUsuario, u.Nombre, u.Salt, u.Hash, u.TipoUsuario});
    tx.commit();
    return Resultado::Hecho;
}

UsuarioStore::Resultado UsuarioStore::modificar(const Usuario& u, bool conClave) {
    Transaction tx = db_.transaccion();
    const auto actual = cargar(u.IdUsuario);
    if (!actual) return Resultado::NoExiste;
    if (actual->TipoUsuario == kTipoAdministrador && u.TipoUsuario != kTipoAdministrador) {
        reservarAdministradores(db_);
        if (otrosAdministradores(u.IdUsuario) == 0) return Resultado::UnicoAdministrador;
    }
    if (actual->versionFila != u.versionFila) return Resultado::CambiadoEnOtroPuesto;
    const QString version = QStringLiteral(", VersionFila = VersionFila + 1 WHERE IdUsuario = ? AND VersionFila = ?");
    const int n =
        conClave ? db_.ejecutarCambio(QStringLiteral("UPDATE Usuarios SET Nombre = ?, TipoUsuario = ?, Salt = ?, Hash = ?") +
                                          version,
                                      {u.Nombre, u.TipoUsuario, u.Salt, u.Hash, u.IdUsuario, u.versionFila})
                 : db_.ejecutarCambio(QStringLiteral("UPDATE Usuarios SET Nombre = ?, TipoUsuario = ?") + version,
                                      {u.Nombre, u.TipoUsuario, u.IdUsuario, u.versionFila});
    if (n == 0) return Resultado::CambiadoEnOtroPuesto;
    tx.commit();
    return Resultado::Hecho;
}

UsuarioStore::Resultado UsuarioStore::eliminarSalvoUnicoAdministrador(const QString& id) {
    Transaction tx = db_.transaccion();
    reservarAdministradores(db_);
    const auto actual = cargar(id);
    if (!actual) return Resultado::NoExiste;
    if (actual->TipoUsuario == kTipoAdministrador && otrosAdministradores(id) == 0)
        return Resultado::UnicoAdministrador;
    eliminar(id);
    tx.commit();
    return Resultado::Hecho;
}
