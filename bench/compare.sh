#!/usr/bin/env bash
# Whole-process timings of bristel-compile against the two floors, on this machine, in one run:
#   - a typical job (receipt-20.xml) against an empty QCoreApplication program, and the same job
#     run by bristel-compile-shared, the compiler linked with our shared configuration library;
#   - a 100,000-item receipt against one bare QXmlStreamReader pass writing a line per element,
#     with the peak resident memory of each.
# The commands are run interleaved, round after round, so that a slow spell of the machine hits
# them alike; medians and ratios are printed.
#   bench/compare.sh [rounds-small] [rounds-large]
set -euo pipefail
small_rounds=${1:-200}
large_rounds=${2:-15}
# shellcheck source=common.sh
source "$(dirname "$0")/common.sh"

print_header "$small_rounds" "$large_rounds"
# Warm the page cache and the dynamic loader's caches first.
"$compiler" "$work/receipt-20.xml" "$work/out-20.txt"
"$compiler" "$work/receipt-100000.xml" "$work/out-big.txt"
"$compiler_shared" "$work/receipt-20.xml" "$work/out-shared-20.txt"

typical=$(run_interleaved "$small_rounds" \
    "empty-app=$empty" \
    "compile-20=$compiler $work/receipt-20.xml $work/out-20.txt" \
    "compile-20-new=$compiler $work/receipt-20.xml $work/new-@round.txt" \
    "compile-20-shared=$compiler_shared $work/receipt-20.xml $work/out-shared-20.txt")
large=$(run_interleaved "$large_rounds" \
    "stream-pass=$pass $work/receipt-100000.xml $work/pass.txt" \
    "compile-100000=$compiler $work/receipt-100000.xml $work/out-big.txt")

empty_ms=$(median empty-app "$typical")
small_ms=$(median compile-20 "$typical")
new_ms=$(median compile-20-new "$typical")
shared_ms=$(median compile-20-shared "$typical")
pass_ms=$(median stream-pass "$large")
big_ms=$(median compile-100000 "$large")
pass_rss=$(peak_rss_kib "$pass" "$work/receipt-100000.xml" "$work/pass.txt")
big_rss=$(peak_rss_kib "$compiler" "$work/receipt-100000.xml" "$work/out-big.txt")

printf '%-40s %10s\n' "command" "median ms"
printf '%-40s %10s\n' "empty QCoreApplication" "$empty_ms"
printf '%-40s %10s\n' "bristel-compile receipt-20.xml" "$small_ms"
printf '%-40s %10s\n' "  the same, into a new output file" "$new_ms"
printf '%-40s %10s\n' "  with libbristel-config.so" "$shared_ms"
printf '%-40s %10s   peak RSS %s KiB\n' "stream pass receipt-100000.xml" "$pass_ms" "$pass_rss"
printf '%-40s %10s   peak RSS %s KiB\n' "bristel-compile receipt-100000.xml" "$big_ms" "$big_rss"
echo
awk -v a="$small_ms" -v b="$empty_ms" 'BEGIN { printf "typical job / empty application: %.2fx (target <= 1.30x)\n", a / b }'
awk -v a="$new_ms" -v b="$empty_ms" 'BEGIN { printf "  into a new output file:        %.2fx\n", a / b }'
awk -v a="$shared_ms" -v b="$empty_ms" 'BEGIN { printf "  with libbristel-config.so:     %.2fx\n", a / b }'
awk -v a="$big_ms" -v b="$pass_ms" 'BEGIN { printf "100,000 items / stream pass:     %.2fx (target <= 1.50x)\n", a / b }'
awk -v r="$big_rss" 'BEGIN { printf "100,000 items peak RSS:          %.1f MiB (target < 48 MiB)\n", r / 1024 }'
