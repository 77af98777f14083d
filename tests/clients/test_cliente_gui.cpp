// The client, client search, health plan and pet windows wired to their forms. With
// PRAMELVIX_CAPTURAS set to a folder the windows are saved there as PNG images.
#include "clients/generador.h"
#include "clients/ui/cambio_propietario_window.h"
#include "clients/ui/cliente_busqueda_window.h"
#include "clients/ui/cliente_window.h"
#include "clients/ui/listado_mascotas_window.h"
#include "clients/ui/mascota_window.h"
#include "clients/ui/registro_cambios_window.h"
#include "clinical/ui/plan_salud_window.h"
#include "gui.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
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
        // Letters go to the preview, which a workstation without a display refuses.
        pulsar(w, u"cmdCartas"_s);
        QCOMPARE(
            d.ultimoTexto(),
            u"No se puede mostrar la vista previa en este puesto porque Pramelvix se está ejecutando sin "
            "pantalla. Guarde el documento en PDF."_s);
        d.limpiar();
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

private:
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

private:

    struct Caso {
        Sesion s;
        qint64 ana = 0, luis = 0, rufo = 0;
        QList<qint64> elecciones;
    };

    static std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Semilla& s = c->s.s;
        c->ana = s.cliente(u"Ana Belén Núñez Ibáñez"_s, {{u"LOPD"_s, u"1"_s}});
        c->luis = s.cliente(u"Luis Pérez Gil"_s);
        const qint64 perro = s.especie(u"Perro"_s);
        c->rufo = s.mascota(u"Rufo"_s, c->ana, perro, {{u"Chip"_s, u"941000012345678"_s}, {u"Peso"_s, 31.5}});
        s.mascota(u"Misi"_s, c->ana, s.especie(u"Gato"_s));
        s.mascota(u"Toby"_s, c->luis, perro);
        Caso* p = c.get();
        c->s.e.buscadores.cliente = [p](const PeticionCliente&) -> std::optional<ClienteElegido> {
            if (p->elecciones.isEmpty()) return std::nullopt;
            ClienteElegido e;
            e.claveCliente = p->elecciones.takeFirst();
            e.Cliente = e.claveCliente == p->ana ? u"Ana Belén Núñez Ibáñez"_s : u"Luis Pérez Gil"_s;
            return e;
        };
        return c;
    }

private slots:
    void mantenimiento() {
        auto c = caso();
        MascotaWindow w(c->s.e);
        QCOMPARE(w.windowTitle(), u"Mantenimiento de Mascotas"_s);
        QVERIFY(w.abrir(c->ana, c->rufo));
        QCOMPARE(hijo<QTreeWidget>(w, u"lvwMascotas"_s)->currentItem()->text(0), u"Rufo"_s);
        QCOMPARE(hijo<QLineEdit>(w, u"txtPeso"_s)->text(), u"31,50"_s);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        capturar(w, u"mascota.png"_s);

        // Leaving a chip of the wrong length: the message, and the focus goes back.
        QApplication::setActiveWindow(&w);
        QVERIFY(QTest::qWaitForWindowActive(&w));
        auto* chip = hijo<QLineEdit>(w, u"txtChip"_s);
        chip->setFocus();
        chip->selectAll();
        QTest::keyClicks(chip, u"12345"_s);
        hijo<QLineEdit>(w, u"txtCartilla"_s)->setFocus();
        QTRY_VERIFY(chip->hasFocus());
        QVERIFY(c->s.d.ultimoTexto().startsWith(u"La longitud del campo 'Chip'"_s));
        chip->selectAll();
        QTest::keyClicks(chip, u"9410000123"_s);
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(c->s.t.db().valor(u"SELECT Chip FROM Mascotas WHERE IdMascota = ?"_s, {c->rufo}).toString(),
                 u"9410000123"_s);
        pulsar(w, u"cmdImprimirPlan"_s);
        QCOMPARE(c->s.d.ultimoTexto(), u"La Mascota 'Rufo' no tiene asignado ningún Plan de Salud."_s);
        pulsar(w, u"cmdCartas"_s);
        QCOMPARE(
            c->s.d.ultimoTexto(),
            u"No se puede mostrar la vista previa en este puesto porque Pramelvix se está ejecutando sin "
            "pantalla. Guarde el documento en PDF."_s);
        w.close();
    }

    void listado() {
        auto c = caso();
        ListadoMascotasWindow w(c->s.e);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(hijo<QGroupBox>(w, u"fraResultado"_s)->title(), u" Mascotas que cumplen las condiciones (3) "_s);
        capturar(w, u"listado-mascotas.png"_s);
        hijo<QTreeWidget>(w, u"lvwMascotas"_s)->setCurrentItem(nullptr);
        QSignalSpy abrir(&w, &ListadoMascotasWindow::mascotaElegida);
        pulsar(w, u"cmdAbrirMascota"_s);
        QCOMPARE(c->s.d.ultimoTexto(), u"Debe seleccionar previamente una Mascota"_s);
        QCOMPARE(abrir.count(), 0);
        pulsar(w, u"cmdCarta"_s);
        QCOMPARE(
            c->s.d.ultimoTexto(),
            u"No ha seleccionado ninguna mascota. Seleccione al menos una mascota para emitirle una carta."_s);
    }

    void cambioDePropietario() {
        auto c = caso();
        CambioPropietarioWindow w(c->s.e);
        QCOMPARE(w.windowTitle(), u"Cambio de Propietario"_s);
        c->elecciones = {c->ana};
        pulsar(w, u"cmdBuscarActual"_s);
        QCOMPARE(hijo<QLineEdit>(w, u"txtPropietarioActual"_s)->text(), u"Ana Belén Núñez Ibáñez"_s);
        auto* mascota = hijo<QComboBox>(w, u"cboMascota"_s);
        mascota->setCurrentIndex(mascota->findText(u"Rufo (Perro)"_s));
        c->elecciones = {c->luis};
        pulsar(w, u"cmdBuscarNuevo"_s);
        capturar(w, u"cambio-propietario.png"_s);
        pulsar(w, u"cmdAceptar"_s);
        QCOMPARE(c->s.d.ultimoTexto(),
                 u"Cambio efectuado correctamente. La mascota Rufo pertenece ahora a Luis Pérez Gil"_s);

        RegistroCambiosWindow r(c->s.e);
        pulsar(r, u"cmdBuscar"_s);
        QCOMPARE(hijo<QTreeWidget>(r, u"lvwCambios"_s)->topLevelItem(0)->text(3), u"Luis Pérez Gil"_s);
        capturar(r, u"registro-cambios-propietario.png"_s);
    }
};

PMX_GUI_TEST_MAIN(TestClienteGui)
#include "test_cliente_gui.moc"
