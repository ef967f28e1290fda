#!/usr/bin/env bash
# The Qt-free core, ordix-cli and the core's tests cross-built for 64-bit
# Windows with MinGW-w64 (cmake/mingw-w64.cmake) and the tests run under Wine.
# Usage: scripts/test-windows.sh [ctest options]   (e.g. -R SafeFile)
#
# Debian packages, installed when missing: g++-mingw-w64-x86-64 (the cross
# compiler), wine64 (runs the tests), libgtest-dev (the GoogleTest sources
# built with the cross compiler), cmake and ninja-build.
# GMP is not packaged for MinGW: the tests that compare with it
# (test_bigint_fast) and the benchmarks are left out of this build.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build-windows

missing=()
command -v x86_64-w64-mingw32-g++-posix >/dev/null || missing+=(g++-mingw-w64-x86-64)
[ -x /usr/lib/wine/wine64 ] || command -v wine64 >/dev/null || missing+=(wine64)
[ -d /usr/src/googletest ] || missing+=(libgtest-dev)
command -v cmake >/dev/null || missing+=(cmake)
command -v ninja >/dev/null || missing+=(ninja-build)
if [ ${#missing[@]} -gt 0 ]; then
  echo "test-windows: installing ${missing[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  $sudo apt-get update
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends \
    -o DPkg::Lock::Timeout=600 "${missing[@]}"
fi

# A Wine prefix of the build's own, made before anything runs in it: two
# test programs starting at once would both try to make it. (A Wine server
# kept running with -p would keep Wine's own background programs alive, which
# hold the output pipe of the test program that started them open.)
export WINEPREFIX=$PWD/$build/wine WINEDEBUG=-all
wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
wineserver=$(command -v wineserver64 || command -v wineserver || echo /usr/lib/wine/wineserver64)
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$WINEPREFIX"
  # It complains of the 32-bit half Debian's wine64 lacks, which no test needs.
  "$wine" wineboot --init >/dev/null 2>&1
  "$wineserver" -w
fi

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake \
  -DORDIX_BUILD_GUI=OFF -DORDIX_BUILD_BENCH=OFF -DORDIX_WERROR=ON \
  -DORDIX_GTEST_SOURCE_DIR=/usr/src/googletest
# Building the tests lists their cases, each test program run once by Wine.
cmake --build "$build" -j"$(nproc)"
# ctest runs every test program through the toolchain's emulator, Wine.
ctest --test-dir "$build" -j"$(nproc)" --output-on-failure "$@"
