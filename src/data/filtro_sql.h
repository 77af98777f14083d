#pragma once
// A WHERE clause built together with its bound values, so that they cannot drift apart:
//   FiltroSql f;
//   f.y(QStringLiteral("Serie = ?"), {serie});
//   db.ejecutar(QStringLiteral("SELECT ... FROM Albaranes") + f.sql(), f.valores);
// Only the program's own SQL fragments go into partes; every typed value is bound.
#include <QString>
#include <QStringList>
#include <QVariantList>

struct FiltroSql {
    QStringList partes;
    QVariantList valores;
    void y(const QString& sql, const QVariantList& v = {}) {
        partes << sql;
        valores << v;
    }
    QString sql() const {
        return partes.isEmpty() ? QString() : QStringLiteral(" WHERE ") + partes.join(QStringLiteral(" AND "));
    }
};

// A text made safe inside a LIKE pattern with ESCAPE '\': its '\', '%' and '_' match themselves.
inline QString escaparLike(const QString& texto) {
    QString r = texto;
    r.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    r.replace(QLatin1Char('%'), QStringLiteral("\\%"));
    r.replace(QLatin1Char('_'), QStringLiteral("\\_"));
    return r;
}
