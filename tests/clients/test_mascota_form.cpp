// The pet maintenance screen's logic on each engine: the chip rule (on save and on leaving
// the field), the required fields in order, numbering and caption, the look-ups (breeds of
// the chosen species, active staff), the owner's data, the unsaved-changes question, the
// delete question, the client read error and the record lock.
#include "app/bloqueo_edicion.h"
#include "clients/mascota_form.h"
#include "data/ajustes.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

namespace {
const DescriptorTabla& tabla(const QString& nombre) {
    const DescriptorTabla* t = descriptorTabla(nombre);
    if (!t) qFatal("falta la tabla %s", qPrintable(nombre));
    return *t;
}

qint64 crear(Database& db, const QString& t, const QVariantMap& valores) {
    Registro r(tabla(t));
    for (auto it = valores.cbegin(); it != valores.cend(); ++it)
        r.setValor(it.key(), it.value());
    return RegistroStore(db).crear(r).toLongLong();
}

qint64 contar(Database& db, const QString& t) {
    return RegistroStore(db).contar(tabla(t));
}
} // namespace

class TestMascotaForm : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        qint64 ana = 0, luis = 0, perro = 0, gato = 0, labrador = 0, persa = 0, sano = 0, iva = 0;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Database& db = c->t.db();
        c->iva = crear(db, QStringLiteral("TiposIVA"),
                       {{QStringLiteral("Descripcion"), QStringLiteral("General 21%")},
                        {QStringLiteral("Porcentaje"), 21.0}});
        c->ana = crear(db, QStringLiteral("Clientes"),
                       {{QStringLiteral("Nombre"), QStringLiteral("Ana Núñez")},
                        {QStringLiteral("Tarifa"), QStringLiteral("TARIFA 2")},
                        {QStringLiteral("DtoGeneral"), 7.5},
                        {QStringLiteral("IdTipoIVA"), c->iva},
                        {QStringLiteral("LOPD"), QStringLiteral("2")}});
        c->luis = crear(db, QStringLiteral("Clientes"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Luis Pérez")},
                         {QStringLiteral("Tarifa"), QStringLiteral("TARIFA 1")},
                         {QStringLiteral("LOPD"), QStringLiteral("1")}});
        const QVariantMap activo{{QStringLiteral("Activo"), QStringLiteral("S")}};
        auto con = [&](QVariantMap m, const QVariantMap& mas) {
            for (auto it = mas.cbegin(); it != mas.cend(); ++it)
                m.insert(it.key(), it.value());
            return m;
        };
        c->perro = crear(db, QStringLiteral("Especies"),
                         con(activo, {{QStringLiteral("Descripcion"), QStringLiteral("Perro")}}));
        c->gato = crear(db, QStringLiteral("Especies"),
                        con(activo, {{QStringLiteral("Descripcion"), QStringLiteral("Gato")}}));
        c->labrador = crear(db, QStringLiteral("Razas"),
                            con(activo, {{QStringLiteral("Descripcion"), QStringLiteral("Labrador")},
                                         {QStringLiteral("IdEspecie"), c->perro}}));
        crear(db, QStringLiteral("Razas"),
              con(activo, {{QStringLiteral("Descripcion"), QStringLiteral("Beagle")},
                           {QStringLiteral("IdEspecie"), c->perro}}));
        c->persa = crear(db, QStringLiteral("Razas"),
                         con(activo, {{QStringLiteral("Descripcion"), QStringLiteral("Persa")},
                                      {QStringLiteral("IdEspecie"), c->gato}}));
        c->sano =
            crear(db, QStringLiteral("Estados"), {{QStringLiteral("Descripcion"), QStringLiteral("Sano")}});
        crear(db, QStringLiteral("Personal"),
              con(activo, {{QStringLiteral("Descripcion"), QStringLiteral("Dra. Gómez")}}));
        crear(db, QStringLiteral("Personal"),
              {{QStringLiteral("Descripcion"), QStringLiteral("Dr. Jubilado")},
               {QStringLiteral("Activo"), QStringLiteral("N")}});
        c->e = std::make_unique<Entorno>(db, c->d, reloj_);
        c->e->puesto = QStringLiteral("CONSULTA1");
        c->e->sesion = QStringLiteral("S1");
        c->e->usuario = QStringLiteral("ana");
        return c;
    }

    // A pet saved through the form; returns its number.
    static qint64 nueva(MascotaForm& f, const QString& nombre, const QHash<QString, QString>& mas = {}) {
        f.nueva();
        f.setTexto(QStringLiteral("Nombre"), nombre);
        for (auto it = mas.cbegin(); it != mas.cend(); ++it)
            f.setTexto(it.key(), it.value());
        if (!f.guardar()) return 0;
        return f.idMascota().value_or(0);
    }

private slots:
    void chip_data() {
        QTest::addColumn<QString>("chip");
        QTest::addColumn<bool>("aceptado");
        QTest::newRow("vacío") << QString() << true;
        QTest::newRow("blancos") << QStringLiteral("   ") << true;
        QTest::newRow("10") << QStringLiteral("9410000123") << true;
        QTest::newRow("15") << QStringLiteral("941000012345678") << true;
        QTest::newRow("9") << QStringLiteral("941000012") << false;
        QTest::newRow("11") << QStringLiteral("94100001234") << false;
        QTest::newRow("12") << QStringLiteral("941000012345") << false;
        QTest::newRow("13") << QStringLiteral("9410000123456") << false;
        QTest::newRow("14") << QStringLiteral("94100001234567") << false;
        QTest::newRow("16") << QStringLiteral("9410000123456789") << false;
    }

    // The chip is checked on leaving the field and again on saving; a refused chip saves nothing.
    void chip() {
        QFETCH(QString, chip);
        QFETCH(bool, aceptado);
        auto c = caso();
        MascotaForm f(*c->e);
        QVERIFY(f.abrir(c->ana));
        f.setTexto(QStringLiteral("Nombre"), QStringLiteral("Rufo"));
        f.setTexto(QStringLiteral("Chip"), chip);
        QCOMPARE(f.comprobarChip(), aceptado);
        QCOMPARE(f.guardar(), aceptado);
        QCOMPARE(contar(c->t.db(), QStringLiteral("Mascotas")), aceptado ? 1 : 0);
        if (aceptado) {
            QVERIFY(c->d.mensajes().isEmpty());
            return;
        }
        QCOMPARE(c->d.mensajes().size(), 2);
        for (const auto& m : c->d.mensajes()) {
            QCOMPARE(m.titulo, QStringLiteral("Información introducida errónea"));
            QCOMPARE(m.texto,
                     QStringLiteral("La longitud del campo 'Chip' debe ser 10 ó 15 caracteres, revise la "
                                    "información introducida"));
        }
        QCOMPARE(f.foco(), QStringLiteral("Chip"));
        QCOMPARE(f.texto(QStringLiteral("Chip")), chip); // the typed text stays
    }

    // First failure only, in order: chip, owner, name, plan expiry; then the typed values.
    void ordenDeComprobaciones() {
        auto c = caso();
        MascotaForm sinCliente(*c->e);
        sinCliente.setTexto(QStringLiteral("Nombre"), QStringLiteral("Rufo"));
        sinCliente.setTexto(QStringLiteral("Chip"), QStringLiteral("123"));
        QVERIFY(!sinCliente.guardar());
        QCOMPARE(c->d.ultimoTexto().left(30), QStringLiteral("La longitud del campo 'Chip' d"));
        sinCliente.setTexto(QStringLiteral("Chip"), QString());
        QVERIFY(!sinCliente.guardar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Campos obligatorios no informados"));
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Debe seleccionar primero un Cliente."));

        MascotaForm f(*c->e);
        QVERIFY(f.abrir(c->ana));
        f.setTexto(QStringLiteral("Nombre"), QStringLiteral("   "));
        f.setTexto(QStringLiteral("IdPlanSalud"),
                   QString::number(crear(c->t.db(), QStringLiteral("PlanesSalud"),
                                         {{QStringLiteral("Nombre"), QStringLiteral("Plan Cachorro")}})));
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Debe informar el nombre de la Mascota."));
        QCOMPARE(f.foco(), QStringLiteral("Nombre"));
        f.setTexto(QStringLiteral("Nombre"), QStringLiteral("Rufo"));
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Campos obligatorios no informados"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Debe informar la fecha de caducidad del Plan de Salud de la mascota."));
        QCOMPARE(f.foco(), QStringLiteral("CaducidadPlan"));
        f.setTexto(QStringLiteral("CaducidadPlan"), QStringLiteral("31/02/2027"));
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Información introducida errónea"));
        QCOMPARE(
            c->d.ultimoTexto(),
            QStringLiteral("El campo 'Caducidad del plan' debe ser una fecha con el formato dd/mm/aaaa."));
        QCOMPARE(contar(c->t.db(), QStringLiteral("Mascotas")), 0);
        f.setTexto(QStringLiteral("CaducidadPlan"), QStringLiteral("28/02/2027"));
        QVERIFY(f.guardar());
        QCOMPARE(contar(c->t.db(), QStringLiteral("Mascotas")), 1);
    }

    // A new pet: registration date today, caption, number on save, its row in the list.
    void altaYLista() {
        auto c = caso();
        MascotaForm f(*c->e);
        QVERIFY(f.abrir(c->ana));
        QVERIFY(f.esNueva());
        QCOMPARE(f.leyenda(), QStringLiteral("(Nueva Mascota)"));
        QCOMPARE(f.texto(QStringLiteral("FechaAlta")), QStringLiteral("23/11/2026"));
        const qint64 primera = nueva(f, QStringLiteral("Rufo"),
                                     {{QStringLiteral("IdEspecie"), QString::number(c->perro)},
                                      {QStringLiteral("IdRaza"), QString::number(c->labrador)},
                                      {QStringLiteral("Sexo"), QStringLiteral("Macho castrado")},
                                      {QStringLiteral("IdEstado"), QString::number(c->sano)},
                                      {QStringLiteral("Peso"), QStringLiteral("12,5")},
                                      {QStringLiteral("FechaNacimiento"), QStringLiteral("1/3/2020")}});
        QVERIFY(primera > 0);
        QCOMPARE(f.leyenda(), QStringLiteral("Mascota nº: ") + QString::number(primera) +
                                  QStringLiteral(" del Cliente nº ") + QString::number(c->ana));
        QVERIFY(!f.modificado());
        const qint64 segunda =
            nueva(f, QStringLiteral("Misi"), {{QStringLiteral("IdEspecie"), QString::number(c->gato)}});
        QVERIFY(segunda > primera);
        QCOMPARE(f.lista().size(), 2);
        const FilaMascota& rufo = f.lista().at(1); // by name: Misi, Rufo
        QCOMPARE(rufo.Mascota, QStringLiteral("Rufo"));
        QCOMPARE(rufo.Especie, QStringLiteral("Perro"));
        QCOMPARE(rufo.Raza, QStringLiteral("Labrador"));
        QCOMPARE(rufo.Sexo, QStringLiteral("Macho castrado"));
        QCOMPARE(rufo.Estado, QStringLiteral("Sano"));
        QCOMPARE(f.lista().at(0).Raza, QString());

        // Opening the client again with a pet selects it and shows every field as typed.
        MascotaForm otra(*c->e);
        QVERIFY(otra.abrir(c->ana, primera));
        QCOMPARE(otra.filaActual(), 1);
        QCOMPARE(otra.texto(QStringLiteral("Peso")), QStringLiteral("12,50"));
        QCOMPARE(otra.texto(QStringLiteral("FechaNacimiento")), QStringLiteral("01/03/2020"));
        QCOMPARE(otra.texto(QStringLiteral("Sexo")), QStringLiteral("Macho castrado"));
        QCOMPARE(otra.texto(QStringLiteral("FechaAlta")), QStringLiteral("23/11/2026"));
        // Another client's pet is not selected: the screen starts a new pet for this client.
        MascotaForm deLuis(*c->e);
        QVERIFY(deLuis.abrir(c->luis, primera));
        QVERIFY(deLuis.esNueva());
        QVERIFY(deLuis.lista().isEmpty());
        // The search name is filled for the client search.
        QCOMPARE(
            c->t.db()
                .valor(QStringLiteral("SELECT NombreBusqueda FROM Mascotas WHERE IdMascota = ?"), {segunda})
                .toString(),
            QStringLiteral("MISI"));
    }

    // Breeds follow the species; only active staff are offered; the owner's data come along.
    void lookupsYPropietario() {
        auto c = caso();
        MascotaForm f(*c->e);
        QVERIFY(f.abrir(c->ana));
        QVERIFY(f.opciones(QStringLiteral("IdRaza")).isEmpty());
        f.setTexto(QStringLiteral("IdEspecie"), QString::number(c->perro));
        QStringList razas;
        for (const auto& o : f.opciones(QStringLiteral("IdRaza")))
            razas << o.texto;
        QCOMPARE(razas, (QStringList{QStringLiteral("Beagle"), QStringLiteral("Labrador")}));
        f.setTexto(QStringLiteral("IdRaza"), QString::number(c->labrador));
        f.setTexto(QStringLiteral("IdEspecie"), QString::number(c->gato));
        QCOMPARE(f.texto(QStringLiteral("IdRaza")), QString()); // a dog breed does not stay on a cat
        f.setTexto(QStringLiteral("IdRaza"), QString::number(c->persa));
        f.setTexto(QStringLiteral("IdEspecie"), QString::number(c->gato));
        QCOMPARE(f.texto(QStringLiteral("IdRaza")), QString::number(c->persa));
        const auto vets = f.opciones(QStringLiteral("IdVeterinario"));
        QCOMPARE(vets.size(), 1);
        QCOMPARE(vets.first().texto, QStringLiteral("Dra. Gómez"));

        QCOMPARE(f.propietario().Nombre, QStringLiteral("Ana Núñez"));
        QCOMPARE(f.propietario().Tarifa, QStringLiteral("TARIFA 2"));
        QCOMPARE(f.propietario().DtoGeneral, 7.5);
        QCOMPARE(f.propietario().IVAaAplicar, QStringLiteral("General 21%"));
        QCOMPARE(f.textoLOPD(), QStringLiteral("No consiente"));
    }

    // A plan picked through the search; an expiry before today is flagged.
    void planDeSalud() {
        auto c = caso();
        const qint64 plan = crear(c->t.db(), QStringLiteral("PlanesSalud"),
                                  {{QStringLiteral("Nombre"), QStringLiteral("Plan Senior")}});
        QString pedido = QStringLiteral("sin llamar");
        c->e->buscadores.planSalud = [&](const QString& t) -> std::optional<qint64> {
            pedido = t;
            return plan;
        };
        MascotaForm f(*c->e);
        QVERIFY(f.abrir(c->ana));
        QVERIFY(!f.planCaducado());
        QVERIFY(f.elegirPlan());
        QCOMPARE(pedido, QString());
        QCOMPARE(f.texto(QStringLiteral("IdPlanSalud")), QString::number(plan));
        f.setTexto(QStringLiteral("CaducidadPlan"), QStringLiteral("23/11/2026"));
        QVERIFY(!f.planCaducado()); // expires today: still valid
        f.setTexto(QStringLiteral("CaducidadPlan"), QStringLiteral("22/11/2026"));
        QVERIFY(f.planCaducado());
        c->e->buscadores.planSalud = [](const QString&) -> std::optional<qint64> { return std::nullopt; };
        QVERIFY(!f.elegirPlan());
        QCOMPARE(f.texto(QStringLiteral("IdPlanSalud")), QString::number(plan));
    }

    // Yes saves and moves; No discards and moves; Yes with a refused save stays.
    void cambiosSinGuardar() {
        auto c = caso();
        MascotaForm f(*c->e);
        QVERIFY(f.abrir(c->ana));
        const qint64 rufo = nueva(f, QStringLiteral("Rufo"));
        const qint64 misi = nueva(f, QStringLiteral("Misi"));
        QVERIFY(rufo && misi);
        QVERIFY(f.seleccionar(1)); // Rufo
        QCOMPARE(f.idMascota(), rufo);
        f.setTexto(QStringLiteral("Cartilla"), QStringLiteral("C-1"));
        c->d.si();
        QVERIFY(f.seleccionar(0));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("ATENCIÓN"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("¿Desea guardar las modificaciones realizadas a 'Rufo'?"));
        QCOMPARE(f.idMascota(), misi);
        QCOMPARE(c->t.db()
                     .valor(QStringLiteral("SELECT Cartilla FROM Mascotas WHERE IdMascota = ?"), {rufo})
                     .toString(),
                 QStringLiteral("C-1"));

        f.setTexto(QStringLiteral("Cartilla"), QStringLiteral("C-2"));
        c->d.no();
        QVERIFY(f.seleccionar(1));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("¿Desea guardar las modificaciones realizadas a 'Misi'?"));
        QCOMPARE(f.idMascota(), rufo);
        QVERIFY(c->t.db()
                    .valor(QStringLiteral("SELECT Cartilla FROM Mascotas WHERE IdMascota = ?"), {misi})
                    .isNull());

        f.setTexto(QStringLiteral("Chip"), QStringLiteral("12345"));
        c->d.si();
        QVERIFY(!f.seleccionar(0));
        QCOMPARE(f.idMascota(), rufo);
        QCOMPARE(f.texto(QStringLiteral("Chip")), QStringLiteral("12345"));
        QCOMPARE(c->d.sinRespuesta(), 0);
    }

    void eliminar() {
        auto c = caso();
        MascotaForm f(*c->e);
        QVERIFY(f.abrir(c->ana));
        const qint64 rufo = nueva(f, QStringLiteral("Rufo"));
        c->d.no();
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar la Mascota seleccionada?"));
        QCOMPARE(contar(c->t.db(), QStringLiteral("Mascotas")), 1);
        QCOMPARE(contar(c->t.db(), QStringLiteral("Bloqueos")), 0);
        c->d.si();
        QVERIFY(f.eliminar());
        QCOMPARE(contar(c->t.db(), QStringLiteral("Mascotas")), 0);
        QCOMPARE(contar(c->t.db(), QStringLiteral("Bloqueos")), 0);
        QVERIFY(f.esNueva());
        QVERIFY(f.lista().isEmpty());
        QVERIFY(!MascotaStore(c->t.db()).cargar(rufo));
    }

    void clienteIlegible() {
        auto c = caso();
        MascotaForm f(*c->e);
        QVERIFY(!f.abrir(9999));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Error!"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Error al intentar acceder al cliente numero 9999.\nHa sido imposible "
                                "recuperar la información solicitada. Puede que el cliente haya sido "
                                "eliminado."));
        QVERIFY(!f.hayCliente());
    }

    // Opened from the menu: the client (and pet) chosen in the client search.
    void desdeElMenu() {
        auto c = caso();
        MascotaForm f(*c->e);
        QVERIFY(f.abrir(c->luis));
        const qint64 toby = nueva(f, QStringLiteral("Toby"));
        QVERIFY(!MascotaForm(*c->e).abrirDesdeMenu()); // no search set: nothing opens
        c->e->buscadores.cliente = [&](const PeticionCliente&) -> std::optional<ClienteElegido> {
            ClienteElegido e;
            e.claveCliente = c->luis;
            e.Cliente = QStringLiteral("Luis Pérez");
            e.claveMascota = toby;
            return e;
        };
        MascotaForm g(*c->e);
        QVERIFY(g.abrirDesdeMenu());
        QCOMPARE(g.propietario().IdCliente, c->luis);
        QCOMPARE(g.idMascota(), toby);
        QCOMPARE(g.texto(QStringLiteral("Nombre")), QStringLiteral("Toby"));
    }

    // Another workstation editing the pet: no change here, nothing deleted; the first change
    // here takes the lock and saving releases it.
    void bloqueo() {
        auto c = caso();
        Ajustes(c->t.db()).escribir(QStringLiteral("MULTIPUESTO"), QStringLiteral("SI"));
        MascotaForm f(*c->e);
        QVERIFY(f.abrir(c->ana));
        const qint64 rufo = nueva(f, QStringLiteral("Rufo"));
        QCOMPARE(contar(c->t.db(), QStringLiteral("Bloqueos")), 0);

        auto conexion = c->t.otraConexion();
        ScriptedDialogs d2;
        Entorno otro(*conexion, d2, reloj_);
        otro.puesto = QStringLiteral("RECEPCION");
        otro.sesion = QStringLiteral("S2");
        auto bloqueoRemoto = std::make_unique<BloqueoEdicion>(otro);
        QVERIFY(bloqueoRemoto->tomar(tablaMascotas(), QString::number(rufo), QStringLiteral("Rufo"),
                                     AccionBloqueo::Modificacion));
        QVERIFY(!f.setTexto(QStringLiteral("Cartilla"), QStringLiteral("X")));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Bloqueo de Registro"));
        QCOMPARE(f.texto(QStringLiteral("Cartilla")), QString());
        QVERIFY(!f.modificado());
        QVERIFY(!f.eliminar()); // refused before the question
        QCOMPARE(c->d.sinRespuesta(), 0);
        QCOMPARE(contar(c->t.db(), QStringLiteral("Mascotas")), 1);

        bloqueoRemoto.reset();
        QVERIFY(f.setTexto(QStringLiteral("Cartilla"), QStringLiteral("X")));
        QCOMPARE(contar(c->t.db(), QStringLiteral("Bloqueos")), 1);
        BloqueoEdicion intento(otro);
        QVERIFY(!intento.tomar(tablaMascotas(), QString::number(rufo), QStringLiteral("Rufo"),
                               AccionBloqueo::Modificacion));
        QVERIFY(f.guardar());
        QCOMPARE(contar(c->t.db(), QStringLiteral("Bloqueos")), 0);
    }
};

PMX_STORE_TEST_MAIN(TestMascotaForm)
#include "test_mascota_form.moc"
