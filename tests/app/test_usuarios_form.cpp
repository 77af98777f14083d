// The users screen against the users table: the checks on saving in their order, the
// password mark, the question about unsaved changes, deleting, and the rules that keep
// the clinic from locking itself out.
#include "app/claves.h"
#include "app/login_form.h"
#include "app/usuario_store.h"
#include "app/usuarios_form.h"
#include "scripted_dialogs.h"
#include "test_db.h"

namespace {
const QString kObligatorios = QStringLiteral("Campos obligatorios no informados");
const QString kTextoCambios =
    QStringLiteral("Las modificaciones realizadas a este Usuario no han sido guardadas. "
                   "¿Confirma que desea seleccionar otro Usuario y perder los cambios "
                   "efectuados?");
const QString kTextoEliminar = QStringLiteral("¿Desea realmente eliminar el Usuario seleccionado?");
} // namespace

Q_DECLARE_METATYPE(UsuariosForm::Campo)

class TestUsuariosForm : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

    struct Sesion {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        std::unique_ptr<UsuariosForm> f;
        std::optional<Usuario> usuario(const QString& id) { return UsuarioStore(t.db()).cargar(id); }
    };

    static void crearUsuario(Database& db, const QString& id, const QString& clave, const QString& tipo) {
        const QString sal = nuevaSal();
        UsuarioStore(db).guardar({id, QStringLiteral("Nombre de ") + id, sal, hashClave(sal, clave), tipo});
    }

    // ana (administrator, logged in on this session), luis and marta (ordinary users).
    std::unique_ptr<Sesion> sesion() {
        auto s = std::make_unique<Sesion>();
        crearUsuario(s->t.db(), QStringLiteral("ana"), QStringLiteral("gato123"), kTipoAdministrador);
        crearUsuario(s->t.db(), QStringLiteral("luis"), QStringLiteral("perro"), kTipoUsuario);
        crearUsuario(s->t.db(), QStringLiteral("marta"), QStringLiteral("loro"), kTipoUsuario);
        s->e = std::make_unique<Entorno>(s->t.db(), s->d, reloj_);
        s->e->puesto = QStringLiteral("CONSULTA1");
        s->e->usuario = QStringLiteral("ana");
        s->e->nombreUsuario = QStringLiteral("Nombre de ana");
        s->e->tipoUsuario = kTipoAdministrador;
        s->f = std::make_unique<UsuariosForm>(*s->e);
        if (!s->f->cargar()) qFatal("no se ha podido cargar la lista de usuarios");
        return s;
    }

    static int fila(const UsuariosForm& f, const QString& id) {
        for (int i = 0; i < f.lista().size(); ++i)
            if (f.lista().at(i).IdUsuario == id) return i;
        return -1;
    }

    static void rellenarNuevo(UsuariosForm& f, const QString& id, const QString& clave,
                              const QString& confirmacion) {
        QVERIFY(f.nuevo());
        f.setIdUsuario(id);
        f.setNombre(QStringLiteral("Nombre de ") + id.trimmed());
        f.setClave(clave);
        f.setConfirmacion(confirmacion);
    }

private slots:
    void cargaLaListaConLaMarcaEnLasClaves() {
        auto s = sesion();
        QCOMPARE(s->f->lista().size(), 3);
        QCOMPARE(s->f->lista().at(0).IdUsuario, QStringLiteral("ana"));
        QCOMPARE(s->f->lista().at(1).IdUsuario, QStringLiteral("luis"));
        QCOMPARE(s->f->lista().at(2).Nombre, QStringLiteral("Nombre de marta"));
        QCOMPARE(s->f->filaActual(), 0);
        QCOMPARE(s->f->idUsuario(), QStringLiteral("ana"));
        QCOMPARE(s->f->tipo(), kTipoAdministrador);
        QCOMPARE(s->f->clave(), QStringLiteral("********"));
        QCOMPARE(s->f->confirmacion(), QStringLiteral("********"));
        QVERIFY(!s->f->modificado());
        QVERIFY(s->d.mensajes().isEmpty());
        // Setting a field to the value it already has is not a change.
        s->f->setNombre(QStringLiteral("Nombre de ana"));
        QVERIFY(!s->f->modificado());
    }

    void comprobacionesEnOrden_data() {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("clave");
        QTest::addColumn<QString>("confirmacion");
        QTest::addColumn<QString>("mensaje");
        QTest::addColumn<UsuariosForm::Campo>("foco");
        const QString sinId = QStringLiteral("Debe informar el identificador del usuario.");
        const QString sinClave = QStringLiteral("Debe informar la contraseña del usuario.");
        const QString sinConfirmacion =
            QStringLiteral("Debe repetir la contraseña en el campo 'Confirmación'.");
        const QString distintas = QStringLiteral(
            "Lo informado en el campo 'Confirmación' debe ser lo mismo que en el campo 'Clave'.");
        using C = UsuariosForm::Campo;
        QTest::newRow("todo vacío") << QString() << QString() << QString() << sinId << C::Identificador;
        QTest::newRow("identificador en blanco") << QStringLiteral("   ") << QStringLiteral("x")
                                                 << QStringLiteral("x") << sinId << C::Identificador;
        QTest::newRow("sin clave ni confirmación")
            << QStringLiteral("pepe") << QString() << QString() << sinClave << C::Clave;
        QTest::newRow("sin clave con confirmación")
            << QStringLiteral("pepe") << QString() << QStringLiteral("abc") << sinClave << C::Clave;
        QTest::newRow("sin confirmación, no distintas") << QStringLiteral("pepe") << QStringLiteral("abc")
                                                        << QString() << sinConfirmacion << C::Confirmacion;
        QTest::newRow("distintas") << QStringLiteral("pepe") << QStringLiteral("abc") << QStringLiteral("abd")
                                   << distintas << C::Confirmacion;
        QTest::newRow("distintas en mayúsculas") << QStringLiteral("pepe") << QStringLiteral("abc")
                                                 << QStringLiteral("ABC") << distintas << C::Confirmacion;
    }

    void comprobacionesEnOrden() {
        QFETCH(QString, id);
        QFETCH(QString, clave);
        QFETCH(QString, confirmacion);
        QFETCH(QString, mensaje);
        QFETCH(UsuariosForm::Campo, foco);
        auto s = sesion();
        rellenarNuevo(*s->f, id, clave, confirmacion);
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QCOMPARE(s->d.ultimo().titulo, kObligatorios);
        QCOMPARE(s->d.ultimo().icono, Icono::Exclamacion);
        QCOMPARE(s->d.ultimoTexto(), mensaje);
        QCOMPARE(s->f->foco(), foco);
        QCOMPARE(UsuarioStore(s->t.db()).contar(), 3);
        // The fields stay as typed, to be corrected.
        QVERIFY(s->f->modificado());
        QCOMPARE(s->f->clave(), clave);
    }

    void existenteSinConfirmacion() {
        auto s = sesion();
        QVERIFY(s->f->seleccionar(fila(*s->f, QStringLiteral("luis"))));
        s->f->setConfirmacion(QString());
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.textos(),
                 QStringList{QStringLiteral("Debe repetir la contraseña en el campo 'Confirmación'.")});
        // The mark in the password field and something else in the confirmation differ.
        s->f->setConfirmacion(QStringLiteral("perro"));
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral(
                     "Lo informado en el campo 'Confirmación' debe ser lo mismo que en el campo 'Clave'."));
        QCOMPARE(s->f->foco(), UsuariosForm::Campo::Confirmacion);
    }

    void laMarcaConservaLaClaveGuardada() {
        auto s = sesion();
        const auto antes = s->usuario(QStringLiteral("luis"));
        QVERIFY(s->f->seleccionar(fila(*s->f, QStringLiteral("luis"))));
        s->f->setNombre(QStringLiteral("Luis Pérez Núñez"));
        QVERIFY(s->f->guardar());
        QVERIFY(s->d.mensajes().isEmpty());
        const auto despues = s->usuario(QStringLiteral("luis"));
        QCOMPARE(despues->Nombre, QStringLiteral("Luis Pérez Núñez"));
        QCOMPARE(despues->Salt, antes->Salt);
        QCOMPARE(despues->Hash, antes->Hash);
        QVERIFY(claveCorrecta(despues->Hash, despues->Salt, QStringLiteral("perro")));
        QVERIFY(!claveCorrecta(despues->Hash, despues->Salt, kMarcaClave));
        // The list shows the new name and the user stays selected, unmodified.
        QCOMPARE(s->f->lista().at(s->f->filaActual()).Nombre, QStringLiteral("Luis Pérez Núñez"));
        QCOMPARE(s->f->idUsuario(), QStringLiteral("luis"));
        QVERIFY(!s->f->modificado());
    }

    void nuevaClaveCambiaSalYHash() {
        auto s = sesion();
        const auto antes = s->usuario(QStringLiteral("luis"));
        QVERIFY(s->f->seleccionar(fila(*s->f, QStringLiteral("luis"))));
        s->f->setClave(QStringLiteral("Ñandú 2026"));
        s->f->setConfirmacion(QStringLiteral("Ñandú 2026"));
        QVERIFY(s->f->guardar());
        QVERIFY(s->d.mensajes().isEmpty());
        const auto despues = s->usuario(QStringLiteral("luis"));
        QCOMPARE(despues->Salt.size(), kLongitudSal);
        QVERIFY(despues->Salt != antes->Salt);
        QVERIFY(despues->Hash != antes->Hash);
        QVERIFY(claveCorrecta(despues->Hash, despues->Salt, QStringLiteral("Ñandú 2026")));
        QVERIFY(!claveCorrecta(despues->Hash, despues->Salt, QStringLiteral("perro")));
        QCOMPARE(despues->Nombre, antes->Nombre);
        // After saving the fields show the mark again.
        QCOMPARE(s->f->clave(), kMarcaClave);
        QCOMPARE(s->f->confirmacion(), kMarcaClave);

        // The new password lets the user in; the old one does not.
        Entorno otro(s->t.db(), s->d, reloj_);
        LoginForm login(otro);
        login.usuario = QStringLiteral("luis");
        login.clave = QStringLiteral("perro");
        QVERIFY(!login.aceptar());
        login.clave = QStringLiteral("Ñandú 2026");
        QVERIFY(login.aceptar());
    }

    void usuarioNuevo() {
        auto s = sesion();
        rellenarNuevo(*s->f, QStringLiteral("  pepe  "), QStringLiteral("xyz"), QStringLiteral("xyz"));
        s->f->setTipo(kTipoAdministrador);
        QVERIFY(s->f->guardar());
        QVERIFY(s->d.mensajes().isEmpty());
        const auto pepe = s->usuario(QStringLiteral("pepe"));
        QVERIFY(pepe);
        QCOMPARE(pepe->Nombre, QStringLiteral("Nombre de pepe"));
        QCOMPARE(pepe->TipoUsuario, kTipoAdministrador);
        QCOMPARE(pepe->Salt.size(), kLongitudSal);
        QVERIFY(claveCorrecta(pepe->Hash, pepe->Salt, QStringLiteral("xyz")));
        QCOMPARE(s->f->lista().size(), 4);
        QCOMPARE(s->f->idUsuario(), QStringLiteral("pepe"));
        QCOMPARE(s->f->filaActual(), fila(*s->f, QStringLiteral("pepe")));
        QVERIFY(!s->f->esNuevo());
        QCOMPARE(s->f->clave(), kMarcaClave);
    }

    void laMarcaNoEsUnaClave() {
        auto s = sesion();
        rellenarNuevo(*s->f, QStringLiteral("pepe"), kMarcaClave, kMarcaClave);
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("La contraseña no puede ser '********'. Escriba otra."));
        QCOMPARE(s->f->foco(), UsuariosForm::Campo::Clave);
        QVERIFY(!s->usuario(QStringLiteral("pepe")));
    }

    void identificadorRepetidoNoSustituyeAlExistente() {
        auto s = sesion();
        const auto antes = s->usuario(QStringLiteral("luis"));
        rellenarNuevo(*s->f, QStringLiteral(" luis"), QStringLiteral("otra"), QStringLiteral("otra"));
        s->f->setTipo(kTipoAdministrador);
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.textos(),
                 QStringList{QStringLiteral("Ya existe un usuario con el identificador 'luis'.")});
        QCOMPARE(s->f->foco(), UsuariosForm::Campo::Identificador);
        const auto despues = s->usuario(QStringLiteral("luis"));
        QCOMPARE(despues->Hash, antes->Hash);
        QCOMPARE(despues->TipoUsuario, kTipoUsuario);
        QCOMPARE(despues->Nombre, antes->Nombre);
    }

    void longitudDelIdentificador() {
        auto s = sesion();
        const QString veinte = QStringLiteral("abcdefghij0123456789");
        rellenarNuevo(*s->f, veinte + QStringLiteral("x"), QStringLiteral("k"), QStringLiteral("k"));
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.textos(), QStringList{QStringLiteral(
                                    "El identificador del usuario no puede tener más de 20 caracteres.")});
        s->f->setIdUsuario(veinte);
        QVERIFY(s->f->guardar());
        QVERIFY(s->usuario(veinte));
    }

    void noSeRenombraUnUsuarioExistente() {
        auto s = sesion();
        QVERIFY(s->f->seleccionar(fila(*s->f, QStringLiteral("luis"))));
        s->f->setIdUsuario(QStringLiteral("luisito"));
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.textos(),
                 QStringList{QStringLiteral(
                     "No se puede cambiar el identificador de un usuario existente. Cree un usuario "
                     "nuevo con el identificador deseado y elimine el anterior.")});
        QCOMPARE(s->f->foco(), UsuariosForm::Campo::Identificador);
        QVERIFY(s->usuario(QStringLiteral("luis")));
        QVERIFY(!s->usuario(QStringLiteral("luisito")));
    }

    void cambiosSinGuardarAlSeleccionarOtro() {
        auto s = sesion();
        // Without changes no question is asked.
        QVERIFY(s->f->seleccionar(1));
        QVERIFY(s->d.mensajes().isEmpty());
        s->f->setNombre(QStringLiteral("Cambiado"));

        s->d.no();
        QVERIFY(!s->f->seleccionar(2));
        QCOMPARE(s->d.mensajes().size(), 1);
        QVERIFY(s->d.ultimo().pregunta);
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("ATENCIÓN"));
        QCOMPARE(s->d.ultimoTexto(), kTextoCambios);
        QCOMPARE(s->f->filaActual(), 1);
        QCOMPARE(s->f->idUsuario(), QStringLiteral("luis"));
        QCOMPARE(s->f->nombre(), QStringLiteral("Cambiado"));
        QVERIFY(s->f->modificado());

        s->d.si();
        QVERIFY(s->f->seleccionar(2));
        QCOMPARE(s->d.mensajes().size(), 2);
        QCOMPARE(s->f->filaActual(), 2);
        QCOMPARE(s->f->idUsuario(), QStringLiteral("marta"));
        QVERIFY(!s->f->modificado());
        QCOMPARE(s->usuario(QStringLiteral("luis"))->Nombre, QStringLiteral("Nombre de luis"));
        QCOMPARE(s->d.sinRespuesta(), 0);
    }

    void cambiosSinGuardarAlCrearOCerrar() {
        auto s = sesion();
        s->f->setClave(QStringLiteral("a"));
        s->d.no().no();
        QVERIFY(!s->f->nuevo());
        QCOMPARE(s->f->idUsuario(), QStringLiteral("ana"));
        QVERIFY(!s->f->puedeCerrar());
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("Las modificaciones realizadas a este Usuario no han sido "
                                "guardadas. ¿Desea cerrar la ventana y perder los cambios "
                                "efectuados?"));
        s->d.si();
        QVERIFY(s->f->nuevo());
        QVERIFY(s->f->esNuevo());
        QCOMPARE(s->f->idUsuario(), QString());
        QCOMPARE(s->f->clave(), QString());
        QCOMPARE(s->f->tipo(), kTipoUsuario);
        QVERIFY(s->f->puedeCerrar());
        QCOMPARE(s->d.mensajes().size(), 3);
    }

    void eliminarPreguntaYSoloBorraConSi() {
        auto s = sesion();
        QVERIFY(s->f->seleccionar(fila(*s->f, QStringLiteral("luis"))));
        s->d.no();
        QVERIFY(!s->f->eliminar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QVERIFY(s->d.ultimo().pregunta);
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(s->d.ultimoTexto(), kTextoEliminar);
        QVERIFY(s->usuario(QStringLiteral("luis")));
        QCOMPARE(s->f->lista().size(), 3);

        s->d.si();
        QVERIFY(s->f->eliminar());
        QVERIFY(!s->usuario(QStringLiteral("luis")));
        QCOMPARE(s->f->lista().size(), 2);
        QCOMPARE(fila(*s->f, QStringLiteral("luis")), -1);
        // The user that took its place in the list is selected.
        QCOMPARE(s->f->idUsuario(), QStringLiteral("marta"));
        QCOMPARE(s->d.sinRespuesta(), 0);
    }

    void noSeEliminaElUsuarioDeLaSesion() {
        auto s = sesion();
        crearUsuario(s->t.db(), QStringLiteral("bea"), QStringLiteral("b"), kTipoAdministrador);
        QVERIFY(s->f->cargar());
        QCOMPARE(s->f->idUsuario(), QStringLiteral("ana"));
        QVERIFY(!s->f->eliminar());
        QCOMPARE(s->d.textos(),
                 QStringList{QStringLiteral(
                     "No puede eliminar el usuario con el que se ha identificado en esta sesión.")});
        QVERIFY(!s->d.ultimo().pregunta);
        QVERIFY(s->usuario(QStringLiteral("ana")));
    }

    void siempreQuedaUnAdministrador() {
        auto s = sesion();
        s->e->usuario = QStringLiteral("marta");
        const QString unico =
            QStringLiteral("No se puede eliminar el único usuario Administrador. Debe quedar al "
                           "menos un Administrador para poder administrar Pramelvix.");
        QCOMPARE(s->f->idUsuario(), QStringLiteral("ana"));
        QVERIFY(!s->f->eliminar());
        QCOMPARE(s->d.textos(), QStringList{unico});
        QVERIFY(s->usuario(QStringLiteral("ana")));

        // Nor may the only administrator become an ordinary user.
        s->f->setTipo(kTipoUsuario);
        QVERIFY(!s->f->guardar());
        QCOMPARE(
            s->d.ultimoTexto(),
            QStringLiteral("No se puede quitar el tipo 'Administrador' a este usuario porque es el único "
                           "Administrador. Debe quedar al menos un Administrador para poder administrar "
                           "Pramelvix."));
        QCOMPARE(s->f->foco(), UsuariosForm::Campo::Tipo);
        QCOMPARE(s->usuario(QStringLiteral("ana"))->TipoUsuario, kTipoAdministrador);

        // With a second administrator both are allowed.
        s->d.si();
        QVERIFY(s->f->seleccionar(fila(*s->f, QStringLiteral("luis"))));
        s->f->setTipo(kTipoAdministrador);
        QVERIFY(s->f->guardar());
        QCOMPARE(s->usuario(QStringLiteral("luis"))->TipoUsuario, kTipoAdministrador);
        QVERIFY(s->f->seleccionar(fila(*s->f, QStringLiteral("ana"))));
        s->d.limpiar();
        s->d.si();
        QVERIFY(s->f->eliminar());
        QVERIFY(!s->usuario(QStringLiteral("ana")));
        // luis is now the only one left.
        QVERIFY(s->f->seleccionar(fila(*s->f, QStringLiteral("luis"))));
        QVERIFY(!s->f->eliminar());
        QCOMPARE(s->d.ultimoTexto(), unico);
        QCOMPARE(s->d.respuestasPendientes(), 0);
    }

    void usuarioBorradoDesdeOtroPuestoNoReaparece() {
        auto s = sesion();
        QVERIFY(s->f->seleccionar(fila(*s->f, QStringLiteral("luis"))));
        auto otra = s->t.otraConexion();
        QVERIFY(UsuarioStore(*otra).eliminar(QStringLiteral("luis")));
        s->f->setNombre(QStringLiteral("Luis"));
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.textos(),
                 QStringList{QStringLiteral(
                     "El Usuario 'luis' ya no existe: puede que otro puesto lo haya eliminado.")});
        QVERIFY(!s->usuario(QStringLiteral("luis")));
    }
};

PMX_STORE_TEST_MAIN(TestUsuariosForm)
#include "test_usuarios_form.moc"
