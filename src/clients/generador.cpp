#include "clients/generador.h"

#include "clients/cliente_busqueda_store.h"

#include <QDate>
#include <QRandomGenerator>
#include <array>

namespace {
const std::array kNombres = {
    u"Antonio",  u"José",     u"Manuel",     u"Francisco", u"Juan",    u"David",  u"Javier", u"Daniel",
    u"Carlos",   u"Jesús",    u"Alejandro",  u"Miguel",    u"Rafael",  u"Pedro",  u"Ángel",  u"Pablo",
    u"Sergio",   u"Fernando", u"Jorge",      u"Luis",      u"Alberto", u"Álvaro", u"Adrián", u"Raúl",
    u"Iñaki",    u"Rubén",    u"Óscar",      u"Andrés",    u"María",   u"Carmen", u"Ana",    u"Isabel",
    u"Laura",    u"Cristina", u"Marta",      u"Lucía",     u"Elena",   u"Sara",   u"Paula",  u"Raquel",
    u"Rosa",     u"Pilar",    u"Concepción", u"Mercedes",  u"Beatriz", u"Nuria",  u"Silvia", u"Irene",
    u"Patricia", u"Rocío",    u"Ainhoa",     u"Begoña",    u"Inés",    u"Sofía",  u"Noelia", u"Verónica",
    u"Mónica",   u"Ángela"};
const std::array kApellidos = {
    u"García",  u"González",  u"Rodríguez", u"Fernández", u"López",      u"Martínez",    u"Sánchez",
    u"Pérez",   u"Gómez",     u"Martín",    u"Jiménez",   u"Ruiz",       u"Hernández",   u"Díaz",
    u"Moreno",  u"Muñoz",     u"Álvarez",   u"Romero",    u"Alonso",     u"Gutiérrez",   u"Navarro",
    u"Torres",  u"Domínguez", u"Vázquez",   u"Ramos",     u"Gil",        u"Ramírez",     u"Serrano",
    u"Blanco",  u"Molina",    u"Morales",   u"Suárez",    u"Ortega",     u"Delgado",     u"Castro",
    u"Ortiz",   u"Rubio",     u"Marín",     u"Sanz",      u"Núñez",      u"Iglesias",    u"Medina",
    u"Garrido", u"Cortés",    u"Castillo",  u"Santos",    u"Lozano",     u"Guerrero",    u"Cano",
    u"Prieto",  u"Méndez",    u"Cruz",      u"Calvo",     u"Gallego",    u"Vidal",       u"León",
    u"Márquez", u"Herrera",   u"Peña",      u"Flores",    u"Cabrera",    u"Campos",      u"Vega",
    u"Fuentes", u"Carrasco",  u"Diez",      u"Caballero", u"Reyes",      u"Nieto",       u"Aguilar",
    u"Pascual", u"Santana",   u"Herrero",   u"Lorenzo",   u"Montero",    u"Hidalgo",     u"Giménez",
    u"Ibáñez",  u"Ferrer",    u"Durán",     u"Ordóñez",   u"Echevarría", u"Zubizarreta", u"Peñalver"};
const std::array kVias = {u"Calle", u"Avenida", u"Plaza", u"Paseo", u"Camino", u"Ronda", u"Travesía"};
const std::array kCalles = {
    u"Mayor",        u"Real",           u"de la Constitución", u"de España",         u"del Sol",
    u"de Cervantes", u"de Goya",        u"de Alcalá",          u"de Colón",          u"San Juan",
    u"Santa María",  u"de los Olmos",   u"del Pilar",          u"de la Paz",         u"Nueva",
    u"del Río",      u"de Andalucía",   u"de la Estación",     u"Gran Vía",          u"de la Iglesia",
    u"de Castilla",  u"Doctor Fleming", u"Ramón y Cajal",      u"Miguel de Unamuno", u"de la Fuente",
    u"Peñalara",     u"Ñandú"};
struct Localidad {
    const char16_t* poblacion;
    const char16_t* codigoPostal;
    const char16_t* provincia;
};
const std::array<Localidad, 32> kLocalidades = {{
    {u"Madrid", u"28001", u"Madrid"},
    {u"Alcalá de Henares", u"28801", u"Madrid"},
    {u"Getafe", u"28901", u"Madrid"},
    {u"Móstoles", u"28931", u"Madrid"},
    {u"Barcelona", u"08001", u"Barcelona"},
    {u"Sabadell", u"08201", u"Barcelona"},
    {u"Valencia", u"46001", u"Valencia"},
    {u"Gandía", u"46701", u"Valencia"},
    {u"Sevilla", u"41001", u"Sevilla"},
    {u"Dos Hermanas", u"41701", u"Sevilla"},
    {u"Málaga", u"29001", u"Málaga"},
    {u"Marbella", u"29601", u"Málaga"},
    {u"Zaragoza", u"50001", u"Zaragoza"},
    {u"Murcia", u"30001", u"Murcia"},
    {u"Cartagena", u"30201", u"Murcia"},
    {u"Palma", u"07001", u"Illes Balears"},
    {u"Las Palmas de Gran Canaria", u"35001", u"Las Palmas"},
    {u"Bilbao", u"48001", u"Bizkaia"},
    {u"Getxo", u"48991", u"Bizkaia"},
    {u"Alicante", u"03001", u"Alicante"},
    {u"Elche", u"03201", u"Alicante"},
    {u"Córdoba", u"14001", u"Córdoba"},
    {u"Valladolid", u"47001", u"Valladolid"},
    {u"Vigo", u"36201", u"Pontevedra"},
    {u"Gijón", u"33201", u"Asturias"},
    {u"Oviedo", u"33001", u"Asturias"},
    {u"A Coruña", u"15001", u"A Coruña"},
    {u"Granada", u"18001", u"Granada"},
    {u"Logroño", u"26001", u"La Rioja"},
    {u"Ávila", u"05001", u"Ávila"},
    {u"León", u"24001", u"León"},
    {u"Cáceres", u"10001", u"Cáceres"},
}};
const std::array kDominios = {u"gmail.com", u"hotmail.com", u"yahoo.es", u"outlook.es", u"telefonica.net"};
const std::array kMascotas = {
    u"Luna",    u"Toby",    u"Coco",   u"Nala",   u"Rocky", u"Kira",      u"Simba",  u"Lía",    u"Canela",
    u"Trufa",   u"Chispa",  u"Bimba",  u"Thor",   u"Max",   u"Lola",      u"Niña",   u"Golfo",  u"Pipo",
    u"Ñaqui",   u"Bruno",   u"Lucas",  u"Mía",    u"Zeus",  u"Nube",      u"Copito", u"Dana",   u"Leo",
    u"Tristán", u"Sombra",  u"Rufo",   u"Pelusa", u"Cañí",  u"Blanquita", u"Peque",  u"Chloé",  u"Duna",
    u"Otto",    u"Manchas", u"Bolita", u"Lúa",    u"Tizón", u"Gordi",     u"Ramón",  u"Pirata", u"Frida",
    u"Kiko",    u"Mora",    u"Tango",  u"Curro",  u"Índigo"};
const std::array kSexos = {u"M", u"H", u"MC", u"HE"};

struct EspecieBase {
    const char16_t* especie;
    std::array<const char16_t*, 6> razas;
};
const std::array<EspecieBase, 5> kEspecies = {{
    {u"Canina",
     {u"Mestizo", u"Labrador Retriever", u"Pastor Alemán", u"Yorkshire Terrier", u"Podenco",
      u"Bulldog Francés"}},
    {u"Felina", {u"Común Europeo", u"Siamés", u"Persa", u"Maine Coon", u"Bengalí", u"Sphynx"}},
    {u"Conejo", {u"Belier", u"Cabeza de León", u"Enano Holandés", u"Rex", u"Angora", u"Común"}},
    {u"Hurón", {u"Albino", u"Sable", u"Canela", u"Plateado", u"Panda", u"Común"}},
    {u"Ave", {u"Periquito", u"Canario", u"Agapornis", u"Ninfa", u"Loro Gris", u"Jilguero"}},
}};

QString t(const char16_t* s) {
    return QString::fromUtf16(s);
}

template <typename A> QString uno(QRandomGenerator& r, const A& lista) {
    return t(lista[r.bounded(static_cast<quint32>(lista.size()))]);
}

bool probabilidad(QRandomGenerator& r, int porCiento) {
    return static_cast<int>(r.bounded(100u)) < porCiento;
}

QString digitos(QRandomGenerator& r, int n) {
    QString s;
    for (int i = 0; i < n; ++i)
        s += QChar(u'0' + static_cast<char16_t>(r.bounded(10u)));
    return s;
}

QString dni(QRandomGenerator& r) {
    const quint32 n = r.bounded(1000000u, 99999999u);
    static const QString letras = QStringLiteral("TRWAGMYFPDXBNJZSQVHLCKE");
    return QStringLiteral("%1").arg(n, 8, 10, QLatin1Char('0')) + letras.at(n % 23);
}

QDate fecha(QRandomGenerator& r, const QDate& desde, const QDate& hasta) {
    return desde.addDays(r.bounded(static_cast<quint32>(desde.daysTo(hasta) + 1)));
}

QString sinAcentos(const QString& s) {
    return normalizarBusqueda(s).toLower().remove(QLatin1Char(' '));
}

// Species (key) with the breed keys of each; missing species and breeds are created.
QList<QPair<qint64, QList<qint64>>> especiesYRazas(Database& db) {
    QList<QPair<qint64, QList<qint64>>> r;
    QSqlQuery e = db.ejecutar(QStringLiteral("SELECT IdEspecie FROM Especies ORDER BY IdEspecie"));
    QList<qint64> especies;
    while (e.next())
        especies << e.value(0).toLongLong();
    if (especies.isEmpty()) {
        for (const auto& b : kEspecies) {
            db.ejecutar(QStringLiteral("INSERT INTO Especies (Descripcion, Activo) VALUES (?, ?)"),
                        {t(b.especie), QStringLiteral("S")});
        }
        QSqlQuery n = db.ejecutar(QStringLiteral("SELECT IdEspecie FROM Especies ORDER BY IdEspecie"));
        while (n.next())
            especies << n.value(0).toLongLong();
    }
    for (int i = 0; i < especies.size(); ++i) {
        const qint64 id = especies.at(i);
        auto leer = [&] {
            QList<qint64> razas;
            QSqlQuery q = db.ejecutar(
                QStringLiteral("SELECT IdRaza FROM Razas WHERE IdEspecie = ? ORDER BY IdRaza"), {id});
            while (q.next())
                razas << q.value(0).toLongLong();
            return razas;
        };
        QList<qint64> razas = leer();
        if (razas.isEmpty()) {
            const auto& base = kEspecies[static_cast<size_t>(i) % kEspecies.size()];
            for (const char16_t* raza : base.razas)
                db.ejecutar(
                    QStringLiteral("INSERT INTO Razas (IdEspecie, Descripcion, Activo) VALUES (?, ?, ?)"),
                    {id, t(raza), QStringLiteral("S")});
            razas = leer();
        }
        r << qMakePair(id, razas);
    }
    return r;
}

// Inserts rows of the same columns, many to a statement.
class Lote {
public:
    // padre: the batch of the rows these point at, written first so that no row is ever
    // written before its parent.
    Lote(Database& db, QString tabla, QStringList columnas, Lote* padre = nullptr)
        : db_(db), tabla_(std::move(tabla)), columnas_(std::move(columnas)), padre_(padre) {}
    ~Lote() = default;
    void anadir(const QVariantList& fila) {
        valores_ << fila;
        if (++filas_ == kFilas) volcar();
    }
    void volcar() {
        if (filas_ == 0) return;
        if (padre_) padre_->volcar();
        const QString una = QLatin1Char('(') +
                            QStringList(columnas_.size(), QStringLiteral("?")).join(QLatin1Char(',')) +
                            QLatin1Char(')');
        db_.ejecutar(QStringLiteral("INSERT INTO ") + tabla_ + QStringLiteral(" (") +
                         columnas_.join(QStringLiteral(", ")) + QStringLiteral(") VALUES ") +
                         QStringList(filas_, una).join(QLatin1Char(',')),
                     valores_);
        valores_.clear();
        filas_ = 0;
    }

private:
    static constexpr int kFilas = 100;
    Lote* padre_ = nullptr;
    Database& db_;
    QString tabla_;
    QStringList columnas_;
    QVariantList valores_;
    int filas_ = 0;
};

void ajustarSecuencia(Database& db, const QString& tabla, const QString& columna) {
    if (db.esSQLite()) return; // AUTOINCREMENT follows the highest key written
    db.ejecutar(QStringLiteral("SELECT setval(pg_get_serial_sequence(?, ?), (SELECT MAX(") + columna +
                    QStringLiteral(") FROM ") + tabla + QStringLiteral("))"),
                {tabla.toLower(), columna.toLower()});
}
} // namespace

ResultadoGenerador generarClientes(Database& db, int numClientes, quint32 semilla,
                                   const std::function<void(int)>& avance) {
    ResultadoGenerador res;
    if (numClientes <= 0) return res;
    QRandomGenerator r(semilla);
    Transaction tx = db.transaccion();
    const auto especies = especiesYRazas(db);
    qint64 idCliente =
        db.valor(QStringLiteral("SELECT COALESCE(MAX(IdCliente), 0) FROM Clientes")).toLongLong();
    qint64 idMascota =
        db.valor(QStringLiteral("SELECT COALESCE(MAX(IdMascota), 0) FROM Mascotas")).toLongLong();
    const QDate hoy = QDate::currentDate();
    const QDate inicio(2005, 1, 1);
    Lote clientes(db, QStringLiteral("Clientes"),
                  {QStringLiteral("IdCliente"), QStringLiteral("Nombre"), QStringLiteral("NombreBusqueda"),
                   QStringLiteral("DNI"), QStringLiteral("Direccion"), QStringLiteral("Poblacion"),
                   QStringLiteral("CodigoPostal"), QStringLiteral("Provincia"), QStringLiteral("Telefono1"),
                   QStringLiteral("Movil"), QStringLiteral("EMail"), QStringLiteral("FechaAlta"),
                   QStringLiteral("FechaBaja"), QStringLiteral("LOPD"), QStringLiteral("Tarifa"),
                   QStringLiteral("DtoGeneral"), QStringLiteral("ExentoIVA"),
                   QStringLiteral("ImpedirDeuda")});
    Lote mascotas(db, QStringLiteral("Mascotas"),
                  {QStringLiteral("IdMascota"), QStringLiteral("IdCliente"), QStringLiteral("Nombre"),
                   QStringLiteral("NombreBusqueda"), QStringLiteral("IdEspecie"), QStringLiteral("IdRaza"),
                   QStringLiteral("Sexo"), QStringLiteral("FechaNacimiento"), QStringLiteral("FechaAlta"),
                   QStringLiteral("Baja"), QStringLiteral("FechaBaja"), QStringLiteral("Chip"),
                   QStringLiteral("Cartilla")},
                  &clientes);
    const QVariant nulo;
    for (int i = 0; i < numClientes; ++i) {
        ++idCliente;
        const QString nombre = uno(r, kNombres);
        const QString apellido1 = uno(r, kApellidos);
        const QString apellido2 = uno(r, kApellidos);
        const QString completo = apellido1 + QLatin1Char(' ') + apellido2 + QStringLiteral(", ") + nombre;
        const Localidad& loc = kLocalidades[r.bounded(static_cast<quint32>(kLocalidades.size()))];
        const QString direccion = uno(r, kVias) + QLatin1Char(' ') + uno(r, kCalles) + QStringLiteral(", ") +
                                  QString::number(r.bounded(1u, 200u));
        const QString fijo = probabilidad(r, 50) ? QStringLiteral("9") + digitos(r, 8) : QString();
        const QString movil =
            probabilidad(r, 85) ? QString::number(6 + r.bounded(2u)) + digitos(r, 8) : QString();
        const QString correo =
            probabilidad(r, 40) ? sinAcentos(nombre) + QLatin1Char('.') + sinAcentos(apellido1) +
                                      QString::number(r.bounded(100u)) + QLatin1Char('@') + uno(r, kDominios)
                                : QString();
        const QDate alta = fecha(r, inicio, hoy);
        const QVariant baja = probabilidad(r, 3) ? QVariant(fecha(r, alta, hoy)) : nulo;
        const quint32 l = r.bounded(100u);
        const QString lopd = l < 30   ? QStringLiteral("0")
                             : l < 90 ? QStringLiteral("1")
                                      : QStringLiteral("2");
        clientes.anadir({idCliente, completo, normalizarBusqueda(completo),
                         probabilidad(r, 60) ? QVariant(dni(r)) : nulo, direccion, t(loc.poblacion),
                         t(loc.codigoPostal), t(loc.provincia), fijo.isEmpty() ? nulo : QVariant(fijo),
                         movil.isEmpty() ? nulo : QVariant(movil), correo.isEmpty() ? nulo : QVariant(correo),
                         alta, baja, lopd, QStringLiteral("TARIFA 1"), probabilidad(r, 10) ? 5.0 : 0.0, false,
                         false});
        ++res.clientes;
        // 1 to 5 pets, 2.55 on average.
        const quint32 p = r.bounded(100u);
        const int n = p < 20 ? 1 : p < 50 ? 2 : p < 80 ? 3 : p < 95 ? 4 : 5;
        for (int k = 0; k < n; ++k) {
            ++idMascota;
            const QString nombreMascota = uno(r, kMascotas);
            // Dogs and cats are most of a clinic's patients.
            const quint32 e = r.bounded(100u);
            const int ie = especies.size() == 1 ? 0
                           : e < 55             ? 0
                           : e < 90
                               ? 1
                               : 2 + static_cast<int>(e % qMax(1, static_cast<int>(especies.size()) - 2));
            const auto& esp = especies.at(qMin(ie, static_cast<int>(especies.size()) - 1));
            const QVariant raza =
                esp.second.isEmpty()
                    ? nulo
                    : QVariant(esp.second.at(r.bounded(static_cast<quint32>(esp.second.size()))));
            const QDate nacimiento = fecha(r, QDate(2005, 1, 1), hoy);
            const QDate altaMascota = qMax(alta, nacimiento);
            const bool deBaja = probabilidad(r, 5);
            mascotas.anadir({idMascota, idCliente, nombreMascota, normalizarBusqueda(nombreMascota),
                             esp.first, raza, uno(r, kSexos), nacimiento, altaMascota, deBaja,
                             deBaja ? QVariant(fecha(r, altaMascota, hoy)) : nulo,
                             probabilidad(r, 60) ? QVariant(QStringLiteral("941000") + digitos(r, 9)) : nulo,
                             probabilidad(r, 50) ? QVariant(QStringLiteral("C") + digitos(r, 6)) : nulo});
            ++res.mascotas;
        }
        if (avance && (i + 1) % 1000 == 0) avance(i + 1);
    }
    clientes.volcar();
    mascotas.volcar();
    ajustarSecuencia(db, QStringLiteral("Clientes"), QStringLiteral("IdCliente"));
    ajustarSecuencia(db, QStringLiteral("Mascotas"), QStringLiteral("IdMascota"));
    tx.commit();
    if (avance) avance(numClientes);
    return res;
}
