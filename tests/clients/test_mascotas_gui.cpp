// The pet windows wired to their forms. With PRAMELVIX_CAPTURAS set to a folder the windows
// are saved there.
#include "clients/ui/cambio_propietario_window.h"
#include "clients/ui/listado_mascotas_window.h"
#include "clients/ui/mascota_window.h"
#include "clients/ui/registro_cambios_window.h"
#include "gui.h"

#include <QGroupBox>
#include <QLabel>
#include <QSignalSpy>

class TestMascotasGui : public QObject {
    Q_OBJECT

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

PMX_GUI_TEST_MAIN(TestMascotasGui)
#include "test_mascotas_gui.moc"
