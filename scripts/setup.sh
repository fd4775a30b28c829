#!/usr/bin/env bash
# Installs every Debian package Vexorin needs to build, run and test.
# Idempotent: packages already present are left alone. Works as root or through sudo.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config git
  qt6-base-dev qt6-base-dev-tools qt6-serialport-dev
  qt6-speech-dev qt6-declarative-dev qt6-speech-flite-plugin
  libqt6opengl6-dev libgl-dev
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  clang libclang-rt-14-dev
  xvfb xauth socat
  libssl3 ca-certificates
  fonts-dejavu-core
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all packages present"
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then
  SUDO="sudo"
fi

echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
