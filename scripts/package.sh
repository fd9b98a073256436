#!/usr/bin/env bash
# Builds the Debian packages kestrix and kestrix-dev into build/package/packages/, and has lintian look at them if it is
# installed.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-packages.sh
# No folder of this machine in the executables.
cmake --preset release -B build/package -DKESTRIX_BUILD_TESTS=OFF -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_INSTALL_LIBDIR=lib \
    -DCMAKE_CXX_FLAGS="-ffile-prefix-map=$PWD=." >/dev/null
cmake --build build/package
rm -rf build/package/packages
(cd build/package && cpack >cpack.log) || { cat build/package/cpack.log >&2; exit 1; }
rm -rf build/package/packages/_CPack_Packages
if command -v lintian >/dev/null; then
    lintian --fail-on error,warning build/package/packages/*.deb
fi
ls build/package/packages/*.deb
