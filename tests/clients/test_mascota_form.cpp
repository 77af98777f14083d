// The pet form on each engine: the chip rule, the save checks in order, numbering, look-ups, the
// owner's data, the questions, one editor per pet, read errors and the record lock.
#include "app/bloqueo_edicion.h"
#include "clients/mascota_form.h"
#include "data/ajustes.h"
#include "data/esquema.h"
#include "sesion.h"

class TestMascotaForm : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        qint64 ana = 0, luis = 0, perro = 0, gato = 0, labrador = 0, iva = 0;
        qint64 contar(const QString& t) { return s.contar(t); }
    };

    // Clients Ana (tariff 2, 7,5 % discount, VAT 21 %) and Luis; dogs (Labrador, Beagle) and
    // cats; active and retired staff.
    static std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Semilla& s = c->s;
        c->iva = s.fila(u"TiposIVA"_s, {{u"Descripcion"_s, u"General 21%"_s}, {u"Porcentaje"_s, 21.0}});
        c->ana = s.cliente(u"Ana Núñez"_s, {{u"Tarifa"_s, u"TARIFA 2"_s},
                                            {u"DtoGeneral"_s, 7.5},
                                            {u"IdTipoIVA"_s, c->iva},
                                            {u"LOPD"_s, u"2"_s}});
        c->luis = s.cliente(u"Luis Pérez"_s, {{u"Tarifa"_s, u"TARIFA 1"_s}, {u"LOPD"_s, u"1"_s}});
        c->perro = s.especie(u"Perro"_s);
        c->gato = s.especie(u"Gato"_s);
        c->labrador = s.raza(u"Labrador"_s, c->perro);
        s.raza(u"Beagle"_s, c->perro);
        s.personal(u"Dra. Gómez"_s);
        s.personal(u"Dr. Jubilado"_s, false);
        return c;
    }

    // A pet saved through the form; returns its number.
    static qint64 nueva(MascotaForm& f, const QString& nombre, const QHash<QString, QString>& mas = {}) {
        f.nueva();
        f.setTexto(u"Nombre"_s, nombre);
        for (auto it = mas.cbegin(); it != mas.cend(); ++it)
            f.setTexto(it.key(), it.value());
        if (!f.guardar()) return 0;
        return f.idMascota().value_or(0);
    }

private slots:
    // The chip is checked on leaving the field and again on saving; a refused chip saves nothing
    // and stays as typed. 10 or 15 characters, or none.
    void chip() {
        const struct {
            QString chip;
            bool aceptado;
        } filas[] = {{u"   "_s, true},        {u"9410000123"_s, true},   {u"941000012345678"_s, true},
                     {u"941000012"_s, false}, {u"94100001234"_s, false}, {u"9410000123456789"_s, false}};
        for (const auto& k : filas) {
            auto c = caso();
            MascotaForm f(c->e);
            QVERIFY(f.abrir(c->ana));
            f.setTexto(u"Nombre"_s, u"Rufo"_s);
            f.setTexto(u"Chip"_s, k.chip);
            const QByteArray fila = u"chip '%1'"_s.arg(k.chip).toUtf8();
            QVERIFY2(f.comprobarChip() == k.aceptado, fila.constData());
            QVERIFY2(f.guardar() == k.aceptado, fila.constData());
            QVERIFY2(c->contar(u"Mascotas"_s) == (k.aceptado ? 1 : 0), fila.constData());
            QVERIFY2(c->d.mensajes().size() == (k.aceptado ? 0 : 2), fila.constData());
            if (k.aceptado) continue;
            for (const auto& m : c->d.mensajes()) {
                QCOMPARE(m.titulo, u"Información introducida errónea"_s);
                QCOMPARE(m.texto, u"La longitud del campo 'Chip' debe ser 10 ó 15 caracteres, revise la "
                                  "información introducida"_s);
            }
            QCOMPARE(f.foco, u"Chip"_s);
            QCOMPARE(f.texto(u"Chip"_s), k.chip);
        }
    }

    // First failure only, in order: chip, owner, name, plan expiry; then the typed values.
    void ordenDeComprobaciones() {
        auto c = caso();
        MascotaForm sinCliente(c->e);
        sinCliente.setTexto(u"Nombre"_s, u"Rufo"_s);
        sinCliente.setTexto(u"Chip"_s, u"123"_s);
        QVERIFY(!sinCliente.guardar());
        QCOMPARE(c->d.ultimoTexto().left(30), u"La longitud del campo 'Chip' d"_s);
        sinCliente.setTexto(u"Chip"_s, QString());
        QVERIFY(!sinCliente.guardar());
        QCOMPARE(c->d.ultimo().titulo, u"Campos obligatorios no informados"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Debe seleccionar primero un Cliente."_s);

        MascotaForm f(c->e);
        QVERIFY(f.abrir(c->ana));
        f.setTexto(u"Nombre"_s, u"   "_s);
        f.setTexto(u"IdPlanSalud"_s, QString::number(c->s.plan(u"Plan Cachorro"_s)));
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimoTexto(), u"Debe informar el nombre de la Mascota."_s);
        QCOMPARE(f.foco, u"Nombre"_s);
        f.setTexto(u"Nombre"_s, u"Rufo"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimoTexto(),
                 u"Debe informar la fecha de caducidad del Plan de Salud de la mascota."_s);
        QCOMPARE(f.foco, u"CaducidadPlan"_s);
        f.setTexto(u"CaducidadPlan"_s, u"31/02/2027"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimo().titulo, u"Información introducida errónea"_s);
        QCOMPARE(c->d.ultimoTexto(),
                 u"El campo 'Caducidad del plan' debe ser una fecha con el formato dd/mm/aaaa."_s);
        f.setTexto(u"CaducidadPlan"_s, u"28/02/2027"_s);
        QVERIFY(f.guardar());
        QCOMPARE(c->contar(u"Mascotas"_s), 1);
    }

    // A new pet: registration date today, caption, number on save, its row in the list.
    void altaYLista() {
        auto c = caso();
        MascotaForm f(c->e);
        QVERIFY(f.abrir(c->ana));
        QVERIFY(f.esNueva());
        QCOMPARE(f.leyenda(), u"(Nueva Mascota)"_s);
        QCOMPARE(f.texto(u"FechaAlta"_s), u"23/11/2026"_s);
        const qint64 primera = nueva(f, u"Rufo"_s,
                                     {{u"IdEspecie"_s, QString::number(c->perro)},
                                      {u"IdRaza"_s, QString::number(c->labrador)},
                                      {u"Sexo"_s, u"Macho castrado"_s},
                                      {u"Peso"_s, u"12,5"_s}});
        QVERIFY(primera > 0);
        QCOMPARE(f.leyenda(), u"Mascota nº: "_s + QString::number(primera) + u" del Cliente nº "_s +
                                  QString::number(c->ana));
        const qint64 segunda = nueva(f, u"Misi"_s, {{u"IdEspecie"_s, QString::number(c->gato)}});
        QVERIFY(segunda > primera);
        QCOMPARE(f.lista().size(), 2);
        const FilaMascota& rufo = f.lista().at(1); // by name: Misi, Rufo
        QCOMPARE(rufo.Mascota, u"Rufo"_s);
        QCOMPARE(rufo.Sexo, u"Macho castrado"_s);

        // Opening the client again with a pet selects it and shows every field as typed.
        MascotaForm otra(c->e);
        QVERIFY(otra.abrir(c->ana, primera));
        QCOMPARE(otra.filaActual(), 1);
        QCOMPARE(otra.texto(u"Peso"_s), u"12,50"_s);
        // The search name is filled for the client search.
        QCOMPARE(
            c->db().valor(u"SELECT NombreBusqueda FROM Mascotas WHERE IdMascota = ?"_s, {segunda}).toString(),
            u"MISI"_s);
    }

    // Breeds follow the species; only active staff are offered; the owner's data come along.
    void lookupsYPropietario() {
        auto c = caso();
        MascotaForm f(c->e);
        QVERIFY(f.abrir(c->ana));
        f.setTexto(u"IdEspecie"_s, QString::number(c->perro));
        QStringList razas;
        for (const auto& o : f.opciones(u"IdRaza"_s))
            razas << o.texto;
        QCOMPARE(razas, (QStringList{u"Beagle"_s, u"Labrador"_s}));
        f.setTexto(u"IdRaza"_s, QString::number(c->labrador));
        f.setTexto(u"IdEspecie"_s, QString::number(c->gato));
        QCOMPARE(f.texto(u"IdRaza"_s), QString()); // a dog breed does not stay on a cat
        QCOMPARE(f.opciones(u"IdVeterinario"_s).size(), 1); // the retired vet is not offered

        QCOMPARE(f.propietario().IVAaAplicar, u"General 21%"_s);
        QCOMPARE(f.textoLOPD(), u"No consiente"_s);
    }

    // A plan picked through the search; an expiry before today is flagged.
    void planDeSalud() {
        auto c = caso();
        const qint64 plan = c->s.plan(u"Plan Senior"_s);
        c->e.buscadores.planSalud = [&](const QString&) -> std::optional<qint64> { return plan; };
        MascotaForm f(c->e);
        QVERIFY(f.abrir(c->ana));
        QVERIFY(!f.planCaducado());
        QVERIFY(f.elegirPlan());
        QCOMPARE(f.texto(u"IdPlanSalud"_s), QString::number(plan));
        f.setTexto(u"CaducidadPlan"_s, u"23/11/2026"_s);
        QVERIFY(!f.planCaducado()); // expires today: still valid
        f.setTexto(u"CaducidadPlan"_s, u"22/11/2026"_s);
        QVERIFY(f.planCaducado());
    }

    // Yes saves and moves; No discards and moves; Yes with a refused save stays.
    void cambiosSinGuardar() {
        auto c = caso();
        MascotaForm f(c->e);
        QVERIFY(f.abrir(c->ana));
        const qint64 rufo = nueva(f, u"Rufo"_s);
        const qint64 misi = nueva(f, u"Misi"_s);
        QVERIFY(rufo && misi);
        QVERIFY(f.seleccionar(1)); // Rufo
        QCOMPARE(f.idMascota(), rufo);
        f.setTexto(u"Cartilla"_s, u"C-1"_s);
        c->d.si();
        QVERIFY(f.seleccionar(0));
        QCOMPARE(c->d.ultimo().titulo, u"ATENCIÓN"_s);
        QCOMPARE(c->d.ultimoTexto(), u"¿Desea guardar las modificaciones realizadas a 'Rufo'?"_s);
        QCOMPARE(f.idMascota(), misi);
        QCOMPARE(c->db().valor(u"SELECT Cartilla FROM Mascotas WHERE IdMascota = ?"_s, {rufo}).toString(),
                 u"C-1"_s);

        f.setTexto(u"Cartilla"_s, u"C-2"_s);
        c->d.no();
        QVERIFY(f.seleccionar(1));
        QCOMPARE(c->d.ultimoTexto(), u"¿Desea guardar las modificaciones realizadas a 'Misi'?"_s);
        QCOMPARE(f.idMascota(), rufo);
        QVERIFY(c->db().valor(u"SELECT Cartilla FROM Mascotas WHERE IdMascota = ?"_s, {misi}).isNull());

        f.setTexto(u"Chip"_s, u"12345"_s);
        c->d.si();
        QVERIFY(!f.seleccionar(0));
        QCOMPARE(f.idMascota(), rufo);
        QCOMPARE(f.texto(u"Chip"_s), u"12345"_s);
        QCOMPARE(c->d.sinRespuesta(), 0);
    }

    void eliminar() {
        auto c = caso();
        MascotaForm f(c->e);
        QVERIFY(f.abrir(c->ana));
        const qint64 rufo = nueva(f, u"Rufo"_s);
        c->d.no();
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(c->d.ultimoTexto(), u"¿Desea realmente eliminar la Mascota seleccionada?"_s);
        QCOMPARE(c->contar(u"Mascotas"_s), 1);
        // A pet with delivery notes stays, with the reason, and its lock goes.
        c->s.fila(
            u"Albaranes"_s,
            {{u"Serie"_s, u"A"_s}, {u"NumAlbaran"_s, 1}, {u"IdCliente"_s, c->ana}, {u"IdMascota"_s, rufo}});
        c->d.si();
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.ultimoTexto(),
                 u"No se puede eliminar esta Mascota porque tiene Albaranes u otros registros "
                 "que dependen de ella."_s);
        QCOMPARE(c->contar(u"Bloqueos"_s), 0);
        c->db().ejecutarCambio(u"DELETE FROM Albaranes"_s);
        c->d.si();
        QVERIFY(f.eliminar());
        QCOMPARE(c->contar(u"Mascotas"_s), 0);
        QCOMPARE(c->contar(u"Bloqueos"_s), 0);
        QVERIFY(f.esNueva());
    }

    void clienteIlegible() {
        auto c = caso();
        MascotaForm f(c->e);
        QVERIFY(!f.abrir(9999));
        QCOMPARE(c->d.ultimo().titulo, u"¡Error!"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Error al intentar acceder al cliente numero 9999.\nHa sido imposible "
                                     "recuperar la información solicitada. Puede que el cliente haya sido "
                                     "eliminado."_s);
        QVERIFY(!f.hayCliente());
    }

    // Opened from the menu: the client (and pet) chosen in the client search.
    void desdeElMenu() {
        auto c = caso();
        MascotaForm f(c->e);
        QVERIFY(f.abrir(c->luis));
        bool alFrente = false;
        f.traerAlFrente = [&] { alFrente = true; };
        const qint64 toby = nueva(f, u"Toby"_s);
        QVERIFY(!MascotaForm(c->e).abrirDesdeMenu()); // no search set: nothing opens
        c->e.buscadores.cliente = [&](const PeticionCliente&) -> std::optional<ClienteElegido> {
            ClienteElegido e;
            e.claveCliente = c->luis;
            e.Cliente = u"Luis Pérez"_s;
            e.claveMascota = toby;
            return e;
        };
        // One editor per pet here: f has Toby, so f comes forward and g opens nothing.
        MascotaForm g(c->e);
        QVERIFY(!g.abrirDesdeMenu());
        QVERIFY(alFrente && !g.hayCliente());
        QVERIFY(g.abrir(c->luis));
        QVERIFY(!g.seleccionar(0));
        QVERIFY(g.esNueva());
        QVERIFY(f.puedeCerrar());
        QVERIFY(g.abrirDesdeMenu());
        QCOMPARE(g.propietario().IdCliente, c->luis);
        QCOMPARE(g.idMascota(), toby);
        QCOMPARE(g.texto(u"Nombre"_s), u"Toby"_s);
    }

    // Another workstation editing the pet: no change here, nothing deleted; the first change
    // here takes the lock and saving releases it.
    void bloqueo() {
        auto c = caso();
        Ajustes(c->db()).escribir(u"MULTIPUESTO"_s, u"SI"_s);
        MascotaForm f(c->e);
        QVERIFY(f.abrir(c->ana));
        const qint64 rufo = nueva(f, u"Rufo"_s);
        QCOMPARE(c->contar(u"Bloqueos"_s), 0);

        auto conexion = c->t.otraConexion();
        ScriptedDialogs d2;
        Entorno otro(*conexion, d2, c->reloj);
        otro.puesto = u"RECEPCION"_s;
        otro.sesion = u"S2"_s;
        auto bloqueoRemoto = std::make_unique<BloqueoEdicion>(otro);
        QVERIFY(bloqueoRemoto->tomar(tablaMascotas(), QString::number(rufo), u"Rufo"_s,
                                     AccionBloqueo::Modificacion));
        QVERIFY(!f.setTexto(u"Cartilla"_s, u"X"_s));
        QCOMPARE(c->d.ultimo().titulo, u"Bloqueo de Registro"_s);
        QCOMPARE(f.texto(u"Cartilla"_s), QString());
        QVERIFY(!f.modificado());
        QVERIFY(!f.eliminar()); // refused before the question
        QCOMPARE(c->d.sinRespuesta(), 0);
        QCOMPARE(c->contar(u"Mascotas"_s), 1);

        bloqueoRemoto.reset();
        QVERIFY(f.setTexto(u"Cartilla"_s, u"X"_s));
        QCOMPARE(c->contar(u"Bloqueos"_s), 1);
        BloqueoEdicion intento(otro);
        QVERIFY(
            !intento.tomar(tablaMascotas(), QString::number(rufo), u"Rufo"_s, AccionBloqueo::Modificacion));
        QVERIFY(f.guardar());
        QCOMPARE(c->contar(u"Bloqueos"_s), 0);
    }
};

PMX_STORE_TEST_MAIN(TestMascotaForm)
#include "test_mascota_form.moc"
