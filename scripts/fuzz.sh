#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ into build-fuzz (clang, ASan, UBSan),
# makes their seed corpora, and runs each target for SECONDS (default 60),
# one at a time, printing its executions and findings.
#
#   scripts/fuzz.sh [SECONDS] [TARGET...]     targets: history param palette sdv engine
#
# QUILL_FUZZ_ARGS adds libFuzzer options (e.g. -runs=1000000). Corpora grow
# in build-fuzz/corpus/<target>, crashing inputs land in
# build-fuzz/findings/<target>. The exit status is 1 when anything was found.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
shift $(($# > 0 ? 1 : 0))
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(history param palette sdv engine)

source scripts/common.sh
QUILL_PACKAGES+=(clang-14 libclang-rt-14-dev)
quill_install_dependencies

build=build-fuzz
launcher=()
command -v ccache >/dev/null 2>&1 && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" \
  -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14 \
  -DQUILL_FUZZ=ON -DBUILD_TESTING=OFF >/dev/null
cmake --build "$build" -j "${QUILL_JOBS}" --target quill_fuzzers

# Seeds: a few small valid files per target, made once.
seeds() {
  local corpus=$build/corpus media=$build/seed-media
  [ -f "$corpus/.made" ] && return 0
  mkdir -p "$corpus"/{history,param,palette,sdv,engine} "$media"
  local password=$media/password
  printf 'quill-fuzz\n' >"$password"

  printf '{\n    "History": [\n        {\n            "path": "/home/u/Videos/b.mp4",\n            "pos": 75\n        },\n        {\n            "path": "D:/video/a.sdv",\n            "pos": 0\n        }\n    ]\n}\n' \
    >"$corpus/history/two"
  printf '{"History":[{"path":"x.ps","pos":12.9},{"path":"x.ps","pos":12.0},{"pos":"12"},7,{"path":"\\u00e9\\u4e2d.avi","pos":-2147483648}],"Other":1}' \
    >"$corpus/history/odd"
  printf '{"NotHistory":[]}' >"$corpus/history/none"

  printf '{\n    "ModuleKoPlayer": {\n        "OpenSound": "1",\n        "SoundSet": "50"\n    },\n    "SystemConfig": {\n        "RenderingType": "1",\n        "skin": "dark"\n    }\n}\n' \
    >"$corpus/param/settings"
  printf '{"SystemConfig":{"skin":1,"n":2.5,"b":true,"a":[1],"o":{"x":null}},"":{"":""}}' \
    >"$corpus/param/typed"
  printf '[1,2]' >"$corpus/param/array"

  cp resource/skin/dark/palette.json "$corpus/palette/dark"
  cp resource/skin/light/palette.json "$corpus/palette/light"

  # Tiny clips: 64x48, ten pictures, in each container users bring.
  local src=(-f lavfi -i testsrc2=s=64x48:r=10:d=1 -f lavfi -i sine=f=440:r=48000:d=1)
  local ff=(ffmpeg -nostdin -loglevel error -y)
  "${ff[@]}" "${src[@]}" -c:v libx264 -g 5 -bf 2 -c:a aac -b:a 16k "$corpus/engine/h264.mp4"
  "${ff[@]}" "${src[@]}" -c:v mpeg4 -g 5 -c:a pcm_mulaw "$corpus/engine/mpeg4.avi"
  "${ff[@]}" "${src[@]}" -c:v libx264 -g 5 -c:a mp2 -f mpeg "$corpus/engine/h264.ps"
  "${ff[@]}" -f lavfi -i testsrc2=s=64x48:r=10:d=1 -c:v libx265 -x265-params log-level=none \
    -g 5 -an "$media/hevc.mp4"
  cp "$media/hevc.mp4" "$corpus/engine/hevc.mp4"
  "$build/bin/sdvtool" --password-file "$password" seal "$corpus/engine/h264.mp4" \
    "$corpus/engine/sealed.sdv" >/dev/null

  # The .sdv target: plain and sealed, one of them over two chunks.
  "${ff[@]}" -f lavfi -i testsrc2=s=160x120:r=25:d=1 -c:v mpeg4 -q:v 1 -an "$media/large.avi"
  "$build/bin/sdvtool" --plain seal "$corpus/engine/h264.ps" "$corpus/sdv/plain.sdv" >/dev/null
  "$build/bin/sdvtool" --password-file "$password" seal "$corpus/engine/mpeg4.avi" \
    "$corpus/sdv/sealed.sdv" >/dev/null
  "$build/bin/sdvtool" --password-file "$password" seal "$media/large.avi" \
    "$corpus/sdv/sealed-chunks.sdv" >/dev/null
  touch "$corpus/.made"
}
seeds

export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1"
export LSAN_OPTIONS="suppressions=$PWD/tests/tools/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
export SDL_AUDIODRIVER=dummy

status=0
printf '%-8s %12s %8s %s\n' target executions findings time
for target in "${targets[@]}"; do
  bin=$build/fuzz/fuzz_$target
  [ -x "$bin" ] || { echo "no fuzz target '$target'" >&2; exit 2; }
  findings=$build/findings/$target
  mkdir -p "$findings"
  log=$build/fuzz-$target.log
  options=()
  asan=$ASAN_OPTIONS
  case $target in
    # Qt's JSON parser loses memory on a name given twice in one object; the
    # leak check libFuzzer then makes after each such input scans the whole
    # heap, ever slower, and the one at exit reports Qt's losses. What these
    # readers allocate is Qt's values alone.
    history | param | palette)
      options+=(-detect_leaks=0)
      asan="detect_leaks=0:abort_on_error=1"
      ;;
  esac
  start=$(date +%s)
  # One process at a time: the machine is shared. A slow input is a finding
  # too, but an engine run may step through a few seconds of a broken clip.
  # Noisy readers (every damaged chunk is said on standard error) have their
  # standard error closed; libFuzzer keeps its own.
  ASAN_OPTIONS=$asan "$bin" "$build/corpus/$target" -max_total_time="$seconds" -print_final_stats=1 \
    -timeout=60 -close_fd_mask=2 -artifact_prefix="$findings/" "${options[@]}" ${QUILL_FUZZ_ARGS:-} \
    >"$log" 2>&1 || true
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  found=$(find "$findings" -type f | wc -l)
  printf '%-8s %12s %8s %ss\n' "$target" "${runs:-?}" "$found" "$(($(date +%s) - start))"
  if [ "$found" -gt 0 ] || [ -z "$runs" ]; then
    status=1
    echo "  see $log and $findings" >&2
  fi
done
exit $status
