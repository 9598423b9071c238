#!/usr/bin/env bash
# The hand-derived expectations agree with themselves: every make-expected.sh under
# <cases> is run on a copy of its case folder, and what it writes must equal the committed
# expected.out byte for byte.  Fails when there is no derivation at all.
#   check-derivations.sh <cases folder>
set -euo pipefail
cases=${1:?usage: check-derivations.sh <cases folder>}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

count=0 status=0
for script in "$cases"/*/make-expected.sh; do
    [ -f "$script" ] || continue
    case=$(basename "$(dirname "$script")")
    cp -r "$(dirname "$script")" "$work/$case"
    rm -f "$work/$case/expected.out"
    if ! sh "$work/$case/make-expected.sh" >"$work/$case.log" 2>&1; then
        echo "FAIL [$case]: make-expected.sh failed:"
        cat "$work/$case.log"
        status=1
    elif ! cmp "$work/$case/expected.out" "$cases/$case/expected.out"; then
        echo "FAIL [$case]: make-expected.sh writes other bytes than expected.out"
        diff <(od -c "$cases/$case/expected.out") <(od -c "$work/$case/expected.out") | head -n 20 || true
        status=1
    fi
    count=$((count + 1))
done
if [ $count -eq 0 ]; then
    echo "FAIL: no make-expected.sh under $cases"
    exit 1
fi
echo "$count derivations checked"
exit $status
