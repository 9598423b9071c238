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

# step <label> <command>: the next step, its label kept beside its command.
labels=()
steps=()
step() {
    labels+=("$1")
    steps+=("step${#steps[@]}=$2")
}
step "empty QCoreApplication" "$with_config $empty"
step "+ QtXml and Core5Compat loaded" "$with_config $build/bin/floor-empty-app-libraries"
step "compiler, no input, no configuration file" "$without_config $compiler $work/missing.xml /dev/null"
step "+ configuration and translation read" "$with_config $compiler $work/missing.xml /dev/null"
step "+ a document naming only its method" "$with_config $compiler $work/method-only.xml /dev/null"
step "+ the 20-item receipt (to /dev/null)" "$with_config $compiler $work/receipt-20.xml /dev/null"
step "+ into an existing output file" "$with_config $compiler $work/receipt-20.xml $work/out-20.txt"

"$compiler" "$work/receipt-20.xml" "$work/out-20.txt" # warm the caches
results=$(run_interleaved "$rounds" "${steps[@]}")

printf '%-45s %10s %10s\n' "step" "median ms" "added ms"
previous=""
for i in "${!steps[@]}"; do
    name=${steps[$i]%%=*}
    ms=$(median "$name" "$results")
    added=""
    [ -z "$previous" ] || added=$(awk -v a="$ms" -v b="$previous" 'BEGIN { printf "%+.3f", a - b }')
    printf '%-45s %10s %10s\n' "${labels[$i]}" "$ms" "$added"
    previous=$ms
done
