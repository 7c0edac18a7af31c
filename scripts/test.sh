#!/usr/bin/env bash
# Builds Velmora with all warnings and runs every test through ctest.
# VELMORA_REQUIRE_FIXTURES=ON makes a missing ../shared/jet-fixtures an error
# instead of skipped tests.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
build=${VELMORA_BUILD_DIR:-build}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DVELMORA_REQUIRE_FIXTURES="${VELMORA_REQUIRE_FIXTURES:-OFF}"
cmake --build "$build" -j "$(nproc)"
cd "$build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j "$(nproc)"
