// The users and workstation configuration windows on the offscreen platform: the list
// headers, a selected row filling the fields with the password mark, the question when
// leaving unsaved changes, and the search buttons while their tables do not exist.
// With PRAMELVIX_CAPTURAS set to a folder the windows are saved there as PNG images.
#include "app/claves.h"
#include "app/usuario_store.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "gui/conf_puesto_window.h"
#include "gui/usuarios_window.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeWidget>

class TestUsuariosGui : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        const QList<std::tuple<QString, QString, QString>> usuarios = {
            {QStringLiteral("ana"), QStringLiteral("Ana Belén Núñez"), kTipoAdministrador},
            {QStringLiteral("luis"), QStringLiteral("Luis Pérez"), kTipoUsuario},
            {QStringLiteral("recepcion"), QStringLiteral("Recepción (mañanas)"), kTipoUsuario}};
        for (const auto& [id, nombre, tipo] : usuarios) {
            const QString sal = nuevaSal();
            UsuarioStore(c->t.db()).guardar({id, nombre, sal, hashClave(sal, QStringLiteral("clave")), tipo});
        }
        c->e = std::make_unique<Entorno>(c->t.db(), c->d, reloj_);
        c->e->puesto = QStringLiteral("CONSULTA1");
        c->e->usuario = QStringLiteral("ana");
        c->e->tipoUsuario = kTipoAdministrador;
        return c;
    }

    static void capturar(QWidget& w, const QString& nombre) {
        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        if (carpeta.isEmpty()) return;
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QVERIFY(w.grab().save(QDir(carpeta).filePath(nombre)));
    }

    template <typename W> static W* hijo(QWidget& w, const QString& nombre) {
        W* h = w.findChild<W*>(nombre);
        if (!h) qFatal("falta el control %s", qPrintable(nombre));
        return h;
    }

private slots:
    void listaYMarcaDeClave() {
        auto c = caso();
        UsuariosWindow w(*c->e);
        QCOMPARE(w.windowTitle(), QStringLiteral("Usuarios"));
        auto* lista = hijo<QTreeWidget>(w, QStringLiteral("lvwUsuarios"));
        QCOMPARE(lista->headerItem()->text(0), QStringLiteral("Id. Usuario"));
        QCOMPARE(lista->headerItem()->text(1), QStringLiteral("Nombre"));
        QCOMPARE(lista->topLevelItemCount(), 3);
        QCOMPARE(lista->topLevelItem(2)->text(1), QStringLiteral("Recepción (mañanas)"));

        auto* id = hijo<QLineEdit>(w, QStringLiteral("txtIdUsuario"));
        auto* nombre = hijo<QLineEdit>(w, QStringLiteral("txtNombre"));
        auto* clave = hijo<QLineEdit>(w, QStringLiteral("txtClave"));
        auto* confirmacion = hijo<QLineEdit>(w, QStringLiteral("txtConfirmacion"));
        auto* tipo = hijo<QComboBox>(w, QStringLiteral("cboTipoUsuario"));
        QCOMPARE(tipo->count(), 2);
        QCOMPARE(tipo->itemText(0), QStringLiteral("Administrador"));
        QCOMPARE(tipo->itemText(1), QStringLiteral("Usuario"));

        lista->setCurrentItem(lista->topLevelItem(1));
        QCOMPARE(id->text(), QStringLiteral("luis"));
        QCOMPARE(nombre->text(), QStringLiteral("Luis Pérez"));
        QCOMPARE(clave->text(), QStringLiteral("********"));
        QCOMPARE(confirmacion->text(), QStringLiteral("********"));
        QCOMPARE(clave->echoMode(), QLineEdit::Password);
        QCOMPARE(tipo->currentText(), QStringLiteral("Usuario"));
        QVERIFY(id->isReadOnly());
        capturar(w, QStringLiteral("usuarios.png"));

        // Typing marks the user as changed; choosing another row and answering No keeps
        // the row and what was typed.
        nombre->setFocus();
        QTest::keyClicks(nombre, QStringLiteral(" Gil"));
        QVERIFY(w.form().modificado());
        c->d.no();
        lista->setCurrentItem(lista->topLevelItem(2));
        QCOMPARE(c->d.textos(),
                 QStringList{QStringLiteral(
                     "Las modificaciones realizadas a este Usuario no han sido guardadas. ¿Confirma que "
                     "desea seleccionar otro Usuario y perder los cambios efectuados?")});
        QCOMPARE(lista->currentItem(), lista->topLevelItem(1));
        QCOMPARE(nombre->text(), QStringLiteral("Luis Pérez Gil"));

        // Saving through the button keeps the password and refreshes the list.
        const auto antes = UsuarioStore(c->t.db()).cargar(QStringLiteral("luis"));
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdGuardar")), Qt::LeftButton);
        const auto despues = UsuarioStore(c->t.db()).cargar(QStringLiteral("luis"));
        QCOMPARE(despues->Nombre, QStringLiteral("Luis Pérez Gil"));
        QCOMPARE(despues->Hash, antes->Hash);
        QCOMPARE(lista->topLevelItem(1)->text(1), QStringLiteral("Luis Pérez Gil"));
        QCOMPARE(clave->text(), QStringLiteral("********"));

        // A new user: the identifier opens for typing and the mandatory checks put the
        // focus on the field.
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdNuevo")), Qt::LeftButton);
        QVERIFY(!id->isReadOnly());
        QCOMPARE(clave->text(), QString());
        QTest::keyClicks(id, QStringLiteral("pepe"));
        QTest::keyClicks(clave, QStringLiteral("abc"));
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdGuardar")), Qt::LeftButton);
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Debe repetir la contraseña en el campo 'Confirmación'."));
        QCOMPARE(w.focusWidget(), confirmacion);
    }

    void configuracionDelPuesto() {
        auto c = caso();
        QTemporaryDir carpeta;
        QFile ini(QDir(carpeta.path()).filePath(QStringLiteral("PRAMELVIX.INI")));
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write("[IMPRESORA TICKETS]\r\nTIPO=2\r\nPUERTO=/dev/ttyUSB0\r\nVELOCIDAD=19200\r\n");
        ini.close();
        c->e->carpetaPrograma = carpeta.path();
        const DescriptorTabla* series = descriptorTabla(QStringLiteral("Series"));
        for (const auto& [codigo, descripcion, tipo] : QList<std::tuple<QString, QString, QString>>{
                 {QStringLiteral("A"), QStringLiteral("Ventas"), QStringLiteral("V")},
                 {QStringLiteral("AB"), QStringLiteral("Abonos"), QStringLiteral("A")}}) {
            Registro r(*series);
            r.setValor(QStringLiteral("Serie"), codigo);
            r.setValor(QStringLiteral("Descripcion"), descripcion);
            r.setValor(QStringLiteral("Tipo"), tipo);
            RegistroStore(c->t.db()).crear(r);
        }

        ConfPuestoWindow w(*c->e);
        QCOMPARE(w.windowTitle(), QStringLiteral("Datos de la configuración del puesto"));
        QVERIFY(c->d.mensajes().isEmpty());
        auto* puerto = hijo<QComboBox>(w, QStringLiteral("cboPuerto"));
        QCOMPARE(puerto->currentText(), QStringLiteral("/dev/ttyUSB0"));
        QVERIFY(puerto->isEnabled());
        QVERIFY(!hijo<QComboBox>(w, QStringLiteral("cboImpresora"))->isEnabled());
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboVelocidad"))->currentText(), QStringLiteral("19200"));
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboParidad"))->currentText(),
                 QStringLiteral("NINGUNO (N)"));
        auto* serieVenta = hijo<QComboBox>(w, QStringLiteral("cboSerieVenta"));
        QCOMPARE(serieVenta->count(), 2);
        QCOMPARE(serieVenta->itemText(1), QStringLiteral("A - Ventas"));

        // The search buttons work only once their table is in the catalogue.
        for (const auto& [boton, tabla] :
             {std::pair{QStringLiteral("cmdBuscarCliente"), QStringLiteral("Clientes")},
              std::pair{QStringLiteral("cmdBuscarArticulo"), QStringLiteral("Articulos")}}) {
            auto* b = hijo<QPushButton>(w, boton);
            QCOMPARE(b->isEnabled(), descriptorTabla(tabla) != nullptr);
            QVERIFY(!b->toolTip().isEmpty());
        }

        // Choosing in the drop-downs reaches the form, and saving writes both places.
        serieVenta->setCurrentIndex(1);
        hijo<QComboBox>(w, QStringLiteral("cboSerieAbono"))->setCurrentIndex(1);
        hijo<QComboBox>(w, QStringLiteral("cboTarifa"))->setCurrentIndex(2);
        capturar(w, QStringLiteral("configuracion-puesto.png"));
        QSignalSpy guardado(&w, &ConfPuestoWindow::guardado);
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdGuardar")), Qt::LeftButton);
        QVERIFY2(c->d.mensajes().isEmpty(), qPrintable(c->d.ultimoTexto()));
        QCOMPARE(guardado.size(), 1);
        const ConfiguracionPuesto guardada = ConfPuestoStore(c->t.db()).cargar(QStringLiteral("CONSULTA1"));
        QCOMPARE(guardada.SerieVenta, QStringLiteral("A"));
        QCOMPARE(guardada.SerieAbono, QStringLiteral("AB"));
        QCOMPARE(guardada.Tarifa, QStringLiteral("TARIFA 2"));
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestUsuariosGui prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "test_usuarios_gui.moc"
