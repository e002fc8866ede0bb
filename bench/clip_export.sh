#!/usr/bin/env bash
# Speed of the clip export (no re-encoding): seconds of video cut per second
# of wall time, into MP4 and into a sealed .sdv, on the 1080p30 clip that
# engine_bench measures, through `sdvtool export` as a user would run it.
#
#   bench/clip_export.sh [CLIP] [FROM] [TO] [RUNS]
#
# CLIP defaults to engine_bench's clip (made here the same way when missing);
# FROM and TO (seconds) to 10 and 190; RUNS to 3, the best run counts. Figures
# for a warm page cache: the first run reads the file from disk.
set -eu
case "${1:-}" in
  -h|--help) sed -n '2,10s/^# \{0,1\}//p' "$0"; exit 0 ;;
  -*) echo "clip_export: unknown option $1 (see --help)" >&2; exit 2 ;;
esac
here=$(cd "$(dirname "$0")" && pwd)
bin=${QUILL_BIN:-$here/../build/bin}
cache=${XDG_CACHE_HOME:-$HOME/.cache}
clip=${1:-$cache/quill-bench/bench_1080p30_gop60.mp4}
from=${2:-10}
to=${3:-190}
runs=${4:-3}
if [ ! -f "$clip" ]; then
  echo "clip_export: generating $clip (once)" >&2
  mkdir -p "$(dirname "$clip")"
  ffmpeg -v error -y -f lavfi -i testsrc2=size=1920x1080:rate=30:duration=200 \
    -f lavfi -i sine=frequency=440:sample_rate=48000:duration=200 \
    -c:v libx264 -preset veryfast -g 60 -keyint_min 60 -sc_threshold 0 -bf 2 \
    -pix_fmt yuv420p -b:v 6M -c:a aac -ac 2 "$clip.part.mp4"
  mv "$clip.part.mp4" "$clip"
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
printf 'bench\nbench\n' >"$work/password"

# Wall seconds of the best of $runs runs of one export.
best_of() {
  local best="" start end took
  for _ in $(seq "$runs"); do
    rm -f "$work/out.$1"
    start=$(date +%s.%N)
    "$bin/sdvtool" --new-password-file "$work/password" export "$clip" "$work/out.$1" \
      "$from" "$to" >/dev/null
    end=$(date +%s.%N)
    took=$(awk -v s="$start" -v e="$end" 'BEGIN { printf "%.3f", e - s }')
    if [ -z "$best" ] || awk -v t="$took" -v b="$best" 'BEGIN { exit !(t < b) }'; then
      best=$took
    fi
  done
  echo "$best"
}

seconds=$(awk -v f="$from" -v t="$to" 'BEGIN { print t - f }')
size=$(stat -c %s "$clip")
for format in mp4 sdv; do
  took=$(best_of "$format")
  out=$(stat -c %s "$work/out.$format")
  awk -v f="$format" -v s="$seconds" -v w="$took" -v o="$out" 'BEGIN {
    printf "export_%s_wall_s: %.3f\n", f, w
    printf "export_%s_video_s_per_s: %.1f\n", f, s / w
    printf "export_%s_mb_per_s: %.1f\n", f, o / w / 1e6
  }'
done
echo "clip: $clip ($size bytes), seconds $from to $to"
