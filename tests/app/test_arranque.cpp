// Start-up steps driven with scripted dialogs and a fixed clock, on SQLite installations
// made by the installer.
#include "app/arranque.h"
#include "app/claves.h"
#include "app/conf_puesto_store.h"
#include "app/instalador.h"
#include "app/usuario_store.h"
#include "data/ajustes.h"
#include "data/log_errores.h"
#include "data/puestos.h"
#include "data/reparacion.h"
#include "scripted_dialogs.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {
QByteArray leerBytes(const QString& ruta) {
    QFile f(ruta);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void escribirBytes(const QString& ruta, const QByteArray& bytes) {
    QFile f(ruta);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

QStringList temporales(const QString& carpeta) {
    return QDir(carpeta).entryList({QStringLiteral("BDTemp*")}, QDir::Files);
}
} // namespace

class TestArranque : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(10, 5, 7))};

    struct Instalacion {
        QTemporaryDir dir;
        QTemporaryDir bloqueos;
        QString datos() const { return dir.filePath(QStringLiteral("datos")); }
        QString bd() const { return QDir(datos()).filePath(kNombreBaseDatos); }
    };

    std::unique_ptr<Instalacion> instalar() {
        auto i = std::make_unique<Instalacion>();
        OpcionesInstalacion op;
        op.carpeta = i->dir.path();
        op.administrador = QStringLiteral("admin");
        op.clave = QStringLiteral("clave");
        op.puestoServidor = QStringLiteral("SERVIDOR");
        const QString error = crearInstalacion(op);
        if (!error.isEmpty()) qFatal("%s", qPrintable(error));
        return i;
    }

    OpcionesArranque opciones(const Instalacion& i, const QString& puesto = QStringLiteral("RECEPCION")) {
        OpcionesArranque op;
        op.carpetaPrograma = i.dir.path();
        op.puesto = puesto;
        op.carpetaBloqueos = i.bloqueos.path();
        return op;
    }

    static const QStringList& inicio() {
        static const QStringList a{QStringLiteral("-app:Start")};
        return a;
    }

private slots:
    void lineaDeOrdenes_data() {
        QTest::addColumn<QStringList>("argumentos");
        QTest::addColumn<int>("modo"); // -1: refused
        QTest::newRow("vacía") << QStringList{} << -1;
        QTest::newRow("Start") << QStringList{QStringLiteral("-app:Start")} << int(Modo::Start);
        QTest::newRow("RepairDB") << QStringList{QStringLiteral("-app:RepairDB")} << int(Modo::RepairDB);
        QTest::newRow("Purge") << QStringList{QStringLiteral("-app:PurgeActiveComputers")}
                               << int(Modo::PurgeActiveComputers);
        QTest::newRow("Activate") << QStringList{QStringLiteral("-app:ActivateBlockingMode")}
                                  << int(Modo::ActivateBlockingMode);
        QTest::newRow("Deactivate") << QStringList{QStringLiteral("-app:DeactivateBlockingMode")}
                                    << int(Modo::DeactivateBlockingMode);
        QTest::newRow("minúsculas") << QStringList{QStringLiteral("-app:start")} << -1;
        QTest::newRow("blanco") << QStringList{QStringLiteral("-app:Start ")} << -1;
        QTest::newRow("dos") << QStringList{QStringLiteral("-app:Start"), QStringLiteral("-app:RepairDB")}
                             << -1;
        QTest::newRow("texto vacío") << QStringList{QString()} << -1;
    }
    void lineaDeOrdenes() {
        QFETCH(QStringList, argumentos);
        QFETCH(int, modo);
        const auto m = leerLineaOrdenes(argumentos);
        QCOMPARE(m.has_value() ? int(*m) : -1, modo);
    }

    void ordenRechazada() {
        auto i = instalar();
        ScriptedDialogs d;
        Arranque a(d, reloj_, opciones(*i));
        QVERIFY(!a.ejecutar({QStringLiteral("-app:Otra")}));
        QCOMPARE(a.codigoSalida(), 1);
        QCOMPARE(d.mensajes().size(), 1);
        QCOMPARE(d.ultimo().icono, Icono::Critico);
        QCOMPARE(d.ultimo().titulo, QStringLiteral("Pramelvix"));
        QCOMPARE(d.ultimoTexto(), QStringLiteral("Error en la ejecución"));
    }

    void configuracionRegionalDistinta() {
        auto i = instalar();
        ScriptedDialogs d;
        OpcionesArranque op = opciones(*i);
        op.regional.formatoFechaCorta = QStringLiteral("dd/MM/yy");
        Arranque a(d, reloj_, op);
        QVERIFY(!a.ejecutar(inicio()));
        QCOMPARE(d.ultimo().titulo, QStringLiteral("Conflicto con la configuración de Windows"));
        QVERIFY(d.ultimoTexto().startsWith(QStringLiteral(
            "La Configuración Regional de su ordenador indica que tiene configurado como formato de fecha "
            "corta el valor  "
            "'dd/MM/yy'\nPara un correcto funcionamiento de Pramelvix, debe cambiarlo a 'dd/MM/yyyy'")));
        // Nothing was registered: the program stopped before the database.
        auto db = Database::abrirSQLite(i->bd());
        QCOMPARE(PuestosActivosStore(*db).contar(), 0);
    }

    void segundaInstanciaDelMismoPuesto() {
        auto i = instalar();
        ScriptedDialogs d1, d2;
        Arranque primera(d1, reloj_, opciones(*i));
        auto e = primera.ejecutar(inicio());
        QVERIFY(e);
        Arranque segunda(d2, reloj_, opciones(*i));
        QVERIFY(!segunda.ejecutar(inicio()));
        QCOMPARE(d2.ultimo().icono, Icono::Informacion);
        QCOMPARE(d2.ultimo().titulo, QStringLiteral("Atención"));
        QCOMPARE(d2.ultimoTexto(), QStringLiteral("Existe una instancia previa de PRAMELVIX ejecutándose."));
        // Another workstation name is another workstation.
        ScriptedDialogs d3;
        Arranque otra(d3, reloj_, opciones(*i, QStringLiteral("CONSULTA2")));
        QVERIFY(otra.ejecutar(inicio()));
        QCOMPARE(PuestosActivosStore(e->db()).puestos(),
                 (QStringList{QStringLiteral("CONSULTA2"), QStringLiteral("RECEPCION")}));
    }

    void arranqueCompletoLeeElIniYAnotaLaVersion() {
        auto i = instalar();
        ScriptedDialogs d;
        Arranque a(d, reloj_, opciones(*i));
        auto e = a.ejecutar(inicio());
        QVERIFY(e);
        QVERIFY(d.mensajes().isEmpty());
        QCOMPARE(e->puesto, QStringLiteral("RECEPCION"));
        QCOMPARE(e->impresoraTickets.PARIDAD, QStringLiteral("NINGUNO (N)"));
        QCOMPARE(e->impresoraTickets.VELOCIDAD, QStringLiteral("9600"));
        QCOMPARE(e->modemGsm.BITSDATOS, QStringLiteral("8"));
        QCOMPARE(Ajustes(e->db()).leer(claves::VERSION_INFORMADA), kVersionPrograma);
        QCOMPARE(e->db()
                     .valor(QStringLiteral("SELECT Hora FROM PuestosActivos WHERE Puesto = ?"), {e->puesto})
                     .toString(),
                 QStringLiteral("10:05:07"));
    }

    void servidorEntraEnMonopuesto() {
        auto i = instalar();
        {
            auto db = Database::abrirSQLite(i->bd());
            Ajustes(*db).escribir(claves::MULTIPUESTO, QStringLiteral("NO"));
        }
        ScriptedDialogs d;
        // The server's name is compared without regard to case, as host names are.
        Arranque a(d, reloj_, opciones(*i, QStringLiteral("servidor")));
        QVERIFY(a.ejecutar(inicio()));
        ScriptedDialogs d2;
        Arranque b(d2, reloj_, opciones(*i, QStringLiteral("CONSULTA1")));
        QVERIFY(!b.ejecutar(inicio()));
        QCOMPARE(d2.ultimoTexto(),
                 QStringLiteral("Este puesto Cliente no puede entrar en Pramelvix porque el Servidor "
                                "está en modo 'Monopuesto'. Consulte con Soporte a Clientes."));
    }

    void informeDeFacturaNoCreada() {
        auto i = instalar();
        {
            auto db = Database::abrirSQLite(i->bd());
            LogErroresStore log(*db);
            log.anotar(kPrefijoFacturaNoCreada + QStringLiteral("RECEPCION"),
                       QDateTime(QDate(2026, 11, 20), QTime(18, 42, 5)), QStringLiteral("RECEPCION"),
                       QStringLiteral("luis"));
            log.anotar(kPrefijoFacturaNoCreada + QStringLiteral("CONSULTA1"), reloj_.ahora(),
                       QStringLiteral("CONSULTA1"), QStringLiteral("ana"));
        }
        ScriptedDialogs d;
        Arranque a(d, reloj_, opciones(*i));
        auto e = a.ejecutar(inicio());
        QVERIFY(e);
        QCOMPARE(d.textos(), QStringList{QStringLiteral("Error detectado al crear una factura.\n"
                                                        "Fecha  : 20/11/2026\n"
                                                        "Hora   : 18:42\n"
                                                        "Puesto : RECEPCION\n"
                                                        "Usuario: luis\n"
                                                        "Origen : Log encontrado al arrancar el puesto")});
        // Shown once; the other workstation's report waits for that workstation.
        LogErroresStore log(e->db());
        QVERIFY(log.buscar(kPrefijoFacturaNoCreada + QStringLiteral("RECEPCION")).isEmpty());
        QCOMPARE(log.buscar(kPrefijoFacturaNoCreada + QStringLiteral("CONSULTA1")).size(), 1);
        QCOMPARE(informeFacturaNoCreada(QDate(2026, 1, 2), QTime(3, 4), QStringLiteral("P"),
                                        QStringLiteral("U"), kOrigenLogFacturacion)
                     .section(QLatin1Char('\n'), 5),
                 QStringLiteral("Origen : Log producido en el procedimiento de facturación"));
    }

    void baseDeDatosAlternativa() {
        auto i = instalar();
        QTemporaryDir otra;
        const QString copia = otra.filePath(QStringLiteral("Copia.mdb"));
        QVERIFY(QFile::rename(i->bd(), copia));
        ScriptedDialogs d;
        d.si().fichero(copia);
        Arranque a(d, reloj_, opciones(*i));
        auto e = a.ejecutar(inicio());
        QVERIFY(e);
        QCOMPARE(d.mensajes().first().texto,
                 QStringLiteral("No se ha encontrado la B.D. en la ruta del Servidor. "
                                "¿Desea intentar seleccionar otra B.D. alternativa?"));
        QCOMPARE(d.mensajes().first().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(e->configuracionBD.ficheroSQLite(), copia);
        QCOMPARE(PuestosActivosStore(e->db()).puestos(), QStringList{QStringLiteral("RECEPCION")});
    }

    void sinBaseDeDatosYRespuestaNo() {
        auto i = instalar();
        QVERIFY(QFile::remove(i->bd()));
        ScriptedDialogs d;
        d.no();
        Arranque a(d, reloj_, opciones(*i));
        QVERIFY(!a.ejecutar(inicio()));
        QCOMPARE(a.codigoSalida(), 1);
        QCOMPARE(d.mensajes().size(), 1);
        QVERIFY(!QFile::exists(i->bd()));
    }

    void baseDeDatosDanyada() {
        auto i = instalar();
        const QByteArray basura = QByteArray("esto no es una base de datos ").repeated(200);
        escribirBytes(i->bd(), basura);
        ScriptedDialogs d;
        d.si().si().no();
        Arranque a(d, reloj_, opciones(*i));
        QVERIFY(!a.ejecutar(inicio()));
        const QStringList esperados{
            QStringLiteral(
                "Pramelvix no puede arrancar porque su Base de Datos está dañada. ¿Desea  intentar "
                "repararla automáticamente?"),
            QStringLiteral(
                "Pramelvix no puede arrancar porque su Base de Datos continúa dañada. ¿Desea volver a "
                "intentar repararla automáticamente?"),
            QStringLiteral(
                "Pramelvix no puede arrancar porque su Base de Datos continúa dañada. ¿Desea volver a "
                "intentar repararla automáticamente?")};
        QCOMPARE(d.textos(), esperados);
        for (const auto& m : d.mensajes()) {
            QCOMPARE(m.icono, Icono::Critico);
            QCOMPARE(m.titulo, QStringLiteral("¡Atención!"));
        }
        QCOMPARE(d.progresos(),
                 (QStringList{QStringLiteral("Reparando la Base de Datos de Pramelvix. Espere, por favor..."),
                              QStringLiteral("Se está compactando la Base de Datos. Espere por favor ..."),
                              QStringLiteral("Reparando la Base de Datos de Pramelvix. Espere, por favor..."),
                              QStringLiteral("Se está compactando la Base de Datos. Espere por favor ...")}));
        // A compaction that fails leaves the file as it was and no temporary file.
        QCOMPARE(leerBytes(i->bd()), basura);
        QVERIFY(temporales(i->datos()).isEmpty());
    }

    void instalacionDeDemostracion() {
        QTemporaryDir dir;
        OpcionesInstalacion op;
        op.carpeta = dir.path();
        op.administrador = QStringLiteral("admin");
        op.clave = QStringLiteral("admin");
        op.puestoServidor = QStringLiteral("RECEPCION");
        op.demo = true;
        QCOMPARE(crearInstalacion(op), QString());
        auto db = Database::abrirSQLite(dir.filePath(QStringLiteral("datos/Pramelvix.mdb")));
        // The demo clinic can sell on day one: series, tariff and species are there.
        const ConfiguracionPuesto c = ConfPuestoStore(*db).cargar(QStringLiteral("RECEPCION"));
        QCOMPARE(c.SerieVenta, QStringLiteral("A"));
        QCOMPARE(c.SerieAbono, QStringLiteral("R"));
        QCOMPARE(c.Tarifa, QStringLiteral("TARIFA 1"));
        QCOMPARE(ConfPuestoStore(*db).series(kSerieVenta).size(), 1);
        QVERIFY(db->valor(QStringLiteral("SELECT COUNT(*) FROM Especies")).toInt() >= 5);
        QCOMPARE(
            db->valor(QStringLiteral("SELECT COUNT(*) FROM TiposIVA WHERE Porcentaje = ?"), {0.0}).toInt(),
            1);
        const auto u = UsuarioStore(*db).cargar(QStringLiteral("recepcion"));
        QVERIFY(u && claveCorrecta(u->Hash, u->Salt, QStringLiteral("recepcion")));
        QCOMPARE(u->TipoUsuario, kTipoUsuario);
        QCOMPARE(UsuarioStore(*db).cargar(QStringLiteral("admin"))->TipoUsuario, kTipoAdministrador);
        QCOMPARE(db->valor(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toInt(), 60);
        QVERIFY(db->valor(QStringLiteral("SELECT COUNT(*) FROM Mascotas")).toInt() > 60);
        QVERIFY(db->valor(QStringLiteral("SELECT COUNT(*) FROM Articulos")).toInt() > 0);
    }

    void todaInstalacionTieneLosTiposDeArticulo() {
        // Without the demo too: a clinic needs "SERVICIO" to keep its services.
        QTemporaryDir dir;
        OpcionesInstalacion op;
        op.carpeta = dir.path();
        op.administrador = QStringLiteral("admin");
        op.clave = QStringLiteral("admin");
        QCOMPARE(crearInstalacion(op), QString());
        auto db = Database::abrirSQLite(dir.filePath(QStringLiteral("datos/Pramelvix.mdb")));
        QCOMPARE(db->valor(QStringLiteral("SELECT COUNT(*) FROM TiposArticulo WHERE IdTipoArticulo = ?"),
                           {QStringLiteral("SERVICIO")})
                     .toInt(),
                 1);
        QCOMPARE(db->valor(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toInt(), 0);
    }

    void nombreDelTemporal() {
        QCOMPARE(nombreTemporalReparacion(QTime(10, 5, 7)), QStringLiteral("BDTemp0507.mdb"));
        QCOMPARE(nombreTemporalReparacion(QTime(23, 59, 0)), QStringLiteral("BDTemp5900.mdb"));
        QCOMPARE(nombreTemporalReparacion(QTime(0, 0, 0)), QStringLiteral("BDTemp0000.mdb"));
    }

    void reparacionSustituyeLaBaseDeDatos() {
        auto i = instalar();
        {
            auto db = Database::abrirSQLite(i->bd());
            Ajustes(*db).escribir(QStringLiteral("PRUEBA"), QStringLiteral("sigue aquí"));
        }
        // A stale temporary file of the same name is removed first, not taken for the copy.
        const QString rancio = QDir(i->datos()).filePath(QStringLiteral("BDTemp0507.mdb"));
        escribirBytes(rancio, "viejo");
        const ResultadoReparacion r = repararSQLite(i->bd(), reloj_);
        QVERIFY2(r.hecha, qPrintable(r.error));
        QVERIFY(temporales(i->datos()).isEmpty());
        auto db = Database::abrirSQLite(i->bd());
        QCOMPARE(Ajustes(*db).leer(QStringLiteral("PRUEBA")), QStringLiteral("sigue aquí"));
        QCOMPARE(db->valor(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
    }
};

QTEST_GUILESS_MAIN(TestArranque)
#include "test_arranque.moc"
