// The health plan form and search on both engines: the save checks in order, the questions,
// read error, deleting, the search modes, and a save refused once its lock was removed.
#include "clinical/plan_salud_busqueda_form.h"
#include "clinical/plan_salud_form.h"
#include "core/dinero.h"
#include "sesion.h"

class TestPlanSalud : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        Caso() : Sesion(QDateTime(QDate(2026, 5, 4), QTime(9, 30))) {}
        qint64 seccion = 0;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        c->seccion = c->s.seccion(u"Desparasitación"_s);
        return c;
    }

    static bool condicion(PlanSaludForm& f, qint64 seccion, const QString& precio) {
        EntradaCondicion e;
        e.IdSeccion = seccion;
        e.Precio = precio;
        return f.condiciones().insertar(e);
    }

    static qint64 crearPlan(Caso& c, const QString& nombre, const QString& baja = {}) {
        PlanSaludForm f(c.e);
        f.setTexto(u"Nombre"_s, nombre);
        f.setTexto(u"FechaBaja"_s, baja);
        if (!condicion(f, c.seccion, u"9,95"_s) || !f.guardar()) return 0;
        c.d.limpiar();
        return *f.idPlan();
    }

private slots:
    // The first failed check only, in order; the last row is saved.
    void ordenDeComprobaciones() {
        const QString fecha = u"Error en fecha"_s;
        const QString obl = u"Campos obligatorios no informados"_s;
        const struct {
            QStringList fechasYNombre; // FechaAlta, FechaBaja, Nombre
            bool conCondicion;
            QString titulo, mensaje;
        } filas[] = {
            {{u"30/02/2026"_s, u"x"_s, {}}, false, fecha, u"La fecha de Alta introducida no es válida."_s},
            {{u"04/05/2026"_s, u"4/5/26"_s, {}},
             false,
             fecha,
             u"La fecha de Baja introducida no es válida."_s},
            {{u"04/05/2026"_s, {}, u"  "_s}, false, obl, u"Debe informar el nombre del Plan de Salud"_s},
            {{u"04/05/2026"_s, {}, u"Plan Cachorro"_s},
             false,
             obl,
             u"Debe informar al menos una condición en el listado"_s},
            {{u"04/05/2026"_s, {}, u"Plan Cachorro"_s}, true, {}, {}}};
        for (const auto& k : filas) {
            const QByteArray fila = (k.mensaje.isEmpty() ? u"correcto"_s : k.mensaje).toUtf8();
            auto c = caso();
            PlanSaludForm f(c->e);
            QCOMPARE(f.titulo(), u"Mantenimiento de Planes de Salud - (Nuevo Plan de Salud)"_s);
            QCOMPARE(f.texto(u"FechaAlta"_s), u"04/05/2026"_s);
            const QStringList columnas = {u"FechaAlta"_s, u"FechaBaja"_s, u"Nombre"_s};
            for (int i = 0; i < columnas.size(); ++i)
                f.setTexto(columnas.at(i), k.fechasYNombre.at(i));
            if (k.conCondicion) QVERIFY(condicion(f, c->seccion, u"12"_s));
            const bool ok = f.guardar();
            QVERIFY2(ok == k.mensaje.isEmpty(), fila.constData());
            QVERIFY2(c->s.contar(u"PlanesSalud"_s) == (ok ? 1 : 0), fila.constData());
            if (ok) {
                QVERIFY(c->d.mensajes().isEmpty());
                QCOMPARE(f.titulo(),
                         u"Mantenimiento de Planes de Salud - %1 - Plan Cachorro"_s.arg(*f.idPlan()));
                continue;
            }
            QVERIFY2(c->d.mensajes().size() == 1, fila.constData());
            QVERIFY2(c->d.ultimo().titulo == k.titulo, fila.constData());
            QCOMPARE(c->d.ultimoTexto(), k.mensaje);
            QVERIFY2(f.esNuevo(), fila.constData());
        }
    }

    // The name-change question, the read error, and deleting (refused while pets are enrolled).
    void cambioDeNombreLecturaYEliminar() {
        auto c = caso();
        const qint64 id = crearPlan(*c, u"Plan Senior"_s);
        QVERIFY(id > 0);
        PlanSaludForm f(c->e);
        QVERIFY(f.cargar(id));
        f.setTexto(u"Nombre"_s, u"Plan Senior Plus"_s);
        c->d.no();
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimo().titulo, u"Atención"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Ha cambiado el nombre de este Plan de Salud. ¿Confirma que "
                                     "desea guardar esta modificación?"_s);
        c->d.si();
        QVERIFY(f.guardar());

        QVERIFY(!f.cargar(id + 50));
        QCOMPARE(c->d.ultimo().titulo, u"Error al intentar acceder al PlanSalud numero %1."_s.arg(id + 50));
        QCOMPARE(c->d.ultimoTexto(), u"Ha sido imposible recuperar la información solicitada. Puede "
                                     "que este PlanSalud haya sido eliminado."_s);
        QCOMPARE(f.texto(u"Nombre"_s), u"Plan Senior Plus"_s);

        const qint64 mascota = c->s.mascota(u"Misi"_s, c->s.cliente(u"Ana Núñez"_s),
                                            c->s.especie(u"Felina"_s), {{u"IdPlanSalud"_s, id}});
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.ultimoTexto(),
                 u"No se puede eliminar este Plan de Salud porque tiene Mascotas inscritas."_s);
        c->db().ejecutarCambio(u"DELETE FROM Mascotas WHERE IdMascota = ?"_s, {mascota});
        c->d.no();
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.ultimoTexto(), u"¿Desea realmente eliminar este Plan de Salud?"_s);
        c->d.si();
        QVERIFY(f.eliminar());
        QVERIFY(f.esNuevo());
        QCOMPARE(c->s.contar(u"PlanesSalud"_s), 0);
        QCOMPARE(c->s.contar(u"CondicionesEspeciales"_s), 0);
    }

    // An administrator removes the plan's lock in the lock manager while the form holds it.
    void bloqueoQuitadoPorElAdministrador() {
        auto c = caso();
        const qint64 id = crearPlan(*c, u"Plan Senior"_s);
        PlanSaludForm f(c->e);
        QVERIFY(f.cargar(id));
        QVERIFY(f.setTexto(u"Notas"_s, u"Incluye analítica"_s));
        QVERIFY(f.condiciones().eliminar(0));
        QVERIFY(condicion(f, c->seccion, u"20"_s));
        QCOMPARE(c->s.contar(u"Bloqueos"_s), 1);
        c->db().ejecutarCambio(u"DELETE FROM Bloqueos"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimoTexto(),
                 u"No es posible guardar el/la Plan de Salud de Plan Senior pues un "
                 "Administrador ha eliminado su bloqueo mientras lo tenía abierto/a. No se "
                 "ha guardado nada: cierre la ventana y vuelva a abrirlo/a."_s);
        QCOMPARE(c->valor(u"SELECT Notas FROM PlanesSalud WHERE IdPlanSalud = ?"_s, {id}).toString(),
                 QString());
        QVERIFY(mismoImporte(
            c->valor(u"SELECT Precio FROM CondicionesEspeciales WHERE IdPlanSalud = ?"_s, {id}).toDouble(),
            9.95));
    }

    void busqueda() {
        auto c = caso();
        crearPlan(*c, u"Plan Cachorro"_s);
        crearPlan(*c, u"Plan Gato Senior"_s);
        crearPlan(*c, u"Antiguo plan cachorro"_s, u"01/01/2025"_s);
        crearPlan(*c, u"Plan Exótico"_s, u"01/02/2025"_s); // the only match of "ótico" has left
        PlanSaludBusquedaForm b(c->e);
        QCOMPARE(PlanSaludBusquedaForm::columnas(), QStringList({u"Descripción"_s, u"Alta"_s}));
        auto nombres = [&] {
            QStringList n;
            for (int i = 0; i < b.resultado().size(); ++i)
                n << b.celdas(i).first();
            return n;
        };
        b.texto = u"plan"_s;
        QVERIFY(b.buscar());
        QCOMPARE(nombres(), QStringList({u"Plan Cachorro"_s, u"Plan Gato Senior"_s}));
        QCOMPARE(b.celdas(0).at(1), u"04/05/2026"_s);
        b.modo = PlanSaludBusquedaForm::Modo::Contiene;
        b.texto = u"CACHORRO"_s;
        b.incluirBajas = true;
        QVERIFY(b.buscar());
        QCOMPARE(nombres(), QStringList({u"Antiguo plan cachorro"_s, u"Plan Cachorro"_s}));

        b.incluirBajas = false;
        b.texto = u"ótico"_s;
        c->d.no();
        QVERIFY(b.buscar());
        QVERIFY(b.resultado().isEmpty());
        QCOMPARE(c->d.ultimo().titulo, u"Resultado de la búsqueda"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Todos los Planes de Salud que cumplen las condiciones "
                                     "especificadas están dados de Baja. ¿Desea verlos igualmente?"_s);
        c->d.si();
        QVERIFY(b.buscar());
        QCOMPARE(nombres(), QStringList({u"Plan Exótico"_s}));
        QVERIFY(b.resultado().first().baja);
    }
};

PMX_STORE_TEST_MAIN(TestPlanSalud)
#include "test_plan_salud.moc"
