#!/usr/bin/env bash
# Builds the application and photographs every window on a virtual display:
# connected to the built-in simulators, monitoring, each tool in a state worth
# seeing. The pictures are what README shows.
#   scripts/screenshots.sh              docs/screenshots, at 100 %
#   scripts/screenshots.sh 1.5 DIR      at 150 %, into DIR
# Any layout problem found in a picture (a cut text, two controls over each
# other) is printed and makes the script fail.
set -euo pipefail
cd "$(dirname "$0")/.."
scale="${1:-1}"
folder="${2:-docs/screenshots}"
bash scripts/setup.sh screenshots
bash scripts/build.sh build-app -DBUILD_TESTING=OFF -DVEXORIN_BENCH=OFF
mkdir -p "$folder"
QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR="$scale" QT_LOGGING_RULES='qt.speech.*=false' \
  xvfb-run -a -s "-screen 0 1280x800x24" ./build-app/src/vexorin-screenshots "$folder"
