// The delivery-note search window is wired to its form: a criterion reaches it, the grid shows
// its cells, a double click hands back the note. With PRAMELVIX_CAPTURAS set to a folder the
// window is saved there.
#include "albaranes_ejemplo.h"
#include "gui.h"
#include "sales/ui/albaran_busqueda_window.h"

#include <QTableWidget>

class TestAlbaranBusquedaGui : public QObject {
    Q_OBJECT

private slots:
    void buscarYElegir() {
        AlbaranesEjemplo c;
        AlbaranBusquedaWindow w(c.e);
        auto* rejilla = hijo<QTableWidget>(w, u"grdAlbaranes"_s);
        QCOMPARE(textosCombo(w, u"cboSerie"_s).at(2), u"B - Clínica"_s);
        QCOMPARE(rejilla->rowCount(), 0); // nothing is searched until asked
        escribir(w, u"txtDesde"_s, u"15/02/2026"_s);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(w.form().desde, u"15/02/2026"_s);
        QCOMPARE(rejilla->rowCount(), 5);
        for (int col = 0; col < rejilla->columnCount(); ++col)
            QCOMPARE(rejilla->item(4, col) ? rejilla->item(4, col)->text() : QString(), w.form().celdas(4).at(col));
        capturar(w, u"busqueda-albaranes.png"_s);
        emit rejilla->cellDoubleClicked(4, 2);
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QCOMPARE(w.form().elegido(), std::optional<qint64>(w.form().resultado().at(4).IdAlbaran));
    }
};

PMX_GUI_TEST_MAIN(TestAlbaranBusquedaGui)
#include "test_albaran_busqueda_gui.moc"
