#pragma once
// Visits in the database: the visit record (through the generic record of table Visitas),
// the pet's visit history, the visit search, the delivery notes made for a visit, the
// look-up lists of the visit screen, and the visit's own rows (analytic results, speciality
// examinations, prescriptions). Every statement binds its values.
#include "clients/mascota_store.h"
#include "data/registro.h"

#include <QDate>
#include <QTime>
#include <optional>

const DescriptorTabla& tablaVisitas();

// The pet as the visit screen shows it.
struct MascotaVisita {
    qint64 IdMascota = 0;
    qint64 IdCliente = 0; // the owner now
    QString Nombre;
    QString Especie;
    QDate FechaNacimiento;
    std::optional<qint64> NumHospitalizacion;
    QString Jaula;
    QString Avisos;
};

// A row of the pet's visit history: "Fecha", "Hora", "Tipo de Visita", "Diagnóstico",
// "Veterinario", "Peso", "Presup.".
struct FilaHistorialVisita {
    qint64 IdVisita = 0;
    QDate Fecha;
    QTime Hora;
    QString TipoVisita, Diagnostico, Veterinario;
    std::optional<double> Peso;
    bool Presupuesto = false;
};

struct FiltroVisitas {
    std::optional<qint64> IdVeterinario, IdTipoVisita, IdDiagnostico;
    // Used only when ticked.
    bool porFechas = false;
    QDate desde, hasta;
};

// A row of the visit search: "Fecha", "Hora", "Cliente", "Mascota", "Veterinario",
// "Diagnóstico", "Deuda" (what the client owes on its delivery notes).
struct FilaBusquedaVisita {
    qint64 IdVisita = 0;
    QDate Fecha;
    QTime Hora;
    qint64 IdCliente = 0, IdMascota = 0;
    QString Cliente, Mascota, Veterinario, Diagnostico;
    double Deuda = 0;
};

// A delivery note made for a visit.
struct AlbaranDeVisita {
    qint64 IdAlbaran = 0;
    QString Serie;
    qint64 NumAlbaran = 0;
    QDate Fecha;
    double Total = 0;
};

// A prescription as its list shows it: "Fecha", "DPS", "Dosificación", "Veterinario".
struct FilaReceta {
    qint64 IdReceta = 0;
    QDate Fecha;
    qint64 IdMedicamento = 0;
    QString DPS; // the medicine
    qint64 IdVeterinario = 0;
    QString Veterinario, Colegiado;
    QString Dispensador, Dosificacion;
    qint64 VersionFila = 0;
};

// An analytic result of the visit with what its analytic says of it.
struct FilaResultado {
    qint64 IdResultado = 0;
    qint64 IdAnalitica = 0;
    QString Grupo, Analitica, Resultado, ValorNormal, Unidades;
    bool DatoPrivado = false;
    QString Autor;
    qint64 VersionFila = 0;
};

// A speciality examination of the visit.
struct FilaEspecialidad {
    qint64 IdEspecialidadVisita = 0;
    qint64 IdEspecialidad = 0;
    QString Especialidad, Protocolo, Resultado, Croquis;
    bool DatoPrivado = false;
    QString Autor;
    qint64 VersionFila = 0;
};

// An analytic as the add list offers it.
struct AnaliticaOfrecida {
    qint64 IdAnalitica = 0;
    QString Grupo, Descripcion, ValorNormal, Unidades;
};

class VisitaStore {
public:
    explicit VisitaStore(Database& db) : db_(db), registros_(db) {}

    std::optional<Registro> cargar(qint64 idVisita);
    std::optional<MascotaVisita> mascota(qint64 idMascota);
    // The member of staff's registration number ("" when none).
    QString colegiado(qint64 idPersonal);
    // The client's warning text ("" when none).
    QString avisoCliente(qint64 idCliente);

    // Inserts (a record without IdVisita) or updates the visit, and sets the pet's last
    // visit to its latest visit, in the caller's transaction; returns the visit's number.
    qint64 guardar(Registro& visita);
    // Deletes the visit with its results, examinations and prescriptions; the stay it opened
    // leaves the register and, when it still keeps the pet hospitalised, the pet is no longer
    // hospitalised. Referida (nothing deleted) when its delivery notes or quotes point at it.
    enum class Baja { Eliminada, NoExiste, Referida };
    Baja eliminar(qint64 idVisita);

    QList<FilaHistorialVisita> historial(qint64 idMascota);
    // Newest first, at most limite rows.
    QList<FilaBusquedaVisita> buscar(const FiltroVisitas& filtro, int limite = 500);
    QList<AlbaranDeVisita> albaranes(qint64 idVisita);

    // Entries of the look-up behind a visit column (IdTipoVisita, IdDiagnostico, IdVeterinario,
    // IdCondicionCorporal); inactive entries are left out unless their key is among ademas (the
    // values a record already holds).
    QList<OpcionLookup> opciones(const QString& columna, const QList<qint64>& ademas = {});
    static QString tablaLookup(const QString& columna);

    QList<FilaReceta> recetas(qint64 idVisita);
    QList<FilaResultado> resultados(qint64 idVisita);
    QList<FilaEspecialidad> especialidades(qint64 idVisita);
    QList<AnaliticaOfrecida> analiticas();
    QList<OpcionLookup> medicamentos(const QList<qint64>& ademas = {});
    QList<OpcionLookup> especialidadesOfrecidas();
    QString protocolo(qint64 idEspecialidad);

    // The visit's own rows: a record of Recetas, ResultadosAnalitica or EspecialidadesVisita
    // is inserted (no key) or updated; eliminarFila deletes one by key. False when the row
    // no longer exists.
    qint64 guardarFila(Registro& fila);
    bool eliminarFila(const DescriptorTabla& tabla, qint64 clave);

private:
    Database& db_;
    RegistroStore registros_;
};
