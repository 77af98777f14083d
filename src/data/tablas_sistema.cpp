#include "data/tablas.h"

namespace {
using T = TipoColumna;

DescriptorTabla parametrosGlobales() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("Parametros");
    t.descTabla = QStringLiteral("Parámetro");
    t.columnaS = {col(QStringLiteral("Clave"), T::Texto, QStringLiteral("Clave"), 60, false),
                  col(QStringLiteral("Valor"), T::Memo, QStringLiteral("Valor"))};
    t.clave = {QStringLiteral("Clave")};
    t.columnaTexto = QStringLiteral("Clave");
    return t;
}

DescriptorTabla usuarios() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("Usuarios");
    t.descTabla = QStringLiteral("Usuario");
    t.columnaS = {col(QStringLiteral("IdUsuario"), T::Texto, QStringLiteral("Id. Usuario"), 20, false),
                  col(QStringLiteral("Nombre"), T::Texto, QStringLiteral("Nombre"), 60),
                  col(QStringLiteral("Salt"), T::Texto, QStringLiteral("Salt"), 15),
                  col(QStringLiteral("Hash"), T::Texto, QStringLiteral("Hash"), 255),
                  colLista(QStringLiteral("TipoUsuario"), QStringLiteral("Tipo de usuario"),
                           {QStringLiteral("ADMINISTRADOR"), QStringLiteral("USUARIO")},
                           {QStringLiteral("Administrador"), QStringLiteral("Usuario")}, false)};
    t.clave = {QStringLiteral("IdUsuario")};
    t.columnaTexto = QStringLiteral("Nombre");
    return t;
}

DescriptorTabla puestosActivos() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("PuestosActivos");
    t.descTabla = QStringLiteral("Puesto activo");
    t.columnaS = {col(QStringLiteral("Puesto"), T::Texto, QStringLiteral("Puesto"), 64, false),
                  col(QStringLiteral("Usuario"), T::Texto, QStringLiteral("Usuario"), 20),
                  col(QStringLiteral("Fecha"), T::Fecha, QStringLiteral("Fecha")),
                  col(QStringLiteral("Hora"), T::Hora, QStringLiteral("Hora")),
                  // The operating-system user running the program there.
                  col(QStringLiteral("UsuarioSistema"), T::Texto, QStringLiteral("Usuario del sistema"), 64,
                      true, 4)};
    t.clave = {QStringLiteral("Puesto")};
    t.columnaTexto = QStringLiteral("Puesto");
    return t;
}

// Reports left by an operation that failed on a workstation, read back at its next start.
DescriptorTabla logErrores() {
    DescriptorTabla t;
    t.tabla = QStringLiteral("LogErrores");
    t.descTabla = QStringLiteral("Registro de errores");
    t.columnaS = {col(QStringLiteral("IdLog"), T::Autonumerico, QStringLiteral("Id."), 0, false),
                  col(QStringLiteral("Clave"), T::Texto, QStringLiteral("Clave"), 120, false),
                  col(QStringLiteral("Fecha"), T::Fecha, QStringLiteral("Fecha")),
                  col(QStringLiteral("Hora"), T::Hora, QStringLiteral("Hora")),
                  col(QStringLiteral("Puesto"), T::Texto, QStringLiteral("Puesto"), 64),
                  col(QStringLiteral("Usuario"), T::Texto, QStringLiteral("Usuario"), 20)};
    t.clave = {QStringLiteral("IdLog")};
    t.columnaTexto = QStringLiteral("Clave");
    t.indices = {{QStringLiteral("IX_LogErrores_Clave"), {QStringLiteral("Clave")}, false, 1}};
    return t;
}
} // namespace

QList<DescriptorTabla> tablasSistema() {
    return {parametrosGlobales(), usuarios(), puestosActivos(), logErrores()};
}
