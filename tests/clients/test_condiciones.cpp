// The special-condition list shared by the client's commercial file and the health plans:
// the checks in their order with their exact texts, the article picked through the article
// search, duplicates, and storing the rows of each owner apart.
#include "app/ficha_form.h"
#include "clients/condiciones_form.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

class TestCondiciones : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 2), QTime(10, 0))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        DescriptorTabla articulos;
        qint64 vacuna = 0, pienso = 0, seccion = 0;
    };

    // Articles live in a test-only table with the article fields the list reads.
    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        c->e = std::make_unique<Entorno>(c->t.db(), c->d, reloj_);
        c->e->puesto = QStringLiteral("CONSULTA1");
        c->articulos.tabla = QStringLiteral("ArticulosPrueba");
        c->articulos.descTabla = QStringLiteral("Artículo");
        c->articulos.columnaS = {
            col(QStringLiteral("ArtCodArticulo"), TipoColumna::Autonumerico, QStringLiteral("Código"), 0,
                false),
            col(QStringLiteral("Articulo"), TipoColumna::Texto, QStringLiteral("Artículo"), 60)};
        c->articulos.clave = {QStringLiteral("ArtCodArticulo")};
        c->articulos.columnaTexto = QStringLiteral("Articulo");
        for (const auto& sql : sqlCrearTabla(c->articulos, c->t.db().motor(), 1))
            c->t.db().ejecutarDirecto(sql);
        RegistroStore store(c->t.db());
        Registro a(c->articulos);
        a.setValor(QStringLiteral("Articulo"), QStringLiteral("Vacuna rabia"));
        c->vacuna = store.crear(a).toLongLong();
        Registro b(c->articulos);
        b.setValor(QStringLiteral("Articulo"), QStringLiteral("Pienso cachorro 3 kg"));
        c->pienso = store.crear(b).toLongLong();
        Registro s(*descriptorTabla(QStringLiteral("Secciones")));
        s.setValor(QStringLiteral("Descripcion"), QStringLiteral("Alimentación"));
        c->seccion = store.crear(s).toLongLong();
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
    void columnas() {
        QCOMPARE(CondicionesForm::columnas(),
                 QStringList({QStringLiteral("Articulo"), QStringLiteral("Sección"),
                              QStringLiteral("Familia"), QStringLiteral("SubFamilia"),
                              QStringLiteral("Precio"), QStringLiteral("Tarifa"), QStringLiteral("Dto.")}));
    }

    void comprobaciones_data() {
        QTest::addColumn<bool>("modificando");
        QTest::addColumn<bool>("conArticulo");
        QTest::addColumn<bool>("conSeccion");
        QTest::addColumn<QString>("precio");
        QTest::addColumn<QString>("tarifa");
        QTest::addColumn<QString>("dto");
        QTest::addColumn<QString>("titulo");
        QTest::addColumn<QString>("mensaje");
        const QString mal = QStringLiteral("Campos mal informados");
        const QString erronea = QStringLiteral("Información introducida errónea");
        const QString sinPrecio = QStringLiteral("Debe asignar un precio especial o una nueva tarifa.");
        const QString ambos =
            QStringLiteral("No puede asignar a la vez un precio especial y una nueva tarifa.");
        const QString sinDestino =
            QStringLiteral("Debe indicar un artículo concreto o la Sección que desea incluir");
        const QString sinSeccion = QStringLiteral("Debe indicar la nueva Sección que desea incluir");
        // The price/tariff checks come before the article/section check.
        QTest::newRow("nada") << false << false << false << ""
                              << ""
                              << "" << mal << sinPrecio;
        QTest::newRow("precio y tarifa sin destino") << false << false << false << "10,00"
                                                     << "TARIFA 2"
                                                     << "" << mal << ambos;
        QTest::newRow("precio y tarifa con artículo") << false << true << false << "10,00"
                                                      << "TARIFA 2"
                                                      << "" << mal << ambos;
        QTest::newRow("sin destino") << false << false << false << "10,00"
                                     << ""
                                     << "" << mal << sinDestino;
        QTest::newRow("modificar sin destino") << true << false << false << ""
                                               << "TARIFA 3"
                                               << "" << mal << sinSeccion;
        QTest::newRow("modificar sin precio") << true << false << true << ""
                                              << ""
                                              << "" << mal << sinPrecio;
        QTest::newRow("precio no numérico")
            << false << false << true << "diez"
            << ""
            << "" << erronea
            << QStringLiteral(
                   "El precio especial debe ser un importe positivo, con coma decimal (por ejemplo "
                   "1.234,56).");
        QTest::newRow("descuento excesivo")
            << false << true << false << ""
            << "TARIFA 1"
            << "120" << erronea << QStringLiteral("El descuento debe ser un porcentaje entre 0 y 100.");
    }

    void comprobaciones() {
        QFETCH(bool, modificando);
        QFETCH(bool, conArticulo);
        QFETCH(bool, conSeccion);
        QFETCH(QString, precio);
        QFETCH(QString, tarifa);
        QFETCH(QString, dto);
        QFETCH(QString, titulo);
        QFETCH(QString, mensaje);
        auto c = caso();
        CondicionesForm f(*c->e, DuenoCondiciones::Cliente);
        f.setTablaArticulos(&c->articulos);
        QVERIFY(f.insertar(entrada(c->pienso, std::nullopt, QStringLiteral("5,00"), QString())));
        const auto antes = f.celdas(0);
        const auto e =
            entrada(conArticulo ? std::optional<qint64>(c->vacuna) : std::nullopt,
                    conSeccion ? std::optional<qint64>(c->seccion) : std::nullopt, precio, tarifa, dto);
        c->d.limpiar();
        QVERIFY(!(modificando ? f.modificar(0, e) : f.insertar(e)));
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, titulo);
        QCOMPARE(c->d.ultimoTexto(), mensaje);
        // Nothing changed in the list.
        QCOMPARE(f.filas().size(), 1);
        QCOMPARE(f.celdas(0), antes);
    }

    void articuloElegidoYRepetido() {
        auto c = caso();
        CondicionesForm f(*c->e, DuenoCondiciones::PlanSalud);
        f.setTablaArticulos(&c->articulos);
        // Nothing chosen in the article search.
        QVERIFY(!f.elegirArticulo());
        QString pedido;
        c->e->buscadores.articulo = [&](const QString& texto) -> std::optional<qint64> {
            pedido = texto;
            return c->vacuna;
        };
        QCOMPARE(f.elegirArticulo(QStringLiteral("vac")), std::optional<qint64>(c->vacuna));
        QCOMPARE(pedido, QStringLiteral("vac"));
        QVERIFY(c->d.mensajes().isEmpty());

        QVERIFY(f.insertar(
            entrada(c->vacuna, std::nullopt, QStringLiteral("1234,5"), QString(), QStringLiteral("10"))));
        QCOMPARE(f.celdas(0), QStringList({QStringLiteral("Vacuna rabia"), QString(), QString(), QString(),
                                           QStringLiteral("1.234,50"), QString(), QStringLiteral("10,00")}));
        QVERIFY(f.modificada());

        // The same article again, inserted or put in another row: refused with the client's wording.
        QVERIFY(!f.insertar(entrada(c->vacuna, std::nullopt, QString(), QStringLiteral("TARIFA 2"))));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Error al modificar un precio existente"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Este artículo ya se encuentra incluido en la ficha comercial del cliente"));
        QVERIFY(f.insertar(entrada(std::nullopt, c->seccion, QString(), QStringLiteral("TARIFA 2"))));
        QCOMPARE(f.celdas(1).at(1), QStringLiteral("Alimentación"));
        QCOMPARE(f.celdas(1).at(5), QStringLiteral("TARIFA 2"));
        c->d.limpiar();
        QVERIFY(!f.modificar(1, entrada(c->vacuna, std::nullopt, QString(), QStringLiteral("TARIFA 2"))));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Este artículo ya se encuentra incluido en la ficha comercial del cliente"));
        // A row keeps its own article when modified.
        QVERIFY(f.modificar(0, entrada(c->vacuna, std::nullopt, QStringLiteral("20"), QString())));
        QCOMPARE(f.celdas(0).at(4), QStringLiteral("20,00"));
        QCOMPARE(f.entrada(0).Precio, QStringLiteral("20,00"));

        // An article that cannot be read.
        c->d.limpiar();
        c->e->buscadores.articulo = [](const QString&) -> std::optional<qint64> { return 987; };
        QVERIFY(!f.elegirArticulo());
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().icono, Icono::Critico);
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Error al intentar acceder al articulo número987"));
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Ha sido imposible acceder al artículo."));
        QVERIFY(!f.insertar(entrada(987, std::nullopt, QStringLiteral("1"), QString())));
        QCOMPARE(f.filas().size(), 2);
    }

    void cambioRechazadoPorElBloqueo() {
        auto c = caso();
        CondicionesForm f(*c->e, DuenoCondiciones::Cliente);
        f.setTablaArticulos(&c->articulos);
        bool permitir = false;
        f.antesDeCambiar = [&] { return permitir; };
        QVERIFY(!f.insertar(entrada(c->vacuna, std::nullopt, QStringLiteral("3"), QString())));
        QVERIFY(f.filas().isEmpty());
        QVERIFY(!f.modificada());
        permitir = true;
        QVERIFY(f.insertar(entrada(c->vacuna, std::nullopt, QStringLiteral("3"), QString())));
        permitir = false;
        QVERIFY(!f.eliminar(0));
        QCOMPARE(f.filas().size(), 1);
        permitir = true;
        QVERIFY(f.eliminar(0));
        QVERIFY(f.filas().isEmpty());
    }

    void guardarPorDueno() {
        auto c = caso();
        CondicionesForm cliente(*c->e, DuenoCondiciones::Cliente);
        cliente.setTablaArticulos(&c->articulos);
        QVERIFY(cliente.insertar(entrada(c->vacuna, std::nullopt, QStringLiteral("15,5"), QString())));
        QVERIFY(cliente.insertar(
            entrada(std::nullopt, c->seccion, QString(), QStringLiteral("TARIFA 3"), QStringLiteral("5"))));
        CondicionesForm plan(*c->e, DuenoCondiciones::PlanSalud);
        plan.setTablaArticulos(&c->articulos);
        QVERIFY(plan.insertar(entrada(c->pienso, std::nullopt, QString(), QStringLiteral("TARIFA 2"))));
        {
            Transaction tr = c->t.db().transaccion();
            cliente.guardar(7);
            plan.guardar(7);
            tr.commit();
        }
        QVERIFY(!cliente.modificada());

        CondicionesForm leido(*c->e, DuenoCondiciones::Cliente);
        leido.setTablaArticulos(&c->articulos);
        leido.cargar(7);
        QCOMPARE(leido.filas().size(), 2);
        QCOMPARE(leido.celdas(0), cliente.celdas(0));
        QCOMPARE(leido.celdas(1),
                 QStringList({QString(), QStringLiteral("Alimentación"), QString(), QString(), QString(),
                              QStringLiteral("TARIFA 3"), QStringLiteral("5,00")}));
        CondicionesForm leidoPlan(*c->e, DuenoCondiciones::PlanSalud);
        leidoPlan.setTablaArticulos(&c->articulos);
        leidoPlan.cargar(7);
        QCOMPARE(leidoPlan.filas().size(), 1);
        QCOMPARE(leidoPlan.celdas(0).first(), QStringLiteral("Pienso cachorro 3 kg"));

        // Saving again replaces the owner's rows and leaves the other owner's alone.
        QVERIFY(leido.eliminar(0));
        leido.guardar(7);
        CondicionesForm otra(*c->e, DuenoCondiciones::Cliente);
        otra.cargar(7);
        QCOMPARE(otra.filas().size(), 1);
        QCOMPARE(otra.filas().first().IdSeccion, std::optional<qint64>(c->seccion));
        leidoPlan.cargar(7);
        QCOMPARE(leidoPlan.filas().size(), 1);
    }
};

PMX_STORE_TEST_MAIN(TestCondiciones)
#include "test_condiciones.moc"
