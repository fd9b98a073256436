#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The part of scripts/test-package.sh that runs in a mount namespace of its own, so that no mount outlives it.
#   clean_root.sh PACKAGE DEVELOPMENT_PACKAGE APPDIR OUTPUT_DIRECTORY      APPDIR may be missing
set -euo pipefail
package=$1
dev_package=$2
appdir=$3
output=$4
here=$(cd "$(dirname "$0")" && pwd)
project=$(cd "$here/../.." && pwd)
root=$(mktemp -d)
stage=$(mktemp -d)
chmod 755 "$root"
finish() {
    umount -l "$root/proc" "$root/dev" "$root/tmp/.X11-unix" 2>/dev/null || true
    rm -rf --one-file-system "$root" "$stage"
}
trap finish EXIT

# The templates of plug-ins against what the packages hold, and nothing else of this project.
dpkg -x "$package" "$stage"
dpkg -x "$dev_package" "$stage"
cp -r "$stage/usr/share/kestrix/examples/plugins" "$stage/plugins"
cmake -S "$stage/plugins" -B "$stage/build" -DCMAKE_PREFIX_PATH="$stage/usr" >"$output/templates.log"
cmake --build "$stage/build" >>"$output/templates.log"
for kind in Instrument Mapper Trigger; do
    "$stage/usr/bin/kestrix-plugin-check" --strict --slow 5000 "$stage/build/${kind,}/Example$kind.so" | tail -n 1
done

suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
debootstrap --variant=minbase "$suite" "$root" >"$output/debootstrap.log"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
# Only what the package itself asks for: no recommended package, no display server.
cp "$package" "$root/kestrix.deb"
chroot "$root" env DEBIAN_FRONTEND=noninteractive sh -c \
    'apt-get update -qq && apt-get install -y -qq --no-install-recommends /kestrix.deb' >"$output/install.log" 2>&1
chroot "$root" useradd --create-home tester
mkdir -p "$root/tmp/.X11-unix"
mount --rbind /tmp/.X11-unix "$root/tmp/.X11-unix"

# try NAME COMMAND INSTRUMENT SERIAL_NUMBER: records what the instrument measures.
try() {
    install -d -o 1000 -g 1000 "$root/home/tester/.local/share/Kestrix"
    printf '<SETTINGS><Name>%s</Name><SerialNumber>%s</SerialNumber></SETTINGS>' "$3" "$4" \
        >"$root/home/tester/.local/share/Kestrix/KestrixConnectionSettings.xml"
    "$project/scripts/with-display.sh" -s 1280x1000 "$here/run_in_root.sh" "$root" "$output" "$1" "$2"
    "$stage/usr/bin/kestrix-records" check "$output/$1.qdr.xml"
    "$stage/usr/bin/kestrix-records" summary "$output/$1.qdr.xml" >"$output/$1.txt"
    grep -q "$4" "$output/$1.txt"
    echo "$1: $(grep -c '<flux>' "$output/$1.qdr.xml") blocks in the record"
}
try simulated kestrix "Simulated instrument" SIM-0001
for kind in Instrument Mapper Trigger; do
    cp "$stage/build/${kind,}/Example$kind.so" "$root/usr/lib/kestrix/kestrix/${kind,}"
done
try template kestrix "Example instrument" EXAMPLE-1
for kind in Instrument Mapper Trigger; do
    grep -q "Example$kind.so loaded" "$root/home/tester/.local/share/Kestrix/Kestrix.log"
done
try again kestrix "Simulated instrument" SIM-0001

rm "$root"/usr/lib/kestrix/kestrix/*/Example*.so
chroot "$root" env DEBIAN_FRONTEND=noninteractive apt-get purge -y -qq kestrix >/dev/null 2>&1
[ ! -e "$root/usr/lib/kestrix" ]

# The archive, in a folder that is moved, on a system without Qt that has the drivers of a display and fonts.
if [ -d "$appdir" ]; then
    chroot "$root" env DEBIAN_FRONTEND=noninteractive sh -c 'apt-get autoremove -y -qq --purge && apt-get install -y -qq \
        --no-install-recommends libgl1 libegl1 libgl1-mesa-dri libx11-6 libx11-xcb1 libfontconfig1 libfreetype6' \
        >"$output/without-qt.log" 2>&1
    find "$root/usr" -name 'libQt5*' | grep . >&2 && { echo "Qt is still there" >&2; exit 1; }
    cp -r "$appdir" "$root/home/tester/first"
    try archive /home/tester/first/AppRun "Simulated instrument" SIM-0001
    mkdir "$root/srv/another place"
    mv "$root/home/tester/first" "$root/srv/another place/Kestrix"
    try moved "/srv/another place/Kestrix/AppRun" "Simulated instrument" SIM-0001
fi
echo "clean root: installed, measured, removed; pictures are in $output"
