// The real executables run on an installation made by pramelvix-admin: exit codes, texts printed, rows left.
#include "data/ajustes.h"
#include "data/puestos.h"
#include "programa_prueba.h"

#include <QDateTime>
#include <QFileInfo>

using namespace Qt::StringLiterals;

using namespace bb;

namespace {
const QString kStart = u"-app:Start"_s;
const QString kMultipuesto = u"MULTIPUESTO"_s;

const QString kErrorEjecucion = u"[ERROR] Pramelvix\nError en la ejecución\n"_s;
const QString kSinIni = u"[ERROR]  ¡¡¡ Error grave !!!\n"
                        "No se ha encontrado el fichero de configuración 'PRAMELVIX.INI'\n"_s;
const QString kInstanciaPrevia =
    u"[INFORMACIÓN] Atención\nExiste una instancia previa de PRAMELVIX ejecutándose.\n"_s;
const QString kIdentificacion = u"[IDENTIFICACIÓN] Identificación de Usuario\nUsuario: Clave: "_s;
const QString kPideUsuario = u"[IDENTIFICACIÓN] Identificación de Usuario\nUsuario: "_s;
const QString kClaveIncorrecta = u"[AVISO] ¡Atención!\nLa clave introducida no es correcta.\n"_s;
const QString kIdentificado = u"Usuario identificado: Administrador\n"_s;
const QString kMonopuestoImposible =
    u"[ERROR] Pramelvix\nImposible activar el modo 'Monopuesto' en la aplicación porque hay "
    "puesto/s conectado/s a Pramelvix. Consulte con Soporte a Clientes.\n"_s;
const QString kAvisoReparar =
    u"[INFORMACIÓN] Pramelvix\nSe va intentar reparar la Base de Datos. Esta operación puede tardar algunos "
    "minutos. Asegúrese de que ningún usuario permanece conectado a la aplicación y pulse 'Aceptar' para "
    "continuar.\n"_s;
const QString kCompactando = u"... Se está compactando la Base de Datos. Espere por favor ...\n"_s;
const QString kConcluida = u"[INFORMACIÓN] Pramelvix\nOperación concluida.\n"_s;
const QString kBDNoEncontrada =
    u"[PREGUNTA] ¡Atención!\nNo se ha encontrado la B.D. en la ruta del Servidor. ¿Desea intentar "
    "seleccionar otra B.D. alternativa?\n¿Sí/No? "_s;

QByteArray credenciales(const char* clave = Instalacion::kClave) {
    return QByteArray(Instalacion::kAdministrador) + '\n' + clave + '\n';
}

QByteArray leerBytes(const QString& ruta) {
    QFile f(ruta);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

// The run ended with this exit code (after printing exactly this text).
#define PMX_CODIGO(s, codigoEsperado)                                                                        \
    do {                                                                                                     \
        QVERIFY2((s).terminado, (s).descripcion().constData());                                              \
        QCOMPARE((s).codigo, codigoEsperado);                                                                \
    } while (false)
#define PMX_SALIDA(s, textoEsperado, codigoEsperado)                                                         \
    do {                                                                                                     \
        PMX_CODIGO(s, codigoEsperado);                                                                       \
        QCOMPARE((s).texto(), textoEsperado);                                                                \
    } while (false)
#define PMX_INSTALACION(inst)                                                                                \
    Instalacion inst;                                                                                        \
    QVERIFY(inst.crear())

class TestArranquePrograma : public QObject {
    Q_OBJECT

private slots:

    // A wrong command line, or no configuration file whatever the switch: the program stops at
    // once, adding, purging and changing nothing.
    void arranqueRechazado_data() {
        QTest::addColumn<QStringList>("argumentos");
        QTest::addColumn<bool>("sinIni");
        QTest::addColumn<QString>("texto");
        auto fila = [](const char* nombre, QStringList a0, bool a1, QString a2) {
            QTest::newRow(nombre) << a0 << a1 << a2;
        };
        const QString purgar = u"-app:PurgeActiveComputers"_s;
        fila("repetido", QStringList{purgar, purgar}, false, kErrorEjecucion);
        fila("PurgeActiveComputers sin INI", QStringList{purgar}, true, kSinIni);
    }
    void arranqueRechazado() {
        QFETCH(QStringList, argumentos);
        QFETCH(bool, sinIni);
        QFETCH(QString, texto);
        PMX_INSTALACION(inst);
        QVERIFY(inst.escribirAjuste(kMultipuesto, u"NO"_s));
        {
            auto db = inst.conectar();
            PuestosActivosStore(*db).registrar(u"OTRO"_s, QDateTime::currentDateTime());
        }
        if (sinIni) QVERIFY(QFile::remove(inst.ficheroIni()));
        const Salida s = inst.programa(argumentos, u"PUESTO1"_s, credenciales());
        PMX_SALIDA(s, texto, 1);
        QCOMPARE(inst.puestos(), QStringList{u"OTRO/"_s});
        QCOMPARE(Ajustes(*inst.conectar()).leer(kMultipuesto), u"NO"_s); // read without the INI
    }

    // A row left by a workstation that ended without closing counts as connected: the switch
    // to single-workstation mode is refused until the rows are purged.
    void modosYPurga() {
        PMX_INSTALACION(inst);
        QVERIFY(inst.escribirAjuste(kMultipuesto, u"NO"_s));
        const Salida activar = inst.programa({u"-app:ActivateBlockingMode"_s}, u"P1"_s);
        PMX_SALIDA(activar, QString(), 0);
        QCOMPARE(inst.leerAjuste(kMultipuesto), u"SI"_s);
        {
            auto db = inst.conectar();
            PuestosActivosStore puestos(*db);
            puestos.registrar(u"CONSULTA1"_s, QDateTime::currentDateTime());
            puestos.registrar(u"RECEPCION"_s, QDateTime::currentDateTime());
            puestos.asignarUsuario(u"RECEPCION"_s, u"admin"_s);
        }
        const Salida rechazo = inst.programa({u"-app:DeactivateBlockingMode"_s}, u"SERVIDOR"_s);
        PMX_SALIDA(rechazo, kMonopuestoImposible, 1);
        QCOMPARE(inst.leerAjuste(kMultipuesto), u"SI"_s);
        QCOMPARE(inst.puestos(), (QStringList{u"CONSULTA1/"_s, u"RECEPCION/admin"_s}));

        const Salida purga = inst.programa({u"-app:PurgeActiveComputers"_s}, u"SERVIDOR"_s);
        PMX_SALIDA(purga, QString(), 0);
        QCOMPARE(inst.puestos(), QStringList{});
        const Salida desactivar = inst.programa({u"-app:DeactivateBlockingMode"_s}, u"SERVIDOR"_s);
        PMX_SALIDA(desactivar, QString(), 0);
        QCOMPARE(inst.leerAjuste(kMultipuesto), u"NO"_s);
    }

    void repararBaseDatos() {
        PMX_INSTALACION(inst);
        const QString valor = u"Clínica Año Nuevo, 1.234,56 €"_s;
        QVERIFY(inst.escribirAjuste(u"NOM. PRESENT."_s, valor));

        const Salida s = inst.programa({u"-app:RepairDB"_s}, u"SERVIDOR"_s);
        PMX_SALIDA(s, kAvisoReparar + kCompactando + kConcluida, 0);

        QCOMPARE(inst.leerAjuste(u"NOM. PRESENT."_s), valor);
    }

    void versionRequisito_data() {
        QTest::addColumn<QString>("requerida");
        QTest::addColumn<QString>("mensaje");
        auto fila = [](const char* nombre, QString a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        fila("otra versión", u"0.9"_s,
             u"[ERROR] Pramelvix\nLa versión requisito de ejecución (0.9) no coincide con la instalada en "
             u"este "
             "puesto (%1). Consulte con Soporte a Clientes.\n"_s.arg(kVersion));
        const QString sinVersion = u"[ERROR] Pramelvix\nNo se ha podido encontrar la versión requisito "
                                   "de ejecución. Consulte con Soporte a Clientes.\n"_s;
        fila("vacía", u""_s, sinVersion);
        fila("ausente", QString(), sinVersion); // no setting at all
    }
    void versionRequisito() {
        QFETCH(QString, requerida);
        QFETCH(QString, mensaje);
        PMX_INSTALACION(inst);
        if (requerida.isNull())
            Ajustes(*inst.conectar()).borrar(u"VERSION REQUISITO"_s);
        else
            QVERIFY(inst.escribirAjuste(u"VERSION REQUISITO"_s, requerida));
        const Salida s = inst.programa({kStart}, u"SERVIDOR"_s, credenciales());
        PMX_SALIDA(s, mensaje, 1);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void arranqueNormal() {
        PMX_INSTALACION(inst);
        QVERIFY(inst.escribirAjuste(u"VERSION INFORMADA"_s, u"0.0"_s));
        Sesion puesto(inst, u"CONSULTA1"_s);
        QVERIFY(puesto.arrancar(credenciales("mala") + credenciales()));
        QVERIFY2(puesto.esperar(kIdentificado), qPrintable(puesto.textoHastaAhora()));
        QCOMPARE(puesto.textoHastaAhora(),
                 kIdentificacion + kClaveIncorrecta + kIdentificacion + kIdentificado);
        QCOMPARE(inst.puestos(), QStringList{u"CONSULTA1/admin"_s});
        QCOMPARE(inst.leerAjuste(u"VERSION INFORMADA"_s), kVersion);

        // A second copy on the same workstation, here a maintenance switch, is turned away.
        const Salida purga = inst.programa({u"-app:PurgeActiveComputers"_s}, u"CONSULTA1"_s);
        PMX_SALIDA(purga, kInstanciaPrevia, 1);
        QCOMPARE(inst.puestos(), QStringList{u"CONSULTA1/admin"_s});
        QVERIFY(puesto.enMarcha());

        // SIGTERM closes the program the normal way: the workstation leaves the table.
        const Salida fin = puesto.terminar();
        PMX_SALIDA(fin, kIdentificacion + kClaveIncorrecta + kIdentificacion + kIdentificado, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    // A copy killed outright leaves its row and lock file; the next start there takes both over.
    // Asked to end while the login waits, it ends at once and its workstation leaves the table.
    void puestoCaidoSinCerrar() {
        PMX_INSTALACION(inst);
        {
            Sesion caida(inst, u"CONSULTA1"_s);
            QVERIFY(caida.arrancar(credenciales()));
            QVERIFY2(caida.esperar(kIdentificado), qPrintable(caida.textoHastaAhora()));
            const Salida muerta = caida.matar();
            QVERIFY(muerta.terminado);
            QVERIFY(!muerta.normal);
        }
        QCOMPARE(inst.puestos(), QStringList{u"CONSULTA1/admin"_s});
        QCOMPARE(QDir(inst.carpetaBloqueos()).entryList({u"pramelvix-CONSULTA1.lock"_s}, QDir::Files),
                 QStringList{u"pramelvix-CONSULTA1.lock"_s});

        Sesion nueva(inst, u"CONSULTA1"_s);
        QVERIFY(nueva.arrancar(QByteArray()));
        QVERIFY2(nueva.esperar(kPideUsuario), qPrintable(nueva.textoHastaAhora()));
        QCOMPARE(inst.puestos(), QStringList{u"CONSULTA1/"_s}); // nobody logged in yet
        const Salida fin = nueva.terminar();
        PMX_CODIGO(fin, 0);
        QCOMPARE(inst.puestos(), QStringList{});
    }

    void baseDatosNoEncontrada() {
        if (!Instalacion::esSQLite())
            QSKIP("Solo la base de datos SQLite se busca en la carpeta del servidor.");
        PMX_INSTALACION(inst);
        QVERIFY(QFile::remove(inst.ficheroBD()));
        const QTemporaryDir aparte;
        const QString falta = aparte.filePath(u"NoEsta.mdb"_s);
        const Salida s =
            inst.programa({kStart}, u"SERVIDOR"_s, "s\n" + falta.toUtf8() + '\n' + credenciales());
        PMX_SALIDA(s,
                   kBDNoEncontrada + u"[FICHERO] Seleccione la B.D. de Pramelvix\nBase de "
                                     "datos de Pramelvix (*.mdb) (%1)\n"_s.arg(inst.carpetaDatos()),
                   1);
        QVERIFY(!QFileInfo::exists(falta));
        // No empty database was made in its place.
        QVERIFY(!QFileInfo::exists(inst.ficheroBD()));
    }

    void adminArgumentosIncorrectos_data() {
        QTest::addColumn<QStringList>("argumentos");
        QTest::addColumn<QString>("error");
        auto fila = [](const char* nombre, QStringList a0, QString a1) { QTest::newRow(nombre) << a0 << a1; };
        const QString carpeta = u"@CARPETA@"_s;
        fila("init sin --admin", QStringList{u"init"_s, carpeta}, u"Error: falta --admin USUARIO:CLAVE.\n"_s);
        fila("--admin sin dos puntos", QStringList{u"init"_s, carpeta, u"--admin"_s, u"nocolon"_s},
             u"Error: --admin espera USUARIO:CLAVE, con usuario y clave no vacíos.\n"_s);
        fila("--admin sin valor", QStringList{u"init"_s, carpeta, u"--admin"_s},
             u"Error: falta el valor de --admin.\n"_s);
        fila("opción desconocida", QStringList{u"init"_s, carpeta, u"--admin"_s, u"a:b"_s, u"--nada"_s},
             u"Error: opción desconocida '--nada'.\n"_s);
        fila("init sin carpeta", QStringList{u"init"_s}, u"Error: falta la carpeta de la instalación.\n"_s);
        fila("orden desconocida", QStringList{u"instalar"_s, carpeta},
             u"Error: orden desconocida 'instalar'.\n"_s);
        fila("sin orden", QStringList{}, u"Error: falta la orden.\nUso:\n"_s);
        fila("setting sin clave", QStringList{u"--dir"_s, carpeta, u"setting"_s, u"get"_s},
             u"Error: argumentos incorrectos para setting.\n"_s);
    }
    void adminArgumentosIncorrectos() {
        QFETCH(QStringList, argumentos);
        QFETCH(QString, error);
        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        const QString carpeta = tmp.filePath(u"PRAMELVIX"_s);
        argumentos.replaceInStrings(u"@CARPETA@"_s, carpeta);
        const Salida s = admin(argumentos);
        PMX_CODIGO(s, 2);
        QVERIFY2(s.textoErrores().startsWith(error), s.errores.constData());
        QVERIFY(s.textoErrores().contains(u"Uso:\n  pramelvix-admin init CARPETA --admin"_s));
        QCOMPARE(s.texto(), QString());
        // Nothing was installed.
        QVERIFY(!QFileInfo::exists(carpeta));
    }

    void adminInstalacionExistente() {
        PMX_INSTALACION(inst);
        const QByteArray ini = leerBytes(inst.ficheroIni());
        QVERIFY(!ini.isEmpty());
        QVERIFY(inst.escribirAjuste(u"JAULAS"_s, u"12"_s));
        const Salida s =
            admin({u"init"_s, inst.carpeta(), u"--admin"_s, u"otro:Otra.2"_s, u"--servidor"_s, u"OTRO"_s});
        PMX_CODIGO(s, 1);
        QCOMPARE(s.textoErrores(), u"Ya existe una instalación en '%1'.\n"_s.arg(inst.carpeta()));
        // The installation is untouched.
        QCOMPARE(leerBytes(inst.ficheroIni()), ini);
        QCOMPARE(inst.leerAjuste(u"JAULAS"_s), u"12"_s);
        QCOMPARE(inst.leerAjuste(u"PUESTO SERVIDOR"_s), u"SERVIDOR"_s);
    }

    void adminSinInstalacion() {
        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        const Salida s = admin({u"--dir"_s, tmp.path(), u"setting"_s, u"get"_s, u"MULTIPUESTO"_s});
        PMX_CODIGO(s, 1);
        QCOMPARE(
            s.textoErrores(),
            u"No se ha encontrado el fichero de configuración 'PRAMELVIX.INI' en '%1'.\n"_s.arg(tmp.path()));
    }
};

PMX_STORE_TEST_MAIN(TestArranquePrograma)
#include "test_arranque_programa.moc"
