// Generic records, the schema and settings on the engine under test.
#include "core/command_trace.h"
#include "data/ajustes.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "scripted_dialogs.h"
#include "test_db.h"

namespace {
using T = TipoColumna;

// A table with every column type, created from its descriptor like any table of the program.
DescriptorTabla tablaDePrueba() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("Prueba");
    t.descTabla = QStringLiteral("Prueba");
    t.columnaS = {col(QStringLiteral("IdPrueba"), T::Autonumerico, QStringLiteral("Id."), 0, false),
                  col(QStringLiteral("Descripcion"), T::Texto, QStringLiteral("Descripción"), 40, false),
                  col(QStringLiteral("Importe"), T::Decimal, QStringLiteral("Importe")),
                  col(QStringLiteral("Unidades"), T::Entero, QStringLiteral("Unidades")),
                  col(QStringLiteral("Fecha"), T::Fecha, QStringLiteral("Fecha")),
                  col(QStringLiteral("Hora"), T::Hora, QStringLiteral("Hora")),
                  col(QStringLiteral("Momento"), T::FechaHora, QStringLiteral("Momento")),
                  col(QStringLiteral("Activo"), T::Logico, QStringLiteral("Activo")),
                  colLista(QStringLiteral("Tipo"), QStringLiteral("Tipo"),
                           {QStringLiteral("A"), QStringLiteral("B")},
                           {QStringLiteral("Alfa"), QStringLiteral("Beta")})};
    t.clave = {QStringLiteral("IdPrueba")};
    return t;
}
} // namespace

class TestRegistros : public QObject {
    Q_OBJECT
    DescriptorTabla prueba_ = tablaDePrueba();

    void crearTablaPrueba(Database& db) {
        for (const auto& s : sqlCrearTabla(prueba_, db.motor(), 1))
            db.ejecutarDirecto(s);
    }

    Registro nuevo(const QString& descripcion, double importe, const QDate& fecha) {
        Registro r(prueba_);
        r.setValor(QStringLiteral("Descripcion"), descripcion);
        r.setValor(QStringLiteral("Importe"), importe);
        r.setValor(QStringLiteral("Fecha"), fecha);
        r.setValor(QStringLiteral("Hora"), QTime(9, 30, 15));
        r.setValor(QStringLiteral("Momento"), QDateTime(fecha, QTime(23, 59, 58)));
        r.setValor(QStringLiteral("Activo"), true);
        r.setValor(QStringLiteral("Unidades"), 3);
        r.setValor(QStringLiteral("Tipo"), QStringLiteral("B"));
        return r;
    }

private slots:
    void esquemaNuevoQuedaEnLaVersionDelPrograma() {
        TestDb t;
        QCOMPARE(versionEsquema(t.db()), versionEsquemaPrograma());
        for (const auto& tabla : catalogo())
            QVERIFY2(t.db().existeTabla(tabla.tabla), qPrintable(tabla.tabla));
        // Running the migration again changes nothing and does not fail.
        migrarEsquema(t.db());
        QCOMPARE(versionEsquema(t.db()), versionEsquemaPrograma());
    }

    void bdDeLaVersionAnteriorSeActualiza() {
        // A database left at version 1 gets what version 2 introduced, tables and columns.
        TestDb t;
        QVERIFY(versionEsquemaPrograma() >= 2);
        for (const auto& tabla : catalogo())
            if (tabla.desde >= 2) t.db().ejecutarDirecto(QStringLiteral("DROP TABLE ") + tabla.tabla);
        for (const auto& tabla : catalogo())
            for (const auto& c : tabla.columnaS)
                if (tabla.desde < 2 && c.desde >= 2)
                    t.db().ejecutarDirecto(QStringLiteral("ALTER TABLE ") + tabla.tabla +
                                           QStringLiteral(" DROP COLUMN ") + c.nombre);
        t.db().ejecutar(QStringLiteral("DELETE FROM VersionEsquema WHERE Version >= ?"), {2});
        QCOMPARE(versionEsquema(t.db()), 1);
        migrarEsquema(t.db());
        QCOMPARE(versionEsquema(t.db()), versionEsquemaPrograma());
        for (const auto& tabla : catalogo()) {
            QVERIFY2(t.db().existeTabla(tabla.tabla), qPrintable(tabla.tabla));
            // Every column is there: a query naming them all runs.
            QStringList nombres;
            for (const auto& c : tabla.columnaS)
                nombres << c.nombre;
            t.db().ejecutar(QStringLiteral("SELECT ") + nombres.join(QStringLiteral(", ")) +
                            QStringLiteral(" FROM ") + tabla.tabla);
        }
    }

    void tablaAusenteSeCreaAlMigrar() {
        TestDb t;
        t.db().ejecutarDirecto(QStringLiteral("DROP TABLE LogErrores"));
        QVERIFY(!t.db().existeTabla(QStringLiteral("LogErrores")));
        migrarEsquema(t.db());
        QVERIFY(t.db().existeTabla(QStringLiteral("LogErrores")));
        QCOMPARE(RegistroStore(t.db()).contar(*descriptorTabla(QStringLiteral("LogErrores"))), 0);
    }

    void esquemaMasModernoQueElProgramaSeRechaza() {
        TestDb t;
        t.db().ejecutar(QStringLiteral("INSERT INTO VersionEsquema (Version) VALUES (?)"),
                        {versionEsquemaPrograma() + 1});
        QVERIFY_THROWS_EXCEPTION(ErrorBD, migrarEsquema(t.db()));
    }

    void crearCargarActualizarEliminar() {
        TestDb t;
        crearTablaPrueba(t.db());
        RegistroStore store(t.db());

        Registro r = nuevo(QStringLiteral("Vacuna O'Brien"), 12.5, QDate(2026, 2, 28));
        const QVariant clave = store.crear(r);
        QVERIFY(clave.toLongLong() > 0);
        Registro otro = nuevo(QStringLiteral("Otro"), 1, QDate(2026, 1, 1));
        QCOMPARE(store.crear(otro).toLongLong(), clave.toLongLong() + 1);

        auto leido = store.cargar(prueba_, clave);
        QVERIFY(leido.has_value());
        QCOMPARE(leido->texto(QStringLiteral("Descripcion")), QStringLiteral("Vacuna O'Brien"));
        QCOMPARE(leido->valor(QStringLiteral("Importe")).toDouble(), 12.5);
        QCOMPARE(leido->valor(QStringLiteral("Unidades")).toLongLong(), 3);
        QCOMPARE(leido->valor(QStringLiteral("Fecha")).toDate(), QDate(2026, 2, 28));
        QCOMPARE(leido->valor(QStringLiteral("Hora")).toTime(), QTime(9, 30, 15));
        QCOMPARE(leido->valor(QStringLiteral("Momento")).toDateTime(),
                 QDateTime(QDate(2026, 2, 28), QTime(23, 59, 58)));
        QCOMPARE(leido->valor(QStringLiteral("Activo")).toBool(), true);
        QCOMPARE(leido->valorExterno(QStringLiteral("Tipo")), QStringLiteral("Beta"));

        Registro copia = leido->getCopia();
        copia.setValor(QStringLiteral("Importe"), 99.99);
        copia.setValor(QStringLiteral("Activo"), false);
        // The copy is independent of the record it came from.
        QCOMPARE(leido->valor(QStringLiteral("Importe")).toDouble(), 12.5);
        store.actualizar(copia);
        auto releido = store.cargar(prueba_, clave);
        QCOMPARE(releido->valor(QStringLiteral("Importe")).toDouble(), 99.99);
        QCOMPARE(releido->valor(QStringLiteral("Activo")).toBool(), false);

        QVERIFY(store.eliminar(copia));
        QVERIFY(!store.cargar(prueba_, clave).has_value());
        QVERIFY(!store.eliminar(copia));
        // Updating a record somebody else deleted is an error, not a silent no-op.
        QVERIFY_THROWS_EXCEPTION(ErrorBD, store.actualizar(copia));
    }

    void nuevaInstanciaEstaVacia() {
        Registro r = nuevo(QStringLiteral("x"), 1, QDate(2026, 1, 1));
        Registro vacio = r.nuevaInstancia();
        QCOMPARE(&vacio.descriptor(), &r.descriptor());
        for (const auto& c : prueba_.columnaS)
            QVERIFY(vacio.valor(c.nombre).isNull());
        QVERIFY_THROWS_EXCEPTION(ErrorPrograma, r.valor(QStringLiteral("NoExiste")));
    }

    void buscarConCondicionYOrden() {
        TestDb t;
        crearTablaPrueba(t.db());
        RegistroStore store(t.db());
        for (int i = 0; i < 5; ++i) {
            Registro r = nuevo(QStringLiteral("R%1").arg(i), 10.0 * i, QDate(2026, 1, 1).addDays(i));
            store.crear(r);
        }
        auto lista = store.buscar(prueba_, {QStringLiteral("Fecha >= ?"), {QDate(2026, 1, 3)}},
                                  {QStringLiteral("Importe DESC")});
        QCOMPARE(lista.size(), 3);
        QCOMPARE(lista.at(0).texto(QStringLiteral("Descripcion")), QStringLiteral("R4"));
        QCOMPARE(lista.at(2).texto(QStringLiteral("Descripcion")), QStringLiteral("R2"));
        // A value holding a quote or SQL travels bound and matches only itself.
        QCOMPARE(store.buscar(prueba_, {QStringLiteral("Descripcion = ?"), {QStringLiteral("R1' OR '1'='1")}})
                     .size(),
                 0);
        QVERIFY_THROWS_EXCEPTION(ErrorPrograma,
                                 store.buscar(prueba_, {}, {QStringLiteral("Importe; DROP TABLE Prueba")}));
    }

    void contarTablaVaciaDaCero() {
        TestDb t;
        crearTablaPrueba(t.db());
        RegistroStore store(t.db());
        QCOMPARE(store.contar(prueba_), 0);
        QCOMPARE(store.contar(prueba_, {QStringLiteral("Importe > ?"), {5}}), 0);
        Registro r = nuevo(QStringLiteral("a"), 7, QDate(2026, 1, 1));
        store.crear(r);
        QCOMPARE(store.contar(prueba_, {QStringLiteral("Importe > ?"), {5}}), 1);
    }

    void horaNulaQuedaACeroTrasLaReparacion() {
        TestDb t;
        RegistroStore store(t.db());
        const DescriptorTabla& puestos = *descriptorTabla(QStringLiteral("PuestosActivos"));
        Registro p(puestos);
        p.setValor(QStringLiteral("Puesto"), QStringLiteral("RECEPCION"));
        p.setValor(QStringLiteral("Fecha"), QDate(2026, 3, 1));
        store.crear(p);
        QVERIFY(store.cargar(puestos, QStringLiteral("RECEPCION"))->valor(QStringLiteral("Hora")).isNull());
        repararHorasNulas(t.db());
        QCOMPARE(store.cargar(puestos, QStringLiteral("RECEPCION"))->valor(QStringLiteral("Hora")).toTime(),
                 QTime(0, 0, 0));
    }

    void transaccionAnidadaSeDeshaceEntera() {
        TestDb t;
        Ajustes ajustes(t.db());
        {
            Transaction fuera = t.db().transaccion();
            ajustes.escribir(QStringLiteral("A"), QStringLiteral("1"));
            {
                Transaction dentro = t.db().transaccion();
                ajustes.escribir(QStringLiteral("B"), QStringLiteral("2"));
                dentro.rollback();
            }
            QVERIFY_THROWS_EXCEPTION(ErrorBD, fuera.commit());
        }
        QVERIFY(!ajustes.existe(QStringLiteral("A")));
        QVERIFY(!ajustes.existe(QStringLiteral("B")));
        QVERIFY(!t.db().enTransaccion());
        {
            Transaction tx = t.db().transaccion();
            ajustes.escribir(QStringLiteral("A"), QStringLiteral("1"));
        } // destroyed without commit: rolled back
        QVERIFY(!ajustes.existe(QStringLiteral("A")));
    }

    void ajustes() {
        TestDb t;
        Ajustes a(t.db());
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), QString());
        QCOMPARE(a.leerConDefecto(claves::DIAS_COMPACTACION), QStringLiteral("0"));
        a.escribir(claves::DIAS_COMPACTACION, QStringLiteral("7"));
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), QStringLiteral("7"));
        a.escribir(claves::DIAS_COMPACTACION, QStringLiteral("15"));
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), QStringLiteral("15"));
        // Keys are matched exactly.
        QCOMPARE(a.leer(QStringLiteral("dias compactacion")), QString());
        // Another workstation reads what this one wrote.
        auto otra = t.otraConexion();
        QCOMPARE(Ajustes(*otra).leer(claves::DIAS_COMPACTACION), QStringLiteral("15"));
        a.completarPorDefecto();
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), QStringLiteral("15"));
        QCOMPARE(a.leer(claves::MULTIPUESTO), QStringLiteral("SI"));
        QCOMPARE(a.leer(claves::CONTAB_SOLO_ADMINISTRADORES), QStringLiteral("N"));
    }

    void errorDeBaseDeDatosLlegaAlUsuario() {
        TestDb t;
        ScriptedDialogs d;
        CommandTrace traza(d, QStringLiteral("guardar un Parámetro en la 'Configuración'"));
        const bool ok = traza.ejecutar([&] {
            traza.paso(QStringLiteral("Leer la tabla"));
            t.db().ejecutar(QStringLiteral("SELECT NoExiste FROM Parametros"));
        });
        QVERIFY(!ok);
        QCOMPARE(d.mensajes().size(), 1);
        QCOMPARE(d.ultimo().titulo, QStringLiteral("guardar un Parámetro en la 'Configuración'"));
        QVERIFY2(d.ultimoTexto().startsWith(QStringLiteral("Error en B.D.: ")), qPrintable(d.ultimoTexto()));
        QVERIFY(d.ultimoTexto().size() > QStringLiteral("Error en B.D.: ").size());
    }
};

PMX_STORE_TEST_MAIN(TestRegistros)
#include "test_registros.moc"
