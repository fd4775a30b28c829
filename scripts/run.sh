#!/usr/bin/env bash
# Installs what is missing, builds Vexorin and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh build
exec ./build/src/vexorin
