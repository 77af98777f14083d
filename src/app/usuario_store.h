#pragma once
// The users who may log in.
#include "data/database.h"

#include <QList>
#include <optional>

struct Usuario {
    QString IdUsuario;
    QString Nombre;
    QString Salt;
    QString Hash;
    QString TipoUsuario;
    qint64 versionFila = 0; // the row version read (VersionFila)
};

class UsuarioStore {
public:
    explicit UsuarioStore(Database& db) : db_(db) {}

    std::optional<Usuario> cargar(const QString& id);
    QList<Usuario> todos();
    // Inserts or replaces the user with that identifier.
    void guardar(const Usuario& u);
    void cambiarClave(const QString& id, const QString& sal, const QString& hash);
    bool eliminar(const QString& id);
    qint64 contar();

    // The users screen's writes, each one transaction. Taking the type "ADMINISTRADOR" away
    // from a user, or deleting one, first touches every administrator's row, so that two
    // workstations cannot each remove "the other" last administrator (PostgreSQL holds the
    // rows until the end of the transaction; SQLite runs one writer at a time anyway).
    enum class Resultado { Hecho, YaExiste, NoExiste, UnicoAdministrador, CambiadoEnOtroPuesto };
    // A new user; YaExiste when the identifier is taken.
    Resultado crear(const Usuario& u);
    // Name and type of an existing user, and salt and hash when conClave, provided nobody
    // saved the user since u.versionFila was read (CambiadoEnOtroPuesto: nothing written).
    Resultado modificar(const Usuario& u, bool conClave);
    // Deletes a user unless it is the only administrator (NoExiste: it was already gone).
    Resultado eliminarSalvoUnicoAdministrador(const QString& id);
    // Administrators other than that user.
    qint64 otrosAdministradores(const QString& id);

private:
    Database& db_;
};
