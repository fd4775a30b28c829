#!/usr/bin/env bash
# Configures and builds Vexorin into build/ (or the folder given as $1, with extra CMake options after it).
set -euo pipefail
cd "$(dirname "$0")/.."
dir="${1:-build}"
shift || true
generator=()
command -v ninja >/dev/null 2>&1 && generator=(-G Ninja)
if [ ! -f "$dir/CMakeCache.txt" ]; then
  cmake -S . -B "$dir" "${generator[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
else
  cmake -S . -B "$dir" "$@" >/dev/null
fi
cmake --build "$dir" -j2
