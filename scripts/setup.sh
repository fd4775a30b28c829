#!/usr/bin/env bash
# Installs the Debian packages Vexorin needs, for one purpose:
#   setup.sh run      to build and run the application (the default)
#   setup.sh package  to build its Debian package as well
#   setup.sh screenshots  to build the application and photograph its windows on a virtual display
#   setup.sh test     to build and run the whole test suite, benchmarks and fuzz targets
# Idempotent: packages already present are left alone. Works as root or through sudo.
set -euo pipefail

RUN_PACKAGES=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-serialport-dev qt6-datavisualization-dev qt6-charts-dev
  qt6-speech-dev qt6-declarative-dev qt6-speech-flite-plugin qt6-qpa-plugins
  libqt6opengl6-dev libgl-dev libgl1-mesa-dri
  libssl3 ca-certificates
  fonts-dejavu-core
)
PACKAGE_PACKAGES=(dpkg-dev file xz-utils)
SCREENSHOT_PACKAGES=(xvfb xauth)
TEST_PACKAGES=(
  git
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  clang libclang-rt-14-dev
  xvfb xauth socat
  lintian desktop-file-utils appstream man-db
)

purpose="${1:-run}"
case "$purpose" in
  run) wanted=("${RUN_PACKAGES[@]}") ;;
  package) wanted=("${RUN_PACKAGES[@]}" "${PACKAGE_PACKAGES[@]}") ;;
  screenshots) wanted=("${RUN_PACKAGES[@]}" "${SCREENSHOT_PACKAGES[@]}") ;;
  test) wanted=("${RUN_PACKAGES[@]}" "${PACKAGE_PACKAGES[@]}" "${TEST_PACKAGES[@]}") ;;
  *) echo "usage: $0 [run|package|screenshots|test]" >&2; exit 2 ;;
esac

missing=()
for p in "${wanted[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup ($purpose): all packages present"
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then
  SUDO="sudo"
fi

echo "setup ($purpose): installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
