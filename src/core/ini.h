#pragma once
// The workstation configuration file PRAMELVIX.INI, in the Windows INI form:
//
//   ; comment            # comment too
//   [INSTALACION]
//   Ruta=C:\PRAMELVIX
//
// Lookups are exact: section and key names are compared case-sensitively ([INSTALACION] is
// not [instalacion]). A section name is the text between '[' and the first ']' with blanks
// around it removed; a key is the text before the first '=' and its value the text after it,
// both with blanks around removed. There are no comments inside values. When a section or a
// key appears twice, the first one counts. Lines before the first section and damaged lines
// (a '[' without ']', a line with no '=', a line with nothing before the '=') are kept as they
// are and ignored by lookups; a damaged section header does not end the section above it.
//
// Writing keeps the file as it was: setValor changes only the line of that key (keeping the
// text up to and including the blanks after '='), or inserts "KEY=VALUE" after the last line
// of its section that is neither blank nor a comment, or appends "[SECTION]" and "KEY=VALUE"
// at the end of the file (after a blank line when the file does not already end in one).
// Values are written trimmed. Every other line keeps its bytes and its own line end, and a file
// that did not end in a line end still does not.
//
// Encoding: a file that is valid UTF-8 (a pure ASCII file is) is read and written as UTF-8,
// keeping a byte order mark if it had one; any other file is Windows-1252 (Latin-1 with the
// Windows characters in 0x80-0x9F, such as '€'). Characters that Windows-1252 cannot hold are
// written as '?'. New lines use the line end of the first line of the file (CRLF for a file
// with no line end at all).
#include "core/dialogs.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <optional>

inline constexpr QStringView kFicheroConfiguracion = u"PRAMELVIX.INI";
inline constexpr QStringView kTituloErrorGrave = u" ¡¡¡ Error grave !!!";

class IniFile {
public:
    enum class Codificacion { Utf8, Windows1252 };

    // nullopt when the file does not exist or cannot be read (or is a folder).
    static std::optional<IniFile> abrir(const QString& ruta);
    // The same from bytes already read; ruta is where guardar() will write.
    static IniFile desdeBytes(const QByteArray& bytes, const QString& ruta = {});

    // The value of a key, trimmed; "" when the section or the key does not exist.
    QString valor(const QString& seccion, const QString& clave) const;
    bool contiene(const QString& seccion, const QString& clave) const;
    // Section names in file order, each once.
    QStringList secciones() const;

    // Sets a value in memory. Returns false, changing nothing, when the names cannot be
    // written in an INI file (empty, blanks around, a line break, a section with ']', a key with '='
    // or starting with '[', ';' or '#') or the value holds a line break. Setting the value
    // a key already has changes nothing.
    bool setValor(const QString& seccion, const QString& clave, const QString& valor);

    // Writes the file through a temporary file in the same folder that then replaces it, so
    // that a failure never leaves half a file. Returns false with error() set on failure.
    bool guardar();
    const QString& error() const { return error_; }

    // The whole file as it would be written.
    QByteArray aBytes() const;
    const QString& ruta() const { return ruta_; }
    Codificacion codificacion() const { return codificacion_; }
    bool modificado() const { return modificado_; }

private:
    enum class Tipo { Vacia, Comentario, Seccion, Clave, Danada };
    struct Linea {
        QByteArray bytes; // as in the file, without the line end (nor the byte order mark)
        QByteArray fin;   // "\r\n", "\n" or "" (last line without line end)
        Tipo tipo = Tipo::Vacia;
        QString nombre;            // section name or key
        QString valor;             // trimmed value of a key
        qsizetype inicioValor = 0; // index in the decoded text where the value starts
    };

    static Linea analizar(QByteArray bytes, QByteArray fin, Codificacion codificacion);
    QString decodificar(const QByteArray& bytes) const;
    QByteArray codificar(const QString& texto) const;
    // Index of the header line of the first section with that name, or -1.
    qsizetype buscarSeccion(const QString& seccion) const;
    // Index of the first line of that key inside the section starting at cabecera, or -1.
    qsizetype buscarClave(qsizetype cabecera, const QString& clave) const;
    Linea nuevaLinea(const QString& texto) const;

    QString ruta_;
    QList<Linea> lineas_;
    Codificacion codificacion_ = Codificacion::Utf8;
    bool bom_ = false;
    QByteArray finPorDefecto_ = "\r\n";
    bool modificado_ = false;
    QString error_;
};

// Opens carpetaPrograma/PRAMELVIX.INI. When it is missing the user reads a critical box
// " ¡¡¡ Error grave !!!" / "No se ha encontrado el fichero de configuración 'PRAMELVIX.INI'";
// when it exists but cannot be read, "No se ha podido leer el fichero de configuración
// 'PRAMELVIX.INI'". Both give nullopt.
std::optional<IniFile> leerConfiguracionPuesto(const QString& carpetaPrograma, Dialogs& dialogs);
