#!/usr/bin/env bash
# Installs what is missing, builds (incrementally after the first time) and
# plays FILE, or a generated demo clip when none is given. Without a display
# the player runs on a private virtual display and a screenshot of its window
# is saved after a few seconds.
#
#   ./run.sh [FILE] [quillplayer options...]     (./build/bin/quillplayer --help)
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

quill_install_dependencies
# After the first build, ninja alone knows when to configure again.
if [ -f build/build.ninja ]; then
  cmake --build build -j "${QUILL_JOBS}"
else
  quill_build build
fi

args=("$@")
if [ ${#args[@]} -eq 0 ] || [[ "${args[0]}" == -* ]]; then
  demo=build/demo/quill-demo.mp4
  if [ ! -s "$demo" ]; then
    echo "Making the demo clip (one minute of 1080p H.264 with sound) in $demo ..."
    mkdir -p build/demo
    # Moving test pattern, its running time in large figures, and a tone.
    ffmpeg -v error -y \
      -f lavfi -i "testsrc2=size=1920x1080:rate=30:duration=60" \
      -f lavfi -i "sine=frequency=440:beep_factor=4:duration=60" \
      -vf "drawtext=text='%{pts\\:hms}':fontsize=96:fontcolor=white:box=1:boxcolor=black@0.6:boxborderw=16:x=(w-tw)/2:y=h-th-80" \
      -c:v libx264 -preset veryfast -g 60 -pix_fmt yuv420p -c:a aac -b:a 96k \
      -movflags +faststart -f mp4 "$demo.part"
    mv "$demo.part" "$demo"
  fi
  args=("$demo" "${args[@]}")
fi

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
  exec build/bin/quillplayer "${args[@]}"
fi

# No display: play on a virtual one and keep a picture of the window.
mkdir -p build/screenshots
shot="$PWD/build/screenshots/quillplayer.png"
echo "No display found: playing on a virtual display for a few seconds."
SDL_AUDIODRIVER=${SDL_AUDIODRIVER:-dummy} scripts/with-xvfb.sh \
  build/bin/quillplayer "${args[@]}" --screenshot "$shot" --after "${QUILL_SCREENSHOT_AFTER_MS:-5000}" \
  > build/screenshots/quillplayer.log 2>&1 || {
  status=$?
  cat build/screenshots/quillplayer.log >&2
  exit $status
}
grep -v '^load dll' build/screenshots/quillplayer.log | grep -v XDG_RUNTIME_DIR || true
echo "The player's window: $shot"
