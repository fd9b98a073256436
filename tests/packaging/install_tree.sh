#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs a build, moves it to another folder, looks at what is there, adds the templates of plug-ins that were built
# out of the tree, and starts the program by its command on the display of the environment: it has to find all plug-ins
# and its help, and to connect the template of an instrument.
#   install_tree.sh BUILD_DIRECTORY PREFIX EXAMPLES_BUILD_DIRECTORY
set -euo pipefail

build=$1
prefix=$2
examples=$3
here=$(cd "$(dirname "$0")" && pwd)
# Libraries that come first are for the program, not for the tools here.
preload=${LD_PRELOAD:-}
unset LD_PRELOAD

rm -rf "$prefix" "$prefix-moved"
cmake --install "$build" --prefix "$prefix" >/dev/null
mv "$prefix" "$prefix-moved"
prefix=$prefix-moved
program=$(find "$prefix" -name Kestrix -type f -perm -u+x)
directory=$(dirname "$program")
libraries=$(realpath --relative-to="$prefix" "$directory/..")
lists=(installed_files.txt installed_files_dev.txt)
# Only where its library is.
[ ! -e "$build/bin/kestrix/instrument/KestrixIndustrialIo.so" ] || lists+=(installed_files_libiio.txt)
"$here/check_tree.sh" "$prefix" "$libraries" "${lists[@]}"

for kind in instrument mapper trigger; do
    cp "$examples/$kind/Example${kind^}.so" "$directory/kestrix/$kind"
done

# Somewhere else: nothing of the build may be needed.
cd /
log=$XDG_DATA_HOME/Kestrix/Kestrix.log
mkdir -p "${log%/*}"
rm -f "$log"
echo '<SETTINGS><Name>Example instrument</Name><SerialNumber>EXAMPLE-1</SerialNumber></SETTINGS>' \
    >"${log%/*}/KestrixConnectionSettings.xml"
# What the program would have a browser open.
opened=$XDG_RUNTIME_DIR/opened
rm -f "$opened"
mkdir -p "$XDG_RUNTIME_DIR/bin"
printf '#!/bin/sh\necho "$1" >>"%s"\n' "$opened" >"$XDG_RUNTIME_DIR/bin/xdg-open"
chmod +x "$XDG_RUNTIME_DIR/bin/xdg-open"

PATH=$XDG_RUNTIME_DIR/bin:$PATH LD_PRELOAD=$preload "$prefix/bin/kestrix" >/dev/null 2>&1 &
process=$!
trap 'kill "$process" 2>/dev/null || true' EXIT
for _ in $(seq 200); do
    kill -0 "$process"
    # A click that comes before the window is drawn is lost; help may be opened twice.
    "$here/click_help.sh" && [ -s "$opened" ] && break
    sleep 0.2
done

grep -q "Loading Instrument plugin in $directory/kestrix/instrument" "$log"
for plugin in KestrixSimulatedInstrument KestrixFileReplayInstrument KestrixSimulatedGantry KestrixSimulatedMover \
    KestrixSimulatedTrigger ExampleInstrument ExampleMapper ExampleTrigger; do
    grep -q "$plugin.so loaded" "$log"
done
url=$(head -n 1 "$opened")
# The help of the page that comes with an instrument: without one it would be that of the selection.
[ "$url" = "file://$directory/help/meter_component.html" ]
[ -f "${url#file://}" ]
