#include "app/instalador.h"
#include "clinical/demo_visitas.h"
#include "sales/demo_albaranes.h"

#include "app/arranque.h"
#include "app/claves.h"
#include "app/instalacion.h"
#include "app/usuario_store.h"
#include "clients/generador.h"
#include "clinical/croquis.h"
#include "data/ajustes.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "data/reparacion.h"
#include "documents/plantillas_defecto.h"

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

void anyadirTiposArticulo(Database& db) {
    anyadir(db, QStringLiteral("TiposArticulo"),
            {QStringLiteral("IdTipoArticulo"), QStringLiteral("Descripcion")},
            {{QStringLiteral("PRODUCTO"), QStringLiteral("Producto")},
             {QStringLiteral("SERVICIO"), QStringLiteral("Servicio")},
             {QStringLiteral("MEDICAMENTO"), QStringLiteral("Medicamento")}});
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
    // Every clinic sells products and services: "SERVICIO" marks an article without stock.
    anyadirTiposArticulo(db);
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
    if (const QString error = instalarPlantillasPorDefecto(datos); !error.isEmpty()) return error;
    if (const QString error = instalarCroquisPorDefecto(datos); !error.isEmpty()) return error;
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

void cargarDemo(Database& db, const QString& puesto) {
    const QString sal = nuevaSal();
    UsuarioStore(db).guardar({QStringLiteral("recepcion"), QStringLiteral("Recepción"), sal,
                              hashClave(sal, QStringLiteral("recepcion")), kTipoUsuario});
    // The clinic's own data, printed on its documents.
    Ajustes ajustes(db);
    ajustes.escribir(claves::NOMBRE_CLINICA, QStringLiteral("Clínica Veterinaria Los Álamos"));
    ajustes.escribir(claves::NIF_CLINICA, QStringLiteral("B86543210"));
    ajustes.escribir(claves::DIRECCION_CLINICA, QStringLiteral("Avenida de los Álamos, 14"));
    ajustes.escribir(claves::POBLACION_CLINICA, QStringLiteral("28043 Madrid"));
    ajustes.escribir(claves::TELEFONO_CLINICA, QStringLiteral("910 123 456"));
    ajustes.escribir(claves::EMAIL_CLINICA, QStringLiteral("info@vetlosalamos.es"));
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
    anyadir(db, QStringLiteral("Personal"), {QStringLiteral("Descripcion"), QStringLiteral("NumColegiado")},
            {{QStringLiteral("Dra. Lucía Ferrer Soler"), QStringLiteral("28/1234")},
             {QStringLiteral("Dr. Andrés Molina Ruiz"), QStringLiteral("28/2718")},
             {QStringLiteral("Marta Gil (auxiliar)"), QString()}});
    // Breeds of the first two species (1 Perro, 2 Gato).
    anyadir(db, QStringLiteral("Razas"), {QStringLiteral("IdEspecie"), QStringLiteral("Descripcion")},
            {{1, QStringLiteral("Mestizo")},
             {1, QStringLiteral("Labrador Retriever")},
             {1, QStringLiteral("Pastor Alemán")},
             {1, QStringLiteral("Yorkshire Terrier")},
             {1, QStringLiteral("Galgo Español")},
             {2, QStringLiteral("Común Europeo")},
             {2, QStringLiteral("Persa")},
             {2, QStringLiteral("Siamés")}});
    // Families (under the sections 1 Consultas, 2 Vacunas, 3 Farmacia, 4 Alimentación) and subfamilies.
    anyadir(db, QStringLiteral("Familias"), {QStringLiteral("IdSeccion"), QStringLiteral("Descripcion")},
            {{1, QStringLiteral("Consultas generales")},
             {2, QStringLiteral("Vacunas caninas")},
             {2, QStringLiteral("Vacunas felinas")},
             {3, QStringLiteral("Antiparasitarios")},
             {4, QStringLiteral("Pienso")}});
    anyadir(db, QStringLiteral("Subfamilias"), {QStringLiteral("IdFamilia"), QStringLiteral("Descripcion")},
            {{1, QStringLiteral("Consulta")},
             {2, QStringLiteral("Polivalentes")},
             {2, QStringLiteral("Rabia")},
             {3, QStringLiteral("Trivalente felina")},
             {4, QStringLiteral("Pipetas")},
             {5, QStringLiteral("Seco")}});
    const QStringList articulo{QStringLiteral("Articulo"),
                               QStringLiteral("ArtTipoArticulo"),
                               QStringLiteral("Seccion"),
                               QStringLiteral("Familia"),
                               QStringLiteral("SubFamilia"),
                               QStringLiteral("ArtIVA"),
                               QStringLiteral("PVP1"),
                               QStringLiteral("PVP2"),
                               QStringLiteral("PVP3"),
                               QStringLiteral("ArtUltPrecio"),
                               QStringLiteral("ArtFactorConversion"),
                               QStringLiteral("Stock"),
                               QStringLiteral("ArtDias")};
    const QVariant sinValor;
    anyadir(db, QStringLiteral("Articulos"), articulo,
            {{QStringLiteral("Consulta general"), QStringLiteral("SERVICIO"), 1, 1, 1, 1, 35.0, 32.0, 30.0,
              sinValor, 1.0, sinValor, sinValor},
             {QStringLiteral("Vacuna polivalente canina"), QStringLiteral("SERVICIO"), 2, 2, 2, 1, 42.0, 40.0,
              38.0, sinValor, 1.0, sinValor, 365},
             {QStringLiteral("Vacuna antirrábica"), QStringLiteral("SERVICIO"), 2, 2, 3, 1, 30.0, 28.0, 27.0,
              sinValor, 1.0, sinValor, 365},
             {QStringLiteral("Vacuna trivalente felina"), QStringLiteral("SERVICIO"), 2, 3, 4, 1, 38.0, 36.0,
              34.0, sinValor, 1.0, sinValor, 365},
             {QStringLiteral("Pipeta antiparasitaria perro 10-20 kg"), QStringLiteral("PRODUCTO"), 3, 4, 5, 1,
              18.5, 17.5, 16.9, 9.2, 1.0, 40.0, 30},
             {QStringLiteral("Pienso adulto 3 kg"), QStringLiteral("PRODUCTO"), 4, 5, 6, 2, 24.9, 23.9, 22.9,
              14.1, 1.0, 25.0, sinValor}});
    anyadir(db, QStringLiteral("PlanesSalud"), {QStringLiteral("Nombre"), QStringLiteral("FechaAlta")},
            {{QStringLiteral("Plan Cachorro"), QDate(2026, 1, 1)},
             {QStringLiteral("Plan Senior"), QDate(2026, 1, 1)}});
    anyadir(db, QStringLiteral("CondicionesEspeciales"),
            {QStringLiteral("IdPlanSalud"), QStringLiteral("IdSeccion"), QStringLiteral("Tarifa"),
             QStringLiteral("Descuento"), QStringLiteral("IdArticulo"), QStringLiteral("Precio")},
            {{1, 2, QStringLiteral("TARIFA 2"), 10.0, sinValor, sinValor},
             {2, sinValor, sinValor, sinValor, 1, 28.0}});
    // Clients and pets with realistic names, always the same ones.
    generarClientes(db, 60, 2026);
    // The workstation that made the installation proposes the usual series, tariff and species.
    anyadir(db, QStringLiteral("ConfPuesto"),
            {QStringLiteral("Puesto"), QStringLiteral("SerieVenta"), QStringLiteral("SerieAbono"),
             QStringLiteral("Tarifa"), QStringLiteral("IdEspecie"), QStringLiteral("AutoGuardado")},
            {{puesto, QStringLiteral("A"), QStringLiteral("R"), QStringLiteral("TARIFA 1"), 1, 0}});
    // Some delivery notes of the last weeks, priced as the screen prices them.
    cargarAlbaranesDemo(db, QStringLiteral("A"), QDate::currentDate());
    // The visits those notes charge, today's consultations and a hospitalised pet.
    cargarVisitasDemo(db, QDate::currentDate());
}
