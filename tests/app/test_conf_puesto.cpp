// The workstation configuration: the checks on saving in their order, PRAMELVIX.INI written
// back without losing anything, the defaults kept per workstation, and the default client
// and article that must be chosen through the search and may have been deleted since.
#include "app/conf_puesto_form.h"
#include "app/conf_puesto_store.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QDir>
#include <QFile>

namespace {
using T = TipoColumna;

// Stand-ins for the clients and articles tables, created only in these tests.
DescriptorTabla clientesDePrueba() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("ClientesPrueba");
    t.descTabla = QStringLiteral("Cliente");
    t.columnaS = {col(QStringLiteral("IdCliente"), T::Autonumerico, QStringLiteral("Nº"), 0, false),
                  col(QStringLiteral("Nombre"), T::Texto, QStringLiteral("Nombre"), 60)};
    t.clave = {QStringLiteral("IdCliente")};
    t.columnaTexto = QStringLiteral("Nombre");
    return t;
}

DescriptorTabla articulosDePrueba() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("ArticulosPrueba");
    t.descTabla = QStringLiteral("Artículo");
    t.columnaS = {col(QStringLiteral("ArtCodArticulo"), T::Autonumerico, QStringLiteral("Código"), 0, false),
                  col(QStringLiteral("Articulo"), T::Texto, QStringLiteral("Artículo"), 60)};
    t.clave = {QStringLiteral("ArtCodArticulo")};
    t.columnaTexto = QStringLiteral("Articulo");
    return t;
}

const QString kAtencion = QStringLiteral("¡Atención!");
const QString kTextoImpresora = QStringLiteral(
    " Seleccione una impresora de Tickets de Windows o marque la opción 'Sin impresora de tickets'.");
const QString kTextoSerieVenta = QStringLiteral(
    "Debe especificar una serie de Venta para los albaranes en la Configuración de Apartados.");
const QString kTextoTarifa = QStringLiteral("Debe especificar la Tarifa general por defecto para la creación "
                                            "de Clientes en la Configuración de Apartados.");
const QString kTextoSerieAbono = QStringLiteral(
    "Debe especificar una serie de Abono para las devoluciones en la Configuración de Apartados.");
const QString kTextoCliente =
    QStringLiteral("Debe buscar el cliente a través de la lupa para seleccionarlo.");
const QString kTextoArticulo =
    QStringLiteral("Debe buscar el artículo a través de la lupa para seleccionarlo.");

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
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};
    DescriptorTabla clientes_ = clientesDePrueba();
    DescriptorTabla articulos_ = articulosDePrueba();

    struct Sesion {
        TestDb t;
        QTemporaryDir carpeta;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        QString ini() const { return QDir(carpeta.path()).filePath(QStringLiteral("PRAMELVIX.INI")); }
        QByteArray textoIni() const {
            QFile f(ini());
            return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        }
        std::unique_ptr<ConfPuestoForm> form(const DescriptorTabla* clientes,
                                             const DescriptorTabla* articulos) {
            auto f = std::make_unique<ConfPuestoForm>(*e);
            f->setTablaClientes(clientes);
            f->setTablaArticulos(articulos);
            return f;
        }
    };

    void serie(Database& db, const QString& codigo, const QString& descripcion, const QString& tipo) {
        Registro r(*descriptorTabla(QStringLiteral("Series")));
        r.setValor(QStringLiteral("Serie"), codigo);
        r.setValor(QStringLiteral("Descripcion"), descripcion);
        r.setValor(QStringLiteral("Tipo"), tipo);
        RegistroStore(db).crear(r);
    }

    qint64 crearEn(Database& db, const DescriptorTabla& t, const QString& texto) {
        Registro r(t);
        r.setValor(t.columnaTexto, texto);
        return RegistroStore(db).crear(r).toLongLong();
    }

    std::unique_ptr<Sesion> sesion(const QByteArray& ini = kIniOriginal) {
        auto s = std::make_unique<Sesion>();
        QFile f(s->ini());
        if (!f.open(QIODevice::WriteOnly) || f.write(ini) != ini.size())
            qFatal("no se ha podido escribir el INI");
        f.close();
        for (const auto* t : {&clientes_, &articulos_})
            for (const auto& sql : sqlCrearTabla(*t, s->t.db().motor(), 1))
                s->t.db().ejecutarDirecto(sql);
        serie(s->t.db(), QStringLiteral("A"), QStringLiteral("Ventas"), kSerieVenta);
        serie(s->t.db(), QStringLiteral("B"), QStringLiteral("Ventas tienda"), kSerieVenta);
        serie(s->t.db(), QStringLiteral("AB"), QStringLiteral("Abonos"), kSerieAbono);
        s->e = std::make_unique<Entorno>(s->t.db(), s->d, reloj_);
        s->e->puesto = QStringLiteral("CAJA1");
        s->e->carpetaPrograma = s->carpeta.path();
        return s;
    }

    static void rellenarValido(ConfPuestoForm& f) {
        f.serieVenta = QStringLiteral("A");
        f.tarifa = QStringLiteral("TARIFA 2");
        f.serieAbono = QStringLiteral("AB");
    }

private slots:
    void comprobacionesEnOrden() {
        auto s = sesion();
        const qint64 cliente = crearEn(s->t.db(), clientes_, QStringLiteral("Marta Ruiz"));
        const qint64 articulo = crearEn(s->t.db(), articulos_, QStringLiteral("Vacuna rabia"));
        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        QVERIFY(s->d.mensajes().isEmpty());
        f->impresora.TIPO = ConfPuestoForm::kImpresoraSistema;
        f->impresora.IMPRESORA.clear();
        f->escribirCliente(QString::number(cliente));
        f->escribirArticulo(QString::number(articulo));

        using C = ConfPuestoForm::Campo;
        const QList<std::tuple<std::function<void()>, QString, C>> pasos = {
            {[] {}, kTextoImpresora, C::Impresora},
            {[&] { f->impresora.IMPRESORA = QStringLiteral("Mostrador"); }, kTextoSerieVenta, C::SerieVenta},
            {[&] { f->serieVenta = QStringLiteral("A"); }, kTextoTarifa, C::Tarifa},
            {[&] { f->tarifa = QStringLiteral("TARIFA 3"); }, kTextoSerieAbono, C::SerieAbono},
            {[&] { f->serieAbono = QStringLiteral("AB"); }, kTextoCliente, C::Cliente},
            {[&] { QVERIFY(f->elegirCliente(cliente)); }, kTextoArticulo, C::Articulo},
        };
        for (const auto& [arreglo, texto, foco] : pasos) {
            arreglo();
            s->d.limpiar();
            QVERIFY(!f->guardar());
            QCOMPARE(s->d.mensajes().size(), 1);
            QCOMPARE(s->d.ultimo().titulo, kAtencion);
            QCOMPARE(s->d.ultimo().icono, Icono::Exclamacion);
            QCOMPARE(s->d.ultimoTexto(), texto);
            QCOMPARE(f->foco(), foco);
            QVERIFY(!ConfPuestoStore(s->t.db()).existe(QStringLiteral("CAJA1")));
            QCOMPARE(s->textoIni(), kIniOriginal);
        }
        s->d.limpiar();
        QVERIFY(f->elegirArticulo(articulo));
        QCOMPARE(f->nombreArticulo(), QStringLiteral("Vacuna rabia"));
        QVERIFY(f->guardar());
        QVERIFY(s->d.mensajes().isEmpty());
        const ConfiguracionPuesto c = ConfPuestoStore(s->t.db()).cargar(QStringLiteral("CAJA1"));
        QCOMPARE(c.SerieVenta, QStringLiteral("A"));
        QCOMPARE(c.Tarifa, QStringLiteral("TARIFA 3"));
        QCOMPARE(c.SerieAbono, QStringLiteral("AB"));
        QCOMPARE(c.IdCliente, std::optional<qint64>(cliente));
        QCOMPARE(c.IdArticulo, std::optional<qint64>(articulo));
    }

    void sinImpresoraNoPideNombre() {
        auto s = sesion();
        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        rellenarValido(*f);
        for (const QString& tipo : {ConfPuestoForm::kSinImpresora, ConfPuestoForm::kImpresoraSerie}) {
            f->impresora.TIPO = tipo;
            f->impresora.IMPRESORA.clear();
            QVERIFY2(f->guardar(), qPrintable(s->d.ultimoTexto()));
        }
        QVERIFY(s->d.mensajes().isEmpty());
    }

    void elIniConservaTodoLoDemas() {
        auto s = sesion();
        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        QCOMPARE(f->impresora.PUERTO, QStringLiteral("COM2"));
        rellenarValido(*f);
        f->impresora.TIPO = ConfPuestoForm::kImpresoraSerie;
        f->impresora.PUERTO = QStringLiteral("/dev/ttyUSB0");
        f->impresora.VELOCIDAD = QStringLiteral("19200");
        f->impresora.PARIDAD = QStringLiteral("PAR (E)");
        f->impresora.BITSDATOS = QStringLiteral("7");
        f->impresora.BITSPARADA = QStringLiteral("1.5");
        f->impresora.NUMPASADAS = QStringLiteral("2");
        f->impresora.CORTEPAPEL = QStringLiteral("SI");
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
        QCOMPARE(s->e->impresoraTickets.TIPO, QStringLiteral("2"));
        QCOMPARE(s->e->impresoraTickets.PUERTO, QStringLiteral("/dev/ttyUSB0"));
        QCOMPARE(s->e->impresoraTickets.CORTEPAPEL, QStringLiteral("SI"));

        // Read back, the screen shows what was written.
        auto otra = s->form(&clientes_, &articulos_);
        QVERIFY(otra->cargar());
        QCOMPARE(otra->impresora.TIPO, ConfPuestoForm::kImpresoraSerie);
        QCOMPARE(otra->impresora.BITSPARADA, QStringLiteral("1.5"));
        QCOMPARE(otra->impresora.NUMPASADAS, QStringLiteral("2"));
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
        auto f = s->form(nullptr, nullptr);
        QVERIFY(f->cargar());
        const ImpresoraTickets& i = f->impresora;
        QCOMPARE((QStringList{i.TIPO, i.PUERTO, i.VELOCIDAD, i.PARIDAD, i.BITSDATOS, i.BITSPARADA,
                              i.NUMPASADAS, i.CORTEPAPEL}),
                 esperado);
        QVERIFY(s->d.mensajes().isEmpty());
    }

    void puertoSerieIncorrecto() {
        auto s = sesion();
        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        rellenarValido(*f);
        f->impresora.TIPO = ConfPuestoForm::kImpresoraSerie;
        f->impresora.PUERTO = QStringLiteral("COM17");
        QVERIFY(!f->guardar());
        QCOMPARE(s->d.textos(),
                 QStringList{QStringLiteral("El puerto de la impresora de tickets debe ser de COM1 a "
                                            "COM16 o un dispositivo como /dev/ttyUSB0.")});
        QCOMPARE(f->foco(), ConfPuestoForm::Campo::Puerto);
        QCOMPARE(s->textoIni(), kIniOriginal);
    }

    void clienteYArticuloQueYaNoExisten() {
        auto s = sesion();
        const qint64 cliente = crearEn(s->t.db(), clientes_, QStringLiteral("Marta Ruiz"));
        const qint64 articulo = crearEn(s->t.db(), articulos_, QStringLiteral("Vacuna rabia"));
        ConfiguracionPuesto c;
        c.Puesto = QStringLiteral("CAJA1");
        c.SerieVenta = QStringLiteral("A");
        c.SerieAbono = QStringLiteral("AB");
        c.Tarifa = QStringLiteral("TARIFA 1");
        c.IdCliente = cliente + 40;
        c.IdArticulo = articulo + 70;
        ConfPuestoStore(s->t.db()).guardar(c);

        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        QCOMPARE(
            s->d.textos(),
            (QStringList{
                QStringLiteral("Error al intentar acceder al cliente numero %1.Ha sido imposible recuperar "
                               "la información solicitada. Puede que el cliente haya sido eliminado.")
                    .arg(cliente + 40),
                QStringLiteral("Error al intentar acceder al artículo número %1.Ha sido imposible "
                               "recuperar la información solicitada. Puede que el artículo haya sido "
                               "eliminado.")
                    .arg(articulo + 70)}));
        QCOMPARE(s->d.ultimo().titulo, kAtencion);
        QCOMPARE(f->textoCliente(), QString());
        QCOMPARE(f->textoArticulo(), QString());
        // Saving now drops the references that no longer lead anywhere.
        QVERIFY(f->guardar());
        const ConfiguracionPuesto despues = ConfPuestoStore(s->t.db()).cargar(QStringLiteral("CAJA1"));
        QVERIFY(!despues.IdCliente.has_value());
        QVERIFY(!despues.IdArticulo.has_value());

        // Existing ones load silently, with their names.
        c.IdCliente = cliente;
        c.IdArticulo = articulo;
        ConfPuestoStore(s->t.db()).guardar(c);
        s->d.limpiar();
        QVERIFY(f->cargar());
        QVERIFY(s->d.mensajes().isEmpty());
        QCOMPARE(f->textoCliente(), QString::number(cliente));
        QCOMPARE(f->nombreCliente(), QStringLiteral("Marta Ruiz"));
        QVERIFY(f->clienteBuscado());
        QCOMPARE(f->nombreArticulo(), QStringLiteral("Vacuna rabia"));
    }

    void elegirYEscribir() {
        auto s = sesion();
        const qint64 cliente = crearEn(s->t.db(), clientes_, QStringLiteral("Marta Ruiz"));
        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        rellenarValido(*f);
        QVERIFY(!f->elegirCliente(cliente + 1));
        QVERIFY(
            s->d.ultimoTexto().startsWith(QStringLiteral("Error al intentar acceder al cliente numero ")));
        QCOMPARE(f->textoCliente(), QString());
        QVERIFY(f->elegirCliente(cliente));
        QVERIFY(f->clienteBuscado());
        // Typing over the chosen number makes it a typed one; clearing it means no client.
        f->escribirCliente(QString::number(cliente) + QStringLiteral("0"));
        QVERIFY(!f->clienteBuscado());
        QCOMPARE(f->nombreCliente(), QString());
        s->d.limpiar();
        QVERIFY(!f->guardar());
        QCOMPARE(s->d.textos(), QStringList{kTextoCliente});
        f->escribirCliente(QString());
        QVERIFY(f->guardar());
        QVERIFY(!ConfPuestoStore(s->t.db()).cargar(QStringLiteral("CAJA1")).IdCliente.has_value());
    }

    void sinTablasLasBusquedasNoEstanDisponibles() {
        auto s = sesion();
        auto f = s->form(nullptr, nullptr);
        QVERIFY(f->cargar());
        QVERIFY(!f->elegirCliente(1));
        QVERIFY(!f->elegirArticulo(1));
        QVERIFY(f->clienteBuscado());
        // A number typed by hand is still refused.
        rellenarValido(*f);
        f->escribirArticulo(QStringLiteral("12"));
        QVERIFY(!f->guardar());
        QCOMPARE(s->d.textos(), QStringList{kTextoArticulo});
    }

    void cadaPuestoGuardaLosSuyos() {
        auto s = sesion();
        auto caja = s->form(&clientes_, &articulos_);
        QVERIFY(caja->cargar());
        rellenarValido(*caja);
        caja->fechaInicial = QStringLiteral("1/3/2026");
        caja->autoGuardado = 10;
        caja->horaCopia = QStringLiteral("13:30");
        QVERIFY(caja->guardar());

        s->e->puesto = QStringLiteral("CONSULTA");
        auto consulta = s->form(&clientes_, &articulos_);
        QVERIFY(consulta->cargar());
        // A workstation with no row starts empty.
        QCOMPARE(consulta->serieVenta, QString());
        QCOMPARE(consulta->tarifa, QString());
        QCOMPARE(consulta->autoGuardado, 0);
        QCOMPARE(consulta->horaCopia, QString());
        consulta->serieVenta = QStringLiteral("B");
        consulta->tarifa = QStringLiteral("TARIFA 3");
        consulta->serieAbono = QStringLiteral("AB");
        QVERIFY(consulta->guardar());

        ConfPuestoStore store(s->t.db());
        const ConfiguracionPuesto c1 = store.cargar(QStringLiteral("CAJA1"));
        const ConfiguracionPuesto c2 = store.cargar(QStringLiteral("CONSULTA"));
        QCOMPARE(c1.SerieVenta, QStringLiteral("A"));
        QCOMPARE(c1.Tarifa, QStringLiteral("TARIFA 2"));
        QCOMPARE(c1.FechaInicial, QDate(2026, 3, 1));
        QCOMPARE(c1.AutoGuardado, 10);
        QCOMPARE(c1.HoraCopia, QTime(13, 30));
        QCOMPARE(c2.SerieVenta, QStringLiteral("B"));
        QCOMPARE(c2.Tarifa, QStringLiteral("TARIFA 3"));
        QVERIFY(!c2.FechaInicial.isValid());
        QCOMPARE(c2.AutoGuardado, 0);
        QVERIFY(!c2.HoraCopia.isValid());

        // Changing one workstation again leaves the other alone.
        s->e->puesto = QStringLiteral("CAJA1");
        QVERIFY(caja->cargar());
        QCOMPARE(caja->fechaInicial, QStringLiteral("01/03/2026"));
        QCOMPARE(caja->horaCopia, QStringLiteral("13:30"));
        caja->serieVenta = QStringLiteral("B");
        caja->autoGuardado = 0;
        caja->horaCopia.clear();
        QVERIFY(caja->guardar());
        QCOMPARE(store.cargar(QStringLiteral("CAJA1")).SerieVenta, QStringLiteral("B"));
        QVERIFY(!store.cargar(QStringLiteral("CAJA1")).HoraCopia.isValid());
        QCOMPARE(store.cargar(QStringLiteral("CONSULTA")), c2);
        QVERIFY(s->d.mensajes().isEmpty());
    }

    void fechaAutoguardadoYHora_data() {
        QTest::addColumn<QString>("fecha");
        QTest::addColumn<int>("minutos");
        QTest::addColumn<QString>("hora");
        QTest::addColumn<QString>("mensaje");
        QTest::addColumn<ConfPuestoForm::Campo>("foco");
        using C = ConfPuestoForm::Campo;
        const QString malFecha =
            QStringLiteral("La fecha inicial no es correcta. Escríbala como dd/mm/aaaa.");
        const QString malMinutos = QStringLiteral(
            "El intervalo del autoguardado debe estar entre 0 y 999 minutos (0 lo desactiva).");
        const QString malHora =
            QStringLiteral("La hora de la copia automática no es correcta. Escríbala como hh:mm, o "
                           "déjela en blanco para no hacer copia automática.");
        QTest::newRow("fecha inexistente")
            << QStringLiteral("31/02/2026") << 0 << QString() << malFecha << C::FechaInicial;
        QTest::newRow("año de dos cifras")
            << QStringLiteral("01/03/26") << 0 << QString() << malFecha << C::FechaInicial;
        QTest::newRow("minutos negativos") << QString() << -5 << QString() << malMinutos << C::AutoGuardado;
        QTest::newRow("demasiados minutos")
            << QString() << 1000 << QString() << malMinutos << C::AutoGuardado;
        QTest::newRow("hora 24") << QString() << 5 << QStringLiteral("24:00") << malHora << C::HoraCopia;
        QTest::newRow("hora sin dos puntos")
            << QString() << 5 << QStringLiteral("1330") << malHora << C::HoraCopia;
    }

    void fechaAutoguardadoYHora() {
        QFETCH(QString, fecha);
        QFETCH(int, minutos);
        QFETCH(QString, hora);
        QFETCH(QString, mensaje);
        QFETCH(ConfPuestoForm::Campo, foco);
        auto s = sesion();
        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        rellenarValido(*f);
        f->fechaInicial = fecha;
        f->autoGuardado = minutos;
        f->horaCopia = hora;
        QVERIFY(!f->guardar());
        QCOMPARE(s->d.textos(), QStringList{mensaje});
        QCOMPARE(f->foco(), foco);
        QVERIFY(!ConfPuestoStore(s->t.db()).existe(QStringLiteral("CAJA1")));
    }

    void seriesDelTipoQueCorresponde() {
        auto s = sesion();
        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        QCOMPARE(f->seriesVenta().size(), 2);
        QCOMPARE(f->seriesVenta().at(1).texto, QStringLiteral("B - Ventas tienda"));
        QCOMPARE(f->seriesAbono().size(), 1);
        QCOMPARE(f->seriesAbono().at(0).clave.toString(), QStringLiteral("AB"));
        rellenarValido(*f);
        // A credit series is not a sales series.
        f->serieVenta = QStringLiteral("AB");
        QVERIFY(!f->guardar());
        QCOMPARE(s->d.textos(), QStringList{QStringLiteral("La serie 'AB' no es una serie de Venta.")});
        // A stored series that has since been deleted is not offered again.
        f->serieVenta = QStringLiteral("B");
        QVERIFY(f->guardar());
        RegistroStore(s->t.db()).ejecutar(QStringLiteral("DELETE FROM Series WHERE Serie = ?"),
                                          {QStringLiteral("B")});
        QVERIFY(f->cargar());
        QCOMPARE(f->serieVenta, QString());
        QCOMPARE(f->serieAbono, QStringLiteral("AB"));
    }

    void especiePorDefecto() {
        const DescriptorTabla* especies = descriptorTabla(QStringLiteral("Especies"));
        if (!especies) QSKIP("la tabla de especies no está en el catálogo");
        auto s = sesion();
        auto especie = [&](const QString& nombre, const QString& activo) {
            Registro r(*especies);
            r.setValor(QStringLiteral("Descripcion"), nombre);
            r.setValor(QStringLiteral("Activo"), activo);
            return RegistroStore(s->t.db()).crear(r);
        };
        const QVariant perro = especie(QStringLiteral("Perro"), QStringLiteral("S"));
        const QVariant gato = especie(QStringLiteral("Gato"), QStringLiteral("S"));
        const QVariant huron = especie(QStringLiteral("Hurón"), QStringLiteral("N"));
        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        // Species in use, by name; a species no longer in use is not offered.
        QCOMPARE(f->especies().size(), 2);
        QCOMPARE(f->especies().at(0).texto, QStringLiteral("Gato"));
        QCOMPARE(f->especies().at(1).clave.toLongLong(), perro.toLongLong());
        rellenarValido(*f);
        f->especie = huron;
        QVERIFY(!f->guardar());
        QCOMPARE(s->d.textos(), QStringList{QStringLiteral("Elija la especie por defecto de la lista.")});
        QCOMPARE(f->foco(), ConfPuestoForm::Campo::Especie);
        f->especie = gato;
        QVERIFY(f->guardar());
        QCOMPARE(ConfPuestoStore(s->t.db()).cargar(QStringLiteral("CAJA1")).IdEspecie,
                 std::optional<qint64>(gato.toLongLong()));
        // A chosen species later withdrawn stays offered to this workstation.
        RegistroStore(s->t.db()).ejecutar(
            QStringLiteral("UPDATE Especies SET Activo = ? WHERE IdEspecie = ?"),
            {QStringLiteral("N"), gato});
        QVERIFY(f->cargar());
        QCOMPARE(f->especie.toLongLong(), gato.toLongLong());
        QCOMPARE(f->especies().size(), 2);
    }

    void sinIniNoSeGuardaNada() {
        auto s = sesion();
        auto f = s->form(&clientes_, &articulos_);
        QVERIFY(f->cargar());
        rellenarValido(*f);
        QVERIFY(QFile::remove(s->ini()));
        QVERIFY(!f->guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral(" ¡¡¡ Error grave !!!"));
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("No se ha encontrado el fichero de configuración 'PRAMELVIX.INI'"));
        QVERIFY(!ConfPuestoStore(s->t.db()).existe(QStringLiteral("CAJA1")));
    }
};

PMX_STORE_TEST_MAIN(TestConfPuesto)
#include "test_conf_puesto.moc"
