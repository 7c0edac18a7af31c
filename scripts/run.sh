#!/usr/bin/env bash
# Builds Velmora and starts it. Prepares an empty velmora.mdb beside the
# program only when none exists there; an existing data file is never touched.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
build=${VELMORA_BUILD_DIR:-build}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELMORA_WITH_TESTS=OFF -DVELMORA_WITH_BENCH=OFF
cmake --build "$build" -j "$(nproc)" --target velmora velmora-data
bin="$build/bin"
[ -e "$bin/velmora.mdb" ] || "$bin/velmora-data" new "$bin/velmora.mdb"
exec "$bin/velmora" "$@"
