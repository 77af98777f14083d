#include "clients/aviso_lopd.h"

QString textoAvisoLopd(const QString& cliente, bool esDocumento) {
    return QStringLiteral("El cliente ") + cliente +
           QStringLiteral(" ha indicado expresamente su NO CONSENTIMIENTO para el envío de información "
                          "amparándose en la Ley Orgánica de Protección de Datos.") +
           QLatin1Char('\n') + QStringLiteral("Si desea continuar con ") +
           (esDocumento ? QStringLiteral("la impresión de este documento") : QStringLiteral("este envío")) +
           QStringLiteral(" pulse sobre 'Sí', para cancelar ") + QStringLiteral(" pulse sobre 'No'.");
}

bool avisoLopd(Dialogs& dialogs, const QString& cliente, bool esDocumento) {
    return dialogs.preguntar(Icono::Exclamacion, kTituloLopd, textoAvisoLopd(cliente, esDocumento));
}

AvisoLopdLista::AvisoLopdLista(QList<DestinatarioLopd> destinatarios, bool esDocumento)
    : todos_(std::move(destinatarios)), esDocumento_(esDocumento) {
    for (int i = 0; i < todos_.size(); ++i) {
        if (todos_.at(i).LOPD.trimmed() != kLopdNoConsiente) continue;
        DestinatarioLopd d = todos_.at(i);
        d.incluir = false;
        indices_ << i;
        avisados_ << d;
    }
}

QString AvisoLopdLista::texto() const {
    return QStringLiteral("Los siguientes clientes han indicado expresamente su NO CONSENTIMIENTO para el "
                          "envío de información amparándose en la Ley Orgánica de Protección de Datos.") +
           QLatin1Char('\n') + QStringLiteral("Marque los que desea incluir en ") +
           (esDocumento_ ? QStringLiteral("la impresión de este documento") : QStringLiteral("este envío")) +
           QStringLiteral(" y pulse sobre 'Continuar'; para cancelar pulse sobre 'Cancelar'.");
}

void AvisoLopdLista::setIncluir(int fila, bool incluir) {
    if (fila >= 0 && fila < avisados_.size()) avisados_[fila].incluir = incluir;
}

void AvisoLopdLista::incluirTodos(bool incluir) {
    for (auto& d : avisados_)
        d.incluir = incluir;
}

QList<DestinatarioLopd> AvisoLopdLista::aceptar() const {
    QList<DestinatarioLopd> kept;
    if (salir) return kept;
    for (int i = 0; i < todos_.size(); ++i) {
        const int fila = static_cast<int>(indices_.indexOf(i));
        if (fila >= 0) {
            if (avisados_.at(fila).incluir) kept << avisados_.at(fila);
        } else {
            kept << todos_.at(i);
        }
    }
    return kept;
}
