// Time of the client search on a clinic of 100,000 clients and about 250,000 pets (SQLite),
// beside the best hand-written SQL for the same question, in the same run.
//
//   bench_busqueda_clientes [base de datos en caché] [repeticiones, 25 por defecto]
//
// The database is made with the synthetic data generator the first time and kept at the
// path given (default: bench_busqueda_clientes.sqlite in the temporary folder); later runs
// reuse it. Each search runs once to warm up, then the given number of times, each time
// with another input taken from the data (names, phones, chips, pet names); the table shows
// the median and the 95th percentile in milliseconds and the ratio of the medians.
#include "clients/cliente_busqueda_store.h"
#include "clients/generador.h"
#include "data/esquema.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {
constexpr int kClientes = 100000;
constexpr int kLimite = 501;

struct Muestra {
    QString apellido;      // first word of a client's name
    QString fragmento;     // four letters from the middle of a name
    QString telefono;      // a mobile or a landline
    QString chip;          // a pet's chip
    QString mascota;       // first three letters of a pet's name
    QString apellidoDueno; // first word of that pet's owner
};

struct Medida {
    double mediana = 0, p95 = 0;
};

Medida medir(int repeticiones, const std::function<int(int)>& una) {
    una(0); // warm-up
    std::vector<double> ms;
    for (int i = 0; i < repeticiones; ++i) {
        QElapsedTimer t;
        t.start();
        const int filas = una(i);
        ms.push_back(static_cast<double>(t.nsecsElapsed()) / 1e6);
        if (filas < 0) std::fprintf(stderr, "sin filas\n");
    }
    std::sort(ms.begin(), ms.end());
    const auto at = [&](double q) {
        return ms[std::min(ms.size() - 1, static_cast<size_t>(q * (ms.size() - 1) + 0.5))];
    };
    return {at(0.5), at(0.95)};
}

int leer(QSqlQuery& q) {
    int n = 0;
    while (q.next()) {
        for (int c = 0; c < 10; ++c)
            q.value(c).toString();
        ++n;
    }
    return n;
}

QString desde(const QString& s) {
    return s;
}
QString hasta(const QString& s) {
    return s + QString::fromUcs4(U"\U0010FFFF");
}

const QString kSelect =
    QStringLiteral("SELECT c.IdCliente, c.Nombre, c.DNI, c.Direccion, c.CodigoPostal, c.Poblacion, "
                   "c.Provincia, c.EMail, c.Clinica, c.FechaBaja FROM Clientes c ");
} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QString ruta = argc > 1 ? QString::fromLocal8Bit(argv[1])
                                  : QDir::temp().filePath(QStringLiteral("bench_busqueda_clientes.sqlite"));
    const int repeticiones = argc > 2 ? std::max(20, QString::fromLocal8Bit(argv[2]).toInt()) : 25;
    try {
        const bool existe = QFileInfo::exists(ruta);
        auto db = Database::abrirSQLite(ruta, true);
        migrarEsquema(*db);
        const qint64 hay = db->valor(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toLongLong();
        if (!existe || hay < kClientes) {
            std::printf("Generando %d clientes en %s...\n", kClientes - static_cast<int>(hay),
                        qPrintable(ruta));
            QElapsedTimer t;
            t.start();
            const auto r = generarClientes(*db, kClientes - static_cast<int>(hay), 1);
            db->ejecutarDirecto(QStringLiteral("ANALYZE"));
            std::printf("  %lld clientes y %lld mascotas en %.1f s\n", r.clientes, r.mascotas,
                        t.elapsed() / 1000.0);
        }
        std::printf("Base de datos: %s (%lld clientes, %lld mascotas), %d repeticiones\n\n", qPrintable(ruta),
                    db->valor(QStringLiteral("SELECT COUNT(*) FROM Clientes")).toLongLong(),
                    db->valor(QStringLiteral("SELECT COUNT(*) FROM Mascotas")).toLongLong(), repeticiones);

        // Inputs taken from the data itself, at random but the same every run.
        QRandomGenerator azar(42);
        const qint64 maxMascota =
            db->valor(QStringLiteral("SELECT MAX(IdMascota) FROM Mascotas")).toLongLong();
        std::vector<Muestra> m;
        while (static_cast<int>(m.size()) < repeticiones) {
            QSqlQuery q = db->ejecutar(
                QStringLiteral(
                    "SELECT m.Chip, m.Nombre, c.Nombre, COALESCE(c.Movil, c.Telefono1) FROM Mascotas m "
                    "JOIN Clientes c ON c.IdCliente = m.IdCliente WHERE m.IdMascota >= ? AND "
                    "m.Chip IS NOT NULL AND c.FechaBaja IS NULL AND (m.Baja IS NULL OR m.Baja = ?) "
                    "AND COALESCE(c.Movil, c.Telefono1) IS NOT NULL ORDER BY m.IdMascota LIMIT 1"),
                {static_cast<qint64>(azar.bounded(static_cast<quint64>(maxMascota))), false});
            if (!q.next()) continue;
            const QString dueno = normalizarBusqueda(q.value(2).toString());
            m.push_back({dueno.section(QLatin1Char(' '), 0, 0).toLower(),
                         dueno.mid(dueno.size() / 2, 4).toLower(), q.value(3).toString(),
                         q.value(0).toString(), normalizarBusqueda(q.value(1).toString()).left(3).toLower(),
                         dueno.section(QLatin1Char(' '), 0, 0)});
        }

        ClienteBusquedaStore store(*db);
        auto busqueda = [&](const std::function<void(CriteriosBusquedaCliente&, const Muestra&)>& poner) {
            return [&, poner](int i) {
                CriteriosBusquedaCliente c;
                poner(c, m[static_cast<size_t>(i) % m.size()]);
                return static_cast<int>(store.buscar(c, kLimite).size());
            };
        };
        auto sql = [&](const QString& texto, const std::function<QVariantList(const Muestra&)>& valores) {
            return [&, texto, valores](int i) {
                QSqlQuery q = db->ejecutar(texto, valores(m[static_cast<size_t>(i) % m.size()]));
                return leer(q);
            };
        };
        const QString activas = QStringLiteral("(m.Baja IS NULL OR m.Baja = ?)");
        struct Caso {
            const char* nombre;
            std::function<int(int)> buscar, aMano;
        };
        const std::vector<Caso> casos = {
            {"Nombre al comienzo", busqueda([](auto& c, const auto& s) { c.nombre = s.apellido; }),
             sql(kSelect + QStringLiteral(
                               "WHERE c.NombreBusqueda >= ? AND c.NombreBusqueda < ? AND c.FechaBaja IS NULL "
                               "ORDER BY c.NombreBusqueda LIMIT 501"),
                 [](const Muestra& s) {
                     return QVariantList{desde(s.apellido.toUpper()), hasta(s.apellido.toUpper())};
                 })},
            {"Nombre en cualquier parte", busqueda([](auto& c, const auto& s) {
                 c.nombre = s.fragmento;
                 c.modoNombre = ModoNombre::Contiene;
             }),
             sql(kSelect + QStringLiteral("WHERE c.NombreBusqueda LIKE ? AND c.FechaBaja IS NULL "
                                          "ORDER BY c.NombreBusqueda LIMIT 501"),
                 [](const Muestra& s) {
                     return QVariantList{QLatin1Char('%') + s.fragmento.toUpper() + QLatin1Char('%')};
                 })},
            {"Teléfono", busqueda([](auto& c, const auto& s) { c.telefono = s.telefono; }),
             sql(kSelect + QStringLiteral(
                               "WHERE c.IdCliente IN (SELECT IdCliente FROM Clientes WHERE Telefono1 = ? "
                               "UNION ALL SELECT IdCliente FROM Clientes WHERE Telefono2 = ? "
                               "UNION ALL SELECT IdCliente FROM Clientes WHERE Telefono3 = ? "
                               "UNION ALL SELECT IdCliente FROM Clientes WHERE Movil = ?) "
                               "AND c.FechaBaja IS NULL ORDER BY c.NombreBusqueda LIMIT 501"),
                 [](const Muestra& s) {
                     return QVariantList{s.telefono, s.telefono, s.telefono, s.telefono};
                 })},
            {"Chip", busqueda([](auto& c, const auto& s) { c.chip = s.chip; }),
             sql(kSelect +
                     QStringLiteral("JOIN Mascotas m ON m.IdCliente = c.IdCliente WHERE m.Chip = ? AND ") +
                     activas + QStringLiteral(" AND c.FechaBaja IS NULL ORDER BY c.NombreBusqueda LIMIT 501"),
                 [](const Muestra& s) {
                     return QVariantList{s.chip, false};
                 })},
            {"Nombre de mascota", busqueda([](auto& c, const auto& s) { c.nombreMascota = s.mascota; }),
             sql(kSelect +
                     QStringLiteral("WHERE c.IdCliente IN (SELECT m.IdCliente FROM Mascotas m WHERE "
                                    "m.NombreBusqueda >= ? AND m.NombreBusqueda < ? AND ") +
                     activas +
                     QStringLiteral(") AND c.FechaBaja IS NULL ORDER BY c.NombreBusqueda LIMIT 501"),
                 [](const Muestra& s) {
                     return QVariantList{desde(s.mascota.toUpper()), hasta(s.mascota.toUpper()), false};
                 })},
            {"Cliente + mascota", busqueda([](auto& c, const auto& s) {
                 c.nombre = s.apellidoDueno;
                 c.nombreMascota = s.mascota;
             }),
             sql(kSelect +
                     QStringLiteral(
                         "WHERE c.NombreBusqueda >= ? AND c.NombreBusqueda < ? AND c.FechaBaja IS NULL "
                         "AND EXISTS (SELECT 1 FROM Mascotas m WHERE m.IdCliente = c.IdCliente AND "
                         "m.NombreBusqueda >= ? AND m.NombreBusqueda < ? AND ") +
                     activas + QStringLiteral(") ORDER BY c.NombreBusqueda LIMIT 501"),
                 [](const Muestra& s) {
                     return QVariantList{desde(s.apellidoDueno), hasta(s.apellidoDueno),
                                         desde(s.mascota.toUpper()), hasta(s.mascota.toUpper()), false};
                 })},
        };
        std::printf(
            "| Búsqueda | mediana (ms) | p95 (ms) | SQL a mano mediana (ms) | p95 (ms) | relación |\n");
        std::printf("|---|---:|---:|---:|---:|---:|\n");
        for (const Caso& c : casos) {
            const Medida b = medir(repeticiones, c.buscar);
            const Medida s = medir(repeticiones, c.aMano);
            std::printf("| %s | %.2f | %.2f | %.2f | %.2f | %.2f |\n", c.nombre, b.mediana, b.p95, s.mediana,
                        s.p95, s.mediana > 0 ? b.mediana / s.mediana : 0.0);
        }
    } catch (const ErrorBD& e) {
        std::fprintf(stderr, "%s\n", qPrintable(e.mensaje()));
        return 1;
    }
    return 0;
}
