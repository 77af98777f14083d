// Quotes on each engine: priced as the delivery note prices the same article for the same client
// and pet, numbered in their own series, made into exactly one delivery note even when two
// workstations try at once, rejected, printed, and marked on the visit they come from.
#include "app/conf_puesto_store.h"
#include "core/formatos.h"
#include "documents/plantillas_defecto.h"
#include "pdf.h"
#include "sales/presupuesto_form.h"
#include "sesion.h"

#include <QGuiApplication>
#include <QTemporaryDir>

class TestPresupuesto : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        qint64 iva21 = 0, vet = 0, lucia = 0, pablo = 0, vacuna = 0, consulta = 0, toby = 0, visita = 0;
        Caso() : Sesion(QDateTime(QDate(2026, 11, 20), QTime(10, 15))) {
            iva21 = s.iva(u"21"_s, 21);
            s.fila(u"Series"_s, {{u"Serie"_s, u"A"_s}, {u"Tipo"_s, u"V"_s}});
            ConfiguracionPuesto conf = ConfPuestoStore(db()).cargar(e.puesto);
            conf.Puesto = e.puesto;
            conf.SerieVenta = u"A"_s;
            ConfPuestoStore(db()).guardar(conf);
            vet = s.personal(u"Ana Ruiz"_s);
            lucia = s.cliente(u"Lucía Gómez"_s, {{u"Tarifa"_s, u"TARIFA 1"_s}});
            pablo = s.cliente(u"Pablo Sanz"_s, {{u"Tarifa"_s, u"TARIFA 2"_s}, {u"DtoGeneral"_s, 10.0}});
            const qint64 seccion = s.seccion(u"Vacunas"_s);
            vacuna = articulo(u"Vacuna rabia"_s, 12.10, 11.00, seccion);
            consulta = articulo(u"Consulta"_s, 30.00, 30.00);
            const qint64 plan = s.plan(u"Plan Cachorro"_s);
            s.fila(u"CondicionesEspeciales"_s, {{u"IdPlanSalud"_s, plan}, {u"IdSeccion"_s, seccion}, {u"Precio"_s, 9.68}});
            toby = s.mascota(u"Toby"_s, lucia, s.especie(u"Perro"_s),
                             {{u"IdPlanSalud"_s, plan}, {u"CaducidadPlan"_s, QDate(2027, 1, 31)}});
            visita = s.fila(u"Visitas"_s, {{u"IdCliente"_s, lucia}, {u"IdMascota"_s, toby},
                                           {u"Fecha"_s, QDate(2026, 11, 20)}, {u"Presupuesto"_s, false}});
        }
        qint64 articulo(const QString& nombre, double pvp1, double pvp2, const QVariant& seccion = {}) {
            return s.fila(u"Articulos"_s, {{u"Articulo"_s, nombre}, {u"ArtIVA"_s, iva21}, {u"PVP1"_s, pvp1},
                                           {u"PVP2"_s, pvp2}, {u"PVP3"_s, 10.00}, {u"Seccion"_s, seccion}});
        }
        AperturaPresupuesto desdeVisita() const {
            AperturaPresupuesto ap;
            ap.IdCliente = lucia;
            ap.idMascota = toby;
            ap.NumVisita = visita;
            ap.IdVendedor = vet;
            return ap;
        }
    };

private slots:
    // The plan's special price for Toby, the tariff and general discount for Pablo: the same
    // line the delivery note builds, and totals worked by hand.
    void precioComoElAlbaran() {
        Caso c;
        const struct {
            qint64 cliente;
            std::optional<qint64> mascota;
            qint64 articulo;
            QString cantidad;
            double pvp, dto, total;
        } casos[] = {{c.lucia, c.toby, c.vacuna, u"2"_s, 9.68, 0, 19.36},
                     {c.pablo, std::nullopt, c.consulta, u"1"_s, 30.00, 10, 27.00}};
        for (const auto& k : casos) {
            PresupuestoForm f(c.e);
            AperturaPresupuesto ap;
            ap.IdCliente = k.cliente;
            ap.idMascota = k.mascota;
            QVERIFY(f.abrir(ap));
            QVERIFY(f.anadirArticulo(k.articulo, k.cantidad));
            const LineaAlbaran& l = f.presupuesto().documento.lineas().first();
            QCOMPARE(l.pvp, k.pvp);
            QCOMPARE(l.descuento, k.dto);
            QCOMPARE(f.presupuesto().documento.totales().total(), k.total);
            AlbaranForm nota(c.e);
            AperturaAlbaran an;
            an.IdCliente = k.cliente;
            an.idMascota = k.mascota;
            QVERIFY(nota.abrir(an));
            const auto e = nota.entradaArticulo(k.articulo);
            QCOMPARE(e->pvp, textoCifra(k.pvp));
            QCOMPARE(e->descuento.isEmpty() ? 0.0 : *leerImporte(e->descuento), k.dto);
        }
    }

    // The checks, numbering, the visit marked, conversion into one note, and no more changes.
    void guardarYConvertir() {
        Caso c;
        PresupuestoForm f(c.e);
        QList<AperturaAlbaran> notas;
        f.abrirAlbaran = [&](const AperturaAlbaran& a) { notas << a; };
        QVERIFY(!f.guardar());
        QCOMPARE(c.d.ultimo().titulo, u"Campos obligatorios no rellenos"_s);
        QCOMPARE(c.d.ultimoTexto(), u"Indique el cliente"_s);
        QVERIFY(f.abrir(c.desdeVisita()));
        QVERIFY(!f.guardar());
        QCOMPARE(c.d.ultimoTexto(), u"Debe incluir al menos un artículo"_s);
        QVERIFY(f.anadirArticulo(c.vacuna, u"2"_s));
        QVERIFY(f.anadirArticulo(c.consulta));
        QVERIFY(f.guardar());
        QCOMPARE(*f.presupuesto().numero, 1);
        QCOMPARE(f.titulo(), u"Presupuestos - nº 1"_s);
        QVERIFY(c.valor(u"SELECT Presupuesto FROM Visitas WHERE IdVisita = ?"_s, {c.visita}).toBool());

        c.d.si();
        QVERIFY(f.convertir());
        QCOMPARE(f.presupuesto().estado, kPresupuestoAceptado);
        QCOMPARE(notas.size(), 1);
        const qint64 nota = *notas.first().IdAlbaran;
        QCOMPARE(*f.presupuesto().idAlbaran, nota);
        QCOMPARE(f.textoEstado(), u"Aceptado (albarán A/1)"_s);
        // Stored as worked by hand: 2 x 9,68 (the plan's price) + 30,00; dated when converted.
        QCOMPARE(c.valor(u"SELECT Total FROM Albaranes WHERE IdAlbaran = ?"_s, {nota}).toDouble(), 49.36);
        QCOMPARE(c.valor(u"SELECT COUNT(*) FROM LineasAlbaran WHERE IdAlbaran = ?"_s, {nota}).toInt(), 2);
        const auto a = AlbaranStore(c.db()).cargar(nota);
        QCOMPARE(a->fecha, QDate(2026, 11, 20));
        QCOMPARE(a->hora, QTime(10, 15));
        QCOMPARE(a->serie, u"A"_s);
        QCOMPARE(*a->idMascota, c.toby);
        QCOMPARE(*a->idVisita, c.visita);
        QCOMPARE(*a->idVendedor, c.vet);
        QVERIFY(!f.anadirArticulo(c.consulta));
        QCOMPARE(c.d.ultimoTexto(), u"Este presupuesto ya está aceptado y no se puede modificar."_s);

        PresupuestoForm otro(c.e);
        AperturaPresupuesto ap;
        ap.IdCliente = c.pablo;
        QVERIFY(otro.abrir(ap));
        QVERIFY(otro.anadirArticulo(c.consulta));
        QVERIFY(otro.guardar());
        QCOMPARE(*otro.presupuesto().numero, 2);
        c.d.si();
        QVERIFY(otro.rechazar());
        QCOMPARE(otro.textoEstado(), u"Rechazado"_s);
        QCOMPARE(c.s.contar(u"Albaranes"_s), 1);

        // The note deleted: the quote is pending again and can be made into another one.
        QCOMPARE(AlbaranStore(c.db()).eliminar(nota, a->versionFila), ResultadoAlbaran::Hecho);
        PresupuestoForm deNuevo(c.e);
        f.puedeCerrar();
        AperturaPresupuesto ap2;
        ap2.IdPresupuesto = f.presupuesto().IdPresupuesto;
        QVERIFY(deNuevo.abrir(ap2));
        QVERIFY(deNuevo.editable());
        QVERIFY(!deNuevo.presupuesto().idAlbaran);
    }

    // A date past the pet's plan, or no salesperson: what the note does with them.
    void repreciarYVendedor() {
        Caso c;
        PresupuestoForm f(c.e);
        AperturaPresupuesto ap = c.desdeVisita();
        ap.IdVendedor.reset();
        QVERIFY(f.abrir(ap));
        QVERIFY(f.anadirArticulo(c.vacuna));
        QCOMPARE(f.presupuesto().documento.lineas().first().pvp, 9.68);
        c.d.si();
        QVERIFY(f.setFecha(u"01/02/2027"_s));
        QCOMPARE(c.d.ultimo().titulo, u"ATENCION"_s);
        QCOMPARE(f.presupuesto().documento.lineas().first().pvp, 12.10);
        QVERIFY(!f.anadirArticulo(u"abc"_s, u"1"_s));
        QCOMPARE(c.d.ultimoTexto(), u"Indique el artículo que desea incluir"_s);
        c.d.si();
        QVERIFY(!f.convertir());
        QCOMPARE(c.d.ultimoTexto(), u"Indique el vendedor"_s);
        QCOMPARE(c.s.contar(u"Albaranes"_s), 0);
        QCOMPARE(c.s.contar(u"Presupuestos"_s), 0);
    }

    // Two workstations make the same quote into a note: one note only; the other is told.
    void convertirDosVeces() {
        Caso c;
        PresupuestoForm aqui(c.e);
        QVERIFY(aqui.abrir(c.desdeVisita()));
        QVERIFY(aqui.anadirArticulo(c.vacuna));
        QVERIFY(aqui.guardar());
        OtroPuesto otro(c, u"RECEPCION"_s);
        ConfiguracionPuesto conf;
        conf.Puesto = u"RECEPCION"_s;
        conf.SerieVenta = u"A"_s;
        ConfPuestoStore(c.db()).guardar(conf);
        PresupuestoForm alli(otro.e);
        AperturaPresupuesto ap;
        ap.IdPresupuesto = aqui.presupuesto().IdPresupuesto;
        QVERIFY(alli.abrir(ap));
        c.d.si();
        otro.d.si();
        QVERIFY(aqui.convertir());
        QVERIFY(!alli.convertir());
        QCOMPARE(otro.d.ultimoTexto(), u"Otro puesto ha aceptado o rechazado este Presupuesto mientras lo tenía "
                                       "abierto en esta pantalla. No se ha guardado nada."_s);
        QCOMPARE(c.s.contar(u"Albaranes"_s), 1);
        QCOMPARE(c.valor(u"SELECT MAX(NumAlbaran) FROM Albaranes"_s).toLongLong(), 1);
    }

    void imprimir() {
        if (!hayPdftotext()) QSKIP("pdftotext no está instalado");
        Caso c;
        QTemporaryDir datos;
        c.e.configuracionBD.servidor = datos.path();
        QVERIFY(instalarPlantillasPorDefecto(datos.path()).isEmpty());
        PresupuestoForm f(c.e);
        QVERIFY(f.abrir(c.desdeVisita()));
        QVERIFY(f.anadirArticulo(c.vacuna, u"2"_s));
        const QString pdf = datos.filePath(u"p.pdf"_s);
        QVERIFY(f.imprimir(DestinoDocumento::PDF, pdf));
        const QString texto = paginasPdf(pdf).join(u"\n"_s);
        for (const QString& t : {u"PRESUPUESTO"_s, u"Lucía Gómez"_s, u"Vacuna rabia"_s, u"19,36"_s})
            QVERIFY2(texto.contains(t), qPrintable(t));
    }
};

PMX_TEST_MAIN(QGuiApplication, TestPresupuesto)
#include "test_presupuesto.moc"
