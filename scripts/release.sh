#!/usr/bin/env bash
# Makes a release: a release build, the pictures in docs/ taken again from it (so that none
# shows what the programs no longer do), the whole test suite, then the three Debian packages
# in packages/.
#   scripts/release.sh [build-dir]
# Commit the pictures it changed with the release.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}

"$root/scripts/build.sh" "$build"
cmake --build "$build" --target docs
"$root/scripts/run-ctest.sh" "$build"
(cd "$root" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$root/packages")
git -C "$root" status --short -- docs
echo "packages in $root/packages"
