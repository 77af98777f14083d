#include "app/chat.h"

#include <QStringDecoder>
#include <QUdpSocket>

LecturaChat leerDatagramaChat(const QByteArray& datos) {
    LecturaChat l;
    if (datos.size() > kTamanyoMaximoChat) {
        l.numero = 1;
        l.descripcion = QStringLiteral("mensaje demasiado largo");
        return l;
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString texto = utf8.decode(datos);
    if (utf8.hasError()) {
        l.numero = 2;
        l.descripcion = QStringLiteral("el mensaje no es texto válido");
        return l;
    }
    const QStringList partes = texto.split(QLatin1Char('\t'));
    if (partes.size() != 3 || partes.at(0).trimmed().isEmpty()) {
        l.numero = 3;
        l.descripcion = QStringLiteral("formato de mensaje desconocido");
        return l;
    }
    l.mensaje = MensajeChat{partes.at(0).trimmed(), partes.at(1).trimmed(), partes.at(2)};
    return l;
}

QByteArray datagramaChat(const MensajeChat& m) {
    return (m.puesto + QLatin1Char('\t') + m.usuario + QLatin1Char('\t') + m.texto).toUtf8();
}

ChatPuesto::ChatPuesto(Dialogs& dialogs, QObject* padre)
    : QObject(padre), d_(dialogs), socket_(new QUdpSocket(this)) {
    connect(socket_, &QUdpSocket::readyRead, this, &ChatPuesto::leer);
}

bool ChatPuesto::escuchar(quint16 puerto) {
    if (puerto != 0 && socket_->bind(QHostAddress::AnyIPv4, puerto)) return true;
    d_.avisar(QStringLiteral("¡Atención!"),
              QStringLiteral(
                  "No se ha podido inicializar 'Conversar entre usuarios'. Posiblemente el Puerto UDP ") +
                  QStringLiteral("esté siendo usado por otra aplicación. Consulte con un Administrador."));
    return false;
}

bool ChatPuesto::escuchando() const {
    return socket_->state() == QAbstractSocket::BoundState;
}

quint16 ChatPuesto::puerto() const {
    return socket_->localPort();
}

void ChatPuesto::leer() {
    while (socket_->hasPendingDatagrams()) {
        QByteArray datos(
            static_cast<int>(std::min<qint64>(socket_->pendingDatagramSize(), kTamanyoMaximoChat + 1)),
            Qt::Uninitialized);
        const qint64 n = socket_->readDatagram(datos.data(), datos.size());
        if (n < 0) continue;
        datos.truncate(static_cast<int>(n));
        const LecturaChat l = leerDatagramaChat(datos);
        if (l.mensaje) {
            emit mensajeRecibido(*l.mensaje);
            continue;
        }
        // A flood of bad datagrams must not bury the user under boxes: one notice a minute.
        const QDateTime ahora = QDateTime::currentDateTimeUtc();
        if (ultimoAviso_.isValid() && ultimoAviso_.secsTo(ahora) < 60) continue;
        ultimoAviso_ = ahora;
        d_.avisar(QStringLiteral("¡Atención!"), QStringLiteral("Error nº ") + QString::number(l.numero) +
                                                    QStringLiteral(" ('") + l.descripcion +
                                                    QStringLiteral("') en wsChat_DataArrival: '") +
                                                    QString::fromUtf8(datos.left(200)) + QLatin1Char('\''));
    }
}
