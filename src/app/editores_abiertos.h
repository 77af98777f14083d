#pragma once
// The records open in an editor on this workstation. One editor per record: opening a
// record already open brings its editor forward instead; a list refuses to delete a record
// that an editor here has open.
#include <QHash>
#include <QString>
#include <functional>

class EditoresAbiertos {
public:
    // Takes the record for the editor dueno. False when another editor has it: that one is
    // brought forward (its traerAlFrente is called) and dueno must not open it.
    bool ocupar(const QString& tabla, const QString& clave, const void* dueno, std::function<void()> traerAlFrente);
    bool ocupar(const QString& tabla, qint64 id, const void* dueno, std::function<void()> traerAlFrente) {
        return ocupar(tabla, QString::number(id), dueno, std::move(traerAlFrente));
    }
    // The editor leaves whatever record it held.
    void soltar(const void* dueno);
    // Whether an editor here has the record open.
    bool abierto(const QString& tabla, const QString& clave) const;
    bool abierto(const QString& tabla, qint64 id) const { return abierto(tabla, QString::number(id)); }

private:
    struct Editor {
        const void* dueno = nullptr;
        std::function<void()> traerAlFrente;
    };
    static QString clave(const QString& tabla, const QString& id) { return tabla + QLatin1Char(' ') + id; }
    QHash<QString, Editor> abiertos_;
};

// "No es posible eliminar esta Mascota porque la tiene abierta en otra ventana de este equipo.
// Ciérrela antes de eliminarla." (the words agree with the class).
QString textoAbiertoEnOtraVentana(const QString& clase);
