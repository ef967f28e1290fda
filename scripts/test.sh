#!/usr/bin/env bash
# Builds Ordix and runs every test through ctest, in passes: a release build
# of everything; the Qt-free core, ordix-cli and their tests again under
# AddressSanitizer and UndefinedBehaviorSanitizer with assertions on (preset
# sanitize-core, folder build-sanitize-core); when clang is there, a short
# smoke run of the fuzzing harnesses (scripts/fuzz.sh --smoke, build-fuzz).
# The first failing pass stops the script; the output ends with the summary
# of the last ctest run.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
jobs=$(nproc)
export QT_QPA_PLATFORM=offscreen

build=${ORDIX_BUILD_DIR:-build}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DORDIX_WERROR=ON
cmake --build "$build" -j "$jobs"
ctest --test-dir "$build" --output-on-failure -j "$jobs"

# The sanitizer pass: no GUI, no benchmarks, no second lint (the preset).
cmake --preset sanitize-core
cmake --build --preset sanitize-core -j "$jobs"
ctest --preset sanitize-core -j "$jobs"

# The fuzzing harnesses (fuzz/, clang only): a fixed number of runs of each
# over its corpus and the crashes kept as regressions, through ctest.
if command -v clang++ >/dev/null; then
  scripts/fuzz.sh --smoke
fi
