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

private:
    Database& db_;
};
