#include "clinical/hospitalizacion_form.h"

#include "clinical/visita_store.h"
#include "core/command_trace.h"
#include "core/formatos.h"

QStringList HospitalizadasForm::columnas() {
    return {QStringLiteral("Mascota"), QStringLiteral("Cliente"), QStringLiteral("Jaula")};
}

void HospitalizadasForm::releer() {
    lista_ = HospitalizacionStore(e_.db()).hospitalizadas();
}

bool HospitalizadasForm::cargar() {
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar las Mascotas hospitalizadas"));
    if (!traza.ejecutar([&] { releer(); })) return false;
    if (!lista_.isEmpty()) return true;
    e_.dialogs().mostrar(Icono::Informacion, kTituloResultadoBusqueda,
                         QStringLiteral("Actualmente no existen Mascotas hospitalizadas"));
    return false;
}

void HospitalizadasForm::avisarYaDeAlta(const QString& mascota) {
    e_.dialogs().avisar(QStringLiteral("¡Atención!"), QStringLiteral("La mascota '") + mascota +
                                                          QStringLiteral("' ya no está hospitalizada: otro puesto le "
                                                                         "ha dado el alta."));
}

bool HospitalizadasForm::elegida(int i) {
    if (fila(i)) return true;
    e_.dialogs().mostrar(Icono::Exclamacion, QStringLiteral("Aviso"),
                         QStringLiteral("Debe seleccionar previamente una Mascota"));
    return false;
}

bool HospitalizadasForm::cambiarJaula(int i) {
    if (!elegida(i) || !dialogos.jaula) return false;
    const FilaHospitalizada f = lista_.at(i);
    const auto jaula = dialogos.jaula(f.Jaula);
    if (!jaula) return false;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("cambiar la Jaula de una Mascota hospitalizada"));
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Cambiar la jaula"));
        hecho = HospitalizacionStore(e_.db()).cambiarJaula(f.IdMascota, jaula->trimmed());
        releer();
    });
    if (!hecho) avisarYaDeAlta(f.Mascota);
    return hecho;
}

bool HospitalizadasForm::darAlta(int i) {
    if (!elegida(i) || !dialogos.alta) return false;
    const FilaHospitalizada f = lista_.at(i);
    const auto alta = dialogos.alta();
    if (!alta) return false;
    bool hecho = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("dar de alta una Mascota hospitalizada"));
    traza.ejecutar([&] {
        traza.paso(QStringLiteral("Dar de alta la mascota"));
        hecho = HospitalizacionStore(e_.db()).darAlta(f.IdMascota, f.NumHospitalizacion, *alta);
        releer();
    });
    if (!hecho) avisarYaDeAlta(f.Mascota);
    return hecho;
}

bool HospitalizadasForm::abrirMascota(int i) {
    if (!elegida(i)) return false;
    const FilaHospitalizada f = lista_.at(i);
    bool existe = false;
    CommandTrace traza(e_.dialogs(), QStringLiteral("abrir una Mascota hospitalizada"));
    traza.ejecutar([&] {
        existe = VisitaStore(e_.db()).mascota(f.IdMascota).has_value();
    });
    if (!existe) {
        e_.dialogs().mostrar(Icono::Critico, QStringLiteral("Error al acceder a la mascota"),
                             QStringLiteral("No se ha podido recuperar la información de la mascota"));
        return false;
    }
    if (alAbrirMascota) alAbrirMascota(f.IdCliente, f.IdMascota);
    return true;
}

QStringList RegistroHospitalizacionesForm::columnas() {
    return {QStringLiteral("Fecha Ingreso"), QStringLiteral("Hora Ingreso"), QStringLiteral("Diagnóstico en Ingreso"),
            QStringLiteral("Fecha Alta"),    QStringLiteral("Hora Alta"),    QStringLiteral("Diagnóstico de Alta")};
}

QStringList RegistroHospitalizacionesForm::textosFila(const FilaEstancia& f) {
    auto hora = [](const QTime& t) { return t.isValid() ? formatoHora(t) : QString(); };
    return {formatoFecha(f.FechaIngreso), hora(f.HoraIngreso), f.DiagnosticoIngreso,
            formatoFecha(f.FechaAlta),    hora(f.HoraAlta),    f.DiagnosticoAlta};
}

QString RegistroHospitalizacionesForm::titulo() const {
    return QStringLiteral("Registro de hospitalizaciones de la mascota: ") + nombre_;
}

bool RegistroHospitalizacionesForm::abrir(qint64 idMascota, const QString& NombreMascota) {
    nombre_ = NombreMascota;
    CommandTrace traza(e_.dialogs(), QStringLiteral("buscar el registro de hospitalizaciones de una Mascota"));
    if (!traza.ejecutar([&] { lista_ = HospitalizacionStore(e_.db()).registro(idMascota); })) return false;
    if (!lista_.isEmpty()) return true;
    e_.dialogs().mostrar(Icono::Informacion, kTituloResultadoBusqueda,
                         QStringLiteral("Actualmente no existe un registro de hospitalizaciones de esta Mascota"));
    return false;
}

bool RegistroHospitalizacionesForm::irAVisita(int fila) {
    if (fila < 0 || fila >= lista_.size()) return false;
    if (IrAVisita) IrAVisita(lista_.at(fila).IdVisita);
    return true;
}
