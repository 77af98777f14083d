// The lock manager and the lock a record screen holds while editing.
#include "app/bloqueo_edicion.h"
#include "app/bloqueos_form.h"
#include "scripted_dialogs.h"
#include "test_db.h"

using namespace Qt::StringLiterals;

namespace {
DescriptorTabla clase(const QString& tabla, const QString& desc) {
    DescriptorTabla t;
    t.tabla = tabla;
    t.descTabla = desc;
    return t;
}
const DescriptorTabla kClientes = clase(u"Clientes"_s, u"Cliente"_s);
const DescriptorTabla kMascotas = clase(u"Mascotas"_s, u"Mascota"_s);
const DescriptorTabla kAlbaranes = clase(u"Albaranes"_s, u"Albarán"_s);
} // namespace

class TestBloqueosForm : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 5, 4), QTime(9, 5, 30))};

    // A workstation with its own connection (the first one uses the test's own).
    struct Puesto {
        std::unique_ptr<Database> propia;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
    };
    std::unique_ptr<Puesto> puesto(TestDb& t, const QString& nombre, const QString& usuario,
                                   bool administrador, bool otraConexion) {
        auto p = std::make_unique<Puesto>();
        if (otraConexion) p->propia = t.otraConexion();
        p->e = std::make_unique<Entorno>(otraConexion ? *p->propia : t.db(), p->d, reloj_);
        p->e->puesto = nombre;
        p->e->usuario = usuario;
        p->e->nombreUsuario = usuario;
        p->e->tipoUsuario = administrador ? kTipoAdministrador : kTipoUsuario;
        return p;
    }

    // Three locks by two workstations, at different times.
    void sembrar(Puesto& a, Puesto& b) {
        QVERIFY(almacenBloqueos(*a.e).bloquearRegistro(kClientes, u"12"_s, u"Núñez, María"_s,
                                                       AccionBloqueo::Modificacion));
        reloj_.avanzar(3600);
        QVERIFY(almacenBloqueos(*b.e).bloquearRegistro(kMascotas, u"30"_s, u"Toby (perro)"_s,
                                                       AccionBloqueo::Baja));
        reloj_.avanzar(-7200);
        QVERIFY(almacenBloqueos(*b.e).bloquearRegistro(kAlbaranes, u"A-7"_s, u"Albarán nº 7"_s,
                                                       AccionBloqueo::Alta));
        reloj_.avanzar(3600);
    }

private slots:
    void listaYTextos() {
        TestDb t;
        auto a = puesto(t, u"RECEPCION"_s, u"ana"_s, true, false);
        auto b = puesto(t, u"CONSULTA2"_s, u"luis"_s, false, true);
        sembrar(*a, *b);
        BloqueosForm f(*a->e);
        QCOMPARE(BloqueosForm::columnas(),
                 (QStringList{u"Registro"_s, u"Usuario"_s, u"Puesto"_s, u"Fecha"_s, u"Hora"_s}));
        QVERIFY(f.buscar());
        QCOMPARE(f.filas().size(), 3);
        // Oldest first.
        QCOMPARE(f.texto(0, 0), u"Albarán nº 7"_s);
        QCOMPARE(f.texto(0, 4), u"08:05"_s);
        QCOMPARE(f.texto(1, 0), u"Núñez, María"_s);
        QCOMPARE(f.texto(1, 1), u"ana"_s);
        QCOMPARE(f.texto(1, 2), u"RECEPCION"_s);
        QCOMPARE(f.texto(1, 3), u"04/05/2026"_s);
        QCOMPARE(f.texto(1, 4), u"09:05"_s);
        QCOMPARE(f.texto(2, 0), u"Toby (perro)"_s);
        QCOMPARE(f.texto(2, 4), u"10:05"_s);
        QCOMPARE(f.texto(3, 0), QString());
        QCOMPARE(f.texto(0, 5), QString());
        QVERIFY(a->d.mensajes().isEmpty());
    }

    void filtro_data() {
        QTest::addColumn<QString>("filtro");
        QTest::addColumn<QStringList>("registros");
        auto fila = [](const char* nombre, QString a0, QStringList a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("vacío", u"  "_s, QStringList{u"Albarán nº 7"_s, u"Núñez, María"_s, u"Toby (perro)"_s});
        fila("descripción, otra caja", u"NÚÑEZ"_s, QStringList{u"Núñez, María"_s});
        fila("usuario", u"luis"_s, QStringList{u"Albarán nº 7"_s, u"Toby (perro)"_s});
        fila("puesto", u" recep "_s, QStringList{u"Núñez, María"_s});
        fila("nada", u"gato"_s, QStringList{});
        fila("comillas", u"O'Brien"_s, QStringList{});
    }
    void filtro() {
        QFETCH(QString, filtro);
        QFETCH(QStringList, registros);
        TestDb t;
        auto a = puesto(t, u"RECEPCION"_s, u"ana"_s, true, false);
        auto b = puesto(t, u"CONSULTA2"_s, u"luis"_s, false, true);
        sembrar(*a, *b);
        BloqueosForm f(*a->e);
        f.filtro = filtro;
        QVERIFY(f.buscar());
        QStringList vistos;
        for (int i = 0; i < f.filas().size(); ++i)
            vistos << f.texto(i, 0);
        QCOMPARE(vistos, registros);
    }

    void eliminarSeleccionado() {
        TestDb t;
        auto a = puesto(t, u"RECEPCION"_s, u"ana"_s, true, false);
        auto b = puesto(t, u"CONSULTA2"_s, u"luis"_s, false, true);
        sembrar(*a, *b);
        BloqueosForm f(*a->e);
        QVERIFY(f.buscar());

        // Nothing selected.
        f.seleccionado = -1;
        QVERIFY(!f.eliminarSeleccionado());
        QCOMPARE(a->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(a->d.ultimoTexto(), u"Seleccione el Bloqueo que desea eliminar."_s);
        QVERIFY(!a->d.ultimo().pregunta);

        // No keeps it.
        a->d.limpiar();
        a->d.no();
        f.seleccionado = 2;
        QVERIFY(!f.eliminarSeleccionado());
        QCOMPARE(a->d.mensajes().size(), 1);
        QVERIFY(a->d.ultimo().pregunta);
        QCOMPARE(a->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(a->d.ultimoTexto(), u"¿Desea realmente eliminar el Bloqueo seleccionado?"_s);
        QCOMPARE(almacenBloqueos(*a->e).contar(), 3);

        // Yes removes the selected one, held by another workstation, and reloads.
        a->d.si();
        QVERIFY(f.eliminarSeleccionado());
        QCOMPARE(f.filas().size(), 2);
        QCOMPARE(f.texto(0, 0), u"Albarán nº 7"_s);
        QCOMPARE(f.texto(1, 0), u"Núñez, María"_s);
        QVERIFY(!almacenBloqueos(*a->e).buscar(u"Mascotas 30"_s).has_value());
        // The record is free again for anyone.
        QVERIFY(almacenBloqueos(*a->e).bloquearRegistro(kMascotas, u"30"_s, u"Toby"_s,
                                                        AccionBloqueo::Modificacion));
        QCOMPARE(a->d.sinRespuesta(), 0);
    }

    void eliminarTodos() {
        TestDb t;
        auto a = puesto(t, u"RECEPCION"_s, u"ana"_s, true, false);
        auto b = puesto(t, u"CONSULTA2"_s, u"luis"_s, false, true);
        sembrar(*a, *b);
        BloqueosForm f(*a->e);
        f.filtro = u"luis"_s;
        QVERIFY(f.buscar());
        a->d.no();
        QVERIFY(!f.eliminarTodos());
        QCOMPARE(a->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(a->d.ultimoTexto(), u"¿Desea realmente eliminar todos los bloqueos?"_s);
        QCOMPARE(almacenBloqueos(*a->e).contar(), 3);
        // Every lock goes, not only those shown by the filter.
        a->d.si();
        QVERIFY(f.eliminarTodos());
        QCOMPARE(almacenBloqueos(*a->e).contar(), 0);
        QVERIFY(f.filas().isEmpty());
    }

    void soloUnAdministradorElimina() {
        TestDb t;
        auto a = puesto(t, u"RECEPCION"_s, u"ana"_s, true, false);
        auto b = puesto(t, u"CONSULTA2"_s, u"luis"_s, false, true);
        sembrar(*a, *b);
        BloqueosForm f(*b->e);
        QVERIFY(f.buscar());
        QCOMPARE(f.filas().size(), 3);
        QVERIFY(!f.puedeEliminar());
        f.seleccionado = 0;
        QVERIFY(!f.eliminarSeleccionado());
        QVERIFY(!f.eliminarTodos());
        QCOMPARE(b->d.mensajes().size(), 2);
        for (const auto& m : b->d.mensajes()) {
            QVERIFY(!m.pregunta);
            QCOMPARE(m.texto, u"Sólo un Administrador puede eliminar Bloqueos."_s);
        }
        QCOMPARE(almacenBloqueos(*b->e).contar(), 3);
    }

    void errorDeBaseDeDatosSeInforma() {
        TestDb t;
        auto a = puesto(t, u"RECEPCION"_s, u"ana"_s, true, false);
        t.db().ejecutarDirecto(u"DROP TABLE Bloqueos"_s);
        BloqueosForm f(*a->e);
        QVERIFY(!f.buscar());
        QCOMPARE(a->d.mensajes().size(), 1);
        QVERIFY(a->d.ultimoTexto().contains(u"Error en B.D.: "_s));
        QVERIFY(f.filas().isEmpty());
    }

    // The lock of a record screen.
    void edicionTomaYLibera() {
        TestDb t;
        auto a = puesto(t, u"RECEPCION"_s, u"ana"_s, false, false);
        auto b = puesto(t, u"CONSULTA2"_s, u"luis"_s, false, true);
        a->e->ajustes().escribir(claves::MULTIPUESTO, u"SI"_s);
        auto filas = [&] { return almacenBloqueos(*a->e).contar(); };
        {
            BloqueoEdicion ed(*a->e);
            QVERIFY(!ed.tomado());
            QVERIFY(ed.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Modificacion));
            QVERIFY(ed.tomado());
            QVERIFY(ed.conFila());
            QCOMPARE(filas(), 1);
            // Again the same: nothing new.
            QVERIFY(ed.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Modificacion));
            QCOMPARE(filas(), 1);

            // Another workstation is refused while the screen edits.
            BloqueoEdicion otra(*b->e);
            QVERIFY(!otra.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Baja));
            QVERIFY(!otra.tomado());
            QCOMPARE(b->d.ultimoTexto(), u"No es posible dar de Baja el/la Cliente de María pues otro "
                                         "Puesto lo/a tiene bloqueado/a. Consulte a un Administrador."_s);

            // Moving to another record takes the new one and lets the old one go.
            QVERIFY(ed.tomar(kClientes, u"13"_s, u"Pedro"_s, AccionBloqueo::Modificacion));
            QCOMPARE(ed.clave(), u"13"_s);
            QCOMPARE(filas(), 1);
            QVERIFY(otra.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Baja));
            // A refused move keeps the lock held.
            QVERIFY(!ed.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Modificacion, false));
            QCOMPARE(ed.clave(), u"13"_s);
            QVERIFY(almacenBloqueos(*a->e).buscar(u"Clientes 13"_s).has_value());

            ed.liberar();
            QVERIFY(!ed.tomado());
            QVERIFY(!almacenBloqueos(*a->e).buscar(u"Clientes 13"_s).has_value());
            QVERIFY(ed.tomar(kMascotas, u"1"_s, u"Kira"_s, AccionBloqueo::Alta));
            QCOMPARE(filas(), 2);
        }
        // Both screens closed: the destructors released their locks.
        QCOMPARE(filas(), 0);
        QCOMPARE(a->d.mensajes().size(), 0);
    }

    void monopuestoNoEscribeBloqueos_data() {
        QTest::addColumn<QString>("valor");
        QTest::addColumn<bool>("activo");
        auto fila = [](const char* nombre, QString a0, bool a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("NO", u"NO"_s, false);
        fila("no con blancos", u" no "_s, false);
        fila("SI", u"SI"_s, true);
        fila("sin valor: el de por defecto", QString(), true);
    }
    void monopuestoNoEscribeBloqueos() {
        QFETCH(QString, valor);
        QFETCH(bool, activo);
        TestDb t;
        auto a = puesto(t, u"SERVIDOR"_s, u"ana"_s, false, false);
        auto b = puesto(t, u"CONSULTA2"_s, u"luis"_s, false, true);
        if (valor.isNull())
            a->e->ajustes().borrar(claves::MULTIPUESTO);
        else
            a->e->ajustes().escribir(claves::MULTIPUESTO, valor);
        QCOMPARE(bloqueoActivo(*a->e), activo);
        // A lock standing from before (or another session) is not consulted either.
        QVERIFY(almacenBloqueos(*b->e).bloquearRegistro(kClientes, u"1"_s, u"Uno"_s,
                                                        AccionBloqueo::Modificacion));
        BloqueoEdicion ed(*a->e);
        QCOMPARE(ed.tomar(kClientes, u"1"_s, u"Uno"_s, AccionBloqueo::Modificacion), !activo);
        QVERIFY(ed.tomar(kClientes, u"2"_s, u"Dos"_s, AccionBloqueo::Alta));
        QVERIFY(ed.tomado());
        QCOMPARE(ed.conFila(), activo);
        QCOMPARE(almacenBloqueos(*a->e).contar(), activo ? 2 : 1);
        ed.liberar();
        QCOMPARE(almacenBloqueos(*a->e).contar(), 1);
    }
};

PMX_STORE_TEST_MAIN(TestBloqueosForm)
#include "test_bloqueos_form.moc"
