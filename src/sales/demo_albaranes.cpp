#include "sales/demo_albaranes.h"

#include "core/dialogs.h"
#include "sales/albaran_store.h"

#include <QSqlQuery>

namespace {} // namespace

int cargarAlbaranesDemo(Database& db, const QString& serie, const QDate& hoy, int cuantos) {
    AlbaranStore store(db);
    QList<qint64> articulos;
    QSqlQuery qa =
        db.ejecutar(QStringLiteral("SELECT ArtCodArticulo FROM Articulos ORDER BY ArtCodArticulo"));
    while (qa.next())
        articulos << qa.value(0).toLongLong();
    QList<std::pair<qint64, qint64>> clientes; // client and one of its pets
    QSqlQuery qc =
        db.ejecutar(QStringLiteral("SELECT c.IdCliente, MIN(m.IdMascota) FROM Clientes c JOIN Mascotas m "
                                   "ON m.IdCliente = c.IdCliente GROUP BY c.IdCliente ORDER BY c.IdCliente"));
    while (qc.next() && clientes.size() < cuantos)
        clientes << std::pair{qc.value(0).toLongLong(), qc.value(1).toLongLong()};
    const auto vendedores = store.vendedores();
    if (articulos.isEmpty() || clientes.isEmpty() || vendedores.isEmpty()) return 0;

    DialogosMudos dialogos;
    int creados = 0;
    Transaction tr = db.transaccion();
    for (int i = 0; i < clientes.size(); ++i) {
        const auto cliente = store.cliente(clientes.at(i).first);
        const auto mascota = store.mascota(clientes.at(i).second);
        if (!cliente) continue;
        Albaran a;
        a.serie = serie;
        a.fecha = hoy.addDays(-2 * (clientes.size() - i));
        a.hora = QTime(9 + i % 10, (i * 17) % 60);
        a.idCliente = cliente->id;
        a.idMascota = clientes.at(i).second;
        a.idVendedor = vendedores.at(i % vendedores.size()).id;
        ContextoPrecios ctx;
        ctx.tarifa = cliente->tarifa;
        ctx.dtoGeneral = cliente->dtoGeneral;
        ctx.idTipoIVACliente = cliente->idTipoIVA;
        ctx.porcentajeIVACliente = cliente->porcentajeIVA;
        ctx.condicionesCliente = store.condicionesCliente(cliente->id);
        if (mascota && mascota->planEnVigor(a.fecha))
            ctx.condicionesPlan = store.condicionesPlan(*mascota->idPlanSalud);
        // A consultation, and one or two other articles.
        const int lineas = 1 + i % 3;
        for (int n = 0; n < lineas; ++n) {
            const auto art = store.articulo(articulos.at((i + n * 2) % articulos.size()));
            if (!art) continue;
            const PrecioElegido precio = elegirPrecio(*art, ctx);
            if (precio.valido()) a.anadirLinea(lineaDeArticulo(*art, precio, n == 2 ? 2 : 1));
        }
        if (!a.lineas().isEmpty() && store.guardar(a)) ++creados;
    }
    tr.commit();
    return creados;
}
