// The client and health plan windows on the offscreen platform: a loaded client filling its
// fields, typing and saving through the widgets, a refused save moving to the field's tab, the
// plan's conditions typed in. With PRAMELVIX_CAPTURAS set to a folder the tabs
// and the plan window are saved there as PNG images.
#include "app/conf_puesto_store.h"
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
        ConfiguracionPuesto conf;
        conf.Puesto = e.puesto;
        conf.Tarifa = u"TARIFA 1"_s;
        ConfPuestoStore(ses.db()).guardar(conf);
        s.fila(u"TiposCliente"_s, {{"Descripcion", u"Particular"_s}, {"Activo", u"S"_s}});
        const qint64 criador = s.fila(u"TiposCliente"_s, {{"Descripcion", u"Criador"_s}, {"Activo", u"S"_s}});
        s.seccion(u"Vacunas"_s);
        const qint64 higiene = s.seccion(u"Higiene"_s);
        const qint64 id = s.cliente(u"Lucía Ortega Peña"_s, {{u"IdTipoCliente"_s, criador},
                                                             {u"LOPD"_s, u"1"_s},
                                                             {u"Tarifa"_s, u"TARIFA 1"_s},
                                                             {u"Subcuenta"_s, u"4300000123"_s},
                                                             {u"Notas"_s, u"Cría golden retriever."_s},
                                                             {u"Deuda"_s, 1234.5}});
        s.fila(
            u"CondicionesEspeciales"_s,
            {{u"IdCliente"_s, id}, {u"IdSeccion"_s, higiene}, {u"Precio"_s, 12.5}, {u"Descuento"_s, 10.0}});

        ClienteWindow w(e);
        QVERIFY(w.mostrarCliente(id));
        QCOMPARE(w.windowTitle(), u"Mantenimiento de Clientes - %1 - Lucía Ortega Peña"_s.arg(id));
        QTabWidget* tabs = w.pestanas();
        QCOMPARE(hijo<QLineEdit>(w, u"txtDeuda"_s)->text(), u"1.234,50"_s);
        QVERIFY(hijo<QLineEdit>(w, u"txtDeuda"_s)->isReadOnly());
        QCOMPARE(hijo<QComboBox>(w, u"cboIdTipoCliente"_s)->currentText(), u"Criador"_s);
        QCOMPARE(hijo<QComboBox>(w, u"cboLOPD"_s)->currentText(), u"Sí consiente"_s);
        auto* grid = hijo<QTableWidget>(w, u"grdCondiciones"_s);
        QCOMPARE(grid->rowCount(), 1);
        QCOMPARE(grid->item(0, 4)->text(), u"12,50"_s);

        for (const char* pestana : {"datos", "facturacion", "ficha-comercial", "notas"}) {
            capturar(w, u"cliente-%1.png"_s.arg(QLatin1String(pestana)));
            tabs->setCurrentIndex(tabs->currentIndex() + 1);
        }

        // Typing a bad subaccount and saving: the refusal moves to the billing tab.
        tabs->setCurrentIndex(0);
        escribir(w, u"txtSubcuenta"_s, u"431"_s);
        QCOMPARE(w.form().texto(u"Subcuenta"_s), u"431"_s);
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(d.ultimoTexto(), u" La Subcuenta Contable para el Cliente debe comenzar por '430'."_s);
        QCOMPARE(tabs->currentIndex(), 1);
        escribir(w, u"txtSubcuenta"_s, u"4300000999"_s);
        d.limpiar();
        pulsar(w, u"cmdGuardar"_s);
        QVERIFY(d.mensajes().isEmpty());
        QCOMPARE(ses.valor(u"SELECT Subcuenta FROM Clientes WHERE IdCliente = ?"_s, {id}).toString(),
                 u"4300000999"_s);

        // A new client from the button.
        pulsar(w, u"cmdNuevo"_s);
        QCOMPARE(w.windowTitle(), u"Mantenimiento de Clientes - (Nuevo cliente)"_s);
        QCOMPARE(hijo<QComboBox>(w, u"cboTarifa"_s)->currentText(), u"TARIFA 1"_s);
        w.close();

        // The health plan window with its conditions.
        PlanSaludWindow p(e);
        QTest::keyClicks(hijo<QLineEdit>(p, u"txtNombre"_s), u"Plan Cachorro Premium"_s);
        elegirTexto(p, u"cboSeccion"_s, u"Vacunas"_s);
        hijo<QLineEdit>(p, u"txtPrecio"_s)->setText(u"25"_s);
        hijo<QLineEdit>(p, u"txtDto"_s)->setText(u"15"_s);
        pulsar(p, u"cmdInsertar"_s);
        elegirTexto(p, u"cboSeccion"_s, u"Higiene"_s);
        hijo<QLineEdit>(p, u"txtPrecio"_s)->clear();
        hijo<QLineEdit>(p, u"txtDto"_s)->clear();
        hijo<QComboBox>(p, u"cboTarifa"_s)->setCurrentText(u"TARIFA 3"_s);
        pulsar(p, u"cmdInsertar"_s);
        auto* condiciones = hijo<QTableWidget>(p, u"grdCondiciones"_s);
        QCOMPARE(condiciones->rowCount(), 2);
        d.limpiar();
        pulsar(p, u"cmdGuardar"_s);
        QVERIFY(d.mensajes().isEmpty());
        QVERIFY(p.windowTitle().endsWith(u" - Plan Cachorro Premium"_s));
        capturar(p, u"plan-salud.png"_s);
    }
};

PMX_GUI_TEST_MAIN(TestClienteGui)
#include "test_cliente_gui.moc"
