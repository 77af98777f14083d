// Generic records, the schema and settings on the engine under test.
#include "core/command_trace.h"
#include "data/ajustes.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "scripted_dialogs.h"
#include "test_db.h"

using namespace Qt::StringLiterals;

namespace {
using T = TipoColumna;

// A table with every column type, created from its descriptor like any table of the program.
DescriptorTabla tablaDePrueba() {
    DescriptorTabla t;
    t.tabla = u"Prueba"_s;
    t.descTabla = u"Prueba"_s;
    t.columnaS = {col(u"IdPrueba"_s, T::Autonumerico, u"Id."_s, 0, false),
                  col(u"Descripcion"_s, T::Texto, u"Descripción"_s, 40, false),
                  col(u"Importe"_s, T::Decimal, u"Importe"_s),
                  col(u"Unidades"_s, T::Entero, u"Unidades"_s),
                  col(u"Fecha"_s, T::Fecha, u"Fecha"_s),
                  col(u"Hora"_s, T::Hora, u"Hora"_s),
                  col(u"Momento"_s, T::FechaHora, u"Momento"_s),
                  col(u"Activo"_s, T::Logico, u"Activo"_s),
                  colLista(u"Tipo"_s, u"Tipo"_s, {u"A"_s, u"B"_s}, {u"Alfa"_s, u"Beta"_s})};
    t.clave = {u"IdPrueba"_s};
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
        r.setValor(u"Descripcion"_s, descripcion);
        r.setValor(u"Importe"_s, importe);
        r.setValor(u"Fecha"_s, fecha);
        r.setValor(u"Hora"_s, QTime(9, 30, 15));
        r.setValor(u"Momento"_s, QDateTime(fecha, QTime(23, 59, 58)));
        r.setValor(u"Activo"_s, true);
        r.setValor(u"Unidades"_s, 3);
        r.setValor(u"Tipo"_s, u"B"_s);
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
            if (tabla.desde >= 2) t.db().ejecutarDirecto(u"DROP TABLE "_s + tabla.tabla);
        for (const auto& tabla : catalogo())
            for (const auto& c : tabla.columnaS)
                if (tabla.desde < 2 && c.desde >= 2)
                    t.db().ejecutarDirecto(u"ALTER TABLE "_s + tabla.tabla + u" DROP COLUMN "_s + c.nombre);
        t.db().ejecutar(u"DELETE FROM VersionEsquema WHERE Version >= ?"_s, {2});
        QCOMPARE(versionEsquema(t.db()), 1);
        migrarEsquema(t.db());
        QCOMPARE(versionEsquema(t.db()), versionEsquemaPrograma());
        for (const auto& tabla : catalogo()) {
            QVERIFY2(t.db().existeTabla(tabla.tabla), qPrintable(tabla.tabla));
            // Every column is there: a query naming them all runs.
            QStringList nombres;
            for (const auto& c : tabla.columnaS)
                nombres << c.nombre;
            t.db().ejecutar(u"SELECT "_s + nombres.join(u", "_s) + u" FROM "_s + tabla.tabla);
        }
    }

    void tablaAusenteSeCreaAlMigrar() {
        TestDb t;
        t.db().ejecutarDirecto(u"DROP TABLE LogErrores"_s);
        QVERIFY(!t.db().existeTabla(u"LogErrores"_s));
        migrarEsquema(t.db());
        QVERIFY(t.db().existeTabla(u"LogErrores"_s));
        QCOMPARE(RegistroStore(t.db()).contar(*descriptorTabla(u"LogErrores"_s)), 0);
    }

    void esquemaMasModernoQueElProgramaSeRechaza() {
        TestDb t;
        t.db().ejecutar(u"INSERT INTO VersionEsquema (Version) VALUES (?)"_s, {versionEsquemaPrograma() + 1});
        QVERIFY_THROWS_EXCEPTION(ErrorBD, migrarEsquema(t.db()));
    }

    void crearCargarActualizarEliminar() {
        TestDb t;
        crearTablaPrueba(t.db());
        RegistroStore store(t.db());

        Registro r = nuevo(u"Vacuna O'Brien"_s, 12.5, QDate(2026, 2, 28));
        const QVariant clave = store.crear(r);
        QVERIFY(clave.toLongLong() > 0);
        Registro otro = nuevo(u"Otro"_s, 1, QDate(2026, 1, 1));
        QCOMPARE(store.crear(otro).toLongLong(), clave.toLongLong() + 1);

        auto leido = store.cargar(prueba_, clave);
        QVERIFY(leido.has_value());
        QCOMPARE(leido->texto(u"Descripcion"_s), u"Vacuna O'Brien"_s);
        QCOMPARE(leido->valor(u"Importe"_s).toDouble(), 12.5);
        QCOMPARE(leido->valor(u"Unidades"_s).toLongLong(), 3);
        QCOMPARE(leido->valor(u"Fecha"_s).toDate(), QDate(2026, 2, 28));
        QCOMPARE(leido->valor(u"Hora"_s).toTime(), QTime(9, 30, 15));
        QCOMPARE(leido->valor(u"Momento"_s).toDateTime(), QDateTime(QDate(2026, 2, 28), QTime(23, 59, 58)));
        QCOMPARE(leido->valor(u"Activo"_s).toBool(), true);
        QCOMPARE(leido->valorExterno(u"Tipo"_s), u"Beta"_s);

        Registro copia = leido->getCopia();
        copia.setValor(u"Importe"_s, 99.99);
        copia.setValor(u"Activo"_s, false);
        // The copy is independent of the record it came from.
        QCOMPARE(leido->valor(u"Importe"_s).toDouble(), 12.5);
        store.actualizar(copia);
        auto releido = store.cargar(prueba_, clave);
        QCOMPARE(releido->valor(u"Importe"_s).toDouble(), 99.99);
        QCOMPARE(releido->valor(u"Activo"_s).toBool(), false);

        QVERIFY(store.eliminar(copia));
        QVERIFY(!store.cargar(prueba_, clave).has_value());
        QVERIFY(!store.eliminar(copia));
        // Updating a record somebody else deleted is an error, not a silent no-op.
        QVERIFY_THROWS_EXCEPTION(ErrorBD, store.actualizar(copia));
    }

    void nuevaInstanciaEstaVacia() {
        Registro r = nuevo(u"x"_s, 1, QDate(2026, 1, 1));
        Registro vacio = r.nuevaInstancia();
        QCOMPARE(&vacio.descriptor(), &r.descriptor());
        for (const auto& c : prueba_.columnaS)
            QVERIFY(vacio.valor(c.nombre).isNull());
        QVERIFY_THROWS_EXCEPTION(ErrorPrograma, r.valor(u"NoExiste"_s));
    }

    void buscarConCondicionYOrden() {
        TestDb t;
        crearTablaPrueba(t.db());
        RegistroStore store(t.db());
        for (int i = 0; i < 5; ++i) {
            Registro r = nuevo(u"R%1"_s.arg(i), 10.0 * i, QDate(2026, 1, 1).addDays(i));
            store.crear(r);
        }
        auto lista = store.buscar(prueba_, {u"Fecha >= ?"_s, {QDate(2026, 1, 3)}}, {u"Importe DESC"_s});
        QCOMPARE(lista.size(), 3);
        QCOMPARE(lista.at(0).texto(u"Descripcion"_s), u"R4"_s);
        QCOMPARE(lista.at(2).texto(u"Descripcion"_s), u"R2"_s);
        // A value holding a quote or SQL travels bound and matches only itself.
        QCOMPARE(store.buscar(prueba_, {u"Descripcion = ?"_s, {u"R1' OR '1'='1"_s}}).size(), 0);
        QVERIFY_THROWS_EXCEPTION(ErrorPrograma, store.buscar(prueba_, {}, {u"Importe; DROP TABLE Prueba"_s}));
    }

    void contarTablaVaciaDaCero() {
        TestDb t;
        crearTablaPrueba(t.db());
        RegistroStore store(t.db());
        QCOMPARE(store.contar(prueba_), 0);
        QCOMPARE(store.contar(prueba_, {u"Importe > ?"_s, {5}}), 0);
        Registro r = nuevo(u"a"_s, 7, QDate(2026, 1, 1));
        store.crear(r);
        QCOMPARE(store.contar(prueba_, {u"Importe > ?"_s, {5}}), 1);
    }

    void horaNulaQuedaACeroTrasLaReparacion() {
        TestDb t;
        RegistroStore store(t.db());
        const DescriptorTabla& puestos = *descriptorTabla(u"PuestosActivos"_s);
        Registro p(puestos);
        p.setValor(u"Puesto"_s, u"RECEPCION"_s);
        p.setValor(u"Fecha"_s, QDate(2026, 3, 1));
        store.crear(p);
        QVERIFY(store.cargar(puestos, u"RECEPCION"_s)->valor(u"Hora"_s).isNull());
        repararHorasNulas(t.db());
        QCOMPARE(store.cargar(puestos, u"RECEPCION"_s)->valor(u"Hora"_s).toTime(), QTime(0, 0, 0));
    }

    void transaccionAnidadaSeDeshaceEntera() {
        TestDb t;
        Ajustes ajustes(t.db());
        {
            Transaction fuera = t.db().transaccion();
            ajustes.escribir(u"A"_s, u"1"_s);
            {
                Transaction dentro = t.db().transaccion();
                ajustes.escribir(u"B"_s, u"2"_s);
                dentro.rollback();
            }
            QVERIFY_THROWS_EXCEPTION(ErrorBD, fuera.commit());
        }
        QVERIFY(!ajustes.existe(u"A"_s));
        QVERIFY(!ajustes.existe(u"B"_s));
        QVERIFY(!t.db().enTransaccion());
        {
            Transaction tx = t.db().transaccion();
            ajustes.escribir(u"A"_s, u"1"_s);
        } // destroyed without commit: rolled back
        QVERIFY(!ajustes.existe(u"A"_s));
    }

    void ajustes() {
        TestDb t;
        Ajustes a(t.db());
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), QString());
        QCOMPARE(a.leerConDefecto(claves::DIAS_COMPACTACION), u"0"_s);
        a.escribir(claves::DIAS_COMPACTACION, u"7"_s);
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), u"7"_s);
        a.escribir(claves::DIAS_COMPACTACION, u"15"_s);
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), u"15"_s);
        // Keys are matched exactly.
        QCOMPARE(a.leer(u"dias compactacion"_s), QString());
        // Another workstation reads what this one wrote.
        auto otra = t.otraConexion();
        QCOMPARE(Ajustes(*otra).leer(claves::DIAS_COMPACTACION), u"15"_s);
        a.completarPorDefecto();
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), u"15"_s);
        QCOMPARE(a.leer(claves::MULTIPUESTO), u"SI"_s);
        QCOMPARE(a.leer(claves::CONTAB_SOLO_ADMINISTRADORES), u"N"_s);
    }

    void errorDeBaseDeDatosLlegaAlUsuario() {
        TestDb t;
        ScriptedDialogs d;
        CommandTrace traza(d, u"guardar un Parámetro en la 'Configuración'"_s);
        const bool ok = traza.ejecutar([&] {
            traza.paso(u"Leer la tabla"_s);
            t.db().ejecutar(u"SELECT NoExiste FROM Parametros"_s);
        });
        QVERIFY(!ok);
        QCOMPARE(d.mensajes().size(), 1);
        QCOMPARE(d.ultimo().titulo, u"guardar un Parámetro en la 'Configuración'"_s);
        QVERIFY2(d.ultimoTexto().startsWith(u"Error en B.D.: "_s), qPrintable(d.ultimoTexto()));
        QVERIFY(d.ultimoTexto().size() > u"Error en B.D.: "_s.size());
    }
};

PMX_STORE_TEST_MAIN(TestRegistros)
#include "test_registros.moc"
