#!/usr/bin/env bash
# Starts the real program with "-x PACKAGE -d HERE" in a real X server: the
# package is extracted beside itself, the result box comes up by itself with
# no main window, and the program ends with status 0 once the box is closed.
# usage: extract_smoke.sh HULLWRIGHT HWTOOL DATA_DIR
set -euo pipefail
program=$1 hwtool=$2 data=$3

if [ -z "${HW_SMOKE_INNER:-}" ]; then
  command -v xvfb-run >/dev/null || { echo "xvfb-run is missing"; exit 1; }
  export HW_SMOKE_INNER=1
  exec xvfb-run -a -s "-screen 0 1280x1024x24" bash "$0" "$@"
fi

command -v xdotool >/dev/null || { echo "xdotool is missing"; exit 1; }
home=$(mktemp -d)
pid=""
trap '[ -n "$pid" ] && kill "$pid" 2>/dev/null; rm -rf "$home"' EXIT
mkdir -p "$home/game" "$home/ships"
touch "$home/game/x3.exe"
cp -r "$data"/. "$home"/
printf '<common>\nLanguage: English\nDir: %s\n</common>\n' "$home/game" > "$home/config.dat"

printf 'model bytes\n' > "$home/ships/m.pbd"
cat > "$home/ships/manifest.json" <<EOF
{"Name": "Smoke Ship", "Author": "Ann", "Data": "1;2;SS_SH_SMOKE",
 "Models": [{"Path": "m.pbd", "Name": "objects/ships/smoke.pbd"}]}
EOF
"$hwtool" xsp-build "$home/ships/manifest.json" "$home/ships/smoke.xsp"

HULLWRIGHT_HOME=$home QT_QPA_PLATFORM=xcb "$program" -x "$home/ships/smoke.xsp" -d HERE &
pid=$!

box=""
for _ in $(seq 1 150); do
  box=$(xdotool search --onlyvisible --name '^Ship Extracted$' 2>/dev/null | head -n1 || true)
  [ -n "$box" ] && break
  kill -0 "$pid" 2>/dev/null || { echo "the program ended before its result box appeared"; exit 1; }
  sleep 0.2
done
[ -n "$box" ] || { echo "no result box appeared"; xdotool search --name . getwindowname %@ 2>/dev/null || true; exit 1; }
if xdotool search --onlyvisible --name '^X3 - Hullwright' >/dev/null 2>&1; then
  echo "the main window was shown"
  exit 1
fi
[ -f "$home/ships/objects/ships/smoke.pbd" ] || { echo "the model was not extracted"; exit 1; }
[ -f "$home/ships/types/TShips.txt" ] || { echo "the ship table was not written"; exit 1; }

xdotool windowfocus --sync "$box" || true
xdotool key --clearmodifiers Return
for _ in $(seq 1 50); do
  kill -0 "$pid" 2>/dev/null || break
  sleep 0.1
done
if kill -0 "$pid" 2>/dev/null; then
  echo "the program did not end after its box was closed"
  exit 1
fi
status=0
wait "$pid" || status=$?
pid=""
[ "$status" -eq 0 ] || { echo "the program ended with status $status"; exit 1; }
echo "extracted, box closed, status 0"
