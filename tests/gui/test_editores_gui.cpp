// The list editor, tree editor, record form, database settings, users, workstation
// configuration and lock manager windows reach their forms.
// With PRAMELVIX_CAPTURAS set to a folder, the documentation's screenshots are saved there.
#include "app/bloqueo_edicion.h"
#include "app/claves.h"
#include "app/ficha_form.h"
#include "app/usuario_store.h"
#include "data/esquema.h"
#include "gui.h"
#include "gui/bloqueos_window.h"
#include "gui/conf_bd_window.h"
#include "gui/conf_puesto_window.h"
#include "gui/editor_arbol_window.h"
#include "gui/editor_lista_window.h"
#include "gui/ficha_window.h"
#include "gui/usuarios_window.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTableWidget>

namespace {
const DescriptorTabla& tabla(const QString& nombre) {
    return *descriptorTabla(nombre);
}

QTreeWidgetItem* buscarItem(QTreeWidget* arbol, const QString& texto, int columna = 0) {
    const auto items = arbol->findItems(texto, Qt::MatchExactly | Qt::MatchRecursive, columna);
    return items.isEmpty() ? nullptr : items.first();
}

// Answers the record form the next command opens: fills the fields and accepts.
void rellenarFicha(const QHash<QString, QString>& campos, QString* titulo = nullptr) {
    alAbrirModal([=](QDialog* dlg) {
        if (!dlg) return;
        if (titulo) *titulo = dlg->windowTitle();
        for (auto it = campos.cbegin(); it != campos.cend(); ++it)
            hijo<QLineEdit>(*dlg, u"txt"_s + it.key())->setText(it.value());
        pulsar(*dlg, u"cmdAceptar"_s);
    });
}
} // namespace

class TestEditoresGui : public QObject {
    Q_OBJECT

private slots:
    void ventanaLista() {
        Sesion s;
        s.s.fila(u"Poblaciones"_s, {{u"Descripcion"_s, u"Getafe"_s}, {u"CodigoPostal"_s, u"28901"_s}});
        s.s.fila(u"Poblaciones"_s, {{u"Descripcion"_s, u"Leganés"_s}});
        EditorListaWindow w(s.e, tabla(u"Poblaciones"_s));
        auto* lista = hijo<QTreeWidget>(w, u"lstRegistros"_s);
        QCOMPARE(lista->topLevelItemCount(), 2);

        // Add: the record form appears; what is typed there reaches the list.
        rellenarFicha({{u"Descripcion"_s, u"Alcalá de Henares"_s}, {u"CodigoPostal"_s, u"28801"_s}});
        pulsar(w, u"cmdAnadir"_s);
        QTreeWidgetItem* nuevo = buscarItem(lista, u"Alcalá de Henares"_s, 1);
        QVERIFY(nuevo);
        QCOMPARE(lista->currentItem(), nuevo);

        // A refused save keeps the form open and names the field.
        bool abiertaTrasRechazo = false;
        alAbrirModal([&](QDialog* dlg) {
            if (!dlg) return;
            pulsar(*dlg, u"cmdAceptar"_s);
            abiertaTrasRechazo = dlg->isVisible();
        });
        pulsar(w, u"cmdAnadir"_s);
        QVERIFY(abiertaTrasRechazo);
        QCOMPARE(s.d.ultimoTexto(), u"Debe informar el campo 'Población'."_s);
        capturar(w, u"editor-lista.png"_s);
    }

    // The record form names each field by its column's caption.
    void etiquetasDeLaFicha() {
        Sesion s;
        FichaWindow w(FichaForm(s.e, tabla(u"Laboratorios"_s)));
        QCOMPARE(hijo<QLabel>(w, u"lblTelefono"_s)->text(), u"Teléfono:"_s);
        capturar(w, u"ficha-parametro.png"_s);
    }

    void ventanaArbol() {
        Sesion s;
        const QString tb = u"Diagnosticos"_s;
        const qint64 piel = s.s.fila(tb, {{u"Descripcion"_s, u"Piel"_s}});
        s.s.fila(tb, {{u"Descripcion"_s, u"Otitis"_s}, {u"IdPadre"_s, piel}});
        EditorArbolWindow w(s.e, tabla(tb));
        auto* arbol = hijo<QTreeWidget>(w, u"arbRegistros"_s);
        QTreeWidgetItem* nodoPiel = buscarItem(arbol, u"Piel"_s);
        QVERIFY(nodoPiel && nodoPiel->isExpanded());

        arbol->setCurrentItem(nodoPiel);
        QString titulo;
        rellenarFicha({{u"Descripcion"_s, u"Alopecia"_s}}, &titulo);
        pulsar(w, u"cmdAnadirHijo"_s);
        QCOMPARE(titulo, u"Añadir Diagnóstico"_s);
        QCOMPARE(arbol->currentItem()->parent(), buscarItem(arbol, u"Piel"_s));
        QCOMPARE(arbol->currentItem()->text(0), u"Alopecia"_s);
        capturar(w, u"editor-arbol.png"_s);
    }

    void ventanaConfBd() {
        Sesion s;
        s.e.ajustes().completarPorDefecto();
        ConfBdWindow w(s.e);
        auto* compactacion = hijo<QLabel>(w, u"lblAutocompactacion"_s);
        QCOMPARE(compactacion->text(), u"AUTOCOMPACTACIÓN DESACTIVADA"_s);
        escribir(w, u"txtDiasCompactacion"_s, u"10"_s);
        QCOMPARE(compactacion->text(), u"AUTOCOMPACTACIÓN ACTIVADA CADA 10 DÍAS"_s);
        capturar(w, u"configuracion-bd.png"_s);

        // A wrong port is refused and focused; after fixing it the settings are saved.
        auto* puerto = hijo<QLineEdit>(w, u"txtPuertoUdpChat"_s);
        puerto->setText(u"70000"_s);
        w.show();
        pulsar(w, u"cmdAceptar"_s);
        QCOMPARE(w.focusWidget(), puerto);
        puerto->setText(u"5151"_s);
        pulsar(w, u"cmdAceptar"_s);
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(s.e.ajustes().leer(claves::DIAS_COMPACTACION), u"10"_s);
    }

private:
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

PMX_GUI_TEST_MAIN(TestEditoresGui)
#include "test_editores_gui.moc"
