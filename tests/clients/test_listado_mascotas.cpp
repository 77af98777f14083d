// The pet list on each engine: the client filter only through the search, each filter and
// each ticked date range, pets that left only when ticked, the heading with its count, the
// messages, and the letter recipients after the data-protection list notice.
#include "clients/listado_mascotas_form.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

namespace {
qint64 crear(Database& db, const QString& t, const QVariantMap& valores) {
    Registro r(*descriptorTabla(t));
    for (auto it = valores.cbegin(); it != valores.cend(); ++it)
        r.setValor(it.key(), it.value());
    return RegistroStore(db).crear(r).toLongLong();
}
} // namespace

class TestListadoMascotas : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        qint64 ana = 0, luis = 0, perro = 0, gato = 0, beagle = 0, plan = 0, obeso = 0;
        qint64 rufo = 0, misi = 0, toby = 0, viejo = 0;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Database& db = c->t.db();
        c->ana = crear(db, QStringLiteral("Clientes"),
                       {{QStringLiteral("Nombre"), QStringLiteral("Ana Núñez")},
                        {QStringLiteral("LOPD"), QStringLiteral("2")}});
        c->luis = crear(db, QStringLiteral("Clientes"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Luis Pérez")},
                         {QStringLiteral("LOPD"), QStringLiteral("1")}});
        c->perro = crear(db, QStringLiteral("Especies"),
                         {{QStringLiteral("Descripcion"), QStringLiteral("Perro")},
                          {QStringLiteral("Activo"), QStringLiteral("S")}});
        c->gato = crear(db, QStringLiteral("Especies"),
                        {{QStringLiteral("Descripcion"), QStringLiteral("Gato")},
                         {QStringLiteral("Activo"), QStringLiteral("S")}});
        c->beagle = crear(db, QStringLiteral("Razas"),
                          {{QStringLiteral("Descripcion"), QStringLiteral("Beagle")},
                           {QStringLiteral("IdEspecie"), c->perro},
                           {QStringLiteral("Activo"), QStringLiteral("S")}});
        c->plan = crear(db, QStringLiteral("PlanesSalud"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Plan Senior")}});
        c->obeso = crear(db, QStringLiteral("CondicionesCorporales"),
                         {{QStringLiteral("Descripcion"), QStringLiteral("Obeso")}});
        c->rufo = crear(db, QStringLiteral("Mascotas"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Rufo")},
                         {QStringLiteral("IdCliente"), c->ana},
                         {QStringLiteral("IdEspecie"), c->perro},
                         {QStringLiteral("IdRaza"), c->beagle},
                         {QStringLiteral("Sexo"), QStringLiteral("M")},
                         {QStringLiteral("TipoMascota"), QStringLiteral("Compañía")},
                         {QStringLiteral("FechaNacimiento"), QDate(2019, 4, 2)},
                         {QStringLiteral("FechaAlta"), QDate(2020, 1, 15)},
                         {QStringLiteral("FechaUltimaVisita"), QDate(2026, 10, 1)},
                         {QStringLiteral("IdPlanSalud"), c->plan},
                         {QStringLiteral("CaducidadPlan"), QDate(2027, 1, 31)},
                         {QStringLiteral("IdCondicionCorporal"), c->obeso},
                         {QStringLiteral("Baja"), false}});
        c->misi = crear(db, QStringLiteral("Mascotas"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Misi")},
                         {QStringLiteral("IdCliente"), c->ana},
                         {QStringLiteral("IdEspecie"), c->gato},
                         {QStringLiteral("Sexo"), QStringLiteral("H")},
                         {QStringLiteral("FechaNacimiento"), QDate(2022, 8, 20)},
                         {QStringLiteral("FechaAlta"), QDate(2022, 9, 1)}});
        c->toby = crear(db, QStringLiteral("Mascotas"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Toby")},
                         {QStringLiteral("IdCliente"), c->luis},
                         {QStringLiteral("IdEspecie"), c->perro},
                         {QStringLiteral("Sexo"), QStringLiteral("M")},
                         {QStringLiteral("FechaAlta"), QDate(2024, 5, 5)},
                         {QStringLiteral("Baja"), false}});
        c->viejo = crear(db, QStringLiteral("Mascotas"),
                         {{QStringLiteral("Nombre"), QStringLiteral("Viejo")},
                          {QStringLiteral("IdCliente"), c->luis},
                          {QStringLiteral("IdEspecie"), c->perro},
                          {QStringLiteral("Baja"), true},
                          {QStringLiteral("FechaBaja"), QDate(2025, 2, 2)}});
        c->e = std::make_unique<Entorno>(db, c->d, reloj_);
        return c;
    }

    static QStringList nombres(const ListadoMascotasForm& f) {
        QStringList l;
        for (const auto& r : f.filas())
            l << r.Mascota;
        return l;
    }

private slots:
    void filtros_data() {
        QTest::addColumn<QString>("filtro");
        QTest::addColumn<QStringList>("esperadas");
        QTest::newRow("ninguno") << QString()
                                 << QStringList{QStringLiteral("Misi"), QStringLiteral("Rufo"),
                                                QStringLiteral("Toby")};
        QTest::newRow("especie") << QStringLiteral("especie")
                                 << QStringList{QStringLiteral("Rufo"), QStringLiteral("Toby")};
        QTest::newRow("raza") << QStringLiteral("raza") << QStringList{QStringLiteral("Rufo")};
        QTest::newRow("sexo") << QStringLiteral("sexo") << QStringList{QStringLiteral("Misi")};
        QTest::newRow("tipo") << QStringLiteral("tipo") << QStringList{QStringLiteral("Rufo")};
        QTest::newRow("plan") << QStringLiteral("plan") << QStringList{QStringLiteral("Rufo")};
        QTest::newRow("condición") << QStringLiteral("condicion") << QStringList{QStringLiteral("Rufo")};
        QTest::newRow("nacimiento") << QStringLiteral("nacimiento") << QStringList{QStringLiteral("Misi")};
        QTest::newRow("nacimiento sin marcar")
            << QStringLiteral("nacimiento-sin-marcar")
            << QStringList{QStringLiteral("Misi"), QStringLiteral("Rufo"), QStringLiteral("Toby")};
        QTest::newRow("alta") << QStringLiteral("alta")
                              << QStringList{QStringLiteral("Misi"), QStringLiteral("Rufo")};
        QTest::newRow("caducidad") << QStringLiteral("caducidad") << QStringList{QStringLiteral("Rufo")};
        QTest::newRow("última visita") << QStringLiteral("visita") << QStringList{QStringLiteral("Rufo")};
        QTest::newRow("bajas") << QStringLiteral("bajas")
                               << QStringList{QStringLiteral("Misi"), QStringLiteral("Rufo"),
                                              QStringLiteral("Toby"), QStringLiteral("Viejo")};
        QTest::newRow("baja entre fechas") << QStringLiteral("baja") << QStringList{QStringLiteral("Viejo")};
    }

    void filtros() {
        QFETCH(QString, filtro);
        QFETCH(QStringList, esperadas);
        auto c = caso();
        ListadoMascotasForm f(*c->e);
        auto& x = f.filtro;
        if (filtro == QStringLiteral("especie")) x.IdEspecie = c->perro;
        if (filtro == QStringLiteral("raza")) x.IdRaza = c->beagle;
        if (filtro == QStringLiteral("sexo")) x.Sexo = QStringLiteral("H");
        if (filtro == QStringLiteral("tipo")) x.TipoMascota = QStringLiteral("Compañía");
        if (filtro == QStringLiteral("plan")) x.IdPlanSalud = c->plan;
        if (filtro == QStringLiteral("condicion")) x.IdCondicionCorporal = c->obeso;
        if (filtro.startsWith(QStringLiteral("nacimiento")))
            x.nacimiento = {filtro == QStringLiteral("nacimiento"), QDate(2020, 1, 1), QDate(2023, 1, 1)};
        if (filtro == QStringLiteral("alta"))
            x.alta = {true, QDate(2020, 1, 15), QDate(2022, 9, 1)}; // both ends included
        if (filtro == QStringLiteral("caducidad")) x.caducidadPlan = {true, QDate(2027, 1, 1), QDate()};
        if (filtro == QStringLiteral("visita")) x.ultimaVisita = {true, QDate(), QDate(2026, 11, 23)};
        if (filtro == QStringLiteral("bajas")) x.incluirBajas = true;
        if (filtro == QStringLiteral("baja")) {
            x.incluirBajas = true;
            x.baja = {true, QDate(2025, 1, 1), QDate(2025, 12, 31)};
        }
        QVERIFY(f.buscar());
        QCOMPARE(nombres(f), esperadas);
        QCOMPARE(f.encabezado(), QStringLiteral(" Mascotas que cumplen las condiciones (") +
                                     QString::number(esperadas.size()) + QStringLiteral(") "));
        QVERIFY(c->d.mensajes().isEmpty());
    }

    void columnasYTextos() {
        auto c = caso();
        ListadoMascotasForm f(*c->e);
        QCOMPARE(
            ListadoMascotasForm::cabeceras(),
            (QStringList{QStringLiteral("Mascota"), QStringLiteral("Cliente"), QStringLiteral("F.Nacim."),
                         QStringLiteral("Especie"), QStringLiteral("Raza"), QStringLiteral("Sexo"),
                         QStringLiteral("Estado"), QStringLiteral("Ult.Visita"), QStringLiteral("Tipo"),
                         QStringLiteral("Plan de salud"), QStringLiteral("Caducidad")}));
        f.filtro.IdRaza = c->beagle;
        QVERIFY(f.buscar());
        QCOMPARE(
            ListadoMascotasForm::textos(f.filas().first()),
            (QStringList{QStringLiteral("Rufo"), QStringLiteral("Ana Núñez"), QStringLiteral("02/04/2019"),
                         QStringLiteral("Perro"), QStringLiteral("Beagle"), QStringLiteral("Macho"),
                         QString(), QStringLiteral("01/10/2026"), QStringLiteral("Compañía"),
                         QStringLiteral("Plan Senior"), QStringLiteral("31/01/2027")}));
    }

    // The client only through the search; a typed name is refused; typing over a pick drops it.
    void clienteSoloConLaLupa() {
        auto c = caso();
        ListadoMascotasForm f(*c->e);
        f.setTextoCliente(QStringLiteral("Luis"));
        QVERIFY(!f.buscar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Información incompleta"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Debe buscar el cliente a través de la lupa para seleccionarlo"));
        QString pedido;
        c->e->buscadores.cliente = [&](const PeticionCliente& p) -> std::optional<ClienteElegido> {
            pedido = p.TextoInicial;
            ClienteElegido e;
            e.claveCliente = c->luis;
            e.Cliente = QStringLiteral("Luis Pérez");
            return e;
        };
        QVERIFY(f.elegirCliente());
        QCOMPARE(pedido, QStringLiteral("Luis"));
        QCOMPARE(f.textoCliente(), QStringLiteral("Luis Pérez"));
        QVERIFY(f.buscar());
        QCOMPARE(nombres(f), QStringList{QStringLiteral("Toby")});
        f.setTextoCliente(QStringLiteral("Luis Pérez G"));
        QVERIFY(!f.cliente());
        QVERIFY(!f.buscar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Información incompleta"));
        f.setTextoCliente(QString());
        QVERIFY(f.buscar());
        QCOMPARE(f.filas().size(), 3);
    }

    void sinResultados() {
        auto c = caso();
        ListadoMascotasForm f(*c->e);
        f.filtro.IdEspecie = c->gato;
        f.filtro.Sexo = QStringLiteral("M");
        QVERIFY(!f.buscar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Resultado de la búsqueda"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No existen Mascotas que cumplen los filtros especificados"));
        QVERIFY(f.filas().isEmpty());
        QCOMPARE(f.encabezado(), QStringLiteral(" Mascotas que cumplen las condiciones (0) "));
        QVERIFY(!f.mascotaActual(0));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Aviso"));
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Debe seleccionar previamente una Mascota"));
    }

    // Letters: none selected is refused; owners who do not consent go through the notice,
    // which may keep or drop them, or cancel the whole letter.
    void destinatariosDeCarta() {
        auto c = caso();
        ListadoMascotasForm f(*c->e);
        QVERIFY(f.buscar()); // Misi (Ana), Rufo (Ana), Toby (Luis)
        int llamadas = 0;
        auto nadie = [&](AvisoLopdLista&) {
            ++llamadas;
            return true;
        };
        QVERIFY(!f.destinatariosCarta(nadie));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Aviso"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No ha seleccionado ninguna mascota. Seleccione al menos una "
                                "mascota para emitirle una carta."));
        f.seleccion = {2};
        QCOMPARE(f.destinatariosCarta(nadie), QString::number(c->toby));
        QCOMPARE(llamadas, 0); // Luis consents: no notice

        f.seleccion = {2, 0, 1};
        QCOMPARE(f.destinatariosCarta(nadie), QString::number(c->toby)); // shown, none ticked
        QCOMPARE(llamadas, 1);
        auto soloRufo = [&](AvisoLopdLista& a) {
            if (a.avisados().size() != 2) return false; // Misi and Rufo, whose owner does not consent
            for (int i = 0; i < a.avisados().size(); ++i)
                if (a.avisados().at(i).Mascota == QStringLiteral("Rufo")) a.setIncluir(i, true);
            return true;
        };
        QCOMPARE(f.destinatariosCarta(soloRufo),
                 QString::number(c->rufo) + QStringLiteral("¬") + QString::number(c->toby));
        auto cancelar = [](AvisoLopdLista& a) {
            a.incluirTodos(true);
            a.salir = true;
            return true;
        };
        QVERIFY(!f.destinatariosCarta(cancelar));
    }
};

PMX_STORE_TEST_MAIN(TestListadoMascotas)
#include "test_listado_mascotas.moc"
