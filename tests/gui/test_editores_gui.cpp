// The list editor, tree editor, record form and database settings windows reach their forms.
// With PRAMELVIX_CAPTURAS set to a folder, the documentation's screenshots are saved there.
#include "app/ficha_form.h"
#include "data/esquema.h"
#include "gui.h"
#include "gui/conf_bd_window.h"
#include "gui/editor_arbol_window.h"
#include "gui/editor_lista_window.h"
#include "gui/ficha_window.h"

#include <QLabel>

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
};

PMX_GUI_TEST_MAIN(TestEditoresGui)
#include "test_editores_gui.moc"
