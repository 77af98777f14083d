// The client and health plan windows wired to their forms. With PRAMELVIX_CAPTURAS set to a
// folder the tabs and the plan window are saved there as PNG images.
#include "clients/ui/cliente_window.h"
#include "clinical/ui/plan_salud_window.h"
#include "gui.h"

#include <QTabWidget>
#include <QTableWidget>

class TestClienteGui : public QObject {
    Q_OBJECT

private slots:
    void clienteYPlan() {
        Sesion ses(QDateTime(QDate(2026, 3, 2), QTime(10, 0)));
        Entorno& e = ses.e;
        ScriptedDialogs& d = ses.d;
        Semilla& s = ses.s;
        const qint64 criador = s.fila(u"TiposCliente"_s, {{"Descripcion", u"Criador"_s}, {"Activo", u"S"_s}});
        const qint64 vacunas = s.seccion(u"Vacunas"_s);
        const qint64 id = s.cliente(u"Lucía Ortega Peña"_s, {{u"IdTipoCliente"_s, criador},
                                                             {u"Tarifa"_s, u"TARIFA 1"_s},
                                                             {u"Subcuenta"_s, u"4300000123"_s},
                                                             {u"Deuda"_s, 1234.5}});
        s.fila(u"CondicionesEspeciales"_s, {{u"IdCliente"_s, id}, {u"IdSeccion"_s, vacunas}, {u"Precio"_s, 12.5}});

        ClienteWindow w(e);
        QVERIFY(w.mostrarCliente(id));
        QCOMPARE(w.windowTitle(), u"Mantenimiento de Clientes - %1 - Lucía Ortega Peña"_s.arg(id));
        QTabWidget* tabs = w.pestanas();
        QCOMPARE(hijo<QLineEdit>(w, u"txtDeuda"_s)->text(), u"1.234,50"_s);
        QVERIFY(hijo<QLineEdit>(w, u"txtDeuda"_s)->isReadOnly());
        QCOMPARE(hijo<QComboBox>(w, u"cboIdTipoCliente"_s)->currentText(), u"Criador"_s);
        QCOMPARE(hijo<QTableWidget>(w, u"grdCondiciones"_s)->item(0, 4)->text(), u"12,50"_s);

        for (const char* pestana : {"datos", "facturacion", "ficha-comercial", "notas"}) {
            capturar(w, u"cliente-%1.png"_s.arg(QLatin1String(pestana)));
            tabs->setCurrentIndex(tabs->currentIndex() + 1);
        }

        // Typing a bad subaccount and saving: the refusal moves to the billing tab.
        tabs->setCurrentIndex(0);
        escribir(w, u"txtSubcuenta"_s, u"431"_s);
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(d.ultimoTexto(), u" La Subcuenta Contable para el Cliente debe comenzar por '430'."_s);
        QCOMPARE(tabs->currentIndex(), 1);
        escribir(w, u"txtSubcuenta"_s, u"4300000999"_s);
        d.limpiar();
        pulsar(w, u"cmdGuardar"_s);
        QVERIFY(d.mensajes().isEmpty());
        QCOMPARE(ses.valor(u"SELECT Subcuenta FROM Clientes WHERE IdCliente = ?"_s, {id}).toString(),
                 u"4300000999"_s);
        w.close();

        // The health plan window with a condition.
        PlanSaludWindow p(e);
        QTest::keyClicks(hijo<QLineEdit>(p, u"txtNombre"_s), u"Plan Cachorro Premium"_s);
        elegirTexto(p, u"cboSeccion"_s, u"Vacunas"_s);
        hijo<QLineEdit>(p, u"txtPrecio"_s)->setText(u"25"_s);
        pulsar(p, u"cmdInsertar"_s);
        QCOMPARE(hijo<QTableWidget>(p, u"grdCondiciones"_s)->rowCount(), 1);
        pulsar(p, u"cmdGuardar"_s);
        QVERIFY(d.mensajes().isEmpty());
        QVERIFY(p.windowTitle().endsWith(u" - Plan Cachorro Premium"_s));
        capturar(p, u"plan-salud.png"_s);
    }
};

PMX_GUI_TEST_MAIN(TestClienteGui)
#include "test_cliente_gui.moc"
