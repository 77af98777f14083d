// The client search window: the criteria reach the form, the grids show the result and the
// pets of the selected client, Aceptar hands the choice back, "Nuevo cliente" is hidden in
// pick-only use. With PRAMELVIX_CAPTURAS set to a folder the window is saved there.
#include "clients/generador.h"
#include "clients/ui/cliente_busqueda_window.h"
#include "gui.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

class TestClienteBusquedaGui : public QObject {
    Q_OBJECT
    Sesion s_{QDateTime(QDate(2026, 3, 10), QTime(10, 0))};

    static QStringList cabecerasTabla(QTableWidget* t) {
        QStringList r;
        for (int c = 0; c < t->columnCount(); ++c)
            r << t->horizontalHeaderItem(c)->text();
        return r;
    }

private slots:
    void initTestCase() {
        generarClientes(s_.db(), 300, 2026);
        s_.s.cliente(u"Núñez Pérez, José"_s);
        s_.s.cliente(u"Núñez Gil, Ana"_s);
    }

    void buscarYElegir() {
        ClienteBusquedaWindow w(s_.e);
        auto* clientes = hijo<QTableWidget>(w, u"grdClientes"_s);
        auto* mascotas = hijo<QTableWidget>(w, u"grdMascotas"_s);
        QCOMPARE(cabecerasTabla(clientes), ClienteBusquedaForm::columnasClientes());
        QCOMPARE(cabecerasTabla(mascotas), ClienteBusquedaForm::columnasMascotas());
        QVERIFY(hijo<QComboBox>(w, u"cboEspecie"_s)->count() > 1);
        // Typed in lower case without accents.
        hijo<QLineEdit>(w, u"txtNombre"_s)->setText(u"nunez"_s);
        pulsar(w, u"cmdBuscar"_s);
        QVERIFY(clientes->rowCount() > 1);
        QCOMPARE(clientes->rowCount(), w.form().clientes().size());
        QCOMPARE(w.form().criterios.nombre, u"nunez"_s);
        QCOMPARE(w.form().criterios.modoNombre, ModoNombre::Comienzo);
        QCOMPARE(clientes->item(0, 0)->text(), w.form().clientes().first().Cliente);
        QCOMPARE(mascotas->rowCount(), w.form().mascotas().size());
        // Another client selected: its pets.
        clientes->setCurrentCell(1, 0);
        QCOMPARE(w.form().seleccionado(), 1);
        QCOMPARE(mascotas->rowCount(), w.form().mascotas().size());
        const QString elegido = clientes->item(w.form().seleccionado(), 0)->text();
        pulsar(w, u"cmdAceptar"_s);
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(w.form().elegido()->Cliente, elegido);
        capturar(w, u"busqueda-clientes.png"_s);
        QVERIFY(s_.d.mensajes().isEmpty());
    }

    void peticionYNuevoCliente() {
        PeticionCliente p;
        p.Bloquear = true;
        p.TextoInicialMascota = u"luna"_s;
        ClienteBusquedaWindow w(s_.e, nullptr, p);
        QVERIFY(hijo<QPushButton>(w, u"cmdNuevoCliente"_s)->isHidden());
        // The preset pet name was searched on opening.
        QCOMPARE(hijo<QLineEdit>(w, u"txtMascota"_s)->text(), u"luna"_s);
        auto* clientes = hijo<QTableWidget>(w, u"grdClientes"_s);
        QVERIFY(clientes->rowCount() > 0);
        QCOMPARE(w.form().criterios.nombreMascota, u"luna"_s);
        // "Exactamente" reaches the form.
        hijo<QRadioButton>(w, u"optExacto"_s)->setChecked(true);
        hijo<QLineEdit>(w, u"txtNombre"_s)->setText(u"nadie"_s);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(w.form().criterios.modoNombre, ModoNombre::Exacto);
        QCOMPARE(clientes->rowCount(), 0);
        QCOMPARE(hijo<QLabel>(w, u"lblNota"_s)->text(),
                 u"Ningún cliente cumple las condiciones especificadas."_s);

        ClienteBusquedaWindow libre(s_.e);
        auto* nuevo = hijo<QPushButton>(libre, u"cmdNuevoCliente"_s);
        QVERIFY(!nuevo->isHidden());
        nuevo->click();
        QCOMPARE(libre.result(), int(QDialog::Accepted));
        QVERIFY(libre.form().elegido()->NuevoCliente);
    }

    void reducida() {
        PeticionCliente p;
        p.reducida = true;
        ClienteBusquedaWindow w(s_.e, nullptr, p);
        auto* clientes = hijo<QTableWidget>(w, u"grdClientes"_s);
        QCOMPARE(cabecerasTabla(clientes), ClienteBusquedaForm::columnasReducida());
        QVERIFY(!w.findChild<QTableWidget*>(u"grdMascotas"_s));
        hijo<QLineEdit>(w, u"txtNumCliente"_s)->setText(u"7"_s);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(clientes->rowCount(), 1);
        QCOMPARE(clientes->item(0, 0)->text(), u"7"_s);
    }
};

PMX_GUI_TEST_MAIN(TestClienteBusquedaGui)
#include "test_cliente_busqueda_gui.moc"
