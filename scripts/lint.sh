#!/usr/bin/env bash
# Checks format, C++ (clang-tidy, clazy) and QML (qmllint) of what git tracks; --quick leaves the C++ analysers out.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t cpp < <(git ls-files '*.cpp' '*.h')
echo "== clang-format (${#cpp[@]} files)"
clang-format --dry-run --Werror "${cpp[@]}"

qmllint=/usr/lib/qt5/bin/qmllint
[ -x "$qmllint" ] || qmllint=qmllint
mapfile -t qml < <(git ls-files '*.qml')
if [ ${#qml[@]} -gt 0 ]; then
    echo "== qmllint (${#qml[@]} files)"
    "$qmllint" "${qml[@]}"
fi
[ "${1:-}" = "--quick" ] && exit 0

cmake --preset dev >/dev/null
# The analysers read sources that the build makes.
cmake --build --preset dev -j "$(nproc)" | tail -n 1

mapfile -t sources < <(git ls-files 'domain/*.cpp' 'plugin-api/*.cpp' 'operations/*.cpp' 'recording/*.cpp' \
    'analysis/*.cpp' 'instruments/*.cpp' 'charts/*.cpp' 'viewmodels/*.cpp' 'shell/*.cpp' 'plugins/*.cpp')
echo "== clang-tidy and clazy (${#sources[@]} files)"
layers='.*/(domain|plugin-api|operations|recording|analysis|instruments|charts|viewmodels|shell|plugins)/.*'
check() {
    local output
    clang-tidy -p build/dev --quiet "$1" 2>/dev/null || return 1
    output=$(clazy-standalone -p build/dev -checks=level1 -header-filter="$layers" "$1" 2>&1) || true
    if grep -qE 'warning: |error: ' <<<"$output"; then
        echo "$output"
        return 1
    fi
}
export layers
export -f check
printf '%s\0' "${sources[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c 'check "$1"' _
echo "== clean"
