#include "app/instalacion.h"

#include "data/reparacion.h"

#include <QCoreApplication>
#include <QDir>
#include <QSysInfo>

QString carpetaPrograma() {
    const QString dir = qEnvironmentVariable("PRAMELVIX_DIR");
    if (!dir.isEmpty()) return QDir(dir).absolutePath();
    return QCoreApplication::applicationDirPath();
}

QString nombrePuesto() {
    const QString puesto = qEnvironmentVariable("PRAMELVIX_PUESTO").trimmed();
    if (!puesto.isEmpty()) return puesto;
    return QSysInfo::machineHostName();
}

QString rutaNativa(const QString& ruta) {
    QString r = ruta.trimmed();
    r.replace(QLatin1Char('\\'), QLatin1Char('/'));
    while (r.size() > 1 && r.endsWith(QLatin1Char('/')))
        r.chop(1);
    return r;
}

ConfiguracionBD ConfiguracionBD::desdeIni(const IniFile& f) {
    ConfiguracionBD c;
    c.servidor = rutaNativa(f.valor(ini::INSTALACION, ini::SERVIDOR));
    if (f.valor(ini::INSTALACION, ini::MOTOR).compare(QLatin1String("POSTGRESQL"), Qt::CaseInsensitive) == 0)
        c.motor = Motor::PostgreSQL;
    c.conexion = f.valor(ini::INSTALACION, ini::CONEXION);
    return c;
}

QString ConfiguracionBD::ficheroSQLite() const {
    if (!ficheroAlternativo.isEmpty()) return ficheroAlternativo;
    return QDir(servidor).filePath(kNombreBaseDatos);
}

QString ConfiguracionBD::descripcion() const {
    return motor == Motor::SQLite ? ficheroSQLite()
                                  : QStringLiteral("PostgreSQL (") + conexion + QLatin1Char(')');
}
