// The workstation configuration: the checks on saving in their order, PRAMELVIX.INI written
// back without losing anything, the defaults kept per workstation, and the default client
// and article that must be chosen through the search and may have been deleted since.
#include "app/conf_puesto_form.h"
#include "app/conf_puesto_store.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "sesion.h"

#include <QDir>
#include <QFile>

namespace {
const QString kAtencion = u"¡Atención!"_s;
const QString kTextoImpresora =
    u" Seleccione una impresora de Tickets de Windows o marque la opción 'Sin impresora de tickets'."_s;
const QString kTextoSerieVenta =
    u"Debe especificar una serie de Venta para los albaranes en la Configuración de Apartados."_s;
const QString kTextoTarifa = u"Debe especificar la Tarifa general por defecto para la creación "
                             "de Clientes en la Configuración de Apartados."_s;
const QString kTextoSerieAbono =
    u"Debe especificar una serie de Abono para las devoluciones en la Configuración de Apartados."_s;
const QString kTextoCliente = u"Debe buscar el cliente a través de la lupa para seleccionarlo."_s;
const QString kTextoArticulo = u"Debe buscar el artículo a través de la lupa para seleccionarlo."_s;

// An INI with comments, keys the program does not know, and other sections, in CRLF.
const QByteArray kIniOriginal = "; Configuración de este puesto\r\n"
                                "[INSTALACION]\r\n"
                                "SERVIDOR=C:\\PRAMELVIX\\DATOS\r\n"
                                "\r\n"
                                "[IMPRESORA TICKETS]\r\n"
                                "# impresora del mostrador\r\n"
                                "TIPO=0\r\n"
                                "IMPRESORA=\r\n"
                                "PUERTO = COM2\r\n"
                                "VELOCIDAD=9600\r\n"
                                "PARIDAD=NINGUNO (N)\r\n"
                                "BITSDATOS=8\r\n"
                                "BITSPARADA=1\r\n"
                                "MODELO=TM-T20\r\n"
                                "; fin de la impresora\r\n"
                                "\r\n"
                                "[MODEM GSM]\r\n"
                                "PUERTO=COM5\r\n"
                                "VELOCIDAD=115200\r\n";
} // namespace

Q_DECLARE_METATYPE(ConfPuestoForm::Campo)

class TestConfPuesto : public QObject {
    Q_OBJECT
    // Workstation CAJA1, its PRAMELVIX.INI in the program folder, sales series A and B and
    // credit series AB.
    struct Caso {
        Sesion s;
        QString ini() const { return s.t.carpeta() + u"/PRAMELVIX.INI"_s; }
        QByteArray textoIni() const {
            QFile f(ini());
            return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        }
        std::unique_ptr<ConfPuestoForm> form() { return std::make_unique<ConfPuestoForm>(s.e); }
    };

    static std::unique_ptr<Caso> sesion(const QByteArray& ini = kIniOriginal) {
        auto c = std::make_unique<Caso>();
        QFile f(c->ini());
        if (!f.open(QIODevice::WriteOnly) || f.write(ini) != ini.size())
            qFatal("no se ha podido escribir el INI");
        f.close();
        for (const auto& [serie, desc, tipo] :
             {std::tuple{"A", "Ventas", kSerieVenta}, std::tuple{"B", "Ventas tienda", kSerieVenta},
              std::tuple{"AB", "Abonos", kSerieAbono}})
            c->s.s.fila(u"Series"_s, {{u"Serie"_s, serie}, {u"Descripcion"_s, desc}, {u"Tipo"_s, tipo}});
        c->s.e.puesto = u"CAJA1"_s;
        c->s.e.carpetaPrograma = c->s.t.carpeta();
        return c;
    }
    static qint64 crearCliente(Caso& c) { return c.s.s.cliente(u"Marta Ruiz"_s); }
    static qint64 crearArticulo(Caso& c) {
        return c.s.s.fila(u"Articulos"_s, {{u"Articulo"_s, u"Vacuna rabia"_s}});
    }

    static void rellenarValido(ConfPuestoForm& f) {
        f.serieVenta = u"A"_s;
        f.tarifa = u"TARIFA 2"_s;
        f.serieAbono = u"AB"_s;
    }

private slots:
    void comprobacionesEnOrden() {
        auto s = sesion();
        const qint64 cliente = crearCliente(*s);
        const qint64 articulo = crearArticulo(*s);
        auto f = s->form();
        QVERIFY(f->cargar());
        QVERIFY(s->s.d.mensajes().isEmpty());
        f->impresora.TIPO = ConfPuestoForm::kImpresoraSistema;
        f->impresora.IMPRESORA.clear();
        f->escribirCliente(QString::number(cliente));
        f->escribirArticulo(QString::number(articulo));

        using C = ConfPuestoForm::Campo;
        const QList<std::tuple<std::function<void()>, QString, C>> pasos = {
            {[] {}, kTextoImpresora, C::Impresora},
            {[&] { f->impresora.IMPRESORA = u"Mostrador"_s; }, kTextoSerieVenta, C::SerieVenta},
            {[&] { f->serieVenta = u"A"_s; }, kTextoTarifa, C::Tarifa},
            {[&] { f->tarifa = u"TARIFA 3"_s; }, kTextoSerieAbono, C::SerieAbono},
            {[&] { f->serieAbono = u"AB"_s; }, kTextoCliente, C::Cliente},
            {[&] { QVERIFY(f->elegirCliente(cliente)); }, kTextoArticulo, C::Articulo},
        };
        for (const auto& [arreglo, texto, foco] : pasos) {
            arreglo();
            s->s.d.limpiar();
            QVERIFY(!f->guardar());
            QCOMPARE(s->s.d.mensajes().size(), 1);
            QCOMPARE(s->s.d.ultimo().titulo, kAtencion);
            QCOMPARE(s->s.d.ultimo().icono, Icono::Exclamacion);
            QCOMPARE(s->s.d.ultimoTexto(), texto);
            QCOMPARE(f->foco(), foco);
            QVERIFY(!ConfPuestoStore(s->s.db()).existe(u"CAJA1"_s));
            QCOMPARE(s->textoIni(), kIniOriginal);
        }
        s->s.d.limpiar();
        QVERIFY(f->elegirArticulo(articulo));
        QCOMPARE(f->nombreArticulo(), u"Vacuna rabia"_s);
        QVERIFY(f->guardar());
        QVERIFY(s->s.d.mensajes().isEmpty());
        const ConfiguracionPuesto c = ConfPuestoStore(s->s.db()).cargar(u"CAJA1"_s);
        QCOMPARE(c.SerieVenta, u"A"_s);
        QCOMPARE(c.Tarifa, u"TARIFA 3"_s);
        QCOMPARE(c.SerieAbono, u"AB"_s);
        QCOMPARE(c.IdCliente, std::optional<qint64>(cliente));
        QCOMPARE(c.IdArticulo, std::optional<qint64>(articulo));
    }

    void sinImpresoraNoPideNombre() {
        auto s = sesion();
        auto f = s->form();
        QVERIFY(f->cargar());
        rellenarValido(*f);
        for (const QString& tipo : {ConfPuestoForm::kSinImpresora, ConfPuestoForm::kImpresoraSerie}) {
            f->impresora.TIPO = tipo;
            f->impresora.IMPRESORA.clear();
            QVERIFY2(f->guardar(), qPrintable(s->s.d.ultimoTexto()));
        }
        QVERIFY(s->s.d.mensajes().isEmpty());
    }

    void elIniConservaTodoLoDemas() {
        auto s = sesion();
        auto f = s->form();
        QVERIFY(f->cargar());
        QCOMPARE(f->impresora.PUERTO, u"COM2"_s);
        rellenarValido(*f);
        f->impresora.TIPO = ConfPuestoForm::kImpresoraSerie;
        f->impresora.PUERTO = u"/dev/ttyUSB0"_s;
        f->impresora.VELOCIDAD = u"19200"_s;
        f->impresora.PARIDAD = u"PAR (E)"_s;
        f->impresora.BITSDATOS = u"7"_s;
        f->impresora.BITSPARADA = u"1.5"_s;
        f->impresora.NUMPASADAS = u"2"_s;
        f->impresora.CORTEPAPEL = u"SI"_s;
        QVERIFY(f->guardar());
        const QByteArray esperado = "; Configuración de este puesto\r\n"
                                    "[INSTALACION]\r\n"
                                    "SERVIDOR=C:\\PRAMELVIX\\DATOS\r\n"
                                    "\r\n"
                                    "[IMPRESORA TICKETS]\r\n"
                                    "# impresora del mostrador\r\n"
                                    "TIPO=2\r\n"
                                    "IMPRESORA=\r\n"
                                    "PUERTO = /dev/ttyUSB0\r\n"
                                    "VELOCIDAD=19200\r\n"
                                    "PARIDAD=PAR (E)\r\n"
                                    "BITSDATOS=7\r\n"
                                    "BITSPARADA=1.5\r\n"
                                    "MODELO=TM-T20\r\n"
                                    "NUMPASADAS=2\r\n"
                                    "CORTEPAPEL=SI\r\n"
                                    "; fin de la impresora\r\n"
                                    "\r\n"
                                    "[MODEM GSM]\r\n"
                                    "PUERTO=COM5\r\n"
                                    "VELOCIDAD=115200\r\n";
        QCOMPARE(s->textoIni(), esperado);
        // The session takes the new printer at once.
        QCOMPARE(s->s.e.impresoraTickets.TIPO, u"2"_s);
        QCOMPARE(s->s.e.impresoraTickets.PUERTO, u"/dev/ttyUSB0"_s);
        QCOMPARE(s->s.e.impresoraTickets.CORTEPAPEL, u"SI"_s);

        // Read back, the screen shows what was written.
        auto otra = s->form();
        QVERIFY(otra->cargar());
        QCOMPARE(otra->impresora.TIPO, ConfPuestoForm::kImpresoraSerie);
        QCOMPARE(otra->impresora.BITSPARADA, u"1.5"_s);
        QCOMPARE(otra->impresora.NUMPASADAS, u"2"_s);
    }

    void valoresDelIniAlCargar_data() {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<QStringList>(
            "esperado"); // TIPO PUERTO VELOCIDAD PARIDAD BITSDATOS BITSPARADA NUMPASADAS CORTE
        QTest::newRow("sin sección") << QByteArray("[INSTALACION]\nSERVIDOR=/datos\n")
                                     << QStringList{"0", "COM1", "9600", "NINGUNO (N)", "8", "1", "1", "NO"};
        QTest::newRow("valores válidos")
            << QByteArray("[IMPRESORA TICKETS]\nTIPO=1\nIMPRESORA=Caja\nPUERTO=com3\nVELOCIDAD=4800\n"
                          "PARIDAD=IMPAR (O)\nBITSDATOS=5\nBITSPARADA=2\nNUMPASADAS=3\nCORTEPAPEL=-1\n")
            << QStringList{"1", "COM3", "4800", "IMPAR (O)", "5", "2", "3", "SI"};
        QTest::newRow("valores desconocidos")
            << QByteArray("[IMPRESORA TICKETS]\nTIPO=7\nPUERTO=LPT1\nVELOCIDAD=1234\nPARIDAD=N\nBITSDATOS=9\n"
                          "BITSPARADA=3\nNUMPASADAS=0\nCORTEPAPEL=quizá\n")
            << QStringList{"0", "COM1", "9600", "NINGUNO (N)", "8", "1", "1", "NO"};
        QTest::newRow("dispositivo de Linux")
            << QByteArray("[IMPRESORA TICKETS]\nTIPO=2\nPUERTO=/dev/ttyACM0\n")
            << QStringList{"2", "/dev/ttyACM0", "9600", "NINGUNO (N)", "8", "1", "1", "NO"};
    }

    void valoresDelIniAlCargar() {
        QFETCH(QByteArray, ini);
        QFETCH(QStringList, esperado);
        auto s = sesion(ini);
        auto f = s->form();
        QVERIFY(f->cargar());
        const ImpresoraTickets& i = f->impresora;
        QCOMPARE((QStringList{i.TIPO, i.PUERTO, i.VELOCIDAD, i.PARIDAD, i.BITSDATOS, i.BITSPARADA,
                              i.NUMPASADAS, i.CORTEPAPEL}),
                 esperado);
        QVERIFY(s->s.d.mensajes().isEmpty());
    }

    void puertoSerieIncorrecto() {
        auto s = sesion();
        auto f = s->form();
        QVERIFY(f->cargar());
        rellenarValido(*f);
        f->impresora.TIPO = ConfPuestoForm::kImpresoraSerie;
        f->impresora.PUERTO = u"COM17"_s;
        QVERIFY(!f->guardar());
        QCOMPARE(s->s.d.textos(), QStringList{u"El puerto de la impresora de tickets debe ser de COM1 a "
                                              "COM16 o un dispositivo como /dev/ttyUSB0."_s});
        QCOMPARE(f->foco(), ConfPuestoForm::Campo::Puerto);
        QCOMPARE(s->textoIni(), kIniOriginal);
    }

    void clienteYArticuloQueYaNoExisten() {
        auto s = sesion();
        const qint64 cliente = crearCliente(*s);
        const qint64 articulo = crearArticulo(*s);
        ConfiguracionPuesto c;
        c.Puesto = u"CAJA1"_s;
        c.SerieVenta = u"A"_s;
        c.SerieAbono = u"AB"_s;
        c.Tarifa = u"TARIFA 1"_s;
        c.IdCliente = cliente + 40;
        c.IdArticulo = articulo + 70;
        c.versionFila = ConfPuestoStore(s->s.db()).cargar(c.Puesto).versionFila;
        ConfPuestoStore(s->s.db()).guardar(c);

        auto f = s->form();
        QVERIFY(f->cargar());
        QCOMPARE(s->s.d.textos(),
                 (QStringList{u"Error al intentar acceder al cliente numero %1.Ha sido imposible recuperar "
                              "la información solicitada. Puede que el cliente haya sido eliminado."_s.arg(
                                  cliente + 40),
                              u"Error al intentar acceder al artículo número %1.Ha sido imposible "
                              "recuperar la información solicitada. Puede que el artículo haya sido "
                              "eliminado."_s.arg(articulo + 70)}));
        QCOMPARE(s->s.d.ultimo().titulo, kAtencion);
        QCOMPARE(f->textoCliente(), QString());
        QCOMPARE(f->textoArticulo(), QString());
        // Saving now drops the references that no longer lead anywhere.
        QVERIFY(f->guardar());
        const ConfiguracionPuesto despues = ConfPuestoStore(s->s.db()).cargar(u"CAJA1"_s);
        QVERIFY(!despues.IdCliente.has_value());
        QVERIFY(!despues.IdArticulo.has_value());

        // Existing ones load silently, with their names.
        c.IdCliente = cliente;
        c.IdArticulo = articulo;
        c.versionFila = despues.versionFila;
        ConfPuestoStore(s->s.db()).guardar(c);
        s->s.d.limpiar();
        QVERIFY(f->cargar());
        QVERIFY(s->s.d.mensajes().isEmpty());
        QCOMPARE(f->textoCliente(), QString::number(cliente));
        QCOMPARE(f->nombreCliente(), u"Marta Ruiz"_s);
        QVERIFY(f->clienteBuscado());
        QCOMPARE(f->nombreArticulo(), u"Vacuna rabia"_s);
    }

    void elegirYEscribir() {
        auto s = sesion();
        const qint64 cliente = crearCliente(*s);
        auto f = s->form();
        QVERIFY(f->cargar());
        rellenarValido(*f);
        QVERIFY(!f->elegirCliente(cliente + 1));
        QVERIFY(s->s.d.ultimoTexto().startsWith(u"Error al intentar acceder al cliente numero "_s));
        QCOMPARE(f->textoCliente(), QString());
        QVERIFY(f->elegirCliente(cliente));
        QVERIFY(f->clienteBuscado());
        // Typing over the chosen number makes it a typed one; clearing it means no client.
        f->escribirCliente(QString::number(cliente) + u"0"_s);
        QVERIFY(!f->clienteBuscado());
        QCOMPARE(f->nombreCliente(), QString());
        s->s.d.limpiar();
        QVERIFY(!f->guardar());
        QCOMPARE(s->s.d.textos(), QStringList{kTextoCliente});
        f->escribirCliente(QString());
        QVERIFY(f->guardar());
        QVERIFY(!ConfPuestoStore(s->s.db()).cargar(u"CAJA1"_s).IdCliente.has_value());
    }

    void cadaPuestoGuardaLosSuyos() {
        auto s = sesion();
        auto caja = s->form();
        QVERIFY(caja->cargar());
        rellenarValido(*caja);
        caja->fechaInicial = u"1/3/2026"_s;
        caja->autoGuardado = 10;
        caja->horaCopia = u"13:30"_s;
        QVERIFY(caja->guardar());

        s->s.e.puesto = u"CONSULTA"_s;
        auto consulta = s->form();
        QVERIFY(consulta->cargar());
        // A workstation with no row starts empty.
        QCOMPARE(consulta->serieVenta, QString());
        QCOMPARE(consulta->tarifa, QString());
        QCOMPARE(consulta->autoGuardado, 0);
        QCOMPARE(consulta->horaCopia, QString());
        consulta->serieVenta = u"B"_s;
        consulta->tarifa = u"TARIFA 3"_s;
        consulta->serieAbono = u"AB"_s;
        QVERIFY(consulta->guardar());

        ConfPuestoStore store(s->s.db());
        const ConfiguracionPuesto c1 = store.cargar(u"CAJA1"_s);
        const ConfiguracionPuesto c2 = store.cargar(u"CONSULTA"_s);
        QCOMPARE(c1.SerieVenta, u"A"_s);
        QCOMPARE(c1.Tarifa, u"TARIFA 2"_s);
        QCOMPARE(c1.FechaInicial, QDate(2026, 3, 1));
        QCOMPARE(c1.AutoGuardado, 10);
        QCOMPARE(c1.HoraCopia, QTime(13, 30));
        QCOMPARE(c2.SerieVenta, u"B"_s);
        QCOMPARE(c2.Tarifa, u"TARIFA 3"_s);
        QVERIFY(!c2.FechaInicial.isValid());
        QCOMPARE(c2.AutoGuardado, 0);
        QVERIFY(!c2.HoraCopia.isValid());

        // Changing one workstation again leaves the other alone.
        s->s.e.puesto = u"CAJA1"_s;
        QVERIFY(caja->cargar());
        QCOMPARE(caja->fechaInicial, u"01/03/2026"_s);
        QCOMPARE(caja->horaCopia, u"13:30"_s);
        caja->serieVenta = u"B"_s;
        caja->autoGuardado = 0;
        caja->horaCopia.clear();
        QVERIFY(caja->guardar());
        QCOMPARE(store.cargar(u"CAJA1"_s).SerieVenta, u"B"_s);
        QVERIFY(!store.cargar(u"CAJA1"_s).HoraCopia.isValid());
        QCOMPARE(store.cargar(u"CONSULTA"_s), c2);
        QVERIFY(s->s.d.mensajes().isEmpty());
    }

    void fechaAutoguardadoYHora_data() {
        QTest::addColumn<QString>("fecha");
        QTest::addColumn<int>("minutos");
        QTest::addColumn<QString>("hora");
        QTest::addColumn<QString>("mensaje");
        QTest::addColumn<ConfPuestoForm::Campo>("foco");
        auto fila = [](const char* nombre, QString a0, int a1, QString a2, QString a3,
                       ConfPuestoForm::Campo a4) { QTest::newRow(nombre) << a0 << a1 << a2 << a3 << a4; };
        using C = ConfPuestoForm::Campo;
        const QString malFecha = u"La fecha inicial no es correcta. Escríbala como dd/mm/aaaa."_s;
        const QString malMinutos =
            u"El intervalo del autoguardado debe estar entre 0 y 999 minutos (0 lo desactiva)."_s;
        const QString malHora = u"La hora de la copia automática no es correcta. Escríbala como hh:mm, o "
                                "déjela en blanco para no hacer copia automática."_s;
        fila("fecha inexistente", u"31/02/2026"_s, 0, QString(), malFecha, C::FechaInicial);
        fila("año de dos cifras", u"01/03/26"_s, 0, QString(), malFecha, C::FechaInicial);
        fila("minutos negativos", QString(), -5, QString(), malMinutos, C::AutoGuardado);
        fila("demasiados minutos", QString(), 1000, QString(), malMinutos, C::AutoGuardado);
        fila("hora 24", QString(), 5, u"24:00"_s, malHora, C::HoraCopia);
        fila("hora sin dos puntos", QString(), 5, u"1330"_s, malHora, C::HoraCopia);
    }

    void fechaAutoguardadoYHora() {
        QFETCH(QString, fecha);
        QFETCH(int, minutos);
        QFETCH(QString, hora);
        QFETCH(QString, mensaje);
        QFETCH(ConfPuestoForm::Campo, foco);
        auto s = sesion();
        auto f = s->form();
        QVERIFY(f->cargar());
        rellenarValido(*f);
        f->fechaInicial = fecha;
        f->autoGuardado = minutos;
        f->horaCopia = hora;
        QVERIFY(!f->guardar());
        QCOMPARE(s->s.d.textos(), QStringList{mensaje});
        QCOMPARE(f->foco(), foco);
        QVERIFY(!ConfPuestoStore(s->s.db()).existe(u"CAJA1"_s));
    }

    void seriesDelTipoQueCorresponde() {
        auto s = sesion();
        auto f = s->form();
        QVERIFY(f->cargar());
        QCOMPARE(f->seriesVenta().size(), 2);
        QCOMPARE(f->seriesVenta().at(1).texto, u"B - Ventas tienda"_s);
        QCOMPARE(f->seriesAbono().size(), 1);
        QCOMPARE(f->seriesAbono().at(0).clave.toString(), u"AB"_s);
        rellenarValido(*f);
        // A credit series is not a sales series.
        f->serieVenta = u"AB"_s;
        QVERIFY(!f->guardar());
        QCOMPARE(s->s.d.textos(), QStringList{u"La serie 'AB' no es una serie de Venta."_s});
        // A stored series that has since been deleted is not offered again.
        f->serieVenta = u"B"_s;
        QVERIFY(f->guardar());
        RegistroStore(s->s.db()).ejecutar(u"DELETE FROM Series WHERE Serie = ?"_s, {u"B"_s});
        QVERIFY(f->cargar());
        QCOMPARE(f->serieVenta, QString());
        QCOMPARE(f->serieAbono, u"AB"_s);
    }

    void especiePorDefecto() {
        auto s = sesion();
        const QVariant perro = s->s.s.especie(u"Perro"_s);
        const QVariant gato = s->s.s.especie(u"Gato"_s);
        const QVariant huron =
            s->s.s.fila(u"Especies"_s, {{u"Descripcion"_s, u"Hurón"_s}, {u"Activo"_s, u"N"_s}});
        auto f = s->form();
        QVERIFY(f->cargar());
        // Species in use, by name; a species no longer in use is not offered.
        QCOMPARE(f->especies().size(), 2);
        QCOMPARE(f->especies().at(0).texto, u"Gato"_s);
        QCOMPARE(f->especies().at(1).clave.toLongLong(), perro.toLongLong());
        rellenarValido(*f);
        f->especie = huron;
        QVERIFY(!f->guardar());
        QCOMPARE(s->s.d.textos(), QStringList{u"Elija la especie por defecto de la lista."_s});
        QCOMPARE(f->foco(), ConfPuestoForm::Campo::Especie);
        f->especie = gato;
        QVERIFY(f->guardar());
        QCOMPARE(ConfPuestoStore(s->s.db()).cargar(u"CAJA1"_s).IdEspecie,
                 std::optional<qint64>(gato.toLongLong()));
        // A chosen species later withdrawn stays offered to this workstation.
        RegistroStore(s->s.db()).ejecutar(u"UPDATE Especies SET Activo = ? WHERE IdEspecie = ?"_s,
                                          {u"N"_s, gato});
        QVERIFY(f->cargar());
        QCOMPARE(f->especie.toLongLong(), gato.toLongLong());
        QCOMPARE(f->especies().size(), 2);
    }

    void sinIniNoSeGuardaNada() {
        auto s = sesion();
        auto f = s->form();
        QVERIFY(f->cargar());
        rellenarValido(*f);
        QVERIFY(QFile::remove(s->ini()));
        QVERIFY(!f->guardar());
        QCOMPARE(s->s.d.ultimo().titulo, u" ¡¡¡ Error grave !!!"_s);
        QCOMPARE(s->s.d.ultimoTexto(), u"No se ha encontrado el fichero de configuración 'PRAMELVIX.INI'"_s);
        QVERIFY(!ConfPuestoStore(s->s.db()).existe(u"CAJA1"_s));
    }
};

PMX_STORE_TEST_MAIN(TestConfPuesto)
#include "test_conf_puesto.moc"
