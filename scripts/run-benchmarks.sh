#!/usr/bin/env bash
# Builds the benchmarks and prints their tables; docs/performance.md tells what they mean. Takes about ten minutes.
# Wants a machine that does nothing else.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset bench >/dev/null
cmake --build --preset bench

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
mkdir -m 700 "$home/runtime"
export HOME=$home XDG_RUNTIME_DIR=$home/runtime LC_ALL=C.UTF-8 LIBGL_ALWAYS_SOFTWARE=1
unset XDG_DATA_HOME XDG_CONFIG_HOME XDG_CACHE_HOME
bin=$PWD/build/bench/bin

for name in analysis records charts mapping livepath memory; do
    printf '\n== %s\n' "$name"
    "$bin/bench_$name"
done
for name in scene vectors lag meter_page startup; do
    printf '\n== %s\n' "$name"
    scripts/with-display.sh "$bin/bench_$name" 2>"$home/$name.log" || { tail -20 "$home/$name.log" >&2; exit 1; }
done
