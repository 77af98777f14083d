#pragma once
// The users screen's logic: the list of every user, the fields of the selected one, and
// the commands new, save and delete. The stored password is never shown: an existing
// user's password fields hold kMarcaClave, and saving with the mark untouched keeps the
// stored salt and hash.
#include "app/entorno.h"

#include <QList>

inline const QString kMarcaClave = QStringLiteral("********");

struct FilaUsuario {
    QString IdUsuario;
    QString Nombre;
};

class UsuariosForm {
public:
    explicit UsuariosForm(Entorno& entorno) : e_(entorno) {}

    enum class Campo { Identificador, Nombre, Clave, Confirmacion, Tipo };

    // Fills the list with every user and selects the first one (or starts a new user when
    // there is none). Discards any change without asking. False when the database failed.
    bool cargar();
    const QList<FilaUsuario>& lista() const { return lista_; }
    // Row of the list being edited; -1 while a new user is being written.
    int filaActual() const { return fila_; }
    bool esNuevo() const { return fila_ < 0; }

    // Loads the user of that row. With unsaved changes asks first; on No nothing changes
    // and the answer is false.
    bool seleccionar(int fila);
    // Clears the fields for a new user (asking first, like seleccionar).
    bool nuevo();
    // Checks the fields in order and stores the user; true when saved.
    bool guardar();
    // Asks and deletes the selected user; true when deleted.
    bool eliminar();
    // Whether the screen may close: asks when there are unsaved changes.
    bool puedeCerrar();

    // The fields. Every setter marks the user as modified when the value changes.
    const QString& idUsuario() const { return id_; }
    const QString& nombre() const { return nombre_; }
    const QString& clave() const { return clave_; }
    const QString& confirmacion() const { return confirmacion_; }
    // "ADMINISTRADOR" or "USUARIO" (kTipoAdministrador, kTipoUsuario).
    const QString& tipo() const { return tipo_; }
    void setIdUsuario(const QString& v) { cambiar(id_, v); }
    void setNombre(const QString& v) { cambiar(nombre_, v); }
    void setClave(const QString& v) { cambiar(clave_, v); }
    void setConfirmacion(const QString& v) { cambiar(confirmacion_, v); }
    void setTipo(const QString& v) { cambiar(tipo_, v); }

    bool modificado() const { return modificado_; }
    // The field that should take the focus after a refusal.
    Campo foco() const { return foco_; }

    // The two user types in the order of the drop-down: stored values and texts shown.
    static QStringList tiposInternos();
    static QStringList tiposExternos();

private:
    void cambiar(QString& campo, const QString& valor);
    bool confirmarPerdida(const QString& texto);
    void leerLista();
    void mostrarUsuario(int fila);
    void vaciar();
    bool rechazar(const QString& titulo, const QString& texto, Campo campo);
    bool comprobar();

    Entorno& e_;
    QList<FilaUsuario> lista_;
    int fila_ = -1;
    QString idOriginal_;
    QString tipoOriginal_;
    qint64 versionLeida_ = 0;
    QString id_, nombre_, clave_, confirmacion_, tipo_ = kTipoUsuario;
    bool modificado_ = false;
    Campo foco_ = Campo::Identificador;
};
