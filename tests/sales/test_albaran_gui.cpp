// The delivery-note window is wired to its form, on the demo clinic (offscreen): a demo note
// shown as the form has it, a line typed through the editing row and saved through the
// buttons, and the note exported to PDF through the installed default template. With
// PRAMELVIX_CAPTURAS set to a folder, the window and the PDF are saved there.
#include "app/instalador.h"
#include "documents/plantillas_defecto.h"
#include "sales/ui/albaran_window.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>

class TestAlbaranGui : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate::currentDate(), QTime(11, 40))};

    template <typename W> static W* hijo(QWidget& w, const QString& nombre) {
        W* h = w.findChild<W*>(nombre);
        if (!h) qFatal("falta el control %s", qPrintable(nombre));
        return h;
    }

private slots:
    void notaDeLaClinicaDemo() {
        TestDb t;
        ScriptedDialogs d;
        OpcionesInstalacion op;
        op.administrador = QStringLiteral("admin");
        op.clave = QStringLiteral("admin");
        prepararBaseDatos(t.db(), op);
        cargarDemo(t.db(), QStringLiteral("MOSTRADOR"));
        QTemporaryDir datos;
        QCOMPARE(instalarPlantillasPorDefecto(datos.path()), QString());
        Entorno e(t.db(), d, reloj_);
        e.puesto = QStringLiteral("MOSTRADOR");
        e.sesion = QStringLiteral("S1");
        e.usuario = QStringLiteral("admin");
        e.configuracionBD.servidor = datos.path();

        const qint64 id = t.db().valor(QStringLiteral("SELECT MAX(IdAlbaran) FROM Albaranes")).toLongLong();
        QVERIFY(id > 0);
        AlbaranWindow w(e);
        AperturaAlbaran ap;
        ap.IdAlbaran = id;
        w.abrir(ap);
        const Albaran& a = w.form().albaran();
        auto* grid = hijo<QTableWidget>(w, QStringLiteral("grdLineas"));
        QCOMPARE(grid->horizontalHeaderItem(5)->text(), QStringLiteral("Total línea"));
        QCOMPARE(grid->rowCount(), a.lineas().size());
        for (const auto& [nombre, texto] :
             {std::pair{QStringLiteral("lblTotal"), w.form().textoTotal(QStringLiteral("total"))},
              {QStringLiteral("lblDeuda"), w.form().textoDeuda()},
              {QStringLiteral("lblEstado"), w.form().textoEstado()}})
            QCOMPARE(hijo<QLabel>(w, nombre)->text(), texto);
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboSerie"))->isEnabled(), w.form().serieEditable());
        QCOMPARE(w.windowTitle(), w.form().titulo());

        // A line typed in the editing row: the article's code, Enter, then Añadir.
        const int antes = grid->rowCount();
        auto* codigo = hijo<QLineEdit>(w, QStringLiteral("txtCodArticulo"));
        codigo->setText(QStringLiteral("5"));
        QTest::keyClick(codigo, Qt::Key_Return);
        QCOMPARE(hijo<QLineEdit>(w, QStringLiteral("txtConcepto"))->text(),
                 QStringLiteral("Pipeta antiparasitaria perro 10-20 kg"));
        hijo<QLineEdit>(w, QStringLiteral("txtCantidad"))->setText(QStringLiteral("2"));
        hijo<QPushButton>(w, QStringLiteral("cmdInsertar"))->click();
        QCOMPARE(grid->rowCount(), antes + 1);
        QCOMPARE(grid->item(antes, 5)->text(), w.form().celdas(antes).at(5));
        hijo<QPushButton>(w, QStringLiteral("cmdGuardar"))->click();
        QVERIFY(!w.form().modificado());
        QCOMPARE(t.db()
                     .valor(QStringLiteral("SELECT COUNT(*) FROM LineasAlbaran WHERE IdAlbaran = ?"), {id})
                     .toInt(),
                 antes + 1);

        // The PDF of the note, through the installed delivery-note template.
        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        const QString pdf =
            QDir(carpeta.isEmpty() ? datos.path() : carpeta).filePath(QStringLiteral("albaran.pdf"));
        d.si(); // the data-protection notice, should the demo client not consent
        QVERIFY(w.form().exportarPdf(pdf));
        QFile f(pdf);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QVERIFY(f.read(5) == "%PDF-");

        if (!carpeta.isEmpty()) {
            w.resize(1000, 640);
            w.show();
            QVERIFY(QTest::qWaitForWindowExposed(&w));
            grid->clearSelection();
            QVERIFY(w.grab().save(QDir(carpeta).filePath(QStringLiteral("albaran.png"))));
        }
        QVERIFY(w.close());
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestAlbaranGui prueba;
    return QTest::qExec(&prueba, argc, argv);
}
#include "test_albaran_gui.moc"
