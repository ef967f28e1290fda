#!/usr/bin/env bash
# Builds Ordix and starts it: the desktop program, or ordix-cli where there is
# no desktop program (no Qt) or no display to show it on.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
build=${ORDIX_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build" -j "$(nproc)"
if [ -x "$build/app/ordix" ]; then
  if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || [ -n "${QT_QPA_PLATFORM:-}" ]; then
    exec "$build/app/ordix" "$@"
  fi
  echo "run.sh: no display here (neither DISPLAY nor WAYLAND_DISPLAY is set); starting ordix-cli instead" >&2
fi
exec "$build/cli/ordix-cli" "$@"
