// The program's start-up seen from outside: each case makes an installation with
// pramelvix-admin, runs pramelvix with its dialogs on the console, and checks the exit
// code, the exact texts printed and what was left in the database.
#include "data/ajustes.h"
#include "data/puestos.h"
#include "programa_prueba.h"

#include <QDateTime>
#include <QFileInfo>
#include <sys/stat.h>

using namespace bb;

namespace {
const QString kStart = QStringLiteral("-app:Start");
const QString kMultipuesto = QStringLiteral("MULTIPUESTO");

const QString kErrorEjecucion = QStringLiteral("[ERROR] Pramelvix\nError en la ejecución\n");
const QString kSinIni = QStringLiteral("[ERROR]  ¡¡¡ Error grave !!!\n"
                                       "No se ha encontrado el fichero de configuración 'PRAMELVIX.INI'\n");
const QString kInstanciaPrevia =
    QStringLiteral("[INFORMACIÓN] Atención\nExiste una instancia previa de PRAMELVIX ejecutándose.\n");
const QString kIdentificacion =
    QStringLiteral("[IDENTIFICACIÓN] Identificación de Usuario\nUsuario: Clave: ");
const QString kPideUsuario = QStringLiteral("[IDENTIFICACIÓN] Identificación de Usuario\nUsuario: ");
const QString kClaveIncorrecta = QStringLiteral("[AVISO] ¡Atención!\nLa clave introducida no es correcta.\n");
const QString kUsuarioInexistente = QStringLiteral("[AVISO] ¡Atención!\nEl usuario introducido no existe.\n");
const QString kIdentificado = QStringLiteral("Usuario identificado: Administrador\n");
const QString kMonopuestoImposible =
    QStringLiteral("[ERROR] Pramelvix\nImposible activar el modo 'Monopuesto' en la aplicación porque hay "
                   "puesto/s conectado/s a Pramelvix. Consulte con Soporte a Clientes.\n");
const QString kClienteEnMonopuesto = QStringLiteral(
    "[ERROR] Pramelvix\nEste puesto Cliente no puede entrar en Pramelvix porque el Servidor está "
    "en modo 'Monopuesto'. Consulte con Soporte a Clientes.\n");
const QString kAvisoReparar = QStringLiteral(
    "[INFORMACIÓN] Pramelvix\nSe va intentar reparar la Base de Datos. Esta operación puede tardar algunos "
    "minutos. Asegúrese de que ningún usuario permanece conectado a la aplicación y pulse 'Aceptar' para "
    "continuar.\n");
const QString kCompactando =
    QStringLiteral("... Se está compactando la Base de Datos. Espere por favor ...\n");
const QString kReparando =
    QStringLiteral("... Reparando la Base de Datos de Pramelvix. Espere, por favor...\n");
const QString kConcluida = QStringLiteral("[INFORMACIÓN] Pramelvix\nOperación concluida.\n");
const QString kBDNoEncontrada = QStringLiteral(
    "[PREGUNTA] ¡Atención!\nNo se ha encontrado la B.D. en la ruta del Servidor. ¿Desea intentar "
    "seleccionar otra B.D. alternativa?\n¿Sí/No? ");
const QString kBDDanada =
    QStringLiteral("[ERROR] ¡Atención!\nPramelvix no puede arrancar porque su Base de Datos "
                   "está dañada. ¿Desea  intentar repararla automáticamente?\n¿Sí/No? ");
const QString kBDSigueDanada =
    QStringLiteral("[ERROR] ¡Atención!\nPramelvix no puede arrancar porque su Base de Datos continúa dañada. "
                   "¿Desea volver a intentar repararla automáticamente?\n¿Sí/No? ");

QByteArray credenciales(const char* clave = Instalacion::kClave) {
    return QByteArray(Instalacion::kAdministrador) + '\n' + clave + '\n';
}

QByteArray leerBytes(const QString& ruta) {
    QFile f(ruta);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool escribirBytes(const QString& ruta, const QByteArray& bytes) {
    QFile f(ruta);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

// Removes an SQLite database with its journal files.
bool borrarBD(const QString& ruta) {
    bool ok = QFile::remove(ruta);
    for (const char* sufijo : {"-wal", "-shm", "-journal"})
        QFile::remove(ruta + QLatin1String(sufijo));
    return ok && !QFileInfo::exists(ruta);
}

QStringList temporalesReparacion(const QString& carpeta) {
    return QDir(carpeta).entryList({QStringLiteral("BDTemp*")}, QDir::Files | QDir::Hidden);
}

// Bytes that SQLite does not take for a database.
QByteArray basura() {
    QByteArray b;
    for (int i = 0; i < 8192; ++i)
        b.append(char((i * 37 + 11) % 251));
    return b;
}

ino_t nodo(const QString& ruta) {
    struct stat st {};
    return ::stat(QFile::encodeName(ruta).constData(), &st) == 0 ? st.st_ino : 0;
}
} // namespace

#define PMX_TERMINADO(s) QVERIFY2((s).terminado, (s).descripcion().constData())
#define PMX_INSTALACION(inst, ...)                                                                           \
    Instalacion inst;                                                                                        \
    QVERIFY(inst.crear(__VA_ARGS__))

class TestArranquePrograma : public QObject {
    Q_OBJECT

private slots:
    // ---- The command line --------------------------------------------------------------

    void lineaDeOrdenesIncorrecta_data() {
        QTest::addColumn<QStringList>("argumentos");
        QTest::newRow("vacía") << QStringList{};
        QTest::newRow("desconocido") << QStringList{QStringLiteral("-app:Arrancar")};
        QTest::newRow("mayúsculas distintas") << QStringList{QStringLiteral("-app:start")};
        QTest::newRow("con blancos") << QStringList{QStringLiteral(" -app:Start")};
        QTest::newRow("dos conmutadores") << QStringList{kStart, QStringLiteral("-app:RepairDB")};
        QTest::newRow("repetido") << QStringList{QStringLiteral("-app:PurgeActiveComputers"),
                                                 QStringLiteral("-app:PurgeActiveComputers")};
    }
    void lineaDeOrdenesIncorrecta() {
        QFETCH(QStringList, argumentos);
        PMX_INSTALACION(inst);
        {
            auto db = inst.conectar();
            PuestosActivosStore(*db).registrar(QStringLiteral("OTRO"), QDateTime::currentDateTime());
        }
        const Salida s = inst.programa(argumentos, QStringLiteral("PUESTO1"), credenciales());
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(), kErrorEjecucion);
        QCOMPARE(s.codigo, 1);
        // Nothing ran: no workstation was added and none was purged.
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("OTRO/")});
    }

    void sinFicheroConfiguracion_data() {
        QTest::addColumn<QString>("conmutador");
        QTest::newRow("Start") << kStart;
        QTest::newRow("PurgeActiveComputers") << QStringLiteral("-app:PurgeActiveComputers");
        QTest::newRow("ActivateBlockingMode") << QStringLiteral("-app:ActivateBlockingMode");
    }
    void sinFicheroConfiguracion() {
        QFETCH(QString, conmutador);
        PMX_INSTALACION(inst);
        QVERIFY(inst.escribirAjuste(kMultipuesto, QStringLiteral("NO")));
        {
            auto db = inst.conectar();
            PuestosActivosStore(*db).registrar(QStringLiteral("OTRO"), QDateTime::currentDateTime());
        }
        QVERIFY(QFile::remove(inst.ficheroIni()));
        const Salida s = inst.programa({conmutador}, QStringLiteral("PUESTO1"), credenciales());
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(), kSinIni);
        QCOMPARE(s.codigo, 1);
        auto db = inst.conectar();
        QCOMPARE(puestosActivos(*db), QStringList{QStringLiteral("OTRO/")});
        QCOMPARE(Ajustes(*db).leer(kMultipuesto), QStringLiteral("NO"));
    }

    // ---- Maintenance switches ------------------------------------------------------------

    void modoBloqueoSinPuestosConectados() {
        PMX_INSTALACION(inst);
        QVERIFY(inst.escribirAjuste(kMultipuesto, QStringLiteral("NO")));
        const Salida activar =
            inst.programa({QStringLiteral("-app:ActivateBlockingMode")}, QStringLiteral("P1"));
        PMX_TERMINADO(activar);
        QCOMPARE(activar.texto(), QString());
        QCOMPARE(activar.codigo, 0);
        QCOMPARE(inst.leerAjuste(kMultipuesto), QStringLiteral("SI"));

        const Salida desactivar =
            inst.programa({QStringLiteral("-app:DeactivateBlockingMode")}, QStringLiteral("P1"));
        PMX_TERMINADO(desactivar);
        QCOMPARE(desactivar.texto(), QString());
        QCOMPARE(desactivar.codigo, 0);
        QCOMPARE(inst.leerAjuste(kMultipuesto), QStringLiteral("NO"));
        // The maintenance switches never register the workstation.
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void modoMonopuestoConPuestoConectado() {
        PMX_INSTALACION(inst);
        Sesion recepcion(inst, QStringLiteral("RECEPCION"));
        QVERIFY(recepcion.arrancar(credenciales()));
        QVERIFY2(recepcion.esperar(kIdentificado), qPrintable(recepcion.textoHastaAhora()));
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("RECEPCION/admin")});

        const Salida rechazo =
            inst.programa({QStringLiteral("-app:DeactivateBlockingMode")}, QStringLiteral("SERVIDOR"));
        PMX_TERMINADO(rechazo);
        QCOMPARE(rechazo.texto(), kMonopuestoImposible);
        QCOMPARE(rechazo.codigo, 1);
        QCOMPARE(inst.leerAjuste(kMultipuesto), QStringLiteral("SI"));
        QVERIFY(recepcion.enMarcha());

        const Salida fin = recepcion.terminar();
        PMX_TERMINADO(fin);
        QCOMPARE(fin.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});

        // With the workstation gone the mode can be changed.
        const Salida desactivar =
            inst.programa({QStringLiteral("-app:DeactivateBlockingMode")}, QStringLiteral("SERVIDOR"));
        PMX_TERMINADO(desactivar);
        QCOMPARE(desactivar.texto(), QString());
        QCOMPARE(desactivar.codigo, 0);
        QCOMPARE(inst.leerAjuste(kMultipuesto), QStringLiteral("NO"));
    }

    void modoMonopuestoConFilaHuerfana() {
        // A row left by a workstation that ended without closing counts as connected.
        PMX_INSTALACION(inst);
        {
            auto db = inst.conectar();
            PuestosActivosStore(*db).registrar(QStringLiteral("CONSULTA2"), QDateTime::currentDateTime());
        }
        const Salida rechazo =
            inst.programa({QStringLiteral("-app:DeactivateBlockingMode")}, QStringLiteral("SERVIDOR"));
        PMX_TERMINADO(rechazo);
        QCOMPARE(rechazo.texto(), kMonopuestoImposible);
        QCOMPARE(rechazo.codigo, 1);
        QCOMPARE(inst.leerAjuste(kMultipuesto), QStringLiteral("SI"));
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("CONSULTA2/")});
    }

    void purgarPuestosActivos() {
        PMX_INSTALACION(inst);
        {
            auto db = inst.conectar();
            PuestosActivosStore puestos(*db);
            puestos.registrar(QStringLiteral("CONSULTA1"), QDateTime::currentDateTime());
            puestos.registrar(QStringLiteral("RECEPCION"), QDateTime::currentDateTime());
            puestos.asignarUsuario(QStringLiteral("RECEPCION"), QStringLiteral("admin"));
        }
        QCOMPARE(inst.puestos(),
                 (QStringList{QStringLiteral("CONSULTA1/"), QStringLiteral("RECEPCION/admin")}));
        const Salida s =
            inst.programa({QStringLiteral("-app:PurgeActiveComputers")}, QStringLiteral("SERVIDOR"));
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(), QString());
        QCOMPARE(s.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});

        // Purging an empty table is not an error either.
        const Salida otra =
            inst.programa({QStringLiteral("-app:PurgeActiveComputers")}, QStringLiteral("SERVIDOR"));
        PMX_TERMINADO(otra);
        QCOMPARE(otra.texto(), QString());
        QCOMPARE(otra.codigo, 0);
    }

    void repararBaseDatos() {
        PMX_INSTALACION(inst);
        const QString valor = QStringLiteral("Clínica Año Nuevo, 1.234,56 €");
        QVERIFY(inst.escribirAjuste(QStringLiteral("NOM. PRESENT."), valor));
        const ino_t antes = Instalacion::esSQLite() ? nodo(inst.ficheroBD()) : 0;

        const Salida s = inst.programa({QStringLiteral("-app:RepairDB")}, QStringLiteral("SERVIDOR"));
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(), kAvisoReparar + kCompactando + kConcluida);
        QCOMPARE(s.codigo, 0);

        QCOMPARE(inst.leerAjuste(QStringLiteral("NOM. PRESENT.")), valor);
        QCOMPARE(inst.leerAjuste(QStringLiteral("VERSION REQUISITO")), kVersion);
        if (Instalacion::esSQLite()) {
            // The compacted copy took the place of the file, and it is a sound database.
            QVERIFY(nodo(inst.ficheroBD()) != 0);
            QVERIFY(nodo(inst.ficheroBD()) != antes);
            auto db = inst.conectar();
            QCOMPARE(db->valor(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
            QCOMPARE(temporalesReparacion(inst.carpetaDatos()), QStringList{});
        }
        // The repaired database still starts and reads its users.
        const Salida arranque = inst.programa({kStart}, QStringLiteral("SERVIDOR"), credenciales("mala"));
        PMX_TERMINADO(arranque);
        QCOMPARE(arranque.texto(), kIdentificacion + kClaveIncorrecta + kPideUsuario);
        QCOMPARE(arranque.codigo, 0);
    }

    // ---- Required version and single-workstation mode -----------------------------------

    void versionRequisito_data() {
        QTest::addColumn<QString>("requerida");
        QTest::addColumn<QString>("mensaje");
        QTest::newRow("otra versión")
            << QStringLiteral("0.9")
            << QStringLiteral("[ERROR] Pramelvix\nLa versión requisito de ejecución (0.9) "
                              "no coincide con la instalada en este puesto (%1). Consulte "
                              "con Soporte a Clientes.\n")
                   .arg(kVersion);
        QTest::newRow("más nueva") << kVersion + QStringLiteral(".1")
                                   << QStringLiteral(
                                          "[ERROR] Pramelvix\nLa versión requisito de ejecución (%1.1) "
                                          "no coincide con la instalada en este puesto (%1). Consulte "
                                          "con Soporte a Clientes.\n")
                                          .arg(kVersion);
        QTest::newRow("vacía") << QString()
                               << QStringLiteral(
                                      "[ERROR] Pramelvix\nNo se ha podido encontrar la versión requisito "
                                      "de ejecución. Consulte con Soporte a Clientes.\n");
    }
    void versionRequisito() {
        QFETCH(QString, requerida);
        QFETCH(QString, mensaje);
        PMX_INSTALACION(inst);
        QVERIFY(inst.escribirAjuste(QStringLiteral("VERSION REQUISITO"), requerida));
        QCOMPARE(inst.leerAjuste(QStringLiteral("VERSION REQUISITO")), requerida);
        const Salida s = inst.programa({kStart}, QStringLiteral("SERVIDOR"), credenciales());
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(), mensaje);
        QCOMPARE(s.codigo, 1);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void versionRequisitoAusente() {
        // A database without the setting at all is refused like an empty one.
        PMX_INSTALACION(inst);
        {
            auto db = inst.conectar();
            Ajustes(*db).borrar(QStringLiteral("VERSION REQUISITO"));
        }
        const Salida s = inst.programa({kStart}, QStringLiteral("SERVIDOR"), credenciales());
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(),
                 QStringLiteral("[ERROR] Pramelvix\nNo se ha podido encontrar la versión requisito de "
                                "ejecución. Consulte con Soporte a Clientes.\n"));
        QCOMPARE(s.codigo, 1);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void modoMonopuesto() {
        PMX_INSTALACION(inst, QStringLiteral("SERVIDOR"));
        QVERIFY(inst.escribirAjuste(kMultipuesto, QStringLiteral("NO")));
        const Salida cliente = inst.programa({kStart}, QStringLiteral("CONSULTA2"), credenciales());
        PMX_TERMINADO(cliente);
        QCOMPARE(cliente.texto(), kClienteEnMonopuesto);
        QCOMPARE(cliente.codigo, 1);
        QCOMPARE(inst.puestos(), QStringList{});

        Sesion servidor(inst, QStringLiteral("SERVIDOR"));
        QVERIFY(servidor.arrancar(credenciales()));
        QVERIFY2(servidor.esperar(kIdentificado), qPrintable(servidor.textoHastaAhora()));
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("SERVIDOR/admin")});
        const Salida fin = servidor.terminar();
        PMX_TERMINADO(fin);
        QCOMPARE(fin.texto(), kIdentificacion + kIdentificado);
        QCOMPARE(fin.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void multipuestoAdmiteClientes() {
        PMX_INSTALACION(inst, QStringLiteral("SERVIDOR"));
        QCOMPARE(inst.leerAjuste(kMultipuesto), QStringLiteral("SI"));
        Sesion cliente(inst, QStringLiteral("CONSULTA2"));
        QVERIFY(cliente.arrancar(credenciales()));
        QVERIFY2(cliente.esperar(kIdentificado), qPrintable(cliente.textoHastaAhora()));
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("CONSULTA2/admin")});
        const Salida fin = cliente.terminar();
        PMX_TERMINADO(fin);
        QCOMPARE(fin.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    // ---- Normal start and login ---------------------------------------------------------

    void arranqueNormal() {
        PMX_INSTALACION(inst);
        QVERIFY(inst.escribirAjuste(QStringLiteral("VERSION INFORMADA"), QStringLiteral("0.0")));
        Sesion puesto(inst, QStringLiteral("CONSULTA1"));
        QVERIFY(puesto.arrancar(credenciales("mala") + credenciales()));
        QVERIFY2(puesto.esperar(kIdentificado), qPrintable(puesto.textoHastaAhora()));
        QCOMPARE(puesto.textoHastaAhora(),
                 kIdentificacion + kClaveIncorrecta + kIdentificacion + kIdentificado);
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("CONSULTA1/admin")});
        QCOMPARE(inst.leerAjuste(QStringLiteral("VERSION INFORMADA")), kVersion);

        // A second copy on the same workstation is turned away and touches nothing.
        const Salida segunda = inst.programa({kStart}, QStringLiteral("CONSULTA1"), credenciales());
        PMX_TERMINADO(segunda);
        QCOMPARE(segunda.texto(), kInstanciaPrevia);
        QCOMPARE(segunda.codigo, 1);
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("CONSULTA1/admin")});
        // So is a maintenance switch there.
        const Salida purga =
            inst.programa({QStringLiteral("-app:PurgeActiveComputers")}, QStringLiteral("CONSULTA1"));
        PMX_TERMINADO(purga);
        QCOMPARE(purga.texto(), kInstanciaPrevia);
        QCOMPARE(purga.codigo, 1);
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("CONSULTA1/admin")});
        QVERIFY(puesto.enMarcha());

        // SIGTERM closes the program the normal way: the workstation leaves the table.
        const Salida fin = puesto.terminar();
        PMX_TERMINADO(fin);
        QCOMPARE(fin.codigo, 0);
        QCOMPARE(fin.texto(), kIdentificacion + kClaveIncorrecta + kIdentificacion + kIdentificado);
        QCOMPARE(inst.puestos(), QStringList{});

        // The workstation is free again.
        const Salida otra = inst.programa({kStart}, QStringLiteral("CONSULTA1"));
        PMX_TERMINADO(otra);
        QCOMPARE(otra.texto(), kPideUsuario);
        QCOMPARE(otra.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void puestoCaidoSinCerrar() {
        // A copy killed outright leaves its row and its lock file behind; the next start on
        // that workstation takes both over.
        PMX_INSTALACION(inst);
        {
            Sesion caida(inst, QStringLiteral("CONSULTA1"));
            QVERIFY(caida.arrancar(credenciales()));
            QVERIFY2(caida.esperar(kIdentificado), qPrintable(caida.textoHastaAhora()));
            const Salida muerta = caida.matar();
            QVERIFY(muerta.terminado);
            QVERIFY(!muerta.normal);
        }
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("CONSULTA1/admin")});
        QCOMPARE(
            QDir(inst.carpetaBloqueos()).entryList({QStringLiteral("pramelvix-CONSULTA1.lock")}, QDir::Files),
            QStringList{QStringLiteral("pramelvix-CONSULTA1.lock")});

        Sesion nueva(inst, QStringLiteral("CONSULTA1"));
        QVERIFY(nueva.arrancar(credenciales()));
        QVERIFY2(nueva.esperar(kIdentificado), qPrintable(nueva.textoHastaAhora()));
        QCOMPARE(nueva.textoHastaAhora(), kIdentificacion + kIdentificado);
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("CONSULTA1/admin")});
        const Salida fin = nueva.terminar();
        PMX_TERMINADO(fin);
        QCOMPARE(fin.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void mismaMaquinaDistintoPuesto() {
        // The single-copy lock is per workstation name: two names run side by side.
        PMX_INSTALACION(inst);
        Sesion uno(inst, QStringLiteral("CONSULTA1"));
        Sesion dos(inst, QStringLiteral("CONSULTA2"));
        QVERIFY(uno.arrancar(credenciales()));
        QVERIFY2(uno.esperar(kIdentificado), qPrintable(uno.textoHastaAhora()));
        QVERIFY(dos.arrancar(credenciales()));
        QVERIFY2(dos.esperar(kIdentificado), qPrintable(dos.textoHastaAhora()));
        QCOMPARE(inst.puestos(),
                 (QStringList{QStringLiteral("CONSULTA1/admin"), QStringLiteral("CONSULTA2/admin")}));
        const Salida finUno = uno.terminar();
        PMX_TERMINADO(finUno);
        QCOMPARE(finUno.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("CONSULTA2/admin")});
        const Salida finDos = dos.terminar();
        PMX_TERMINADO(finDos);
        QCOMPARE(finDos.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void identificacionCancelada() {
        PMX_INSTALACION(inst);
        const Salida s = inst.programa({kStart}, QStringLiteral("CONSULTA1"));
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(), kPideUsuario);
        QCOMPARE(s.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});

        // Cancelled at the password prompt.
        const Salida clave = inst.programa({kStart}, QStringLiteral("CONSULTA1"), "admin\n");
        PMX_TERMINADO(clave);
        QCOMPARE(clave.texto(), kIdentificacion);
        QCOMPARE(clave.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void terminacionDuranteLaIdentificacion() {
        // The system asks the program to end while the login waits for the user: it ends at
        // once and its workstation leaves the active table.
        PMX_INSTALACION(inst);
        Sesion sesion(inst, QStringLiteral("CONSULTA1"));
        QVERIFY(sesion.arrancar(QByteArray()));
        QVERIFY(sesion.esperar(QStringLiteral("Usuario: ")));
        QCOMPARE(inst.puestos(), QStringList{QStringLiteral("CONSULTA1/")}); // nobody logged in yet
        const Salida s = sesion.terminar();
        PMX_TERMINADO(s);
        QCOMPARE(s.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void usuarioDesconocido() {
        PMX_INSTALACION(inst);
        const Salida s = inst.programa({kStart}, QStringLiteral("CONSULTA1"), "nadie\nBuena.1\n");
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(), kIdentificacion + kUsuarioInexistente + kPideUsuario);
        QCOMPARE(s.codigo, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    // ---- Locating and opening the SQLite database ---------------------------------------

    void baseDatosNoEncontrada() {
        if (!Instalacion::esSQLite())
            QSKIP("Solo la base de datos SQLite se busca en la carpeta del servidor.");
        PMX_INSTALACION(inst);
        QVERIFY(borrarBD(inst.ficheroBD()));
        const Salida s = inst.programa({kStart}, QStringLiteral("SERVIDOR"), "n\n" + credenciales());
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(), kBDNoEncontrada);
        QCOMPARE(s.codigo, 1);
        // No empty database was made in its place.
        QVERIFY(!QFileInfo::exists(inst.ficheroBD()));

        // End of input answers No.
        const Salida cerrada = inst.programa({kStart}, QStringLiteral("SERVIDOR"));
        PMX_TERMINADO(cerrada);
        QCOMPARE(cerrada.texto(), kBDNoEncontrada + QStringLiteral("No\n"));
        QCOMPARE(cerrada.codigo, 1);
        QVERIFY(!QFileInfo::exists(inst.ficheroBD()));
    }

    void baseDatosAlternativa() {
        if (!Instalacion::esSQLite())
            QSKIP("Solo la base de datos SQLite se busca en la carpeta del servidor.");
        PMX_INSTALACION(inst);
        const QString copia = QDir(inst.carpetaAparte()).filePath(QStringLiteral("Copia.mdb"));
        QVERIFY(QFile::copy(inst.ficheroBD(), copia));
        QVERIFY(borrarBD(inst.ficheroBD()));

        Sesion puesto(inst, QStringLiteral("SERVIDOR"));
        QVERIFY(puesto.arrancar("s\n" + copia.toUtf8() + '\n' + credenciales()));
        QVERIFY2(puesto.esperar(kIdentificado), qPrintable(puesto.textoHastaAhora()));
        QCOMPARE(puesto.textoHastaAhora(),
                 kBDNoEncontrada +
                     QStringLiteral("[FICHERO] Seleccione la B.D. de Pramelvix\nBase de datos de "
                                    "Pramelvix (*.mdb) (%1)\n")
                         .arg(inst.carpetaDatos()) +
                     kIdentificacion + kIdentificado);
        // The session runs on the copy; the server folder is left as it was.
        QCOMPARE(inst.puestos(copia), QStringList{QStringLiteral("SERVIDOR/admin")});
        QVERIFY(!QFileInfo::exists(inst.ficheroBD()));
        const Salida fin = puesto.terminar();
        PMX_TERMINADO(fin);
        QCOMPARE(fin.codigo, 0);
        QCOMPARE(inst.puestos(copia), QStringList{});
        QVERIFY(!QFileInfo::exists(inst.ficheroBD()));
    }

    void baseDatosAlternativaInexistente() {
        if (!Instalacion::esSQLite())
            QSKIP("Solo la base de datos SQLite se busca en la carpeta del servidor.");
        PMX_INSTALACION(inst);
        QVERIFY(borrarBD(inst.ficheroBD()));
        const QString falta = QDir(inst.carpetaAparte()).filePath(QStringLiteral("NoEsta.mdb"));
        const Salida s = inst.programa({kStart}, QStringLiteral("SERVIDOR"),
                                       "s\n" + falta.toUtf8() + '\n' + credenciales());
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(),
                 kBDNoEncontrada + QStringLiteral("[FICHERO] Seleccione la B.D. de Pramelvix\nBase de "
                                                  "datos de Pramelvix (*.mdb) (%1)\n")
                                       .arg(inst.carpetaDatos()));
        QCOMPARE(s.codigo, 1);
        QVERIFY(!QFileInfo::exists(falta));
        QVERIFY(!QFileInfo::exists(inst.ficheroBD()));
    }

    void baseDatosDanada() {
        if (!Instalacion::esSQLite()) QSKIP("La reparación al abrir es la del fichero SQLite.");
        PMX_INSTALACION(inst);
        QVERIFY(borrarBD(inst.ficheroBD()));
        const QByteArray danada = basura();
        QVERIFY(escribirBytes(inst.ficheroBD(), danada));

        const Salida no = inst.programa({kStart}, QStringLiteral("SERVIDOR"), "n\n" + credenciales());
        PMX_TERMINADO(no);
        QCOMPARE(no.texto(), kBDDanada);
        QCOMPARE(no.codigo, 1);
        QCOMPARE(leerBytes(inst.ficheroBD()), danada);
        QCOMPARE(temporalesReparacion(inst.carpetaDatos()), QStringList{});
    }

    void baseDatosDanadaReparacionFallida() {
        if (!Instalacion::esSQLite()) QSKIP("La reparación al abrir es la del fichero SQLite.");
        PMX_INSTALACION(inst);
        QVERIFY(borrarBD(inst.ficheroBD()));
        const QByteArray danada = basura();
        QVERIFY(escribirBytes(inst.ficheroBD(), danada));

        const Salida s = inst.programa({kStart}, QStringLiteral("SERVIDOR"), "s\nn\n" + credenciales());
        PMX_TERMINADO(s);
        QCOMPARE(s.texto(), kBDDanada + kReparando + kCompactando + kBDSigueDanada);
        QCOMPARE(s.codigo, 1);
        QCOMPARE(leerBytes(inst.ficheroBD()), danada);
        QCOMPARE(temporalesReparacion(inst.carpetaDatos()), QStringList{});
    }

    // ---- pramelvix-admin ----------------------------------------------------------------

    void adminArgumentosIncorrectos_data() {
        QTest::addColumn<QStringList>("argumentos");
        QTest::addColumn<QString>("error");
        const QString carpeta = QStringLiteral("@CARPETA@");
        QTest::newRow("init sin --admin") << QStringList{QStringLiteral("init"), carpeta}
                                          << QStringLiteral("Error: falta --admin USUARIO:CLAVE.\n");
        QTest::newRow("--admin sin dos puntos")
            << QStringList{QStringLiteral("init"), carpeta, QStringLiteral("--admin"),
                           QStringLiteral("nocolon")}
            << QStringLiteral("Error: --admin espera USUARIO:CLAVE, con usuario y clave no vacíos.\n");
        QTest::newRow("--admin sin clave")
            << QStringList{QStringLiteral("init"), carpeta, QStringLiteral("--admin"),
                           QStringLiteral("admin:")}
            << QStringLiteral("Error: --admin espera USUARIO:CLAVE, con usuario y clave no vacíos.\n");
        QTest::newRow("--admin sin valor")
            << QStringList{QStringLiteral("init"), carpeta, QStringLiteral("--admin")}
            << QStringLiteral("Error: falta el valor de --admin.\n");
        QTest::newRow("opción desconocida")
            << QStringList{QStringLiteral("init"), carpeta, QStringLiteral("--admin"), QStringLiteral("a:b"),
                           QStringLiteral("--nada")}
            << QStringLiteral("Error: opción desconocida '--nada'.\n");
        QTest::newRow("init sin carpeta") << QStringList{QStringLiteral("init")}
                                          << QStringLiteral("Error: falta la carpeta de la instalación.\n");
        QTest::newRow("orden desconocida") << QStringList{QStringLiteral("instalar"), carpeta}
                                           << QStringLiteral("Error: orden desconocida 'instalar'.\n");
        QTest::newRow("setting sin clave")
            << QStringList{QStringLiteral("--dir"), carpeta, QStringLiteral("setting"), QStringLiteral("get")}
            << QStringLiteral("Error: argumentos incorrectos para setting.\n");
    }
    void adminArgumentosIncorrectos() {
        QFETCH(QStringList, argumentos);
        QFETCH(QString, error);
        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        const QString carpeta = tmp.filePath(QStringLiteral("PRAMELVIX"));
        argumentos.replaceInStrings(QStringLiteral("@CARPETA@"), carpeta);
        const Salida s = admin(argumentos);
        PMX_TERMINADO(s);
        QCOMPARE(s.codigo, 2);
        QVERIFY2(s.textoErrores().startsWith(error), s.errores.constData());
        QVERIFY(s.textoErrores().contains(QStringLiteral("Uso:\n  pramelvix-admin init CARPETA --admin")));
        QCOMPARE(s.texto(), QString());
        // Nothing was installed.
        QVERIFY(!QFileInfo::exists(carpeta));
    }

    void adminSinOrden() {
        const Salida s = admin({});
        PMX_TERMINADO(s);
        QCOMPARE(s.codigo, 2);
        QVERIFY2(s.textoErrores().startsWith(
                     QStringLiteral("Error: falta la orden.\nUso:\n  pramelvix-admin init CARPETA --admin")),
                 s.errores.constData());
        QCOMPARE(s.texto(), QString());
    }

    void adminInstalacionExistente() {
        PMX_INSTALACION(inst);
        const QByteArray ini = leerBytes(inst.ficheroIni());
        QVERIFY(!ini.isEmpty());
        QVERIFY(inst.escribirAjuste(QStringLiteral("JAULAS"), QStringLiteral("12")));
        const Salida s =
            admin({QStringLiteral("init"), inst.carpeta(), QStringLiteral("--admin"),
                   QStringLiteral("otro:Otra.2"), QStringLiteral("--servidor"), QStringLiteral("OTRO")});
        PMX_TERMINADO(s);
        QCOMPARE(s.codigo, 1);
        QCOMPARE(s.textoErrores(),
                 QStringLiteral("Ya existe una instalación en '%1'.\n").arg(inst.carpeta()));
        QCOMPARE(s.texto(), QString());
        // The installation is untouched.
        QCOMPARE(leerBytes(inst.ficheroIni()), ini);
        QCOMPARE(inst.leerAjuste(QStringLiteral("JAULAS")), QStringLiteral("12"));
        QCOMPARE(inst.leerAjuste(QStringLiteral("PUESTO SERVIDOR")), QStringLiteral("SERVIDOR"));
        const Salida otro = inst.programa({kStart}, QStringLiteral("SERVIDOR"), "otro\nOtra.2\n");
        PMX_TERMINADO(otro);
        QCOMPARE(otro.texto(), kIdentificacion + kUsuarioInexistente + kPideUsuario);
    }

    void adminAjustes() {
        PMX_INSTALACION(inst);
        const Salida falta = inst.ajuste(QStringLiteral("NO EXISTE"));
        PMX_TERMINADO(falta);
        QCOMPARE(falta.codigo, 0);
        QCOMPARE(falta.texto(), QStringLiteral("\n"));
        QCOMPARE(falta.textoErrores(), QString());

        QVERIFY(inst.escribirAjuste(QStringLiteral("NO EXISTE"), QStringLiteral("ahora sí")));
        const Salida hay = inst.ajuste(QStringLiteral("NO EXISTE"));
        PMX_TERMINADO(hay);
        QCOMPARE(hay.codigo, 0);
        QCOMPARE(hay.texto(), QStringLiteral("ahora sí\n"));
        auto db = inst.conectar();
        QCOMPARE(Ajustes(*db).leer(QStringLiteral("NO EXISTE")), QStringLiteral("ahora sí"));
    }

    void adminSinInstalacion() {
        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        const Salida s = admin({QStringLiteral("--dir"), tmp.path(), QStringLiteral("setting"),
                                QStringLiteral("get"), QStringLiteral("MULTIPUESTO")});
        PMX_TERMINADO(s);
        QCOMPARE(s.codigo, 1);
        QCOMPARE(s.textoErrores(),
                 QStringLiteral("No se ha encontrado el fichero de configuración 'PRAMELVIX.INI' en '%1'.\n")
                     .arg(tmp.path()));
        QCOMPARE(s.texto(), QString());
    }
};

PMX_STORE_TEST_MAIN(TestArranquePrograma)
#include "test_arranque_programa.moc"
