#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite.
# Exit status is the suite's.
set -euo pipefail
cd "$(dirname "$0")"

source scripts/common.sh
quill_install_dependencies
quill_build build -DBUILD_TESTING=ON

cd build
ctest --output-on-failure --no-tests=error -j "${QUILL_JOBS}" --timeout 600 "$@"
