// Filling templates (fields, escaping, repeated rows, conditional parts, damaged blocks),
// the default templates the installer copies, the sale ticket's text and its ESC/POS bytes,
// and the list picker on the terminal.
#include "app/instalador.h"
#include "clinical/datos_plan_salud.h"
#include "core/console_dialogs.h"
#include "datos_ejemplo.h"
#include "documents/plantillas_defecto.h"
#include "documents/ticket.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QtTest>
#include <cstdio>

namespace {
DatosDocumento datosSimples() {
    DatosDocumento d;
    d.campos =
        camposDe(u"a=x|serie=A|vacio=  |raro=<b>\"Tom\" & Jerry</b>|direccion=C/ Mayor, 1\n28001 Madrid"_s);
    d.filas.insert(u"Lineas"_s,
                   {camposDe(u"concepto=Vacuna|dcto="_s), camposDe(u"concepto=Pienso|dcto=10|a=propio"_s)});
    d.filas.insert(u"Cobros"_s, {});
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

// The sample documents of each group: a client, a pet, a plan with one condition, the
// prescriptions, the visit report.
ClienteCarta clienteEjemplo() {
    ClienteCarta c;
    c.IdCliente = 7;
    c.Nombre = u"Ana Belén Núñez Castaño"_s;
    c.DNI = u"12345678Z"_s;
    c.Direccion = u"C/ Doctor Fléming, 23, 2º B"_s;
    c.CodigoPostal = u"28036"_s;
    c.Poblacion = c.Provincia = u"Madrid"_s;
    c.Telefono1 = u"910 000 111"_s;
    c.Movil = u"600 111 222"_s;
    c.EMail = u"ana@example.com"_s;
    return c;
}

DatosDocumento ejemplo(const QString& grupo) {
    const QDate hoy(2026, 11, 23);
    MascotaCarta rufo;
    rufo.IdMascota = 12;
    rufo.IdCliente = 7;
    rufo.Nombre = u"Rufo"_s;
    rufo.Especie = u"Perro"_s;
    rufo.Raza = u"Beagle"_s;
    rufo.Sexo = u"Macho"_s;
    rufo.Capa = u"Tricolor"_s;
    rufo.Chip = u"941000012345678"_s;
    rufo.Cartilla = u"C-88"_s;
    rufo.FechaNacimiento = QDate(2019, 4, 2);
    rufo.IdPlanSalud = 3;
    rufo.PlanSalud = u"Plan Senior"_s;
    rufo.CaducidadPlan = QDate(2027, 1, 31);
    if (grupo == u"DocClientes"_s) return datosCartaCliente(clienteEjemplo(), hoy);
    if (grupo == u"DocMas"_s) return datosCartaMascota(rufo, clienteEjemplo(), hoy);
    if (grupo == u"DocPlanes"_s)
        return datosPlanSalud(rufo, clienteEjemplo(),
                              {u"Revisión anual incluida."_s,
                               {{u"Consulta general"_s, {}, {}, {}, u"0,00"_s, {}, {}},
                                {{}, u"Vacunas"_s, {}, {}, {}, u"TARIFA 2"_s, u"10,00"_s}}},
                              hoy);
    if (grupo == u"Recetas"_s) return recetasEjemplo(true);
    if (grupo == u"VisInf"_s) return informeEjemplo(true);
    return albaranEjemplo();
}

// Every name a template of the group may print, as the documents give them.
QSet<QString> camposConocidos(const QString& grupo) {
    QStringList nombres = u"NombreClinica NIFClinica DireccionClinica PoblacionClinica TelefonoClinica "
                          "EMailClinica LocalidadClinica"_s.split(u' ');
    if (grupo == u"DocClientes"_s || grupo == u"DocMas"_s || grupo == u"DocPlanes"_s ||
        grupo == u"Recetas"_s || grupo == u"VisInf"_s) {
        // The sample document gives every field and block, and every row field, of its group.
        const DatosDocumento d = ejemplo(grupo);
        for (const auto& [campo, valor] : d.campos)
            nombres << campo;
        for (auto it = d.filas.cbegin(); it != d.filas.cend(); ++it) {
            nombres << it.key();
            for (const auto& [campo, valor] : it->first())
                nombres << campo;
        }
        return {nombres.cbegin(), nombres.cend()};
    }
    QString c = u"serie fecha hora NombreCliente DNICliente DireccionCliente PoblacionCliente BaseImponible "
                "TotalIVA retencion total Exento Lineas idArticulo concepto cantidad pvp dcto precio importe "
                "importeBI Desglose PorcentajeIVA BaseIVA CuotaIVA "_s;
    c += grupo == QLatin1String("DocFormFra") ? u"numero Bruto"_s
                                              : u"numAlbaran mascota Vendedor numFra serieFra TotalBruto "
                                                "PorcentajeRetencion pendiente Cobros FechaCobro FormaCobro "
                                                "ImporteCobro"_s;
    if (grupo == u"DocPresupuestos"_s) c += u" numPresupuesto estado"_s;
    nombres += c.split(u' ');
    return {nombres.cbegin(), nombres.cend()};
}
} // namespace

class TestPlantillas : public QObject {
    Q_OBJECT

private slots:
    void componer() {
        const QList<std::tuple<const char*, const char*, const char*>> casos = {
            {"campo", "<p>{{a}}</p>", "<p>x</p>"},
            {"blancos dentro de las llaves", "{{ a }}/{{serie}}", "x/A"},
            {"escapado", "{{raro}}", "&lt;b&gt;&quot;Tom&quot; &amp; Jerry&lt;/b&gt;"},
            {"salto de línea", "{{direccion}}", "C/ Mayor, 1<br>28001 Madrid"},
            {"campo desconocido", "[{{nada}}]", "[]"},
            {"filas de tabla",
             "<table>{{#Lineas}}<tr><td>{{concepto}}</td><td>{{serie}}</td></tr>{{/Lineas}}</table>",
             "<table><tr><td>Vacuna</td><td>A</td></tr><tr><td>Pienso</td><td>A</td></tr></table>"},
            {"la fila tapa al documento", "{{#Lineas}}{{a}};{{/Lineas}}{{a}}", "x;propio;x"},
            {"bloque sin filas", "<{{#Cobros}}{{FormaCobro}}{{/Cobros}}>", "<>"},
            {"blanco es vacío", "{{?vacio}}no{{/vacio}}{{^vacio}}sí{{/vacio}}", "sí"},
            {"condición de bloque", "{{?Lineas}}L{{/Lineas}}{{?Cobros}}C{{/Cobros}}{{^Cobros}}-{{/Cobros}}", "L-"},
            {"condición dentro de filas", "{{#Lineas}}{{concepto}}{{?dcto}} -{{dcto}}%{{/dcto}};{{/Lineas}}",
             "Vacuna;Pienso -10%;"},
            {"llaves que no son campos", "{{ a b }} {{}} {{#}} {{ x", "{{ a b }} {{}} {{#}} {{ x"},
            {"cierre suelto se imprime", "a{{/b}}c", "a{{/b}}c"},
            {"bloque sin cerrar llega al final", "{{?a}}x{{a}}", "xx"}};
        for (const auto& [nombre, plantilla, esperado] : casos) {
            const QString hecho = componerPlantilla(QString::fromUtf8(plantilla), datosSimples());
            QVERIFY2(hecho == QString::fromUtf8(esperado), qPrintable(QString::fromUtf8(nombre) + u": "_s + hecho));
        }
    }

    void plantillaDanada() {
        QString profunda;
        for (int i = 0; i <= kMaxAnidamiento; ++i)
            profunda = u"{{?a}}"_s + profunda + u"{{/a}}"_s;
        const QList<std::pair<QString, QString>> casos = {
            {u"{{#Lineas}}{{?dcto}}{{dcto}}{{/dcto}}{{/Lineas}}"_s, {}},
            {u"x{{/Lineas}}"_s, u"la etiqueta «{{/Lineas}}» no cierra ningún bloque"_s},
            {u"{{#Lineas}}{{?dcto}}{{/Lineas}}{{/dcto}}"_s, u"se esperaba «{{/dcto}}» y aparece «{{/Lineas}}»"_s},
            {u"<table>{{#Lineas}}<tr></tr>"_s, u"falta «{{/Lineas}}» para cerrar el bloque «{{#Lineas}}»"_s},
            {profunda, u"hay más de 16 bloques anidados"_s}};
        for (const auto& [plantilla, error] : casos)
            QCOMPARE(comprobarPlantilla(plantilla), error);
    }

    // A hundred thousand open blocks are refused without exhausting the stack, and rows
    // repeated inside rows cannot make a document without end.
    void plantillaEnorme() {
        const QString html = u"{{#Lineas}}"_s.repeated(100000);
        QCOMPARE(comprobarPlantilla(html), u"hay más de 16 bloques anidados"_s);
        bool completo = true;
        const QString salida = componerPlantilla(html, datosSimples(), &completo);
        QVERIFY(!completo);
        QVERIFY(salida.size() <= kMaxDocumento + html.size());
        componerPlantilla(u"{{#Lineas}}{{concepto}}{{/Lineas}}"_s, datosSimples(), &completo);
        QVERIFY(completo);
    }

    // The shipped templates: well formed, and every name they print is one the documents give;
    // filled with no data, or with a sample of their group, no "{{" is left.
    void plantillasPorDefectoCorrectas() {
        QCOMPARE(plantillasPorDefecto().size(), 9);
        static const QRegularExpression etiqueta(u"\\{\\{\\s*[#?^/]?\\s*([A-Za-z0-9_.]+)\\s*\\}\\}"_s);
        for (const PlantillaPorDefecto& p : plantillasPorDefecto()) {
            const QString html = textoPlantillaPorDefecto(p);
            QVERIFY2(html.contains(u"</html>"_s), qPrintable(p.fichero));
            QCOMPARE(comprobarPlantilla(html), QString());
            const QSet<QString> conocidos = camposConocidos(p.grupo);
            for (auto m = etiqueta.globalMatch(html); m.hasNext();) {
                const QString nombre = m.next().captured(1);
                QVERIFY2(conocidos.contains(nombre), qPrintable(p.fichero + u": "_s + nombre));
            }
            // Filled with no data at all, nothing of the syntax is left.
            QVERIFY(!componerPlantilla(html, {}).contains(u"{{"_s));
            QVERIFY2(!componerPlantilla(html, ejemplo(p.grupo)).contains(u"{{"_s), qPrintable(p.fichero));
        }
        const QString nota = textoPlantillaPorDefecto(plantillasPorDefecto().at(1));
        QVERIFY(componerPlantilla(nota, albaranEjemplo()).contains(u"Nota de Venta: 125"_s));
    }

    // The parts of the letters, the plan and the report shown only with data.
    void plantillasDeCartasEInformes() {
        auto html = [](const QString& grupo) {
            for (const PlantillaPorDefecto& p : plantillasPorDefecto())
                if (p.grupo == grupo) return textoPlantillaPorDefecto(p);
            return QString();
        };
        auto texto = [](const QString& plantilla, const DatosDocumento& d) {
            QTextDocument documento;
            documento.setHtml(componerPlantilla(plantilla, d));
            return documento.toPlainText().simplified();
        };
        // Without the clinic's town, the date alone (the screens' tests print it with the town).
        QVERIFY(texto(html(u"DocClientes"_s), ejemplo(u"DocClientes"_s))
                    .contains(u"28036 Madrid 23 de noviembre de 2026 Estimado/a"_s));

        // The plan's conditions as a table, or a sentence when it has none.
        DatosDocumento plan = ejemplo(u"DocPlanes"_s);
        QVERIFY(texto(html(u"DocPlanes"_s), plan).contains(u"Vacunas TARIFA 2 10,00"_s));
        plan.filas.clear();
        QVERIFY(texto(html(u"DocPlanes"_s), plan)
                    .contains(u"Este plan no tiene condiciones especiales de precio."_s));

        // Each block of the report only with rows.
        const QString completo = texto(html(u"VisInf"_s), informeEjemplo(true));
        const QString sinBloques = texto(html(u"VisInf"_s), informeEjemplo(false));
        for (const QString& t : {u"ANALÍTICAS Grupo Analítica Resultado Valor normal Unidades Hemograma "
                                 "Hematocrito 45 37-55 %"_s,
                                 u"ESPECIALIDADES Especialidad Protocolo Resultado Otoscopia Oído izquierdo "
                                 "Eritema leve"_s,
                                 u"RECETAS Fecha DPS Dosificación Veterinario 23/11/2026 Otoxolan gotas"_s}) {
            QVERIFY2(completo.contains(t), qPrintable(t + u'\n' + completo));
            QVERIFY(!sinBloques.contains(t.section(u' ', 0, 0)));
        }
        QVERIFY(sinBloques.contains(u"Se rasca la oreja izquierda. Desde hace 3 días."_s));
    }

    // The installer copies the templates into the data folder and keeps the clinic's own.
    void instalacionCopiaLasPlantillas() {
        QTemporaryDir dir;
        OpcionesInstalacion op;
        op.carpeta = dir.path();
        op.administrador = u"admin"_s;
        op.clave = u"admin"_s;
        op.puestoServidor = u"RECEPCION"_s;
        QCOMPARE(crearInstalacion(op), QString());
        const QString datos = QDir(dir.path()).filePath(u"datos"_s);
        const QString albaran = datos + u"/Plantillas/DocAlbaranes/Albarán.html"_s;
        const QString factura = datos + u"/Plantillas/DocFormFra/Factura.html"_s;
        QCOMPARE(leer(albaran), textoPlantillaPorDefecto(plantillasPorDefecto().at(0)));
        QCOMPARE(leer(factura), textoPlantillaPorDefecto(plantillasPorDefecto().at(2)));

        // The clinic changed one and removed another: installing again restores only the missing one.
        QVERIFY(escribir(albaran, "<p>{{NombreCliente}} (nuestro formato)</p>"));
        QVERIFY(QFile::remove(factura));
        QCOMPARE(instalarPlantillasPorDefecto(datos), QString());
        QCOMPARE(leer(albaran), u"<p>{{NombreCliente}} (nuestro formato)</p>"_s);
        QCOMPARE(leer(factura), textoPlantillaPorDefecto(plantillasPorDefecto().at(2)));

        // A group folder that cannot be made is reported, not ignored.
        QTemporaryDir otro;
        QVERIFY(escribir(otro.filePath(u"Plantillas"_s), "no es una carpeta"));
        QVERIFY(
            instalarPlantillasPorDefecto(otro.path()).startsWith(u"No se ha podido crear la carpeta '"_s));
    }

    // The sample note with two of its lines: a discounted one and one of several units.
    void textoDelTicket() {
        DatosDocumento d = albaranEjemplo();
        d.campos += camposDe(u"NombreClinica=Clínica Veterinaria Los Álamos|NIFClinica=B86543210|"
                             "TelefonoClinica=910 123 456"_s);
        d.filas[u"Lineas"_s] = d.filas[u"Lineas"_s].mid(1, 2);
        const QString esperado = u"      Clínica Veterinaria Los Álamos\n"
                                 "              NIF: B86543210\n"
                                 "            Tel.: 910 123 456\n"
                                 "\n"
                                 "Albarán A/125\n"
                                 "Fecha: 23/11/2026  Hora: 10:15\n"
                                 "Cliente: Ana Belén Núñez Castaño\n"
                                 "Mascota: Rufo\n"
                                 "Le atendió: Dra. Lucía Ferrer Soler\n"
                                 "------------------------------------------\n"
                                 "Vacuna polivalente canina\n"
                                 "  1 x 42,00  Dto. 10,00 %            37,80\n"
                                 "Pipeta antiparasitaria perro 10-20 kg\n"
                                 "  3 x 18,50                          55,50\n"
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
                                 "         ¡Gracias por su visita!\n"_s;
        QCOMPARE(textoTicket(d), esperado);
    }

    // A narrow printer: long texts wrap, amounts that do not fit go to a line of their own,
    // and a withholding and an exempt note are printed.
    void ticketEstrecho() {
        DatosDocumento d = albaranEjemplo();
        d.campos.prepend({u"retencion"_s, u"-1.234,56"_s});
        d.campos.prepend({u"PorcentajeRetencion"_s, u"15,00"_s});
        d.campos.prepend({u"Exento"_s, u"Exento de I.V.A."_s});
        d.filas[u"Lineas"_s][0] = lineaEjemplo(
            u"9|Estudio radiológico completo con sedación incluida|1.000|1.234.567,00|12,50|||1.080.246,13"_s);
        const QStringList lineas = textoTicket(d, 32).split(QLatin1Char('\n'));
        for (const QString& l : lineas)
            QVERIFY2(l.size() <= 32, qPrintable(l));
        QVERIFY(lineas.contains(u"Estudio radiológico completo con"_s));
        QVERIFY(lineas.contains(u"sedación incluida"_s));
        QVERIFY(lineas.contains(u"  1.000 x 1.234.567,00 Dto."_s));
        QVERIFY(lineas.contains(u"  12,50 %           1.080.246,13"_s));
        QVERIFY(lineas.contains(u"Retención 15,00 %      -1.234,56"_s));
        QVERIFY(lineas.contains(u"Exento de I.V.A."_s));
        const qsizetype cobro = lineas.indexOf(u"Cobrado 23/11/2026 TARJETA"_s);
        QVERIFY(cobro > 0);
        QCOMPARE(lineas.at(cobro + 1), u"                          100,00"_s);
    }

    void codificacionCp858() {
        QCOMPARE(codificarCp858(u"ñÑáéíóúüÜ¿¡€ºª"_s),
                 QByteArray("\xA4\xA5\xA0\x82\xA1\xA2\xA3\x81\x9A\xA8\xAD\xD5\xA7\xA6"));
        // The same letters written decomposed (n + combining tilde) print the same.
        QCOMPARE(codificarCp858(u"Nun\u0303ez"_s), QByteArray("Nu\xA4"
                                                              "ez"));
        QCOMPARE(codificarCp858(u"Dvořák “x” – ő…"_s), QByteArray("Dvor\xA0k \"x\" - o..."));
        QCOMPARE(codificarCp858(u"a\tb\x01漢\n"_s), QByteArray("a b ?\n"));
    }

    void bytesParaLaImpresora() {
        const QByteArray inicio("\x1B\x40\x1B\x74\x13", 5);
        const QByteArray corte("\x1D\x56\x01", 3);
        const QByteArray dos = bytesEscPos(u"Año\nFin"_s, 2, true);
        QVERIFY(dos.startsWith(inicio));
        QCOMPARE(dos.mid(5), QByteArray("A\xA4o\nFin\n\x1B\x64\x04\x1D\x56\x01"
                                        "A\xA4o\nFin\n\x1B\x64\x04\x1D\x56\x01"));
        QCOMPARE(bytesEscPos(u"x\n"_s, 1, false), inicio + QByteArray("x\n\x1B\x64\x04"));
        QCOMPARE(bytesEscPos(u"x"_s, 0, true).count(corte), 1);
        QCOMPARE(bytesEscPos(u"x"_s, 40, true).count(corte), 9);
    }

    // The list picker on the terminal: numbered options, a wrong answer asked again, an empty
    // line or the end of input cancels.
    void selectorEnConsola() {
        // What is typed, the option taken, whether it was asked again.
        const QList<std::tuple<QByteArray, int, bool>> casos = {
            {"2\n", 1, false}, {"7\nabc\n1\n", 0, true}, {"\n", -1, false}, {"", -1, false}};
        for (const auto& [entrada, elegido, repregunta] : casos) {
            FILE* in = std::tmpfile();
            FILE* out = std::tmpfile();
            QVERIFY(in && out);
            std::fwrite(entrada.constData(), 1, size_t(entrada.size()), in);
            std::rewind(in);
            const int r = ConsoleDialogs(out, in).elegir(u"Formato del documento"_s,
                                                         u" Seleccione un Formato de Albarán"_s,
                                                         {u"Albarán"_s, u"Albarán sin precios"_s});
            std::rewind(out);
            QFile salida;
            QVERIFY(salida.open(out, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
            const QString texto = QString::fromUtf8(salida.readAll());
            std::fclose(in);
            QVERIFY2(r == elegido, entrada.constData());
            QVERIFY2(texto.startsWith(u"[ELEGIR] Formato del documento\n Seleccione un Formato de Albarán\n"
                                      "  1) Albarán\n  2) Albarán sin precios\n"_s),
                     qPrintable(texto));
            QVERIFY2(texto.contains(u"Escriba un número del 1 al 2."_s) == repregunta, qPrintable(texto));
        }
    }
};

QTEST_MAIN(TestPlantillas)
#include "test_plantillas.moc"
