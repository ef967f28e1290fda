#!/usr/bin/env bash
# Lint of the program's sources: clang-format's layout (.clang-format) and
# clang-tidy's checks (.clang-tidy). Any difference or finding fails.
# Usage: scripts/lint.sh BUILD_DIR   (a build with compile_commands.json)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}

mapfile -t sources < <(git ls-files '*.cpp' '*.h' 2>/dev/null || find . -name '*.cpp' -o -name '*.h')
[ ${#sources[@]} -gt 0 ] || { echo "lint: no sources found"; exit 1; }

status=0
if ! clang-format --dry-run -Werror "${sources[@]}"; then
  echo "lint: layout differs from .clang-format (clang-format -i FILE mends it)"
  status=1
fi

# clang-tidy reads the compile commands; headers are checked through the
# files that include them. The benchmarks and the fuzzing harnesses (fuzz/,
# built only with clang) are not in the release build's commands.
mapfile -t units < <(printf '%s\n' "${sources[@]}" | grep '\.cpp$' | grep -v -e '^bench/' -e '^fuzz/')
if ! printf '%s\n' "${units[@]}" | xargs -P "$(nproc)" -n 8 clang-tidy -p "$build" --quiet 2>/dev/null; then
  echo "lint: clang-tidy found something (see above)"
  status=1
fi
exit $status
