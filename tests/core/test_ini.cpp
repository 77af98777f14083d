#include "core/ini.h"

#include "scripted_dialogs.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

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
    void lectura_data();
    void lectura();
    void mayusculasExactas_data();
    void mayusculasExactas();
    void secciones();
    void escritura_data();
    void escritura();
    void nombresNoValidos_data();
    void nombresNoValidos();
    void codificacion_data();
    void codificacion();
    void bytesCualesquiera();
    void abrirQueNoSePuede();
    void guardarSinCarpeta();
    void configuracionPuestoFalta_data();
    void configuracionPuestoFalta();
    void configuracionPuestoPresente();
};

void TestIni::lectura_data() {
    QTest::addColumn<QByteArray>("contenido");
    QTest::addColumn<QString>("seccion");
    QTest::addColumn<QString>("clave");
    QTest::addColumn<bool>("existe");
    QTest::addColumn<QString>("esperado");
    auto fila = [](const char* nombre, QByteArray a0, QString a1, QString a2, bool a3, QString a4) {
        QTest::newRow(nombre) << a0 << a1 << a2 << a3 << a4;
    };

    fila("simple", kPuesto, "INSTALACION", "Ruta", true, "C:\\PRAMELVIX");
    fila("blancos alrededor", kPuesto, "INSTALACION", "Servidor", true, "SERVIDOR01");
    fila("otra seccion", kPuesto, "IMPRESORAS", "Tickets", true, "EPSON");
    fila("valor vacio", kPuesto, "IMPRESORAS", "Vacia", true, "");
    fila("clave que falta", kPuesto, "INSTALACION", "NoEsta", false, "");
    fila("seccion que falta", kPuesto, "NOESTA", "Ruta", false, "");
    fila("clave de otra seccion", kPuesto, "IMPRESORAS", "Ruta", false, "");
    fila("linea danada no es clave", kPuesto, "INSTALACION", "linea sin igual", false, "");
    fila("CRLF", QByteArray("[A]\r\nK=v\r\n"), "A", "K", true, "v");
    fila("sin salto final", QByteArray("[A]\nK=v"), "A", "K", true, "v");
    fila("segundo igual es del valor", QByteArray("[A]\nK=a=b\n"), "A", "K", true, "a=b");
    fila("punto y coma en el valor", QByteArray("[A]\nK=a ; b\n"), "A", "K", true, "a ; b");
    fila("clave repetida: la primera", QByteArray("[A]\nK=1\nK=2\n"), "A", "K", true, "1");
    fila("seccion repetida: la primera", QByteArray("[A]\nK=1\n[B]\n[A]\nK=2\nJ=3\n"), "A", "K", true, "1");
    fila("clave de la seccion repetida no cuenta", QByteArray("[A]\nK=1\n[A]\nJ=3\n"), "A", "J", false, "");
    fila("blancos en la cabecera", QByteArray("  [ A ]  ; x\nK=v\n"), "A", "K", true, "v");
    fila("clave antes de toda seccion", QByteArray("K=v\n[A]\n"), "A", "K", false, "");
    fila("comentario con igual", QByteArray("[A]\n;K=v\n"), "A", "K", false, "");
    fila("almohadilla con igual", QByteArray("[A]\n#K=v\n"), "A", "K", false, "");
    fila("cabecera danada no corta la seccion", QByteArray("[A]\n[B\nK=v\n"), "A", "K", true, "v");
    fila("cabecera danada no es seccion", QByteArray("[B\nK=v\n"), "B", "K", false, "");
    fila("clave vacia", QByteArray("[A]\n=v\n"), "A", "", false, "");
    fila("tabuladores", QByteArray("[A]\n\tK\t=\tv w\t\n"), "A", "K", true, "v w");
    fila("fichero vacio", QByteArray(), "A", "K", false, "");
    fila("bytes nulos", QByteArray("[A]\nK=v\0w\n", 10), "A", "K", true, QString::fromUtf16(u"v\0w", 3));
}

void TestIni::lectura() {
    QFETCH(QByteArray, contenido);
    QFETCH(QString, seccion);
    QFETCH(QString, clave);
    QFETCH(bool, existe);
    QFETCH(QString, esperado);
    const IniFile ini = IniFile::desdeBytes(contenido);
    QCOMPARE(ini.contiene(seccion, clave), existe);
    QCOMPARE(ini.valor(seccion, clave), esperado);
    QVERIFY(!ini.valor(seccion, clave).isNull() || !existe); // a missing key is an empty text
    QCOMPARE(ini.aBytes(), contenido);
}

void TestIni::mayusculasExactas_data() {
    QTest::addColumn<QString>("seccion");
    QTest::addColumn<QString>("clave");
    QTest::addColumn<QString>("esperado");
    auto fila = [](const char* nombre, QString a0, QString a1, QString a2) {
        QTest::newRow(nombre) << a0 << a1 << a2;
    };
    fila("exacto", "INSTALACION", "Ruta", "mayusculas");
    fila("seccion en minusculas", "instalacion", "Ruta", "minusculas");
    fila("seccion mixta", "Instalacion", "Ruta", "");
    fila("clave en minusculas", "INSTALACION", "ruta", "");
    fila("clave en mayusculas", "INSTALACION", "RUTA", "");
    fila("acento distinto", QString::fromUtf8("INSTALACIÓN"), "Ruta", "");
}

void TestIni::mayusculasExactas() {
    QFETCH(QString, seccion);
    QFETCH(QString, clave);
    QFETCH(QString, esperado);
    const IniFile ini =
        IniFile::desdeBytes("[INSTALACION]\nRuta=mayusculas\n[instalacion]\nRuta=minusculas\n");
    QCOMPARE(ini.valor(seccion, clave), esperado);
}

void TestIni::secciones() {
    const IniFile ini = IniFile::desdeBytes("K=1\n[B]\n[A\n[A]\n[B]\n[ C ]\n");
    QCOMPARE(ini.secciones(), QStringList({"B", "A", "C"}));
}

void TestIni::escritura_data() {
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QString>("seccion");
    QTest::addColumn<QString>("clave");
    QTest::addColumn<QString>("valor");
    QTest::addColumn<QByteArray>("esperado");
    QTest::addColumn<QString>("leido"); // the value read back from the saved file
    auto fila = [](const char* nombre, QByteArray a0, QString a1, QString a2, QString a3, QByteArray a4,
                   QString a5) { QTest::newRow(nombre) << a0 << a1 << a2 << a3 << a4 << a5; };

    fila("cambia un valor", kPuesto, "INSTALACION", "Ruta", "D:\\PMX",
         QByteArray(kPuesto).replace("Ruta=C:\\PRAMELVIX", "Ruta=D:\\PMX"), "D:\\PMX");
    fila("conserva los blancos tras el igual", kPuesto, "INSTALACION", "Servidor", "NUEVO",
         QByteArray(kPuesto).replace("Servidor = SERVIDOR01   \n", "Servidor = NUEVO\n"), "NUEVO");
    fila("valor vacio que pasa a tener valor", kPuesto, "IMPRESORAS", "Vacia", "x",
         QByteArray(kPuesto).replace("Vacia=\n", "Vacia=x\n"), "x");
    fila("clave nueva tras la ultima clave de la seccion", kPuesto, "INSTALACION", "Nueva", "1",
         QByteArray(kPuesto).replace("linea sin igual\n", "linea sin igual\nNueva=1\n"), "1");
    fila("clave nueva en la ultima seccion", kPuesto, "IMPRESORAS", "Nueva", "1",
         QByteArray(kPuesto + "Nueva=1\n"), "1");
    fila("seccion nueva al final", kPuesto, "NUEVA", "Clave", "valor",
         QByteArray(kPuesto + "\n[NUEVA]\nClave=valor\n"), "valor");
    fila("seccion nueva tras linea en blanco", QByteArray("[A]\nK=1\n\n"), "B", "J", "2",
         QByteArray("[A]\nK=1\n\n[B]\nJ=2\n"), "2");
    fila("seccion nueva en fichero vacio", QByteArray(), "A", "K", "1", QByteArray("[A]\r\nK=1\r\n"), "1");
    fila("mismo valor no toca nada", QByteArray("[A]\nK =  v  \n"), "A", "K", "v",
         QByteArray("[A]\nK =  v  \n"), "v");
    fila("el valor se escribe sin blancos alrededor", QByteArray("[A]\nK=1\n"), "A", "K", "  2 ",
         QByteArray("[A]\nK=2\n"), "2");
    fila("solo cambia la primera clave repetida", QByteArray("[A]\nK=1\nK=2\n"), "A", "K", "3",
         QByteArray("[A]\nK=3\nK=2\n"), "3");
    fila("seccion repetida: escribe en la primera", QByteArray("[A]\nK=1\n[A]\nJ=2\n"), "A", "J", "3",
         QByteArray("[A]\nK=1\nJ=3\n[A]\nJ=2\n"), "3");
    fila("seccion con solo comentarios", QByteArray("[A]\n; nada\n\n[B]\n"), "A", "K", "1",
         QByteArray("[A]\nK=1\n; nada\n\n[B]\n"), "1");
    fila("mayusculas distintas crean otra seccion", QByteArray("[a]\nk=1\n"), "A", "k", "2",
         QByteArray("[a]\nk=1\n\n[A]\nk=2\n"), "2");
    fila("CRLF cambio", QByteArray("; c\r\n[A]\r\nK=1\r\nX=y\r\n"), "A", "K", "2",
         QByteArray("; c\r\n[A]\r\nK=2\r\nX=y\r\n"), "2");
    fila("CRLF clave nueva", QByteArray("[A]\r\nK=1\r\n\r\n[B]\r\n"), "A", "J", "2",
         QByteArray("[A]\r\nK=1\r\nJ=2\r\n\r\n[B]\r\n"), "2");
    fila("CRLF seccion nueva", QByteArray("[A]\r\nK=1\r\n"), "B", "J", "2",
         QByteArray("[A]\r\nK=1\r\n\r\n[B]\r\nJ=2\r\n"), "2");
    fila("saltos mezclados se conservan", QByteArray("[A]\r\nK=1\nX=y\r\n"), "A", "K", "2",
         QByteArray("[A]\r\nK=2\nX=y\r\n"), "2");
    fila("sin salto final: cambio", QByteArray("[A]\r\nK=1"), "A", "K", "2", QByteArray("[A]\r\nK=2"), "2");
    fila("sin salto final: clave nueva", QByteArray("[A]\r\nK=1"), "A", "J", "2",
         QByteArray("[A]\r\nK=1\r\nJ=2"), "2");
    fila("sin salto final: seccion nueva", QByteArray("[A]\nK=1"), "B", "J", "2",
         QByteArray("[A]\nK=1\n\n[B]\nJ=2"), "2");
    fila("lineas danadas intactas", QByteArray("[A]\n[roto\nsin igual\n=solo valor\nK=1\n"), "A", "K", "2",
         QByteArray("[A]\n[roto\nsin igual\n=solo valor\nK=2\n"), "2");
    fila("Latin-1 cambio con acentos", QByteArray("; Cl\xEDnica\r\n[A]\r\nNombre=Due\xF1o\r\nK=1\r\n"), "A",
         "K", QString::fromUtf8("Año €"),
         QByteArray("; Cl\xEDnica\r\n[A]\r\nNombre=Due\xF1o\r\nK=A\xF1o \x80\r\n"),
         QString::fromUtf8("Año €"));
    fila("Latin-1 caracteres que no caben", QByteArray("[A]\nN=\xE1\n"), "A", "N", QString::fromUtf8("Łódź"),
         QByteArray("[A]\nN=?\xF3"
                    "d?\n"),
         QString::fromUtf8("?ód?"));
    fila("UTF-8 cambio con acentos", QByteArray("; Clínica\n[A]\nK=1\n"), "A", "K",
         QString::fromUtf8("Año €"), QByteArray("; Clínica\n[A]\nK=Año €\n"), QString::fromUtf8("Año €"));
    fila("UTF-8 con BOM", QByteArray("\xEF\xBB\xBF[A]\r\nK=1\r\n"), "A", "K", "2",
         QByteArray("\xEF\xBB\xBF[A]\r\nK=2\r\n"), "2");
}

void TestIni::escritura() {
    QFETCH(QByteArray, original);
    QFETCH(QString, seccion);
    QFETCH(QString, clave);
    QFETCH(QString, valor);
    QFETCH(QByteArray, esperado);
    QFETCH(QString, leido);

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

    // Read back from disk: the new value, and the other values as they were.
    const std::optional<IniFile> releido = IniFile::abrir(ruta);
    QVERIFY(releido.has_value());
    QCOMPARE(releido->valor(seccion, clave), leido);
    const IniFile antes = IniFile::desdeBytes(original);
    for (const QString& s : antes.secciones())
        for (const QString& k : {u"Ruta"_s, u"Servidor"_s, u"Tickets"_s, u"Nombre"_s, u"X"_s, u"K"_s})
            if (s != seccion || k != clave) QCOMPARE(releido->valor(s, k), antes.valor(s, k));
}

void TestIni::nombresNoValidos_data() {
    QTest::addColumn<QString>("seccion");
    QTest::addColumn<QString>("clave");
    QTest::addColumn<QString>("valor");
    auto fila = [](const char* nombre, QString a0, QString a1, QString a2) {
        QTest::newRow(nombre) << a0 << a1 << a2;
    };
    fila("seccion vacia", "", "K", "v");
    fila("seccion con corchete", "A]B", "K", "v");
    fila("seccion con blancos alrededor", " A", "K", "v");
    fila("seccion con salto", "A\nB", "K", "v");
    fila("clave vacia", "A", "", "v");
    fila("clave con igual", "A", "K=J", "v");
    fila("clave comentario", "A", ";K", "v");
    fila("clave almohadilla", "A", "#K", "v");
    fila("clave corchete", "A", "[K", "v");
    fila("clave con blancos alrededor", "A", "K ", "v");
    fila("valor con salto", "A", "K", "v\nw");
    fila("valor con retorno", "A", "K", "v\rw");
}

void TestIni::nombresNoValidos() {
    QFETCH(QString, seccion);
    QFETCH(QString, clave);
    QFETCH(QString, valor);
    IniFile ini = IniFile::desdeBytes("[A]\nK=1\n");
    QVERIFY(!ini.setValor(seccion, clave, valor));
    QVERIFY(!ini.modificado());
    QCOMPARE(ini.aBytes(), QByteArray("[A]\nK=1\n"));
}

void TestIni::codificacion_data() {
    QTest::addColumn<QByteArray>("contenido");
    QTest::addColumn<int>("codificacion");
    QTest::addColumn<QString>("valor");
    auto fila = [](const char* nombre, QByteArray a0, int a1, QString a2) {
        QTest::newRow(nombre) << a0 << a1 << a2;
    };
    fila("ASCII es UTF-8", QByteArray("[A]\nK=abc\n"), int(IniFile::Codificacion::Utf8), "abc");
    fila("UTF-8", QByteArray("[A]\nK=Due\xC3\xB1o \xE2\x82\xAC\n"), int(IniFile::Codificacion::Utf8),
         QString::fromUtf8("Dueño €"));
    fila("UTF-8 con BOM", QByteArray("\xEF\xBB\xBF[A]\nK=\xC3\xA1\n"), int(IniFile::Codificacion::Utf8),
         QString::fromUtf8("á"));
    fila("Latin-1", QByteArray("[A]\nK=Due\xF1o\n"), int(IniFile::Codificacion::Windows1252),
         QString::fromUtf8("Dueño"));
    fila("Windows-1252 euro y comillas", QByteArray("[A]\nK=\x80 \x93x\x94\n"),
         int(IniFile::Codificacion::Windows1252), QString::fromUtf8("€ “x”"));
    fila("un solo byte malo hace todo Latin-1", QByteArray("[A]\nJ=\xC3\xA1\nK=\xE1\n"),
         int(IniFile::Codificacion::Windows1252), QString::fromUtf8("á"));
    fila("UTF-8 cortado", QByteArray("[A]\nK=\xC3\n"), int(IniFile::Codificacion::Windows1252),
         QString::fromUtf8("Ã"));
}

void TestIni::codificacion() {
    QFETCH(QByteArray, contenido);
    QFETCH(int, codificacion);
    QFETCH(QString, valor);
    const IniFile ini = IniFile::desdeBytes(contenido);
    QCOMPARE(int(ini.codificacion()), codificacion);
    QCOMPARE(ini.valor("A", "K"), valor);
    QCOMPARE(ini.aBytes(), contenido);
}

void TestIni::bytesCualesquiera() {
    // Any bytes at all are read without failing and written back unchanged. Setting a key
    // then changes one line when the key was there, or only adds lines (at most a blank line,
    // a header and the key) keeping every original line in order.
    QRandomGenerator azar(7);
    const QByteArray piezas[] = {"[",
                                 "]",
                                 "=",
                                 "\n",
                                 "\r\n",
                                 "\r",
                                 ";",
                                 "#",
                                 " ",
                                 "\t",
                                 "A",
                                 "K",
                                 "\xC3",
                                 "\xA1",
                                 "\x80",
                                 "\xFF",
                                 QByteArray(1, '\0'),
                                 "[A]\n",
                                 "K=v\n"};
    for (int i = 0; i < 5000; ++i) {
        QByteArray bytes;
        const int n = azar.bounded(0, 40);
        for (int j = 0; j < n; ++j)
            bytes += piezas[azar.bounded(int(std::size(piezas)))];
        IniFile ini = IniFile::desdeBytes(bytes);
        QCOMPARE(ini.aBytes(), bytes);
        const bool estaba = ini.contiene("A", "K");
        QVERIFY(ini.setValor("A", "K", "nuevo"));
        QCOMPARE(ini.valor("A", "K"), u"nuevo"_s);
        const QByteArray escrito = ini.aBytes();
        QCOMPARE(IniFile::desdeBytes(escrito).valor("A", "K"), u"nuevo"_s);

        const QList<QByteArray> antes = bytes.split('\n');
        const QList<QByteArray> despues = escrito.split('\n');
        if (estaba) {
            QCOMPARE(despues.size(), antes.size());
            int distintas = 0;
            for (qsizetype k = 0; k < antes.size(); ++k)
                distintas += antes[k] != despues[k];
            QVERIFY2(distintas <= 1, bytes.toPercentEncoding().constData());
        } else {
            QVERIFY(despues.size() - antes.size() <= 3);
            qsizetype k = 0;
            for (const QByteArray& linea : despues) {
                // A last line without line end gets one ("\r\n" when the file has none).
                const bool ultima = k == antes.size() - 1;
                if (k < antes.size() && (linea == antes[k] || (ultima && linea == antes[k] + '\r'))) ++k;
            }
            QVERIFY2(k == antes.size(), bytes.toPercentEncoding().constData());
        }
    }
}

void TestIni::abrirQueNoSePuede() {
    QTemporaryDir carpeta;
    QVERIFY(carpeta.isValid());
    QVERIFY(!IniFile::abrir(carpeta.filePath("NOESTA.INI")).has_value());
    QVERIFY(!IniFile::abrir(carpeta.path()).has_value()); // a folder
    QVERIFY(!IniFile::abrir(QString()).has_value());
}

void TestIni::guardarSinCarpeta() {
    QTemporaryDir carpeta;
    QVERIFY(carpeta.isValid());
    const QString ruta = carpeta.filePath("PRAMELVIX.INI");
    QVERIFY(escribir(ruta, "[A]\nK=1\n"));
    std::optional<IniFile> ini = IniFile::abrir(ruta);
    QVERIFY(ini.has_value());
    QVERIFY(carpeta.remove());
    QVERIFY(ini->setValor("A", "K", "2"));
    QVERIFY(!ini->guardar());
    QVERIFY(!ini->error().isEmpty());
    QVERIFY(ini->modificado());

    IniFile sinRuta = IniFile::desdeBytes("[A]\n");
    QVERIFY(!sinRuta.guardar());
}

void TestIni::configuracionPuestoFalta_data() {
    QTest::addColumn<QString>("crear");    // what is put in the program folder
    QTest::addColumn<bool>("comoCarpeta"); // created as a folder instead of a file
    QTest::addColumn<QString>("texto");
    auto fila = [](const char* nombre, QString a0, bool a1, QString a2) {
        QTest::newRow(nombre) << a0 << a1 << a2;
    };
    const QString noEncontrado =
        QString::fromUtf8("No se ha encontrado el fichero de configuración 'PRAMELVIX.INI'");
    fila("carpeta vacia", QString(), false, noEncontrado);
    fila("nombre en minusculas", "pramelvix.ini", false, noEncontrado); // the name is exact
    fila("otro nombre", "PRAMELVIX.INI.bak", false, noEncontrado);
    fila("es una carpeta", "PRAMELVIX.INI", true,
         QString::fromUtf8("No se ha podido leer el fichero de configuración "
                           "'PRAMELVIX.INI'"));
}

void TestIni::configuracionPuestoFalta() {
    QFETCH(QString, crear);
    QFETCH(bool, comoCarpeta);
    QFETCH(QString, texto);
    QTemporaryDir carpeta;
    QVERIFY(carpeta.isValid());
    if (!crear.isEmpty()) {
        if (comoCarpeta)
            QVERIFY(QDir(carpeta.path()).mkdir(crear));
        else
            QVERIFY(escribir(carpeta.filePath(crear), "[A]\nK=1\n"));
    }
    ScriptedDialogs dialogos;
    QVERIFY(!leerConfiguracionPuesto(carpeta.path(), dialogos).has_value());
    QCOMPARE(dialogos.mensajes().size(), 1);
    QCOMPARE(dialogos.ultimo().icono, Icono::Critico);
    QCOMPARE(dialogos.ultimo().titulo, QString::fromUtf8(" ¡¡¡ Error grave !!!"));
    QCOMPARE(dialogos.ultimo().texto, texto);
    QVERIFY(!dialogos.ultimo().pregunta);
}

void TestIni::configuracionPuestoPresente() {
    QTemporaryDir carpeta;
    QVERIFY(carpeta.isValid());
    QCOMPARE(kFicheroConfiguracion.toString(), u"PRAMELVIX.INI"_s);
    QVERIFY(escribir(carpeta.filePath("PRAMELVIX.INI"), "[INSTALACION]\r\nRuta=C:\\PMX\r\n"));
    ScriptedDialogs dialogos;
    const std::optional<IniFile> ini = leerConfiguracionPuesto(carpeta.path(), dialogos);
    QVERIFY(ini.has_value());
    QCOMPARE(ini->valor("INSTALACION", "Ruta"), u"C:\\PMX"_s);
    QVERIFY(dialogos.mensajes().isEmpty());
}

QTEST_GUILESS_MAIN(TestIni)
#include "test_ini.moc"
