// The client form on both engines: defaults, the save checks in order, the questions and notices,
// deleting, one editor per client, locks and a client saved meanwhile elsewhere.
#include "app/bloqueo_edicion.h"
#include "app/conf_puesto_store.h"
#include "clients/cliente_busqueda_store.h"
#include "clients/cliente_form.h"
#include "core/dinero.h"
#include "sesion.h"

namespace {
// A save refused (or accepted, with no message) after typing campos: column, text, column, text...
struct Comprobacion {
    QStringList campos;
    Icono icono = Icono::Ninguno;
    QString titulo, mensaje;
    bool ivaCero = false; // a 0 % VAT type exists
};
} // namespace
Q_DECLARE_METATYPE(Comprobacion)

class TestClienteForm : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        Caso() : Sesion(QDateTime(QDate(2026, 3, 2), QTime(10, 0))) {}
    };

    std::unique_ptr<Caso> caso(const QString& tarifaPuesto = u"TARIFA 2"_s) {
        auto c = std::make_unique<Caso>();
        ConfiguracionPuesto conf;
        conf.Puesto = c->e.puesto;
        conf.Tarifa = tarifaPuesto;
        ConfPuestoStore(c->db()).guardar(conf);
        return c;
    }

    static qint64 crearCliente(Caso& c, const QString& nombre) {
        ClienteForm f(c.e);
        f.setTexto(u"Nombre"_s, nombre);
        if (!f.guardar()) return 0;
        c.d.limpiar();
        return *f.idCliente();
    }

private slots:
    void clienteNuevo() {
        auto c = caso();
        ClienteForm f(c->e);
        QCOMPARE(f.titulo(), u"Mantenimiento de Clientes - (Nuevo cliente)"_s);
        QCOMPARE(f.texto(u"FechaAlta"_s), u"02/03/2026"_s);
        QCOMPARE(f.texto(u"Tarifa"_s), u"TARIFA 2"_s);
        QCOMPARE(f.texto(u"LOPD"_s), u"Sin informar"_s);
        QCOMPARE(f.saldo(u"Deuda"_s), u"0,00"_s);
        QVERIFY(!f.modificado());
        // Balances are not fields the user types.
        QVERIFY(!f.setTexto(u"Deuda"_s, u"10"_s));
        QCOMPARE(f.valoresLista(u"ViaComunicacion"_s),
                 QStringList({QString(), u"Teléfono"_s, u"SMS"_s, u"E-Mail"_s, u"Correo postal"_s}));

        // A workstation without a default tariff leaves it empty (saving then asks for it, as in
        // ordenDeComprobaciones).
        auto sin = caso(QString());
        QCOMPARE(ClienteForm(sin->e).texto(u"Tarifa"_s), QString());
    }

    void ordenDeComprobaciones_data() {
        QTest::addColumn<Comprobacion>("k");
        auto fila = [](const char* nombre, const QStringList& campos, Icono icono = Icono::Ninguno,
                       const QString& titulo = {}, const QString& mensaje = {}, bool ivaCero = false) {
            QTest::newRow(nombre) << Comprobacion{campos, icono, titulo, mensaje, ivaCero};
        };
        const Icono excl = Icono::Exclamacion;
        const QString fecha = u"Error en fecha"_s;
        const QString obl = u"Campos obligatorios no informados"_s;
        const QString movilMal = u"El número de teléfono móvil está mal informado o es erróneo."_s;
        fila("alta inválida antes que todo",
             {u"FechaAlta"_s, u"31/02/2026"_s, u"FechaBaja"_s, u"x"_s, u"Facebook"_s, u"facebook.com/ana"_s,
              u"Nombre"_s, QString()},
             excl, fecha, u"La fecha de Alta introducida no es válida."_s);
        fila("facebook antes que subcuenta",
             {u"Facebook"_s, u"https://www.Facebook.com/ana"_s, u"Subcuenta"_s, u"4"_s}, excl,
             u"¡Atención!"_s,
             u"Escriba únicamente el nombre del perfil en el campo Facebook. No incluya la dirección de la "
             "página web (por ejemplo «www.facebook.com/...»): basta con el nombre que aparece al final de "
             "esa dirección."_s);
        // The subaccount rule itself: test_subcuenta_lopd.
        fila("subcuenta corta antes que el nombre", {u"Subcuenta"_s, u" 43 "_s, u"Nombre"_s, QString()},
             Icono::Critico, u"¡Atención!"_s,
             u" La Subcuenta Contable para el Cliente debe comenzar por '430'."_s);
        fila("nombre antes que tarifa", {u"Nombre"_s, u"   "_s, u"Tarifa"_s, QString()}, excl, obl,
             u"Debe informar el nombre del cliente."_s);
        fila("tarifa antes que el móvil", {u"Tarifa"_s, QString(), u"ViaComunicacion"_s, u"SMS"_s}, excl, obl,
             u"Debe informar la tarifa general a aplicar al cliente en la Ficha comercial."_s);
        fila("SMS sin móvil", {u"ViaComunicacion"_s, u"SMS"_s}, excl, obl,
             u"Debe informar el número de teléfono móvil al que se enviarán los SMS."_s);
        fila("SMS con 8 cifras", {u"ViaComunicacion"_s, u"SMS"_s, u"Movil"_s, u"61234567"_s}, excl, obl,
             movilMal);
        fila("SMS con 9 cifras", {u"ViaComunicacion"_s, u"SMS"_s, u"Movil"_s, u"612345678"_s});
        fila("8 cifras por teléfono", {u"ViaComunicacion"_s, u"Teléfono"_s, u"Movil"_s, u"61234567"_s});
        fila("E-Mail sin dirección", {u"ViaComunicacion"_s, u"E-Mail"_s}, excl, obl,
             u"Debe informar la dirección de E-Mail a la que se enviarán los Recordatorios."_s);
        fila(
            "extranjero sin IVA 0", {u"EmpresaExtranjero"_s, u"Sí"_s}, excl,
            u"Información necesaria inexistente"_s,
            u"Ha marcado la opción 'El cliente es una Empresa con residencia en el extranjero' pero no tiene "
            "creado un tipo de IVA a 0%. Añada un nuevo tipo de IVA con valor 0 para poder usar esta "
            "funcionalidad."_s);
        fila("extranjero con IVA 0", {u"EmpresaExtranjero"_s, u"Sí"_s}, Icono::Ninguno, {}, {}, true);
    }

    void ordenDeComprobaciones() {
        QFETCH(Comprobacion, k);
        const QStringList& campos = k.campos;
        auto c = caso();
        if (k.ivaCero) c->s.iva(u"Exento"_s, 0.0);
        ClienteForm f(c->e);
        QVERIFY(f.setTexto(u"Nombre"_s, u"Ana Ruiz"_s));
        for (int i = 0; i + 1 < campos.size(); i += 2)
            QVERIFY(f.setTexto(campos.at(i), campos.at(i + 1)));
        const bool guardado = f.guardar();
        QCOMPARE(guardado, k.mensaje.isEmpty());
        if (guardado) {
            QVERIFY(c->d.mensajes().isEmpty());
            QVERIFY(!f.esNuevo());
            if (k.ivaCero) QVERIFY(!f.texto(u"IdTipoIVA"_s).isEmpty());
            return;
        }
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().icono, k.icono);
        QCOMPARE(c->d.ultimo().titulo, k.titulo);
        QCOMPARE(c->d.ultimoTexto(), k.mensaje);
        // Nothing was stored and the form keeps what was typed (the subaccount trimmed).
        QVERIFY(f.esNuevo());
        QCOMPARE(c->s.contar(u"Clientes"_s), 0);
        for (int i = 0; i + 1 < campos.size(); i += 2) {
            const QString esperado =
                campos.at(i) == u"Subcuenta"_s ? campos.at(i + 1).trimmed() : campos.at(i + 1);
            QCOMPARE(f.texto(campos.at(i)), esperado);
        }
    }

    void guardarYCargar() {
        auto c = caso();
        ClienteForm f(c->e);
        int alFrente = 0;
        f.traerAlFrente = [&alFrente] { ++alFrente; };
        QVERIFY(f.setTexto(u"Nombre"_s, u"  Lucía Ortega Peña "_s));
        QVERIFY(f.setTexto(u"DtoGeneral"_s, u"5"_s));
        QVERIFY(f.setTexto(u"LOPD"_s, u"No consiente"_s));
        QVERIFY(f.guardar());
        QVERIFY(c->d.mensajes().isEmpty()); // a new client gets no commercial-file notice
        const qint64 id = *f.idCliente();
        QCOMPARE(f.titulo(), u"Mantenimiento de Clientes - %1 - Lucía Ortega Peña"_s.arg(id));

        c->db().ejecutarCambio(u"UPDATE Clientes SET Deuda = ? WHERE IdCliente = ?"_s, {1234.5, id});
        // Open in f: another form here does not open it, f comes forward.
        ClienteForm g(c->e);
        QVERIFY(!g.cargar(id));
        QCOMPARE(alFrente, 1);
        QVERIFY(g.esNuevo());
        f.cerrar();
        QVERIFY(g.cargar(id));
        QCOMPARE(g.texto(u"LOPD"_s), u"No consiente"_s);
        QCOMPARE(g.texto(u"DtoGeneral"_s), u"5,00"_s);
        QCOMPARE(g.saldo(u"Deuda"_s), u"1.234,50"_s);
    }

    // The name-change question; the search's copy of the name (no case, no accents) follows the name.
    void cambioDeNombre() {
        auto c = caso();
        const qint64 id = crearCliente(*c, u" Lucía Ortega"_s);
        QVERIFY(id > 0);
        auto encontrados = [&c](const QString& nombre) {
            CriteriosBusquedaCliente criterios;
            criterios.nombre = nombre;
            return ClienteBusquedaStore(c->db()).buscar(criterios, 10).size();
        };
        ClienteForm f(c->e);
        QVERIFY(f.cargar(id));
        QVERIFY(f.setTexto(u"Nombre"_s, u"Lucía Núñez Peña"_s));
        QVERIFY(f.setTexto(u"Subcuenta"_s, u"4"_s));
        c->d.no();
        QVERIFY(!f.guardar());
        // The question comes before the subaccount check; No stops everything.
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, u"Atención"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Ha cambiado el nombre de este cliente. ¿Confirma que desea "
                                     "guardar esta modificación?"_s);
        c->d.si();
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimo().icono, Icono::Critico);
        f.setTexto(u"Subcuenta"_s, QString());
        c->d.limpiar();
        c->d.si();
        QVERIFY(f.guardar());
        QCOMPARE(f.titulo(), u"Mantenimiento de Clientes - %1 - Lucía Núñez Peña"_s.arg(id));
        QCOMPARE(encontrados(u"LUCIA NUNEZ"_s), 1);
        QCOMPARE(encontrados(u"lucia ortega"_s), 0);
    }

    // Commercial changes bring the notice; deleting takes the client's conditions along, and is
    // refused while the client has pets.
    void fichaComercialYEliminar() {
        auto c = caso();
        const qint64 seccion = c->s.seccion(u"Vacunas"_s);
        const qint64 id = crearCliente(*c, u"Marta Sol"_s);
        const QString aviso = u"Los cambios efectuados en la Ficha Comercial de este cliente "
                              "tendrán efecto a partir del siguiente Albarán"_s;
        ClienteForm f(c->e);
        QVERIFY(f.cargar(id));
        f.setTexto(u"DtoGeneral"_s, u"7,5"_s);
        QVERIFY(f.guardar());
        QCOMPARE(c->d.ultimo().titulo, u"Aviso"_s);
        QCOMPARE(c->d.ultimoTexto(), aviso);

        EntradaCondicion e;
        e.IdSeccion = seccion;
        e.Tarifa = u"TARIFA 3"_s;
        QVERIFY(f.condiciones().insertar(e));
        QVERIFY(f.guardar());
        f.cerrar();
        ClienteForm g(c->e);
        QVERIFY(g.cargar(id));
        QCOMPARE(g.condiciones().celdas(0).at(1), u"Vacunas"_s);

        c->d.limpiar();
        c->d.no();
        QVERIFY(!g.eliminar());
        QCOMPARE(c->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(c->d.ultimoTexto(), u"¿Desea realmente eliminar este Cliente?"_s);
        c->d.si();
        QVERIFY(g.eliminar());
        QVERIFY(!ClienteForm(c->e).cargar(id));
        QCOMPARE(c->s.contar(u"CondicionesEspeciales"_s), 0);

        const qint64 conMascota = crearCliente(*c, u"Eva Luna"_s);
        c->s.fila(u"Mascotas"_s, {{u"Nombre"_s, u"Toby"_s}, {u"IdCliente"_s, conMascota}});
        QVERIFY(g.cargar(conMascota));
        QVERIFY(!g.eliminar());
        QCOMPARE(c->d.ultimoTexto(), u"No se puede eliminar este Cliente porque tiene Mascotas. "
                                     "Elimínelas antes o páselas a otro propietario."_s);
    }

    void bloqueoDeOtroPuesto() {
        auto c = caso();
        const qint64 id = crearCliente(*c, u"Pilar Roca"_s);
        ScriptedDialogs d2;
        auto otra = c->t.otraConexion();
        Entorno e2(*otra, d2, c->reloj);
        e2.puesto = u"RECEPCION"_s;
        e2.sesion = u"S2"_s;
        e2.usuario = u"luis"_s;
        ClienteForm ajeno(e2);
        QVERIFY(ajeno.cargar(id));
        QVERIFY(ajeno.setTexto(u"Notas"_s, u"Llamar"_s));

        ClienteForm f(c->e);
        QVERIFY(f.cargar(id));
        QVERIFY(!f.setTexto(u"Notas"_s, u"Otra nota"_s));
        QCOMPARE(f.texto(u"Notas"_s), QString());
        QVERIFY(!f.modificado());
        QCOMPARE(c->d.ultimo().titulo, u"Bloqueo de Registro"_s);
        // Once the other workstation saves, its lock is gone; but f read the client before that
        // save: nothing is written, and Yes reloads what the other workstation saved.
        QVERIFY(ajeno.guardar());
        QVERIFY(f.setTexto(u"Notas"_s, u"Otra nota"_s));
        const QString notas = u"SELECT Notas FROM Clientes WHERE IdCliente = ?"_s;
        for (const bool recargar : {false, true}) {
            c->d.limpiar();
            c->d.responder(recargar);
            QVERIFY(!f.guardar());
            QCOMPARE(c->d.ultimoTexto(), textoRegistroModificado(u"Cliente"_s));
            QCOMPARE(c->valor(notas, {id}).toString(), u"Llamar"_s);
        }
        QCOMPARE(f.texto(u"Notas"_s), u"Llamar"_s);
        QVERIFY(!f.modificado());
        // A balance moved by an operation after the form read the client is never written back.
        c->db().ejecutarCambio(u"UPDATE Clientes SET Deuda = ? WHERE IdCliente = ?"_s, {80.5, id});
        QVERIFY(f.setTexto(u"Notas"_s, u"Otra nota"_s));
        QVERIFY(f.guardar());
        QCOMPARE(c->valor(notas, {id}).toString(), u"Otra nota"_s);
        QVERIFY(mismoImporte(c->valor(u"SELECT Deuda FROM Clientes WHERE IdCliente = ?"_s, {id}).toDouble(),
                             80.5));
    }

    // The search: nothing chosen leaves the form as it was, a choice opens that client, "Nuevo
    // cliente" clears the form; typed changes are not lost (nor the search opened) without asking.
    void buscarYCambiosSinGuardar() {
        auto c = caso();
        const qint64 id = crearCliente(*c, u"Lucía Ortega Peña"_s);
        ClienteForm f(c->e);
        QVERIFY(f.puedeAbandonar()); // nothing typed: nothing to ask
        std::optional<ClienteElegido> elegido;
        c->e.buscadores.cliente = [&](const PeticionCliente&) { return elegido; };
        QVERIFY(!f.buscar());
        QVERIFY(!f.idCliente());
        elegido = ClienteElegido();
        elegido->claveCliente = id;
        QVERIFY(f.buscar());
        QCOMPARE(*f.idCliente(), id);
        QCOMPARE(f.texto(u"Nombre"_s), u"Lucía Ortega Peña"_s);

        QVERIFY(f.setTexto(u"Notas"_s, u"Llamar"_s));
        c->d.no();
        QVERIFY(!f.puedeAbandonar());
        QCOMPARE(c->d.ultimo().titulo, u"ATENCIÓN"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Las modificaciones realizadas a este Cliente no han sido guardadas. "
                                     "¿Desea perder los cambios efectuados?"_s);
        c->d.no();
        QVERIFY(!f.buscar());
        QCOMPARE(f.texto(u"Notas"_s), u"Llamar"_s);
        c->d.si();
        elegido->NuevoCliente = true;
        QVERIFY(f.buscar());
        QVERIFY(!f.idCliente());
        QCOMPARE(f.titulo(), u"Mantenimiento de Clientes - (Nuevo cliente)"_s);
        QCOMPARE(c->d.sinRespuesta(), 0);
    }

    void mascotas() {
        auto c = caso();
        ClienteForm f(c->e);
        qint64 abierto = 0;
        f.abrirMascotas = [&](qint64 id) { abierto = id; };
        QVERIFY(!f.mascotas());
        QCOMPARE(c->d.ultimoTexto(), u"Debe seleccionar primero un Cliente."_s);
        f.setTexto(u"Nombre"_s, u"Susana"_s);
        QVERIFY(f.guardar());
        QVERIFY(f.mascotas());
        QCOMPARE(abierto, *f.idCliente());
    }
};

PMX_STORE_TEST_MAIN(TestClienteForm)
#include "test_cliente_form.moc"
