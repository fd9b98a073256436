#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs a build into an empty folder, starts the installed program by its command on the display of the environment
# and looks into its log for the plug-ins beside it.
#   installed_start.sh BUILD_DIRECTORY PREFIX
set -euo pipefail

build=$1
prefix=$2
rm -rf "$prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null
program=$(find "$prefix" -name Kestrix -type f -perm -u+x)
directory=$(dirname "$program")
# Somewhere else: nothing of the build may be needed.
cd /
log=$XDG_DATA_HOME/Kestrix/Kestrix.log
rm -f "$log"

"$prefix/bin/kestrix" >/dev/null 2>&1 &
process=$!
trap 'kill "$process" 2>/dev/null || true' EXIT
for _ in $(seq 100); do
    if [ -f "$log" ] && grep -q "Load font Oxygen Mono Regular" "$log"; then
        break
    fi
    sleep 0.2
done
kill -0 "$process"
grep -q "Loading Instrument plugin in $directory/kestrix/instrument" "$log"
grep -q "KestrixSimulatedInstrument.so loaded" "$log"
grep -q "KestrixFileReplayInstrument.so loaded" "$log"
for licence in LICENSE LICENSE.fonts LICENSE.plugin-api; do
    [ -s "$prefix/share/doc/kestrix/$licence" ]
done
for page in connection meter_component meter_plot meter_table spectrum_plot spectrum_table ac_analysis_plot \
    ac_analysis_table; do
    [ -f "$directory/help/$page.html" ]
done
