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

# The analysers read each layer and each plug-in as one source, which spares them Qt's headers for every file. Joined
# sources of an older tree would name files that are gone.
[ ! -d build/lint ] || find build/lint -type d -name Unity -prune -exec rm -r {} +
cmake --preset lint >/dev/null
mapfile -t generated < <(ninja -C build/lint -t targets all | sed -nE 's/^([^:]*\/)?([^/:]*_autogen): phony$/\2/p' | sort -u)
ninja -C build/lint "${generated[@]}" | tail -n 1

# The largest first, so that no processor is left with one alone in the end.
mapfile -t sources < <(find build/lint -path '*/Unity/unity_*_cxx.cxx' -printf '%s %p\n' | sort -rn | cut -d ' ' -f 2)
folders='/(domain|plugin-api|operations|recording|analysis|instruments|charts|viewmodels|shell|plugins|tools)/([a-z-]+/)*[A-Za-z0-9]+\.(h|cpp)$'
echo "== clang-tidy and clazy (${#sources[@]} sources)"
check() {
    local output
    clang-tidy -p build/lint --quiet --checks=-bugprone-suspicious-include --header-filter="$folders" "$1" 2>/dev/null || return 1
    output=$(clazy-standalone -p build/lint -checks=level1 -header-filter=".*$folders" "$1" 2>&1) || true
    if grep -qE 'warning: |error: ' <<<"$output"; then
        echo "$output"
        return 1
    fi
}
export folders
export -f check
printf '%s\0' "${sources[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c 'check "$PWD/$1"' _
echo "== clean"
