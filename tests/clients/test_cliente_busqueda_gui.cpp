// The client search window: the criteria reach the form, the grids show the result and the
// pets of the selected client, Aceptar hands the choice back, "Nuevo cliente" is hidden in
// pick-only use. With PRAMELVIX_CAPTURAS set to a folder the window is saved there.
#include "clients/generador.h"
#include "clients/ui/cliente_busqueda_window.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

class TestClienteBusquedaGui : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 10), QTime(10, 0))};
    TestDb t_;
    ScriptedDialogs d_;
    std::unique_ptr<Entorno> e_;

    template <typename W> static W* hijo(QWidget& w, const QString& nombre) {
        W* h = w.findChild<W*>(nombre);
        if (!h) qFatal("falta el control %s", qPrintable(nombre));
        return h;
    }

    static QStringList cabeceras(QTableWidget* t) {
        QStringList r;
        for (int c = 0; c < t->columnCount(); ++c)
            r << t->horizontalHeaderItem(c)->text();
        return r;
    }

private slots:
    void initTestCase() {
        migrarEsquema(t_.db());
        generarClientes(t_.db(), 300, 2026);
        e_ = std::make_unique<Entorno>(t_.db(), d_, reloj_);
    }

    void buscarYElegir() {
        ClienteBusquedaWindow w(*e_);
        QCOMPARE(w.windowTitle(), QStringLiteral("Búsqueda de Clientes"));
        auto* clientes = hijo<QTableWidget>(w, QStringLiteral("grdClientes"));
        auto* mascotas = hijo<QTableWidget>(w, QStringLiteral("grdMascotas"));
        QCOMPARE(cabeceras(clientes), ClienteBusquedaForm::columnasClientes());
        QCOMPARE(cabeceras(mascotas), ClienteBusquedaForm::columnasMascotas());
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboLOPD"))->count(), 4);
        QVERIFY(hijo<QComboBox>(w, QStringLiteral("cboEspecie"))->count() > 1);
        // The first surname of some client, typed in lower case without accents.
        const QString nombre =
            t_.db()
                .valor(QStringLiteral("SELECT Nombre FROM Clientes WHERE FechaBaja IS NULL "
                                      "ORDER BY IdCliente"))
                .toString();
        const QString apellido = normalizarBusqueda(nombre.section(QLatin1Char(' '), 0, 0)).toLower();
        hijo<QLineEdit>(w, QStringLiteral("txtNombre"))->setText(apellido);
        hijo<QPushButton>(w, QStringLiteral("cmdBuscar"))->click();
        QVERIFY(clientes->rowCount() > 0);
        QCOMPARE(clientes->rowCount(), w.form().clientes().size());
        for (int r = 0; r < clientes->rowCount(); ++r)
            QVERIFY(normalizarBusqueda(clientes->item(r, 0)->text()).startsWith(apellido.toUpper()));
        QCOMPARE(mascotas->rowCount(), w.form().mascotas().size());
        // Another client selected: its pets.
        if (clientes->rowCount() > 1) {
            clientes->setCurrentCell(1, 0);
            QCOMPARE(w.form().seleccionado(), 1);
            QCOMPARE(mascotas->rowCount(), w.form().mascotas().size());
        }
        const QString elegido = clientes->item(w.form().seleccionado(), 0)->text();
        hijo<QPushButton>(w, QStringLiteral("cmdAceptar"))->click();
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(w.form().elegido()->Cliente, elegido);
        QVERIFY(d_.mensajes().isEmpty());
    }

    void modoYBloquear() {
        PeticionCliente p;
        p.Bloquear = true;
        p.TextoInicialMascota = QStringLiteral("luna");
        ClienteBusquedaWindow w(*e_, nullptr, p);
        QVERIFY(hijo<QPushButton>(w, QStringLiteral("cmdNuevoCliente"))->isHidden());
        // The preset pet name was searched on opening.
        QCOMPARE(hijo<QLineEdit>(w, QStringLiteral("txtMascota"))->text(), QStringLiteral("luna"));
        auto* clientes = hijo<QTableWidget>(w, QStringLiteral("grdClientes"));
        QVERIFY(clientes->rowCount() > 0);
        QCOMPARE(w.form().criterios.nombreMascota, QStringLiteral("luna"));
        // "Exactamente" reaches the form.
        hijo<QRadioButton>(w, QStringLiteral("optExacto"))->setChecked(true);
        hijo<QLineEdit>(w, QStringLiteral("txtNombre"))->setText(QStringLiteral("nadie"));
        hijo<QPushButton>(w, QStringLiteral("cmdBuscar"))->click();
        QCOMPARE(w.form().criterios.modoNombre, ModoNombre::Exacto);
        QCOMPARE(clientes->rowCount(), 0);
        QCOMPARE(hijo<QLabel>(w, QStringLiteral("lblNota"))->text(),
                 QStringLiteral("Ningún cliente cumple las condiciones especificadas."));
    }

    void nuevoCliente() {
        ClienteBusquedaWindow w(*e_);
        auto* nuevo = hijo<QPushButton>(w, QStringLiteral("cmdNuevoCliente"));
        QVERIFY(!nuevo->isHidden());
        nuevo->click();
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QVERIFY(w.form().elegido()->NuevoCliente);
    }

    void reducida() {
        PeticionCliente p;
        p.reducida = true;
        ClienteBusquedaWindow w(*e_, nullptr, p);
        auto* clientes = hijo<QTableWidget>(w, QStringLiteral("grdClientes"));
        QCOMPARE(cabeceras(clientes), ClienteBusquedaForm::columnasReducida());
        QVERIFY(!w.findChild<QTableWidget*>(QStringLiteral("grdMascotas")));
        hijo<QLineEdit>(w, QStringLiteral("txtNumCliente"))->setText(QStringLiteral("7"));
        hijo<QPushButton>(w, QStringLiteral("cmdBuscar"))->click();
        QCOMPARE(clientes->rowCount(), 1);
        QCOMPARE(clientes->item(0, 0)->text(), QStringLiteral("7"));
    }

    void captura() {
        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        if (carpeta.isEmpty()) QSKIP("PRAMELVIX_CAPTURAS no está definido");
        ClienteBusquedaWindow w(*e_);
        hijo<QLineEdit>(w, QStringLiteral("txtNombre"))->setText(QStringLiteral("garcia"));
        hijo<QPushButton>(w, QStringLiteral("cmdBuscar"))->click();
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QVERIFY(w.grab().save(QDir(carpeta).filePath(QStringLiteral("busqueda-clientes.png"))));
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    TestClienteBusquedaGui prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "test_cliente_busqueda_gui.moc"
