#!/usr/bin/env bash
# Fails when a C++ source of the repository differs from what clang-format makes of it.
#   scripts/check-format.sh [clang-format program, default: the one on PATH]
# The sources are git's tracked files in a checkout, otherwise every .cpp and .h outside the
# build folders (an unpacked source archive).
set -euo pipefail
cd "$(dirname "$0")/.."
tool=${1:-clang-format}
if ! command -v "$tool" >/dev/null 2>&1; then
    echo "check-format: $tool not found (install clang-format)" >&2
    exit 1
fi
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    files=$(git ls-files '*.cpp' '*.h')
else
    files=$(find . -path './build*' -prune -o \( -name '*.cpp' -o -name '*.h' \) -type f -print)
fi
if [ -z "$files" ]; then
    echo "check-format: no sources found in $PWD" >&2
    exit 1
fi
printf '%s\n' "$files" | tr '\n' '\0' | xargs -0 "$tool" --dry-run -Werror
echo "check-format: $(printf '%s\n' "$files" | wc -l) files formatted"
