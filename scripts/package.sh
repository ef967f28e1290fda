#!/usr/bin/env bash
# Builds Ordix and its Debian package, then runs the validators over it.
# The .deb lands in its own build folder (ORDIX_PACKAGE_DIR, default
# build-package/), built without tests and with the hardening Debian asks of
# packaged programs (fortified string functions, immediate binding).
# Needs dpkg-dev (dpkg-shlibdeps), desktop-file-utils, appstream and lintian
# beside what scripts/setup.sh installs.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${ORDIX_PACKAGE_DIR:-build-package}

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF \
  -DORDIX_BUILD_BENCH=OFF -DCMAKE_CXX_FLAGS="-D_FORTIFY_SOURCE=2" \
  -DCMAKE_EXE_LINKER_FLAGS="-Wl,-z,now" >/dev/null
cmake --build "$build" -j "$(nproc)" --target ordix-cli ordix ordix_packaging_files
(cd "$build" && cpack -G DEB)
deb=$(ls "$build"/ordix_*.deb)

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
dpkg-deb -x "$deb" "$root"
echo "== desktop-file-validate"
desktop-file-validate "$root"/usr/share/applications/*.desktop
echo "== appstreamcli validate"
appstreamcli validate --no-net --pedantic "$root"/usr/share/metainfo/*.xml
echo "== lintian"
lintian --display-info --pedantic --fail-on error,warning "$deb"
echo "package: $deb"
