#!/usr/bin/env bash
# Installs what is missing to build and run Vexorin, builds the application
# alone (no tests) into build-app/ and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh run
bash scripts/build.sh build-app -DBUILD_TESTING=OFF -DVEXORIN_BENCH=OFF
exec ./build-app/src/vexorin "$@"
