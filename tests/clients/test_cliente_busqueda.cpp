// The client search: names without case or accents, the criteria on the client and its pets,
// inactive data with the question, the choice handed back, the reduced search, the row limit.
#include "clients/cliente_busqueda_form.h"
#include "clients/generador.h"
#include "sesion.h"

#include <QSet>
#include <functional>

namespace {
struct Clinica;
using Criterio = std::function<void(CriteriosBusquedaCliente&, const Clinica&)>;
using CriterioReducida = std::function<void(CriteriosBusquedaReducida&, const Clinica&)>;

QSet<QString> nombres(const QList<FilaClienteBusqueda>& filas) {
    QSet<QString> r;
    for (const auto& f : filas)
        r << f.Cliente;
    return r;
}

QSet<QString> conjunto(const QString& lista) {
    QSet<QString> r;
    for (const QString& s : lista.split(u'|', Qt::SkipEmptyParts))
        r << s;
    return r;
}

const QString kJose = u"Núñez Pérez, José"_s, kAna = u"Pérez Núñez, Ana"_s, kNunez = u"NÚÑEZ"_s;

struct Clinica {
    Sesion ses{QDateTime(QDate(2026, 3, 10), QTime(10, 0))};
    qint64 perro = 0, gato = 0, siames = 0, criador = 0;
    qint64 jose = 0, ana = 0, toby = 0, misi = 0;
    ScriptedDialogs& d = ses.d;

    Clinica() {
        Semilla& s = ses.s;
        auto param = [&](const QString& tabla, const QString& desc) {
            return s.fila(tabla, {{u"Descripcion"_s, desc}});
        };
        perro = param(u"Especies"_s, u"Canina"_s);
        gato = param(u"Especies"_s, u"Felina"_s);
        siames = s.fila(u"Razas"_s, {{u"Descripcion"_s, u"Siamés"_s}, {u"IdEspecie"_s, gato}});
        criador = param(u"TiposCliente"_s, u"Criador"_s);
        jose = s.cliente(kJose, {{u"DNI"_s, u"12345678Z"_s},
                                 {u"Poblacion"_s, u"Ávila"_s},
                                 {u"Telefono1"_s, u"920111222"_s},
                                 {u"LOPD"_s, u"1"_s},
                                 {u"Tarifa"_s, u"TARIFA 2"_s},
                                 {u"DtoGeneral"_s, 7.5},
                                 {u"ExentoIVA"_s, true},
                                 {u"Aviso"_s, u"<html><body><p><b>Muerde</b></p></body></html>"_s}});
        ana = s.cliente(kAna, {{u"Poblacion"_s, u"Madrid"_s},
                               {u"IdTipoCliente"_s, criador},
                               {u"LOPD"_s, u"2"_s},
                               {u"Aviso"_s, u"<html><body><p> </p></body></html>"_s}});
        s.cliente(kNunez, {{u"LOPD"_s, u"0"_s}});
        s.cliente(u"Tienda 50% Mascotas"_s);
        s.cliente(u"Tienda 500 Animales"_s);
        s.cliente(u"Zamora Gil, Luis"_s,
                  {{u"FechaBaja"_s, QDate(2025, 1, 1)}, {u"Telefono1"_s, u"911000000"_s}});
        toby = s.mascota(u"Tobías"_s, jose, perro,
                         {{u"Chip"_s, u"941000000000001"_s}, {u"Avisos"_s, u"Alérgico"_s}});
        misi = s.mascota(u"Misi"_s, jose, gato, {{u"IdRaza"_s, siames}, {u"Sexo"_s, u"HE"_s}});
        s.mascota(u"Kira"_s, ana, perro, {{u"Baja"_s, true}, {u"Chip"_s, u"941000000000002"_s}});
    }
};
} // namespace

Q_DECLARE_METATYPE(Criterio)
Q_DECLARE_METATYPE(CriterioReducida)

class TestClienteBusqueda : public QObject {
    Q_OBJECT

private slots:
    void normalizar() {
        QCOMPARE(normalizarBusqueda(u"  ana   maría \t "_s), u"ANA MARIA"_s);
        QCOMPARE(normalizarBusqueda(u"Güell Çà"_s), u"GUELL CA"_s);
        QCOMPARE(normalizarBusqueda(u"   "_s), QString());
    }

    // The name in its three modes, each criterion alone on the client, then on its pets (with
    // answer No to the question about inactive data: asked only when every match has left);
    // then each criterion of the reduced search.
    void criterios_data() {
        QTest::addColumn<Criterio>("criterio");
        QTest::addColumn<CriterioReducida>("reducida");
        QTest::addColumn<QString>("esperados");
        QTest::addColumn<int>("preguntas");
        auto fila = [](const char* nombre, const QString& esperados, Criterio k, int preguntas = 0) {
            QTest::newRow(nombre) << k << CriterioReducida() << esperados << preguntas;
        };
        auto reducida = [](const char* nombre, const QString& esperados, CriterioReducida k) {
            QTest::newRow(nombre) << Criterio() << k << esperados << 0;
        };
        using K = CriteriosBusquedaCliente;
        using R = CriteriosBusquedaReducida;
        using C = const Clinica&;
        auto nombre = [&fila](const char* n, const char* esperados, const QString& texto, ModoNombre modo) {
            fila(n, QString::fromUtf8(esperados), [texto, modo](K& k, C) {
                k.nombre = texto;
                k.modoNombre = modo;
            });
        };
        const auto comienzo = ModoNombre::Comienzo, exacto = ModoNombre::Exacto,
                   contiene = ModoNombre::Contiene;
        nombre("comienzo sin acentos", "Núñez Pérez, José|NÚÑEZ", u"nunez"_s, comienzo);
        nombre("exacto", "NÚÑEZ", u"Núñez"_s, exacto);
        nombre("en cualquier parte", "Núñez Pérez, José|Pérez Núñez, Ana|NÚÑEZ", u"NUÑEZ"_s, contiene);
        nombre("el % es un carácter", "Tienda 50% Mascotas", u"50%"_s, contiene);
        nombre("el _ es un carácter", "", u"ti_nda"_s, contiene);
        fila("dni", kJose, [](K& k, C) { k.dni = u" 12345678z "_s; });
        fila("teléfono 1", kJose, [](K& k, C) { k.telefono = u"920 111 222"_s; });
        fila("tipo", kAna, [](K& k, C c) { k.idTipoCliente = c.criador; });
        fila("sin informar, también sin valor", u"NÚÑEZ|Tienda 50% Mascotas|Tienda 500 Animales"_s,
             [](K& k, C) { k.lopd = ClienteBusquedaForm::codigoLOPD(u"Sin informar"_s); });
        fila("mascota sin acento", kJose, [](K& k, C) { k.nombreMascota = u"tobi"_s; });
        fila("especie", kJose, [](K& k, C c) { k.idEspecie = c.gato; });
        fila("todas en la misma mascota", {}, [](K& k, C c) {
            k.idEspecie = c.gato;
            k.sexo = u"M"_s;
        });
        fila("perro: la mascota de baja no cuenta", kJose, [](K& k, C c) { k.idEspecie = c.perro; });
        fila("LOPD en blanco: sin filtro",
             u"NÚÑEZ|Núñez Pérez, José|Pérez Núñez, Ana|Tienda 50% Mascotas|Tienda 500 Animales"_s,
             [](K& k, C) { k.lopd = ClienteBusquedaForm::codigoLOPD(QString()); });
        // Ana's only dog has left, so the question comes.
        QTest::newRow("con criterio del cliente") << Criterio([](K& k, C c) {
            k.idEspecie = c.perro;
            k.nombre = u"perez"_s;
        }) << CriterioReducida() << QString() << 1;
        reducida("reducida: código", kAna, [](R& k, C c) { k.idCliente = c.ana; });
        reducida("reducida: nombre", kAna, [](R& k, C) { k.nombre = u"perez n"_s; });
    }
    void criterios() {
        QFETCH(Criterio, criterio);
        QFETCH(CriterioReducida, reducida);
        QFETCH(QString, esperados);
        QFETCH(int, preguntas);
        Clinica c;
        PeticionCliente p;
        p.reducida = bool(reducida);
        ClienteBusquedaForm f(c.ses.e, p);
        if (reducida)
            reducida(f.criteriosReducida, c);
        else
            criterio(f.criterios, c);
        c.d.no();
        QVERIFY(f.buscar());
        QCOMPARE(nombres(f.clientes()), conjunto(esperados));
        QCOMPARE(c.d.mensajes().size(), preguntas);
        if (reducida) { // no pets: the client alone is chosen
            QVERIFY(f.mascotas().isEmpty());
            QVERIFY(f.aceptar());
            QVERIFY(!f.elegido()->claveMascota);
        }
    }
    // Clients with a leaving date, and pets marked as left, are shown only when ticked or when
    // the user says Yes to the question asked when every match has left.
    void inactivos() {
        Clinica c;
        ClienteBusquedaForm f(c.ses.e);
        f.criterios.telefono = u"911000000"_s;
        c.d.no();
        QVERIFY(f.buscar());
        QVERIFY(f.clientes().isEmpty());
        QCOMPARE(c.d.mensajes().size(), 1);
        QCOMPARE(c.d.ultimo().titulo, u"Resultado de la búsqueda"_s);
        QCOMPARE(c.d.ultimoTexto(), u"Todos los datos que cumplen las condiciones especificadas "
                                    "están dados de Baja. ¿Desea verlos igualmente?"_s);
        c.d.si();
        QVERIFY(f.buscar());
        QCOMPARE(nombres(f.clientes()), conjunto(u"Zamora Gil, Luis"_s));
        QVERIFY(f.clientes().first().baja);
        // Nothing at all: no question.
        f.criterios.incluirClientesBaja = false;
        f.criterios.telefono = u"999999999"_s;
        c.d.limpiar();
        QVERIFY(f.buscar());
        QVERIFY(c.d.mensajes().isEmpty());
        QCOMPARE(f.nota(), u"Ningún cliente cumple las condiciones especificadas."_s);
        // Active matches beside an inactive one: no question, only the active ones.
        f.criterios.telefono.clear();
        QVERIFY(f.buscar());
        QCOMPARE(f.clientes().size(), 5);
        QVERIFY(!nombres(f.clientes()).contains(u"Zamora Gil, Luis"_s));
        QVERIFY(c.d.mensajes().isEmpty());
        // Kira has left: Yes shows her owner, and her in the pet list.
        f.criterios.chip = u"941000000000002"_s;
        c.d.si();
        QVERIFY(f.buscar());
        QCOMPARE(nombres(f.clientes()), conjunto(u"Pérez Núñez, Ana"_s));
        QCOMPARE(f.mascotas().size(), 1);
        QVERIFY(f.mascotas().first().baja);
    }

    // The selected client's pets, and the choice handed back to the opener.
    void mascotasYEleccion() {
        Clinica c;
        ClienteBusquedaForm f(c.ses.e);
        f.criterios.nombre = u"núñez pérez"_s;
        QVERIFY(f.buscar());
        QCOMPARE(f.seleccionado(), 0);
        const auto& cl = f.clientes().first();
        QCOMPARE(cl.Localidad, u"Ávila"_s);
        QCOMPARE(f.mascotas().size(), 2);
        const auto& misi = f.mascotas().at(0);
        QCOMPARE(misi.Mascota, u"Misi"_s);
        QCOMPARE(misi.Raza, u"Siamés"_s);
        QCOMPARE(misi.Sexo, u"Hembra esterilizada"_s);

        QVERIFY(f.aceptar(1)); // Tobías
        const ClienteElegido e = *f.elegido();
        QCOMPARE(e.claveCliente, c.jose);
        QCOMPARE(e.claveMascota, std::optional<qint64>(c.toby));
        QCOMPARE(e.tarifa, u"TARIFA 2"_s);
        QCOMPARE(e.DtoGralCliente, 7.5);
        QVERIFY(e.ExentoIVA);
        QVERIFY(e.indAvisoCliente);
        QVERIFY(e.indAvisoMascota);
        // Ana's only pet has left: none listed, chosen without a pet; a warning of blank rich
        // text is no warning.
        f.criterios.nombre = u"perez nunez"_s;
        QVERIFY(f.buscar());
        QVERIFY(f.mascotas().isEmpty());
        QVERIFY(f.aceptar(-1));
        QCOMPARE(f.elegido()->claveCliente, c.ana);
        QVERIFY(!f.elegido()->claveMascota);
        QVERIFY(!f.elegido()->indAvisoCliente);
    }

    void clienteEliminado() {
        Clinica c;
        ClienteBusquedaForm f(c.ses.e);
        f.criterios.nombre = u"nunez"_s;
        QVERIFY(f.buscar());
        QCOMPARE(f.clientes().size(), 2);
        const qint64 id = f.clientes().first().IdCliente;
        c.ses.db().ejecutar(u"DELETE FROM Clientes WHERE IdCliente = ?"_s, {id});
        QVERIFY(!f.aceptar());
        QVERIFY(!f.elegido());
        QCOMPARE(c.d.ultimo().icono, Icono::Critico);
        QCOMPARE(c.d.ultimo().titulo,
                 u"Error al intentar acceder al Cliente nº: "_s + QString::number(id) + u"."_s);
        QCOMPARE(c.d.ultimoTexto(), u"Ha sido imposible recuperar la información solicitada. Puede "
                                    "que el Cliente haya sido eliminado."_s);
        QCOMPARE(f.clientes().size(), 1);
    }

    void peticionDelQueAbre() {
        Clinica c;
        ClienteBusquedaForm vacia(c.ses.e);
        QVERIFY(!vacia.buscarAlAbrir());
        QVERIFY(vacia.nuevoCliente());
        QVERIFY(vacia.elegido()->NuevoCliente);
        QCOMPARE(vacia.elegido()->claveCliente, 0);

        PeticionCliente p;
        p.TextoInicial = u"núñez"_s;
        p.TextoInicialMascota = u"MISI"_s;
        p.Bloquear = true;
        ClienteBusquedaForm f(c.ses.e, p);
        QVERIFY(f.buscarAlAbrir());
        QVERIFY(f.buscar());
        QCOMPARE(nombres(f.clientes()), conjunto(u"Núñez Pérez, José"_s));
        QVERIFY(!f.puedeCrearCliente());
        QVERIFY(!f.nuevoCliente());
        QVERIFY(!f.elegido());
    }

    // Generated clients carry their search names; a vague search stops at the limit, in
    // name order, and new clients take the numbers after the generated ones.
    void generadorYLimite() {
        Sesion s;
        generarClientes(s.db(), 600, 7);
        QSqlQuery q = s.db().ejecutar(u"SELECT Nombre, NombreBusqueda FROM Clientes"_s);
        while (q.next())
            QCOMPARE(q.value(1).toString(), normalizarBusqueda(q.value(0).toString()));
        QCOMPARE(s.s.cliente(u"Otro"_s), 601);

        ClienteBusquedaForm f(s.e);
        f.criterios.incluirClientesBaja = true;
        QVERIFY(f.buscar());
        QCOMPARE(f.clientes().size(), ClienteBusquedaForm::kMaxFilas);
        QCOMPARE(f.nota(), u"Se muestran sólo los 500 primeros clientes. Añada condiciones para "
                           "afinar la búsqueda."_s);
        for (int i = 1; i < f.clientes().size(); ++i)
            QVERIFY(normalizarBusqueda(f.clientes().at(i - 1).Cliente) <=
                    normalizarBusqueda(f.clientes().at(i).Cliente));
    }
};

PMX_STORE_TEST_MAIN(TestClienteBusqueda)
#include "test_cliente_busqueda.moc"
