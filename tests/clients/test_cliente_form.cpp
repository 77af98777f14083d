// The client maintenance form on both engines: a new client's defaults, the save checks in
// their order with their exact texts, the name-change question, the commercial-file notice,
// deleting (refused while the client has pets), the record lock and the read error.
#include "app/bloqueo_edicion.h"
#include "app/conf_puesto_store.h"
#include "clients/cliente_busqueda_store.h"
#include "clients/cliente_form.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

class TestClienteForm : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 2), QTime(10, 0))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
    };

    std::unique_ptr<Caso> caso(const QString& tarifaPuesto = QStringLiteral("TARIFA 2")) {
        auto c = std::make_unique<Caso>();
        c->e = std::make_unique<Entorno>(c->t.db(), c->d, reloj_);
        c->e->puesto = QStringLiteral("CONSULTA1");
        c->e->sesion = QStringLiteral("S1");
        c->e->usuario = QStringLiteral("ana");
        ConfiguracionPuesto conf;
        conf.Puesto = c->e->puesto;
        conf.Tarifa = tarifaPuesto;
        ConfPuestoStore(c->t.db()).guardar(conf);
        return c;
    }

    static void rellenar(ClienteForm& f) {
        QVERIFY(f.setTexto(QStringLiteral("Nombre"), QStringLiteral("  Lucía Ortega Peña ")));
        QVERIFY(f.setTexto(QStringLiteral("DNI"), QStringLiteral("12345678Z")));
        QVERIFY(f.setTexto(QStringLiteral("Telefono1"), QStringLiteral("912345678")));
        QVERIFY(f.setTexto(QStringLiteral("Movil"), QStringLiteral("612345678")));
        QVERIFY(f.setTexto(QStringLiteral("ViaComunicacion"), QStringLiteral("SMS")));
        QVERIFY(f.setTexto(QStringLiteral("Subcuenta"), QStringLiteral("4300000007")));
        QVERIFY(f.setTexto(QStringLiteral("DtoGeneral"), QStringLiteral("5")));
        QVERIFY(f.setTexto(QStringLiteral("LOPD"), QStringLiteral("No consiente")));
        QVERIFY(f.setTexto(QStringLiteral("FraNombre"), QStringLiteral("Ortega Veterinaria S.L.")));
    }

    static qint64 crearCliente(Caso& c, const QString& nombre) {
        ClienteForm f(*c.e);
        f.setTexto(QStringLiteral("Nombre"), nombre);
        if (!f.guardar()) return 0;
        c.d.limpiar();
        return *f.idCliente();
    }

private slots:
    void clienteNuevo() {
        auto c = caso();
        ClienteForm f(*c->e);
        QVERIFY(f.esNuevo());
        QCOMPARE(f.titulo(), QStringLiteral("Mantenimiento de Clientes - (Nuevo cliente)"));
        QCOMPARE(f.texto(QStringLiteral("FechaAlta")), QStringLiteral("02/03/2026"));
        QCOMPARE(f.texto(QStringLiteral("Tarifa")), QStringLiteral("TARIFA 2"));
        QCOMPARE(f.texto(QStringLiteral("LOPD")), QStringLiteral("Sin informar"));
        QCOMPARE(f.saldo(QStringLiteral("Deuda")), QStringLiteral("0,00"));
        QVERIFY(!f.modificado());
        // Balances are not fields the user types.
        QVERIFY(!f.setTexto(QStringLiteral("Deuda"), QStringLiteral("10")));
        QCOMPARE(f.valoresLista(QStringLiteral("ViaComunicacion")),
                 QStringList({QString(), QStringLiteral("Teléfono"), QStringLiteral("SMS"),
                              QStringLiteral("E-Mail"), QStringLiteral("Correo postal")}));

        // A workstation without a default tariff leaves it empty, and saving asks for it.
        auto sin = caso(QString());
        ClienteForm g(*sin->e);
        QCOMPARE(g.texto(QStringLiteral("Tarifa")), QString());
        g.setTexto(QStringLiteral("Nombre"), QStringLiteral("Pepe"));
        QVERIFY(!g.guardar());
        QCOMPARE(
            sin->d.ultimoTexto(),
            QStringLiteral("Debe informar la tarifa general a aplicar al cliente en la Ficha comercial."));
    }

    void ordenDeComprobaciones_data() {
        QTest::addColumn<QStringList>("campos"); // column, text, column, text...
        QTest::addColumn<bool>("ivaCero");
        QTest::addColumn<int>("icono");
        QTest::addColumn<QString>("titulo");
        QTest::addColumn<QString>("mensaje");
        const int excl = static_cast<int>(Icono::Exclamacion);
        const int crit = static_cast<int>(Icono::Critico);
        const QString fecha = QStringLiteral("Error en fecha");
        const QString obl = QStringLiteral("Campos obligatorios no informados");
        const QString atencion = QStringLiteral("¡Atención!");
        const QString prefijo =
            QStringLiteral(" La Subcuenta Contable para el Cliente debe comenzar por '430'.");
        const QString numerica = QStringLiteral(
            " La Subcuenta Contable para el Cliente sólo puede contener caracteres numéricos.");
        const QString movilMal =
            QStringLiteral("El número de teléfono móvil está mal informado o es erróneo.");
        const QString todo = QStringLiteral("Nombre|Ana|Tarifa|TARIFA 1");

        QTest::newRow("alta inválida antes que todo")
            << QStringList({QStringLiteral("FechaAlta"), QStringLiteral("31/02/2026"),
                            QStringLiteral("FechaBaja"), QStringLiteral("x"), QStringLiteral("Facebook"),
                            QStringLiteral("facebook.com/ana"), QStringLiteral("Nombre"), QString()})
            << false << excl << fecha << QStringLiteral("La fecha de Alta introducida no es válida.");
        QTest::newRow("baja inválida")
            << QStringList({QStringLiteral("FechaBaja"), QStringLiteral("1/13/2026"),
                            QStringLiteral("Subcuenta"), QStringLiteral("4")})
            << false << excl << fecha << QStringLiteral("La fecha de Baja introducida no es válida.");
        QTest::newRow("facebook antes que subcuenta")
            << QStringList({QStringLiteral("Facebook"), QStringLiteral("https://www.Facebook.com/ana"),
                            QStringLiteral("Subcuenta"), QStringLiteral("4")})
            << false << excl << atencion
            << QStringLiteral("Escriba únicamente el nombre del perfil en el campo Facebook.");
        QTest::newRow("subcuenta corta antes que el nombre")
            << QStringList(
                   {QStringLiteral("Subcuenta"), QStringLiteral("43"), QStringLiteral("Nombre"), QString()})
            << false << crit << atencion << prefijo;
        QTest::newRow("subcuenta 431")
            << QStringList({QStringLiteral("Subcuenta"), QStringLiteral("4310007")}) << false << crit
            << atencion << prefijo;
        QTest::newRow("subcuenta 430A") << QStringList({QStringLiteral("Subcuenta"), QStringLiteral("430A")})
                                        << false << crit << atencion << numerica;
        QTest::newRow("nombre antes que tarifa")
            << QStringList(
                   {QStringLiteral("Nombre"), QStringLiteral("   "), QStringLiteral("Tarifa"), QString()})
            << false << excl << obl << QStringLiteral("Debe informar el nombre del cliente.");
        QTest::newRow("tarifa antes que el móvil")
            << QStringList({QStringLiteral("Tarifa"), QString(), QStringLiteral("ViaComunicacion"),
                            QStringLiteral("SMS")})
            << false << excl << obl
            << QStringLiteral("Debe informar la tarifa general a aplicar al cliente en la Ficha comercial.");
        QTest::newRow("SMS sin móvil")
            << QStringList({QStringLiteral("ViaComunicacion"), QStringLiteral("SMS")}) << false << excl << obl
            << QStringLiteral("Debe informar el número de teléfono móvil al que se enviarán los SMS.");
        QTest::newRow("SMS con 8 cifras")
            << QStringList({QStringLiteral("ViaComunicacion"), QStringLiteral("SMS"), QStringLiteral("Movil"),
                            QStringLiteral("61234567")})
            << false << excl << obl << movilMal;
        QTest::newRow("SMS con 10 cifras")
            << QStringList({QStringLiteral("ViaComunicacion"), QStringLiteral("SMS"), QStringLiteral("Movil"),
                            QStringLiteral("6123456789")})
            << false << excl << obl << movilMal;
        QTest::newRow("SMS con 9 cifras")
            << QStringList({QStringLiteral("ViaComunicacion"), QStringLiteral("SMS"), QStringLiteral("Movil"),
                            QStringLiteral("612345678")})
            << false << 0 << QString() << QString();
        QTest::newRow("8 cifras por teléfono")
            << QStringList({QStringLiteral("ViaComunicacion"), QStringLiteral("Teléfono"),
                            QStringLiteral("Movil"), QStringLiteral("61234567")})
            << false << 0 << QString() << QString();
        QTest::newRow("10 cifras sin vía")
            << QStringList({QStringLiteral("Movil"), QStringLiteral("6123456789")}) << false << 0 << QString()
            << QString();
        QTest::newRow("E-Mail sin dirección")
            << QStringList({QStringLiteral("ViaComunicacion"), QStringLiteral("E-Mail")}) << false << excl
            << obl
            << QStringLiteral("Debe informar la dirección de E-Mail a la que se enviarán los Recordatorios.");
        QTest::newRow("extranjero sin IVA 0")
            << QStringList({QStringLiteral("EmpresaExtranjero"), QStringLiteral("Sí")}) << false << excl
            << QStringLiteral("Información necesaria inexistente")
            << QStringLiteral(
                   "Ha marcado la opción 'El cliente es una Empresa con residencia en el extranjero' "
                   "pero no tiene creado un tipo de IVA a 0%. Añada un nuevo tipo de IVA con valor 0 "
                   "para poder usar esta funcionalidad.");
        QTest::newRow("extranjero con IVA 0")
            << QStringList({QStringLiteral("EmpresaExtranjero"), QStringLiteral("Sí")}) << true << 0
            << QString() << QString();
        QTest::newRow("subcuenta 430") << QStringList({QStringLiteral("Subcuenta"), QStringLiteral("430")})
                                       << false << 0 << QString() << QString();
        QTest::newRow("descuento no numérico")
            << QStringList({QStringLiteral("DtoGeneral"), QStringLiteral("cinco")}) << false << excl
            << QStringLiteral("Información introducida errónea")
            << QStringLiteral(
                   "El campo 'Descuento general' debe ser un número, con coma decimal (por ejemplo "
                   "1.234,56).");
        Q_UNUSED(todo);
    }

    void ordenDeComprobaciones() {
        QFETCH(QStringList, campos);
        QFETCH(bool, ivaCero);
        QFETCH(int, icono);
        QFETCH(QString, titulo);
        QFETCH(QString, mensaje);
        auto c = caso();
        if (ivaCero) {
            Registro iva(*descriptorTabla(QStringLiteral("TiposIVA")));
            iva.setValor(QStringLiteral("Descripcion"), QStringLiteral("Exento"));
            iva.setValor(QStringLiteral("Porcentaje"), 0.0);
            RegistroStore(c->t.db()).crear(iva);
        }
        ClienteForm f(*c->e);
        QVERIFY(f.setTexto(QStringLiteral("Nombre"), QStringLiteral("Ana Ruiz")));
        for (int i = 0; i + 1 < campos.size(); i += 2)
            QVERIFY(f.setTexto(campos.at(i), campos.at(i + 1)));
        const bool guardado = f.guardar();
        QCOMPARE(guardado, mensaje.isEmpty());
        if (guardado) {
            QVERIFY(c->d.mensajes().isEmpty());
            QVERIFY(!f.esNuevo());
            auto leido = ClienteForm(*c->e);
            QVERIFY(leido.cargar(*f.idCliente()));
            for (int i = 0; i + 1 < campos.size(); i += 2)
                QCOMPARE(leido.texto(campos.at(i)), campos.at(i + 1).trimmed());
            if (ivaCero) QVERIFY(!leido.texto(QStringLiteral("IdTipoIVA")).isEmpty());
            return;
        }
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(static_cast<int>(c->d.ultimo().icono), icono);
        QCOMPARE(c->d.ultimo().titulo, titulo);
        if (mensaje.startsWith(QStringLiteral("Escriba"))) {
            QVERIFY(c->d.ultimoTexto().startsWith(mensaje));
            QVERIFY(c->d.ultimoTexto().contains(QStringLiteral("No incluya la dirección de la página web")));
        } else {
            QCOMPARE(c->d.ultimoTexto(), mensaje);
        }
        // Nothing was stored and the form keeps what was typed.
        QVERIFY(f.esNuevo());
        QCOMPARE(RegistroStore(c->t.db()).contar(*descriptorTabla(QStringLiteral("Clientes"))), 0);
        for (int i = 0; i + 1 < campos.size(); i += 2) {
            const QString esperado =
                campos.at(i) == QStringLiteral("Subcuenta") ? campos.at(i + 1).trimmed() : campos.at(i + 1);
            QCOMPARE(f.texto(campos.at(i)), esperado);
        }
    }

    void guardarYCargar() {
        auto c = caso();
        ClienteForm f(*c->e);
        rellenar(f);
        QVERIFY(f.guardar());
        QVERIFY(c->d.mensajes().isEmpty()); // a new client gets no commercial-file notice
        const qint64 id = *f.idCliente();
        QCOMPARE(f.titulo(), QStringLiteral("Mantenimiento de Clientes - %1 - Lucía Ortega Peña").arg(id));
        QCOMPARE(f.texto(QStringLiteral("Nombre")), QStringLiteral("Lucía Ortega Peña"));

        RegistroStore(c->t.db()).ejecutar(QStringLiteral("UPDATE Clientes SET Deuda = ? WHERE IdCliente = ?"),
                                          {1234.5, static_cast<qlonglong>(id)});
        ClienteForm g(*c->e);
        QVERIFY(g.cargar(id));
        QCOMPARE(g.texto(QStringLiteral("LOPD")), QStringLiteral("No consiente"));
        QCOMPARE(g.texto(QStringLiteral("DtoGeneral")), QStringLiteral("5,00"));
        QCOMPARE(g.texto(QStringLiteral("Tarifa")), QStringLiteral("TARIFA 2"));
        QCOMPARE(g.texto(QStringLiteral("FechaAlta")), QStringLiteral("02/03/2026"));
        QCOMPARE(g.texto(QStringLiteral("FraNombre")), QStringLiteral("Ortega Veterinaria S.L."));
        QCOMPARE(g.saldo(QStringLiteral("Deuda")), QStringLiteral("1.234,50"));

        // A client that is not there: the form keeps the one it showed.
        QVERIFY(!g.cargar(id + 100));
        QCOMPARE(c->d.ultimo().icono, Icono::Critico);
        QCOMPARE(c->d.ultimo().titulo,
                 QStringLiteral("Error al intentar acceder al Cliente nº: %1.").arg(id + 100));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Ha sido imposible recuperar la información solicitada. Puede "
                                "que el Cliente haya sido eliminado."));
        QCOMPARE(*g.idCliente(), id);
        QCOMPARE(g.texto(QStringLiteral("Nombre")), QStringLiteral("Lucía Ortega Peña"));
    }

    void laBusquedaEncuentraLoQueSeGuarda() {
        // The search matches names without case or accents: saving keeps its copy current.
        auto c = caso();
        ClienteForm f(*c->e);
        rellenar(f);
        QVERIFY(f.guardar());
        CriteriosBusquedaCliente criterios;
        criterios.nombre = QStringLiteral("lucia ortega");
        QCOMPARE(ClienteBusquedaStore(c->t.db()).buscar(criterios, 10).size(), 1);
        c->d.si(); // the name-change question
        QVERIFY(f.setTexto(QStringLiteral("Nombre"), QStringLiteral("Lucía Núñez Peña")));
        QVERIFY(f.guardar());
        criterios.nombre = QStringLiteral("LUCIA NUNEZ");
        QCOMPARE(ClienteBusquedaStore(c->t.db()).buscar(criterios, 10).size(), 1);
        criterios.nombre = QStringLiteral("lucia ortega");
        QCOMPARE(ClienteBusquedaStore(c->t.db()).buscar(criterios, 10).size(), 0);
    }

    void cambioDeNombre() {
        auto c = caso();
        const qint64 id = crearCliente(*c, QStringLiteral("Juan Gil"));
        QVERIFY(id > 0);
        ClienteForm f(*c->e);
        QVERIFY(f.cargar(id));
        QVERIFY(f.setTexto(QStringLiteral("Nombre"), QStringLiteral("Juan Gil Sanz")));
        QVERIFY(f.setTexto(QStringLiteral("Subcuenta"), QStringLiteral("4")));
        c->d.no();
        QVERIFY(!f.guardar());
        // The question comes before the subaccount check; No stops everything.
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Atención"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Ha cambiado el nombre de este cliente. ¿Confirma que desea "
                                "guardar esta modificación?"));
        c->d.si();
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimo().icono, Icono::Critico);
        f.setTexto(QStringLiteral("Subcuenta"), QString());
        c->d.limpiar();
        c->d.si();
        QVERIFY(f.guardar());
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(f.titulo(), QStringLiteral("Mantenimiento de Clientes - %1 - Juan Gil Sanz").arg(id));
        // Saving again without a name change asks nothing.
        c->d.limpiar();
        f.setTexto(QStringLiteral("Notas"), QStringLiteral("Prefiere cita por la tarde"));
        QVERIFY(f.guardar());
        QVERIFY(c->d.mensajes().isEmpty());
    }

    void avisoFichaComercial() {
        auto c = caso();
        Registro s(*descriptorTabla(QStringLiteral("Secciones")));
        s.setValor(QStringLiteral("Descripcion"), QStringLiteral("Vacunas"));
        const qint64 seccion = RegistroStore(c->t.db()).crear(s).toLongLong();
        const qint64 id = crearCliente(*c, QStringLiteral("Marta Sol"));
        const QString aviso = QStringLiteral("Los cambios efectuados en la Ficha Comercial de este cliente "
                                             "tendrán efecto a partir del siguiente Albarán");
        ClienteForm f(*c->e);
        QVERIFY(f.cargar(id));
        f.setTexto(QStringLiteral("DtoGeneral"), QStringLiteral("7,5"));
        QVERIFY(f.guardar());
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Aviso"));
        QCOMPARE(c->d.ultimoTexto(), aviso);

        c->d.limpiar();
        f.setTexto(QStringLiteral("Notas"), QStringLiteral("Sin cambios comerciales"));
        QVERIFY(f.guardar());
        QVERIFY(c->d.mensajes().isEmpty());

        EntradaCondicion e;
        e.IdSeccion = seccion;
        e.Tarifa = QStringLiteral("TARIFA 3");
        QVERIFY(f.condiciones().insertar(e));
        QVERIFY(f.modificado());
        QVERIFY(f.guardar());
        QCOMPARE(c->d.ultimoTexto(), aviso);
        ClienteForm g(*c->e);
        QVERIFY(g.cargar(id));
        QCOMPARE(g.condiciones().filas().size(), 1);
        QCOMPARE(g.condiciones().celdas(0).at(1), QStringLiteral("Vacunas"));
    }

    void eliminar() {
        auto c = caso();
        const qint64 conMascota = crearCliente(*c, QStringLiteral("Eva Luna"));
        Registro m(*descriptorTabla(QStringLiteral("Mascotas")));
        m.setValor(QStringLiteral("IdCliente"), static_cast<qlonglong>(conMascota));
        m.setValor(QStringLiteral("Nombre"), QStringLiteral("Toby"));
        RegistroStore(c->t.db()).crear(m);
        ClienteForm f(*c->e);
        QVERIFY(f.cargar(conMascota));
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.mensajes().size(), 1);
        QVERIFY(!c->d.ultimo().pregunta);
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No se puede eliminar este Cliente porque tiene Mascotas. "
                                "Elimínelas antes o páselas a otro propietario."));

        const qint64 id = crearCliente(*c, QStringLiteral("Raúl Paz"));
        QVERIFY(f.cargar(id));
        EntradaCondicion e;
        Registro s(*descriptorTabla(QStringLiteral("Secciones")));
        s.setValor(QStringLiteral("Descripcion"), QStringLiteral("Higiene"));
        e.IdSeccion = RegistroStore(c->t.db()).crear(s).toLongLong();
        e.Precio = QStringLiteral("3");
        QVERIFY(f.condiciones().insertar(e));
        QVERIFY(f.guardar());
        c->d.limpiar();
        c->d.no();
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(c->d.ultimo().icono, Icono::Pregunta);
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar este Cliente?"));
        QVERIFY(!f.esNuevo());
        c->d.si();
        QVERIFY(f.eliminar());
        QVERIFY(f.esNuevo());
        QCOMPARE(f.texto(QStringLiteral("Nombre")), QString());
        QCOMPARE(f.titulo(), QStringLiteral("Mantenimiento de Clientes - (Nuevo cliente)"));
        QVERIFY(!ClienteForm(*c->e).cargar(id));
        QCOMPARE(
            RegistroStore(c->t.db()).contar(*descriptorTabla(QStringLiteral("CondicionesEspeciales")),
                                            {QStringLiteral("IdCliente = ?"), {static_cast<qlonglong>(id)}}),
            0);
    }

    void bloqueoDeOtroPuesto() {
        auto c = caso();
        const qint64 id = crearCliente(*c, QStringLiteral("Pilar Roca"));
        ScriptedDialogs d2;
        auto otra = c->t.otraConexion();
        Entorno e2(*otra, d2, reloj_);
        e2.puesto = QStringLiteral("RECEPCION");
        e2.sesion = QStringLiteral("S2");
        e2.usuario = QStringLiteral("luis");
        ClienteForm ajeno(e2);
        QVERIFY(ajeno.cargar(id));
        QVERIFY(ajeno.setTexto(QStringLiteral("Notas"), QStringLiteral("Llamar")));

        ClienteForm f(*c->e);
        QVERIFY(f.cargar(id));
        QVERIFY(!f.setTexto(QStringLiteral("Notas"), QStringLiteral("Otra nota")));
        QCOMPARE(f.texto(QStringLiteral("Notas")), QString());
        QVERIFY(!f.modificado());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Bloqueo de Registro"));
        // Once the other workstation saves, its lock is gone.
        QVERIFY(ajeno.guardar());
        QVERIFY(f.setTexto(QStringLiteral("Notas"), QStringLiteral("Otra nota")));
        QVERIFY(f.guardar());
    }

    void buscarAbreElClienteElegido() {
        auto c = caso();
        ClienteForm f(*c->e);
        rellenar(f);
        QVERIFY(f.guardar());
        const qint64 id = *f.idCliente();
        ClienteForm g(*c->e);
        // Nothing chosen: the form stays as it was.
        c->e->buscadores.cliente = [](const PeticionCliente&) { return std::optional<ClienteElegido>(); };
        QVERIFY(!g.buscar());
        QVERIFY(!g.idCliente());
        ClienteElegido elegido;
        elegido.claveCliente = id;
        c->e->buscadores.cliente = [&elegido](const PeticionCliente&) { return std::optional(elegido); };
        QVERIFY(g.buscar());
        QCOMPARE(*g.idCliente(), id);
        QCOMPARE(g.texto(QStringLiteral("Nombre")), QStringLiteral("Lucía Ortega Peña"));
        // "Nuevo cliente" in the search clears the form for a new client.
        elegido.NuevoCliente = true;
        QVERIFY(g.buscar());
        QVERIFY(!g.idCliente());
        QCOMPARE(g.titulo(), QStringLiteral("Mantenimiento de Clientes - (Nuevo cliente)"));
    }

    void cambiosSinGuardarNoSePierdenSinPreguntar() {
        auto c = caso();
        ClienteForm f(*c->e);
        QVERIFY(f.puedeAbandonar()); // nothing typed: nothing to ask
        QVERIFY(c->d.mensajes().isEmpty());
        QVERIFY(f.setTexto(QStringLiteral("Nombre"), QStringLiteral("Ana")));
        c->d.no();
        QVERIFY(!f.puedeAbandonar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("ATENCIÓN"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Las modificaciones realizadas a este Cliente no han sido guardadas. "
                                "¿Desea perder los cambios efectuados?"));
        // The search is not opened while the user keeps the changes.
        int busquedas = 0;
        c->e->buscadores.cliente = [&busquedas](const PeticionCliente&) {
            ++busquedas;
            return std::optional<ClienteElegido>();
        };
        c->d.no();
        QVERIFY(!f.buscar());
        QCOMPARE(busquedas, 0);
        QCOMPARE(f.texto(QStringLiteral("Nombre")), QStringLiteral("Ana"));
        c->d.si();
        QVERIFY(f.puedeAbandonar());
    }

    void listasYMascotas() {
        auto c = caso();
        RegistroStore store(c->t.db());
        Registro tipo(*descriptorTabla(QStringLiteral("TiposCliente")));
        tipo.setValor(QStringLiteral("Descripcion"), QStringLiteral("Criador"));
        tipo.setValor(QStringLiteral("Activo"), QStringLiteral("S"));
        const qint64 idTipo = store.crear(tipo).toLongLong();
        Registro pob(*descriptorTabla(QStringLiteral("Poblaciones")));
        pob.setValor(QStringLiteral("Descripcion"), QStringLiteral("Móstoles"));
        store.crear(pob);
        ClienteForm f(*c->e);
        const auto tipos = f.opciones(QStringLiteral("IdTipoCliente"));
        QCOMPARE(tipos.size(), 1);
        QCOMPARE(tipos.first().clave.toLongLong(), idTipo);
        QCOMPARE(tipos.first().texto, QStringLiteral("Criador"));
        const auto poblaciones = f.opciones(QStringLiteral("FraPoblacion"));
        QCOMPARE(poblaciones.size(), 1);
        QCOMPARE(poblaciones.first().clave.toString(), QStringLiteral("Móstoles"));
        QCOMPARE(ClienteForm::tablaParametro(QStringLiteral("FraCodigoPostal")),
                 QStringLiteral("CodigosPostales"));
        QCOMPARE(ClienteForm::tablaParametro(QStringLiteral("Nombre")), QString());

        qint64 abierto = 0;
        f.abrirMascotas = [&](qint64 id) { abierto = id; };
        QVERIFY(!f.mascotas());
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Debe seleccionar primero un Cliente."));
        f.setTexto(QStringLiteral("Nombre"), QStringLiteral("Susana"));
        f.setTexto(QStringLiteral("IdTipoCliente"), QString::number(idTipo));
        QVERIFY(f.guardar());
        QVERIFY(f.mascotas());
        QCOMPARE(abierto, *f.idCliente());
        ClienteForm g(*c->e);
        QVERIFY(g.cargar(abierto));
        QCOMPARE(g.texto(QStringLiteral("IdTipoCliente")), QString::number(idTipo));
    }
};

PMX_STORE_TEST_MAIN(TestClienteForm)
#include "test_cliente_form.moc"
