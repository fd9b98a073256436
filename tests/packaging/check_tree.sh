#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Looks at an install tree: all files are there, what desktops read is valid, executables look for libraries in the tree
# alone. Names every fault and fails if there is one.
#   check_tree.sh PREFIX LIBRARY_DIRECTORY LIST...
# LIBRARY_DIRECTORY is what the lists call "lib".
set -euo pipefail

prefix=$1
libraries=$2
shift 2
here=$(cd "$(dirname "$0")" && pwd)
share=$prefix/share
faults=0
fault() {
    echo "$*" >&2
    faults=$((faults + 1))
}

for list in "$@"; do
    while read -r file; do
        [ -s "$prefix/${file/#lib\//$libraries/}" ] || fault "missing or empty: $file"
    done <"$here/$list"
done

entries=("$share"/applications/*.desktop)
descriptions=("$share"/metainfo/*.metainfo.xml)
if [ ${#entries[@]} -ne 1 ] || [ "$(basename "${entries[0]}" .desktop)" != "$(basename "${descriptions[0]}" .metainfo.xml)" ]; then
    fault "desktop entry and description are not one of each, of the same name"
fi
desktop-file-validate "${entries[@]}" || fault "the desktop entry is not valid"
appstreamcli validate --no-net "${descriptions[@]}" || fault "the description is not valid"
xmllint --noout "$share/mime/packages/kestrix.xml" || fault "the type of records is not well-formed"
xmllint --noout "$share"/icons/hicolor/scalable/*/*.svg || fault "an icon is not well-formed"
for page in "$share"/man/man1/*.gz; do
    man --warnings -E UTF-8 -l "$page" 2>&1 >/dev/null | grep . >&2 && fault "a manual page has faults: $page"
done

# A file manager would tell records by this.
types=$(mktemp -d)
trap 'rm -rf "$types"' EXIT
mkdir -p "$types/packages"
cp "$share/mime/packages/kestrix.xml" "$types/packages"
update-mime-database "$types" 2>/dev/null
type=application/x-kestrix-record+xml
grep -qxF "$type:*.qdr.xml" "$types/globs" || fault "*.qdr.xml has no type"
grep -qF "MimeType=$type;" "${entries[0]}" || fault "the desktop entry does not open records"
grep -qE '^Exec=kestrix$' "${entries[0]}" || fault "the desktop entry gives the program arguments that it would not read"

while read -r size file; do
    [ "$(file -b "$file" | grep -oE '[0-9]+ x [0-9]+')" = "$size x $size" ] || fault "not of the size of its folder: $file"
done < <(find "$share/icons/hicolor" -name kestrix.png | sed -E 's#(.*/([0-9]+)x[0-9]+/apps/.*)#\2 \1#')

while read -r file; do
    # Folders outside of the tree would be those of the build.
    if readelf -d "$file" | grep -E 'R(UN)?PATH' | grep -vqE '\[(\$ORIGIN/[A-Za-z0-9_./-]*:?)+\]'; then
        fault "looks for libraries outside of the tree: $file"
    fi
    ldd "$file" | grep "not found" >&2 && fault "does not find its libraries: $file"
done < <(find "$prefix/$libraries" "$prefix/bin" -type f \( -name Kestrix -o -name kestrix-plugin-check -o -name '*.so*' \))

[ "$faults" -eq 0 ]
