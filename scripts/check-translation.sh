#!/usr/bin/env bash
# Fails when a label that the programs translate has no entry in a translation file.
#   scripts/check-translation.sh <translation.ts>...
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
lupdate=$(command -v lupdate || echo /usr/lib/qt6/bin/lupdate)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$lupdate" -silent "$root/layout" "$root/devices" "$root/compiler" "$root/job" "$root/support" -ts "$work/labels.ts" >/dev/null 2>&1
sources() { grep -o '<source>[^<]*</source>' "$1" | sort -u; }
sources "$work/labels.ts" >"$work/labels"
[ -s "$work/labels" ] || { echo "no labels found in the sources"; exit 1; }

status=0
for ts in "$@"; do
    sources "$ts" >"$work/translated"
    missing=$(comm -23 "$work/labels" "$work/translated")
    if [ -n "$missing" ]; then
        echo "$(basename "$ts") lacks:"
        echo "$missing"
        status=1
    fi
done
exit $status
