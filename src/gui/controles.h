#pragma once
// Small builders the windows share: a push button named after its command, a flat list with
// its column headings, and the key stored in a drop-down's chosen entry.
#include <QComboBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <optional>

inline QPushButton* boton(const QString& nombre, const QString& texto) {
    auto* b = new QPushButton(texto);
    b->setObjectName(nombre);
    return b;
}

inline QTreeWidget* listaPlana(const QString& nombre, const QStringList& columnas) {
    auto* l = new QTreeWidget;
    l->setObjectName(nombre);
    l->setHeaderLabels(columnas);
    l->setRootIsDecorated(false);
    l->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    return l;
}

// The key of the entry chosen; none for the blank entry.
inline std::optional<qint64> claveElegida(const QComboBox* c) {
    const QVariant v = c->currentData();
    if (!v.isValid() || v.isNull()) return std::nullopt;
    return v.toLongLong();
}
