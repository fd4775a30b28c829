#!/usr/bin/env bash
# Installs what is missing, builds Vexorin for release into build-package/ and
# makes its Debian package there: build-package/packages/vexorin_2.5.1-1_<arch>.deb
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh package
bash scripts/build.sh build-package -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DVEXORIN_BENCH=OFF
(cd build-package && cpack -G DEB)
ls -1 build-package/packages/*.deb
