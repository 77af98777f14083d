// Printing documents from the templates of the data folder and the sale ticket on the receipt
// printer (a serial one reached through a pseudo-terminal).
#include "app/conf_puesto_form.h"
#include "data/ajustes.h"
#include "datos_ejemplo.h"
#include "documents/impresor_documentos.h"
#include "documents/plantillas_defecto.h"
#include "documents/ticket.h"
#include "pdf.h"
#include "sesion.h"

#include <QDir>
#include <QGuiApplication>
#include <QTextDocument>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

namespace {
const QString kAtencion = u"¡Atención!"_s;

// The preview and printer of a workstation with a display, as far as the printing needs them.
struct SalidaGrabada final : SalidaDocumentos {
    QString destino, titulo, texto;
    bool respuesta = true; // false: the user closes the dialog

    bool vistaPrevia(const QTextDocument& d, const QString& t) override { return grabar(u"vista"_s, d, t); }
    bool imprimir(const QTextDocument& d, const QString& t) override { return grabar(u"impresora"_s, d, t); }
    bool grabar(const QString& a, const QTextDocument& d, const QString& t) {
        destino = a;
        titulo = t;
        texto = d.toPlainText();
        return respuesta;
    }
};

// A pseudo-terminal standing for the serial printer: the program writes to the slave's path,
// the test reads what arrives at the master.
struct Pseudoterminal {
    int maestro = -1, esclavo = -1;
    QString ruta;

    Pseudoterminal() {
        char nombre[256] = {};
        if (::openpty(&maestro, &esclavo, nombre, nullptr, nullptr) == 0)
            ruta = QString::fromLocal8Bit(nombre);
        if (maestro >= 0) ::fcntl(maestro, F_SETFL, ::fcntl(maestro, F_GETFL) | O_NONBLOCK);
    }
    ~Pseudoterminal() {
        if (esclavo >= 0) ::close(esclavo);
        if (maestro >= 0) ::close(maestro);
    }
    QByteArray leer() const {
        QByteArray todo;
        pollfd espera{maestro, POLLIN, 0};
        while (::poll(&espera, 1, 300) > 0) {
            char trozo[4096];
            const ssize_t n = ::read(maestro, trozo, sizeof trozo);
            if (n <= 0) break;
            todo.append(trozo, n);
        }
        return todo;
    }
};

QString textoPdf(const QString& fichero) {
    return paginasPdf(fichero).join(u'\f');
}

// The sample note through the delivery-note formats.
bool imprimirAlbaran(ImpresorDocumentos& imp, DestinoDocumento destino, const QString& pdf = {}) {
    return imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, albaranEjemplo(), destino, pdf);
}

bool escribir(const QString& ruta, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(ruta).path());
    QFile f(ruta);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}
} // namespace

class TestImpresorDocumentos : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        explicit Caso(bool conClinica = true) : Sesion(QDateTime(QDate(2026, 11, 23), QTime(10, 15))) {
            e.configuracionBD.servidor = datos.path();
            if (!conClinica) return;
            Ajustes a(db());
            a.escribir(claves::NOMBRE_CLINICA, u"Clínica Veterinaria Los Álamos"_s);
            a.escribir(claves::TELEFONO_CLINICA, u"910 123 456"_s);
        }
        QTemporaryDir datos;
        SalidaGrabada salida;

        QString plantilla(const QString& grupo, const QString& fichero) const {
            return datos.filePath(u"Plantillas/"_s + grupo + QLatin1Char('/') + fichero);
        }
    };

private slots:
    void elegirFormato() {
        Caso c;
        ImpresorDocumentos imp(c.e);
        const QString carpeta = QDir::toNativeSeparators(c.datos.filePath(u"Plantillas/DocAlbaranes"_s));

        // No folder yet: the user is told where the formats go.
        QCOMPARE(imp.elegirFormato(grupos::ALBARANES, grupos::PROMPT_ALBARAN), std::nullopt);
        QCOMPARE(c.d.mensajes().size(), 1);
        QCOMPARE(c.d.ultimo().titulo, kAtencion);
        QCOMPARE(c.d.ultimoTexto(), u"No hay ningún formato para este documento. Guarde las plantillas "
                                    "(ficheros .html) en la carpeta '"_s +
                                        carpeta + u"'."_s);

        // One format (other files and folders do not count): taken without asking.
        QVERIFY(escribir(c.plantilla(grupos::ALBARANES, u"Albarán.html"_s), "<p>{{total}}</p>"));
        QVERIFY(escribir(c.plantilla(grupos::ALBARANES, u"léame.txt"_s), "notas"));
        QVERIFY(QDir().mkpath(c.plantilla(grupos::ALBARANES, u"antiguos.html"_s)));
        c.d.limpiar();
        QCOMPARE(imp.elegirFormato(grupos::ALBARANES, grupos::PROMPT_ALBARAN), u"Albarán"_s);
        QVERIFY(c.d.mensajes().isEmpty());

        // Several: the user picks from the sorted list.
        QVERIFY(escribir(c.plantilla(grupos::ALBARANES, u"sin precios.html"_s), "<p></p>"));
        QVERIFY(escribir(c.plantilla(grupos::ALBARANES, u"A5 apaisado.HTML"_s), "<p></p>"));
        QCOMPARE(imp.formatos(grupos::ALBARANES),
                 (QStringList{u"A5 apaisado"_s, u"Albarán"_s, u"sin precios"_s}));
        c.d.opcion(2).opcion(-1);
        QCOMPARE(imp.elegirFormato(grupos::ALBARANES, grupos::PROMPT_ALBARAN), u"sin precios"_s);
        QCOMPARE(c.d.ultimo().titulo, kTituloFormato);
        QCOMPARE(c.d.ultimoTexto(), u" Seleccione un Formato de Albarán"_s);
        QCOMPARE(c.d.ultimo().opciones, imp.formatos(grupos::ALBARANES));
        // Cancelled, and not answered at all: nothing is printed.
        QCOMPARE(imp.elegirFormato(grupos::ALBARANES, grupos::PROMPT_ALBARAN), std::nullopt);
        QVERIFY(escribir(c.plantilla(grupos::FACTURAS, u"Factura.html"_s), "<p></p>"));
        QVERIFY(escribir(c.plantilla(grupos::FACTURAS, u"Factura simplificada.html"_s), "<p></p>"));
        QCOMPARE(imp.elegirFormato(grupos::FACTURAS, grupos::PROMPT_FACTURA), std::nullopt);
        QCOMPARE(c.d.ultimoTexto(), u" Seleccione un Formato de Factura"_s);
        QCOMPARE(c.d.sinRespuesta(), 1);
    }

    // The default delivery note saved as PDF: the client, a line, and the clinic's data taken
    // from the settings.
    void pdfDelAlbaran() {
        Caso c;
        QCOMPARE(instalarPlantillasPorDefecto(c.datos.path()), QString());
        ImpresorDocumentos imp(c.e);
        const QString fichero = c.datos.filePath(u"albaran.pdf"_s);
        QVERIFY(imprimirAlbaran(imp, DestinoDocumento::PDF, fichero));
        QVERIFY2(c.d.mensajes().isEmpty(), qPrintable(c.d.textos().join(QLatin1Char('\n'))));
        QCOMPARE(imp.ultimoTitulo(), u"Albarán A/125"_s);
        QFile f(fichero);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QVERIFY(f.read(5) == "%PDF-");
        if (!hayPdftotext()) QSKIP("pdftotext (poppler-utils) no está instalado");
        const QString texto = textoPdf(fichero);
        for (const QString& t : {u"Ana Belén Núñez Castaño"_s, u"Pipeta antiparasitaria perro 10-20 kg"_s,
                                 u"Clínica Veterinaria Los Álamos"_s, u"Tel.: 910 123 456"_s, u"153,20 €"_s})
            QVERIFY2(texto.contains(t), qPrintable(t + u'\n' + texto));
        // A withholding and an exemption appear when the note has them.
        DatosDocumento d = albaranEjemplo();
        d.campos.prepend({u"retencion"_s, u"-19,30"_s});
        d.campos.prepend({u"PorcentajeRetencion"_s, u"15,00"_s});
        d.campos.prepend({u"Exento"_s, u"Exento de I.V.A."_s});
        QVERIFY(imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, d, DestinoDocumento::PDF, fichero));
        const QString otro = textoPdf(fichero);
        QVERIFY2(otro.contains(QRegularExpression(u"Retención \\(15,00 %\\) +-19,30"_s)), qPrintable(otro));
        QVERIFY(otro.contains(u"Exento de I.V.A."_s));
    }

    // A long document gets its page numbers; the user picks the PDF file (".pdf" is added).
    void pdfElegidoYPaginado() {
        Caso c(false);
        QVERIFY(
            escribir(c.plantilla(grupos::NOTA_VENTA, u"Larga.html"_s),
                     "<h1>{{NombreCliente}}</h1><table>{{#Lineas}}<tr><td>{{concepto}}</td></tr>{{/Lineas}}"
                     "</table>"));
        DatosDocumento d = albaranEjemplo();
        QList<CamposDocumento>& lineas = d.filas[u"Lineas"_s];
        for (int i = 0; i < 200; ++i)
            lineas.append(lineas.first());
        ImpresorDocumentos imp(c.e);
        const QString elegido = c.datos.filePath(u"Documentos/nota"_s);
        QVERIFY(QDir().mkpath(QFileInfo(elegido).path()));
        c.d.fichero(elegido);
        QVERIFY(imp.imprimir(grupos::NOTA_VENTA, QString(), d, DestinoDocumento::PDF));
        QCOMPARE(c.d.mensajes().size(), 1);
        QCOMPARE(c.d.ultimo().titulo, u"Guardar el documento en PDF"_s);
        QVERIFY(QFileInfo::exists(elegido + u".pdf"_s));
        // The picker cancelled: nothing saved, nothing said.
        c.d.limpiar();
        QVERIFY(!imp.imprimir(grupos::NOTA_VENTA, QString(), d, DestinoDocumento::PDF));
        QCOMPARE(c.d.mensajes().size(), 1);
        // Every page says which it is, of how many.
        if (!hayPdftotext()) QSKIP("pdftotext (poppler-utils) no está instalado");
        const QString texto = textoPdf(elegido + u".pdf"_s);
        const QRegularExpressionMatch primera = QRegularExpression(u"Página 1 de (\\d+)"_s).match(texto);
        QVERIFY2(primera.hasMatch(), qPrintable(texto));
        const int paginas = primera.captured(1).toInt();
        QVERIFY(paginas >= 2);
        QVERIFY(texto.contains(u"Página %1 de %1"_s.arg(paginas)));
    }

    // Several documents in one run: one format picked for all, each on pages of its own and
    // numbered on its own; nothing asked for an empty list, nothing written when cancelled.
    void variosDocumentos() {
        Caso c(false);
        QVERIFY(escribir(
            c.plantilla(grupos::MASCOTAS, u"Carta.html"_s),
            "<p>Carta para {{Mascota}}</p>{{#Lineas}}<p>{{Mascota}} {{n}}</p>{{/Lineas}}<p>Fin.</p>"));
        QVERIFY(escribir(c.plantilla(grupos::MASCOTAS, u"Otra.html"_s), "<p>Otra</p>"));
        QList<DatosDocumento> cartas;
        for (const QString& nombre : {u"Rufo"_s, u"Misi"_s, u"Toby"_s}) {
            DatosDocumento d;
            d.campos = {{u"Mascota"_s, nombre}};
            cartas << d;
        }
        for (int i = 0; i < 50; ++i) // Misi's letter takes two pages
            cartas[1].filas[u"Lineas"_s].append({{u"n"_s, QString::number(i)}});
        ImpresorDocumentos imp(c.e);
        const QString pdf = c.datos.filePath(u"cartas.pdf"_s);
        QVERIFY(
            !imp.imprimirVarios(grupos::MASCOTAS, grupos::PROMPT_DOCUMENTO, {}, DestinoDocumento::PDF, pdf));
        QVERIFY(c.d.mensajes().isEmpty());
        c.d.opcion(-1);
        QVERIFY(!imp.imprimirVarios(grupos::MASCOTAS, grupos::PROMPT_DOCUMENTO, cartas, DestinoDocumento::PDF,
                                    pdf));
        QVERIFY(!QFileInfo::exists(pdf));

        c.d.limpiar();
        c.d.opcion(0);
        QVERIFY(imp.imprimirVarios(grupos::MASCOTAS, grupos::PROMPT_DOCUMENTO, cartas, DestinoDocumento::PDF,
                                   pdf));
        QCOMPARE(c.d.mensajes().size(), 1); // the format, asked once
        QCOMPARE(c.d.ultimoTexto(), u" Seleccione un documento a imprimir"_s);
        QCOMPARE(imp.ultimoTitulo(), u"Carta"_s);
        if (!hayPdftotext()) QSKIP("pdftotext (poppler-utils) no está instalado");
        const QStringList paginas = paginasPdf(pdf);
        QCOMPARE(paginas.size(), 4);
        const QStringList primeras = {u"Carta para Rufo"_s, u"Carta para Misi"_s, u"Misi "_s,
                                      u"Carta para Toby"_s};
        for (int i = 0; i < 4; ++i)
            QVERIFY2(paginas.at(i).trimmed().startsWith(primeras.at(i)), qPrintable(paginas.at(i)));
        QVERIFY(paginas.at(0).contains(u"Fin."_s) && !paginas.at(0).contains(u"Página"_s));
        QVERIFY(paginas.at(1).contains(u"Página 1 de 2"_s) && !paginas.at(1).contains(u"Fin."_s));
        QVERIFY(paginas.at(2).contains(u"Página 2 de 2"_s) && paginas.at(2).contains(u"Fin."_s));
        QVERIFY(!paginas.at(3).contains(u"Página"_s));
    }

    // The default prescription: two recipes on one A4 page, or one and a blank lower half;
    // several pages of them in one run.
    void recetasEnUnaPagina() {
        Caso c;
        QCOMPARE(instalarPlantillasPorDefecto(c.datos.path()), QString());
        ImpresorDocumentos imp(c.e);
        const QString pdf = c.datos.filePath(u"recetas.pdf"_s);
        const QStringList primera = {u"Dra. Lucía Ferrer Soler"_s,
                                     u"28-1234"_s,
                                     u"C/ Doctor Fléming, 23, 2º B"_s,
                                     u"Amoxicilina 250 mg comprimidos"_s,
                                     u"Dosis: 1 comprimido cada 12 horas durante 7 días"_s,
                                     u"Amoxicilina: 1 comprimido cada 12 horas"_s};
        const QStringList segunda = {u"Dr. Tomás Ibarra Gil"_s,
                                     u"45-0987"_s,
                                     u"45600 Talavera (Toledo)"_s,
                                     u"24/11/2026"_s,
                                     u"Dosis: 0,1 mg/kg una vez al día"_s,
                                     u"Meloxicam: con comida"_s};
        QVERIFY(imp.imprimir(grupos::RECETAS, grupos::PROMPT_RECETA, recetasEjemplo(true),
                             DestinoDocumento::PDF, pdf));
        QVERIFY2(c.d.mensajes().isEmpty(), qPrintable(c.d.textos().join(u'\n')));
        if (!hayPdftotext()) QSKIP("pdftotext (poppler-utils) no está instalado");
        QStringList paginas = paginasPdf(pdf);
        QCOMPARE(paginas.size(), 1);
        for (const QString& t : primera + segunda)
            QVERIFY2(paginas.first().contains(t), qPrintable(t + u'\n' + paginas.first()));
        QCOMPARE(paginas.first().count(u"RECETA VETERINARIA"_s), 2);
        QCOMPARE(paginas.first().count(u"Clínica Veterinaria Los Álamos"_s), 2);

        QVERIFY(imp.imprimirVarios(grupos::RECETAS, grupos::PROMPT_RECETA,
                                   {recetasEjemplo(false), recetasEjemplo(true)}, DestinoDocumento::PDF,
                                   pdf));
        paginas = paginasPdf(pdf);
        QCOMPARE(paginas.size(), 2);
        for (const QString& t : primera)
            QVERIFY2(paginas.first().contains(t), qPrintable(t + u'\n' + paginas.first()));
        for (const QString& t : {u"RECETA VETERINARIA"_s, u"Dosis:"_s, u"Firma del veterinario"_s})
            QCOMPARE(paginas.first().count(t), 1);
        QVERIFY(paginas.at(1).contains(u"Meloxicam 1,5 mg/ml suspensión"_s));
        QCOMPARE(paginas.at(1).count(u"RECETA VETERINARIA"_s), 2);
        QVERIFY(!paginas.join(u'\f').contains(u"Página"_s)); // each page a document of its own
    }

    // A template that cannot be used or a file that cannot be written: said, and no file left.
    void pdfRechazado() {
        // Template, PDF file and message; <plantilla> and <pdf> stand for the paths, and a message
        // ending in a line break is followed by the system's reason.
        const QList<std::tuple<QByteArray, QString, QString>> casos = {
            {"<table>{{#Lineas}}<tr><td>{{concepto}}</td></tr></table>", u"x.pdf"_s,
             u"La plantilla '<plantilla>' está dañada: falta «{{/Lineas}}» para cerrar el bloque "
             "«{{#Lineas}}». Corríjala o elija otro formato."_s},
            {" \n", u"x.pdf"_s, u"La plantilla '<plantilla>' está vacía."_s},
            {"<p>{{total}}</p>", u"no existe/albaran.pdf"_s,
             u"No se ha podido guardar el documento en el fichero '<pdf>'.\n"_s}};
        for (auto [contenido, fichero, mensaje] : casos) {
            Caso c;
            const QString ruta = c.plantilla(grupos::ALBARANES, u"Albarán.html"_s);
            QVERIFY(escribir(ruta, contenido));
            const QString pdf = c.datos.filePath(fichero);
            mensaje.replace(u"<plantilla>"_s, QDir::toNativeSeparators(ruta))
                .replace(u"<pdf>"_s, QDir::toNativeSeparators(pdf));
            ImpresorDocumentos imp(c.e);
            QVERIFY(!imprimirAlbaran(imp, DestinoDocumento::PDF, pdf));
            QCOMPARE(c.d.mensajes().size(), 1);
            QCOMPARE(c.d.ultimo().titulo, kAtencion);
            QCOMPARE(mensaje.endsWith(u'\n') ? c.d.ultimoTexto().left(mensaje.size()) : c.d.ultimoTexto(),
                     mensaje);
            QVERIFY(!QFileInfo::exists(pdf));
        }
    }

    // A template saved by an old editor in Windows-1252 still prints its accents.
    void plantillaEnWindows1252() {
        Caso c;
        QVERIFY(escribir(c.plantilla(grupos::ALBARANES, u"Viejo.html"_s),
                         "<p>N\xBA {{numAlbaran}} \x80 \xE1</p>"));
        ImpresorDocumentos imp(c.e);
        QCOMPARE(imp.leerPlantilla(grupos::ALBARANES, u"Viejo"_s), u"<p>Nº {{numAlbaran}} € á</p>"_s);
    }

    // Preview and printer: on a workstation without a display they are refused before anything
    // is asked; with one, the composed document goes there with its title.
    void vistaPreviaEImpresora() {
        Caso c;
        QVERIFY(escribir(c.plantilla(grupos::ALBARANES, u"Albarán.html"_s),
                         "<p>{{NombreClinica}}: {{NombreCliente}}</p>"));
        QVERIFY(escribir(c.plantilla(grupos::ALBARANES, u"Otro.html"_s), "<p></p>"));
        ImpresorDocumentos imp(c.e);
        QVERIFY(!imprimirAlbaran(imp, DestinoDocumento::VistaPrevia));
        QVERIFY(!imprimirAlbaran(imp, DestinoDocumento::Impresora));
        QCOMPARE(c.d.textos(),
                 (QStringList{u"No se puede mostrar la vista previa en este puesto porque Pramelvix se "
                              "está ejecutando sin pantalla. Guarde el documento en PDF."_s,
                              u"No se puede imprimir en este puesto porque Pramelvix se está ejecutando "
                              "sin pantalla. Guarde el documento en PDF."_s}));
        QCOMPARE(c.d.ultimo().titulo, kAtencion);

        c.e.salidaDocumentos = &c.salida;
        c.d.limpiar();
        c.d.opcion(0).opcion(0);
        QVERIFY(imprimirAlbaran(imp, DestinoDocumento::VistaPrevia));
        QCOMPARE(c.salida.destino, u"vista"_s);
        QCOMPARE(c.salida.titulo, u"Albarán A/125"_s);
        QCOMPARE(c.salida.texto, u"Clínica Veterinaria Los Álamos: Ana Belén Núñez Castaño"_s);
        c.salida.respuesta = false;
        QVERIFY(!imprimirAlbaran(imp, DestinoDocumento::Impresora));
        QCOMPARE(c.salida.destino, u"impresora"_s);
    }

    // A ticket that cannot be printed says why, and nothing reaches the printer.
    void ticketRechazado() {
        Caso c;
        Pseudoterminal pty;
        const QString revise = u"Revise los 'Datos de la configuración del puesto'."_s;
        const QString ninguna =
            u"No hay ninguna impresora de tickets configurada en este puesto. Configúrela "
            "en los 'Datos de la configuración del puesto'."_s;
        const QString sistema = ConfPuestoForm::kImpresoraSistema, serie = ConfPuestoForm::kImpresoraSerie;
        // TIPO, IMPRESORA, PUERTO, BITSDATOS, PARIDAD (the rest as by default), and the message;
        // one ending in a line break is followed by the system's reason.
        const QList<std::pair<QStringList, QString>> casos = {
            {{ConfPuestoForm::kSinImpresora}, ninguna},
            {{sistema},
             u"No se ha elegido la impresora de tickets de este puesto. Elíjala en los 'Datos de la "
             "configuración del puesto'."_s},
            {{sistema, u"Ticketera que no existe"_s},
             u"No se encuentra la impresora de tickets 'Ticketera que no existe' en este equipo. "_s +
                 revise},
            {{serie, {}, u"/dev/ttyNoExiste"_s},
             u"No se ha podido abrir el puerto '/dev/ttyNoExiste' de la impresora de tickets.\n"_s},
            // The configuration's rule: COM1 to COM16 only.
            {{serie, {}, u"COM99"_s},
             u"El puerto 'COM99' de la impresora de tickets no es válido. "_s + revise},
            {{serie, {}, pty.ruta, u"4"_s},
             u"El puerto '"_s + pty.ruta + u"' de la impresora de tickets no admite 4 bits de datos. "_s +
                 revise},
            {{serie, {}, pty.ruta, u"8"_s, u"RARA"_s},
             u"El puerto '"_s + pty.ruta + u"' de la impresora de tickets no admite la paridad 'RARA'. "_s +
                 revise}};
        for (const auto& [ajustes, mensaje] : casos) {
            ImpresoraTickets& t = c.e.impresoraTickets;
            t = ConfPuestoForm::impresoraPorDefecto();
            t.TIPO = ajustes.value(0);
            t.IMPRESORA = ajustes.value(1);
            t.PUERTO = ajustes.value(2);
            if (ajustes.size() > 3) t.BITSDATOS = ajustes.at(3);
            if (ajustes.size() > 4) t.PARIDAD = ajustes.at(4);
            c.d.limpiar();
            QVERIFY(!imprimirTicket(c.e, albaranEjemplo()));
            QCOMPARE(c.d.mensajes().size(), 1);
            QCOMPARE(c.d.ultimo().titulo, kAtencion);
            QCOMPARE(mensaje.endsWith(u'\n') ? c.d.ultimoTexto().left(mensaje.size()) : c.d.ultimoTexto(),
                     mensaje);
        }
        QVERIFY(pty.leer().isEmpty());
    }

    // The ticket on a serial ESC/POS printer: the text in PC858, two copies each cut.
    void ticketPorPuertoSerie() {
        Caso c;
        Pseudoterminal pty;
        QVERIFY(!pty.ruta.isEmpty());
        ImpresoraTickets& t = c.e.impresoraTickets;
        t = ConfPuestoForm::impresoraPorDefecto();
        t.TIPO = ConfPuestoForm::kImpresoraSerie;
        t.PUERTO = pty.ruta;
        t.VELOCIDAD = u"19200"_s;
        t.NUMPASADAS = u"2"_s;
        t.CORTEPAPEL = u"SI"_s;
        QVERIFY2(imprimirTicket(c.e, albaranEjemplo()), qPrintable(c.d.textos().join(QLatin1Char('\n'))));
        QVERIFY(c.d.mensajes().isEmpty());
        const QByteArray recibido = pty.leer();
        QVERIFY(recibido.contains("Cliente: Ana Bel\x82n N\xA3\xA4"
                                  "ez Casta\xA4o\n"));
        QVERIFY(recibido.contains("TOTAL                             153,20 \xD5\n"));
        QCOMPARE(recibido.count(QByteArray("\x1D\x56\x01")), 2);
    }
};

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestImpresorDocumentos prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "test_impresor_documentos.moc"
