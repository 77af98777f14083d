// The users screen against the users table: the checks on saving in their order, the
// password mark, the question about unsaved changes, deleting, and the rules that keep
// the clinic from locking itself out.
#include "app/claves.h"
#include "app/usuario_store.h"
#include "app/usuarios_form.h"
#include "sesion.h"

namespace {
const QString kTextoCambios = u"Las modificaciones realizadas a este Usuario no han sido guardadas. "
                              "¿Confirma que desea seleccionar otro Usuario y perder los cambios "
                              "efectuados?"_s;
const QString kTextoEliminar = u"¿Desea realmente eliminar el Usuario seleccionado?"_s;
} // namespace

class TestUsuariosForm : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        std::unique_ptr<UsuariosForm> f;
        std::optional<Usuario> usuario(const QString& id) { return UsuarioStore(t.db()).cargar(id); }
        // Every user as stored: what a refused save must leave untouched.
        QStringList filas() {
            QStringList l;
            for (const Usuario& u : UsuarioStore(t.db()).todos())
                l << QStringList{u.IdUsuario, u.Nombre, u.Salt, u.Hash, u.TipoUsuario}.join(u'|');
            return l;
        }
    };

    // ana (administrator, logged in on this session), luis and marta (ordinary users).
    static std::unique_ptr<Caso> sesion() {
        auto s = std::make_unique<Caso>();
        s->s.usuario(u"ana"_s, kTipoAdministrador, u"gato123"_s, u"Nombre de ana"_s);
        s->s.usuario(u"luis"_s, kTipoUsuario, u"perro"_s, u"Nombre de luis"_s);
        s->s.usuario(u"marta"_s, kTipoUsuario, u"loro"_s, u"Nombre de marta"_s);
        s->e.nombreUsuario = u"Nombre de ana"_s;
        s->f = std::make_unique<UsuariosForm>(s->e);
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
        f.setNombre(u"Nombre de "_s + id.trimmed());
        f.setClave(clave);
        f.setConfirmacion(confirmacion);
    }

private slots:
    void cargaLaListaConLaMarcaEnLasClaves() {
        auto s = sesion();
        QCOMPARE(s->f->lista().size(), 3);
        QCOMPARE(s->f->lista().at(2).Nombre, u"Nombre de marta"_s);
        QCOMPARE(s->f->idUsuario(), u"ana"_s);
        QCOMPARE(s->f->tipo(), kTipoAdministrador);
        QCOMPARE(s->f->clave(), u"********"_s);
        QCOMPARE(s->f->confirmacion(), u"********"_s);
        QVERIFY(!s->f->modificado());
        // Setting a field to the value it already has is not a change.
        s->f->setNombre(u"Nombre de ana"_s);
        QVERIFY(!s->f->modificado());
    }

    // A new user refused: the first check that fails, in their order, is named; the fields
    // stay as typed, to be corrected; no user is written or replaced.
    void rechazosDeUnUsuarioNuevo() {
        const QString obligatorios = u"Campos obligatorios no informados"_s, atencion = u"¡Atención!"_s;
        const QString distintas =
            u"Lo informado en el campo 'Confirmación' debe ser lo mismo que en el campo 'Clave'."_s;
        using C = UsuariosForm::Campo;
        const struct {
            QString id, clave, confirmacion, titulo, mensaje;
            C foco;
        } casos[] = {
            {u"   "_s, u"x"_s, u"x"_s, obligatorios, u"Debe informar el identificador del usuario."_s,
             C::Identificador},
            {u"pepe"_s, QString(), u"abc"_s, obligatorios, u"Debe informar la contraseña del usuario."_s,
             C::Clave},
            {u"pepe"_s, u"abc"_s, QString(), obligatorios,
             u"Debe repetir la contraseña en el campo 'Confirmación'."_s, C::Confirmacion},
            {u"pepe"_s, u"abc"_s, u"ABC"_s, obligatorios, distintas, C::Confirmacion},
            {u"abcdefghij0123456789x"_s, u"k"_s, u"k"_s, atencion,
             u"El identificador del usuario no puede tener más de 20 caracteres."_s, C::Identificador},
            {u"pepe"_s, kMarcaClave, kMarcaClave, atencion,
             u"La contraseña no puede ser '********'. Escriba otra."_s, C::Clave},
            {u" luis"_s, u"otra"_s, u"otra"_s, atencion,
             u"Ya existe un usuario con el identificador 'luis'."_s, C::Identificador},
        };
        for (const auto& caso : casos) {
            auto s = sesion();
            const QStringList antes = s->filas();
            rellenarNuevo(*s->f, caso.id, caso.clave, caso.confirmacion);
            s->f->setTipo(kTipoAdministrador);
            QVERIFY2(!s->f->guardar(), qPrintable(caso.mensaje));
            QVERIFY2(s->d.textos() == QStringList{caso.mensaje} && s->d.ultimo().titulo == caso.titulo,
                     qPrintable(s->d.textos().join(u'|')));
            QVERIFY2(s->d.ultimo().icono == Icono::Exclamacion && s->f->foco() == caso.foco,
                     qPrintable(caso.mensaje));
            QVERIFY2(s->filas() == antes && s->f->clave() == caso.clave, qPrintable(caso.mensaje));
        }
    }

    // An existing user keeps the mark in the password field; the confirmation is checked
    // against it, and the identifier cannot change.
    void rechazosDeUnUsuarioExistente() {
        auto s = sesion();
        QVERIFY(s->f->seleccionar(fila(*s->f, u"luis"_s)));
        s->f->setConfirmacion(QString());
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.textos(), QStringList{u"Debe repetir la contraseña en el campo 'Confirmación'."_s});
        s->f->setConfirmacion(u"perro"_s);
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.ultimoTexto(),
                 u"Lo informado en el campo 'Confirmación' debe ser lo mismo que en el campo 'Clave'."_s);
        QCOMPARE(s->f->foco(), UsuariosForm::Campo::Confirmacion);
        s->f->setConfirmacion(kMarcaClave);
        s->f->setIdUsuario(u"luisito"_s);
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.ultimoTexto(), u"No se puede cambiar el identificador de un usuario existente. Cree un "
                                     "usuario nuevo con el identificador deseado y elimine el anterior."_s);
        QCOMPARE(s->f->foco(), UsuariosForm::Campo::Identificador);
        QVERIFY(!s->usuario(u"luisito"_s));
    }

    // With the mark in the password field the stored password stays; a new one gets a new
    // salt and hash.
    void guardarUnUsuarioExistente() {
        auto s = sesion();
        const auto antes = s->usuario(u"luis"_s);
        QVERIFY(s->f->seleccionar(fila(*s->f, u"luis"_s)));
        s->f->setNombre(u"Luis Pérez Núñez"_s);
        QVERIFY(s->f->guardar());
        auto despues = s->usuario(u"luis"_s);
        QCOMPARE(despues->Nombre, u"Luis Pérez Núñez"_s);
        QCOMPARE(despues->Salt, antes->Salt);
        QCOMPARE(despues->Hash, antes->Hash);
        // The list shows the new name and the user stays selected, unmodified.
        QCOMPARE(s->f->lista().at(s->f->filaActual()).Nombre, u"Luis Pérez Núñez"_s);
        QVERIFY(!s->f->modificado());

        s->f->setClave(u"Ñandú 2026"_s);
        s->f->setConfirmacion(u"Ñandú 2026"_s);
        QVERIFY(s->f->guardar());
        despues = s->usuario(u"luis"_s);
        QVERIFY(despues->Salt != antes->Salt);
        QVERIFY(claveCorrecta(despues->Hash, despues->Salt, u"Ñandú 2026"_s));
        // After saving the field shows the mark again.
        QCOMPARE(s->f->clave(), kMarcaClave);
    }

    void usuarioNuevo() {
        auto s = sesion();
        const QString veinte = u"pepe012345678901234x"_s; // the longest, with blanks around
        rellenarNuevo(*s->f, u"  "_s + veinte + u"  "_s, u"xyz"_s, u"xyz"_s);
        s->f->setTipo(kTipoAdministrador);
        QVERIFY(s->f->guardar());
        QVERIFY(s->d.mensajes().isEmpty());
        const auto pepe = s->usuario(veinte);
        QVERIFY(pepe);
        QCOMPARE(pepe->Nombre, u"Nombre de "_s + veinte);
        QCOMPARE(pepe->TipoUsuario, kTipoAdministrador);
        QVERIFY(claveCorrecta(pepe->Hash, pepe->Salt, u"xyz"_s));
        QCOMPARE(s->f->filaActual(), fila(*s->f, veinte));
        QVERIFY(!s->f->esNuevo());
    }

    void cambiosSinGuardarAlSeleccionarOtro() {
        auto s = sesion();
        // Without changes no question is asked.
        QVERIFY(s->f->seleccionar(1));
        QVERIFY(s->d.mensajes().isEmpty());
        s->f->setNombre(u"Cambiado"_s);

        s->d.no();
        QVERIFY(!s->f->seleccionar(2));
        QCOMPARE(s->d.mensajes().size(), 1);
        QVERIFY(s->d.ultimo().pregunta);
        QCOMPARE(s->d.ultimo().titulo, u"ATENCIÓN"_s);
        QCOMPARE(s->d.ultimoTexto(), kTextoCambios);
        QCOMPARE(s->f->idUsuario(), u"luis"_s);
        QCOMPARE(s->f->nombre(), u"Cambiado"_s);

        s->d.si();
        QVERIFY(s->f->seleccionar(2));
        QCOMPARE(s->f->idUsuario(), u"marta"_s);
        QVERIFY(!s->f->modificado());
        QCOMPARE(s->usuario(u"luis"_s)->Nombre, u"Nombre de luis"_s);
    }

    void cambiosSinGuardarAlCrearOCerrar() {
        auto s = sesion();
        s->f->setClave(u"a"_s);
        s->d.no().no();
        QVERIFY(!s->f->nuevo());
        QCOMPARE(s->f->idUsuario(), u"ana"_s);
        QVERIFY(!s->f->puedeCerrar());
        QCOMPARE(s->d.ultimoTexto(), u"Las modificaciones realizadas a este Usuario no han sido "
                                     "guardadas. ¿Desea cerrar la ventana y perder los cambios "
                                     "efectuados?"_s);
        s->d.si();
        QVERIFY(s->f->nuevo());
        QCOMPARE(s->f->tipo(), kTipoUsuario);
        QVERIFY(s->f->puedeCerrar());
    }

    void eliminarPreguntaYSoloBorraConSi() {
        auto s = sesion();
        QVERIFY(s->f->seleccionar(fila(*s->f, u"luis"_s)));
        s->d.no();
        QVERIFY(!s->f->eliminar());
        QVERIFY(s->d.ultimo().pregunta);
        QCOMPARE(s->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(s->d.ultimoTexto(), kTextoEliminar);
        QVERIFY(s->usuario(u"luis"_s));

        s->d.si();
        QVERIFY(s->f->eliminar());
        QVERIFY(!s->usuario(u"luis"_s));
        QCOMPARE(fila(*s->f, u"luis"_s), -1);
        // The user that took its place in the list is selected.
        QCOMPARE(s->f->idUsuario(), u"marta"_s);
    }

    void noSeEliminaElUsuarioDeLaSesion() {
        auto s = sesion();
        s->s.usuario(u"bea"_s, kTipoAdministrador, u"b"_s, u"Nombre de bea"_s);
        QVERIFY(s->f->cargar());
        QVERIFY(!s->f->eliminar());
        QCOMPARE(
            s->d.textos(),
            QStringList{u"No puede eliminar el usuario con el que se ha identificado en esta sesión."_s});
        QVERIFY(s->usuario(u"ana"_s));
    }

    void siempreQuedaUnAdministrador() {
        auto s = sesion();
        s->e.usuario = u"marta"_s;
        const QString unico = u"No se puede eliminar el único usuario Administrador. Debe quedar al "
                              "menos un Administrador para poder administrar Pramelvix."_s;
        QVERIFY(!s->f->eliminar());
        QCOMPARE(s->d.textos(), QStringList{unico});
        QVERIFY(s->usuario(u"ana"_s));

        // Nor may the only administrator become an ordinary user.
        s->f->setTipo(kTipoUsuario);
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.ultimoTexto(),
                 u"No se puede quitar el tipo 'Administrador' a este usuario porque es el único "
                 "Administrador. Debe quedar al menos un Administrador para poder administrar "
                 "Pramelvix."_s);
        QCOMPARE(s->f->foco(), UsuariosForm::Campo::Tipo);
        QCOMPARE(s->usuario(u"ana"_s)->TipoUsuario, kTipoAdministrador);

        // With a second administrator both are allowed.
        s->d.si();
        QVERIFY(s->f->seleccionar(fila(*s->f, u"luis"_s)));
        s->f->setTipo(kTipoAdministrador);
        QVERIFY(s->f->guardar());
        QVERIFY(s->f->seleccionar(fila(*s->f, u"ana"_s)));
        s->d.limpiar();
        s->d.si();
        QVERIFY(s->f->eliminar());
        // luis is now the only one left.
        QVERIFY(s->f->seleccionar(fila(*s->f, u"luis"_s)));
        QVERIFY(!s->f->eliminar());
        QCOMPARE(s->d.ultimoTexto(), unico);
    }

    void usuarioBorradoDesdeOtroPuestoNoReaparece() {
        auto s = sesion();
        QVERIFY(s->f->seleccionar(fila(*s->f, u"luis"_s)));
        auto otra = s->t.otraConexion();
        QVERIFY(UsuarioStore(*otra).eliminar(u"luis"_s));
        s->f->setNombre(u"Luis"_s);
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.textos(),
                 QStringList{u"El Usuario 'luis' ya no existe: puede que otro puesto lo haya eliminado."_s});
        QVERIFY(!s->usuario(u"luis"_s));
    }

    // Saved by another workstation since it was shown here: nothing is written; Yes reloads.
    void usuarioGuardadoDesdeOtroPuesto() {
        auto s = sesion();
        QVERIFY(s->f->seleccionar(fila(*s->f, u"luis"_s)));
        auto otra = s->t.otraConexion();
        Usuario alli = *UsuarioStore(*otra).cargar(u"luis"_s);
        alli.Nombre = u"Luis Gil"_s;
        QCOMPARE(UsuarioStore(*otra).modificar(alli, false), UsuarioStore::Resultado::Hecho);
        QCOMPARE(UsuarioStore(*otra).modificar(alli, false), UsuarioStore::Resultado::CambiadoEnOtroPuesto);
        s->f->setNombre(u"Luis Pérez"_s);
        s->d.no();
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->d.ultimoTexto(), u"Otro puesto ha guardado cambios en este Usuario desde que usted lo abrió. No "
                                     "se ha guardado nada. ¿Desea volver a cargarlo? Se perderán los cambios hechos "
                                     "en esta ventana."_s);
        QCOMPARE(s->usuario(u"luis"_s)->Nombre, u"Luis Gil"_s);
        s->d.si();
        QVERIFY(!s->f->guardar());
        QCOMPARE(s->f->nombre(), u"Luis Gil"_s);
        s->f->setNombre(u"Luis Pérez"_s);
        QVERIFY(s->f->guardar());
        QCOMPARE(s->usuario(u"luis"_s)->Nombre, u"Luis Pérez"_s);
    }
};

PMX_STORE_TEST_MAIN(TestUsuariosForm)
#include "test_usuarios_form.moc"
