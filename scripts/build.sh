#!/usr/bin/env bash
# Configures and builds into a build directory (default: build/), quietly.
#   scripts/build.sh [build-dir] [extra cmake arguments...]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=${1:-$root/build}
shift || true
log="$dir/build.log"
mkdir -p "$dir"
if ! { cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release "$@" && cmake --build "$dir" -j "$(nproc)"; } >"$log" 2>&1; then
    tail -n 80 "$log"
    echo "build failed: see $log" >&2
    exit 1
fi
