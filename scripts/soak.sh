#!/usr/bin/env bash
# The long run of the soak and fault programs: 500 playback cycles over every
# container, 100 dialogs, 10,000 random commands through the window, and the
# engine's fault cases. Installs and builds what is missing first;
# the short form runs with the rest of the suite. The programs run directly,
# without the per-test time limit of the suite.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh
quill_install_dependencies
quill_build build -DBUILD_TESTING=ON
cd build/tests

export QUILL_SOAK_CYCLES="${QUILL_SOAK_CYCLES:-500}"
export QUILL_SOAK_DIALOGS="${QUILL_SOAK_DIALOGS:-100}"
export QUILL_FAULT_OPERATIONS="${QUILL_FAULT_OPERATIONS:-10000}"
# Qt Test's limit per test function (five minutes) is far too short here.
export QTEST_FUNCTION_TIMEOUT="${QTEST_FUNCTION_TIMEOUT:-14400000}"
export QT_QPA_PLATFORM=xcb SDL_AUDIODRIVER=dummy QT_LOGGING_RULES='qt.qpa.*=false'
status=0
for program in tst_Soak tst_Faults tst_EngineFaults; do
  ../../scripts/with-xvfb.sh "./${program}" "$@" || status=1
done
exit "${status}"
