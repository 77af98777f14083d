// The change of owner on each engine: required choices in order, the move and its register row
// written together (all or nothing), and the register screen's filters and messages.
#include "clients/cambio_propietario_form.h"
#include "clients/mascota_store.h"
#include "clients/registro_cambios_form.h"
#include "sesion.h"

namespace {

qint64 dueno(Database& db, qint64 mascota) {
    return db.valor(u"SELECT IdCliente FROM Mascotas WHERE IdMascota = ?"_s, {mascota}).toLongLong();
}
} // namespace

class TestCambioPropietario : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        qint64 ana = 0, luis = 0, rufo = 0, misi = 0;
        QList<qint64> elecciones; // clients the search answers, in order
    };

    std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Semilla& s = c->s;
        c->ana = s.cliente(u"Ana Núñez"_s);
        c->luis = s.cliente(u"Luis Pérez"_s);
        c->rufo = s.fila(u"Mascotas"_s, {{u"Nombre"_s, u"Rufo"_s}, {u"IdCliente"_s, c->ana}});
        c->misi = s.fila(u"Mascotas"_s, {{u"Nombre"_s, u"Misi"_s}, {u"IdCliente"_s, c->ana}});
        c->e.usuario = u"luisa"_s;
        Caso* p = c.get();
        c->e.buscadores.cliente = [p](const PeticionCliente&) -> std::optional<ClienteElegido> {
            if (p->elecciones.isEmpty()) return std::nullopt;
            ClienteElegido e;
            e.claveCliente = p->elecciones.takeFirst();
            e.Cliente = e.claveCliente == p->ana ? u"Ana Núñez"_s : u"Luis Pérez"_s;
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
        CambioPropietarioForm f(c->e);
        QVERIFY(!f.cambiar());
        QCOMPARE(c->d.ultimo().titulo, u"Campos obligatorios no informados"_s);
        QCOMPARE(c->d.ultimoTexto(),
                 u"Seleccione el propietario actual de la mascota a través de la lupa de búsqueda"_s);
        c->elecciones = {c->ana};
        QVERIFY(f.elegirPropietarioActual());
        QCOMPARE(f.nombreActual(), u"Ana Núñez"_s);
        QVERIFY(!f.cambiar());
        QCOMPARE(c->d.ultimoTexto(), u"Indique la mascota que desea cambiar de propietario"_s);
        f.setFilaMascota(filaDe(f, u"Rufo"_s));
        QVERIFY(!f.cambiar());
        QCOMPARE(c->d.ultimoTexto(),
                 u"Seleccione el nuevo propietario para la mascota a través de la lupa de búsqueda"_s);
        c->elecciones = {c->ana};
        QVERIFY(f.elegirNuevoPropietario());
        QVERIFY(!f.cambiar());
        QCOMPARE(c->d.ultimo().titulo, u"Información introducida errónea"_s);
        QCOMPARE(c->d.ultimoTexto(), u"El nuevo propietario es el mismo que el propietario actual de la "
                                     "mascota. Seleccione otro propietario."_s);
        QCOMPARE(c->s.contar(u"CambiosPropietario"_s), 0);
        QCOMPARE(dueno(c->db(), c->rufo), c->ana);
    }

    // After the change the pet belongs to the new owner; the register keeps the old one.
    void cambioYRegistro() {
        auto c = caso();
        CambioPropietarioForm f(c->e);
        QVERIFY(f.abrir(c->ana, c->rufo));
        QCOMPARE(f.mascotas().at(f.filaMascota()).Mascota, u"Rufo"_s);
        c->elecciones = {c->luis};
        QVERIFY(f.elegirNuevoPropietario());
        QVERIFY(f.cambiar());
        QCOMPARE(c->d.ultimo().titulo, u"Información"_s);
        QCOMPARE(c->d.ultimoTexto(),
                 u"Cambio efectuado correctamente. La mascota Rufo pertenece ahora a Luis Pérez"_s);
        QCOMPARE(f.mascotas().size(), 1);
        QCOMPARE(dueno(c->db(), c->rufo), c->luis);
        QCOMPARE(dueno(c->db(), c->misi), c->ana);

        RegistroCambiosForm r(c->e);
        QVERIFY(r.buscar());
        QCOMPARE(RegistroCambiosForm::textos(r.filas().first()),
                 (QStringList{u"23/11/2026"_s, u"Rufo"_s, u"Ana Núñez"_s, u"Luis Pérez"_s}));
        QCOMPARE(c->db().valor(u"SELECT Usuario FROM CambiosPropietario"_s).toString(), u"luisa"_s);
        const auto abrir = r.mascotaDeFila(0);
        QVERIFY(abrir);
        QCOMPARE(abrir->first, c->luis);
        QCOMPARE(abrir->second, c->rufo);
    }

    // The register insert fails after the pet was moved: the whole change is undone.
    void atomicidad() {
        auto c = caso();
        Database& db = c->db();
        Semilla& s = c->s;
        if (db.esSQLite()) {
            db.ejecutarDirecto(u"CREATE TRIGGER sin_registro BEFORE INSERT ON CambiosPropietario "
                               "BEGIN SELECT RAISE(ABORT, 'registro de cambios lleno'); END"_s);
        } else {
            db.ejecutarDirecto(u"CREATE FUNCTION sin_registro() RETURNS trigger AS $$ BEGIN RAISE "
                               "EXCEPTION 'registro de cambios lleno'; END $$ LANGUAGE plpgsql"_s);
            db.ejecutarDirecto(u"CREATE TRIGGER sin_registro BEFORE INSERT ON CambiosPropietario "
                               "FOR EACH ROW EXECUTE FUNCTION sin_registro()"_s);
        }
        CambioPropietarioForm f(c->e);
        QVERIFY(f.abrir(c->ana, c->rufo));
        c->elecciones = {c->luis};
        QVERIFY(f.elegirNuevoPropietario());
        QVERIFY(!f.cambiar());
        QVERIFY(c->d.ultimoTexto().contains(u"registro de cambios lleno"_s));
        QCOMPARE(dueno(db, c->rufo), c->ana);
        QCOMPARE(s.contar(u"CambiosPropietario"_s), 0);
        QCOMPARE(s.contar(u"Bloqueos"_s), 0);
        QCOMPARE(f.mascotas().at(f.filaMascota()).Mascota, u"Rufo"_s); // the screen keeps the choice

        // A pet that another workstation moved meanwhile is not moved from its new owner.
        db.ejecutarDirecto(u"DROP TRIGGER sin_registro"_s +
                           (db.esSQLite() ? QString() : u" ON CambiosPropietario"_s));
        db.ejecutarCambio(u"UPDATE Mascotas SET IdCliente = ? WHERE IdMascota = ?"_s, {c->luis, c->rufo});
        const qint64 otro = s.cliente(u"Otro"_s);
        c->elecciones = {otro};
        QVERIFY(f.elegirNuevoPropietario());
        QVERIFY(!f.cambiar());
        QVERIFY(c->d.ultimoTexto().contains(u"La mascota ya no pertenece al propietario actual indicado."_s));
        QCOMPARE(dueno(db, c->rufo), c->luis);
        QCOMPARE(s.contar(u"CambiosPropietario"_s), 0);
    }

    void registroFiltrosYMensajes() {
        auto c = caso();
        MascotaStore s(c->db());
        s.cambiarPropietario(c->rufo, c->ana, c->luis, QDate(2026, 1, 10), u"ana"_s);
        s.cambiarPropietario(c->misi, c->ana, c->luis, QDate(2026, 3, 5), u"ana"_s);
        s.cambiarPropietario(c->rufo, c->luis, c->ana, QDate(2026, 6, 1), u"ana"_s);

        RegistroCambiosForm r(c->e);
        QVERIFY(r.buscar());
        QCOMPARE(r.filas().size(), 3);
        QCOMPARE(r.filas().first().Fecha, QDate(2026, 6, 1)); // newest first
        c->elecciones = {c->luis};
        QVERIFY(r.elegirOrigen());
        QCOMPARE(r.nombreOrigen(), u"Luis Pérez"_s);
        QVERIFY(r.buscar());
        QCOMPARE(r.filas().size(), 1);
        r.filtro.mascota = u"toby"_s;
        c->d.limpiar();
        QVERIFY(!r.buscar());
        QCOMPARE(c->d.ultimo().titulo, u"¡Atención!"_s);
        QCOMPARE(c->d.ultimoTexto(),
                 u"No existen Cambios de Propietario que cumplan los filtros especificados."_s);

        // A pet deleted while the list shows it: opening it says it is gone; its register rows
        // go with it.
        r.filtro = {};
        QVERIFY(r.buscar());
        int fila = -1;
        for (int i = 0; i < r.filas().size(); ++i)
            if (r.filas().at(i).IdMascota == c->misi) fila = i;
        QVERIFY(fila >= 0);
        QCOMPARE(s.eliminar(c->misi), MascotaStore::Baja::Eliminada);
        QVERIFY(!r.mascotaDeFila(fila));
        QCOMPARE(c->d.ultimo().titulo, u"¡Error!"_s);
        QCOMPARE(c->d.ultimoTexto(), u"No se ha encontrado la Mascota nº "_s + QString::number(c->misi) +
                                         u" en la B.D. Contacte con Soporte a Clientes."_s);
        QVERIFY(r.buscar());
        QCOMPARE(r.filas().size(), 2);
    }
};

PMX_STORE_TEST_MAIN(TestCambioPropietario)
#include "test_cambio_propietario.moc"
