// The change of owner and its register on each engine: the required choices in order, the
// refusal of the same owner, the move and the register row written together (a failure of
// the register insert leaves the pet with its old owner), the pet listed only under the new
// owner afterwards, and the register screen's filters and messages.
#include "clients/cambio_propietario_form.h"
#include "clients/mascota_form.h"
#include "clients/registro_cambios_form.h"
#include "data/esquema.h"
#include "scripted_dialogs.h"
#include "test_db.h"

namespace {
qint64 crear(Database& db, const QString& t, const QVariantMap& valores) {
    Registro r(*descriptorTabla(t));
    for (auto it = valores.cbegin(); it != valores.cend(); ++it)
        r.setValor(it.key(), it.value());
    return RegistroStore(db).crear(r).toLongLong();
}

qint64 dueno(Database& db, qint64 mascota) {
    return db.valor(QStringLiteral("SELECT IdCliente FROM Mascotas WHERE IdMascota = ?"), {mascota})
        .toLongLong();
}
} // namespace

class TestCambioPropietario : public QObject {
    Q_OBJECT
    FixedClock reloj_{QDateTime(QDate(2026, 11, 23), QTime(9, 0))};

    struct Caso {
        TestDb t;
        ScriptedDialogs d;
        std::unique_ptr<Entorno> e;
        qint64 ana = 0, luis = 0, rufo = 0, misi = 0;
        QList<qint64> elecciones; // clients the search answers, in order
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Database& db = c->t.db();
        c->ana =
            crear(db, QStringLiteral("Clientes"), {{QStringLiteral("Nombre"), QStringLiteral("Ana Núñez")}});
        c->luis =
            crear(db, QStringLiteral("Clientes"), {{QStringLiteral("Nombre"), QStringLiteral("Luis Pérez")}});
        c->rufo = crear(
            db, QStringLiteral("Mascotas"),
            {{QStringLiteral("Nombre"), QStringLiteral("Rufo")}, {QStringLiteral("IdCliente"), c->ana}});
        c->misi = crear(
            db, QStringLiteral("Mascotas"),
            {{QStringLiteral("Nombre"), QStringLiteral("Misi")}, {QStringLiteral("IdCliente"), c->ana}});
        c->e = std::make_unique<Entorno>(db, c->d, reloj_);
        c->e->puesto = QStringLiteral("CONSULTA1");
        c->e->sesion = QStringLiteral("S1");
        c->e->usuario = QStringLiteral("luisa");
        Caso* p = c.get();
        c->e->buscadores.cliente = [p](const PeticionCliente&) -> std::optional<ClienteElegido> {
            if (p->elecciones.isEmpty()) return std::nullopt;
            ClienteElegido e;
            e.claveCliente = p->elecciones.takeFirst();
            e.Cliente = e.claveCliente == p->ana ? QStringLiteral("Ana Núñez") : QStringLiteral("Luis Pérez");
            return e;
        };
        return c;
    }

    static int filaDe(const CambioPropietarioForm& f, const QString& nombre) {
        for (int i = 0; i < f.mascotas().size(); ++i)
            if (f.mascotas().at(i).Mascota == nombre) return i;
        return -1;
    }

private slots:
    void obligatoriosEnOrden() {
        auto c = caso();
        CambioPropietarioForm f(*c->e);
        QVERIFY(!f.cambiar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Campos obligatorios no informados"));
        QCOMPARE(
            c->d.ultimoTexto(),
            QStringLiteral("Seleccione el propietario actual de la mascota a través de la lupa de búsqueda"));
        c->elecciones = {c->ana};
        QVERIFY(f.elegirPropietarioActual());
        QCOMPARE(f.nombreActual(), QStringLiteral("Ana Núñez"));
        QCOMPARE(f.mascotas().size(), 2);
        QVERIFY(!f.cambiar());
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("Indique la mascota que desea cambiar de propietario"));
        f.setFilaMascota(filaDe(f, QStringLiteral("Rufo")));
        QVERIFY(!f.cambiar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Campos obligatorios no informados"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral(
                     "Seleccione el nuevo propietario para la mascota a través de la lupa de búsqueda"));
        c->elecciones = {c->ana};
        QVERIFY(f.elegirNuevoPropietario());
        QVERIFY(!f.cambiar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Información introducida errónea"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("El nuevo propietario es el mismo que el propietario actual de la "
                                "mascota. Seleccione otro propietario."));
        QCOMPARE(RegistroStore(c->t.db()).contar(*descriptorTabla(QStringLiteral("CambiosPropietario"))), 0);
        QCOMPARE(dueno(c->t.db(), c->rufo), c->ana);
    }

    // After the change the pet is listed only under the new owner; the register keeps the old one.
    void cambioYRegistro() {
        auto c = caso();
        CambioPropietarioForm f(*c->e);
        QVERIFY(f.abrir(c->ana, c->rufo));
        QCOMPARE(f.mascotas().at(f.filaMascota()).Mascota, QStringLiteral("Rufo"));
        c->elecciones = {c->luis};
        QVERIFY(f.elegirNuevoPropietario());
        QVERIFY(f.cambiar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("Información"));
        QCOMPARE(
            c->d.ultimoTexto(),
            QStringLiteral("Cambio efectuado correctamente. La mascota Rufo pertenece ahora a Luis Pérez"));
        QCOMPARE(f.mascotas().size(), 1);
        QCOMPARE(f.filaMascota(), -1);

        MascotaForm deAna(*c->e), deLuis(*c->e);
        QVERIFY(deAna.abrir(c->ana));
        QVERIFY(deLuis.abrir(c->luis));
        QCOMPARE(deAna.lista().size(), 1);
        QCOMPARE(deAna.lista().first().Mascota, QStringLiteral("Misi"));
        QCOMPARE(deLuis.lista().size(), 1);
        QCOMPARE(deLuis.lista().first().IdMascota, c->rufo);

        RegistroCambiosForm r(*c->e);
        QVERIFY(r.buscar());
        QCOMPARE(r.filas().size(), 1);
        QCOMPARE(RegistroCambiosForm::textos(r.filas().first()),
                 (QStringList{QStringLiteral("23/11/2026"), QStringLiteral("Rufo"),
                              QStringLiteral("Ana Núñez"), QStringLiteral("Luis Pérez")}));
        QCOMPARE(c->t.db().valor(QStringLiteral("SELECT Usuario FROM CambiosPropietario")).toString(),
                 QStringLiteral("luisa"));
        const auto abrir = r.mascotaDeFila(0);
        QVERIFY(abrir);
        QCOMPARE(abrir->first, c->luis);
        QCOMPARE(abrir->second, c->rufo);
    }

    // The register insert fails after the pet was moved: the whole change is undone.
    void atomicidad() {
        auto c = caso();
        Database& db = c->t.db();
        if (db.esSQLite()) {
            db.ejecutarDirecto(
                QStringLiteral("CREATE TRIGGER sin_registro BEFORE INSERT ON CambiosPropietario "
                               "BEGIN SELECT RAISE(ABORT, 'registro de cambios lleno'); END"));
        } else {
            db.ejecutarDirecto(
                QStringLiteral("CREATE FUNCTION sin_registro() RETURNS trigger AS $$ BEGIN RAISE "
                               "EXCEPTION 'registro de cambios lleno'; END $$ LANGUAGE plpgsql"));
            db.ejecutarDirecto(
                QStringLiteral("CREATE TRIGGER sin_registro BEFORE INSERT ON CambiosPropietario "
                               "FOR EACH ROW EXECUTE FUNCTION sin_registro()"));
        }
        CambioPropietarioForm f(*c->e);
        QVERIFY(f.abrir(c->ana, c->rufo));
        c->elecciones = {c->luis};
        QVERIFY(f.elegirNuevoPropietario());
        QVERIFY(!f.cambiar());
        QVERIFY(c->d.ultimoTexto().contains(QStringLiteral("registro de cambios lleno")));
        QVERIFY(!c->d.ultimoTexto().startsWith(QStringLiteral("Cambio efectuado")));
        QCOMPARE(dueno(db, c->rufo), c->ana);
        QCOMPARE(RegistroStore(db).contar(*descriptorTabla(QStringLiteral("CambiosPropietario"))), 0);
        QCOMPARE(RegistroStore(db).contar(*descriptorTabla(QStringLiteral("Bloqueos"))), 0);
        QCOMPARE(f.mascotas().at(f.filaMascota()).Mascota,
                 QStringLiteral("Rufo")); // the screen keeps the choice

        // A pet that another workstation moved meanwhile is not moved from its new owner.
        db.ejecutarDirecto(QStringLiteral("DROP TRIGGER sin_registro") +
                           (db.esSQLite() ? QString() : QStringLiteral(" ON CambiosPropietario")));
        db.ejecutarCambio(QStringLiteral("UPDATE Mascotas SET IdCliente = ? WHERE IdMascota = ?"),
                          {c->luis, c->rufo});
        const qint64 otro =
            crear(db, QStringLiteral("Clientes"), {{QStringLiteral("Nombre"), QStringLiteral("Otro")}});
        c->elecciones = {otro};
        QVERIFY(f.elegirNuevoPropietario());
        QVERIFY(!f.cambiar());
        QVERIFY(c->d.ultimoTexto().contains(
            QStringLiteral("La mascota ya no pertenece al propietario actual indicado.")));
        QCOMPARE(dueno(db, c->rufo), c->luis);
        QCOMPARE(RegistroStore(db).contar(*descriptorTabla(QStringLiteral("CambiosPropietario"))), 0);
    }

    void registroFiltrosYMensajes() {
        auto c = caso();
        MascotaStore s(c->t.db());
        s.cambiarPropietario(c->rufo, c->ana, c->luis, QDate(2026, 1, 10), QStringLiteral("ana"));
        s.cambiarPropietario(c->misi, c->ana, c->luis, QDate(2026, 3, 5), QStringLiteral("ana"));
        s.cambiarPropietario(c->rufo, c->luis, c->ana, QDate(2026, 6, 1), QStringLiteral("ana"));

        RegistroCambiosForm r(*c->e);
        QVERIFY(r.buscar());
        QCOMPARE(r.filas().size(), 3);
        QCOMPARE(r.filas().first().Fecha, QDate(2026, 6, 1)); // newest first
        r.filtro.desde = QDate(2026, 1, 11);
        r.filtro.hasta = QDate(2026, 6, 1);
        QVERIFY(r.buscar());
        QCOMPARE(r.filas().size(), 2);
        r.filtro = {};
        r.filtro.mascota = QStringLiteral("ruf");
        QVERIFY(r.buscar());
        QCOMPARE(r.filas().size(), 2);
        r.filtro = {};
        c->elecciones = {c->luis};
        QVERIFY(r.elegirOrigen());
        QCOMPARE(r.nombreOrigen(), QStringLiteral("Luis Pérez"));
        QVERIFY(r.buscar());
        QCOMPARE(r.filas().size(), 1);
        QCOMPARE(r.filas().first().NuevoPropietario, QStringLiteral("Ana Núñez"));
        r.quitarOrigen();
        c->elecciones = {c->luis};
        QVERIFY(r.elegirDestino());
        QVERIFY(r.buscar());
        QCOMPARE(r.filas().size(), 2);
        r.filtro.mascota = QStringLiteral("toby");
        c->d.limpiar();
        QVERIFY(!r.buscar());
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Atención!"));
        QCOMPARE(c->d.ultimoTexto(),
                 QStringLiteral("No existen Cambios de Propietario que cumplan los filtros especificados."));

        // A pet deleted afterwards: its rows stay, opening it says it is gone.
        r.filtro = {};
        QVERIFY(r.buscar());
        QVERIFY(s.eliminar(c->misi));
        QVERIFY(r.buscar());
        int fila = -1;
        for (int i = 0; i < r.filas().size(); ++i)
            if (r.filas().at(i).IdMascota == c->misi) fila = i;
        QVERIFY(fila >= 0);
        QCOMPARE(r.filas().at(fila).Mascota, QString());
        QVERIFY(!r.mascotaDeFila(fila));
        QCOMPARE(c->d.ultimo().titulo, QStringLiteral("¡Error!"));
        QCOMPARE(c->d.ultimoTexto(), QStringLiteral("No se ha encontrado la Mascota nº ") +
                                         QString::number(c->misi) +
                                         QStringLiteral(" en la B.D. Contacte con Soporte a Clientes."));
    }
};

PMX_STORE_TEST_MAIN(TestCambioPropietario)
#include "test_cambio_propietario.moc"
