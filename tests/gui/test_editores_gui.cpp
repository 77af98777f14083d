// The list editor, tree editor, record form and database settings windows, off screen: what
// they show and that their buttons reach the forms. With PRAMELVIX_CAPTURAS set to a folder,
// the screenshots of the documentation are saved there.
#include "app/ficha_form.h"
#include "data/esquema.h"
#include "gui/conf_bd_window.h"
#include "gui/editor_arbol_window.h"
#include "gui/editor_lista_window.h"
#include "gui/ficha_window.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <functional>

namespace {
const DescriptorTabla& tabla(const QString& nombre) {
    return *descriptorTabla(nombre);
}

// Runs trabajo on the modal dialog that the next command opens; the dialog is closed
// afterwards if trabajo left it open, so that a failure never hangs the test.
void alAbrirModal(const std::function<void(QDialog*)>& trabajo) {
    QTimer::singleShot(0, [trabajo] {
        auto* dlg = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        trabajo(dlg);
        if (dlg && dlg->isVisible()) dlg->reject();
    });
}

QStringList cabeceras(QTreeWidget* lista) {
    QStringList l;
    for (int i = 0; i < lista->columnCount(); ++i)
        l << lista->headerItem()->text(i);
    return l;
}

QTreeWidgetItem* buscarItem(QTreeWidget* arbol, const QString& texto, int columna = 0) {
    const auto items = arbol->findItems(texto, Qt::MatchExactly | Qt::MatchRecursive, columna);
    return items.isEmpty() ? nullptr : items.first();
}

void capturar(QWidget& w, const QString& nombre) {
    const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
    if (carpeta.isEmpty()) return;
    w.show();
    QApplication::processEvents();
    QVERIFY(w.grab().save(carpeta + QLatin1Char('/') + nombre));
}

QVariant crear(Entorno& e, const QString& t, const QHash<QString, QString>& textos) {
    FichaForm f(e, tabla(t));
    for (auto it = textos.cbegin(); it != textos.cend(); ++it)
        f.setTexto(it.key(), it.value());
    return f.guardar() ? f.registro().clave() : QVariant();
}

QVariant crearNodo(Database& db, const QString& t, const QString& texto, const QVariant& padre) {
    Registro r(tabla(t));
    r.setValor(QStringLiteral("Descripcion"), texto);
    r.setValor(QStringLiteral("IdPadre"), padre);
    return RegistroStore(db).crear(r);
}
} // namespace

class TestEditoresGui : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 2), QTime(10, 0))};

private slots:
    void ventanaLista() {
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        crear(e, QStringLiteral("Poblaciones"),
              {{QStringLiteral("Descripcion"), QStringLiteral("Getafe")},
               {QStringLiteral("CodigoPostal"), QStringLiteral("28901")}});
        crear(e, QStringLiteral("Poblaciones"), {{QStringLiteral("Descripcion"), QStringLiteral("Leganés")}});

        EditorListaWindow w(e, tabla(QStringLiteral("Poblaciones")));
        QCOMPARE(w.windowTitle(), QStringLiteral("Lista de Población"));
        auto* lista = w.findChild<QTreeWidget*>(QStringLiteral("lstRegistros"));
        QVERIFY(lista);
        QCOMPARE(cabeceras(lista),
                 (QStringList{QStringLiteral("Código"), QStringLiteral("Población"),
                              QStringLiteral("Código postal"), QStringLiteral("Provincia")}));
        QCOMPARE(lista->topLevelItemCount(), 2);
        QCOMPARE(lista->topLevelItem(0)->text(2), QStringLiteral("28901"));

        // Add: the record form appears, mandatory and optional fields in different colours.
        QString titulo;
        bool coloresDistintos = false;
        int longitudCp = 0;
        alAbrirModal([&](QDialog* dlg) {
            if (!dlg) return;
            titulo = dlg->windowTitle();
            auto* desc = dlg->findChild<QLineEdit*>(QStringLiteral("txtDescripcion"));
            auto* cp = dlg->findChild<QLineEdit*>(QStringLiteral("txtCodigoPostal"));
            if (!desc || !cp) return;
            coloresDistintos = desc->palette().color(QPalette::Base) != cp->palette().color(QPalette::Base) &&
                               desc->palette().color(QPalette::Text) != cp->palette().color(QPalette::Text) &&
                               desc->palette().color(QPalette::Base) == FichaWindow::fondoObligatorio();
            longitudCp = cp->maxLength();
            desc->setText(QStringLiteral("Alcalá de Henares"));
            cp->setText(QStringLiteral("28801"));
            QTest::mouseClick(dlg->findChild<QPushButton*>(QStringLiteral("cmdAceptar")), Qt::LeftButton);
        });
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("cmdAnadir")), Qt::LeftButton);
        QCOMPARE(titulo, QStringLiteral("Añadir Población"));
        QVERIFY(coloresDistintos);
        QCOMPARE(longitudCp, 5);
        QCOMPARE(lista->topLevelItemCount(), 3);
        QTreeWidgetItem* nuevo = buscarItem(lista, QStringLiteral("Alcalá de Henares"), 1);
        QVERIFY(nuevo);
        QCOMPARE(nuevo->text(2), QStringLiteral("28801"));
        QCOMPARE(lista->currentItem(), nuevo);
        QVERIFY(d.mensajes().isEmpty());

        // A refused save keeps the form open and names the field.
        bool abiertaTrasRechazo = false;
        alAbrirModal([&](QDialog* dlg) {
            if (!dlg) return;
            QTest::mouseClick(dlg->findChild<QPushButton*>(QStringLiteral("cmdAceptar")), Qt::LeftButton);
            abiertaTrasRechazo = dlg->isVisible();
        });
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("cmdAnadir")), Qt::LeftButton);
        QVERIFY(abiertaTrasRechazo);
        QCOMPARE(d.ultimoTexto(), QStringLiteral("Debe informar el campo 'Población'."));
        QCOMPARE(lista->topLevelItemCount(), 3);

        // Modify by double click on a row.
        QString tituloModificar;
        alAbrirModal([&](QDialog* dlg) {
            if (!dlg) return;
            tituloModificar = dlg->windowTitle();
            dlg->findChild<QLineEdit*>(QStringLiteral("txtProvincia"))->setText(QStringLiteral("Madrid"));
            QTest::mouseClick(dlg->findChild<QPushButton*>(QStringLiteral("cmdAceptar")), Qt::LeftButton);
        });
        w.show();
        QTreeWidgetItem* getafe = buscarItem(lista, QStringLiteral("Getafe"), 1);
        const QPoint centro = lista->visualItemRect(getafe).center();
        QTest::mouseClick(lista->viewport(), Qt::LeftButton, {}, centro);
        QTest::mouseDClick(lista->viewport(), Qt::LeftButton, {}, centro);
        QCOMPARE(tituloModificar, QStringLiteral("Modificar Población"));
        QCOMPARE(buscarItem(lista, QStringLiteral("Getafe"), 1)->text(3), QStringLiteral("Madrid"));

        // Delete the selected row after Yes.
        lista->setCurrentItem(buscarItem(lista, QStringLiteral("Leganés"), 1));
        d.si();
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("cmdEliminar")), Qt::LeftButton);
        QCOMPARE(d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar el objeto seleccionado?"));
        QCOMPARE(lista->topLevelItemCount(), 2);
        QVERIFY(!buscarItem(lista, QStringLiteral("Leganés"), 1));
        QCOMPARE(d.sinRespuesta(), 0);
    }

    // The record form: labels above their inputs, the buttons below the last one, and a
    // height that grows with the number of fields.
    void disposicionDeLaFicha() {
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        FichaWindow corta(FichaForm(e, tabla(QStringLiteral("Pelos"))));
        FichaWindow larga(FichaForm(e, tabla(QStringLiteral("Laboratorios"))));
        corta.show();
        larga.show();
        QVERIFY(larga.height() > corta.height() + 60);
        QCOMPARE(larga.windowTitle(), QStringLiteral("Añadir Laboratorio"));
        QCOMPARE(larga.findChild<QLabel*>(QStringLiteral("lblTelefono"))->text(),
                 QStringLiteral("Teléfono:"));
        int ultimo = 0;
        for (const char* nombre : {"Descripcion", "Telefono", "Email", "Activo"}) {
            auto* lbl = larga.findChild<QLabel*>(QStringLiteral("lbl") + QLatin1String(nombre));
            QWidget* entrada = larga.entrada(QLatin1String(nombre));
            QVERIFY2(lbl && entrada, nombre);
            QVERIFY(lbl->geometry().bottom() < entrada->geometry().top());
            QVERIFY(lbl->geometry().top() > ultimo);
            ultimo = entrada->geometry().bottom();
        }
        QVERIFY(larga.findChild<QPushButton*>(QStringLiteral("cmdAceptar"))->mapTo(&larga, QPoint(0, 0)).y() >
                ultimo);
        auto* activo = qobject_cast<QComboBox*>(larga.entrada(QStringLiteral("Activo")));
        QVERIFY(activo);
        QCOMPARE(activo->currentText(), QStringLiteral("Sí"));
        QVERIFY(!larga.entrada(QStringLiteral("IdLaboratorio")));
    }

    void ventanaArbol() {
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        const QString tb = QStringLiteral("Diagnosticos");
        const QVariant piel = crearNodo(t.db(), tb, QStringLiteral("Piel"), {});
        crearNodo(t.db(), tb, QStringLiteral("Otitis"), piel);
        crearNodo(t.db(), tb, QStringLiteral("Dermatitis"), piel);
        crearNodo(t.db(), tb, QStringLiteral("Cardiología"), {});

        EditorArbolWindow w(e, tabla(tb));
        QCOMPARE(w.windowTitle(), QStringLiteral("Arbol de Diagnóstico"));
        auto* arbol = w.findChild<QTreeWidget*>(QStringLiteral("arbRegistros"));
        QVERIFY(arbol);
        QCOMPARE(cabeceras(arbol), QStringList{QStringLiteral("Diagnóstico")});
        QCOMPARE(arbol->topLevelItemCount(), 2);
        QTreeWidgetItem* nodoPiel = buscarItem(arbol, QStringLiteral("Piel"));
        QVERIFY(nodoPiel && nodoPiel->isExpanded());
        QCOMPARE(nodoPiel->childCount(), 2);

        arbol->setCurrentItem(nodoPiel);
        QString titulo;
        alAbrirModal([&](QDialog* dlg) {
            if (!dlg) return;
            titulo = dlg->windowTitle();
            dlg->findChild<QLineEdit*>(QStringLiteral("txtDescripcion"))->setText(QStringLiteral("Alopecia"));
            QTest::mouseClick(dlg->findChild<QPushButton*>(QStringLiteral("cmdAceptar")), Qt::LeftButton);
        });
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("cmdAnadirHijo")), Qt::LeftButton);
        QCOMPARE(titulo, QStringLiteral("Añadir Diagnóstico"));
        nodoPiel = buscarItem(arbol, QStringLiteral("Piel"));
        QCOMPARE(nodoPiel->childCount(), 3);
        QCOMPARE(nodoPiel->child(0)->text(0), QStringLiteral("Alopecia"));
        QCOMPARE(arbol->currentItem(), nodoPiel->child(0));

        alAbrirModal([&](QDialog* dlg) {
            if (!dlg) return;
            dlg->findChild<QLineEdit*>(QStringLiteral("txtDescripcion"))
                ->setText(QStringLiteral("Oftalmología"));
            QTest::mouseClick(dlg->findChild<QPushButton*>(QStringLiteral("cmdAceptar")), Qt::LeftButton);
        });
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("cmdAnadirRaiz")), Qt::LeftButton);
        QCOMPARE(arbol->topLevelItemCount(), 3);

        arbol->setCurrentItem(buscarItem(arbol, QStringLiteral("Piel")));
        d.si();
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("cmdEliminar")), Qt::LeftButton);
        QCOMPARE(d.ultimoTexto(),
                 QStringLiteral("¿Desea realmente eliminar el objeto seleccionado? (Se eliminarán "
                                "todos sus hijos también)"));
        QCOMPARE(arbol->topLevelItemCount(), 2);
        QVERIFY(!buscarItem(arbol, QStringLiteral("Alopecia")));
        QCOMPARE(RegistroStore(t.db()).contar(tabla(tb)), 2);
    }

    void ventanaConfBd() {
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        e.ajustes().completarPorDefecto();
        ConfBdWindow w(e);
        QCOMPARE(w.windowTitle(), QStringLiteral("Configuración de la Base de Datos"));
        auto* compactacion = w.findChild<QLabel*>(QStringLiteral("lblAutocompactacion"));
        auto* contabilidad = w.findChild<QLabel*>(QStringLiteral("lblContabilidad"));
        QCOMPARE(compactacion->text(), QStringLiteral("AUTOCOMPACTACIÓN DESACTIVADA"));
        QCOMPARE(contabilidad->text(), QStringLiteral("CONTABILIDAD VISIBLE PARA TODOS LOS USUARIOS"));
        QVERIFY(w.findChild<QLineEdit*>(QStringLiteral("txtMultipuesto"))->isReadOnly());

        auto* dias = w.findChild<QLineEdit*>(QStringLiteral("txtDiasCompactacion"));
        dias->clear();
        QTest::keyClicks(dias, QStringLiteral("10"));
        QCOMPARE(compactacion->text(), QStringLiteral("AUTOCOMPACTACIÓN ACTIVADA CADA 10 DÍAS"));
        w.findChild<QCheckBox*>(QStringLiteral("chkContabSoloAdministradores"))->setChecked(true);
        QCOMPARE(contabilidad->text(), QStringLiteral("CONTABILIDAD VISIBLE SÓLO PARA ADMINISTRADORES"));

        // A wrong port is refused and focused; after fixing it the settings are saved.
        auto* puerto = w.findChild<QLineEdit*>(QStringLiteral("txtPuertoUdpChat"));
        puerto->setText(QStringLiteral("70000"));
        w.show();
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("cmdAceptar")), Qt::LeftButton);
        QCOMPARE(d.ultimoTexto(),
                 QStringLiteral("El puerto UDP del chat debe ser un número entero entre 1 y 65535."));
        QVERIFY(w.isVisible());
        QCOMPARE(w.focusWidget(), puerto);
        QCOMPARE(e.ajustes().leer(claves::DIAS_COMPACTACION), QStringLiteral("0"));
        puerto->setText(QStringLiteral("5151"));
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("cmdAceptar")), Qt::LeftButton);
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(e.ajustes().leer(claves::DIAS_COMPACTACION), QStringLiteral("10"));
        QCOMPARE(e.ajustes().leer(claves::CONTAB_SOLO_ADMINISTRADORES), QStringLiteral("S"));
        QCOMPARE(e.ajustes().leer(claves::PUERTO_UDP_CHAT), QStringLiteral("5151"));
    }

    // Screenshots for the documentation (only with PRAMELVIX_CAPTURAS).
    void capturas() {
        if (qEnvironmentVariableIsEmpty("PRAMELVIX_CAPTURAS")) QSKIP("PRAMELVIX_CAPTURAS no está definido");
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        e.ajustes().completarPorDefecto();
        for (const auto& [forma, declarable] :
             QList<QPair<QString, QString>>{{QStringLiteral("EFECTIVO"), QStringLiteral("Sí")},
                                            {QStringLiteral("TARJETA"), QStringLiteral("Sí")},
                                            {QStringLiteral("TRANSFERENCIA"), QStringLiteral("Sí")},
                                            {QStringLiteral("VALE"), QStringLiteral("No")},
                                            {QStringLiteral("ENTREGA A CUENTA"), QStringLiteral("No")}})
            QVERIFY(
                crear(e, QStringLiteral("FormasPago"),
                      {{QStringLiteral("Descripcion"), forma}, {QStringLiteral("Declarable"), declarable}})
                    .isValid());
        EditorListaWindow lista(e, tabla(QStringLiteral("FormasPago")));
        lista.findChild<QTreeWidget*>(QStringLiteral("lstRegistros"))
            ->setCurrentItem(lista.findChild<QTreeWidget*>(QStringLiteral("lstRegistros"))->topLevelItem(1));
        capturar(lista, QStringLiteral("editor-lista.png"));

        const QString tb = QStringLiteral("Diagnosticos");
        const QVariant piel = crearNodo(t.db(), tb, QStringLiteral("Dermatología"), {});
        const QVariant derm = crearNodo(t.db(), tb, QStringLiteral("Dermatitis"), piel);
        crearNodo(t.db(), tb, QStringLiteral("Dermatitis atópica"), derm);
        crearNodo(t.db(), tb, QStringLiteral("Dermatitis por pulgas (DAPP)"), derm);
        crearNodo(t.db(), tb, QStringLiteral("Otitis externa"), piel);
        const QVariant digest = crearNodo(t.db(), tb, QStringLiteral("Digestivo"), {});
        crearNodo(t.db(), tb, QStringLiteral("Gastroenteritis"), digest);
        crearNodo(t.db(), tb, QStringLiteral("Pancreatitis"), digest);
        crearNodo(t.db(), tb, QStringLiteral("Traumatología"), {});
        EditorArbolWindow arbol(e, tabla(tb));
        auto* a = arbol.findChild<QTreeWidget*>(QStringLiteral("arbRegistros"));
        a->setCurrentItem(buscarItem(a, QStringLiteral("Dermatitis")));
        capturar(arbol, QStringLiteral("editor-arbol.png"));

        FichaForm ficha(e, tabla(QStringLiteral("Poblaciones")));
        FichaWindow fichaW(ficha);
        qobject_cast<QLineEdit*>(fichaW.entrada(QStringLiteral("Descripcion")))
            ->setText(QStringLiteral("Alcalá de Henares"));
        qobject_cast<QLineEdit*>(fichaW.entrada(QStringLiteral("CodigoPostal")))
            ->setText(QStringLiteral("28801"));
        capturar(fichaW, QStringLiteral("ficha-parametro.png"));

        e.ajustes().escribir(claves::DIAS_COMPACTACION, QStringLiteral("15"));
        e.ajustes().escribir(claves::NOM_PRESENT, QStringLiteral("Clínica Veterinaria San Antón"));
        e.ajustes().escribir(claves::NIF_PRESENT, QStringLiteral("B12345678"));
        ConfBdWindow conf(e);
        capturar(conf, QStringLiteral("configuracion-bd.png"));
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestEditoresGui prueba;
    return QTest::qExec(&prueba, argc, argv);
}
#include "test_editores_gui.moc"
