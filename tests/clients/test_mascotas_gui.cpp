// The pet windows on the offscreen platform: the pet list and fields, breeds following the
// species, the chip check when leaving the field (focus back), saving through the button,
// the pet list's heading with its count, the change of owner through its buttons, and the
// register list. With PRAMELVIX_CAPTURAS set to a folder the windows are saved there.
#include "clients/ui/cambio_propietario_window.h"
#include "clients/ui/listado_mascotas_window.h"
#include "clients/ui/mascota_window.h"
#include "clients/ui/registro_cambios_window.h"
#include "data/esquema.h"
#include "gui.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeWidget>

class TestMascotasGui : public QObject {
    Q_OBJECT

    struct Caso {
        Sesion s;
        qint64 ana = 0, luis = 0, perro = 0, gato = 0, rufo = 0, misi = 0;
        QList<qint64> elecciones;
    };

    static std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Semilla& s = c->s.s;
        c->ana = s.cliente(u"Ana Belén Núñez Ibáñez"_s, {{u"Tarifa"_s, u"TARIFA 2"_s},
                                                         {u"DtoGeneral"_s, 5.0},
                                                         {u"IdTipoIVA"_s, s.iva()},
                                                         {u"LOPD"_s, u"1"_s}});
        c->luis = s.cliente(u"Luis Pérez Gil"_s, {{u"LOPD"_s, u"2"_s}});
        c->perro = s.especie(u"Perro"_s);
        c->gato = s.especie(u"Gato"_s);
        const qint64 labrador = s.raza(u"Labrador retriever"_s, c->perro);
        s.raza(u"Pastor alemán"_s, c->perro);
        s.raza(u"Persa"_s, c->gato);
        s.raza(u"Siamés"_s, c->gato);
        s.personal(u"Dra. Marta Gómez"_s);
        c->rufo = s.mascota(u"Rufo"_s, c->ana, c->perro,
                            {{u"IdRaza"_s, labrador},
                             {u"Sexo"_s, u"M"_s},
                             {u"IdEstado"_s, s.estado(u"Sano"_s)},
                             {u"Chip"_s, u"941000012345678"_s},
                             {u"Peso"_s, 31.5},
                             {u"IdPlanSalud"_s, s.plan(u"Plan Cachorro"_s)},
                             {u"CaducidadPlan"_s, QDate(2026, 10, 31)}});
        c->misi = s.mascota(u"Misi"_s, c->ana, c->gato, {{u"Sexo"_s, u"HE"_s}});
        s.mascota(u"Toby"_s, c->luis, c->perro, {{u"Sexo"_s, u"M"_s}});
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
        auto* lista = hijo<QTreeWidget>(w, u"lvwMascotas"_s);
        QCOMPARE(lista->topLevelItemCount(), 2);
        QCOMPARE(lista->currentItem()->text(0), u"Rufo"_s);
        QCOMPARE(lista->topLevelItem(0)->text(3), u"Hembra esterilizada"_s);
        QCOMPARE(hijo<QLabel>(w, u"lblLeyenda"_s)->text(), u"Mascota nº: "_s + QString::number(c->rufo) +
                                                               u" del Cliente nº "_s +
                                                               QString::number(c->ana));
        QCOMPARE(hijo<QComboBox>(w, u"cboIdRaza"_s)->currentText(), u"Labrador retriever"_s);
        QCOMPARE(hijo<QLineEdit>(w, u"txtPeso"_s)->text(), u"31,50"_s);
        QVERIFY(hijo<QLineEdit>(w, u"txtFechaUltimaVisita"_s)->isReadOnly());
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QVERIFY(!hijo<QLabel>(w, u"lblPlanCaducado"_s)->isHidden()); // expired 31/10/2026
        capturar(w, u"mascota.png"_s);

        // Breeds follow the species.
        auto* especie = hijo<QComboBox>(w, u"cboIdEspecie"_s);
        auto* raza = hijo<QComboBox>(w, u"cboIdRaza"_s);
        especie->setCurrentIndex(especie->findText(u"Gato"_s));
        QCOMPARE(textosCombo(w, u"cboIdRaza"_s), (QStringList{QString(), u"Persa"_s, u"Siamés"_s}));
        QCOMPARE(raza->currentIndex(), 0);

        // Leaving a chip of the wrong length: the message, and the focus goes back.
        QApplication::setActiveWindow(&w);
        QVERIFY(QTest::qWaitForWindowActive(&w));
        auto* chip = hijo<QLineEdit>(w, u"txtChip"_s);
        chip->setFocus();
        chip->selectAll();
        QTest::keyClicks(chip, u"12345"_s);
        hijo<QLineEdit>(w, u"txtCartilla"_s)->setFocus();
        QTRY_VERIFY(chip->hasFocus());
        QCOMPARE(c->s.d.ultimo().titulo, u"Información introducida errónea"_s);
        QCOMPARE(c->s.d.ultimoTexto(), u"La longitud del campo 'Chip' debe ser 10 ó 15 caracteres, revise "
                                       "la información introducida"_s);
        chip->selectAll();
        QTest::keyClicks(chip, u"9410000123"_s);
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(c->s.t.db().valor(u"SELECT Chip FROM Mascotas WHERE IdMascota = ?"_s, {c->rufo}).toString(),
                 u"9410000123"_s);
        QCOMPARE(lista->currentItem()->text(1), u"Gato"_s);

        // A new pet through the buttons.
        pulsar(w, u"cmdNuevo"_s);
        QCOMPARE(hijo<QLabel>(w, u"lblLeyenda"_s)->text(), u"(Nueva Mascota)"_s);
        QCOMPARE(hijo<QLineEdit>(w, u"txtFechaAlta"_s)->text(), u"23/11/2026"_s);
        QTest::keyClicks(hijo<QLineEdit>(w, u"txtNombre"_s), u"Nala"_s);
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(lista->topLevelItemCount(), 3);
        QCOMPARE(lista->currentItem()->text(0), u"Nala"_s);
        w.close();
    }

    void listado() {
        auto c = caso();
        ListadoMascotasWindow w(c->s.e);
        auto* marco = hijo<QGroupBox>(w, u"fraResultado"_s);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(marco->title(), u" Mascotas que cumplen las condiciones (3) "_s);
        auto* lista = hijo<QTreeWidget>(w, u"lvwMascotas"_s);
        QCOMPARE(lista->topLevelItemCount(), 3);
        auto* especie = hijo<QComboBox>(w, u"cboEspecie"_s);
        especie->setCurrentIndex(especie->findText(u"Perro"_s));
        QCOMPARE(hijo<QComboBox>(w, u"cboRaza"_s)->count(), 3);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(marco->title(), u" Mascotas que cumplen las condiciones (2) "_s);
        especie->setCurrentIndex(0);
        pulsar(w, u"cmdBuscar"_s);
        capturar(w, u"listado-mascotas.png"_s);

        // Opening needs a row; with one the window names the pet to open.
        lista->setCurrentItem(nullptr);
        QSignalSpy abrir(&w, &ListadoMascotasWindow::mascotaElegida);
        pulsar(w, u"cmdAbrirMascota"_s);
        QCOMPARE(c->s.d.ultimoTexto(), u"Debe seleccionar previamente una Mascota"_s);
        QCOMPARE(abrir.count(), 0);
        lista->setCurrentItem(lista->topLevelItem(1)); // Rufo
        pulsar(w, u"cmdAbrirMascota"_s);
        QCOMPARE(abrir.count(), 1);
        QCOMPARE(abrir.first().at(1).toLongLong(), c->rufo);
        // A letter to Ana's pets (she consents) needs no notice.
        QSignalSpy carta(&w, &ListadoMascotasWindow::cartaPreparada);
        lista->clearSelection();
        lista->topLevelItem(0)->setSelected(true);
        lista->topLevelItem(1)->setSelected(true);
        pulsar(w, u"cmdCarta"_s);
        QCOMPARE(carta.count(), 1);
        QCOMPARE(carta.first().first().toString(),
                 QString::number(c->misi) + u"¬"_s + QString::number(c->rufo));
    }

    void cambioDePropietario() {
        auto c = caso();
        CambioPropietarioWindow w(c->s.e);
        QCOMPARE(w.windowTitle(), u"Cambio de Propietario"_s);
        c->elecciones = {c->ana};
        pulsar(w, u"cmdBuscarActual"_s);
        QCOMPARE(hijo<QLineEdit>(w, u"txtPropietarioActual"_s)->text(), u"Ana Belén Núñez Ibáñez"_s);
        auto* mascota = hijo<QComboBox>(w, u"cboMascota"_s);
        QCOMPARE(mascota->count(), 3);
        mascota->setCurrentIndex(mascota->findText(u"Rufo (Perro)"_s));
        c->elecciones = {c->luis};
        pulsar(w, u"cmdBuscarNuevo"_s);
        capturar(w, u"cambio-propietario.png"_s);
        pulsar(w, u"cmdAceptar"_s);
        QCOMPARE(c->s.d.ultimoTexto(),
                 u"Cambio efectuado correctamente. La mascota Rufo pertenece ahora a Luis Pérez Gil"_s);
        QCOMPARE(mascota->count(), 2);

        RegistroCambiosWindow r(c->s.e);
        pulsar(r, u"cmdBuscar"_s);
        auto* cambios = hijo<QTreeWidget>(r, u"lvwCambios"_s);
        QCOMPARE(cambios->topLevelItemCount(), 1);
        QCOMPARE(cambios->topLevelItem(0)->text(2), u"Ana Belén Núñez Ibáñez"_s);
        QCOMPARE(cambios->topLevelItem(0)->text(3), u"Luis Pérez Gil"_s);
        capturar(r, u"registro-cambios-propietario.png"_s);
    }
};

PMX_GUI_TEST_MAIN(TestMascotasGui)
#include "test_mascotas_gui.moc"
