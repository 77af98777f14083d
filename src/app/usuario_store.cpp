#include "app/usuario_store.h"

namespace {
Usuario leer(QSqlQuery& q) {
    return {q.value(0).toString(), q.value(1).toString(), q.value(2).toString(), q.value(3).toString(),
            q.value(4).toString()};
}
const QString kColumnas = QStringLiteral("IdUsuario, Nombre, Salt, Hash, TipoUsuario");
} // namespace

std::optional<Usuario> UsuarioStore::cargar(const QString& id) {
    QSqlQuery q = db_.ejecutar(
        QStringLiteral("SELECT ") + kColumnas + QStringLiteral(" FROM Usuarios WHERE IdUsuario = ?"), {id});
    if (!q.next()) return std::nullopt;
    return leer(q);
}

QList<Usuario> UsuarioStore::todos() {
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT ") + kColumnas +
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
