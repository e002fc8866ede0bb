#!/usr/bin/env bash
# CPU seconds per second of 1X playback of the whole player window, side by
# side with ffplay and mpv, under one private virtual display:
#
#   bench/player_cpu.sh [CLIP] [SECONDS]
#
# CLIP defaults to the 1080p30 H.264 clip engine_bench generates (made here if
# missing); SECONDS to 30. Prints one table: CPU-seconds per second, the ratio
# to ffplay, dropped pictures (ours), peak resident memory. Two more rows of
# ours are sampled in steady state, a few seconds in: as it opens, maximised to
# the whole 1920x1080 screen, and paused. Installs ffplay's, mpv's and
# xdotool's Debian packages for the comparison; the player never needs them.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/.." && pwd)
cache=${XDG_CACHE_HOME:-$HOME/.cache}/quill-bench
clip=${1:-$cache/bench_1080p30_gop60.mp4}
seconds=${2:-30}
width=1000
height=600

if [ -z "${QUILL_BENCH_UNDER_XVFB:-}" ]; then
  (source "$root/scripts/common.sh"; QUILL_PACKAGES=(ffmpeg mpv xvfb xdotool); quill_install_dependencies)
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

# sampled NAME ACTION COMMAND...: one row from the CPU time the command spends
# between 4 s after ACTION (done 3 s in: "steady", "max" or "pause") and 2 s before its
# end, and its peak RSS then; startup is left out.
sampled() {
  local name=$1 action=$2
  shift 2
  "$@" </dev/null >"$work/out" 2>&1 &
  local pid=$! window ticks t0 t1 c0 c1 rss dropped
  sleep 3
  window=$(xdotool search --maxdepth 1 --onlyvisible --pid "$pid" 2>/dev/null | head -1 || true)
  if [ -n "$window" ]; then
    case $action in
      max) xdotool windowmove "$window" 0 0 windowsize "$window" 1920 1080 ;;
      pause) xdotool windowfocus --sync "$window" key space ;;
    esac
  fi
  sleep 4
  ticks=$(getconf CLK_TCK)
  c0=$(awk '{ print $14 + $15 }' "/proc/$pid/stat"); t0=$(date +%s.%N)
  sleep $((seconds - 9))
  c1=$(awk '{ print $14 + $15 }' "/proc/$pid/stat"); t1=$(date +%s.%N)
  rss=$(awk '/^VmHWM/ { print $2 }' "/proc/$pid/status")
  wait "$pid" || true
  dropped=$(sed -n 's/^VideoPlayer_Rk: shown [0-9]* dropped \([0-9]*\)$/\1/p' "$work/out" | tail -1)
  # As a row of run: user = CPU seconds, system 0, wall = the sampled span.
  rows+=("$name $(awk -v a="$c0" -v b="$c1" -v k="$ticks" 'BEGIN { print (b - a) / k }') 0 \
$(awk -v a="$t0" -v b="$t1" 'BEGIN { print b - a }') $rss ${dropped:--}")
}

ms=$((seconds * 1000))
for rendering in gl native; do
  QUILL_PLAYBACK_STATS=1 run "quillplayer($rendering)" "$player" "$clip" --workdir "$work/wd-$rendering" \
    --rendering "$rendering" --screenshot "$work/shot.png" --after "$ms"
done
# What the OpenGL widget itself costs where the player would not pick it.
QUILL_RENDER_GL=1 QUILL_PLAYBACK_STATS=1 run "quillplayer(gl,forced)" "$player" "$clip" \
  --workdir "$work/wd-forced" --rendering gl --screenshot "$work/shot.png" --after "$ms"
if [ "$seconds" -ge 15 ] && command -v xdotool >/dev/null; then
  for action in steady max pause; do
    QUILL_PLAYBACK_STATS=1 sampled "quillplayer(gl,$action)" "$action" "$player" "$clip" \
      --workdir "$work/wd-$action" --rendering gl --screenshot "$work/shot.png" --after "$ms"
  done
fi
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
