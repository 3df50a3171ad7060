#!/usr/bin/env bash
# Installs the Debian packages that the build, the tests, the screenshots and the Python
# clients of the remote control need.
# Safe to run again: it only installs what is missing. Runs as root, or through sudo.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev libgl1-mesa-dev qt6-charts-dev libqt6opengl6-dev
  libusb-1.0-0-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  qt6-qpa-plugins fonts-dejavu-core
  xvfb xauth imagemagick
  python3 python3-pyvisa python3-pyvisa-py python3-pymeasure
  clang libfuzzer-14-dev
  umockdev libumockdev-dev gir1.2-umockdev-1.0
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "installing: ${missing[*]}" >&2
if [ "$(id -u)" -eq 0 ]; then
  SUDO=()
else
  SUDO=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${SUDO[@]}" apt-get update -qq
"${SUDO[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
