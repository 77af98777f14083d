// Generic records, the schema and settings on the engine under test.
#include "data/ajustes.h"
#include "data/esquema.h"
#include "data/puestos.h"
#include "data/registro.h"
#include "sesion.h"

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

// The database as the program of schema version `version` left it (every table made again).
void dejarEnVersion(Database& db, int version) {
    const QList<DescriptorTabla>& tablas = catalogo();
    for (auto it = tablas.crbegin(); it != tablas.crend(); ++it)
        db.ejecutarDirecto(u"DROP TABLE "_s + it->tabla + (db.esSQLite() ? QString() : u" CASCADE"_s));
    db.ejecutarDirecto(u"DELETE FROM VersionEsquema"_s);
    for (const auto& t : tablas)
        if (t.desde <= version)
            for (const auto& sql : sqlCrearTabla(t, db.motor(), version))
                db.ejecutarDirecto(sql);
    for (int v = 1; v <= version; ++v)
        db.ejecutarCambio(u"INSERT INTO VersionEsquema (Version) VALUES (?)"_s, {v});
}

// Inserts a row with the columns given (an older schema lacks some the catalogue names); returns its key.
qint64 insertar(Database& db, const QString& tabla, const QVariantMap& valores) {
    QStringList marcas(valores.size(), u"?"_s);
    return db
        .valor(u"INSERT INTO "_s + tabla + u" ("_s + valores.keys().join(u", "_s) + u") VALUES ("_s +
                   marcas.join(u", "_s) + u") RETURNING "_s + descriptorRequerido(tabla).clave.first(),
               valores.values())
        .toLongLong();
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
    // A database left at version 1 gets what every later version introduced, tables and columns;
    // migrating again makes a table that went missing; a database newer than the program is refused.
    void migrarEsquemaDesdeLaVersion1() {
        TestDb t;
        dejarEnVersion(t.db(), 1);
        QVERIFY(!t.db().existeTabla(u"Mascotas"_s));
        migrarEsquema(t.db());
        QCOMPARE(versionEsquema(t.db()), versionEsquemaPrograma());
        for (const auto& tabla : catalogo()) {
            // Every column is there: a query naming them all runs.
            QStringList nombres;
            for (const auto& c : tabla.columnaS)
                nombres << c.nombre;
            t.db().ejecutar(u"SELECT "_s + nombres.join(u", "_s) + u" FROM "_s + tabla.tabla);
        }
        t.db().ejecutarDirecto(u"DROP TABLE LogErrores"_s);
        migrarEsquema(t.db());
        QCOMPARE(RegistroStore(t.db()).contar(*descriptorTabla(u"LogErrores"_s)), 0);
        t.db().ejecutar(u"INSERT INTO VersionEsquema (Version) VALUES (?)"_s, {versionEsquemaPrograma() + 1});
        QVERIFY_THROWS_EXCEPTION(ErrorBD, migrarEsquema(t.db()));
    }

    void crearCargarActualizarEliminar() {
        TestDb t;
        crearTablaPrueba(t.db());
        RegistroStore store(t.db());

        Registro r = nuevo(u"Vacuna O'Brien"_s, 12.5, QDate(2026, 2, 28));
        const QVariant clave = store.crear(r);

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

    // Version 4 adds the references between rows: a database holding a pet whose owner is gone
    // is left as it was, and the message names the row.
    void migracionConHuerfanosSeRechaza() {
        TestDb t;
        Database& db = t.db();
        dejarEnVersion(db, 3);
        const qint64 ana = insertar(db, u"Clientes"_s, {{u"Nombre"_s, u"Ana"_s}});
        insertar(db, u"Mascotas"_s, {{u"Nombre"_s, u"Toby"_s}, {u"IdCliente"_s, ana}});
        const qint64 huerfana = insertar(db, u"Mascotas"_s, {{u"Nombre"_s, u"Nala"_s}, {u"IdCliente"_s, 99}});
        try {
            migrarEsquema(db);
            QFAIL("la migración con una mascota sin cliente no se ha rechazado");
        } catch (const ErrorBD& e) {
            QCOMPARE(e.texto(),
                     u"no se puede actualizar la estructura de la base de datos porque hay registros "
                     "que apuntan a otros que ya no existen. Corríjalos o elimínelos y vuelva a "
                     "entrar: Mascota IdMascota: %1 (IdCliente 99)"_s.arg(huerfana));
        }
        QVERIFY(!db.enTransaccion());
        QCOMPARE(versionEsquema(db), 3);
        QCOMPARE(db.valor(u"SELECT COUNT(*) FROM Mascotas"_s).toInt(), 2);
        QVERIFY_THROWS_EXCEPTION(ErrorBD, db.ejecutar(u"SELECT VersionFila FROM Clientes"_s));
    }

    // A clean version-3 database gets the references and the row versions; its rows stay, and on
    // SQLite (where the tables are made again) no automatic key is handed out twice, even from a
    // table emptied before.
    void migracionAVersion4AnadeReferencias() {
        TestDb t;
        Database& db = t.db();
        dejarEnVersion(db, 3);
        const qint64 ana = insertar(db, u"Clientes"_s, {{u"Nombre"_s, u"Ana"_s}});
        const qint64 toby = insertar(db, u"Mascotas"_s, {{u"Nombre"_s, u"Toby"_s}, {u"IdCliente"_s, ana}});
        const qint64 borrada = insertar(db, u"Mascotas"_s, {{u"Nombre"_s, u"Nala"_s}, {u"IdCliente"_s, ana}});
        const QVariantMap nota = {{u"Serie"_s, u"A"_s},
                                  {u"NumAlbaran"_s, 1},
                                  {u"Fecha"_s, QDate(2026, 3, 2)},
                                  {u"IdCliente"_s, ana}};
        const qint64 albaran = insertar(db, u"Albaranes"_s, nota);
        db.ejecutarCambio(u"DELETE FROM Mascotas WHERE IdMascota = ?"_s, {borrada});
        db.ejecutarCambio(u"DELETE FROM Albaranes"_s);
        migrarEsquema(db);
        QCOMPARE(versionEsquema(db), versionEsquemaPrograma());
        const auto mascota = RegistroStore(db).cargar(descriptorRequerido(u"Mascotas"_s), toby);
        QVERIFY(mascota);
        QCOMPARE(mascota->texto(u"Nombre"_s), u"Toby"_s);
        QCOMPARE(mascota->valor(u"IdCliente"_s).toLongLong(), ana);
        QCOMPARE(mascota->valor(DescriptorTabla::kColumnaVersion).toLongLong(), 0);
        try {
            insertar(db, u"Mascotas"_s, {{u"Nombre"_s, u"Huérfana"_s}, {u"IdCliente"_s, 99}});
            QFAIL("se ha guardado una mascota de un cliente que no existe");
        } catch (const ErrorBD& e) {
            QVERIFY2(esErrorDeReferencia(e), qPrintable(e.texto()));
        }
        QVERIFY(insertar(db, u"Mascotas"_s, {{u"Nombre"_s, u"Kira"_s}, {u"IdCliente"_s, ana}}) > borrada);
        QVERIFY(insertar(db, u"Albaranes"_s, nota) > albaran);
    }

    // A save whose row changed or went since it was read writes nothing and says which.
    void guardarSobreUnaLecturaAntigua_data() {
        QTest::addColumn<bool>("eliminado");
        QTest::newRow("modificado en otro puesto") << false;
        QTest::newRow("eliminado en otro puesto") << true;
    }
    void guardarSobreUnaLecturaAntigua() {
        QFETCH(bool, eliminado);
        TestDb t;
        const DescriptorTabla& clientes = descriptorRequerido(u"Clientes"_s);
        const qint64 id = Semilla(t.db()).cliente(u"Ana"_s);
        RegistroStore aqui(t.db());
        auto leido = aqui.cargar(clientes, id);
        auto otra = t.otraConexion();
        RegistroStore alli(*otra);
        auto suyo = alli.cargar(clientes, id);
        if (eliminado) {
            QVERIFY(alli.eliminar(*suyo));
        } else {
            suyo->setValor(u"Nombre"_s, u"Ana (recepción)"_s);
            alli.actualizar(*suyo);
        }
        leido->setValor(u"Nombre"_s, u"Ana (consulta)"_s);
        try {
            aqui.actualizar(*leido);
            QFAIL("se ha guardado sobre una lectura antigua");
        } catch (const ErrorRegistroCambiado& e) {
            QCOMPARE(e.eliminado(), eliminado);
        }
        QCOMPARE(leido->valor(DescriptorTabla::kColumnaVersion).toLongLong(), 0);
        auto ahora = aqui.cargar(clientes, id);
        QCOMPARE(ahora.has_value(), !eliminado);
        if (eliminado) return;
        QCOMPARE(ahora->texto(u"Nombre"_s), u"Ana (recepción)"_s);
        // Read again, the record saves.
        ahora->setValor(u"Nombre"_s, u"Ana (consulta)"_s);
        aqui.actualizar(*ahora);
        QCOMPARE(ahora->valor(DescriptorTabla::kColumnaVersion).toLongLong(), 2);
    }

    // The columns kept by their operations (a balance, the current owner, the stock) are not
    // written by a record's save, whatever the record holds; the rest of the save is.
    void columnasDeOperacionNoSeGuardan_data() {
        QTest::addColumn<QString>("tabla");
        QTest::addColumn<QString>("columna");
        QTest::addColumn<QVariant>("guardado");
        QTest::addColumn<QVariant>("otro");
        QTest::addColumn<QString>("nombre"); // a column the save does write
        QTest::newRow("deuda del cliente")
            << u"Clientes"_s << u"Deuda"_s << QVariant(12.5) << QVariant(0.0) << u"Nombre"_s;
        // Clients 1 and 2 exist: a change of owner is an operation of its own.
        QTest::newRow("dueño de la mascota")
            << u"Mascotas"_s << u"IdCliente"_s << QVariant(qint64(1)) << QVariant(qint64(2)) << u"Nombre"_s;
        QTest::newRow("existencias") << u"Articulos"_s << u"Stock"_s << QVariant(5.0) << QVariant(7.0)
                                     << u"Articulo"_s;
    }
    void columnasDeOperacionNoSeGuardan() {
        QFETCH(QString, tabla);
        QFETCH(QString, columna);
        QFETCH(QVariant, guardado);
        QFETCH(QVariant, otro);
        QFETCH(QString, nombre);
        TestDb t;
        Semilla s(t.db());
        s.cliente(u"Ana"_s);
        s.cliente(u"Luis"_s);
        const DescriptorTabla& d = descriptorRequerido(tabla);
        const qint64 id = s.fila(tabla, {{columna, guardado}, {nombre, u"Antes"_s}});
        RegistroStore store(t.db());
        auto r = store.cargar(d, id);
        r->setValor(columna, otro);
        r->setValor(nombre, u"Después"_s);
        store.actualizar(*r);
        const auto leido = store.cargar(d, id);
        QCOMPARE(leido->valor(columna), guardado);
        QCOMPARE(leido->texto(nombre), u"Después"_s);
    }

    void buscarYContar() {
        TestDb t;
        crearTablaPrueba(t.db());
        RegistroStore store(t.db());
        QCOMPARE(store.contar(prueba_), 0);
        for (int i = 0; i < 5; ++i) {
            Registro r = nuevo(u"R%1"_s.arg(i), 10.0 * i, QDate(2026, 1, 1).addDays(i));
            store.crear(r);
        }
        QCOMPARE(store.contar(prueba_, {u"Importe > ?"_s, {25}}), 2);
        auto lista = store.buscar(prueba_, {u"Fecha >= ?"_s, {QDate(2026, 1, 3)}}, {u"Importe DESC"_s});
        QCOMPARE(lista.size(), 3);
        QCOMPARE(lista.at(0).texto(u"Descripcion"_s), u"R4"_s);
        QCOMPARE(lista.at(2).texto(u"Descripcion"_s), u"R2"_s);
        // A value holding a quote or SQL travels bound and matches only itself.
        QCOMPARE(store.buscar(prueba_, {u"Descripcion = ?"_s, {u"R1' OR '1'='1"_s}}).size(), 0);
        QVERIFY_THROWS_EXCEPTION(ErrorPrograma, store.buscar(prueba_, {}, {u"Importe; DROP TABLE Prueba"_s}));
    }

    void horaNulaQuedaACeroTrasLaReparacion() {
        TestDb t;
        Semilla(t.db()).fila(u"PuestosActivos"_s,
                             {{u"Puesto"_s, u"RECEPCION"_s}, {u"Fecha"_s, QDate(2026, 3, 1)}});
        RegistroStore store(t.db());
        const DescriptorTabla& puestos = descriptorRequerido(u"PuestosActivos"_s);
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
        a.escribir(claves::DIAS_COMPACTACION, u"15"_s);
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), u"15"_s);
        a.completarPorDefecto();
        QCOMPARE(a.leer(claves::DIAS_COMPACTACION), u"15"_s);
        QCOMPARE(a.leer(claves::MULTIPUESTO), u"SI"_s);
    }

    // A committed write survives a power cut (SQLite writes through at every commit) and the
    // references are enforced on every connection.
    void escrituraSeguraYReferencias() {
        TestDb t;
        if (t.db().motor() != Motor::SQLite) QSKIP("SQLite only");
        QCOMPARE(t.db().valor(u"PRAGMA synchronous"_s).toInt(), 2);
        QCOMPARE(t.db().valor(u"PRAGMA foreign_keys"_s).toInt(), 1);
        t.db().fijarEscrituraSegura(false);
        QCOMPARE(t.db().valor(u"PRAGMA synchronous"_s).toInt(), 1);
    }

    // Two operating-system users never share one workstation row; the same user's row is one
    // left by a crash and is taken over.
    void usuariosDelSistemaEnUnPuesto() {
        TestDb t;
        PuestosActivosStore p(t.db());
        const QDateTime ahora(QDate(2026, 11, 23), QTime(9, 0));
        QCOMPARE(p.entrar(u"RECEPCION"_s, u"juan"_s, ahora).resultado, EntradaPuesto::Dentro);
        const EntradaPuesto otro = p.entrar(u"RECEPCION"_s, u"maria"_s, ahora);
        QCOMPARE(otro.resultado, EntradaPuesto::OtroUsuarioSistema);
        QCOMPARE(otro.otroUsuario, u"juan"_s);
        QCOMPARE(p.entrar(u"RECEPCION"_s, u"juan"_s, ahora.addSecs(60)).resultado, EntradaPuesto::Dentro);
        QCOMPARE(p.contar(), qint64(1));
    }
};

PMX_STORE_TEST_MAIN(TestRegistros)
#include "test_registros.moc"
