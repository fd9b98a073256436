#!/usr/bin/env bash
# Builds the fuzz targets and runs each for so many seconds, as many beside each other as there are processors.
#   scripts/fuzz.sh SECONDS [TARGET...]      TARGET as the folders of tests/fuzz/corpus: record, limits, ...
# KESTRIX_FUZZ_JOBS sets how many run beside each other. What was found stays in build/fuzz/work: new inputs in
# TARGET/, the log in TARGET.log, an input that fails in TARGET-crash-... . Fails if one did.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:?how many seconds for each target}
shift
targets=("$@")
[ ${#targets[@]} -gt 0 ] || mapfile -t targets < <(ls tests/fuzz/corpus)

# Lightly optimised, with line numbers and joined sources: the build costs more than it can win here.
cmake --preset fuzz -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -gline-tables-only" -DCMAKE_UNITY_BUILD=ON >/dev/null
cmake --build --preset fuzz --target fuzzers -j "$(nproc)" | tail -n 1

export work=$PWD/build/fuzz/work seconds
mkdir -p "$work"
# The readers of settings want files, and rewriting one on a disk waits for the disk.
[ -n "${TMPDIR:-}" ] || ! [ -w /dev/shm ] || export TMPDIR=/dev/shm
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 LSAN_OPTIONS=suppressions=$PWD/tests/support/lsan.supp:print_suppressions=0

run() {
    mkdir -p "$work/$1"
    if ! build/fuzz/bin/fuzz_"$1" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$work/$1-" "$work/$1" "tests/fuzz/corpus/$1" >"$work/$1.log" 2>&1; then
        echo "fuzz_$1 failed:"
        grep -vE '^#[0-9]+[[:space:]]+(NEW|REDUCE|pulse|RELOAD)' "$work/$1.log" | tail -n 60
        return 1
    fi
    local covered
    covered=$(sed -nE 's/^#[0-9]+[[:space:]]+DONE[[:space:]]+(cov: [0-9]+).*/\1/p' "$work/$1.log")
    echo "fuzz_$1: $(sed -nE 's/^stat::number_of_executed_units: //p' "$work/$1.log") inputs, $covered," \
        "peak $(sed -nE 's/^stat::peak_rss_mb: +//p' "$work/$1.log") MB"
}
export -f run
printf '%s\0' "${targets[@]}" | xargs -0 -n 1 -P "${KESTRIX_FUZZ_JOBS:-$(nproc)}" bash -c 'run "$1"' _
