#!/usr/bin/env bash
# Compares the ABI of the shared libraries, built from the current sources in the ABI's own
# configuration (scripts/abi-dump.sh), with the descriptions checked in under abi/ (abidiff).
# Fails when a library changed its ABI and the description was not updated with it, and names
# an incompatible change made without a new SONAME.
#   scripts/check-abi.sh <build-dir>        (the ABI configuration is built in <build-dir>/abi)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:?build folder}
current="$build/abi/current"
rm -rf "$current"
"$root/scripts/abi-dump.sh" "$build/abi" "$current"

# shellcheck source=abi-common.sh
source "$root/scripts/abi-common.sh"

status=0
for description in "$current"/*.abi; do
    name=$(basename "$description")
    reference="$root/abi/$name"
    if [ ! -f "$reference" ]; then
        echo "abi: $(soname "$description") has no description in abi/"
        status=1
        continue
    fi
    code=0
    abidiff "$reference" "$description" >"$current/${name%.abi}.report" 2>&1 || code=$?
    if ((code & 3)); then
        cat "$current/${name%.abi}.report"
        echo "abi: abidiff could not compare abi/$name (status $code)"
        status=1
    elif breaks $code "$current/${name%.abi}.report" && [ "$(soname "$reference")" = "$(soname "$description")" ]; then
        cat "$current/${name%.abi}.report"
        echo "abi: INCOMPATIBLE change of $(soname "$description") under the same SONAME: raise"
        echo "     BRISTEL_SOVERSION in CMakeLists.txt, then run scripts/update-abi.sh"
        status=1
    elif ((code != 0)); then
        cat "$current/${name%.abi}.report"
        echo "abi: the ABI of $(soname "$description") differs from abi/$name"
        status=1
    fi
    # Where abidiff finds no change, the two descriptions may still differ in how much of a type
    # declared in one library and defined in another they spell out, depending on the build;
    # that is no change of the interface.
done
for reference in "$root"/abi/*.abi; do
    [ -f "$current/$(basename "$reference")" ] || { echo "abi: abi/$(basename "$reference") describes no library built now"; status=1; }
done
if [ $status -ne 0 ]; then
    echo
    echo "The ABI descriptions in abi/ are out of date. Run scripts/update-abi.sh and commit abi/"
    echo "together with the change of the libraries' interface."
    exit 1
fi
echo "abi: every shared library matches its description in abi/"
