// The delivery-note search window is wired to its form: the criteria reach it, the grid shows
// its cells, a double click hands back the note, a fixed client shows read-only and is searched
// on opening. With PRAMELVIX_CAPTURAS set to a folder the window is saved there.
#include "clients/cliente_busqueda_store.h"
#include "data/esquema.h"
#include "sales/ui/albaran_busqueda_window.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

class TestAlbaranBusquedaGui : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 3, 10), QTime(10, 0))};
    TestDb t_;
    ScriptedDialogs d_;
    std::unique_ptr<Entorno> e_;
    qint64 ana_ = 0, ultimo_ = 0;

    template <typename W> static W* hijo(QWidget& w, const QString& nombre) {
        W* h = w.findChild<W*>(nombre);
        if (!h) qFatal("falta el control %s", qPrintable(nombre));
        return h;
    }

    static QStringList fila(QTableWidget* t, int r) {
        QStringList celdas;
        for (int c = 0; c < t->columnCount(); ++c)
            celdas << (t->item(r, c) ? t->item(r, c)->text() : QString());
        return celdas;
    }

    qint64 cliente(const QString& nombre) {
        t_.db().ejecutarCambio(QStringLiteral("INSERT INTO Clientes (Nombre, NombreBusqueda) VALUES (?, ?)"),
                               {nombre, normalizarBusqueda(nombre)});
        return t_.db().valor(QStringLiteral("SELECT MAX(IdCliente) FROM Clientes")).toLongLong();
    }

    qint64 albaran(const QString& serie, int numAlbaran, const QDate& fecha, qint64 idCliente, double total,
                   double pendiente, const QVariant& numFactura = {}, const QVariant& idMascota = {}) {
        t_.db().ejecutarCambio(
            QStringLiteral("INSERT INTO Albaranes (Serie, NumAlbaran, Fecha, Hora, IdCliente, "
                           "IdMascota, NumFactura, SerieFactura, Total, Pendiente) "
                           "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
            {serie, numAlbaran, fecha, QTime(10, 0), idCliente, idMascota, numFactura,
             numFactura.isNull() ? QVariant() : QVariant(serie), total, pendiente});
        return t_.db().valor(QStringLiteral("SELECT MAX(IdAlbaran) FROM Albaranes")).toLongLong();
    }

private slots:
    void initTestCase() {
        Database& db = t_.db();
        migrarEsquema(db);
        const QString sql = QStringLiteral("INSERT INTO Series (Serie, Descripcion, Tipo) VALUES (?, ?, ?)");
        db.ejecutarCambio(sql, {QStringLiteral("A"), QStringLiteral("Ventas"), QStringLiteral("V")});
        db.ejecutarCambio(sql, {QStringLiteral("B"), QStringLiteral("Clínica"), QStringLiteral("V")});
        db.ejecutarCambio(sql, {QStringLiteral("R"), QStringLiteral("Abonos"), QStringLiteral("A")});
        const qint64 jose = cliente(QStringLiteral("Núñez Pérez, José"));
        ana_ = cliente(QStringLiteral("Pérez Núñez, Ana"));
        const qint64 luis = cliente(QStringLiteral("García Gil, Luis"));
        db.ejecutarCambio(
            QStringLiteral("INSERT INTO Mascotas (IdCliente, Nombre, NombreBusqueda) VALUES (?, ?, ?)"),
            {jose, QStringLiteral("Tobías"), QStringLiteral("TOBIAS")});
        const qint64 tobias = db.valor(QStringLiteral("SELECT MAX(IdMascota) FROM Mascotas")).toLongLong();
        albaran(QStringLiteral("A"), 1, QDate(2026, 1, 10), jose, 36.30, 36.30, {}, tobias);
        albaran(QStringLiteral("A"), 2, QDate(2026, 1, 12), ana_, 1234.50, 0, 7);
        albaran(QStringLiteral("B"), 1, QDate(2026, 2, 3), luis, 20.00, 5.00);
        ultimo_ = albaran(QStringLiteral("A"), 3, QDate(2026, 3, 1), ana_, 8.25, 0);
        e_ = std::make_unique<Entorno>(db, d_, reloj_);
    }

    void init() { d_.limpiar(); }

    void buscarYElegir() {
        AlbaranBusquedaWindow w(*e_);
        auto* rejilla = hijo<QTableWidget>(w, QStringLiteral("grdAlbaranes"));
        QCOMPARE(rejilla->horizontalHeaderItem(7)->text(), AlbaranBusquedaForm::columnas().at(7));
        QCOMPARE(hijo<QComboBox>(w, QStringLiteral("cboSerie"))->itemText(2), QStringLiteral("B - Clínica"));
        QCOMPARE(rejilla->rowCount(), 0); // nothing is searched until asked
        hijo<QLineEdit>(w, QStringLiteral("txtCliente"))->setText(QStringLiteral("nunez"));
        hijo<QLineEdit>(w, QStringLiteral("txtNumero"))->setText(QStringLiteral("2"));
        hijo<QRadioButton>(w, QStringLiteral("optContiene"))->setChecked(true);
        hijo<QComboBox>(w, QStringLiteral("cboEstado"))->setCurrentIndex(int(EstadoAlbaran::Cobrados));
        hijo<QComboBox>(w, QStringLiteral("cboSerie"))->setCurrentIndex(1);
        hijo<QPushButton>(w, QStringLiteral("cmdBuscar"))->click();
        QCOMPARE(w.form().serie, QStringLiteral("A"));
        QCOMPARE(w.form().numAlbaran, QStringLiteral("2"));
        QVERIFY(w.form().clienteEnCualquierParte);
        QCOMPARE(rejilla->rowCount(), 1);
        QCOMPARE(fila(rejilla, 0), w.form().celdas(0));
        QVERIFY(hijo<QLabel>(w, QStringLiteral("lblNota"))->text().isEmpty());
        emit rejilla->cellDoubleClicked(0, 2);
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(w.form().elegido(), std::optional<qint64>(w.form().resultado().at(0).IdAlbaran));
    }

    void clienteFijado() {
        AlbaranBusquedaWindow w(*e_, nullptr, ana_);
        auto* nombre = hijo<QLineEdit>(w, QStringLiteral("txtCliente"));
        QCOMPARE(nombre->text(), QStringLiteral("Pérez Núñez, Ana"));
        QVERIFY(nombre->isReadOnly());
        QVERIFY(!hijo<QRadioButton>(w, QStringLiteral("optContiene"))->isEnabled());
        // Searched on opening: Ana's notes only, newest first.
        auto* rejilla = hijo<QTableWidget>(w, QStringLiteral("grdAlbaranes"));
        QCOMPARE(rejilla->rowCount(), 2);
        QCOMPARE(fila(rejilla, 0).at(1), QStringLiteral("3"));
        QCOMPARE(fila(rejilla, 1).at(1), QStringLiteral("2"));
        hijo<QPushButton>(w, QStringLiteral("cmdAceptar"))->click();
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(w.form().elegido(), std::optional<qint64>(ultimo_));
    }

    void captura() {
        const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        if (carpeta.isEmpty()) QSKIP("PRAMELVIX_CAPTURAS no está definido");
        AlbaranBusquedaWindow w(*e_);
        hijo<QLineEdit>(w, QStringLiteral("txtDesde"))->setText(QStringLiteral("01/01/2026"));
        hijo<QLineEdit>(w, QStringLiteral("txtHasta"))->setText(QStringLiteral("31/03/2026"));
        hijo<QPushButton>(w, QStringLiteral("cmdBuscar"))->click();
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QVERIFY(w.grab().save(QDir(carpeta).filePath(QStringLiteral("busqueda-albaranes.png"))));
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    TestAlbaranBusquedaGui prueba;
    return QTest::qExec(&prueba, argc, argv);
}

#include "test_albaran_busqueda_gui.moc"
