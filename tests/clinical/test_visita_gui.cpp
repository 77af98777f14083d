// The visit window's wiring: fields typed into the form, the caption, the hospitalise flag with
// "HOSPITALIZADO" and "JAULA:", the history and prescription lists, and the search window.
#include "app/instalador.h"
#include "clinical/croquis.h"
#include "documents/plantillas_defecto.h"
#include "sales/ui/presupuesto_window.h"
#include "clinical/ui/croquis_widget.h"
#include "clinical/ui/visita_busqueda_window.h"
#include "clinical/ui/visita_window.h"
#include "gui.h"
#include "sesion.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTabWidget>
#include <QTreeWidget>

class TestVisitaGui : public QObject {
    Q_OBJECT

private slots:
    void visita() {
        Sesion c;
        const qint64 ana = c.s.cliente(u"Ana Núñez"_s);
        const qint64 rufo = c.s.mascota(u"Rufo"_s, ana, c.s.especie(u"Perro"_s));
        c.s.fila(u"TiposVisita"_s, {{u"Descripcion"_s, u"Consulta"_s}});
        c.s.fila(u"Diagnosticos"_s, {{u"Descripcion"_s, u"Otitis externa"_s}});
        c.s.personal(u"Dra. Ferrer"_s);
        c.s.fila(u"Medicamentos"_s, {{u"Descripcion"_s, u"Amoxicilina 250 mg"_s}});
        VisitaWindow w(c.e);
        w.form().pedirJaula = [](const QString&) { return std::optional<QString>(u"4"_s); };
        AperturaVisita ap;
        ap.IdClienteInit = ana;
        ap.IdMascotaInit = rufo;
        QVERIFY(w.abrir(ap));
        QCOMPARE(hijo<QLabel>(w, u"lblLeyenda"_s)->text(), u" (Nueva visita)"_s);
        QCOMPARE(hijo<QTabWidget>(w, u"tabVisita"_s)->count(), 6);
        elegirTexto(w, u"cboIdTipoVisita"_s, u"Consulta"_s);
        elegirTexto(w, u"cboIdDiagnostico"_s, u"Otitis externa"_s);
        elegirTexto(w, u"cboIdVeterinario"_s, u"Dra. Ferrer"_s);
        escribir(w, u"txtPeso"_s, u"12,4"_s);
        hijo<QCheckBox>(w, u"chkHospitalizar"_s)->click();
        QVERIFY(!hijo<QLabel>(w, u"lblHospitalizado"_s)->isHidden());
        QCOMPARE(hijo<QLabel>(w, u"lblJaula"_s)->text(), u"JAULA: 4"_s);
        pulsar(w, u"cmdGuardar"_s);
        QVERIFY2(c.d.mensajes().isEmpty(), qPrintable(c.d.ultimoTexto()));
        const qint64 id = *w.form().id();
        QCOMPARE(hijo<QLabel>(w, u"lblLeyenda"_s)->text(), u"Visita nº: "_s + QString::number(id));
        QCOMPARE(c.valor(u"SELECT Jaula FROM Mascotas WHERE IdMascota = ?"_s, {rufo}).toString(), u"4"_s);
        const auto* historial = hijo<QTreeWidget>(w, u"lvwHistorial"_s);
        QCOMPARE(cabeceras(*historial), (QStringList{u"Fecha"_s, u"Hora"_s, u"Tipo de Visita"_s, u"Diagnóstico"_s,
                                                     u"Veterinario"_s, u"Peso"_s, u"Presup."_s}));
        QCOMPARE(columna(*historial, 5), QStringList{u"12,40"_s});

        elegirTexto(w, u"cboMedicamento"_s, u"Amoxicilina 250 mg"_s);
        elegirTexto(w, u"cboVeterinarioReceta"_s, u"Dra. Ferrer"_s);
        escribir(w, u"txtDosificacion"_s, u"1 cada 12 h"_s);
        pulsar(w, u"cmdInsertarReceta"_s);
        const auto* recetas = hijo<QTreeWidget>(w, u"lvwRecetas"_s);
        QCOMPARE(columna(*recetas, 1), QStringList{u"Amoxicilina 250 mg"_s});
        QCOMPARE(columna(*recetas, 2), QStringList{u"1 cada 12 h"_s});
        w.close();
    }

    // The demo clinic's hospitalised pet in its visit of today, with its examination drawn on
    // the dog's skin sketch (the screenshots of the documentation).
    void demo() {
        Sesion c(QDateTime(QDate::currentDate(), QTime(12, 0)));
        QTemporaryDir datos;
        c.e.configuracionBD.servidor = datos.path();
        QVERIFY(instalarCroquisPorDefecto(datos.path()).isEmpty());
        OpcionesInstalacion op;
        op.administrador = u"admin"_s;
        op.clave = u"admin"_s;
        op.demo = true;
        prepararBaseDatos(c.db(), op);
        const qint64 id =
            c.valor(u"SELECT NumHospitalizacion FROM Mascotas WHERE NumHospitalizacion IS NOT NULL"_s).toLongLong();
        VisitaWindow w(c.e);
        AperturaVisita ap;
        ap.NumVisita = id;
        QVERIFY(w.abrir(ap));
        w.resize(1100, 760);
        QVERIFY(!hijo<QLabel>(w, u"lblHospitalizado"_s)->isHidden());
        QCOMPARE(hijo<QLabel>(w, u"lblJaula"_s)->text(), u"JAULA: J-2"_s);
        hijo<QListWidget>(w, u"lstEspecialidades"_s)->setCurrentRow(0);
        QVERIFY(hijo<CroquisPanel>(w, u"pnlCroquis"_s)->croquis()->hayFondo());
        QCOMPARE(hijo<CroquisPanel>(w, u"pnlCroquis"_s)->croquis()->marcas().size(), 3);
        const QStringList nombres = {u"visita"_s, u"visita-historial"_s, u"visita-analiticas"_s,
                                     u"visita-especialidades"_s, u"visita-fotos"_s, u"visita-recetas"_s};
        for (int i = 0; i < nombres.size(); ++i) {
            w.pestanas()->setCurrentIndex(i);
            capturar(w, nombres.at(i) + u".png"_s);
        }
        QCOMPARE(w.form().recetas().size(), 2);
        // The consultation with analytic results: grouped by "Grupo".
        VisitaWindow w2(c.e);
        AperturaVisita ap2;
        ap2.NumVisita = c.valor(u"SELECT MIN(IdVisita) FROM ResultadosAnalitica"_s).toLongLong();
        QVERIFY(w2.abrir(ap2));
        w2.resize(1100, 760);
        w2.pestanas()->setCurrentIndex(2);
        const auto* analiticas = hijo<QTreeWidget>(w2, u"lvwAnaliticas"_s);
        QCOMPARE(columna(*analiticas, 0), (QStringList{u"Bioquímica"_s, u"Hemograma"_s}));
        QCOMPARE(analiticas->topLevelItem(0)->childCount(), 4);
        capturar(w2, u"visita-analiticas.png"_s);
        w2.close();
        // The demo's quote, made from a visit that shows it in its history.
        QCOMPARE(c.valor(u"SELECT COUNT(*) FROM Visitas WHERE Presupuesto = ?"_s, {true}).toInt(), 1);
        PresupuestoWindow q(c.e);
        AperturaPresupuesto pq;
        pq.IdPresupuesto = c.valor(u"SELECT MIN(IdPresupuesto) FROM Presupuestos"_s).toLongLong();
        QVERIFY(q.abrir(pq));
        QCOMPARE(hijo<QTreeWidget>(q, u"grdLineas"_s)->topLevelItemCount(), 3);
        QCOMPARE(hijo<QLabel>(q, u"lblEstado"_s)->text(), u"Pendiente"_s);
        capturar(q, u"presupuesto.png"_s);
        const QString capturas = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
        if (!capturas.isEmpty()) {
            QVERIFY(instalarPlantillasPorDefecto(datos.path()).isEmpty());
            QVERIFY(w.form().imprimirRecetas({0, 1}, DestinoDocumento::PDF, capturas + u"/recetas.pdf"_s));
            QVERIFY(w.form().imprimirInforme(DestinoDocumento::PDF, capturas + u"/informe-visita.pdf"_s));
            QVERIFY(q.form().imprimir(DestinoDocumento::PDF, capturas + u"/presupuesto.pdf"_s));
        }
        w.close();
    }

    // The date range counts only when ticked.
    void busqueda() {
        Sesion c;
        const qint64 ana = c.s.cliente(u"Ana Núñez"_s);
        const qint64 rufo = c.s.mascota(u"Rufo"_s, ana, c.s.especie(u"Perro"_s));
        c.s.fila(u"Visitas"_s, {{u"IdCliente"_s, ana}, {u"IdMascota"_s, rufo}, {u"Fecha"_s, QDate(2025, 1, 10)}});
        VisitaBusquedaWindow w(c.e);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(hijo<QTreeWidget>(w, u"lvwVisitas"_s)->topLevelItemCount(), 1);
        hijo<QCheckBox>(w, u"chkFechas"_s)->setChecked(true);
        pulsar(w, u"cmdBuscar"_s);
        QCOMPARE(hijo<QTreeWidget>(w, u"lvwVisitas"_s)->topLevelItemCount(), 0);
        QCOMPARE(c.d.ultimoTexto(), u"No existen Visitas que cumplan los criterios de búsqueda especificados."_s);
    }
};

PMX_GUI_TEST_MAIN(TestVisitaGui)
#include "test_visita_gui.moc"
