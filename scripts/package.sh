#!/usr/bin/env bash
# Builds the Debian package velmora_<version>_amd64.deb with CPack, in its own
# build folder (VELMORA_PACKAGE_BUILD_DIR, default build-package); prints the
# package's path. Install it with: sudo apt install ./velmora_*.deb
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
build=${VELMORA_PACKAGE_BUILD_DIR:-build-package}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_INSTALL_PREFIX=/usr \
    -DVELMORA_WITH_TESTS=OFF -DVELMORA_WITH_BENCH=OFF >/dev/null
cmake --build "$build" -j "$(nproc)" --target velmora velmora-data velmora-icons >/dev/null
cd "$build"
cpack -G DEB >/dev/null
ls "$PWD"/velmora_*_amd64.deb
