#!/usr/bin/env bash
# Builds the Debian package into build-package/ and checks it with lintian.
#   scripts/package.sh            -> build-package/quillplayer_<version>_amd64.deb
# Install it with: sudo apt install ./build-package/quillplayer_*.deb
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh
QUILL_PACKAGES+=(lintian)
quill_install_dependencies
QUILL_BUILD_TYPE=${QUILL_BUILD_TYPE:-Release} quill_build build-package -DBUILD_TESTING=OFF -DCMAKE_INSTALL_PREFIX=/usr
(cd build-package && cpack -G DEB)
deb=$(ls build-package/quillplayer_*.deb)
echo "Package: $deb ($(du -h "$deb" | cut -f1))"
dpkg-deb -f "$deb" Depends
lintian "$deb" || true
