// The login dialog's checks, in order, against the users table.
#include "app/claves.h"
#include "app/login_form.h"
#include "app/usuario_store.h"
#include "data/puestos.h"
#include "sesion.h"

class TestLogin : public QObject {
    Q_OBJECT

    // ana (administrator, password gato123) and luis (user, perro); nobody logged in on
    // workstation CONSULTA1.
    static std::unique_ptr<Sesion> sesion() {
        auto s = std::make_unique<Sesion>();
        s->s.usuario(u"ana"_s, kTipoAdministrador, u"gato123"_s, u"Nombre de ana"_s);
        s->s.usuario(u"luis"_s, kTipoUsuario, u"perro"_s, u"Nombre de luis"_s);
        s->e.usuario.clear();
        s->e.nombreUsuario.clear();
        s->e.tipoUsuario.clear();
        PuestosActivosStore(s->db()).registrar(s->e.puesto, s->reloj.ahora());
        return s;
    }

private slots:
    void salYHash() {
        const QString sal = nuevaSal();
        QCOMPARE(sal.size(), 15);
        QVERIFY(sal != nuevaSal());
        const QString hash = hashClave(sal, u"gato123"_s);
        QVERIFY(hash.startsWith(u"$argon2id$"_s));
        QVERIFY(claveCorrecta(hash, sal, u"gato123"_s));
        QVERIFY(!claveCorrecta(hash, sal, u"gato124"_s));
        // The salt is part of what is hashed: the same password with another salt fails.
        QVERIFY(!claveCorrecta(hash, nuevaSal(), u"gato123"_s));
        QVERIFY(!claveCorrecta(u"basura"_s, sal, u"gato123"_s));
    }

    // The dialog stays open after each refusal: an unknown user, then a wrong password
    // (emptied), then the right one gets in.
    void identificacion() {
        auto s = sesion();
        LoginForm f(s->e);
        f.usuario = u"pepe"_s;
        f.clave = u"perro"_s;
        QVERIFY(!f.aceptar());
        QCOMPARE(s->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(s->d.ultimoTexto(), u"El usuario introducido no existe."_s);
        QCOMPARE(f.foco, LoginForm::Campo::Usuario);
        f.usuario = u" luis "_s;
        f.clave = u"PERRO"_s;
        QVERIFY(!f.aceptar());
        QCOMPARE(s->d.ultimoTexto(), u"La clave introducida no es correcta."_s);
        QCOMPARE(f.clave, QString());
        QCOMPARE(f.foco, LoginForm::Campo::Clave);
        f.clave = u"perro"_s;
        QVERIFY(f.aceptar());
        QCOMPARE(s->e.nombreUsuario, u"Nombre de luis"_s);
        QVERIFY(!s->e.esAdministrador());
        QCOMPARE(s->valor(u"SELECT Usuario FROM PuestosActivos WHERE Puesto = ?"_s, {s->e.puesto}).toString(),
                 u"luis"_s);
    }

    // A new password typed twice alike replaces the old one; otherwise nothing changes.
    void cambioDeClave() {
        auto s = sesion();
        const auto antes = UsuarioStore(s->db()).cargar(u"ana"_s);
        LoginForm f(s->e);
        f.usuario = u"ana"_s;
        f.clave = u"gato123"_s;
        f.nuevaClave = u"Ñandú 2026"_s;
        f.confirmacion = u"Ñandú 2027"_s;
        QVERIFY(!f.aceptar());
        QCOMPARE(s->d.textos(),
                 QStringList{u"La confirmación introducida no coincide con la nueva clave."_s});
        QCOMPARE(f.foco, LoginForm::Campo::Confirmacion);
        QVERIFY(!s->e.identificado());
        QCOMPARE(UsuarioStore(s->db()).cargar(u"ana"_s)->Hash, antes->Hash);

        f.confirmacion = u"Ñandú 2026"_s;
        QVERIFY(f.aceptar());
        const auto despues = UsuarioStore(s->db()).cargar(u"ana"_s);
        QVERIFY(despues->Salt != antes->Salt);
        QVERIFY(claveCorrecta(despues->Hash, despues->Salt, u"Ñandú 2026"_s));
    }

    void cambioDeClaveFallidoDejaEntrar() {
        auto s = sesion();
        // Another workstation's rule refuses every change to the users table.
        if (s->db().esSQLite()) {
            s->db().ejecutarDirecto(u"CREATE TRIGGER sin_cambios BEFORE UPDATE ON Usuarios "
                                    "BEGIN SELECT RAISE(ABORT, 'tabla de usuarios bloqueada'); END"_s);
        } else {
            s->db().ejecutarDirecto(u"CREATE FUNCTION sin_cambios() RETURNS trigger AS $$ "
                                    "BEGIN RAISE EXCEPTION 'tabla de usuarios "
                                    "bloqueada'; END $$ LANGUAGE plpgsql"_s);
            s->db().ejecutarDirecto(u"CREATE TRIGGER sin_cambios BEFORE UPDATE ON Usuarios "
                                    "FOR EACH ROW EXECUTE FUNCTION sin_cambios()"_s);
        }
        const auto antes = UsuarioStore(s->db()).cargar(u"ana"_s);
        LoginForm f(s->e);
        f.usuario = u"ana"_s;
        f.clave = u"gato123"_s;
        f.nuevaClave = u"otra"_s;
        f.confirmacion = u"otra"_s;
        QVERIFY(f.aceptar());
        QCOMPARE(
            s->d.textos(),
            QStringList{u"Usuario identificado correctamente, pero no ha sido posible cambiar la clave."_s});
        QVERIFY(s->e.identificado());
        QCOMPARE(UsuarioStore(s->db()).cargar(u"ana"_s)->Hash, antes->Hash);
    }
};

PMX_STORE_TEST_MAIN(TestLogin)
#include "test_login.moc"
