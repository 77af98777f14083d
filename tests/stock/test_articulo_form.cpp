// The article maintenance screen: title, margin, services, the save checks in order, the
// questions about a changed description and a changed invoicing series (with the rewrite on
// pending delivery notes under the administrative lock), deletion, read errors and locks.
#include "app/bloqueo_edicion.h"
#include "datos_articulos.h"
#include "scripted_dialogs.h"
#include "stock/articulo_busqueda_form.h"
#include "stock/articulo_form.h"
#include "stock/series_articulo.h"
#include "test_db.h"

class TestArticuloForm : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 5, 4), QTime(10, 0))};

    struct Sesion {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        qint64 g = 0, f = 0, s = 0, f2 = 0, s2 = 0, iva = 0;
    };

    std::unique_ptr<Sesion> sesion(const QString& puesto = QStringLiteral("MOSTRADOR")) {
        auto s = std::make_unique<Sesion>();
        s->e = std::make_unique<Entorno>(s->t.db(), s->d, reloj_);
        s->e->puesto = puesto;
        s->e->sesion = puesto + QStringLiteral("-1");
        s->e->usuario = QStringLiteral("ana");
        DatosArticulos d(s->t.db());
        s->g = d.seccion(QStringLiteral("Farmacia"), QStringLiteral("G"));
        s->f = d.familia(s->g, QStringLiteral("Antiparasitarios"));
        s->s = d.subfamilia(s->f, QStringLiteral("Pipetas"));
        s->f2 = d.familia(s->g, QStringLiteral("Vacunas"), QStringLiteral("V"));
        s->s2 = d.subfamilia(s->f2, QStringLiteral("Perros"));
        s->iva = d.iva(QStringLiteral("General"), 21);
        return s;
    }

    static void rellenar(ArticuloForm& a, const Sesion& s) {
        a.setTexto(QStringLiteral("Articulo"), QStringLiteral("Pipeta antiparasitaria"));
        a.setTexto(QStringLiteral("ArtTipoArticulo"), QStringLiteral("PRODUCTO"));
        a.setTexto(QStringLiteral("Seccion"), QString::number(s.g));
        a.setTexto(QStringLiteral("Familia"), QString::number(s.f));
        a.setTexto(QStringLiteral("SubFamilia"), QString::number(s.s));
        a.setTexto(QStringLiteral("ArtIVA"), QString::number(s.iva));
    }

private slots:
    void tituloYNuevo() {
        auto s = sesion();
        ArticuloForm a(*s->e);
        QVERIFY(a.esNuevo());
        QCOMPARE(a.titulo(), QStringLiteral("Mantenimiento de Artículos -  (Nuevo Artículo) : "));
        QCOMPARE(a.texto(QStringLiteral("ArtFactorConversion")), QStringLiteral("1,00"));
        QCOMPARE(a.texto(QStringLiteral("ArtFechaAlta")), QStringLiteral("04/05/2026"));
        rellenar(a, *s);
        a.setTexto(QStringLiteral("PVP1"), QStringLiteral("30,00"));
        QVERIFY(a.guardar());
        QVERIFY(!a.esNuevo());
        QCOMPARE(a.titulo(),
                 QStringLiteral("Mantenimiento de Artículos - %1 : Pipeta antiparasitaria").arg(*a.codigo()));
        QVERIFY(s->d.mensajes().isEmpty());
        ArticuloForm b(*s->e);
        QVERIFY(b.abrir(*a.codigo()));
        QCOMPARE(b.texto(QStringLiteral("PVP1")), QStringLiteral("30,00"));
        QCOMPARE(b.texto(QStringLiteral("SubFamilia")), QString::number(s->s));
    }

    void margen_data() {
        QTest::addColumn<QString>("pvp1");
        QTest::addColumn<QString>("ultimo");
        QTest::addColumn<QString>("margen");
        QTest::newRow("30 sobre 12") << "30,00"
                                     << "12,00"
                                     << "250,00";
        QTest::newRow("precio de compra cero") << "30,00"
                                               << "0"
                                               << "100.00";
        QTest::newRow("sin precio de compra") << "30,00"
                                              << ""
                                              << "";
        QTest::newRow("redondeo a dos decimales") << "10,00"
                                                  << "3,00"
                                                  << "333,33";
        QTest::newRow("millares") << "1.000,00"
                                  << "0,50"
                                  << "200.000,00";
    }
    void margen() {
        QFETCH(QString, pvp1);
        QFETCH(QString, ultimo);
        QFETCH(QString, margen);
        auto s = sesion();
        ArticuloForm a(*s->e);
        a.setTexto(QStringLiteral("PVP1"), pvp1);
        a.setTexto(QStringLiteral("ArtUltPrecio"), ultimo);
        QCOMPARE(a.margen(), margen);
    }

    void servicioVaciaYDeshabilita() {
        auto s = sesion();
        DatosArticulos(s->t.db()).crear(QStringLiteral("Proveedores"),
                                        {{QStringLiteral("Nombre"), QStringLiteral("Distribuidora")}});
        ArticuloForm a(*s->e);
        const QStringList producto = ArticuloForm::columnasProducto();
        QCOMPARE(producto.size(), 7);
        QVERIFY(a.setTexto(QStringLiteral("ArtCodBarras"), QStringLiteral("8412345678905")));
        QVERIFY(a.setTexto(QStringLiteral("ArtCodProv"), QStringLiteral("1")));
        QVERIFY(a.setTexto(QStringLiteral("ArtCodUltProv"), QStringLiteral("1")));
        QVERIFY(a.setTexto(QStringLiteral("ArtRefProvHab"), QStringLiteral("REF-9")));
        QVERIFY(a.setTexto(QStringLiteral("ArtUltPrecio"), QStringLiteral("12,00")));
        QVERIFY(a.setTexto(QStringLiteral("Stock"), QStringLiteral("5")));
        QVERIFY(a.setTexto(QStringLiteral("ArtStockMin"), QStringLiteral("2")));
        QVERIFY(a.setTexto(QStringLiteral("ArtTipoArticulo"), QStringLiteral("SERVICIO")));
        QVERIFY(a.esServicio());
        for (const QString& c : producto) {
            QVERIFY2(a.texto(c).isEmpty(), qPrintable(c));
            QVERIFY2(!a.habilitado(c), qPrintable(c));
            QVERIFY2(!a.setTexto(c, QStringLiteral("1")), qPrintable(c));
        }
        QVERIFY(a.habilitado(QStringLiteral("PVP1")));
        QCOMPARE(a.margen(), QString());
        // A service is saved without stock or suppliers.
        rellenar(a, *s);
        a.setTexto(QStringLiteral("ArtTipoArticulo"), QStringLiteral("SERVICIO"));
        QVERIFY(a.guardar());
        const auto r =
            RegistroStore(s->t.db()).cargar(*descriptorTabla(QStringLiteral("Articulos")), *a.codigo());
        QVERIFY(r->valor(QStringLiteral("Stock")).isNull());
        QVERIFY(r->valor(QStringLiteral("ArtCodProv")).isNull());
        // Back to a product: the fields open again.
        QVERIFY(a.setTexto(QStringLiteral("ArtTipoArticulo"), QStringLiteral("PRODUCTO")));
        QVERIFY(a.habilitado(QStringLiteral("Stock")));
    }

    void comprobacionesEnOrden_data() {
        QTest::addColumn<QString>("vaciar");
        QTest::addColumn<QString>("factor");
        QTest::addColumn<QString>("mensaje");
        QTest::newRow("nombre") << "Articulo"
                                << "1"
                                << "Debe informar el nombre del Artículo";
        QTest::newRow("tipo") << "ArtTipoArticulo"
                              << "1"
                              << "Debe informar el tipo de Artículo";
        QTest::newRow("sección") << "Seccion"
                                 << "1"
                                 << "Debe informar la sección a la que pertenece el Artículo";
        QTest::newRow("familia") << "Familia"
                                 << "1"
                                 << "Debe informar la familia a la que pertenece el Artículo";
        QTest::newRow("subfamilia") << "SubFamilia"
                                    << "1"
                                    << "Debe informar la subfamilia a la que pertenece el Artículo";
        QTest::newRow("iva") << "ArtIVA"
                             << "1"
                             << "Debe informar el tipo de IVA a aplicar al Artículo";
        QTest::newRow("factor vacío") << ""
                                      << ""
                                      << "Debe informar el factor de conversión para las unidades de compra";
        QTest::newRow("factor cero")
            << ""
            << "0"
            << "El factor de conversión para las unidades de compra ha de ser mayor de 0";
        QTest::newRow("factor negativo")
            << ""
            << "-2,5"
            << "El factor de conversión para las unidades de compra ha de ser mayor de 0";
    }
    void comprobacionesEnOrden() {
        QFETCH(QString, vaciar);
        QFETCH(QString, factor);
        QFETCH(QString, mensaje);
        auto s = sesion();
        ArticuloForm a(*s->e);
        rellenar(a, *s);
        a.setTexto(QStringLiteral("ArtFactorConversion"), factor);
        // Emptying a field also empties those below it in the classification; the message
        // names the first missing one.
        if (!vaciar.isEmpty()) QVERIFY(a.setTexto(vaciar, QString()));
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("Campos obligatorios no informados"));
        QCOMPARE(s->d.ultimoTexto(), mensaje);
        QCOMPARE(a.foco(), vaciar.isEmpty() ? QStringLiteral("ArtFactorConversion") : vaciar);
        QCOMPARE(RegistroStore(s->t.db()).contar(*descriptorTabla(QStringLiteral("Articulos"))), 0);
    }

    void valorMalEscritoNoGuarda() {
        auto s = sesion();
        ArticuloForm a(*s->e);
        rellenar(a, *s);
        a.setTexto(QStringLiteral("PVP2"), QStringLiteral("12.5"));
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("Información introducida errónea"));
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral(
                     "El campo 'P.V.P. 2' debe ser un número, con coma decimal (por ejemplo 1.234,56)."));
        QCOMPARE(a.foco(), QStringLiteral("PVP2"));
        QCOMPARE(a.texto(QStringLiteral("PVP2")), QStringLiteral("12.5"));
        QVERIFY(a.esNuevo());
    }

    void cambioDeDescripcion() {
        auto s = sesion();
        DatosArticulos d(s->t.db());
        const qint64 cod = d.articulo(QStringLiteral("Collar"), s->g, s->f, s->s, s->iva);
        ArticuloForm a(*s->e);
        QVERIFY(a.abrir(cod));
        a.setTexto(QStringLiteral("Articulo"), QStringLiteral("Collar antiparasitario"));
        s->d.no();
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("Atención"));
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral(" Ha cambiado la descripción del Artículo. ¿Confirma que desea "
                                "guardar esta modificación?"));
        QCOMPARE(ArticuloStore(s->t.db()).cargar(cod)->texto(QStringLiteral("Articulo")),
                 QStringLiteral("Collar"));
        s->d.si();
        QVERIFY(a.guardar());
        QCOMPARE(ArticuloStore(s->t.db()).cargar(cod)->texto(QStringLiteral("Articulo")),
                 QStringLiteral("Collar antiparasitario"));
        // Other changes do not ask.
        s->d.limpiar();
        a.setTexto(QStringLiteral("PVP1"), QStringLiteral("9,95"));
        QVERIFY(a.guardar());
        QVERIFY(s->d.mensajes().isEmpty());
        // The question comes before the save checks: answered Yes, the first check still refuses.
        a.setTexto(QStringLiteral("Articulo"), QStringLiteral("Collar grande"));
        a.setTexto(QStringLiteral("ArtTipoArticulo"), QString());
        s->d.si();
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.textos(), (QStringList{kPreguntaDescripcionArticulo,
                                             QStringLiteral("Debe informar el tipo de Artículo")}));
    }

    void cambioDeSerieReescribeAlbaranesPendientes() {
        auto s = sesion();
        DatosArticulos d(s->t.db());
        const qint64 cod = d.articulo(QStringLiteral("Vacuna rabia"), s->g, s->f, s->s, s->iva);
        const qint64 pend = d.albaran(1);
        const qint64 fact = d.albaran(2, 40);
        const qint64 lPend = d.linea(pend, cod, QStringLiteral("G"));
        const qint64 lFact = d.linea(fact, cod, QStringLiteral("G"));
        ArticuloForm a(*s->e);
        QVERIFY(a.abrir(cod));
        QVERIFY(a.setTexto(QStringLiteral("Familia"), QString::number(s->f2)));
        QVERIFY(a.setTexto(QStringLiteral("SubFamilia"), QString::number(s->s2)));
        // No: nothing saved, nothing rewritten.
        s->d.no();
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("Atención"));
        QCOMPARE(s->d.ultimoTexto(),
                 preguntaCambioSerieArticulo(QStringLiteral("familia"), QStringLiteral("V")));
        QVERIFY(s->d.ultimoTexto().startsWith(QStringLiteral(
            "Al cambiar la familia, a este artículo le corresponde ahora la serie de facturación: V.\n")));
        QCOMPARE(d.serieLinea(lPend), QStringLiteral("G"));
        QCOMPARE(ArticuloStore(s->t.db()).cargar(cod)->valor(QStringLiteral("Familia")).toLongLong(), s->f);
        // Yes: the article and the pending line change together; the invoiced line stays.
        s->d.si();
        QVERIFY(a.guardar());
        QCOMPARE(d.serieLinea(lPend), QStringLiteral("V"));
        QCOMPARE(d.serieLinea(lFact), QStringLiteral("G"));
        QCOMPARE(ArticuloStore(s->t.db()).cargar(cod)->valor(QStringLiteral("Familia")).toLongLong(), s->f2);
        // The administrative lock and the article's lock are gone.
        QCOMPARE(almacenBloqueos(*s->e).contar(), 0);
        // Back to the first family: no specific series... the section's applies again.
        s->d.limpiar();
        a.setTexto(QStringLiteral("Familia"), QString::number(s->f));
        a.setTexto(QStringLiteral("SubFamilia"), QString::number(s->s));
        a.setTexto(QStringLiteral("ArtSerie"), QString());
        s->d.si();
        QVERIFY(a.guardar());
        QCOMPARE(d.serieLinea(lPend), QStringLiteral("G"));
    }

    void sinSerieEspecifica() {
        auto s = sesion();
        DatosArticulos d(s->t.db());
        const qint64 g2 = d.seccion(QStringLiteral("Peluquería"));
        const qint64 f3 = d.familia(g2, QStringLiteral("Cortes"));
        const qint64 s3 = d.subfamilia(f3, QStringLiteral("Perros"));
        const qint64 cod = d.articulo(QStringLiteral("Corte"), s->g, s->f, s->s, s->iva);
        const qint64 l = d.linea(d.albaran(1), cod, QStringLiteral("G"));
        ArticuloForm a(*s->e);
        QVERIFY(a.abrir(cod));
        a.setTexto(QStringLiteral("Seccion"), QString::number(g2));
        a.setTexto(QStringLiteral("Familia"), QString::number(f3));
        a.setTexto(QStringLiteral("SubFamilia"), QString::number(s3));
        s->d.si();
        QVERIFY(a.guardar());
        QCOMPARE(s->d.ultimoTexto(), preguntaCambioSerieArticulo(QStringLiteral("sección"), QString()));
        QVERIFY(s->d.ultimoTexto().contains(QStringLiteral(
            "a este artículo NO le corresponde ahora ninguna serie de facturación específica.")));
        QVERIFY(s->t.db()
                    .valor(QStringLiteral("SELECT Serie FROM LineasAlbaran WHERE IdLinea = ?"), {l})
                    .isNull());
    }

    // Another workstation holds record locks: the administrative lock is refused and nothing
    // is saved or rewritten.
    void bloqueoBDRechazado() {
        auto s = sesion();
        DatosArticulos d(s->t.db());
        const qint64 cod = d.articulo(QStringLiteral("Vacuna"), s->g, s->f, s->s, s->iva);
        const qint64 l = d.linea(d.albaran(1), cod, QStringLiteral("G"));
        ScriptedDialogs d2;
        Entorno otro(s->t.db(), d2, reloj_);
        otro.puesto = QStringLiteral("CONSULTA");
        otro.sesion = QStringLiteral("CONSULTA-1");
        const DescriptorTabla& clientes = *descriptorTabla(QStringLiteral("Clientes"));
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(clientes, QStringLiteral("1"), QStringLiteral("Ana"),
                                                       AccionBloqueo::Modificacion));
        ArticuloForm a(*s->e);
        QVERIFY(a.abrir(cod));
        a.setTexto(QStringLiteral("Familia"), QString::number(s->f2));
        a.setTexto(QStringLiteral("SubFamilia"), QString::number(s->s2));
        s->d.si();
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QVERIFY(s->d.ultimoTexto().startsWith(
            QStringLiteral(" No es posible bloquear la B.D. para Administración "
                           "mientras otros Usuarios tengan bloqueados registros en")));
        QCOMPARE(d.serieLinea(l), QStringLiteral("G"));
        QCOMPARE(ArticuloStore(s->t.db()).cargar(cod)->valor(QStringLiteral("Familia")).toLongLong(), s->f);
        // The user's changes are still on the screen.
        QCOMPARE(a.texto(QStringLiteral("Familia")), QString::number(s->f2));
    }

    void eliminar() {
        auto s = sesion();
        const qint64 cod =
            DatosArticulos(s->t.db()).articulo(QStringLiteral("Champú"), s->g, s->f, s->s, s->iva);
        ArticuloForm a(*s->e);
        QVERIFY(a.abrir(cod));
        s->d.no();
        QVERIFY(!a.eliminar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar este Artículo?"));
        QVERIFY(ArticuloStore(s->t.db()).cargar(cod).has_value());
        QVERIFY(!a.bloqueado());
        s->d.si();
        QVERIFY(a.eliminar());
        QVERIFY(!ArticuloStore(s->t.db()).cargar(cod).has_value());
        QVERIFY(a.esNuevo());
        QCOMPARE(almacenBloqueos(*s->e).contar(), 0);
    }

    void erroresDeLectura() {
        auto s = sesion();
        ArticuloForm a(*s->e);
        QVERIFY(!a.abrir(4321));
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("Mantenimiento de Artículos"));
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("Error al intentar acceder al Artículo nº 4321\nHa sido imposible "
                                "recuperar la información solicitada. Puede que el Artículo haya "
                                "sido eliminado."));
        // A supplier that is gone.
        s->d.limpiar();
        QVERIFY(!a.setTexto(QStringLiteral("ArtCodProv"), QStringLiteral("77")));
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("Error al intentar acceder al proveedor numero 77\nHa sido "
                                "imposible recuperar la información solicitada. Puede que este "
                                "proveedor haya sido eliminado."));
        QCOMPARE(a.texto(QStringLiteral("ArtCodProv")), QString());
        // An article that names a supplier that was deleted opens, and says so.
        s->d.limpiar();
        const qint64 cod = DatosArticulos(s->t.db()).articulo(
            QStringLiteral("Pienso"), s->g, s->f, s->s, s->iva, {{QStringLiteral("ArtCodUltProv"), 55}});
        QVERIFY(a.abrir(cod));
        QCOMPARE(s->d.mensajes().size(), 1);
        QVERIFY(s->d.ultimoTexto().startsWith(
            QStringLiteral("Error al intentar acceder al proveedor numero 55\n")));
    }

    void bloqueoAlModificar() {
        auto s = sesion();
        const qint64 cod =
            DatosArticulos(s->t.db()).articulo(QStringLiteral("Arnés"), s->g, s->f, s->s, s->iva);
        ArticuloForm a(*s->e);
        QVERIFY(a.abrir(cod));
        QVERIFY(!a.bloqueado());
        QVERIFY(a.setTexto(QStringLiteral("PVP1"), QStringLiteral("15,00")));
        QVERIFY(a.bloqueado());
        // A second workstation cannot change the same article meanwhile.
        ScriptedDialogs d2;
        Entorno otro(s->t.db(), d2, reloj_);
        otro.puesto = QStringLiteral("CONSULTA");
        otro.sesion = QStringLiteral("CONSULTA-1");
        ArticuloForm b(otro);
        QVERIFY(b.abrir(cod));
        QVERIFY(!b.setTexto(QStringLiteral("PVP1"), QStringLiteral("1,00")));
        QCOMPARE(b.texto(QStringLiteral("PVP1")), QString());
        QVERIFY(d2.ultimoTexto().contains(QStringLiteral("pues otro Puesto lo/a tiene bloqueado/a")));
        // Cancelling drops the change and frees the article.
        a.cancelar();
        QVERIFY(!a.bloqueado());
        QCOMPARE(a.texto(QStringLiteral("PVP1")), QString());
        QVERIFY(b.setTexto(QStringLiteral("PVP1"), QStringLiteral("1,00")));
        QVERIFY(b.guardar());
        QVERIFY(!b.bloqueado());
        QCOMPARE(almacenBloqueos(*s->e).contar(), 0);
    }

    void listasYParametrosDesdeLaPantalla() {
        auto s = sesion();
        ArticuloForm a(*s->e);
        QVERIFY(a.opciones(QStringLiteral("Familia")).isEmpty());
        QVERIFY(!a.fichaParametro(QStringLiteral("Familia")).has_value());
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("Elija antes la sección de la nueva familia."));
        a.setTexto(QStringLiteral("Seccion"), QString::number(s->g));
        QCOMPARE(a.opciones(QStringLiteral("Familia")).size(), 2);
        QCOMPARE(a.opciones(QStringLiteral("Familia")).first().texto, QStringLiteral("Antiparasitarios"));
        auto ficha = a.fichaParametro(QStringLiteral("Familia"));
        QVERIFY(ficha.has_value());
        QCOMPARE(ficha->titulo(), QStringLiteral("Añadir Familia"));
        ficha->setTexto(QStringLiteral("Descripcion"), QStringLiteral("Alimentación"));
        QVERIFY(ficha->guardar());
        QVERIFY(a.parametroAnadido(QStringLiteral("Familia"), ficha->registro()));
        QCOMPARE(a.texto(QStringLiteral("Familia")), ficha->registro().clave().toString());
        QCOMPARE(ficha->registro().valor(QStringLiteral("IdSeccion")).toLongLong(), s->g);
        QCOMPARE(a.opciones(QStringLiteral("Familia")).size(), 3);
        // The subfamilies of the new family: none yet.
        QVERIFY(a.opciones(QStringLiteral("SubFamilia")).isEmpty());
        for (const QString& c : {QStringLiteral("Seccion"), QStringLiteral("ArtIVA"), QStringLiteral("ArtRE"),
                                 QStringLiteral("ArtSerie"), QStringLiteral("ArtLaboratorio")})
            QVERIFY2(a.fichaParametro(c).has_value(), qPrintable(c));
        QVERIFY(!a.fichaParametro(QStringLiteral("PVP1")).has_value());
    }

    void busqueda() {
        auto s = sesion();
        DatosArticulos d(s->t.db());
        const qint64 vac = d.articulo(QStringLiteral("Vacuna rabia"), s->g, s->f2, s->s2, s->iva,
                                      {{QStringLiteral("PVP1"), 25.5},
                                       {QStringLiteral("ArtDias"), 365},
                                       {QStringLiteral("ArtCodBarras"), QStringLiteral("8410000000001")}});
        const qint64 pip = d.articulo(QStringLiteral("Pipeta 100% gato"), s->g, s->f, s->s, s->iva);
        const qint64 baja = d.articulo(QStringLiteral("Vacuna antigua"), s->g, s->f2, s->s2, s->iva,
                                       {{QStringLiteral("ArtFechaBaja"), QDate(2025, 1, 1)}});
        ArticuloBusquedaForm b(*s->e);
        QCOMPARE(ArticuloBusquedaForm::cabeceras().last(), QStringLiteral("Días de recordatorio"));
        auto codigos = [&] {
            QList<qint64> l;
            for (int i = 0; i < b.filas(); ++i)
                l << b.fila(i).codigo;
            return l;
        };
        b.filtro.descripcion = QStringLiteral("vacuna");
        QVERIFY(b.buscar());
        QCOMPARE(codigos(), QList<qint64>{vac});
        QCOMPARE(b.textoCelda(0, 2), QStringLiteral("25,50"));
        QCOMPARE(b.textoCelda(0, 5), QStringLiteral("21,00"));
        QCOMPARE(b.textoCelda(0, 6), QStringLiteral("365"));
        b.filtro.incluirBajas = true;
        QVERIFY(b.buscar());
        QCOMPARE(codigos(), (QList<qint64>{baja, vac}));
        b.filtro = {};
        b.filtro.descripcion = QStringLiteral("rabia");
        QVERIFY(b.buscar());
        QCOMPARE(b.filas(), 0);
        b.filtro.descripcionEnCualquierParte = true;
        QVERIFY(b.buscar());
        QCOMPARE(codigos(), QList<qint64>{vac});
        // The wildcard characters are searched for as typed.
        b.filtro.descripcion = QStringLiteral("100%");
        QVERIFY(b.buscar());
        QCOMPARE(codigos(), QList<qint64>{pip});
        b.filtro = {};
        b.filtro.codBarras = QStringLiteral("8410000000001");
        QVERIFY(b.buscar());
        QCOMPARE(codigos(), QList<qint64>{vac});
        b.filtro = {};
        b.filtro.familia = s->f;
        QVERIFY(b.buscar());
        QCOMPARE(codigos(), QList<qint64>{pip});
        b.filtro = {};
        b.textoInicial(QString::number(pip));
        QVERIFY(b.buscar());
        QCOMPARE(*b.elegir(), pip);
        b.codigo = QStringLiteral("12a");
        QVERIFY(!b.buscar());
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("El código del Artículo debe ser un número entero."));
        QCOMPARE(b.filas(), 1);
    }
};

PMX_STORE_TEST_MAIN(TestArticuloForm)
#include "test_articulo_form.moc"
