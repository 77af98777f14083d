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

using namespace Qt::StringLiterals;

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
        c->e->puesto = u"RECEPCION"_s;
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
        a.escribir(u"DATO"_s, u"intacto"_s);
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
    // Nothing compacted: the questions asked, whether the workstation left; the date stays.
    void sinCompactar() {
        const QString compactar = u"¡¡¡ ATENCIÓN !!! Fecha de la última compactación: 13/11/2026\n"
                                  "¿Desea compactar la Base de Datos antes de abandonar la aplicación?"_s;
        const struct {
            QString dias, fecha;
            QList<bool> respuestas; // empty: closing without confirmation
            QStringList preguntas;
            bool sale;
        } filas[] = {
            {u"7"_s, u"01/01/2026"_s, {false}, {kPreguntaSalir}, false},
            {u"7"_s, u"13/11/2026"_s, {true, false}, {kPreguntaSalir, compactar}, true},
            {u"0"_s, QString(), {}, {}, true},
        };
        for (const auto& f : filas) {
            auto c = caso(f.dias, f.fecha);
            for (bool r : f.respuestas)
                c->d.responder(r);
            const QString fila = f.dias + u' ' + f.fecha;
            QVERIFY2(CierreForm(*c->e).cerrar(!f.respuestas.isEmpty()) == f.sale, qPrintable(fila));
            QVERIFY2(c->d.textos() == f.preguntas && c->d.progresos().isEmpty(), qPrintable(fila));
            QVERIFY2(ajuste(*c, claves::FECHA_COMPACTACION) == f.fecha, qPrintable(fila));
            QVERIFY2(puestos(*c) == (f.sale ? QStringList() : QStringList{u"RECEPCION"_s}), qPrintable(fila));
        }
    }

    void compactacionAlSalir() {
        auto c = caso(u"7"_s, u"16/11/2026"_s);
        c->t.db().cerrar(); // the session's own connection is the only one open
        c->d.si().si();
        QVERIFY(CierreForm(*c->e).cerrar());
        QCOMPARE(c->d.progresos(),
                 QStringList{u"Se está compactando la Base de Datos. Espere por favor ..."_s});
        QCOMPARE(ajuste(*c, claves::FECHA_COMPACTACION), u"23/11/2026"_s);
        QCOMPARE(ajuste(*c, u"DATO"_s), u"intacto"_s);
        QVERIFY(puestos(*c).isEmpty());
        if (TestDb::motorDePrueba() == Motor::SQLite) {
            QVERIFY(!QFileInfo::exists(QFileInfo(c->t.origen()).dir().filePath(u"BDTemp1530.mdb"_s)));
            auto db = c->t.otraConexion();
            QCOMPARE(db->valor(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        }
    }

    void otroPuestoConectadoAplazaLaCompactacion() {
        auto c = caso(u"1"_s, QString());
        PuestosActivosStore(c->t.db()).registrar(u"CONSULTA2"_s, reloj_.ahora());
        c->d.si().si();
        QVERIFY(CierreForm(*c->e).cerrar());
        QCOMPARE(c->d.mensajes().at(1).texto,
                 u"¡¡¡ ATENCIÓN !!! Fecha de la última compactación: nunca\n"
                 "¿Desea compactar la Base de Datos antes de abandonar la aplicación?"_s);
        QCOMPARE(c->d.ultimoTexto(), u"No se puede compactar la Base de Datos mientras haya otros puestos "
                                     "conectados a Pramelvix. Se compactará otro día."_s);
        QCOMPARE(puestos(*c), QStringList{u"CONSULTA2"_s});
        QCOMPARE(ajuste(*c, claves::FECHA_COMPACTACION), QString());
    }

    void alSalirSeSueltanLosBloqueosDeLaSesion() {
        auto c = caso(u"0"_s, QString());
        c->e->usuario = u"ana"_s;
        const DescriptorTabla& clase = *descriptorTabla(u"Usuarios"_s);
        QVERIFY(almacenBloqueos(*c->e).bloquearRegistro(clase, u"luis"_s, u"luis"_s,
                                                        AccionBloqueo::Modificacion, false));
        // Another workstation's lock stays.
        ScriptedDialogs d2;
        Entorno otro(c->t.db(), d2, reloj_);
        otro.puesto = u"CONSULTA2"_s;
        otro.usuario = u"luis"_s;
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(clase, u"ana"_s, u"ana"_s, AccionBloqueo::Modificacion,
                                                       false));
        QCOMPARE(almacenBloqueos(otro).contar(), 2);
        QVERIFY(CierreForm(*c->e).cerrar(false));
        QCOMPARE(almacenBloqueos(otro).contar(), 1);
    }

    void compactacionDesdeElMenu() {
        auto c = caso(u"0"_s, QString());
        PuestosActivosStore(c->t.db()).registrar(u"CONSULTA2"_s, reloj_.ahora());
        QVERIFY(!CompactacionForm(*c->e).compactar());
        QCOMPARE(c->d.ultimoTexto(), u"No se puede compactar la Base de Datos mientras haya otros puestos "
                                     "conectados a Pramelvix."_s);
        PuestosActivosStore(c->t.db()).quitar(u"CONSULTA2"_s);
        if (TestDb::motorDePrueba() == Motor::SQLite) {
            // A program that has the file open without being in the table of workstations (one
            // starting, one left by a crash): the file is not replaced under it.
            c->d.limpiar();
            c->d.si();
            QVERIFY(!CompactacionForm(*c->e).compactar());
            QVERIFY(
                c->d.textos().contains(u"No se puede sustituir la Base de Datos mientras otros puestos la "
                                       "tengan abierta. Ciérrelos y vuelva a intentarlo."_s));
            QCOMPARE(Ajustes(c->e->db()).leer(claves::FECHA_COMPACTACION), QString());
            c->t.db().cerrar();
        }
        c->d.limpiar();
        c->d.si();
        QVERIFY(CompactacionForm(*c->e).compactar());
        QCOMPARE(c->d.ultimoTexto(), u"Operación concluida."_s);
        // The program goes on with the compacted database.
        QCOMPARE(Ajustes(c->e->db()).leer(u"DATO"_s), u"intacto"_s);
        QCOMPARE(Ajustes(c->e->db()).leer(claves::FECHA_COMPACTACION), u"23/11/2026"_s);
        QCOMPARE(PuestosActivosStore(c->e->db()).puestos(), QStringList{u"RECEPCION"_s});
    }
};

PMX_STORE_TEST_MAIN(TestCierre)
#include "test_cierre.moc"
