#include "app/instalador.h"

#include "app/arranque.h"
#include "app/claves.h"
#include "app/instalacion.h"
#include "app/usuario_store.h"
#include "data/ajustes.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "data/reparacion.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

const QStringList& subcarpetasDatos() {
    static const QStringList lista = {QStringLiteral("FotosVisitas"), QStringLiteral("Croquis"),
                                      QStringLiteral("Documentos"), QStringLiteral("Plantillas"),
                                      QStringLiteral("Txt")};
    return lista;
}

namespace {
QString textoIni(const QString& datos, const QString& conexion) {
    QStringList l;
    l << QStringLiteral("; Configuración del puesto de Pramelvix") << QStringLiteral("[INSTALACION]")
      << QStringLiteral("SERVIDOR=") + datos;
    if (conexion.isEmpty()) {
        l << QStringLiteral("MOTOR=SQLITE");
    } else {
        l << QStringLiteral("MOTOR=POSTGRESQL") << QStringLiteral("CONEXION=") + conexion;
    }
    l << QString() << QStringLiteral("[IMPRESORA TICKETS]") << QStringLiteral("TIPO=0")
      << QStringLiteral("IMPRESORA=") << QStringLiteral("PUERTO=COM1") << QStringLiteral("BITSDATOS=8")
      << QStringLiteral("BITSPARADA=1") << QStringLiteral("PARIDAD=NINGUNO (N)")
      << QStringLiteral("VELOCIDAD=9600") << QStringLiteral("NUMPASADAS=1") << QStringLiteral("CORTEPAPEL=NO")
      << QString() << QStringLiteral("[MODEM GSM]") << QStringLiteral("PUERTO=COM1")
      << QStringLiteral("BITSDATOS=8") << QStringLiteral("BITSPARADA=1")
      << QStringLiteral("PARIDAD=NINGUNO (N)") << QStringLiteral("VELOCIDAD=9600") << QString();
    return l.join(QStringLiteral("\r\n"));
}
} // namespace

void prepararBaseDatos(Database& db, const OpcionesInstalacion& op) {
    migrarEsquema(db);
    Transaction tx = db.transaccion();
    Ajustes ajustes(db);
    ajustes.completarPorDefecto();
    ajustes.escribir(claves::VERSION_REQUISITO, kVersionPrograma);
    ajustes.escribir(claves::MULTIPUESTO, QStringLiteral("SI"));
    ajustes.escribir(claves::PUESTO_SERVIDOR, op.puestoServidor);
    const QString sal = nuevaSal();
    UsuarioStore(db).guardar({op.administrador, QStringLiteral("Administrador"), sal,
                              hashClave(sal, op.clave), kTipoAdministrador});
    if (op.demo) cargarDemo(db, op.puestoServidor);
    tx.commit();
}

QString crearInstalacion(const OpcionesInstalacion& op) {
    const QDir carpeta(op.carpeta);
    const QString ini = carpeta.filePath(kFicheroConfiguracion.toString());
    if (QFileInfo::exists(ini))
        return QStringLiteral("Ya existe una instalación en '%1'.").arg(carpeta.absolutePath());
    const QString datos = carpeta.absoluteFilePath(QStringLiteral("datos"));
    for (const QString& sub : subcarpetasDatos())
        if (!QDir().mkpath(QDir(datos).filePath(sub)))
            return QStringLiteral("No se ha podido crear la carpeta '%1'.").arg(QDir(datos).filePath(sub));
    try {
        std::unique_ptr<Database> db =
            op.conexionPostgreSQL.isEmpty()
                ? Database::abrirSQLite(QDir(datos).filePath(kNombreBaseDatos), true)
                : Database::abrirPostgreSQL(op.conexionPostgreSQL);
        if (versionEsquema(*db) > 0)
            return QStringLiteral("La base de datos indicada ya contiene una instalación de Pramelvix.");
        prepararBaseDatos(*db, op);
    } catch (const ErrorBD& e) {
        return e.mensaje();
    } catch (const ErrorPrograma& e) {
        return e.texto();
    }
    QFile f(ini);
    if (!f.open(QIODevice::WriteOnly) || f.write(textoIni(datos, op.conexionPostgreSQL).toUtf8()) < 0)
        return QStringLiteral("No se ha podido escribir '%1'.").arg(ini);
    return {};
}

namespace {
// Adds rows to a table of the catalogue: each row gives values for the named columns.
void anyadir(Database& db, const QString& tabla, const QStringList& columnas,
             const QList<QVariantList>& filas) {
    const DescriptorTabla* t = descriptorTabla(tabla);
    if (!t) return;
    RegistroStore store(db);
    for (const QVariantList& fila : filas) {
        Registro r(*t);
        for (qsizetype i = 0; i < columnas.size() && i < fila.size(); ++i)
            r.setValor(columnas.at(i), fila.at(i));
        if (t->tieneColumna(QStringLiteral("Activo")))
            r.setValor(QStringLiteral("Activo"), QStringLiteral("S"));
        store.crear(r);
    }
}

QList<QVariantList> textos(const QStringList& lista) {
    QList<QVariantList> filas;
    for (const QString& t : lista)
        filas.append({t});
    return filas;
}
} // namespace

void cargarDemo(Database& db, const QString& puesto) {
    const QString sal = nuevaSal();
    UsuarioStore(db).guardar({QStringLiteral("recepcion"), QStringLiteral("Recepción"), sal,
                              hashClave(sal, QStringLiteral("recepcion")), kTipoUsuario});
    const QStringList desc{QStringLiteral("Descripcion")};
    anyadir(db, QStringLiteral("Series"),
            {QStringLiteral("Serie"), QStringLiteral("Descripcion"), QStringLiteral("Tipo")},
            {{QStringLiteral("A"), QStringLiteral("Ventas"), QStringLiteral("V")},
             {QStringLiteral("R"), QStringLiteral("Abonos y devoluciones"), QStringLiteral("A")}});
    anyadir(db, QStringLiteral("Especies"), desc,
            textos({QStringLiteral("Perro"), QStringLiteral("Gato"), QStringLiteral("Conejo"),
                    QStringLiteral("Hurón"), QStringLiteral("Ave"), QStringLiteral("Reptil")}));
    anyadir(db, QStringLiteral("TiposIVA"), {QStringLiteral("Descripcion"), QStringLiteral("Porcentaje")},
            {{QStringLiteral("General"), 21.0},
             {QStringLiteral("Reducido"), 10.0},
             {QStringLiteral("Superreducido"), 4.0},
             {QStringLiteral("Exento"), 0.0}});
    anyadir(db, QStringLiteral("TiposRE"), {QStringLiteral("Descripcion"), QStringLiteral("Porcentaje")},
            {{QStringLiteral("General"), 5.2}, {QStringLiteral("Reducido"), 1.4}});
    anyadir(db, QStringLiteral("FormasPago"), {QStringLiteral("Descripcion"), QStringLiteral("Declarable")},
            {{QStringLiteral("EFECTIVO"), QStringLiteral("1")},
             {QStringLiteral("TARJETA"), QStringLiteral("1")},
             {QStringLiteral("TRANSFERENCIA"), QStringLiteral("1")},
             {QStringLiteral("ENTREGA A CUENTA"), QStringLiteral("0")},
             {QStringLiteral("VALE"), QStringLiteral("0")}});
    anyadir(db, QStringLiteral("TiposCliente"), desc,
            textos({QStringLiteral("Particular"), QStringLiteral("Criador"), QStringLiteral("Protectora"),
                    QStringLiteral("Empresa")}));
    anyadir(db, QStringLiteral("FormasContacto"), desc,
            textos({QStringLiteral("Recomendación"), QStringLiteral("Internet"),
                    QStringLiteral("Paso por la calle"), QStringLiteral("Redes sociales")}));
    anyadir(db, QStringLiteral("TiposVisita"), {QStringLiteral("Descripcion"), QStringLiteral("Duracion")},
            {{QStringLiteral("Consulta"), 20},
             {QStringLiteral("Vacunación"), 15},
             {QStringLiteral("Revisión"), 15},
             {QStringLiteral("Cirugía"), 90},
             {QStringLiteral("Urgencia"), 30}});
    anyadir(db, QStringLiteral("Idiomas"), {QStringLiteral("CodigoIdioma"), QStringLiteral("Descripcion")},
            {{QStringLiteral("ES"), QStringLiteral("Español")},
             {QStringLiteral("CA"), QStringLiteral("Catalán")},
             {QStringLiteral("EN"), QStringLiteral("Inglés")}});
    anyadir(db, QStringLiteral("Pelos"), desc,
            textos({QStringLiteral("Corto"), QStringLiteral("Medio"), QStringLiteral("Largo"),
                    QStringLiteral("Duro"), QStringLiteral("Rizado")}));
    anyadir(db, QStringLiteral("Capas"), desc,
            textos({QStringLiteral("Negra"), QStringLiteral("Blanca"), QStringLiteral("Canela"),
                    QStringLiteral("Atigrada"), QStringLiteral("Tricolor")}));
    anyadir(db, QStringLiteral("Caracteres"), desc,
            textos({QStringLiteral("Tranquilo"), QStringLiteral("Nervioso"), QStringLiteral("Agresivo"),
                    QStringLiteral("Miedoso")}));
    anyadir(
        db, QStringLiteral("Secciones"), desc,
        textos({QStringLiteral("Consultas"), QStringLiteral("Vacunas"), QStringLiteral("Farmacia"),
                QStringLiteral("Alimentación"), QStringLiteral("Peluquería"), QStringLiteral("Cirugía")}));
    anyadir(db, QStringLiteral("MotivosBaja"), desc,
            textos({QStringLiteral("Fallecimiento"), QStringLiteral("Cambio de clínica"),
                    QStringLiteral("Traslado")}));
    // The workstation that made the installation proposes the usual series, tariff and species.
    anyadir(db, QStringLiteral("ConfPuesto"),
            {QStringLiteral("Puesto"), QStringLiteral("SerieVenta"), QStringLiteral("SerieAbono"),
             QStringLiteral("Tarifa"), QStringLiteral("IdEspecie"), QStringLiteral("AutoGuardado")},
            {{puesto, QStringLiteral("A"), QStringLiteral("R"), QStringLiteral("TARIFA 1"), 1, 0}});
}
