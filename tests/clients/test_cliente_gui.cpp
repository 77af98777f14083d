// The client and health plan windows on the offscreen platform: the tabs and the condition
// list's headers, a loaded client filling its fields, typing and saving through the widgets,
// a refused save moving to the field's tab. With PRAMELVIX_CAPTURAS set to a folder the tabs
// and the plan window are saved there as PNG images.
#include "app/conf_puesto_store.h"
#include "clients/cliente_form.h"
#include "clients/ui/cliente_window.h"
#include "clinical/ui/plan_salud_window.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

class TestClienteGui : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 2), QTime(10, 0))};

    template <typename W> static W* hijo(QWidget& w, const QString& nombre) {
        W* h = w.findChild<W*>(nombre);
        if (!h) qFatal("falta el control %s", qPrintable(nombre));
        return h;
    }

    static void capturar(QWidget& w, const QString& nombre) {
        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        if (carpeta.isEmpty()) return;
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QVERIFY(w.grab().save(QDir(carpeta).filePath(nombre)));
    }

    static qint64 crear(Database& db, const QString& tabla, const QVariantMap& valores) {
        Registro r(*descriptorTabla(tabla));
        for (auto it = valores.cbegin(); it != valores.cend(); ++it)
            r.setValor(it.key(), it.value());
        return RegistroStore(db).crear(r).toLongLong();
    }

private slots:
    void clienteYPlan() {
        TestDb t;
        ScriptedDialogs d;
        Entorno e(t.db(), d, reloj_);
        e.puesto = QStringLiteral("CONSULTA1");
        e.sesion = QStringLiteral("S1");
        ConfiguracionPuesto conf;
        conf.Puesto = e.puesto;
        conf.Tarifa = QStringLiteral("TARIFA 1");
        ConfPuestoStore(t.db()).guardar(conf);
        Database& db = t.db();
        const QString s = QStringLiteral("S");
        crear(db, QStringLiteral("TiposCliente"),
              {{"Descripcion", QStringLiteral("Particular")}, {"Activo", s}});
        const qint64 criador = crear(db, QStringLiteral("TiposCliente"),
                                     {{"Descripcion", QStringLiteral("Criador")}, {"Activo", s}});
        crear(db, QStringLiteral("Poblaciones"), {{"Descripcion", QStringLiteral("Alcalá de Henares")}});
        crear(db, QStringLiteral("Provincias"),
              {{"CodigoProvincia", QStringLiteral("28")}, {"Descripcion", QStringLiteral("Madrid")}});
        const qint64 vacunas =
            crear(db, QStringLiteral("Secciones"), {{"Descripcion", QStringLiteral("Vacunas")}});
        const qint64 higiene =
            crear(db, QStringLiteral("Secciones"), {{"Descripcion", QStringLiteral("Higiene")}});

        ClienteForm datos(e);
        for (const auto& [c, v] : QList<QPair<QString, QString>>{
                 {QStringLiteral("Nombre"), QStringLiteral("Lucía Ortega Peña")},
                 {QStringLiteral("DNI"), QStringLiteral("12345678Z")},
                 {QStringLiteral("Direccion"), QStringLiteral("C/ Mayor, 14, 2º B")},
                 {QStringLiteral("Poblacion"), QStringLiteral("Alcalá de Henares")},
                 {QStringLiteral("CodigoPostal"), QStringLiteral("28801")},
                 {QStringLiteral("Provincia"), QStringLiteral("Madrid")},
                 {QStringLiteral("IdTipoCliente"), QString::number(criador)},
                 {QStringLiteral("Telefono1"), QStringLiteral("918 812 345")},
                 {QStringLiteral("Movil"), QStringLiteral("612345678")},
                 {QStringLiteral("EMail"), QStringLiteral("lucia.ortega@correo.es")},
                 {QStringLiteral("ViaComunicacion"), QStringLiteral("SMS")},
                 {QStringLiteral("LOPD"), QStringLiteral("Sí consiente")},
                 {QStringLiteral("ImpedirDeuda"), QStringLiteral("Sí")},
                 {QStringLiteral("Subcuenta"), QStringLiteral("4300000123")},
                 {QStringLiteral("IBAN"), QStringLiteral("ES91 2100 0418 4502 0005 1332")},
                 {QStringLiteral("FraNombre"), QStringLiteral("Criadero Ortega S.L.")},
                 {QStringLiteral("FraDNI"), QStringLiteral("B12345678")},
                 {QStringLiteral("FraDireccion"), QStringLiteral("Camino del Olivar, 3")},
                 {QStringLiteral("DtoGeneral"), QStringLiteral("5")},
                 {QStringLiteral("Notas"),
                  QStringLiteral("Cría golden retriever. Prefiere citas por la tarde.")},
                 {QStringLiteral("Aviso"), QStringLiteral("Pendiente de entregar la cartilla de Toby.")}})
            QVERIFY(datos.setTexto(c, v));
        EntradaCondicion en;
        en.IdSeccion = vacunas;
        en.Tarifa = QStringLiteral("TARIFA 2");
        QVERIFY(datos.condiciones().insertar(en));
        en.IdSeccion = higiene;
        en.Tarifa.clear();
        en.Precio = QStringLiteral("12,5");
        en.Descuento = QStringLiteral("10");
        QVERIFY(datos.condiciones().insertar(en));
        QVERIFY(datos.guardar());
        const qint64 id = *datos.idCliente();
        db.ejecutar(QStringLiteral("UPDATE Clientes SET Deuda = ?, EntregadoCuenta = ? WHERE IdCliente = ?"),
                    {1234.5, 50.0, static_cast<qlonglong>(id)});

        ClienteWindow w(e);
        QVERIFY(w.mostrarCliente(id));
        QCOMPARE(w.windowTitle(),
                 QStringLiteral("Mantenimiento de Clientes - %1 - Lucía Ortega Peña").arg(id));
        QTabWidget* tabs = w.pestanas();
        QStringList nombres;
        for (int i = 0; i < tabs->count(); ++i)
            nombres << tabs->tabText(i);
        QCOMPARE(nombres, QStringList({QStringLiteral("Datos"), QStringLiteral("Facturación"),
                                       QStringLiteral("Ficha Comercial"), QStringLiteral("Notas"),
                                       QStringLiteral("Citas")}));
        QCOMPARE(hijo<QLineEdit>(w, QStringLiteral("txtDeuda"))->text(), QStringLiteral("1.234,50"));
        QVERIFY(hijo<QLineEdit>(w, QStringLiteral("txtDeuda"))->isReadOnly());
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboIdTipoCliente"))->currentText(),
                 QStringLiteral("Criador"));
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboLOPD"))->currentText(),
                 QStringLiteral("Sí consiente"));
        auto* grid = hijo<QTableWidget>(w, QStringLiteral("grdCondiciones"));
        QCOMPARE(grid->rowCount(), 2);
        QCOMPARE(grid->horizontalHeaderItem(3)->text(), QStringLiteral("SubFamilia"));
        QCOMPARE(grid->item(1, 4)->text(), QStringLiteral("12,50"));
        QCOMPARE(hijo<QTableWidget>(w, QStringLiteral("grdCitas"))->horizontalHeaderItem(4)->text(),
                 QStringLiteral("Acudió"));

        tabs->setCurrentIndex(0);
        capturar(w, QStringLiteral("cliente-datos.png"));
        tabs->setCurrentIndex(1);
        capturar(w, QStringLiteral("cliente-facturacion.png"));
        tabs->setCurrentIndex(2);
        capturar(w, QStringLiteral("cliente-ficha-comercial.png"));
        tabs->setCurrentIndex(3);
        capturar(w, QStringLiteral("cliente-notas.png"));

        // Typing a bad subaccount and saving: the refusal moves to the billing tab.
        tabs->setCurrentIndex(0);
        auto* subcuenta = hijo<QLineEdit>(w, QStringLiteral("txtSubcuenta"));
        subcuenta->setText(QString());
        QTest::keyClicks(subcuenta, QStringLiteral("431"));
        QCOMPARE(w.form().texto(QStringLiteral("Subcuenta")), QStringLiteral("431"));
        hijo<QPushButton>(w, QStringLiteral("cmdGuardar"))->click();
        QCOMPARE(d.ultimoTexto(),
                 QStringLiteral(" La Subcuenta Contable para el Cliente debe comenzar por '430'."));
        QCOMPARE(tabs->currentIndex(), 1);
        subcuenta->clear();
        QTest::keyClicks(subcuenta, QStringLiteral("4300000999"));
        d.limpiar();
        hijo<QPushButton>(w, QStringLiteral("cmdGuardar"))->click();
        QVERIFY(d.mensajes().isEmpty());
        ClienteForm leido(e);
        QVERIFY(leido.cargar(id));
        QCOMPARE(leido.texto(QStringLiteral("Subcuenta")), QStringLiteral("4300000999"));

        // A new client from the button.
        hijo<QPushButton>(w, QStringLiteral("cmdNuevo"))->click();
        QCOMPARE(w.windowTitle(), QStringLiteral("Mantenimiento de Clientes - (Nuevo cliente)"));
        QCOMPARE(hijo<QLineEdit>(w, QStringLiteral("txtFechaAlta"))->text(), QStringLiteral("02/03/2026"));
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboTarifa"))->currentText(), QStringLiteral("TARIFA 1"));
        w.close();

        // The health plan window with its conditions.
        PlanSaludWindow p(e);
        QTest::keyClicks(hijo<QLineEdit>(p, QStringLiteral("txtNombre")),
                         QStringLiteral("Plan Cachorro Premium"));
        hijo<QPushButton>(p, QStringLiteral("cmdGuardar"))->click();
        QCOMPARE(d.ultimoTexto(), QStringLiteral("Debe informar al menos una condición en el listado"));
        auto* seccion = hijo<QComboBox>(p, QStringLiteral("cboSeccion"));
        seccion->setCurrentIndex(seccion->findText(QStringLiteral("Vacunas")));
        hijo<QLineEdit>(p, QStringLiteral("txtPrecio"))->setText(QStringLiteral("25"));
        hijo<QLineEdit>(p, QStringLiteral("txtDto"))->setText(QStringLiteral("15"));
        hijo<QPushButton>(p, QStringLiteral("cmdInsertar"))->click();
        seccion->setCurrentIndex(seccion->findText(QStringLiteral("Higiene")));
        hijo<QLineEdit>(p, QStringLiteral("txtPrecio"))->clear();
        hijo<QLineEdit>(p, QStringLiteral("txtDto"))->clear();
        hijo<QComboBox>(p, QStringLiteral("cboTarifa"))->setCurrentText(QStringLiteral("TARIFA 3"));
        hijo<QPushButton>(p, QStringLiteral("cmdInsertar"))->click();
        auto* condiciones = hijo<QTableWidget>(p, QStringLiteral("grdCondiciones"));
        QCOMPARE(condiciones->rowCount(), 2);
        d.limpiar();
        hijo<QPushButton>(p, QStringLiteral("cmdGuardar"))->click();
        QVERIFY(d.mensajes().isEmpty());
        QVERIFY(p.windowTitle().endsWith(QStringLiteral(" - Plan Cachorro Premium")));
        capturar(p, QStringLiteral("plan-salud.png"));
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestClienteGui prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "test_cliente_gui.moc"
