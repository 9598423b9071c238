#!/usr/bin/env bash
# Fails when the threat table of SECURITY.md names a test that this build does not have, or
# has a row that names no test at all.
#   scripts/check-security-tests.sh <SECURITY.md> <build folder>
set -euo pipefail
document=${1:?SECURITY.md}
build=${2:?build folder}
ctest=${CTEST_COMMAND:-ctest}

known=$(mktemp)
trap 'rm -f "$known"' EXIT
"$ctest" --test-dir "$build" -N | sed -n 's/^ *Test *#[0-9]*: //p' | sort -u >"$known"
[ -s "$known" ] || { echo "no tests listed in $build"; exit 1; }

status=0
rows=0
# The rows of the table under "Threats": the last cell names the tests.
while IFS= read -r row; do
    rows=$((rows + 1))
    cell=$(awk -F'|' '{ print $(NF - 1) }' <<<"$row")
    names=$(grep -o '`[A-Za-z][A-Za-z0-9_]*\.[A-Za-z0-9_.-]*`' <<<"$cell" | tr -d '`' || true)
    if [ -z "$names" ]; then
        echo "a row names no test: $(cut -c1-100 <<<"$row")"
        status=1
    fi
    for name in $names; do
        grep -qxF "$name" "$known" || { echo "not a test of this build: $name"; status=1; }
    done
done < <(awk '/^## Threats/ { on = 1; next } /^## / { on = 0 } on && /^\| / && !/^\| input/ && !/^\|---/' "$document")
[ "$rows" -gt 0 ] || { echo "no threat table found in $document"; exit 1; }
[ $status -eq 0 ] && echo "$rows rows, every named test exists"
exit $status
