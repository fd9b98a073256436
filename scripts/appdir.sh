#!/usr/bin/env bash
# Makes an archive that runs from any folder, Qt included, from the build of scripts/package.sh: an AppDir in
# build/package/Kestrix.AppDir and the archive beside it. Needs patchelf. docs/building.md tells what it asks of a system.
set -euo pipefail
cd "$(dirname "$0")/.."
command -v patchelf >/dev/null || { echo "patchelf is missing." >&2; exit 1; }
[ -f build/package/CMakeCache.txt ] || scripts/package.sh
cmake --build build/package | tail -n 1

appdir=$PWD/build/package/Kestrix.AppDir
lib=$appdir/usr/lib
qmake=/usr/lib/qt5/bin/qmake
[ -x "$qmake" ] || qmake=qmake
qml=$("$qmake" -query QT_INSTALL_QML)
plugins=$("$qmake" -query QT_INSTALL_PLUGINS)
rm -rf "$appdir"
for component in Program Library; do
    cmake --install build/package --prefix "$appdir/usr" --component "$component" --strip >/dev/null
done

# What the program asks for by name, so that no executable tells of it.
mkdir -p "$lib/qt5/plugins" "$lib/qt5/qml"
while read -r module; do
    mkdir -p "$lib/qt5/qml/$module"
    cp -r "$qml/$module/." "$lib/qt5/qml/$module"
done < <("$("$qmake" -query QT_HOST_BINS)/qmlimportscanner" -rootPath Resources -importPath "$qml" |
    sed -nE "s#^ *\"path\": \"$qml/(.*)\",?\$#\\1#p" | grep -v '\.qml' | sort -u)
(cd "$plugins" && cp --parents platforms/libqxcb.so platforms/libqoffscreen.so imageformats/libqsvg.so \
    imageformats/libqico.so imageformats/libqgif.so imageformats/libqjpeg.so iconengines/libqsvgicon.so \
    xcbglintegrations/*.so platforminputcontexts/*.so "$lib/qt5/plugins")
printf '[Paths]\nPrefix=..\nPlugins=qt5/plugins\nQml2Imports=qt5/qml\n' >"$lib/kestrix/qt.conf"

# Libraries, without those that belong to the system: the C and C++ libraries, the display, its drivers, its fonts.
system='^(ld-linux.*|linux-vdso|lib(c|m|dl|pthread|rt|resolv|util|stdc\+\+|gcc_s|GL|EGL|GLX|GLdispatch|OpenGL|gbm|drm|'
system+='X11|X11-xcb|xcb|Xau|Xdmcp|bsd|md|fontconfig|freetype|expat|z|png16|brotli.*|uuid))\.so'
executables() { find "$appdir/usr" -type f \( -name '*.so*' -o -name Kestrix \); }
mapfile -t needed < <(executables | xargs -d '\n' ldd | awk '$2 == "=>" && $3 ~ /^\// { print $3 }' | sort -u)
for library in "${needed[@]}"; do
    case $library in "$appdir"/*) continue ;; esac
    grep -qE "$system" <<<"$(basename "$library")" || cp -L "$library" "$lib"
done
while read -r file; do
    patchelf --set-rpath "\$ORIGIN/$(realpath --relative-to="$(dirname "$file")" "$lib")" "$file"
done < <(find "$lib" -maxdepth 1 -type f -name '*.so*'; find "$lib/qt5" -name '*.so')

id=$(basename "$appdir"/usr/share/applications/*.desktop .desktop)
cp "$appdir/usr/share/applications/$id.desktop" "$appdir"
cp "$appdir/usr/share/icons/hicolor/256x256/apps/kestrix.png" "$appdir/kestrix.png"
ln -s kestrix.png "$appdir/.DirIcon"
cat >"$appdir/AppRun" <<'RUN'
#!/bin/sh
exec "$(dirname "$(readlink -f "$0")")/usr/bin/kestrix"
RUN
chmod +x "$appdir/AppRun"

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/package/CMakeCache.txt)
archive=build/package/kestrix-$version-$(uname -m).tar.xz
tar -C build/package -cJf "$archive" Kestrix.AppDir
du -sh "$appdir" "$archive"
