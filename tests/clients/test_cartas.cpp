// Letters to a client and about pets, and a pet's health plan, printed to PDF on each engine:
// the data-protection notice before anything is printed, the refusals, the fields that reach
// the page, and one page per pet for the pet list's letters.
#include "clients/cliente_form.h"
#include "clients/listado_mascotas_form.h"
#include "clients/mascota_form.h"
#include "data/ajustes.h"
#include "documents/plantillas_defecto.h"
#include "pdf.h"
#include "sesion.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

class TestCartas : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        QTemporaryDir datos;
        qint64 ana = 0, luis = 0, rufo = 0, misi = 0, toby = 0;
        QString pdf() const { return datos.filePath(u"carta.pdf"_s); }
        // The PDF's pages, emptied for the next print.
        QStringList paginas() {
            const QStringList p = paginasPdf(pdf());
            QFile::remove(pdf());
            return p;
        }
    };

    // Ana does not consent (Rufo, in a plan with one condition, and Misi); Luis does (Toby).
    static std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        c->e.configuracionBD.servidor = c->datos.path();
        if (!instalarPlantillasPorDefecto(c->datos.path()).isEmpty()) return nullptr;
        Ajustes a(c->db());
        a.escribir(claves::NOMBRE_CLINICA, u"Clínica Veterinaria Los Álamos"_s);
        a.escribir(claves::POBLACION_CLINICA, u"28043 Madrid"_s);
        Semilla& s = c->s;
        c->ana = s.cliente(u"Ana Belén Núñez"_s, {{u"LOPD"_s, u"2"_s},
                                                  {u"Direccion"_s, u"C/ Doctor Fléming, 23"_s},
                                                  {u"CodigoPostal"_s, u"28036"_s},
                                                  {u"Poblacion"_s, u"Madrid"_s},
                                                  {u"Provincia"_s, u"Madrid"_s}});
        c->luis = s.cliente(u"Luis Pérez Gil"_s, {{u"LOPD"_s, u"1"_s},
                                                  {u"Direccion"_s, u"Av. de la Paz, 4"_s},
                                                  {u"CodigoPostal"_s, u"45600"_s},
                                                  {u"Poblacion"_s, u"Talavera"_s},
                                                  {u"Provincia"_s, u"Toledo"_s}});
        const qint64 perro = s.especie(u"Perro"_s);
        const qint64 plan = s.plan(u"Plan Senior"_s, {{u"Notas"_s, u"Revisión semestral incluida."_s}});
        s.fila(u"CondicionesEspeciales"_s, {{u"IdPlanSalud"_s, plan},
                                            {u"IdSeccion"_s, s.seccion(u"Vacunas"_s)},
                                            {u"Tarifa"_s, u"TARIFA 2"_s},
                                            {u"Descuento"_s, 10.0}});
        c->rufo = s.mascota(u"Rufo"_s, c->ana, perro,
                            {{u"IdRaza"_s, s.raza(u"Beagle"_s, perro)},
                             {u"Sexo"_s, u"M"_s},
                             {u"FechaNacimiento"_s, QDate(2019, 4, 2)},
                             {u"Chip"_s, u"941000012345678"_s},
                             {u"IdPlanSalud"_s, plan},
                             {u"CaducidadPlan"_s, QDate(2027, 1, 31)}});
        c->misi = s.mascota(u"Misi"_s, c->ana, s.especie(u"Gato"_s));
        c->toby = s.mascota(u"Toby"_s, c->luis, perro);
        return c;
    }

    static bool contieneTodo(const QString& texto, const QStringList& partes) {
        for (const QString& p : partes)
            if (!texto.contains(p)) {
                qWarning("falta «%s» en:\n%s", qPrintable(p), qPrintable(texto));
                return false;
            }
        return true;
    }

private slots:
    void initTestCase() {
        if (!hayPdftotext()) QSKIP("pdftotext (poppler-utils) no está instalado");
    }

    // The notice comes first for a client who does not consent, and No prints nothing; the
    // letter carries the address and the clinic's town before the date.
    void cartaAlCliente() {
        auto c = caso();
        QVERIFY(c);
        ClienteForm f(c->e);
        QVERIFY(!f.cartas(DestinoDocumento::PDF, c->pdf())); // a new client
        QCOMPARE(c->d.ultimo().titulo, u"Cartas"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Debe seleccionar primero un Cliente."_s);

        QVERIFY(f.cargar(c->ana));
        c->d.limpiar();
        c->d.no();
        QVERIFY(!f.cartas(DestinoDocumento::PDF, c->pdf()));
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, u"ATENCIÓN"_s);
        QCOMPARE(c->d.ultimoTexto(), textoAvisoLopd(u"Ana Belén Núñez"_s, true));
        QVERIFY(!QFile::exists(c->pdf()));
        c->d.si();
        QVERIFY(f.cartas(DestinoDocumento::PDF, c->pdf()));
        const QString carta = c->paginas().join(u'\f');
        QVERIFY(
            contieneTodo(carta, {u"Ana Belén Núñez"_s, u"C/ Doctor Fléming, 23"_s, u"28036 Madrid"_s,
                                 u"Madrid, 23 de noviembre de 2026"_s, u"Estimado/a Ana Belén Núñez:"_s}));
        QVERIFY(!carta.contains(u"28043 Madrid, 23"_s)); // the clinic's town without its postcode

        // Luis consents: no notice. With two formats the user picks from the client letters.
        QFile otro(c->datos.filePath(u"Plantillas/DocClientes/Aviso.html"_s));
        QVERIFY(otro.open(QIODevice::WriteOnly) && otro.write("<p>Aviso para {{NombreCliente}}</p>") > 0);
        otro.close();
        QVERIFY(f.cargar(c->luis));
        c->d.limpiar();
        c->d.opcion(1);
        QVERIFY(f.cartas(DestinoDocumento::PDF, c->pdf()));
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimoTexto(), u" Seleccione un documento a imprimir"_s);
        QCOMPARE(c->d.ultimo().opciones, (QStringList{u"Aviso"_s, u"Carta al cliente"_s}));
        QVERIFY(
            contieneTodo(c->paginas().join(u'\f'), {u"Av. de la Paz, 4"_s, u"45600 Talavera (Toledo)"_s}));

        // Unsaved changes are not printed.
        QVERIFY(f.setTexto(u"Direccion"_s, u"Otra calle"_s));
        c->d.limpiar();
        QVERIFY(!f.cartas(DestinoDocumento::PDF, c->pdf()));
        QCOMPARE(c->d.textos(), QStringList{u"Guarde antes los cambios realizados a este Cliente."_s});
        QVERIFY(!QFile::exists(c->pdf()));
    }

    // The pet's letter and its health plan, each after the owner's notice; the refusals come
    // before any question.
    void cartaYPlanDeLaMascota() {
        auto c = caso();
        QVERIFY(c);
        {
            MascotaForm f(c->e);
            QVERIFY(f.abrir(c->ana, c->rufo));
            c->d.no();
            QVERIFY(!f.imprimirPlan(DestinoDocumento::PDF, c->pdf()));
            QCOMPARE(c->d.ultimoTexto(), textoAvisoLopd(u"Ana Belén Núñez"_s, true));
            QVERIFY(!QFile::exists(c->pdf()));
            c->d.si().si();
            QVERIFY(f.cartas(DestinoDocumento::PDF, c->pdf()));
            QVERIFY(contieneTodo(c->paginas().join(u'\f'),
                                 {u"Estimado/a Ana Belén Núñez:"_s, u"Rufo"_s, u"Perro"_s, u"Beagle"_s,
                                  u"Macho"_s, u"02/04/2019"_s, u"941000012345678"_s,
                                  u"«Plan Senior», vigente hasta el 31/01/2027"_s}));
            QVERIFY(f.imprimirPlan(DestinoDocumento::PDF, c->pdf()));
            QVERIFY(contieneTodo(c->paginas().join(u'\f'),
                                 {u"PLAN DE SALUD"_s, u"Plan Senior"_s, u"31/01/2027"_s, u"Vacunas"_s,
                                  u"TARIFA 2"_s, u"10,00"_s, u"Revisión semestral incluida."_s,
                                  u"Ana Belén Núñez"_s}));
            QCOMPARE(c->d.respuestasPendientes(), 0);
        } // the pet is free for the next screens

        const struct {
            int paso; // 0 Misi, in no plan; 1 a new pet; 2 Rufo with a change
            bool plan;
            QString titulo, texto;
        } filas[] = {
            {0, true, u"Plan de Salud"_s, u"La Mascota 'Misi' no tiene asignado ningún Plan de Salud."_s},
            {1, false, u"Cartas"_s, u"Debe seleccionar primero una Mascota."_s},
            {1, true, u"Plan de Salud"_s, u"Debe seleccionar primero una Mascota."_s},
            {2, false, u"Cartas"_s, u"Guarde antes los cambios realizados a esta Mascota."_s}};
        for (const auto& k : filas) {
            MascotaForm g(c->e);
            QVERIFY(g.abrir(c->ana, k.paso == 0 ? c->misi : k.paso == 2 ? c->rufo : std::optional<qint64>()));
            if (k.paso == 2) QVERIFY(g.setTexto(u"Chip"_s, u"9410000123"_s));
            c->d.limpiar();
            QVERIFY(!(k.plan ? g.imprimirPlan(DestinoDocumento::PDF, c->pdf())
                             : g.cartas(DestinoDocumento::PDF, c->pdf())));
            QCOMPARE(c->d.mensajes().size(), 1); // no notice before a refusal
            QCOMPARE(c->d.ultimo().titulo, k.titulo);
            QCOMPARE(c->d.ultimoTexto(), k.texto);
            QVERIFY(!QFile::exists(c->pdf()));
        }
    }

    // One letter per pet kept by the list notice, each on its own page.
    void cartasDelListado() {
        auto c = caso();
        QVERIFY(c);
        ListadoMascotasForm f(c->e);
        QVERIFY(f.buscar()); // Misi, Rufo, Toby
        f.seleccion = {2, 0, 1};
        auto todas = [](AvisoLopdLista& a) {
            a.incluirTodos(true);
            return true;
        };
        QVERIFY(f.cartas(todas, DestinoDocumento::PDF, c->pdf()));
        const QStringList paginas = c->paginas();
        QCOMPARE(paginas.size(), 3);
        const QStringList mascotas = {u"Misi"_s, u"Rufo"_s, u"Toby"_s};
        const QStringList duenos = {u"Ana Belén Núñez"_s, u"Ana Belén Núñez"_s, u"Luis Pérez Gil"_s};
        for (int i = 0; i < 3; ++i) {
            QVERIFY(contieneTodo(paginas.at(i),
                                 {u"su mascota "_s + mascotas.at(i), u"Estimado/a "_s + duenos.at(i)}));
            QVERIFY(!paginas.at(i).contains(mascotas.at((i + 1) % 3)));
        }

        // Ana's pets left out by the notice: one page; cancelling it prints nothing.
        QVERIFY(f.cartas([](AvisoLopdLista&) { return true; }, DestinoDocumento::PDF, c->pdf()));
        QCOMPARE(c->paginas().size(), 1);
        QVERIFY(
            !f.cartas([](AvisoLopdLista& a) { return !(a.salir = true); }, DestinoDocumento::PDF, c->pdf()));
        QVERIFY(!QFile::exists(c->pdf()));

        // A pet deleted meanwhile is left out; with none left, the user is told.
        c->db().ejecutar(u"DELETE FROM Mascotas WHERE IdMascota = ?"_s, {c->toby});
        f.seleccion = {2};
        c->d.limpiar();
        QVERIFY(!f.cartas(todas, DestinoDocumento::PDF, c->pdf()));
        QCOMPARE(c->d.textos(),
                 QStringList{u"No se ha encontrado ninguna de las mascotas seleccionadas. Puede "
                             "que hayan sido eliminadas."_s});
    }
};

PMX_TEST_MAIN(QGuiApplication, TestCartas)
#include "test_cartas.moc"
