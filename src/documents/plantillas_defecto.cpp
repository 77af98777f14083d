#include "documents/plantillas_defecto.h"

#include "documents/impresor_documentos.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

const QList<PlantillaPorDefecto>& plantillasPorDefecto() {
    static const QList<PlantillaPorDefecto> lista = {
        {grupos::ALBARANES, QStringLiteral("Albarán.html"), QStringLiteral(":/plantillas/albaran.html")},
        {grupos::NOTA_VENTA, QStringLiteral("Nota de venta.html"),
         QStringLiteral(":/plantillas/nota_venta.html")},
        {grupos::FACTURAS, QStringLiteral("Factura.html"), QStringLiteral(":/plantillas/factura.html")},
        {grupos::CLIENTES, QStringLiteral("Carta al cliente.html"),
         QStringLiteral(":/plantillas/carta_cliente.html")},
        {grupos::MASCOTAS, QStringLiteral("Carta sobre la mascota.html"),
         QStringLiteral(":/plantillas/carta_mascota.html")},
        {grupos::PLANES, QStringLiteral("Plan de salud.html"),
         QStringLiteral(":/plantillas/plan_salud.html")},
        {grupos::RECETAS, QStringLiteral("Receta.html"), QStringLiteral(":/plantillas/receta.html")},
        {grupos::PRESUPUESTOS, QStringLiteral("Presupuesto.html"),
         QStringLiteral(":/plantillas/presupuesto.html")},
        {grupos::INFORMES_VISITA, QStringLiteral("Informe de la visita.html"),
         QStringLiteral(":/plantillas/informe_visita.html")},
    };
    return lista;
}

QString textoPlantillaPorDefecto(const PlantillaPorDefecto& plantilla) {
    QFile f(plantilla.recurso);
    if (!f.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(f.readAll());
}

QString instalarPlantillasPorDefecto(const QString& carpetaDatos) {
    for (const PlantillaPorDefecto& p : plantillasPorDefecto()) {
        const QDir carpeta(QDir(carpetaDatos).filePath(QStringLiteral("Plantillas/") + p.grupo));
        if (!QDir().mkpath(carpeta.path()))
            return QStringLiteral("No se ha podido crear la carpeta '%1'.")
                .arg(QDir::toNativeSeparators(carpeta.path()));
        const QString destino = carpeta.filePath(p.fichero);
        if (QFileInfo::exists(destino)) continue;
        QFile origen(p.recurso);
        if (!origen.open(QIODevice::ReadOnly))
            return QStringLiteral("No se encuentra la plantilla '%1' en el programa.").arg(p.fichero);
        QSaveFile f(destino);
        if (!f.open(QIODevice::WriteOnly) || f.write(origen.readAll()) < 0 || !f.commit())
            return QStringLiteral("No se ha podido escribir la plantilla '%1': %2")
                .arg(QDir::toNativeSeparators(destino), f.errorString());
    }
    return {};
}
