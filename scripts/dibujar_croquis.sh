#!/usr/bin/env bash
# Draws the default sketch pictures again into src/clinical/croquis/ (the GIF files are kept in
# the repository: run this after changing tools/croquis/dibujar_croquis.cpp, look at the
# pictures, and commit them). Needs only Qt.
#   scripts/dibujar_croquis.sh [CARPETA_PNG]   also writes PNG copies there, to look at them
set -euo pipefail
cd "$(dirname "$0")/.."
[[ -f build/build.ninja ]] || cmake -S . -B build -G Ninja
cmake --build build --target dibujar-croquis
opciones=()
if [[ $# -ge 1 ]]; then
  mkdir -p "$1"
  opciones=(--png "$1")
fi
QT_QPA_PLATFORM=offscreen build/tools/croquis/dibujar-croquis src/clinical/croquis "${opciones[@]}"
