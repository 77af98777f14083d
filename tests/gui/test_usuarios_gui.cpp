// The users, workstation configuration and lock manager windows reach their forms. With
// PRAMELVIX_CAPTURAS set to a folder the windows are saved there as PNG images.
#include "app/bloqueo_edicion.h"
#include "app/claves.h"
#include "app/usuario_store.h"
#include "data/esquema.h"
#include "gui.h"
#include "gui/bloqueos_window.h"
#include "gui/conf_puesto_window.h"
#include "gui/usuarios_window.h"

#include <QDir>
#include <QFile>
#include <QTableWidget>

class TestUsuariosGui : public QObject {
    Q_OBJECT
    // Users ana (administrator, logged in), luis and recepcion, all with password "clave".
    static std::unique_ptr<Sesion> caso() {
        auto c = std::make_unique<Sesion>();
        c->s.usuario(u"ana"_s, kTipoAdministrador, u"clave"_s, u"Ana Belén Núñez"_s);
        c->s.usuario(u"luis"_s, kTipoUsuario, u"clave"_s, u"Luis Pérez"_s);
        c->s.usuario(u"recepcion"_s, kTipoUsuario, u"clave"_s, u"Recepción (mañanas)"_s);
        return c;
    }

private slots:
    // The list, fields and buttons reach the form (whose rules its own test checks).
    void ventanaUsuarios() {
        auto c = caso();
        UsuariosWindow w(c->e);
        auto* lista = hijo<QTreeWidget>(w, u"lvwUsuarios"_s);
        QCOMPARE(lista->topLevelItem(2)->text(1), u"Recepción (mañanas)"_s);
        auto* id = hijo<QLineEdit>(w, u"txtIdUsuario"_s);
        auto* nombre = hijo<QLineEdit>(w, u"txtNombre"_s);
        auto* clave = hijo<QLineEdit>(w, u"txtClave"_s);
        lista->setCurrentItem(lista->topLevelItem(1));
        QCOMPARE(id->text(), u"luis"_s);
        QCOMPARE(clave->echoMode(), QLineEdit::Password);
        capturar(w, u"usuarios.png"_s);

        // Typing reaches the form, and saving the list.
        nombre->setFocus();
        QTest::keyClicks(nombre, u" Gil"_s);
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(UsuarioStore(c->t.db()).cargar(u"luis"_s)->Nombre, u"Luis Pérez Gil"_s);

        // A new user whose save is refused: the field named takes the focus.
        pulsar(w, u"cmdNuevo"_s);
        QTest::keyClicks(id, u"pepe"_s);
        QTest::keyClicks(clave, u"abc"_s);
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(w.focusWidget(), hijo<QLineEdit>(w, u"txtConfirmacion"_s));
    }

    void configuracionDelPuesto() {
        auto c = caso();
        QTemporaryDir carpeta;
        QFile ini(QDir(carpeta.path()).filePath(u"PRAMELVIX.INI"_s));
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write("[IMPRESORA TICKETS]\r\nTIPO=2\r\nPUERTO=/dev/ttyUSB0\r\n");
        ini.close();
        c->e.carpetaPrograma = carpeta.path();
        c->s.fila(u"Series"_s, {{u"Serie"_s, u"A"_s}, {u"Descripcion"_s, u"Ventas"_s}, {u"Tipo"_s, u"V"_s}});

        ConfPuestoWindow w(c->e);
        QVERIFY(c->d.mensajes().isEmpty());
        auto* serieVenta = hijo<QComboBox>(w, u"cboSerieVenta"_s);
        QCOMPARE(serieVenta->itemText(1), u"A - Ventas"_s);

        // Choosing in a drop-down reaches the form; a refused save focuses the field.
        serieVenta->setCurrentIndex(1);
        hijo<QComboBox>(w, u"cboTarifa"_s)->setCurrentIndex(2);
        capturar(w, u"configuracion-puesto.png"_s);
        w.show();
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(w.focusWidget(), hijo<QComboBox>(w, u"cboSerieAbono"_s));
    }

    // The lock manager: the search button, deleting the chosen lock, closing (the filter's
    // rules are the form's).
    void ventanaBloqueos() {
        auto c = caso();
        auto bloquear = [&](const QString& tabla, const QString& clave, const QString& texto) {
            return almacenBloqueos(c->e).bloquearRegistro(*descriptorTabla(tabla), clave, texto,
                                                          AccionBloqueo::Modificacion);
        };
        QVERIFY(bloquear(u"Clientes"_s, u"12"_s, u"Núñez, María"_s));
        auto* w = new BloqueosWindow(c->e);
        QPointer<BloqueosWindow> vigia(w);
        auto* lista = hijo<QTableWidget>(*w, u"grdBloqueos"_s);
        QCOMPARE(lista->rowCount(), 1);
        QCOMPARE(lista->item(0, 3)->text(), u"23/11/2026"_s);
        w->show();
        capturar(*w, u"bloqueos.png"_s);

        QVERIFY(bloquear(u"Mascotas"_s, u"30"_s, u"Toby (perro)"_s));
        hijo<QLineEdit>(*w, u"txtFiltro"_s)->setText(u"toby"_s);
        pulsar(*w, u"cmdBuscar"_s);
        QCOMPARE(lista->item(0, 0)->text(), u"Toby (perro)"_s);
        lista->selectRow(0);
        c->d.si();
        pulsar(*w, u"cmdEliminar"_s);
        QCOMPARE(almacenBloqueos(c->e).contar(), 1);
        pulsar(*w, u"cmdCerrar"_s);
        QTRY_VERIFY(vigia.isNull());
    }
};

PMX_GUI_TEST_MAIN(TestUsuariosGui)
#include "test_usuarios_gui.moc"
