// Races between workstations, each one a separate operating-system process
// (pmx_trabajador_carrera) with its own connection to the same database.
#include "data/bloqueos.h"
#include "data/contadores.h"
#include "data/ajustes.h"
#include "data/puestos.h"
#include "sales/albaran_store.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QProcess>
#include <algorithm>
#include <memory>
#include <set>

namespace {
constexpr int kProcesos = 4;
constexpr int kRondas = 40;
constexpr int kNumerosPorProceso = 40;
constexpr int kRondasRegistros = 50;

class Trabajador {
public:
    Trabajador(const TestDb& t, const QStringList& argumentos) {
        p_.setProgram(QStringLiteral(TRABAJADOR_CARRERA));
        p_.setArguments(QStringList{TestDb::motorDePrueba() == Motor::SQLite ? QStringLiteral("sqlite")
                                                                             : QStringLiteral("postgresql"),
                                    t.origen()} +
                        argumentos);
        p_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p_.start();
    }
    ~Trabajador() {
        if (p_.state() != QProcess::NotRunning) {
            p_.kill();
            p_.waitForFinished(10000);
        }
    }
    bool arrancado() { return p_.waitForStarted(30000); }
    // Writes the order through to the process at once (QProcess would otherwise keep it
    // until this process waits on that worker).
    void enviar(const QString& orden) {
        p_.write((orden + QLatin1Char('\n')).toUtf8());
        p_.waitForBytesWritten(30000);
    }
    // The next line of the answer; empty when none came in time or the process ended.
    QString linea(int ms = 120000) {
        while (!p_.canReadLine())
            if (!p_.waitForReadyRead(ms)) return {};
        return QString::fromUtf8(p_.readLine()).trimmed();
    }
    bool terminado(int ms = 120000) { return p_.waitForFinished(ms); }
    int codigo() const { return p_.exitCode(); }
    QProcess& proceso() { return p_; }

private:
    QProcess p_;
};

using Trabajadores = std::vector<std::unique_ptr<Trabajador>>;

QString nombre(int i) {
    return QStringLiteral("PUESTO%1").arg(i);
}

// Every worker answers one order; their answers in order. The orders carry a start time
// a little ahead, so that all the processes reach the database at the same moment
// instead of in the order in which they were written to.
QStringList ronda(Trabajadores& ts, const std::function<QString(int)>& orden) {
    const QString inicio = QStringLiteral("@%1 ").arg(QDateTime::currentMSecsSinceEpoch() + 40);
    for (int i = 0; i < static_cast<int>(ts.size()); ++i)
        ts[i]->enviar(inicio + orden(i));
    QStringList respuestas;
    for (auto& t : ts)
        respuestas << t->linea();
    return respuestas;
}

void terminar(Trabajadores& ts) {
    for (auto& t : ts)
        t->enviar(QStringLiteral("fin"));
    for (auto& t : ts) {
        QVERIFY(t->terminado());
        QCOMPARE(t->codigo(), 0);
    }
}
} // namespace

class TestCarrera : public QObject {
    Q_OBJECT

    Trabajadores arrancarBloqueos(const TestDb& t) {
        Trabajadores ts;
        for (int i = 0; i < kProcesos; ++i) {
            ts.push_back(std::make_unique<Trabajador>(t, QStringList{QStringLiteral("bloqueos"), nombre(i)}));
            if (!ts.back()->arrancado()) return {};
        }
        return ts;
    }

    qint64 filas(TestDb& t) {
        return t.db().valor(QStringLiteral("SELECT COUNT(*) FROM Bloqueos")).toLongLong();
    }

private slots:
    // Every round all the processes try the same key at once: exactly one gets it.
    void mismaClaveUnSoloGanador() {
        TestDb t;
        Trabajadores ts = arrancarBloqueos(t);
        QCOMPARE(static_cast<int>(ts.size()), kProcesos);
        QList<int> victorias(kProcesos, 0);
        for (int r = 0; r < kRondas; ++r) {
            const QStringList resp = ronda(ts, [](int) { return QStringLiteral("registro 7"); });
            QVERIFY2(resp.count(QStringLiteral("1")) == 1,
                     qPrintable(QStringLiteral("ronda %1: %2").arg(r).arg(resp.join(','))));
            QCOMPARE(resp.count(QStringLiteral("0")), kProcesos - 1);
            const int ganador = static_cast<int>(resp.indexOf(QStringLiteral("1")));
            ++victorias[ganador];
            QCOMPARE(filas(t), 1);
            QCOMPARE(t.db()
                         .valor(QStringLiteral("SELECT Puesto FROM Bloqueos WHERE claveBloqueo = ?"),
                                {QStringLiteral("Clientes 7")})
                         .toString(),
                     nombre(ganador));
            const QStringList liberados = ronda(ts, [](int) { return QStringLiteral("liberar"); });
            for (int i = 0; i < kProcesos; ++i)
                QCOMPARE(liberados.at(i), i == ganador ? QStringLiteral("1") : QStringLiteral("0"));
            QCOMPARE(filas(t), 0);
        }
        qInfo() << "victorias por proceso:" << victorias;
        terminar(ts);
    }

    // With one lock already standing, one process asks for the administrative lock while
    // the others lock three different records: either the administrative lock wins and
    // every record lock is refused, or it is refused and every record lock is taken.
    void administrativoContraRegistros() {
        TestDb t;
        ScriptedDialogs d;
        FixedClock reloj(QDateTime(QDate(2026, 1, 2), QTime(3, 4)));
        Bloqueos semilla(t.db(), d, reloj,
                   {QStringLiteral("semilla"), QStringLiteral("u"), QStringLiteral("P"), QString()});
        DescriptorTabla mascotas;
        mascotas.tabla = QStringLiteral("Mascotas");
        mascotas.descTabla = QStringLiteral("Mascota");
        QVERIFY(semilla.bloquearRegistro(mascotas, QStringLiteral("1"), QStringLiteral("Toby"), 1));

        Trabajadores ts = arrancarBloqueos(t);
        QCOMPARE(static_cast<int>(ts.size()), kProcesos);
        int ganaAdministrativo = 0;
        for (int r = 0; r < kRondas; ++r) {
            const int admin = r % kProcesos;
            const QStringList resp = ronda(ts, [&](int i) {
                return i == admin ? QStringLiteral("bd") : QStringLiteral("registro %1").arg(i);
            });
            const bool bd = resp.at(admin) == QLatin1String("1");
            QVERIFY2(resp.at(admin) == QLatin1String("1") || resp.at(admin) == QLatin1String("0"),
                     qPrintable(resp.join(',')));
            for (int i = 0; i < kProcesos; ++i)
                if (i != admin)
                    QVERIFY2(resp.at(i) == (bd ? QLatin1String("0") : QLatin1String("1")),
                             qPrintable(QStringLiteral("ronda %1: %2").arg(r).arg(resp.join(','))));
            QCOMPARE(filas(t), bd ? 2 : kProcesos);
            ganaAdministrativo += bd ? 1 : 0;
            ronda(ts, [](int) { return QStringLiteral("liberar"); });
            QCOMPARE(filas(t), 1);
        }
        qInfo() << "rondas ganadas por el bloqueo administrativo:" << ganaAdministrativo << "de" << kRondas;

        // All asking for the administrative lock at once: one gets it. The standing lock
        // is removed first, since with it and a winner the rest would be refused anyway.
        QVERIFY(semilla.desbloquearRegistro(mascotas, QStringLiteral("1")));
        for (int r = 0; r < kRondas / 2; ++r) {
            const QStringList resp = ronda(ts, [](int) { return QStringLiteral("bd"); });
            QVERIFY2(resp.count(QStringLiteral("1")) == 1, qPrintable(resp.join(',')));
            ronda(ts, [](int) { return QStringLiteral("liberar"); });
            QCOMPARE(filas(t), 0);
        }
        terminar(ts);
    }

    // Several processes take numbers of one series at once, undoing some of their
    // documents: the numbers kept are exactly 1..N×M, none twice, none missing.
    void contadorSinHuecosNiRepetidos() {
        TestDb t;
        Trabajadores ts;
        for (int i = 0; i < kProcesos; ++i) {
            ts.push_back(std::make_unique<Trabajador>(
                t, QStringList{QStringLiteral("contador"), QStringLiteral("Facturas.A"),
                               QString::number(kNumerosPorProceso), QString::number(5 + i)}));
            QVERIFY(ts.back()->arrancado());
        }
        std::vector<qint64> todos;
        for (auto& w : ts) {
            QVERIFY(w->terminado());
            QCOMPARE(w->codigo(), 0);
            const QStringList lineas = QString::fromUtf8(w->proceso().readAllStandardOutput())
                                           .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            QCOMPARE(lineas.size(), kNumerosPorProceso + 1);
            QCOMPARE(lineas.last(), QStringLiteral("fin"));
            qint64 anterior = 0;
            for (int i = 0; i < kNumerosPorProceso; ++i) {
                bool ok = false;
                const qint64 n = lineas.at(i).toLongLong(&ok);
                QVERIFY(ok);
                QVERIFY(n > anterior); // each process sees its numbers grow
                anterior = n;
                todos.push_back(n);
            }
        }
        std::sort(todos.begin(), todos.end());
        QCOMPARE(static_cast<int>(std::set<qint64>(todos.begin(), todos.end()).size()),
                 kProcesos * kNumerosPorProceso);
        for (int i = 0; i < static_cast<int>(todos.size()); ++i)
            QCOMPARE(todos.at(i), qint64(i + 1));
        QCOMPARE(ContadorStore(t.db()).ultimo(QStringLiteral("Facturas.A")),
                 qint64(kProcesos * kNumerosPorProceso));
    }

    // Workstations saving delivery notes of one series at the same time: every note gets its
    // own number, with no gap, and a note numbered by hand beforehand is gone past.
    void albaranesNumeradosSinRepetir() {
        TestDb t;
        t.db().ejecutarCambio(QStringLiteral("INSERT INTO Clientes (IdCliente, Nombre) VALUES (1, 'Ana')"));
        t.db().ejecutarCambio(QStringLiteral("INSERT INTO Albaranes (Serie, NumAlbaran, Fecha, IdCliente) "
                                             "VALUES (?, ?, ?, ?)"),
                              {QStringLiteral("A"), 5, QDate(2026, 11, 1), 1});
        constexpr int kNotas = 25;
        Trabajadores ts;
        for (int i = 0; i < kProcesos; ++i) {
            ts.push_back(std::make_unique<Trabajador>(
                t, QStringList{QStringLiteral("albaranes"), QStringLiteral("A"), QString::number(kNotas)}));
            QVERIFY(ts.back()->arrancado());
        }
        std::vector<qint64> todos;
        for (auto& w : ts) {
            QVERIFY(w->terminado());
            QCOMPARE(w->codigo(), 0);
            const QStringList lineas = QString::fromUtf8(w->proceso().readAllStandardOutput())
                                           .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            QCOMPARE(lineas.size(), kNotas + 1);
            for (int i = 0; i < kNotas; ++i)
                todos.push_back(lineas.at(i).toLongLong());
        }
        std::sort(todos.begin(), todos.end());
        for (int i = 0; i < static_cast<int>(todos.size()); ++i)
            QCOMPARE(todos.at(i), qint64(i + 6));
        QCOMPARE(
            t.db()
                .valor(QStringLiteral("SELECT COUNT(DISTINCT NumAlbaran) FROM Albaranes WHERE Serie = ?"),
                       {QStringLiteral("A")})
                .toInt(),
            kProcesos * kNotas + 1);
        QCOMPARE(t.db().valor(QStringLiteral("SELECT COUNT(*) FROM LineasAlbaran")).toInt(),
                 kProcesos * kNotas);
    }

    // Two workstations save the same record, read by both before either saves: the second
    // save is refused, the first one's data stays, and a column moved meanwhile by its own
    // operation (balance, hospitalisation, stock) is never written back.
    void mismoRegistroDosPuestos_data() {
        QTest::addColumn<QString>("tabla");
        QTest::addColumn<QString>("clave");
        QTest::addColumn<QString>("columna");
        QTest::addColumn<QString>("deOperacion");
        QTest::newRow("cliente") << "Clientes" << "IdCliente" << "Nombre" << "Deuda";
        QTest::newRow("mascota") << "Mascotas" << "IdMascota" << "Nombre" << "NumHospitalizacion";
        QTest::newRow("artículo") << "Articulos" << "ArtCodArticulo" << "Articulo" << "Stock";
        QTest::newRow("albarán") << "Albaranes" << "IdAlbaran" << "IdVendedor" << "";
    }
    void mismoRegistroDosPuestos() {
        QFETCH(QString, tabla);
        QFETCH(QString, clave);
        QFETCH(QString, columna);
        QFETCH(QString, deOperacion);
        TestDb t;
        t.db().ejecutarCambio(QStringLiteral("INSERT INTO Clientes (IdCliente, Nombre, Deuda) VALUES (1, 'Ana', 0)"));
        t.db().ejecutarCambio(QStringLiteral("INSERT INTO Mascotas (IdMascota, IdCliente, Nombre, NumHospitalizacion) "
                                             "VALUES (1, 1, 'Toby', 0)"));
        t.db().ejecutarCambio(QStringLiteral("INSERT INTO Articulos (ArtCodArticulo, Articulo, Stock) VALUES (1, 'Pienso', 0)"));
        if (tabla == QLatin1String("Albaranes")) {
            Albaran a;
            a.serie = QStringLiteral("A");
            a.fecha = QDate(2026, 11, 20);
            a.idCliente = 1;
            LineaAlbaran l;
            l.concepto = QStringLiteral("Consulta");
            l.cantidad = 1;
            l.pvp = 30;
            l.iva = 21;
            a.anadirLinea(l);
            QVERIFY(AlbaranStore(t.db()).guardar(a));
            QCOMPARE(*a.IdAlbaran, qint64(1));
        }
        Trabajadores ts;
        for (int i = 0; i < 2; ++i) {
            ts.push_back(std::make_unique<Trabajador>(t, QStringList{QStringLiteral("registros")}));
            QVERIFY(ts.back()->arrancado());
        }
        const QString seleccion = QStringLiteral("SELECT %1 FROM %2 WHERE %3 = 1");
        for (int r = 1; r <= kRondasRegistros; ++r) {
            QCOMPARE(ronda(ts, [&](int) { return QStringLiteral("leer %1 1").arg(tabla); }), QStringList({"1", "1"}));
            if (!deOperacion.isEmpty())
                t.db().ejecutarCambio(
                    QStringLiteral("UPDATE %1 SET %2 = %2 + 1 WHERE %3 = 1").arg(tabla, deOperacion, clave));
            const QStringList resp =
                ronda(ts, [&](int i) { return QStringLiteral("guardar %1 %2%3").arg(columna).arg(r).arg(i); });
            QVERIFY2(resp.count(QStringLiteral("1")) == 1 && resp.count(QStringLiteral("0")) == 1,
                     qPrintable(QStringLiteral("ronda %1: %2").arg(r).arg(resp.join(','))));
            const int ganador = static_cast<int>(resp.indexOf(QStringLiteral("1")));
            QCOMPARE(t.db().valor(seleccion.arg(columna, tabla, clave)).toString(), QStringLiteral("%1%2").arg(r).arg(ganador));
            if (!deOperacion.isEmpty())
                QCOMPARE(t.db().valor(seleccion.arg(deOperacion, tabla, clave)).toDouble(), double(r));
        }
        terminar(ts);
    }

    // One workstation deletes a client while another adds a pet to it: never a pet without
    // its client, whichever wins.
    void clienteBorradoMientrasSeAnadeMascota() {
        TestDb t;
        Trabajadores ts;
        for (int i = 0; i < 2; ++i) {
            ts.push_back(std::make_unique<Trabajador>(t, QStringList{QStringLiteral("registros")}));
            QVERIFY(ts.back()->arrancado());
        }
        for (int r = 1; r <= kRondasRegistros; ++r) {
            t.db().ejecutarCambio(QStringLiteral("INSERT INTO Clientes (IdCliente, Nombre) VALUES (?, 'Ana')"), {r});
            const QStringList resp = ronda(ts, [r](int i) {
                return i == 0 ? QStringLiteral("borrarcliente %1").arg(r) : QStringLiteral("mascota %1").arg(r);
            });
            QVERIFY2(!resp.contains(QStringLiteral("E")), qPrintable(resp.join(',')));
            QVERIFY2(resp.count(QStringLiteral("1")) == 1, qPrintable(QStringLiteral("ronda %1: %2").arg(r).arg(resp.join(','))));
            QCOMPARE(t.db()
                         .valor(QStringLiteral("SELECT COUNT(*) FROM Mascotas m WHERE NOT EXISTS "
                                               "(SELECT 1 FROM Clientes c WHERE c.IdCliente = m.IdCliente)"))
                         .toInt(),
                     0);
        }
        terminar(ts);
    }

    // Switching to single-workstation mode while another workstation starts: either the
    // switch is refused or the workstation is, never both let through.
    void monopuestoContraEntrada() {
        TestDb t;
        Ajustes(t.db()).escribir(claves::PUESTO_SERVIDOR, QStringLiteral("SERVIDOR"));
        Trabajadores ts;
        for (int i = 0; i < 2; ++i) {
            ts.push_back(std::make_unique<Trabajador>(t, QStringList{QStringLiteral("registros")}));
            QVERIFY(ts.back()->arrancado());
        }
        for (int r = 1; r <= kRondasRegistros; ++r) {
            Ajustes(t.db()).escribir(claves::MULTIPUESTO, QStringLiteral("SI"));
            const QStringList resp = ronda(ts, [](int i) {
                return i == 0 ? QStringLiteral("monopuesto") : QStringLiteral("entrar PUESTO1");
            });
            QVERIFY2(resp.count(QStringLiteral("1")) == 1, qPrintable(QStringLiteral("ronda %1: %2").arg(r).arg(resp.join(','))));
            const bool dentro = PuestosActivosStore(t.db()).contar() > 0;
            const bool no = Ajustes(t.db()).leer(claves::MULTIPUESTO) == QStringLiteral("NO");
            QVERIFY(dentro != no);
            ronda(ts, [](int i) { return i == 0 ? QStringLiteral("salir NADIE") : QStringLiteral("salir PUESTO1"); });
        }
        terminar(ts);
    }

    // A process killed while its transaction holds a number: the number is handed out
    // again and the database is intact.
    // Quotes numbered by several processes: no number twice, none skipped. Then every process
    // makes the same quote into a note at once: one note only. A process killed in the middle
    // of a conversion leaves neither the note nor the accepted state.
    void presupuestosYConversion() {
        TestDb t;
        t.db().ejecutarCambio(QStringLiteral("INSERT INTO Clientes (IdCliente, Nombre) VALUES (1, 'Ana')"));
        constexpr int kCuantos = 15;
        std::vector<qint64> todos;
        {
            Trabajadores ts;
            for (int i = 0; i < kProcesos; ++i)
                ts.push_back(std::make_unique<Trabajador>(
                    t, QStringList{QStringLiteral("presupuestos"), QString::number(kCuantos)}));
            for (auto& w : ts) {
                QVERIFY(w->terminado());
                QCOMPARE(w->codigo(), 0);
                const QStringList lineas = QString::fromUtf8(w->proceso().readAllStandardOutput())
                                               .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
                QCOMPARE(lineas.size(), kCuantos + 1);
                for (int i = 0; i < kCuantos; ++i)
                    todos.push_back(lineas.at(i).toLongLong());
            }
        }
        std::sort(todos.begin(), todos.end());
        for (int i = 0; i < static_cast<int>(todos.size()); ++i)
            QCOMPARE(todos.at(i), qint64(i + 1));

        const qint64 id = t.db().valor(QStringLiteral("SELECT MIN(IdPresupuesto) FROM Presupuestos")).toLongLong();
        {
            Trabajador w(t, {QStringLiteral("convertir"), QString::number(id), QStringLiteral("colgado")});
            QCOMPARE(w.linea(), QStringLiteral("1"));
            w.proceso().kill();
            QVERIFY(w.terminado());
        }
        QCOMPARE(t.db().valor(QStringLiteral("SELECT COUNT(*) FROM Albaranes")).toInt(), 0);
        QCOMPARE(t.db().valor(QStringLiteral("SELECT Estado FROM Presupuestos WHERE IdPresupuesto = ?"), {id}).toString(),
                 QStringLiteral("P"));

        Trabajadores ts;
        for (int i = 0; i < kProcesos; ++i)
            ts.push_back(std::make_unique<Trabajador>(t, QStringList{QStringLiteral("convertir"), QString::number(id)}));
        int ganadores = 0;
        for (auto& w : ts) {
            QVERIFY(w->terminado());
            QCOMPARE(w->codigo(), 0);
            ganadores += QString::fromUtf8(w->proceso().readAllStandardOutput()).trimmed() == QStringLiteral("1");
        }
        QCOMPARE(ganadores, 1);
        QCOMPARE(t.db().valor(QStringLiteral("SELECT COUNT(*) FROM Albaranes")).toInt(), 1);
        QCOMPARE(t.db().valor(QStringLiteral("SELECT NumAlbaran FROM Albaranes")).toLongLong(), 1);
        QCOMPARE(t.db().valor(QStringLiteral("SELECT IdAlbaran FROM Presupuestos WHERE IdPresupuesto = ?"), {id}),
                 t.db().valor(QStringLiteral("SELECT IdAlbaran FROM Albaranes")));
    }

    void procesoMuertoNoDejaHueco() {
        TestDb t;
        ContadorStore c(t.db());
        for (int i = 1; i <= 5; ++i)
            QCOMPARE(c.tomarSiguiente(QStringLiteral("Facturas.A")), qint64(i));
        for (int vez = 0; vez < 3; ++vez) {
            Trabajador w(t, {QStringLiteral("colgado"), QStringLiteral("Facturas.A")});
            QVERIFY(w.arrancado());
            bool ok = false;
            const qint64 tomado = w.linea().toLongLong(&ok);
            QVERIFY(ok);
            QCOMPARE(tomado, qint64(6 + vez));
            w.proceso().kill(); // SIGKILL: no chance to commit or roll back
            QVERIFY(w.terminado());
            QCOMPARE(w.proceso().exitStatus(), QProcess::CrashExit);
            QCOMPARE(c.tomarSiguiente(QStringLiteral("Facturas.A")), tomado);
        }
        QCOMPARE(c.ultimo(QStringLiteral("Facturas.A")), qint64(8));
        if (t.db().esSQLite())
            QCOMPARE(t.db().valor(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
        QCOMPARE(t.db().valor(QStringLiteral("SELECT COUNT(*) FROM Contadores")).toInt(), 1);
    }
};

PMX_STORE_TEST_MAIN(TestCarrera)
#include "test_carrera.moc"
