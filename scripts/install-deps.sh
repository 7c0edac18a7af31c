#!/usr/bin/env bash
# Installs the Debian packages Velmora needs to build, test and run, when missing.
set -euo pipefail
packages=(
    build-essential cmake
    qt6-base-dev qt6-charts-dev libqt6opengl6-dev libxkbcommon-dev libvulkan-dev libgl-dev
    libsqlite3-dev libsqlitecpp-dev
    googletest libgtest-dev libbenchmark-dev
    qt6-svg-dev
    xvfb xauth fonts-dejavu-core qt6-translations-l10n
    mdbtools poppler-utils desktop-file-utils appstream
    clang libclang-rt-14-dev clang-format
)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
