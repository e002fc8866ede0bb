#!/usr/bin/env bash
# Runs one command on a private Xvfb display and stops the display afterwards.
# Xvfb picks a free display number itself (-displayfd), so parallel runs never
# race for one, and nothing is left behind when the command ends or fails.
set -u
if [ $# -eq 0 ]; then
  echo "usage: $0 COMMAND [ARG...]" >&2
  exit 2
fi
dir=$(mktemp -d "${TMPDIR:-/tmp}/quill-xvfb.XXXXXX")
Xvfb -displayfd 3 -screen 0 1920x1080x24 -dpi 96 -nolisten tcp -noreset 3>"$dir/display" 2>"$dir/log" &
xvfb=$!
cleanup() {
  kill "$xvfb" 2>/dev/null
  wait "$xvfb" 2>/dev/null
  rm -rf "$dir"
}
trap cleanup EXIT
for _ in $(seq 1 100); do
  [ -s "$dir/display" ] && break
  if ! kill -0 "$xvfb" 2>/dev/null; then
    echo "with-xvfb: Xvfb did not start:" >&2
    cat "$dir/log" >&2
    exit 3
  fi
  sleep 0.1
done
if [ ! -s "$dir/display" ]; then
  echo "with-xvfb: no display after 10 s" >&2
  exit 3
fi
export DISPLAY=":$(head -n1 "$dir/display")"
"$@"
