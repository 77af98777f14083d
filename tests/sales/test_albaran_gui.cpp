// The delivery-note window on the demo clinic (offscreen): a demo note shown as the form has
// it, a line typed through the editing row and saved, and the note exported to PDF. With
// PRAMELVIX_CAPTURAS set to a folder, the window and the PDF are saved there.
#include "app/instalador.h"
#include "documents/plantillas_defecto.h"
#include "gui.h"
#include "sales/ui/albaran_window.h"

#include <QLabel>
#include <QTableWidget>

class TestAlbaranGui : public QObject {
    Q_OBJECT

private slots:
    void notaDeLaClinicaDemo() {
        Sesion s(QDateTime(QDate::currentDate(), QTime(11, 40)));
        OpcionesInstalacion op;
        op.administrador = u"admin"_s;
        op.clave = u"admin"_s;
        prepararBaseDatos(s.db(), op);
        cargarDemo(s.db(), s.e.puesto);
        QTemporaryDir datos;
        QCOMPARE(instalarPlantillasPorDefecto(datos.path()), QString());
        s.e.configuracionBD.servidor = datos.path();

        const qint64 id = s.valor(u"SELECT MAX(IdAlbaran) FROM Albaranes"_s).toLongLong();
        QVERIFY(id > 0);
        AlbaranWindow w(s.e);
        AperturaAlbaran ap;
        ap.IdAlbaran = id;
        w.abrir(ap);
        AlbaranForm& f = w.form();
        auto* grid = hijo<QTableWidget>(w, u"grdLineas"_s);
        QCOMPARE(grid->horizontalHeaderItem(5)->text(), u"Total línea"_s);
        QCOMPARE(grid->rowCount(), f.albaran().lineas().size());
        QCOMPARE(hijo<QLabel>(w, u"lblTotal"_s)->text(), f.textoTotal(u"total"_s));
        QCOMPARE(w.windowTitle(), f.titulo());

        // A line typed in the editing row: the article's code, Enter, then Añadir.
        const int antes = grid->rowCount();
        escribir(w, u"txtCodArticulo"_s, u"5"_s);
        QTest::keyClick(hijo<QLineEdit>(w, u"txtCodArticulo"_s), Qt::Key_Return);
        QCOMPARE(hijo<QLineEdit>(w, u"txtConcepto"_s)->text(), u"Pipeta antiparasitaria perro 10-20 kg"_s);
        escribir(w, u"txtCantidad"_s, u"2"_s);
        pulsar(w, u"cmdInsertar"_s);
        QCOMPARE(grid->rowCount(), antes + 1);
        QCOMPARE(grid->item(antes, 5)->text(), f.celdas(antes).at(5));
        pulsar(w, u"cmdGuardar"_s);
        QCOMPARE(s.valor(u"SELECT COUNT(*) FROM LineasAlbaran WHERE IdAlbaran = ?"_s, {id}).toInt(),
                 antes + 1);

        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        const QString pdf = QDir(carpeta.isEmpty() ? datos.path() : carpeta).filePath(u"albaran.pdf"_s);
        s.d.si(); // the data-protection notice, should the demo client not consent
        QVERIFY(w.form().exportarPdf(pdf));
        QFile fichero(pdf);
        QVERIFY(fichero.open(QIODevice::ReadOnly));
        QCOMPARE(fichero.read(5), QByteArray("%PDF-"));
        grid->clearSelection();
        w.resize(1000, 640);
        capturar(w, u"albaran.png"_s);
        QVERIFY(w.close());
    }
};

PMX_GUI_TEST_MAIN(TestAlbaranGui)
#include "test_albaran_gui.moc"
