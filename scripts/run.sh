#!/usr/bin/env bash
# Installs, builds and starts Hullwright from build/bin.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
exec build/bin/hullwright "$@"
