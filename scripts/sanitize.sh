#!/usr/bin/env bash
# Builds the whole project with AddressSanitizer and UndefinedBehaviorSanitizer
# into build-asan/ (HW_SANITIZE=ON, the normal compiler) and runs the full test
# suite there; prints how long it all took. Any sanitizer report fails the
# test that caused it.
set -euo pipefail
cd "$(dirname "$0")/.."
start=$(date +%s)
bash scripts/install-deps.sh

launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DHW_SANITIZE=ON -DHW_BUILD_BENCH=OFF \
  "${launcher[@]}"
cmake --build build-asan -j2

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
export LSAN_OPTIONS="${LSAN_OPTIONS:-suppressions=$PWD/scripts/lsan.supp}"
status=0
ctest --test-dir build-asan --output-on-failure -j2 || status=$?
echo "sanitize.sh: build and test suite took $(( $(date +%s) - start )) s"
exit $status
