#pragma once
// Gives the main window's commands their screens, and applies this workstation's
// configuration (automatic saving, automatic backup) to the window.
class MainWindow;

void registrarPantallas(MainWindow& ventana);
void aplicarConfiguracionPuesto(MainWindow& ventana);
