#!/usr/bin/env bash
# Builds the whole tree with AddressSanitizer and UndefinedBehaviorSanitizer
# into build-asan and runs the same suite there.
set -euo pipefail
cd "$(dirname "$0")/.."

source scripts/common.sh
QUILL_PACKAGES+=(clang-14 libclang-rt-14-dev)
quill_install_dependencies
QUILL_BUILD_TYPE=Debug quill_build build-asan -DBUILD_TESTING=ON -DQUILL_SANITIZE=ON \
  -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14

# Mesa's own leaks in the GL tests are not ours; never unwind slowly on
# malloc (it deadlocks in llvmpipe).
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1:strict_string_checks=1"
export LSAN_OPTIONS="suppressions=$PWD/tests/tools/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
# The sanitizer runtime intercepts dlopen, which then no longer searches the
# calling library's $ORIGIN: name the installation folder explicitly.
export LD_LIBRARY_PATH="$PWD/build-asan/bin${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"
cd build-asan
ctest --output-on-failure --no-tests=error -j "${QUILL_JOBS}" --timeout 900 -LE display "$@"
ASAN_OPTIONS="detect_leaks=0:abort_on_error=1" ctest --output-on-failure -j "${QUILL_JOBS}" --timeout 900 -L display "$@"
