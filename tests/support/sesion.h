#pragma once
// What most tests share. Sesion: a throw-away database on the engine under test, scripted
// dialogs, a fixed clock and an Entorno wired to them, with a user logged in on a
// workstation. Semilla: rows (clients, pets, articles, plans, users...) written with short
// calls, every other column left to the schema's default.
#include "app/entorno.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QVariantMap>

using namespace Qt::StringLiterals;

class Semilla {
public:
    explicit Semilla(Database& db) : db_(db) {}

    // Any row of a table of the schema; returns its key.
    qint64 fila(const QString& tabla, const QVariantMap& valores);
    qint64 contar(const QString& tabla);

    qint64 iva(const QString& desc = u"General 21%"_s, double porcentaje = 21.0);
    qint64 cliente(const QString& nombre, const QVariantMap& mas = {});
    qint64 especie(const QString& desc); // active
    qint64 raza(const QString& desc, qint64 especie);
    qint64 estado(const QString& desc);
    qint64 personal(const QString& desc, bool activo = true);
    qint64 mascota(const QString& nombre, qint64 cliente, qint64 especie, const QVariantMap& mas = {});
    qint64 plan(const QString& nombre, const QVariantMap& mas = {});
    void usuario(const QString& id, const QString& tipo = kTipoUsuario, const QString& clave = u"clave"_s,
                 const QString& nombre = {});

    // The articles' classification (an empty series is stored as nothing), articles and
    // delivery notes holding them.
    qint64 seccion(const QString& desc, const QString& serie = {});
    qint64 familia(qint64 seccion, const QString& desc, const QString& serie = {});
    qint64 subfamilia(qint64 familia, const QString& desc, const QString& serie = {});
    qint64 articulo(const QString& desc, qint64 seccion, qint64 familia, qint64 subfamilia, qint64 iva,
                    const QVariantMap& mas = {});
    // A delivery note of series A; invoiced when factura is given.
    qint64 albaran(qint64 numero, std::optional<qint64> factura = std::nullopt);
    qint64 linea(qint64 albaran, qint64 articulo, const QString& serie);
    QString serieLinea(qint64 linea);

    static QVariantMap con(QVariantMap a, const QVariantMap& b);

private:
    Database& db_;
};

struct Sesion {
    explicit Sesion(const QDateTime& ahora = QDateTime(QDate(2026, 11, 23), QTime(9, 0)));
    TestDb t;
    ScriptedDialogs d;
    FixedClock reloj;
    Entorno e;
    Semilla s{t.db()};
    Database& db() { return t.db(); }
    QVariant valor(const QString& sql, const QVariantList& args = {}) { return t.db().valor(sql, args); }
};

// Another workstation on the same database: a connection, dialogs and an Entorno of its own,
// on the session's clock.
struct OtroPuesto {
    OtroPuesto(Sesion& s, const QString& puesto) : conexion(s.t.otraConexion()), e(*conexion, d, s.reloj) {
        e.puesto = puesto;
    }
    std::unique_ptr<Database> conexion;
    ScriptedDialogs d;
    Entorno e;
};
