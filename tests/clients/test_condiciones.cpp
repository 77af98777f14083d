// The special-condition list of clients and health plans: the checks in order, the article
// search, duplicates, and each owner's rows stored apart.
#include "clients/condiciones_form.h"
#include "sesion.h"

namespace {
struct Rechazo {
    bool modificando, conArticulo, conSeccion;
    QString precio, tarifa, dto, titulo, mensaje;
};
} // namespace
Q_DECLARE_METATYPE(Rechazo)

class TestCondiciones : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        Caso() : Sesion(QDateTime(QDate(2026, 3, 2), QTime(10, 0))) {}
        qint64 vacuna = 0, pienso = 0, seccion = 0;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        c->vacuna = c->s.fila(u"Articulos"_s, {{u"Articulo"_s, u"Vacuna rabia"_s}});
        c->pienso = c->s.fila(u"Articulos"_s, {{u"Articulo"_s, u"Pienso cachorro 3 kg"_s}});
        c->seccion = c->s.seccion(u"Alimentación"_s);
        return c;
    }

    static EntradaCondicion entrada(std::optional<qint64> articulo, std::optional<qint64> seccion,
                                    const QString& precio, const QString& tarifa, const QString& dto = {}) {
        EntradaCondicion e;
        e.IdArticulo = articulo;
        e.IdSeccion = seccion;
        e.Precio = precio;
        e.Tarifa = tarifa;
        e.Descuento = dto;
        return e;
    }

private slots:
    // A refused entry, in the order of the checks (price and tariff before article and section).
    void comprobaciones_data() {
        QTest::addColumn<Rechazo>("k");
        auto fila = [](const char* nombre, const Rechazo& k) { QTest::newRow(nombre) << k; };
        const QString mal = u"Campos mal informados"_s;
        const QString erronea = u"Información introducida errónea"_s;
        const QString sinPrecio = u"Debe asignar un precio especial o una nueva tarifa."_s;
        const QString ambos = u"No puede asignar a la vez un precio especial y una nueva tarifa."_s;
        const QString precioMal =
            u"El precio especial debe ser un importe positivo, con coma decimal (por ejemplo 1.234,56)."_s;
        fila("nada", {false, false, false, "", "", "", mal, sinPrecio});
        fila("precio y tarifa sin destino", {false, false, false, "10,00", "TARIFA 2", "", mal, ambos});
        fila("sin destino", {false, false, false, "10,00", "", "", mal,
                             u"Debe indicar un artículo concreto o la Sección que desea incluir"_s});
        fila("modificar sin destino", {true, false, false, "", "TARIFA 3", "", mal,
                                       u"Debe indicar la nueva Sección que desea incluir"_s});
        fila("precio no numérico", {false, false, true, "diez", "", "", erronea, precioMal});
        fila("descuento excesivo", {false, true, false, "", "TARIFA 1", "120", erronea,
                                    u"El descuento debe ser un porcentaje entre 0 y 100."_s});
    }

    void comprobaciones() {
        QFETCH(Rechazo, k);
        auto c = caso();
        CondicionesForm f(c->e, DuenoCondiciones::Cliente);
        QVERIFY(f.insertar(entrada(c->pienso, std::nullopt, u"5,00"_s, QString())));
        const auto antes = f.celdas(0);
        const auto e = entrada(k.conArticulo ? std::optional<qint64>(c->vacuna) : std::nullopt,
                               k.conSeccion ? std::optional<qint64>(c->seccion) : std::nullopt, k.precio,
                               k.tarifa, k.dto);
        c->d.limpiar();
        QVERIFY(!(k.modificando ? f.modificar(0, e) : f.insertar(e)));
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, k.titulo);
        QCOMPARE(c->d.ultimoTexto(), k.mensaje);
        // Nothing changed in the list.
        QCOMPARE(f.filas().size(), 1);
        QCOMPARE(f.celdas(0), antes);
    }

    void articuloElegidoYRepetido() {
        auto c = caso();
        CondicionesForm f(c->e, DuenoCondiciones::PlanSalud);
        // Nothing chosen in the article search.
        QVERIFY(!f.elegirArticulo());
        c->e.buscadores.articulo = [&](const QString&) -> std::optional<qint64> { return c->vacuna; };
        QCOMPARE(f.elegirArticulo(u"vac"_s), std::optional<qint64>(c->vacuna));
        QVERIFY(c->d.mensajes().isEmpty());

        QVERIFY(f.insertar(entrada(c->vacuna, std::nullopt, u"1234,5"_s, QString(), u"10"_s)));
        QCOMPARE(f.celdas(0), QStringList({u"Vacuna rabia"_s, QString(), QString(), QString(), u"1.234,50"_s,
                                           QString(), u"10,00"_s}));

        // The same article again, inserted or put in another row: refused with the client's wording.
        QVERIFY(!f.insertar(entrada(c->vacuna, std::nullopt, QString(), u"TARIFA 2"_s)));
        QCOMPARE(c->d.ultimo().titulo, u"Error al modificar un precio existente"_s);
        QCOMPARE(c->d.ultimoTexto(),
                 u"Este artículo ya se encuentra incluido en la ficha comercial del cliente"_s);
        QVERIFY(f.insertar(entrada(std::nullopt, c->seccion, QString(), u"TARIFA 2"_s)));
        QCOMPARE(f.celdas(1).at(1), u"Alimentación"_s);
        QCOMPARE(f.celdas(1).at(5), u"TARIFA 2"_s);

        // An article that cannot be read.
        c->d.limpiar();
        c->e.buscadores.articulo = [](const QString&) -> std::optional<qint64> { return 987; };
        QVERIFY(!f.elegirArticulo());
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().icono, Icono::Critico);
        QCOMPARE(c->d.ultimo().titulo, u"Error al intentar acceder al articulo número987"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Ha sido imposible acceder al artículo."_s);
        QVERIFY(!f.insertar(entrada(987, std::nullopt, u"1"_s, QString())));
        QCOMPARE(f.filas().size(), 2);
    }

    void cambioRechazadoPorElBloqueo() {
        auto c = caso();
        CondicionesForm f(c->e, DuenoCondiciones::Cliente);
        bool permitir = false;
        f.antesDeCambiar = [&] { return permitir; };
        QVERIFY(!f.insertar(entrada(c->vacuna, std::nullopt, u"3"_s, QString())));
        QVERIFY(f.filas().isEmpty());
        permitir = true;
        QVERIFY(f.insertar(entrada(c->vacuna, std::nullopt, u"3"_s, QString())));
        permitir = false;
        QVERIFY(!f.eliminar(0));
        QCOMPARE(f.filas().size(), 1);
    }

    void guardarPorDueno() {
        auto c = caso();
        CondicionesForm cliente(c->e, DuenoCondiciones::Cliente);
        QVERIFY(cliente.insertar(entrada(c->vacuna, std::nullopt, u"15,5"_s, QString())));
        QVERIFY(cliente.insertar(entrada(std::nullopt, c->seccion, QString(), u"TARIFA 3"_s, u"5"_s)));
        CondicionesForm plan(c->e, DuenoCondiciones::PlanSalud);
        QVERIFY(plan.insertar(entrada(c->pienso, std::nullopt, QString(), u"TARIFA 2"_s)));
        // A client and a plan with the same number: the rows are told apart by their owner.
        c->s.cliente(u"Ana Núñez"_s, {{u"IdCliente"_s, 7}});
        c->s.plan(u"Plan Cachorro"_s, {{u"IdPlanSalud"_s, 7}});
        {
            Transaction tr = c->db().transaccion();
            cliente.guardar(7);
            plan.guardar(7);
            tr.commit();
        }
        QVERIFY(!cliente.modificada());

        CondicionesForm leido(c->e, DuenoCondiciones::Cliente);
        leido.cargar(7);
        QCOMPARE(CondicionesForm::columnas(),
                 QStringList({u"Articulo"_s, u"Sección"_s, u"Familia"_s, u"SubFamilia"_s, u"Precio"_s,
                              u"Tarifa"_s, u"Dto."_s}));
        QCOMPARE(leido.filas().size(), 2);
        QCOMPARE(leido.celdas(1), QStringList({QString(), u"Alimentación"_s, QString(), QString(), QString(),
                                               u"TARIFA 3"_s, u"5,00"_s}));
        CondicionesForm leidoPlan(c->e, DuenoCondiciones::PlanSalud);
        leidoPlan.cargar(7);
        QCOMPARE(leidoPlan.filas().size(), 1);
        QCOMPARE(leidoPlan.celdas(0).first(), u"Pienso cachorro 3 kg"_s);

        // Saving again replaces the owner's rows and leaves the other owner's alone.
        QVERIFY(leido.eliminar(0));
        leido.guardar(7);
        leido.cargar(7);
        QCOMPARE(leido.filas().size(), 1);
        QCOMPARE(leido.filas().first().IdSeccion, std::optional<qint64>(c->seccion));
        leidoPlan.cargar(7);
        QCOMPARE(leidoPlan.filas().size(), 1);
    }
};

PMX_STORE_TEST_MAIN(TestCondiciones)
#include "test_condiciones.moc"
