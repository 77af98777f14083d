// The lock store on a real database: refusals and their messages, the administrative lock, retries.
#include "data/bloqueos.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QSemaphore>
#include <thread>

using namespace Qt::StringLiterals;

namespace {
DescriptorTabla clase(const QString& tabla, const QString& desc) {
    DescriptorTabla t;
    t.tabla = tabla;
    t.descTabla = desc;
    return t;
}
const DescriptorTabla kClientes = clase(u"Clientes"_s, u"Cliente"_s);
const DescriptorTabla kMascotas = clase(u"Mascotas"_s, u"Mascota"_s);

const QString kOtroPuestoCola = u" pues otro Puesto lo/a tiene bloqueado/a. Consulte a un Administrador."_s;
const QString kBDCola = u" pues algún Usuario tiene bloqueada la B.D. Consulte a un Administrador."_s;

// Makes the connection give up quickly when another one holds what it needs.
void esperaCorta(Database& db) {
    if (db.esSQLite())
        db.ejecutarDirecto(u"PRAGMA busy_timeout = 100"_s);
    else
        db.ejecutarDirecto(u"SET lock_timeout = '100ms'"_s);
}

// Holds, on a connection of its own, what every lock attempt needs: the write lock on
// SQLite, the lock table on PostgreSQL.
void acapararBloqueos(Database& db) {
    if (!db.esSQLite()) db.ejecutarDirecto(u"LOCK TABLE Bloqueos IN ACCESS EXCLUSIVE MODE"_s);
}
} // namespace

class TestBloqueos : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 9), QTime(8, 7, 6, 500))};

    // A workstation: its own connection, dialogs and identity.
    struct Puesto {
        std::unique_ptr<Database> propia;
        ScriptedDialogs d;
        std::unique_ptr<Bloqueos> s;
    };
    std::unique_ptr<Puesto> puesto(TestDb& t, const QString& nombre, bool otraConexion) {
        auto p = std::make_unique<Puesto>();
        if (otraConexion) p->propia = t.otraConexion();
        p->s = std::make_unique<Bloqueos>(
            otraConexion ? *p->propia : t.db(), p->d, reloj_,
            IdentidadSesion{u"sesion-"_s + nombre, u"usr-"_s + nombre, nombre, QString()});
        return p;
    }

private slots:
    // A lock taken is written with who, when and why; another workstation asking the same key
    // is refused with the action's verb, and gets it once the holder releases it.
    void mismaClaveEnOtroPuesto_data() {
        QTest::addColumn<int>("codigo");
        QTest::addColumn<QString>("nombre");
        QTest::addColumn<QString>("verbo");
        auto fila = [](const char* nombre, int a0, QString a1, QString a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        fila("1", 1, u"Modificación"_s, u"Modificar"_s);
        fila("2", 2, u"Alta"_s, u"dar de Alta"_s);
        fila("3", 3, u"Baja"_s, u"dar de Baja"_s);
    }
    void mismaClaveEnOtroPuesto() {
        QFETCH(int, codigo);
        QFETCH(QString, nombre);
        QFETCH(QString, verbo);
        const auto accion = nombreAccion(codigo);
        QVERIFY(accion.has_value());
        QCOMPARE(accion->nombre, nombre);
        QCOMPARE(accion->verbo, verbo);

        TestDb t;
        auto a = puesto(t, u"CONSULTA1"_s, false);
        auto b = puesto(t, u"CONSULTA2"_s, true);
        QVERIFY(a->s->bloquearRegistro(kClientes, u"7"_s, u"Luis Gil"_s, codigo));
        QVERIFY(a->d.mensajes().isEmpty());
        const auto fila = a->s->buscar(u"Clientes 7"_s);
        QVERIFY(fila.has_value());
        QCOMPARE(fila->descripcion, u"Luis Gil"_s);
        QCOMPARE(fila->sesion, u"sesion-CONSULTA1"_s);
        QCOMPARE(fila->accion, codigo);
        QCOMPARE(fila->usuario, u"usr-CONSULTA1"_s);
        QCOMPARE(fila->puesto, u"CONSULTA1"_s);
        QCOMPARE(fila->fecha, QDate(2026, 3, 9));
        QCOMPARE(fila->hora, QTime(8, 7, 6));

        QVERIFY(!b->s->bloquearRegistro(kClientes, u"7"_s, u"Luis Gil (ficha)"_s, codigo));
        QCOMPARE(b->d.mensajes().size(), 1);
        QCOMPARE(b->d.ultimo().icono, Icono::Informacion);
        QCOMPARE(b->d.ultimo().titulo, u"Bloqueo de Registro"_s);
        QCOMPARE(b->d.ultimoTexto(),
                 u"No es posible "_s + verbo + u" el/la Cliente de Luis Gil (ficha)"_s + kOtroPuestoCola);
        // Silent refusal, and the holder's row is untouched.
        QVERIFY(!b->s->bloquearRegistro(kClientes, u"7"_s, u"x"_s, codigo, false));
        QCOMPARE(b->d.mensajes().size(), 1);
        QCOMPARE(a->s->buscar(u"Clientes 7"_s)->sesion, u"sesion-CONSULTA1"_s);
        // Another key of the same table, and the same key of another table, are free.
        QVERIFY(b->s->bloquearRegistro(kClientes, u"70"_s, u"Otro"_s, codigo));
        QVERIFY(b->s->bloquearRegistro(kMascotas, u"7"_s, u"Toby"_s, codigo));
        // Once released by its holder the key can be taken.
        QVERIFY(a->s->desbloquearRegistro(kClientes, u"7"_s));
        QVERIFY(b->s->bloquearRegistro(kClientes, u"7"_s, u"Luis Gil"_s, codigo));
    }

    void accionNoAdmitida_data() {
        QTest::addColumn<int>("codigo");
        QTest::newRow("4") << 4;
        QTest::newRow("0") << 0;
    }
    void accionNoAdmitida() {
        QFETCH(int, codigo);
        QVERIFY(!nombreAccion(codigo).has_value());
        TestDb t;
        auto p = puesto(t, u"RECEPCION"_s, false);
        QVERIFY(!p->s->bloquearRegistro(kClientes, u"1"_s, u"Ana"_s, codigo));
        QCOMPARE(p->d.mensajes().size(), 1);
        QCOMPARE(p->d.ultimo().icono, Icono::Ninguno);
        QCOMPARE(p->d.ultimo().titulo, u"Bloqueo de Registro"_s);
        QCOMPARE(p->d.ultimoTexto(), u"La acción que se pretende bloquear no es una de las admitidas: '"_s +
                                         QString::number(codigo) + u"'."_s);
        // Without messages only the result tells; the whole-table lock refuses it too.
        QVERIFY(!p->s->bloquearRegistro(kClientes, u"1"_s, u"Ana"_s, codigo, false));
        QVERIFY(!p->s->bloquearTabla(kClientes, codigo, false));
        QCOMPARE(p->d.mensajes().size(), 1);
        QCOMPARE(p->s->contar(), 0);
    }

    // The same session may ask a key it holds again: the first lock stands, one unlock removes
    // it. Nobody else can unlock it; the end of a session removes only its own locks.
    void desbloquearSoloLoPropio() {
        TestDb t;
        auto a = puesto(t, u"CONSULTA1"_s, false);
        auto b = puesto(t, u"CONSULTA2"_s, true);
        QVERIFY(a->s->bloquearRegistro(kClientes, u"1"_s, u"Uno"_s, 1));
        QVERIFY(a->s->bloquearRegistro(kClientes, u"1"_s, u"Uno otra vez"_s, 3));
        QCOMPARE(a->s->contar(), 1);
        QCOMPARE(a->s->buscar(u"Clientes 1"_s)->accion, 1);
        QVERIFY(a->s->desbloquearRegistro(kClientes, u"1"_s));
        QVERIFY(!a->s->desbloquearRegistro(kClientes, u"1"_s));
        QVERIFY(a->s->bloquearRegistro(kClientes, u"1"_s, u"Uno"_s, 1));
        QVERIFY(a->s->bloquearRegistro(kClientes, u"2"_s, u"Dos"_s, 1));
        QVERIFY(b->s->bloquearRegistro(kClientes, u"3"_s, u"Tres"_s, 1));
        QVERIFY(!b->s->desbloquearRegistro(kClientes, u"1"_s));
        QCOMPARE(a->s->contar(), 3);
        QCOMPARE(a->s->desbloquearSesion(), 2);
        const auto quedan = a->s->lista();
        QCOMPARE(quedan.size(), 1);
        QCOMPARE(quedan.first().clave, u"Clientes 3"_s);
        QVERIFY(a->d.mensajes().isEmpty());
        QVERIFY(b->d.mensajes().isEmpty());
    }

    void errorAlDesbloquearYAlBloquear() {
        TestDb t;
        auto a = puesto(t, u"CONSULTA1"_s, false);
        t.db().ejecutarDirecto(u"DROP TABLE Bloqueos"_s);
        QVERIFY(!a->s->desbloquearRegistro(kClientes, u"1"_s));
        QCOMPARE(a->d.mensajes().size(), 1);
        QCOMPARE(a->d.ultimo().icono, Icono::Ninguno);
        QCOMPARE(a->d.ultimo().titulo, u"Desbloqueo de registro"_s);
        QVERIFY(a->d.ultimoTexto().startsWith(u"Error en B.D.: "_s));
        QVERIFY(!a->s->desbloquearBD());
        QCOMPARE(a->d.ultimo().titulo, u"Desbloqueo de registro"_s);

        a->d.limpiar();
        QVERIFY(!a->s->bloquearRegistro(kClientes, u"1"_s, u"Uno"_s, 1));
        QCOMPARE(a->d.mensajes().size(), 1);
        QCOMPARE(a->d.ultimo().titulo, u"Bloqueo de Registro"_s);
        QVERIFY(a->d.ultimoTexto().startsWith(u"Error en B.D.: "_s));
        QVERIFY(!a->s->bloquearRegistro(kClientes, u"1"_s, u"Uno"_s, 1, false));
        QCOMPARE(a->d.mensajes().size(), 1);
    }

    void bloqueoAdministrativoDeOtro() {
        TestDb t;
        auto admin = puesto(t, u"SERVIDOR"_s, false);
        auto b = puesto(t, u"CONSULTA2"_s, true);
        QVERIFY(admin->s->bloquearBD());
        QVERIFY(admin->d.mensajes().isEmpty());
        const auto fila = admin->s->buscar(u"DATABASE Toda la B.D. por labores Administrativas"_s);
        QVERIFY(fila.has_value());
        QCOMPARE(fila->sesion, u"sesion-SERVIDOR"_s);

        QVERIFY(!b->s->bloquearRegistro(kMascotas, u"5"_s, u"Toby"_s, 3));
        QCOMPARE(b->d.mensajes().size(), 1);
        QCOMPARE(b->d.ultimoTexto(), u"No es posible dar de Baja el/la Mascota de Toby"_s + kBDCola);
        // The whole-table lock is refused the same way.
        QVERIFY(!b->s->bloquearTabla(kMascotas, 1));
        QCOMPARE(b->d.ultimoTexto(), u"No es posible Modificar el/la Mascota de Mascota: Todos"_s + kBDCola);

        // The administrator's own session may still lock records.
        QVERIFY(admin->s->bloquearRegistro(kMascotas, u"5"_s, u"Toby"_s, 1));
        // A second administrative lock by another session is refused with its own reason.
        b->d.limpiar();
        QVERIFY(!b->s->bloquearBD());
        QCOMPARE(b->d.ultimo().icono, Icono::Exclamacion);
        QCOMPARE(b->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(b->d.ultimoTexto(),
                 u" No es posible bloquear la B.D. para Administración pues otro Usuario tiene bloqueada "
                 "la B.D. \n Consulte con un Administrador."_s);
        QVERIFY(!b->s->bloquearBD(false));
        QCOMPARE(b->d.mensajes().size(), 1);
        // Released, the records are free again.
        QVERIFY(admin->s->desbloquearBD());
        QVERIFY(b->s->bloquearRegistro(kMascotas, u"6"_s, u"Kira"_s, 2));
    }

    void umbralDelBloqueoAdministrativo_data() {
        QTest::addColumn<int>("ajenos");
        QTest::addColumn<int>("propios");
        QTest::addColumn<bool>("concedido");
        auto fila = [](const char* nombre, int a0, int a1, bool a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        fila("ninguno", 0, 0, true);
        fila("uno de otro puesto", 1, 0, true);
        fila("uno propio", 0, 1, true);
        fila("dos de otro puesto", 2, 0, false);
        fila("uno y uno", 1, 1, false);
        fila("dos propios", 0, 2, false);
    }
    void umbralDelBloqueoAdministrativo() {
        QFETCH(int, ajenos);
        QFETCH(int, propios);
        QFETCH(bool, concedido);
        TestDb t;
        auto admin = puesto(t, u"SERVIDOR"_s, false);
        auto b = puesto(t, u"CONSULTA2"_s, true);
        for (int i = 0; i < ajenos; ++i)
            QVERIFY(b->s->bloquearRegistro(kClientes, QString::number(i), u"Ajeno"_s, 1));
        for (int i = 0; i < propios; ++i)
            QVERIFY(admin->s->bloquearRegistro(kMascotas, QString::number(i), u"Propio"_s, 1));
        QCOMPARE(admin->s->bloquearBD(), concedido);
        QCOMPARE(admin->s->buscar(kClaveBloqueoBD).has_value(), concedido);
        if (concedido) {
            QVERIFY(admin->d.mensajes().isEmpty());
            // Taking it again is harmless.
            QVERIFY(admin->s->bloquearBD());
            QCOMPARE(admin->s->contar(), ajenos + propios + 1);
        } else {
            QCOMPARE(admin->d.mensajes().size(), 1);
            QCOMPARE(admin->d.ultimo().icono, Icono::Exclamacion);
            QCOMPARE(admin->d.ultimo().titulo, u"¡Atención!"_s);
            QCOMPARE(admin->d.ultimoTexto(),
                     u" No es posible bloquear la B.D. para Administración mientras otros Usuarios "
                     "tengan bloqueados registros en la B.D. \n Consulte con un Administrador."_s);
        }
    }

    void bloqueoDeTodaLaTabla() {
        TestDb t;
        auto a = puesto(t, u"CONSULTA1"_s, false);
        auto b = puesto(t, u"CONSULTA2"_s, true);
        QCOMPARE(descripcionBloqueoTabla(kClientes), u"Cliente: Todos"_s);
        QVERIFY(a->s->bloquearTabla(kClientes, 1));
        QCOMPARE(a->s->buscar(u"Clientes"_s)->descripcion, u"Cliente: Todos"_s);
        // Every record of the table is taken for the other workstations...
        QVERIFY(!b->s->bloquearRegistro(kClientes, u"9"_s, u"Eva"_s, 3));
        QCOMPARE(b->d.ultimoTexto(), u"No es posible dar de Baja el/la Cliente de Eva"_s + kOtroPuestoCola);
        QVERIFY(!b->s->bloquearTabla(kClientes, 1, false));
        // ...but not for its holder, nor the records of other tables.
        QVERIFY(a->s->bloquearRegistro(kClientes, u"9"_s, u"Eva"_s, 1));
        QVERIFY(b->s->bloquearRegistro(kMascotas, u"9"_s, u"Eva"_s, 1));
        QVERIFY(a->s->desbloquearTabla(kClientes));
        QVERIFY(a->s->desbloquearRegistro(kClientes, u"9"_s));

        // A record of the table held elsewhere refuses the whole-table lock; a table whose
        // name only starts the same does not.
        QVERIFY(b->s->bloquearRegistro(kClientes, u"3"_s, u"Juan"_s, 1));
        b->d.limpiar();
        QVERIFY(!a->s->bloquearTabla(kClientes, 2));
        QCOMPARE(a->d.ultimoTexto(),
                 u"No es posible dar de Alta el/la Cliente de Cliente: Todos"_s + kOtroPuestoCola);
        const DescriptorTabla clientesBaja = clase(u"ClientesBaja"_s, u"Cliente de baja"_s);
        QVERIFY(a->s->bloquearTabla(clientesBaja, 1));
        QVERIFY(b->s->desbloquearRegistro(kClientes, u"3"_s));
        QVERIFY(a->s->bloquearTabla(kClientes, 2));
    }

    void gestorEliminaDeCualquierSesion() {
        TestDb t;
        auto a = puesto(t, u"CONSULTA1"_s, false);
        auto b = puesto(t, u"CONSULTA2"_s, true);
        QVERIFY(a->s->bloquearRegistro(kClientes, u"1"_s, u"Uno"_s, 1));
        reloj_.avanzar(60);
        QVERIFY(b->s->bloquearRegistro(kClientes, u"2"_s, u"Dos"_s, 1));
        reloj_.avanzar(-60);
        const auto l = a->s->lista();
        QCOMPARE(l.size(), 2);
        QCOMPARE(l.at(0).clave, u"Clientes 1"_s);
        QCOMPARE(l.at(1).hora, QTime(8, 8, 6));
        // Taken again in the same second by another window of that session: not the lock listed.
        QVERIFY(b->s->desbloquearRegistro(kClientes, u"2"_s));
        reloj_.avanzar(60);
        Bloqueos otraVentana(*b->propia, b->d, reloj_, {u"sesion-CONSULTA2"_s, u"usr-CONSULTA2"_s, u"CONSULTA2"_s,
                                                         u"ventana-2"_s});
        QVERIFY(otraVentana.bloquearRegistro(kClientes, u"2"_s, u"Dos"_s, 1));
        reloj_.avanzar(-60);
        QVERIFY(!a->s->eliminar(l.at(1)));
        QVERIFY(otraVentana.desbloquearRegistro(kClientes, u"2"_s));
        reloj_.avanzar(60);
        QVERIFY(b->s->bloquearRegistro(kClientes, u"2"_s, u"Dos"_s, 1));
        reloj_.avanzar(-60);
        QVERIFY(a->s->eliminar(l.at(1)));
        QVERIFY(!a->s->eliminar(l.at(1)));
        // Freed and taken again since it was listed: the listed lock is gone, the new one stays.
        reloj_.avanzar(120);
        QVERIFY(b->s->bloquearRegistro(kClientes, u"2"_s, u"Dos"_s, 1));
        QVERIFY(!a->s->eliminar(l.at(1)));
        QVERIFY(b->s->bloquearRegistro(kClientes, u"3"_s, u"Tres"_s, 1));
        QCOMPARE(b->s->eliminarTodos(), 3);
        QCOMPARE(a->s->contar(), 0);
    }

    // While another connection holds the database, each attempt gives up after the short
    // wait and is tried again; with one attempt the failure is reported, never swallowed.
    void ocupadoSeReintentaYSeInforma() {
        TestDb t;
        auto a = puesto(t, u"CONSULTA1"_s, false);
        esperaCorta(t.db());
        a->s->setIntentos(1);
        {
            auto otra = t.otraConexion();
            Transaction tx = otra->transaccion();
            acapararBloqueos(*otra);
            QVERIFY(!a->s->bloquearRegistro(kClientes, u"1"_s, u"Uno"_s, 1));
            QCOMPARE(a->d.mensajes().size(), 1);
            QVERIFY(esErrorDeConcurrencia(ErrorBD(a->d.ultimoTexto())));
            tx.rollback();
        }
        QCOMPARE(a->s->contar(), 0);

        // Now the holder lets go after a while: with enough attempts the lock is taken.
        a->d.limpiar();
        a->s->setIntentos(100);
        QSemaphore tomado;
        const QString origen = t.origen();
        const bool sqlite = t.db().esSQLite();
        std::thread soltador([&] {
            auto otra = sqlite ? Database::abrirSQLite(origen) : Database::abrirPostgreSQL(origen);
            Transaction tx = otra->transaccion();
            acapararBloqueos(*otra);
            tomado.release();
            QThread::msleep(400);
            tx.commit();
        });
        tomado.acquire();
        const bool concedido = a->s->bloquearRegistro(kClientes, u"1"_s, u"Uno"_s, 1);
        soltador.join();
        QVERIFY(concedido);
        QVERIFY(a->d.mensajes().isEmpty());
        QCOMPARE(a->s->contar(), 1);
    }
};

PMX_STORE_TEST_MAIN(TestBloqueos)
#include "test_bloqueos.moc"
