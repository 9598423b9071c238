#!/usr/bin/env bash
# Where the typical job's time goes beyond the empty application, step by step: each line adds
# one piece of the job to the one before and prints its median and the increment.
#   bench/breakdown.sh [rounds]
# Every command runs through env (to set its home folder), which adds the same cost to each.
set -euo pipefail
rounds=${1:-300}
# shellcheck source=common.sh
source "$(dirname "$0")/common.sh"

mkdir -p "$work/bare"
printf '<document><method name="printFullOrderReceipt"/></document>\n' >"$work/method-only.xml"
with_config="env HOME=$work/home"
without_config="env HOME=$work/bare"

steps=(
    "empty-app=$with_config $empty"
    "libraries=$with_config $build/bin/floor-empty-app-libraries"
    "no-input-no-config=$without_config $compiler $work/missing.xml /dev/null"
    "no-input=$with_config $compiler $work/missing.xml /dev/null"
    "method-only=$with_config $compiler $work/method-only.xml /dev/null"
    "receipt-20=$with_config $compiler $work/receipt-20.xml /dev/null"
    "receipt-20-file=$with_config $compiler $work/receipt-20.xml $work/out-20.txt"
)
labels=(
    "empty QCoreApplication"
    "+ QtXml and Core5Compat loaded"
    "compiler, no input, no configuration file"
    "+ configuration and translation read"
    "+ a document naming only its method"
    "+ the 20-item receipt (to /dev/null)"
    "+ into an existing output file"
)

"$compiler" "$work/receipt-20.xml" "$work/out-20.txt" # warm the caches
results=$(run_interleaved "$rounds" "${steps[@]}")

printf '%-45s %10s %10s\n' "step" "median ms" "added ms"
previous=""
for i in "${!steps[@]}"; do
    name=${steps[$i]%%=*}
    ms=$(median "$name" "$results")
    added=$([ -n "$previous" ] && awk -v a="$ms" -v b="$previous" 'BEGIN { printf "%+.3f", a - b }' || echo "")
    printf '%-45s %10s %10s\n' "${labels[$i]}" "$ms" "$added"
    previous=$ms
done
