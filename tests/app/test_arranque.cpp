// Start-up steps with scripted dialogs and a fixed clock, on SQLite installations; the rules
// behind the main window's timers.
#include "app/arranque.h"
#include "app/chat.h"
#include "app/claves.h"
#include "app/conf_puesto_store.h"
#include "app/instalador.h"
#include "app/menu_principal.h"
#include "app/temporizadores.h"
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

using namespace Qt::StringLiterals;

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
    return QDir(carpeta).entryList({u"BDTemp*"_s}, QDir::Files);
}
} // namespace

class TestArranque : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(10, 5, 7))};

    struct Instalacion {
        QTemporaryDir dir;
        QTemporaryDir bloqueos;
        QString datos() const { return dir.filePath(u"datos"_s); }
        QString bd() const { return QDir(datos()).filePath(kNombreBaseDatos); }
    };

    std::unique_ptr<Instalacion> instalar(bool demo = false) {
        auto i = std::make_unique<Instalacion>();
        OpcionesInstalacion op;
        op.carpeta = i->dir.path();
        op.administrador = u"admin"_s;
        op.clave = u"clave"_s;
        op.puestoServidor = u"SERVIDOR"_s;
        op.demo = demo;
        const QString error = crearInstalacion(op);
        if (!error.isEmpty()) qFatal("%s", qPrintable(error));
        return i;
    }

    OpcionesArranque opciones(const Instalacion& i, const QString& puesto = u"RECEPCION"_s) {
        OpcionesArranque op;
        op.carpetaPrograma = i.dir.path();
        op.puesto = puesto;
        op.carpetaBloqueos = i.bloqueos.path();
        return op;
    }

    static QStringList inicio() { return {u"-app:Start"_s}; }

private slots:
    void lineaDeOrdenes() {
        const std::pair<QStringList, int> casos[] = {
            // -1: refused
            {{}, -1},
            {{u"-app:Start"_s}, int(Modo::Start)},
            {{u"-app:DeactivateBlockingMode"_s}, int(Modo::DeactivateBlockingMode)},
            {{u"-app:start"_s}, -1},
            {{u"-app:Start"_s, u"-app:RepairDB"_s}, -1}};
        for (const auto& [argumentos, modo] : casos) {
            const auto m = leerLineaOrdenes(argumentos);
            QVERIFY2((m ? int(*m) : -1) == modo, qPrintable(argumentos.join(u' ')));
        }
    }

    void configuracionRegionalDistinta() {
        auto i = instalar();
        ScriptedDialogs d;
        OpcionesArranque op = opciones(*i);
        op.regional.formatoFechaCorta = u"dd/MM/yy"_s;
        Arranque a(d, reloj_, op);
        QVERIFY(!a.ejecutar(inicio()));
        QCOMPARE(d.ultimo().titulo, u"Conflicto con la configuración de Windows"_s);
        QVERIFY(d.ultimoTexto().startsWith(
            u"La Configuración Regional de su ordenador indica que tiene configurado como formato de fecha "
            "corta el valor  "
            "'dd/MM/yy'\nPara un correcto funcionamiento de Pramelvix, debe cambiarlo a 'dd/MM/yyyy'"_s));
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
        // Another workstation name is another workstation.
        ScriptedDialogs d3;
        Arranque otra(d3, reloj_, opciones(*i, u"CONSULTA2"_s));
        QVERIFY(otra.ejecutar(inicio()));
        QCOMPARE(PuestosActivosStore(e->db()).puestos(), (QStringList{u"CONSULTA2"_s, u"RECEPCION"_s}));
    }

    void arranqueCompletoLeeElIni() {
        auto i = instalar();
        ScriptedDialogs d;
        Arranque a(d, reloj_, opciones(*i));
        auto e = a.ejecutar(inicio());
        QVERIFY(e);
        QVERIFY(d.mensajes().isEmpty());
        QCOMPARE(e->modemGsm.BITSDATOS, u"8"_s);
        QCOMPARE(e->db().valor(u"SELECT Hora FROM PuestosActivos WHERE Puesto = ?"_s, {e->puesto}).toString(),
                 u"10:05:07"_s);
    }

    void servidorEntraEnMonopuesto() {
        auto i = instalar();
        {
            auto db = Database::abrirSQLite(i->bd());
            Ajustes(*db).escribir(claves::MULTIPUESTO, u"NO"_s);
        }
        ScriptedDialogs d;
        // The server's name is compared without regard to case, as host names are.
        Arranque a(d, reloj_, opciones(*i, u"servidor"_s));
        QVERIFY(a.ejecutar(inicio()));
        ScriptedDialogs d2;
        Arranque b(d2, reloj_, opciones(*i, u"CONSULTA1"_s));
        QVERIFY(!b.ejecutar(inicio()));
        QVERIFY(d2.ultimoTexto().startsWith(u"Este puesto Cliente no puede entrar"_s));
    }

    void informeDeFacturaNoCreada() {
        auto i = instalar();
        {
            auto db = Database::abrirSQLite(i->bd());
            LogErroresStore log(*db);
            log.anotar(kPrefijoFacturaNoCreada + u"RECEPCION"_s,
                       QDateTime(QDate(2026, 11, 20), QTime(18, 42, 5)), u"RECEPCION"_s, u"luis"_s);
            log.anotar(kPrefijoFacturaNoCreada + u"CONSULTA1"_s, reloj_.ahora(), u"CONSULTA1"_s, u"ana"_s);
        }
        ScriptedDialogs d;
        Arranque a(d, reloj_, opciones(*i));
        auto e = a.ejecutar(inicio());
        QVERIFY(e);
        QCOMPARE(d.textos(), QStringList{u"Error detectado al crear una factura.\n"
                                         "Fecha  : 20/11/2026\n"
                                         "Hora   : 18:42\n"
                                         "Puesto : RECEPCION\n"
                                         "Usuario: luis\n"
                                         "Origen : Log encontrado al arrancar el puesto"_s});
        // Shown once; the other workstation's report waits for that workstation.
        LogErroresStore log(e->db());
        QVERIFY(log.buscar(kPrefijoFacturaNoCreada + u"RECEPCION"_s).isEmpty());
        QCOMPARE(log.buscar(kPrefijoFacturaNoCreada + u"CONSULTA1"_s).size(), 1);
        QCOMPARE(informeFacturaNoCreada(QDate(2026, 1, 2), QTime(3, 4), u"P"_s, u"U"_s, kOrigenLogFacturacion)
                     .section(QLatin1Char('\n'), 5),
                 u"Origen : Log producido en el procedimiento de facturación"_s);
    }

    void baseDeDatosAlternativa() {
        auto i = instalar();
        QTemporaryDir otra;
        const QString copia = otra.filePath(u"Copia.mdb"_s);
        QVERIFY(QFile::rename(i->bd(), copia));
        ScriptedDialogs d;
        d.si().fichero(copia);
        Arranque a(d, reloj_, opciones(*i));
        auto e = a.ejecutar(inicio());
        QVERIFY(e);
        QCOMPARE(d.mensajes().first().texto, u"No se ha encontrado la B.D. en la ruta del Servidor. "
                                             "¿Desea intentar seleccionar otra B.D. alternativa?"_s);
        QCOMPARE(e->configuracionBD.ficheroSQLite(), copia);
    }

    // Every failed repair asks again (the texts, and a single failure, are seen from outside).
    void baseDeDatosDanyada() {
        auto i = instalar();
        const QByteArray basura = QByteArray("esto no es una base de datos ").repeated(200);
        escribirBytes(i->bd(), basura);
        ScriptedDialogs d;
        d.si().si().no();
        Arranque a(d, reloj_, opciones(*i));
        QVERIFY(!a.ejecutar(inicio()));
        QCOMPARE(d.mensajes().size(), 3);
        QCOMPARE(d.textos().at(2), d.textos().at(1));
        QVERIFY(d.textos().at(1).contains(u"continúa dañada"_s));
        QCOMPARE(leerBytes(i->bd()), basura);
        QVERIFY(temporales(i->datos()).isEmpty());
    }

    void instalacionDeDemostracion() {
        auto i = instalar(true);
        auto db = Database::abrirSQLite(i->bd());
        // The demo clinic can sell on day one, and its users log in.
        QCOMPARE(ConfPuestoStore(*db).cargar(u"SERVIDOR"_s).SerieVenta, u"A"_s);
        const auto u = UsuarioStore(*db).cargar(u"recepcion"_s);
        QVERIFY(u && claveCorrecta(u->Hash, u->Salt, u"recepcion"_s));
    }

    void todaInstalacionTieneLosTiposDeArticulo() {
        // Without the demo too: a clinic needs "SERVICIO" to keep its services.
        auto i = instalar();
        auto db = Database::abrirSQLite(i->bd());
        QCOMPARE(db->valor(u"SELECT COUNT(*) FROM TiposArticulo WHERE IdTipoArticulo = ?"_s, {u"SERVICIO"_s})
                     .toInt(),
                 1);
    }

    void reparacionSustituyeLaBaseDeDatos() {
        auto i = instalar();
        {
            auto db = Database::abrirSQLite(i->bd());
            Ajustes(*db).escribir(u"PRUEBA"_s, u"sigue aquí"_s);
        }
        // A stale temporary file of the same name is removed first, not taken for the copy.
        const QString rancio = QDir(i->datos()).filePath(u"BDTemp0507.mdb"_s);
        escribirBytes(rancio, "viejo");
        const ResultadoReparacion r = repararSQLite(i->bd(), reloj_);
        QVERIFY2(r.hecha, qPrintable(r.error));
        QVERIFY(temporales(i->datos()).isEmpty());
        auto db = Database::abrirSQLite(i->bd());
        QCOMPARE(Ajustes(*db).leer(u"PRUEBA"_s), u"sigue aquí"_s);
        QCOMPARE(db->valor(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
    }

private slots:
    // Every five minutes on the clock, seconds aside.
    void agenda() {
        const QDate d(2026, 3, 9);
        QVERIFY(!comprobacionAgenda(QDateTime(d, QTime(10, 4, 59))));
        for (const auto& [hora, texto] :
             {std::pair{QTime(10, 5, 42), u"10:05"_s}, std::pair{QTime(0, 0), u"00:00"_s}}) {
            const auto m = comprobacionAgenda(QDateTime(d, hora));
            QVERIFY2(m && m->fecha == u"09/03/2026"_s && m->hora == texto, qPrintable(texto));
        }
    }

    void copiaDiaria() {
        const QDate hoy(2026, 5, 4);
        const QTime hora(13, 30);
        QVERIFY(!tocaCopiaAutomatica(std::nullopt, QDateTime(hoy, QTime(14, 0)), std::nullopt));
        QVERIFY(!tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(13, 29)), std::nullopt));
        QVERIFY(tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(13, 30)), std::nullopt));
        QVERIFY(!tocaCopiaAutomatica(hora, QDateTime(hoy, QTime(18, 0)), hoy));
        // Next day, before the hour: not yet.
        QVERIFY(!tocaCopiaAutomatica(hora, QDateTime(hoy.addDays(1), QTime(9, 0)), hoy));
    }

    void codigoBarras() {
        const std::pair<QString, QString> casos[] = {
            {u"+^%~()[]{}"_s, u"{+}{^}{%}{~}{(}{)}{[}{]}{{}{}}"_s},
            {u"A-B/C.D*E"_s, u"A-B/C.D*E"_s},
            {QString(), QString()},
        };
        for (const auto& [leido, secuencia] : casos) {
            QVERIFY2(secuenciaTeclasCodigoBarras(leido) == secuencia, qPrintable(leido));
            // What the keystrokes type is what the reader read.
            QVERIFY2(textoDeSecuenciaTeclas(secuencia) == leido, qPrintable(leido));
        }
    }

    void compactacion() {
        const QDate hoy(2026, 11, 23);
        const struct {
            QString dias;
            std::optional<QDate> ultima;
            bool toca;
        } casos[] = {
            {u"0"_s, hoy.addDays(-400), false}, {QString(), hoy.addDays(-400), false},
            {u"-3"_s, hoy.addDays(-400), false}, {u"7"_s, hoy.addDays(-6), false},
            {u"7"_s, hoy.addDays(-7), true},     {u"7"_s, std::nullopt, true},
        };
        for (const auto& c : casos)
            QVERIFY2(tocaCompactacion(c.dias, c.ultima, hoy) == c.toca, qPrintable(c.dias));
    }

    void autoGuardado() {
        QCOMPARE(textoAutoGuardado(0), u"AutoGuardado DESACTIVADO"_s);
        QCOMPARE(textoAutoGuardado(10), u"AutoGuardado ACTIVADO cada 10 minutos"_s);
    }

    void datagramasDelChat() {
        const auto bueno =
            leerDatagramaChat(datagramaChat({u"RECEPCION"_s, u"ana"_s, u"¿Pasa el siguiente?\tgracias"_s}));
        // A tab inside the text would break the form: only three fields are accepted.
        QVERIFY(!bueno.mensaje);
        QCOMPARE(bueno.numero, 3);
        const auto ok =
            leerDatagramaChat(datagramaChat({u"RECEPCION"_s, u"ana"_s, u"¿Pasa el siguiente?"_s}));
        QVERIFY(ok.mensaje);
        QCOMPARE(ok.mensaje->texto, u"¿Pasa el siguiente?"_s);
        QCOMPARE(leerDatagramaChat(QByteArray("\xff\xfe\x00", 3)).numero, 2);
        QCOMPARE(leerDatagramaChat(QByteArray(5000, 'a')).numero, 1);
        QCOMPARE(leerDatagramaChat(QByteArray("\tana\thola")).numero, 3);
    }

    void permisosDeLosMenus() {
        // Before login only the session and window commands are there.
        QVERIFY(comandoVisible(Permiso::Siempre, false, false, false));
        QVERIFY(!comandoVisible(Permiso::Identificado, false, false, false));
        QVERIFY(!comandoVisible(Permiso::Administrador, true, false, false));
        QVERIFY(comandoVisible(Permiso::Administrador, true, true, false));
        QVERIFY(comandoVisible(Permiso::Contabilidad, true, false, false));
        QVERIFY(!comandoVisible(Permiso::Contabilidad, true, false, true));
        QVERIFY(comandoVisible(Permiso::Contabilidad, true, true, true));
        QVERIFY(!comandoVisible(Permiso::Contabilidad, false, true, false));
        // The administrator's entries are governed by the user type.
        QStringList soloAdmin;
        for (const auto& c : comandosMenu())
            if (c.permiso == Permiso::Administrador) soloAdmin << c.nombre;
        for (const char* n : {"mnuCierreCaja", "mnuMttoCosteSalarial", "mnuAdministrar"})
            QVERIFY2(soloAdmin.contains(QString::fromLatin1(n)), n);
        // Every command name is unique.
        QStringList nombres;
        for (const auto& c : comandosMenu()) {
            QVERIFY2(!nombres.contains(c.nombre), qPrintable(c.nombre));
            nombres << c.nombre;
        }
    }
};

QTEST_GUILESS_MAIN(TestArranque)
#include "test_arranque.moc"
