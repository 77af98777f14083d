// The generic list editor, tree editor and record form, on the parameter tables.
#include "app/bloqueo_edicion.h"
#include "app/editor_arbol_form.h"
#include "app/editor_lista_form.h"
#include "app/ficha_form.h"
#include "app/parametros_menu.h"
#include "data/esquema.h"
#include "sesion.h"

#include <QSet>

namespace {
const DescriptorTabla& tabla(const QString& nombre) {
    const DescriptorTabla* t = descriptorTabla(nombre);
    if (!t) qFatal("tabla desconocida: %s", qPrintable(nombre));
    return *t;
}

// A text valid for a field of any type, different for each call (n).
QString textoDePrueba(const CampoFicha& campo, const QStringList& opciones, int n) {
    const DescriptorColumna& c = *campo.columna;
    if (!opciones.isEmpty()) return opciones.last();
    switch (c.tipo) {
    case TipoColumna::Entero:
        return QString::number(n);
    case TipoColumna::Decimal:
        return u"%1,25"_s.arg(n);
    default:
        break;
    }
    const QString t = u"Valor %1 ñ"_s.arg(n);
    return c.longitud > 0 ? t.right(c.longitud) : t;
}

// Non-empty display texts of the nodes in the order shown, with their depth.
void recorrer(const EditorArbolForm& f, const QString& clave, int nivel, QStringList& salida) {
    const NodoArbol* n = f.nodo(clave);
    salida << QString(nivel * 2, QLatin1Char(' ')) + n->texto;
    for (const QString& h : n->hijos)
        recorrer(f, h, nivel + 1, salida);
}

QStringList dibujo(const EditorArbolForm& f) {
    QStringList salida;
    for (const QString& r : f.raices())
        recorrer(f, r, 0, salida);
    return salida;
}
} // namespace

class TestEditores : public QObject {
    Q_OBJECT
    static std::unique_ptr<Sesion> sesion() {
        return std::make_unique<Sesion>(QDateTime(QDate(2026, 3, 2), QTime(10, 0)));
    }

    static QVariant crear(Entorno& e, const QString& t, const QHash<QString, QString>& textos) {
        FichaForm f(e, tabla(t));
        for (auto it = textos.cbegin(); it != textos.cend(); ++it)
            f.setTexto(it.key(), it.value());
        if (!f.guardar()) return {};
        return f.registro().clave();
    }

    static QVariant crearNodo(Database& db, const QString& t, const QString& texto, const QVariant& padre) {
        return Semilla(db).fila(t, {{u"Descripcion"_s, texto}, {u"IdPadre"_s, padre}});
    }

    static qint64 filas(Database& db, const QString& t) { return RegistroStore(db).contar(tabla(t)); }

    // A table with one column of each kind, made only for this test.
    static const DescriptorTabla& tablaDeTipos() {
        static const DescriptorTabla t = [] {
            DescriptorTabla d;
            d.tabla = u"PruebaTipos"_s;
            d.descTabla = u"Prueba de tipos"_s;
            d.columnaS = {col(u"Codigo"_s, TipoColumna::Texto, u"Código"_s, 4, false),
                          col(u"Numero"_s, TipoColumna::Entero, u"Número"_s),
                          col(u"Importe"_s, TipoColumna::Decimal, u"Importe"_s),
                          col(u"Fecha"_s, TipoColumna::Fecha, u"Fecha"_s),
                          col(u"Hora"_s, TipoColumna::Hora, u"Hora"_s),
                          col(u"Momento"_s, TipoColumna::FechaHora, u"Momento"_s),
                          col(u"Marca"_s, TipoColumna::Logico, u"Marca"_s),
                          col(u"Notas"_s, TipoColumna::Memo, u"Notas"_s)};
            d.clave = {u"Codigo"_s};
            d.columnaTexto = u"Codigo"_s;
            return d;
        }();
        return t;
    }

private slots:
    // Every menu entry names its own parameter table (a mandatory description; no two entries
    // share a command or a table): a record added, listed and deleted through the generic forms.
    void cadaTablaDeParametros() {
        auto s = sesion();
        // The 29 parameter commands, and the articles' families, subfamilies and types.
        QCOMPARE(entradasMenuParametros().size(), 32);
        QSet<QString> acciones, tablas;
        int n = 0;
        for (const auto& entrada : entradasMenuParametros()) {
            acciones.insert(entrada.accion);
            tablas.insert(entrada.tabla);
            const DescriptorTabla& t = tabla(entrada.tabla);
            const DescriptorColumna* d = t.columna(u"Descripcion"_s);
            QVERIFY2(t.parametro && d && !d->Opcional, qPrintable(entrada.tabla));
            ++n;
            EditorListaForm lista(s->e, t);
            EditorArbolForm arbol(s->e, t);
            QVERIFY(t.esArbol() ? arbol.refrescar() : lista.refrescar());
            std::optional<FichaForm> ficha(t.esArbol() ? arbol.nuevaRaiz() : lista.nuevaFicha());
            QCOMPARE(ficha->titulo(), u"Añadir "_s + t.descTabla);
            // A column that names a parent row (a subfamily's family) gets one that exists.
            QHash<QString, QString> padres;
            for (const DescriptorReferencia& r : t.referencias) {
                const qint64 padre = s->s.fila(r.padre, {{tabla(r.padre).columnaTexto, u"Padre"_s}});
                padres.insert(r.columna, QString::number(padre));
            }
            for (const CampoFicha& c : ficha->campos())
                ficha->setTexto(
                    c.columna->nombre,
                    padres.value(c.columna->nombre, textoDePrueba(c, ficha->opciones(c.columna->nombre), n)));
            const QString descripcion = ficha->texto(u"Descripcion"_s);
            QVERIFY2(ficha->guardar(), qPrintable(entrada.tabla + u": "_s + s->d.ultimoTexto()));

            s->d.si();
            if (t.esArbol()) {
                QVERIFY(arbol.refrescar());
                QCOMPARE(dibujo(arbol), QStringList{descripcion});
                arbol.seleccionado = arbol.raices().first();
                QVERIFY(arbol.eliminar());
            } else {
                QVERIFY(lista.refrescar());
                const int col =
                    static_cast<int>(lista.cabeceras().indexOf(t.columna(u"Descripcion"_s)->Descripcion));
                QCOMPARE(lista.textoCelda(0, col), descripcion);
                lista.seleccionado = 0;
                QVERIFY(lista.eliminar());
            }
            QCOMPARE(filas(s->t.db(), entrada.tabla), 0);
            for (const DescriptorReferencia& r : t.referencias)
                s->t.db().ejecutarCambio(u"DELETE FROM "_s + r.padre);
            QVERIFY2(s->d.mensajes().size() == 1 && s->d.ultimo().pregunta,
                     qPrintable(entrada.tabla + u": "_s + s->d.textos().join(u" | "_s)));
            s->d.limpiar();
        }
        QCOMPARE(acciones.size(), n);
        QCOMPARE(tablas.size(), n);
    }

    void listaAnadirModificarEliminar() {
        auto s = sesion();
        EditorListaForm f(s->e, tabla(u"FormasPago"_s));
        QCOMPARE(f.titulo(), u"Lista de Forma de Pago"_s);
        QCOMPARE(f.cabeceras(), (QStringList{u"Código"_s, u"Descripción"_s, u"Declarable"_s, u"Activo"_s}));

        FichaForm nueva = f.nuevaFicha();
        QVERIFY(!nueva.campo(u"IdFormaPago"_s)); // automatic key not shown
        nueva.setTexto(u"Descripcion"_s, u"TARJETA"_s);
        nueva.setTexto(u"Declarable"_s, u"No"_s);
        QVERIFY(nueva.guardar());
        f.guardado(nueva.registro());
        QVERIFY(crear(s->e, u"FormasPago"_s, {{u"Descripcion"_s, u"EFECTIVO"_s}}).isValid());
        QVERIFY(f.refrescar());
        // Ordered by description; the selection stays on the record saved last.
        QCOMPARE(f.textoCelda(0, 1), u"EFECTIVO"_s);
        QCOMPARE(f.textoCelda(1, 1), u"TARJETA"_s);
        QCOMPARE(f.seleccionado, 1);

        // Modify: the key is shown read-only, the list value by its text.
        auto mod = f.fichaSeleccionada();
        QVERIFY(mod);
        QCOMPARE(mod->titulo(), u"Modificar Forma de Pago"_s);
        QVERIFY(mod->campo(u"IdFormaPago"_s)->soloLectura);
        QCOMPARE(mod->texto(u"Declarable"_s), u"No"_s);
        mod->setTexto(u"IdFormaPago"_s, u"999"_s);
        mod->setTexto(u"Declarable"_s, u"Sí"_s);
        QVERIFY(mod->guardar());
        f.guardado(mod->registro());
        QCOMPARE(f.textoCelda(1, 2), u"Sí"_s);
        QVERIFY(f.registro(1).clave().toLongLong() != 999);
        // The row version is the program's own: neither a field nor a cell.
        QVERIFY(!mod->campo(DescriptorTabla::kColumnaVersion));

        // A record whose form is still open here is not deleted: no question, nothing lost.
        s->d.limpiar();
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.textos(), QStringList{u"No es posible eliminar esta Forma de Pago porque la tiene "
                                                 "abierta en otra ventana de este equipo. Ciérrela antes de "
                                                 "eliminarla."_s});
        mod.reset();

        // Delete: No keeps the record, Yes removes it.
        f.seleccionado = 0;
        s->d.limpiar();
        s->d.no();
        QVERIFY(!f.eliminar());
        QVERIFY(s->d.ultimo().pregunta);
        QCOMPARE(s->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(s->d.ultimoTexto(), u"¿Desea realmente eliminar el objeto seleccionado?"_s);
        QCOMPARE(filas(s->t.db(), u"FormasPago"_s), 2);
        s->d.si();
        QVERIFY(f.eliminar());
        QCOMPARE(filas(s->t.db(), u"FormasPago"_s), 1);
    }

    void listaSinSeleccionYRegistroDesaparecido() {
        auto s = sesion();
        QVERIFY(crear(s->e, u"Capas"_s, {{u"Descripcion"_s, u"Atigrada"_s}}).isValid());
        EditorListaForm f(s->e, tabla(u"Capas"_s));
        QVERIFY(f.refrescar());
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.ultimoTexto(), u"Seleccione el objeto que desea eliminar."_s);
        QVERIFY(!f.fichaSeleccionada());
        QCOMPARE(s->d.ultimoTexto(), u"Seleccione el objeto que desea modificar."_s);

        // Another workstation deletes the record while it is in this list.
        f.seleccionado = 0;
        auto otra = s->t.otraConexion();
        QCOMPARE(otra->ejecutarCambio(u"DELETE FROM Capas"_s), 1);
        QVERIFY(!f.fichaSeleccionada());
        QCOMPARE(s->d.ultimoTexto(), u"El objeto seleccionado ya no existe: otro puesto lo ha eliminado."_s);
        QCOMPARE(f.filas(), 0);
    }

    // A record being modified on another workstation is locked here until saved or cancelled.
    void bloqueoDeOtroPuesto() {
        auto s = sesion();
        QVERIFY(crear(s->e, u"FormasPago"_s, {{u"Descripcion"_s, u"EFECTIVO"_s}}).isValid());
        OtroPuesto otro(*s, u"RECEPCION"_s);
        EditorListaForm remoto(otro.e, tabla(u"FormasPago"_s));
        QVERIFY(remoto.refrescar());
        remoto.seleccionado = 0;
        auto fichaRemota = remoto.fichaSeleccionada();
        QVERIFY(fichaRemota);

        EditorListaForm local(s->e, tabla(u"FormasPago"_s));
        QVERIFY(local.refrescar());
        local.seleccionado = 0;
        QVERIFY(!local.fichaSeleccionada());
        QCOMPARE(s->d.ultimoTexto(), u"No es posible Modificar el/la Forma de Pago de EFECTIVO pues otro "
                                     "Puesto lo/a tiene bloqueado/a. Consulte a un Administrador."_s);
        QVERIFY(!local.eliminar()); // refused before the question: nothing scripted is needed
        QCOMPARE(s->d.ultimoTexto(), u"No es posible dar de Baja el/la Forma de Pago de EFECTIVO pues "
                                     "otro Puesto lo/a tiene bloqueado/a. Consulte a un Administrador."_s);
        QCOMPARE(s->d.sinRespuesta(), 0);
        QCOMPARE(filas(s->t.db(), u"FormasPago"_s), 1);

        // Saving there releases the lock: here the record can now be modified.
        fichaRemota->setTexto(u"Declarable"_s, u"No"_s);
        QVERIFY(fichaRemota->guardar());
        auto fichaLocal = local.fichaSeleccionada();
        QVERIFY(fichaLocal);
        QCOMPARE(fichaLocal->texto(u"Declarable"_s), u"No"_s);
        // ...and is locked from here in turn until cancelled.
        QVERIFY(!remoto.fichaSeleccionada());
        fichaLocal->cancelar();
        QVERIFY(remoto.fichaSeleccionada());
    }

    // A record that another table still names is not deleted, and the user is told why.
    void listaErrorDeBaseDeDatos() {
        auto s = sesion();
        const QVariant tipo = crear(s->e, u"TiposCliente"_s, {{u"Descripcion"_s, u"CRIADOR"_s}});
        QVERIFY(tipo.isValid());
        s->t.db().ejecutarDirecto(u"CREATE TABLE PruebaRefs (Id INTEGER PRIMARY KEY, "
                                  "IdTipoCliente BIGINT REFERENCES TiposCliente (IdTipoCliente))"_s);
        s->t.db().ejecutarCambio(u"INSERT INTO PruebaRefs (Id, IdTipoCliente) VALUES (?, ?)"_s, {1, tipo});
        EditorListaForm f(s->e, tabla(u"TiposCliente"_s));
        QVERIFY(f.refrescar());
        f.seleccionado = 0;
        s->d.si();
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.ultimoTexto(),
                 u"No es posible eliminar este Tipo de Cliente porque hay otros registros "
                 "que dependen de él."_s);
        QCOMPARE(filas(s->t.db(), u"TiposCliente"_s), 1);
    }

    // Mandatory fields are checked in column order before any value; a 0 % rate is a value.
    void fichaObligatorios() {
        auto s = sesion();
        FichaForm f(s->e, tabla(u"TiposIVA"_s));
        QCOMPARE(f.titulo(), u"Añadir Tipo de I.V.A."_s);
        f.setTexto(u"Descripcion"_s, u"   "_s);
        f.setTexto(u"Porcentaje"_s, u"abc"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimo().titulo, u"Campos obligatorios no informados"_s);
        QCOMPARE(s->d.ultimoTexto(), u"Debe informar el campo 'Descripción'."_s);
        QCOMPARE(f.foco(), u"Descripcion"_s);
        QCOMPARE(filas(s->t.db(), u"TiposIVA"_s), 0);

        f.setTexto(u"Descripcion"_s, u"EXENTO"_s);
        f.setTexto(u"Porcentaje"_s, u"0"_s);
        QVERIFY(f.guardar());
        const auto r = RegistroStore(s->t.db()).cargar(tabla(u"TiposIVA"_s), f.registro().clave());
        QVERIFY(!r->valor(u"Porcentaje"_s).isNull());
        QCOMPARE(r->valor(u"Porcentaje"_s).toDouble(), 0.0);
    }

    void fichaLongitudYListas() {
        auto s = sesion();
        FichaForm f(s->e, tabla(u"TiposCliente"_s));
        const QString cuarenta = QString(39, QLatin1Char('a')) + u"ñ"_s;
        f.setTexto(u"Descripcion"_s, cuarenta + u"x"_s);
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimo().titulo, u"Información introducida errónea"_s);
        QCOMPARE(s->d.ultimoTexto(), u"El campo 'Descripción' no puede tener más de 40 caracteres."_s);
        QCOMPARE(filas(s->t.db(), u"TiposCliente"_s), 0);
        // Blanks around do not count, and are not stored.
        f.setTexto(u"Descripcion"_s, u"  "_s + cuarenta + u" "_s);
        QCOMPARE(f.opciones(u"Activo"_s), (QStringList{u"Sí"_s, u"No"_s}));
        f.setTexto(u"Activo"_s, u"sí"_s); // the case counts
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimoTexto(), u"El campo 'Activo' debe tomar uno de estos valores: Sí, No."_s);
        QCOMPARE(f.foco(), u"Activo"_s);
        f.setTexto(u"Activo"_s, u"No"_s);
        QVERIFY(f.guardar());
        const auto r = RegistroStore(s->t.db()).cargar(tabla(u"TiposCliente"_s), f.registro().clave());
        QCOMPARE(r->texto(u"Descripcion"_s), cuarenta);
        QCOMPARE(r->texto(u"Activo"_s), u"N"_s);
    }

    // A key the clinic types is unique (fixed once the record exists: as the automatic one).
    void fichaClaveTecleada() {
        auto s = sesion();
        const DescriptorTabla& t = tabla(u"Provincias"_s);
        FichaForm f(s->e, t);
        f.setTexto(u"CodigoProvincia"_s, u"28"_s);
        f.setTexto(u"Descripcion"_s, u"Madrid"_s);
        QVERIFY(f.guardar());

        FichaForm otra(s->e, t);
        otra.setTexto(u"CodigoProvincia"_s, u" 28 "_s);
        otra.setTexto(u"Descripcion"_s, u"Otra"_s);
        QVERIFY(!otra.guardar());
        QCOMPARE(s->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(s->d.ultimoTexto(), u"Ya existe otro registro con Código '28'."_s);
        QCOMPARE(otra.foco(), u"CodigoProvincia"_s);
    }

    // Every kind of column read from what is typed (the way back: fichaTodosLosTipos).
    void leerValor() {
        const struct {
            const char* columna;
            QString texto;
            QVariant esperado; // invalid: refused
            QString error;
        } casos[] = {
            {"Numero", u" 1.234 "_s, qlonglong(1234), {}},
            {"Numero", u"7,5"_s, {}, u"El campo 'Número' debe ser un número entero."_s},
            {"Importe",
             u"1.5"_s,
             {},
             u"El campo 'Importe' debe ser un número, con coma decimal (por ejemplo 1.234,56)."_s},
            {"Fecha",
             u"30/02/2026"_s,
             {},
             u"El campo 'Fecha' debe ser una fecha con el formato dd/mm/aaaa."_s},
            {"Hora", u"24:00"_s, {}, u"El campo 'Hora' debe ser una hora con el formato hh:mm."_s},
            {"Momento",
             u"02/03/2026"_s,
             {},
             u"El campo 'Momento' debe ser una fecha y hora con el formato dd/mm/aaaa hh:mm."_s},
            {"Marca", u"Sí"_s, true, {}},
            {"Notas", u" dos\nlíneas "_s, u" dos\nlíneas "_s, {}}, // a memo keeps its blanks
        };
        for (const auto& caso : casos) {
            const DescriptorColumna& c = *tablaDeTipos().columna(QLatin1String(caso.columna));
            QString motivo;
            const auto v = FichaForm::leerValor(c, caso.texto, &motivo);
            QVERIFY2(v.value_or(QVariant()) == caso.esperado && motivo == caso.error,
                     qPrintable(caso.texto + u" -> "_s + motivo));
        }
    }

    // A record with every kind of column goes to the database and comes back unchanged.
    void fichaTodosLosTipos() {
        auto s = sesion();
        const DescriptorTabla& t = tablaDeTipos();
        for (const auto& sql : sqlCrearTabla(t, s->t.db().motor(), 1))
            s->t.db().ejecutarDirecto(sql);
        FichaForm f(s->e, t);
        const QHash<QString, QString> textos = {
            {u"Codigo"_s, u"A1"_s},        {u"Numero"_s, u"42"_s},      {u"Importe"_s, u"0,125"_s},
            {u"Fecha"_s, u"29/02/2028"_s}, {u"Hora"_s, u"23:59:30"_s},  {u"Momento"_s, u"31/12/2026 08:05"_s},
            {u"Marca"_s, u"No"_s},         {u"Notas"_s, u"uno\ndos"_s},
        };
        for (auto it = textos.cbegin(); it != textos.cend(); ++it)
            f.setTexto(it.key(), it.value());
        QVERIFY2(f.guardar(), qPrintable(s->d.ultimoTexto()));
        const auto r = RegistroStore(s->t.db()).cargar(t, u"A1"_s);
        QVERIFY(r);
        FichaForm leido(s->e, *r);
        for (auto it = textos.cbegin(); it != textos.cend(); ++it)
            QCOMPARE(leido.texto(it.key()), it.value());
        // Empty optional fields are stored as nothing.
        FichaForm vacio(s->e, t);
        vacio.setTexto(u"Codigo"_s, u"B"_s);
        QVERIFY(vacio.guardar());
        const auto rv = RegistroStore(s->t.db()).cargar(t, u"B"_s);
        for (const auto& c : t.columnaS)
            if (c.nombre != u"Codigo"_s) QVERIFY2(rv->valor(c.nombre).isNull(), qPrintable(c.nombre));
    }

    void arbolAnadir() {
        auto s = sesion();
        const DescriptorTabla& t = tabla(u"Diagnosticos"_s);
        EditorArbolForm f(s->e, t);
        QCOMPARE(f.titulo(), u"Arbol de Diagnóstico"_s);
        QVERIFY(f.refrescar());
        QVERIFY(!f.nuevoHijo());
        QCOMPARE(s->d.ultimoTexto(), u"Seleccione el objeto del que dependerá el nuevo objeto."_s);

        FichaForm raiz = f.nuevaRaiz();
        raiz.setTexto(u"Descripcion"_s, u"Piel"_s);
        QVERIFY(raiz.guardar());
        f.guardado(raiz.registro());
        for (const QString& texto : {u"Otitis"_s, u"Dermatitis"_s}) {
            f.seleccionado = raiz.registro().clave().toString();
            auto hijo = f.nuevoHijo();
            QVERIFY(hijo);
            hijo->setTexto(u"Descripcion"_s, texto);
            QVERIFY(hijo->guardar());
            f.guardado(hijo->registro());
        }
        // Children in text order; the parent column stored, and kept when a child is modified.
        QCOMPARE(dibujo(f), (QStringList{"Piel", "  Dermatitis", "  Otitis"}));
        auto mod = f.fichaSeleccionada(); // Dermatitis, saved last
        QVERIFY(mod);
        mod->setTexto(u"Descripcion"_s, u"Dermatitis atópica"_s);
        QVERIFY(mod->guardar());
        QCOMPARE(
            s->valor(u"SELECT IdPadre FROM Diagnosticos WHERE Descripcion = ?"_s, {u"Dermatitis atópica"_s})
                .toLongLong(),
            raiz.registro().clave().toLongLong());
    }

    // A branch is deleted all or nothing: a node below locked elsewhere, or named by another
    // table, keeps the whole branch.
    void arbolEliminarRama() {
        auto s = sesion();
        Database& db = s->t.db();
        const QString t = u"Diagnosticos"_s;
        const QVariant a = crearNodo(db, t, u"Digestivo"_s, {});
        const QVariant a1 = crearNodo(db, t, u"Vómitos"_s, a);
        crearNodo(db, t, u"Diarrea"_s, a);
        const QVariant a11 = crearNodo(db, t, u"Hematemesis"_s, a1);
        crearNodo(db, t, u"Tos"_s, crearNodo(db, t, u"Respiratorio"_s, {}));
        EditorArbolForm f(s->e, tabla(t));
        QVERIFY(f.refrescar());
        f.seleccionado = a.toString();
        s->d.no();
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(s->d.ultimoTexto(), u"¿Desea realmente eliminar el objeto seleccionado? (Se eliminarán "
                                     "todos sus hijos también)"_s);
        QCOMPARE(filas(db, t), 6);

        // This workstation's own lock on a node does not count; another's does.
        OtroPuesto otro(*s, u"CONSULTA2"_s);
        QVERIFY(almacenBloqueos(otro.e).bloquearRegistro(tabla(t), a11.toString(), u"Hematemesis"_s,
                                                         AccionBloqueo::Modificacion, false));
        QVERIFY(almacenBloqueos(s->e).bloquearRegistro(tabla(t), a1.toString(), u"Vómitos"_s,
                                                       AccionBloqueo::Modificacion, false));
        s->d.limpiar();
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.sinRespuesta(), 0);
        QCOMPARE(s->d.ultimo().titulo, u"Bloqueo de Registro"_s);
        QCOMPARE(s->d.ultimoTexto(), u"No es posible dar de Baja el/la Diagnóstico de Hematemesis pues otro "
                                     "Puesto lo/a tiene bloqueado/a. Consulte a un Administrador."_s);
        QVERIFY(almacenBloqueos(otro.e).desbloquearRegistro(tabla(t), a11.toString()));

        db.ejecutarDirecto(u"CREATE TABLE PruebaVisitas (Id INTEGER PRIMARY KEY, "
                           "IdDiagnostico BIGINT REFERENCES Diagnosticos (IdDiagnostico))"_s);
        db.ejecutarCambio(u"INSERT INTO PruebaVisitas (Id, IdDiagnostico) VALUES (?, ?)"_s, {1, a11});
        s->d.limpiar();
        s->d.si();
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.mensajes().size(), 2);
        QCOMPARE(s->d.ultimo().titulo, u"eliminar el objeto seleccionado en el 'Arbol de Diagnóstico'"_s);
        QVERIFY(s->d.ultimoTexto().startsWith(u"Error en B.D.: "_s));
        QVERIFY(!db.enTransaccion());
        QCOMPARE(filas(db, t), 6);

        db.ejecutarCambio(u"DELETE FROM PruebaVisitas"_s);
        s->d.limpiar();
        s->d.si();
        f.seleccionado = a.toString();
        QVERIFY(f.eliminar());
        QCOMPARE(dibujo(f), (QStringList{"Respiratorio", "  Tos"}));
        QCOMPARE(filas(db, t), 2);
    }

    // Damaged parents (missing, itself, a loop of two): every record shown once; deleting one
    // of the loop deletes the loop and what hangs from it.
    void arbolDatosDanados() {
        auto s = sesion();
        Database& db = s->t.db();
        const QString t = u"Diagnosticos"_s;
        const qlonglong x = crearNodo(db, t, u"X"_s, {}).toLongLong();
        const qlonglong y = crearNodo(db, t, u"Y"_s, x).toLongLong();
        crearNodo(db, t, u"Z"_s, y);
        const qlonglong yo = crearNodo(db, t, u"Yo"_s, {}).toLongLong();
        crearNodo(db, t, u"Huérfano"_s, 999999);
        db.ejecutarCambio(u"UPDATE Diagnosticos SET IdPadre = ? WHERE IdDiagnostico = ?"_s, {y, x});
        db.ejecutarCambio(u"UPDATE Diagnosticos SET IdPadre = ? WHERE IdDiagnostico = ?"_s, {yo, yo});

        EditorArbolForm f(s->e, tabla(t));
        QVERIFY(f.refrescar());
        QCOMPARE(dibujo(f), (QStringList{"Huérfano", "X", "  Y", "    Z", "Yo"}));
        QCOMPARE(f.totalNodos(), 5);

        f.seleccionado = QString::number(y);
        s->d.si();
        QVERIFY(f.eliminar());
        QCOMPARE(dibujo(f), (QStringList{"Huérfano", "Yo"}));
        QCOMPARE(filas(db, t), 2);
    }
};

PMX_STORE_TEST_MAIN(TestEditores)
#include "test_editores.moc"
