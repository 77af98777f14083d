// Numbered series: no gaps inside the caller's transaction; retry and ask while another workstation holds it.
#include "app/numeracion.h"
#include "data/bloqueos.h"
#include "data/contadores.h"
#include "scripted_dialogs.h"
#include "test_db.h"

using namespace Qt::StringLiterals;

namespace {
const QString kSerieA = u"Facturas.A"_s;
const QString kAviso = u"Todavía no se ha podido localizar el siguiente nº de Factura de la serie A. "
                       "¿Desea seguir intentándolo? Si este aviso persiste contacte con un "
                       "Administrador."_s;

// Another workstation in the middle of taking a number of the series: its transaction
// holds the counter (on SQLite, the whole database) until it ends.
struct OtroPuestoTomando {
    std::unique_ptr<Database> db;
    std::optional<Transaction> tx;
    qint64 numero = 0;
    explicit OtroPuestoTomando(const TestDb& t, const QString& serie) : db(t.otraConexion()) {
        tx.emplace(db->transaccion());
        numero = ContadorStore(*db).tomarSiguiente(serie);
    }
    void terminar(bool confirmar) {
        if (confirmar)
            tx->commit();
        else
            tx->rollback();
        tx.reset();
    }
};
} // namespace

class TestContadores : public QObject {
    Q_OBJECT

private slots:
    void seriesIndependientes() {
        TestDb t;
        ContadorStore c(t.db());
        QCOMPARE(claveContador(u"Facturas"_s, u"A"_s), kSerieA);
        QCOMPARE(c.ultimo(kSerieA), 0);
        for (qint64 esperado = 1; esperado <= 3; ++esperado)
            QCOMPARE(c.tomarSiguiente(kSerieA), esperado);
        QCOMPARE(c.tomarSiguiente(u"Facturas.B"_s), 1);
        QCOMPARE(c.tomarSiguiente(u"Abonos.A"_s), 1);
        QCOMPARE(c.ultimo(kSerieA), 3);
        c.fijarUltimo(u"Facturas.B"_s, 999);
        c.fijarUltimo(u"Facturas.C"_s, 2000);
        QCOMPARE(c.tomarSiguiente(u"Facturas.B"_s), 1000);
        QCOMPARE(c.tomarSiguiente(u"Facturas.C"_s), 2001);
        QCOMPARE(c.tomarSiguiente(kSerieA), 4);
    }

    // The number belongs to the caller's transaction: undone with it, kept with it.
    void transaccionDelLlamador() {
        TestDb t;
        ContadorStore c(t.db());
        QCOMPARE(c.tomarSiguiente(kSerieA), 1);
        {
            Transaction tx = t.db().transaccion();
            QCOMPARE(c.tomarSiguiente(kSerieA), 2);
            QCOMPARE(c.tomarSiguiente(kSerieA), 3);
            tx.rollback();
        }
        QCOMPARE(c.ultimo(kSerieA), 1);
        {
            // A series first used inside a transaction that is undone leaves no row behind.
            Transaction tx = t.db().transaccion();
            QCOMPARE(c.tomarSiguiente(u"Abonos.Z"_s), 1);
        }
        QCOMPARE(t.db().valor(u"SELECT COUNT(*) FROM Contadores WHERE Serie = ?"_s, {u"Abonos.Z"_s}).toInt(),
                 0);
        {
            ScriptedDialogs d;
            qint64 n = 0;
            QVERIFY(reintentarNumeracion(d, u"Factura"_s, [&] {
                Transaction tx = t.db().transaccion();
                n = c.tomarSiguiente(kSerieA, kEsperaPorIntento);
                t.db().ejecutarCambio(u"INSERT INTO Parametros (Clave, Valor) VALUES (?, ?)"_s,
                                      {u"ULTIMA FACTURA"_s, u"A-2"_s});
                tx.commit();
            }));
            QCOMPARE(n, 2);
            QCOMPARE(d.progresos(), QStringList{u"Localizando el siguiente nº de Factura. Espere, por "
                                                "favor..."_s});
            QVERIFY(d.mensajes().isEmpty());
        }
        QCOMPARE(c.ultimo(kSerieA), 2);
        // Seen from another workstation too.
        auto otra = t.otraConexion();
        QCOMPARE(ContadorStore(*otra).tomarSiguiente(kSerieA), 3);
    }

    void avisoYRespuesta_data() {
        QTest::addColumn<QList<bool>>("respuestas");
        auto fila = [](const char* nombre, QList<bool> a0) { QTest::newRow(nombre) << a0; };
        fila("No a la primera", QList<bool>{false});
        fila("Sí y luego No", QList<bool>{true, false});
    }
    void avisoYRespuesta() {
        QFETCH(QList<bool>, respuestas);
        TestDb t;
        ContadorStore c(t.db());
        QCOMPARE(c.tomarSiguiente(kSerieA), 1);
        OtroPuestoTomando otro(t, kSerieA);
        ScriptedDialogs d;
        for (bool r : respuestas)
            d.responder(r);
        const QString que = u"Factura de la serie A"_s;
        qint64 n = 0;
        // The whole save is tried again; the question comes with no transaction open.
        auto guardar = [&] { n = c.tomarSiguiente(kSerieA, 30); };
        QVERIFY(!reintentarNumeracion(d, que, guardar, 2));
        QCOMPARE(n, 0);
        QCOMPARE(d.mensajes().size(), respuestas.size());
        QCOMPARE(d.sinRespuesta(), 0);
        for (const auto& m : d.mensajes()) {
            QVERIFY(m.pregunta);
            QCOMPARE(m.icono, Icono::Exclamacion);
            QCOMPARE(m.titulo, u"¡Atención!"_s);
            QCOMPARE(m.texto, kAviso);
        }
        QCOMPARE(
            d.progresos(),
            QStringList{u"Localizando el siguiente nº de Factura de la serie A. Espere, por favor..."_s});
        // The failed attempts took nothing, nor did the other workstation that gave up: numbering
        // goes on with the number it had taken.
        otro.terminar(false);
        ScriptedDialogs d2;
        QVERIFY(reintentarNumeracion(d2, que, guardar, 2));
        QCOMPARE(n, 2);
        QVERIFY(d2.mensajes().isEmpty());
    }

    // A failed attempt inside the caller's transaction leaves the caller's work intact.
    // (SQLite cannot show it: a transaction already holds the only write lock, so no
    // other workstation can be holding the counter.)
    void intentoFallidoNoEstropeaLaTransaccion() {
        TestDb t;
        if (t.db().esSQLite()) QSKIP("Con SQLite la transacción del llamador ya tiene la B.D. para sí.");
        ContadorStore c(t.db());
        QCOMPARE(c.tomarSiguiente(kSerieA), 1);
        OtroPuestoTomando otro(t, kSerieA);
        {
            Transaction tx = t.db().transaccion();
            t.db().ejecutarCambio(u"INSERT INTO Parametros (Clave, Valor) VALUES (?, ?)"_s,
                                  {u"PRUEBA"_s, u"sigue"_s});
            try {
                c.tomarSiguiente(kSerieA, 30);
                QFAIL("se esperaba que el contador estuviera ocupado");
            } catch (const ErrorBD& e) {
                QVERIFY(esErrorDeConcurrencia(e));
            }
            QCOMPARE(c.tomarSiguiente(u"Facturas.B"_s), 1);
            tx.commit();
        }
        QCOMPARE(t.db().valor(u"SELECT Valor FROM Parametros WHERE Clave = ?"_s, {u"PRUEBA"_s}).toString(),
                 u"sigue"_s);
        QCOMPARE(c.ultimo(u"Facturas.B"_s), 1);
        otro.terminar(true);
        QCOMPARE(c.tomarSiguiente(kSerieA), 3);
    }

    // Failures other than "held elsewhere" are not retried nor asked about.
    void otrosErroresNoSeReintentan() {
        TestDb t;
        t.db().ejecutarDirecto(u"DROP TABLE Contadores"_s);
        ContadorStore c(t.db());
        ScriptedDialogs d;
        d.si();
        try {
            reintentarNumeracion(
                d, u"Factura"_s, [&] { c.tomarSiguiente(kSerieA, 30); }, 1);
            QFAIL("se esperaba un error de la base de datos");
        } catch (const ErrorBD& e) {
            QVERIFY(!esErrorDeConcurrencia(e));
            QVERIFY(e.texto().contains(u"contadores"_s, Qt::CaseInsensitive));
        }
        QVERIFY(d.mensajes().isEmpty());
        QCOMPARE(d.respuestasPendientes(), 1);
    }
};

PMX_STORE_TEST_MAIN(TestContadores)
#include "test_contadores.moc"
