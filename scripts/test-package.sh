#!/usr/bin/env bash
# Installs the packages of scripts/package.sh in a clean Debian root, starts the program there as an ordinary user on a
# private display, records with the simulated instrument and with the template of an instrument that is built against the
# packages beside those of a mapper and a trigger, and takes screenshots. Then the same with the archive of
# scripts/appdir.sh, if it was made, without Qt. Needs root, debootstrap and a Debian mirror; takes a few minutes.
#   scripts/test-package.sh [OUTPUT_DIRECTORY]     (build/package/test)
set -euo pipefail
cd "$(dirname "$0")/.."
output=$(realpath -m "${1:-build/package/test}")
[ "$(id -u)" -eq 0 ] || { echo "A clean root can only be made by root." >&2; exit 1; }
command -v debootstrap >/dev/null || { echo "debootstrap is missing." >&2; exit 1; }
packages=(build/package/packages/kestrix_*.deb)
[ -f "${packages[0]}" ] || scripts/package.sh
packages=(build/package/packages/kestrix_*.deb)
dev_packages=(build/package/packages/kestrix-dev_*.deb)
mkdir -p "$output"
exec unshare --mount --propagation private tests/packaging/clean_root.sh "$(realpath "${packages[0]}")" \
    "$(realpath "${dev_packages[0]}")" "$PWD/build/package/Kestrix.AppDir" "$output"
