#!/usr/bin/env bash
# CPU seconds per second of 1X playback of the whole player window, side by
# side with ffplay and mpv, under one private virtual display:
#
#   bench/player_cpu.sh [CLIP] [SECONDS]
#
# CLIP defaults to the 1080p30 H.264 clip engine_bench generates (made here if
# missing); SECONDS to 30. Prints one table: CPU-seconds per second, the ratio
# to ffplay, dropped pictures (ours), peak resident memory. Installs ffplay's
# and mpv's Debian packages for the comparison; the player never needs them.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/.." && pwd)
cache=${XDG_CACHE_HOME:-$HOME/.cache}/quill-bench
clip=${1:-$cache/bench_1080p30_gop60.mp4}
seconds=${2:-30}
width=1000
height=600

if [ -z "${QUILL_BENCH_UNDER_XVFB:-}" ]; then
  (source "$root/scripts/common.sh"; QUILL_PACKAGES=(ffmpeg mpv xvfb); quill_install_dependencies)
  if [ ! -f "$clip" ]; then
    mkdir -p "$(dirname "$clip")"
    echo "player_cpu: making $clip"
    ffmpeg -v error -y -f lavfi -i "testsrc2=size=1920x1080:rate=30:duration=60" \
      -f lavfi -i "sine=frequency=440:duration=60" -c:v libx264 -preset veryfast -g 60 -bf 2 \
      -threads 2 -c:a aac -shortest "$clip"
  fi
  export QUILL_BENCH_UNDER_XVFB=1
  exec "$root/scripts/with-xvfb.sh" "$0" "$clip" "$seconds"
fi

export SDL_AUDIODRIVER=${SDL_AUDIODRIVER:-dummy}
player="$root/build/bin/quillplayer"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# run NAME COMMAND...: one row, from /usr/bin/time's user, system, wall and
# peak RSS of the command (children included).
rows=()
run() {
  local name=$1
  shift
  /usr/bin/time -f "%U %S %e %M" -o "$work/usage" "$@" </dev/null >"$work/out" 2>&1 || true
  local user sys wall rss dropped
  read -r user sys wall rss <"$work/usage"
  dropped=$(sed -n 's/^VideoPlayer_Rk: shown [0-9]* dropped \([0-9]*\)$/\1/p' "$work/out" | tail -1)
  rows+=("$name $user $sys $wall $rss ${dropped:--}")
}

ms=$((seconds * 1000))
for rendering in gl native; do
  QUILL_PLAYBACK_STATS=1 run "quillplayer($rendering)" "$player" "$clip" --workdir "$work/wd-$rendering" \
    --rendering "$rendering" --screenshot "$work/shot.png" --after "$ms"
done
run "ffplay" ffplay -v error -autoexit -t "$seconds" -x $width -y $height "$clip"
if command -v mpv >/dev/null; then
  run "mpv(x11)" mpv --really-quiet --no-config --vo=x11 --length="$seconds" --geometry=${width}x${height} "$clip"
  run "mpv(gpu)" mpv --really-quiet --no-config --vo=gpu --gpu-context=x11egl --gpu-sw \
    --length="$seconds" --geometry=${width}x${height} "$clip"
fi

echo "clip: $clip, ${seconds} s at 1X, window ${width}x${height}, load before: $(cut -d' ' -f1-3 /proc/loadavg)"
printf '%-20s %10s %10s %10s %12s\n' player cpu_per_s vs_ffplay dropped peak_rss_mb
ffplay_cpu=$(printf '%s\n' "${rows[@]}" | awk '$1 == "ffplay" { printf "%.4f", ($2 + $3) / $4 }')
for row in "${rows[@]}"; do
  echo "$row" | awk -v f="$ffplay_cpu" '{
    cpu = ($2 + $3) / $4
    printf "%-20s %10.3f %10.2f %10s %12.0f\n", $1, cpu, (f > 0 ? cpu / f : 0), $6, $5 / 1024 }'
done
