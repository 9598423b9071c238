#!/usr/bin/env bash
# Regenerates the ABI descriptions of the shared libraries under abi/ (one lib<name>.abi each,
# written by abidw) from the current sources, built in the ABI's own configuration
# (scripts/abi-dump.sh).  Run it after changing, or merging a change of, a public header of
# config/, log/ or support/, and commit abi/ with that change; the test abi_matches_descriptions
# fails until then.
#
# An incompatible change (a function or variable removed, an exported class grown or its
# members moved) needs a new SONAME: raise BRISTEL_SOVERSION in CMakeLists.txt first.  The
# script refuses to record one under the old SONAME unless given --allow-break, which is right
# only as long as no package of that SONAME has been installed anywhere.
#   scripts/update-abi.sh [--allow-break] [abi-build-dir]     (default: build-abi/)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
allow_break=no
dir=$root/build-abi
for argument in "$@"; do
    case "$argument" in
    --allow-break) allow_break=yes ;;
    -*)
        echo "usage: $0 [--allow-break] [abi-build-dir]" >&2
        exit 2
        ;;
    *) dir=$argument ;;
    esac
done
fresh=$(mktemp -d)
trap 'rm -rf "$fresh"' EXIT
"$root/scripts/abi-dump.sh" "$dir" "$fresh"

# shellcheck source=abi-common.sh
source "$root/scripts/abi-common.sh"

refused=no
for description in "$fresh"/*.abi; do
    reference="$root/abi/$(basename "$description")"
    [ -f "$reference" ] || continue
    code=0
    abidiff "$reference" "$description" >"$fresh/report" 2>&1 || code=$?
    if ((code & 3)); then
        cat "$fresh/report"
        echo "update-abi: abidiff failed on $reference" >&2
        exit 1
    fi
    if breaks $code "$fresh/report" && [ "$(soname "$reference")" = "$(soname "$description")" ]; then
        cat "$fresh/report"
        echo "update-abi: incompatible change of $(soname "$description") under the same SONAME" >&2
        refused=yes
    fi
done
if [ $refused = yes ] && [ $allow_break = no ]; then
    echo "update-abi: raise BRISTEL_SOVERSION in CMakeLists.txt and run again; nothing written" >&2
    exit 1
fi

mkdir -p "$root/abi"
rm -f "$root"/abi/*.abi
cp "$fresh"/*.abi "$root/abi/"
for description in "$root"/abi/*.abi; do
    echo "update-abi: $(soname "$description") -> abi/$(basename "$description")"
done
