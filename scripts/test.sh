#!/usr/bin/env bash
# Builds Ordix and runs every test through ctest.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
build=${ORDIX_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DORDIX_WERROR=ON
cmake --build "$build" -j "$(nproc)"
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$build" --output-on-failure -j "$(nproc)"
