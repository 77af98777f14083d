#pragma once
// The main window's menu tree: every command with its object name, its Spanish text, the
// menu it belongs to, and who may see it. The window builds its menus from this list.
#include <QList>
#include <QString>

enum class Permiso {
    Siempre,       // also before anybody logs in (log in, close, windows); close is enabled only
                   // after a login
    Identificado,  // any logged-in user
    Administrador, // administrators only
    Contabilidad,  // administrators only when "CONTAB. SOLO PARA ADMINISTRADORES" is "S"
};

struct ComandoMenu {
    QString nombre; // object name of the action, e.g. "mnuMttoCliente"
    QString texto;  // menu text
    QString menu;   // object name of the menu it sits in
    Permiso permiso = Permiso::Identificado;
    bool separadorAntes = false;
};

struct MenuPrincipal {
    QString nombre; // object name, e.g. "mnuMantenimiento"
    QString texto;  // "&Mantenimiento"
    Permiso permiso = Permiso::Identificado;
};

const QList<MenuPrincipal>& menusPrincipales();
// Every command, in menu order (the parameter tables included).
const QList<ComandoMenu>& comandosMenu();

bool comandoVisible(Permiso permiso, bool identificado, bool administrador,
                    bool contabilidadSoloAdministradores);
