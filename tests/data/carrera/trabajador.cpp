// A workstation for the race tests, as a separate operating-system process.
//   pmx_trabajador_carrera <sqlite|postgresql> <origen> bloqueos <nombre>
//       reads orders from standard input, one a line, and answers each with one line
//       (an order may start with "@<ms since the epoch> ": it then waits for that moment):
//       "registro <clave>" -> "1"/"0" (lock Clientes <clave>), "bd" -> "1"/"0"
//       (administrative lock), "liberar" -> the number of locks released, "fin" -> ends.
//   pmx_trabajador_carrera <motor> <origen> contador <serie> <cuantos> <deshacerCada>
//       takes <cuantos> numbers, each in a transaction of its own that is committed, and
//       prints each one; every <deshacerCada>-th transaction takes a number and is undone
//       instead (that number is not printed). Ends with "fin".
//   pmx_trabajador_carrera <motor> <origen> albaranes <serie> <cuantos>
//       saves <cuantos> delivery notes of one line through the store, each as the screen
//       saves it, and prints each note's number. Ends with "fin".
//   pmx_trabajador_carrera <motor> <origen> registros
//       reads orders like "bloqueos" does: "leer <tabla> <clave>" keeps the record (or, for
//       "Albaranes", the delivery note) as a screen reads it ("1"); "guardar <columna> <valor>"
//       saves it as a screen does ("1", or "0" when another workstation saved it since; a
//       note takes the value as its salesperson); "mascota <idCliente>" adds a pet
//       to the client ("1"/"0"); "borrarcliente <id>" deletes the client as its screen
//       does, refusing one with pets ("1"/"0"); "entrar <puesto>" registers a starting
//       workstation ("1" inside, "0" refused); "salir <puesto>"; "monopuesto" switches to
//       single-workstation mode ("1"/"0").
//   pmx_trabajador_carrera <motor> <origen> colgado <serie>
//       takes a number inside a transaction, prints it and waits forever before
//       committing (the parent kills it).
#include "core/clock.h"
#include "data/bloqueos.h"
#include "app/numeracion.h"
#include "clients/cliente_store.h"
#include "data/contadores.h"
#include "data/esquema.h"
#include "data/puestos.h"
#include "data/registro.h"
#include "sales/albaran_store.h"
#include "sales/presupuesto_store.h"

#include <QCoreApplication>
#include <QThread>
#include <cstdio>
#include <optional>
#include <iostream>
#include <string>

namespace {
// Never asked anything in the locking orders; for the counters it always goes on trying.
class DialogosTrabajador final : public Dialogs {
public:
    void mostrar(Icono, const QString& titulo, const QString& texto) override {
        std::fprintf(stderr, "[%s] %s\n", qPrintable(titulo), qPrintable(texto));
    }
    bool preguntar(Icono, const QString&, const QString&) override { return true; }
    int elegir(const QString&, const QString&, const QStringList&) override { return -1; }
    QString elegirFichero(const QString&, const QString&, const QString&) override { return {}; }
    QString elegirFicheroGuardar(const QString&, const QString&, const QString&) override { return {}; }
    void progreso(const QString&) override {}
};

// The start line of a round: every process gets its order first and then waits for the
// same moment of the clock, so that all of them reach the database together.
void esperarHasta(qint64 msDesdeEpoca) {
    qint64 falta = msDesdeEpoca - QDateTime::currentMSecsSinceEpoch();
    if (falta > 3) QThread::msleep(static_cast<unsigned long>(falta - 3));
    while (QDateTime::currentMSecsSinceEpoch() < msDesdeEpoca) {
    }
}

// The next order from standard input, once its start time has come; nothing at "fin" or at
// the end of the input.
std::optional<QString> siguienteOrden() {
    std::string entrada;
    if (!std::getline(std::cin, entrada)) return std::nullopt;
    QString orden = QString::fromStdString(entrada).trimmed();
    if (orden.startsWith(QLatin1Char('@'))) {
        const qsizetype blanco = orden.indexOf(QLatin1Char(' '));
        esperarHasta(orden.mid(1, blanco - 1).toLongLong());
        orden = orden.mid(blanco + 1);
    }
    if (orden == QLatin1String("fin")) return std::nullopt;
    return orden;
}

void responder(const QString& linea) {
    std::fputs(qPrintable(linea + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

int bloqueos(Database& db, const QString& nombre) {
    DialogosTrabajador d;
    SystemClock reloj;
    DescriptorTabla clientes;
    clientes.tabla = QStringLiteral("Clientes");
    clientes.descTabla = QStringLiteral("Cliente");
    Bloqueos s(db, d, reloj,
                   {nombre + QLatin1Char('-') + QString::number(QCoreApplication::applicationPid()),
                    QStringLiteral("usuario-") + nombre, nombre, QString()});
    s.setIntentos(50);
    while (const auto siguiente = siguienteOrden()) {
        const QString& orden = *siguiente;
        if (orden == QLatin1String("bd"))
            responder(s.bloquearBD(false) ? QStringLiteral("1") : QStringLiteral("0"));
        else if (orden.startsWith(QLatin1String("registro ")))
            responder(s.bloquearRegistro(clientes, orden.mid(9), QStringLiteral("Cliente ") + orden.mid(9),
                                         AccionBloqueo::Modificacion, false)
                          ? QStringLiteral("1")
                          : QStringLiteral("0"));
        else if (orden == QLatin1String("liberar"))
            responder(QString::number(s.desbloquearSesion()));
        else
            responder(QStringLiteral("?"));
    }
    return 0;
}

// Runs one order; an unexpected database failure answers "E" with the text on stderr.
QString registros(Database& db, const QString& orden, std::optional<Registro>& leido,
                  std::optional<Albaran>& albaran) {
    const QStringList p = orden.split(QLatin1Char(' '));
    RegistroStore store(db);
    if (p.at(0) == QLatin1String("leer")) {
        leido.reset();
        albaran.reset();
        if (p.at(1) == QLatin1String("Albaranes")) {
            albaran = AlbaranStore(db).cargar(p.at(2).toLongLong());
            return albaran ? QStringLiteral("1") : QStringLiteral("0");
        }
        leido = store.cargar(descriptorRequerido(p.at(1)), p.at(2).toLongLong());
        return leido ? QStringLiteral("1") : QStringLiteral("0");
    }
    if (p.at(0) == QLatin1String("guardar") && albaran) {
        // A note's salesperson: the note screen's own save, lines and totals included.
        albaran->idVendedor = p.at(2).toLongLong();
        const GuardadoAlbaran g = AlbaranStore(db).guardar(*albaran);
        if (g.resultado == ResultadoAlbaran::CambiadoEnOtroPuesto) return QStringLiteral("0");
        return g ? QStringLiteral("1") : QStringLiteral("E");
    }
    if (p.at(0) == QLatin1String("guardar")) {
        leido->setValor(p.at(1), p.at(2));
        try {
            Transaction tx = db.transaccion();
            store.actualizar(*leido);
            tx.commit();
            return QStringLiteral("1");
        } catch (const ErrorRegistroCambiado&) {
            return QStringLiteral("0");
        }
    }
    if (p.at(0) == QLatin1String("mascota")) {
        Registro m(descriptorRequerido(QStringLiteral("Mascotas")));
        m.setValor(QStringLiteral("IdCliente"), p.at(1).toLongLong());
        m.setValor(QStringLiteral("Nombre"), QStringLiteral("Toby"));
        try {
            Transaction tx = db.transaccion();
            store.crear(m);
            tx.commit();
            return QStringLiteral("1");
        } catch (const ErrorBD& e) {
            if (esErrorDeConcurrencia(e)) throw;
            return QStringLiteral("0");
        }
    }
    if (p.at(0) == QLatin1String("borrarcliente")) // as the client screen deletes
        return ClienteStore(db).eliminar(p.at(1).toLongLong()) == ClienteStore::Baja::Eliminado ? QStringLiteral("1")
                                                                                             : QStringLiteral("0");
    PuestosActivosStore puestos(db);
    if (p.at(0) == QLatin1String("entrar"))
        return puestos.entrar(p.at(1), QStringLiteral("u"), QDateTime::currentDateTime()).resultado ==
                       EntradaPuesto::Dentro
                   ? QStringLiteral("1")
                   : QStringLiteral("0");
    if (p.at(0) == QLatin1String("salir")) return puestos.quitar(p.at(1)) ? QStringLiteral("1") : QStringLiteral("0");
    if (p.at(0) == QLatin1String("monopuesto"))
        return puestos.desactivarMultipuesto() ? QStringLiteral("1") : QStringLiteral("0");
    return QStringLiteral("?");
}

int registros(Database& db) {
    std::optional<Registro> leido;
    std::optional<Albaran> albaran;
    while (const auto siguiente = siguienteOrden()) {
        const QString& orden = *siguiente;
        // A busy database (SQLite's single writer, a PostgreSQL lock wait cut short) is tried
        // again, as the program's own retries do.
        for (int intento = 1;; ++intento) {
            try {
                responder(registros(db, orden, leido, albaran));
                break;
            } catch (const ErrorBD& e) {
                if (!esErrorDeConcurrencia(e) || intento >= 50) {
                    std::fprintf(stderr, "%s\n", qPrintable(e.mensaje()));
                    responder(QStringLiteral("E"));
                    break;
                }
                QThread::msleep(5 * intento);
            }
        }
    }
    return 0;
}

int contador(Database& db, const QString& serie, int cuantos, int deshacerCada) {
    DialogosTrabajador d;
    ContadorStore c(db);
    int hechos = 0;
    for (int vuelta = 1; hechos < cuantos; ++vuelta) {
        // Like a document being saved: the number is taken inside the document's own
        // transaction, whose start may find the database busy and is then tried again.
        std::optional<qint64> n;
        bool deshecho = false;
        const bool seguir = reintentarNumeracion(d, QStringLiteral("Factura"), [&] {
            Transaction tx = db.transaccion();
            n = c.tomarSiguiente(serie, 200);
            if (deshacerCada > 0 && vuelta % deshacerCada == 0) {
                tx.rollback();
                deshecho = true;
                return;
            }
            tx.commit();
        }, 20);
        if (!seguir) return 2;
        if (deshecho) continue;
        responder(QString::number(*n));
        ++hechos;
    }
    responder(QStringLiteral("fin"));
    return 0;
}

int albaranes(Database& db, const QString& serie, int cuantos) {
    DialogosTrabajador d;
    AlbaranStore store(db);
    for (int hechos = 0; hechos < cuantos;) {
        Albaran a;
        a.serie = serie;
        a.fecha = QDate(2026, 11, 20);
        a.idCliente = 1;
        a.idVendedor = 1;
        LineaAlbaran l;
        l.concepto = QStringLiteral("Consulta");
        l.cantidad = 1;
        l.pvp = 30;
        l.idTipoIVA = 1;
        l.iva = 21;
        a.anadirLinea(l);
        // As the screen saves: the whole save is tried again while the counter is held.
        bool hecho = false;
        if (!reintentarNumeracion(d, QStringLiteral("Albarán"), [&] { hecho = static_cast<bool>(store.guardar(a)); }))
            return 2;
        if (!hecho) return 2;
        responder(QString::number(*a.numAlbaran));
        ++hechos;
    }
    responder(QStringLiteral("fin"));
    return 0;
}

// Quotes of client 1, each numbered as the screen numbers them.
int presupuestos(Database& db, int cuantos) {
    DialogosTrabajador d;
    PresupuestoStore store(db);
    for (int i = 0; i < cuantos; ++i) {
        Presupuesto p;
        p.documento.fecha = QDate(2026, 11, 20);
        p.documento.idCliente = 1;
        LineaAlbaran l;
        l.concepto = QStringLiteral("Consulta");
        l.pvp = 30;
        l.iva = 21;
        p.documento.anadirLinea(l);
        ResultadoPresupuesto r = ResultadoPresupuesto::Hecho;
        if (!reintentarNumeracion(d, QStringLiteral("Presupuesto"), [&] {
                Presupuesto copia = p;
                r = store.guardar(copia);
                p = copia;
            }) ||
            r != ResultadoPresupuesto::Hecho)
            return 2;
        responder(QString::number(*p.numero));
    }
    responder(QStringLiteral("fin"));
    return 0;
}

// Makes quote id into a note of series A: "1" when this process did it, "0" when another had.
// colgado: the conversion is left open inside a transaction until the process is killed.
int convertir(Database& db, qint64 id, bool colgado) {
    DialogosTrabajador d;
    PresupuestoStore store(db);
    auto p = store.cargar(id);
    if (!p) return 2;
    if (colgado) {
        Transaction tx = db.transaccion();
        responder(store.convertir(*p, QStringLiteral("A"), QDate(2026, 11, 20), QTime(10, 0)) == ResultadoPresupuesto::Hecho ? QStringLiteral("1")
                                                                                          : QStringLiteral("0"));
        for (;;)
            QThread::sleep(60);
    }
    ResultadoPresupuesto r = ResultadoPresupuesto::Hecho;
    if (!reintentarNumeracion(d, QStringLiteral("Albarán"), [&] {
            Presupuesto copia = *p;
            r = store.convertir(copia, QStringLiteral("A"), QDate(2026, 11, 20), QTime(10, 0));
        }))
        return 2;
    responder(r == ResultadoPresupuesto::Hecho ? QStringLiteral("1") : QStringLiteral("0"));
    return 0;
}

int colgado(Database& db, const QString& serie) {
    DialogosTrabajador d;
    Transaction tx = db.transaccion();
    const qint64 n = ContadorStore(db).tomarSiguiente(serie);
    responder(QString::number(n));
    for (;;)
        QThread::sleep(60);
}
} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList a = app.arguments();
    if (a.size() < 4) {
        std::fprintf(stderr, "uso: %s <sqlite|postgresql> <origen> <orden> ...\n", argv[0]);
        return 64;
    }
    try {
        auto db = a.at(1) == QLatin1String("sqlite") ? Database::abrirSQLite(a.at(2))
                                                     : Database::abrirPostgreSQL(a.at(2));
        const QString orden = a.at(3);
        if (orden == QLatin1String("bloqueos") && a.size() >= 5) return bloqueos(*db, a.at(4));
        if (orden == QLatin1String("contador") && a.size() >= 7)
            return contador(*db, a.at(4), a.at(5).toInt(), a.at(6).toInt());
        if (orden == QLatin1String("colgado") && a.size() >= 5) return colgado(*db, a.at(4));
        if (orden == QLatin1String("registros")) return registros(*db);
        if (orden == QLatin1String("presupuestos") && a.size() >= 5) return presupuestos(*db, a.at(4).toInt());
        if (orden == QLatin1String("convertir") && a.size() >= 5)
            return convertir(*db, a.at(4).toLongLong(), a.size() >= 6 && a.at(5) == QLatin1String("colgado"));
        if (orden == QLatin1String("albaranes") && a.size() >= 6)
            return albaranes(*db, a.at(4), a.at(5).toInt());
        std::fprintf(stderr, "orden desconocida: %s\n", qPrintable(orden));
        return 64;
    } catch (const ErrorBD& e) {
        std::fprintf(stderr, "%s\n", qPrintable(e.mensaje()));
        return 3;
    }
}
