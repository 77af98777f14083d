// The pet list on each engine: the client only through the search, the filters, the heading,
// the messages, and the letter recipients after the data-protection notice.
#include "clients/listado_mascotas_form.h"
#include "data/esquema.h"
#include "sesion.h"

class TestListadoMascotas : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        qint64 ana = 0, luis = 0, perro = 0, gato = 0, beagle = 0, plan = 0;
        qint64 rufo = 0, misi = 0, toby = 0, viejo = 0;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Semilla& s = c->s;
        c->ana = s.cliente(u"Ana Núñez"_s, {{u"LOPD"_s, u"2"_s}});
        c->luis = s.cliente(u"Luis Pérez"_s, {{u"LOPD"_s, u"1"_s}});
        c->perro = s.especie(u"Perro"_s);
        c->gato = s.especie(u"Gato"_s);
        c->beagle = s.raza(u"Beagle"_s, c->perro);
        c->plan = s.plan(u"Plan Senior"_s);
        c->rufo = s.mascota(u"Rufo"_s, c->ana, c->perro,
                            {{u"IdRaza"_s, c->beagle},
                             {u"Sexo"_s, u"M"_s},
                             {u"TipoMascota"_s, u"Compañía"_s},
                             {u"FechaNacimiento"_s, QDate(2019, 4, 2)},
                             {u"FechaAlta"_s, QDate(2020, 1, 15)},
                             {u"FechaUltimaVisita"_s, QDate(2026, 10, 1)},
                             {u"IdPlanSalud"_s, c->plan},
                             {u"CaducidadPlan"_s, QDate(2027, 1, 31)}});
        c->misi = s.mascota(u"Misi"_s, c->ana, c->gato,
                            {{u"Sexo"_s, u"H"_s},
                             {u"FechaNacimiento"_s, QDate(2022, 8, 20)},
                             {u"FechaAlta"_s, QDate(2022, 9, 1)}});
        c->toby = s.mascota(u"Toby"_s, c->luis, c->perro,
                            {{u"Sexo"_s, u"M"_s}, {u"FechaAlta"_s, QDate(2024, 5, 5)}});
        c->viejo = s.mascota(u"Viejo"_s, c->luis, c->perro,
                             {{u"Baja"_s, true}, {u"FechaBaja"_s, QDate(2025, 2, 2)}});
        return c;
    }

    static QStringList nombres(const ListadoMascotasForm& f) {
        QStringList l;
        for (const auto& r : f.filas())
            l << r.Mascota;
        return l;
    }

private slots:
    void filtros() {
        const QStringList todas = {u"Misi"_s, u"Rufo"_s, u"Toby"_s};
        const struct {
            QString filtro;
            QStringList esperadas;
        } filas[] = {{QString(), todas},
                     {u"raza"_s, {u"Rufo"_s}},
                     {u"sexo"_s, {u"Misi"_s}},
                     {u"nacimiento"_s, {u"Misi"_s}},
                     {u"nacimiento-sin-marcar"_s, todas},
                     {u"alta"_s, {u"Misi"_s, u"Rufo"_s}},
                     {u"visita"_s, {u"Rufo"_s}},
                     {u"bajas"_s, todas + QStringList{u"Viejo"_s}},
                     {u"baja"_s, {u"Viejo"_s}}};
        for (const auto& k : filas) {
            const QString& filtro = k.filtro;
            auto c = caso();
            ListadoMascotasForm f(c->e);
            auto& x = f.filtro;
            if (filtro == u"raza"_s) x.IdRaza = c->beagle;
            if (filtro == u"sexo"_s) x.Sexo = u"H"_s;
            if (filtro.startsWith(u"nacimiento"_s))
                x.nacimiento = {filtro == u"nacimiento"_s, QDate(2020, 1, 1), QDate(2023, 1, 1)};
            if (filtro == u"alta"_s) x.alta = {true, QDate(2020, 1, 15), QDate(2022, 9, 1)}; // ends included
            if (filtro == u"visita"_s) x.ultimaVisita = {true, QDate(), QDate(2026, 11, 23)};
            if (filtro == u"bajas"_s) x.incluirBajas = true;
            if (filtro == u"baja"_s) {
                x.incluirBajas = true;
                x.baja = {true, QDate(2025, 1, 1), QDate(2025, 12, 31)};
            }
            QVERIFY(f.buscar());
            QVERIFY2(nombres(f) == k.esperadas, qPrintable(filtro + u": "_s + nombres(f).join(u',')));
            QCOMPARE(f.encabezado(), u" Mascotas que cumplen las condiciones ("_s +
                                         QString::number(k.esperadas.size()) + u") "_s);
            QVERIFY(c->d.mensajes().isEmpty());
        }
    }

    void textosYSinResultados() {
        auto c = caso();
        ListadoMascotasForm f(c->e);
        QCOMPARE(ListadoMascotasForm::cabeceras(),
                 (QStringList{u"Mascota"_s, u"Cliente"_s, u"F.Nacim."_s, u"Especie"_s, u"Raza"_s, u"Sexo"_s,
                              u"Estado"_s, u"Ult.Visita"_s, u"Tipo"_s, u"Plan de salud"_s, u"Caducidad"_s}));
        f.filtro.IdRaza = c->beagle;
        QVERIFY(f.buscar());
        QCOMPARE(ListadoMascotasForm::textos(f.filas().first()),
                 (QStringList{u"Rufo"_s, u"Ana Núñez"_s, u"02/04/2019"_s, u"Perro"_s, u"Beagle"_s, u"Macho"_s,
                              QString(), u"01/10/2026"_s, u"Compañía"_s, u"Plan Senior"_s, u"31/01/2027"_s}));

        // Nothing matches: the message, an empty list, and no pet to open.
        f.filtro.IdRaza.reset();
        f.filtro.IdEspecie = c->gato;
        f.filtro.Sexo = u"M"_s;
        QVERIFY(!f.buscar());
        QCOMPARE(c->d.ultimo().titulo, u"Resultado de la búsqueda"_s);
        QCOMPARE(c->d.ultimoTexto(), u"No existen Mascotas que cumplen los filtros especificados"_s);
        QCOMPARE(f.encabezado(), u" Mascotas que cumplen las condiciones (0) "_s);
        QVERIFY(!f.mascotaActual(0));
        QCOMPARE(c->d.ultimo().titulo, u"Aviso"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Debe seleccionar previamente una Mascota"_s);
    }

    // The client only through the search; a typed name is refused; typing over a pick drops it.
    void clienteSoloConLaLupa() {
        auto c = caso();
        ListadoMascotasForm f(c->e);
        f.setTextoCliente(u"Luis"_s);
        QVERIFY(!f.buscar());
        QCOMPARE(c->d.ultimo().titulo, u"Información incompleta"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Debe buscar el cliente a través de la lupa para seleccionarlo"_s);
        QString pedido;
        c->e.buscadores.cliente = [&](const PeticionCliente& p) -> std::optional<ClienteElegido> {
            pedido = p.TextoInicial;
            ClienteElegido e;
            e.claveCliente = c->luis;
            e.Cliente = u"Luis Pérez"_s;
            return e;
        };
        QVERIFY(f.elegirCliente());
        QCOMPARE(pedido, u"Luis"_s);
        QCOMPARE(f.textoCliente(), u"Luis Pérez"_s);
        QVERIFY(f.buscar());
        QCOMPARE(nombres(f), QStringList{u"Toby"_s});
        f.setTextoCliente(u"Luis Pérez G"_s);
        QVERIFY(!f.cliente());
        QVERIFY(!f.buscar());
    }

    // Letters: none selected is refused; owners who do not consent go through the notice,
    // which may keep or drop them, or cancel the whole letter.
    void destinatariosDeCarta() {
        auto c = caso();
        ListadoMascotasForm f(c->e);
        QVERIFY(f.buscar()); // Misi (Ana), Rufo (Ana), Toby (Luis)
        int llamadas = 0;
        auto nadie = [&](AvisoLopdLista&) {
            ++llamadas;
            return true;
        };
        QVERIFY(!f.destinatariosCarta(nadie));
        QCOMPARE(c->d.ultimo().titulo, u"Aviso"_s);
        QCOMPARE(c->d.ultimoTexto(), u"No ha seleccionado ninguna mascota. Seleccione al menos una "
                                     "mascota para emitirle una carta."_s);
        f.seleccion = {2};
        QCOMPARE(f.destinatariosCarta(nadie), QString::number(c->toby));
        QCOMPARE(llamadas, 0); // Luis consents: no notice

        f.seleccion = {2, 0, 1};
        QCOMPARE(f.destinatariosCarta(nadie), QString::number(c->toby)); // shown, none ticked
        QCOMPARE(llamadas, 1);
        auto soloRufo = [&](AvisoLopdLista& a) {
            if (a.avisados().size() != 2) return false; // Misi and Rufo, whose owner does not consent
            for (int i = 0; i < a.avisados().size(); ++i)
                if (a.avisados().at(i).Mascota == u"Rufo"_s) a.setIncluir(i, true);
            return true;
        };
        QCOMPARE(f.destinatariosCarta(soloRufo),
                 QString::number(c->rufo) + u"¬"_s + QString::number(c->toby));
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
