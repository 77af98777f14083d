// The health plan form and the plan search on both engines: the save checks in order (a plan
// with no condition cannot be saved), the name-change question, the read error, deleting, and
// the search's match options with the question when every match has left.
#include "clinical/plan_salud_busqueda_form.h"
#include "clinical/plan_salud_form.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

class TestPlanSalud : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 5, 4), QTime(9, 30))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        qint64 seccion = 0;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        c->e = std::make_unique<Entorno>(c->t.db(), c->d, reloj_);
        c->e->puesto = QStringLiteral("CONSULTA1");
        c->e->sesion = QStringLiteral("S1");
        Registro s(*descriptorTabla(QStringLiteral("Secciones")));
        s.setValor(QStringLiteral("Descripcion"), QStringLiteral("Desparasitación"));
        c->seccion = RegistroStore(c->t.db()).crear(s).toLongLong();
        return c;
    }

    static bool condicion(PlanSaludForm& f, qint64 seccion, const QString& precio) {
        EntradaCondicion e;
        e.IdSeccion = seccion;
        e.Precio = precio;
        return f.condiciones().insertar(e);
    }

    static qint64 crearPlan(Caso& c, const QString& nombre, const QString& baja = {}) {
        PlanSaludForm f(*c.e);
        f.setTexto(QStringLiteral("Nombre"), nombre);
        f.setTexto(QStringLiteral("FechaBaja"), baja);
        if (!condicion(f, c.seccion, QStringLiteral("9,95")) || !f.guardar()) return 0;
        c.d.limpiar();
        return *f.idPlan();
    }

private slots:
    void ordenDeComprobaciones_data() {
        QTest::addColumn<QString>("alta");
        QTest::addColumn<QString>("baja");
        QTest::addColumn<QString>("nombre");
        QTest::addColumn<bool>("conCondicion");
        QTest::addColumn<QString>("titulo");
        QTest::addColumn<QString>("mensaje");
        const QString fecha = QStringLiteral("Error en fecha");
        const QString obl = QStringLiteral("Campos obligatorios no informados");
        QTest::newRow("alta inválida")
            << "30/02/2026"
            << "x"
            << "" << false << fecha << QStringLiteral("La fecha de Alta introducida no es válida.");
        QTest::newRow("baja inválida")
            << "04/05/2026"
            << "4/5/26"
            << "" << false << fecha << QStringLiteral("La fecha de Baja introducida no es válida.");
        QTest::newRow("sin nombre") << "04/05/2026"
                                    << ""
                                    << "  " << false << obl
                                    << QStringLiteral("Debe informar el nombre del Plan de Salud");
        QTest::newRow("sin condiciones")
            << "04/05/2026"
            << ""
            << "Plan Cachorro" << false << obl
            << QStringLiteral("Debe informar al menos una condición en el listado");
        QTest::newRow("correcto") << "04/05/2026"
                                  << ""
                                  << "Plan Cachorro" << true << QString() << QString();
    }

    void ordenDeComprobaciones() {
        QFETCH(QString, alta);
        QFETCH(QString, baja);
        QFETCH(QString, nombre);
        QFETCH(bool, conCondicion);
        QFETCH(QString, titulo);
        QFETCH(QString, mensaje);
        auto c = caso();
        PlanSaludForm f(*c->e);
        QCOMPARE(f.titulo(), QStringLiteral("Mantenimiento de Planes de Salud - (Nuevo Plan de Salud)"));
        QCOMPARE(f.texto(QStringLiteral("FechaAlta")), QStringLiteral("04/05/2026"));
        f.setTexto(QStringLiteral("FechaAlta"), alta);
        f.setTexto(QStringLiteral("FechaBaja"), baja);
        f.setTexto(QStringLiteral("Nombre"), nombre);
        if (conCondicion) QVERIFY(condicion(f, c->seccion, QStringLiteral("12")));
        const bool ok = f.guardar();
        QCOMPARE(ok, mensaje.isEmpty());
        const qint64 guardados =
            RegistroStore(c->t.db()).contar(*descriptorTabla(QStringLiteral("PlanesSalud")));
        if (ok) {
            QVERIFY(c->d.mensajes().isEmpty());
            QCOMPARE(guardados, 1);
            QCOMPARE(
                f.titulo(),
                QStringLiteral("Mantenimiento de Planes de Salud - %1 - Plan Cachorro").arg(*f.idPlan()));
            PlanSaludForm g(*c->e);
            QVERIFY(g.cargar(*f.idPlan()));
            QCOMPARE(g.condiciones().celdas(0).at(1), QStringLiteral("Desparasitación"));
            QCOMPARE(g.condiciones().celdas(0).at(4), QStringLiteral("12,00"));
            return;
        }
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, titulo);
        QCOMPARE(c->d.ultimoTexto(), mensaje);
        QCOMPARE(guardados, 0);
        QVERIFY(f.esNuevo());
    }

    void cambioDeNombreYLectura() {
        auto c = caso();
        const qint64 id = crearPlan(*c, QStringLiteral("Plan Senior"));
        QVERIFY(id > 0);
        PlanSaludForm f(*c->e);
        QVERIFY(f.cargar(id));
        f.setTexto(QStringLiteral("Nombre"), QStringLiteral("Plan Senior Plus"));
        c->d.no();
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Atención"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Ha cambiado el nombre de este Plan de Salud. ¿Confirma que "
                                "desea guardar esta modificación?"));
        // Removing the last condition: the question comes first, then the list check.
        QVERIFY(f.condiciones().eliminar(0));
        c->d.si();
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Debe informar al menos una condición en el listado"));
        QVERIFY(condicion(f, c->seccion, QStringLiteral("1")));
        c->d.si();
        QVERIFY(f.guardar());

        QVERIFY(!f.cargar(id + 50));
        QCOMPARE(c->d.ultimo().icono, Icono::Critico);
        QCOMPARE(c->d.ultimo().titulo,
                 QStringLiteral("Error al intentar acceder al PlanSalud numero %1.").arg(id + 50));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede "
                                "que este PlanSalud haya sido eliminado."));
        QCOMPARE(f.texto(QStringLiteral("Nombre")), QStringLiteral("Plan Senior Plus"));
    }

    void eliminar() {
        auto c = caso();
        const qint64 id = crearPlan(*c, QStringLiteral("Plan Felino"));
        Registro m(*descriptorTabla(QStringLiteral("Mascotas")));
        m.setValor(QStringLiteral("IdCliente"), 1);
        m.setValor(QStringLiteral("Nombre"), QStringLiteral("Misi"));
        m.setValor(QStringLiteral("IdPlanSalud"), static_cast<qlonglong>(id));
        const QVariant mascota = RegistroStore(c->t.db()).crear(m);
        PlanSaludForm f(*c->e);
        QVERIFY(f.cargar(id));
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No se puede eliminar este Plan de Salud porque tiene Mascotas inscritas."));
        RegistroStore(c->t.db()).ejecutar(QStringLiteral("DELETE FROM Mascotas WHERE IdMascota = ?"),
                                          {mascota});
        c->d.no();
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar este Plan de Salud?"));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        c->d.si();
        QVERIFY(f.eliminar());
        QVERIFY(f.esNuevo());
        QCOMPARE(RegistroStore(c->t.db()).contar(*descriptorTabla(QStringLiteral("PlanesSalud"))), 0);
        QCOMPARE(RegistroStore(c->t.db()).contar(*descriptorTabla(QStringLiteral("CondicionesEspeciales"))),
                 0);
    }

    void busqueda() {
        auto c = caso();
        crearPlan(*c, QStringLiteral("Plan Cachorro"));
        crearPlan(*c, QStringLiteral("Plan Gato Senior"));
        crearPlan(*c, QStringLiteral("Antiguo plan cachorro"), QStringLiteral("01/01/2025"));
        crearPlan(*c, QStringLiteral("Plan Exótico"), QStringLiteral("01/02/2025"));
        PlanSaludBusquedaForm b(*c->e);
        QCOMPARE(PlanSaludBusquedaForm::columnas(),
                 QStringList({QStringLiteral("Descripción"), QStringLiteral("Alta")}));
        auto nombres = [&] {
            QStringList n;
            for (int i = 0; i < b.resultado().size(); ++i)
                n << b.celdas(i).first();
            return n;
        };
        b.texto = QStringLiteral("plan");
        QVERIFY(b.buscar());
        QCOMPARE(nombres(),
                 QStringList({QStringLiteral("Plan Cachorro"), QStringLiteral("Plan Gato Senior")}));
        QCOMPARE(b.celdas(0).at(1), QStringLiteral("04/05/2026"));
        b.modo = PlanSaludBusquedaForm::Modo::Contiene;
        b.texto = QStringLiteral("CACHORRO");
        QVERIFY(b.buscar());
        QCOMPARE(nombres(), QStringList({QStringLiteral("Plan Cachorro")}));
        b.incluirBajas = true;
        QVERIFY(b.buscar());
        QCOMPARE(nombres(),
                 QStringList({QStringLiteral("Antiguo plan cachorro"), QStringLiteral("Plan Cachorro")}));
        b.modo = PlanSaludBusquedaForm::Modo::Exacto;
        b.texto = QStringLiteral("plan gato");
        QVERIFY(b.buscar());
        QVERIFY(b.resultado().isEmpty());
        QVERIFY(c->d.mensajes().isEmpty());

        // Every match has left: the user is asked before seeing them.
        b.incluirBajas = false;
        b.modo = PlanSaludBusquedaForm::Modo::Contiene;
        b.texto = QStringLiteral("ótico");
        c->d.no();
        QVERIFY(b.buscar());
        QVERIFY(b.resultado().isEmpty());
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Resultado de la búsqueda"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Todos los Planes de Salud que cumplen las condiciones "
                                "especificadas están dados de Baja. ¿Desea verlos igualmente?"));
        c->d.si();
        QVERIFY(b.buscar());
        QCOMPARE(nombres(), QStringList({QStringLiteral("Plan Exótico")}));
        QVERIFY(b.resultado().first().baja);
        // No match at all asks nothing.
        c->d.limpiar();
        b.texto = QStringLiteral("zzz");
        QVERIFY(b.buscar());
        QVERIFY(c->d.mensajes().isEmpty());
    }
};

PMX_STORE_TEST_MAIN(TestPlanSalud)
#include "test_plan_salud.moc"
