#!/usr/bin/env bash
# Installs the Debian 12 packages the project needs, once: nothing is done when they are
# all present. Usage: scripts/dependencias.sh [--pruebas]
set -euo pipefail
paquetes=(build-essential cmake ninja-build pkg-config git
          qt6-base-dev libqt6sql6-sqlite libqt6sql6-psql qt6-serialport-dev
          libsodium-dev libzip-dev libsqlite3-dev fonts-dejavu-core)
if [[ "${1:-}" == "--pruebas" ]]; then
  paquetes+=(postgresql xvfb xauth poppler-utils)
fi
faltan=()
for p in "${paquetes[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || faltan+=("$p")
done
[[ ${#faltan[@]} -eq 0 ]] && exit 0
echo "Instalando paquetes de Debian: ${faltan[*]}"
if [[ $(id -u) -ne 0 ]]; then
  echo "Hace falta ser root (o usar sudo) para instalar: ${faltan[*]}" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq "${faltan[@]}"
