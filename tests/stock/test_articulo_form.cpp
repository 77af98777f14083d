// The article form: title, margin, services, the save checks in order, the description and
// invoicing-series questions (pending notes rewritten under the administrative lock), locks.
#include "app/bloqueo_edicion.h"
#include "core/formatos.h"
#include "data/esquema.h"
#include "sesion.h"
#include "stock/articulo_busqueda_form.h"
#include "stock/articulo_form.h"
#include "stock/series_articulo.h"

class TestArticuloForm : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        Caso() : Sesion(QDateTime(QDate(2026, 5, 4), QTime(10, 0))) {}
        qint64 g = 0, f = 0, sub = 0, f2 = 0, s2 = 0, iva = 0;
    };

    // Section Farmacia (series G) with family Antiparasitarios (subfamily Pipetas) and family
    // Vacunas (series V, subfamily Perros); VAT 21 %; client 1, Ana, for the delivery notes.
    static std::unique_ptr<Caso> sesion(const QString& puesto = u"MOSTRADOR"_s) {
        auto c = std::make_unique<Caso>();
        c->e.puesto = puesto;
        c->e.sesion = puesto + u"-1"_s;
        Semilla& d = c->s;
        c->g = d.seccion(u"Farmacia"_s, u"G"_s);
        c->f = d.familia(c->g, u"Antiparasitarios"_s);
        c->sub = d.subfamilia(c->f, u"Pipetas"_s);
        c->f2 = d.familia(c->g, u"Vacunas"_s, u"V"_s);
        c->s2 = d.subfamilia(c->f2, u"Perros"_s);
        c->iva = d.iva(u"General"_s, 21);
        d.cliente(u"Ana"_s);
        return c;
    }

    static void rellenar(ArticuloForm& a, const Caso& s) {
        a.setTexto(u"Articulo"_s, u"Pipeta antiparasitaria"_s);
        a.setTexto(u"ArtTipoArticulo"_s, u"PRODUCTO"_s);
        a.setTexto(u"Seccion"_s, QString::number(s.g));
        a.setTexto(u"Familia"_s, QString::number(s.f));
        a.setTexto(u"SubFamilia"_s, QString::number(s.sub));
        a.setTexto(u"ArtIVA"_s, QString::number(s.iva));
    }

private slots:
    void tituloYNuevo() {
        auto s = sesion();
        ArticuloForm a(s->e);
        QVERIFY(a.esNuevo());
        QCOMPARE(a.titulo(), u"Mantenimiento de Artículos -  (Nuevo Artículo) : "_s);
        QCOMPARE(a.texto(u"ArtFactorConversion"_s), u"1,00"_s);
        QCOMPARE(a.texto(u"ArtFechaAlta"_s), u"04/05/2026"_s);
        bool alFrente = false;
        a.traerAlFrente = [&] { alFrente = true; };
        rellenar(a, *s);
        a.setTexto(u"PVP1"_s, u"30,00"_s);
        QVERIFY(a.guardar());
        QVERIFY(!a.esNuevo());
        QCOMPARE(a.titulo(), u"Mantenimiento de Artículos - %1 : Pipeta antiparasitaria"_s.arg(*a.codigo()));
        QVERIFY(s->d.mensajes().isEmpty());
        // One editor per article here: a second one brings the first forward and stays empty.
        ArticuloForm b(s->e);
        QVERIFY(!b.abrir(*a.codigo()));
        QVERIFY(alFrente && b.esNuevo());
        a.cerrar();
        QVERIFY(b.abrir(*a.codigo()));
        QCOMPARE(b.texto(u"PVP1"_s), u"30,00"_s);
    }

    // The last purchase price comes from the purchases; the sale price is typed.
    void margen() {
        const struct {
            const char *pvp1, *ultimo, *margen;
        } filas[] = {{"30,00", "12,00", "250,00"}, // typical
                     {"30,00", "0", "100.00"},     // purchase price zero
                     {"30,00", "", ""},            // no purchase price
                     {"10,00", "3,00", "333,33"}}; // rounded to two decimals
        for (const auto& f : filas) {
            auto s = sesion();
            const QString ultimo = QString::fromUtf8(f.ultimo);
            const QVariant precio = ultimo.isEmpty() ? QVariant() : QVariant(leerImporte(ultimo).value());
            ArticuloForm a(s->e);
            QVERIFY(a.abrir(
                s->s.articulo(u"Pienso"_s, s->g, s->f, s->sub, s->iva, {{u"ArtUltPrecio"_s, precio}})));
            QVERIFY(a.setTexto(u"PVP1"_s, QString::fromUtf8(f.pvp1)));
            QVERIFY2(a.margen() == QString::fromUtf8(f.margen),
                     qPrintable(f.pvp1 + u" / "_s + ultimo + u": "_s + a.margen()));
        }
    }

    void servicioVaciaYDeshabilita() {
        auto s = sesion();
        Semilla(s->db()).fila(u"Proveedores"_s, {{u"Nombre"_s, u"Distribuidora"_s}});
        ArticuloForm a(s->e);
        const QStringList producto = ArticuloForm::columnasProducto();
        QVERIFY(a.setTexto(u"ArtCodBarras"_s, u"8412345678905"_s));
        QVERIFY(a.setTexto(u"ArtCodProv"_s, u"1"_s));
        // Stock and the last purchase are never typed: their operations keep them.
        for (const QString& c : {u"Stock"_s, u"ArtUltPrecio"_s, u"ArtCodUltProv"_s, u"ArtFecUltUso"_s})
            QVERIFY2(!a.setTexto(c, u"5"_s) && a.texto(c).isEmpty(), qPrintable(c));
        QVERIFY(a.setTexto(u"ArtTipoArticulo"_s, u"SERVICIO"_s));
        QVERIFY(a.esServicio());
        for (const QString& c : producto) {
            QVERIFY2(a.texto(c).isEmpty(), qPrintable(c));
            QVERIFY2(!a.habilitado(c), qPrintable(c));
            QVERIFY2(!a.setTexto(c, u"1"_s), qPrintable(c));
        }
        QVERIFY(a.habilitado(u"PVP1"_s));
        // A service is saved without stock or suppliers.
        rellenar(a, *s);
        a.setTexto(u"ArtTipoArticulo"_s, u"SERVICIO"_s);
        QVERIFY(a.guardar());
        const auto r = RegistroStore(s->db()).cargar(*descriptorTabla(u"Articulos"_s), *a.codigo());
        QVERIFY(r->valor(u"ArtCodProv"_s).isNull());
    }

    void comprobacionesEnOrden_data() {
        QTest::addColumn<QString>("vaciar");
        QTest::addColumn<QString>("factor");
        QTest::addColumn<QString>("mensaje");
        auto fila = [](const char* nombre, QString a0, QString a1, QString a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        fila("nombre", "Articulo", "1", "Debe informar el nombre del Artículo");
        fila("tipo", "ArtTipoArticulo", "1", "Debe informar el tipo de Artículo");
        fila("sección", "Seccion", "1", "Debe informar la sección a la que pertenece el Artículo");
        fila("familia", "Familia", "1", "Debe informar la familia a la que pertenece el Artículo");
        fila("subfamilia", "SubFamilia", "1", "Debe informar la subfamilia a la que pertenece el Artículo");
        fila("iva", "ArtIVA", "1", "Debe informar el tipo de IVA a aplicar al Artículo");
        fila("factor vacío", "", "", "Debe informar el factor de conversión para las unidades de compra");
        fila("factor cero", "", "0",
             "El factor de conversión para las unidades de compra ha de ser mayor de 0");
    }
    void comprobacionesEnOrden() {
        QFETCH(QString, vaciar);
        QFETCH(QString, factor);
        QFETCH(QString, mensaje);
        auto s = sesion();
        ArticuloForm a(s->e);
        rellenar(a, *s);
        a.setTexto(u"ArtFactorConversion"_s, factor);
        // Emptying a field also empties those below it in the classification; the message
        // names the first missing one.
        if (!vaciar.isEmpty()) QVERIFY(a.setTexto(vaciar, QString()));
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QCOMPARE(s->d.ultimo().titulo, u"Campos obligatorios no informados"_s);
        QCOMPARE(s->d.ultimoTexto(), mensaje);
        QCOMPARE(a.foco, vaciar.isEmpty() ? u"ArtFactorConversion"_s : vaciar);
        QCOMPARE(RegistroStore(s->db()).contar(*descriptorTabla(u"Articulos"_s)), 0);
    }

    void valorMalEscritoNoGuarda() {
        auto s = sesion();
        ArticuloForm a(s->e);
        rellenar(a, *s);
        a.setTexto(u"PVP2"_s, u"12.5"_s);
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.ultimo().titulo, u"Información introducida errónea"_s);
        QCOMPARE(s->d.ultimoTexto(),
                 u"El campo 'P.V.P. 2' debe ser un número, con coma decimal (por ejemplo 1.234,56)."_s);
        QCOMPARE(a.foco, u"PVP2"_s);
        QCOMPARE(a.texto(u"PVP2"_s), u"12.5"_s);
    }

    void cambioDeDescripcion() {
        auto s = sesion();
        Semilla d(s->db());
        const qint64 cod = d.articulo(u"Collar"_s, s->g, s->f, s->sub, s->iva);
        ArticuloForm a(s->e);
        QVERIFY(a.abrir(cod));
        a.setTexto(u"Articulo"_s, u"Collar antiparasitario"_s);
        s->d.no();
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.ultimo().titulo, u"Atención"_s);
        QCOMPARE(s->d.ultimoTexto(), u" Ha cambiado la descripción del Artículo. ¿Confirma que desea "
                                     "guardar esta modificación?"_s);
        s->d.si();
        QVERIFY(a.guardar());
        QCOMPARE(ArticuloStore(s->db()).cargar(cod)->texto(u"Articulo"_s), u"Collar antiparasitario"_s);
    }

    void cambioDeSerieReescribeAlbaranesPendientes() {
        auto s = sesion();
        Semilla d(s->db());
        const qint64 cod = d.articulo(u"Vacuna rabia"_s, s->g, s->f, s->sub, s->iva);
        const qint64 pend = d.albaran(1);
        const qint64 fact = d.albaran(2, 40);
        const qint64 lPend = d.linea(pend, cod, u"G"_s);
        const qint64 lFact = d.linea(fact, cod, u"G"_s);
        ArticuloForm a(s->e);
        QVERIFY(a.abrir(cod));
        QVERIFY(a.setTexto(u"Familia"_s, QString::number(s->f2)));
        QVERIFY(a.setTexto(u"SubFamilia"_s, QString::number(s->s2)));
        // No: nothing saved, nothing rewritten.
        s->d.no();
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.ultimo().titulo, u"Atención"_s);
        QCOMPARE(s->d.ultimoTexto(), preguntaCambioSerieArticulo(u"familia"_s, u"V"_s));
        QCOMPARE(d.serieLinea(lPend), u"G"_s);
        QCOMPARE(ArticuloStore(s->db()).cargar(cod)->valor(u"Familia"_s).toLongLong(), s->f);
        // Yes: the article and the pending line change together; the invoiced line stays.
        s->d.si();
        QVERIFY(a.guardar());
        QCOMPARE(d.serieLinea(lPend), u"V"_s);
        QCOMPARE(d.serieLinea(lFact), u"G"_s);
        QCOMPARE(ArticuloStore(s->db()).cargar(cod)->valor(u"Familia"_s).toLongLong(), s->f2);
        // The administrative lock and the article's lock are gone.
        QCOMPARE(almacenBloqueos(s->e).contar(), 0);
    }

    // Another workstation holds record locks: the administrative lock is refused and nothing
    // is saved or rewritten.
    void bloqueoBDRechazado() {
        auto s = sesion();
        Semilla d(s->db());
        const qint64 cod = d.articulo(u"Vacuna"_s, s->g, s->f, s->sub, s->iva);
        const qint64 l = d.linea(d.albaran(1), cod, u"G"_s);
        ScriptedDialogs d2;
        Entorno otro(s->db(), d2, s->reloj);
        otro.puesto = u"CONSULTA"_s;
        otro.sesion = u"CONSULTA-1"_s;
        const DescriptorTabla& clientes = *descriptorTabla(u"Clientes"_s);
        QVERIFY(
            almacenBloqueos(otro).bloquearRegistro(clientes, u"1"_s, u"Ana"_s, AccionBloqueo::Modificacion));
        ArticuloForm a(s->e);
        QVERIFY(a.abrir(cod));
        a.setTexto(u"Familia"_s, QString::number(s->f2));
        a.setTexto(u"SubFamilia"_s, QString::number(s->s2));
        s->d.si();
        QVERIFY(!a.guardar());
        QCOMPARE(s->d.ultimo().titulo, u"¡Atención!"_s);
        QVERIFY(s->d.ultimoTexto().startsWith(u" No es posible bloquear la B.D. para Administración "
                                              "mientras otros Usuarios tengan bloqueados registros en"_s));
        QCOMPARE(d.serieLinea(l), u"G"_s);
        QCOMPARE(ArticuloStore(s->db()).cargar(cod)->valor(u"Familia"_s).toLongLong(), s->f);
        // The user's changes are still on the screen.
        QCOMPARE(a.texto(u"Familia"_s), QString::number(s->f2));
    }

    void eliminar() {
        auto s = sesion();
        const qint64 cod = Semilla(s->db()).articulo(u"Champú"_s, s->g, s->f, s->sub, s->iva);
        ArticuloForm a(s->e);
        QVERIFY(a.abrir(cod));
        s->d.no();
        QVERIFY(!a.eliminar());
        QCOMPARE(s->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(s->d.ultimoTexto(), u"¿Desea realmente eliminar este Artículo?"_s);
        QVERIFY(ArticuloStore(s->db()).cargar(cod).has_value());
        // Sold on a note: it stays, with the reason, and its lock goes.
        const qint64 linea = s->s.linea(s->s.albaran(1), cod, u"G"_s);
        s->d.si();
        QVERIFY(!a.eliminar());
        QCOMPARE(s->d.ultimoTexto(),
                 u"No se puede eliminar este Artículo porque hay Albaranes u otros registros "
                 "que dependen de él. Puede darlo de baja con una fecha de baja."_s);
        QCOMPARE(almacenBloqueos(s->e).contar(), 0);
        s->db().ejecutarCambio(u"DELETE FROM LineasAlbaran WHERE IdLinea = ?"_s, {linea});
        // Its special conditions go with it.
        s->s.fila(u"CondicionesEspeciales"_s, {{u"IdCliente"_s, 1}, {u"IdArticulo"_s, cod}});
        s->d.si();
        QVERIFY(a.eliminar());
        QVERIFY(!ArticuloStore(s->db()).cargar(cod).has_value());
        QCOMPARE(s->s.contar(u"CondicionesEspeciales"_s), 0);
        QVERIFY(a.esNuevo());
        QCOMPARE(almacenBloqueos(s->e).contar(), 0);
    }

    void erroresDeLectura() {
        auto s = sesion();
        ArticuloForm a(s->e);
        QVERIFY(!a.abrir(4321));
        QCOMPARE(s->d.ultimo().titulo, u"Mantenimiento de Artículos"_s);
        QCOMPARE(s->d.ultimoTexto(), u"Error al intentar acceder al Artículo nº 4321\nHa sido imposible "
                                     "recuperar la información solicitada. Puede que el Artículo haya "
                                     "sido eliminado."_s);
        // A supplier that is gone.
        s->d.limpiar();
        QVERIFY(!a.setTexto(u"ArtCodProv"_s, u"77"_s));
        QCOMPARE(s->d.ultimoTexto(), u"Error al intentar acceder al proveedor numero 77\nHa sido "
                                     "imposible recuperar la información solicitada. Puede que este "
                                     "proveedor haya sido eliminado."_s);
        QCOMPARE(a.texto(u"ArtCodProv"_s), QString());
    }

    void bloqueoAlModificar() {
        auto s = sesion();
        const qint64 cod = Semilla(s->db()).articulo(u"Arnés"_s, s->g, s->f, s->sub, s->iva);
        ArticuloForm a(s->e);
        QVERIFY(a.abrir(cod));
        QVERIFY(!a.bloqueado());
        QVERIFY(a.setTexto(u"PVP1"_s, u"15,00"_s));
        QVERIFY(a.bloqueado());
        // A second workstation cannot change the same article meanwhile.
        ScriptedDialogs d2;
        Entorno otro(s->db(), d2, s->reloj);
        otro.puesto = u"CONSULTA"_s;
        otro.sesion = u"CONSULTA-1"_s;
        ArticuloForm b(otro);
        QVERIFY(b.abrir(cod));
        QVERIFY(!b.setTexto(u"PVP1"_s, u"1,00"_s));
        QCOMPARE(b.texto(u"PVP1"_s), QString());
        QVERIFY(d2.ultimoTexto().contains(u"pues otro Puesto lo/a tiene bloqueado/a"_s));
        // Cancelling drops the change and frees the article.
        a.cancelar();
        QVERIFY(!a.bloqueado());
        QCOMPARE(a.texto(u"PVP1"_s), QString());
        QVERIFY(b.setTexto(u"PVP1"_s, u"1,00"_s));
        QVERIFY(b.guardar());
        QVERIFY(!b.bloqueado());
        QCOMPARE(almacenBloqueos(s->e).contar(), 0);
    }

    // Leaving an unsaved article asks first; a new article is not created while an
    // administrator of another workstation holds the database.
    void abandonarYAlta() {
        auto s = sesion();
        ArticuloForm a(s->e);
        rellenar(a, *s);
        s->d.no();
        QVERIFY(!a.puedeAbandonar());
        QCOMPARE(s->d.ultimo().titulo, u"ATENCIÓN"_s);
        QCOMPARE(s->d.ultimoTexto(), u"Las modificaciones realizadas a este Artículo no han sido guardadas. "
                                     "¿Desea perder los cambios efectuados?"_s);
        ScriptedDialogs d2;
        Entorno otro(s->db(), d2, s->reloj);
        otro.sesion = u"CONSULTA-1"_s;
        QVERIFY(almacenBloqueos(otro).bloquearBD());
        QVERIFY(!a.guardar());
        QVERIFY(a.esNuevo());
        QCOMPARE(RegistroStore(s->db()).contar(*descriptorTabla(u"Articulos"_s)), 0);
        almacenBloqueos(otro).desbloquearBD();
        QVERIFY(a.guardar());
        QCOMPARE(almacenBloqueos(s->e).contar(), 0);
    }

    void listasYParametrosDesdeLaPantalla() {
        auto s = sesion();
        ArticuloForm a(s->e);
        QVERIFY(!a.fichaParametro(u"Familia"_s).has_value());
        QCOMPARE(s->d.ultimoTexto(), u"Elija antes la sección de la nueva familia."_s);
        a.setTexto(u"Seccion"_s, QString::number(s->g));
        auto ficha = a.fichaParametro(u"Familia"_s);
        QCOMPARE(ficha->titulo(), u"Añadir Familia"_s);
        ficha->setTexto(u"Descripcion"_s, u"Alimentación"_s);
        QVERIFY(ficha->guardar());
        QVERIFY(a.parametroAnadido(u"Familia"_s, ficha->registro()));
        QCOMPARE(a.texto(u"Familia"_s), ficha->registro().clave().toString());
        QCOMPARE(ficha->registro().valor(u"IdSeccion"_s).toLongLong(), s->g);
    }

    void busqueda() {
        auto s = sesion();
        Semilla d(s->db());
        const qint64 vac = d.articulo(u"Vacuna rabia"_s, s->g, s->f2, s->s2, s->iva, {{u"PVP1"_s, 25.5}});
        const qint64 pip = d.articulo(u"Pipeta 100% gato"_s, s->g, s->f, s->sub, s->iva);
        ArticuloBusquedaForm b(s->e);
        QCOMPARE(ArticuloBusquedaForm::cabeceras().last(), u"Días de recordatorio"_s);
        auto codigos = [&] {
            QList<qint64> l;
            for (int i = 0; i < b.filas(); ++i)
                l << b.fila(i).codigo;
            return l;
        };
        b.filtro.descripcion = u"vacuna"_s;
        QVERIFY(b.buscar());
        QCOMPARE(codigos(), QList<qint64>{vac});
        QCOMPARE(b.textoCelda(0, 2), u"25,50"_s);
        // Anywhere in the name; the wildcard characters are searched for as typed.
        b.filtro.descripcion = u"100%"_s;
        b.filtro.descripcionEnCualquierParte = true;
        QVERIFY(b.buscar());
        QCOMPARE(codigos(), QList<qint64>{pip});
        b.codigo = u"12a"_s;
        QVERIFY(!b.buscar());
        QCOMPARE(s->d.ultimoTexto(), u"El código del Artículo debe ser un número entero."_s);
        QCOMPARE(b.filas(), 1);
    }
};

PMX_STORE_TEST_MAIN(TestArticuloForm)
#include "test_articulo_form.moc"
