// Filling templates (fields, escaping, repeated rows, conditional parts, damaged blocks),
// the default templates the installer copies, the sale ticket's text and its ESC/POS bytes,
// and the list picker on the terminal.
#include "app/instalador.h"
#include "core/console_dialogs.h"
#include "data/ajustes.h"
#include "datos_ejemplo.h"
#include "documents/plantilla.h"
#include "documents/plantillas_defecto.h"
#include "documents/ticket.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>
#include <cstdio>

namespace {
DatosDocumento datosSimples() {
    DatosDocumento d;
    d.campos = {{QStringLiteral("a"), QStringLiteral("x")},
                {QStringLiteral("serie"), QStringLiteral("A")},
                {QStringLiteral("vacio"), QStringLiteral("  ")},
                {QStringLiteral("raro"), QStringLiteral("<b>\"Tom\" & Jerry</b>")},
                {QStringLiteral("direccion"), QStringLiteral("C/ Mayor, 1\n28001 Madrid")}};
    d.filas.insert(QStringLiteral("Lineas"), {{{QStringLiteral("concepto"), QStringLiteral("Vacuna")},
                                               {QStringLiteral("dcto"), QString()}},
                                              {{QStringLiteral("concepto"), QStringLiteral("Pienso")},
                                               {QStringLiteral("dcto"), QStringLiteral("10")},
                                               {QStringLiteral("a"), QStringLiteral("propio")}}});
    d.filas.insert(QStringLiteral("Cobros"), {});
    return d;
}

QString leer(const QString& ruta) {
    QFile f(ruta);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

bool escribir(const QString& ruta, const QByteArray& bytes) {
    QFile f(ruta);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

// Every name a template of the group may print, as the documents give them.
QSet<QString> camposConocidos(const QString& grupo) {
    QSet<QString> c = {QStringLiteral("NombreClinica"),
                       QStringLiteral("NIFClinica"),
                       QStringLiteral("DireccionClinica"),
                       QStringLiteral("PoblacionClinica"),
                       QStringLiteral("TelefonoClinica"),
                       QStringLiteral("EMailClinica"),
                       QStringLiteral("serie"),
                       QStringLiteral("fecha"),
                       QStringLiteral("hora"),
                       QStringLiteral("NombreCliente"),
                       QStringLiteral("DNICliente"),
                       QStringLiteral("DireccionCliente"),
                       QStringLiteral("PoblacionCliente"),
                       QStringLiteral("BaseImponible"),
                       QStringLiteral("TotalIVA"),
                       QStringLiteral("retencion"),
                       QStringLiteral("total"),
                       QStringLiteral("Exento"),
                       QStringLiteral("Lineas"),
                       QStringLiteral("idArticulo"),
                       QStringLiteral("concepto"),
                       QStringLiteral("cantidad"),
                       QStringLiteral("pvp"),
                       QStringLiteral("dcto"),
                       QStringLiteral("precio"),
                       QStringLiteral("importe"),
                       QStringLiteral("importeBI"),
                       QStringLiteral("Desglose"),
                       QStringLiteral("PorcentajeIVA"),
                       QStringLiteral("BaseIVA"),
                       QStringLiteral("CuotaIVA")};
    if (grupo == QLatin1String("DocFormFra"))
        c += {QStringLiteral("numero"), QStringLiteral("Bruto")};
    else
        c += {QStringLiteral("numAlbaran"),
              QStringLiteral("mascota"),
              QStringLiteral("Vendedor"),
              QStringLiteral("numFra"),
              QStringLiteral("serieFra"),
              QStringLiteral("TotalBruto"),
              QStringLiteral("PorcentajeRetencion"),
              QStringLiteral("pendiente"),
              QStringLiteral("Cobros"),
              QStringLiteral("FechaCobro"),
              QStringLiteral("FormaCobro"),
              QStringLiteral("ImporteCobro")};
    return c;
}
} // namespace

class TestPlantillas : public QObject {
    Q_OBJECT

private slots:
    void componer_data() {
        QTest::addColumn<QString>("plantilla");
        QTest::addColumn<QString>("esperado");
        QTest::newRow("campo") << "<p>{{a}}</p>"
                               << "<p>x</p>";
        QTest::newRow("blancos dentro de las llaves") << "{{ a }}/{{serie}}"
                                                      << "x/A";
        QTest::newRow("escapado") << "{{raro}}"
                                  << "&lt;b&gt;&quot;Tom&quot; &amp; Jerry&lt;/b&gt;";
        QTest::newRow("salto de línea") << "{{direccion}}"
                                        << "C/ Mayor, 1<br>28001 Madrid";
        QTest::newRow("campo desconocido") << "[{{nada}}]"
                                           << "[]";
        QTest::newRow("filas de tabla")
            << "<table>{{#Lineas}}<tr><td>{{concepto}}</td><td>{{serie}}</td></tr>{{/Lineas}}</table>"
            << "<table><tr><td>Vacuna</td><td>A</td></tr><tr><td>Pienso</td><td>A</td></tr></table>";
        QTest::newRow("la fila tapa al documento") << "{{#Lineas}}{{a}};{{/Lineas}}{{a}}"
                                                   << "x;propio;x";
        QTest::newRow("bloque sin filas") << "<{{#Cobros}}{{FormaCobro}}{{/Cobros}}>"
                                          << "<>";
        QTest::newRow("bloque inexistente") << "<{{#Otros}}z{{/Otros}}>"
                                            << "<>";
        QTest::newRow("condición cumplida") << "{{?a}}[{{a}}]{{/a}}"
                                            << "[x]";
        QTest::newRow("blanco es vacío") << "{{?vacio}}no{{/vacio}}{{^vacio}}sí{{/vacio}}"
                                         << "sí";
        QTest::newRow("condición de campo ausente") << "{{?nada}}no{{/nada}}{{^nada}}sí{{/nada}}"
                                                    << "sí";
        QTest::newRow("condición de bloque")
            << "{{?Lineas}}L{{/Lineas}}{{?Cobros}}C{{/Cobros}}{{^Cobros}}-{{/Cobros}}"
            << "L-";
        QTest::newRow("condición dentro de filas")
            << "{{#Lineas}}{{concepto}}{{?dcto}} -{{dcto}}%{{/dcto}};{{/Lineas}}"
            << "Vacuna;Pienso -10%;";
        QTest::newRow("llaves que no son campos") << "{{ a b }} {{}} {{#}} {{ x"
                                                  << "{{ a b }} {{}} {{#}} {{ x";
        QTest::newRow("cierre suelto se imprime") << "a{{/b}}c"
                                                  << "a{{/b}}c";
        QTest::newRow("bloque sin cerrar llega al final") << "{{?a}}x{{a}}"
                                                          << "xx";
    }
    void componer() {
        QFETCH(QString, plantilla);
        QFETCH(QString, esperado);
        QCOMPARE(componerPlantilla(plantilla, datosSimples()), esperado);
    }

    void plantillaDanada_data() {
        QTest::addColumn<QString>("plantilla");
        QTest::addColumn<QString>("error");
        QTest::newRow("correcta") << "{{#Lineas}}{{?dcto}}{{dcto}}{{/dcto}}{{/Lineas}}"
                                  << "";
        QTest::newRow("cierre sin bloque") << "x{{/Lineas}}"
                                           << "la etiqueta «{{/Lineas}}» no cierra ningún bloque";
        QTest::newRow("cierre cruzado") << "{{#Lineas}}{{?dcto}}{{/Lineas}}{{/dcto}}"
                                        << "se esperaba «{{/dcto}}» y aparece «{{/Lineas}}»";
        QTest::newRow("sin cerrar") << "<table>{{#Lineas}}<tr></tr>"
                                    << "falta «{{/Lineas}}» para cerrar el bloque «{{#Lineas}}»";
        QString profunda;
        for (int i = 0; i <= kMaxAnidamiento; ++i)
            profunda = QStringLiteral("{{?a}}") + profunda + QStringLiteral("{{/a}}");
        QTest::newRow("demasiado anidada") << profunda << "hay más de 16 bloques anidados";
    }
    void plantillaDanada() {
        QFETCH(QString, plantilla);
        QFETCH(QString, error);
        QCOMPARE(comprobarPlantilla(plantilla), error);
    }

    // A hundred thousand open blocks are refused without exhausting the stack, and rows
    // repeated inside rows cannot make a document without end.
    void plantillaEnorme() {
        const QString html = QStringLiteral("{{#Lineas}}").repeated(100000);
        QCOMPARE(comprobarPlantilla(html), QStringLiteral("hay más de 16 bloques anidados"));
        bool completo = true;
        const QString salida = componerPlantilla(html, datosSimples(), &completo);
        QVERIFY(!completo);
        QVERIFY(salida.size() <= kMaxDocumento + html.size());
        componerPlantilla(QStringLiteral("{{#Lineas}}{{concepto}}{{/Lineas}}"), datosSimples(), &completo);
        QVERIFY(completo);
    }

    // The shipped templates: well formed, and every name they print is one the documents give.
    void plantillasPorDefectoCorrectas() {
        QCOMPARE(plantillasPorDefecto().size(), 3);
        static const QRegularExpression etiqueta(
            QStringLiteral("\\{\\{\\s*[#?^/]?\\s*([A-Za-z0-9_.]+)\\s*\\}\\}"));
        for (const PlantillaPorDefecto& p : plantillasPorDefecto()) {
            const QString html = textoPlantillaPorDefecto(p);
            QVERIFY2(html.contains(QStringLiteral("</html>")), qPrintable(p.fichero));
            QCOMPARE(comprobarPlantilla(html), QString());
            const QSet<QString> conocidos = camposConocidos(p.grupo);
            for (auto m = etiqueta.globalMatch(html); m.hasNext();) {
                const QString nombre = m.next().captured(1);
                QVERIFY2(conocidos.contains(nombre), qPrintable(p.fichero + QStringLiteral(": ") + nombre));
            }
            // Filled with no data at all, nothing of the syntax is left.
            QVERIFY(!componerPlantilla(html, {}).contains(QStringLiteral("{{")));
        }
        const QString nota = textoPlantillaPorDefecto(plantillasPorDefecto().at(1));
        QVERIFY(componerPlantilla(nota, albaranEjemplo()).contains(QStringLiteral("Nota de Venta: 125")));
    }

    // The installer copies the templates into the data folder and keeps the clinic's own.
    void instalacionCopiaLasPlantillas() {
        QTemporaryDir dir;
        OpcionesInstalacion op;
        op.carpeta = dir.path();
        op.administrador = QStringLiteral("admin");
        op.clave = QStringLiteral("admin");
        op.puestoServidor = QStringLiteral("RECEPCION");
        QCOMPARE(crearInstalacion(op), QString());
        const QString datos = QDir(dir.path()).filePath(QStringLiteral("datos"));
        const QString albaran = datos + QStringLiteral("/Plantillas/DocAlbaranes/Albarán.html");
        const QString nota = datos + QStringLiteral("/Plantillas/NotaVenta/Nota de venta.html");
        const QString factura = datos + QStringLiteral("/Plantillas/DocFormFra/Factura.html");
        QCOMPARE(leer(albaran), textoPlantillaPorDefecto(plantillasPorDefecto().at(0)));
        QCOMPARE(leer(nota), textoPlantillaPorDefecto(plantillasPorDefecto().at(1)));
        QCOMPARE(leer(factura), textoPlantillaPorDefecto(plantillasPorDefecto().at(2)));
        // A plain installation has no clinic data yet.
        auto db = Database::abrirSQLite(QDir(datos).filePath(QStringLiteral("Pramelvix.mdb")));
        QCOMPARE(Ajustes(*db).leer(claves::NOMBRE_CLINICA), QString());

        // The clinic changed one and removed another: installing again restores only the missing one.
        QVERIFY(escribir(albaran, "<p>{{NombreCliente}} (nuestro formato)</p>"));
        QVERIFY(QFile::remove(factura));
        QCOMPARE(instalarPlantillasPorDefecto(datos), QString());
        QCOMPARE(leer(albaran), QStringLiteral("<p>{{NombreCliente}} (nuestro formato)</p>"));
        QCOMPARE(leer(factura), textoPlantillaPorDefecto(plantillasPorDefecto().at(2)));

        // A group folder that cannot be made is reported, not ignored.
        QTemporaryDir otro;
        QVERIFY(escribir(otro.filePath(QStringLiteral("Plantillas")), "no es una carpeta"));
        QVERIFY(instalarPlantillasPorDefecto(otro.path())
                    .startsWith(QStringLiteral("No se ha podido crear la carpeta '")));
    }

    void textoDelTicket() {
        DatosDocumento d = albaranEjemplo();
        d.campos += clinicaEjemplo();
        const QString esperado = QStringLiteral("      Clínica Veterinaria Los Álamos\n"
                                                "              NIF: B86543210\n"
                                                "        Avenida de los Álamos, 14\n"
                                                "               28043 Madrid\n"
                                                "            Tel.: 910 123 456\n"
                                                "\n"
                                                "Albarán A/125\n"
                                                "Fecha: 23/11/2026  Hora: 10:15\n"
                                                "Cliente: Ana Belén Núñez Castaño\n"
                                                "Mascota: Rufo\n"
                                                "Le atendió: Dra. Lucía Ferrer Soler\n"
                                                "------------------------------------------\n"
                                                "Consulta general\n"
                                                "  1 x 35,00                          35,00\n"
                                                "Vacuna polivalente canina\n"
                                                "  1 x 42,00  Dto. 10,00 %            37,80\n"
                                                "Pipeta antiparasitaria perro 10-20 kg\n"
                                                "  3 x 18,50                          55,50\n"
                                                "Pienso adulto 3 kg\n"
                                                "  1 x 24,90                          24,90\n"
                                                "------------------------------------------\n"
                                                "Base imponible                      128,68\n"
                                                "I.V.A.                               24,52\n"
                                                "TOTAL                             153,20 €\n"
                                                "\n"
                                                "  % I.V.A.            Base           Cuota\n"
                                                "     21,00          106,04           22,26\n"
                                                "     10,00           22,64            2,26\n"
                                                "------------------------------------------\n"
                                                "Cobrado 23/11/2026 TARJETA          100,00\n"
                                                "Pendiente                          53,20 €\n"
                                                "\n"
                                                "         ¡Gracias por su visita!\n");
        QCOMPARE(textoTicket(d), esperado);
    }

    // A narrow printer: long texts wrap, amounts that do not fit go to a line of their own,
    // and a withholding and an exempt note are printed.
    void ticketEstrecho() {
        DatosDocumento d = albaranEjemplo();
        d.campos.prepend({QStringLiteral("retencion"), QStringLiteral("-1.234,56")});
        d.campos.prepend({QStringLiteral("PorcentajeRetencion"), QStringLiteral("15,00")});
        d.campos.prepend({QStringLiteral("Exento"), QStringLiteral("Exento de I.V.A.")});
        d.filas[QStringLiteral("Lineas")][0] = lineaEjemplo(
            QStringLiteral("9"), QStringLiteral("Estudio radiológico completo con sedación incluida"),
            QStringLiteral("1.000"), QStringLiteral("1.234.567,00"), QStringLiteral("12,50"), QString(),
            QString(), QStringLiteral("1.080.246,13"));
        const QStringList lineas = textoTicket(d, 32).split(QLatin1Char('\n'));
        for (const QString& l : lineas)
            QVERIFY2(l.size() <= 32, qPrintable(l));
        QVERIFY(lineas.contains(QStringLiteral("Estudio radiológico completo con")));
        QVERIFY(lineas.contains(QStringLiteral("sedación incluida")));
        QVERIFY(lineas.contains(QStringLiteral("  1.000 x 1.234.567,00 Dto.")));
        QVERIFY(lineas.contains(QStringLiteral("  12,50 %           1.080.246,13")));
        QVERIFY(lineas.contains(QStringLiteral("Retención 15,00 %      -1.234,56")));
        QVERIFY(lineas.contains(QStringLiteral("Exento de I.V.A.")));
        const qsizetype cobro = lineas.indexOf(QStringLiteral("Cobrado 23/11/2026 TARJETA"));
        QVERIFY(cobro > 0);
        QCOMPARE(lineas.at(cobro + 1), QStringLiteral("                          100,00"));
    }

    void codificacionCp858() {
        QCOMPARE(codificarCp858(QStringLiteral("ñÑáéíóúüÜ¿¡€ºª")),
                 QByteArray("\xA4\xA5\xA0\x82\xA1\xA2\xA3\x81\x9A\xA8\xAD\xD5\xA7\xA6"));
        // The same letters written decomposed (n + combining tilde) print the same.
        QCOMPARE(codificarCp858(QStringLiteral("Nun\u0303ez")), QByteArray("Nu\xA4"
                                                                           "ez"));
        QCOMPARE(codificarCp858(QStringLiteral("Dvořák “x” – ő…")), QByteArray("Dvor\xA0k \"x\" - o..."));
        QCOMPARE(codificarCp858(QStringLiteral("a\tb\x01漢\n")), QByteArray("a b ?\n"));
    }

    void bytesParaLaImpresora() {
        const QByteArray inicio("\x1B\x40\x1B\x74\x13", 5);
        const QByteArray corte("\x1D\x56\x01", 3);
        const QByteArray dos = bytesEscPos(QStringLiteral("Año\nFin"), 2, true);
        QVERIFY(dos.startsWith(inicio));
        QCOMPARE(dos.mid(5), QByteArray("A\xA4o\nFin\n\x1B\x64\x04\x1D\x56\x01"
                                        "A\xA4o\nFin\n\x1B\x64\x04\x1D\x56\x01"));
        QCOMPARE(bytesEscPos(QStringLiteral("x\n"), 1, false), inicio + QByteArray("x\n\x1B\x64\x04"));
        QCOMPARE(bytesEscPos(QStringLiteral("x"), 0, true).count(corte), 1);
        QCOMPARE(bytesEscPos(QStringLiteral("x"), 40, true).count(corte), 9);
    }

    // The list picker on the terminal: numbered options, a wrong answer asked again, an empty
    // line or the end of input cancels.
    void selectorEnConsola_data() {
        QTest::addColumn<QByteArray>("entrada");
        QTest::addColumn<int>("elegido");
        QTest::addColumn<bool>("repregunta");
        QTest::newRow("segunda") << QByteArray("2\n") << 1 << false;
        QTest::newRow("fuera de la lista y luego bien") << QByteArray("7\nabc\n1\n") << 0 << true;
        QTest::newRow("línea vacía") << QByteArray("\n") << -1 << false;
        QTest::newRow("fin de la entrada") << QByteArray() << -1 << false;
    }
    void selectorEnConsola() {
        QFETCH(QByteArray, entrada);
        QFETCH(int, elegido);
        QFETCH(bool, repregunta);
        QTemporaryDir dir;
        const QString ficheroEntrada = dir.filePath(QStringLiteral("entrada"));
        QVERIFY(escribir(ficheroEntrada, entrada));
        FILE* in = std::fopen(qPrintable(ficheroEntrada), "r");
        FILE* out = std::tmpfile();
        QVERIFY(in && out);
        int r = -2;
        {
            ConsoleDialogs c(out, in);
            r = c.elegir(QStringLiteral("Formato del documento"),
                         QStringLiteral(" Seleccione un Formato de Albarán"),
                         {QStringLiteral("Albarán"), QStringLiteral("Albarán sin precios")});
        }
        std::rewind(out);
        QByteArray salida(4096, '\0');
        salida.resize(static_cast<qsizetype>(std::fread(salida.data(), 1, 4096, out)));
        std::fclose(in);
        std::fclose(out);
        QCOMPARE(r, elegido);
        const QString texto = QString::fromUtf8(salida);
        QVERIFY2(texto.startsWith(
                     QStringLiteral("[ELEGIR] Formato del documento\n Seleccione un Formato de Albarán\n"
                                    "  1) Albarán\n  2) Albarán sin precios\n")),
                 qPrintable(texto));
        QCOMPARE(texto.contains(QStringLiteral("Escriba un número del 1 al 2.")), repregunta);
    }
};

QTEST_GUILESS_MAIN(TestPlantillas)
#include "test_plantillas.moc"
