// The workstation configuration: its checks, PRAMELVIX.INI written back losing nothing, and
// the defaults kept per workstation.
#include "app/conf_puesto_form.h"
#include "app/conf_puesto_store.h"
#include "sesion.h"

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
                                "PUERTO=COM5\r\n";
} // namespace

class TestConfPuesto : public QObject {
    Q_OBJECT
    // Workstation CAJA1 with its PRAMELVIX.INI; sales series A and B, credit series AB.
    struct Caso : Sesion {
        explicit Caso(const QByteArray& texto = kIniOriginal) {
            QFile f(ini());
            if (!f.open(QIODevice::WriteOnly) || f.write(texto) != texto.size())
                qFatal("no se ha podido escribir el INI");
            for (const auto& [serie, desc, tipo] :
                 {std::tuple{"A", "Ventas", kSerieVenta}, std::tuple{"B", "Ventas tienda", kSerieVenta},
                  std::tuple{"AB", "Abonos", kSerieAbono}})
                s.fila(u"Series"_s, {{u"Serie"_s, serie}, {u"Descripcion"_s, desc}, {u"Tipo"_s, tipo}});
            e.puesto = u"CAJA1"_s;
            e.carpetaPrograma = t.carpeta();
        }
        QString ini() const { return t.carpeta() + u"/PRAMELVIX.INI"_s; }
        QByteArray textoIni() const {
            QFile f(ini());
            return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        }
        std::unique_ptr<ConfPuestoForm> form() { return std::make_unique<ConfPuestoForm>(e); }
        qint64 cliente() { return s.cliente(u"Marta Ruiz"_s); }
        qint64 articulo() { return s.fila(u"Articulos"_s, {{u"Articulo"_s, u"Vacuna rabia"_s}}); }
        ConfiguracionPuesto guardada(const QString& puesto = u"CAJA1"_s) {
            return ConfPuestoStore(db()).cargar(puesto);
        }
        bool hayFila() { return ConfPuestoStore(db()).existe(u"CAJA1"_s); }
    };

    // A form loaded, with what every save needs.
    static std::unique_ptr<ConfPuestoForm> valido(Caso& c) {
        auto f = c.form();
        if (!f->cargar()) qFatal("no se ha podido cargar la configuración");
        rellenarValido(*f);
        return f;
    }

    static void rellenarValido(ConfPuestoForm& f) {
        f.serieVenta = u"A"_s;
        f.tarifa = u"TARIFA 2"_s;
        f.serieAbono = u"AB"_s;
    }

private slots:
    void comprobacionesEnOrden() {
        Caso c;
        const qint64 cliente = c.cliente();
        const qint64 articulo = c.articulo();
        auto f = c.form();
        QVERIFY(f->cargar());
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
            c.d.limpiar();
            QVERIFY(!f->guardar());
            QCOMPARE(c.d.textos(), QStringList{texto});
            QCOMPARE(f->foco(), foco);
            QVERIFY(!c.hayFila());
            QCOMPARE(c.textoIni(), kIniOriginal);
        }
        QCOMPARE(c.d.ultimo().titulo, kAtencion);
        QCOMPARE(c.d.ultimo().icono, Icono::Exclamacion);
        c.d.limpiar();
        QVERIFY(f->elegirArticulo(articulo));
        QVERIFY(f->guardar());
        QVERIFY(c.d.mensajes().isEmpty());
        const ConfiguracionPuesto g = c.guardada();
        QCOMPARE(g.Tarifa, u"TARIFA 3"_s);
        QCOMPARE(g.IdCliente, std::optional<qint64>(cliente));
        QCOMPARE(g.IdArticulo, std::optional<qint64>(articulo));
    }

    void elIniConservaTodoLoDemas() {
        Caso c;
        auto f = valido(c);
        QCOMPARE(f->impresora.PUERTO, u"COM2"_s);
        f->impresora.TIPO = ConfPuestoForm::kImpresoraSerie;
        f->impresora.PUERTO = u"/dev/ttyUSB0"_s;
        f->impresora.BITSPARADA = u"1.5"_s;
        f->impresora.NUMPASADAS = u"2"_s;
        f->impresora.CORTEPAPEL = u"SI"_s;
        QVERIFY(f->guardar()); // a printer on a serial port needs no printer name
        // Each value in its own line, keys not there before at the end of the section.
        QByteArray esperado = kIniOriginal;
        for (const auto& [antes, despues] :
             {std::pair{"TIPO=0", "TIPO=2"}, std::pair{"PUERTO = COM2", "PUERTO = /dev/ttyUSB0"},
              std::pair{"BITSPARADA=1\r", "BITSPARADA=1.5\r"},
              std::pair{"MODELO=TM-T20\r\n", "MODELO=TM-T20\r\nNUMPASADAS=2\r\nCORTEPAPEL=SI\r\n"}})
            esperado.replace(antes, despues);
        QCOMPARE(c.textoIni(), esperado);
        // The session takes the new printer at once.
        QCOMPARE(c.e.impresoraTickets.CORTEPAPEL, u"SI"_s);
    }

    void valoresDelIniAlCargar() {
        const QStringList porDefecto{"0", "COM1", "9600", "NINGUNO (N)", "8", "1", "1", "NO"};
        const struct {
            QByteArray ini;
            QStringList esperado; // TIPO PUERTO VELOCIDAD PARIDAD BITSDATOS BITSPARADA NUMPASADAS CORTE
        } casos[] = {
            {"[INSTALACION]\nSERVIDOR=/datos\n", porDefecto},
            {"[IMPRESORA TICKETS]\nTIPO=1\nIMPRESORA=Caja\nPUERTO=com3\nVELOCIDAD=4800\nPARIDAD=IMPAR (O)\n"
             "BITSDATOS=5\nBITSPARADA=2\nNUMPASADAS=3\nCORTEPAPEL=-1\n",
             {"1", "COM3", "4800", "IMPAR (O)", "5", "2", "3", "SI"}},
            {"[IMPRESORA "
             "TICKETS]\nTIPO=7\nPUERTO=LPT1\nVELOCIDAD=1234\nPARIDAD=N\nBITSDATOS=9\nBITSPARADA=3\n"
             "NUMPASADAS=0\nCORTEPAPEL=quizá\n",
             porDefecto},
        };
        for (const auto& caso : casos) {
            Caso c(caso.ini);
            auto f = c.form();
            QVERIFY(f->cargar());
            const ImpresoraTickets& i = f->impresora;
            const QStringList leidos{i.TIPO,      i.PUERTO,     i.VELOCIDAD,  i.PARIDAD,
                                     i.BITSDATOS, i.BITSPARADA, i.NUMPASADAS, i.CORTEPAPEL};
            QVERIFY2(leidos == caso.esperado && c.d.mensajes().isEmpty(), caso.ini.constData());
        }
    }

    // A wrong value is named, takes the focus, and nothing is written anywhere.
    void rechazos() {
        using C = ConfPuestoForm::Campo;
        const QString malFecha = u"La fecha inicial no es correcta. Escríbala como dd/mm/aaaa."_s;
        const QString malMinutos =
            u"El intervalo del autoguardado debe estar entre 0 y 999 minutos (0 lo desactiva)."_s;
        const QString malHora = u"La hora de la copia automática no es correcta. Escríbala como hh:mm, o "
                                "déjela en blanco para no hacer copia automática."_s;
        const struct {
            const char* nombre;
            std::function<void(ConfPuestoForm&)> poner;
            QString mensaje;
            C foco;
        } casos[] = {
            {"fecha inexistente", [](auto& f) { f.fechaInicial = u"31/02/2026"_s; }, malFecha,
             C::FechaInicial},
            {"minutos negativos", [](auto& f) { f.autoGuardado = -5; }, malMinutos, C::AutoGuardado},
            {"demasiados minutos", [](auto& f) { f.autoGuardado = 1000; }, malMinutos, C::AutoGuardado},
            {"hora 24", [](auto& f) { f.horaCopia = u"24:00"_s; }, malHora, C::HoraCopia},
            {"puerto",
             [](auto& f) {
                 f.impresora.TIPO = ConfPuestoForm::kImpresoraSerie;
                 f.impresora.PUERTO = u"COM17"_s;
             },
             u"El puerto de la impresora de tickets debe ser de COM1 a COM16 o un dispositivo como "
             "/dev/ttyUSB0."_s,
             C::Puerto},
            {"serie de abono como de venta", [](auto& f) { f.serieVenta = u"AB"_s; },
             u"La serie 'AB' no es una serie de Venta."_s, C::SerieVenta},
            {"especie que no está en la lista", [](auto& f) { f.especie = qlonglong(999999); },
             u"Elija la especie por defecto de la lista."_s, C::Especie},
        };
        for (const auto& caso : casos) {
            Caso c;
            auto f = valido(c);
            caso.poner(*f);
            QVERIFY2(!f->guardar(), caso.nombre);
            QCOMPARE(c.d.textos(), QStringList{caso.mensaje});
            QCOMPARE(f->foco(), caso.foco);
            QVERIFY(!c.hayFila());
            QCOMPARE(c.textoIni(), kIniOriginal);
        }
    }

    void clienteYArticuloQueYaNoExisten() {
        Caso c;
        const qint64 cliente = c.cliente();
        const qint64 articulo = c.articulo();
        ConfiguracionPuesto conf = c.guardada();
        conf.Puesto = u"CAJA1"_s;
        conf.SerieVenta = u"A"_s;
        conf.SerieAbono = u"AB"_s;
        conf.Tarifa = u"TARIFA 1"_s;
        conf.IdCliente = cliente + 40;
        conf.IdArticulo = articulo + 70;
        ConfPuestoStore(c.db()).guardar(conf);

        auto f = c.form();
        QVERIFY(f->cargar());
        QCOMPARE(c.d.textos(),
                 (QStringList{u"Error al intentar acceder al cliente numero %1.Ha sido imposible recuperar "
                              "la información solicitada. Puede que el cliente haya sido eliminado."_s.arg(
                                  cliente + 40),
                              u"Error al intentar acceder al artículo número %1.Ha sido imposible "
                              "recuperar la información solicitada. Puede que el artículo haya sido "
                              "eliminado."_s.arg(articulo + 70)}));
        QCOMPARE(f->textoCliente(), QString());
        // Saving now drops the references that no longer lead anywhere.
        QVERIFY(f->guardar());
        const ConfiguracionPuesto despues = c.guardada();
        QVERIFY(!despues.IdCliente.has_value());
        QVERIFY(!despues.IdArticulo.has_value());

    }

    // Clearing the chosen number means no client.
    void elegirYEscribir() {
        Caso c;
        const qint64 cliente = c.cliente();
        auto f = valido(c);
        QVERIFY(f->elegirCliente(cliente));
        QCOMPARE(f->nombreCliente(), u"Marta Ruiz"_s);
        f->escribirCliente(QString());
        QCOMPARE(f->nombreCliente(), QString());
        QVERIFY(f->guardar());
        QVERIFY(!c.guardada().IdCliente.has_value());
    }

    void cadaPuestoGuardaLosSuyos() {
        Caso c;
        auto caja = valido(c); // without a receipt printer, and so without its name
        caja->fechaInicial = u"1/3/2026"_s;
        caja->autoGuardado = 10;
        caja->horaCopia = u"13:30"_s;
        QVERIFY(caja->guardar());

        // A workstation with no row starts empty.
        c.e.puesto = u"CONSULTA"_s;
        auto consulta = c.form();
        QVERIFY(consulta->cargar());
        consulta->serieVenta = u"B"_s;
        consulta->tarifa = u"TARIFA 3"_s;
        consulta->serieAbono = u"AB"_s;
        QVERIFY(consulta->guardar());
        const ConfiguracionPuesto c1 = c.guardada();
        const ConfiguracionPuesto c2 = c.guardada(u"CONSULTA"_s);
        QCOMPARE(c1.AutoGuardado, 10);
        QCOMPARE(c1.HoraCopia, QTime(13, 30));
        QCOMPARE(c2.SerieVenta, u"B"_s);

        // Changing one workstation again leaves the other alone.
        c.e.puesto = u"CAJA1"_s;
        QVERIFY(caja->cargar());
        QCOMPARE(caja->fechaInicial, u"01/03/2026"_s);
        caja->horaCopia.clear();
        QVERIFY(caja->guardar());
        QVERIFY(!c.guardada().HoraCopia.isValid());
        QCOMPARE(c.guardada(u"CONSULTA"_s), c2);
    }

    void sinIniNoSeGuardaNada() {
        Caso c;
        auto f = valido(c);
        QVERIFY(QFile::remove(c.ini()));
        QVERIFY(!f->guardar());
        QCOMPARE(c.d.ultimo().titulo, u" ¡¡¡ Error grave !!!"_s);
        QCOMPARE(c.d.ultimoTexto(), u"No se ha encontrado el fichero de configuración 'PRAMELVIX.INI'"_s);
        QVERIFY(!c.hayFila());
    }
};

PMX_STORE_TEST_MAIN(TestConfPuesto)
#include "test_conf_puesto.moc"
