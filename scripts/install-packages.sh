#!/usr/bin/env bash
# Installs the Debian packages of scripts/packages.txt that are missing. On a system without apt it names what is
# needed and stops.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t wanted < <(grep -v '^#' scripts/packages.txt | grep -v '^[[:space:]]*$')

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    if command -v cmake >/dev/null && command -v ninja >/dev/null && command -v qmake >/dev/null; then
        echo "This system has no apt: going on with the tools that are here. What Debian calls these packages is needed:"
        printf '  %s\n' "${wanted[@]}"
        exit 0
    fi
    echo "This system has no apt, and CMake, Ninja or Qt 5.15 is missing. Please install what Debian calls:" >&2
    printf '  %s\n' "${wanted[@]}" >&2
    exit 1
fi

missing=()
for package in "${wanted[@]}"; do
    status=$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true)
    [ "$status" = "install ok installed" ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "These packages are missing, and there is no sudo to install them with:" >&2
        printf '  %s\n' "${missing[@]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
    >/dev/null
