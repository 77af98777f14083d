// The main window as a user meets it: menus and their object names, log in and out,
// user-type entries, timers, barcode entry, chat port, closing.
#include "app/claves.h"
#include "app/login_form.h"
#include "app/parametros_menu.h"
#include "app/usuario_store.h"
#include "data/ajustes.h"
#include "data/esquema.h"
#include "data/puestos.h"
#include "gui/main_window.h"
#include "gui/pantallas.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTimer>
#include <QUdpSocket>

namespace {
// A screen with unsaved changes that the user decides to keep.
class PantallaQueNoSeCierra : public QWidget {
public:
    bool dejar = false;

protected:
    void closeEvent(QCloseEvent* e) override {
        if (dejar)
            e->accept();
        else
            e->ignore();
    }
};

// Every command of the main window, by object name.
const QStringList kComandos = {"mnuAgendas",
                               "mnuMttoAgenda",
                               "mnuTurnos",
                               "mnuMttoTurnos",
                               "mnuSalaEspera",
                               "mnuDocCitas",
                               "mnuDocCitasPersonal",
                               "mnuMttoCliente",
                               "mnuMttoMascota",
                               "mnuResumenCli",
                               "mnuCambioPropietario",
                               "mnuRegistroCambioPropietario",
                               "mnuVisita",
                               "mnuHistorialesDeudas",
                               "mnuResLaboratorio",
                               "mnuMttoPlanSalud",
                               "mnuMttoArticulo",
                               "mnuMvtosArticulo",
                               "mnuInventarios",
                               "mnuCambioPrecios",
                               "mnuCambioIVA",
                               "mnuAlbaranes",
                               "mnuDevolAlb",
                               "mnuPresupuestos",
                               "mnuGenerarFacturas",
                               "mnuGenerarFacturasFechas",
                               "mnuGenerarAbonos",
                               "mnuListarFacturas",
                               "mnuCambioSerie",
                               "mnuSeriesFacturacion",
                               "mnuCobros",
                               "mnuEntregasCta",
                               "mnuEntrada",
                               "mnuSalida",
                               "mnuMvtosCaja",
                               "mnuCierreCaja",
                               "mnuCierresAnt",
                               "mnuCajaEntreFechas",
                               "mnuMttoProveedor",
                               "mnuMttoCompras",
                               "mnuGenerarFraCompra",
                               "mnuListarFrasCompra",
                               "mnuPagos",
                               "mnuMttoPersonal",
                               "mnuMttoCosteSalarial",
                               "mnuMarcaje",
                               "mnuListMarcajes",
                               "mnuListRecordatorios",
                               "mnuRecordatoriosSMS",
                               "mnuRecordatoriosEMail",
                               "mnuRecordatoriosPostal",
                               "mnuSMS",
                               "mnuEMail",
                               "mnuMttoSMS",
                               "mnuMttoEMails",
                               "mnuEnvioMasivo",
                               "mnuConfSMS",
                               "mnuConfEMails",
                               "mnuMttoPlantillas",
                               "mnuKeyWord",
                               "mnuDocCliListados",
                               "mnuDocMasListados",
                               "mnuDocHistList",
                               "mnuDocArtListados",
                               "mnuDocFraListados",
                               "mnuDocAboListados",
                               "mnuDocComListados",
                               "mnuCobroCSB19",
                               "mnuConfCSB19",
                               "mnuRegistroIVA",
                               "mnuExportContab",
                               "mnuDelContab",
                               "mnuInfGestion",
                               "mnuResVentas",
                               "mnuResVentasSeccion",
                               "mnuDesgloseVentas",
                               "mnuTipoCliente",
                               "mnuTipoMascota",
                               "mnuTipoVisit",
                               "mnuTipoIVA",
                               "mnuTipoRE",
                               "mnuFormasPago",
                               "mnuFormasContacto",
                               "mnuPoblacion",
                               "mnuProvincia",
                               "mnuCambioCP",
                               "mnuPelo",
                               "mnuCapa",
                               "mnuCaracter",
                               "mnuCondCorporal",
                               "mnuDiagnosticos",
                               "mnuGruposSintomas",
                               "mnuExploraciones",
                               "mnuAnaliticas",
                               "mnuLaboratorios",
                               "mnuMedicamentos",
                               "mnuEspecialidades",
                               "mnuEstados",
                               "mnuFormalidad",
                               "mnuMotivos",
                               "mnuMotivosBaja",
                               "mnuSecciones",
                               "mnuSeccVtasServ",
                               "mnuSeccMedCons",
                               "mnuIdioma",
                               "mnuDatosEmpresa",
                               "mnuConfPuesto",
                               "mnuConfBD",
                               "mnuPuestos",
                               "mnuBloqueos",
                               "mnuAdministrar",
                               "mnuCompactarBD",
                               "mnuBackup",
                               "mnuBackupSinGD",
                               "mnuImportarDatos",
                               "mnuChatear",
                               "mnuBloquearEquipo",
                               "mnuCalculadora",
                               "mnuColores",
                               "mnuPonerFondo",
                               "mnuQuitarFondo",
                               "mnuIdentificar",
                               "mnuDesidentificar",
                               "mnuSalir",
                               "mnuCascada",
                               "mnuMosaico",
                               "mnuOrganizar"};
} // namespace

class TestVentanaPrincipal : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(10, 5, 12))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        std::unique_ptr<MainWindow> w;
        QString usuario, clave;
    };

    std::unique_ptr<Caso> abrir(quint16 puertoChat = 0) {
        auto c = std::make_unique<Caso>();
        for (const auto& [id, tipo] : {std::pair{QStringLiteral("jefa"), kTipoAdministrador},
                                       std::pair{QStringLiteral("recepcion"), kTipoUsuario}}) {
            const QString sal = nuevaSal();
            UsuarioStore(c->t.db()).guardar(
                {id, id.toUpper(), sal, hashClave(sal, QStringLiteral("clave")), tipo});
        }
        Ajustes(c->t.db()).escribir(claves::PUERTO_UDP_CHAT, QString::number(puertoChat));
        c->e = std::make_unique<Entorno>(c->t.db(), c->d, reloj_);
        c->e->puesto = QStringLiteral("RECEPCION");
        c->e->configuracionBD.ficheroAlternativo = c->t.origen();
        PuestosActivosStore(c->t.db()).registrar(c->e->puesto, reloj_.ahora());
        c->w = std::make_unique<MainWindow>(*c->e);
        Caso* p = c.get();
        c->w->setIdentificador([p] {
            LoginForm f(*p->e);
            f.usuario = p->usuario;
            f.clave = p->clave;
            return f.aceptar();
        });
        return c;
    }

    static bool visible(Caso& c, const char* nombre) {
        QAction* a = c.w->accion(QString::fromLatin1(nombre));
        return a && a->isVisible();
    }

    static quint16 puertoLibre() {
        QUdpSocket s;
        s.bind(QHostAddress::LocalHost, 0);
        return s.localPort();
    }

private slots:
    void tituloMenusYTemporizadores() {
        auto c = abrir(puertoLibre());
        QCOMPARE(c->w->windowTitle(), QStringLiteral("Pramelvix Ver. ") + QStringLiteral(PRAMELVIX_VERSION));
        QVERIFY(c->w->findChild<QObject*>(QStringLiteral("tbrPrincipal")));
        QVERIFY(c->w->findChild<QObject*>(QStringLiteral("sbPrincipal")));
        for (const QString& n : kComandos)
            QVERIFY2(c->w->findChild<QAction*>(n), qPrintable(n));
        // Every parameter command opens a table.
        for (const char* n : {"mnuTipoCliente", "mnuIdioma", "mnuSeccMedCons", "mnuCambioCP"})
            QVERIFY2(entradaMenuParametro(QString::fromLatin1(n)), n);

        const auto* agenda = c->w->findChild<QTimer*>(QStringLiteral("tmrAgenda"));
        const auto* copia = c->w->findChild<QTimer*>(QStringLiteral("tmrBackUp"));
        const auto* codigo = c->w->findChild<QTimer*>(QStringLiteral("tmrCodBar"));
        const auto* tmr = c->w->findChild<QTimer*>(QStringLiteral("tmr"));
        QVERIFY(agenda && copia && codigo && tmr);
        QCOMPARE(agenda->interval(), 60000);
        QVERIFY(agenda->isActive());
        QCOMPARE(copia->interval(), 60000);
        QVERIFY(!copia->isActive());
        QCOMPARE(codigo->interval(), 2000);
        QVERIFY(!codigo->isActive());
        QCOMPARE(tmr->interval(), 250);
        QVERIFY(!tmr->isActive());
        QVERIFY(c->d.mensajes().isEmpty());
    }

    void entradaYSalidaDeUsuarios() {
        auto c = abrir();
        // Before anybody logs in only the session commands are there.
        QVERIFY(visible(*c, "mnuIdentificar"));
        QVERIFY(!visible(*c, "mnuDesidentificar"));
        QVERIFY(!visible(*c, "mnuMttoCliente"));
        QVERIFY(!c->w->findChild<QMenu*>(QStringLiteral("mnuParametros"))->menuAction()->isVisible());

        c->usuario = QStringLiteral("jefa");
        c->clave = QStringLiteral("clave");
        QVERIFY(!c->w->accion(QStringLiteral("mnuSalir"))->isEnabled());
        QVERIFY(c->w->identificar());
        QVERIFY(c->w->accion(QStringLiteral("mnuSalir"))->isEnabled());
        QCOMPARE(c->w->findChild<QLabel*>(QStringLiteral("panelUsuario"))->text(), QStringLiteral("JEFA"));
        QVERIFY(visible(*c, "mnuDesidentificar"));
        QVERIFY(!visible(*c, "mnuIdentificar"));
        for (const char* n : {"mnuAdministrar", "mnuCierreCaja", "mnuInfGestion", "mnuImportarDatos",
                              "mnuMttoCosteSalarial", "mnuRegistroIVA", "mnuMttoCliente"})
            QVERIFY2(visible(*c, n), n);

        c->w->desidentificar();
        QCOMPARE(c->w->findChild<QLabel*>(QStringLiteral("panelUsuario"))->text(), QString());
        QVERIFY(!visible(*c, "mnuMttoCliente"));

        // An ordinary user: the administrator's entries are hidden; accounting follows the setting.
        Ajustes(c->t.db()).escribir(claves::CONTAB_SOLO_ADMINISTRADORES, QStringLiteral("S"));
        c->usuario = QStringLiteral("recepcion");
        QVERIFY(c->w->identificar());
        for (const char* n : {"mnuAdministrar", "mnuCierreCaja", "mnuCierresAnt", "mnuCajaEntreFechas",
                              "mnuInfGestion", "mnuImportarDatos", "mnuMttoCosteSalarial", "mnuRegistroIVA",
                              "mnuExportContab", "mnuDelContab"})
            QVERIFY2(!visible(*c, n), n);
        QVERIFY(visible(*c, "mnuMttoCliente"));
        QVERIFY(visible(*c, "mnuCobros"));
        c->w->desidentificar();
        Ajustes(c->t.db()).escribir(claves::CONTAB_SOLO_ADMINISTRADORES, QStringLiteral("N"));
        QVERIFY(c->w->identificar());
        QVERIFY(visible(*c, "mnuRegistroIVA"));
        QVERIFY(!visible(*c, "mnuCierreCaja"));

        // A wrong password keeps the user out.
        c->w->desidentificar();
        c->clave = QStringLiteral("otra");
        QVERIFY(!c->w->identificar());
        QVERIFY(!visible(*c, "mnuMttoCliente"));
    }

    void comprobacionDeAgenda() {
        auto c = abrir();
        QStringList llamadas;
        c->w->setComprobadorAgenda(
            [&](const QString& f, const QString& h) { llamadas << f + QLatin1Char(' ') + h; });
        c->w->alTemporizadorAgenda();
        QCOMPARE(llamadas, QStringList{QStringLiteral("23/11/2026 10:05")});
        reloj_.fijar(QDateTime(QDate(2026, 11, 23), QTime(10, 6, 0)));
        c->w->alTemporizadorAgenda();
        QCOMPARE(llamadas.size(), 1);
        reloj_.fijar(QDateTime(QDate(2026, 11, 23), QTime(10, 5, 12)));
    }

    void copiaAutomaticaBesideLaBaseDeDatos() {
        if (TestDb::motorDePrueba() != Motor::SQLite)
            QSKIP("La copia automática es de la base de datos SQLite.");
        auto c = abrir();
        c->w->configurarCopiaAutomatica(QTime(9, 0));
        QVERIFY(c->w->findChild<QTimer*>(QStringLiteral("tmrBackUp"))->isActive());
        c->w->alTemporizadorCopia();
        const QString copia = QFileInfo(c->t.origen()).dir().filePath(QStringLiteral("CopiaAutomBD.MDB"));
        QVERIFY2(QFileInfo::exists(copia), qPrintable(c->w->ultimoAvisoCopia()));
        auto leida = Database::abrirSQLite(copia);
        QCOMPARE(PuestosActivosStore(*leida).puestos(), QStringList{QStringLiteral("RECEPCION")});
        c->w->configurarCopiaAutomatica(std::nullopt);
        QVERIFY(!c->w->findChild<QTimer*>(QStringLiteral("tmrBackUp"))->isActive());
    }

    void codigoDeBarrasLlegaAlCampoActivo() {
        auto c = abrir();
        c->w->show();
        auto* campo = new QLineEdit;
        campo->setObjectName(QStringLiteral("txtCodigo"));
        c->w->abrirVentana(campo);
        QTRY_VERIFY(campo->isVisible());
        campo->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), campo);
        c->w->iniciarCodigoBarras();
        QVERIFY(c->w->findChild<QTimer*>(QStringLiteral("tmrCodBar"))->isActive());
        QTest::keyClicks(campo, QStringLiteral("84+12(3)"));
        QCOMPARE(campo->text(), QString()); // collected, not yet typed
        c->w->alTemporizadorCodigoBarras();
        QVERIFY(!c->w->findChild<QTimer*>(QStringLiteral("tmrCodBar"))->isActive());
        QCOMPARE(campo->text(), QStringLiteral("84+12(3)"));
        // After the entry the keyboard types as usual.
        QTest::keyClicks(campo, QStringLiteral("x"));
        QCOMPARE(campo->text(), QStringLiteral("84+12(3)x"));
    }

    void puertoDeChatOcupado() {
        QUdpSocket ocupado;
        QVERIFY(ocupado.bind(QHostAddress::AnyIPv4, 0));
        auto c = abrir(ocupado.localPort());
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral(
                     "No se ha podido inicializar 'Conversar entre usuarios'. Posiblemente el Puerto UDP "
                     "esté siendo usado por otra aplicación. Consulte con un Administrador."));
        // The program goes on.
        c->usuario = QStringLiteral("jefa");
        c->clave = QStringLiteral("clave");
        QVERIFY(c->w->identificar());
    }

    void abreCadaPantalla() {
        auto c = abrir();
        registrarPantallas(*c->w);
        c->usuario = QStringLiteral("jefa");
        c->clave = QStringLiteral("clave");
        QVERIFY(c->w->identificar());
        c->w->show();
        // Each parameter command opens its table in the list or the tree editor (modal).
        for (const auto& p : entradasMenuParametros()) {
            const DescriptorTabla* d = descriptorTabla(p.tabla);
            QVERIFY2(d, qPrintable(p.tabla));
            QString titulo;
            QTimer::singleShot(0, c->w.get(), [&titulo] {
                if (auto* dialogo = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                    titulo = dialogo->windowTitle();
                    dialogo->reject();
                }
            });
            QAction* a = c->w->accion(p.accion);
            QVERIFY2(a && a->isEnabled(), qPrintable(p.accion));
            a->trigger();
            QCOMPARE(titulo, (d->esArbol() ? QStringLiteral("Arbol de ") : QStringLiteral("Lista de ")) +
                                 d->descTabla);
        }
        // The shell's own screens open as child windows, once each.
        for (const char* n : {"mnuAdministrar", "mnuBloqueos", "mnuConfPuesto", "mnuAdministrar"})
            c->w->accion(QString::fromLatin1(n))->trigger();
        QTRY_COMPARE(c->w->mdi()->subWindowList().size(), 3);
        QStringList nombres;
        for (QMdiSubWindow* s : c->w->mdi()->subWindowList())
            nombres << s->widget()->objectName();
        nombres.sort();
        QCOMPARE(nombres, (QStringList{QStringLiteral("frmBloqueos"), QStringLiteral("frmConfPuesto"),
                                       QStringLiteral("frmUsuarios")}));
        QTRY_VERIFY(c->w->mdi()->subWindowList().first()->isVisible());
        // Logging off closes them.
        c->w->desidentificar();
        QTRY_COMPARE(c->w->mdi()->subWindowList().size(), 0);
    }

    void unaPantallaConCambiosRetieneLaSesion() {
        auto c = abrir();
        c->usuario = QStringLiteral("jefa");
        c->clave = QStringLiteral("clave");
        QVERIFY(c->w->identificar());
        c->w->show();
        auto* pantalla = new PantallaQueNoSeCierra;
        pantalla->setObjectName(QStringLiteral("frmConCambios"));
        c->w->abrirVentana(pantalla);
        QTRY_VERIFY(pantalla->isVisible());
        // Logging off and closing the program both stop at the screen that keeps its changes.
        c->w->desidentificar();
        QVERIFY(c->e->identificado());
        c->d.si();
        QVERIFY(!c->w->close());
        QCOMPARE(c->d.textos(), QStringList{QStringLiteral("¿Desea realmente salir de Pramelvix?")});
        QCOMPARE(PuestosActivosStore(c->t.db()).contar(), 1);
        pantalla->dejar = true;
        c->d.si();
        QVERIFY(c->w->close());
        QCOMPARE(PuestosActivosStore(c->t.db()).contar(), 0);
    }

    void cerrarLaVentana() {
        auto c = abrir();
        c->w->show();
        auto* pantalla = new QWidget;
        c->w->abrirVentana(pantalla);
        QTRY_VERIFY(pantalla->isVisible());
        // No is asked before any screen closes: every screen stays open.
        c->d.no();
        QVERIFY(!c->w->close());
        QVERIFY(c->w->isVisible());
        QCOMPARE(c->w->mdi()->subWindowList().size(), 1);
        QCOMPARE(PuestosActivosStore(c->t.db()).contar(), 1);
        c->d.si();
        QVERIFY(c->w->close());
        QCOMPARE(PuestosActivosStore(c->t.db()).contar(), 0);
        QCOMPARE(c->d.textos(), (QStringList{QStringLiteral("¿Desea realmente salir de Pramelvix?"),
                                             QStringLiteral("¿Desea realmente salir de Pramelvix?")}));
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestVentanaPrincipal prueba;
    return QTest::qExec(&prueba, argc, argv);
}
#include "test_ventana_principal.moc"
