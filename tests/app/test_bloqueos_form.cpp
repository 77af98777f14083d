// The lock manager (form and window) and the lock a record screen holds while editing.
#include "app/bloqueo_edicion.h"
#include "app/bloqueos_form.h"
#include "gui/bloqueos_window.h"
#include "scripted_dialogs.h"
#include "test_db.h"

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace {
DescriptorTabla clase(const QString& tabla, const QString& desc) {
    DescriptorTabla t;
    t.tabla = tabla;
    t.descTabla = desc;
    return t;
}
const DescriptorTabla kClientes = clase(QStringLiteral("Clientes"), QStringLiteral("Cliente"));
const DescriptorTabla kMascotas = clase(QStringLiteral("Mascotas"), QStringLiteral("Mascota"));
const DescriptorTabla kAlbaranes = clase(QStringLiteral("Albaranes"), QStringLiteral("Albarán"));
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
        QVERIFY(almacenBloqueos(*a.e).bloquearRegistro(
            kClientes, QStringLiteral("12"), QStringLiteral("Núñez, María"), AccionBloqueo::Modificacion));
        reloj_.avanzar(3600);
        QVERIFY(almacenBloqueos(*b.e).bloquearRegistro(kMascotas, QStringLiteral("30"),
                                                       QStringLiteral("Toby (perro)"), AccionBloqueo::Baja));
        reloj_.avanzar(-7200);
        QVERIFY(almacenBloqueos(*b.e).bloquearRegistro(kAlbaranes, QStringLiteral("A-7"),
                                                       QStringLiteral("Albarán nº 7"), AccionBloqueo::Alta));
        reloj_.avanzar(3600);
    }

private slots:
    void listaYTextos() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("RECEPCION"), QStringLiteral("ana"), true, false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), QStringLiteral("luis"), false, true);
        sembrar(*a, *b);
        BloqueosForm f(*a->e);
        QCOMPARE(BloqueosForm::columnas(),
                 (QStringList{QStringLiteral("Registro"), QStringLiteral("Usuario"), QStringLiteral("Puesto"),
                              QStringLiteral("Fecha"), QStringLiteral("Hora")}));
        QVERIFY(f.buscar());
        QCOMPARE(f.filas().size(), 3);
        // Oldest first.
        QCOMPARE(f.texto(0, 0), QStringLiteral("Albarán nº 7"));
        QCOMPARE(f.texto(0, 4), QStringLiteral("08:05"));
        QCOMPARE(f.texto(1, 0), QStringLiteral("Núñez, María"));
        QCOMPARE(f.texto(1, 1), QStringLiteral("ana"));
        QCOMPARE(f.texto(1, 2), QStringLiteral("RECEPCION"));
        QCOMPARE(f.texto(1, 3), QStringLiteral("04/05/2026"));
        QCOMPARE(f.texto(1, 4), QStringLiteral("09:05"));
        QCOMPARE(f.texto(2, 0), QStringLiteral("Toby (perro)"));
        QCOMPARE(f.texto(2, 4), QStringLiteral("10:05"));
        QCOMPARE(f.texto(3, 0), QString());
        QCOMPARE(f.texto(0, 5), QString());
        QVERIFY(a->d.mensajes().isEmpty());
    }

    void filtro_data() {
        QTest::addColumn<QString>("filtro");
        QTest::addColumn<QStringList>("registros");
        QTest::newRow("vacío") << QStringLiteral("  ")
                               << QStringList{QStringLiteral("Albarán nº 7"), QStringLiteral("Núñez, María"),
                                              QStringLiteral("Toby (perro)")};
        QTest::newRow("descripción, otra caja")
            << QStringLiteral("NÚÑEZ") << QStringList{QStringLiteral("Núñez, María")};
        QTest::newRow("usuario") << QStringLiteral("luis")
                                 << QStringList{QStringLiteral("Albarán nº 7"),
                                                QStringLiteral("Toby (perro)")};
        QTest::newRow("puesto") << QStringLiteral(" recep ") << QStringList{QStringLiteral("Núñez, María")};
        QTest::newRow("nada") << QStringLiteral("gato") << QStringList{};
        QTest::newRow("comillas") << QStringLiteral("O'Brien") << QStringList{};
    }
    void filtro() {
        QFETCH(QString, filtro);
        QFETCH(QStringList, registros);
        TestDb t;
        auto a = puesto(t, QStringLiteral("RECEPCION"), QStringLiteral("ana"), true, false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), QStringLiteral("luis"), false, true);
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
        auto a = puesto(t, QStringLiteral("RECEPCION"), QStringLiteral("ana"), true, false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), QStringLiteral("luis"), false, true);
        sembrar(*a, *b);
        BloqueosForm f(*a->e);
        QVERIFY(f.buscar());

        // Nothing selected.
        f.seleccionado = -1;
        QVERIFY(!f.eliminarSeleccionado());
        QCOMPARE(a->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(a->d.ultimoTexto(), QStringLiteral("Seleccione el Bloqueo que desea eliminar."));
        QVERIFY(!a->d.ultimo().pregunta);

        // No keeps it.
        a->d.limpiar();
        a->d.no();
        f.seleccionado = 2;
        QVERIFY(!f.eliminarSeleccionado());
        QCOMPARE(a->d.mensajes().size(), 1);
        QVERIFY(a->d.ultimo().pregunta);
        QCOMPARE(a->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(a->d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar el Bloqueo seleccionado?"));
        QCOMPARE(almacenBloqueos(*a->e).contar(), 3);

        // Yes removes the selected one, held by another workstation, and reloads.
        a->d.si();
        QVERIFY(f.eliminarSeleccionado());
        QCOMPARE(f.filas().size(), 2);
        QCOMPARE(f.texto(0, 0), QStringLiteral("Albarán nº 7"));
        QCOMPARE(f.texto(1, 0), QStringLiteral("Núñez, María"));
        QVERIFY(!almacenBloqueos(*a->e).buscar(QStringLiteral("Mascotas 30")).has_value());
        // The record is free again for anyone.
        QVERIFY(almacenBloqueos(*a->e).bloquearRegistro(kMascotas, QStringLiteral("30"),
                                                        QStringLiteral("Toby"), AccionBloqueo::Modificacion));
        QCOMPARE(a->d.sinRespuesta(), 0);
    }

    void eliminarTodos() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("RECEPCION"), QStringLiteral("ana"), true, false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), QStringLiteral("luis"), false, true);
        sembrar(*a, *b);
        BloqueosForm f(*a->e);
        f.filtro = QStringLiteral("luis");
        QVERIFY(f.buscar());
        a->d.no();
        QVERIFY(!f.eliminarTodos());
        QCOMPARE(a->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(a->d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar todos los bloqueos?"));
        QCOMPARE(almacenBloqueos(*a->e).contar(), 3);
        // Every lock goes, not only those shown by the filter.
        a->d.si();
        QVERIFY(f.eliminarTodos());
        QCOMPARE(almacenBloqueos(*a->e).contar(), 0);
        QVERIFY(f.filas().isEmpty());
    }

    void soloUnAdministradorElimina() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("RECEPCION"), QStringLiteral("ana"), true, false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), QStringLiteral("luis"), false, true);
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
            QCOMPARE(m.texto, QStringLiteral("Sólo un Administrador puede eliminar Bloqueos."));
        }
        QCOMPARE(almacenBloqueos(*b->e).contar(), 3);
    }

    void errorDeBaseDeDatosSeInforma() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("RECEPCION"), QStringLiteral("ana"), true, false);
        t.db().ejecutarDirecto(QStringLiteral("DROP TABLE Bloqueos"));
        BloqueosForm f(*a->e);
        QVERIFY(!f.buscar());
        QCOMPARE(a->d.mensajes().size(), 1);
        QVERIFY(a->d.ultimoTexto().contains(QStringLiteral("Error en B.D.: ")));
        QVERIFY(f.filas().isEmpty());
    }

    // The lock of a record screen.
    void edicionTomaYLibera() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("RECEPCION"), QStringLiteral("ana"), false, false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), QStringLiteral("luis"), false, true);
        a->e->ajustes().escribir(claves::MULTIPUESTO, QStringLiteral("SI"));
        auto filas = [&] { return almacenBloqueos(*a->e).contar(); };
        {
            BloqueoEdicion ed(*a->e);
            QVERIFY(!ed.tomado());
            QVERIFY(ed.tomar(kClientes, QStringLiteral("12"), QStringLiteral("María"),
                             AccionBloqueo::Modificacion));
            QVERIFY(ed.tomado());
            QVERIFY(ed.conFila());
            QCOMPARE(filas(), 1);
            // Again the same: nothing new.
            QVERIFY(ed.tomar(kClientes, QStringLiteral("12"), QStringLiteral("María"),
                             AccionBloqueo::Modificacion));
            QCOMPARE(filas(), 1);

            // Another workstation is refused while the screen edits.
            BloqueoEdicion otra(*b->e);
            QVERIFY(
                !otra.tomar(kClientes, QStringLiteral("12"), QStringLiteral("María"), AccionBloqueo::Baja));
            QVERIFY(!otra.tomado());
            QCOMPARE(b->d.ultimoTexto(),
                     QStringLiteral("No es posible dar de Baja el/la Cliente de María pues otro "
                                    "Puesto lo/a tiene bloqueado/a. Consulte a un Administrador."));

            // Moving to another record takes the new one and lets the old one go.
            QVERIFY(ed.tomar(kClientes, QStringLiteral("13"), QStringLiteral("Pedro"),
                             AccionBloqueo::Modificacion));
            QCOMPARE(ed.clave(), QStringLiteral("13"));
            QCOMPARE(filas(), 1);
            QVERIFY(
                otra.tomar(kClientes, QStringLiteral("12"), QStringLiteral("María"), AccionBloqueo::Baja));
            // A refused move keeps the lock held.
            QVERIFY(!ed.tomar(kClientes, QStringLiteral("12"), QStringLiteral("María"),
                              AccionBloqueo::Modificacion, false));
            QCOMPARE(ed.clave(), QStringLiteral("13"));
            QVERIFY(almacenBloqueos(*a->e).buscar(QStringLiteral("Clientes 13")).has_value());

            ed.liberar();
            QVERIFY(!ed.tomado());
            QVERIFY(!almacenBloqueos(*a->e).buscar(QStringLiteral("Clientes 13")).has_value());
            QVERIFY(ed.tomar(kMascotas, QStringLiteral("1"), QStringLiteral("Kira"), AccionBloqueo::Alta));
            QCOMPARE(filas(), 2);
        }
        // Both screens closed: the destructors released their locks.
        QCOMPARE(filas(), 0);
        QCOMPARE(a->d.mensajes().size(), 0);
    }

    void monopuestoNoEscribeBloqueos_data() {
        QTest::addColumn<QString>("valor");
        QTest::addColumn<bool>("activo");
        QTest::newRow("NO") << QStringLiteral("NO") << false;
        QTest::newRow("no con blancos") << QStringLiteral(" no ") << false;
        QTest::newRow("SI") << QStringLiteral("SI") << true;
        QTest::newRow("sin valor: el de por defecto") << QString() << true;
    }
    void monopuestoNoEscribeBloqueos() {
        QFETCH(QString, valor);
        QFETCH(bool, activo);
        TestDb t;
        auto a = puesto(t, QStringLiteral("SERVIDOR"), QStringLiteral("ana"), false, false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), QStringLiteral("luis"), false, true);
        if (valor.isNull())
            a->e->ajustes().borrar(claves::MULTIPUESTO);
        else
            a->e->ajustes().escribir(claves::MULTIPUESTO, valor);
        QCOMPARE(bloqueoActivo(*a->e), activo);
        // A lock standing from before (or another session) is not consulted either.
        QVERIFY(almacenBloqueos(*b->e).bloquearRegistro(kClientes, QStringLiteral("1"), QStringLiteral("Uno"),
                                                        AccionBloqueo::Modificacion));
        BloqueoEdicion ed(*a->e);
        QCOMPARE(ed.tomar(kClientes, QStringLiteral("1"), QStringLiteral("Uno"), AccionBloqueo::Modificacion),
                 !activo);
        QVERIFY(ed.tomar(kClientes, QStringLiteral("2"), QStringLiteral("Dos"), AccionBloqueo::Alta));
        QVERIFY(ed.tomado());
        QCOMPARE(ed.conFila(), activo);
        QCOMPARE(almacenBloqueos(*a->e).contar(), activo ? 2 : 1);
        ed.liberar();
        QCOMPARE(almacenBloqueos(*a->e).contar(), 1);
    }

    void ventana() {
        TestDb t;
        auto a = puesto(t, QStringLiteral("RECEPCION"), QStringLiteral("ana"), true, false);
        auto b = puesto(t, QStringLiteral("CONSULTA2"), QStringLiteral("luis"), false, true);
        sembrar(*a, *b);
        auto* w = new BloqueosWindow(*a->e);
        QPointer<BloqueosWindow> vigia(w);
        QCOMPARE(w->objectName(), QStringLiteral("frmBloqueos"));
        QCOMPARE(w->windowTitle(), QStringLiteral("Bloqueos"));
        auto* lista = w->findChild<QTableWidget*>(QStringLiteral("grdBloqueos"));
        auto* filtro = w->findChild<QLineEdit*>(QStringLiteral("txtFiltro"));
        auto* buscar = w->findChild<QPushButton*>(QStringLiteral("cmdBuscar"));
        auto* eliminar = w->findChild<QPushButton*>(QStringLiteral("cmdEliminar"));
        auto* todos = w->findChild<QPushButton*>(QStringLiteral("cmdEliminarTodos"));
        auto* cerrar = w->findChild<QPushButton*>(QStringLiteral("cmdCerrar"));
        QVERIFY(lista && filtro && buscar && eliminar && todos && cerrar);
        QStringList cabeceras;
        for (int c = 0; c < lista->columnCount(); ++c)
            cabeceras << lista->horizontalHeaderItem(c)->text();
        QCOMPARE(cabeceras, BloqueosForm::columnas());
        QCOMPARE(lista->rowCount(), 3);
        QCOMPARE(lista->item(1, 0)->text(), QStringLiteral("Núñez, María"));
        QCOMPARE(lista->item(1, 3)->text(), QStringLiteral("04/05/2026"));
        QVERIFY(eliminar->isEnabled());

        w->show();
        if (qEnvironmentVariableIsSet("PRAMELVIX_CAPTURAS")) {
            QVERIFY(QTest::qWaitForWindowExposed(w));
            const QString carpeta = qEnvironmentVariable("PRAMELVIX_CAPTURAS");
            QDir().mkpath(carpeta);
            QVERIFY(w->grab().save(QDir(carpeta).filePath(QStringLiteral("bloqueos.png"))));
        }

        // Another lock appears; the search button shows it, and the filter narrows.
        QVERIFY(almacenBloqueos(*b->e).bloquearRegistro(
            kClientes, QStringLiteral("99"), QStringLiteral("Ruiz, Pepe"), AccionBloqueo::Modificacion));
        QTest::mouseClick(buscar, Qt::LeftButton);
        QCOMPARE(lista->rowCount(), 4);
        filtro->setText(QStringLiteral("toby"));
        QTest::mouseClick(buscar, Qt::LeftButton);
        QCOMPARE(lista->rowCount(), 1);
        QCOMPARE(lista->item(0, 0)->text(), QStringLiteral("Toby (perro)"));

        // Delete the selected row after Yes.
        lista->selectRow(0);
        a->d.si();
        QTest::mouseClick(eliminar, Qt::LeftButton);
        QCOMPARE(a->d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar el Bloqueo seleccionado?"));
        QCOMPARE(lista->rowCount(), 0);
        QCOMPARE(almacenBloqueos(*a->e).contar(), 3);

        filtro->clear();
        a->d.si();
        QTest::mouseClick(todos, Qt::LeftButton);
        QCOMPARE(a->d.ultimoTexto(), QStringLiteral("¿Desea realmente eliminar todos los bloqueos?"));
        QCOMPARE(lista->rowCount(), 0);
        QCOMPARE(almacenBloqueos(*a->e).contar(), 0);

        QTest::mouseClick(cerrar, Qt::LeftButton);
        QTRY_VERIFY(vigia.isNull());

        // A user who is not an administrator sees the buttons disabled.
        BloqueosWindow wb(*b->e);
        QVERIFY(!wb.findChild<QPushButton*>(QStringLiteral("cmdEliminar"))->isEnabled());
        QVERIFY(!wb.findChild<QPushButton*>(QStringLiteral("cmdEliminarTodos"))->isEnabled());
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (!TestDb::motorDisponible()) return 77;
    TestBloqueosForm prueba;
    return QTest::qExec(&prueba, argc, argv);
}
#include "test_bloqueos_form.moc"
