#pragma once
// The "Parámetros" menu: for each menu command, the parameter table it opens and the text
// of the command. The main window builds the menu from this list and opens the list editor,
// or the tree editor for a table with a parent column, on the command's table.
#include <QList>
#include <QString>

struct EntradaMenuParametro {
    QString accion; // object name of the menu command, e.g. "mnuFormasPago"
    QString tabla;  // table opened, e.g. "FormasPago"
    QString texto;  // menu text, e.g. "Formas de Pago"
};

// Every parameter command, in menu order.
const QList<EntradaMenuParametro>& entradasMenuParametros();
// The entry of a command (by object name); nullptr when the command opens no parameter table.
const EntradaMenuParametro* entradaMenuParametro(const QString& accion);
