#!/usr/bin/env bash
# Builds Ordix and starts it: the desktop program, or ordix-cli where there is
# no desktop program (yet, or no Qt).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
build=${ORDIX_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build" -j "$(nproc)"
if [ -x "$build/app/ordix" ]; then
  exec "$build/app/ordix" "$@"
fi
exec "$build/cli/ordix-cli" "$@"
