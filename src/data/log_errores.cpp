#include "data/log_errores.h"

#include "core/formatos.h"
#include "data/registro.h"

void LogErroresStore::anotar(const QString& clave, const QDateTime& momento, const QString& puesto,
                             const QString& usuario) {
    db_.ejecutar(
        QStringLiteral("INSERT INTO LogErrores (Clave, Fecha, Hora, Puesto, Usuario) VALUES (?, ?, ?, ?, ?)"),
        {clave, momento.date(), momento.time(), puesto, usuario});
}

QList<EntradaLog> LogErroresStore::buscar(const QString& clave) {
    QSqlQuery q = db_.ejecutar(QStringLiteral("SELECT IdLog, Clave, Fecha, Hora, Puesto, Usuario FROM "
                                              "LogErrores WHERE Clave = ? ORDER BY IdLog"),
                               {clave});
    QList<EntradaLog> lista;
    while (q.next()) {
        EntradaLog e;
        e.id = q.value(0).toLongLong();
        e.clave = q.value(1).toString();
        e.fecha = valorDesdeBD(TipoColumna::Fecha, q.value(2)).toDate();
        e.hora = valorDesdeBD(TipoColumna::Hora, q.value(3)).toTime();
        e.puesto = q.value(4).toString();
        e.usuario = q.value(5).toString();
        lista << e;
    }
    return lista;
}

void LogErroresStore::borrar(qint64 id) {
    db_.ejecutar(QStringLiteral("DELETE FROM LogErrores WHERE IdLog = ?"), {id});
}

QString informeFacturaNoCreada(const QDate& fecha, const QTime& hora, const QString& puesto,
                               const QString& usuario, const QString& origen) {
    return QStringList{QStringLiteral("Error detectado al crear una factura."),
                       QStringLiteral("Fecha  : ") + formatoFecha(fecha),
                       QStringLiteral("Hora   : ") + formatoHora(hora),
                       QStringLiteral("Puesto : ") + puesto,
                       QStringLiteral("Usuario: ") + usuario,
                       QStringLiteral("Origen : ") + origen}
        .join(QLatin1Char('\n'));
}
