#!/usr/bin/env python3
"""Checks the layering of the sources under <raiz>/src and prints every violation as
file:line: rule: text.

Rules:
  qtwidgets        a QtWidgets header is included outside ui/ folders, src/gui/ and src/main.cpp
  data-subsistema  a file of src/data includes a subsystem folder (clients/, stock/, sales/,
                   clinical/, app/, documents/)
  sql-en-form      a string in a form (*_form*.cpp, *_form.h) holds SQL text
  ui-store         a window (ui/ or src/gui/) includes a store header (*_store.h)

Exit code 0 when there is none (violations named in the allow-list file do not count, and are
printed as "permitido"), 1 otherwise, 2 on a usage error.

  comprobar_capas.py [--raiz DIR] [--qtwidgets DIR]... [--permitidas FILE]

--qtwidgets names Qt's QtWidgets include folder(s): every header found there counts as a
widgets header (without it, <QtWidgets/...> and a built-in list are used). The allow-list
file holds lines "rule path" (blank lines and # comments ignored).
"""
import argparse
import os
import re
import sys

SUBSISTEMAS = ("clients", "stock", "sales", "clinical", "app", "documents")
# Widgets headers kept in other Qt modules, and a fallback list of the usual ones.
WIDGETS_FUERA = {"QPrintDialog", "QPrintPreviewDialog", "QPrintPreviewWidget", "QPageSetupDialog",
                 "QAbstractPrintDialog"}
WIDGETS_BASICOS = {"QApplication", "QWidget", "QMainWindow", "QDialog", "QMessageBox", "QLabel",
                   "QLineEdit", "QPushButton", "QComboBox", "QMdiArea", "QMdiSubWindow", "QTableWidget",
                   "QTreeWidget", "QListWidget", "QVBoxLayout", "QHBoxLayout", "QGridLayout", "QFormLayout",
                   "QMenu", "QMenuBar", "QToolBar", "QStatusBar", "QInputDialog", "QFileDialog",
                   "QCheckBox", "QSpinBox", "QTextEdit", "QPlainTextEdit", "QGroupBox", "QTabWidget",
                   "QHeaderView", "QDialogButtonBox", "QStyle", "QFrame", "QSplitter", "QScrollArea"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
SQL = re.compile(r"\b(SELECT|INSERT\s+INTO|UPDATE|DELETE\s+FROM|WHERE|ORDER\s+BY|GROUP\s+BY|JOIN)\b"
                 r"|[=<>]\s*\?")


def cabeceras_widgets(carpetas):
    nombres = set(WIDGETS_FUERA)
    for carpeta in carpetas:
        if os.path.isdir(carpeta):
            nombres.update(n for n in os.listdir(carpeta) if not n.endswith(".h") and n.startswith("Q"))
    return nombres or (WIDGETS_BASICOS | WIDGETS_FUERA)


def es_ventana(ruta):
    partes = ruta.split("/")
    return "ui" in partes[1:-1] or ruta.startswith("src/gui/")


def es_form(ruta):
    nombre = os.path.basename(ruta)
    return re.search(r"_form(_[a-z_]+)?\.cpp$", nombre) is not None or nombre.endswith("_form.h")


def comprobar_fichero(ruta, lineas, widgets):
    """Yields (line number, rule, text) for each violation of one file (ruta relative, with /)."""
    widgets_permitidos = es_ventana(ruta) or ruta == "src/main.cpp"
    for n, linea in enumerate(lineas, 1):
        m = INCLUDE.match(linea)
        if m:
            delim, cabecera = m.groups()
            base = cabecera.split("/")[-1]
            if not widgets_permitidos and (cabecera.startswith("QtWidgets") or
                                           (delim == "<" and base in widgets)):
                yield n, "qtwidgets", linea.strip()
            if ruta.startswith("src/data/") and cabecera.split("/")[0] in SUBSISTEMAS:
                yield n, "data-subsistema", linea.strip()
            if es_ventana(ruta) and delim == '"' and base.endswith("_store.h"):
                yield n, "ui-store", linea.strip()
            continue
        if es_form(ruta) and not linea.lstrip().startswith("//"):
            for literal in LITERAL.findall(linea):
                if SQL.search(literal):
                    yield n, "sql-en-form", linea.strip()
                    break


def leer_permitidas(fichero):
    permitidas = set()
    if not fichero:
        return permitidas
    with open(fichero, encoding="utf-8") as f:
        for linea in f:
            linea = linea.split("#")[0].strip()
            if linea:
                regla, ruta = linea.split(None, 1)
                permitidas.add((regla, ruta.strip()))
    return permitidas


def main():
    p = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    p.add_argument("--raiz", default=os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
    p.add_argument("--qtwidgets", action="append", default=[])
    p.add_argument("--permitidas")
    a = p.parse_args()
    raiz = os.path.abspath(a.raiz)
    if not os.path.isdir(os.path.join(raiz, "src")):
        print(f"No existe la carpeta {raiz}/src", file=sys.stderr)
        return 2
    widgets = cabeceras_widgets(a.qtwidgets)
    permitidas = leer_permitidas(a.permitidas)
    usadas = set()
    cuenta = {}
    for carpeta, _, ficheros in sorted(os.walk(os.path.join(raiz, "src"))):
        for nombre in sorted(ficheros):
            if not nombre.endswith((".cpp", ".h")):
                continue
            completo = os.path.join(carpeta, nombre)
            ruta = os.path.relpath(completo, raiz).replace(os.sep, "/")
            with open(completo, encoding="utf-8", errors="replace") as f:
                lineas = f.read().splitlines()
            for n, regla, texto in comprobar_fichero(ruta, lineas, widgets):
                if (regla, ruta) in permitidas:
                    usadas.add((regla, ruta))
                    print(f"{ruta}:{n}: {regla} (permitido temporalmente): {texto}")
                else:
                    cuenta[regla] = cuenta.get(regla, 0) + 1
                    print(f"{ruta}:{n}: {regla}: {texto}")
    for regla, ruta in sorted(permitidas - usadas):
        print(f"aviso: '{regla} {ruta}' ya no hace falta en {a.permitidas}")
    if cuenta:
        total = sum(cuenta.values())
        detalle = ", ".join(f"{r} {cuenta[r]}" for r in sorted(cuenta))
        print(f"{total} infracciones de las capas: {detalle}")
        return 1
    print("Capas correctas.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
