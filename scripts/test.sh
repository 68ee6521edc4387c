#!/usr/bin/env bash
# Installs, builds and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
ctest --test-dir build --output-on-failure -j2
