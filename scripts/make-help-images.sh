#!/usr/bin/env bash
# Takes the pictures of the help pages anew from the running program, on a private display.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset dev >/dev/null
cmake --build --preset dev --target HelpImages -j "$(nproc)" | tail -n 1

root=$PWD
# Some pictures show paths.
home=/tmp/kestrix
mkdir "$home"
trap 'rm -rf "$home"' EXIT
mkdir -m 700 "$home/runtime"
export HOME=$home XDG_RUNTIME_DIR=$home/runtime LC_ALL=C.UTF-8 LIBGL_ALWAYS_SOFTWARE=1 QSG_RENDER_LOOP=basic
export QT_LOGGING_RULES='qt.qpa.*=false' KESTRIX_IMAGES=$root/help/images
unset XDG_DATA_HOME XDG_CONFIG_HOME XDG_CACHE_HOME
mkdir -p "$KESTRIX_IMAGES"
cd "$home"
scenes=("$@")
[ ${#scenes[@]} -gt 0 ] || scenes=(connection meter records spectrum acAnalysis mapping settings)
for scene in "${scenes[@]}"; do
    "$root/scripts/with-display.sh" "$root/build/dev/tests/bin/HelpImages" "$scene" >log 2>&1 || {
        tail -n 20 log
        exit 1
    }
done
