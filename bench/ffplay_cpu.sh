#!/usr/bin/env bash
# CPU seconds per second of 1X playback by ffplay, on the clip engine_bench
# measures and on the same kind of virtual display, so that engine_bench's
# cpu_per_second_1x can be read as a ratio.
#
#   bench/ffplay_cpu.sh [CLIP] [SECONDS]
#
# CLIP defaults to the clip engine_bench generates; SECONDS to 60.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
cache=${XDG_CACHE_HOME:-$HOME/.cache}
clip=${1:-$cache/quill-bench/bench_1080p30_gop60.mp4}
seconds=${2:-60}
if [ ! -f "$clip" ]; then
  echo "ffplay_cpu: no clip at $clip (run engine_bench once, or name one)" >&2
  exit 2
fi
if [ -z "${DISPLAY:-}" ]; then
  exec "$here/../scripts/with-xvfb.sh" "$0" "$clip" "$seconds"
fi
export SDL_AUDIODRIVER=${SDL_AUDIODRIVER:-dummy}
usage=$(mktemp)
trap 'rm -f "$usage"' EXIT
# Same window size and decoder threads as the engine's 1X run.
/usr/bin/time -f "%U %S %e" -o "$usage" \
  ffplay -v error -autoexit -t "$seconds" -x 1280 -y 720 -threads 2 "$clip" \
  </dev/null >/dev/null 2>&1 || true
read -r user sys wall <"$usage"
awk -v u="$user" -v s="$sys" -v w="$wall" \
  'BEGIN { printf "ffplay_cpu_per_second_1x: %.3f\nffplay_wall_s: %.1f\n", (u + s) / w, w }'
