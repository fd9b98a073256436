#!/usr/bin/env bash
# Installs what is missing, builds and runs all tests without a display: first as developers build, then under
# AddressSanitizer and UndefinedBehaviorSanitizer.
#   ./test.sh [dev] [asan]     only these presets
set -euo pipefail
cd "$(dirname "$0")"

presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(dev asan)
jobs=$(nproc)

scripts/install-packages.sh
for preset in "${presets[@]}"; do
    echo "== $preset: build"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" -j "$jobs"
done
# Tests of the window wait for its timers most of the time, so that more of them than processors run beside each other.
# What fails there has to pass alone.
for preset in "${presets[@]}"; do
    echo "== $preset: test"
    if ! ctest --preset "$preset" -j $((2 * jobs)) --timeout 300; then
        echo "== $preset: what failed beside others, alone"
        ctest --preset "$preset" --rerun-failed --timeout 300
    fi
done
