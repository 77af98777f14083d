// The generic list editor, tree editor and record form, on the parameter tables.
#include "app/bloqueo_edicion.h"
#include "app/editor_arbol_form.h"
#include "app/editor_lista_form.h"
#include "app/ficha_form.h"
#include "app/parametros_menu.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

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
        return QStringLiteral("%1,25").arg(n);
    default:
        break;
    }
    const QString t = QStringLiteral("Valor %1 ñ").arg(n);
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
    FixedClock reloj_{QDateTime(QDate(2026, 3, 2), QTime(10, 0))};

    struct Sesion {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
    };

    std::unique_ptr<Sesion> sesion() {
        auto s = std::make_unique<Sesion>();
        s->e = std::make_unique<Entorno>(s->t.db(), s->d, reloj_);
        return s;
    }

    static QVariant crear(Entorno& e, const QString& t, const QHash<QString, QString>& textos) {
        FichaForm f(e, tabla(t));
        for (auto it = textos.cbegin(); it != textos.cend(); ++it)
            f.setTexto(it.key(), it.value());
        if (!f.guardar()) return {};
        return f.registro().clave();
    }

    static QVariant crearNodo(Database& db, const QString& t, const QString& texto, const QVariant& padre) {
        Registro r(tabla(t));
        r.setValor(QStringLiteral("Descripcion"), texto);
        r.setValor(QStringLiteral("IdPadre"), padre);
        return RegistroStore(db).crear(r);
    }

    static qint64 filas(Database& db, const QString& t) { return RegistroStore(db).contar(tabla(t)); }

    // A table with one column of each kind, made only for this test.
    static const DescriptorTabla& tablaDeTipos() {
        static const DescriptorTabla t = [] {
            DescriptorTabla d;
            d.tabla = QStringLiteral("PruebaTipos");
            d.descTabla = QStringLiteral("Prueba de tipos");
            d.columnaS = {
                col(QStringLiteral("Codigo"), TipoColumna::Texto, QStringLiteral("Código"), 4, false),
                col(QStringLiteral("Numero"), TipoColumna::Entero, QStringLiteral("Número")),
                col(QStringLiteral("Importe"), TipoColumna::Decimal, QStringLiteral("Importe")),
                col(QStringLiteral("Fecha"), TipoColumna::Fecha, QStringLiteral("Fecha")),
                col(QStringLiteral("Hora"), TipoColumna::Hora, QStringLiteral("Hora")),
                col(QStringLiteral("Momento"), TipoColumna::FechaHora, QStringLiteral("Momento")),
                col(QStringLiteral("Marca"), TipoColumna::Logico, QStringLiteral("Marca")),
                col(QStringLiteral("Notas"), TipoColumna::Memo, QStringLiteral("Notas"))};
            d.clave = {QStringLiteral("Codigo")};
            d.columnaTexto = QStringLiteral("Codigo");
            return d;
        }();
        return t;
    }

private slots:
    void menuDeParametros_data() {
        QTest::addColumn<QString>("accion");
        QTest::addColumn<QString>("tabla");
        QTest::addColumn<QString>("texto");
        QTest::addColumn<bool>("arbol");
        QTest::newRow("cliente") << "mnuTipoCliente"
                                 << "TiposCliente"
                                 << "Tipos de Cliente" << false;
        QTest::newRow("mascota") << "mnuTipoMascota"
                                 << "Especies"
                                 << "Especies" << false;
        QTest::newRow("iva") << "mnuTipoIVA"
                             << "TiposIVA"
                             << "Tipos de I.V.A." << false;
        QTest::newRow("pago") << "mnuFormasPago"
                              << "FormasPago"
                              << "Formas de Pago" << false;
        QTest::newRow("cp") << "mnuCambioCP"
                            << "CodigosPostales"
                            << "Códigos Postales" << false;
        QTest::newRow("diagnosticos") << "mnuDiagnosticos"
                                      << "Diagnosticos"
                                      << "Diagnósticos" << true;
        QTest::newRow("sintomas") << "mnuGruposSintomas"
                                  << "GruposSintomas"
                                  << "Grupos de Síntomas" << true;
        QTest::newRow("idioma") << "mnuIdioma"
                                << "Idiomas"
                                << "Idiomas" << false;
    }

    void menuDeParametros() {
        QFETCH(QString, accion);
        QFETCH(QString, tabla);
        QFETCH(QString, texto);
        QFETCH(bool, arbol);
        const EntradaMenuParametro* e = entradaMenuParametro(accion);
        QVERIFY(e);
        QCOMPARE(e->tabla, tabla);
        QCOMPARE(e->texto, texto);
        const DescriptorTabla* t = descriptorTabla(tabla);
        QVERIFY(t);
        QCOMPARE(t->esArbol(), arbol);
        QVERIFY(!entradaMenuParametro(QStringLiteral("mnuBloqueos")));
    }

    // Every menu entry names its own table of the catalogue, with a mandatory description,
    // and a key; no two entries share a command or a table.
    void catalogoDeParametros() {
        // The 29 parameter commands, and the articles' families, subfamilies and types.
        QCOMPARE(entradasMenuParametros().size(), 32);
        QSet<QString> acciones, tablas;
        for (const auto& e : entradasMenuParametros()) {
            acciones.insert(e.accion);
            tablas.insert(e.tabla);
            const DescriptorTabla* t = descriptorTabla(e.tabla);
            QVERIFY2(t, qPrintable(e.tabla));
            QVERIFY(t->parametro);
            QVERIFY2(!t->clave.isEmpty() && t->tieneColumna(t->clave.first()), qPrintable(e.tabla));
            const DescriptorColumna* d = t->columna(QStringLiteral("Descripcion"));
            QVERIFY2(d && !d->Opcional && d->longitud > 0, qPrintable(e.tabla));
            QCOMPARE(t->columnaTexto, QStringLiteral("Descripcion"));
            if (t->esArbol()) QCOMPARE(t->columna(t->columnaPadre)->tipo, TipoColumna::Entero);
        }
        QCOMPARE(acciones.size(), entradasMenuParametros().size());
        QCOMPARE(tablas.size(), entradasMenuParametros().size());
    }

    // Every parameter table: created with the schema, a record added, listed, modified and
    // deleted through the generic forms.
    void cadaTablaDeParametros() {
        auto s = sesion();
        int n = 0;
        for (const auto& entrada : entradasMenuParametros()) {
            const DescriptorTabla& t = tabla(entrada.tabla);
            ++n;
            std::optional<FichaForm> ficha;
            EditorListaForm lista(*s->e, t);
            EditorArbolForm arbol(*s->e, t);
            if (t.esArbol()) {
                QVERIFY(arbol.refrescar());
                ficha = arbol.nuevaRaiz();
            } else {
                QVERIFY(lista.refrescar());
                QCOMPARE(lista.filas(), 0);
                ficha = lista.nuevaFicha();
            }
            QCOMPARE(ficha->titulo(), QStringLiteral("Añadir ") + t.descTabla);
            for (const CampoFicha& c : ficha->campos())
                ficha->setTexto(c.columna->nombre, textoDePrueba(c, ficha->opciones(c.columna->nombre), n));
            const QString descripcion = ficha->texto(QStringLiteral("Descripcion"));
            QVERIFY2(ficha->guardar(), qPrintable(entrada.tabla + QStringLiteral(": ") + s->d.ultimoTexto()));
            QCOMPARE(filas(s->t.db(), entrada.tabla), 1);

            if (t.esArbol()) {
                QVERIFY(arbol.refrescar());
                QCOMPARE(dibujo(arbol), QStringList{descripcion});
                arbol.seleccionado = arbol.raices().first();
                auto mod = arbol.fichaSeleccionada();
                QVERIFY(mod);
                mod->setTexto(QStringLiteral("Descripcion"), QStringLiteral("Cambiado"));
                QVERIFY(mod->guardar());
                arbol.guardado(mod->registro());
                QCOMPARE(dibujo(arbol), QStringList{QStringLiteral("Cambiado")});
                s->d.si();
                QVERIFY(arbol.eliminar());
                QVERIFY(arbol.raices().isEmpty());
            } else {
                QVERIFY(lista.refrescar());
                QCOMPARE(lista.filas(), 1);
                const int col = static_cast<int>(
                    lista.cabeceras().indexOf(t.columna(QStringLiteral("Descripcion"))->Descripcion));
                QCOMPARE(lista.textoCelda(0, col), descripcion);
                lista.seleccionado = 0;
                auto mod = lista.fichaSeleccionada();
                QVERIFY(mod);
                QCOMPARE(mod->titulo(), QStringLiteral("Modificar ") + t.descTabla);
                mod->setTexto(QStringLiteral("Descripcion"), QStringLiteral("Cambiado"));
                QVERIFY(mod->guardar());
                lista.guardado(mod->registro());
                QCOMPARE(lista.seleccionado, 0);
                QCOMPARE(lista.textoCelda(0, col), QStringLiteral("Cambiado"));
                s->d.si();
                QVERIFY(lista.eliminar());
                QCOMPARE(lista.filas(), 0);
            }
            QCOMPARE(filas(s->t.db(), entrada.tabla), 0);
            QVERIFY2(
                s->d.mensajes().size() == 1 && s->d.ultimo().pregunta,
                qPrintable(entrada.tabla + QStringLiteral(": ") + s->d.textos().join(QStringLiteral(" | "))));
            s->d.limpiar();
        }
    }

    void listaAnadirModificarEliminar() {
        auto s = sesion();
        const DescriptorTabla& t = tabla(QStringLiteral("FormasPago"));
        EditorListaForm f(*s->e, t);
        QCOMPARE(f.titulo(), QStringLiteral("Lista de Forma de Pago"));
        QCOMPARE(f.cabeceras(), (QStringList{QStringLiteral("Código"), QStringLiteral("Descripción"),
                                             QStringLiteral("Declarable"), QStringLiteral("Activo")}));

        FichaForm nueva = f.nuevaFicha();
        QVERIFY(!nueva.campo(QStringLiteral("IdFormaPago"))); // automatic key not shown
        QCOMPARE(nueva.texto(QStringLiteral("Declarable")), QStringLiteral("Sí"));
        nueva.setTexto(QStringLiteral("Descripcion"), QStringLiteral("TARJETA"));
        nueva.setTexto(QStringLiteral("Declarable"), QStringLiteral("No"));
        QVERIFY(nueva.guardar());
        f.guardado(nueva.registro());
        QVERIFY(crear(*s->e, QStringLiteral("FormasPago"),
                      {{QStringLiteral("Descripcion"), QStringLiteral("EFECTIVO")}})
                    .isValid());
        QVERIFY(f.refrescar());
        QCOMPARE(f.filas(), 2);
        // Ordered by description; the selection stays on the record saved last.
        QCOMPARE(f.textoCelda(0, 1), QStringLiteral("EFECTIVO"));
        QCOMPARE(f.textoCelda(1, 1), QStringLiteral("TARJETA"));
        QCOMPARE(f.seleccionado, 1);
        QCOMPARE(f.textoCelda(1, 2), QStringLiteral("No"));
        QCOMPARE(f.textoCelda(0, 2), QStringLiteral("Sí"));
        QCOMPARE(s->t.db()
                     .valor(QStringLiteral("SELECT Declarable FROM FormasPago WHERE Descripcion = ?"),
                            {QStringLiteral("TARJETA")})
                     .toString(),
                 QStringLiteral("0"));

        // Modify: the key is shown read-only, the list value by its text.
        auto mod = f.fichaSeleccionada();
        QVERIFY(mod);
        QVERIFY(mod->campo(QStringLiteral("IdFormaPago"))->soloLectura);
        QCOMPARE(mod->texto(QStringLiteral("Declarable")), QStringLiteral("No"));
        mod->setTexto(QStringLiteral("IdFormaPago"), QStringLiteral("999"));
        mod->setTexto(QStringLiteral("Declarable"), QStringLiteral("Sí"));
        QVERIFY(mod->guardar());
        f.guardado(mod->registro());
        QCOMPARE(f.textoCelda(1, 2), QStringLiteral("Sí"));
        QCOMPARE(f.textoCelda(1, 0), f.registro(1).clave().toString());
        QVERIFY(f.registro(1).clave().toLongLong() != 999);

        // Delete: No keeps the record, Yes removes it.
        f.seleccionado = 0;
        s->d.limpiar();
        s->d.no();
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QVERIFY(s->d.ultimo().pregunta);
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar el objeto seleccionado?"));
        QCOMPARE(filas(s->t.db(), QStringLiteral("FormasPago")), 2);
        s->d.si();
        QVERIFY(f.eliminar());
        QCOMPARE(f.filas(), 1);
        QCOMPARE(f.textoCelda(0, 1), QStringLiteral("TARJETA"));
        QCOMPARE(filas(s->t.db(), QStringLiteral("FormasPago")), 1);
        QCOMPARE(s->d.sinRespuesta(), 0);
    }

    void listaSinSeleccionYRegistroDesaparecido() {
        auto s = sesion();
        QVERIFY(crear(*s->e, QStringLiteral("Capas"),
                      {{QStringLiteral("Descripcion"), QStringLiteral("Atigrada")}})
                    .isValid());
        EditorListaForm f(*s->e, tabla(QStringLiteral("Capas")));
        QVERIFY(f.refrescar());
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("Seleccione el objeto que desea eliminar."));
        QVERIFY(!f.fichaSeleccionada());
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("Seleccione el objeto que desea modificar."));
        QCOMPARE(s->d.mensajes().size(), 2);

        // Another workstation deletes the record while it is in this list.
        f.seleccionado = 0;
        auto otra = s->t.otraConexion();
        QCOMPARE(otra->ejecutarCambio(QStringLiteral("DELETE FROM Capas")), 1);
        QVERIFY(!f.fichaSeleccionada());
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("El objeto seleccionado ya no existe: otro puesto lo ha eliminado."));
        QCOMPARE(f.filas(), 0);
        QCOMPARE(f.seleccionado, -1);
    }

    // A record being modified on another workstation can be neither modified nor deleted
    // here until that workstation lets it go; saving or cancelling releases the lock.
    void bloqueoDeOtroPuesto() {
        auto s = sesion();
        s->e->puesto = QStringLiteral("CONSULTA1");
        QVERIFY(crear(*s->e, QStringLiteral("FormasPago"),
                      {{QStringLiteral("Descripcion"), QStringLiteral("EFECTIVO")}})
                    .isValid());
        auto conexion = s->t.otraConexion();
        ScriptedDialogs d2;
        Entorno otro(*conexion, d2, reloj_);
        otro.puesto = QStringLiteral("RECEPCION");
        EditorListaForm remoto(otro, tabla(QStringLiteral("FormasPago")));
        QVERIFY(remoto.refrescar());
        remoto.seleccionado = 0;
        auto fichaRemota = remoto.fichaSeleccionada();
        QVERIFY(fichaRemota);

        EditorListaForm local(*s->e, tabla(QStringLiteral("FormasPago")));
        QVERIFY(local.refrescar());
        local.seleccionado = 0;
        QVERIFY(!local.fichaSeleccionada());
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("No es posible Modificar el/la Forma de Pago de EFECTIVO pues otro "
                                "Puesto lo/a tiene bloqueado/a. Consulte a un Administrador."));
        QVERIFY(!local.eliminar()); // refused before the question: nothing scripted is needed
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("No es posible dar de Baja el/la Forma de Pago de EFECTIVO pues "
                                "otro Puesto lo/a tiene bloqueado/a. Consulte a un Administrador."));
        QCOMPARE(s->d.sinRespuesta(), 0);
        QCOMPARE(filas(s->t.db(), QStringLiteral("FormasPago")), 1);

        // Saving there releases the lock: here the record can now be modified.
        fichaRemota->setTexto(QStringLiteral("Declarable"), QStringLiteral("No"));
        QVERIFY(fichaRemota->guardar());
        auto fichaLocal = local.fichaSeleccionada();
        QVERIFY(fichaLocal);
        QCOMPARE(fichaLocal->texto(QStringLiteral("Declarable")), QStringLiteral("No"));
        // ...and is locked from here in turn until cancelled.
        QVERIFY(!remoto.fichaSeleccionada());
        fichaLocal->cancelar();
        QVERIFY(remoto.fichaSeleccionada());
        QCOMPARE(d2.mensajes().size(), 1);
    }

    // A record that another table still names cannot be deleted: the database's refusal is
    // shown and the record stays.
    void listaErrorDeBaseDeDatos() {
        auto s = sesion();
        const QVariant tipo = crear(*s->e, QStringLiteral("TiposCliente"),
                                    {{QStringLiteral("Descripcion"), QStringLiteral("CRIADOR")}});
        QVERIFY(tipo.isValid());
        s->t.db().ejecutarDirecto(
            QStringLiteral("CREATE TABLE PruebaRefs (Id INTEGER PRIMARY KEY, "
                           "IdTipoCliente BIGINT REFERENCES TiposCliente (IdTipoCliente))"));
        s->t.db().ejecutarCambio(QStringLiteral("INSERT INTO PruebaRefs (Id, IdTipoCliente) VALUES (?, ?)"),
                                 {1, tipo});
        EditorListaForm f(*s->e, tabla(QStringLiteral("TiposCliente")));
        QVERIFY(f.refrescar());
        f.seleccionado = 0;
        s->d.si();
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.mensajes().size(), 2);
        QCOMPARE(s->d.ultimo().titulo,
                 QStringLiteral("eliminar el objeto seleccionado en la 'Lista de Tipo de Cliente'"));
        QCOMPARE(s->d.ultimo().icono, Icono::Critico);
        QVERIFY2(s->d.ultimoTexto().startsWith(QStringLiteral("Error en B.D.: ")),
                 qPrintable(s->d.ultimoTexto()));
        QVERIFY(s->d.ultimoTexto().size() > QStringLiteral("Error en B.D.: ").size());
        QCOMPARE(f.filas(), 1);
        QCOMPARE(filas(s->t.db(), QStringLiteral("TiposCliente")), 1);
    }

    // Mandatory fields are checked in column order before any value; a 0 % rate is a value.
    void fichaObligatorios() {
        auto s = sesion();
        FichaForm f(*s->e, tabla(QStringLiteral("TiposIVA")));
        QCOMPARE(f.titulo(), QStringLiteral("Añadir Tipo de I.V.A."));
        f.setTexto(QStringLiteral("Descripcion"), QStringLiteral("   "));
        f.setTexto(QStringLiteral("Porcentaje"), QStringLiteral("abc"));
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("Campos obligatorios no informados"));
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("Debe informar el campo 'Descripción'."));
        QCOMPARE(f.foco(), QStringLiteral("Descripcion"));

        f.setTexto(QStringLiteral("Descripcion"), QStringLiteral("EXENTO"));
        f.setTexto(QStringLiteral("Porcentaje"), QString());
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("Debe informar el campo 'Porcentaje'."));
        QCOMPARE(f.foco(), QStringLiteral("Porcentaje"));

        f.setTexto(QStringLiteral("Porcentaje"), QStringLiteral("21.5"));
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("Información introducida errónea"));
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral(
                     "El campo 'Porcentaje' debe ser un número, con coma decimal (por ejemplo 1.234,56)."));
        QCOMPARE(filas(s->t.db(), QStringLiteral("TiposIVA")), 0);

        f.setTexto(QStringLiteral("Porcentaje"), QStringLiteral("0"));
        QVERIFY(f.guardar());
        QCOMPARE(s->d.mensajes().size(), 3);
        const auto r =
            RegistroStore(s->t.db()).cargar(tabla(QStringLiteral("TiposIVA")), f.registro().clave());
        QVERIFY(r);
        QCOMPARE(r->valor(QStringLiteral("Porcentaje")).toDouble(), 0.0);
        QVERIFY(!r->valor(QStringLiteral("Porcentaje")).isNull());
        QCOMPARE(r->texto(QStringLiteral("Activo")), QStringLiteral("S"));
    }

    void fichaLongitudYListas() {
        auto s = sesion();
        FichaForm f(*s->e, tabla(QStringLiteral("TiposCliente")));
        const QString cuarenta = QString(39, QLatin1Char('a')) + QStringLiteral("ñ");
        f.setTexto(QStringLiteral("Descripcion"), cuarenta + QStringLiteral("x"));
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("Información introducida errónea"));
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("El campo 'Descripción' no puede tener más de 40 caracteres."));
        QCOMPARE(filas(s->t.db(), QStringLiteral("TiposCliente")), 0);
        // Blanks around do not count, and are not stored.
        f.setTexto(QStringLiteral("Descripcion"), QStringLiteral("  ") + cuarenta + QStringLiteral(" "));
        QCOMPARE(f.opciones(QStringLiteral("Activo")),
                 (QStringList{QStringLiteral("Sí"), QStringLiteral("No")}));
        f.setTexto(QStringLiteral("Activo"), QStringLiteral("Quizá"));
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("El campo 'Activo' debe tomar uno de estos valores: Sí, No."));
        QCOMPARE(f.foco(), QStringLiteral("Activo"));
        f.setTexto(QStringLiteral("Activo"), QStringLiteral("No"));
        QVERIFY(f.guardar());
        const auto r =
            RegistroStore(s->t.db()).cargar(tabla(QStringLiteral("TiposCliente")), f.registro().clave());
        QCOMPARE(r->texto(QStringLiteral("Descripcion")), cuarenta);
        QCOMPARE(r->texto(QStringLiteral("Activo")), QStringLiteral("N"));
        QCOMPARE(FichaForm(*s->e, *r).texto(QStringLiteral("Activo")), QStringLiteral("No"));

        // An optional field typed freely offers no list; an optional list starts empty.
        FichaForm p(*s->e, tabla(QStringLiteral("Poblaciones")));
        QVERIFY(p.opciones(QStringLiteral("CodigoPostal")).isEmpty());
        QVERIFY(!p.campo(QStringLiteral("CodigoPostal"))->obligatorio);
        QVERIFY(p.campo(QStringLiteral("Descripcion"))->obligatorio);
        DescriptorTabla conLista = tabla(QStringLiteral("Poblaciones"));
        conLista.columnaS.append(colLista(QStringLiteral("Zona"), QStringLiteral("Zona"),
                                          {QStringLiteral("U"), QStringLiteral("R")},
                                          {QStringLiteral("Urbana"), QStringLiteral("Rural")}));
        QCOMPARE(FichaForm(*s->e, conLista).opciones(QStringLiteral("Zona")),
                 (QStringList{QString(), QStringLiteral("Urbana"), QStringLiteral("Rural")}));
    }

    // A key the clinic types: mandatory, unique, and fixed once the record exists.
    void fichaClaveTecleada() {
        auto s = sesion();
        const DescriptorTabla& t = tabla(QStringLiteral("Provincias"));
        FichaForm f(*s->e, t);
        QVERIFY(f.campo(QStringLiteral("CodigoProvincia")));
        QVERIFY(!f.campo(QStringLiteral("CodigoProvincia"))->soloLectura);
        f.setTexto(QStringLiteral("CodigoProvincia"), QStringLiteral("280"));
        f.setTexto(QStringLiteral("Descripcion"), QStringLiteral("Madrid"));
        QVERIFY(!f.guardar());
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("El campo 'Código' no puede tener más de 2 caracteres."));
        f.setTexto(QStringLiteral("CodigoProvincia"), QStringLiteral("28"));
        QVERIFY(f.guardar());

        FichaForm otra(*s->e, t);
        otra.setTexto(QStringLiteral("CodigoProvincia"), QStringLiteral(" 28 "));
        otra.setTexto(QStringLiteral("Descripcion"), QStringLiteral("Otra"));
        QVERIFY(!otra.guardar());
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("Ya existe otro registro con Código '28'."));
        QCOMPARE(otra.foco(), QStringLiteral("CodigoProvincia"));
        QCOMPARE(filas(s->t.db(), QStringLiteral("Provincias")), 1);

        const auto r = RegistroStore(s->t.db()).cargar(t, QStringLiteral("28"));
        FichaForm mod(*s->e, *r);
        QVERIFY(mod.campo(QStringLiteral("CodigoProvincia"))->soloLectura);
        mod.setTexto(QStringLiteral("CodigoProvincia"), QStringLiteral("29"));
        mod.setTexto(QStringLiteral("Descripcion"), QStringLiteral("Madrid (Comunidad)"));
        QVERIFY(mod.guardar());
        QCOMPARE(
            RegistroStore(s->t.db()).cargar(t, QStringLiteral("28"))->texto(QStringLiteral("Descripcion")),
            QStringLiteral("Madrid (Comunidad)"));
        QVERIFY(!RegistroStore(s->t.db()).cargar(t, QStringLiteral("29")));
    }

    void leerValor_data() {
        QTest::addColumn<QString>("columna");
        QTest::addColumn<QString>("texto");
        QTest::addColumn<QVariant>("esperado"); // invalid: refused
        QTest::addColumn<QString>("error");
        QTest::newRow("entero") << "Numero"
                                << " 1.234 " << QVariant(qlonglong(1234)) << "";
        QTest::newRow("entero negativo") << "Numero"
                                         << "-7" << QVariant(qlonglong(-7)) << "";
        QTest::newRow("entero con decimales")
            << "Numero"
            << "7,5" << QVariant() << "El campo 'Número' debe ser un número entero.";
        QTest::newRow("entero letras")
            << "Numero"
            << "siete" << QVariant() << "El campo 'Número' debe ser un número entero.";
        QTest::newRow("decimal") << "Importe"
                                 << "1.234,567" << QVariant(1234.567) << "";
        QTest::newRow("decimal con punto")
            << "Importe"
            << "1.5" << QVariant()
            << "El campo 'Importe' debe ser un número, con coma decimal (por ejemplo "
               "1.234,56).";
        QTest::newRow("fecha") << "Fecha"
                               << "1/2/2026" << QVariant(QDate(2026, 2, 1)) << "";
        QTest::newRow("fecha imposible")
            << "Fecha"
            << "30/02/2026" << QVariant() << "El campo 'Fecha' debe ser una fecha con el formato dd/mm/aaaa.";
        QTest::newRow("hora") << "Hora"
                              << "9:05" << QVariant(QTime(9, 5)) << "";
        QTest::newRow("hora imposible")
            << "Hora"
            << "24:00" << QVariant() << "El campo 'Hora' debe ser una hora con el formato hh:mm.";
        QTest::newRow("momento") << "Momento"
                                 << "02/03/2026 10:30"
                                 << QVariant(QDateTime(QDate(2026, 3, 2), QTime(10, 30))) << "";
        QTest::newRow("momento sin hora")
            << "Momento"
            << "02/03/2026" << QVariant()
            << "El campo 'Momento' debe ser una fecha y hora con el formato dd/mm/aaaa "
               "hh:mm.";
        QTest::newRow("sí") << "Marca"
                            << "Sí" << QVariant(true) << "";
        QTest::newRow("no") << "Marca"
                            << "No" << QVariant(false) << "";
        QTest::newRow("marca otra") << "Marca"
                                    << "si" << QVariant()
                                    << "El campo 'Marca' debe tomar uno de estos valores: Sí, No.";
        QTest::newRow("memo conserva blancos")
            << "Notas"
            << " dos\nlíneas " << QVariant(QStringLiteral(" dos\nlíneas ")) << "";
        QTest::newRow("texto largo") << "Codigo"
                                     << "ABCDE" << QVariant()
                                     << "El campo 'Código' no puede tener más de 4 caracteres.";
    }

    // Every kind of column read from what is typed, and written back as it was typed.
    void leerValor() {
        QFETCH(QString, columna);
        QFETCH(QString, texto);
        QFETCH(QVariant, esperado);
        QFETCH(QString, error);
        const DescriptorColumna& c = *tablaDeTipos().columna(columna);
        QString motivo;
        const auto v = FichaForm::leerValor(c, texto, &motivo);
        QCOMPARE(v.has_value(), esperado.isValid());
        QCOMPARE(motivo, error);
        if (!v) return;
        QCOMPARE(*v, esperado);
        // Read back from its own text, the value is the same.
        QCOMPARE(*FichaForm::leerValor(c, FichaForm::textoValor(c, *v), nullptr), esperado);
    }

    // A record with every kind of column goes to the database and comes back unchanged.
    void fichaTodosLosTipos() {
        auto s = sesion();
        const DescriptorTabla& t = tablaDeTipos();
        for (const auto& sql : sqlCrearTabla(t, s->t.db().motor(), 1))
            s->t.db().ejecutarDirecto(sql);
        FichaForm f(*s->e, t);
        QCOMPARE(f.opciones(QStringLiteral("Marca")),
                 (QStringList{QString(), QStringLiteral("Sí"), QStringLiteral("No")}));
        const QHash<QString, QString> textos = {
            {QStringLiteral("Codigo"), QStringLiteral("A1")},
            {QStringLiteral("Numero"), QStringLiteral("42")},
            {QStringLiteral("Importe"), QStringLiteral("0,125")},
            {QStringLiteral("Fecha"), QStringLiteral("29/02/2028")},
            {QStringLiteral("Hora"), QStringLiteral("23:59:30")},
            {QStringLiteral("Momento"), QStringLiteral("31/12/2026 08:05")},
            {QStringLiteral("Marca"), QStringLiteral("No")},
            {QStringLiteral("Notas"), QStringLiteral("uno\ndos")},
        };
        for (auto it = textos.cbegin(); it != textos.cend(); ++it)
            f.setTexto(it.key(), it.value());
        QVERIFY2(f.guardar(), qPrintable(s->d.ultimoTexto()));
        const auto r = RegistroStore(s->t.db()).cargar(t, QStringLiteral("A1"));
        QVERIFY(r);
        FichaForm leido(*s->e, *r);
        for (auto it = textos.cbegin(); it != textos.cend(); ++it)
            QCOMPARE(leido.texto(it.key()), it.value());
        // Empty optional fields are stored as nothing.
        FichaForm vacio(*s->e, t);
        vacio.setTexto(QStringLiteral("Codigo"), QStringLiteral("B"));
        QVERIFY(vacio.guardar());
        const auto rv = RegistroStore(s->t.db()).cargar(t, QStringLiteral("B"));
        for (const auto& c : t.columnaS)
            if (c.nombre != QStringLiteral("Codigo"))
                QVERIFY2(rv->valor(c.nombre).isNull(), qPrintable(c.nombre));
    }

    void ramaConBucles() {
        const QList<QPair<QString, QString>> datos = {{"1", ""}, {"2", "1"}, {"3", "2"}, {"4", "1"},
                                                      {"5", ""}, {"6", "7"}, {"7", "6"}, {"8", "8"}};
        QCOMPARE(ramaDe("1", datos), (QStringList{"1", "2", "4", "3"}));
        QCOMPARE(ramaDe("3", datos), QStringList{"3"});
        QCOMPARE(ramaDe("6", datos), (QStringList{"6", "7"}));
        QCOMPARE(ramaDe("8", datos), QStringList{"8"});
    }

    void arbolAnadir() {
        auto s = sesion();
        const DescriptorTabla& t = tabla(QStringLiteral("Diagnosticos"));
        EditorArbolForm f(*s->e, t);
        QCOMPARE(f.titulo(), QStringLiteral("Arbol de Diagnóstico"));
        QCOMPARE(f.cabecera(), QStringLiteral("Diagnóstico"));
        QVERIFY(f.refrescar());
        QVERIFY(!f.nuevoHijo());
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("Seleccione el objeto del que dependerá el nuevo objeto."));

        FichaForm raiz = f.nuevaRaiz();
        QVERIFY(!raiz.campo(QStringLiteral("IdPadre")));
        raiz.setTexto(QStringLiteral("Descripcion"), QStringLiteral("Piel"));
        QVERIFY(raiz.guardar());
        f.guardado(raiz.registro());
        QCOMPARE(f.seleccionado, raiz.registro().clave().toString());
        for (const QString& texto : {QStringLiteral("Otitis"), QStringLiteral("Dermatitis")}) {
            f.seleccionado = raiz.registro().clave().toString();
            auto hijo = f.nuevoHijo();
            QVERIFY(hijo);
            QVERIFY(!hijo->campo(QStringLiteral("IdPadre")));
            hijo->setTexto(QStringLiteral("Descripcion"), texto);
            QVERIFY(hijo->guardar());
            f.guardado(hijo->registro());
            QCOMPARE(f.padreMostrado(f.seleccionado), raiz.registro().clave().toString());
        }
        // Children in text order; the parent column stored, and kept when a child is modified.
        QCOMPARE(dibujo(f), (QStringList{"Piel", "  Dermatitis", "  Otitis"}));
        auto mod = f.fichaSeleccionada(); // Dermatitis, saved last
        QVERIFY(mod);
        mod->setTexto(QStringLiteral("Descripcion"), QStringLiteral("Dermatitis atópica"));
        QVERIFY(mod->guardar());
        QCOMPARE(mod->registro().valor(QStringLiteral("IdPadre")).toLongLong(),
                 raiz.registro().clave().toLongLong());
        QCOMPARE(s->t.db()
                     .valor(QStringLiteral("SELECT IdPadre FROM Diagnosticos WHERE Descripcion = ?"),
                            {QStringLiteral("Dermatitis atópica")})
                     .toLongLong(),
                 raiz.registro().clave().toLongLong());
        QCOMPARE(s->d.mensajes().size(), 1);
    }

    // Deleting a node deletes its whole branch after one question, and only on Yes.
    void arbolEliminarRama() {
        auto s = sesion();
        Database& db = s->t.db();
        const QString t = QStringLiteral("GruposSintomas");
        const QVariant a = crearNodo(db, t, QStringLiteral("Digestivos"), {});
        const QVariant a1 = crearNodo(db, t, QStringLiteral("Vómitos"), a);
        crearNodo(db, t, QStringLiteral("Diarrea"), a);
        crearNodo(db, t, QStringLiteral("Hematemesis"), a1);
        const QVariant b = crearNodo(db, t, QStringLiteral("Respiratorios"), {});
        crearNodo(db, t, QStringLiteral("Tos"), b);

        EditorArbolForm f(*s->e, tabla(t));
        QVERIFY(f.refrescar());
        QCOMPARE(dibujo(f), (QStringList{"Digestivos", "  Diarrea", "  Vómitos", "    Hematemesis",
                                         "Respiratorios", "  Tos"}));
        f.seleccionado = a.toString();
        s->d.no();
        QVERIFY(!f.eliminar());
        QCOMPARE(filas(db, t), 6);
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(s->d.ultimoTexto(),
                 QStringLiteral("¿Desea realmente eliminar el objeto seleccionado? (Se eliminarán "
                                "todos sus hijos también)"));
        s->d.limpiar();
        s->d.si();
        QVERIFY(f.eliminar());
        QCOMPARE(s->d.mensajes().size(), 1);
        QCOMPARE(dibujo(f), (QStringList{"Respiratorios", "  Tos"}));
        QCOMPARE(filas(db, t), 2);
        QVERIFY(f.seleccionado.isEmpty());
    }

    // A node below the one deleted, locked by another workstation, keeps the whole branch.
    void arbolRamaConNodoBloqueado() {
        auto s = sesion();
        Database& db = s->t.db();
        const QString t = QStringLiteral("GruposSintomas");
        const QVariant a = crearNodo(db, t, QStringLiteral("Digestivos"), {});
        const QVariant a1 = crearNodo(db, t, QStringLiteral("Vómitos"), a);
        const QVariant a11 = crearNodo(db, t, QStringLiteral("Hematemesis"), a1);
        auto conexion = s->t.otraConexion();
        ScriptedDialogs d2;
        Entorno otro(*conexion, d2, reloj_);
        otro.puesto = QStringLiteral("CONSULTA2");
        QVERIFY(almacenBloqueos(otro).bloquearRegistro(
            tabla(t), a11.toString(), QStringLiteral("Hematemesis"), AccionBloqueo::Modificacion, false));
        // This workstation's own lock on a node does not count.
        QVERIFY(almacenBloqueos(*s->e).bloquearRegistro(tabla(t), a1.toString(), QStringLiteral("Vómitos"),
                                                        AccionBloqueo::Modificacion, false));
        EditorArbolForm f(*s->e, tabla(t));
        QVERIFY(f.refrescar());
        f.seleccionado = a.toString();
        QVERIFY(!f.eliminar()); // refused before the question
        QCOMPARE(s->d.sinRespuesta(), 0);
        QCOMPARE(s->d.ultimo().titulo, QStringLiteral("Bloqueo de Registro"));
        QCOMPARE(s->d.ultimoTexto(), QStringLiteral("No es posible dar de Baja el/la ") + tabla(t).descTabla +
                                         QStringLiteral(" de Hematemesis pues otro Puesto lo/a tiene "
                                                        "bloqueado/a. Consulte a un Administrador."));
        QCOMPARE(filas(db, t), 3);
        QVERIFY(almacenBloqueos(otro).desbloquearRegistro(tabla(t), a11.toString()));
        s->d.si();
        QVERIFY(f.eliminar());
        QCOMPARE(filas(db, t), 0);
    }

    // When one record of the branch cannot be deleted, none is.
    void arbolEliminarEsUnaTransaccion() {
        auto s = sesion();
        Database& db = s->t.db();
        const QString t = QStringLiteral("Diagnosticos");
        const QVariant a = crearNodo(db, t, QStringLiteral("Cardiología"), {});
        const QVariant a1 = crearNodo(db, t, QStringLiteral("Soplo"), a);
        crearNodo(db, t, QStringLiteral("Arritmia"), a);
        db.ejecutarDirecto(QStringLiteral("CREATE TABLE PruebaVisitas (Id INTEGER PRIMARY KEY, "
                                          "IdDiagnostico BIGINT REFERENCES Diagnosticos (IdDiagnostico))"));
        db.ejecutarCambio(QStringLiteral("INSERT INTO PruebaVisitas (Id, IdDiagnostico) VALUES (?, ?)"),
                          {1, a1});
        EditorArbolForm f(*s->e, tabla(t));
        QVERIFY(f.refrescar());
        f.seleccionado = a.toString();
        s->d.si();
        QVERIFY(!f.eliminar());
        QCOMPARE(s->d.mensajes().size(), 2);
        QCOMPARE(s->d.ultimo().titulo,
                 QStringLiteral("eliminar el objeto seleccionado en el 'Arbol de Diagnóstico'"));
        QVERIFY(s->d.ultimoTexto().startsWith(QStringLiteral("Error en B.D.: ")));
        QCOMPARE(filas(db, t), 3);
        QCOMPARE(dibujo(f), (QStringList{"Cardiología", "  Arritmia", "  Soplo"}));
        QVERIFY(!db.enTransaccion());
    }

    // Damaged parents: a missing parent, a record that is its own parent, and two records
    // that are each other's parent with a child. Every record is shown once, and deleting
    // one of the loop deletes the loop and what hangs from it.
    void arbolDatosDanados() {
        auto s = sesion();
        Database& db = s->t.db();
        const QString t = QStringLiteral("Diagnosticos");
        const qlonglong x = crearNodo(db, t, QStringLiteral("X"), {}).toLongLong();
        const qlonglong y = crearNodo(db, t, QStringLiteral("Y"), x).toLongLong();
        crearNodo(db, t, QStringLiteral("Z"), y);
        const qlonglong yo = crearNodo(db, t, QStringLiteral("Yo"), {}).toLongLong();
        crearNodo(db, t, QStringLiteral("Huérfano"), 999999);
        const qlonglong sano = crearNodo(db, t, QStringLiteral("Sano"), {}).toLongLong();
        crearNodo(db, t, QStringLiteral("Hijo sano"), sano);
        db.ejecutarCambio(QStringLiteral("UPDATE Diagnosticos SET IdPadre = ? WHERE IdDiagnostico = ?"),
                          {y, x});
        db.ejecutarCambio(QStringLiteral("UPDATE Diagnosticos SET IdPadre = ? WHERE IdDiagnostico = ?"),
                          {yo, yo});

        EditorArbolForm f(*s->e, tabla(t));
        QVERIFY(f.refrescar());
        QCOMPARE(dibujo(f), (QStringList{"Huérfano", "Sano", "  Hijo sano", "X", "  Y", "    Z", "Yo"}));
        QCOMPARE(f.totalNodos(), 7);

        f.seleccionado = QString::number(y);
        s->d.si();
        QVERIFY(f.eliminar());
        QCOMPARE(dibujo(f), (QStringList{"Huérfano", "Sano", "  Hijo sano", "Yo"}));
        QCOMPARE(filas(db, t), 4);
    }
};

PMX_STORE_TEST_MAIN(TestEditores)
#include "test_editores.moc"
