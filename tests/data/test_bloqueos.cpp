// The lock store against a real database: every message of a refused lock, the rules of
// the administrative lock, unlocking, and the bounded retries when the database is busy.
#include "data/bloqueos.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QSemaphore>
#include <thread>

namespace {
DescriptorTabla clase(const QString& tabla, const QString& desc) {
    DescriptorTabla t;
    t.tabla = tabla;
    t.descTabla = desc;
    return t;
}
const DescriptorTabla kClientes = clase(QStringLiteral("Clientes"), QStringLiteral("Cliente"));
const DescriptorTabla kMascotas = clase(QStringLiteral("Mascotas"), QStringLiteral("Mascota"));

const QString kOtroPuestoCola =
    QStringLiteral(" pues otro Puesto lo/a tiene bloqueado/a. Consulte a un Administrador.");
const QString kBDCola =
    QStringLiteral(" pues algún Usuario tiene bloqueada la B.D. Consulte a un Administrador.");

// Makes the connection give up quickly when another one holds what it needs.
void esperaCorta(Database& db) {
    if (db.esSQLite())
        db.ejecutarDirecto(QStringLiteral("PRAGMA busy_timeout = 100"));
    else
        db.ejecutarDirecto(QStringLiteral("SET lock_timeout = '100ms'"));
}

// Holds, on a connection of its own, what every lock attempt needs: the write lock on
// SQLite, the lock table on PostgreSQL.
void acapararBloqueos(Database& db) {
    if (!db.esSQLite()) db.ejecutarDirecto(QStringLiteral("LOCK TABLE Bloqueos IN ACCESS EXCLUSIVE MODE"));
}
} // namespace

class TestBloqueos : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 9), QTime(8, 7, 6, 500))};

    // A workstation: its own connection, dialogs and identity.
    struct Puesto {
        std::unique_ptr<Database> propia;
        Database* db;
        ScriptedDialogs d;
        std::unique_ptr<BloqueoStore> s;
    };
    std::unique_ptr<Puesto> puesto(TestDb& t, const QString& nombre, bool otraConexion) {
        auto p = std::make_unique<Puesto>();
        if (otraConexion) p->propia = t.otraConexion();
        p->db = otraConexion ? p->propia.get() : &t.db();
        p->s = std::make_unique<BloqueoStore>(
            *p->db, p->d, reloj_,
            IdentidadSesion{QStringLiteral("sesion-") + nombre, QStringLiteral("usr-") + nombre, nombre});
        return p;
    }

private slots:
    void accionesYClaves_data() {
        QTest::addColumn<int>("codigo");
        QTest::addColumn<QString>("nombre");
        QTest::addColumn<QString>("verbo");
        QTest::newRow("1") << 1 << QStringLiteral("Modificación") << QStringLiteral("Modificar");
        QTest::newRow("2") << 2 << QStringLiteral("Alta") << QStringLiteral("dar de Alta");
        QTest::newRow("3") << 3 << QStringLiteral("Baja") << QStringLiteral("dar de Baja");
    }
    void accionesYClaves() {
        QFETCH(int, codigo);
        QFETCH(QString, nombre);
        QFETCH(QString, verbo);
        const auto a = nombreAccion(codigo);
        QVERIFY(a.has_value());
        QCOMPARE(a->nombre, nombre);
        QCOMPARE(a->verbo, verbo);

        // The row written for the lock carries who, when and why.
        TestDb t;
        auto p = puesto(t, QStringLiteral("RECEPCION"), false);
        QVERIFY(p->s->bloquearRegistro(kClientes, QStringLiteral("42"), QStringLiteral("Ana Pérez"), codigo));
        QVERIFY(p->d.mensajes().isEmpty());
        const auto b = p->s->buscar(QStringLiteral("Clientes 42"));
        QVERIFY(b.has_value());
        QCOMPARE(b->descripcion, QStringLiteral("Ana Pérez"));
        QCOMPARE(b->sesion, QStringLiteral("sesion-RECEPCION"));
        QCOMPARE(b->accion, codigo);
        QCOMPARE(b->usuario, QStringLiteral("usr-RECEPCION"));
        QCOMPARE(b->puesto, QStringLiteral("RECEPCION"));
        QCOMPARE(b->fecha, QDate(2026, 3, 9));
        QCOMPARE(b->hora, QTime(8, 7, 6));
    }

    void accionNoAdmitida_data() {
        QTest::addColumn<int>("codigo");
        QTest::newRow("4") << 4;
        QTest::newRow("0") << 0;
        QTest::newRow("-1") << -1;
    }
    void accionNoAdmitida() {
        QFETCH(int, codigo);
        QVERIFY(!nombreAccion(codigo).has_value());
        TestDb t;
        auto p = puesto(t, QStringLiteral("RECEPCION"), false);
        QVERIFY(!p->s->bloquearRegistro(kClientes, QStringLiteral("1"), QStringLiteral("Ana"), codigo));
        QCOMPARE(p->d.mensajes().size(), 1);
        QCOMPARE(p->d.ultimo().icono, Icono::Ninguno);
        QCOMPARE(p->d.ultimo().titulo, QStringLiteral("Bloqueo de Registro"));
        QCOMPARE(p->d.ultimoTexto(),
                 QStringLiteral("La acción que se pretende bloquear no es una de las admitidas: '") +
                     QString::number(codigo) + QStringLiteral("'."));
        // Without messages only the result tells; the whole-table lock refuses it too.
        QVERIFY(
            !p->s->bloquearRegistro(kClientes, QStringLiteral("1"), QStringLiteral("Ana"), codigo, false));
        QVERIFY(!p->s->bloquearTabla(kClientes, codigo, false));
        QCOMPARE(p->d.mensajes().size(), 1);
        QCOMPARE(p->s->contar(), 0);
    }

    void mismaClaveEnOtroPuesto_data() {
        QTest::addColumn<int>("codigo");
        QTest::addColumn<QString>("verbo");
        QTest::newRow("Modificación") << 1 << QStringLiteral("Modificar");
        QTest::newRow("Alta") << 2 << QStringLiteral("dar de Alta");
        QTest::newRow("Baja") << 3 << QStringLiteral("dar de Baja");
    }
    void mismaClaveEnOtroPuesto() {
        QFETCH(int, codigo);
        QFETCH(QString, verbo);
        TestDb t;
        auto a = puesto(t, QStringLiteral("CONSULTA1"), false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), true);
        QVERIFY(a->s->bloquearRegistro(kClientes, QStringLiteral("7"), QStringLiteral("Luis Gil"), 1));
        QVERIFY(!b->s->bloquearRegistro(kClientes, QStringLiteral("7"), QStringLiteral("Luis Gil (ficha)"),
                                        codigo));
        QCOMPARE(b->d.mensajes().size(), 1);
        QCOMPARE(b->d.ultimo().icono, Icono::Informacion);
        QCOMPARE(b->d.ultimo().titulo, QStringLiteral("Bloqueo de Registro"));
        QCOMPARE(b->d.ultimoTexto(), QStringLiteral("No es posible ") + verbo +
                                         QStringLiteral(" el/la Cliente de Luis Gil (ficha)") +
                                         kOtroPuestoCola);
        // Silent refusal, and the holder's row is untouched.
        QVERIFY(!b->s->bloquearRegistro(kClientes, QStringLiteral("7"), QStringLiteral("x"), codigo, false));
        QCOMPARE(b->d.mensajes().size(), 1);
        QCOMPARE(a->s->buscar(QStringLiteral("Clientes 7"))->sesion, QStringLiteral("sesion-CONSULTA1"));
        // Another key of the same table, and the same key of another table, are free.
        QVERIFY(b->s->bloquearRegistro(kClientes, QStringLiteral("70"), QStringLiteral("Otro"), codigo));
        QVERIFY(b->s->bloquearRegistro(kMascotas, QStringLiteral("7"), QStringLiteral("Toby"), codigo));
        // Once released by its holder the key can be taken.
        QVERIFY(a->s->desbloquearRegistro(kClientes, QStringLiteral("7")));
        QVERIFY(b->s->bloquearRegistro(kClientes, QStringLiteral("7"), QStringLiteral("Luis Gil"), codigo));
    }

    void mismaSesionEsReentrante() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("CONSULTA1"), false);
        QVERIFY(a->s->bloquearRegistro(kClientes, QStringLiteral("7"), QStringLiteral("Luis"), 1));
        QVERIFY(a->s->bloquearRegistro(kClientes, QStringLiteral("7"), QStringLiteral("Luis otra vez"), 3));
        QVERIFY(a->d.mensajes().isEmpty());
        QCOMPARE(a->s->contar(), 1);
        // The first lock stands as it was; one unlock removes it.
        QCOMPARE(a->s->buscar(QStringLiteral("Clientes 7"))->accion, 1);
        QVERIFY(a->s->desbloquearRegistro(kClientes, QStringLiteral("7")));
        QCOMPARE(a->s->contar(), 0);
        QVERIFY(!a->s->desbloquearRegistro(kClientes, QStringLiteral("7")));
    }

    void desbloquearSoloLoPropio() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("CONSULTA1"), false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), true);
        QVERIFY(a->s->bloquearRegistro(kClientes, QStringLiteral("1"), QStringLiteral("Uno"), 1));
        QVERIFY(a->s->bloquearRegistro(kClientes, QStringLiteral("2"), QStringLiteral("Dos"), 1));
        QVERIFY(b->s->bloquearRegistro(kClientes, QStringLiteral("3"), QStringLiteral("Tres"), 1));
        QVERIFY(!b->s->desbloquearRegistro(kClientes, QStringLiteral("1")));
        QCOMPARE(a->s->contar(), 3);
        QCOMPARE(a->s->desbloquearSesion(), 2);
        const auto quedan = a->s->lista();
        QCOMPARE(quedan.size(), 1);
        QCOMPARE(quedan.first().clave, QStringLiteral("Clientes 3"));
        QVERIFY(b->d.mensajes().isEmpty());
    }

    void errorAlDesbloquearYAlBloquear() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("CONSULTA1"), false);
        t.db().ejecutarDirecto(QStringLiteral("DROP TABLE Bloqueos"));
        QVERIFY(!a->s->desbloquearRegistro(kClientes, QStringLiteral("1")));
        QCOMPARE(a->d.mensajes().size(), 1);
        QCOMPARE(a->d.ultimo().icono, Icono::Ninguno);
        QCOMPARE(a->d.ultimo().titulo, QStringLiteral("Desbloqueo de registro"));
        QVERIFY(a->d.ultimoTexto().startsWith(QStringLiteral("Error en B.D.: ")));
        QVERIFY(a->d.ultimoTexto().contains(QStringLiteral("loqueos"), Qt::CaseInsensitive));
        QVERIFY(!a->s->desbloquearBD());
        QCOMPARE(a->d.ultimo().titulo, QStringLiteral("Desbloqueo de registro"));

        a->d.limpiar();
        QVERIFY(!a->s->bloquearRegistro(kClientes, QStringLiteral("1"), QStringLiteral("Uno"), 1));
        QCOMPARE(a->d.mensajes().size(), 1);
        QCOMPARE(a->d.ultimo().icono, Icono::Ninguno);
        QCOMPARE(a->d.ultimo().titulo, QStringLiteral("Bloqueo de Registro"));
        QVERIFY(a->d.ultimoTexto().startsWith(QStringLiteral("Error en B.D.: ")));
        QVERIFY(!a->s->bloquearRegistro(kClientes, QStringLiteral("1"), QStringLiteral("Uno"), 1, false));
        QCOMPARE(a->d.mensajes().size(), 1);
    }

    void bloqueoAdministrativoDeOtro() {
        TestDb t;
        auto admin = puesto(t, QStringLiteral("SERVIDOR"), false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), true);
        QVERIFY(admin->s->bloquearBD());
        QVERIFY(admin->d.mensajes().isEmpty());
        const auto fila =
            admin->s->buscar(QStringLiteral("DATABASE Toda la B.D. por labores Administrativas"));
        QVERIFY(fila.has_value());
        QCOMPARE(fila->sesion, QStringLiteral("sesion-SERVIDOR"));

        const QList<std::pair<int, QString>> acciones{{1, QStringLiteral("Modificar")},
                                                      {2, QStringLiteral("dar de Alta")},
                                                      {3, QStringLiteral("dar de Baja")}};
        for (const auto& [codigo, verbo] : acciones) {
            b->d.limpiar();
            QVERIFY(!b->s->bloquearRegistro(kMascotas, QStringLiteral("5"), QStringLiteral("Toby"), codigo));
            QCOMPARE(b->d.mensajes().size(), 1);
            QCOMPARE(b->d.ultimo().icono, Icono::Informacion);
            QCOMPARE(b->d.ultimoTexto(), QStringLiteral("No es posible ") + verbo +
                                             QStringLiteral(" el/la Mascota de Toby") + kBDCola);
        }
        // The whole-table lock is refused the same way.
        b->d.limpiar();
        QVERIFY(!b->s->bloquearTabla(kMascotas, 1));
        QCOMPARE(b->d.ultimoTexto(),
                 QStringLiteral("No es posible Modificar el/la Mascota de Mascota: Todos") + kBDCola);

        // The administrator's own session may still lock records.
        QVERIFY(admin->s->bloquearRegistro(kMascotas, QStringLiteral("5"), QStringLiteral("Toby"), 1));
        // A second administrative lock by another session is refused with its own reason.
        b->d.limpiar();
        QVERIFY(!b->s->bloquearBD());
        QCOMPARE(b->d.ultimo().icono, Icono::Exclamacion);
        QCOMPARE(b->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(b->d.ultimoTexto(),
                 QStringLiteral(
                     " No es posible bloquear la B.D. para Administración pues otro Usuario tiene bloqueada "
                     "la B.D. \n Consulte con un Administrador."));
        QVERIFY(!b->s->bloquearBD(false));
        QCOMPARE(b->d.mensajes().size(), 1);
        // Released, the records are free again.
        QVERIFY(admin->s->desbloquearBD());
        QVERIFY(b->s->bloquearRegistro(kMascotas, QStringLiteral("6"), QStringLiteral("Kira"), 2));
    }

    void umbralDelBloqueoAdministrativo_data() {
        QTest::addColumn<int>("ajenos");
        QTest::addColumn<int>("propios");
        QTest::addColumn<bool>("concedido");
        QTest::newRow("ninguno") << 0 << 0 << true;
        QTest::newRow("uno de otro puesto") << 1 << 0 << true;
        QTest::newRow("uno propio") << 0 << 1 << true;
        QTest::newRow("dos de otro puesto") << 2 << 0 << false;
        QTest::newRow("uno y uno") << 1 << 1 << false;
        QTest::newRow("dos propios") << 0 << 2 << false;
        QTest::newRow("cinco") << 3 << 2 << false;
    }
    void umbralDelBloqueoAdministrativo() {
        QFETCH(int, ajenos);
        QFETCH(int, propios);
        QFETCH(bool, concedido);
        TestDb t;
        auto admin = puesto(t, QStringLiteral("SERVIDOR"), false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), true);
        for (int i = 0; i < ajenos; ++i)
            QVERIFY(b->s->bloquearRegistro(kClientes, QString::number(i), QStringLiteral("Ajeno"), 1));
        for (int i = 0; i < propios; ++i)
            QVERIFY(admin->s->bloquearRegistro(kMascotas, QString::number(i), QStringLiteral("Propio"), 1));
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
            QCOMPARE(admin->d.ultimo().titulo, QStringLiteral("¡Atención!"));
            QCOMPARE(
                admin->d.ultimoTexto(),
                QStringLiteral(" No es posible bloquear la B.D. para Administración mientras otros Usuarios "
                               "tengan bloqueados registros en la B.D. \n Consulte con un Administrador."));
        }
    }

    void bloqueoDeTodaLaTabla() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("CONSULTA1"), false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), true);
        QCOMPARE(descripcionBloqueoTabla(kClientes), QStringLiteral("Cliente: Todos"));
        QVERIFY(a->s->bloquearTabla(kClientes, 1));
        QCOMPARE(a->s->buscar(QStringLiteral("Clientes"))->descripcion, QStringLiteral("Cliente: Todos"));
        // Every record of the table is taken for the other workstations...
        QVERIFY(!b->s->bloquearRegistro(kClientes, QStringLiteral("9"), QStringLiteral("Eva"), 3));
        QCOMPARE(b->d.ultimoTexto(),
                 QStringLiteral("No es posible dar de Baja el/la Cliente de Eva") + kOtroPuestoCola);
        QVERIFY(!b->s->bloquearTabla(kClientes, 1, false));
        // ...but not for its holder, nor the records of other tables.
        QVERIFY(a->s->bloquearRegistro(kClientes, QStringLiteral("9"), QStringLiteral("Eva"), 1));
        QVERIFY(b->s->bloquearRegistro(kMascotas, QStringLiteral("9"), QStringLiteral("Eva"), 1));
        QVERIFY(a->s->desbloquearTabla(kClientes));
        QVERIFY(a->s->desbloquearRegistro(kClientes, QStringLiteral("9")));

        // A record of the table held elsewhere refuses the whole-table lock; a table whose
        // name only starts the same does not.
        QVERIFY(b->s->bloquearRegistro(kClientes, QStringLiteral("3"), QStringLiteral("Juan"), 1));
        b->d.limpiar();
        QVERIFY(!a->s->bloquearTabla(kClientes, 2));
        QCOMPARE(a->d.ultimoTexto(),
                 QStringLiteral("No es posible dar de Alta el/la Cliente de Cliente: Todos") +
                     kOtroPuestoCola);
        const DescriptorTabla clientesBaja =
            clase(QStringLiteral("ClientesBaja"), QStringLiteral("Cliente de baja"));
        QVERIFY(a->s->bloquearTabla(clientesBaja, 1));
        QVERIFY(b->s->desbloquearRegistro(kClientes, QStringLiteral("3")));
        QVERIFY(a->s->bloquearTabla(kClientes, 2));
    }

    void gestorEliminaDeCualquierSesion() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("CONSULTA1"), false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), true);
        QVERIFY(a->s->bloquearRegistro(kClientes, QStringLiteral("1"), QStringLiteral("Uno"), 1));
        reloj_.avanzar(60);
        QVERIFY(b->s->bloquearRegistro(kClientes, QStringLiteral("2"), QStringLiteral("Dos"), 1));
        reloj_.avanzar(-60);
        const auto l = a->s->lista();
        QCOMPARE(l.size(), 2);
        QCOMPARE(l.at(0).clave, QStringLiteral("Clientes 1"));
        QCOMPARE(l.at(1).hora, QTime(8, 8, 6));
        QVERIFY(a->s->eliminar(QStringLiteral("Clientes 2")));
        QVERIFY(!a->s->eliminar(QStringLiteral("Clientes 2")));
        QVERIFY(b->s->bloquearRegistro(kClientes, QStringLiteral("3"), QStringLiteral("Tres"), 1));
        QCOMPARE(b->s->eliminarTodos(), 2);
        QCOMPARE(a->s->contar(), 0);
    }

    // While another connection holds the database, each attempt gives up after the short
    // wait and is tried again; with one attempt the failure is reported, never swallowed.
    void ocupadoSeReintentaYSeInforma() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("CONSULTA1"), false);
        esperaCorta(t.db());
        a->s->setIntentos(1);
        {
            auto otra = t.otraConexion();
            Transaction tx = otra->transaccion();
            acapararBloqueos(*otra);
            QVERIFY(!a->s->bloquearRegistro(kClientes, QStringLiteral("1"), QStringLiteral("Uno"), 1));
            QCOMPARE(a->d.mensajes().size(), 1);
            QCOMPARE(a->d.ultimo().titulo, QStringLiteral("Bloqueo de Registro"));
            QVERIFY(a->d.ultimoTexto().startsWith(QStringLiteral("Error en B.D.: ")));
            QVERIFY(esErrorDeConcurrencia(ErrorBD(a->d.ultimoTexto())));
            tx.rollback();
        }
        QCOMPARE(a->s->contar(), 0);

        // Now the holder lets go after a while: with enough attempts the lock is taken.
        a->d.limpiar();
        a->s->setIntentos(100);
        QSemaphore tomado, fin;
        const QString origen = t.origen();
        const bool sqlite = t.db().esSQLite();
        std::thread soltador([&] {
            auto otra = sqlite ? Database::abrirSQLite(origen) : Database::abrirPostgreSQL(origen);
            {
                Transaction tx = otra->transaccion();
                acapararBloqueos(*otra);
                tomado.release();
                QThread::msleep(400);
                tx.commit();
            }
            otra.reset();
            fin.release();
        });
        tomado.acquire();
        const bool concedido =
            a->s->bloquearRegistro(kClientes, QStringLiteral("1"), QStringLiteral("Uno"), 1);
        fin.acquire();
        soltador.join();
        QVERIFY(concedido);
        QVERIFY(a->d.mensajes().isEmpty());
        QCOMPARE(a->s->contar(), 1);
    }
};

PMX_STORE_TEST_MAIN(TestBloqueos)
#include "test_bloqueos.moc"
