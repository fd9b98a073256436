#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The part of scripts/test-package.sh that runs in a mount namespace of its own, so that no mount outlives it.
#   clean_root.sh PACKAGE OUTPUT_DIRECTORY
set -euo pipefail
package=$1
output=$2
here=$(cd "$(dirname "$0")" && pwd)
project=$(cd "$here/../.." && pwd)
root=$(mktemp -d)
chmod 755 "$root"
finish() {
    umount -l "$root/proc" "$root/dev" "$root/tmp/.X11-unix" 2>/dev/null || true
    rm -rf --one-file-system "$root"
}
trap finish EXIT

suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
debootstrap --variant=minbase "$suite" "$root" >"$output/debootstrap.log"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
# Only what the package itself asks for: no recommended package, no display server.
cp "$package" "$root/kestrix.deb"
chroot "$root" env DEBIAN_FRONTEND=noninteractive sh -c \
    'apt-get update -qq && apt-get install -y -qq --no-install-recommends /kestrix.deb' >"$output/install.log" 2>&1
chroot "$root" useradd --create-home tester
install -d -o 1000 -g 1000 "$root/home/tester/.local/share/Kestrix"
printf '<SETTINGS><Name>Simulated instrument</Name><SerialNumber>SIM-0001</SerialNumber></SETTINGS>' \
    >"$root/home/tester/.local/share/Kestrix/KestrixConnectionSettings.xml"
mkdir -p "$root/tmp/.X11-unix"
mount --rbind /tmp/.X11-unix "$root/tmp/.X11-unix"
"$project/scripts/with-display.sh" -s 1280x1000 "$here/run_in_root.sh" "$root" "$output"
grep -q KestrixSimulatedInstrument.so "$root/home/tester/.local/share/Kestrix/Kestrix.log"
chroot "$root" env DEBIAN_FRONTEND=noninteractive apt-get purge -y -qq kestrix >/dev/null 2>&1
[ ! -e "$root/usr/lib/kestrix" ]
echo "clean root: installed, started, removed; pictures are in $output"
