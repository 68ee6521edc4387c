#!/usr/bin/env bash
# Runs every fuzz harness (fuzz/harnesses.cmake) for SECONDS each (default
# 60), one after the other, under ASan and UBSan, and stops at the first
# finding: its reproducer stays in build-fuzz/findings/ and the commands that
# replay it are printed.
#
#   bash scripts/fuzz.sh [SECONDS] [NAME...]      (NAME: catalog, pck, ...)
#
# The harnesses are built with clang into build-fuzz/ (HW_FUZZ=ON); clang and
# libFuzzer's runtime are installed through scripts/install-deps.sh. What a run
# discovers goes to a scratch corpus, build-fuzz/corpus/<name>, never into the
# checked-in seeds of fuzz/corpus/<name>: a finding's reproducer is added
# there by hand once it is fixed. The fuzzers run at the lowest priority; an
# input that takes longer than FUZZ_TIMEOUT seconds of wall time (default
# 120, generous for a busy machine) counts as a finding. libFuzzer's own leak
# check after each input is off (FUZZ_DETECT_LEAKS=1 turns it on): with Qt's
# lazily made globals it scans the heap nearly every time and slows a harness
# a hundredfold; leaks are found by scripts/sanitize.sh, which replays every
# corpus under LeakSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${1:-60}"
[ $# -gt 0 ] && shift
bash scripts/install-deps.sh clang libclang-rt-14-dev

launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DHW_FUZZ=ON -DHW_BUILD_BENCH=OFF "${launcher[@]}"
cmake --build build-fuzz -j2 --target fuzz_all

names=("$@")
if [ ${#names[@]} -eq 0 ]; then
  for binary in build-fuzz/fuzz-bin/fuzz_*; do
    names+=("${binary##*/fuzz_}")
  done
fi

export ASAN_OPTIONS="${ASAN_OPTIONS:-abort_on_error=1:detect_leaks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
mkdir -p build-fuzz/findings build-fuzz/logs
summary=()
for name in "${names[@]}"; do
  binary="build-fuzz/fuzz-bin/fuzz_$name"
  [ -x "$binary" ] || { echo "fuzz.sh: no harness $name" >&2; exit 2; }
  mkdir -p "build-fuzz/corpus/$name"
  log="build-fuzz/logs/$name.log"
  echo "== fuzz_$name for $seconds s (log: $log)"
  status=0
  nice -n 19 "$binary" -max_total_time="$seconds" -timeout="${FUZZ_TIMEOUT:-120}" -print_final_stats=1 \
    -detect_leaks="${FUZZ_DETECT_LEAKS:-0}" \
    -artifact_prefix="build-fuzz/findings/$name-" \
    "build-fuzz/corpus/$name" "fuzz/corpus/$name" >"$log" 2>&1 || status=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  if [ "$status" -ne 0 ]; then
    reproducer=$(ls -t build-fuzz/findings/"$name"-* 2>/dev/null | head -1)
    echo "fuzz.sh: FINDING in fuzz_$name (exit $status)" >&2
    grep -m1 -E "ERROR|runtime error|fuzz_$name:|Assertion|deadly signal|timeout" "$log" >&2 || tail -20 "$log" >&2
    echo "reproducer: ${reproducer:-none written (see $log)}" >&2
    echo "replay:     $binary ${reproducer:-FILE}" >&2
    echo "            build/tests-bin/fuzz_${name}_replay ${reproducer:-FILE}" >&2
    exit 1
  fi
  summary+=("fuzz_$name: ${executions:-?} executions in $seconds s, no finding")
done
printf '%s\n' "${summary[@]}"
