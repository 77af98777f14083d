#pragma once
// The templates every installation starts with, kept in the program and copied into the
// data folder by the installer, in Plantillas/: DocAlbaranes/Albarán.html, NotaVenta/Nota de
// venta.html, DocFormFra/Factura.html, DocClientes/Carta al cliente.html, DocMas/Carta sobre la
// mascota.html, DocPlanes/Plan de salud.html, Recetas/Receta.html (two prescriptions on one
// page) and VisInf/Informe de la visita.html.
#include <QList>
#include <QString>

struct PlantillaPorDefecto {
    QString grupo;   // the document group (its folder)
    QString fichero; // the file name, which names the format
    QString recurso; // where the program keeps it
};

const QList<PlantillaPorDefecto>& plantillasPorDefecto();

// The template's text as the program keeps it.
QString textoPlantillaPorDefecto(const PlantillaPorDefecto& plantilla);

// Copies the default templates into <carpetaDatos>/Plantillas/<group>/, making the folders.
// A file the clinic already has under the same name is kept as it is. Empty text on
// success, else the reason.
QString instalarPlantillasPorDefecto(const QString& carpetaDatos);
