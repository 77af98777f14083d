#pragma once
// The article maintenance window ("Mantenimiento de Artículos"), bound to ArticuloForm. Every
// field's input is named after its column: txt<columna> for typed fields, cbo<columna> for
// look-ups (with a cmdNuevo<columna> button that adds a record to the look-up's table),
// chk<columna> for yes/no, and lblMargen shows the margin. Buttons: cmdNuevo, cmdBuscar,
// cmdGuardar, cmdEliminar, cmdCancelar, cmdCerrar.
#include "stock/articulo_form.h"

#include <QHash>
#include <QWidget>

class QLabel;

class ArticuloWindow : public QWidget {
    Q_OBJECT
public:
    ArticuloWindow(Entorno& entorno, QWidget* padre = nullptr);
    ArticuloForm& form() { return form_; }
    // Shows an existing article; false when it cannot be read.
    bool abrir(qint64 codigo);
    QWidget* entrada(const QString& columna) const { return entradas_.value(columna); }

public slots:
    void nuevo();
    void buscar();
    void guardar();
    void eliminar();
    void cancelar();

protected:
    void closeEvent(QCloseEvent* evento) override;

private:
    QWidget* crearEntrada(const QString& columna);
    QWidget* fila(const QString& columna);
    void cambio(const QString& columna, const QString& texto);
    void anadirParametro(const QString& columna);
    void mostrar(bool listas);
    void ponerFoco();

    Entorno& e_;
    ArticuloForm form_;
    QHash<QString, QWidget*> entradas_;
    QLabel* margen_ = nullptr;
    bool mostrando_ = false;
};
