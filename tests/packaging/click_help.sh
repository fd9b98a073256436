#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Presses the button of the help, second of three in the lower left corner of the program's window.
set -euo pipefail
window=$(xdotool search --onlyvisible --name '^Norvane Kestrix' | head -n 1)
[ -n "$window" ]
eval "$(xdotool getwindowgeometry --shell "$window" | grep -E '^(WIDTH|HEIGHT)=')"
xdotool mousemove --window "$window" 60 $((HEIGHT - 28)) click 1
