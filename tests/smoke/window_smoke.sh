#!/usr/bin/env bash
# Starts the real program in a real X server and checks that its main window
# appears with the caption of a new document. Leaves a screenshot in OUT_DIR.
# usage: window_smoke.sh HULLWRIGHT GRAB_SCREEN DATA_DIR OUT_DIR
set -euo pipefail
program=$1 grab=$2 data=$3 out=$4

if [ -z "${HW_SMOKE_INNER:-}" ]; then
  command -v xvfb-run >/dev/null || { echo "xvfb-run is missing"; exit 1; }
  export HW_SMOKE_INNER=1
  exec xvfb-run -a -s "-screen 0 1280x1024x24" bash "$0" "$@"
fi

command -v xdotool >/dev/null || { echo "xdotool is missing"; exit 1; }
home=$(mktemp -d)
trap 'kill "$pid" 2>/dev/null || true; rm -rf "$home"' EXIT
mkdir -p "$home/game" "$out"
touch "$home/game/x3.exe"
cp -r "$data"/. "$home"/
printf '<common>\nLanguage: English\nDir: %s\n</common>\n' "$home/game" > "$home/config.dat"

HULLWRIGHT_HOME=$home QT_QPA_PLATFORM=xcb "$program" &
pid=$!

# A new document: the version, and in brackets the language file's name for a
# new ship (no star, no path, no "ReadText-" placeholder).
caption='^X3 - Hullwright V2\.00 \[[^*/]+\]$'
window=""
for _ in $(seq 1 150); do
  window=$(xdotool search --onlyvisible --name "$caption" 2>/dev/null | head -n1 || true)
  [ -n "$window" ] && break
  kill -0 "$pid" 2>/dev/null || { echo "the program ended before its window appeared"; exit 1; }
  sleep 0.2
done
if [ -z "$window" ]; then
  echo "no window titled '$caption' appeared"
  xdotool search --name . getwindowname %@ 2>/dev/null || true
  exit 1
fi
title=$(xdotool getwindowname "$window")
echo "window $window: $title"
case "$title" in *ReadText-*) echo "the caption lacks its interface text"; exit 1 ;; esac
sleep 0.5
QT_QPA_PLATFORM=xcb "$grab" "$out/main-window.png"
echo "screenshot: $out/main-window.png"

# Leave through the File menu's Exit, as a user would (there is no window
# manager here to ask the window to close).
xdotool windowfocus --sync "$window" || true
xdotool key --clearmodifiers alt+f
sleep 0.5
xdotool key x
for _ in $(seq 1 50); do
  kill -0 "$pid" 2>/dev/null || break
  sleep 0.1
done
if kill -0 "$pid" 2>/dev/null; then
  echo "the program did not end after its window was closed"
  exit 1
fi
wait "$pid"
