#pragma once
// Document templates: HTML with named fields, filled with a document's data.
//
//   {{campo}}                the field's value, HTML-escaped (a line break becomes <br>);
//                            a field the document does not give prints nothing
//   {{#Lineas}}...{{/Lineas}} repeated once per row of the block "Lineas"; inside, a name is
//                            looked up in the row first and then in the document, so a row
//                            can be a <tr> of a table: <table>{{#Lineas}}<tr>...</tr>{{/Lineas}}
//   {{?campo}}...{{/campo}}  shown only when the field is not blank, or (for a block's name)
//                            when the block has rows
//   {{^campo}}...{{/campo}}  shown only when it is blank (or the block has no rows)
//
// Names are letters, digits, '_' and '.'; blanks inside the braces are allowed
// ("{{ total }}"). Any other "{{" is printed as it stands.
#include <QHash>
#include <QList>
#include <QPair>
#include <QString>

// name=value items; the values are texts already formatted for printing. When a name
// appears twice the first one counts.
using CamposDocumento = QList<QPair<QString, QString>>;

struct DatosDocumento {
    QString tipo; // "ALB" delivery note, "FRA" invoice...
    CamposDocumento campos;
    QHash<QString, QList<CamposDocumento>> filas; // repeated rows by block name

    // The value of a field of the document ("" when it does not give it).
    QString valor(const QString& campo) const;
    bool tiene(const QString& campo) const;
    // Adds the field unless the document already gives it.
    void anyadirSiFalta(const QString& campo, const QString& valor);
};

// The value of a name among some fields, and whether it is there.
const QString* buscarCampo(const CamposDocumento& campos, const QString& nombre);

// Blocks may be nested this deep at most.
inline constexpr int kMaxAnidamiento = 16;

// What is wrong with a template's blocks ("" when nothing): a closing tag with no open
// block, a block never closed, too deep a nesting.
QString comprobarPlantilla(const QString& html);

// A filled document longer than this (in characters) is cut short.
inline constexpr qsizetype kMaxDocumento = 8 * 1024 * 1024;

// The template filled with the document's data. A damaged template is filled as far as it
// can be: a stray closing tag is printed as it stands, an unclosed block runs to the end.
// completo (when given) tells whether the whole document fitted within kMaxDocumento.
QString componerPlantilla(const QString& html, const DatosDocumento& datos, bool* completo = nullptr);

// The fields of a document handed over as one text of name=value items separated by '§'
// ("Veterinario=...§Cliente=..."). An item without '=' is skipped; the value runs to the next
// separator and may hold '=' itself.
CamposDocumento camposDesdeTexto(const QString& texto);
