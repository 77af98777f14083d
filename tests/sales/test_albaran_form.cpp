// The delivery-note screen on both engines, as a receptionist uses it: the save and line
// checks in order, numbering within the series, totals written with the note, the record
// lock, the health-plan and change-of-client questions, and a note invoiced or collected by
// another workstation (a second connection) while it is open here.
#include "app/bloqueo_edicion.h"
#include "app/conf_puesto_store.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "sales/albaran_form.h"
#include "scripted_dialogs.h"
#include "test_db.h"

namespace {
const QString kObligatorios = QStringLiteral("Campos obligatorios no rellenos");
const QString kFacturado =
    QStringLiteral("Este albarán ha sido facturado o cobrado mientras lo tenía abierto en esta pantalla. ");
} // namespace

class TestAlbaranForm : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 20), QTime(10, 15))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        qint64 iva21 = 0, iva10 = 0, iva0 = 0, vendedor = 0, cliente = 0, otroCliente = 0;
        qint64 seccion = 0, articulo = 0, servicio = 0, plan = 0, mascota = 0, mascotaSinPlan = 0;

        QVariant crear(const QString& tabla, const QVariantMap& valores) {
            Registro r(*descriptorTabla(tabla));
            for (auto it = valores.cbegin(); it != valores.cend(); ++it)
                r.setValor(it.key(), it.value());
            return RegistroStore(t.db()).crear(r);
        }
        qint64 id(const QString& tabla, const QVariantMap& valores) {
            return crear(tabla, valores).toLongLong();
        }
    };

    std::unique_ptr<Caso> caso(const QString& serieVenta = QStringLiteral("A")) {
        auto c = std::make_unique<Caso>();
        Database& db = c->t.db();
        c->e = std::make_unique<Entorno>(db, c->d, reloj_);
        c->e->puesto = QStringLiteral("MOSTRADOR");
        c->e->sesion = QStringLiteral("S1");
        c->e->usuario = QStringLiteral("ana");
        Ajustes(db).escribir(claves::MULTIPUESTO, QStringLiteral("SI"));
        auto iva = [&](double p) {
            return c->id(QStringLiteral("TiposIVA"), {{QStringLiteral("Descripcion"), QString::number(p)},
                                                      {QStringLiteral("Porcentaje"), p},
                                                      {QStringLiteral("Activo"), QStringLiteral("S")}});
        };
        c->iva21 = iva(21);
        c->iva10 = iva(10);
        c->iva0 = iva(0);
        for (const QString& s : {QStringLiteral("A"), QStringLiteral("B")})
            c->crear(QStringLiteral("Series"),
                     {{QStringLiteral("Serie"), s},
                      {QStringLiteral("Descripcion"), QStringLiteral("Ventas ") + s},
                      {QStringLiteral("Tipo"), QStringLiteral("V")}});
        ConfiguracionPuesto conf;
        conf.Puesto = c->e->puesto;
        conf.SerieVenta = serieVenta;
        ConfPuestoStore(db).guardar(conf);
        c->vendedor =
            c->id(QStringLiteral("Personal"), {{QStringLiteral("Descripcion"), QStringLiteral("Ana Ruiz")},
                                               {QStringLiteral("Activo"), QStringLiteral("S")}});
        c->cliente =
            c->id(QStringLiteral("Clientes"), {{QStringLiteral("Nombre"), QStringLiteral("Lucía Gómez")},
                                               {QStringLiteral("Tarifa"), QStringLiteral("TARIFA 1")},
                                               {QStringLiteral("DtoGeneral"), 0.0},
                                               {QStringLiteral("LOPD"), QStringLiteral("1")}});
        c->otroCliente =
            c->id(QStringLiteral("Clientes"), {{QStringLiteral("Nombre"), QStringLiteral("Pablo Sanz")},
                                               {QStringLiteral("Tarifa"), QStringLiteral("TARIFA 2")},
                                               {QStringLiteral("DtoGeneral"), 10.0}});
        c->seccion =
            c->id(QStringLiteral("Secciones"), {{QStringLiteral("Descripcion"), QStringLiteral("Vacunas")}});
        c->articulo =
            c->id(QStringLiteral("Articulos"), {{QStringLiteral("Articulo"), QStringLiteral("Vacuna rabia")},
                                                {QStringLiteral("Seccion"), c->seccion},
                                                {QStringLiteral("ArtIVA"), c->iva21},
                                                {QStringLiteral("PVP1"), 12.10},
                                                {QStringLiteral("PVP2"), 11.00},
                                                {QStringLiteral("PVP3"), 10.00}});
        c->servicio = c->id(QStringLiteral("Articulos"),
                            {{QStringLiteral("Articulo"), QStringLiteral("Consulta")},
                             {QStringLiteral("ArtTipoArticulo"), QStringLiteral("SERVICIO")},
                             {QStringLiteral("ArtIVA"), c->iva21},
                             {QStringLiteral("PVP1"), 30.00},
                             {QStringLiteral("PVP2"), 30.00},
                             {QStringLiteral("PVP3"), 30.00}});
        c->plan = c->id(QStringLiteral("PlanesSalud"),
                        {{QStringLiteral("Nombre"), QStringLiteral("Plan Cachorro")}});
        c->crear(QStringLiteral("CondicionesEspeciales"), {{QStringLiteral("IdPlanSalud"), c->plan},
                                                           {QStringLiteral("IdSeccion"), c->seccion},
                                                           {QStringLiteral("Precio"), 9.68}});
        c->mascota =
            c->id(QStringLiteral("Mascotas"), {{QStringLiteral("IdCliente"), c->cliente},
                                               {QStringLiteral("Nombre"), QStringLiteral("Toby")},
                                               {QStringLiteral("IdPlanSalud"), c->plan},
                                               {QStringLiteral("CaducidadPlan"), QDate(2027, 1, 31)}});
        c->mascotaSinPlan =
            c->id(QStringLiteral("Mascotas"), {{QStringLiteral("IdCliente"), c->cliente},
                                               {QStringLiteral("Nombre"), QStringLiteral("Misi")}});
        return c;
    }

    // A line of the article: quantity and price as typed.
    static EntradaLineaAlbaran linea(AlbaranForm& f, qint64 articulo,
                                     const QString& cantidad = QStringLiteral("1")) {
        EntradaLineaAlbaran e = f.entradaArticulo(articulo).value_or(EntradaLineaAlbaran());
        e.cantidad = cantidad;
        return e;
    }

    // A saved note of the client with one line of 3 vaccines (36,30).
    static qint64 notaGuardada(Caso& c, AlbaranForm& f) {
        f.ponerCliente(c.cliente);
        f.setVendedor(c.vendedor);
        f.insertarLinea(linea(f, c.articulo, QStringLiteral("3")));
        if (!f.guardar()) return 0;
        c.d.limpiar();
        return *f.albaran().IdAlbaran;
    }

private slots:
    void comprobacionesAlGuardar() {
        auto c = caso(QString()); // this workstation proposes no series
        AlbaranForm f(*c->e);
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimo().titulo, kObligatorios);
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Indique el cliente"));
        QVERIFY(f.ponerCliente(c->cliente));
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Indique la serie de facturación."));
        QVERIFY(f.setSerie(QStringLiteral("B")));
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Indique el vendedor"));
        QVERIFY(f.setVendedor(c->vendedor));
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Debe incluir al menos un artículo"));
        QCOMPARE(c->t.db().valor(QStringLiteral("SELECT COUNT(*) FROM Albaranes")).toInt(), 0);
        // An invalid date is refused where it is typed and the note keeps the one it had.
        QVERIFY(!f.setFecha(QStringLiteral("31/02/2026")));
        QCOMPARE(f.fecha(), QStringLiteral("20/11/2026"));
    }

    void lineas() {
        auto c = caso();
        AlbaranForm f(*c->e);
        QVERIFY(!f.entradaArticulo(c->articulo));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Información requerida no especificada"));
        QCOMPARE(
            c->d.ultimoTexto(),
            QStringLiteral("Seleccione un Cliente antes de añadir los artículos que compondrán el Albarán."));
        c->e->buscadores.articulo = [&](const QString&) { return std::optional<qint64>(c->articulo); };
        QVERIFY(!f.buscarArticulo());
        QCOMPARE(
            c->d.ultimoTexto(),
            QStringLiteral("Seleccione un Cliente antes de buscar los artículos que compondrán el Albarán"));

        QVERIFY(f.ponerCliente(c->cliente));
        EntradaLineaAlbaran e = *f.buscarArticulo();
        QCOMPARE(e.concepto, QStringLiteral("Vacuna rabia"));
        QCOMPARE(e.pvp, QStringLiteral("12,10"));
        QCOMPARE(e.cantidad, QStringLiteral("1"));
        QCOMPARE(e.idTipoIVA, std::optional<qint64>(c->iva21));

        const QList<std::pair<std::function<void(EntradaLineaAlbaran&)>, QString>> faltas = {
            {[](EntradaLineaAlbaran& x) { x.idArticulo.reset(); },
             QStringLiteral("Indique el artículo que desea incluir")},
            {[](EntradaLineaAlbaran& x) { x.cantidad.clear(); }, QStringLiteral("Indique la cantidad")},
            {[](EntradaLineaAlbaran& x) { x.cantidad = QStringLiteral("tres"); },
             QStringLiteral("Indique la cantidad")},
            {[](EntradaLineaAlbaran& x) { x.pvp = QStringLiteral(" "); },
             QStringLiteral("Indique el precio del artículo")},
            {[](EntradaLineaAlbaran& x) { x.idTipoIVA.reset(); },
             QStringLiteral("Indique el IVA del artículo")},
        };
        for (const auto& [estropear, mensaje] : faltas) {
            EntradaLineaAlbaran mala = e;
            estropear(mala);
            QVERIFY(!f.insertarLinea(mala));
            QCOMPARE(c->d.ultimo().titulo, kObligatorios);
            QCOMPARE(c->d.ultimoTexto(), mensaje);
        }
        QVERIFY(f.albaran().lineas().isEmpty());

        e.cantidad = QStringLiteral("3");
        QVERIFY(f.insertarLinea(e));
        QCOMPARE(f.celdas(0),
                 (QStringList{QStringLiteral("Vacuna rabia"), QStringLiteral("3,00"), QStringLiteral("12,10"),
                              QStringLiteral("0,00"), QStringLiteral("21,00"), QStringLiteral("36,30")}));
        QCOMPARE(f.textoTotal(QStringLiteral("base")), QStringLiteral("30,00"));
        QCOMPARE(f.textoTotal(QStringLiteral("iva")), QStringLiteral("6,30"));
        e.descuento = QStringLiteral("10");
        QVERIFY(f.modificarLinea(0, e));
        QCOMPARE(f.textoTotal(QStringLiteral("total")), QStringLiteral("32,67"));
        QVERIFY(f.insertarLinea(linea(f, c->servicio)));
        QCOMPARE(f.textoTotal(QStringLiteral("total")), QStringLiteral("62,67"));
        QVERIFY(!f.quitarLinea(0)); // the question answered No
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("¿Desea realmente eliminar la línea 'Vacuna rabia' de este Albarán?"));
        QVERIFY(!f.quitarLinea(5));
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Seleccione la línea que desea quitar."));
        c->d.si();
        QVERIFY(f.quitarLinea(0));
        QCOMPARE(f.textoTotal(QStringLiteral("total")), QStringLiteral("30,00"));
        // A withholding is shown negative and recomputes every line; so does the exempt flag.
        QVERIFY(f.setRetencion(QStringLiteral("15")));
        QCOMPARE(f.textoTotal(QStringLiteral("retencion")), QStringLiteral("-3,72"));
        QCOMPARE(f.textoTotal(QStringLiteral("total")), QStringLiteral("26,28"));
        QVERIFY(f.setExento(true));
        QCOMPARE(f.textoTotal(QStringLiteral("total")), QStringLiteral("21,07"));
        QCOMPARE(f.textoTotal(QStringLiteral("iva")), QStringLiteral("5,21"));
        QCOMPARE(f.albaran().totales().desglose().first().cuota, 0.0);
        QVERIFY(!f.setRetencion(QStringLiteral("quince")));
        QCOMPARE(f.retencion(), QStringLiteral("15,00"));
    }

    void numeracionYTotalesGuardados() {
        auto c = caso();
        AlbaranForm f(*c->e);
        const qint64 primero = notaGuardada(*c, f);
        QVERIFY(primero > 0);
        QCOMPARE(f.numAlbaran(), std::optional<qint64>(1));
        QCOMPARE(f.titulo(), QStringLiteral("Albaranes de Venta - A/1"));
        QVERIFY(!f.modificado());
        Database& db = c->t.db();
        QSqlQuery q =
            db.ejecutar(QStringLiteral("SELECT TotalBruto, TotalBI, TotalIVA, Total, Pendiente, Hora "
                                       "FROM Albaranes WHERE IdAlbaran = ?"),
                        {primero});
        QVERIFY(q.next());
        QCOMPARE(q.value(0).toDouble(), 30.0);
        QCOMPARE(q.value(1).toDouble(), 30.0);
        QCOMPARE(q.value(2).toDouble(), 6.30);
        QCOMPARE(q.value(3).toDouble(), 36.30);
        QCOMPARE(q.value(4).toDouble(), 36.30);
        QSqlQuery l =
            db.ejecutar(QStringLiteral("SELECT PrecioSinIVA, BaseImponible, CuotaIVA, Importe, Orden "
                                       "FROM LineasAlbaran WHERE IdAlbaran = ?"),
                        {primero});
        QVERIFY(l.next());
        QCOMPARE(l.value(0).toDouble(), 10.0);
        QCOMPARE(l.value(1).toDouble(), 30.0);
        QCOMPARE(l.value(2).toDouble(), 6.30);
        QCOMPARE(l.value(3).toDouble(), 36.30);

        QVERIFY(f.nuevo());
        QCOMPARE(notaGuardada(*c, f) > 0, true);
        QCOMPARE(f.numAlbaran(), std::optional<qint64>(2));
        // A note of series A numbered 7 by hand (an import): the series goes on after it.
        c->crear(QStringLiteral("Albaranes"), {{QStringLiteral("Serie"), QStringLiteral("A")},
                                               {QStringLiteral("NumAlbaran"), 7},
                                               {QStringLiteral("Fecha"), QDate(2026, 11, 1)},
                                               {QStringLiteral("IdCliente"), c->cliente}});
        QVERIFY(f.nuevo());
        notaGuardada(*c, f);
        QCOMPARE(f.numAlbaran(), std::optional<qint64>(8));
        // Series B has its own numbers.
        QVERIFY(f.nuevo());
        QVERIFY(f.setSerie(QStringLiteral("B")));
        notaGuardada(*c, f);
        QCOMPARE(f.numAlbaran(), std::optional<qint64>(1));
        // A saved note keeps its series.
        QVERIFY(!f.setSerie(QStringLiteral("A")));
        QCOMPARE(f.albaran().serie, QStringLiteral("B"));

        // Reopened, the note shows what was saved, and a changed line is written over the old ones.
        AlbaranForm g(*c->e);
        QVERIFY(g.cargar(primero));
        QCOMPARE(g.albaran().lineas().size(), 1);
        QCOMPARE(g.textoTotal(QStringLiteral("total")), QStringLiteral("36,30"));
        QCOMPARE(g.textoDeuda(), QStringLiteral("Deuda Actual: 145,20 €"));
        QVERIFY(g.hayDeuda());
        QVERIFY(g.variasFacturas()); // pending notes of series A and B
        QVERIFY(g.insertarLinea(linea(g, c->servicio)));
        QVERIFY(g.guardar());
        QCOMPARE(db.valor(QStringLiteral("SELECT COUNT(*) FROM LineasAlbaran WHERE IdAlbaran = ?"), {primero})
                     .toInt(),
                 2);
        QCOMPARE(
            db.valor(QStringLiteral("SELECT Total FROM Albaranes WHERE IdAlbaran = ?"), {primero}).toDouble(),
            66.30);
    }

    // What another workstation does to the note while it is open here.
    void cambiosDeOtroPuesto_data() {
        QTest::addColumn<QString>("cambio");
        QTest::newRow("facturado") << QStringLiteral(
            "UPDATE Albaranes SET NumFactura = 5, SerieFactura = 'A' "
            "WHERE IdAlbaran = ?");
        QTest::newRow("cobrado") << QStringLiteral("UPDATE Albaranes SET Pendiente = 0, Cobrado = ? "
                                                   "WHERE IdAlbaran = ?");
    }
    void cambiosDeOtroPuesto() {
        QFETCH(QString, cambio);
        auto c = caso();
        auto otro = c->t.otraConexion();
        auto marcar = [&](qint64 id) {
            QVariantList v;
            if (cambio.contains(QStringLiteral("Cobrado"))) v << true;
            v << id;
            otro->ejecutarCambio(cambio, v);
        };

        // Saving: refused, and the collection screen of the note opens.
        {
            AlbaranForm f(*c->e);
            const qint64 id = notaGuardada(*c, f);
            std::optional<qint64> cobros;
            f.abrirCobros = [&](qint64 x) { cobros = x; };
            QVERIFY(f.insertarLinea(linea(f, c->servicio)));
            marcar(id);
            QVERIFY(!f.guardar());
            QCOMPARE(c->d.ultimo().titulo, QStringLiteral("ATENCION: Imposible guardar las modificaciones"));
            QCOMPARE(c->d.ultimoTexto(),
                     kFacturado + QStringLiteral("Se pasará directamente a la ventana de Cobros"));
            QCOMPARE(cobros, std::optional<qint64>(id));
            QCOMPARE(
                c->t.db()
                    .valor(QStringLiteral("SELECT COUNT(*) FROM LineasAlbaran WHERE IdAlbaran = ?"), {id})
                    .toInt(),
                1);
            QVERIFY(!f.editable());
            QVERIFY(f.cerrar());
        }
        // Modifying.
        {
            AlbaranForm f(*c->e);
            const qint64 id = notaGuardada(*c, f);
            marcar(id);
            QVERIFY(!f.insertarLinea(linea(f, c->servicio)));
            QCOMPARE(c->d.ultimoTexto(), kFacturado + QStringLiteral("No se puede modificar"));
            QCOMPARE(f.albaran().lineas().size(), 1);
        }
        // Deleting.
        {
            AlbaranForm f(*c->e);
            const qint64 id = notaGuardada(*c, f);
            marcar(id);
            QVERIFY(!f.eliminar());
            QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Atención!"));
            QCOMPARE(c->d.ultimoTexto(), kFacturado + QStringLiteral("No se puede eliminar"));
            QCOMPARE(c->t.db()
                         .valor(QStringLiteral("SELECT COUNT(*) FROM Albaranes WHERE IdAlbaran = ?"), {id})
                         .toInt(),
                     1);
        }
        // Printing with changes: the changes are not printed (nor saved).
        {
            AlbaranForm f(*c->e);
            const qint64 id = notaGuardada(*c, f);
            QVERIFY(f.setRetencion(QStringLiteral("15")));
            marcar(id);
            f.imprimir();
            QCOMPARE(c->d.mensajes().first().titulo,
                     QStringLiteral("ATENCION: Imposible guardar las modificaciones"));
            QCOMPARE(c->d.mensajes().first().texto,
                     kFacturado + QStringLiteral("No se imprimirán los cambios efectuados"));
            QCOMPARE(f.albaran().retencion(), 0.0);
            c->d.limpiar();
        }
        // Closing with changes: they cannot be saved; the screen closes.
        {
            AlbaranForm f(*c->e);
            const qint64 id = notaGuardada(*c, f);
            QVERIFY(f.setRetencion(QStringLiteral("15")));
            marcar(id);
            QVERIFY(f.cerrar());
            QCOMPARE(c->d.ultimoTexto(), kFacturado + QStringLiteral("No se pueden guardar los cambios"));
            QCOMPARE(c->d.sinRespuesta(), 0);
        }
    }

    void bloqueoDelRegistro() {
        auto c = caso();
        AlbaranForm f(*c->e);
        const qint64 id = notaGuardada(*c, f);
        // The note stays locked while it is open here: another workstation is refused.
        auto otraDb = c->t.otraConexion();
        ScriptedDialogs otrosDialogos;
        Entorno otro(*otraDb, otrosDialogos, reloj_);
        otro.puesto = QStringLiteral("CONSULTA2");
        otro.sesion = QStringLiteral("S2");
        otro.usuario = QStringLiteral("luis");
        {
            AlbaranForm g(otro);
            QVERIFY(g.cargar(id));
            QVERIFY(!g.editable());
            QCOMPARE(otrosDialogos.mensajes().size(), 1); // the lock's own message
            QVERIFY(!g.insertarLinea(linea(g, c->servicio)));
            QVERIFY(g.cerrar());
        }
        // New releases it.
        QVERIFY(f.nuevo());
        AlbaranForm g(otro);
        QVERIFY(g.cargar(id));
        QVERIFY(g.editable());
        QVERIFY(g.eliminar() == false); // not scripted: the question is answered No
        otrosDialogos.si();
        QVERIFY(g.eliminar());
        QCOMPARE(otrosDialogos.mensajes().last().texto,
                 QStringLiteral("¿Desea realmente eliminar este Albarán?"));
        QCOMPARE(c->t.db().valor(QStringLiteral("SELECT COUNT(*) FROM LineasAlbaran")).toInt(), 0);
        QVERIFY(g.albaran().esNuevo());
        QCOMPARE(almacenBloqueos(otro).contar(), 0);
    }

    void planDeSaludYCambioDeCliente() {
        auto c = caso();
        AlbaranForm f(*c->e);
        QVERIFY(f.ponerCliente(c->cliente));
        QVERIFY(f.insertarLinea(linea(f, c->articulo)));
        QCOMPARE(f.albaran().lineas().first().pvp, 12.10);
        // The pet's plan prices the vaccines at 9,68: asked, and on No nothing changes...
        c->d.no();
        QVERIFY(f.ponerMascota(c->mascota));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("ATENCION"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral(
                     "Los precios de los artículos incluidos en este albarán han podido sufrir variaciones "
                     "debido al cambio del Plan de Salud de la mascota. ¿Desea que se recalculen los precios "
                     "de este albarán?"));
        QCOMPARE(f.albaran().lineas().first().pvp, 12.10);
        QCOMPARE(f.textoPlan(), QStringLiteral("Plan de Salud: Plan Cachorro"));
        // ...on Yes every line is priced again.
        QVERIFY(f.ponerMascota(c->mascotaSinPlan));
        c->d.si();
        QVERIFY(f.ponerMascota(c->mascota));
        QCOMPARE(f.albaran().lineas().first().pvp, 9.68);
        QCOMPARE(f.textoTotal(QStringLiteral("total")), QStringLiteral("9,68"));
        // A new line takes the plan's price at once.
        QCOMPARE(f.entradaArticulo(c->articulo)->pvp, QStringLiteral("9,68"));

        // Changing the client keeps the prices and says so.
        c->d.limpiar();
        QVERIFY(f.ponerCliente(c->otroCliente));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Atención"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral(" Al cambiar de Cliente teniendo Artículos en el Albarán, no se "
                                "recalculan los Precios Especiales."));
        QCOMPARE(f.albaran().lineas().first().pvp, 9.68);
        QVERIFY(!f.albaran().idMascota);
        // The new client's tariff and discount price the next line.
        const EntradaLineaAlbaran e = *f.entradaArticulo(c->articulo);
        QCOMPARE(e.pvp, QStringLiteral("11,00"));
        QCOMPARE(e.descuento, QStringLiteral("10,00"));
        // A special price written in the client's commercial file meanwhile counts once reloaded.
        c->crear(QStringLiteral("CondicionesEspeciales"), {{QStringLiteral("IdCliente"), c->otroCliente},
                                                           {QStringLiteral("IdArticulo"), c->articulo},
                                                           {QStringLiteral("Precio"), 5.0}});
        QCOMPARE(f.entradaArticulo(c->articulo)->pvp, QStringLiteral("11,00"));
        f.RecuperarFichaComercial();
        QCOMPARE(f.entradaArticulo(c->articulo)->pvp, QStringLiteral("5,00"));
        QCOMPARE(f.entradaArticulo(c->articulo)->descuento, QString());

        // An expired plan no longer prices, and shows as expired.
        c->t.db().ejecutarCambio(QStringLiteral("UPDATE Mascotas SET CaducidadPlan = ? WHERE IdMascota = ?"),
                                 {QDate(2026, 11, 19), c->mascota});
        AlbaranForm g(*c->e);
        QVERIFY(g.ponerCliente(c->cliente));
        QVERIFY(g.ponerMascota(c->mascota));
        QCOMPARE(g.marcaPlan(), MarcaPlan::Caducado);
        QCOMPARE(g.entradaArticulo(c->articulo)->pvp, QStringLiteral("12,10"));
    }

    void aperturaDesdeOtraPantalla() {
        auto c = caso();
        AlbaranForm f(*c->e);
        AperturaAlbaran ap;
        ap.IdCliente = c->cliente;
        ap.idMascota = c->mascotaSinPlan;
        ap.NumVisita = 41;
        ap.IdVendedor = c->vendedor;
        ap.TarifaCliente = QStringLiteral("TARIFA 3");
        ap.IVAaAplicarCliente = c->iva10;
        ap.EntradaDesdeHistorial = true;
        ap.IdArticuloHistorial = c->articulo;
        f.abrir(ap);
        QCOMPARE(f.albaran().lineas().size(), 1);
        const LineaAlbaran& l = f.albaran().lineas().first();
        QCOMPARE(l.pvp, 10.00);
        QCOMPARE(l.iva, 10.0);
        QCOMPARE(l.idTipoIVA, std::optional<qint64>(c->iva10));
        QVERIFY(f.guardar());
        QCOMPARE(c->t.db()
                     .valor(QStringLiteral("SELECT IdVisita FROM Albaranes WHERE IdAlbaran = ?"),
                            {*f.albaran().IdAlbaran})
                     .toLongLong(),
                 41);
        QCOMPARE(f.numAlbaran(), std::optional<qint64>(1));

        // The workstation's default article goes on a new note when its client is chosen...
        ConfiguracionPuesto conf = ConfPuestoStore(c->t.db()).cargar(c->e->puesto);
        conf.IdArticulo = c->servicio;
        ConfPuestoStore(c->t.db()).guardar(conf);
        AlbaranForm g(*c->e);
        QVERIFY(g.ponerCliente(c->cliente));
        QCOMPARE(g.albaran().lineas().size(), 1);
        QCOMPARE(g.albaran().lineas().first().concepto, QStringLiteral("Consulta"));
        // ...and one that no longer exists is reported.
        conf.IdArticulo = 555;
        ConfPuestoStore(c->t.db()).guardar(conf);
        AlbaranForm h(*c->e);
        QVERIFY(h.ponerCliente(c->cliente));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Error al intentar acceder al Artículo 555"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Ha sido imposible incluir el artículo por defecto en el albarán. "
                                "Este error puede deberse a que el artículo haya sido eliminado."));
        QVERIFY(h.albaran().lineas().isEmpty());
    }

    void erroresDeLecturaYAntiguoPropietario() {
        auto c = caso();
        AlbaranForm f(*c->e);
        QVERIFY(!f.cargar(999));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Error al intentar acceder al Albarán número 999"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Ha sido imposible recuperar la información solicitada. Este error "
                                "puede deberse a que el Albarán haya sido eliminado."));
        QVERIFY(f.ponerCliente(c->cliente));
        QVERIFY(f.ponerMascota(c->mascotaSinPlan));
        QVERIFY(f.setVendedor(c->vendedor));
        QVERIFY(f.insertarLinea(linea(f, c->servicio)));
        QVERIFY(f.guardar());
        const qint64 id = *f.albaran().IdAlbaran;
        QVERIFY(f.cerrar());
        c->t.db().ejecutarCambio(QStringLiteral("UPDATE Mascotas SET IdCliente = ? WHERE IdMascota = ?"),
                                 {c->otroCliente, c->mascotaSinPlan});
        c->d.limpiar();
        AlbaranForm g(*c->e);
        QVERIFY(g.cargar(id));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("ATENCION"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("Este albarán puede pertenecer a un antiguo propietario de 'Misi'"));
    }

    // With no receipt printer the ticket is refused before the new note is saved or anything asked.
    void ticketSinImpresora() {
        auto c = caso();
        AlbaranForm f(*c->e);
        QVERIFY(f.ponerCliente(c->cliente));
        QVERIFY(f.setVendedor(c->vendedor));
        QVERIFY(f.insertarLinea(linea(f, c->servicio)));
        QVERIFY(!f.ticket());
        QCOMPARE(c->d.mensajes().size(), 1);
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No hay ninguna impresora de tickets configurada en este puesto. "
                                "Configúrela en los 'Datos de la configuración del puesto'."));
        QVERIFY(f.albaran().esNuevo());
    }

    void preguntasAlCerrarYBuscar() {
        auto c = caso();
        AlbaranForm f(*c->e);
        const qint64 id = notaGuardada(*c, f);
        QVERIFY(f.setRetencion(QStringLiteral("7")));
        c->d.no();
        QVERIFY(f.cerrar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Confirmación para cerrar la ventana"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("¿Desea guardar los cambios realizados en esta ventana?"));
        QCOMPARE(c->t.db()
                     .valor(QStringLiteral("SELECT Retencion FROM Albaranes WHERE IdAlbaran = ?"), {id})
                     .toDouble(),
                 0.0);

        AlbaranForm g(*c->e);
        QVERIFY(g.cargar(id));
        QVERIFY(g.setRetencion(QStringLiteral("7")));
        c->e->buscadores.albaran = [&] { return std::optional<qint64>(id); };
        c->d.si();
        QVERIFY(g.buscar());
        QCOMPARE(c->d.mensajes().at(c->d.mensajes().size() - 1).titulo,
                 QStringLiteral("Confirmación para abrir la ventana de búsqueda"));
        QCOMPARE(c->t.db()
                     .valor(QStringLiteral("SELECT Retencion FROM Albaranes WHERE IdAlbaran = ?"), {id})
                     .toDouble(),
                 7.0);
        QCOMPARE(g.albaran().retencion(), 7.0);
        QCOMPARE(g.textoTotal(QStringLiteral("total")), QStringLiteral("34,20"));
    }
};

PMX_STORE_TEST_MAIN(TestAlbaranForm)
#include "test_albaran_form.moc"
