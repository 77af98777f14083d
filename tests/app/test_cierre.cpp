// Leaving the program: confirmation, the compaction question, the workstation leaving.
#include "app/bloqueo_edicion.h"
#include "app/cierre_form.h"
#include "core/formatos.h"
#include "data/ajustes.h"
#include "data/bloqueos.h"
#include "data/esquema.h"
#include "data/puestos.h"
#include "data/reparacion.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QFileInfo>

class TestCierre : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(20, 15, 30))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
    };

    std::unique_ptr<Caso> caso(const QString& dias, const QString& fecha) {
        auto c = std::make_unique<Caso>();
        c->e = std::make_unique<Entorno>(c->t.otraConexion(), c->d, reloj_);
        c->e->puesto = QStringLiteral("RECEPCION");
        if (TestDb::motorDePrueba() == Motor::SQLite) {
            c->e->configuracionBD.motor = Motor::SQLite;
            c->e->configuracionBD.servidor = QFileInfo(c->t.origen()).path();
            c->e->configuracionBD.ficheroAlternativo = c->t.origen();
        } else {
            c->e->configuracionBD.motor = Motor::PostgreSQL;
            c->e->configuracionBD.conexion = c->t.origen();
        }
        Ajustes a(c->t.db());
        a.escribir(claves::DIAS_COMPACTACION, dias);
        a.escribir(claves::FECHA_COMPACTACION, fecha);
        a.escribir(QStringLiteral("DATO"), QStringLiteral("intacto"));
        PuestosActivosStore(c->t.db()).registrar(c->e->puesto, reloj_.ahora());
        return c;
    }

    static QStringList puestos(Caso& c) {
        auto db = c.t.otraConexion();
        return PuestosActivosStore(*db).puestos();
    }
    static QString ajuste(Caso& c, const QString& clave) {
        auto db = c.t.otraConexion();
        return Ajustes(*db).leer(clave);
    }

private slots:
    void quedarseEnElPrograma() {
        auto c = caso(QStringLiteral("7"), QStringLiteral("01/01/2026"));
        c->d.no();
        QVERIFY(!CierreForm(*c->e).cerrar());
        QCOMPARE(c->d.textos(), QStringList{kPreguntaSalir});
        QCOMPARE(puestos(*c), QStringList{QStringLiteral("RECEPCION")});
    }

    void sinCompactacionAutomatica() {
        auto c = caso(QStringLiteral("0"), QStringLiteral("01/01/2020"));
        c->d.si();
        QVERIFY(CierreForm(*c->e).cerrar());
        QCOMPARE(c->d.textos(), QStringList{kPreguntaSalir});
        QVERIFY(puestos(*c).isEmpty());
    }

    void compactacionRechazada() {
        auto c = caso(QStringLiteral("7"), QStringLiteral("13/11/2026"));
        c->d.si().no();
        QVERIFY(CierreForm(*c->e).cerrar());
        QCOMPARE(c->d.mensajes().size(), 2);
        QCOMPARE(c->d.mensajes().at(1).texto,
                 QStringLiteral("¡¡¡ ATENCIÓN !!! Fecha de la última compactación: 13/11/2026\n"
                                "¿Desea compactar la Base de Datos antes de abandonar la aplicación?"));
        QVERIFY(c->d.progresos().isEmpty());
        QCOMPARE(ajuste(*c, claves::FECHA_COMPACTACION), QStringLiteral("13/11/2026"));
        QVERIFY(puestos(*c).isEmpty());
    }

    void plazoNoCumplido() {
        // Six days after the last compaction with a seven-day setting: no question.
        auto c = caso(QStringLiteral("7"), QStringLiteral("17/11/2026"));
        c->d.si();
        QVERIFY(CierreForm(*c->e).cerrar());
        QCOMPARE(c->d.mensajes().size(), 1);
    }

    void compactacionAlSalir() {
        auto c = caso(QStringLiteral("7"), QStringLiteral("16/11/2026"));
        c->d.si().si();
        QVERIFY(CierreForm(*c->e).cerrar());
        QCOMPARE(c->d.progresos(),
                 QStringList{QStringLiteral("Se está compactando la Base de Datos. Espere por favor ...")});
        QCOMPARE(ajuste(*c, claves::FECHA_COMPACTACION), QStringLiteral("23/11/2026"));
        QCOMPARE(ajuste(*c, QStringLiteral("DATO")), QStringLiteral("intacto"));
        QVERIFY(puestos(*c).isEmpty());
        if (TestDb::motorDePrueba() == Motor::SQLite) {
            QVERIFY(!QFileInfo::exists(
                QFileInfo(c->t.origen()).dir().filePath(QStringLiteral("BDTemp1530.mdb"))));
            auto db = c->t.otraConexion();
            QCOMPARE(db->valor(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
        }
    }

    void otroPuestoConectadoAplazaLaCompactacion() {
        auto c = caso(QStringLiteral("1"), QString());
        PuestosActivosStore(c->t.db()).registrar(QStringLiteral("CONSULTA2"), reloj_.ahora());
        c->d.si().si();
        QVERIFY(CierreForm(*c->e).cerrar());
        QCOMPARE(c->d.mensajes().at(1).texto,
                 QStringLiteral("¡¡¡ ATENCIÓN !!! Fecha de la última compactación: nunca\n"
                                "¿Desea compactar la Base de Datos antes de abandonar la aplicación?"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No se puede compactar la Base de Datos mientras haya otros puestos "
                                "conectados a Pramelvix. Se compactará otro día."));
        QVERIFY(c->d.progresos().isEmpty());
        QCOMPARE(puestos(*c), QStringList{QStringLiteral("CONSULTA2")});
        QCOMPARE(ajuste(*c, claves::FECHA_COMPACTACION), QString());
    }

    void cierreSinConfirmacion() {
        auto c = caso(QStringLiteral("0"), QString());
        QVERIFY(CierreForm(*c->e).cerrar(false));
        QVERIFY(c->d.mensajes().isEmpty());
        QVERIFY(puestos(*c).isEmpty());
    }

    void alSalirSeSueltanLosBloqueosDeLaSesion() {
        auto c = caso(QStringLiteral("0"), QString());
        c->e->usuario = QStringLiteral("ana");
        const DescriptorTabla& clase = *descriptorTabla(QStringLiteral("Usuarios"));
        QVERIFY(almacenBloqueos(*c->e).bloquearRegistro(clase, QStringLiteral("luis"), QStringLiteral("luis"),
                                                        AccionBloqueo::Modificacion, false));
        // Another workstation's lock stays.
        ScriptedDialogs d2;
        Entorno otro(c->t.db(), d2, reloj_);
        otro.puesto = QStringLiteral("CONSULTA2");
        otro.usuario = QStringLiteral("luis");
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(clase, QStringLiteral("ana"), QStringLiteral("ana"),
                                                       AccionBloqueo::Modificacion, false));
        QCOMPARE(almacenBloqueos(otro).contar(), 2);
        QVERIFY(CierreForm(*c->e).cerrar(false));
        QCOMPARE(almacenBloqueos(otro).contar(), 1);
    }

    void compactacionDesdeElMenu() {
        auto c = caso(QStringLiteral("0"), QString());
        PuestosActivosStore(c->t.db()).registrar(QStringLiteral("CONSULTA2"), reloj_.ahora());
        QVERIFY(!CompactacionForm(*c->e).compactar());
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No se puede compactar la Base de Datos mientras haya otros puestos "
                                "conectados a Pramelvix."));
        PuestosActivosStore(c->t.db()).quitar(QStringLiteral("CONSULTA2"));
        c->d.limpiar();
        c->d.si();
        QVERIFY(CompactacionForm(*c->e).compactar());
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Operación concluida."));
        // The program goes on with the compacted database.
        QCOMPARE(Ajustes(c->e->db()).leer(QStringLiteral("DATO")), QStringLiteral("intacto"));
        QCOMPARE(Ajustes(c->e->db()).leer(claves::FECHA_COMPACTACION), QStringLiteral("23/11/2026"));
        QCOMPARE(PuestosActivosStore(c->e->db()).puestos(), QStringList{QStringLiteral("RECEPCION")});
    }
};

PMX_STORE_TEST_MAIN(TestCierre)
#include "test_cierre.moc"
