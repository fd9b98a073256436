#!/usr/bin/env bash
# Lets the program go through an hour's work on each page in so many minutes, on bursts of a simulated instrument, with a
# record and a user who acts at random, and prints what it holds meanwhile. Fails if memory or handles grow.
#   scripts/soak.sh MINUTES [PAGE...]      PAGE is meter, spectrum, acAnalysis or mapping
# A page goes on until the blocks, samples and actions of an hour are there, four times the minutes at most, so that a
# slow machine takes longer; ten minutes are as fast as two cores can. KESTRIX_SOAK_HOURS=0.05 asks for less, as a trial.
set -euo pipefail
cd "$(dirname "$0")/.."

export KESTRIX_SOAK_MINUTES=${1:?how many minutes on each page}
shift
pages=("$@")
[ ${#pages[@]} -gt 0 ] || pages=(meter spectrum acAnalysis mapping)

cmake --preset dev >/dev/null
cmake --build --preset dev --target Soak -j "$(nproc)" | tail -n 1

root=$PWD
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
mkdir -m 700 "$home/runtime"
export HOME=$home XDG_RUNTIME_DIR=$home/runtime LC_ALL=C.UTF-8 LIBGL_ALWAYS_SOFTWARE=1 QSG_RENDER_LOOP=basic
export QT_LOGGING_RULES='qt.qpa.*=false' QTEST_FUNCTION_TIMEOUT=100000000
unset XDG_DATA_HOME XDG_CONFIG_HOME XDG_CACHE_HOME
cd "$home"
failed=0
for page in "${pages[@]}"; do
    printf '\n== %s\n' "$page"
    "$root/scripts/with-display.sh" "$root/build/dev/tests/bin/Soak" "$page" -maxwarnings 0 >"$home/log" 2>&1 &&
        status=0 || status=$?
    grep -E ' min  |actions|^(FAIL|PASS).*::'"$page"'|Loc:|Actual|Expected' "$home/log" || true
    if [ "$status" -ne 0 ]; then
        tail -n 20 "$home/log"
        failed=1
    fi
done
exit "$failed"
