#!/usr/bin/env bash
# Builds the benchmarks in build/ and runs every one of them in turn.
# Arguments are passed to each benchmark, e.g. scripts/bench.sh --dir /var/tmp --reps 5
# Not part of the test run: the figures depend on the machine and its load.
# bench_gettext: the start-up text load (GetText) of a generated 13-catalog game
# against unpacking and parsing its language pages directly.
# bench_balance: AutoBalance in three modes over every ship of the corpus TShips
# against a profile per class, against cutting and joining the same lines.
# bench_wizard: the import wizard on a generated mod of 20,000 entries, from
# choosing a ship to the last page filled, against listing the catalog once.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="$root/build"

if [ ! -f "$build/CMakeCache.txt" ]; then
  cmake -S "$root" -B "$build" -G Ninja -DHW_BUILD_BENCH=ON
fi
cmake --build "$build" -j"$(nproc)"

status=0
for bench in "$build"/bench-bin/*; do
  [ -x "$bench" ] && [ -f "$bench" ] || continue
  echo "== $(basename "$bench")"
  "$bench" "$@" || status=1
done
exit $status
