#!/usr/bin/env bash
# Installs what is missing, builds Vexorin and runs the whole test suite:
# the normal build, then a clang build with AddressSanitizer and
# UndefinedBehaviorSanitizer that also runs the fuzz targets for a bounded time.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh test

export QT_QPA_PLATFORM=offscreen
export CTEST_OUTPUT_ON_FAILURE=1

echo "== build and test (build/)"
bash scripts/build.sh build -DBUILD_TESTING=ON -DVEXORIN_BENCH=ON
(cd build && ctest -j2 --timeout 300)

echo "== sanitizer and fuzz build (build-asan/)"
CC=clang CXX=clang++ bash scripts/build.sh build-asan -DBUILD_TESTING=ON -DVEXORIN_SANITIZE=ON -DVEXORIN_FUZZ=ON -DVEXORIN_BENCH=OFF
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
(cd build-asan && ctest -j2 --timeout 600)
