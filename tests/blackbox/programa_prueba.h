#pragma once
// Black-box helpers: an installation made by pramelvix-admin and bounded runs of the real executables.
// On PostgreSQL (PRAMELVIX_TEST_MOTOR) each installation gets its own database, dropped at the end.
#include "data/ajustes.h"
#include "data/database.h"
#include "test_db.h"

#include <QAtomicInt>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

using namespace Qt::StringLiterals;

namespace bb {

inline const QString kPrograma = QStringLiteral(PRAMELVIX_EXE);
inline const QString kAdmin = QStringLiteral(PRAMELVIX_ADMIN_EXE);
inline const QString kVersion = QStringLiteral(PRAMELVIX_VERSION);
inline constexpr int kEsperaMs = 15000;

// What a run left; terminado is false when it did not start or end in time (it was killed).
struct Salida {
    bool terminado = false;
    bool normal = false; // ended by itself, not by a signal
    int codigo = -1;
    QByteArray salida;
    QByteArray errores;

    QString texto() const { return QString::fromUtf8(salida); }
    QString textoErrores() const { return QString::fromUtf8(errores); }
    QByteArray descripcion() const {
        return "código " + QByteArray::number(codigo) + (normal ? "" : " (no terminó por sí mismo)") +
               "\n--- salida ---\n" + salida + "\n--- errores ---\n" + errores;
    }
};

// Waits for the process to end, killing it when the time runs out.
inline Salida esperarFin(QProcess& p, int ms = kEsperaMs) {
    Salida s;
    s.terminado = p.state() == QProcess::NotRunning || p.waitForFinished(ms);
    if (!s.terminado) {
        p.kill();
        p.waitForFinished(5000);
    }
    s.normal = s.terminado && p.exitStatus() == QProcess::NormalExit;
    s.codigo = s.normal ? p.exitCode() : -1;
    s.salida = p.readAllStandardOutput();
    s.errores = p.readAllStandardError();
    return s;
}

inline Salida ejecutar(const QString& programa, const QStringList& argumentos,
                       const QProcessEnvironment& entorno, const QByteArray& entrada = {}) {
    QProcess p;
    p.setProcessEnvironment(entorno);
    p.start(programa, argumentos);
    if (!p.waitForStarted(kEsperaMs)) return {};
    if (!entrada.isEmpty()) p.write(entrada);
    p.closeWriteChannel();
    return esperarFin(p);
}

inline Salida admin(const QStringList& argumentos) {
    QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
    e.remove(u"PRAMELVIX_DIR"_s);
    e.remove(u"PRAMELVIX_PUESTO"_s);
    return ejecutar(kAdmin, argumentos, e);
}

class Instalacion {
public:
    static constexpr const char* kAdministrador = "admin";
    static constexpr const char* kClave = "Buena.1";

    ~Instalacion() {
        if (nombrePg_.isEmpty()) return;
        try {
            borrarBDPg();
        } catch (const ErrorBD& e) {
            qWarning("No se ha podido borrar la base de datos %s: %s", qPrintable(nombrePg_),
                     qPrintable(e.texto()));
        }
    }

    static bool esSQLite() { return TestDb::motorDePrueba() == Motor::SQLite; }

    // Runs "pramelvix-admin init" into a new folder; false (with the reason logged) on failure.
    bool crear() {
        if (!tmp_.isValid() || !QDir().mkpath(carpetaBloqueos())) return false;
        QFile::setPermissions(carpetaBloqueos(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QStringList args{
            u"init"_s,       carpeta(),
            u"--admin"_s,    u"%1:%2"_s.arg(QLatin1String(kAdministrador), QLatin1String(kClave)),
            u"--servidor"_s, u"SERVIDOR"_s};
        if (!esSQLite()) {
            nombrePg_ =
                u"pmxbb_%1_%2"_s.arg(QCoreApplication::applicationPid()).arg(contador_.fetchAndAddRelaxed(1));
            try {
                borrarBDPg()->ejecutarDirecto(u"CREATE DATABASE "_s + nombrePg_);
            } catch (const ErrorBD& e) {
                qWarning("No se ha podido crear la base de datos %s: %s", qPrintable(nombrePg_),
                         qPrintable(e.texto()));
                nombrePg_.clear();
                return false;
            }
            args << u"--postgresql"_s << conexionPg();
        }
        const Salida s = admin(args);
        if (!s.terminado || s.codigo != 0) {
            qWarning("pramelvix-admin init ha fallado: %s", s.descripcion().constData());
            return false;
        }
        // The users' chat off (port 0): copies running at once would compete for its UDP port.
        try {
            auto db = conectar();
            Ajustes(*db).escribir(u"PUERTO UDP CHAT"_s, u"0"_s);
        } catch (const ErrorBD& e) {
            qWarning("No se ha podido desactivar el chat: %s", qPrintable(e.texto()));
            return false;
        }
        return true;
    }

    QString carpeta() const { return tmp_.filePath(u"PRAMELVIX"_s); }
    QString carpetaDatos() const { return QDir(carpeta()).filePath(u"datos"_s); }
    QString ficheroBD() const { return QDir(carpetaDatos()).filePath(u"Pramelvix.mdb"_s); }
    QString ficheroIni() const { return QDir(carpeta()).filePath(u"PRAMELVIX.INI"_s); }
    QString carpetaBloqueos() const { return tmp_.filePath(u"run"_s); }
    QString conexionPg() const { return servidorPg() + u" dbname="_s + nombrePg_; }

    // A direct connection to the installation's database.
    std::unique_ptr<Database> conectar() const {
        return esSQLite() ? Database::abrirSQLite(ficheroBD()) : Database::abrirPostgreSQL(conexionPg());
    }
    // Rows of PuestosActivos as "PUESTO/USUARIO", ordered by workstation.
    QStringList puestos() const {
        auto db = conectar();
        QSqlQuery q = db->ejecutar(u"SELECT Puesto, Usuario FROM PuestosActivos ORDER BY Puesto"_s);
        QStringList filas;
        while (q.next())
            filas << q.value(0).toString() + QLatin1Char('/') + q.value(1).toString();
        return filas;
    }

    // The environment of pramelvix on this installation, as workstation `puesto`.
    QProcessEnvironment entorno(const QString& puesto) const {
        QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
        e.insert(u"PRAMELVIX_DIALOGOS"_s, u"consola"_s);
        e.insert(u"PRAMELVIX_DIR"_s, carpeta());
        e.insert(u"PRAMELVIX_PUESTO"_s, puesto);
        e.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        e.insert(u"XDG_RUNTIME_DIR"_s, carpetaBloqueos());
        return e;
    }

    Salida programa(const QStringList& argumentos, const QString& puesto,
                    const QByteArray& entrada = {}) const {
        return ejecutar(kPrograma, argumentos, entorno(puesto), entrada);
    }

    // The value of a setting read with the admin tool ("<error>" when the tool failed).
    QString leerAjuste(const QString& clave) const {
        const Salida s = admin({u"--dir"_s, carpeta(), u"setting"_s, u"get"_s, clave});
        if (!s.terminado || s.codigo != 0 || !s.salida.endsWith('\n')) return u"<error>"_s;
        return QString::fromUtf8(s.salida.chopped(1));
    }
    bool escribirAjuste(const QString& clave, const QString& valor) const {
        const Salida s = admin({u"--dir"_s, carpeta(), u"setting"_s, u"set"_s, clave, valor});
        return s.terminado && s.codigo == 0;
    }

private:
    static QString servidorPg() { return qEnvironmentVariable("PRAMELVIX_TEST_PG"); }
    // Drops this installation's PostgreSQL database; returns the connection to the server.
    std::unique_ptr<Database> borrarBDPg() const {
        auto servidor = Database::abrirPostgreSQL(servidorPg() + u" dbname=postgres"_s);
        servidor->ejecutarDirecto(u"DROP DATABASE IF EXISTS "_s + nombrePg_ + u" WITH (FORCE)"_s);
        return servidor;
    }
    static inline QAtomicInt contador_;

    QTemporaryDir tmp_;
    QString nombrePg_;
};

// A copy of pramelvix that keeps running, its output collected as it comes; killed by ~QProcess.
class Sesion {
public:
    Sesion(const Instalacion& inst, const QString& puesto) { p_.setProcessEnvironment(inst.entorno(puesto)); }

    bool arrancar(const QByteArray& entrada) {
        p_.start(kPrograma, {u"-app:Start"_s});
        if (!p_.waitForStarted(kEsperaMs)) return false;
        if (entrada.isEmpty()) return true;
        p_.write(entrada);
        return p_.waitForBytesWritten(kEsperaMs);
    }
    // Waits until the output holds `texto`; false when the process ended or the time ran out first.
    bool esperar(const QString& texto, int ms = kEsperaMs) {
        const QByteArray buscado = texto.toUtf8();
        QDeadlineTimer limite(ms);
        while (true) {
            const bool acabado = p_.state() == QProcess::NotRunning; // then all its output is read below
            salida_ += p_.readAllStandardOutput();
            if (salida_.contains(buscado)) return true;
            if (acabado || limite.hasExpired()) return false;
            p_.waitForReadyRead(int(qMax<qint64>(1, limite.remainingTime())));
        }
    }
    bool enMarcha() const { return p_.state() == QProcess::Running; }
    // SIGTERM, then the wait for the end.
    Salida terminar() {
        p_.terminate();
        return fin();
    }
    // SIGKILL: the program cannot close anything.
    Salida matar() {
        p_.kill();
        return fin();
    }
    QString textoHastaAhora() const { return QString::fromUtf8(salida_); }

private:
    Salida fin() {
        Salida s = esperarFin(p_);
        s.salida = salida_ + s.salida;
        salida_.clear();
        return s;
    }

    QProcess p_;
    QByteArray salida_;
};

} // namespace bb
