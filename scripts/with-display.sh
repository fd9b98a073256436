#!/usr/bin/env bash
# Runs a command on a private virtual X display with a window manager and a system tray, and ends all of it.
#   scripts/with-display.sh [-s WIDTHxHEIGHT] COMMAND [ARGUMENTS]
# KESTRIX_PRELOAD names libraries that are loaded first into the command, and not into the display's own programs.
set -euo pipefail

size=1600x1000
if [ "${1:-}" = "-s" ]; then
    size=$2
    shift 2
fi

work=$(mktemp -d)
children=()
finish() {
    for child in "${children[@]}"; do kill "$child" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap finish EXIT

mkfifo "$work/display"
Xvfb -displayfd 3 -screen 0 "${size}x24" -dpi 96 +extension GLX -noreset 3>"$work/display" >/dev/null 2>"$work/xvfb.log" &
children+=($!)
read -r -t 20 number <"$work/display" || { cat "$work/xvfb.log" >&2; exit 1; }
export DISPLAY=:$number
openbox >/dev/null 2>&1 &
children+=($!)
for _ in $(seq 100); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id" && break
    sleep 0.1
done
trayer --edge bottom --widthtype request >/dev/null 2>&1 &
children+=($!)

LD_PRELOAD=${KESTRIX_PRELOAD:-${LD_PRELOAD:-}} "$@"
