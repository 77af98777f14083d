// The core rules: dates, times and amounts as the clinic types them, the INI file, the serial
// port, the regional settings check and the words that agree with a class.
#include "core/concordancia.h"
#include "core/formatos.h"
#include "core/ini.h"
#include "core/puerto_serie.h"
#include "core/regional.h"
#include "scripted_dialogs.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>
#include <limits>
#include <string_view>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

QString& campoDe(RegionalSettings& r, int campo) {
    QString* campos[] = {&r.formatoFechaCorta,      &r.separadorFecha,      &r.formatoHora,
                         &r.separadorHora,          &r.separadorDecimal,    &r.separadorMiles,
                         &r.separadorDecimalMoneda, &r.separadorMilesMoneda};
    return *campos[campo];
}

} // namespace

namespace {

bool escribir(const QString& ruta, const QByteArray& bytes) {
    QFile f(ruta);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

QByteArray leer(const QString& ruta) {
    QFile f(ruta);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

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

class TestFormatos : public QObject {
    Q_OBJECT
private slots:
    void formatoFecha_data() {
        QTest::addColumn<QDate>("fecha");
        QTest::addColumn<QString>("esperado");
        QTest::addColumn<QString>("clave"); // formatoClaveFecha
        QTest::addColumn<QString>("larga"); // formatoFechaLarga
        auto fila = [](const char* nombre, QDate a0, QString a1, QString a2, QString a3) {
            QTest::newRow(nombre) << a0 << a1 << a2 << a3;
        };
        fila("dia y mes de una cifra", QDate(2024, 2, 5), "05/02/2024", "20240205", "5 de febrero de 2024");
        fila("ano de tres cifras", QDate(987, 6, 7), "07/06/0987", "09870607", "7 de junio de 987");
        fila("ultimo ano", QDate(9999, 12, 31), "31/12/9999", "99991231", "31 de diciembre de 9999");
        fila("primer mes", QDate(2026, 1, 23), "23/01/2026", "20260123", "23 de enero de 2026");
        fila("invalida", QDate(), "", "", "");
        fila("ano 10000", QDate(10000, 1, 1), "", "", "");
    }

    void formatoFecha() {
        QFETCH(QDate, fecha);
        QFETCH(QString, esperado);
        QFETCH(QString, clave);
        QFETCH(QString, larga);
        QCOMPARE(::formatoFecha(fecha), esperado);
        QCOMPARE(::formatoClaveFecha(fecha), clave);
        QCOMPARE(::formatoFechaLarga(fecha), larga);
        if (esperado.isEmpty()) return;
        QCOMPARE(::leerFecha(esperado), std::optional<QDate>(fecha));
        QCOMPARE(::leerClaveFecha(clave), std::optional<QDate>(fecha));
    }

    void fechaIdaYVuelta() {
        // Every day of four centuries, including the leap-year rules of 1900 and 2000.
        for (QDate fecha(1850, 1, 1); fecha <= QDate(2250, 12, 31); fecha = fecha.addDays(1)) {
            if (::leerFecha(::formatoFecha(fecha)) != fecha) QFAIL(qPrintable(::formatoFecha(fecha)));
            if (::leerClaveFecha(::formatoClaveFecha(fecha)) != fecha)
                QFAIL(qPrintable(::formatoClaveFecha(fecha)));
        }
    }

    void formatoHora_data() {
        QTest::addColumn<QTime>("hora");
        QTest::addColumn<QString>("corta");
        QTest::addColumn<QString>("conSegundos");
        auto fila = [](const char* nombre, QTime a0, QString a1, QString a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        fila("medianoche", QTime(0, 0), "00:00", "00:00:00");
        fila("una cifra", QTime(9, 5, 7), "09:05", "09:05:07");
        fila("ultimo segundo", QTime(23, 59, 59), "23:59", "23:59:59");
        fila("milisegundos no cuentan", QTime(12, 30, 15, 999), "12:30", "12:30:15");
        fila("invalida", QTime(), "", "");
    }

    void formatoHora() {
        QFETCH(QTime, hora);
        QFETCH(QString, corta);
        QFETCH(QString, conSegundos);
        QCOMPARE(::formatoHora(hora), corta);
        QCOMPARE(::formatoHoraSegundos(hora), conSegundos);
    }

    void formatoImporte() {
        const std::pair<double, QString> casos[] = {
            {-0.0, u"0,00"_s},
            {-0.004, u"0,00"_s},
            {-0.5, u"-0,50"_s},
            {999.99, u"999,99"_s},
            {1000.0, u"1.000,00"_s},
            {-1234567.891, u"-1.234.567,89"_s},
            {999999.996, u"1.000.000,00"_s}, // rounding adds a group
            {999999.995, u"999.999,99"_s},   // 999999.99499999999534...
            {2.675, u"2,67"_s},
            {0.125, u"0,12"_s}, // tie to even
            {1234.565, u"1.234,57"_s},
            {1e15, u"1.000.000.000.000.000,00"_s},
            {std::numeric_limits<double>::quiet_NaN(), QString()},
        };
        for (const auto& [importe, texto] : casos) {
            const QString caso = QString::number(importe, 'g', 17);
            QVERIFY2(::formatoImporte(importe) == texto, qPrintable(caso));
            QVERIFY2(::formatoEuros(importe) == (texto.isEmpty() ? QString() : texto + u" €"_s),
                     qPrintable(caso));
        }
    }

    void formatoEntero() {
        const std::pair<qint64, QString> casos[] = {
            {0, u"0"_s},
            {999, u"999"_s},
            {1000, u"1.000"_s},
            {-999, u"-999"_s},
            {-1000, u"-1.000"_s},
            {std::numeric_limits<qint64>::max(), u"9.223.372.036.854.775.807"_s},
            {std::numeric_limits<qint64>::min(), u"-9.223.372.036.854.775.808"_s},
        };
        for (const auto& [numero, texto] : casos)
            QVERIFY2(::formatoEntero(numero) == texto, qPrintable(texto));
    }

    // Texts the readers accept beyond what the formatters write.
    void textosAceptados() {
        const std::pair<QString, QDate> fechas[] = {
            {u"1/02/2024"_s, QDate(2024, 2, 1)},
            {u"01/2/2024"_s, QDate(2024, 2, 1)},
            {u"  05/06/2023 "_s, QDate(2023, 6, 5)},
        };
        for (const auto& [texto, fecha] : fechas)
            QVERIFY2(::leerFecha(texto) == fecha, qPrintable(texto));
        const std::pair<QString, QTime> horas[] = {
            {u"00:00:00"_s, QTime(0, 0)},
            {u"9:05"_s, QTime(9, 5)},
            {u"9:05:01"_s, QTime(9, 5, 1)},
            {u" 23:59 "_s, QTime(23, 59)},
        };
        for (const auto& [texto, hora] : horas)
            QVERIFY2(::leerHora(texto) == hora, qPrintable(texto));
        const std::pair<QString, double> importes[] = {
            {u"1.234,56"_s, 1234.56}, {u"1234,56"_s, 1234.56}, {u"1234"_s, 1234.0},
            {u" 12,5 "_s, 12.5},      {u"-1.000"_s, -1000.0},  {u"-0,00"_s, 0.0},
            {u"0,5"_s, 0.5},          {u"2,675"_s, 2.675},     {u"007"_s, 7.0},
        };
        for (const auto& [texto, importe] : importes) {
            // Exact: the nearest double to the decimal text; "-0,00" reads as zero without sign.
            const std::optional<double> leido = ::leerImporte(texto);
            QVERIFY2(leido && *leido == importe && std::signbit(*leido) == (importe < 0), qPrintable(texto));
        }
    }

    void importeIdaYVuelta() {
        // Every cent from -2.000,00 to 2.000,00 plus large amounts: the text reads back as the
        // same rounded amount.
        QList<double> importes;
        for (qint64 centimos = -200000; centimos <= 200000; ++centimos)
            importes.append(centimos / 100.0);
        for (double grande : {1e9 + 0.01, 98765432.1, -4503599627.37, 1e13 + 0.99})
            importes.append(grande);
        for (double importe : importes)
            if (::leerImporte(::formatoImporte(importe)) != importe)
                QFAIL(qPrintable(::formatoImporte(importe)));
    }

    // Each reader reads nothing from these texts (and does not throw).
    void textosRechazados() {
        const QStringList fechas = {
            // Days that do not exist (1900 was not a leap year), month 13, day, month or year 0.
            u"31/02/2024"_s, u"29/02/2023"_s, u"29/02/1900"_s, u"12/13/2024"_s, u"00/01/2024"_s,
            u"01/00/2024"_s, u"01/01/0000"_s, u""_s, u"   "_s, u"ab/cd/efgh"_s,
            // Years of two, three and five digits, a day of three.
            u"01/02/24"_s, u"01/02/024"_s, u"01/02/02024"_s, u"001/02/2024"_s, u"01-02-2024"_s, u"01/02"_s,
            u"01/02/2024/5"_s, u"01//2024"_s, u"+1/02/2024"_s, u"01/ 2/2024"_s, u"01/02/2024 10:00"_s,
            u"٠١/٠٢/٢٠٢٤"_s /* Arabic-Indic digits */};
        for (const QString& t : fechas)
            QVERIFY2(!::leerFecha(t), qPrintable(t));
        const QStringList horas = {u"24:00"_s,  u"10:60"_s, u"10:00:60"_s, u"10:5"_s,        u"10:05:5"_s,
                                   u"010:05"_s, u"10"_s,    u"10:05:"_s,   u"10:05:00:00"_s, u"10.05"_s,
                                   u"aa:bb"_s,  u""_s,      u"-1:00"_s,    u"10:05 PM"_s};
        for (const QString& t : horas)
            QVERIFY2(!::leerHora(t), qPrintable(t));
        const QStringList importes = {
            u""_s, u"   "_s, u"abc"_s, u"12,3,4"_s, u"1,2.3"_s,
            // Thousands groups of two or four digits, a first group of four or starting with 0.
            u"1.23,4"_s, u"1.2345"_s, u"1234.567"_s, u"0.123"_s, u"1."_s, u".123"_s, u"1..234"_s, u",5"_s,
            u"5,"_s, u"-"_s, u"--5"_s, u"+5"_s, u"1 234"_s, u"1e5"_s, u"5 €"_s, u"inf"_s, u"nan"_s,
            QString(400, u'9') /* too large */};
        for (const QString& t : importes)
            QVERIFY2(!::leerImporte(t), qPrintable(t));
        for (const QString& t :
             {u"20240230"_s, u"2024037"_s, u"202403071"_s, u"2024/3/7"_s, u"00000101"_s, u""_s})
            QVERIFY2(!::leerClaveFecha(t), qPrintable(t));
    }

    // Messages agree with the class of a record, by its first word.
    void concordanciaDeLaClase() {
        const QList<std::pair<QString, QString>> casos = {
            {u"Cliente"_s, u"este lo o él"_s},       {u"Mascota"_s, u"esta la a ella"_s},
            {u"Idioma"_s, u"este lo o él"_s},        {u"Especie"_s, u"esta la a ella"_s},
            {u"Condición Corporal"_s, u"esta la a ella"_s}, {u"Especialidad"_s, u"esta la a ella"_s},
            {u"Plan de Salud"_s, u"este lo o él"_s}, {u"Forma de Pago"_s, u"esta la a ella"_s}};
        for (const auto& [clase, palabras] : casos) {
            const Concordancia c = concordancia(clase);
            QVERIFY2(QStringList({c.este, c.lo, c.o, c.el}).join(u' ') == palabras, qPrintable(clase));
        }
    }

private slots:
    void puertos() {
        struct Caso {
            const char* puerto;
            const char* normalizado; // "" = refused
            const char* dispositivo;
        };
        const Caso casos[] = {
            {"COM1", "COM1", "/dev/ttyS0"},
            {"COM16", "COM16", "/dev/ttyS15"},
            {" com3 ", "COM3", "/dev/ttyS2"},
            {"COM17", "", ""},
            {"COM0", "", ""},
            {"COM01", "COM1", "/dev/ttyS0"},
            {"3", "", ""},
            {"/dev/ttyUSB0", "/dev/ttyUSB0", "/dev/ttyUSB0"},
            {"/dev/serial/by-id/usb-Epson_TM-if00", "/dev/serial/by-id/usb-Epson_TM-if00",
             "/dev/serial/by-id/usb-Epson_TM-if00"},
            {"/dev/../etc/passwd", "", ""},
            {"/dev/", "", ""},
            {"/dev/tty USB0", "", ""},
            {"ttyUSB0", "", ""},
            {"", "", ""},
        };
        for (const Caso& c : casos) {
            QVERIFY2(puertoSerieNormalizado(QString(c.puerto)) == QString(c.normalizado), c.puerto);
            QVERIFY2(dispositivoSerie(QString(c.puerto)) == QString(c.dispositivo), c.puerto);
        }
    }

private slots:
    void requeridosYDelSistemaPasan() {
        QCOMPARE(comprobarConfiguracionRegional(RegionalSettings::requeridos()), std::nullopt);
        QCOMPARE(comprobarConfiguracionRegional(RegionalSettings::delSistema()), std::nullopt);
        QCOMPARE(kTituloConflictoRegional.toString(), u"Conflicto con la configuración de Windows"_s);
    }

    // The message names the first value that differs and the one it must be (which checks the
    // required values too); the values after it, wrong as well, are not mentioned.
    void primerValorDistinto() {
        // Field (0 short date ... 7 currency thousands, as in RegionalSettings), found, phrase, required.
        const std::tuple<int, QString, QString, QString> casos[] = {
            {0, u"dd/MM/yy"_s, u"como formato de fecha corta el valor  "_s, u"dd/MM/yyyy"_s},
            {1, u"-"_s, u"como separador en el formato de fecha el valor  "_s, u"/"_s},
            {2, u"HH:mm:ss"_s, u"como formato de hora el valor  "_s, u"H:mm:ss"_s},
            {3, u"."_s, u"como separador en el formato de hora el valor  "_s, u":"_s},
            {4, u"."_s, u"como separador decimal numérico el valor "_s, u","_s},
            {5, u","_s, u"como separador numérico de miles el valor "_s, u"."_s},
            {5, u""_s, u"como separador numérico de miles el valor "_s, u"."_s},
            {6, u"."_s, u"como separador decimal de moneda el valor "_s, u","_s},
            {7, u" "_s, u"como separador de miles para la moneda el valor "_s, u"."_s},
        };
        for (const auto& [campo, hallado, frase, requerido] : casos) {
            RegionalSettings r = RegionalSettings::requeridos();
            campoDe(r, campo) = hallado;
            for (int despues = campo + 1; despues < 8; ++despues)
                campoDe(r, despues) = u"Y"_s;
            QCOMPARE(
                comprobarConfiguracionRegional(r).value_or(QString()),
                u"La Configuración Regional de su ordenador indica que tiene configurado "_s + frase + u'\'' +
                    hallado + u"'\nPara un correcto funcionamiento de Pramelvix, debe cambiarlo a '"_s +
                    requerido +
                    u"'\nAcceda a la sección de configuración de Windows y realice esa modificación para "
                    "poder iniciar Pramelvix."_s);
        }
    }

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
        fila("linea danada no es clave", kPuesto, "INSTALACION", "linea sin igual", false, "");
        fila("CRLF", "[A]\r\nK=v\r\n", "A", "K", true, "v");
        fila("sin salto final", "[A]\nK=v", "A", "K", true, "v");
        fila("segundo igual es del valor", "[A]\nK=a=b\n", "A", "K", true, "a=b");
        fila("punto y coma en el valor", "[A]\nK=a ; b\n", "A", "K", true, "a ; b");
        fila("clave repetida: la primera", "[A]\nK=1\nK=2\n", "A", "K", true, "1");
        fila("seccion repetida: la primera", "[A]\nK=1\n[B]\n[A]\nK=2\nJ=3\n", "A", "K", true, "1");
        fila("blancos en la cabecera", "  [ A ]  ; x\nK=v\n", "A", "K", true, "v");
        fila("clave antes de toda seccion", "K=v\n[A]\n", "A", "K", false, "");
        fila("cabecera danada no corta la seccion", "[A]\n[B\nK=v\n", "A", "K", true, "v");
        fila("clave vacia", "[A]\n=v\n", "A", "", false, "");
        fila("tabuladores", "[A]\n\tK\t=\tv w\t\n", "A", "K", true, "v w");
        fila("fichero vacio", QByteArray(), "A", "K", false, "");
        fila("bytes nulos", QByteArray("[A]\nK=v\0w\n", 10), "A", "K", true, QString::fromUtf16(u"v\0w", 3));
        // Names are compared exactly: case and accents count.
        const QByteArray mayusculas("[INSTALACION]\nRuta=mayusculas\n[instalacion]\nRuta=minusculas\n");
        fila("mayusculas exactas", mayusculas, "INSTALACION", "Ruta", true, "mayusculas");
        fila("clave en minusculas", mayusculas, "INSTALACION", "ruta", false, "");
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
        fila("seccion nueva en fichero vacio", "", "A", "K", "1", "[A]\r\nK=1\r\n");
        fila("mismo valor no toca nada", "[A]\nK =  v  \n", "A", "K", "v", "[A]\nK =  v  \n");
        fila("el valor se escribe sin blancos alrededor", "[A]\nK=1\n", "A", "K", "  2 ", "[A]\nK=2\n");
        fila("solo cambia la primera clave repetida", "[A]\nK=1\nK=2\n", "A", "K", "3", "[A]\nK=3\nK=2\n");
        fila("seccion repetida: escribe en la primera", "[A]\nK=1\n[A]\nJ=2\n", "A", "J", "3",
             "[A]\nK=1\nJ=3\n[A]\nJ=2\n");
        fila("CRLF clave nueva", "[A]\r\nK=1\r\n\r\n[B]\r\n", "A", "J", "2",
             "[A]\r\nK=1\r\nJ=2\r\n\r\n[B]\r\n");
        fila("sin salto final: clave nueva", "[A]\r\nK=1", "A", "J", "2", "[A]\r\nK=1\r\nJ=2");
        fila("lineas danadas intactas", "[A]\n[roto\nsin igual\n=solo valor\nK=1\n", "A", "K", "2",
             "[A]\n[roto\nsin igual\n=solo valor\nK=2\n");
        fila("Latin-1 cambio con acentos", "; Cl\xEDnica\r\n[A]\r\nNombre=Due\xF1o\r\nK=1\r\n", "A", "K",
             u"Año €"_s, "; Cl\xEDnica\r\n[A]\r\nNombre=Due\xF1o\r\nK=A\xF1o \x80\r\n");
        fila("Latin-1 caracteres que no caben", "[A]\nN=\xE1\n", "A", "N", u"Łódź"_s,
             "[A]\nN=?\xF3"
             "d?\n");
        fila("UTF-8 cambio con acentos", "; Clínica\n[A]\nK=1\n", "A", "K", u"Año €"_s,
             "; Clínica\n[A]\nK=Año €\n");
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

QTEST_GUILESS_MAIN(TestFormatos)
#include "test_formatos.moc"
