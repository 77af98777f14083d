// The lock manager and the lock a record screen holds while editing.
#include "app/bloqueo_edicion.h"
#include "app/bloqueos_form.h"
#include "sesion.h"

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
    // ana (administrator) on RECEPCION; luis (user) on CONSULTA2, with its own connection.
    struct Caso : Sesion {
        Caso() : Sesion(QDateTime(QDate(2026, 5, 4), QTime(9, 5, 30))), b(*this, u"CONSULTA2"_s) {
            e.puesto = u"RECEPCION"_s;
            b.e.usuario = b.e.nombreUsuario = u"luis"_s;
            b.e.tipoUsuario = kTipoUsuario;
        }
        OtroPuesto b;
        qint64 contar() { return almacenBloqueos(e).contar(); }
        // Three locks by the two workstations, at different times.
        void sembrar() {
            QVERIFY(almacenBloqueos(e).bloquearRegistro(kClientes, u"12"_s, u"Núñez, María"_s,
                                                        AccionBloqueo::Modificacion));
            reloj.avanzar(3600);
            QVERIFY(almacenBloqueos(b.e).bloquearRegistro(kMascotas, u"30"_s, u"Toby (perro)"_s,
                                                          AccionBloqueo::Baja));
            reloj.avanzar(-7200);
            QVERIFY(almacenBloqueos(b.e).bloquearRegistro(kAlbaranes, u"A-7"_s, u"Albarán nº 7"_s,
                                                          AccionBloqueo::Alta));
            reloj.avanzar(3600);
        }
    };

private slots:
    void listaYTextos() {
        Caso c;
        c.sembrar();
        BloqueosForm f(c.e);
        QCOMPARE(BloqueosForm::columnas(),
                 (QStringList{u"Registro"_s, u"Usuario"_s, u"Puesto"_s, u"Fecha"_s, u"Hora"_s}));
        QVERIFY(f.buscar());
        QCOMPARE(f.filas().size(), 3);
        // Oldest first.
        QCOMPARE(f.texto(0, 4), u"08:05"_s);
        QCOMPARE(f.texto(1, 0), u"Núñez, María"_s);
        QCOMPARE(f.texto(1, 1), u"ana"_s);
        QCOMPARE(f.texto(1, 2), u"RECEPCION"_s);
        QCOMPARE(f.texto(1, 3), u"04/05/2026"_s);
        QCOMPARE(f.texto(3, 0), QString()); // past the end: nothing, no crash
    }

    void filtro() {
        const std::pair<QString, QStringList> casos[] = {
            {u"  "_s, {u"Albarán nº 7"_s, u"Núñez, María"_s, u"Toby (perro)"_s}},
            {u"NÚÑEZ"_s, {u"Núñez, María"_s}}, // description, either case
            {u"luis"_s, {u"Albarán nº 7"_s, u"Toby (perro)"_s}},
            {u" recep "_s, {u"Núñez, María"_s}},
            {u"O'Brien"_s, {}},
        };
        Caso c;
        c.sembrar();
        BloqueosForm f(c.e);
        for (const auto& [filtro, registros] : casos) {
            f.filtro = filtro;
            QVERIFY(f.buscar());
            QStringList vistos;
            for (int i = 0; i < f.filas().size(); ++i)
                vistos << f.texto(i, 0);
            QVERIFY2(vistos == registros, qPrintable(filtro + u" -> "_s + vistos.join(u'|')));
        }
    }

    // Only an administrator deletes; the chosen lock or every one (not only those the filter
    // shows), each after its question and only on Yes.
    void eliminar() {
        Caso c;
        c.sembrar();
        BloqueosForm deUsuario(c.b.e);
        QVERIFY(deUsuario.buscar());
        QVERIFY(!deUsuario.puedeEliminar());
        deUsuario.seleccionado = 0;
        QVERIFY(!deUsuario.eliminarSeleccionado());
        QVERIFY(!deUsuario.eliminarTodos());
        QCOMPARE(c.b.d.textos(), QStringList(2, u"Sólo un Administrador puede eliminar Bloqueos."_s));
        QCOMPARE(c.contar(), 3);

        BloqueosForm f(c.e);
        QVERIFY(f.buscar());
        f.seleccionado = -1;
        QVERIFY(!f.eliminarSeleccionado());
        QCOMPARE(c.d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(c.d.ultimoTexto(), u"Seleccione el Bloqueo que desea eliminar."_s);

        c.d.limpiar();
        c.d.no();
        f.seleccionado = 2;
        QVERIFY(!f.eliminarSeleccionado());
        QVERIFY(c.d.ultimo().pregunta);
        QCOMPARE(c.d.ultimoTexto(), u"¿Desea realmente eliminar el Bloqueo seleccionado?"_s);
        QCOMPARE(c.contar(), 3);
        // Yes removes the one of another workstation, reloads, and the record is free again.
        c.d.si();
        QVERIFY(f.eliminarSeleccionado());
        QCOMPARE(f.filas().size(), 2);
        QVERIFY(almacenBloqueos(c.e).bloquearRegistro(kMascotas, u"30"_s, u"Toby"_s,
                                                      AccionBloqueo::Modificacion));

        f.filtro = u"núñez"_s;
        QVERIFY(f.buscar());
        c.d.no();
        QVERIFY(!f.eliminarTodos());
        QCOMPARE(c.d.ultimoTexto(), u"¿Desea realmente eliminar todos los bloqueos?"_s);
        QCOMPARE(c.contar(), 3);
        c.d.si();
        QVERIFY(f.eliminarTodos());
        QCOMPARE(c.contar(), 0);
        QVERIFY(f.filas().isEmpty());
    }

    void errorDeBaseDeDatosSeInforma() {
        Caso c;
        c.db().ejecutarDirecto(u"DROP TABLE Bloqueos"_s);
        BloqueosForm f(c.e);
        QVERIFY(!f.buscar());
        QVERIFY(c.d.ultimoTexto().contains(u"Error en B.D.: "_s));
    }

    // The lock of a record screen.
    void edicionTomaYLibera() {
        Caso c;
        c.e.ajustes().escribir(claves::MULTIPUESTO, u"SI"_s);
        {
            BloqueoEdicion ed(c.e);
            QVERIFY(!ed.tomado());
            QVERIFY(ed.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Modificacion));
            QVERIFY(ed.conFila());
            QCOMPARE(c.contar(), 1);
            // Again the same: nothing new.
            QVERIFY(ed.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Modificacion));
            QCOMPARE(c.contar(), 1);

            // Another workstation is refused while the screen edits.
            BloqueoEdicion otra(c.b.e);
            QVERIFY(!otra.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Baja));
            QCOMPARE(c.b.d.ultimoTexto(), u"No es posible dar de Baja el/la Cliente de María pues otro "
                                          "Puesto lo/a tiene bloqueado/a. Consulte a un Administrador."_s);

            // Moving to another record takes the new one and lets the old one go.
            QVERIFY(ed.tomar(kClientes, u"13"_s, u"Pedro"_s, AccionBloqueo::Modificacion));
            QCOMPARE(ed.clave(), u"13"_s);
            QCOMPARE(c.contar(), 1);
            QVERIFY(otra.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Baja));
            // A refused move keeps the lock held.
            QVERIFY(!ed.tomar(kClientes, u"12"_s, u"María"_s, AccionBloqueo::Modificacion, false));
            QCOMPARE(ed.clave(), u"13"_s);
            QVERIFY(almacenBloqueos(c.e).buscar(u"Clientes 13"_s).has_value());

            ed.liberar();
            QVERIFY(!ed.tomado());
            QVERIFY(!almacenBloqueos(c.e).buscar(u"Clientes 13"_s).has_value());
            QVERIFY(ed.tomar(kMascotas, u"1"_s, u"Kira"_s, AccionBloqueo::Alta));
            QCOMPARE(c.contar(), 2);
        }
        // Both screens closed: the destructors released their locks.
        QCOMPARE(c.contar(), 0);
    }

    void monopuestoNoEscribeBloqueos() {
        // The setting's value (null: missing, the default) and whether locks are written.
        const std::pair<QString, bool> casos[] = {{u" no "_s, false}, {u"SI"_s, true}, {QString(), true}};
        for (const auto& [valor, activo] : casos) {
            Caso c;
            if (valor.isNull())
                c.e.ajustes().borrar(claves::MULTIPUESTO);
            else
                c.e.ajustes().escribir(claves::MULTIPUESTO, valor);
            QVERIFY2(bloqueoActivo(c.e) == activo, qPrintable(valor));
            // A lock standing from before (or another session) is not consulted either.
            QVERIFY(almacenBloqueos(c.b.e).bloquearRegistro(kClientes, u"1"_s, u"Uno"_s,
                                                            AccionBloqueo::Modificacion));
            BloqueoEdicion ed(c.e);
            QVERIFY2(ed.tomar(kClientes, u"1"_s, u"Uno"_s, AccionBloqueo::Modificacion) == !activo,
                     qPrintable(valor));
            QVERIFY(ed.tomar(kClientes, u"2"_s, u"Dos"_s, AccionBloqueo::Alta));
            QVERIFY2(ed.conFila() == activo && c.contar() == (activo ? 2 : 1), qPrintable(valor));
            ed.liberar();
            QVERIFY2(c.contar() == 1, qPrintable(valor));
        }
    }
};

PMX_STORE_TEST_MAIN(TestBloqueosForm)
#include "test_bloqueos_form.moc"
