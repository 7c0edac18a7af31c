#!/usr/bin/env bash
# Builds the Debian package, unpacks it into a temporary root and checks what a
# user gets: the files in their places, a desktop entry and metainfo that the
# validators accept, computed dependencies, and the installed program starting
# with its data in a new per-user folder, since it may not write its own.
# Usage: package_test.sh SOURCE_DIR PACKAGE_BUILD_DIR
set -euo pipefail
if ! command -v dpkg-deb >/dev/null; then
    echo "SKIPPED: dpkg-deb is not installed, no package can be built"
    exit 77
fi
source_dir=$1
deb=$(VELMORA_PACKAGE_BUILD_DIR=$2 "$source_dir/scripts/package.sh" | tail -n 1)
root=$(mktemp -d /tmp/velmora-package.XXXXXX)
trap 'chmod -R u+w "$root"; rm -rf "$root"' EXIT
dpkg -x "$deb" "$root"
fail() { echo "FAILED: $*"; exit 1; }

[[ $(basename "$deb") == velmora_*_amd64.deb ]] || fail "package named $(basename "$deb")"
dpkg-deb -f "$deb" Depends | grep -q 'libqt6widgets6' || fail "no computed dependency on Qt"
for f in usr/bin/velmora usr/bin/velmora-data usr/share/velmora/velmora-help.html \
    usr/share/man/man1/velmora.1 usr/share/icons/hicolor/scalable/apps/velmora.svg; do
    [ -s "$root/$f" ] || fail "$f missing"
done
for size in 16 24 32 48 64 128 256; do
    file "$root/usr/share/icons/hicolor/${size}x${size}/apps/velmora.png" | grep -q "$size x $size" ||
        fail "icon of $size px missing"
done
desktop-file-validate "$root/usr/share/applications/velmora.desktop"
grep -q '^Categories=Office;Finance;$' "$root/usr/share/applications/velmora.desktop" || fail "categories"
appstreamcli validate --no-net "$root"/usr/share/metainfo/*.metainfo.xml

export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen HOME="$root/home"
unset XDG_DATA_HOME
"$root/usr/bin/velmora" --help | grep -q 'Использование: velmora' || fail "--help"
# The program's folder is write-protected, as /usr/bin is for a user.
chmod a-w "$root/usr/bin"
VELMORA_QUIT_WHEN_STARTED=1 "$root/usr/bin/velmora" || fail "the main window did not open"
[ -s "$HOME/.local/share/velmora/velmora.mdb" ] || fail "no data file in ~/.local/share/velmora"
[ ! -e "$root/usr/bin/velmora.mdb" ] || fail "a data file was written beside the installed program"
echo "package $(basename "$deb") checked"
