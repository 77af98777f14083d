// Printing documents from the templates of the data folder (choosing the format, PDF files,
// damaged templates, workstations without a display) and the sale ticket on the receipt
// printer (none configured, a system printer that is missing, a serial printer reached
// through a pseudo-terminal). With PRAMELVIX_CAPTURAS set to a folder, the default
// templates filled with sample data are saved there as albaran-pdf.png, nota-venta-pdf.png
// and factura-pdf.png.
#include "app/conf_puesto_form.h"
#include "datos_ejemplo.h"
#include "documents/datos_clinica.h"
#include "documents/impresor_documentos.h"
#include "documents/plantillas_defecto.h"
#include "documents/ticket.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QDir>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTextDocument>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

namespace {
const QString kAtencion = QStringLiteral("¡Atención!");

// The preview and printer of a workstation with a display, as far as the printing needs them.
class SalidaGrabada final : public SalidaDocumentos {
public:
    bool vistaPrevia(const QTextDocument& d, const QString& titulo) override {
        return grabar(QStringLiteral("vista previa"), d, titulo);
    }
    bool imprimir(const QTextDocument& d, const QString& titulo) override {
        return grabar(QStringLiteral("impresora"), d, titulo);
    }
    QString destino, titulo, texto;
    bool respuesta = true;

private:
    bool grabar(const QString& a, const QTextDocument& d, const QString& t) {
        destino = a;
        titulo = t;
        texto = d.toPlainText();
        return respuesta;
    }
};

// A pseudo-terminal standing for the serial printer: the program writes to the slave's path,
// the test reads what arrives at the master.
class Pseudoterminal {
public:
    Pseudoterminal() {
        char nombre[256] = {};
        if (::openpty(&maestro_, &esclavo_, nombre, nullptr, nullptr) == 0)
            ruta_ = QString::fromLocal8Bit(nombre);
        if (maestro_ >= 0) ::fcntl(maestro_, F_SETFL, ::fcntl(maestro_, F_GETFL) | O_NONBLOCK);
    }
    ~Pseudoterminal() {
        if (esclavo_ >= 0) ::close(esclavo_);
        if (maestro_ >= 0) ::close(maestro_);
    }
    const QString& ruta() const { return ruta_; }
    QByteArray leer() const {
        QByteArray todo;
        pollfd espera{maestro_, POLLIN, 0};
        while (::poll(&espera, 1, 300) > 0) {
            char trozo[4096];
            const ssize_t n = ::read(maestro_, trozo, sizeof trozo);
            if (n <= 0) break;
            todo.append(trozo, n);
        }
        return todo;
    }

private:
    int maestro_ = -1;
    int esclavo_ = -1;
    QString ruta_;
};

QString textoPdf(const QString& fichero) {
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), fichero, QStringLiteral("-")});
    if (!p.waitForFinished(30000) || p.exitCode() != 0) return {};
    return QString::fromUtf8(p.readAllStandardOutput());
}

bool escribir(const QString& ruta, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(ruta).path());
    QFile f(ruta);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}
} // namespace

class TestImpresorDocumentos : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(10, 15))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        QTemporaryDir datos;
        std::unique_ptr<Entorno> e;
        SalidaGrabada salida;

        QString plantilla(const QString& grupo, const QString& fichero) const {
            return datos.filePath(QStringLiteral("Plantillas/") + grupo + QLatin1Char('/') + fichero);
        }
    };

    std::unique_ptr<Caso> caso(bool conClinica = true) {
        auto c = std::make_unique<Caso>();
        c->e = std::make_unique<Entorno>(c->t.db(), c->d, reloj_);
        c->e->configuracionBD.servidor = c->datos.path();
        if (conClinica) {
            Ajustes a(c->t.db());
            a.escribir(claves::NOMBRE_CLINICA, QStringLiteral("Clínica Veterinaria Los Álamos"));
            a.escribir(claves::TELEFONO_CLINICA, QStringLiteral("910 123 456"));
        }
        return c;
    }

private slots:
    void elegirFormato() {
        auto c = caso();
        ImpresorDocumentos imp(*c->e);
        const QString carpeta =
            QDir::toNativeSeparators(c->datos.filePath(QStringLiteral("Plantillas/DocAlbaranes")));
        QCOMPARE(imp.carpetaGrupo(grupos::ALBARANES),
                 c->datos.filePath(QStringLiteral("Plantillas/DocAlbaranes")));

        // No folder yet: the user is told where the formats go.
        QCOMPARE(imp.elegirFormato(grupos::ALBARANES, grupos::PROMPT_ALBARAN), std::nullopt);
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, kAtencion);
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No hay ningún formato para este documento. Guarde las plantillas "
                                "(ficheros .html) en la carpeta '") +
                     carpeta + QStringLiteral("'."));

        // One format (other files and folders do not count): taken without asking.
        QVERIFY(
            escribir(c->plantilla(grupos::ALBARANES, QStringLiteral("Albarán.html")), "<p>{{total}}</p>"));
        QVERIFY(escribir(c->plantilla(grupos::ALBARANES, QStringLiteral("léame.txt")), "notas"));
        QVERIFY(QDir().mkpath(c->plantilla(grupos::ALBARANES, QStringLiteral("antiguos.html"))));
        c->d.limpiar();
        QCOMPARE(imp.elegirFormato(grupos::ALBARANES, grupos::PROMPT_ALBARAN), QStringLiteral("Albarán"));
        QVERIFY(c->d.mensajes().isEmpty());

        // Several: the user picks from the sorted list.
        QVERIFY(escribir(c->plantilla(grupos::ALBARANES, QStringLiteral("sin precios.html")), "<p></p>"));
        QVERIFY(escribir(c->plantilla(grupos::ALBARANES, QStringLiteral("A5 apaisado.HTML")), "<p></p>"));
        QCOMPARE(imp.formatos(grupos::ALBARANES),
                 (QStringList{QStringLiteral("A5 apaisado"), QStringLiteral("Albarán"),
                              QStringLiteral("sin precios")}));
        c->d.opcion(2).opcion(-1);
        QCOMPARE(imp.elegirFormato(grupos::ALBARANES, grupos::PROMPT_ALBARAN), QStringLiteral("sin precios"));
        QCOMPARE(c->d.ultimo().titulo, kTituloFormato);
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral(" Seleccione un Formato de Albarán"));
        QCOMPARE(c->d.ultimo().opciones, imp.formatos(grupos::ALBARANES));
        // Cancelled, and not answered at all: nothing is printed.
        QCOMPARE(imp.elegirFormato(grupos::ALBARANES, grupos::PROMPT_ALBARAN), std::nullopt);
        QCOMPARE(imp.elegirFormato(grupos::FACTURAS, grupos::PROMPT_FACTURA), std::nullopt);
        QCOMPARE(c->d.sinRespuesta(), 0);
        QVERIFY(escribir(c->plantilla(grupos::FACTURAS, QStringLiteral("Factura.html")), "<p></p>"));
        QVERIFY(
            escribir(c->plantilla(grupos::FACTURAS, QStringLiteral("Factura simplificada.html")), "<p></p>"));
        QCOMPARE(imp.elegirFormato(grupos::FACTURAS, grupos::PROMPT_FACTURA), std::nullopt);
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral(" Seleccione un Formato de Factura"));
        QCOMPARE(c->d.sinRespuesta(), 1);
    }

    // The default delivery note saved as PDF: the client, a line, and the clinic's data taken
    // from the settings.
    void pdfDelAlbaran() {
        auto c = caso();
        QCOMPARE(instalarPlantillasPorDefecto(c->datos.path()), QString());
        ImpresorDocumentos imp(*c->e);
        const QString fichero = c->datos.filePath(QStringLiteral("albaran.pdf"));
        QVERIFY(imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, albaranEjemplo(),
                             DestinoDocumento::PDF, fichero));
        QVERIFY2(c->d.mensajes().isEmpty(), qPrintable(c->d.textos().join(QLatin1Char('\n'))));
        QCOMPARE(imp.ultimoTitulo(), QStringLiteral("Albarán A/125"));
        QFile f(fichero);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QVERIFY(f.read(5) == "%PDF-");
        if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
            QSKIP("pdftotext (poppler-utils) no está instalado");
        const QString texto = textoPdf(fichero);
        QVERIFY2(texto.contains(QStringLiteral("Ana Belén Núñez Castaño")), qPrintable(texto));
        QVERIFY(texto.contains(QStringLiteral("Pipeta antiparasitaria perro 10-20 kg")));
        QVERIFY(texto.contains(QStringLiteral("Clínica Veterinaria Los Álamos")));
        QVERIFY(texto.contains(QStringLiteral("Tel.: 910 123 456")));
        QVERIFY(texto.contains(QStringLiteral("153,20 €")));
        // No withholding, no exemption: neither line is printed; one page, so no page numbers.
        QVERIFY(!texto.contains(QStringLiteral("Retención")));
        QVERIFY(!texto.contains(QStringLiteral("Exento")));
        QVERIFY(!texto.contains(QStringLiteral("Página")));

        // A withholding and an exemption appear when the note has them.
        DatosDocumento d = albaranEjemplo();
        d.campos.prepend({QStringLiteral("retencion"), QStringLiteral("-19,30")});
        d.campos.prepend({QStringLiteral("PorcentajeRetencion"), QStringLiteral("15,00")});
        d.campos.prepend({QStringLiteral("Exento"), QStringLiteral("Exento de I.V.A.")});
        QVERIFY(imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, d, DestinoDocumento::PDF, fichero));
        const QString otro = textoPdf(fichero);
        QVERIFY2(otro.contains(QRegularExpression(QStringLiteral("Retención \\(15,00 %\\) +-19,30"))),
                 qPrintable(otro));
        QVERIFY(otro.contains(QStringLiteral("Exento de I.V.A.")));
    }

    // A long document gets its page numbers; the user picks the PDF file (".pdf" is added).
    void pdfElegidoYPaginado() {
        auto c = caso(false);
        QVERIFY(
            escribir(c->plantilla(grupos::NOTA_VENTA, QStringLiteral("Larga.html")),
                     "<h1>{{NombreCliente}}</h1><table>{{#Lineas}}<tr><td>{{concepto}}</td></tr>{{/Lineas}}"
                     "</table>"));
        DatosDocumento d = albaranEjemplo();
        QList<CamposDocumento>& lineas = d.filas[QStringLiteral("Lineas")];
        for (int i = 0; i < 200; ++i)
            lineas.append(lineas.first());
        ImpresorDocumentos imp(*c->e);
        const QString elegido = c->datos.filePath(QStringLiteral("Documentos/nota"));
        QVERIFY(QDir().mkpath(QFileInfo(elegido).path()));
        c->d.fichero(elegido);
        QVERIFY(imp.imprimir(grupos::NOTA_VENTA, QString(), d, DestinoDocumento::PDF));
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Guardar el documento en PDF"));
        const QString texto = textoPdf(elegido + QStringLiteral(".pdf"));
        QVERIFY(texto.contains(QStringLiteral("Página 1 de ")));
        QVERIFY(texto.contains(QStringLiteral("Ana Belén Núñez Castaño")));
        // The picker cancelled: nothing saved, nothing said.
        c->d.limpiar();
        QVERIFY(!imp.imprimir(grupos::NOTA_VENTA, QString(), d, DestinoDocumento::PDF));
        QCOMPARE(c->d.mensajes().size(), 1);
    }

    void plantillaInservible_data() {
        QTest::addColumn<QByteArray>("contenido");
        QTest::addColumn<QString>("mensaje");
        QTest::newRow("dañada")
            << QByteArray("<table>{{#Lineas}}<tr><td>{{concepto}}</td></tr></table>")
            << "está dañada: falta «{{/Lineas}}» para cerrar el bloque «{{#Lineas}}». Corríjala "
               "o elija otro formato.";
        QTest::newRow("vacía") << QByteArray(" \n") << "está vacía.";
    }
    void plantillaInservible() {
        QFETCH(QByteArray, contenido);
        QFETCH(QString, mensaje);
        auto c = caso();
        const QString ruta = c->plantilla(grupos::ALBARANES, QStringLiteral("Albarán.html"));
        QVERIFY(escribir(ruta, contenido));
        const QString pdf = c->datos.filePath(QStringLiteral("x.pdf"));
        ImpresorDocumentos imp(*c->e);
        QVERIFY(!imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, albaranEjemplo(),
                              DestinoDocumento::PDF, pdf));
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, kAtencion);
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("La plantilla '") + QDir::toNativeSeparators(ruta) +
                                         QStringLiteral("' ") + mensaje);
        QVERIFY(!QFileInfo::exists(pdf));
    }

    // A template saved by an old editor in Windows-1252 still prints its accents.
    void plantillaEnWindows1252() {
        auto c = caso();
        QVERIFY(escribir(c->plantilla(grupos::ALBARANES, QStringLiteral("Viejo.html")),
                         "<p>N\xBA {{numAlbaran}} \x80 \xE1</p>"));
        ImpresorDocumentos imp(*c->e);
        QCOMPARE(imp.leerPlantilla(grupos::ALBARANES, QStringLiteral("Viejo")),
                 QStringLiteral("<p>Nº {{numAlbaran}} € á</p>"));
    }

    void pdfQueNoSePuedeEscribir() {
        auto c = caso();
        QVERIFY(
            escribir(c->plantilla(grupos::ALBARANES, QStringLiteral("Albarán.html")), "<p>{{total}}</p>"));
        const QString fichero = c->datos.filePath(QStringLiteral("no existe/albaran.pdf"));
        ImpresorDocumentos imp(*c->e);
        QVERIFY(!imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, albaranEjemplo(),
                              DestinoDocumento::PDF, fichero));
        QCOMPARE(c->d.mensajes().size(), 1);
        QVERIFY2(c->d.ultimoTexto().startsWith(
                     QStringLiteral("No se ha podido guardar el documento en el fichero '") +
                     QDir::toNativeSeparators(fichero) + QStringLiteral("'.\n")),
                 qPrintable(c->d.ultimoTexto()));
        QVERIFY(!QFileInfo::exists(fichero));
    }

    // Preview and printer: on a workstation without a display they are refused before anything
    // is asked; with one, the composed document goes there with its title.
    void vistaPreviaEImpresora() {
        auto c = caso();
        QVERIFY(escribir(c->plantilla(grupos::ALBARANES, QStringLiteral("Albarán.html")),
                         "<p>{{NombreClinica}}: {{NombreCliente}}</p>"));
        QVERIFY(escribir(c->plantilla(grupos::ALBARANES, QStringLiteral("Otro.html")), "<p></p>"));
        ImpresorDocumentos imp(*c->e);
        QVERIFY(!imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, albaranEjemplo(),
                              DestinoDocumento::VistaPrevia));
        QVERIFY(!imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, albaranEjemplo(),
                              DestinoDocumento::Impresora));
        QCOMPARE(c->d.textos(),
                 (QStringList{
                     QStringLiteral("No se puede mostrar la vista previa en este puesto porque Pramelvix se "
                                    "está ejecutando sin pantalla. Guarde el documento en PDF."),
                     QStringLiteral("No se puede imprimir en este puesto porque Pramelvix se está ejecutando "
                                    "sin pantalla. Guarde el documento en PDF.")}));
        QCOMPARE(c->d.ultimo().titulo, kAtencion);

        c->e->salidaDocumentos = &c->salida;
        c->d.limpiar();
        c->d.opcion(0).opcion(0);
        QVERIFY(imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, albaranEjemplo(),
                             DestinoDocumento::VistaPrevia));
        QCOMPARE(c->salida.destino, QStringLiteral("vista previa"));
        QCOMPARE(c->salida.titulo, QStringLiteral("Albarán A/125"));
        QCOMPARE(c->salida.texto, QStringLiteral("Clínica Veterinaria Los Álamos: Ana Belén Núñez Castaño"));
        c->salida.respuesta = false; // the user closes the printer dialog
        QVERIFY(!imp.imprimir(grupos::ALBARANES, grupos::PROMPT_ALBARAN, albaranEjemplo(),
                              DestinoDocumento::Impresora));
        QCOMPARE(c->salida.destino, QStringLiteral("impresora"));
        QCOMPARE(c->d.sinRespuesta(), 0);
    }

    void datosDeLaClinica() {
        auto c = caso();
        Ajustes a(c->t.db());
        a.escribir(claves::EMAIL_CLINICA, QStringLiteral(" info@vetlosalamos.es "));
        QCOMPARE(camposClinica(a),
                 (CamposDocumento{
                     {QStringLiteral("NombreClinica"), QStringLiteral("Clínica Veterinaria Los Álamos")},
                     {QStringLiteral("NIFClinica"), QString()},
                     {QStringLiteral("DireccionClinica"), QString()},
                     {QStringLiteral("PoblacionClinica"), QString()},
                     {QStringLiteral("TelefonoClinica"), QStringLiteral("910 123 456")},
                     {QStringLiteral("EMailClinica"), QStringLiteral("info@vetlosalamos.es")}}));
        // What the document gives itself is kept.
        DatosDocumento d;
        d.campos = {{QStringLiteral("NombreClinica"), QStringLiteral("Sucursal Centro")}};
        anyadirDatosClinica(a, d);
        QCOMPARE(d.valor(QStringLiteral("NombreClinica")), QStringLiteral("Sucursal Centro"));
        QCOMPARE(d.valor(QStringLiteral("TelefonoClinica")), QStringLiteral("910 123 456"));
        QCOMPARE(d.campos.size(), 6);
    }

    void ticketSinImpresora_data() {
        QTest::addColumn<QString>("tipo");
        QTest::newRow("sin impresora") << ConfPuestoForm::kSinImpresora;
        QTest::newRow("sin configurar") << QString();
        QTest::newRow("tipo desconocido") << QStringLiteral("7");
    }
    void ticketSinImpresora() {
        QFETCH(QString, tipo);
        auto c = caso();
        c->e->impresoraTickets.TIPO = tipo;
        QVERIFY(!imprimirTicket(*c->e, albaranEjemplo()));
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, kAtencion);
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No hay ninguna impresora de tickets configurada en este puesto. "
                                "Configúrela en los 'Datos de la configuración del puesto'."));
    }

    void ticketImpresoraDelSistema() {
        auto c = caso();
        c->e->impresoraTickets.TIPO = ConfPuestoForm::kImpresoraSistema;
        QVERIFY(!imprimirTicket(*c->e, albaranEjemplo()));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No se ha elegido la impresora de tickets de este puesto. Elíjala "
                                "en los 'Datos de la configuración del puesto'."));
        c->e->impresoraTickets.IMPRESORA = QStringLiteral("Ticketera que no existe");
        QVERIFY(!imprimirTicket(*c->e, albaranEjemplo()));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral(
                     "No se encuentra la impresora de tickets 'Ticketera que no existe' en este equipo. "
                     "Revise los 'Datos de la configuración del puesto'."));
        QCOMPARE(c->d.mensajes().size(), 2);
    }

    // The ticket on a serial ESC/POS printer: reset and code page first, the text in PC858,
    // two copies each cut.
    void ticketPorPuertoSerie() {
        auto c = caso();
        Pseudoterminal pty;
        QVERIFY(!pty.ruta().isEmpty());
        ImpresoraTickets& t = c->e->impresoraTickets;
        t = ConfPuestoForm::impresoraPorDefecto();
        t.TIPO = ConfPuestoForm::kImpresoraSerie;
        t.PUERTO = pty.ruta();
        t.VELOCIDAD = QStringLiteral("19200");
        t.NUMPASADAS = QStringLiteral("2");
        t.CORTEPAPEL = QStringLiteral("SI");
        QVERIFY2(imprimirTicket(*c->e, albaranEjemplo()), qPrintable(c->d.textos().join(QLatin1Char('\n'))));
        QVERIFY(c->d.mensajes().isEmpty());
        const QByteArray recibido = pty.leer();
        QVERIFY(recibido.startsWith(QByteArray("\x1B\x40\x1B\x74\x13", 5)));
        QVERIFY(recibido.contains("Cliente: Ana Bel\x82n N\xA3\xA4"
                                  "ez Casta\xA4o\n"));
        QVERIFY(recibido.contains("Cl\xA1nica Veterinaria Los \xB5lamos"));
        QVERIFY(recibido.contains("TOTAL                             153,20 \xD5\n"));
        QCOMPARE(recibido.count(QByteArray("\x1D\x56\x01")), 2);
        QVERIFY(recibido.endsWith(QByteArray("\x1B\x64\x04\x1D\x56\x01")));
        QCOMPARE(recibido.count("Albar\xA0n A/125\n"), 2);

        // Without cutting, one copy.
        t.CORTEPAPEL = QStringLiteral("NO");
        t.NUMPASADAS = QStringLiteral("1");
        QVERIFY(imprimirTicket(*c->e, albaranEjemplo()));
        const QByteArray otro = pty.leer();
        QCOMPARE(otro.count(QByteArray("\x1D\x56")), 0);
        QCOMPARE(otro.count("Albar\xA0n A/125\n"), 1);
    }

    void ticketPuertoSerieErroneo() {
        auto c = caso();
        Pseudoterminal pty;
        ImpresoraTickets& t = c->e->impresoraTickets;
        t = ConfPuestoForm::impresoraPorDefecto();
        t.TIPO = ConfPuestoForm::kImpresoraSerie;

        t.PUERTO = QStringLiteral("/dev/ttyNoExiste");
        QVERIFY(!imprimirTicket(*c->e, albaranEjemplo()));
        QVERIFY2(c->d.ultimoTexto().startsWith(
                     QStringLiteral("No se ha podido abrir el puerto '/dev/ttyNoExiste' de la "
                                    "impresora de tickets.\n")),
                 qPrintable(c->d.ultimoTexto()));
        // The configuration's rule: COM1 to COM16 only.
        t.PUERTO = QStringLiteral("COM99");
        QVERIFY(!imprimirTicket(*c->e, albaranEjemplo()));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("El puerto 'COM99' de la impresora de tickets no es válido. Revise "
                                "los 'Datos de la configuración del puesto'."));
        t.PUERTO = QStringLiteral("LPT1");
        QVERIFY(!imprimirTicket(*c->e, albaranEjemplo()));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("El puerto 'LPT1' de la impresora de tickets no es válido. Revise "
                                "los 'Datos de la configuración del puesto'."));
        t.PUERTO = pty.ruta();
        t.BITSDATOS = QStringLiteral("4");
        QVERIFY(!imprimirTicket(*c->e, albaranEjemplo()));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("El puerto '") + pty.ruta() +
                     QStringLiteral("' de la impresora de tickets no admite 4 bits de datos. "
                                    "Revise los 'Datos de la configuración del puesto'."));
        t.BITSDATOS = QStringLiteral("8");
        t.PARIDAD = QStringLiteral("RARA");
        QVERIFY(!imprimirTicket(*c->e, albaranEjemplo()));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("El puerto '") + pty.ruta() +
                     QStringLiteral("' de la impresora de tickets no admite la paridad 'RARA'. "
                                    "Revise los 'Datos de la configuración del puesto'."));
        QCOMPARE(c->d.mensajes().size(), 5);
        QVERIFY(pty.leer().isEmpty());
    }

    // Pictures of the default templates kept in docs/screens (only with PRAMELVIX_CAPTURAS).
    void capturas() {
        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        if (carpeta.isEmpty()) QSKIP("PRAMELVIX_CAPTURAS no está definido");
        auto c = caso();
        Ajustes a(c->t.db());
        a.escribir(claves::NIF_CLINICA, QStringLiteral("B86543210"));
        a.escribir(claves::DIRECCION_CLINICA, QStringLiteral("Avenida de los Álamos, 14"));
        a.escribir(claves::POBLACION_CLINICA, QStringLiteral("28043 Madrid"));
        a.escribir(claves::EMAIL_CLINICA, QStringLiteral("info@vetlosalamos.es"));
        QCOMPARE(instalarPlantillasPorDefecto(c->datos.path()), QString());
        ImpresorDocumentos imp(*c->e);
        const QList<std::tuple<QString, DatosDocumento, QString>> documentos = {
            {grupos::ALBARANES, albaranEjemplo(), QStringLiteral("albaran-pdf")},
            {grupos::NOTA_VENTA, albaranEjemplo(), QStringLiteral("nota-venta-pdf")},
            {grupos::FACTURAS, facturaEjemplo(), QStringLiteral("factura-pdf")}};
        for (const auto& [grupo, datos, nombre] : documentos) {
            const QString pdf = c->datos.filePath(nombre + QStringLiteral(".pdf"));
            QVERIFY(imp.imprimir(grupo, QString(), datos, DestinoDocumento::PDF, pdf));
            const QString salida = QDir(carpeta).filePath(nombre);
            QCOMPARE(QProcess::execute(QStringLiteral("pdftoppm"),
                                       {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("80"),
                                        QStringLiteral("-singlefile"), pdf, salida}),
                     0);
            QVERIFY(QFileInfo::exists(salida + QStringLiteral(".png")));
        }
    }
};

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestImpresorDocumentos prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "test_impresor_documentos.moc"
