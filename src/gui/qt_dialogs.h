#pragma once
// Message boxes, questions, file pickers and the progress text, drawn by Qt.
#include "core/dialogs.h"

#include <QPointer>

class QProgressDialog;
class QWidget;

class QtDialogs final : public Dialogs {
public:
    QtDialogs() = default;
    ~QtDialogs() override;
    // The window the boxes are centred on.
    void setPadre(QWidget* padre) { padre_ = padre; }

    void mostrar(Icono icono, const QString& titulo, const QString& texto) override;
    bool preguntar(Icono icono, const QString& titulo, const QString& texto) override;
    using Dialogs::preguntar;
    int elegir(const QString& titulo, const QString& texto, const QStringList& opciones) override;
    QString elegirFichero(const QString& titulo, const QString& filtro, const QString& carpeta) override;
    QString elegirFicheroGuardar(const QString& titulo, const QString& filtro,
                                 const QString& propuesto) override;
    void progreso(const QString& texto) override;

private:
    QPointer<QWidget> padre_;
    QProgressDialog* progreso_ = nullptr;
};
