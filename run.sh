#!/usr/bin/env bash
# Installs what is missing, builds Kestrix and opens it with the simulated instrument.
set -euo pipefail
cd "$(dirname "$0")"

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ "$(uname)" = Linux ]; then
    echo "Kestrix needs a graphical display, and there is none here (neither DISPLAY nor WAYLAND_DISPLAY is set)." >&2
    echo "Log in to a desktop, use 'ssh -X', or try it unseen with: scripts/with-display.sh ./run.sh" >&2
    exit 1
fi

scripts/install-packages.sh
cmake --preset release -DKESTRIX_BUILD_TESTS=OFF >/dev/null
cmake --build --preset release
exec build/release/bin/Kestrix "$@"
