// The client search window wired to its form (pick-only and reduced variants). With
// PRAMELVIX_CAPTURAS set to a folder the window is saved there.
#include "clients/generador.h"
#include "clients/ui/cliente_busqueda_window.h"
#include "gui.h"

#include <QPushButton>
#include <QTableWidget>

class TestClienteBusquedaGui : public QObject {
    Q_OBJECT
    Sesion s_{QDateTime(QDate(2026, 3, 10), QTime(10, 0))};

private slots:
    void initTestCase() {
        generarClientes(s_.db(), 300, 2026);
        s_.s.cliente(u"Núñez Pérez, José"_s);
        s_.s.cliente(u"Núñez Gil, Ana"_s);
    }

    void buscarYElegir() {
        ClienteBusquedaWindow w(s_.e);
        auto* clientes = hijo<QTableWidget>(w, u"grdClientes"_s);
        hijo<QLineEdit>(w, u"txtNombre"_s)->setText(u"nunez"_s);
        pulsar(w, u"cmdBuscar"_s);
        QVERIFY(clientes->rowCount() > 1);
        QCOMPARE(clientes->rowCount(), w.form().clientes().size());
        clientes->setCurrentCell(1, 0);
        QCOMPARE(w.form().seleccionado(), 1);
        QCOMPARE(hijo<QTableWidget>(w, u"grdMascotas"_s)->rowCount(), w.form().mascotas().size());
        const QString elegido = clientes->item(1, 0)->text();
        pulsar(w, u"cmdAceptar"_s);
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(w.form().elegido()->Cliente, elegido);
        capturar(w, u"busqueda-clientes.png"_s);
        QVERIFY(s_.d.mensajes().isEmpty());
    }

    void peticionYReducida() {
        PeticionCliente p;
        p.Bloquear = true;
        ClienteBusquedaWindow w(s_.e, nullptr, p);
        QVERIFY(hijo<QPushButton>(w, u"cmdNuevoCliente"_s)->isHidden());

        PeticionCliente r;
        r.reducida = true;
        ClienteBusquedaWindow reducida(s_.e, nullptr, r);
        QVERIFY(!reducida.findChild<QTableWidget*>(u"grdMascotas"_s));
        hijo<QLineEdit>(reducida, u"txtNumCliente"_s)->setText(u"7"_s);
        pulsar(reducida, u"cmdBuscar"_s);
        auto* clientes = hijo<QTableWidget>(reducida, u"grdClientes"_s);
        QCOMPARE(clientes->rowCount(), 1);
        QCOMPARE(clientes->item(0, 0)->text(), u"7"_s);
    }
};

PMX_GUI_TEST_MAIN(TestClienteBusquedaGui)
#include "test_cliente_busqueda_gui.moc"
