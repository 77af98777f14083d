#include "app/arranque.h"

#include "core/formatos.h"
#include "data/esquema.h"
#include "data/log_errores.h"
#include "data/puestos.h"
#include "data/reparacion.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <unistd.h>

namespace {
const QString kAtencion = QStringLiteral("¡Atención!");
const QString kSoporte = QStringLiteral(" Consulte con Soporte a Clientes.");
} // namespace

std::optional<Modo> leerLineaOrdenes(const QStringList& argumentos) {
    if (argumentos.size() != 1) return std::nullopt;
    const QString& a = argumentos.first();
    if (a == QLatin1String("-app:Start")) return Modo::Start;
    if (a == QLatin1String("-app:RepairDB")) return Modo::RepairDB;
    if (a == QLatin1String("-app:PurgeActiveComputers")) return Modo::PurgeActiveComputers;
    if (a == QLatin1String("-app:ActivateBlockingMode")) return Modo::ActivateBlockingMode;
    if (a == QLatin1String("-app:DeactivateBlockingMode")) return Modo::DeactivateBlockingMode;
    return std::nullopt;
}

bool procedimientoReparacion(Dialogs& d, const ConfiguracionBD& config, const Clock& reloj) {
    d.progreso(QStringLiteral("Se está compactando la Base de Datos. Espere por favor ..."));
    const ResultadoReparacion r = config.motor == Motor::SQLite ? repararSQLite(config.ficheroSQLite(), reloj)
                                                                : repararPostgreSQL(config.conexion);
    d.progreso(QString());
    if (r.ocupada)
        d.avisar(QStringLiteral("¡Atención!"),
                 QStringLiteral("No se puede sustituir la Base de Datos mientras otros puestos la tengan abierta. "
                                "Ciérrelos y vuelva a intentarlo."));
    return r.hecha;
}

Arranque::Arranque(Dialogs& dialogs, const Clock& reloj, OpcionesArranque opciones)
    : d_(dialogs), reloj_(reloj), op_(std::move(opciones)) {
    if (op_.carpetaBloqueos.isEmpty()) {
        const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
        op_.carpetaBloqueos = !runtime.isEmpty()
                                  ? runtime
                                  : QDir::temp().filePath(QStringLiteral("pramelvix-%1").arg(getuid()));
    }
}

namespace {
// The operating-system user running the program ("ana", or the user number).
QString usuarioSistema() {
    const QString u = qEnvironmentVariable("USER");
    return u.isEmpty() ? QString::number(getuid()) : u;
}
} // namespace

std::unique_ptr<Entorno> Arranque::fin(int codigo) {
    codigo_ = codigo;
    return nullptr;
}

bool Arranque::instanciaUnica() {
    QString nombre = op_.puesto;
    nombre.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9_.-]")), QStringLiteral("_"));
    QDir().mkpath(op_.carpetaBloqueos);
    instancia_ = std::make_unique<QLockFile>(
        QDir(op_.carpetaBloqueos).filePath(QStringLiteral("pramelvix-") + nombre + QStringLiteral(".lock")));
    instancia_->setStaleLockTime(0); // only a dead process's lock is stale
    if (instancia_->tryLock(0)) return true;
    instancia_.reset();
    d_.informar(QStringLiteral("Atención"),
                QStringLiteral("Existe una instancia previa de PRAMELVIX ejecutándose."));
    return false;
}

std::optional<IniFile> Arranque::leerIni() {
    return leerConfiguracionPuesto(op_.carpetaPrograma, d_);
}

std::unique_ptr<Entorno> Arranque::ejecutar(const QStringList& argumentos) {
    // 1. Command line.
    const auto modo = leerLineaOrdenes(argumentos);
    if (!modo) {
        d_.error(kTituloPrograma, QStringLiteral("Error en la ejecución"));
        return fin(1);
    }
    // 2. Single instance.
    if (!instanciaUnica()) return fin(1);
    // 3. Regional settings.
    if (const auto conflicto = comprobarConfiguracionRegional(op_.regional)) {
        d_.error(kTituloConflictoRegional.toString(), *conflicto);
        return fin(1);
    }
    const auto ini = leerIni();
    if (!ini) return fin(1);
    ConfiguracionBD config = ConfiguracionBD::desdeIni(*ini);
    // 4. Maintenance switches.
    if (*modo != Modo::Start) return fin(mantenimiento(*modo, config) ? 0 : 1);
    // 5. Locate the database.
    if (!localizar(config)) return fin(1);
    // 6. Open it, repairing if need be.
    std::unique_ptr<Database> db = abrir(config);
    if (!db) return fin(1);
    // 7. Version; 8. mode; 9. register the workstation.
    if (!comprobarVersion(*db) || !entrar(*db)) return fin(1);

    auto entorno = std::make_unique<Entorno>(std::move(db), d_, reloj_);
    entorno->multipuesto = multipuesto_;
    entorno->carpetaPrograma = op_.carpetaPrograma;
    entorno->puesto = op_.puesto;
    entorno->configuracionBD = config;
    // 10. Receipt printer and GSM modem.
    entorno->impresoraTickets = ImpresoraTickets::desdeIni(*ini);
    entorno->modemGsm = ModemGsm::desdeIni(*ini);
    // 11. Pending invoice log.
    informarFacturasNoCreadas(*entorno);
    codigo_ = 0;
    return entorno;
}

bool Arranque::mantenimiento(Modo modo, const ConfiguracionBD& config) {
    if (modo == Modo::RepairDB) {
        d_.informar(
            kTituloPrograma,
            QStringLiteral(
                "Se va intentar reparar la Base de Datos. Esta operación puede tardar algunos minutos. ") +
                QStringLiteral("Asegúrese de que ningún usuario permanece conectado a la aplicación y pulse "
                               "'Aceptar' para continuar."));
        procedimientoReparacion(d_, config, reloj_);
        d_.informar(kTituloPrograma, QStringLiteral("Operación concluida."));
        return true;
    }
    std::unique_ptr<Database> db;
    try {
        db = config.motor == Motor::SQLite ? Database::abrirSQLite(config.ficheroSQLite())
                                           : Database::abrirPostgreSQL(config.conexion);
    } catch (const ErrorBD& e) {
        d_.error(kTituloPrograma, e.mensaje());
        return false;
    }
    PuestosActivosStore puestos(*db);
    Ajustes ajustes(*db);
    switch (modo) {
    case Modo::PurgeActiveComputers: {
        QStringList lista;
        try {
            lista = puestos.puestos();
        } catch (const ErrorBD& e) {
            d_.error(kTituloPrograma, e.mensaje());
            return false;
        }
        bool todo = true;
        for (const QString& p : lista) {
            bool borrado = false;
            try {
                borrado = puestos.quitar(p);
            } catch (const ErrorBD&) {
            }
            if (!borrado) {
                d_.error(kTituloPrograma, QStringLiteral("No se ha podido borrar el puesto '") + p +
                                              QStringLiteral("' de la tabla de puestos activos.") + kSoporte);
                todo = false;
            }
        }
        return todo;
    }
    case Modo::ActivateBlockingMode:
        try {
            ajustes.escribir(claves::MULTIPUESTO, QStringLiteral("SI"));
            return true;
        } catch (const ErrorBD&) {
            d_.error(kTituloPrograma,
                     QStringLiteral("No se ha podido activar el modo 'Multipuesto' en la aplicación.") +
                         kSoporte);
            return false;
        }
    case Modo::DeactivateBlockingMode:
        try {
            if (puestos.desactivarMultipuesto()) return true;
        } catch (const ErrorBD&) {
            d_.error(kTituloPrograma,
                     QStringLiteral("No se ha podido activar el modo 'Monopuesto' en la aplicación.") +
                         kSoporte);
            return false;
        }
        d_.error(kTituloPrograma, QStringLiteral("Imposible activar el modo 'Monopuesto' en la aplicación porque "
                                                 "hay puesto/s conectado/s a Pramelvix.") +
                                      kSoporte);
        return false;
    case Modo::Start:
    case Modo::RepairDB:
        break;
    }
    return false;
}

bool Arranque::localizar(ConfiguracionBD& config) {
    if (config.motor == Motor::PostgreSQL) return true;
    if (QFileInfo::exists(config.ficheroSQLite())) return true;
    if (!d_.preguntar(Icono::Pregunta, kAtencion,
                      QStringLiteral("No se ha encontrado la B.D. en la ruta del Servidor. ") +
                          QStringLiteral("¿Desea intentar seleccionar otra B.D. alternativa?")))
        return false;
    const QString elegido =
        d_.elegirFichero(QStringLiteral("Seleccione la B.D. de Pramelvix"),
                         QStringLiteral("Base de datos de Pramelvix (*.mdb)"), config.servidor);
    if (elegido.isEmpty() || !QFileInfo(elegido).isFile()) return false;
    config.ficheroAlternativo = QFileInfo(elegido).absoluteFilePath();
    return true;
}

std::unique_ptr<Database> Arranque::abrir(const ConfiguracionBD& config) {
    if (config.motor == Motor::PostgreSQL) {
        try {
            return Database::abrirPostgreSQL(config.conexion);
        } catch (const ErrorBD& e) {
            d_.error(kAtencion,
                     QStringLiteral("No se ha podido conectar con la B.D. de Pramelvix.\n") + e.mensaje());
            return nullptr;
        }
    }
    QString estado = QStringLiteral("está dañada. ¿Desea ");
    while (true) {
        try {
            return Database::abrirSQLite(config.ficheroSQLite());
        } catch (const ErrorBD&) {
        }
        if (!d_.preguntar(Icono::Critico, kAtencion,
                          QStringLiteral("Pramelvix no puede arrancar porque su Base de Datos ") + estado +
                              QStringLiteral(" intentar repararla automáticamente?")))
            return nullptr;
        d_.progreso(QStringLiteral("Reparando la Base de Datos de Pramelvix. Espere, por favor..."));
        procedimientoReparacion(d_, config, reloj_);
        d_.progreso(QString());
        estado = QStringLiteral("continúa dañada. ¿Desea volver a");
    }
}

bool Arranque::comprobarVersion(Database& db) {
    QString requerida;
    try {
        requerida = Ajustes(db).leer(claves::VERSION_REQUISITO);
    } catch (const ErrorBD&) {
        requerida.clear();
    }
    if (requerida.isEmpty()) {
        d_.error(kTituloPrograma,
                 QStringLiteral("No se ha podido encontrar la versión requisito de ejecución.") + kSoporte);
        return false;
    }
    if (requerida != kVersionPrograma) {
        d_.error(kTituloPrograma, QStringLiteral("La versión requisito de ejecución (") + requerida +
                                      QStringLiteral(") no coincide con la instalada en este puesto (") +
                                      kVersionPrograma + QStringLiteral(").") + kSoporte);
        return false;
    }
    try {
        Ajustes(db).escribir(claves::VERSION_INFORMADA, kVersionPrograma);
        migrarEsquema(db);
    } catch (const ErrorBD& e) {
        d_.error(kTituloPrograma, e.mensaje());
        return false;
    }
    return true;
}

bool Arranque::entrar(Database& db) {
    EntradaPuesto entrada;
    try {
        entrada = PuestosActivosStore(db).entrar(op_.puesto, usuarioSistema(), reloj_.ahora());
    } catch (const ErrorBD&) {
        d_.error(kTituloPrograma, QStringLiteral("No se ha podido agregar el puesto '") + op_.puesto +
                                      QStringLiteral("' a la tabla de puestos activos.") + kSoporte);
        return false;
    }
    switch (entrada.resultado) {
    case EntradaPuesto::Monopuesto:
        d_.error(kTituloPrograma,
                 QStringLiteral("Este puesto Cliente no puede entrar en Pramelvix porque el Servidor "
                                "está en modo 'Monopuesto'.") +
                     kSoporte);
        return false;
    case EntradaPuesto::OtroUsuarioSistema:
        d_.error(kTituloPrograma, QStringLiteral("El puesto '") + op_.puesto +
                                      QStringLiteral("' ya está dentro de Pramelvix con el usuario del sistema '") +
                                      entrada.otroUsuario +
                                      QStringLiteral("'. Cada usuario del sistema debe entrar como un puesto "
                                                     "distinto (variable PRAMELVIX_PUESTO).") +
                                      kSoporte);
        return false;
    case EntradaPuesto::Dentro:
        break;
    }
    multipuesto_ = entrada.multipuesto;
    return true;
}

void Arranque::informarFacturasNoCreadas(Entorno& e) {
    try {
        LogErroresStore log(e.db());
        for (const EntradaLog& entrada : log.buscar(kPrefijoFacturaNoCreada + e.puesto)) {
            d_.avisar(kAtencion, informeFacturaNoCreada(entrada.fecha, entrada.hora, entrada.puesto,
                                                        entrada.usuario, kOrigenLogArranque));
            log.borrar(entrada.id);
        }
    } catch (const ErrorBD& err) {
        d_.error(kTituloPrograma, err.mensaje());
    }
}
