// The delivery-note search window is wired to its form: the criteria reach it, the grid shows
// its cells, a double click hands back the note, a fixed client shows read-only and is searched
// on opening. With PRAMELVIX_CAPTURAS set to a folder the window is saved there.
#include "albaranes_ejemplo.h"
#include "gui.h"
#include "sales/ui/albaran_busqueda_window.h"

#include <QLabel>
#include <QRadioButton>
#include <QTableWidget>

namespace {
QStringList fila(QTableWidget* t, int r) {
    QStringList celdas;
    for (int c = 0; c < t->columnCount(); ++c)
        celdas << (t->item(r, c) ? t->item(r, c)->text() : QString());
    return celdas;
}
} // namespace

class TestAlbaranBusquedaGui : public QObject {
    Q_OBJECT

private slots:
    void buscarYElegir() {
        AlbaranesEjemplo c;
        AlbaranBusquedaWindow w(c.e);
        auto* rejilla = hijo<QTableWidget>(w, u"grdAlbaranes"_s);
        QCOMPARE(rejilla->horizontalHeaderItem(7)->text(), AlbaranBusquedaForm::columnas().at(7));
        QCOMPARE(textosCombo(w, u"cboSerie"_s).at(2), u"B - Clínica"_s);
        QCOMPARE(rejilla->rowCount(), 0); // nothing is searched until asked
        escribir(w, u"txtDesde"_s, u"15/02/2026"_s);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(numeros(w), u"R1 A4 B3 B2 B1"_s);
        capturar(w, u"busqueda-albaranes.png"_s);
        escribir(w, u"txtDesde"_s, QString());
        escribir(w, u"txtCliente"_s, u"nunez"_s);
        escribir(w, u"txtNumero"_s, u"2"_s);
        hijo<QRadioButton>(w, u"optContiene"_s)->setChecked(true);
        hijo<QComboBox>(w, u"cboEstado"_s)->setCurrentIndex(int(EstadoAlbaran::Cobrados));
        hijo<QComboBox>(w, u"cboSerie"_s)->setCurrentIndex(1);
        pulsar(w, u"cmdBuscar"_s);
        const AlbaranBusquedaForm& f = w.form();
        QCOMPARE(QStringList({f.serie, f.numAlbaran, f.cliente, f.desde}),
                 QStringList({u"A"_s, u"2"_s, u"nunez"_s, QString()}));
        QVERIFY(f.clienteEnCualquierParte);
        QCOMPARE(f.estado, EstadoAlbaran::Cobrados);
        QCOMPARE(numeros(w), u"A2"_s);
        QCOMPARE(fila(rejilla, 0), f.celdas(0));
        QVERIFY(hijo<QLabel>(w, u"lblNota"_s)->text().isEmpty());
        emit rejilla->cellDoubleClicked(0, 2);
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(w.form().elegido(), std::optional<qint64>(w.form().resultado().at(0).IdAlbaran));
    }

    void clienteFijado() {
        AlbaranesEjemplo c;
        AlbaranBusquedaWindow w(c.e, nullptr, c.ana);
        auto* nombre = hijo<QLineEdit>(w, u"txtCliente"_s);
        QCOMPARE(nombre->text(), u"Pérez Núñez, Ana"_s);
        QVERIFY(nombre->isReadOnly());
        QVERIFY(!hijo<QRadioButton>(w, u"optContiene"_s)->isEnabled());
        // Searched on opening: Ana's notes only, newest first.
        QCOMPARE(numeros(w), u"R1 B2 A2"_s);
        pulsar(w, u"cmdAceptar"_s);
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(w.form().elegido(), std::optional<qint64>(c.r1));
    }

private:
    // Series and number of each row of the grid.
    static QString numeros(AlbaranBusquedaWindow& w) {
        auto* rejilla = hijo<QTableWidget>(w, u"grdAlbaranes"_s);
        QStringList r;
        for (int i = 0; i < rejilla->rowCount(); ++i)
            r << rejilla->item(i, 0)->text() + rejilla->item(i, 1)->text();
        return r.join(u' ');
    }
};

PMX_GUI_TEST_MAIN(TestAlbaranBusquedaGui)
#include "test_albaran_busqueda_gui.moc"
