// The delivery-note search: every criterion alone and together, names without case or
// accents, the states, the newest-first order, the cells of the grid, the refused dates and
// numbers (nothing lost), the client fixed by the opener, the row limit and the choice.
#include "clients/cliente_busqueda_store.h"
#include "core/formatos.h"
#include "data/esquema.h"
#include "sales/albaran_busqueda_form.h"
#include "scripted_dialogs.h"
#include "test_db.h"

namespace {
qint64 cliente(Database& db, const QString& nombre) {
    db.ejecutarCambio(QStringLiteral("INSERT INTO Clientes (Nombre, NombreBusqueda) VALUES (?, ?)"),
                      {nombre, normalizarBusqueda(nombre)});
    return db.valor(QStringLiteral("SELECT MAX(IdCliente) FROM Clientes")).toLongLong();
}

qint64 mascota(Database& db, qint64 idCliente, const QString& nombre) {
    db.ejecutarCambio(
        QStringLiteral("INSERT INTO Mascotas (IdCliente, Nombre, NombreBusqueda) VALUES (?, ?, ?)"),
        {idCliente, nombre, normalizarBusqueda(nombre)});
    return db.valor(QStringLiteral("SELECT MAX(IdMascota) FROM Mascotas")).toLongLong();
}

struct Nota {
    QString serie;
    qint64 numAlbaran = 0;
    QDate fecha;
    QTime hora; // invalid: no time
    qint64 idCliente = 0;
    qint64 idMascota = 0; // 0: no pet
    double total = 0, pendiente = 0;
    qint64 numFactura = 0; // 0: not invoiced
    QString serieFactura;
    QVariant cobrado; // null, true or false
};

qint64 albaran(Database& db, const Nota& n) {
    const QVariant nulo;
    db.ejecutarCambio(
        QStringLiteral("INSERT INTO Albaranes (Serie, NumAlbaran, Fecha, Hora, IdCliente, IdMascota, "
                       "NumFactura, SerieFactura, Cobrado, Total, Pendiente) "
                       "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
        {n.serie, n.numAlbaran, n.fecha, n.hora.isValid() ? QVariant(n.hora) : nulo, n.idCliente,
         n.idMascota ? QVariant(n.idMascota) : nulo, n.numFactura ? QVariant(n.numFactura) : nulo,
         n.serieFactura.isEmpty() ? nulo : QVariant(n.serieFactura), n.cobrado, n.total, n.pendiente});
    return db
        .valor(QStringLiteral("SELECT IdAlbaran FROM Albaranes WHERE Serie = ? AND NumAlbaran = ?"),
               {n.serie, n.numAlbaran})
        .toLongLong();
}

// "A1 B2 ..." : series and number of each row, in the order found.
QString numeros(const QList<FilaAlbaranBusqueda>& filas) {
    QStringList r;
    for (const auto& f : filas)
        r << f.Serie + QString::number(f.NumAlbaran);
    return r.join(QLatin1Char(' '));
}
} // namespace

class TestAlbaranBusqueda : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 10), QTime(10, 0))};

    struct Clinica {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        qint64 jose = 0, ana = 0, luis = 0;
        qint64 a3 = 0, r1 = 0;
    };

    // Newest first: R1 (02/03) A4 (01/03) B3 (15/02 19:00) B2 (15/02 18:00) B1 (15/02, no time) A3 (01/02)
    // A2 (10/01 11:30) A1 (10/01 09:00).
    std::unique_ptr<Clinica> clinica() {
        auto c = std::make_unique<Clinica>();
        Database& db = c->t.db();
        migrarEsquema(db);
        c->e = std::make_unique<Entorno>(db, c->d, reloj_);
        const QString sql = QStringLiteral("INSERT INTO Series (Serie, Descripcion, Tipo) VALUES (?, ?, ?)");
        db.ejecutarCambio(sql, {QStringLiteral("B"), QStringLiteral("Clínica"), QStringLiteral("V")});
        db.ejecutarCambio(sql, {QStringLiteral("A"), QStringLiteral("Ventas"), QStringLiteral("V")});
        db.ejecutarCambio(sql, {QStringLiteral("R"), QStringLiteral("Abonos"), QStringLiteral("A")});
        c->jose = cliente(db, QStringLiteral("Núñez Pérez, José"));
        c->ana = cliente(db, QStringLiteral("Pérez Núñez, Ana"));
        c->luis = cliente(db, QStringLiteral("García Gil, Luis"));
        const qint64 tobias = mascota(db, c->jose, QStringLiteral("Tobías"));
        const qint64 misi = mascota(db, c->jose, QStringLiteral("Misi"));
        const qint64 kira = mascota(db, c->ana, QStringLiteral("Kira"));
        const QString A = QStringLiteral("A"), B = QStringLiteral("B"), R = QStringLiteral("R");
        // Pending invoicing and collection.
        albaran(db, {A, 1, QDate(2026, 1, 10), QTime(9, 0), c->jose, tobias, 36.30, 36.30, 0, {}, {}});
        // Collected, not invoiced.
        albaran(db, {A, 2, QDate(2026, 1, 10), QTime(11, 30), c->ana, kira, 12.10, 0, 0, {}, true});
        // Invoiced and collected.
        c->a3 = albaran(db, {A, 3, QDate(2026, 2, 1), QTime(10, 0), c->jose, misi, 50.00, 0, 7, A, true});
        // Invoiced on an invoice without series, partly collected, no time.
        albaran(db, {B, 1, QDate(2026, 2, 15), QTime(), c->luis, 0, 1234.50, 1000.00, 12, {}, {}});
        // A zero note: neither collected nor pending collection.
        albaran(db, {B, 2, QDate(2026, 2, 15), QTime(18, 0), c->ana, 0, 0, 0, 0, {}, false});
        // Nothing pending of a non-zero total, not marked: collected.
        albaran(db, {A, 4, QDate(2026, 3, 1), QTime(8, 0), c->jose, tobias, 8.25, 0, 0, {}, {}});
        // A zero note marked as collected: collected, though nothing was ever to be collected.
        albaran(db, {B, 3, QDate(2026, 2, 15), QTime(19, 0), c->luis, 0, 0, 0, 0, {}, true});
        // A credit note: negative total, nothing pending.
        c->r1 = albaran(db, {R, 1, QDate(2026, 3, 2), QTime(12, 0), c->ana, 0, -12.10, 0, 0, {}, {}});
        return c;
    }

private slots:
    void criterios_data() {
        QTest::addColumn<QString>("serie");
        QTest::addColumn<QString>("numAlbaran");
        QTest::addColumn<QString>("cliente");
        QTest::addColumn<bool>("enCualquierParte");
        QTest::addColumn<QString>("mascota");
        QTest::addColumn<QString>("desde");
        QTest::addColumn<QString>("hasta");
        QTest::addColumn<int>("estado");
        QTest::addColumn<QString>("esperados");
        const int todos = int(EstadoAlbaran::Todos);
        const QString n;
        QTest::newRow("sin condiciones: los más recientes primero")
            << n << n << n << false << n << n << n << todos << "R1 A4 B3 B2 B1 A3 A2 A1";
        QTest::newRow("serie") << "B" << n << n << false << n << n << n << todos << "B3 B2 B1";
        QTest::newRow("número") << n << " 1 " << n << false << n << n << n << todos << "R1 B1 A1";
        QTest::newRow("número que no existe") << n << "99" << n << false << n << n << n << todos << "";
        QTest::newRow("cliente al comienzo, sin acentos")
            << n << n << "nunez" << false << n << n << n << todos << "A4 A3 A1";
        QTest::newRow("cliente al comienzo no es en cualquier parte")
            << n << n << "perez" << false << n << n << n << todos << "R1 B2 A2";
        QTest::newRow("cliente en cualquier parte")
            << n << n << "NUÑEZ" << true << n << n << n << todos << "R1 A4 B2 A3 A2 A1";
        QTest::newRow("el % es un carácter") << n << n << "%" << true << n << n << n << todos << "";
        QTest::newRow("texto con comillas")
            << n << n << "'; DELETE FROM Albaranes; --" << true << n << n << n << todos << "";
        QTest::newRow("mascota al comienzo") << n << n << n << false << "tob" << n << n << todos << "A4 A1";
        QTest::newRow("mascota: no en medio del nombre")
            << n << n << n << false << "bías" << n << n << todos << "";
        QTest::newRow("desde") << n << n << n << false << n << "15/02/2026" << n << todos << "R1 A4 B3 B2 B1";
        QTest::newRow("hasta, día incluido")
            << n << n << n << false << n << n << "10/01/2026" << todos << "A2 A1";
        QTest::newRow("fecha con día y mes de una cifra") << n << n << n << false << n << "1/2/2026"
                                                          << " 1/2/2026 " << todos << "A3";
        QTest::newRow("pendientes de facturar")
            << n << n << n << false << n << n << n << int(EstadoAlbaran::PendientesFacturar)
            << "R1 A4 B3 B2 A2 A1";
        QTest::newRow("facturados") << n << n << n << false << n << n << n << int(EstadoAlbaran::Facturados)
                                    << "B1 A3";
        QTest::newRow("pendientes de cobro")
            << n << n << n << false << n << n << n << int(EstadoAlbaran::PendientesCobro) << "B1 A1";
        QTest::newRow("cobrados") << n << n << n << false << n << n << n << int(EstadoAlbaran::Cobrados)
                                  << "R1 A4 B3 A3 A2";
        QTest::newRow("todo a la vez") << "A"
                                       << "4"
                                       << "núñez" << false << "tobi"
                                       << "01/03/2026"
                                       << "01/03/2026" << int(EstadoAlbaran::PendientesFacturar) << "A4";
    }
    void criterios() {
        QFETCH(QString, serie);
        QFETCH(QString, numAlbaran);
        QFETCH(QString, cliente);
        QFETCH(bool, enCualquierParte);
        QFETCH(QString, mascota);
        QFETCH(QString, desde);
        QFETCH(QString, hasta);
        QFETCH(int, estado);
        QFETCH(QString, esperados);
        auto c = clinica();
        AlbaranBusquedaForm f(*c->e);
        f.serie = serie;
        f.numAlbaran = numAlbaran;
        f.cliente = cliente;
        f.clienteEnCualquierParte = enCualquierParte;
        f.mascota = mascota;
        f.desde = desde;
        f.hasta = hasta;
        f.estado = EstadoAlbaran(estado);
        QVERIFY(f.buscar());
        QCOMPARE(numeros(f.resultado()), esperados);
        QCOMPARE(f.nota(), esperados.isEmpty()
                               ? QStringLiteral("Ningún albarán cumple las condiciones especificadas.")
                               : QString());
        QVERIFY(c->d.mensajes().isEmpty());
        QCOMPARE(c->t.db().valor(QStringLiteral("SELECT COUNT(*) FROM Albaranes")).toInt(), 8);
    }

    void celdas() {
        auto c = clinica();
        AlbaranBusquedaForm f(*c->e);
        QCOMPARE(AlbaranBusquedaForm::columnas(),
                 QStringList({QStringLiteral("Serie"), QStringLiteral("Nº Albarán"), QStringLiteral("Fecha"),
                              QStringLiteral("Cliente"), QStringLiteral("Mascota"), QStringLiteral("Total"),
                              QStringLiteral("Pendiente"), QStringLiteral("Factura")}));
        QVERIFY(f.buscar());
        QCOMPARE(numeros(f.resultado()), QStringLiteral("R1 A4 B3 B2 B1 A3 A2 A1"));
        // R1: negative total, no pet, not invoiced.
        QCOMPARE(f.celdas(0),
                 QStringList({QStringLiteral("R"), QStringLiteral("1"), QStringLiteral("02/03/2026"),
                              QStringLiteral("Pérez Núñez, Ana"), QString(), QStringLiteral("-12,10"),
                              QStringLiteral("0,00"), QString()}));
        // B1: thousands, invoice without series.
        QCOMPARE(f.celdas(4),
                 QStringList({QStringLiteral("B"), QStringLiteral("1"), QStringLiteral("15/02/2026"),
                              QStringLiteral("García Gil, Luis"), QString(), QStringLiteral("1.234,50"),
                              QStringLiteral("1.000,00"), QStringLiteral("12")}));
        // A3: invoice "SERIE-NUM".
        QCOMPARE(f.celdas(5),
                 QStringList({QStringLiteral("A"), QStringLiteral("3"), QStringLiteral("01/02/2026"),
                              QStringLiteral("Núñez Pérez, José"), QStringLiteral("Misi"),
                              QStringLiteral("50,00"), QStringLiteral("0,00"), QStringLiteral("A-7")}));
        QCOMPARE(f.resultado().at(5).IdAlbaran, c->a3);
        QCOMPARE(f.resultado().at(5).Hora, QTime(10, 0));
        QVERIFY(!f.resultado().at(4).Hora.isValid());
        QVERIFY(f.celdas(8).isEmpty());
        QVERIFY(f.celdas(-1).isEmpty());
    }

    void seriesYEstados() {
        auto c = clinica();
        AlbaranBusquedaForm f(*c->e);
        QStringList textos;
        for (const SerieVenta& s : f.series())
            textos << s.serie + QLatin1Char(':') + s.texto;
        QCOMPARE(textos, QStringList({QStringLiteral(":(Todas)"), QStringLiteral("A:A - Ventas"),
                                      QStringLiteral("B:B - Clínica")}));
        QCOMPARE(AlbaranBusquedaForm::estados(),
                 QStringList({QStringLiteral("Todos"), QStringLiteral("Pendientes de facturar"),
                              QStringLiteral("Facturados"), QStringLiteral("Pendientes de cobro"),
                              QStringLiteral("Cobrados")}));
    }

    // A refused criterion shows why, searches nothing and keeps the previous result and what
    // was typed; the checks run in a fixed order (number, first date, last date, the pair).
    void criteriosRechazados() {
        const QString fecha = QStringLiteral("Error en fecha"),
                      dato = QStringLiteral("Información introducida errónea");
        const QString inicial = QStringLiteral("La fecha inicial introducida no es válida.");
        const QString numero = QStringLiteral("El número de albarán introducido no es válido.");
        const QList<QStringList> casos = {
            {"", "31/02/2026", "", fecha, inicial},
            {"", "01/02/26", "", fecha, inicial},
            {"", "", "2026-03-01", fecha, QStringLiteral("La fecha final introducida no es válida.")},
            {"", "02/03/2026", "01/03/2026", fecha,
             QStringLiteral("La fecha inicial no puede ser posterior a la fecha final.")},
            {"12a", "", "", dato, numero},
            {"-3", "", "", dato, numero},
            {"1.000", "", "", dato, numero},
            {"x", "99/99/9999", "", dato, numero},
            {"", "0/1/2026", "ayer", fecha, inicial}};
        auto c = clinica();
        AlbaranBusquedaForm f(*c->e);
        f.serie = QStringLiteral("B");
        QVERIFY(f.buscar());
        for (const QStringList& caso : casos) {
            c->d.limpiar();
            f.numAlbaran = caso.at(0);
            f.desde = caso.at(1);
            f.hasta = caso.at(2);
            QVERIFY(!f.buscar());
            QCOMPARE(c->d.mensajes().size(), 1);
            QCOMPARE(c->d.ultimo().icono, Icono::Exclamacion);
            QCOMPARE(c->d.ultimo().titulo, caso.at(3));
            QCOMPARE(c->d.ultimo().texto, caso.at(4));
            QCOMPARE(numeros(f.resultado()), QStringLiteral("B3 B2 B1"));
            QCOMPARE(QStringList({f.numAlbaran, f.desde, f.hasta}), caso.mid(0, 3));
        }
    }

    void clienteFijado() {
        auto c = clinica();
        AlbaranBusquedaForm f(*c->e, c->jose);
        QVERIFY(c->d.mensajes().isEmpty());
        QCOMPARE(f.clienteFijo(), std::optional<qint64>(c->jose));
        QCOMPARE(f.nombreClienteFijo(), QStringLiteral("Núñez Pérez, José"));
        QVERIFY(f.buscarAlAbrir());
        QVERIFY(f.buscar());
        QCOMPARE(numeros(f.resultado()), QStringLiteral("A4 A3 A1"));
        // The typed client name cannot widen nor change the fixed client.
        f.cliente = QStringLiteral("pérez");
        QVERIFY(f.buscar());
        QCOMPARE(numeros(f.resultado()), QStringLiteral("A4 A3 A1"));
        // The other criteria still apply.
        f.estado = EstadoAlbaran::PendientesCobro;
        QVERIFY(f.buscar());
        QCOMPARE(numeros(f.resultado()), QStringLiteral("A1"));
        f.estado = EstadoAlbaran::Todos;
        f.mascota = QStringLiteral("misi");
        QVERIFY(f.buscar());
        QCOMPARE(numeros(f.resultado()), QStringLiteral("A3"));

        AlbaranBusquedaForm libre(*c->e);
        QVERIFY(!libre.clienteFijo());
        QVERIFY(!libre.buscarAlAbrir());
        QVERIFY(libre.nombreClienteFijo().isEmpty());
    }

    void clienteFijadoInexistente() {
        auto c = clinica();
        AlbaranBusquedaForm f(*c->e, 999);
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().icono, Icono::Critico);
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Error al intentar acceder al Cliente nº: 999."));
        QCOMPARE(c->d.ultimo().texto, QStringLiteral("Ha sido imposible recuperar la información solicitada. "
                                                     "Puede que el Cliente haya sido eliminado."));
        QVERIFY(f.nombreClienteFijo().isEmpty());
        // It never shows somebody else's notes.
        QVERIFY(f.buscar());
        QVERIFY(f.resultado().isEmpty());
        QCOMPARE(f.nota(), QStringLiteral("Ningún albarán cumple las condiciones especificadas."));
    }

    void limiteDeFilas() {
        TestDb t;
        ScriptedDialogs d;
        migrarEsquema(t.db());
        Entorno e(t.db(), d, reloj_);
        const qint64 id = cliente(t.db(), QStringLiteral("Cliente de Prueba"));
        {
            Transaction tx = t.db().transaccion();
            // 501 notes, one a day: number n on 1 January 2025 + n days.
            for (int n = 1; n <= AlbaranBusquedaForm::kMaxFilas + 1; ++n)
                albaran(t.db(), {QStringLiteral("A"),
                                 n,
                                 QDate(2025, 1, 1).addDays(n),
                                 QTime(9, 0),
                                 id,
                                 0,
                                 1,
                                 1,
                                 0,
                                 {},
                                 {}});
            tx.commit();
        }
        AlbaranBusquedaForm f(e);
        QVERIFY(f.buscar());
        QCOMPARE(f.resultado().size(), AlbaranBusquedaForm::kMaxFilas);
        QCOMPARE(f.resultado().first().NumAlbaran, qint64(501));
        QCOMPARE(f.resultado().last().NumAlbaran, qint64(2));
        QCOMPARE(f.nota(),
                 QStringLiteral("Se muestran sólo los 500 albaranes más recientes. Añada condiciones "
                                "para afinar la búsqueda."));
        // Exactly the limit: no note.
        f.desde = formatoFecha(QDate(2025, 1, 3)); // notes 2..501
        QVERIFY(f.buscar());
        QCOMPARE(f.resultado().size(), AlbaranBusquedaForm::kMaxFilas);
        QVERIFY(f.nota().isEmpty());
        QVERIFY(d.mensajes().isEmpty());
    }

    void aceptar() {
        auto c = clinica();
        AlbaranBusquedaForm f(*c->e);
        // Nothing found yet: nothing to choose.
        QVERIFY(!f.aceptar(0));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(c->d.ultimo().texto, QStringLiteral("Debe seleccionar un albarán de la lista."));
        QVERIFY(!f.elegido());
        QVERIFY(f.buscar());
        QVERIFY(!f.aceptar(-1));
        QVERIFY(!f.aceptar(8));
        QCOMPARE(c->d.mensajes().size(), 3);
        QVERIFY(f.aceptar(0));
        QCOMPARE(f.elegido(), std::optional<qint64>(c->r1));
        QVERIFY(f.aceptar(5));
        QCOMPARE(f.elegido(), std::optional<qint64>(c->a3));
        // A new search forgets the choice.
        QVERIFY(f.buscar());
        QVERIFY(!f.elegido());
    }
};

PMX_STORE_TEST_MAIN(TestAlbaranBusqueda)
#include "test_albaran_busqueda.moc"
