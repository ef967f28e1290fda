#!/usr/bin/env bash
# Renders the application icon's PNG sizes from its SVG. The PNGs are
# committed, so building needs no SVG renderer; run this after changing the
# SVG (needs rsvg-convert, Debian package librsvg2-bin).
set -euo pipefail
cd "$(dirname "$0")/../packaging/icons"
svg=io.github.ordix.Ordix.svg
for size in 16 24 32 48 64 128 256; do
  rsvg-convert -w "$size" -h "$size" "$svg" -o "io.github.ordix.Ordix-$size.png"
done
