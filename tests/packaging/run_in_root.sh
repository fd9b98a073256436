#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Starts the installed program of a root on the display of the environment, records what its default instrument measures,
# saves the record and takes pictures.
#   run_in_root.sh ROOT OUTPUT_DIRECTORY NAME COMMAND      pictures and log are NAME*, the record is NAME.qdr.xml
set -euo pipefail
root=$1
output=$2
name=$3
command=$4
log=$root/home/tester/.local/share/Kestrix/Kestrix.log
rm -f "$log"
find "$root/home/tester" -name '*.qdr.xml' -delete
started=$(date +%s%N)
chroot --userspec=tester "$root" env -i HOME=/home/tester PATH=/usr/bin:/bin DISPLAY="$DISPLAY" LC_ALL=C.UTF-8 \
    sh -c 'cd && exec "$0"' "$command" >"$output/$name.log" 2>&1 &
process=$!
trap 'kill "$process" 2>/dev/null || true' EXIT
window=
for _ in $(seq 1500); do
    kill -0 "$process"
    window=$(xdotool search --onlyvisible --name '^Norvane Kestrix' | head -n 1) || true
    [ -n "$window" ] && break
    sleep 0.02
done
[ -n "$window" ]
echo "$name: the window is there after $((($(date +%s%N) - started) / 1000000)) ms"
# The window alone, without its frame: a page that is drawn has text in many shades on a light ground.
drawn=
for _ in $(seq 300); do
    import -window "$window" "$output/$name.png"
    if [ "$(identify -format '%k' "$output/$name.png")" -gt 100 ] &&
        [ "$(convert "$output/$name.png" -colorspace gray -format '%[fx:mean>0.6]' info:)" = 1 ]; then
        drawn=yes
        break
    fi
    sleep 0.05
done
[ -n "$drawn" ] || { echo "the window stays undrawn" >&2; exit 1; }
echo "$name: its page is drawn after $((($(date +%s%N) - started) / 1000000)) ms"

# The action bar of the meter page; its buttons change their meaning, not their places.
press() {
    xdotool mousemove --window "$window" $((50 + 161 * $1)) 35
    sleep 0.5
    xdotool click 1
    sleep 1
}
sleep 2
press 2 # Record
press 1 # Resume
sleep 2
import -window root "$output/$name-measuring.png"
press 2 # Stop
press 3 # Save
dialog=
for _ in $(seq 50); do
    dialog=$(xdotool search --onlyvisible --name '^Save File' | head -n 1) || true
    [ -n "$dialog" ] && break
    sleep 0.2
done
[ -n "$dialog" ] || { echo "there is nothing to save" >&2; exit 1; }
sleep 1
xdotool key Return
record=
for _ in $(seq 50); do
    record=$(find "$root/home/tester" -name '*.qdr.xml' -size +0 | head -n 1)
    [ -n "$record" ] && grep -q "Data saved in file" "$log" && break
    sleep 0.2
done
import -window root "$output/$name-saved.png"
kill -0 "$process"
[ -n "$record" ] || { echo "no record was saved" >&2; exit 1; }
cp "$record" "$output/$name.qdr.xml"
! grep -E "is not installed|module .* not|cannot open shared" "$output/$name.log"
