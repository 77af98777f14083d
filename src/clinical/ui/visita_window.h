#pragma once
// The visit window ("Visitas"), bound to VisitaForm: the client and pet on top with the debt,
// the caption and the hospitalise flag ("HOSPITALIZADO", "JAULA:"); tabs for the visit's
// fields, the pet's history, analytics, specialities, photographs and prescriptions; the
// commands below. Widgets are named after the form's columns (txt/cbo + column).
#include "clinical/visita_form.h"

#include <QHash>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTabWidget;
class QTextEdit;
class QTreeWidget;
class QListWidget;
class CroquisPanel;
class FotosWidget;

class VisitaWindow : public QWidget {
    Q_OBJECT
public:
    explicit VisitaWindow(Entorno& entorno, QWidget* padre = nullptr);
    VisitaForm& form() { return form_; }
    bool abrir(const AperturaVisita& apertura);
    // A quote of the visit was saved: its mark and the history are shown again.
    void presupuestoGuardado();
    QTabWidget* pestanas() const { return pestanas_; }

signals:
    // The pet screen, the hospitalisations of the pet and the quote screen, for the opener.
    void abrirMascota(qint64 idCliente, qint64 idMascota);
    void abrirCliente(qint64 idCliente);
    void abrirHospitalizaciones(qint64 idMascota, const QString& nombre);

public slots:
    void nueva();
    void guardar();
    void eliminar();
    void buscar();
    void cobrar();

protected:
    void closeEvent(QCloseEvent* evento) override;

private:
    QWidget* pestanaVisita();
    QWidget* pestanaHistorial();
    QWidget* pestanaAnaliticas();
    QWidget* pestanaEspecialidades();
    QWidget* pestanaRecetas();
    QWidget* crearEntrada(const QString& columna);
    void llenarCombo(QComboBox* combo, const QList<OpcionLookup>& opciones, const QString& actual);
    void cambio(const QString& columna, const QString& texto);
    void ampliar(const QString& titulo, QTextEdit* origen);
    void ampliarTexto(const QString& titulo, QPlainTextEdit* origen);
    void anadirEntrada(const QString& columna);
    void mostrarTodo();
    void mostrarCampos();
    void mostrarCabecera();
    void mostrarDetalle();
    void mostrarEspecialidad();
    // The speciality shown has a result or marks not saved: asks, and saves them on Yes. False
    // only when the save was refused.
    bool resolverEspecialidad();
    void guardarEspecialidad();
    void ponerFoco();
    QList<int> recetasElegidas() const;
    void leerEntradaReceta();
    std::optional<qint64> resultadoElegido() const;
    std::optional<qint64> especialidadElegida() const;

    Entorno& e_;
    VisitaForm form_;
    QTabWidget* pestanas_;
    QLabel* leyenda_;
    QLabel* cliente_;
    QLabel* deuda_;
    QComboBox* mascota_;
    QCheckBox* hospitalizar_;
    QLabel* hospitalizado_;
    QLabel* jaula_;
    QCheckBox* presupuesto_;
    QLabel* cabeceraHistorial_;
    QTreeWidget* historial_;
    QTreeWidget* analiticas_;
    QComboBox* analitica_;
    QLineEdit* resultado_;
    QCheckBox* resultadoPrivado_;
    QListWidget* especialidades_;
    QComboBox* especialidad_;
    QPlainTextEdit* protocolo_;
    QPlainTextEdit* resultadoEspecialidad_;
    QCheckBox* especialidadPrivada_;
    CroquisPanel* croquis_;
    FotosWidget* fotos_;
    QTreeWidget* recetas_;
    QLineEdit* fechaReceta_;
    QComboBox* medicamento_;
    QComboBox* veterinarioReceta_;
    QLineEdit* dispensador_;
    QLineEdit* dosificacion_;
    QHash<QString, QWidget*> entradas_;
    bool actualizando_ = false;
    std::optional<qint64> especialidadMostrada_;
    bool especialidadCambiada_ = false;
};
