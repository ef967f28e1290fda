#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running Ordix need.
# Quick when everything is there: apt-get runs only for what is missing.
set -euo pipefail

packages=(
  build-essential pkg-config cmake ninja-build
  qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins libgl1-mesa-dev
  libgtest-dev libgmock-dev libbenchmark-dev libgmp-dev
  xvfb xauth x11-utils xdotool poppler-utils fonts-dejavu-core
  clang-format clang-tidy git
  # ordix-cli's line editing
  libedit-dev
  # the package test's tools: tests/package
  dpkg-dev desktop-file-utils appstream lintian shared-mime-info
  # clang and its runtime libraries (libFuzzer, the sanitizers): scripts/fuzz.sh
  clang libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends \
  -o DPkg::Lock::Timeout=600 "${missing[@]}"
