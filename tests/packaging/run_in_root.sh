#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Starts the installed program of a root on the display of the environment, and takes a picture.
#   run_in_root.sh ROOT OUTPUT_DIRECTORY
set -euo pipefail
root=$1
output=$2
chroot --userspec=tester "$root" env -i HOME=/home/tester PATH=/usr/bin:/bin DISPLAY="$DISPLAY" LC_ALL=C.UTF-8 \
    kestrix >"$output/kestrix.log" 2>&1 &
process=$!
trap 'kill "$process" 2>/dev/null || true' EXIT
log=$root/home/tester/.local/share/Kestrix/Kestrix.log
window=
for _ in $(seq 150); do
    kill -0 "$process"
    window=$(xdotool search --onlyvisible --name '^Norvane Kestrix' | head -n 1) || true
    [ -n "$window" ] && grep -q "Load font Oxygen Mono Regular" "$log" && break
    sleep 0.2
done
[ -n "$window" ]
# The window alone, without its frame: a page that is drawn has text in many shades on a light ground.
drawn=
for _ in $(seq 60); do
    import -window "$window" "$output/window.png"
    if [ "$(identify -format '%k' "$output/window.png")" -gt 100 ] &&
        [ "$(convert "$output/window.png" -colorspace gray -format '%[fx:mean>0.6]' info:)" = 1 ]; then
        drawn=yes
        break
    fi
    sleep 0.5
done
import -window root "$output/clean-root.png"
[ -n "$drawn" ] || { echo "the window stays undrawn" >&2; exit 1; }
kill -0 "$process"
! grep -E "is not installed|module .* not|cannot open shared" "$output/kestrix.log"
