// Delivery notes: pricing and totalling a 50-line note, and saving 10,000 notes of 5 lines
// on SQLite through the store (numbering, totals and every line's amounts, one transaction a
// note as the screen saves them), beside plain SQL inserts of the same rows in the same run.
//
//   bench_albaranes [notas, 10000 por defecto]
//
// The database is a new temporary SQLite file with the program's schema each run.
#include "core/dialogs.h"
#include "data/esquema.h"
#include "sales/albaran_store.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Twenty articles over three sections, and a client with a commercial file and a health plan
// with conditions at every level, so that every line goes through the whole price choice.
struct Catalogo {
    QList<ArticuloVenta> articulos;
    ContextoPrecios contexto;
};

Catalogo catalogoBench() {
    Catalogo c;
    const double ivas[] = {21, 10, 4};
    for (int i = 0; i < 20; ++i) {
        ArticuloVenta a;
        a.codigo = i + 1;
        a.descripcion = QStringLiteral("Artículo %1").arg(i + 1);
        a.pvp1 = 5.95 + i * 3.17;
        a.pvp2 = a.pvp1 * 0.95;
        a.pvp3 = a.pvp1 * 0.9;
        a.idTipoIVA = 1 + i % 3;
        a.porcentajeIVA = ivas[i % 3];
        a.seccion = 1 + i % 3;
        a.familia = 10 + i % 5;
        a.subfamilia = 100 + i % 7;
        c.articulos << a;
    }
    c.contexto.tarifa = QStringLiteral("TARIFA 2");
    c.contexto.dtoGeneral = 5;
    for (int i = 0; i < 10; ++i) {
        CondicionEspecial cond;
        if (i % 2)
            cond.IdArticulo = 1 + i * 2;
        else {
            cond.IdSeccion = 1 + i % 3;
            cond.IdFamilia = 10 + i % 5;
        }
        if (i % 3)
            cond.Precio = 4.5 + i;
        else
            cond.Tarifa = QStringLiteral("TARIFA 3");
        cond.Descuento = (i % 4) ? std::optional<double>(2.5 * i) : std::nullopt;
        (i < 5 ? c.contexto.condicionesCliente : c.contexto.condicionesPlan) << cond;
    }
    return c;
}

Albaran nota(const Catalogo& c, int lineas, int semilla) {
    Albaran a;
    a.serie = QStringLiteral("A");
    a.fecha = QDate(2026, 11, 2).addDays(semilla % 20);
    a.hora = QTime(10, semilla % 60);
    a.idCliente = 1 + semilla % 50;
    a.idVendedor = 1;
    a.setRetencion(semilla % 5 == 0 ? 15 : 0);
    for (int i = 0; i < lineas; ++i) {
        const ArticuloVenta& art = c.articulos.at((semilla + i * 7) % c.articulos.size());
        const PrecioElegido precio = elegirPrecio(art, c.contexto);
        if (precio.valido()) a.anadirLinea(lineaDeArticulo(art, precio, 1 + (i % 3)));
    }
    return a;
}

double mediana(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// The same rows written with statements prepared once: the floor the store is measured against.
void insertarDirecto(Database& db, const QList<Albaran>& notas, qint64 primerNumero) {
    QSqlQuery cab(db.conexion()), lin(db.conexion());
    cab.prepare(QStringLiteral(
        "INSERT INTO Albaranes (NumAlbaran, Serie, Fecha, Hora, IdCliente, IdMascota, IdVendedor, "
        "IdVisita, Retencion, Exento, TotalBruto, TotalBI, TotalIVA, TotalRetencion, Total, "
        "Pendiente, Cobrado) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
        "RETURNING IdAlbaran"));
    lin.prepare(QStringLiteral(
        "INSERT INTO LineasAlbaran (IdAlbaran, Orden, IdArticulo, Descripcion, Cantidad, Precio, "
        "Descuento, IdTipoIVA, PorcentajeIVA, Importe, Serie, PrecioSinIVA, BrutoSinIVA, "
        "BrutoConIVA, ImporteDto, TotalConIVA, BaseImponible, CuotaIVA, ImporteRetencion) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    qint64 numero = primerNumero;
    for (const Albaran& a : notas) {
        db.ejecutarDirecto(QStringLiteral("BEGIN IMMEDIATE"));
        const TotalesDocumento& t = a.totales();
        const QVariantList v = {++numero,
                                a.serie,
                                a.fecha.toString(Qt::ISODate),
                                a.hora.toString(QStringLiteral("HH:mm:ss")),
                                *a.idCliente,
                                QVariant(),
                                *a.idVendedor,
                                QVariant(),
                                a.retencion(),
                                0,
                                t.bruto(),
                                t.baseImponible(),
                                t.iva(),
                                t.retencion(),
                                t.total(),
                                t.total(),
                                0};
        for (int i = 0; i < v.size(); ++i)
            cab.bindValue(i, v.at(i));
        if (!cab.exec() || !cab.next()) qFatal("%s", qPrintable(cab.lastError().text()));
        const qlonglong id = cab.value(0).toLongLong();
        cab.finish();
        int orden = 0;
        for (const LineaAlbaran& l : a.lineas()) {
            const ImportesLinea& i = l.importes;
            const QVariantList w = {id,
                                    ++orden,
                                    *l.idArticulo,
                                    l.concepto,
                                    l.cantidad,
                                    l.pvp,
                                    l.descuento,
                                    *l.idTipoIVA,
                                    l.iva,
                                    i.total,
                                    QVariant(),
                                    i.precio,
                                    i.brutoSinIVA,
                                    i.brutoConIVA,
                                    i.importeDto,
                                    i.totalConIVA,
                                    i.base,
                                    i.cuotaIVA,
                                    i.retencion};
            for (int k = 0; k < w.size(); ++k)
                lin.bindValue(k, w.at(k));
            if (!lin.exec()) qFatal("%s", qPrintable(lin.lastError().text()));
        }
        db.ejecutarDirecto(QStringLiteral("COMMIT"));
    }
}
} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int cuantas = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 10000;
    const Catalogo c = catalogoBench();

    // 1. Pricing and totalling a note of 50 lines.
    std::vector<double> us;
    double control = 0;
    for (int r = 0; r < 2000; ++r) {
        QElapsedTimer t;
        t.start();
        const Albaran a = nota(c, 50, r);
        us.push_back(static_cast<double>(t.nsecsElapsed()) / 1e3);
        control += a.totales().total();
    }
    std::printf(
        "Precio y totales de un albarán de 50 líneas: mediana %.1f µs (2.000 albaranes; control %.2f)\n",
        mediana(us), control);

    // 2. Saving notes of 5 lines, through the store and by plain SQL, in the same run, once
    //    with the durable commit the program uses (synchronous=FULL: a committed note survives
    //    a power cut) and once with synchronous=NORMAL, to show what durability costs.
    QList<Albaran> notas;
    for (int i = 0; i < cuantas; ++i)
        notas << nota(c, 5, i);
    std::printf("Guardar %d albaranes de 5 líneas (SQLite, una transacción por albarán):\n", cuantas);
    for (const bool segura : {true, false}) {
        QTemporaryDir dir;
        auto db = Database::abrirSQLite(dir.filePath(QStringLiteral("bench.sqlite")), true);
        migrarEsquema(*db);
        db->fijarEscrituraSegura(segura);
        for (int id = 1; id <= 50; ++id)
            db->ejecutarCambio(QStringLiteral("INSERT INTO Clientes (IdCliente, Nombre) VALUES (?, ?)"),
                               {id, QStringLiteral("Cliente %1").arg(id)});
        AlbaranStore store(*db);
        QElapsedTimer t;
        t.start();
        for (Albaran a : notas)
            if (!store.guardar(a)) qFatal("no se guardó");
        const double msStore = static_cast<double>(t.nsecsElapsed()) / 1e6;
        t.restart();
        insertarDirecto(*db, notas, 1000000);
        const double msDirecto = static_cast<double>(t.nsecsElapsed()) / 1e6;
        std::printf(" synchronous=%s\n", segura ? "FULL (el programa)" : "NORMAL");
        std::printf("  AlbaranStore::guardar  %9.0f ms  %8.0f albaranes/s\n", msStore, cuantas * 1000.0 / msStore);
        std::printf("  SQL directo            %9.0f ms  %8.0f albaranes/s\n", msDirecto,
                    cuantas * 1000.0 / msDirecto);
        std::printf("  relación store/directo %9.2f\n", msStore / msDirecto);
    }
    return 0;
}
