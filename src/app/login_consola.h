#pragma once
// The login dialog on the terminal: asks "Usuario: " and "Clave: " on standard input
// until the user is identified; the end of input cancels it.
#include "app/entorno.h"

class ConsoleDialogs;

bool identificarEnConsola(Entorno& entorno, ConsoleDialogs& consola);
