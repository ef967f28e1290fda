#!/usr/bin/env bash
# Builds the libFuzzer harnesses of fuzz/ with clang in build-fuzz and runs
# each for SECONDS (default 60), new inputs kept in build-fuzz/fuzz/found/.
#   scripts/fuzz.sh [SECONDS] [HARNESS...]   e.g. scripts/fuzz.sh 300 formula
#   scripts/fuzz.sh --smoke                  a fixed number of runs of each
#                                            over its corpus and kept crashes,
#                                            through ctest (scripts/test.sh)
# ORDIX_FUZZ_FLAGS adds libFuzzer options (e.g. "-len_control=0 -max_len=512").
# A crash leaves its input in build-fuzz/fuzz/crashes/<harness>/; keep the
# ones that are fixed under fuzz/regressions/<harness>/ so the smoke run
# tries them again.
set -euo pipefail
cd "$(dirname "$0")/.."

command -v clang++ >/dev/null || { echo "fuzz: clang++ not found (scripts/setup.sh installs it)"; exit 1; }
build=${ORDIX_FUZZ_DIR:-build-fuzz}
jobs=$(nproc)
CXX=clang++ cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DORDIX_FUZZ=ON -DORDIX_BUILD_GUI=OFF -DORDIX_BUILD_BENCH=OFF -DBUILD_TESTING=OFF >/dev/null
cmake --build "$build" -j "$jobs" --target fuzzers

if [ "${1:-}" = "--smoke" ]; then
  ctest --test-dir "$build/fuzz" --output-on-failure -j "$jobs"
  exit
fi

seconds=${1:-60}
shift || true
harnesses=("$@")
if [ ${#harnesses[@]} -eq 0 ]; then
  for src in fuzz/fuzz_*.cpp; do
    name=$(basename "$src" .cpp)
    harnesses+=("${name#fuzz_}")
  done
fi
status=0
for h in "${harnesses[@]}"; do
  found="$build/fuzz/found/$h" crashes="$build/fuzz/crashes/$h" log="$build/fuzz/$h.log"
  mkdir -p "$found" "$crashes"
  seeds=()
  for d in "fuzz/corpus/$h" "fuzz/regressions/$h"; do [ -d "$d" ] && seeds+=("$d"); done
  echo "fuzz: $h for ${seconds}s (log $log)"
  if ! "$build/fuzz/fuzz_$h" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 \
      -dict=fuzz/ordix.dict -artifact_prefix="$crashes/" ${ORDIX_FUZZ_FLAGS:-} "$found" "${seeds[@]}" >"$log" 2>&1; then
    status=1
    grep -E -A25 '^==[0-9]+==ERROR|check failed|runtime error' "$log" | head -40
  fi
  grep -E '^#[0-9]+' "$log" | tail -1 || true
done
exit $status
