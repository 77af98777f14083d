#include "core/ini.h"

#include "scripted_dialogs.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

bool escribir(const QString& ruta, const QByteArray& bytes) {
    QFile f(ruta);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

QByteArray leer(const QString& ruta) {
    QFile f(ruta);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// A configuration file as a workstation has it: comments, blank lines, keys the program
// does not know, odd spacing, a damaged line.
const QByteArray kPuesto = "; Configuración del puesto\n"
                           "# generado por el instalador\n"
                           "\n"
                           "[INSTALACION]\n"
                           "Ruta=C:\\PRAMELVIX\n"
                           "Servidor = SERVIDOR01   \n"
                           "ClaveDesconocida=no se toca\n"
                           "linea sin igual\n"
                           "\n"
                           "; impresoras\n"
                           "[IMPRESORAS]\n"
                           "Tickets=EPSON\n"
                           "Vacia=\n";

} // namespace

class TestIni : public QObject {
    Q_OBJECT
private slots:
    void lectura_data() {
        QTest::addColumn<QByteArray>("contenido");
        QTest::addColumn<QString>("seccion");
        QTest::addColumn<QString>("clave");
        QTest::addColumn<bool>("existe");
        QTest::addColumn<QString>("esperado");
        QTest::addColumn<int>("codificacion");
        auto fila = [](const char* nombre, QByteArray a0, QString a1, QString a2, bool a3, QString a4,
                       IniFile::Codificacion a5 = IniFile::Codificacion::Utf8) {
            QTest::newRow(nombre) << a0 << a1 << a2 << a3 << a4 << int(a5);
        };

        fila("simple", kPuesto, "INSTALACION", "Ruta", true, "C:\\PRAMELVIX");
        fila("blancos alrededor", kPuesto, "INSTALACION", "Servidor", true, "SERVIDOR01");
        fila("valor vacio", kPuesto, "IMPRESORAS", "Vacia", true, "");
        fila("clave que falta", kPuesto, "INSTALACION", "NoEsta", false, "");
        fila("seccion que falta", kPuesto, "NOESTA", "Ruta", false, "");
        fila("clave de otra seccion", kPuesto, "IMPRESORAS", "Ruta", false, "");
        fila("linea danada no es clave", kPuesto, "INSTALACION", "linea sin igual", false, "");
        fila("CRLF", "[A]\r\nK=v\r\n", "A", "K", true, "v");
        fila("sin salto final", "[A]\nK=v", "A", "K", true, "v");
        fila("segundo igual es del valor", "[A]\nK=a=b\n", "A", "K", true, "a=b");
        fila("punto y coma en el valor", "[A]\nK=a ; b\n", "A", "K", true, "a ; b");
        fila("clave repetida: la primera", "[A]\nK=1\nK=2\n", "A", "K", true, "1");
        fila("seccion repetida: la primera", "[A]\nK=1\n[B]\n[A]\nK=2\nJ=3\n", "A", "K", true, "1");
        fila("clave de la seccion repetida no cuenta", "[A]\nK=1\n[A]\nJ=3\n", "A", "J", false, "");
        fila("blancos en la cabecera", "  [ A ]  ; x\nK=v\n", "A", "K", true, "v");
        fila("clave antes de toda seccion", "K=v\n[A]\n", "A", "K", false, "");
        fila("comentario con igual", "[A]\n;K=v\n", "A", "K", false, "");
        fila("almohadilla con igual", "[A]\n#K=v\n", "A", "K", false, "");
        fila("cabecera danada no corta la seccion", "[A]\n[B\nK=v\n", "A", "K", true, "v");
        fila("clave vacia", "[A]\n=v\n", "A", "", false, "");
        fila("tabuladores", "[A]\n\tK\t=\tv w\t\n", "A", "K", true, "v w");
        fila("fichero vacio", QByteArray(), "A", "K", false, "");
        fila("bytes nulos", QByteArray("[A]\nK=v\0w\n", 10), "A", "K", true, QString::fromUtf16(u"v\0w", 3));
        // Names are compared exactly: case and accents count.
        const QByteArray mayusculas("[INSTALACION]\nRuta=mayusculas\n[instalacion]\nRuta=minusculas\n");
        fila("mayusculas exactas", mayusculas, "INSTALACION", "Ruta", true, "mayusculas");
        fila("seccion mixta", mayusculas, "Instalacion", "Ruta", false, "");
        fila("clave en minusculas", mayusculas, "INSTALACION", "ruta", false, "");
        fila("acento distinto", mayusculas, u"INSTALACIÓN"_s, "Ruta", false, "");
        // Encoding: valid UTF-8 (ASCII is) or else Windows-1252.
        const auto w1252 = IniFile::Codificacion::Windows1252;
        fila("UTF-8", "[A]\nK=Due\xC3\xB1o \xE2\x82\xAC\n", "A", "K", true, u"Dueño €"_s);
        fila("UTF-8 con BOM", "\xEF\xBB\xBF[A]\nK=\xC3\xA1\n", "A", "K", true, u"á"_s);
        fila("Windows-1252 euro y comillas", "[A]\nK=\x80 \x93x\x94\n", "A", "K", true, u"€ “x”"_s, w1252);
        fila("un solo byte malo hace todo Latin-1", "[A]\nJ=\xC3\xA1\nK=\xE1\n", "A", "K", true, u"á"_s,
             w1252);
        fila("UTF-8 cortado", "[A]\nK=\xC3\n", "A", "K", true, u"Ã"_s, w1252);
    }

    void lectura() {
        QFETCH(QByteArray, contenido);
        QFETCH(QString, seccion);
        QFETCH(QString, clave);
        QFETCH(bool, existe);
        QFETCH(QString, esperado);
        QFETCH(int, codificacion);
        const IniFile ini = IniFile::desdeBytes(contenido);
        QCOMPARE(int(ini.codificacion()), codificacion);
        QCOMPARE(ini.contiene(seccion, clave), existe);
        QCOMPARE(ini.valor(seccion, clave), esperado);
        QVERIFY(!ini.valor(seccion, clave).isNull() || !existe); // a missing key is an empty text
        QCOMPARE(ini.aBytes(), contenido);
    }

    void secciones() {
        const IniFile ini = IniFile::desdeBytes("K=1\n[B]\n[A\n[A]\n[B]\n[ C ]\n");
        QCOMPARE(ini.secciones(), QStringList({"B", "A", "C"}));
    }

    void escritura_data() {
        QTest::addColumn<QByteArray>("original");
        QTest::addColumn<QString>("seccion");
        QTest::addColumn<QString>("clave");
        QTest::addColumn<QString>("valor");
        QTest::addColumn<QByteArray>("esperado");
        auto fila = [](const char* nombre, QByteArray a0, QString a1, QString a2, QString a3, QByteArray a4) {
            QTest::newRow(nombre) << a0 << a1 << a2 << a3 << a4;
        };
        const QByteArray p = kPuesto;
        fila("cambia un valor", p, "INSTALACION", "Ruta", "D:\\PMX",
             QByteArray(p).replace("Ruta=C:\\PRAMELVIX", "Ruta=D:\\PMX"));
        fila("conserva los blancos tras el igual", p, "INSTALACION", "Servidor", "NUEVO",
             QByteArray(p).replace("Servidor = SERVIDOR01   \n", "Servidor = NUEVO\n"));
        fila("clave nueva tras la ultima clave de la seccion", p, "INSTALACION", "Nueva", "1",
             QByteArray(p).replace("linea sin igual\n", "linea sin igual\nNueva=1\n"));
        fila("clave nueva en la ultima seccion", p, "IMPRESORAS", "Nueva", "1", p + "Nueva=1\n");
        fila("seccion nueva al final", p, "NUEVA", "Clave", "valor", p + "\n[NUEVA]\nClave=valor\n");
        fila("seccion nueva tras linea en blanco", "[A]\nK=1\n\n", "B", "J", "2", "[A]\nK=1\n\n[B]\nJ=2\n");
        fila("seccion nueva en fichero vacio", "", "A", "K", "1", "[A]\r\nK=1\r\n");
        fila("mismo valor no toca nada", "[A]\nK =  v  \n", "A", "K", "v", "[A]\nK =  v  \n");
        fila("el valor se escribe sin blancos alrededor", "[A]\nK=1\n", "A", "K", "  2 ", "[A]\nK=2\n");
        fila("solo cambia la primera clave repetida", "[A]\nK=1\nK=2\n", "A", "K", "3", "[A]\nK=3\nK=2\n");
        fila("seccion repetida: escribe en la primera", "[A]\nK=1\n[A]\nJ=2\n", "A", "J", "3",
             "[A]\nK=1\nJ=3\n[A]\nJ=2\n");
        fila("seccion con solo comentarios", "[A]\n; nada\n\n[B]\n", "A", "K", "1",
             "[A]\nK=1\n; nada\n\n[B]\n");
        fila("mayusculas distintas crean otra seccion", "[a]\nk=1\n", "A", "k", "2",
             "[a]\nk=1\n\n[A]\nk=2\n");
        fila("CRLF clave nueva", "[A]\r\nK=1\r\n\r\n[B]\r\n", "A", "J", "2",
             "[A]\r\nK=1\r\nJ=2\r\n\r\n[B]\r\n");
        fila("saltos mezclados se conservan", "[A]\r\nK=1\nX=y\r\n", "A", "K", "2", "[A]\r\nK=2\nX=y\r\n");
        fila("sin salto final: clave nueva", "[A]\r\nK=1", "A", "J", "2", "[A]\r\nK=1\r\nJ=2");
        fila("sin salto final: seccion nueva", "[A]\nK=1", "B", "J", "2", "[A]\nK=1\n\n[B]\nJ=2");
        fila("lineas danadas intactas", "[A]\n[roto\nsin igual\n=solo valor\nK=1\n", "A", "K", "2",
             "[A]\n[roto\nsin igual\n=solo valor\nK=2\n");
        fila("Latin-1 cambio con acentos", "; Cl\xEDnica\r\n[A]\r\nNombre=Due\xF1o\r\nK=1\r\n", "A", "K",
             u"Año €"_s, "; Cl\xEDnica\r\n[A]\r\nNombre=Due\xF1o\r\nK=A\xF1o \x80\r\n");
        fila("Latin-1 caracteres que no caben", "[A]\nN=\xE1\n", "A", "N", u"Łódź"_s,
             "[A]\nN=?\xF3"
             "d?\n");
        fila("UTF-8 cambio con acentos", "; Clínica\n[A]\nK=1\n", "A", "K", u"Año €"_s,
             "; Clínica\n[A]\nK=Año €\n");
        fila("UTF-8 con BOM", "\xEF\xBB\xBF[A]\r\nK=1\r\n", "A", "K", "2", "\xEF\xBB\xBF[A]\r\nK=2\r\n");
    }

    void escritura() {
        QFETCH(QByteArray, original);
        QFETCH(QString, seccion);
        QFETCH(QString, clave);
        QFETCH(QString, valor);
        QFETCH(QByteArray, esperado);

        QTemporaryDir carpeta;
        QVERIFY(carpeta.isValid());
        const QString ruta = carpeta.filePath(u"PRAMELVIX.INI"_s);
        QVERIFY(escribir(ruta, original));

        std::optional<IniFile> ini = IniFile::abrir(ruta);
        QVERIFY(ini.has_value());
        QVERIFY(ini->setValor(seccion, clave, valor));
        QVERIFY2(ini->guardar(), qPrintable(ini->error()));
        QCOMPARE(leer(ruta), esperado);
        // Nothing but the file is left in the folder (the temporary file was renamed).
        QCOMPARE(QDir(carpeta.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"PRAMELVIX.INI"});
    }

    // Names and values that would damage the file are refused, and the file is left as it was.
    void nombresNoValidos() {
        const QStringList casos[] = {
            {"", "K", "v"},   {"A]B", "K", "v"}, {" A", "K", "v"}, {"A", "", "v"},     {"A", "K=J", "v"},
            {"A", ";K", "v"}, {"A", "[K", "v"},  {"A", "K ", "v"}, {"A", "K", "v\nw"},
        };
        for (const QStringList& c : casos) {
            IniFile ini = IniFile::desdeBytes("[A]\nK=1\n");
            QVERIFY2(!ini.setValor(c[0], c[1], c[2]), qPrintable(c.join(u'|')));
            QVERIFY(!ini.modificado());
            QCOMPARE(ini.aBytes(), QByteArray("[A]\nK=1\n"));
        }
    }

    void bytesCualesquiera() {
        // Any bytes at all are read without failing, written back unchanged and take a new key.
        QRandomGenerator azar(7);
        using namespace std::string_view_literals;
        const std::string_view piezas[] = {"[",    "]",    "=",    "\n",    "\r\n", "\r",   ";",
                                           "#",    " ",    "\t",   "A",     "K",    "\xC3", "\xA1",
                                           "\x80", "\xFF", "\0"sv, "[A]\n", "K=v\n"};
        for (int i = 0; i < 5000; ++i) {
            QByteArray bytes;
            const int n = azar.bounded(0, 40);
            for (int j = 0; j < n; ++j) {
                const std::string_view p = piezas[azar.bounded(int(std::size(piezas)))];
                bytes.append(p.data(), qsizetype(p.size()));
            }
            IniFile ini = IniFile::desdeBytes(bytes);
            QVERIFY2(ini.aBytes() == bytes, bytes.toPercentEncoding().constData());
            QVERIFY(ini.setValor("A", "K", "nuevo"));
            QVERIFY2(IniFile::desdeBytes(ini.aBytes()).valor("A", "K") == u"nuevo"_s,
                     bytes.toPercentEncoding().constData());
        }
    }

    void ficheroQueNoSePuedeUsar() {
        QTemporaryDir carpeta;
        QVERIFY(carpeta.isValid());
        QVERIFY(!IniFile::abrir(carpeta.filePath("NOESTA.INI")).has_value());
        QVERIFY(!IniFile::abrir(carpeta.path()).has_value()); // a folder
        QVERIFY(!IniFile::desdeBytes("[A]\n").guardar());     // no path

        const QString ruta = carpeta.filePath("PRAMELVIX.INI");
        QVERIFY(escribir(ruta, "[A]\nK=1\n"));
        std::optional<IniFile> ini = IniFile::abrir(ruta);
        QVERIFY(ini.has_value());
        QVERIFY(carpeta.remove());
        QVERIFY(ini->setValor("A", "K", "2"));
        QVERIFY(!ini->guardar());
        QVERIFY(!ini->error().isEmpty());
        QVERIFY(ini->modificado());
    }

    void configuracionPuesto_data() {
        QTest::addColumn<QString>("crear");    // what is put in the program folder
        QTest::addColumn<bool>("comoCarpeta"); // created as a folder instead of a file
        QTest::addColumn<QString>("texto");    // "": the file is read
        auto fila = [](const char* nombre, QString a0, bool a1, QString a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        const QString noEncontrado = u"No se ha encontrado el fichero de configuración 'PRAMELVIX.INI'"_s;
        fila("presente", "PRAMELVIX.INI", false, "");
        fila("carpeta vacia", QString(), false, noEncontrado);
        fila("nombre en minusculas", "pramelvix.ini", false, noEncontrado); // the name is exact
        fila("es una carpeta", "PRAMELVIX.INI", true,
             u"No se ha podido leer el fichero de configuración 'PRAMELVIX.INI'"_s);
    }

    void configuracionPuesto() {
        QFETCH(QString, crear);
        QFETCH(bool, comoCarpeta);
        QFETCH(QString, texto);
        QTemporaryDir carpeta;
        QVERIFY(carpeta.isValid());
        if (comoCarpeta)
            QVERIFY(QDir(carpeta.path()).mkdir(crear));
        else if (!crear.isEmpty())
            QVERIFY(escribir(carpeta.filePath(crear), "[INSTALACION]\r\nRuta=C:\\PMX\r\n"));
        ScriptedDialogs dialogos;
        const std::optional<IniFile> ini = leerConfiguracionPuesto(carpeta.path(), dialogos);
        QCOMPARE(ini.has_value(), texto.isEmpty());
        if (ini) {
            QCOMPARE(ini->valor("INSTALACION", "Ruta"), u"C:\\PMX"_s);
            QVERIFY(dialogos.mensajes().isEmpty());
            return;
        }
        QCOMPARE(dialogos.mensajes().size(), 1);
        QCOMPARE(dialogos.ultimo().icono, Icono::Critico);
        QCOMPARE(dialogos.ultimo().titulo, u" ¡¡¡ Error grave !!!"_s);
        QCOMPARE(dialogos.ultimo().texto, texto);
        QVERIFY(!dialogos.ultimo().pregunta);
    }
};

QTEST_GUILESS_MAIN(TestIni)
#include "test_ini.moc"
