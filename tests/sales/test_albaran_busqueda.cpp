// The delivery-note search: the criteria, the cells of the grid, the refused dates and numbers
// (nothing lost), the client fixed by the opener, the row limit and the choice.
#include "albaranes_ejemplo.h"
#include "core/formatos.h"
#include "sales/albaran_busqueda_form.h"

namespace {
// What the user types, as the form holds it.
struct Criterios {
    QString serie{}, numAlbaran{}, cliente{};
    bool clienteEnCualquierParte = false;
    QString mascota{}, desde{}, hasta{};
    EstadoAlbaran estado = EstadoAlbaran::Todos;
};

// "A1 B2 ..." : series and number of each row, in the order found.
QString numeros(const QList<FilaAlbaranBusqueda>& filas) {
    QStringList r;
    for (const auto& f : filas)
        r << f.Serie + QString::number(f.NumAlbaran);
    return r.join(QLatin1Char(' '));
}

const QString kNinguno = u"Ningún albarán cumple las condiciones especificadas."_s;
} // namespace

class TestAlbaranBusqueda : public QObject {
    Q_OBJECT

private slots:
    // Each criterion alone (two together: clienteFijado), on one set of notes; nothing is changed by them.
    void criterios() {
        struct Caso {
            const char* nombre;
            Criterios criterios;
            QString esperados;
        };
        const QList<Caso> casos = {
            {"sin condiciones: los más recientes primero", {}, u"R1 A4 B3 B2 B1 A3 A2 A1"_s},
            {"serie", {.serie = u"B"_s}, u"B3 B2 B1"_s},
            {"número", {.numAlbaran = u" 1 "_s}, u"R1 B1 A1"_s},
            {"cliente al comienzo, sin acentos", {.cliente = u"nunez"_s}, u"A4 A3 A1"_s},
            {"cliente al comienzo no es en cualquier parte", {.cliente = u"perez"_s}, u"R1 B2 A2"_s},
            {"cliente en cualquier parte", {.cliente = u"NUÑEZ"_s, .clienteEnCualquierParte = true},
             u"R1 A4 B2 A3 A2 A1"_s},
            {"el % es un carácter", {.cliente = u"%"_s, .clienteEnCualquierParte = true}, {}},
            {"texto con comillas",
             {.cliente = u"'; DELETE FROM Albaranes; --"_s, .clienteEnCualquierParte = true}, {}},
            {"mascota al comienzo", {.mascota = u"tob"_s}, u"A4 A1"_s},
            {"desde", {.desde = u"15/02/2026"_s}, u"R1 A4 B3 B2 B1"_s},
            {"hasta, día incluido", {.hasta = u"10/01/2026"_s}, u"A2 A1"_s},
            {"fecha con día y mes de una cifra", {.desde = u"1/2/2026"_s, .hasta = u" 1/2/2026 "_s}, u"A3"_s},
            {"pendientes de facturar", {.estado = EstadoAlbaran::PendientesFacturar}, u"R1 A4 B3 B2 A2 A1"_s},
            {"facturados", {.estado = EstadoAlbaran::Facturados}, u"B1 A3"_s},
            {"pendientes de cobro", {.estado = EstadoAlbaran::PendientesCobro}, u"B1 A1"_s},
            {"cobrados", {.estado = EstadoAlbaran::Cobrados}, u"R1 A4 B3 A3 A2"_s}};
        AlbaranesEjemplo c;
        for (const auto& [nombre, criterios, esperados] : casos) {
            AlbaranBusquedaForm f(c.e);
            f.serie = criterios.serie;
            f.numAlbaran = criterios.numAlbaran;
            f.cliente = criterios.cliente;
            f.clienteEnCualquierParte = criterios.clienteEnCualquierParte;
            f.mascota = criterios.mascota;
            f.desde = criterios.desde;
            f.hasta = criterios.hasta;
            f.estado = criterios.estado;
            QVERIFY2(f.buscar(), nombre);
            const QString hallados = numeros(f.resultado());
            QVERIFY2(hallados == esperados, qPrintable(QString::fromUtf8(nombre) + u": "_s + hallados));
            QVERIFY2(f.nota() == (esperados.isEmpty() ? kNinguno : QString()), nombre);
        }
        QVERIFY(c.d.mensajes().isEmpty());
        QCOMPARE(c.s.contar(u"Albaranes"_s), 8);
    }

    // The cells (thousands, no pet, an invoice with and without series), the series
    // and the states of the drop-downs.
    void celdasYDesplegables() {
        AlbaranesEjemplo c;
        AlbaranBusquedaForm f(c.e);
        QVERIFY(f.buscar());
        QCOMPARE(f.celdas(4), QStringList({u"B"_s, u"1"_s, u"15/02/2026"_s, u"García Gil, Luis"_s, QString(),
                                           u"1.234,50"_s, u"1.000,00"_s, u"12"_s}));
        QCOMPARE(f.celdas(5), QStringList({u"A"_s, u"3"_s, u"01/02/2026"_s, u"Núñez Pérez, José"_s, u"Misi"_s,
                                           u"50,00"_s, u"0,00"_s, u"A-7"_s}));
        QVERIFY(f.celdas(8).isEmpty());

        QStringList textos;
        for (const SerieVenta& s : f.series())
            textos << s.serie + QLatin1Char(':') + s.texto;
        QCOMPARE(textos, QStringList({u":(Todas)"_s, u"A:A - Ventas"_s, u"B:B - Clínica"_s}));
        QCOMPARE(AlbaranBusquedaForm::estados(),
                 QStringList({u"Todos"_s, u"Pendientes de facturar"_s, u"Facturados"_s,
                              u"Pendientes de cobro"_s, u"Cobrados"_s}));
    }

    // A refused criterion shows why, searches nothing and keeps the previous result and what
    // was typed; the checks run in a fixed order (number, first date, last date, the pair).
    void criteriosRechazados() {
        const QString fecha = u"Error en fecha"_s, dato = u"Información introducida errónea"_s;
        const QString inicial = u"La fecha inicial introducida no es válida."_s;
        const QString numero = u"El número de albarán introducido no es válido."_s;
        const QList<QStringList> casos = {
            {"", "31/02/2026", "", fecha, inicial},
            {"", "", "2026-03-01", fecha, u"La fecha final introducida no es válida."_s},
            {"", "02/03/2026", "01/03/2026", fecha,
             u"La fecha inicial no puede ser posterior a la fecha final."_s},
            {"12a", "", "", dato, numero},
            {"x", "99/99/9999", "", dato, numero},
            {"", "0/1/2026", "ayer", fecha, inicial}};
        AlbaranesEjemplo c;
        AlbaranBusquedaForm f(c.e);
        f.serie = u"B"_s;
        QVERIFY(f.buscar());
        for (const QStringList& caso : casos) {
            c.d.limpiar();
            f.numAlbaran = caso.at(0);
            f.desde = caso.at(1);
            f.hasta = caso.at(2);
            QVERIFY(!f.buscar());
            QCOMPARE(c.d.mensajes().size(), 1);
            QCOMPARE(c.d.ultimo().icono, Icono::Exclamacion);
            QCOMPARE(c.d.ultimo().titulo, caso.at(3));
            QCOMPARE(c.d.ultimo().texto, caso.at(4));
            QCOMPARE(numeros(f.resultado()), u"B3 B2 B1"_s);
            QCOMPARE(QStringList({f.numAlbaran, f.desde, f.hasta}), caso.mid(0, 3));
        }
    }

    // The opener's client: only its notes, whatever name is typed, with the other criteria.
    void clienteFijado() {
        AlbaranesEjemplo c;
        AlbaranBusquedaForm f(c.e, c.jose);
        QCOMPARE(f.nombreClienteFijo(), u"Núñez Pérez, José"_s);
        QVERIFY(f.buscarAlAbrir());
        f.cliente = u"pérez"_s;
        QVERIFY(f.buscar());
        QCOMPARE(numeros(f.resultado()), u"A4 A3 A1"_s);
        f.mascota = u"misi"_s;
        QVERIFY(f.buscar());
        QCOMPARE(numeros(f.resultado()), u"A3"_s);

        // A client that is no more: said, and nobody else's notes are shown.
        AlbaranBusquedaForm nadie(c.e, 999);
        QCOMPARE(c.d.mensajes().size(), 1);
        QCOMPARE(c.d.ultimo().icono, Icono::Critico);
        QCOMPARE(c.d.ultimo().titulo, u"Error al intentar acceder al Cliente nº: 999."_s);
        QCOMPARE(
            c.d.ultimo().texto,
            u"Ha sido imposible recuperar la información solicitada. Puede que el Cliente haya sido eliminado."_s);
        QVERIFY(nadie.nombreClienteFijo().isEmpty());
        QVERIFY(nadie.buscar());
        QVERIFY(nadie.resultado().isEmpty());
        QCOMPARE(nadie.nota(), kNinguno);
    }

    void limiteDeFilas() {
        Sesion c;
        const qint64 id = c.s.cliente(u"Cliente de Prueba"_s);
        {
            Transaction tx = c.db().transaccion();
            // 501 notes, one a day: number n on 1 January 2025 + n days.
            for (int n = 1; n <= AlbaranBusquedaForm::kMaxFilas + 1; ++n)
                c.s.fila(u"Albaranes"_s, {{u"Serie"_s, u"A"_s},
                                          {u"NumAlbaran"_s, n},
                                          {u"Fecha"_s, QDate(2025, 1, 1).addDays(n)},
                                          {u"IdCliente"_s, id}});
            tx.commit();
        }
        AlbaranBusquedaForm f(c.e);
        QVERIFY(f.buscar());
        QCOMPARE(f.resultado().size(), AlbaranBusquedaForm::kMaxFilas);
        QCOMPARE(f.resultado().last().NumAlbaran, qint64(2));
        QCOMPARE(f.nota(), u"Se muestran sólo los 500 albaranes más recientes. Añada condiciones "
                           "para afinar la búsqueda."_s);
        // Exactly the limit: no note.
        f.desde = formatoFecha(QDate(2025, 1, 3)); // notes 2..501
        QVERIFY(f.buscar());
        QCOMPARE(f.resultado().size(), AlbaranBusquedaForm::kMaxFilas);
        QVERIFY(f.nota().isEmpty());
        QVERIFY(c.d.mensajes().isEmpty());
    }

    void aceptar() {
        AlbaranesEjemplo c;
        AlbaranBusquedaForm f(c.e);
        // Nothing found yet: nothing to choose.
        QVERIFY(!f.aceptar(0));
        QCOMPARE(c.d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(c.d.ultimo().texto, u"Debe seleccionar un albarán de la lista."_s);
        QVERIFY(!f.elegido());
        QVERIFY(f.buscar());
        QVERIFY(!f.aceptar(-1));
        QVERIFY(!f.aceptar(8));
        QCOMPARE(c.d.mensajes().size(), 3);
        QVERIFY(f.aceptar(5));
        QCOMPARE(f.elegido(), std::optional<qint64>(c.a3));
        // A new search forgets the choice.
        QVERIFY(f.buscar());
        QVERIFY(!f.elegido());
    }
};

PMX_STORE_TEST_MAIN(TestAlbaranBusqueda)
#include "test_albaran_busqueda.moc"
