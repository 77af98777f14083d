// The login dialog's checks, in order, against the users table.
#include "app/claves.h"
#include "app/login_form.h"
#include "app/usuario_store.h"
#include "data/puestos.h"
#include "scripted_dialogs.h"
#include "test_db.h"

class TestLogin : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

    void crearUsuario(Database& db, const QString& id, const QString& clave, const QString& tipo) {
        const QString sal = nuevaSal();
        UsuarioStore(db).guardar({id, QStringLiteral("Nombre de ") + id, sal, hashClave(sal, clave), tipo});
    }

    struct Sesion {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
    };

    std::unique_ptr<Sesion> sesion() {
        auto s = std::make_unique<Sesion>();
        crearUsuario(s->t.db(), QStringLiteral("ana"), QStringLiteral("gato123"), kTipoAdministrador);
        crearUsuario(s->t.db(), QStringLiteral("luis"), QStringLiteral("perro"), kTipoUsuario);
        s->e = std::make_unique<Entorno>(s->t.db(), s->d, reloj_);
        s->e->puesto = QStringLiteral("CONSULTA1");
        PuestosActivosStore(s->t.db()).registrar(s->e->puesto, reloj_.ahora());
        return s;
    }

private slots:
    void salYHash() {
        const QString sal = nuevaSal();
        QCOMPARE(sal.size(), 15);
        QVERIFY(sal != nuevaSal());
        const QString hash = hashClave(sal, QStringLiteral("gato123"));
        QVERIFY(hash.startsWith(QStringLiteral("$argon2id$")));
        QVERIFY(claveCorrecta(hash, sal, QStringLiteral("gato123")));
        QVERIFY(!claveCorrecta(hash, sal, QStringLiteral("gato124")));
        // The salt is part of what is hashed: the same password with another salt fails.
        QVERIFY(!claveCorrecta(hash, nuevaSal(), QStringLiteral("gato123")));
        // Two hashes of the same salt and password differ (each holds its own parameters)
        // and both verify.
        const QString otro = hashClave(sal, QStringLiteral("gato123"));
        QVERIFY(otro != hash);
        QVERIFY(claveCorrecta(otro, sal, QStringLiteral("gato123")));
        QVERIFY(!claveCorrecta(QString(), sal, QString()));
        QVERIFY(!claveCorrecta(QStringLiteral("basura"), sal, QStringLiteral("gato123")));
    }

    void usuarioDesconocido() {
        auto s = sesion();
        LoginForm f(*s->e);
        f.usuario = QStringLiteral("pepe");
        f.clave = QStringLiteral("gato123");
        QVERIFY(!f.aceptar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("El usuario introducido no existe."));
        QVERIFY(!s->e->identificado());
        QCOMPARE(f.foco, LoginForm::Campo::Usuario);
    }

    void claveIncorrectaVaciaElCampo() {
        auto s = sesion();
        LoginForm f(*s->e);
        f.usuario = QStringLiteral("ana");
        f.clave = QStringLiteral("GATO123");
        QVERIFY(!f.aceptar());
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("La clave introducida no es correcta."));
        QCOMPARE(f.clave, QString());
        QCOMPARE(f.foco, LoginForm::Campo::Clave);
        // The dialog stays open: a second try with the right password gets in.
        f.clave = QStringLiteral("gato123");
        QVERIFY(f.aceptar());
        QCOMPARE(s->d.mensajes().size(), 1);
    }

    void identificacionCorrecta() {
        auto s = sesion();
        LoginForm f(*s->e);
        f.usuario = QStringLiteral("luis");
        f.clave = QStringLiteral("perro");
        QVERIFY(f.aceptar());
        QVERIFY(s->d.mensajes().isEmpty());
        QCOMPARE(s->e->usuario, QStringLiteral("luis"));
        QCOMPARE(s->e->nombreUsuario, QStringLiteral("Nombre de luis"));
        QVERIFY(!s->e->esAdministrador());
        QCOMPARE(
            s->t.db()
                .valor(QStringLiteral("SELECT Usuario FROM PuestosActivos WHERE Puesto = ?"), {s->e->puesto})
                .toString(),
            QStringLiteral("luis"));
    }

    void confirmacionDistintaNoCambiaNada() {
        auto s = sesion();
        const auto antes = UsuarioStore(s->t.db()).cargar(QStringLiteral("ana"));
        LoginForm f(*s->e);
        f.usuario = QStringLiteral("ana");
        f.clave = QStringLiteral("gato123");
        f.nuevaClave = QStringLiteral("nueva1");
        f.confirmacion = QStringLiteral("nueva2");
        QVERIFY(!f.aceptar());
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("La confirmación introducida no coincide con la nueva clave."));
        QVERIFY(!s->e->identificado());
        const auto despues = UsuarioStore(s->t.db()).cargar(QStringLiteral("ana"));
        QCOMPARE(despues->Hash, antes->Hash);
        QCOMPARE(despues->Salt, antes->Salt);
    }

    void cambioDeClave() {
        auto s = sesion();
        const auto antes = UsuarioStore(s->t.db()).cargar(QStringLiteral("ana"));
        LoginForm f(*s->e);
        f.usuario = QStringLiteral("ana");
        f.clave = QStringLiteral("gato123");
        f.nuevaClave = QStringLiteral("Ñandú 2026");
        f.confirmacion = QStringLiteral("Ñandú 2026");
        QVERIFY(f.aceptar());
        QVERIFY(s->d.mensajes().isEmpty());
        const auto despues = UsuarioStore(s->t.db()).cargar(QStringLiteral("ana"));
        QCOMPARE(despues->Salt.size(), 15);
        QVERIFY(despues->Salt != antes->Salt);
        QVERIFY(claveCorrecta(despues->Hash, despues->Salt, QStringLiteral("Ñandú 2026")));
        QVERIFY(!claveCorrecta(despues->Hash, despues->Salt, QStringLiteral("gato123")));

        // The old password no longer lets in; the new one does.
        s->e->desidentificar();
        LoginForm otra(*s->e);
        otra.usuario = QStringLiteral("ana");
        otra.clave = QStringLiteral("gato123");
        QVERIFY(!otra.aceptar());
        otra.clave = QStringLiteral("Ñandú 2026");
        QVERIFY(otra.aceptar());
    }

    void cambioDeClaveFallidoDejaEntrar() {
        auto s = sesion();
        // Another workstation's rule refuses every change to the users table.
        if (s->t.db().esSQLite()) {
            s->t.db().ejecutarDirecto(
                QStringLiteral("CREATE TRIGGER sin_cambios BEFORE UPDATE ON Usuarios "
                               "BEGIN SELECT RAISE(ABORT, 'tabla de usuarios bloqueada'); END"));
        } else {
            s->t.db().ejecutarDirecto(QStringLiteral("CREATE FUNCTION sin_cambios() RETURNS trigger AS $$ "
                                                     "BEGIN RAISE EXCEPTION 'tabla de usuarios "
                                                     "bloqueada'; END $$ LANGUAGE plpgsql"));
            s->t.db().ejecutarDirecto(QStringLiteral("CREATE TRIGGER sin_cambios BEFORE UPDATE ON Usuarios "
                                                     "FOR EACH ROW EXECUTE FUNCTION sin_cambios()"));
        }
        const auto antes = UsuarioStore(s->t.db()).cargar(QStringLiteral("ana"));
        LoginForm f(*s->e);
        f.usuario = QStringLiteral("ana");
        f.clave = QStringLiteral("gato123");
        f.nuevaClave = QStringLiteral("otra");
        f.confirmacion = QStringLiteral("otra");
        QVERIFY(f.aceptar());
        QCOMPARE(s->d.textos(),
                 QStringList{QStringLiteral(
                     "Usuario identificado correctamente, pero no ha sido posible cambiar la clave.")});
        QVERIFY(s->e->identificado());
        QCOMPARE(UsuarioStore(s->t.db()).cargar(QStringLiteral("ana"))->Hash, antes->Hash);
    }
};

PMX_STORE_TEST_MAIN(TestLogin)
#include "test_login.moc"
