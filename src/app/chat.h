#pragma once
// The workstation chat: listens on the UDP port of the setting PUERTO UDP CHAT for short
// messages from other workstations. A datagram is UTF-8 text "workstation<TAB>user<TAB>text".
#include "core/dialogs.h"

#include <QDateTime>
#include <QObject>

class QUdpSocket;

struct MensajeChat {
    QString puesto;
    QString usuario;
    QString texto;
};

// Reads one datagram; an empty optional with numero/descripcion set when it is not valid.
struct LecturaChat {
    std::optional<MensajeChat> mensaje;
    int numero = 0;
    QString descripcion;
};
LecturaChat leerDatagramaChat(const QByteArray& datos);
QByteArray datagramaChat(const MensajeChat& m);

inline constexpr int kTamanyoMaximoChat = 4096;

class ChatPuesto : public QObject {
    Q_OBJECT
public:
    ChatPuesto(Dialogs& dialogs, QObject* padre = nullptr);
    // Starts listening; on failure tells the user and returns false (the program goes on).
    bool escuchar(quint16 puerto);
    bool escuchando() const;
    quint16 puerto() const;

signals:
    void mensajeRecibido(const MensajeChat& mensaje);

private:
    void leer();
    Dialogs& d_;
    QUdpSocket* socket_;
    QDateTime ultimoAviso_;
};
