#include "clinical/demo_visitas.h"

#include "clinical/hospitalizacion_store.h"
#include "clinical/visita_store.h"
#include "data/esquema.h"
#include "data/registro.h"
#include "sales/presupuesto_store.h"

#include <QSqlQuery>

namespace {
qint64 fila(Database& db, const QString& tabla, const QVariantMap& valores) {
    const DescriptorTabla& t = descriptorRequerido(tabla);
    Registro r(t);
    for (auto it = valores.cbegin(); it != valores.cend(); ++it)
        r.setValor(it.key(), it.value());
    if (t.tieneColumna(QStringLiteral("Activo")) && !valores.contains(QStringLiteral("Activo")))
        r.setValor(QStringLiteral("Activo"), QStringLiteral("S"));
    return RegistroStore(db).crear(r).toLongLong();
}

struct Listas {
    QList<qint64> diagnosticos, tipos, condiciones, analiticas, medicamentos, especialidades;
};

Listas cargarListas(Database& db) {
    Listas l;
    const QString D = QStringLiteral("Descripcion");
    // Diagnoses as a tree: the system, then the diagnosis.
    const QList<std::pair<QString, QStringList>> arbol = {
        {QStringLiteral("Dermatología"),
         {QStringLiteral("Otitis externa"), QStringLiteral("Dermatitis alérgica"), QStringLiteral("Pioderma")}},
        {QStringLiteral("Digestivo"), {QStringLiteral("Gastroenteritis aguda"), QStringLiteral("Enfermedad periodontal")}},
        {QStringLiteral("Traumatología"), {QStringLiteral("Cojera de la extremidad posterior")}},
        {QStringLiteral("Medicina preventiva"), {QStringLiteral("Animal sano"), QStringLiteral("Vacunación al día")}}};
    for (const auto& [sistema, hijos] : arbol) {
        const qint64 padre = fila(db, QStringLiteral("Diagnosticos"), {{D, sistema}});
        for (const QString& h : hijos)
            l.diagnosticos << fila(db, QStringLiteral("Diagnosticos"), {{D, h}, {QStringLiteral("IdPadre"), padre}});
    }
    QSqlQuery t = db.ejecutar(QStringLiteral("SELECT IdTipoVisita FROM TiposVisita ORDER BY IdTipoVisita"));
    while (t.next())
        l.tipos << t.value(0).toLongLong();
    const QStringList condiciones = {QStringLiteral("Muy delgado"), QStringLiteral("Delgado"), QStringLiteral("Ideal"),
                                     QStringLiteral("Sobrepeso"), QStringLiteral("Obeso")};
    for (int i = 0; i < condiciones.size(); ++i)
        l.condiciones << fila(db, QStringLiteral("CondicionesCorporales"),
                              {{D, condiciones.at(i)}, {QStringLiteral("Grado"), 1 + 2 * i}});
    const QList<QStringList> analiticas = {
        {QStringLiteral("Hemograma"), QStringLiteral("Hematocrito"), QStringLiteral("37-55"), QStringLiteral("%")},
        {QStringLiteral("Hemograma"), QStringLiteral("Leucocitos"), QStringLiteral("6,0-17,0"), QStringLiteral("x10³/µl")},
        {QStringLiteral("Hemograma"), QStringLiteral("Plaquetas"), QStringLiteral("200-500"), QStringLiteral("x10³/µl")},
        {QStringLiteral("Bioquímica"), QStringLiteral("Glucosa"), QStringLiteral("70-110"), QStringLiteral("mg/dl")},
        {QStringLiteral("Bioquímica"), QStringLiteral("Urea"), QStringLiteral("20-50"), QStringLiteral("mg/dl")},
        {QStringLiteral("Bioquímica"), QStringLiteral("Creatinina"), QStringLiteral("0,5-1,5"), QStringLiteral("mg/dl")},
        {QStringLiteral("Bioquímica"), QStringLiteral("ALT"), QStringLiteral("10-100"), QStringLiteral("U/l")}};
    for (const auto& a : analiticas)
        l.analiticas << fila(db, QStringLiteral("Analiticas"),
                             {{QStringLiteral("Grupo"), a.at(0)}, {D, a.at(1)}, {QStringLiteral("ValorNormal"), a.at(2)},
                              {QStringLiteral("Unidades"), a.at(3)}});
    const QStringList medicamentos = {QStringLiteral("Amoxicilina/ácido clavulánico 250 mg comprimidos"),
                                      QStringLiteral("Meloxicam 1,5 mg/ml suspensión oral"),
                                      QStringLiteral("Prednisona 5 mg comprimidos"),
                                      QStringLiteral("Gotas óticas de gentamicina y betametasona"),
                                      QStringLiteral("Metronidazol 250 mg comprimidos")};
    for (const QString& m : medicamentos)
        l.medicamentos << fila(db, QStringLiteral("Medicamentos"), {{D, m}});
    const QList<std::pair<QString, QString>> especialidades = {
        {QStringLiteral("Dermatología"),
         QStringLiteral("Inspección de piel y pelo, raspado cutáneo, citología de oído, lámpara de Wood.")},
        {QStringLiteral("Oftalmología"),
         QStringLiteral("Test de Schirmer, fluoresceína, tonometría, fondo de ojo.")},
        {QStringLiteral("Traumatología"),
         QStringLiteral("Inspección en estación y en marcha, palpación, pruebas de cajón y de compresión tibial.")}};
    for (const auto& [e, p] : especialidades)
        l.especialidades << fila(db, QStringLiteral("Especialidades"), {{D, e}, {QStringLiteral("Protocolo"), p}});
    return l;
}

const QStringList kAnamnesis = {
    QStringLiteral("Se rasca la oreja derecha desde hace una semana y sacude la cabeza."),
    QStringLiteral("Vómitos desde ayer, dos episodios; come poco. Sin diarrea."),
    QStringLiteral("Revisión anual. El propietario no refiere problemas."),
    QStringLiteral("Cojea de la pata trasera izquierda tras una carrera en el parque.")};
const QStringList kTratamiento = {
    QStringLiteral("Limpieza del conducto auditivo. Gotas óticas cada 12 horas durante 7 días."),
    QStringLiteral("Dieta blanda 3 días y fluidoterapia. Revisión en 48 horas."),
    QStringLiteral("Vacunación y desparasitación. Próxima revisión en un año."),
    QStringLiteral("Reposo y antiinflamatorio 5 días. Radiografía si no mejora.")};
const QStringList kResultados = {QStringLiteral("42"), QStringLiteral("18,5"), QStringLiteral("310"),
                                 QStringLiteral("96"), QStringLiteral("61"), QStringLiteral("1,2"),
                                 QStringLiteral("45")};
} // namespace

int cargarVisitasDemo(Database& db, const QDate& hoy) {
    Transaction tx = db.transaccion();
    const Listas l = cargarListas(db);
    if (l.tipos.isEmpty()) return 0;
    VisitaStore visitas(db);
    int creadas = 0;
    auto visita = [&](qint64 cliente, qint64 mascota, const QDate& fecha, const QTime& hora, qint64 vet, int i) {
        Registro r(tablaVisitas());
        r.setValor(QStringLiteral("IdCliente"), cliente);
        r.setValor(QStringLiteral("IdMascota"), mascota);
        r.setValor(QStringLiteral("Fecha"), fecha);
        r.setValor(QStringLiteral("Hora"), hora);
        r.setValor(QStringLiteral("IdTipoVisita"), l.tipos.at(i % l.tipos.size()));
        r.setValor(QStringLiteral("IdDiagnostico"), l.diagnosticos.at(i % l.diagnosticos.size()));
        r.setValor(QStringLiteral("IdVeterinario"), vet);
        r.setValor(QStringLiteral("Peso"), 4.5 + (i * 37 % 300) / 10.0);
        r.setValor(QStringLiteral("Temperatura"), 38.1 + (i % 9) / 10.0);
        r.setValor(QStringLiteral("IdCondicionCorporal"), l.condiciones.at(2 + i % 2));
        r.setValor(QStringLiteral("Anamnesis"), QStringLiteral("<p>") + kAnamnesis.at(i % kAnamnesis.size()) +
                                                    QStringLiteral("</p>"));
        r.setValor(QStringLiteral("Tratamiento"), QStringLiteral("<p>") + kTratamiento.at(i % kTratamiento.size()) +
                                                      QStringLiteral("</p>"));
        r.setValor(QStringLiteral("Presupuesto"), false);
        ++creadas;
        return visitas.guardar(r);
    };
    // Every demo note charges a visit of its client and pet, on its date.
    QSqlQuery q = db.ejecutar(QStringLiteral("SELECT IdAlbaran, IdCliente, IdMascota, Fecha, Hora, IdVendedor FROM "
                                             "Albaranes WHERE IdMascota IS NOT NULL ORDER BY IdAlbaran"));
    QList<QVariantList> notas;
    while (q.next())
        notas << QVariantList{q.value(0), q.value(1), q.value(2), valorDesdeBD(TipoColumna::Fecha, q.value(3)),
                              valorDesdeBD(TipoColumna::Hora, q.value(4)), q.value(5)};
    int i = 0;
    for (const auto& n : notas) {
        const qint64 id = visita(n.at(1).toLongLong(), n.at(2).toLongLong(), n.at(3).toDate(), n.at(4).toTime(),
                                 n.at(5).toLongLong(), i++);
        db.ejecutarCambio(QStringLiteral("UPDATE Albaranes SET IdVisita = ? WHERE IdAlbaran = ?"), {id, n.at(0)});
    }
    // Today's consultations, with prescriptions, results and an examination; the first pet
    // stays hospitalised.
    QSqlQuery p = db.ejecutar(QStringLiteral("SELECT m.IdCliente, m.IdMascota FROM Mascotas m ORDER BY m.IdMascota"));
    QList<std::pair<qint64, qint64>> mascotas;
    while (p.next() && mascotas.size() < 4)
        mascotas << std::pair{p.value(0).toLongLong(), p.value(1).toLongLong()};
    const qint64 vet = db.valor(QStringLiteral("SELECT MIN(IdPersonal) FROM Personal")).toLongLong();
    for (int k = 0; k < mascotas.size(); ++k) {
        const QTime hora(9 + k, 30);
        const qint64 id = visita(mascotas.at(k).first, mascotas.at(k).second, hoy, hora, vet, k);
        fila(db, QStringLiteral("Recetas"),
             {{QStringLiteral("IdVisita"), id}, {QStringLiteral("Fecha"), hoy},
              {QStringLiteral("IdMedicamento"), l.medicamentos.at(k % l.medicamentos.size())},
              {QStringLiteral("IdVeterinario"), vet}, {QStringLiteral("Dispensador"), QStringLiteral("Farmacia de la clínica")},
              {QStringLiteral("Dosificacion"), QStringLiteral("1 comprimido cada 12 horas durante 7 días")}});
        if (k == 1)
            for (int a = 0; a < l.analiticas.size(); ++a)
                fila(db, QStringLiteral("ResultadosAnalitica"),
                     {{QStringLiteral("IdVisita"), id}, {QStringLiteral("IdAnalitica"), l.analiticas.at(a)},
                      {QStringLiteral("Resultado"), kResultados.at(a)},
                      {QStringLiteral("DatoPrivado"), false}, {QStringLiteral("Autor"), QStringLiteral("admin")}});
        if (k == 0) {
            fila(db, QStringLiteral("Recetas"),
                 {{QStringLiteral("IdVisita"), id}, {QStringLiteral("Fecha"), hoy},
                  {QStringLiteral("IdMedicamento"), l.medicamentos.at(3)}, {QStringLiteral("IdVeterinario"), vet},
                  {QStringLiteral("Dispensador"), QStringLiteral("Farmacia de la clínica")},
                  {QStringLiteral("Dosificacion"), QStringLiteral("5 gotas en el oído derecho cada 12 horas, 7 días")}});
            fila(db, QStringLiteral("EspecialidadesVisita"),
                 {{QStringLiteral("IdVisita"), id}, {QStringLiteral("IdEspecialidad"), l.especialidades.first()},
                  {QStringLiteral("Protocolo"), db.valor(QStringLiteral("SELECT Protocolo FROM Especialidades WHERE "
                                                                        "IdEspecialidad = ?"),
                                                         {l.especialidades.first()})},
                  {QStringLiteral("Resultado"),
                   QStringLiteral("Eritema y exudado ceruminoso en el oído derecho. Citología: levaduras.")},
                  {QStringLiteral("Croquis"), QStringLiteral("0.180;0.300;G;#d02020\n0.220;0.330;M;#d02020\n"
                                                             "0.550;0.550;P;#2060d0")},
                  {QStringLiteral("DatoPrivado"), false}, {QStringLiteral("Autor"), QStringLiteral("admin")}});
            HospitalizacionStore(db).ingresar(Ingreso{mascotas.at(k).second, id, hoy, hora,
                                                      QStringLiteral("Otitis externa"), QStringLiteral("J-2")});
        }
    }
    // A quote for a dental cleaning, made from the second consultation of today.
    if (mascotas.size() > 1) {
        AlbaranStore ventas(db);
        const auto cliente = ventas.cliente(mascotas.at(1).first);
        const auto mascota = ventas.mascota(mascotas.at(1).second);
        const QVariant visitaId = db.valor(QStringLiteral("SELECT MAX(IdVisita) FROM Visitas WHERE IdMascota = ?"),
                                           {mascotas.at(1).second});
        Presupuesto p;
        p.documento.fecha = hoy;
        p.documento.hora = QTime(10, 45);
        p.documento.idCliente = mascotas.at(1).first;
        p.documento.idMascota = mascotas.at(1).second;
        p.documento.idVendedor = vet;
        p.documento.idVisita = visitaId.toLongLong();
        const ContextoPrecios ctx =
            contextoVenta(cliente, cliente ? ventas.condicionesCliente(cliente->id) : QList<CondicionEspecial>{}, mascota,
                          mascota && mascota->idPlanSalud ? ventas.condicionesPlan(*mascota->idPlanSalud)
                                                          : QList<CondicionEspecial>{},
                          hoy);
        QSqlQuery a = db.ejecutar(QStringLiteral("SELECT ArtCodArticulo FROM Articulos ORDER BY ArtCodArticulo"));
        int n = 0;
        while (a.next() && n < 3) {
            const auto art = ventas.articulo(a.value(0).toLongLong());
            if (!art) continue;
            const PrecioElegido precio = elegirPrecio(*art, ctx);
            if (precio.valido()) p.documento.anadirLinea(lineaDeArticulo(*art, precio, n == 2 ? 2 : 1));
            ++n;
        }
        if (!p.documento.lineas().isEmpty()) PresupuestoStore(db).guardar(p);
    }
    tx.commit();
    return creadas;
}
