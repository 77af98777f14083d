// The main window as a user meets it: menus and their object names, log in and out,
// user-type entries, barcode entry, chat port, closing.
#include "app/claves.h"
#include "app/login_form.h"
#include "app/usuario_store.h"
#include "data/ajustes.h"
#include "data/puestos.h"
#include "gui.h"
#include "gui/main_window.h"
#include "gui/pantallas.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>
#include <QUdpSocket>

namespace {
// A screen with unsaved changes that the user decides to keep.
class PantallaQueNoSeCierra : public QWidget {
public:
    bool dejar = false;

protected:
    void closeEvent(QCloseEvent* e) override { e->setAccepted(dejar); }
};
} // namespace

class TestVentanaPrincipal : public QObject {
    Q_OBJECT
    struct Caso {
        Sesion s{QDateTime(QDate(2026, 11, 23), QTime(10, 5, 12))};
        std::unique_ptr<MainWindow> w;
        QString usuario = u"jefa"_s, clave = u"clave"_s;
    };

    // On RECEPCION, nobody logged in; jefa (administrator) and recepcion (user), password "clave".
    static std::unique_ptr<Caso> abrir(quint16 puertoChat = 0) {
        auto c = std::make_unique<Caso>();
        c->s.s.usuario(u"jefa"_s, kTipoAdministrador);
        c->s.s.usuario(u"recepcion"_s, kTipoUsuario);
        Ajustes(c->s.db()).escribir(claves::PUERTO_UDP_CHAT, QString::number(puertoChat));
        Entorno& e = c->s.e;
        e.usuario.clear();
        e.tipoUsuario.clear();
        e.puesto = u"RECEPCION"_s;
        e.configuracionBD.ficheroAlternativo = c->s.t.origen();
        PuestosActivosStore(c->s.db()).registrar(e.puesto, c->s.reloj.ahora());
        c->w = std::make_unique<MainWindow>(e);
        Caso* p = c.get();
        c->w->setIdentificador([p] {
            LoginForm f(p->s.e);
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

private slots:
    void entradaYSalidaDeUsuarios() {
        auto c = abrir();
        QCOMPARE(c->w->windowTitle(), u"Pramelvix Ver. "_s + QStringLiteral(PRAMELVIX_VERSION));
        QVERIFY(c->w->findChild<QTimer*>(u"tmrAgenda"_s)->isActive());
        // Before anybody logs in only the session commands are there (which command needs
        // which permission is checked without windows).
        QVERIFY(!visible(*c, "mnuMttoCliente"));
        QVERIFY(!c->w->accion(u"mnuSalir"_s)->isEnabled());
        QVERIFY(c->w->identificar());
        QVERIFY(c->w->accion(u"mnuSalir"_s)->isEnabled());
        QCOMPARE(c->w->findChild<QLabel*>(u"panelUsuario"_s)->text(), u"JEFA"_s);
        QVERIFY(visible(*c, "mnuMttoCliente"));

        c->w->desidentificar();
        QCOMPARE(c->w->findChild<QLabel*>(u"panelUsuario"_s)->text(), QString());
        QVERIFY(!visible(*c, "mnuMttoCliente"));

        // An ordinary user: the administrator's entries are hidden.
        c->usuario = u"recepcion"_s;
        QVERIFY(c->w->identificar());
        QVERIFY(!visible(*c, "mnuAdministrar"));
    }

    void codigoDeBarrasLlegaAlCampoActivo() {
        auto c = abrir();
        c->w->show();
        auto* campo = new QLineEdit;
        campo->setObjectName(u"txtCodigo"_s);
        c->w->abrirVentana(campo);
        QTRY_VERIFY(campo->isVisible());
        campo->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), campo);
        c->w->iniciarCodigoBarras();
        QTest::keyClicks(campo, u"84+12(3)"_s);
        QCOMPARE(campo->text(), QString()); // collected, not yet typed
        c->w->alTemporizadorCodigoBarras();
        QCOMPARE(campo->text(), u"84+12(3)"_s);
    }

    void puertoDeChatOcupado() {
        QUdpSocket ocupado;
        QVERIFY(ocupado.bind(QHostAddress::AnyIPv4, 0));
        auto c = abrir(ocupado.localPort());
        QCOMPARE(c->s.d.textos().join(u'|'),
                 u"No se ha podido inicializar 'Conversar entre usuarios'. Posiblemente el Puerto UDP "
                 "esté siendo usado por otra aplicación. Consulte con un Administrador."_s);
        // The program goes on.
        QVERIFY(c->w->identificar());
    }

    void abreCadaPantalla() {
        auto c = abrir();
        registrarPantallas(*c->w);
        QVERIFY(c->w->identificar());
        c->w->show();
        // The shell's own screens open as child windows, once each.
        for (const char* n : {"mnuAdministrar", "mnuBloqueos", "mnuAdministrar"})
            c->w->accion(QString::fromLatin1(n))->trigger();
        QTRY_COMPARE(c->w->mdi()->subWindowList().size(), 2);
        // Logging off closes them.
        c->w->desidentificar();
        QTRY_COMPARE(c->w->mdi()->subWindowList().size(), 0);
    }

    // Closing asks first (No keeps every screen); a screen keeping its changes holds logging off
    // and closing.
    void cerrarLaVentana() {
        auto c = abrir();
        QVERIFY(c->w->identificar());
        c->w->show();
        c->w->abrirVentana(new QWidget);
        auto* pantalla = new PantallaQueNoSeCierra;
        c->w->abrirVentana(pantalla);
        QTRY_VERIFY(pantalla->isVisible());
        c->s.d.no();
        QVERIFY(!c->w->close());
        QCOMPARE(c->w->mdi()->subWindowList().size(), 2);
        c->w->desidentificar();
        QVERIFY(c->s.e.identificado());
        c->s.d.si();
        QVERIFY(!c->w->close());
        QCOMPARE(PuestosActivosStore(c->s.t.db()).contar(), 1);
        pantalla->dejar = true;
        c->s.d.si();
        QVERIFY(c->w->close());
        QCOMPARE(PuestosActivosStore(c->s.t.db()).contar(), 0);
        QCOMPARE(c->s.d.textos(), QStringList(3, u"¿Desea realmente salir de Pramelvix?"_s));
    }
};

PMX_GUI_TEST_MAIN(TestVentanaPrincipal)
#include "test_ventana_principal.moc"
