#!/bin/sh
# Makes Resources/Icons/Kestrix.ico (16 to 256 pixels) from Kestrix.svg.
# Needs rsvg-convert (librsvg2-bin) and convert (imagemagick).
set -eu

icons=$(cd "$(dirname "$0")/../Resources/Icons" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

set --
for size in 16 20 24 32 40 48 64 128 256; do
    rsvg-convert --width "$size" --height "$size" --output "$work/$size.png" "$icons/Kestrix.svg"
    set -- "$@" "$work/$size.png"
done
convert "$@" "$icons/Kestrix.ico"
