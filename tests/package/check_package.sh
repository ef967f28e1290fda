#!/usr/bin/env bash
# Builds the .deb from a finished build, unpacks it into a temporary root and
# checks what a user's machine would get: the files in their places, the
# programs running from there, and the desktop entry, metainfo, mime type and
# package passing their validators.
# Usage: check_package.sh BUILD_DIR WORK_DIR WITH_GUI(0|1)
# Exit 77 (skipped) when a tool it needs is missing.
set -euo pipefail
build=$1
work=$2
gui=$3
id=io.github.ordix.Ordix

need() {
  command -v "$1" >/dev/null || { echo "skipped: $1 missing (Debian package $2)"; exit 77; }
}
need dpkg-deb dpkg
need dpkg-shlibdeps dpkg-dev
need desktop-file-validate desktop-file-utils
need appstreamcli appstream
need lintian lintian

rm -rf "$work"
mkdir -p "$work/root"
cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work" >"$work/cpack.log" 2>&1 ||
  { cat "$work/cpack.log"; exit 1; }
deb=$(ls "$work"/ordix_*.deb)
dpkg-deb -x "$deb" "$work/root"
root=$work/root/usr

status=0
fail() { echo "FAIL: $*"; status=1; }

expected=(bin/ordix-cli share/man/man1/ordix-cli.1.gz share/doc/ordix/copyright
          share/doc/ordix/changelog.gz)
if [ "$gui" = 1 ]; then
  expected+=(bin/ordix share/man/man1/ordix.1.gz share/applications/$id.desktop
             share/metainfo/$id.metainfo.xml share/mime/packages/$id.xml
             share/icons/hicolor/scalable/apps/$id.svg)
  for size in 16 24 32 48 64 128 256; do
    expected+=(share/icons/hicolor/${size}x$size/apps/$id.png)
  done
fi
for f in "${expected[@]}"; do
  [ -s "$root/$f" ] || fail "missing usr/$f"
done
# Nothing else: a stray install rule (a library, a header) shows up here.
extra=$(cd "$work/root" && find . -type f | sed 's|^\./usr/||' | sort |
        comm -23 - <(printf '%s\n' "${expected[@]}" | sort))
[ -z "$extra" ] || fail "unexpected files: $extra"

for size in 16 24 32 48 64 128 256; do
  [ "$gui" = 1 ] || break
  png=$root/share/icons/hicolor/${size}x$size/apps/$id.png
  # Width and height are the big-endian words at bytes 16 and 20 of a PNG.
  dims=$(od -An -tx1 -j16 -N8 "$png" | tr -d ' \n')
  [ "$dims" = "$(printf '%08x%08x' "$size" "$size")" ] || fail "$png is not ${size}x$size"
done

# The installed program carries everything it reads (help, icons): it runs
# from any folder.
(cd / && "$root/bin/ordix-cli" -e "2^100") | grep -qx 1267650600228229401496703205376 ||
  fail "installed ordix-cli does not compute"

if [ "$gui" = 1 ]; then
  # Hints count too: a clean entry gives no output at all.
  hints=$(desktop-file-validate "$root/share/applications/$id.desktop" 2>&1) && [ -z "$hints" ] ||
    fail "desktop-file-validate: $hints"
  appstreamcli validate --no-net --pedantic "$root/share/metainfo/$id.metainfo.xml" ||
    fail "appstreamcli validate"
  if command -v update-mime-database >/dev/null; then
    # It notes that the folder is outside XDG_DATA_DIRS, which is the point.
    XDG_DATA_DIRS=$root/share update-mime-database "$root/share/mime"
    grep -q "application/x-ordix-number:\*\.num" "$root/share/mime/globs2" ||
      fail "the mime database does not know *.num"
  fi
fi
lintian --fail-on error,warning "$deb" ||
  fail "lintian"
exit $status
