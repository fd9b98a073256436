#!/bin/sh
# Makes Resources/Icons/Kestrix.ico (16 to 256 pixels) and the icons of the desktop, packaging/icons/kestrix-*.png, from
# Kestrix.svg.
# Needs rsvg-convert (librsvg2-bin) and convert (imagemagick).
set -eu

root=$(cd "$(dirname "$0")/.." && pwd)
icons=$root/Resources/Icons
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

draw() {
    rsvg-convert --width "$1" --height "$1" --output "$2" "$icons/Kestrix.svg"
}

set --
for size in 16 20 24 32 40 48 64 128 256; do
    draw "$size" "$work/$size.png"
    set -- "$@" "$work/$size.png"
done
convert "$@" "$icons/Kestrix.ico"
for size in 16 22 24 32 48 64 128 256 512; do
    draw "$size" "$root/packaging/icons/kestrix-$size.png"
done
