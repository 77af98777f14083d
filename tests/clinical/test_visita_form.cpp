// The visit form on each engine: the save checks in order, numbering and the pet's history,
// hospitalisation (admission, the same visit again, another visit refused, a pet admitted
// meanwhile elsewhere, discharge), deletion with its second question, charging with and
// without earlier notes, prescriptions and the private results.
#include "clinical/hospitalizacion_form.h"
#include "clinical/visita_form.h"
#include "data/esquema.h"
#include "documents/plantillas_defecto.h"
#include "pdf.h"
#include "sesion.h"

#include <QGuiApplication>
#include <QTemporaryDir>

class TestVisitaForm : public QObject {
    Q_OBJECT

    struct Caso : Sesion {
        qint64 ana = 0, luis = 0, rufo = 0, misi = 0, tipo = 0, diag = 0, vet = 0, vet2 = 0, med = 0;
        QString n(qint64 v) { return QString::number(v); }
    };

    // Ana (tariff 2, 7,5 %, owes 30 on a note) with Rufo and Misi; Luis without pets.
    static std::unique_ptr<Caso> caso() {
        auto c = std::make_unique<Caso>();
        Semilla& s = c->s;
        c->ana = s.cliente(u"Ana Núñez"_s, {{u"Tarifa"_s, u"TARIFA 2"_s},
                                            {u"DtoGeneral"_s, 7.5},
                                            {u"LOPD"_s, u"1"_s},
                                            {u"Direccion"_s, u"C/ Mayor, 3"_s},
                                            {u"CodigoPostal"_s, u"28001"_s},
                                            {u"Poblacion"_s, u"Madrid"_s}});
        c->luis = s.cliente(u"Luis Pérez"_s);
        const qint64 perro = s.especie(u"Perro"_s);
        c->rufo = s.mascota(u"Rufo"_s, c->ana, perro, {{u"FechaNacimiento"_s, QDate(2020, 5, 4)}});
        c->misi = s.mascota(u"Misi"_s, c->ana, s.especie(u"Gato"_s));
        c->tipo = s.fila(u"TiposVisita"_s, {{u"Descripcion"_s, u"Consulta"_s}});
        c->diag = s.fila(u"Diagnosticos"_s, {{u"Descripcion"_s, u"Otitis externa"_s}});
        c->vet = s.fila(u"Personal"_s, {{u"Descripcion"_s, u"Dra. Ferrer"_s}, {u"NumColegiado"_s, u"28/1234"_s}});
        c->vet2 = s.personal(u"Dr. Molina"_s);
        c->med = s.fila(u"Medicamentos"_s, {{u"Descripcion"_s, u"Amoxicilina 250 mg"_s}});
        const qint64 nota = s.albaran(1);
        c->db().ejecutarCambio(
            u"UPDATE Albaranes SET IdCliente = ?, Fecha = ?, Total = 30, Pendiente = 30 WHERE IdAlbaran = ?"_s,
            {c->ana, QDate(2026, 11, 23), nota});
        return c;
    }

    static AperturaVisita para(qint64 cliente, std::optional<qint64> mascota = {}) {
        AperturaVisita a;
        a.IdClienteInit = cliente;
        a.IdMascotaInit = mascota;
        return a;
    }
    static AperturaVisita deVisita(qint64 id) {
        AperturaVisita a;
        a.NumVisita = id;
        return a;
    }

    static void rellenar(Caso& c, VisitaForm& f) {
        f.setTexto(u"IdTipoVisita"_s, c.n(c.tipo));
        f.setTexto(u"IdVeterinario"_s, c.n(c.vet));
        f.setTexto(u"IdDiagnostico"_s, c.n(c.diag));
    }

    // A saved visit of Rufo (or another pet); returns its number.
    static qint64 visita(Caso& c, VisitaForm& f, std::optional<qint64> mascota = {}) {
        if (!f.abrir(para(c.ana, mascota.value_or(c.rufo)))) return 0;
        rellenar(c, f);
        return f.guardar() ? f.id().value_or(0) : 0;
    }

private slots:
    // First failure only, in order, with the focus on the field; then the typed values.
    void ordenDeComprobaciones() {
        auto c = caso();
        VisitaForm f(c->e);
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimo().titulo, u"Campos obligatorios no informados"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Debe seleccionar primero un Cliente y una Mascota."_s);
        QVERIFY(f.abrir(para(c->ana, c->rufo)));
        const struct {
            QString columna, valor, mensaje;
        } pasos[] = {{u"IdTipoVisita"_s, c->n(c->tipo), u"Debe indicar el tipo de visita."_s},
                     {u"IdVeterinario"_s, c->n(c->vet), u"Debe indicar el veterinario que realiza la consulta."_s},
                     {u"IdDiagnostico"_s, c->n(c->diag), u"Debe indicar el diagnóstico."_s},
                     {u"Peso"_s, u"12,4"_s, u"El campo 'Peso' debe ser un número, con coma decimal (por ejemplo 1.234,56)."_s}};
        f.setTexto(u"Peso"_s, u"doce"_s);
        for (const auto& p : pasos) {
            QVERIFY(!f.guardar());
            QCOMPARE(c->d.ultimoTexto(), p.mensaje);
            QCOMPARE(f.foco, p.columna);
            f.setTexto(p.columna, p.valor);
        }
        QVERIFY(f.guardar());
        QCOMPARE(c->s.contar(u"Visitas"_s), 1);

        // A client without pets is refused and the visit keeps its client.
        VisitaForm otra(c->e);
        QVERIFY(!otra.abrir(para(c->luis)));
        QCOMPARE(c->d.ultimo().titulo, u"ATENCIÓN"_s);
        QCOMPARE(c->d.ultimoTexto(), u"El Cliente 'Luis Pérez' no posee ninguna Mascota. Seleccione otro Cliente o "
                                     "dé de Alta las Mascotas de éste"_s);
        QVERIFY(!otra.cliente());
    }

    // Caption, number, the pet's last visit and history, the debt, a reopened visit.
    void altaEHistorial() {
        auto c = caso();
        VisitaForm f(c->e);
        QVERIFY(f.abrir(para(c->ana, c->rufo)));
        QCOMPARE(f.leyenda(), u" (Nueva visita)"_s);
        QCOMPARE(f.texto(u"Fecha"_s), u"23/11/2026"_s);
        QCOMPARE(f.textoDeuda(), u"Deuda Actual:30,00 €"_s);
        QCOMPARE(f.cabeceraHistorial(),
                 u" Historial de Visitas  de la mascota: Rufo. Fecha nacimiento: 04/05/2020"_s);
        rellenar(*c, f);
        f.setTexto(u"Fecha"_s, u"20/11/2026"_s);
        f.setTexto(u"Peso"_s, u"12,4"_s);
        QVERIFY(f.guardar());
        const qint64 primera = *f.id();
        QCOMPARE(f.leyenda(), u"Visita nº: "_s + c->n(primera));
        QVERIFY(f.nueva());
        rellenar(*c, f);
        QVERIFY(f.guardar());
        // An earlier visit written later does not move the last visit back.
        QVERIFY(f.nueva());
        rellenar(*c, f);
        f.setTexto(u"Fecha"_s, u"01/01/2026"_s);
        QVERIFY(f.guardar());
        QCOMPARE(c->valor(u"SELECT FechaUltimaVisita FROM Mascotas WHERE IdMascota = ?"_s, {c->rufo}).toString().left(10),
                 u"2026-11-23"_s);
        QCOMPARE(f.historial().size(), 3);
        const FilaHistorialVisita& h = f.historial().at(1);
        QCOMPARE(h.IdVisita, primera);
        QCOMPARE(h.TipoVisita, u"Consulta"_s);
        QCOMPARE(h.Diagnostico, u"Otitis externa"_s);
        QCOMPARE(h.Veterinario, u"Dra. Ferrer"_s);
        QCOMPARE(*h.Peso, 12.4);

        VisitaForm otra(c->e);
        QVERIFY(otra.abrir(deVisita(primera)));
        QCOMPARE(otra.texto(u"Peso"_s), u"12,40"_s);
        QCOMPARE(otra.cliente()->nombre, u"Ana Núñez"_s);
        // Open here already: the second window does not take it.
        QVERIFY(!VisitaForm(c->e).abrir(deVisita(*f.id())));
        // Its pets moved to another owner, the client's old visits still open.
        c->db().ejecutarCambio(u"UPDATE Mascotas SET IdCliente = ?"_s, {c->luis});
        otra.cerrar();
        VisitaForm antigua(c->e);
        QVERIFY(antigua.abrir(deVisita(primera)));
        QCOMPARE(antigua.mascota()->Nombre, u"Rufo"_s);
        QCOMPARE(antigua.cliente()->nombre, u"Ana Núñez"_s);
    }

    // Admission on save, the same visit again, another visit refused, discharge, register.
    void hospitalizacion() {
        auto c = caso();
        VisitaForm f(c->e);
        QStringList jaulas;
        f.pedirJaula = [&](const QString&) -> std::optional<QString> { return jaulas.isEmpty() ? std::nullopt : std::optional(jaulas.takeFirst()); };
        QVERIFY(f.abrir(para(c->ana, c->rufo)));
        rellenar(*c, f);
        QVERIFY(!f.setHospitalizar(true)); // the cage dialog cancelled
        QVERIFY(!f.hospitalizado());
        jaulas << u"J-3"_s;
        QVERIFY(f.setHospitalizar(true));
        QCOMPARE(f.jaula(), u"J-3"_s);
        QVERIFY(f.guardar());
        const qint64 ingreso = *f.id();
        QCOMPARE(c->valor(u"SELECT NumHospitalizacion FROM Mascotas WHERE IdMascota = ?"_s, {c->rufo}).toLongLong(),
                 ingreso);
        QVERIFY(f.hospitalizado());
        QCOMPARE(f.jaula(), u"J-3"_s);
        QVERIFY(!f.setHospitalizar(true)); // already shown ticked: nothing, no message
        QCOMPARE(c->d.mensajes().size(), 0);

        // Another visit of the same pet cannot admit it.
        VisitaForm otra(c->e);
        QVERIFY(visita(*c, otra) > 0);
        QVERIFY(!otra.setHospitalizar(true));
        QCOMPARE(c->d.ultimo().titulo, u"Error"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Esta mascota ya se encuentra hospitalizada."_s);

        // The hospitalised list, then the discharge from the admitting visit.
        HospitalizadasForm lista(c->e);
        QVERIFY(lista.cargar());
        QCOMPARE(lista.lista().size(), 1);
        QCOMPARE(lista.lista().first().Jaula, u"J-3"_s);
        f.pedirAlta = [] { return std::optional(Alta{QDate(2026, 11, 25), QTime(10, 30), u"Curada"_s}); };
        QVERIFY(f.setHospitalizar(false));
        QVERIFY(c->valor(u"SELECT NumHospitalizacion FROM Mascotas WHERE IdMascota = ?"_s, {c->rufo}).isNull());
        QVERIFY(!lista.cargar());
        QCOMPARE(c->d.ultimoTexto(), u"Actualmente no existen Mascotas hospitalizadas"_s);
        RegistroHospitalizacionesForm registro(c->e);
        QVERIFY(registro.abrir(c->rufo, u"Rufo"_s));
        QCOMPARE(registro.titulo(), u"Registro de hospitalizaciones de la mascota: Rufo"_s);
        QCOMPARE(RegistroHospitalizacionesForm::textosFila(registro.lista().first()),
                 (QStringList{u"23/11/2026"_s, u"09:00"_s, u"Otitis externa"_s, u"25/11/2026"_s, u"10:30"_s,
                              u"Curada"_s}));
        // The same visit admits the pet again after the discharge: a second stay.
        QVERIFY(!f.setHospitalizar(true)); // the cage dialog cancelled
        jaulas << u"J-5"_s;
        QVERIFY(f.setHospitalizar(true));
        QVERIFY(f.guardar());
        QVERIFY(lista.cargar());
        QVERIFY(!lista.darAlta(-1));
        QCOMPARE(c->d.ultimo().titulo, u"Aviso"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Debe seleccionar previamente una Mascota"_s);
        QVERIFY(registro.abrir(c->rufo, u"Rufo"_s));
        QCOMPARE(registro.lista().size(), 2);
        QCOMPARE(registro.lista().first().Jaula, u"J-5"_s);
        QVERIFY(!registro.lista().first().FechaAlta.isValid());
        QCOMPARE(registro.lista().at(1).DiagnosticoAlta, u"Curada"_s);
        QVERIFY(!registro.abrir(c->misi, u"Misi"_s));
        QCOMPARE(c->d.ultimoTexto(), u"Actualmente no existe un registro de hospitalizaciones de esta Mascota"_s);
    }

    // Ticked here, admitted from another workstation before the save: the save writes
    // nothing (not even the visit) and says why.
    void ingresoSimultaneo() {
        auto c = caso();
        VisitaForm f(c->e);
        f.pedirJaula = [](const QString&) { return std::optional<QString>(u"1"_s); };
        QVERIFY(f.abrir(para(c->ana, c->rufo)));
        rellenar(*c, f);
        QVERIFY(f.setHospitalizar(true));
        OtroPuesto otro(*c, u"RECEPCION"_s);
        VisitaForm alli(otro.e);
        alli.pedirJaula = f.pedirJaula;
        QVERIFY(alli.abrir(para(c->ana, c->rufo)));
        rellenar(*c, alli);
        QVERIFY(alli.setHospitalizar(true));
        QVERIFY(alli.guardar());
        QVERIFY(!f.guardar());
        QCOMPARE(c->d.ultimoTexto(), u"Esta mascota ya se encuentra hospitalizada."_s);
        QCOMPARE(c->s.contar(u"Visitas"_s), 1);
        QCOMPARE(c->s.contar(u"Hospitalizaciones"_s), 1);
    }

    // One question; two when the visit keeps the pet hospitalised; a visit with a note stays.
    void eliminar() {
        auto c = caso();
        VisitaForm f(c->e);
        f.pedirJaula = [](const QString&) { return std::optional<QString>(u"2"_s); };
        QVERIFY(f.abrir(para(c->ana, c->rufo)));
        rellenar(*c, f);
        QVERIFY(f.setHospitalizar(true));
        QVERIFY(f.guardar());
        c->d.si().no();
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.mensajes().size(), 2);
        QCOMPARE(c->d.mensajes().at(0).texto, u"¿Desea realmente eliminar la Visita seleccionada?"_s);
        QCOMPARE(c->d.mensajes().at(1).texto,
                 u"Esta Visita mantiene a la Mascota Hospitalizada. ¿Confirma que aún quiere borrarla?"_s);
        QCOMPARE(c->s.contar(u"Visitas"_s), 1);
        c->d.si().si();
        QVERIFY(f.eliminar());
        QCOMPARE(c->s.contar(u"Visitas"_s), 0);
        QCOMPARE(c->s.contar(u"Hospitalizaciones"_s), 0);
        QVERIFY(c->valor(u"SELECT NumHospitalizacion FROM Mascotas WHERE IdMascota = ?"_s, {c->rufo}).isNull());
        QVERIFY(c->valor(u"SELECT FechaUltimaVisita FROM Mascotas WHERE IdMascota = ?"_s, {c->rufo}).isNull());

        // Not hospitalised: one question. Charged on a note: refused, nothing deleted.
        const qint64 id = visita(*c, f);
        c->db().ejecutarCambio(u"UPDATE Albaranes SET IdVisita = ?"_s, {id});
        c->d.limpiar();
        c->d.si();
        QVERIFY(!f.eliminar());
        QCOMPARE(c->d.mensajes().size(), 2);
        QCOMPARE(c->d.ultimoTexto(), u"No se puede eliminar esta Visita porque tiene Albaranes o Presupuestos hechos "
                                     "a partir de ella."_s);
        QCOMPARE(c->s.contar(u"Visitas"_s), 1);
    }

    // Charging saves first; no earlier notes: a new note with the visit's data; earlier ones
    // are offered first.
    void cobrar() {
        auto c = caso();
        VisitaForm f(c->e);
        QList<AperturaAlbaran> abiertos;
        f.abrirAlbaran = [&](const AperturaAlbaran& a) { abiertos << a; };
        QVERIFY(!f.cobrar());
        QCOMPARE(c->d.ultimo().titulo, u"¡ATENCIÓN!"_s);
        QCOMPARE(c->d.ultimo().icono, Icono::Critico);
        QCOMPARE(c->d.ultimoTexto(), u"No hay ninguna Visita seleccionada. Por favor, comunique este error al Dpto. de "
                                     "Atención al Cliente."_s);
        QVERIFY(f.abrir(para(c->ana, c->misi)));
        rellenar(*c, f);
        QVERIFY(f.cobrar());
        QVERIFY(f.id());
        QCOMPARE(abiertos.size(), 1);
        const AperturaAlbaran& a = abiertos.first();
        QCOMPARE(*a.NumVisita, *f.id());
        QCOMPARE(*a.IdCliente, c->ana);
        QCOMPARE(a.Cliente, u"Ana Núñez"_s);
        QCOMPARE(*a.idMascota, c->misi);
        QCOMPARE(a.TarifaCliente, u"TARIFA 2"_s);
        QCOMPARE(*a.DtoGralCliente, 7.5);
        QCOMPARE(a.LOPDCliente, u"1"_s);
        QVERIFY(a.EntradaDesdeVisitas);
        QCOMPARE(*a.IdVendedor, c->vet);
        QVERIFY(!a.IdAlbaran);

        // A note made for the visit is offered, then a new one.
        const qint64 nota = c->valor(u"SELECT MIN(IdAlbaran) FROM Albaranes"_s).toLongLong();
        c->db().ejecutarCambio(u"UPDATE Albaranes SET IdVisita = ?"_s, {*f.id()});
        c->d.opcion(0);
        QVERIFY(f.cobrar());
        QCOMPARE(c->d.ultimo().opciones, (QStringList{u"A/1 - 23/11/2026 - 30,00 €"_s, u"Nuevo albarán"_s}));
        QCOMPARE(*abiertos.at(1).IdAlbaran, nota);
        c->d.opcion(1);
        QVERIFY(f.cobrar());
        QCOMPARE(*abiertos.at(2).NumVisita, *f.id());
    }

    // The quote button saves the visit first and opens a quote for its client, pet and vet;
    // once the quote is saved the visit shows it ("Presup.").
    void presupuesto() {
        auto c = caso();
        const qint64 art = c->s.fila(u"Articulos"_s, {{u"Articulo"_s, u"Limpieza dental"_s},
                                                     {u"ArtIVA"_s, c->s.iva()}, {u"PVP2"_s, 80.0}});
        VisitaForm f(c->e);
        std::optional<AperturaPresupuesto> abierto;
        f.abrirPresupuesto = [&](const AperturaPresupuesto& a) { abierto = a; };
        QVERIFY(f.abrir(para(c->ana, c->rufo)));
        rellenar(*c, f);
        QVERIFY(f.presupuestar());
        QVERIFY(f.id());
        QCOMPARE(*abierto->NumVisita, *f.id());
        QCOMPARE(*abierto->idMascota, c->rufo);
        QCOMPARE(*abierto->IdVendedor, c->vet);
        PresupuestoForm p(c->e);
        p.alGuardar = [&] { f.releerPresupuesto(); };
        QVERIFY(p.abrir(*abierto));
        QVERIFY(p.anadirArticulo(art));
        QCOMPARE(p.textoTotal(), u"74,00"_s); // TARIFA 2 at 80,00 less Ana's 7,5 %
        QVERIFY(!f.presupuestado());
        QVERIFY(p.guardar());
        QVERIFY(f.presupuestado());
        QVERIFY(f.historial().first().Presupuesto);
    }

    // The checks in order; selection messages; the fields of a printed page.
    void recetas() {
        auto c = caso();
        VisitaForm f(c->e);
        QVERIFY(!f.insertarReceta());
        QCOMPARE(c->d.ultimo().titulo, u"Cliente no informado"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Antes de crear una receta, debe seleccionar un cliente"_s);
        QVERIFY(f.abrir(para(c->ana, c->rufo)));
        QVERIFY(!f.insertarReceta());
        QCOMPARE(c->d.ultimo().titulo, u"Campos obligatorios no rellenos"_s);
        QCOMPARE(c->d.ultimoTexto(), u"Debe indicar el medicamento que se receta."_s);
        f.entradaReceta.idMedicamento = c->med;
        QVERIFY(!f.insertarReceta());
        QCOMPARE(c->d.ultimoTexto(), u"Debe indicar el veterinario que extiende la receta"_s);
        f.entradaReceta.idVeterinario = c->vet;
        f.entradaReceta.dosificacion = u"1 comprimido cada 12 horas"_s;
        // The visit is saved first: its own checks speak.
        QVERIFY(!f.insertarReceta());
        QCOMPARE(c->d.ultimoTexto(), u"Debe indicar el tipo de visita."_s);
        rellenar(*c, f);
        QVERIFY(f.insertarReceta());
        f.entradaReceta.fecha = u"24/11/2026"_s;
        f.entradaReceta.idVeterinario = c->vet2;
        QVERIFY(f.insertarReceta());
        QCOMPARE(f.recetas().size(), 2);
        QCOMPARE(f.recetas().first().DPS, u"Amoxicilina 250 mg"_s);
        QCOMPARE(f.recetas().first().Colegiado, u"28/1234"_s);

        const struct {
            QList<int> seleccion;
            QString modificar, eliminar;
        } selecciones[] = {
            {{}, u"Seleccione la receta que desea modificar."_s, u"Seleccione la receta que desea eliminar."_s},
            {{0, 1},
             u"Ha seleccionado más de una receta. Seleccione sólo una y luego modifíquela si lo desea."_s,
             u"Ha seleccionado más de una receta. Seleccione sólo una y luego elimínela si lo desea."_s}};
        for (const auto& s : selecciones) {
            QVERIFY(!f.modificarReceta(s.seleccion));
            QCOMPARE(c->d.ultimoTexto(), s.modificar);
            QVERIFY(!f.eliminarReceta(s.seleccion));
            QCOMPARE(c->d.ultimoTexto(), s.eliminar);
        }
        QCOMPARE(c->d.mensajes().at(c->d.mensajes().size() - 2).titulo, u"Selección incorrecta"_s);
        QCOMPARE(c->d.ultimo().titulo, u"Aviso de seguridad"_s);
        f.cargarEntradaReceta(1);
        f.entradaReceta.dosificacion = u"Media pastilla"_s;
        QVERIFY(f.modificarReceta({1}));
        QCOMPARE(f.recetas().at(1).Dosificacion, u"Media pastilla"_s);

        QVERIFY(!f.imprimirRecetas({}));
        QCOMPARE(c->d.ultimoTexto(), u"Seleccione al menos una receta a imprimir"_s);
        c->d.no();
        QVERIFY(!f.imprimirRecetas({0, 1}));
        QCOMPARE(c->d.ultimo().titulo, u"¡¡¡ Atención !!!"_s);

        const DatosDocumento d = f.datosReceta(f.recetas().at(0), &f.recetas().at(1));
        const struct {
            QString campo, valor;
        } campos[] = {{u"Veterinario"_s, u"Dra. Ferrer"_s},
                      {u"Colegiado"_s, u"28/1234"_s},
                      {u"Fecha"_s, u"23/11/2026"_s},
                      {u"DPS"_s, u"Amoxicilina 250 mg"_s},
                      {u"DPS_Dosificacion"_s, u"Amoxicilina 250 mg\nDosis: 1 comprimido cada 12 horas"_s},
                      {u"Veterinario2"_s, u"Dr. Molina"_s},
                      {u"Fecha2"_s, u"24/11/2026"_s},
                      {u"Dosificacion2"_s, u"Media pastilla"_s},
                      {u"Cliente2"_s, u"Ana Núñez"_s},
                      {u"DirCliente"_s, u"C/ Mayor, 3"_s},
                      {u"PobCliente2"_s, u"28001 Madrid"_s}};
        for (const auto& k : campos)
            QCOMPARE(d.valor(k.campo), k.valor);
        QVERIFY(!f.datosReceta(f.recetas().at(0), nullptr).tiene(u"DPS2"_s));
    }

    // Two recipes on one printed page with both recipes' fields; the visit's report with its
    // results; a client who does not consent is asked first and No prints nothing.
    void documentos() {
        if (!hayPdftotext()) QSKIP("pdftotext no está instalado");
        auto c = caso();
        QTemporaryDir datos;
        c->e.configuracionBD.servidor = datos.path();
        QVERIFY(instalarPlantillasPorDefecto(datos.path()).isEmpty());
        const qint64 glucosa = c->s.fila(u"Analiticas"_s, {{u"Descripcion"_s, u"Glucosa"_s}, {u"Grupo"_s, u"Bioquímica"_s},
                                                          {u"Unidades"_s, u"mg/dl"_s}});
        VisitaForm f(c->e);
        QVERIFY(visita(*c, f) > 0);
        f.entradaReceta.idMedicamento = c->med;
        f.entradaReceta.idVeterinario = c->vet;
        f.entradaReceta.dosificacion = u"1 comprimido cada 12 horas"_s;
        QVERIFY(f.insertarReceta());
        f.entradaReceta.dosificacion = u"Media pastilla al día"_s;
        f.entradaReceta.idVeterinario = c->vet2;
        QVERIFY(f.insertarReceta());
        QVERIFY(f.anadirResultado(glucosa, u"96"_s, false));
        const QString recetas = datos.filePath(u"recetas.pdf"_s);
        c->d.si(); // two vets: go on
        QVERIFY(f.imprimirRecetas({0, 1}, DestinoDocumento::PDF, recetas));
        const QStringList paginas = paginasPdf(recetas);
        QCOMPARE(paginas.size(), 1);
        for (const QString& t : {u"Dra. Ferrer"_s, u"28/1234"_s, u"Dr. Molina"_s, u"Dosis: 1 comprimido cada 12 horas"_s,
                                 u"Media pastilla al día"_s, u"C/ Mayor, 3"_s})
            QVERIFY2(paginas.first().contains(t), qPrintable(t));
        QCOMPARE(paginas.first().count(u"Amoxicilina 250 mg"_s) >= 2, true);

        const QString informe = datos.filePath(u"informe.pdf"_s);
        QVERIFY(f.imprimirInforme(DestinoDocumento::PDF, informe));
        const QString texto = paginasPdf(informe).join(u"\n"_s);
        for (const QString& t : {u"Otitis externa"_s, u"Rufo"_s, u"Glucosa"_s, u"96"_s, u"Amoxicilina 250 mg"_s})
            QVERIFY2(texto.contains(t), qPrintable(t));

        c->db().ejecutarCambio(u"UPDATE Clientes SET LOPD = '2' WHERE IdCliente = ?"_s, {c->ana});
        VisitaForm g(c->e);
        f.cerrar();
        QVERIFY(g.abrir(deVisita(*f.id())));
        c->d.no();
        QVERIFY(!g.imprimirInforme(DestinoDocumento::PDF, datos.filePath(u"no.pdf"_s)));
        QCOMPARE(c->d.ultimo().titulo, u"ATENCIÓN"_s);
        c->d.no();
        QVERIFY(!g.imprimirRecetas({0}, DestinoDocumento::PDF, datos.filePath(u"no.pdf"_s)));
        QCOMPARE(c->d.ultimo().titulo, u"ATENCIÓN"_s);
        QVERIFY(!QFile::exists(datos.filePath(u"no.pdf"_s)));
    }

    // A private result is seen only by its author and administrators.
    void datoPrivado() {
        auto c = caso();
        const qint64 analitica =
            c->s.fila(u"Analiticas"_s, {{u"Descripcion"_s, u"Glucosa"_s}, {u"Grupo"_s, u"Bioquímica"_s},
                                        {u"ValorNormal"_s, u"70-110"_s}, {u"Unidades"_s, u"mg/dl"_s}});
        c->e.tipoUsuario = kTipoUsuario;
        VisitaForm f(c->e);
        QVERIFY(visita(*c, f) > 0);
        QVERIFY(f.anadirResultado(analitica, u"95"_s, true));
        QVERIFY(f.anadirResultado(analitica, u"102"_s, false));
        QCOMPARE(f.resultados().size(), 2);
        QCOMPARE(f.resultados().first().Grupo, u"Bioquímica"_s);
        QCOMPARE(f.resultados().first().Unidades, u"mg/dl"_s);
        const qint64 id = *f.id();
        const struct {
            QString usuario, tipo;
            int vistos;
        } quien[] = {{u"ana"_s, kTipoUsuario, 2}, {u"pepe"_s, kTipoUsuario, 1}, {u"pepe"_s, kTipoAdministrador, 2}};
        for (const auto& q : quien) {
            c->e.usuario = q.usuario;
            c->e.tipoUsuario = q.tipo;
            VisitaForm otra(c->e);
            f.cerrar();
            QVERIFY(otra.abrir(deVisita(id)));
            QCOMPARE(otra.resultados().size(), q.vistos);
            otra.cerrar();
        }
    }
};

PMX_TEST_MAIN(QGuiApplication, TestVisitaForm)
#include "test_visita_form.moc"
