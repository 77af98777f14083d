// The pet windows on the offscreen platform: the pet list and fields, breeds following the
// species, the chip check when leaving the field (focus back), saving through the button,
// the pet list's heading with its count, the change of owner through its buttons, and the
// register list. With PRAMELVIX_CAPTURAS set to a folder the windows are saved there.
#include "clients/ui/cambio_propietario_window.h"
#include "clients/ui/listado_mascotas_window.h"
#include "clients/ui/mascota_window.h"
#include "clients/ui/registro_cambios_window.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

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

namespace {
qint64 crear(Database& db, const QString& t, const QVariantMap& valores) {
    Registro r(*descriptorTabla(t));
    for (auto it = valores.cbegin(); it != valores.cend(); ++it)
        r.setValor(it.key(), it.value());
    return RegistroStore(db).crear(r).toLongLong();
}
} // namespace

class TestMascotasGui : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        qint64 ana = 0, luis = 0, perro = 0, gato = 0, rufo = 0, misi = 0, plan = 0;
        QList<qint64> elecciones;
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Database& db = c->t.db();
        const QString s = QStringLiteral("S");
        const qint64 iva = crear(db, QStringLiteral("TiposIVA"),
                                 {{QStringLiteral("Descripcion"), QStringLiteral("General 21%")},
                                  {QStringLiteral("Porcentaje"), 21.0}});
        c->ana = crear(db, QStringLiteral("Clientes"),
                       {{QStringLiteral("Nombre"), QStringLiteral("Ana Belén Núñez Ibáñez")},
                        {QStringLiteral("Tarifa"), QStringLiteral("TARIFA 2")},
                        {QStringLiteral("DtoGeneral"), 5.0},
                        {QStringLiteral("IdTipoIVA"), iva},
                        {QStringLiteral("LOPD"), QStringLiteral("1")}});
        c->luis = crear(db, QStringLiteral("Clientes"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Luis Pérez Gil")},
                         {QStringLiteral("LOPD"), QStringLiteral("2")}});
        c->perro =
            crear(db, QStringLiteral("Especies"),
                  {{QStringLiteral("Descripcion"), QStringLiteral("Perro")}, {QStringLiteral("Activo"), s}});
        c->gato =
            crear(db, QStringLiteral("Especies"),
                  {{QStringLiteral("Descripcion"), QStringLiteral("Gato")}, {QStringLiteral("Activo"), s}});
        const qint64 labrador = crear(db, QStringLiteral("Razas"),
                                      {{QStringLiteral("Descripcion"), QStringLiteral("Labrador retriever")},
                                       {QStringLiteral("IdEspecie"), c->perro},
                                       {QStringLiteral("Activo"), s}});
        crear(db, QStringLiteral("Razas"),
              {{QStringLiteral("Descripcion"), QStringLiteral("Pastor alemán")},
               {QStringLiteral("IdEspecie"), c->perro},
               {QStringLiteral("Activo"), s}});
        crear(db, QStringLiteral("Razas"),
              {{QStringLiteral("Descripcion"), QStringLiteral("Persa")},
               {QStringLiteral("IdEspecie"), c->gato},
               {QStringLiteral("Activo"), s}});
        crear(db, QStringLiteral("Razas"),
              {{QStringLiteral("Descripcion"), QStringLiteral("Siamés")},
               {QStringLiteral("IdEspecie"), c->gato},
               {QStringLiteral("Activo"), s}});
        const qint64 sano =
            crear(db, QStringLiteral("Estados"), {{QStringLiteral("Descripcion"), QStringLiteral("Sano")}});
        crear(db, QStringLiteral("Personal"),
              {{QStringLiteral("Descripcion"), QStringLiteral("Dra. Marta Gómez")},
               {QStringLiteral("Activo"), s}});
        c->plan = crear(db, QStringLiteral("PlanesSalud"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Plan Cachorro")}});
        c->rufo = crear(db, QStringLiteral("Mascotas"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Rufo")},
                         {QStringLiteral("IdCliente"), c->ana},
                         {QStringLiteral("IdEspecie"), c->perro},
                         {QStringLiteral("IdRaza"), labrador},
                         {QStringLiteral("Sexo"), QStringLiteral("M")},
                         {QStringLiteral("IdEstado"), sano},
                         {QStringLiteral("FechaNacimiento"), QDate(2019, 4, 2)},
                         {QStringLiteral("FechaAlta"), QDate(2020, 1, 15)},
                         {QStringLiteral("Chip"), QStringLiteral("941000012345678")},
                         {QStringLiteral("Peso"), 31.5},
                         {QStringLiteral("IdPlanSalud"), c->plan},
                         {QStringLiteral("CaducidadPlan"), QDate(2026, 10, 31)},
                         {QStringLiteral("TipoMascota"), QStringLiteral("Compañía")},
                         {QStringLiteral("Baja"), false}});
        c->misi = crear(db, QStringLiteral("Mascotas"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Misi")},
                         {QStringLiteral("IdCliente"), c->ana},
                         {QStringLiteral("IdEspecie"), c->gato},
                         {QStringLiteral("Sexo"), QStringLiteral("HE")}});
        crear(db, QStringLiteral("Mascotas"),
              {{QStringLiteral("Nombre"), QStringLiteral("Toby")},
               {QStringLiteral("IdCliente"), c->luis},
               {QStringLiteral("IdEspecie"), c->perro},
               {QStringLiteral("Sexo"), QStringLiteral("M")}});
        c->e = std::make_unique<Entorno>(db, c->d, reloj_);
        c->e->puesto = QStringLiteral("CONSULTA1");
        c->e->sesion = QStringLiteral("S1");
        c->e->usuario = QStringLiteral("ana");
        Caso* p = c.get();
        c->e->buscadores.cliente = [p](const PeticionCliente&) -> std::optional<ClienteElegido> {
            if (p->elecciones.isEmpty()) return std::nullopt;
            ClienteElegido e;
            e.claveCliente = p->elecciones.takeFirst();
            e.Cliente = e.claveCliente == p->ana ? QStringLiteral("Ana Belén Núñez Ibáñez")
                                                 : QStringLiteral("Luis Pérez Gil");
            return e;
        };
        return c;
    }

    static void capturar(QWidget& w, const QString& nombre) {
        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        if (carpeta.isEmpty()) return;
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QVERIFY(w.grab().save(QDir(carpeta).filePath(nombre)));
    }

    template <typename W> static W* hijo(QWidget& w, const QString& nombre) {
        W* h = w.findChild<W*>(nombre);
        if (!h) qFatal("falta el control %s", qPrintable(nombre));
        return h;
    }

private slots:
    void mantenimiento() {
        auto c = caso();
        MascotaWindow w(*c->e);
        QCOMPARE(w.windowTitle(), QStringLiteral("Mantenimiento de Mascotas"));
        QVERIFY(w.abrir(c->ana, c->rufo));
        auto* lista = hijo<QTreeWidget>(w, QStringLiteral("lvwMascotas"));
        QStringList cabeceras;
        for (int i = 0; i < lista->columnCount(); ++i)
            cabeceras << lista->headerItem()->text(i);
        QCOMPARE(cabeceras,
                 (QStringList{QStringLiteral("Mascota"), QStringLiteral("Especie"), QStringLiteral("Raza"),
                              QStringLiteral("Sexo"), QStringLiteral("Estado")}));
        QCOMPARE(lista->topLevelItemCount(), 2);
        QCOMPARE(lista->currentItem()->text(0), QStringLiteral("Rufo"));
        QCOMPARE(lista->topLevelItem(0)->text(3), QStringLiteral("Hembra esterilizada"));
        QCOMPARE(hijo<QLabel>(w, QStringLiteral("lblLeyenda"))->text(),
                 QStringLiteral("Mascota nº: ") + QString::number(c->rufo) +
                     QStringLiteral(" del Cliente nº ") + QString::number(c->ana));
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboIdRaza"))->currentText(),
                 QStringLiteral("Labrador retriever"));
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboSexo"))->currentText(), QStringLiteral("Macho"));
        QCOMPARE(hijo<QLineEdit>(w, QStringLiteral("txtPeso"))->text(), QStringLiteral("31,50"));
        QVERIFY(hijo<QLabel>(w, QStringLiteral("lblFichaComercial"))
                    ->text()
                    .contains(QStringLiteral("TARIFA 2")));
        QVERIFY(hijo<QLineEdit>(w, QStringLiteral("txtFechaUltimaVisita"))->isReadOnly());
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QVERIFY(!hijo<QLabel>(w, QStringLiteral("lblPlanCaducado"))->isHidden()); // expired 31/10/2026
        capturar(w, QStringLiteral("mascota.png"));

        // Breeds follow the species.
        auto* especie = hijo<QComboBox>(w, QStringLiteral("cboIdEspecie"));
        auto* raza = hijo<QComboBox>(w, QStringLiteral("cboIdRaza"));
        especie->setCurrentIndex(especie->findText(QStringLiteral("Gato")));
        QStringList razas;
        for (int i = 0; i < raza->count(); ++i)
            razas << raza->itemText(i);
        QCOMPARE(razas, (QStringList{QString(), QStringLiteral("Persa"), QStringLiteral("Siamés")}));
        QCOMPARE(raza->currentIndex(), 0);

        // Leaving a chip of the wrong length: the message, and the focus goes back.
        QApplication::setActiveWindow(&w);
        QVERIFY(QTest::qWaitForWindowActive(&w));
        auto* chip = hijo<QLineEdit>(w, QStringLiteral("txtChip"));
        chip->setFocus();
        chip->selectAll();
        QTest::keyClicks(chip, QStringLiteral("12345"));
        hijo<QLineEdit>(w, QStringLiteral("txtCartilla"))->setFocus();
        QTRY_VERIFY(chip->hasFocus());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Información introducida errónea"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("La longitud del campo 'Chip' debe ser 10 ó 15 caracteres, revise "
                                "la información introducida"));
        chip->selectAll();
        QTest::keyClicks(chip, QStringLiteral("9410000123"));
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdGuardar")), Qt::LeftButton);
        QCOMPARE(c->t.db()
                     .valor(QStringLiteral("SELECT Chip FROM Mascotas WHERE IdMascota = ?"), {c->rufo})
                     .toString(),
                 QStringLiteral("9410000123"));
        QCOMPARE(c->t.db()
                     .valor(QStringLiteral("SELECT IdEspecie FROM Mascotas WHERE IdMascota = ?"), {c->rufo})
                     .toLongLong(),
                 c->gato);
        QCOMPARE(lista->currentItem()->text(1), QStringLiteral("Gato"));

        // A new pet through the buttons.
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdNuevo")), Qt::LeftButton);
        QCOMPARE(hijo<QLabel>(w, QStringLiteral("lblLeyenda"))->text(), QStringLiteral("(Nueva Mascota)"));
        QCOMPARE(hijo<QLineEdit>(w, QStringLiteral("txtFechaAlta"))->text(), QStringLiteral("23/11/2026"));
        QTest::keyClicks(hijo<QLineEdit>(w, QStringLiteral("txtNombre")), QStringLiteral("Nala"));
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdGuardar")), Qt::LeftButton);
        QCOMPARE(lista->topLevelItemCount(), 3);
        QCOMPARE(lista->currentItem()->text(0), QStringLiteral("Nala"));
        w.close();
    }

    void listado() {
        auto c = caso();
        ListadoMascotasWindow w(*c->e);
        auto* marco = hijo<QGroupBox>(w, QStringLiteral("fraResultado"));
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdBuscar")), Qt::LeftButton);
        QCOMPARE(marco->title(), QStringLiteral(" Mascotas que cumplen las condiciones (3) "));
        auto* lista = hijo<QTreeWidget>(w, QStringLiteral("lvwMascotas"));
        QCOMPARE(lista->topLevelItemCount(), 3);
        QCOMPARE(lista->headerItem()->text(9), QStringLiteral("Plan de salud"));
        auto* especie = hijo<QComboBox>(w, QStringLiteral("cboEspecie"));
        especie->setCurrentIndex(especie->findText(QStringLiteral("Perro")));
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboRaza"))->count(), 3);
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdBuscar")), Qt::LeftButton);
        QCOMPARE(marco->title(), QStringLiteral(" Mascotas que cumplen las condiciones (2) "));
        especie->setCurrentIndex(0);
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdBuscar")), Qt::LeftButton);
        capturar(w, QStringLiteral("listado-mascotas.png"));

        // Opening needs a row; with one the window names the pet to open.
        lista->setCurrentItem(nullptr);
        QSignalSpy abrir(&w, &ListadoMascotasWindow::mascotaElegida);
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdAbrirMascota")), Qt::LeftButton);
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Debe seleccionar previamente una Mascota"));
        QCOMPARE(abrir.count(), 0);
        lista->setCurrentItem(lista->topLevelItem(1)); // Rufo
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdAbrirMascota")), Qt::LeftButton);
        QCOMPARE(abrir.count(), 1);
        QCOMPARE(abrir.first().at(1).toLongLong(), c->rufo);
        // A letter to Ana's pets (she consents) needs no notice.
        QSignalSpy carta(&w, &ListadoMascotasWindow::cartaPreparada);
        lista->clearSelection();
        lista->topLevelItem(0)->setSelected(true);
        lista->topLevelItem(1)->setSelected(true);
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdCarta")), Qt::LeftButton);
        QCOMPARE(carta.count(), 1);
        QCOMPARE(carta.first().first().toString(),
                 QString::number(c->misi) + QStringLiteral("¬") + QString::number(c->rufo));
    }

    void cambioDePropietario() {
        auto c = caso();
        CambioPropietarioWindow w(*c->e);
        QCOMPARE(w.windowTitle(), QStringLiteral("Cambio de Propietario"));
        c->elecciones = {c->ana};
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdBuscarActual")), Qt::LeftButton);
        QCOMPARE(hijo<QLineEdit>(w, QStringLiteral("txtPropietarioActual"))->text(),
                 QStringLiteral("Ana Belén Núñez Ibáñez"));
        auto* mascota = hijo<QComboBox>(w, QStringLiteral("cboMascota"));
        QCOMPARE(mascota->count(), 3);
        mascota->setCurrentIndex(mascota->findText(QStringLiteral("Rufo (Perro)")));
        c->elecciones = {c->luis};
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdBuscarNuevo")), Qt::LeftButton);
        capturar(w, QStringLiteral("cambio-propietario.png"));
        QTest::mouseClick(hijo<QPushButton>(w, QStringLiteral("cmdAceptar")), Qt::LeftButton);
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral(
                     "Cambio efectuado correctamente. La mascota Rufo pertenece ahora a Luis Pérez Gil"));
        QCOMPARE(mascota->count(), 2);

        RegistroCambiosWindow r(*c->e);
        QTest::mouseClick(hijo<QPushButton>(r, QStringLiteral("cmdBuscar")), Qt::LeftButton);
        auto* cambios = hijo<QTreeWidget>(r, QStringLiteral("lvwCambios"));
        QCOMPARE(cambios->topLevelItemCount(), 1);
        QCOMPARE(cambios->topLevelItem(0)->text(2), QStringLiteral("Ana Belén Núñez Ibáñez"));
        QCOMPARE(cambios->topLevelItem(0)->text(3), QStringLiteral("Luis Pérez Gil"));
        capturar(r, QStringLiteral("registro-cambios-propietario.png"));
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestMascotasGui prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "test_mascotas_gui.moc"
