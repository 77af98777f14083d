#pragma once
// The data-protection notice. Before a document is printed for a client, or a message sent to
// one, whose consent code is "2" (does not consent), the user is told and asked whether to go
// on. For a sending to many clients the notice lists the clients (and pets) who do not consent,
// and the user includes or excludes each one.
#include "core/dialogs.h"

#include <QList>
#include <optional>

inline const QString kTituloLopd = QStringLiteral("ATENCIÓN");
// Consent codes of Clientes.LOPD.
inline const QString kLopdSinInformar = QStringLiteral("0");
inline const QString kLopdConsiente = QStringLiteral("1");
inline const QString kLopdNoConsiente = QStringLiteral("2");

// The text of the notice; esDocumento chooses "la impresión de este documento" over "este envío".
QString textoAvisoLopd(const QString& cliente, bool esDocumento);

// Shows the notice (question, title "ATENCIÓN"). True when the user answers Yes and the
// printing or sending goes on; false when it is cancelled.
bool avisoLopd(Dialogs& dialogs, const QString& cliente, bool esDocumento);

// A row of a sending to many: a client, and the pet when the sending is about one.
struct DestinatarioLopd {
    qint64 IdCliente = 0;
    QString Cliente;
    std::optional<qint64> IdMascota;
    QString Mascota;
    QString LOPD; // the client's consent code
    bool incluir = true;
};

// The list variant's logic. The rows whose client does not consent are shown (avisados()),
// each starting excluded; the user ticks the ones to keep. aceptar() gives every row to send:
// the ones that need no notice plus the ticked ones, in their original order.
class AvisoLopdLista {
public:
    AvisoLopdLista(QList<DestinatarioLopd> destinatarios, bool esDocumento);

    // Whether any row needs the notice; when false, the sending goes on without a dialog.
    bool hayAviso() const { return !avisados_.isEmpty(); }
    QString titulo() const { return kTituloLopd; }
    // The heading over the list.
    QString texto() const;
    // The rows of clients that do not consent, as shown.
    const QList<DestinatarioLopd>& avisados() const { return avisados_; }
    void setIncluir(int fila, bool incluir);
    void incluirTodos(bool incluir);

    // The rows kept (Salir false).
    QList<DestinatarioLopd> aceptar() const;
    // The user cancelled the whole sending (Salir true).
    bool salir = false;

private:
    QList<DestinatarioLopd> todos_;
    QList<int> indices_; // position in todos_ of each shown row
    QList<DestinatarioLopd> avisados_;
    bool esDocumento_;
};
